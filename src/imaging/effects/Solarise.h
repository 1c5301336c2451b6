// Solarise: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Solarise {
    int red = 180; ///< thresholds, 0 to 255; clamped
    int green = 180;
    int blue = 180;
    bool above = true; ///< invert what lies above the threshold; else what lies at or below it
};

/// Inverts (255 - value) each channel of a pixel that lies above its threshold: what a darkroom's light does to a print
/// (the Sabattier effect, as image programs define it). Alpha is kept. Source and target have one size; the area lies
/// within it.
void applySolarise(const Solarise &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
