#include "imaging/kernels/AreaAverage.h"

#include "imaging/kernels/AreaCover.h"
#include "imaging/kernels/BoxReduce.h"
#include "imaging/kernels/ColumnSums.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/kernels/Targets.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/kernels/AreaAverage.cpp"
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// One row of the target from the sums of its columns. All numbers are integers below 2^53, so that doubles hold them
/// and floor(a / b) is exact. `pixelsAtOnce` totals add up without overflowing 31 bits.
void averageColumns(const std::uint32_t *totals, const AreaCover *columns, int pixelsAtOnce, double area,
                    std::uint8_t *to, int width) {
    const hn::CappedTag<double, 4> d;
    const hn::Rebind<std::int32_t, decltype(d)> d32;
    const auto *sums = reinterpret_cast<const std::int32_t *>(totals);
    const auto divisor = hn::Set(d, area);
    const auto rounding = hn::Set(d, std::floor(area / 2));
    HWY_ALIGN std::int32_t level[4];
    for (int x = 0; x < width; ++x, to += 4) {
        const AreaCover &cover = columns[x];
        const std::int32_t *from = sums + std::ptrdiff_t(4) * cover.first;
        const std::int32_t *last = cover.lastWeight != 0 ? from + std::ptrdiff_t(4) * (cover.whole + 1) : from;
        for (std::size_t c = 0; c < 4; c += hn::Lanes(d)) {
            auto all = hn::MulAdd(hn::PromoteTo(d, hn::LoadU(d32, from + c)), hn::Set(d, cover.firstWeight), rounding);
            all = hn::MulAdd(hn::PromoteTo(d, hn::LoadU(d32, last + c)), hn::Set(d, cover.lastWeight), all);
            const std::int32_t *pixel = from + 4 + c;
            for (int done = 0; done < cover.whole; done += pixelsAtOnce) {
                auto sum = hn::Zero(d32);
                for (int n = std::min(pixelsAtOnce, cover.whole - done); n > 0; --n, pixel += 4) {
                    sum = hn::Add(sum, hn::LoadU(d32, pixel));
                }
                all = hn::MulAdd(hn::PromoteTo(d, sum), hn::Set(d, cover.wholeWeight), all);
            }
            hn::StoreU(hn::DemoteTo(d32, hn::Div(all, divisor)), d32, level + c);
        }
        for (int c = 0; c < 4; ++c) {
            to[c] = static_cast<std::uint8_t>(level[c]);
        }
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(averageColumns);

namespace {

// Up to this height the sums of a column of opaque bytes fit 31 bits.
constexpr int tallestInIntegers = std::numeric_limits<std::int32_t>::max() / 255;

std::vector<AreaCover> coversOf(int source, int target) {
    std::vector<AreaCover> covers;
    covers.reserve(static_cast<std::size_t>(target));
    for (int i = 0; i < target; ++i) {
        covers.emplace_back(i, source, target);
    }
    return covers;
}

std::uint32_t weightAt(const AreaCover &cover, int position) {
    if (position == cover.first) {
        return cover.firstWeight;
    }
    return position <= cover.first + cover.whole ? cover.wholeWeight : cover.lastWeight;
}

/// Transparent pictures, and ones too tall for 32-bit sums.
void averageRowSlowly(ConstPixelView source, PixelView target, int y) {
    const AreaCover rows(y, source.height, target.height);
    const std::uint64_t area = std::uint64_t(source.width) * std::uint64_t(source.height);
    std::uint8_t *to = target.row(y);
    for (int x = 0; x < target.width; ++x, to += 4) {
        const AreaCover columns(x, source.width, target.width);
        std::uint64_t colour[3] = {};
        std::uint64_t alpha = 0;
        for (int sourceY = rows.first; sourceY < rows.end(); ++sourceY) {
            const std::uint64_t rowWeight = weightAt(rows, sourceY);
            const std::uint8_t *from = source.row(sourceY) + std::ptrdiff_t(4) * columns.first;
            for (int sourceX = columns.first; sourceX < columns.end(); ++sourceX, from += 4) {
                const std::uint64_t share = rowWeight * weightAt(columns, sourceX) * from[3];
                alpha += share;
                for (int c = 0; c < 3; ++c) {
                    colour[c] += share * from[c];
                }
            }
        }
        for (int c = 0; c < 3; ++c) {
            to[c] = alpha == 0 ? 0 : static_cast<std::uint8_t>((colour[c] + alpha / 2) / alpha);
        }
        to[3] = static_cast<std::uint8_t>((alpha + area / 2) / area);
    }
}

/// 2, 4, 8 or 16 where the target is the source reduced by that without a remainder; else 0.
int wholeFactor(ConstPixelView source, PixelView target) {
    for (const int factor : {2, 4, 8, 16}) {
        if (target.width * factor == source.width && target.height * factor == source.height) {
            return factor;
        }
    }
    return 0;
}

} // namespace

bool averageArea(ConstPixelView source, PixelView target, bool opaque) {
    if (const int factor = wholeFactor(source, target)) {
        boxReduce(source, target, factor, opaque); // the same, faster
        return true;
    }
    const std::int64_t sourcePixelsPerRow = std::int64_t(source.width) * source.height / target.height;
    if (!opaque || source.height > tallestInIntegers) {
        forRowBands(target.height, sourcePixelsPerRow, [&](int first, int end) {
            for (int y = first; y < end; ++y) {
                averageRowSlowly(source, target, y);
            }
        });
        return true;
    }
    const int pixelsAtOnce = tallestInIntegers / std::max(1, source.height);
    const double area = double(source.width) * source.height;
    const std::size_t rowBytes = std::size_t(source.width) * 4;
    try {
        const std::vector<AreaCover> columns = coversOf(source.width, target.width);
        forRowBands(target.height, sourcePixelsPerRow, [&](int first, int end) {
            std::vector<std::uint32_t> totals(rowBytes);
            for (int y = first; y < end; ++y) {
                const AreaCover rows(y, source.height, target.height);
                const RowWeights weights{rows.firstWeight, rows.whole, rows.wholeWeight, rows.lastWeight};
                sumColumns(source.row(rows.first), source.stride, weights, totals.data(), rowBytes);
                HWY_DYNAMIC_DISPATCH(averageColumns)
                (totals.data(), columns.data(), pixelsAtOnce, area, target.row(y), target.width);
            }
        });
    } catch (const std::bad_alloc &) { // also from a worker: the loop hands it on
        return false;
    }
    return true;
}

} // namespace lumora
#endif
