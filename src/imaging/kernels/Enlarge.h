// Enlarging what was computed on a reduced picture, and laying it over the picture itself: how effects work in units
// of several pixels without losing the photo's own detail.
#pragma once

#include "imaging/PixelView.h"
#include "imaging/Region.h"

namespace lumora {

/// Fills the area with the enlarged `small`: quadratic B-splines, whose slope has no jumps, so that its grid cannot be
/// seen. They soften by half a pixel of `small`. Beyond the border the outermost pixel is repeated. Target and `small`
/// are different memory. Throws std::bad_alloc when memory for some rows per thread is refused.
void enlarge(ConstPixelView small, PixelView target, PixelRect area);

/// target = photo + the enlarged difference of `changed` to `small`, which have one size; each byte is cut at 0 and
/// 255. Photo and target have one size and are different memory. Throws as above.
void addEnlargedDifference(ConstPixelView photo, ConstPixelView small, ConstPixelView changed, PixelView target,
                           PixelRect area);

} // namespace lumora
