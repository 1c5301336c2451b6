// Mosaic: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Mosaic {
    double tileWidth = 10; ///< pixels; clamped to 1 and to the picture
    double tileHeight = 10;
};

/// Every tile becomes its mean colour (rounded, halves up; colours weighted with alpha, so that invisible pixels have
/// no effect). Tiles start at the picture's upper left corner, their borders rounded to pixels; the last ones are cut
/// short. Only pixels of the area are written, from means of the whole tiles. Source and target have equal size and
/// contain area. Throws std::bad_alloc when memory for a row of sums cannot be allocated.
void applyMosaic(const Mosaic &parameters, ConstPixelView source, PixelView target, PixelRect area, bool opaque);

} // namespace lumora
