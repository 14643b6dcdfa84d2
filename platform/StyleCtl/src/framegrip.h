#ifndef STYLECTL_FRAMEGRIP_H
#define STYLECTL_FRAMEGRIP_H

#include <QPoint>
#include <QRect>

#include "tarncustom.h"

class QWidget;

/// Stretches a frameless window with the mouse at its edges and corners: through the window manager, or on
/// its own where none answers. Lives in the window that it stretches.
class FrameGrip
{
public:
    explicit FrameGrip(QWidget *pWindow);

    /// Edges under a position of the window, of those allowed; empty in between.
    /// @param frame  the visible frame, in window coordinates: the grip reaches from outside it to a few
    ///               pixels inside
    Qt::Edges EdgesAt(const QPoint &pos, const QRect &frame, TarnCustom::StrechEdges allowed) const;

    static Qt::CursorShape CursorFor(Qt::Edges edges);

    /// Begins to stretch; true when it did.
    bool Begin(Qt::Edges edges, const QPoint &globalPos);
    /// Follows the mouse; only while stretching on its own.
    void MoveTo(const QPoint &globalPos);
    void End() { m_edges = {}; }
    bool IsActive() const { return bool(m_edges); }

    /// Width of the grip inside the frame, in device-independent pixels.
    static constexpr int kInside = 5;

private:
    QWidget *const m_pWindow;
    Qt::Edges m_edges; // empty: not stretching on our own
    QPoint m_pressPos;
    QRect m_startGeometry;
};

#endif
