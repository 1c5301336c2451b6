#include "imaging/transforms/FlipAndRotate.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"
#include "imaging/kernels/Workers.h"

#include <tbb/blocked_range2d.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/transforms/FlipAndRotate.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

struct SameOperation {
    PixelVector operator()(PixelVector pixels) const { return pixels; }
};

void copyRows(ConstPixelView source, PixelView target, PixelRect area, bool nonTemporal) {
    mapPixels(SameOperation{}, source, target, area, nonTemporal);
}

/// The last pixel of the row first.
void reverseRow(const std::uint8_t *from, std::uint8_t *to, int width) {
    const Pixels d;
    const auto lanes = static_cast<int>(hn::Lanes(d));
    const auto *source = reinterpret_cast<const std::uint32_t *>(from);
    auto *target = reinterpret_cast<std::uint32_t *>(to);
    int x = 0;
    for (; x + lanes <= width; x += lanes) {
        hn::StoreU(hn::Reverse(d, hn::LoadU(d, source + width - x - lanes)), d, target + x);
    }
    for (; x < width; ++x) {
        target[x] = source[width - 1 - x];
    }
}

/// A block whose sides are multiples of 4. `from` is the source pixel of the block's first one; `right` and `down` are
/// the steps through the source, in bytes, for a step in the target; `down` is 4 or -4.
void transposeBlock(const std::uint8_t *from, std::ptrdiff_t right, std::ptrdiff_t down, PixelView target,
                    PixelRect block) {
    const hn::CappedTag<std::uint32_t, 4> d;
    const hn::Repartition<std::uint64_t, decltype(d)> d64;
    const auto wide = [&](auto v) { return hn::BitCast(d64, v); };
    // Four pixels are read in memory order, which is the reverse of the order in the target's rows where down is -4.
    const std::uint8_t *start = down > 0 ? from : from + 3 * down;
    const int firstRow = down > 0 ? 0 : 3;
    const std::ptrdiff_t rowStep = down > 0 ? target.stride : -target.stride;
    for (int y = 0; y < block.height(); y += 4) {
        std::uint8_t *row = target.row(block.top + y + firstRow) + std::ptrdiff_t(4) * block.left;
        const std::uint8_t *pixel = start + y * down;
        for (int x = 0; x < block.width(); x += 4, row += 16, pixel += 4 * right) {
            const auto load = [&](int i) {
                return hn::LoadU(d, reinterpret_cast<const std::uint32_t *>(pixel + i * right));
            };
            const auto store = [&](int i, auto v) {
                hn::StoreU(hn::BitCast(d, v), d, reinterpret_cast<std::uint32_t *>(row + i * rowStep));
            };
            const auto v0 = load(0);
            const auto v1 = load(1);
            const auto v2 = load(2);
            const auto v3 = load(3);
            const auto low01 = wide(hn::InterleaveLower(d, v0, v1));
            const auto high01 = wide(hn::InterleaveUpper(d, v0, v1));
            const auto low23 = wide(hn::InterleaveLower(d, v2, v3));
            const auto high23 = wide(hn::InterleaveUpper(d, v2, v3));
            store(0, hn::InterleaveLower(d64, low01, low23));
            store(1, hn::InterleaveUpper(d64, low01, low23));
            store(2, hn::InterleaveLower(d64, high01, high23));
            store(3, hn::InterleaveUpper(d64, high01, high23));
        }
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(copyRows);
HWY_EXPORT(reverseRow);
HWY_EXPORT(transposeBlock);

namespace {

void reverseRows(ConstPixelView source, PixelView target) {
    forBands(wholeOf(target), [&](PixelRect band) {
        for (int y = band.top; y < band.bottom; ++y) {
            HWY_DYNAMIC_DISPATCH(reverseRow)(source.row(y), target.row(y), target.width);
        }
    });
}

/// Left of the transposing, where a side is no multiple of 4.
void moveOneByOne(const std::uint8_t *from, std::ptrdiff_t right, std::ptrdiff_t down, PixelView target,
                  PixelRect area) {
    for (int y = area.top; y < area.bottom; ++y) {
        auto *row = reinterpret_cast<std::uint32_t *>(target.row(y));
        for (int x = area.left; x < area.right; ++x) {
            row[x] = *reinterpret_cast<const std::uint32_t *>(from + x * right + y * down);
        }
    }
}

void transpose(ConstPixelView source, PixelView target, Turn turn) {
    // A cache line of pixels: a block read in rows and written in columns stays in the first-level cache.
    constexpr int side = 16;
    const std::ptrdiff_t right = turn.mirrorX ? -source.stride : source.stride;
    const std::ptrdiff_t down = turn.mirrorY ? -4 : 4;
    const std::uint8_t *from = source.data + (turn.mirrorX ? -right * (target.width - 1) : 0) +
                               (turn.mirrorY ? -down * (target.height - 1) : 0);
    const int wholeWidth = target.width / 4 * 4;
    const int wholeHeight = target.height / 4 * 4;
    const int blocksAcross = (wholeWidth + side - 1) / side;
    const int blocksDown = (wholeHeight + side - 1) / side;
    prepareWorkers();
    tbb::parallel_for(tbb::blocked_range2d<int>(0, blocksDown, 4, 0, blocksAcross, 16), [&](const auto &blocks) {
        for (int i = blocks.rows().begin(); i < blocks.rows().end(); ++i) {
            for (int j = blocks.cols().begin(); j < blocks.cols().end(); ++j) {
                const PixelRect block{j * side, i * side, std::min(j * side + side, wholeWidth),
                                      std::min(i * side + side, wholeHeight)};
                HWY_DYNAMIC_DISPATCH(transposeBlock)
                (from + block.left * right + block.top * down, right, down, target, block);
            }
        }
    });
    moveOneByOne(from, right, down, target, {wholeWidth, 0, target.width, target.height});
    moveOneByOne(from, right, down, target, {0, wholeHeight, wholeWidth, target.height});
}

} // namespace

void flipAndRotate(ConstPixelView source, PixelView target, Turn turn) {
    if (turn.swapAxes) {
        transpose(source, target, turn);
        return;
    }
    const ConstPixelView from =
        turn.mirrorY ? ConstPixelView{source.row(source.height - 1), source.width, source.height, -source.stride}
                     : source;
    if (turn.mirrorX) {
        reverseRows(from, target);
        return;
    }
    const bool nonTemporal = leavesCache(wholeOf(target));
    forBands(wholeOf(target), [&](PixelRect band) { HWY_DYNAMIC_DISPATCH(copyRows)(from, target, band, nonTemporal); });
}

} // namespace lumora
#endif
