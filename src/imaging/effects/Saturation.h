// Saturation: the third of the three adjustments of colour.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Saturation {
    int amount = 50; ///< percent, -100 (greyscale) to 100 (twice the colour); clamped
};

/// Moves each channel away from the pixel's luma (ITU-R BT.601): luma + (value - luma) * factor, rounded, cut at 0 and
/// 255, where the factor is 1 + amount / 100 in steps of 1 / 512. Alpha is kept. Source and target have equal size and
/// contain area.
void applySaturation(const Saturation &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
