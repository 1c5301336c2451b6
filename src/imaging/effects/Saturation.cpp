#include "imaging/effects/Saturation.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Saturation.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

struct SaturationOperation {
    explicit SaturationOperation(int amount)
        : factor(static_cast<std::int16_t>((512 * (100 + std::clamp(amount, -100, 100)) + 50) / 100)) {}

    PixelVector operator()(PixelVector pixels) const {
        const Pixels d;
        const auto lowBytes = hn::Set(d, 0x00FF00FFU);
        const auto grey = hn::BitCast(d, sum(pixels));
        const auto greys = hn::Or(grey, hn::ShiftLeft<16>(grey));
        const auto blueAndRed = stretched(hn::And(pixels, lowBytes), greys);
        const auto green =
            hn::And(stretched(hn::And(hn::ShiftRight<8>(pixels), lowBytes), greys), hn::Set(d, 0x000000FFU));
        const auto alpha = hn::And(pixels, hn::Set(d, 0xFF000000U));
        return hn::Or(hn::Or(alpha, blueAndRed), hn::ShiftLeft<8>(green));
    }

    /// Two levels in the halves of each word, and the greys they move away from.
    PixelVector stretched(PixelVector levels, PixelVector greys) const {
        const hn::Repartition<std::int16_t, Pixels> d16;
        const auto grey = hn::BitCast(d16, greys);
        // 6 + 9 bits of fraction, which the rounding product removes.
        const auto away = hn::ShiftLeft<6>(hn::Sub(hn::BitCast(d16, levels), grey));
        const auto level = hn::Add(hn::MulFixedPoint15(away, hn::Set(d16, factor)), grey);
        return hn::BitCast(Pixels(), hn::Min(hn::Max(level, hn::Zero(d16)), hn::Set(d16, 255)));
    }

    std::int16_t factor; ///< in 1 / 512
    WeightedSum sum = luma();
};

void saturationRows(const Saturation &parameters, ConstPixelView source, PixelView target, PixelRect area,
                    bool nonTemporal) {
    mapPixels(SaturationOperation(parameters.amount), source, target, area, nonTemporal);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(saturationRows);

void applySaturation(const Saturation &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    runPointKernel(HWY_DYNAMIC_DISPATCH(saturationRows), parameters, source, target, area);
}

} // namespace lumora
#endif
