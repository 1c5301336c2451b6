#include "imaging/kernels/BoxReduce.h"

#include "imaging/kernels/BlockMean.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/kernels/Targets.h"

#include <bit>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/kernels/BoxReduce.cpp"
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// sums[2i] and sums[2i + 1] as one, for `pairs` pairs of pixels of four 16-bit sums, into sums[i].
void addNeighbours(std::uint16_t *sums, std::size_t pairs) {
    const hn::ScalableTag<std::uint64_t> d64;
    const hn::Repartition<std::uint16_t, decltype(d64)> d16;
    auto *pixels = reinterpret_cast<std::uint64_t *>(sums);
    const std::size_t lanes = hn::Lanes(d64);
    std::size_t i = 0;
    for (; i + lanes <= pairs; i += lanes) {
        hn::Vec<decltype(d64)> even;
        hn::Vec<decltype(d64)> odd;
        hn::LoadInterleaved2(d64, pixels + 2 * i, even, odd);
        hn::StoreU(hn::BitCast(d64, hn::Add(hn::BitCast(d16, even), hn::BitCast(d16, odd))), d64, pixels + i);
    }
    for (; i < pairs; ++i) {
        for (std::size_t c = 0; c < 4; ++c) {
            sums[4 * i + c] = static_cast<std::uint16_t>(sums[8 * i + c] + sums[8 * i + 4 + c]);
        }
    }
}

/// One row of `blocks` whole blocks, at most blocksAtOnce of them. Sums of 16 x 16 bytes fit 16 bits.
void reduceBlocks(const std::uint8_t *from, std::ptrdiff_t stride, int factorBits, std::uint8_t *to, std::size_t blocks,
                  std::uint16_t *sums) {
    const hn::ScalableTag<std::uint16_t> d16;
    const hn::Rebind<std::uint8_t, decltype(d16)> d8;
    const std::size_t lanes = hn::Lanes(d16);
    const int factor = 1 << factorBits;
    const std::size_t bytes = (blocks << factorBits) * 4;
    std::size_t i = 0;
    for (; i + lanes <= bytes; i += lanes) {
        auto sum = hn::Zero(d16);
        const std::uint8_t *row = from + i;
        for (int y = 0; y < factor; ++y, row += stride) {
            sum = hn::Add(sum, hn::PromoteTo(d16, hn::LoadU(d8, row)));
        }
        hn::StoreU(sum, d16, sums + i);
    }
    for (; i < bytes; ++i) {
        unsigned sum = 0;
        for (int y = 0; y < factor; ++y) {
            sum += from[y * stride + static_cast<std::ptrdiff_t>(i)];
        }
        sums[i] = static_cast<std::uint16_t>(sum);
    }
    for (int halved = 1; halved <= factorBits; ++halved) {
        addNeighbours(sums, blocks << (factorBits - halved));
    }
    const unsigned half = 1U << (2 * factorBits - 1);
    const auto rounding = hn::Set(d16, static_cast<std::uint16_t>(half));
    for (i = 0; i + lanes <= blocks * 4; i += lanes) {
        const auto sum = hn::Add(hn::LoadU(d16, sums + i), rounding);
        hn::StoreU(
            hn::DemoteTo(d8, hn::BitCast(hn::RebindToSigned<decltype(d16)>(), hn::ShiftRightSame(sum, 2 * factorBits))),
            d8, to + i);
    }
    for (; i < blocks * 4; ++i) {
        to[i] = static_cast<std::uint8_t>((sums[i] + half) >> (2 * factorBits));
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(reduceBlocks);

namespace {

void reduceRow(ConstPixelView source, PixelView target, int y, int factor, bool opaque) {
    constexpr int blocksAtOnce = 128; // the sums of 128 blocks of 16 pixels are 16 KB
    const int top = y * factor;
    const bool wholeRow = opaque && source.height - top >= factor;
    const int wholeBlocks = wholeRow ? source.width / factor : 0;
    alignas(64) std::uint16_t sums[blocksAtOnce * 16 * 4];
    for (int x = 0; x < wholeBlocks; x += blocksAtOnce) {
        const int blocks = std::min(blocksAtOnce, wholeBlocks - x);
        HWY_DYNAMIC_DISPATCH(reduceBlocks)
        (source.row(top) + std::ptrdiff_t(4) * x * factor, source.stride, std::countr_zero(unsigned(factor)),
         target.row(y) + std::ptrdiff_t(4) * x, std::size_t(blocks), sums);
    }
    for (int x = wholeBlocks; x < target.width; ++x) {
        const PixelRect block{x * factor, top, std::min((x + 1) * factor, source.width),
                              std::min(top + factor, source.height)};
        meanOfBlock(source, block, target.row(y) + std::ptrdiff_t(4) * x);
    }
}

} // namespace

void boxReduce(ConstPixelView source, PixelView target, int factor, bool opaque) {
    forRowBands(target.height, std::int64_t(source.width) * factor, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            reduceRow(source, target, y, factor, opaque);
        }
    });
}

} // namespace lumora
#endif
