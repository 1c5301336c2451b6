#include "imaging/kernels/BlendPixels.h"

#include "imaging/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/kernels/BlendPixels.cpp"
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Two bytes of every pixel at a time, in 16 bits each: 255 * 256 + 128 fits. The blend of equal pixels is that pixel.
template <class D16, class V = hn::Vec<D16>> HWY_INLINE V blendedPixels(D16 d16, V a, V b, V weight) {
    const auto bytes = hn::Set(d16, 0x00ff);
    const auto half = hn::Set(d16, 0x0080);
    const auto rest = hn::Sub(hn::Set(d16, 256), weight);
    const auto mixed = [&](V from, V to) { return hn::Add(hn::Add(hn::Mul(from, rest), hn::Mul(to, weight)), half); };
    const auto low = hn::ShiftRight<8>(mixed(hn::And(a, bytes), hn::And(b, bytes)));
    const auto high = mixed(hn::ShiftRight<8>(a), hn::ShiftRight<8>(b));
    return hn::Or(low, hn::AndNot(bytes, high));
}

template <class D>
HWY_INLINE void blendRowPixels(D d, const std::uint32_t *a, const std::uint32_t *b, unsigned weight,
                               std::uint32_t *out) {
    const hn::Repartition<std::uint16_t, D> d16;
    const auto pixels = blendedPixels(d16, hn::BitCast(d16, hn::LoadU(d, a)), hn::BitCast(d16, hn::LoadU(d, b)),
                                      hn::Set(d16, static_cast<std::uint16_t>(weight)));
    hn::StoreU(hn::BitCast(d, pixels), d, out);
}

void blendRowOfPixels(const std::uint32_t *a, const std::uint32_t *b, unsigned weight, std::uint32_t *out,
                      std::size_t count) {
    const hn::ScalableTag<std::uint32_t> d;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        blendRowPixels(d, a + i, b + i, weight, out + i);
    }
    for (; i < count; ++i) {
        blendRowPixels(hn::CappedTag<std::uint32_t, 1>(), a + i, b + i, weight, out + i);
    }
}

template <class D>
HWY_INLINE void blendPairPixels(D d, const std::uint32_t *row, const PixelPairs &pairs, std::size_t i,
                                std::uint32_t *out) {
    const hn::Repartition<std::uint16_t, D> d16;
    const hn::RebindToSigned<D> indices;
    const auto first = hn::GatherIndex(d, row, hn::LoadU(indices, pairs.first.data() + i));
    const auto second = hn::GatherIndex(d, row, hn::LoadU(indices, pairs.second.data() + i));
    const auto pixels = blendedPixels(d16, hn::BitCast(d16, first), hn::BitCast(d16, second),
                                      hn::BitCast(d16, hn::LoadU(d, pairs.weight.data() + i)));
    hn::StoreU(hn::BitCast(d, pixels), d, out + i);
}

void blendPairsOfPixels(const std::uint32_t *row, const PixelPairs &pairs, std::uint32_t *out, std::size_t count) {
    const hn::ScalableTag<std::uint32_t> d;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        blendPairPixels(d, row, pairs, i, out);
    }
    for (; i < count; ++i) {
        blendPairPixels(hn::CappedTag<std::uint32_t, 1>(), row, pairs, i, out);
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(blendRowOfPixels);
HWY_EXPORT(blendPairsOfPixels);

void blendRows(std::span<const std::uint32_t> a, std::span<const std::uint32_t> b, unsigned weight,
               std::span<std::uint32_t> out) {
    HWY_DYNAMIC_DISPATCH(blendRowOfPixels)(a.data(), b.data(), weight, out.data(), out.size());
}

void blendPairs(const std::uint32_t *row, const PixelPairs &pairs, std::span<std::uint32_t> out) {
    HWY_DYNAMIC_DISPATCH(blendPairsOfPixels)(row, pairs, out.data(), out.size());
}

} // namespace lumora
#endif
