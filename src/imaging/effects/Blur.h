// Blur: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Blur {
    double amount = 6; ///< the radius in pixels, 0 (nothing changes) or more; clamped to 0 and to 65535
};

/// A blur with the look of a Gaussian of standard deviation sqrt(amount * (amount + 1)): along each axis three means
/// over 2 * amount + 1 pixels one after the other (the central limit theorem; W3C Filter Effects Module,
/// "feGaussianBlur"), rounded to whole levels once an axis. Beyond the border the outermost pixel is repeated. A radius
/// is rounded to whole pixels; beyond 100 the picture averaged by a few pixels is blurred and enlarged. The cost does
/// not depend on the amount. Pictures that are not opaque are blurred with their colours multiplied by alpha.
/// Source and target have equal size and contain area. Allocates one more picture; returns false and changes nothing
/// when that fails.
bool applyBlur(const Blur &parameters, ConstPixelView source, PixelView target, PixelRect area, bool opaque);

/// The same, with a radius of 0 to 100, for the whole of an opaque picture, with the caller's memory for one more. All
/// have one size.
void blurBlock(int radius, ConstPixelView source, PixelView scratch, PixelView target);

} // namespace lumora
