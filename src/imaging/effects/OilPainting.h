// Oil painting: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct OilPainting {
    int brush = 6; ///< the radius in pixels, 0 (nothing changes) to 100; clamped
};

/// Every pixel becomes the mean (rounded, halves up) of those pixels of the square brush around it that lie in the most
/// frequent class of intensity there; of equally frequent ones the darkest counts. There are 16 classes of luma (ITU-R
/// BT.601). At the border the brush is cut. The cost hardly depends on the brush: histograms of columns slide down, and
/// their sum slides along the row (Perreault and Hebert, "Median Filtering in Constant Time", 2007). Pictures that are
/// not opaque are painted with their colours multiplied by alpha. Source and target have one size; the area lies within
/// it. False, and nothing done, when memory is refused (a transparent picture takes that of one more).
bool applyOilPainting(const OilPainting &parameters, ConstPixelView source, PixelView target, PixelRect area,
                      bool opaque);

} // namespace lumora
