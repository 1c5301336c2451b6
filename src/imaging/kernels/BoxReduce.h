// Halving, quartering and so on: the mip levels that the view paints from.
#pragma once

#include "imaging/PixelView.h"

namespace lumora {

/// Each target pixel becomes the mean of a block of factor x factor source pixels (factor 2, 4, 8 or 16), rounded,
/// halves up; the blocks at the right and lower border are cut short. The target's sides are the source's divided by
/// the factor, rounded up. With `opaque` alpha is taken to be 255; else colours are weighted with alpha, and where all
/// alpha is 0 the result is 0.
void boxReduce(ConstPixelView source, PixelView target, int factor, bool opaque);

} // namespace lumora
