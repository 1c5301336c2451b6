// Solarise: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Solarise {
    int red = 180; ///< thresholds, 0 to 255; clamped
    int green = 180;
    int blue = 180;
    bool above = true; ///< levels above the threshold fall; else those below it, and the others rise
};

/// What light does to a print in a darkroom (the Sabattier effect), without a tear in skies and skin: each channel
/// rises with its level up to the threshold T and falls above it, to 0 at 255. The level at T is the larger of T and
/// 255 - T, so that one side is as image programs have it, where it is the larger one: the level itself below a T above
/// 127, 255 less the level above a T below 128. T = 0 inverts all, T = 255 changes nothing. With `above` false the
/// result is inverted. Rounded; alpha is kept. Source and target have equal size and contain area.
void applySolarise(const Solarise &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
