// Cutting a region out of a picture: the rest becomes transparent. Called by the cut-out tool.
// Both return a null picture for a null one and when memory is refused; their argument is not changed.
#pragma once

#include "imaging/Region.h"

#include <QImage>

namespace lumora {

/// What is cut away: white with alpha 0, so that programs without transparency show white.
inline constexpr std::uint32_t clearedPixel = 0x00FFFFFF;

/// How many times larger than the picture the regions are: their edge goes through pixels, which stay in part.
inline constexpr int edgeSteps = 4;

/// The part of the picture in that rectangle, which is cut to the picture first. A pixel keeps the share of its alpha
/// that is inside the region, in 1 / edgeSteps^2, and becomes clearedPixel where nothing is left. The region is one of
/// a picture of edgeSteps times the width and the height. A null picture where nothing is left of the rectangle. Opaque
/// where the picture is and the region fills the rectangle.
QImage keptInRegion(const QImage &picture, const Region &region, PixelRect rectangle);

/// The picture with what is in the region taken out in the same way; shared where the region is empty.
QImage clearedInRegion(const QImage &picture, const Region &region);

} // namespace lumora
