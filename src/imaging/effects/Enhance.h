// Enhance: one press that makes a photo better. The fourth of the adjustments of colour.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Enhance {
    int amount = 50; ///< 0 (nothing) to 100 (all that can be corrected); clamped
};

/// Finds what is wrong with the photo's light in the whole source (see PhotoFaults.h) and corrects it in the area:
/// levels, the light's colour, the brightness of the middle, and a little local contrast. Up to 50 the correction of 50
/// fades in; above, less and less has to speak for a fault. A source without faults gets nothing but the local
/// contrast.
///
/// Local contrast: what differs from a base is strengthened by up to a quarter, most in middle tones and not at all
/// next to black and white. The base is the guided filter of the luma (K. He, J. Sun, "Fast guided filter", 2015),
/// which does not smooth large edges, so that they get no halo; its coefficients are computed on a reduced copy and
/// enlarged.
///
/// The source is reduced to 256 pixels of the longer side to look at; so a reduced copy of a photo gets the same
/// correction as the photo. `opaque`: all alpha is 255. Alpha is kept. Source and target have equal size, are different
/// memory and contain area. False when memory is refused; may throw std::bad_alloc.
bool applyEnhance(const Enhance &parameters, ConstPixelView source, PixelView target, PixelRect area, bool opaque);

} // namespace lumora
