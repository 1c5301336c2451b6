#include "imaging/transforms/Over.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/transforms/Over.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

void layRowOver(const std::uint8_t *over, const std::uint8_t *under, std::uint8_t *to, int pixels) {
    const hn::ScalableTag<std::uint32_t> d;
    const hn::Repartition<std::uint16_t, decltype(d)> d16;
    const hn::Repartition<std::uint8_t, decltype(d)> d8;
    const auto lowBytes = hn::Set(d, 0x00FF00FFU);
    const auto mix = [&](auto upper, auto lower) {
        const auto alpha = hn::ShiftRight<24>(upper);
        const auto rest = hn::Sub(hn::Set(d, 255), alpha);
        const auto most = hn::BitCast(d8, hn::Mul(alpha, hn::Set(d, 0x01010101U)));
        const auto visible = hn::Min(hn::BitCast(d8, upper), most);
        const auto shares = hn::BitCast(d16, hn::Or(rest, hn::ShiftLeft<16>(rest)));
        // n / 255, rounded, as (m + (m >> 8)) >> 8 with m = n + 128: exact for products of two bytes.
        const auto shown = [&](auto v) {
            const auto m = hn::Add(hn::Mul(hn::BitCast(d16, v), shares), hn::Set(d16, 128));
            return hn::BitCast(d, hn::ShiftRight<8>(hn::Add(m, hn::ShiftRight<8>(m))));
        };
        const auto low = shown(hn::And(lower, lowBytes));
        const auto high = hn::ShiftLeft<8>(shown(hn::And(hn::ShiftRight<8>(lower), lowBytes)));
        return hn::BitCast(d, hn::SaturatedAdd(visible, hn::BitCast(d8, hn::Or(low, high))));
    };
    const auto *overPixels = reinterpret_cast<const std::uint32_t *>(over);
    const auto *underPixels = reinterpret_cast<const std::uint32_t *>(under);
    auto *toPixels = reinterpret_cast<std::uint32_t *>(to);
    const auto lanes = static_cast<int>(hn::Lanes(d));
    int x = 0;
    for (; x + lanes <= pixels; x += lanes) {
        hn::StoreU(mix(hn::LoadU(d, overPixels + x), hn::LoadU(d, underPixels + x)), d, toPixels + x);
    }
    if (x < pixels) {
        HWY_ALIGN std::uint32_t upper[HWY_LANES(std::uint32_t)] = {};
        HWY_ALIGN std::uint32_t lower[HWY_LANES(std::uint32_t)] = {};
        const std::size_t rest = static_cast<std::size_t>(pixels - x) * 4;
        std::memcpy(upper, overPixels + x, rest);
        std::memcpy(lower, underPixels + x, rest);
        hn::Store(mix(hn::Load(d, upper), hn::Load(d, lower)), d, upper);
        std::memcpy(toPixels + x, upper, rest);
    }
}

using Pixels = hn::ScalableTag<std::uint32_t>;

HWY_INLINE hn::Vec<Pixels> laid(hn::Vec<Pixels> over, hn::Vec<Pixels> under) {
    const Pixels d;
    const hn::Repartition<std::uint16_t, Pixels> d16;
    const auto lowBytes = hn::Set(d, 0x00FF00FFU);
    const auto alpha = hn::ShiftRight<24>(over);
    const auto shares = hn::BitCast(d16, hn::Or(alpha, hn::ShiftLeft<16>(alpha)));
    const auto rest = hn::Sub(hn::Set(d16, 255), shares);
    // n / 255, rounded, as (m + (m >> 8)) >> 8 with m = n + 128: exact for n up to 255 * 255.
    const auto mix = [&](auto a, auto b) {
        const auto m = hn::Add(hn::Add(hn::Mul(hn::BitCast(d16, hn::And(a, lowBytes)), shares), hn::Set(d16, 128)),
                               hn::Mul(hn::BitCast(d16, hn::And(b, lowBytes)), rest));
        return hn::BitCast(d, hn::ShiftRight<8>(hn::Add(m, hn::ShiftRight<8>(m))));
    };
    const auto low = mix(over, under);
    const auto high = mix(hn::ShiftRight<8>(over), hn::ShiftRight<8>(under));
    return hn::Or(hn::Or(low, hn::ShiftLeft<8>(high)), hn::Set(d, 0xFF000000U));
}

/// The rest of a row, shorter than a vector.
void layFew(const std::uint32_t *over, const std::uint32_t *under, std::uint32_t *to, std::size_t count) {
    const Pixels d;
    HWY_ALIGN std::uint32_t upper[HWY_LANES(std::uint32_t)] = {};
    HWY_ALIGN std::uint32_t lower[HWY_LANES(std::uint32_t)] = {};
    std::memcpy(upper, over, count * 4);
    std::memcpy(lower, under, count * 4);
    hn::Store(laid(hn::Load(d, upper), hn::Load(d, lower)), d, upper);
    std::memcpy(to, upper, count * 4);
}

/// `nonTemporal`: straight to memory, for results that no cache could hold.
void layRow(const std::uint8_t *over, const std::uint8_t *under, std::uint8_t *to, std::size_t pixels,
            bool nonTemporal) {
    const Pixels d;
    const std::size_t lanes = hn::Lanes(d);
    const auto *overPixels = reinterpret_cast<const std::uint32_t *>(over);
    const auto *underPixels = reinterpret_cast<const std::uint32_t *>(under);
    auto *toPixels = reinterpret_cast<std::uint32_t *>(to);
    std::size_t x = 0;
    if (nonTemporal) {
        const std::size_t offset = reinterpret_cast<std::uintptr_t>(to) / 4 % lanes;
        if (offset != 0 && pixels >= lanes) {
            x = lanes - offset;
            layFew(overPixels, underPixels, toPixels, x);
        }
        for (; x + lanes <= pixels; x += lanes) {
            hn::Stream(laid(hn::LoadU(d, overPixels + x), hn::LoadU(d, underPixels + x)), d, toPixels + x);
        }
        hwy::FlushStream();
    } else {
        for (; x + lanes <= pixels; x += lanes) {
            hn::StoreU(laid(hn::LoadU(d, overPixels + x), hn::LoadU(d, underPixels + x)), d, toPixels + x);
        }
    }
    if (x < pixels) {
        layFew(overPixels + x, underPixels + x, toPixels + x, pixels - x);
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(layRowOver);
HWY_EXPORT(layRow);

void layOver(const std::uint8_t *over, const std::uint8_t *under, std::uint8_t *to, int pixels) {
    HWY_DYNAMIC_DISPATCH(layRowOver)(over, under, to, pixels);
}

void layPictureOver(ConstPixelView over, ConstPixelView under, PixelView target) {
    const bool nonTemporal = leavesCache(wholeOf(target));
    forRowBands(target.height, target.width, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            HWY_DYNAMIC_DISPATCH(layRow)
            (over.row(y), under.row(y), target.row(y), std::size_t(target.width), nonTemporal);
        }
    });
}

} // namespace lumora
#endif
