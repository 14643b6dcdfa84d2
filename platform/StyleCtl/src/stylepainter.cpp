#include "stylepainter.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

namespace StylePainter {

QPalette LightPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, Window);
    palette.setColor(QPalette::WindowText, Text);
    palette.setColor(QPalette::Base, Base);
    palette.setColor(QPalette::AlternateBase, BaseAlternate);
    palette.setColor(QPalette::Text, Text);
    palette.setColor(QPalette::PlaceholderText, TextDisabled);
    palette.setColor(QPalette::Button, Base);
    palette.setColor(QPalette::ButtonText, Text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Light, Qt::white);
    palette.setColor(QPalette::Midlight, QColor(0xec, 0xee, 0xf1));
    palette.setColor(QPalette::Mid, Border);
    palette.setColor(QPalette::Dark, QColor(0x9f, 0xa3, 0xa9));
    palette.setColor(QPalette::Shadow, QColor(0x6f, 0x73, 0x79));
    palette.setColor(QPalette::Highlight, AccentSoft);
    palette.setColor(QPalette::HighlightedText, Text);
    palette.setColor(QPalette::Link, Accent);
    palette.setColor(QPalette::LinkVisited, AccentPressed);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
        palette.setColor(QPalette::Disabled, role, TextDisabled);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0xe6, 0xe8, 0xeb));
    return palette;
}

QRect CheckBoxRect(const QRect &cell)
{
    QRect box(0, 0, kCheckBoxSize, kCheckBoxSize);
    box.moveTopLeft(QPoint(cell.left() + (cell.width() - kCheckBoxSize) / 2,
                           cell.top() + (cell.height() - kCheckBoxSize) / 2));
    return box;
}

static void DrawTick(QPainter *pPainter, const QRectF &box, Qt::CheckState eState)
{
    if (eState == Qt::PartiallyChecked) {
        pPainter->drawLine(QPointF(box.left() + box.width() * 0.25, box.center().y()),
                           QPointF(box.left() + box.width() * 0.75, box.center().y()));
        return;
    }
    QPainterPath tick(QPointF(box.left() + box.width() * 0.22, box.top() + box.height() * 0.52));
    tick.lineTo(box.left() + box.width() * 0.43, box.top() + box.height() * 0.72);
    tick.lineTo(box.left() + box.width() * 0.79, box.top() + box.height() * 0.30);
    pPainter->drawPath(tick);
}

void DrawCheckBox(QPainter *pPainter, const QRect &box, Qt::CheckState eState, bool bEnabled, bool bHover)
{
    const bool bTicked = eState != Qt::Unchecked;
    QColor border = bHover ? Accent : QColor(0x8f, 0x94, 0x9b);
    QColor fill = Qt::white;
    if (!bEnabled) {
        border = QColor(0xcd, 0xd0, 0xd5);
        fill = bTicked ? border : QColor(0xec, 0xee, 0xf0);
    } else if (bTicked) {
        fill = border = bHover ? AccentHover : Accent;
    }
    pPainter->save();
    pPainter->setRenderHint(QPainter::Antialiasing);
    pPainter->setPen(QPen(border, 1));
    pPainter->setBrush(fill);
    pPainter->drawRoundedRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5), 2.5, 2.5);
    if (bTicked) {
        pPainter->setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        pPainter->setBrush(Qt::NoBrush);
        DrawTick(pPainter, QRectF(box), eState);
    }
    pPainter->restore();
}

void DrawFocusRing(QPainter *pPainter, const QRect &rect, qreal dRadius)
{
    pPainter->save();
    pPainter->setRenderHint(QPainter::Antialiasing);
    pPainter->setPen(QPen(Accent, 2));
    pPainter->setBrush(Qt::NoBrush);
    pPainter->drawRoundedRect(QRectF(rect).adjusted(1, 1, -1, -1), dRadius, dRadius);
    pPainter->restore();
}

void DrawShadow(QPainter *pPainter, const QRect &frame, int nWidth)
{
    // Rings from the outside in, each over the ones before: the darkness adds up towards the frame.
    pPainter->save();
    pPainter->setRenderHint(QPainter::Antialiasing);
    pPainter->setPen(Qt::NoPen);
    for (int i = 0; i < nWidth; ++i) {
        const qreal dGrow = nWidth - i;
        const qreal dNear = qreal(i + 1) / nWidth;
        pPainter->setBrush(QColor(0, 0, 0, qRound(1 + 9 * dNear * dNear)));
        pPainter->drawRoundedRect(QRectF(frame).adjusted(-dGrow, -dGrow, dGrow, dGrow), dGrow, dGrow);
    }
    pPainter->restore();
}

} // namespace StylePainter
