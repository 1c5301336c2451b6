#include "imaging/effects/Greyscale.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Greyscale.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

struct GreyscaleOperation {
    PixelVector operator()(PixelVector pixels) const {
        const Pixels d;
        const auto grey = hn::BitCast(d, sum(pixels));
        const auto alpha = hn::And(pixels, hn::Set(d, 0xFF000000U));
        return hn::Or(hn::Or(alpha, grey), hn::Or(hn::ShiftLeft<8>(grey), hn::ShiftLeft<16>(grey)));
    }

    WeightedSum sum = luma();
};

void greyscaleRows(const Greyscale & /*parameters*/, ConstPixelView source, PixelView target, PixelRect area,
                   bool nonTemporal) {
    mapPixels(GreyscaleOperation{}, source, target, area, nonTemporal);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(greyscaleRows);

bool applyGreyscale(const Greyscale &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    if (parameters.mode != 0) {
        return false;
    }
    runPointKernel(HWY_DYNAMIC_DISPATCH(greyscaleRows), parameters, source, target, area);
    return true;
}

} // namespace lumora
#endif
