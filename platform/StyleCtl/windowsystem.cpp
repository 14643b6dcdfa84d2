#include "windowsystem.h"

#include <QByteArray>
#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace {

using ConnectionPtr = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

xcb_atom_t Atom(xcb_connection_t *pConnection, const QByteArray &name)
{
    const auto cookie = xcb_intern_atom(pConnection, 1, static_cast<uint16_t>(name.size()), name.constData());
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
    const xcb_atom_t selection = Atom(pConnection.get(), "_NET_WM_CM_S" + QByteArray::number(nScreen));
    if (selection == XCB_ATOM_NONE)
        return false;
    xcb_get_selection_owner_reply_t *pReply = xcb_get_selection_owner_reply(
        pConnection.get(), xcb_get_selection_owner(pConnection.get(), selection), nullptr);
    const bool bOwned = pReply && pReply->owner != XCB_NONE;
    std::free(pReply);
    return bOwned;
}

} // namespace

bool WindowSystem::IsCompositing()
{
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("xcb"))
        return IsX11Compositing();
    return platform.startsWith(QLatin1String("wayland"));
}
