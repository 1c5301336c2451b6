// Solarise: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Solarise {
    int red = 180; ///< thresholds, 0 to 255; clamped
    int green = 180;
    int blue = 180;
    bool above = true; ///< invert values above the threshold; else those at or below it
};

/// Inverts (255 - value) each channel of a pixel that is above its threshold: the effect of light on a print in a
/// darkroom (the Sabattier effect, as image programs define it). Alpha is kept. Source and target have equal size and
/// contain area.
void applySolarise(const Solarise &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
