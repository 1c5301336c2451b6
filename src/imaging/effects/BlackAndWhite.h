// Black and white: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct BlackAndWhite {
    int threshold = 127; ///< 0 to 255; clamped
};

/// Every pixel of the area becomes white where its luma (ITU-R BT.601, rounded to whole levels) is above the threshold,
/// else black. Alpha is kept. Source and target have equal size and contain area.
void applyBlackAndWhite(const BlackAndWhite &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
