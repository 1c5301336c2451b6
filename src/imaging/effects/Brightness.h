// Brightness: the first of the three adjustments of colour.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Brightness {
    int amount = 50; ///< levels, -255 to 255; clamped
};

/// Adds the amount to each channel, cut at 0 and 255. Alpha is kept. Source and target have equal size and contain
/// area.
void applyBrightness(const Brightness &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
