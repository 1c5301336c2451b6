// Perspective: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Perspective {
    int angle = -30; ///< degrees, -60 to 60, clamped; above 0 the right side goes away, below it the left one
    int red = 255;   ///< what shows behind the picture, 0 to 255 a channel; clamped
    int green = 255;
    int blue = 255;
};

/// Turns the picture about its vertical axis and looks at it from one and a half of its widths: a projective map. The
/// near side keeps its height, and the picture stands in the middle. Bilinear, with weights of 1 / 256; the outline
/// fades into the background over one pixel; colours of transparent pictures are mixed multiplied by alpha. Source and
/// target have one size; the area lies within it. False, and nothing done, when memory is refused (a transparent
/// picture takes that of one more).
bool applyPerspective(const Perspective &parameters, ConstPixelView source, PixelView target, PixelRect area,
                      bool opaque);

} // namespace lumora
