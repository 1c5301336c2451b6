#include "imaging/effects/Brightness.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Brightness.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

struct BrightnessOperation {
    explicit BrightnessOperation(int amount)
        : up(static_cast<std::uint32_t>(std::clamp(amount, 0, 255)) * 0x00010101U),
          down(static_cast<std::uint32_t>(-std::clamp(amount, -255, 0)) * 0x00010101U) {}

    PixelVector operator()(PixelVector pixels) const {
        const Pixels d;
        const hn::Repartition<std::uint8_t, Pixels> d8;
        const auto brighter = hn::SaturatedAdd(hn::BitCast(d8, pixels), hn::BitCast(d8, hn::Set(d, up)));
        return hn::BitCast(d, hn::SaturatedSub(brighter, hn::BitCast(d8, hn::Set(d, down))));
    }

    std::uint32_t up; ///< added to and subtracted from each byte; one of the two is 0
    std::uint32_t down;
};

void brightnessRows(const Brightness &parameters, ConstPixelView source, PixelView target, PixelRect area,
                    bool nonTemporal) {
    mapPixels(BrightnessOperation(parameters.amount), source, target, area, nonTemporal);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(brightnessRows);

void applyBrightness(const Brightness &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    runPointKernel(HWY_DYNAMIC_DISPATCH(brightnessRows), parameters, source, target, area);
}

} // namespace lumora
#endif
