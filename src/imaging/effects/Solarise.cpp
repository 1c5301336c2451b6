#include "imaging/effects/Solarise.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#include <algorithm>
#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Solarise.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

#ifndef LUMORA_SOLARISE_ONCE
#define LUMORA_SOLARISE_ONCE
namespace lumora {

/// The curve of a channel: a level below `turn` times `rise`, another one's distance from 255 times `fall`, in 256ths.
struct SolariseCurve {
    explicit SolariseCurve(int threshold) {
        const int t = std::clamp(threshold, 0, 255);
        const int peak = std::max(t, 255 - t);
        turn = static_cast<std::uint16_t>(t == 255 ? 256 : t);
        rise = static_cast<std::uint16_t>(t == 0 ? 0 : peak * 256 / t);
        fall = static_cast<std::uint16_t>(t == 255 ? 0 : peak * 256 / (255 - t));
    }

    std::uint16_t turn;
    std::uint16_t rise;
    std::uint16_t fall;
};

} // namespace lumora
#endif

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

/// Two channels of a pixel, one in each half of a word.
struct SolariseChannels {
    SolariseChannels(const SolariseCurve &low, const SolariseCurve &high)
        : turn(low.turn | std::uint32_t(high.turn) << 16), rise(low.rise | std::uint32_t(high.rise) << 16),
          fall(low.fall | std::uint32_t(high.fall) << 16) {}

    PixelVector operator()(PixelVector levels) const {
        const Pixels d;
        const hn::Repartition<std::uint16_t, Pixels> d16;
        const auto all = [&](std::uint32_t both) { return hn::BitCast(d16, hn::Set(d, both)); };
        const auto level = hn::BitCast(d16, levels);
        const auto rises = hn::Lt(level, all(turn));
        const auto length = hn::IfThenElse(rises, level, hn::Sub(hn::Set(d16, 255), level));
        const auto slope = hn::IfThenElse(rises, all(rise), all(fall));
        return hn::BitCast(d, hn::ShiftRight<8>(hn::Add(hn::Mul(length, slope), hn::Set(d16, 128))));
    }

    std::uint32_t turn;
    std::uint32_t rise;
    std::uint32_t fall;
};

struct SolariseOperation {
    PixelVector operator()(PixelVector pixels) const {
        const Pixels d;
        const auto lowBytes = hn::Set(d, 0x00FF00FFU);
        const auto changed = hn::Or(blueRed(hn::And(pixels, lowBytes)),
                                    hn::ShiftLeft<8>(greenOnly(hn::And(hn::ShiftRight<8>(pixels), lowBytes))));
        const auto colours = hn::And(hn::Xor(changed, hn::Set(d, sense)), hn::Set(d, 0x00FFFFFFU));
        return hn::Or(colours, hn::And(pixels, hn::Set(d, 0xFF000000U)));
    }

    SolariseChannels blueRed;
    SolariseChannels greenOnly;
    std::uint32_t sense; ///< all ones: invert the result
};

void solariseRows(const Solarise &parameters, ConstPixelView source, PixelView target, PixelRect area,
                  bool nonTemporal) {
    const SolariseCurve green(parameters.green);
    const SolariseOperation operation{
        {SolariseCurve(parameters.blue), SolariseCurve(parameters.red)}, {green, green}, parameters.above ? 0U : ~0U};
    mapPixels(operation, source, target, area, nonTemporal);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(solariseRows);

void applySolarise(const Solarise &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    runPointKernel(HWY_DYNAMIC_DISPATCH(solariseRows), parameters, source, target, area);
}

} // namespace lumora
#endif
