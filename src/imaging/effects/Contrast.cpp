#include "imaging/effects/Contrast.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Contrast.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

struct ContrastOperation {
    explicit ContrastOperation(int amount)
        : factor(static_cast<std::int16_t>((256 * (100 + std::clamp(amount, -100, 100)) + 50) / 100)) {}

    PixelVector operator()(PixelVector pixels) const {
        const Pixels d;
        const auto lowBytes = hn::Set(d, 0x00FF00FFU);
        const auto blueAndRed = stretched(hn::And(pixels, lowBytes));
        const auto green = hn::And(stretched(hn::And(hn::ShiftRight<8>(pixels), lowBytes)), hn::Set(d, 0x000000FFU));
        const auto alpha = hn::And(pixels, hn::Set(d, 0xFF000000U));
        return hn::Or(hn::Or(alpha, blueAndRed), hn::ShiftLeft<8>(green));
    }

    /// Two levels in the halves of each word.
    PixelVector stretched(PixelVector levels) const {
        const hn::Repartition<std::int16_t, Pixels> d16;
        const auto middle = hn::Set(d16, 128);
        // 7 + 8 bits of fraction, which the rounding product removes.
        const auto away = hn::ShiftLeft<7>(hn::Sub(hn::BitCast(d16, levels), middle));
        const auto level = hn::Add(hn::MulFixedPoint15(away, hn::Set(d16, factor)), middle);
        return hn::BitCast(Pixels(), hn::Min(hn::Max(level, hn::Zero(d16)), hn::Set(d16, 255)));
    }

    std::int16_t factor; ///< in 1 / 256
};

void contrastRows(const Contrast &parameters, ConstPixelView source, PixelView target, PixelRect area,
                  bool nonTemporal) {
    mapPixels(ContrastOperation(parameters.amount), source, target, area, nonTemporal);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(contrastRows);

void applyContrast(const Contrast &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    runPointKernel(HWY_DYNAMIC_DISPATCH(contrastRows), parameters, source, target, area);
}

} // namespace lumora
#endif
