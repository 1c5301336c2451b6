// Convolution with a kernel of 3 x 3: an effect, and what sharpening and embossing are made of.
#pragma once

#include "imaging/Region.h"

#include <array>

namespace lumora {

struct Convolution {
    std::array<float, 9> coefficients{0, 0, 0, 0, 1, 0, 0, 0, 0}; ///< row by row; clamped to -32767 to 32767
    int offset = 0;  ///< levels, added at the end; -32767 to 32767; clamped
    double unit = 1; ///< pixels from one place of the kernel to the next; at 1 or below, 1
};

/// Each channel becomes the sum of the nine pixels around it, each times its coefficient, plus the offset; rounded, cut
/// at 0 and 255. Coefficients are taken as 16-bit fixed point with as many bits after the point (14 at most) as the
/// largest leaves. Beyond the border the outermost pixel is repeated. Alpha is kept; pictures that are not opaque are
/// computed with colours and offset multiplied by alpha. Source and target have equal size and contain area.
/// With a unit above 1 that is done to the picture averaged by the unit, and the enlarged difference is added to the
/// picture, whose own detail thus stays.
/// False, and nothing done, when a coefficient is not a number or infinite, or when memory is refused (a transparent
/// picture takes that of one more).
bool applyConvolution(const Convolution &parameters, ConstPixelView source, PixelView target, PixelRect area,
                      bool opaque);

} // namespace lumora
