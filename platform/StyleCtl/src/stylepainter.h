#ifndef STYLECTL_STYLEPAINTER_H
#define STYLECTL_STYLEPAINTER_H

#include <QColor>
#include <QPalette>
#include <QRect>

class QPainter;

/// The colours and the small drawings that the widgets share. GUI thread only.
namespace StylePainter {

inline constexpr QColor Accent(0xf7, 0x69, 0x00);
inline constexpr QColor AccentHover(0xff, 0x7e, 0x1f);
inline constexpr QColor AccentPressed(0xd9, 0x5c, 0x00);
inline constexpr QColor AccentPale(0xff, 0xf3, 0xea); // hovered, light controls
inline constexpr QColor AccentSoft(0xff, 0xe4, 0xd0); // selected or pressed, light controls
inline constexpr QColor Text(0x33, 0x33, 0x33);
inline constexpr QColor TextWeak(0x6c, 0x6c, 0x6c);
inline constexpr QColor TextDisabled(0x9a, 0x9e, 0xa5);
inline constexpr QColor Window(0xf2, 0xf3, 0xf5);
inline constexpr QColor Base(0xff, 0xff, 0xff);
inline constexpr QColor BaseAlternate(0xf8, 0xf9, 0xfa);
inline constexpr QColor Unfocused(0xec, 0xee, 0xf2); // selected, while the focus is elsewhere
inline constexpr QColor Header(0xea, 0xec, 0xef);
inline constexpr QColor HeaderHover(0xe0, 0xe3, 0xe8);
inline constexpr QColor Line(0xd9, 0xdc, 0xe1);
inline constexpr QColor Border(0xbf, 0xc3, 0xc9);
inline constexpr QColor ErrorRed(0xe0, 0x2b, 0x2b);

/// Side of a check box in device-independent pixels.
constexpr int kCheckBoxSize = 16;

/// Light palette for every window of the library, whatever the system's is.
QPalette LightPalette();

/// Square of a check box, centred in a cell.
QRect CheckBoxRect(const QRect &cell);

void DrawCheckBox(QPainter *pPainter, const QRect &box, Qt::CheckState eState, bool bEnabled, bool bHover);

/// Ring around a control that has the keyboard focus, just inside rect.
void DrawFocusRing(QPainter *pPainter, const QRect &rect, qreal dRadius);

/// Soft shadow around frame, as wide as nWidth on every side.
void DrawShadow(QPainter *pPainter, const QRect &frame, int nWidth);

} // namespace StylePainter

#endif
