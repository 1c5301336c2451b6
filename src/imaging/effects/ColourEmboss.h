// Colour emboss: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct ColourEmboss {
    int depth = 1;   ///< -10 (lit from the lower right) to 10 (from the upper left), 0 changes nothing; clamped
    double unit = 1; ///< pixels, see Convolution.h
};

/// A relief that keeps the colours: the picture plus depth times the difference across each pixel along the diagonal,
/// -2 -1 0 / -1 0 1 / 0 1 2. Edges, alpha and return value as in Convolution.h.
bool applyColourEmboss(const ColourEmboss &parameters, ConstPixelView source, PixelView target, PixelRect area,
                       bool opaque);

} // namespace lumora
