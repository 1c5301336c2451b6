// Texture: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Texture {
    ConstPixelView picture; ///< of the texture, repeated from the upper left corner
    int fade = 0;           ///< percent, 0 (full texture) to 100 (no texture); clamped
    int layout = 0;         ///< 0: tiled; the only layout
};

/// Lightens and darkens the picture by the texture's luma (ITU-R BT.601): below 128 towards black, above it towards
/// white, at 128 not at all. This is the blend mode "hard-light" with a grey picture (W3C Compositing and Blending).
/// Transparency of the texture and the fade move its luma towards 128. Alpha is kept. Source and target have equal
/// size and contain area. Returns false and changes nothing without a texture or for any other layout. Throws
/// std::bad_alloc when memory for the part of the texture that is used cannot be allocated.
bool applyTexture(const Texture &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
