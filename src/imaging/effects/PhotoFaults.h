// What is wrong with the light of a photo, looked for on a reduced copy of it.
#pragma once

#include "imaging/PixelView.h"

#include <array>

namespace lumora {

/// How to correct a photo, in this order. Levels are 0 to 1, as the picture stores them (sRGB).
struct PhotoFaults {
    double black = 0; ///< subtracted; 0 to 0.5
    double scale = 1; ///< what is left is multiplied by this; 1 to 4
    std::array<double, 3> tint{0, 0,
                               0}; ///< logarithm of a factor for blue, green and red; takes out the light's colour
    double bend = 0;               ///< then t + bend * t * (1 - t): -0.9 (darker in the middle) to 0.9 (brighter)
};

/// Finds the faults of a picture of about 256 x 256 pixels. Pixels that are mostly transparent do not count. `doubt`, 0
/// to 2, is how much has to speak for a fault: with 1 a good photo keeps its light, a sunset its red and a forest its
/// green; with 0 every photo gets black, white and grey.
///
/// - Black and white are percentiles of the smallest and the largest channel.
/// - The light's colour is that of the brightest pixels (max-RGB of a percentile; B. Funt, L. Shi, "The rehabilitation
/// of
///   MaxRGB", CIC 2010), moved to the nearest cluster in the plane of log R/G and log B/G. It counts as far as pixels
///   of several brightnesses would get grey by it, and more of them than are grey now.
/// - The middle is bent where the median differs from what is usual in good photos; towards bright only as far as both
/// that of the luma and that of the largest channel are dark, because a deep red or blue has little luma.
///
/// A finding d counts with d^2 / (d^2 + t^2), like the gain of a Wiener filter: far below t it is taken for the photo's
/// own look, far above for a fault. The t were chosen on the sample photos, see docs/performance.md.
PhotoFaults findPhotoFaults(ConstPixelView small, double doubt);

} // namespace lumora
