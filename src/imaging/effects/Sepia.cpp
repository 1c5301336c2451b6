#include "imaging/effects/Sepia.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Sepia.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

// The matrix times 2^15, rounded.
struct SepiaOperation {
    PixelVector operator()(PixelVector pixels) const {
        const Pixels d;
        const auto alpha = hn::And(pixels, hn::Set(d, 0xFF000000U));
        return hn::Or(hn::Or(alpha, channel(toBlue, pixels)),
                      hn::Or(hn::ShiftLeft<8>(channel(toGreen, pixels)), hn::ShiftLeft<16>(channel(toRed, pixels))));
    }

    static PixelVector channel(const WeightedSum &sum, PixelVector pixels) {
        const hn::ScalableTag<std::int32_t> d32;
        return hn::BitCast(Pixels(), hn::Min(sum(pixels), hn::Set(d32, 255)));
    }

    WeightedSum toRed{6193, 25199, 12878};
    WeightedSum toGreen{5505, 22479, 11436};
    WeightedSum toBlue{4293, 17498, 8913};
};

void sepiaRows(const Sepia & /*parameters*/, ConstPixelView source, PixelView target, PixelRect area,
               bool nonTemporal) {
    mapPixels(SepiaOperation{}, source, target, area, nonTemporal);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(sepiaRows);

void applySepia(const Sepia &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    runPointKernel(HWY_DYNAMIC_DISPATCH(sepiaRows), parameters, source, target, area);
}

} // namespace lumora
#endif
