// Cutting a region out of a picture: the rest becomes transparent. Called by the cut-out tool.
// Both return a null picture for a null one and when memory is refused; their argument is not changed.
#pragma once

#include "imaging/Region.h"

#include <QImage>

namespace lumora {

/// What is cut away: white with alpha 0, so that programs without transparency show white.
inline constexpr std::uint32_t clearedPixel = 0x00FFFFFF;

/// The part of the picture in that rectangle, which is cut to the picture first, with clearedPixel outside the region.
/// A null picture where nothing is left of the rectangle. Opaque where the picture is and the region fills the
/// rectangle.
QImage keptInRegion(const QImage &picture, const Region &region, PixelRect rectangle);

/// The picture with clearedPixel in the region; shared where that is empty.
QImage clearedInRegion(const QImage &picture, const Region &region);

} // namespace lumora
