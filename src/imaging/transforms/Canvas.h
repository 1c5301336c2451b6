// What the canvas does to a few pixels of its picture in place: the red-eye fix and the paste through a region.
#pragma once

#include "imaging/Region.h"

#include <QImage>

namespace lumora {

/// The part of a picture of that size in which removeRedEye changes pixels; empty where it changes none.
PixelRect redEyeBounds(int pictureWidth, int pictureHeight, int x, int y, int radius);

/// Takes the red out of every pixel whose distance from pixel (x, y) is at most the radius (in pixels; below 0 there
/// are none): red becomes the larger of green and blue; green, blue and alpha stay. To decide that, the pixel is read
/// as the number red + 256 green + 65536 blue, and the channels as round(n / 256) and round(n / 65536), halves to even,
/// each modulo 256: above a red of 128 green reads one higher than it is, and 255 becomes 0. White stays white and pure
/// red becomes black in spite of that. Any integers will do; what is outside the picture is ignored. False, and nothing
/// done, for no picture or when memory is refused.
bool removeRedEye(QImage &picture, int x, int y, int radius);

/// Copies the pixels of `source` that meet the region onto the picture, with the source's upper left corner at
/// (left, top) of the picture. The region belongs to the picture. Strength 0 to 100 per cent, clamped: below 100 the
/// two are mixed, weighted with alpha. Nothing outside the region changes. Both picture formats will do; the result is
/// Format_ARGB32 where either is. False, and nothing done, for no picture or when memory is refused.
bool pasteThrough(QImage &picture, const QImage &source, const Region &region, int left, int top, int strength);

} // namespace lumora
