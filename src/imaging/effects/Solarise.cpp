#include "imaging/effects/Solarise.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Solarise.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

struct SolariseOperation {
    PixelVector operator()(PixelVector pixels) const {
        const Pixels d;
        const hn::Repartition<std::uint8_t, Pixels> d8;
        const auto bytes = hn::BitCast(d8, pixels);
        const auto atMost = hn::Eq(hn::Min(bytes, hn::BitCast(d8, hn::Set(d, thresholds))), bytes);
        const auto flipped = hn::Xor(hn::BitCast(d, hn::VecFromMask(d8, atMost)), hn::Set(d, sense));
        return hn::Xor(pixels, hn::And(flipped, hn::Set(d, 0x00FFFFFFU)));
    }

    std::uint32_t thresholds; ///< one a byte
    std::uint32_t sense;      ///< all ones: flip what is not at most the threshold
};

void solariseRows(const Solarise &parameters, ConstPixelView source, PixelView target, PixelRect area,
                  bool nonTemporal) {
    const auto byte = [](int threshold) { return static_cast<std::uint32_t>(std::clamp(threshold, 0, 255)); };
    const std::uint32_t thresholds = byte(parameters.red) << 16 | byte(parameters.green) << 8 | byte(parameters.blue);
    mapPixels(SolariseOperation{thresholds, parameters.above ? ~0U : 0U}, source, target, area, nonTemporal);
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
