#include "imaging/effects/Sepia.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Sepia.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

struct SepiaOperation {
    PixelVector operator()(PixelVector pixels) const {
        const Pixels d;
        const auto level = weighted(pixels);
        const auto alpha = hn::And(pixels, hn::Set(d, 0xFF000000U));
        return hn::Or(hn::Or(alpha, channel(level, 41943, 46)), hn::Or(hn::ShiftLeft<8>(channel(level, 57016, 23)),
                                                                       hn::ShiftLeft<16>(channel(level, 78643, -51))));
    }

    /// level * (slope + curve * level), in 65536ths.
    template <typename V> static PixelVector channel(V level, int slope, int curve) {
        const hn::ScalableTag<std::int32_t> d;
        const auto factor = hn::Add(hn::Set(d, slope), hn::Mul(level, hn::Set(d, curve)));
        return hn::BitCast(Pixels(), hn::ShiftRight<16>(hn::Add(hn::Mul(level, factor), hn::Set(d, 1 << 15))));
    }

    WeightedSum weighted = luma();
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
