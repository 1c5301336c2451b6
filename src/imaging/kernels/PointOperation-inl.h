// The loop of every operation that looks at one pixel at a time. Included once for each processor target, between
// HWY_BEFORE_NAMESPACE and the kernel that names the operation.
#if defined(LUMORA_POINT_OPERATION_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef LUMORA_POINT_OPERATION_INL_H
#undef LUMORA_POINT_OPERATION_INL_H
#else
#define LUMORA_POINT_OPERATION_INL_H
#endif

#include "imaging/PixelView.h"
#include "imaging/Region.h"

#include <cstring>
#include <hwy/cache_control.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Pixels = hn::ScalableTag<std::uint32_t>; ///< a vector of pixels, one 0xAARRGGBB word each
using PixelVector = hn::VFromD<Pixels>;

inline constexpr int weightBits = 15;

/// Weighted sum of blue, green and red of each pixel as whole levels, rounded: (wb*b + wg*g + wr*r + 2^14) >> 15.
/// Weights are 15-bit fractions, each below 1 in size; two multiply-and-add instructions for a vector of pixels.
struct WeightedSum {
    WeightedSum(int blue, int green, int red)
        : blueRed(static_cast<std::uint32_t>((red << 16) | (blue & 0xFFFF))),
          greenOnly(static_cast<std::uint32_t>(green & 0xFFFF)) {}

    hn::VFromD<hn::ScalableTag<std::int32_t>> operator()(PixelVector pixels) const {
        const Pixels d;
        const hn::Repartition<std::int16_t, Pixels> d16;
        const hn::ScalableTag<std::int32_t> d32;
        const auto lowBytes = hn::Set(d, 0x00FF00FFU);
        const auto blueAndRed = hn::BitCast(d16, hn::And(pixels, lowBytes));
        const auto greenAndAlpha = hn::BitCast(d16, hn::And(hn::ShiftRight<8>(pixels), lowBytes));
        auto second = hn::Zero(d32);
        auto sum = hn::ReorderWidenMulAccumulate(d32, blueAndRed, hn::BitCast(d16, hn::Set(d, blueRed)),
                                                 hn::Set(d32, 1 << (weightBits - 1)), second);
        sum = hn::ReorderWidenMulAccumulate(d32, greenAndAlpha, hn::BitCast(d16, hn::Set(d, greenOnly)), sum, second);
        return hn::ShiftRight<weightBits>(hn::RearrangeToOddPlusEven(sum, second));
    }

    std::uint32_t blueRed;
    std::uint32_t greenOnly;
};

/// Luma of ITU-R BT.601, 0.299 R + 0.587 G + 0.114 B; the weights sum to exactly 1.
inline WeightedSum luma() {
    return {3736, 19235, 9797};
}

/// One to a vector's length of pixels.
template <typename Operation>
void mapFewPixels(const Operation &operation, const std::uint32_t *from, std::uint32_t *to, std::size_t count) {
    const Pixels d;
    HWY_ALIGN std::uint32_t lanes[HWY_LANES(std::uint32_t)] = {};
    std::memcpy(lanes, from, count * sizeof(std::uint32_t));
    hn::Store(operation(hn::Load(d, lanes)), d, lanes);
    std::memcpy(to, lanes, count * sizeof(std::uint32_t));
}

/// to = operation(from) for every pixel of the area. With `nonTemporal` the result goes straight to memory, which
/// spares reading the lines it overwrites; right for results that no cache could hold.
template <typename Operation>
void mapPixels(const Operation &operation, ConstPixelView source, PixelView target, PixelRect area, bool nonTemporal) {
    const Pixels d;
    const std::size_t lanes = hn::Lanes(d);
    for (int y = area.top; y < area.bottom; ++y) {
        const auto *from = reinterpret_cast<const std::uint32_t *>(source.row(y)) + area.left;
        auto *to = reinterpret_cast<std::uint32_t *>(target.row(y)) + area.left;
        auto left = static_cast<std::size_t>(area.width());
        if (nonTemporal) {
            const std::size_t offset = reinterpret_cast<std::uintptr_t>(to) / sizeof(std::uint32_t) % lanes;
            if (offset != 0 && left >= lanes) {
                mapFewPixels(operation, from, to, lanes - offset);
                from += lanes - offset;
                to += lanes - offset;
                left -= lanes - offset;
            }
            for (; left >= lanes; left -= lanes, from += lanes, to += lanes) {
                hn::Stream(operation(hn::LoadU(d, from)), d, to);
            }
        } else {
            for (; left >= lanes; left -= lanes, from += lanes, to += lanes) {
                hn::StoreU(operation(hn::LoadU(d, from)), d, to);
            }
        }
        if (left > 0) {
            mapFewPixels(operation, from, to, left);
        }
    }
    if (nonTemporal) {
        hwy::FlushStream();
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
