// What the desktop can do: whether it shows translucent windows, and how the borderless windows look with and without
// that; whether it manages windows.
#pragma once

class QBitmap;
class QPainter;
class QRect;
class QSize;

namespace lumora {

/// True where what is behind a translucent window shows through it: on Wayland always, on X while a compositing
/// manager runs. False on an X server without one (such windows would be black there) and on any other platform.
bool translucencyWorks();

/// False on an X server without a window manager, where nobody maximises a window.
bool windowsAreManaged();

inline constexpr int windowBorder = 2; ///< pixels of a borderless window's edge, inside its shadow

/// Paints the surface of a borderless window of that place: paper with rounded corners and a shadow inside the margin
/// shadowMargin; where it is not translucent, an edge around the whole.
void paintWindow(QPainter &painter, const QRect &window, bool translucent);
/// The mask with rounded corners of a window that is not translucent.
QBitmap windowShape(const QSize &window);

} // namespace lumora
