#ifndef STYLECTL_WINDOWSYSTEM_H
#define STYLECTL_WINDOWSYSTEM_H

class QMargins;
class QWindow;

/// What the window system underneath can do. GUI thread only.
namespace WindowSystem {

/// Whether translucent windows are blended with what lies below them. Asked anew on every call (on X11 one
/// short connection), so a compositor that starts or ends later is noticed.
bool IsCompositing();

/// Tells the window manager which margins of a window are shadow (device-independent pixels), so that it
/// aligns the visible frame and draws no shadow of its own. Nothing where that cannot be told.
void SetShadowMargins(QWindow *pWindow, const QMargins &margins);

/// X11: type of the event that reports a selection's new owner (XFixes, SelectionNotify); -1 elsewhere.
int SelectionEventType();

} // namespace WindowSystem

#endif
