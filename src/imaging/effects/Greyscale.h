// Greyscale: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Greyscale {
    int mode = 0; ///< 0: the luma; the only mode
};

/// Every channel of a pixel becomes its luma, 0.299 R + 0.587 G + 0.114 B (ITU-R BT.601), rounded. Alpha is kept.
/// Source and target have equal size and contain area. Returns false and changes nothing for any other mode.
bool applyGreyscale(const Greyscale &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
