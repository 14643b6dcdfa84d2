#ifndef STYLECTL_TARNCUSTOMLINEWIDGET_H
#define STYLECTL_TARNCUSTOMLINEWIDGET_H

#include <QColor>
#include <QWidget>

#include "styleglobal.h"
#include "tarncustom.h"

/// A line that parts what stands on its sides; it runs along its longer side and fills the shorter one.
class STYLECTL_EXPORT TarnCustomLineWidget : public QWidget
{
    Q_OBJECT

public:
    enum LineType
    {
        SolidLine = 0,
        DashLine = 1,
    };

    explicit TarnCustomLineWidget(QWidget *pParent = nullptr);

    void cSetLineType(LineType eType);
    LineType cLineType() const { return m_eType; }

    /// Colour of the line; hovered and pressed are not used.
    void cSetBackgroundColor(const QColor &color, TarnCustom::CtrlState eState = TarnCustom::StateNormal);
    QColor cBackgroundColor() const { return m_color; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *pEvent) override;

private:
    LineType m_eType = SolidLine;
    QColor m_color;
    QColor m_disabledColor; // invalid: as normal
};

#endif
