#include "imaging/effects/ColourEmboss.h"

#include "imaging/kernels/Convolution.h"

#include <algorithm>

namespace lumora {

bool applyColourEmboss(const ColourEmboss &parameters, ConstPixelView source, PixelView target, PixelRect area,
                       bool opaque) {
    const auto depth = static_cast<float>(std::clamp(parameters.depth, -10, 10));
    return applyConvolution({{-2 * depth, -depth, 0, -depth, 1, depth, 0, depth, 2 * depth}, 0, parameters.unit},
                            source, target, area, opaque);
}

} // namespace lumora
