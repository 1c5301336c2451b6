// Posterise: the effect that the tests add as docs/how-to.md says.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Posterise {
    int levels = 4; ///< that are left of a channel's 256, 2 to 256; clamped
};

/// Each channel goes to the nearest of so many levels, spread evenly from 0 to 255. Alpha is kept. Source and target
/// have one size; the area lies within it.
void applyPosterise(const Posterise &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
