#ifndef STYLECTL_TARNCUSTOMLABEL_H
#define STYLECTL_TARNCUSTOMLABEL_H

#include <QColor>
#include <QLabel>

#include "styleglobal.h"
#include "tarncustom.h"

/// Label with a font colour and font size of its own. Plain text; its accessible name is its text.
class STYLECTL_EXPORT TarnCustomLabel : public QLabel
{
    Q_OBJECT

public:
    explicit TarnCustomLabel(QWidget *pParent = nullptr);
    explicit TarnCustomLabel(const QString &text, QWidget *pParent = nullptr);

    /// Normal or disabled; the other states have no colour of their own. Disabled follows the normal colour
    /// until it is set: a label tells something also while its window cannot be used, such as a count that
    /// goes on.
    void cSetFontColor(const QColor &color, TarnCustom::CtrlState eState = TarnCustom::StateNormal);
    QColor cFontColor(TarnCustom::CtrlState eState = TarnCustom::StateNormal) const;

    /// Height of the font in pixels, 1 or more (others are ignored); the rest of the font stays.
    void cSetFontSize(int nPixelSize);

private:
    QColor m_disabledColor; // invalid: follow the normal colour
};

#endif
