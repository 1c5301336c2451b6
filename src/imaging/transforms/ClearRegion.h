// Cutting a region out of a picture: what is not wanted becomes see-through. Called by the cut-out tool.
// Both answer a null picture for a null one and when memory is refused; their argument stays as it was.
#pragma once

#include "imaging/Region.h"

#include <QImage>

namespace lumora {

/// What is cut away: white, so that what knows no transparency shows paper, with alpha 0.
inline constexpr std::uint32_t clearedPixel = 0x00FFFFFF;

/// The part of the picture in that rectangle, which is cut to the picture first, with clearedPixel outside the region.
/// A null picture where nothing is left of the rectangle. Opaque where the picture is and the region fills the
/// rectangle.
QImage keptInRegion(const QImage &picture, const Region &region, PixelRect rectangle);

/// The picture with clearedPixel in the region; shared where that is empty.
QImage clearedInRegion(const QImage &picture, const Region &region);

} // namespace lumora
