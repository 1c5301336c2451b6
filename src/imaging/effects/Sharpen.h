// Sharpening without a setting: what the box of the effect "Sharpen" applies.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Sharpen {
    double unit = 1; ///< pixels, see Convolution.h
};

/// The picture less its Laplacian: 0 -1 0 / -1 5 -1 / 0 -1 0 (Gonzalez and Woods, "Digital Image Processing", on
/// spatial sharpening). Edges, alpha and return value as in Convolution.h.
bool applySharpen(const Sharpen &parameters, ConstPixelView source, PixelView target, PixelRect area, bool opaque);

} // namespace lumora
