#include "titlebarbutton.h"

#include <QEvent>
#include <QPainter>

#include "stylepainter.h"

TitleBarButton::TitleBarButton(Sign eSign, QWidget *pParent)
    : QAbstractButton(pParent)
    , m_eSign(eSign)
{
    // Title bars take no part in the Tab order; the keyboard reaches the same commands by the window menu.
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

void TitleBarButton::SetSign(Sign eSign)
{
    m_eSign = eSign;
    update();
}

void TitleBarButton::SetName(const QString &name)
{
    setToolTip(name);
    setAccessibleName(name);
}

QSize TitleBarButton::sizeHint() const
{
    return {44, 32};
}

bool TitleBarButton::event(QEvent *pEvent)
{
    // A window that hides under the mouse (minimised) never sends the leave: without this the button
    // would still look hovered when the window comes back.
    if (pEvent->type() == QEvent::Hide)
        setAttribute(Qt::WA_UnderMouse, false);
    return QAbstractButton::event(pEvent);
}

static void DrawSign(QPainter *pPainter, const QRectF &r, TitleBarButton::Sign eSign, const QColor &fill)
{
    switch (eSign) {
    case TitleBarButton::Minimize:
        pPainter->drawLine(QPointF(r.left(), r.center().y()), QPointF(r.right(), r.center().y()));
        break;
    case TitleBarButton::Maximize:
        pPainter->drawRect(r);
        break;
    case TitleBarButton::Restore:
        pPainter->drawRect(r.adjusted(2, 0, 0, -2));
        pPainter->setBrush(fill);
        pPainter->drawRect(r.adjusted(0, 2, -2, 0));
        break;
    case TitleBarButton::Close:
        pPainter->setRenderHint(QPainter::Antialiasing);
        pPainter->drawLine(r.topLeft(), r.bottomRight());
        pPainter->drawLine(r.topRight(), r.bottomLeft());
        break;
    }
}

void TitleBarButton::paintEvent(QPaintEvent *)
{
    const bool bHover = isEnabled() && underMouse();
    QColor fill = Qt::white;
    QColor ink = isEnabled() ? StylePainter::TextWeak : StylePainter::TextDisabled;
    if (bHover) {
        const bool bClose = m_eSign == Close;
        fill =
            bClose ? QColor(isDown() ? 0xc4 : 0xe8, 0x2b, 0x2b) : QColor(isDown() ? 0xd4 : 0xe6, 0xe6, 0xea);
        if (!bClose && isDown())
            fill = QColor(0xd4, 0xd7, 0xdc);
        ink = bClose ? QColor(Qt::white) : StylePainter::Text;
    }
    QPainter painter(this);
    if (bHover)
        painter.fillRect(rect().adjusted(0, 0, 0, -1), fill);
    painter.setPen(QPen(ink, 1.0));
    // On half pixels, so that the lines are one pixel wide.
    const int nSide = 10;
    const QPoint corner((width() - nSide) / 2, (height() - nSide) / 2);
    const QRectF sign(corner.x() + 0.5, corner.y() + 0.5, nSide, nSide);
    DrawSign(&painter, sign, m_eSign, fill);
}
