#include "hinticon.h"

#include <QPainter>
#include <QPainterPath>

#include "stylepainter.h"

HintIcon::HintIcon(Sign eSign, QWidget *pParent)
    : QWidget(pParent)
    , m_eSign(eSign)
{
    setFixedSize(32, 32);
}

void HintIcon::SetSign(Sign eSign)
{
    m_eSign = eSign;
    update();
}

static QColor ColorOf(HintIcon::Sign eSign)
{
    switch (eSign) {
    case HintIcon::Warning:
        return {0xfa, 0xb7, 0x00};
    case HintIcon::Error:
        return StylePainter::ErrorRed;
    case HintIcon::Done:
        return {0x1f, 0xb1, 0x50};
    default:
        return StylePainter::Accent;
    }
}

void HintIcon::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ColorOf(m_eSign));
    painter.drawEllipse(QRectF(rect()).adjusted(1, 1, -1, -1));
    painter.setPen(QPen(Qt::white, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    switch (m_eSign) {
    case Information:
        painter.drawPoint(QPointF(16, 9.5));
        painter.drawLine(QPointF(16, 15), QPointF(16, 23));
        break;
    case Warning:
        painter.drawLine(QPointF(16, 8.5), QPointF(16, 17));
        painter.drawPoint(QPointF(16, 22.5));
        break;
    case Error:
        painter.drawLine(QPointF(11, 11), QPointF(21, 21));
        painter.drawLine(QPointF(21, 11), QPointF(11, 21));
        break;
    case Done: {
        QPainterPath tick(QPointF(9.5, 16.5));
        tick.lineTo(14, 21);
        tick.lineTo(22.5, 11.5);
        painter.drawPath(tick);
        break;
    }
    }
}
