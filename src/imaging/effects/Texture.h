// Texture: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Texture {
    ConstPixelView picture; ///< of the texture, repeated from the upper left corner
    int fade = 0;           ///< percent, 0 (the texture in full) to 100 (nothing of it); clamped
    int layout = 0;         ///< 0: tiled; there are no others
};

/// Lights and darkens the picture as the texture's luma (ITU-R BT.601) says: below 128 towards black, above it towards
/// white, at 128 not at all. This is the blend mode "hard-light" with a grey picture (W3C Compositing and Blending).
/// Transparent parts of the texture and the fade draw its luma towards 128. Alpha is kept. Source and target have one
/// size; the area lies within it. False, and nothing done, without a texture and for another layout. Throws
/// std::bad_alloc when memory for the part of the texture that is used is refused.
bool applyTexture(const Texture &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
