// Contrast: the second of the three adjustments of colour.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Contrast {
    int amount = 50; ///< percent, -100 (all middle grey) to 100 (twice the contrast); clamped
};

/// Moves each channel away from the middle: 128 + (value - 128) * factor, rounded, cut at 0 and 255, where the factor
/// is 1 + amount / 100 in steps of 1 / 256. Alpha is kept. Source and target have equal size and contain area.
void applyContrast(const Contrast &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
