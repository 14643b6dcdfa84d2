#ifndef STYLECTL_WINDOWSYSTEM_H
#define STYLECTL_WINDOWSYSTEM_H

/// What the window system underneath can do. GUI thread only.
namespace WindowSystem {

/// Whether translucent windows are blended with what lies below them. Asked anew on every call (on X11 one
/// short connection), so a compositor that starts or ends later is noticed.
bool IsCompositing();

} // namespace WindowSystem

#endif
