#include "imaging/effects/OilPainting.h"

#include "imaging/kernels/PartOf.h"
#include "imaging/kernels/Premultiply.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/kernels/ScratchPicture.h"
#include "imaging/kernels/Targets.h"

#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/OilPainting.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

constexpr int classes = 16;

using Counts = hn::CappedTag<std::int32_t, classes>;
using ColumnCounts = hn::Rebind<std::uint16_t, Counts>;

/// For a column or a window: how many pixels each class has, then the sums of their blue, green, red and, in pictures
/// that are not opaque, alpha.
template <int planes> struct Histogram { static constexpr int size = (1 + planes) * classes; };

/// Adds a row of pixels to the columns' histograms, or removes it.
template <int planes, int sign> void countRow(const std::uint8_t *pixel, int columns, std::uint16_t *histograms) {
    for (int x = 0; x < columns; ++x, pixel += 4, histograms += Histogram<planes>::size) {
        const int luma = (3736 * pixel[0] + 19235 * pixel[1] + 9797 * pixel[2] + (1 << 14)) >> 15;
        std::uint16_t *entry = histograms + luma * classes / 256;
        entry[0] = static_cast<std::uint16_t>(entry[0] + sign);
        for (int c = 0; c < planes; ++c) {
            std::uint16_t &sum = entry[(c + 1) * classes];
            sum = static_cast<std::uint16_t>(sum + sign * pixel[c]);
        }
    }
}

/// window += entering - leaving.
template <int planes>
HWY_INLINE void slide(std::int32_t *window, const std::uint16_t *entering, const std::uint16_t *leaving) {
    const Counts d;
    const ColumnCounts d16;
    for (std::size_t i = 0; i < Histogram<planes>::size; i += hn::Lanes(d)) {
        const auto change =
            hn::Sub(hn::PromoteTo(d, hn::LoadU(d16, entering + i)), hn::PromoteTo(d, hn::LoadU(d16, leaving + i)));
        hn::Store(hn::Add(hn::Load(d, window + i), change), d, window + i);
    }
}

/// The mean pixel of the most frequent class.
template <int planes> HWY_INLINE void paint(const std::int32_t *window, std::uint8_t *to) {
    const Counts d;
    // Count and class in one number; the darkest class has the largest.
    auto best = hn::Zero(d);
    for (std::size_t i = 0; i < classes; i += hn::Lanes(d)) {
        const auto order = hn::Sub(hn::Set(d, classes - 1 - static_cast<std::int32_t>(i)), hn::Iota(d, 0));
        best = hn::Max(best, hn::Or(hn::ShiftLeft<4>(hn::Load(d, window + i)), order));
    }
    const auto found = static_cast<std::uint32_t>(hn::GetLane(hn::MaxOfLanes(d, best)));
    const std::int32_t *sums = window + (classes - 1 - found % classes);
    const std::uint32_t count = found / classes;
    for (int c = 0; c < planes; ++c) {
        to[c] = static_cast<std::uint8_t>((static_cast<std::uint32_t>(sums[(c + 1) * classes]) + count / 2) / count);
    }
    if constexpr (planes == 3) {
        to[3] = 255;
    }
}

/// One row of the block. `histograms` begin with column `first`, after one that is always empty.
template <int planes>
void paintRow(const std::uint16_t *histograms, int first, int end, int radius, PixelRect block, std::uint8_t *to) {
    constexpr int size = Histogram<planes>::size;
    HWY_ALIGN std::int32_t window[size] = {};
    const std::uint16_t *empty = histograms;
    const auto column = [&](int x) {
        return x >= first && x < end ? histograms + std::ptrdiff_t(x - first + 1) * size : empty;
    };
    for (int x = block.left - radius; x < block.left + radius; ++x) {
        slide<planes>(window, column(x), empty);
    }
    for (int x = block.left; x < block.right; ++x, to += 4) {
        slide<planes>(window, column(x + radius), x == block.left ? empty : column(x - radius - 1));
        paint<planes>(window, to);
    }
}

template <int planes>
void paintBlockOf(ConstPixelView source, PixelView target, PixelRect block, int radius, std::uint16_t *histograms) {
    const int first = std::max(block.left - radius, 0);
    const int end = std::min(block.right + radius, source.width);
    std::uint16_t *columns = histograms + Histogram<planes>::size;
    const auto rowAt = [&](int y) { return source.row(y) + std::ptrdiff_t(4) * first; };
    for (int y = std::max(block.top - radius, 0); y < std::min(block.top + radius, source.height); ++y) {
        countRow<planes, 1>(rowAt(y), end - first, columns);
    }
    for (int y = block.top; y < block.bottom; ++y) {
        if (y + radius < source.height) {
            countRow<planes, 1>(rowAt(y + radius), end - first, columns);
        }
        if (y > block.top && y - radius - 1 >= 0) {
            countRow<planes, -1>(rowAt(y - radius - 1), end - first, columns);
        }
        paintRow<planes>(histograms, first, end, radius, block, target.row(y) + std::ptrdiff_t(4) * block.left);
    }
}

/// `histograms`: zeros, for all columns within the radius of the block and one more, five planes each.
void paintBlock(ConstPixelView source, PixelView target, PixelRect block, int radius, bool opaque,
                std::uint16_t *histograms) {
    if (opaque) {
        paintBlockOf<3>(source, target, block, radius, histograms);
    } else {
        paintBlockOf<4>(source, target, block, radius, histograms);
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(paintBlock);

namespace {

constexpr int largestBrush = 100; // 255 * 201 is the largest sum of a column and fits 16 bits
constexpr int blockWidth = 512;   // the histograms of so many columns fit in the L2 cache
constexpr int blockHeight = 512;
constexpr std::size_t entriesPerColumn = 5 * 16;

void paintArea(ConstPixelView source, PixelView target, PixelRect area, int radius, bool opaque) {
    const int across = (area.width() - 1) / blockWidth + 1;
    const int down = (area.height() - 1) / blockHeight + 1;
    forRowBands(across * down, blockWidth * blockHeight, [&](int first, int end) {
        std::vector<std::uint16_t> histograms;
        for (int i = first; i < end; ++i) {
            const int left = area.left + i % across * blockWidth;
            const int top = area.top + i / across * blockHeight;
            const PixelRect block{left, top, std::min(left + blockWidth, area.right),
                                  std::min(top + blockHeight, area.bottom)};
            const auto columns = std::size_t(block.width()) + 2 * std::size_t(radius) + 1;
            histograms.assign(columns * entriesPerColumn, 0);
            HWY_DYNAMIC_DISPATCH(paintBlock)(source, target, block, radius, opaque, histograms.data());
        }
    });
}

} // namespace

bool applyOilPainting(const OilPainting &parameters, ConstPixelView source, PixelView target, PixelRect area,
                      bool opaque) {
    const int radius = std::clamp(parameters.brush, 0, largestBrush);
    if (opaque) {
        paintArea(source, target, area, radius, true);
        return true;
    }
    const PixelRect needed = withMargin(area, radius, source);
    const ScratchPicture scratch(needed.width(), needed.height());
    if (scratch.view().isEmpty()) {
        return false;
    }
    premultiply(partOf(source, needed), scratch.view());
    const PixelRect inside{area.left - needed.left, area.top - needed.top, area.right - needed.left,
                           area.bottom - needed.top};
    paintArea(readOnly(scratch.view()), partOf(target, needed), inside, radius, false);
    unpremultiply(partOf(target, area));
    return true;
}

} // namespace lumora
#endif
