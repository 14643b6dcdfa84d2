#ifndef STYLECTL_TARNCUSTOMPUSHBUTTON_H
#define STYLECTL_TARNCUSTOMPUSHBUTTON_H

#include <QColor>
#include <QHash>
#include <QPushButton>

#include "styleglobal.h"
#include "tarncustom.h"

/// Push button in the library's look. Space and, while it has the focus, Enter press it; it is no automatic
/// default button of its dialog (QPushButton::setDefault() makes it the one).
class STYLECTL_EXPORT TarnCustomPushButton : public QPushButton
{
    Q_OBJECT

public:
    /// Style selector.
    enum ButtonStyle
    {
        FilledStyle = 0,  ///< filled with the accent colour: the one main action of a dialog
        OutlineStyle = 1, ///< light, with a border
    };

    explicit TarnCustomPushButton(QWidget *pParent = nullptr, ButtonStyle eStyle = OutlineStyle);
    explicit TarnCustomPushButton(ButtonStyle eStyle, QWidget *pParent = nullptr);
    TarnCustomPushButton(const QString &text, ButtonStyle eStyle, QWidget *pParent = nullptr);

    void cSetStyle(ButtonStyle eStyle);
    ButtonStyle cStyle() const { return m_eStyle; }

    /// Colour of the border in one state, on the edges named; the other edges have no border in that state.
    /// Hovered and pressed follow the normal state until they get their own. An invalid colour gives the
    /// style's own border back.
    void cSetBorderColor(const QColor &color, TarnCustom::BorderEdge eEdge = TarnCustom::BorderAll,
                         TarnCustom::CtrlState eState = TarnCustom::StateNormal);
    void cSetBackgroundColor(const QColor &color, TarnCustom::CtrlState eState = TarnCustom::StateNormal);
    void cSetFontColor(const QColor &color, TarnCustom::CtrlState eState = TarnCustom::StateNormal);

    /// State that the button is drawn in.
    TarnCustom::CtrlState cState() const;

    /// Border in a state, as drawn: its colour, and the edges that have it.
    QColor cBorderColor(TarnCustom::CtrlState eState) const;
    TarnCustom::BorderEdge cBorderEdge(TarnCustom::CtrlState eState) const;

    QSize sizeHint() const override;

protected:
    bool event(QEvent *pEvent) override;
    void keyPressEvent(QKeyEvent *pEvent) override;
    void paintEvent(QPaintEvent *pEvent) override;

private:
    struct Border
    {
        QColor color;
        TarnCustom::BorderEdge eEdge = TarnCustom::BorderAll;
    };
    Border BorderOf(TarnCustom::CtrlState eState) const;
    void DrawBorder(QPainter *pPainter, const Border &border) const;

    ButtonStyle m_eStyle;
    QHash<int, Border> m_mapBorder; // by CtrlState; only what the caller set
    QHash<int, QColor> m_mapBackground;
    QHash<int, QColor> m_mapFont;
};

#endif
