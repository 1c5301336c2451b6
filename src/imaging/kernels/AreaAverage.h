// Reducing by averaging: each result pixel is the mean of the source area that it covers, fractions of pixels counted
// as such. What the 480-pixel copy is made with.
#pragma once

#include "imaging/PixelView.h"

namespace lumora {

/// Fills the target, whose sides are 1 to the source's own. Exact: sums are integers, each result rounded once, halves
/// up. With `opaque` the alpha bytes are taken to be 255; else colours are weighted with alpha, and where all alpha is
/// 0 the result is 0. False when memory for a row of sums
/// per thread is refused.
bool averageArea(ConstPixelView source, PixelView target, bool opaque);

} // namespace lumora
