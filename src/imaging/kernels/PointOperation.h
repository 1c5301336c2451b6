// Runs a row kernel made with PointOperation-inl.h over an area, on all processors.
#pragma once

#include "imaging/kernels/RowBands.h"

namespace lumora {

/// Whether a result of that many pixels is too large to be found in a cache afterwards.
inline bool leavesCache(PixelRect area) {
    return std::int64_t(area.width()) * area.height() * 4 > (std::int64_t(8) << 20);
}

/// kernel(parameters, source, target, band, nonTemporal) for bands of the area.
template <typename Kernel, typename Parameters>
void runPointKernel(Kernel kernel, const Parameters &parameters, ConstPixelView source, PixelView target,
                    PixelRect area) {
    const bool nonTemporal = leavesCache(area);
    forBands(area, [&](PixelRect band) { kernel(parameters, source, target, band, nonTemporal); });
}

} // namespace lumora
