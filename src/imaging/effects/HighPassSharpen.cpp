#include "imaging/effects/HighPassSharpen.h"

#include "imaging/kernels/Convolution.h"

#include <algorithm>

namespace lumora {

bool applyHighPassSharpen(const HighPassSharpen &parameters, ConstPixelView source, PixelView target, PixelRect area,
                          bool opaque) {
    // Multiples of 1 / 512, which fixed point holds exactly: a plain area must keep its level.
    const float corner = -(2 + static_cast<float>(std::clamp(parameters.strength, 0, 100)) / 32) / 16;
    const float side = 2 * corner;
    const float middle = 1 - 12 * corner;
    return applyConvolution({{corner, side, corner, side, middle, side, corner, side, corner}, 0, parameters.unit},
                            source, target, area, opaque);
}

} // namespace lumora
