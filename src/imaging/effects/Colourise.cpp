#include "imaging/effects/Colourise.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Colourise.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

struct ColouriseOperation {
    explicit ColouriseOperation(const Colourise &colour)
        : red(shares(colour.red)), green(shares(colour.green)), blue(shares(colour.blue)) {}

    /// Factors of the two halves of the ramp, as a pair of 16-bit numbers.
    static std::uint32_t shares(int level) {
        const auto clamped = static_cast<std::uint32_t>(std::clamp(level, 0, 255));
        return (255 - clamped) << 16 | clamped;
    }

    PixelVector operator()(PixelVector pixels) const {
        const Pixels d;
        const hn::ScalableTag<std::int32_t> d32;
        const auto twice = hn::ShiftLeft<1>(sum(pixels));
        const auto limit = hn::Set(d32, 255);
        const auto toColour = hn::Min(twice, limit);
        const auto toWhite = hn::Max(hn::Sub(twice, limit), hn::Zero(d32));
        const auto ramp = hn::BitCast(d, hn::Or(toColour, hn::ShiftLeft<16>(toWhite)));
        const auto alpha = hn::And(pixels, hn::Set(d, 0xFF000000U));
        return hn::Or(hn::Or(alpha, channel(ramp, blue)),
                      hn::Or(hn::ShiftLeft<8>(channel(ramp, green)), hn::ShiftLeft<16>(channel(ramp, red))));
    }

    static PixelVector channel(PixelVector ramp, std::uint32_t factors) {
        const Pixels d;
        const hn::Repartition<std::int16_t, Pixels> d16;
        const hn::ScalableTag<std::int32_t> d32;
        auto second = hn::Zero(d32);
        const auto sum = hn::ReorderWidenMulAccumulate(
            d32, hn::BitCast(d16, ramp), hn::BitCast(d16, hn::Set(d, factors)), hn::Set(d32, 128), second);
        // x / 255, rounded, for x up to 255 * 255: with t = x + 128 it is (t + (t >> 8)) >> 8.
        const auto t = hn::RearrangeToOddPlusEven(sum, second);
        return hn::BitCast(d, hn::ShiftRight<8>(hn::Add(t, hn::ShiftRight<8>(t))));
    }

    std::uint32_t red;
    std::uint32_t green;
    std::uint32_t blue;
    WeightedSum sum = luma();
};

void colouriseRows(const Colourise &parameters, ConstPixelView source, PixelView target, PixelRect area,
                   bool nonTemporal) {
    mapPixels(ColouriseOperation(parameters), source, target, area, nonTemporal);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(colouriseRows);

void applyColourise(const Colourise &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    runPointKernel(HWY_DYNAMIC_DISPATCH(colouriseRows), parameters, source, target, area);
}

} // namespace lumora
#endif
