// The pointer as pictures and films show it. No picture of a window has one, and a small one is easily missed.
#pragma once

#include <QPoint>

class QPainter;

namespace lumora::play {

/// Paints a large arrow whose tip is at `tip`, in logical pixels; `pressed` adds a ring around it.
void paintPointer(QPainter &painter, QPoint tip, bool pressed);

} // namespace lumora::play
