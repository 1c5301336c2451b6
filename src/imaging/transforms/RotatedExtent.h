// How much room a rotated picture needs, and what can be cut out of it upright. Used by rotated() and free rotation.
#pragma once

#include <QRect>
#include <QSize>

namespace lumora {

/// The smallest size in whole pixels that holds a picture rotated by that many degrees: that of rotated()'s result.
QSize rotatedExtent(QSize picture, double degrees);

/// The largest rectangle of rotated()'s result in which no pixel has anything of the white corners: in the middle,
/// with the picture's own proportions, which are exchanged where the picture rather stands on its side. In pixels of
/// the result. Null where none is left of a picture of a few pixels.
QRect insideRotated(QSize picture, double degrees);

} // namespace lumora
