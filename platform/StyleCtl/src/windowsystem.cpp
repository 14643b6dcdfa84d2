#include "windowsystem.h"

#include <KX11Extras>
#include <NETWM>
#include <QGuiApplication>
#include <QMargins>
#include <QWindow>
#include <QX11Info>

namespace {

NETStrut ExtentsOf(const QMargins &margins)
{
    NETStrut extents;
    extents.left = margins.left();
    extents.right = margins.right();
    extents.top = margins.top();
    extents.bottom = margins.bottom();
    return extents;
}

} // namespace

void WindowSystem::SetShadowMargins(QWindow *pWindow, const QMargins &margins)
{
    if (!QX11Info::isPlatformX11())
        return;
    NETWinInfo info(QX11Info::connection(), static_cast<xcb_window_t>(pWindow->winId()),
                    static_cast<xcb_window_t>(QX11Info::appRootWindow()), NET::Properties(),
                    NET::Properties2());
    info.setGtkFrameExtents(ExtentsOf(margins * pWindow->devicePixelRatio()));
}

bool WindowSystem::IsCompositing()
{
    return QX11Info::isPlatformX11() ? KX11Extras::compositingActive()
                                     : QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

void WindowSystem::WatchCompositing(QObject *pReceiver, const std::function<void()> &changed)
{
    if (QX11Info::isPlatformX11())
        QObject::connect(KX11Extras::self(), &KX11Extras::compositingChanged, pReceiver, changed);
}
