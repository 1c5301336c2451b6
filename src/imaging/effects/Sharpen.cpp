#include "imaging/effects/Sharpen.h"

#include "imaging/kernels/Convolution.h"

namespace lumora {

bool applySharpen(const Sharpen &parameters, ConstPixelView source, PixelView target, PixelRect area, bool opaque) {
    return applyConvolution({{0, -1, 0, -1, 5, -1, 0, -1, 0}, 0, parameters.unit}, source, target, area, opaque);
}

} // namespace lumora
