#ifndef STYLECTL_WINDOWSYSTEM_H
#define STYLECTL_WINDOWSYSTEM_H

#include <functional>

class QMargins;
class QObject;
class QWindow;

/// What the window system underneath can do. GUI thread only.
namespace WindowSystem {

/// Whether translucent windows are blended with what lies below them.
bool IsCompositing();

/// Calls the function whenever a compositor has started or ended, for as long as the receiver lives.
void WatchCompositing(QObject *pReceiver, const std::function<void()> &changed);

/// Tells the window manager which margins of a window are shadow (device-independent pixels), so that it
/// aligns the visible frame and draws no shadow of its own. Nothing where that cannot be told.
void SetShadowMargins(QWindow *pWindow, const QMargins &margins);

} // namespace WindowSystem

#endif
