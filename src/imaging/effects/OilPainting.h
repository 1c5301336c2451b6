// Oil painting: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct OilPainting {
    int brush = 6; ///< the radius in pixels, 0 (nothing changes) to 100; clamped
};

/// Every pixel becomes the mean (rounded, halves up) of those pixels of the square brush around it that belong to the
/// most frequent class of intensity there; of equally frequent classes the darkest is used. There are 16 classes of
/// luma (ITU-R BT.601). At the border the brush is clipped. The cost is nearly independent of the brush: column
/// histograms move down, and their sum moves along the row (Perreault and Hebert, "Median Filtering in Constant Time",
/// 2007). Pictures that are not opaque are painted with their colours multiplied by alpha. Source and target have equal
/// size and contain area. Returns false and changes nothing when memory allocation fails (a transparent picture needs
/// one more buffer of its size).
bool applyOilPainting(const OilPainting &parameters, ConstPixelView source, PixelView target, PixelRect area,
                      bool opaque);

} // namespace lumora
