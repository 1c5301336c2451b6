#include "imaging/effects/Invert.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Invert.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

struct InvertOperation {
    PixelVector operator()(PixelVector pixels) const { return hn::Xor(pixels, hn::Set(Pixels(), flipped)); }

    std::uint32_t flipped;
};

void invertRows(const Invert &parameters, ConstPixelView source, PixelView target, PixelRect area, bool nonTemporal) {
    const std::uint32_t flipped =
        (parameters.red ? 0x00FF0000U : 0) | (parameters.green ? 0x0000FF00U : 0) | (parameters.blue ? 0x000000FFU : 0);
    mapPixels(InvertOperation{flipped}, source, target, area, nonTemporal);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(invertRows);

void applyInvert(const Invert &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    runPointKernel(HWY_DYNAMIC_DISPATCH(invertRows), parameters, source, target, area);
}

} // namespace lumora
#endif
