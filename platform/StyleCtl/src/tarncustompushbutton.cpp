#include "tarncustompushbutton.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPainter>

#include "stylepainter.h"

namespace {

using namespace TarnCustom;

constexpr int kPadding = 14;
constexpr int kLeastHeight = 26;
constexpr qreal kRadius = 2.5;

QColor DefaultBackground(TarnCustomPushButton::ButtonStyle eStyle, CtrlState eState)
{
    const bool bFilled = eStyle == TarnCustomPushButton::FilledStyle;
    switch (eState) {
    case StateHover:
        return bFilled ? StylePainter::AccentHover : StylePainter::AccentPale;
    case StatePressed:
        return bFilled ? StylePainter::AccentPressed : StylePainter::AccentSoft;
    case StateDisabled:
        return bFilled ? QColor(0xd5, 0xd8, 0xdc) : QColor(0xf4, 0xf5, 0xf6);
    default:
        return bFilled ? StylePainter::Accent : StylePainter::Base;
    }
}

QColor DefaultFont(TarnCustomPushButton::ButtonStyle eStyle, CtrlState eState)
{
    if (eStyle == TarnCustomPushButton::FilledStyle)
        return Qt::white;
    if (eState == StateDisabled)
        return StylePainter::TextDisabled;
    return eState == StateNormal ? StylePainter::Text : StylePainter::AccentPressed;
}

QColor DefaultBorder(TarnCustomPushButton::ButtonStyle eStyle, CtrlState eState)
{
    if (eStyle == TarnCustomPushButton::FilledStyle)
        return DefaultBackground(eStyle, eState);
    if (eState == StateDisabled)
        return StylePainter::Line;
    return eState == StateNormal ? StylePainter::Border : StylePainter::Accent;
}

} // namespace

TarnCustomPushButton::TarnCustomPushButton(QWidget *pParent, ButtonStyle eStyle)
    : TarnCustomPushButton(QString(), eStyle, pParent)
{
}

TarnCustomPushButton::TarnCustomPushButton(ButtonStyle eStyle, QWidget *pParent)
    : TarnCustomPushButton(QString(), eStyle, pParent)
{
}

TarnCustomPushButton::TarnCustomPushButton(const QString &text, ButtonStyle eStyle, QWidget *pParent)
    : QPushButton(text, pParent)
    , m_eStyle(eStyle)
{
    // In a dialog Qt makes the first button the default one: Enter anywhere would press it unseen.
    setAutoDefault(false);
    setAttribute(Qt::WA_Hover);
}

void TarnCustomPushButton::cSetStyle(ButtonStyle eStyle)
{
    m_eStyle = eStyle;
    update();
}

void TarnCustomPushButton::cSetBorderColor(const QColor &color, BorderEdge eEdge, CtrlState eState)
{
    if (color.isValid())
        m_mapBorder.insert(eState, {color, eEdge});
    else
        m_mapBorder.remove(eState);
    update();
}

void TarnCustomPushButton::cSetBackgroundColor(const QColor &color, CtrlState eState)
{
    m_mapBackground.insert(eState, color);
    update();
}

void TarnCustomPushButton::cSetFontColor(const QColor &color, CtrlState eState)
{
    m_mapFont.insert(eState, color);
    update();
}

CtrlState TarnCustomPushButton::cState() const
{
    if (!isEnabled())
        return StateDisabled;
    if (isDown())
        return StatePressed;
    return underMouse() ? StateHover : StateNormal;
}

TarnCustomPushButton::Border TarnCustomPushButton::BorderOf(CtrlState eState) const
{
    if (m_mapBorder.contains(eState))
        return m_mapBorder.value(eState);
    if (eState != StateDisabled && m_mapBorder.contains(StateNormal))
        return m_mapBorder.value(StateNormal);
    return {DefaultBorder(m_eStyle, eState), BorderAll};
}

QColor TarnCustomPushButton::cBorderColor(CtrlState eState) const
{
    return BorderOf(eState).color;
}

TarnCustom::BorderEdge TarnCustomPushButton::cBorderEdge(TarnCustom::CtrlState eState) const
{
    return BorderOf(eState).eEdge;
}

QSize TarnCustomPushButton::sizeHint() const
{
    const int nIcon = icon().isNull() ? 0 : iconSize().width() + 6;
    const QSize text = fontMetrics().size(Qt::TextShowMnemonic, this->text());
    return {text.width() + nIcon + 2 * kPadding, qMax(kLeastHeight, text.height() + 10)};
}

bool TarnCustomPushButton::event(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::Hide)
        setAttribute(Qt::WA_UnderMouse, false); // hidden under the mouse: no leave event will come
    return QPushButton::event(pEvent);
}

void TarnCustomPushButton::keyPressEvent(QKeyEvent *pEvent)
{
    const bool bEnter = pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter;
    if (bEnter && !pEvent->isAutoRepeat())
        click();
    else if (!bEnter)
        QPushButton::keyPressEvent(pEvent);
}

void TarnCustomPushButton::DrawBorder(QPainter *pPainter, const Border &border) const
{
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    pPainter->setPen(QPen(border.color, 1));
    if (border.eEdge == BorderAll) {
        pPainter->drawRoundedRect(frame, kRadius, kRadius);
    } else if (border.eEdge == BorderSides) {
        pPainter->drawLine(frame.topLeft(), frame.bottomLeft());
        pPainter->drawLine(frame.topRight(), frame.bottomRight());
    } else if (border.eEdge == BorderTopBottom) {
        pPainter->drawLine(frame.topLeft(), frame.topRight());
        pPainter->drawLine(frame.bottomLeft(), frame.bottomRight());
    }
}

void TarnCustomPushButton::paintEvent(QPaintEvent *)
{
    const CtrlState eState = cState();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_mapBackground.value(eState, DefaultBackground(m_eStyle, eState)));
    painter.drawRoundedRect(QRectF(rect()), kRadius, kRadius);
    painter.setBrush(Qt::NoBrush);
    DrawBorder(&painter, BorderOf(eState));
    if (hasFocus() && m_eStyle == FilledStyle) {
        painter.setPen(QPen(Qt::white, 1));
        painter.drawRoundedRect(QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5), 1.5, 1.5);
    } else if (hasFocus()) {
        StylePainter::DrawFocusRing(&painter, rect(), kRadius);
    }

    QRect place = rect().adjusted(4, 0, -4, 0);
    if (!icon().isNull()) {
        const int nText = fontMetrics().size(Qt::TextShowMnemonic, text()).width();
        const int nLeft = qMax(4, (width() - iconSize().width() - 6 - nText) / 2);
        const QRect iconPlace(QPoint(nLeft, (height() - iconSize().height()) / 2), iconSize());
        icon().paint(&painter, iconPlace, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
        place.setLeft(iconPlace.right() + 6);
    }
    painter.setPen(m_mapFont.value(eState, DefaultFont(m_eStyle, eState)));
    const int nAlign = icon().isNull() ? Qt::AlignCenter : (Qt::AlignLeft | Qt::AlignVCenter);
    painter.drawText(place, nAlign | Qt::TextShowMnemonic | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, place.width(), Qt::TextShowMnemonic));
}
