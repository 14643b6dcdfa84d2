#include "framegrip.h"

#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace {

// Corners are easier to hit than their few pixels of edge.
constexpr int kCorner = 16;

TarnCustom::StrechEdge FlagOf(Qt::Edges edges)
{
    const bool bTop = edges & Qt::TopEdge;
    const bool bBottom = edges & Qt::BottomEdge;
    if (edges & Qt::LeftEdge)
        return bTop      ? TarnCustom::StrechTopLeft
               : bBottom ? TarnCustom::StrechBottomLeft
                         : TarnCustom::StrechLeft;
    if (edges & Qt::RightEdge)
        return bTop      ? TarnCustom::StrechTopRight
               : bBottom ? TarnCustom::StrechBottomRight
                         : TarnCustom::StrechRight;
    return bTop ? TarnCustom::StrechTop : bBottom ? TarnCustom::StrechBottom : TarnCustom::StrechNone;
}

} // namespace

FrameGrip::FrameGrip(QWidget *pWindow)
    : m_pWindow(pWindow)
{
}

Qt::Edges FrameGrip::EdgesAt(const QPoint &pos, const QRect &frame, TarnCustom::StrechEdges allowed) const
{
    const auto near = [&](int nReach) {
        Qt::Edges edges;
        edges.setFlag(Qt::LeftEdge, pos.x() < frame.left() + nReach);
        edges.setFlag(Qt::RightEdge, pos.x() > frame.right() - nReach);
        edges.setFlag(Qt::TopEdge, pos.y() < frame.top() + nReach);
        edges.setFlag(Qt::BottomEdge, pos.y() > frame.bottom() - nReach);
        return edges;
    };
    const auto isAllowed = [&](Qt::Edges edges) { return edges && (allowed & FlagOf(edges)); };
    const Qt::Edges edges = near(kInside);
    if (!edges)
        return {};
    const Qt::Edges corner = edges | near(kCorner);
    const bool bCorner =
        (corner & (Qt::LeftEdge | Qt::RightEdge)) && (corner & (Qt::TopEdge | Qt::BottomEdge));
    if (bCorner && isAllowed(corner))
        return corner;
    for (const Qt::Edge edge : {Qt::LeftEdge, Qt::RightEdge, Qt::TopEdge, Qt::BottomEdge}) {
        if ((edges & edge) && isAllowed(edge))
            return edge;
    }
    return {};
}

Qt::CursorShape FrameGrip::CursorFor(Qt::Edges edges)
{
    const bool bSide = edges & (Qt::LeftEdge | Qt::RightEdge);
    const bool bEnd = edges & (Qt::TopEdge | Qt::BottomEdge);
    if (bSide && bEnd) {
        const bool bFalling = bool(edges & Qt::LeftEdge) == bool(edges & Qt::TopEdge);
        return bFalling ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
    }
    return bSide ? Qt::SizeHorCursor : bEnd ? Qt::SizeVerCursor : Qt::ArrowCursor;
}

bool FrameGrip::Begin(Qt::Edges edges, const QPoint &globalPos)
{
    if (!edges || !m_pWindow->windowHandle())
        return false;
    if (!m_pWindow->windowHandle()->startSystemResize(edges)) {
        m_edges = edges;
        m_pressPos = globalPos;
        m_startGeometry = m_pWindow->geometry();
    }
    return true;
}

void FrameGrip::MoveTo(const QPoint &globalPos)
{
    if (!m_edges)
        return;
    const QSize least = m_pWindow->minimumSize().expandedTo(m_pWindow->minimumSizeHint());
    const QSize most = m_pWindow->maximumSize();
    const QPoint by = globalPos - m_pressPos;
    QRect geometry = m_startGeometry;
    const auto width = [&](int nWidth) {
        return std::clamp(nWidth, least.width(), std::max(least.width(), most.width()));
    };
    const auto height = [&](int nHeight) {
        return std::clamp(nHeight, least.height(), std::max(least.height(), most.height()));
    };
    if (m_edges & Qt::LeftEdge)
        geometry.setLeft(geometry.right() + 1 - width(geometry.width() - by.x()));
    if (m_edges & Qt::RightEdge)
        geometry.setWidth(width(geometry.width() + by.x()));
    if (m_edges & Qt::TopEdge)
        geometry.setTop(geometry.bottom() + 1 - height(geometry.height() - by.y()));
    if (m_edges & Qt::BottomEdge)
        geometry.setHeight(height(geometry.height() + by.y()));
    m_pWindow->setGeometry(geometry);
}
