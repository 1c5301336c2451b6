// High-pass sharpening: what the effect "Sharpen" does at once.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct HighPassSharpen {
    int strength = 0; ///< 0 to 100, clamped
    double unit = 1;  ///< pixels, see Convolution.h
};

/// An unsharp mask: the picture plus (2 + strength / 32) times its detail, the difference to its mean with the weights
/// 1 2 1 / 2 4 2 / 1 2 1. Edges, alpha and return value as in Convolution.h.
bool applyHighPassSharpen(const HighPassSharpen &parameters, ConstPixelView source, PixelView target, PixelRect area,
                          bool opaque);

} // namespace lumora
