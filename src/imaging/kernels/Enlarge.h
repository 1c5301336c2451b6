// Enlarging what was computed on a reduced picture, and laying it over the picture itself: how effects work in units
// of several pixels without losing the photo's own detail.
#pragma once

#include "imaging/PixelView.h"
#include "imaging/Region.h"

namespace lumora {

/// Fills the area with the enlarged `small`, bilinear, with weights of 1 / 128. Beyond the middle of an outermost pixel
/// that pixel is repeated. Throws std::bad_alloc when memory for a row per thread is refused.
void enlarge(ConstPixelView small, PixelView target, PixelRect area);

/// target = photo + the enlarged difference of `changed` to `small`, which have one size; each byte is cut at 0 and
/// 255. Photo and target have one size. Throws as above.
void addEnlargedDifference(ConstPixelView photo, ConstPixelView small, ConstPixelView changed, PixelView target,
                           PixelRect area);

} // namespace lumora
