// The guided filter of a picture's luma, as coefficients that can be enlarged: what local contrast differs from.
#pragma once

#include "imaging/PixelView.h"

namespace lumora {

/// Replaces each pixel of a small picture by the two coefficients of its base: luma * blue / 256 + green, in levels.
/// They come from a square of 2 * reach + 1 pixels, cut at the border, and are averaged over one as large: where the
/// luma varies little the base is its mean, at large edges the luma itself. (K. He, J. Sun, X. Tang, "Guided image
/// filtering", 2010, with the picture as its own guide.) Red becomes 0 and alpha 255. The cost of a pixel does not
/// depend on the reach. Throws std::bad_alloc.
void findLocalBase(PixelView small, int reach);

} // namespace lumora
