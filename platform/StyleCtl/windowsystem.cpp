#include "windowsystem.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QMargins>
#include <QWindow>

#include <array>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace {

using ConnectionPtr = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

xcb_atom_t Atom(xcb_connection_t *pConnection, const QByteArray &name, bool bCreate)
{
    const auto cookie =
        xcb_intern_atom(pConnection, !bCreate, static_cast<uint16_t>(name.size()), name.constData());
    xcb_intern_atom_reply_t *pReply = xcb_intern_atom_reply(pConnection, cookie, nullptr);
    const xcb_atom_t atom = pReply ? pReply->atom : xcb_atom_t(XCB_ATOM_NONE);
    std::free(pReply);
    return atom;
}

// A compositing manager owns the selection _NET_WM_CM_Sn of its screen (Extended Window Manager Hints,
// "Compositing Managers").
bool IsX11Compositing()
{
    int nScreen = 0;
    const ConnectionPtr pConnection(xcb_connect(nullptr, &nScreen), &xcb_disconnect);
    if (xcb_connection_has_error(pConnection.get()))
        return false;
    const xcb_atom_t selection = Atom(pConnection.get(), "_NET_WM_CM_S" + QByteArray::number(nScreen), false);
    if (selection == XCB_ATOM_NONE)
        return false;
    xcb_get_selection_owner_reply_t *pReply = xcb_get_selection_owner_reply(
        pConnection.get(), xcb_get_selection_owner(pConnection.get(), selection), nullptr);
    const bool bOwned = pReply && pReply->owner != XCB_NONE;
    std::free(pReply);
    return bOwned;
}

} // namespace

void WindowSystem::SetShadowMargins(QWindow *pWindow, const QMargins &margins)
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return;
    const ConnectionPtr pConnection(xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(pConnection.get()))
        return;
    // Not in a standard, but read by the window managers that know such windows: left, right, top, bottom.
    const QMargins native = margins * pWindow->devicePixelRatio();
    const std::array<uint32_t, 4> extents{uint32_t(native.left()), uint32_t(native.right()),
                                          uint32_t(native.top()), uint32_t(native.bottom())};
    const auto cookie = xcb_change_property_checked(pConnection.get(), XCB_PROP_MODE_REPLACE,
                                                    static_cast<xcb_window_t>(pWindow->winId()),
                                                    Atom(pConnection.get(), "_GTK_FRAME_EXTENTS", true),
                                                    XCB_ATOM_CARDINAL, 32, extents.size(), extents.data());
    // Waits: what is still on its way when a connection ends is lost.
    std::free(xcb_request_check(pConnection.get(), cookie));
}

int WindowSystem::SelectionEventType()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return -1;
    const ConnectionPtr pConnection(xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(pConnection.get()))
        return -1;
    const QByteArray name("XFIXES");
    const auto cookie =
        xcb_query_extension(pConnection.get(), static_cast<uint16_t>(name.size()), name.constData());
    xcb_query_extension_reply_t *pReply = xcb_query_extension_reply(pConnection.get(), cookie, nullptr);
    const int nType = pReply && pReply->present ? pReply->first_event : -1; // the extension's first
    std::free(pReply);
    return nType;
}

bool WindowSystem::IsCompositing()
{
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("xcb"))
        return IsX11Compositing();
    return platform.startsWith(QLatin1String("wayland"));
}
