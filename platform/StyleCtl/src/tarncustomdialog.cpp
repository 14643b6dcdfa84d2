#include "tarncustomdialog.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QMoveEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

#include "framegrip.h"
#include "stylepainter.h"
#include "tarncustomtitlebar.h"
#include "windowsystem.h"

namespace {

constexpr int kShadowWidth = 10;

} // namespace

TarnCustomDialog::TarnCustomDialog(QWidget *pParent, Qt::WindowFlags flags)
    : QDialog(pParent, flags | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint)
    , m_pGrip(std::make_unique<FrameGrip>(this))
{
    // An alpha channel must be asked for before the window exists; without a compositor everything that is
    // drawn is opaque, so the window looks the same without one.
    setAttribute(Qt::WA_TranslucentBackground);
    setMouseTracking(true);
    setPalette(StylePainter::LightPalette());
    m_pTitleBar = new TarnCustomTitleBar(this);
    m_pFrameLayout = new QVBoxLayout(this);
    m_pFrameLayout->setSpacing(0);
    m_pFrameLayout->addWidget(m_pTitleBar);
    WindowSystem::WatchCompositing(this, [this] { UpdateFrame(); });
    UpdateFrame();
}

TarnCustomDialog::~TarnCustomDialog() = default;

void TarnCustomDialog::cSetBackgroundColor(const QColor &color, TarnCustom::CtrlState eState)
{
    m_mapBackground.insert(eState, color);
    update();
}

void TarnCustomDialog::cSetStrechEdges(TarnCustom::StrechEdges edges)
{
    m_strechEdges = edges;
    UpdateFrame();
}

void TarnCustomDialog::cEnableDefualtShadow(bool bEnable)
{
    m_bShadow = bEnable;
    UpdateFrame();
}

QMargins TarnCustomDialog::cShadowMargins() const
{
    if (!m_bShadow || !m_bCompositing || FillsScreen())
        return {};
    return {kShadowWidth, kShadowWidth, kShadowWidth, kShadowWidth};
}

void TarnCustomDialog::cSetCentralWidget(QWidget *pWidget)
{
    if (pWidget == m_pCentralWidget)
        return;
    delete m_pCentralWidget;
    m_pCentralWidget = pWidget;
    if (!pWidget)
        return;
    // Without a cursor of its own the content would inherit the one that stretches the window.
    if (!pWidget->testAttribute(Qt::WA_SetCursor))
        pWidget->setCursor(Qt::ArrowCursor);
    m_pFrameLayout->addWidget(pWidget, 1);
}

bool TarnCustomDialog::FillsScreen() const
{
    return windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen);
}

QRect TarnCustomDialog::FrameRect() const
{
    return rect().marginsRemoved(cShadowMargins());
}

QColor TarnCustomDialog::cBackgroundColor(TarnCustom::CtrlState eState) const
{
    const QColor normal = m_mapBackground.value(TarnCustom::StateNormal, StylePainter::Window);
    return eState == TarnCustom::StateDisabled ? m_mapBackground.value(eState, normal) : normal;
}

// The content keeps clear of the grip, which must get the mouse itself: children may be native windows.
void TarnCustomDialog::UpdateFrame()
{
    m_bCompositing = WindowSystem::IsCompositing();
    const int nLine = FillsScreen() ? 0 : 1;
    const int nGrip = FillsScreen() || !m_strechEdges ? nLine : FrameGrip::kInside;
    const auto side = [&](TarnCustom::StrechEdges edge) { return (m_strechEdges & edge) ? nGrip : nLine; };
    const QMargins inner(side(TarnCustom::StrechLeft), side(TarnCustom::StrechTop),
                         side(TarnCustom::StrechRight), side(TarnCustom::StrechBottom));
    m_pFrameLayout->setContentsMargins(cShadowMargins() + inner);
    if (m_bShadow && windowHandle())
        WindowSystem::SetShadowMargins(windowHandle(), cShadowMargins());
    update();
}

void TarnCustomDialog::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QRect frame = FrameRect();
    if (!cShadowMargins().isNull())
        StylePainter::DrawShadow(&painter, frame, kShadowWidth);
    painter.fillRect(frame,
                     cBackgroundColor(isEnabled() ? TarnCustom::StateNormal : TarnCustom::StateDisabled));
    if (!m_pTitleBar->isHidden()) {
        // The bar's colours go on over the grip beside it.
        const int nBottom = m_pTitleBar->geometry().bottom();
        painter.fillRect(QRect(frame.topLeft(), QPoint(frame.right(), nBottom)), Qt::white);
        painter.fillRect(QRect(frame.left(), nBottom, frame.width(), 1), StylePainter::Line);
    }
    if (FillsScreen())
        return;
    painter.setPen(cShadowMargins().isNull() ? StylePainter::Border : StylePainter::Line);
    painter.drawRect(frame.adjusted(0, 0, -1, -1));
}

void TarnCustomDialog::showEvent(QShowEvent *pEvent)
{
    // Qt disables the dialogs of a window together with the window. A main window stays as it is: it may be
    // disabled while it is minimised and comes back.
    if (!pEvent->spontaneous() && windowType() == Qt::Dialog)
        setEnabled(true);
    m_pTitleBar->cUpdateButtons();
    UpdateFrame();
    const bool bPlace = !pEvent->spontaneous() && !testAttribute(Qt::WA_Moved) && !FillsScreen();
    if (bPlace)
        PlaceInCentre();
    QDialog::showEvent(pEvent);
    if (bPlace)
        setAttribute(Qt::WA_Moved, false); // not the user's choice: the next show centres again
}

// QDialog would leave room for a window frame that this window does not have.
void TarnCustomDialog::PlaceInCentre()
{
    const QWidget *pOwner = parentWidget() ? parentWidget()->window() : nullptr;
    const QRect available = screen()->availableGeometry();
    QRect place = rect();
    place.moveCenter(pOwner && pOwner->isVisible() ? pOwner->geometry().center() : available.center());
    const QPoint most = available.bottomRight() - QPoint(width() - 1, height() - 1);
    move(qMax(available.left(), qMin(place.left(), most.x())),
         qMax(available.top(), qMin(place.top(), most.y())));
    m_placed = pos();
    m_bPlaced = !m_placed.isNull();
}

// Some window managers report a window that they are framing at the frame's first place, the corner of the
// screen, and nothing more when the frame reaches its own. Dialogs and tool tips would then be placed as if
// the window were in the corner. Asked to move it to where it is, they tell the truth.
void TarnCustomDialog::moveEvent(QMoveEvent *pEvent)
{
    QDialog::moveEvent(pEvent);
    if (!m_bPlaced || !isVisible() || !pEvent->pos().isNull())
        return;
    m_bPlaced = false; // once for each show
    QTimer::singleShot(0, this, [this] {
        move(m_placed);
        setAttribute(Qt::WA_Moved, false);
    });
}

void TarnCustomDialog::changeEvent(QEvent *pEvent)
{
    switch (pEvent->type()) {
    case QEvent::WindowStateChange:
        UpdateFrame();
        break;
    case QEvent::EnabledChange:
        update();
        break;
    default:
        break;
    }
    QDialog::changeEvent(pEvent);
}

void TarnCustomDialog::keyPressEvent(QKeyEvent *pEvent)
{
    if (pEvent->key() == Qt::Key_Space && pEvent->modifiers() == Qt::AltModifier)
        m_pTitleBar->cShowMenu(m_pTitleBar->mapToGlobal(QPoint(0, m_pTitleBar->height())));
    else
        QDialog::keyPressEvent(pEvent);
}

void TarnCustomDialog::mousePressEvent(QMouseEvent *pEvent)
{
    if (pEvent->button() == Qt::LeftButton && !FillsScreen())
        m_pGrip->Begin(m_pGrip->EdgesAt(pEvent->pos(), FrameRect(), m_strechEdges), pEvent->globalPos());
}

void TarnCustomDialog::mouseMoveEvent(QMouseEvent *pEvent)
{
    if (m_pGrip->IsActive()) {
        m_pGrip->MoveTo(pEvent->globalPos());
        return;
    }
    const TarnCustom::StrechEdges allowed = FillsScreen() ? TarnCustom::StrechNone : m_strechEdges;
    const Qt::Edges edges = m_pGrip->EdgesAt(pEvent->pos(), FrameRect(), allowed);
    if (edges)
        setCursor(FrameGrip::CursorFor(edges));
    else
        unsetCursor();
}

void TarnCustomDialog::mouseReleaseEvent(QMouseEvent *)
{
    m_pGrip->End();
}

void TarnCustomDialog::leaveEvent(QEvent *pEvent)
{
    unsetCursor();
    QDialog::leaveEvent(pEvent);
}
