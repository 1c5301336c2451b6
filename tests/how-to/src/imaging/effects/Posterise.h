// Posterise: the effect that the tests add as docs/how-to.md says.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Posterise {
    int levels = 4; ///< that are left of a channel's 256, 2 to 256; clamped
};

/// Each channel is rounded to the nearest of that many levels, spread evenly from 0 to 255. Alpha is kept. Source and
/// target have equal size and contain area.
void applyPosterise(const Posterise &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
