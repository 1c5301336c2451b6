// Invert: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Invert {
    bool red = true;
    bool green = true;
    bool blue = true;
};

/// Each channel named becomes 255 - value; the others and alpha are kept. Source and target have equal size and contain
/// area.
void applyInvert(const Invert &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
