// Colours multiplied by alpha and back: what mixes neighbouring pixels works on such pictures, or invisible colours
// would show at the edges.
#pragma once

#include "imaging/PixelView.h"

namespace lumora {

/// target = source with each colour times alpha / 255, rounded. Of one size.
void premultiply(ConstPixelView source, PixelView target);
/// The way back, in place: colour * 255 / alpha, rounded and cut at 255; 0 where alpha is 0.
void unpremultiply(PixelView picture);

} // namespace lumora
