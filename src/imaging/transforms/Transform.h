// Turning, flipping, cropping and rotating a picture. Called by the tools and, for stored pictures, by PictureFile.
// Every function returns a null picture for a null one and when memory is refused; its argument is not changed.
#pragma once

#include "imaging/Region.h"
#include "imaging/transforms/FlipAndRotate.h"

#include <QImage>

namespace lumora {

/// The picture with its axes swapped and mirrored as the turn says; exact.
QImage turned(const QImage &picture, Turn turn);

QImage quarterTurnedClockwise(const QImage &picture);
QImage quarterTurnedAnticlockwise(const QImage &picture);
QImage halfTurned(const QImage &picture);
/// Top to bottom.
QImage flippedVertically(const QImage &picture);
/// Left to right.
QImage mirrored(const QImage &picture);

/// The picture rotated clockwise by any number of degrees, whole, in the smallest rectangle that holds it; the corners
/// that it leaves uncovered are opaque white. Bilinear, colours weighted with alpha; multiples of 90 degrees are exact,
/// and 0 returns the picture itself, shared. A null picture for an angle that is no number and for a result beyond
/// maxPicturePixels.
QImage rotated(const QImage &picture, double degrees);

/// The part of the picture inside the rectangle, which is clipped to the picture first. A null picture where nothing
/// is left. A rectangle as large as the picture returns the picture itself, shared.
QImage cropped(const QImage &picture, PixelRect rectangle);

} // namespace lumora
