#include "imaging/effects/BlackAndWhite.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/BlackAndWhite.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

struct BlackAndWhiteOperation {
    PixelVector operator()(PixelVector pixels) const {
        const Pixels d;
        const hn::ScalableTag<std::int32_t> d32;
        const auto white = hn::VecFromMask(d32, hn::Gt(sum(pixels), hn::Set(d32, threshold)));
        const auto alpha = hn::And(pixels, hn::Set(d, 0xFF000000U));
        return hn::Or(alpha, hn::And(hn::BitCast(d, white), hn::Set(d, 0x00FFFFFFU)));
    }

    int threshold;
    WeightedSum sum = luma();
};

void blackAndWhiteRows(const BlackAndWhite &parameters, ConstPixelView source, PixelView target, PixelRect area,
                       bool nonTemporal) {
    mapPixels(BlackAndWhiteOperation{parameters.threshold}, source, target, area, nonTemporal);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(blackAndWhiteRows);

void applyBlackAndWhite(const BlackAndWhite &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    const BlackAndWhite clamped{std::clamp(parameters.threshold, 0, 255)};
    runPointKernel(HWY_DYNAMIC_DISPATCH(blackAndWhiteRows), clamped, source, target, area);
}

} // namespace lumora
#endif
