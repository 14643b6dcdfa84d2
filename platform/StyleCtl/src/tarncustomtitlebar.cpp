#include "tarncustomtitlebar.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QWindow>

#include "stylepainter.h"
#include "titlebarbutton.h"

namespace {

constexpr int kIconSize = 18;
constexpr int kMargin = 12;

} // namespace

TarnCustomTitleBar::TarnCustomTitleBar(QWidget *pParent)
    : QWidget(pParent)
{
    setObjectName(QStringLiteral("TitleBar"));
    setCursor(Qt::ArrowCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    CreateButtons();
    SetTexts();
    cUpdateButtons();
    window()->installEventFilter(this);
}

TarnCustomTitleBar::~TarnCustomTitleBar() = default;

void TarnCustomTitleBar::CreateButtons()
{
    const auto add = [this](TitleBarButton::Sign eSign, const char *name) {
        auto *pButton = new TitleBarButton(eSign, this);
        pButton->setObjectName(QLatin1String(name));
        return pButton;
    };
    m_pMinimizeBtn = add(TitleBarButton::Minimize, "MinimizeBtn");
    m_pMaximizeBtn = add(TitleBarButton::Maximize, "MaximizeBtn");
    m_pCloseBtn = add(TitleBarButton::Close, "CloseBtn");
    connect(m_pMinimizeBtn, &QAbstractButton::clicked, this, [this] { window()->showMinimized(); });
    connect(m_pMaximizeBtn, &QAbstractButton::clicked, this, &TarnCustomTitleBar::ToggleMaximized);
    connect(m_pCloseBtn, &QAbstractButton::clicked, this, [this] { window()->close(); });

    auto *pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addStretch();
    for (TitleBarButton *pButton : {m_pMinimizeBtn, m_pMaximizeBtn, m_pCloseBtn})
        pLayout->addWidget(pButton);
}

void TarnCustomTitleBar::SetTexts()
{
    m_pMinimizeBtn->SetName(tr("Minimize"));
    m_pMaximizeBtn->SetName(window()->isMaximized() ? tr("Restore") : tr("Maximize"));
    m_pCloseBtn->SetName(tr("Close"));
}

void TarnCustomTitleBar::cUpdateButtons()
{
    const Qt::WindowFlags flags = window()->windowFlags();
    m_pMinimizeBtn->setVisible(flags & Qt::WindowMinimizeButtonHint);
    m_pMaximizeBtn->setVisible(flags & Qt::WindowMaximizeButtonHint);
    m_pCloseBtn->setVisible(flags & Qt::WindowCloseButtonHint);
    m_pMaximizeBtn->SetSign(window()->isMaximized() ? TitleBarButton::Restore : TitleBarButton::Maximize);
    SetTexts();
}

void TarnCustomTitleBar::cSetText(const QString &text)
{
    m_strText = text;
    setAccessibleName(text);
    update();
}

QString TarnCustomTitleBar::cText() const
{
    return m_strText;
}

void TarnCustomTitleBar::cSetIcon(const QIcon &icon)
{
    m_icon = icon;
    update();
}

QIcon TarnCustomTitleBar::ShownIcon() const
{
    return m_icon.isNull() ? window()->windowIcon() : m_icon;
}

QSize TarnCustomTitleBar::sizeHint() const
{
    return {200, 37};
}

void TarnCustomTitleBar::cShowMenu(const QPoint &globalPos)
{
    QWidget *pWindow = window();
    const Qt::WindowFlags flags = pWindow->windowFlags();
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("WindowMenu"));
    menu.setPalette(StylePainter::LightPalette());
    if (flags & Qt::WindowMaximizeButtonHint)
        menu.addAction(pWindow->isMaximized() ? tr("Restore") : tr("Maximize"), this,
                       &TarnCustomTitleBar::ToggleMaximized);
    if (flags & Qt::WindowMinimizeButtonHint)
        menu.addAction(tr("Minimize"), pWindow, &QWidget::showMinimized);
    if (flags & Qt::WindowCloseButtonHint)
        menu.addAction(tr("Close"), pWindow, &QWidget::close);
    if (!menu.isEmpty())
        menu.exec(globalPos);
}

void TarnCustomTitleBar::ToggleMaximized()
{
    if (window()->isMaximized())
        window()->showNormal();
    else
        window()->showMaximized();
}

bool TarnCustomTitleBar::event(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange)
        SetTexts();
    else if (pEvent->type() == QEvent::ParentChange)
        window()->installEventFilter(this);
    return QWidget::event(pEvent);
}

bool TarnCustomTitleBar::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    if (pWatched == window()) {
        if (pEvent->type() == QEvent::WindowStateChange)
            cUpdateButtons();
        else if (pEvent->type() == QEvent::WindowIconChange || pEvent->type() == QEvent::WindowActivate ||
                 pEvent->type() == QEvent::WindowDeactivate)
            update();
    }
    return QWidget::eventFilter(pWatched, pEvent);
}

void TarnCustomTitleBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.fillRect(QRect(0, height() - 1, width(), 1), StylePainter::Line);

    int nLeft = kMargin;
    const QIcon icon = ShownIcon();
    if (!icon.isNull()) {
        const QRect place(nLeft, (height() - kIconSize) / 2, kIconSize, kIconSize);
        icon.paint(&painter, place, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
        nLeft += kIconSize + 8;
    }
    int nRight = width() - kMargin;
    for (const TitleBarButton *pButton : {m_pMinimizeBtn, m_pMaximizeBtn, m_pCloseBtn}) {
        if (!pButton->isHidden())
            nRight = qMin(nRight, pButton->x() - 8);
    }
    const bool bStrong = isEnabled() && isActiveWindow();
    painter.setPen(bStrong       ? StylePainter::Text
                   : isEnabled() ? StylePainter::TextWeak
                                 : StylePainter::TextDisabled);
    const QRect place(nLeft, 0, qMax(0, nRight - nLeft), height() - 1);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_strText, Qt::ElideRight, place.width()));
}

void TarnCustomTitleBar::mousePressEvent(QMouseEvent *pEvent)
{
    m_pressPos = pEvent->globalPos();
    m_eDrag = pEvent->button() == Qt::LeftButton ? Drag::Pressed : Drag::None;
}

void TarnCustomTitleBar::mouseMoveEvent(QMouseEvent *pEvent)
{
    const QPoint pos = pEvent->globalPos();
    switch (m_eDrag) {
    case Drag::None:
        break;
    case Drag::Pressed:
        // Only a real drag moves: the window manager takes the mouse over, and a double click would be lost.
        if ((pos - m_pressPos).manhattanLength() >= QApplication::startDragDistance())
            BeginMove(pos);
        break;
    case Drag::Grabbing:
        window()->windowHandle()->setMouseGrabEnabled(false);
        MoveWindow(pos);
        break;
    case Drag::OwnMove:
        window()->move(pos + m_windowOffset);
        break;
    }
}

// When this bar is a native window of its own, the top-level window has not seen the mouse, and would tell
// the window manager a wrong place where it was grabbed. So it gets the mouse first.
void TarnCustomTitleBar::BeginMove(const QPoint &globalPos)
{
    QWindow *pTopLevel = window()->windowHandle();
    if (windowHandle() && pTopLevel && pTopLevel->setMouseGrabEnabled(true))
        m_eDrag = Drag::Grabbing;
    else
        MoveWindow(globalPos);
}

void TarnCustomTitleBar::MoveWindow(const QPoint &globalPos)
{
    QWidget *pWindow = window();
    m_eDrag = Drag::None;
    if (pWindow->windowHandle() && pWindow->windowHandle()->startSystemMove())
        return;
    m_eDrag = Drag::OwnMove;
    m_windowOffset = pWindow->pos() - m_pressPos;
    if (pWindow->isMaximized()) {
        // The window comes off the screen's edges under the mouse, which keeps its share of the bar.
        const qreal dShare = qreal(globalPos.x() - pWindow->x()) / qMax(1, pWindow->width());
        pWindow->showNormal();
        m_windowOffset = QPoint(-qRound(dShare * pWindow->width()), -height() / 2);
    }
    pWindow->move(globalPos + m_windowOffset);
}

void TarnCustomTitleBar::mouseReleaseEvent(QMouseEvent *)
{
    if (m_eDrag == Drag::Grabbing)
        window()->windowHandle()->setMouseGrabEnabled(false);
    m_eDrag = Drag::None;
}

void TarnCustomTitleBar::mouseDoubleClickEvent(QMouseEvent *pEvent)
{
    if (pEvent->button() == Qt::LeftButton && (window()->windowFlags() & Qt::WindowMaximizeButtonHint))
        ToggleMaximized();
}

void TarnCustomTitleBar::contextMenuEvent(QContextMenuEvent *pEvent)
{
    cShowMenu(pEvent->globalPos());
}
