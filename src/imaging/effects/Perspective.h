// Perspective: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Perspective {
    int angle = -30; ///< degrees, -60 to 60, clamped; above 0 the right side recedes, below 0 the left one
    int red = 255;   ///< the background colour, 0 to 255 per channel; clamped
    int green = 255;
    int blue = 255;
    bool clearBesideHoles = false; ///< a picture that is not opaque gets a transparent background instead
};

/// Rotates the picture about its vertical axis, viewed from 1.5 times its width: a projective map. The near side keeps
/// its height, and the picture is centred. Bilinear, with weights of 1 / 256; the outline fades into the background
/// over one pixel; colours of transparent pictures are mixed multiplied by alpha. Source and target have equal size and
/// contain area. Returns false and changes nothing when memory allocation fails (a transparent picture needs one more
/// buffer of its size).
bool applyPerspective(const Perspective &parameters, ConstPixelView source, PixelView target, PixelRect area,
                      bool opaque);

} // namespace lumora
