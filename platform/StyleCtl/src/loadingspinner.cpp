#include "loadingspinner.h"

#include <QConicalGradient>
#include <QPainter>
#include <QTimerEvent>

#include "stylepainter.h"

namespace {

constexpr int kSide = 36;
constexpr int kStepMs = 33;
constexpr int kStepDegrees = 12; // once round in a second

} // namespace

LoadingSpinner::LoadingSpinner(QWidget *pParent)
    : QWidget(pParent)
{
    setFixedSize(kSide, kSide);
}

void LoadingSpinner::showEvent(QShowEvent *)
{
    m_timer.start(kStepMs, this);
}

void LoadingSpinner::hideEvent(QHideEvent *)
{
    m_timer.stop();
}

void LoadingSpinner::timerEvent(QTimerEvent *pEvent)
{
    if (pEvent->timerId() != m_timer.timerId())
        return;
    m_nDegrees = (m_nDegrees + kStepDegrees) % 360;
    update();
}

void LoadingSpinner::paintEvent(QPaintEvent *)
{
    const QRectF ring = QRectF(rect()).adjusted(3, 3, -3, -3);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(StylePainter::AccentSoft, 4));
    painter.drawEllipse(ring);

    // The tail fades out behind the head.
    QColor faded = StylePainter::Accent;
    faded.setAlpha(0);
    QConicalGradient tail(ring.center(), 90 - m_nDegrees);
    tail.setColorAt(0.0, StylePainter::Accent);
    tail.setColorAt(0.75, faded);
    painter.setPen(QPen(QBrush(tail), 4, Qt::SolidLine, Qt::FlatCap));
    painter.drawArc(ring, (90 - m_nDegrees) * 16, 270 * 16);
}
