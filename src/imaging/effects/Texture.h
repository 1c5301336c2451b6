// Texture: the effect of that name, a photo on a woven canvas.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Texture {
    double unit = 1; ///< a thread is 3.5 of these wide, in pixels; 0.01 to 1000, clamped
    int fade = 0;    ///< percent, 0 (full texture) to 100 (no texture); clamped
    int layout = 0;  ///< 0: over the whole picture; the only layout
};

/// Lightens and darkens the picture like a canvas in plain weave that is lit from the upper left: each crossing of two
/// threads shows the upper one as a round bulge. Threads differ in width and tone by a hash of their number from the
/// picture's corner, so that nothing repeats and every processor draws the same. Each pixel has the mean of the weave
/// over its square, so that a reduced picture looks as the picture with the texture, reduced. Light and dark are mixed
/// in as shares of white and black (the blend mode "hard-light" of W3C Compositing and Blending). Alpha is kept. Source
/// and target have equal size and contain area. Returns false and changes nothing for any other layout. Throws
/// std::bad_alloc when memory for some rows is refused.
bool applyTexture(const Texture &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
