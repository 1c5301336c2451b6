#include "imaging/kernels/AlphaBytes.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#include <atomic>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/kernels/AlphaBytes.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

bool opaqueRow(const std::uint8_t *row, int width) {
    const Pixels d;
    const auto *pixels = reinterpret_cast<const std::uint32_t *>(row);
    const auto count = static_cast<std::size_t>(width);
    const std::size_t lanes = hn::Lanes(d);
    auto common = hn::Set(d, 0xFF000000U);
    std::size_t x = 0;
    for (; x + lanes <= count; x += lanes) {
        common = hn::And(common, hn::LoadU(d, pixels + x));
    }
    std::uint32_t rest = 0xFF000000U;
    for (; x < count; ++x) {
        rest &= pixels[x];
    }
    const auto opaque = hn::Set(d, 0xFF000000U);
    return hn::AllTrue(d, hn::Eq(hn::And(common, opaque), opaque)) && rest == 0xFF000000U;
}

struct OpaqueOperation {
    PixelVector operator()(PixelVector pixels) const { return hn::Or(pixels, hn::Set(Pixels(), 0xFF000000U)); }
};

void opaqueRows(PixelView picture, PixelRect area) {
    const ConstPixelView source{picture.data, picture.width, picture.height, picture.stride};
    mapPixels(OpaqueOperation{}, source, picture, area, false);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(opaqueRow);
HWY_EXPORT(opaqueRows);

bool allOpaque(ConstPixelView picture) {
    std::atomic<bool> opaque = true;
    const auto rowKernel = HWY_DYNAMIC_DISPATCH(opaqueRow);
    forBands(wholeOf(picture), [&](PixelRect band) {
        for (int y = band.top; y < band.bottom && opaque.load(std::memory_order_relaxed); ++y) {
            if (!rowKernel(picture.row(y), picture.width)) {
                opaque.store(false, std::memory_order_relaxed);
            }
        }
    });
    return opaque;
}

void makeOpaque(PixelView picture) {
    forBands(wholeOf(picture), [&](PixelRect band) { HWY_DYNAMIC_DISPATCH(opaqueRows)(picture, band); });
}

} // namespace lumora
#endif
