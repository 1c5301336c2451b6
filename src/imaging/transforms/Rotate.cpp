#include "imaging/transforms/Rotate.h"

#include "imaging/kernels/NonTemporalStore.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/kernels/Targets.h"

#include <cmath>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/transforms/Rotate.cpp"
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

#ifndef LUMORA_ROTATE_ONCE
#define LUMORA_ROTATE_ONCE
namespace lumora {

/// Positions in the source: 32 bits after the point.
constexpr int pointBits = 32;
/// What a tile reads from the source stays in the second-level cache, whatever the angle.
constexpr int tileWidth = 256;
constexpr int tileHeight = 64;

/// Where a row of the target begins in the source, and the step to its next pixel.
struct SourceLine {
    std::int64_t x, y, stepX, stepY;
};

} // namespace lumora
#endif

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// The four neighbours of up to tileWidth pixels.
struct Neighbours {
    HWY_ALIGN std::uint64_t above[tileWidth]; ///< two pixels, the left one first in memory
    HWY_ALIGN std::uint64_t below[tileWidth];
};

HWY_INLINE void collect(ConstPixelView source, SourceLine line, int count, Neighbours &into) {
    for (int i = 0; i < count; ++i, line.x += line.stepX, line.y += line.stepY) {
        const std::uint8_t *pixel = source.data + (line.y >> pointBits) * source.stride + (line.x >> pointBits) * 4;
        std::memcpy(&into.above[i], pixel, 8);
        std::memcpy(&into.below[i], pixel + source.stride, 8);
    }
}

/// Two channels of each pixel, in the low bytes of 16-bit lanes.
template <typename V> HWY_INLINE V mixChannels(V aboveLeft, V aboveRight, V belowLeft, V belowRight, V right, V down) {
    const hn::DFromV<V> d16;
    const auto left = hn::Sub(hn::Set(d16, 128), right);
    const auto above = hn::Add(hn::Mul(aboveLeft, left), hn::Mul(aboveRight, right));
    const auto below = hn::Add(hn::Mul(belowLeft, left), hn::Mul(belowRight, right));
    const auto mixed = hn::Add(above, hn::MulFixedPoint15(hn::Sub(below, above), down));
    return hn::ShiftRight<7>(hn::Add(mixed, hn::Set(d16, 64)));
}

/// `count` pixels whose neighbours are all in the source.
void sampleInside(ConstPixelView source, SourceLine line, std::uint32_t *to, int count) {
    const hn::ScalableTag<std::uint32_t> d;
    const hn::Repartition<std::int16_t, decltype(d)> d16;
    const auto lanes = static_cast<int>(hn::Lanes(d));
    const auto lowBytes = hn::Set(d, 0x00FF00FFU);
    const auto even = [&](auto v) { return hn::BitCast(d16, hn::And(v, lowBytes)); };
    const auto odd = [&](auto v) { return hn::BitCast(d16, hn::And(hn::ShiftRight<8>(v), lowBytes)); };
    const auto both = [&](auto v) { return hn::BitCast(d16, hn::Or(v, hn::ShiftLeft<16>(v))); };
    Neighbours near;
    HWY_ALIGN std::uint32_t mixed[tileWidth];
    collect(source, line, count, near);
    // Up to the end of the last vector, so that nothing undefined is reckoned with.
    for (int i = count; i % lanes != 0; ++i) {
        near.above[i] = near.below[i] = 0;
    }
    // Between the neighbours: the bits after the point, which 32-bit sums keep right.
    const auto stepX = static_cast<std::uint32_t>(line.stepX);
    const auto stepY = static_cast<std::uint32_t>(line.stepY);
    auto x = hn::Add(hn::Set(d, static_cast<std::uint32_t>(line.x)), hn::Mul(hn::Iota(d, 0), hn::Set(d, stepX)));
    auto y = hn::Add(hn::Set(d, static_cast<std::uint32_t>(line.y)), hn::Mul(hn::Iota(d, 0), hn::Set(d, stepY)));
    const auto nextX = hn::Set(d, stepX * static_cast<std::uint32_t>(lanes));
    const auto nextY = hn::Set(d, stepY * static_cast<std::uint32_t>(lanes));
    for (int i = 0; i < count; i += lanes, x = hn::Add(x, nextX), y = hn::Add(y, nextY)) {
        hn::Vec<decltype(d)> aboveLeft;
        hn::Vec<decltype(d)> aboveRight;
        hn::Vec<decltype(d)> belowLeft;
        hn::Vec<decltype(d)> belowRight;
        hn::LoadInterleaved2(d, reinterpret_cast<const std::uint32_t *>(near.above + i), aboveLeft, aboveRight);
        hn::LoadInterleaved2(d, reinterpret_cast<const std::uint32_t *>(near.below + i), belowLeft, belowRight);
        const auto right = both(hn::ShiftRight<pointBits - 7>(x));
        const auto down = both(hn::ShiftRight<pointBits - 15>(y));
        const auto low = mixChannels(even(aboveLeft), even(aboveRight), even(belowLeft), even(belowRight), right, down);
        const auto high = mixChannels(odd(aboveLeft), odd(aboveRight), odd(belowLeft), odd(belowRight), right, down);
        hn::Store(hn::Or(hn::BitCast(d, low), hn::ShiftLeft<8>(hn::BitCast(d, high))), d, mixed + i);
    }
    std::memcpy(to, mixed, static_cast<std::size_t>(count) * 4);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(sampleInside);

namespace {

constexpr std::int64_t onePixel = std::int64_t(1) << pointBits;
constexpr std::uint32_t white = 0xFFFFFFFFU;

struct Columns {
    int begin, end;
};

std::int64_t dividedUp(std::int64_t a, std::int64_t b) {
    return a / b + (a % b != 0 && (a < 0) == (b < 0) ? 1 : 0);
}

/// The part of the columns in which low <= start + x * step < high.
Columns columnsWithin(Columns all, std::int64_t start, std::int64_t step, std::int64_t low, std::int64_t high) {
    if (step == 0) {
        return start >= low && start < high ? all : Columns{all.begin, all.begin};
    }
    // Going left is going right from the other end.
    const std::int64_t first = step > 0 ? dividedUp(low - start, step) : dividedUp(start - high + 1, -step);
    const std::int64_t end = step > 0 ? dividedUp(high - start, step) : dividedUp(start - low + 1, -step);
    const auto cut = [&](std::int64_t x) { return static_cast<int>(std::clamp<std::int64_t>(x, all.begin, all.end)); };
    return {cut(first), cut(end)};
}

/// A row of the target: white, a rim that mixes with white, inside the source, a rim, white.
struct RowPlan {
    SourceLine line;
    Columns touching;
    Columns inside;
};

RowPlan planRow(ConstPixelView source, PixelView target, double sine, double cosine, int y) {
    const double right = 0.5 - target.width / 2.0;
    const double down = y + 0.5 - target.height / 2.0;
    // Positions of pixel centres; 1/256 more rounds to 128ths.
    const double x = cosine * right + sine * down + source.width / 2.0 - 0.5 + 1.0 / 256;
    const double yy = cosine * down - sine * right + source.height / 2.0 - 0.5 + 1.0 / 65536;
    const auto fixed = [](double value) { return static_cast<std::int64_t>(std::llround(value * onePixel)); };
    RowPlan plan{{fixed(x), fixed(yy), fixed(cosine), fixed(-sine)}, {0, target.width}, {}};
    const auto within = [&](Columns all, std::int64_t border) {
        all = columnsWithin(all, plan.line.x, plan.line.stepX, border, source.width * onePixel - onePixel - border);
        return columnsWithin(all, plan.line.y, plan.line.stepY, border, source.height * onePixel - onePixel - border);
    };
    plan.touching = within(plan.touching, -onePixel);
    plan.inside = within(plan.touching, 0);
    return plan;
}

SourceLine advanced(const SourceLine &line, int x) {
    return {line.x + x * line.stepX, line.y + x * line.stepY, line.stepX, line.stepY};
}

/// A pixel of which a neighbour may be outside the source: the same as sampleInside, one at a time.
std::uint32_t sampleRim(ConstPixelView source, const SourceLine &at) {
    const std::int64_t left = at.x >> pointBits;
    const std::int64_t top = at.y >> pointBits;
    const auto pixel = [&](std::int64_t x, std::int64_t y) {
        const bool beside = x < 0 || y < 0 || x >= source.width || y >= source.height;
        return beside ? white : *reinterpret_cast<const std::uint32_t *>(source.data + y * source.stride + x * 4);
    };
    const std::uint32_t near[4] = {pixel(left, top), pixel(left + 1, top), pixel(left, top + 1),
                                   pixel(left + 1, top + 1)};
    const auto right = static_cast<int>((at.x >> (pointBits - 7)) & 127);
    const auto down = static_cast<int>((at.y >> (pointBits - 15)) & 32767);
    std::uint32_t mixed = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        const auto level = [&](int i) { return static_cast<int>(near[i] >> shift & 0xFF); };
        const int above = level(0) * (128 - right) + level(1) * right;
        const int below = level(2) * (128 - right) + level(3) * right;
        const int sum = above + (((below - above) * down + 16384) >> 15);
        mixed |= static_cast<std::uint32_t>((sum + 64) >> 7) << shift;
    }
    return mixed;
}

/// Pixels of the tile's columns of a target row to `to`.
void fillTileRow(ConstPixelView source, const RowPlan &plan, std::uint32_t *to, Columns tile) {
    const auto cut = [&](Columns columns) {
        const int begin = std::clamp(columns.begin, tile.begin, tile.end);
        return Columns{begin, std::clamp(columns.end, begin, tile.end)};
    };
    const Columns touching = cut(plan.touching);
    const Columns inside =
        plan.inside.begin < plan.inside.end ? cut(plan.inside) : Columns{touching.begin, touching.begin};
    const auto at = [&](int x) { return to + (x - tile.begin); };
    std::fill(to, at(touching.begin), white);
    std::fill(at(touching.end), at(tile.end), white);
    for (int x = touching.begin; x < touching.end; ++x) {
        if (x == inside.begin && inside.begin < inside.end) {
            HWY_DYNAMIC_DISPATCH(sampleInside)
            (source, advanced(plan.line, x), at(x), inside.end - inside.begin);
            x = inside.end - 1;
        } else {
            *at(x) = sampleRim(source, advanced(plan.line, x));
        }
    }
}

} // namespace

void rotatePixels(ConstPixelView source, PixelView target, double sine, double cosine) {
    const int strips = (target.height - 1) / tileHeight + 1;
    forRowBands(strips, std::int64_t(target.width) * tileHeight, [&](int first, int end) {
        RowPlan plans[tileHeight];
        for (int top = first * tileHeight; top < std::min(end * tileHeight, target.height); top += tileHeight) {
            const int rows = std::min(tileHeight, target.height - top);
            for (int y = 0; y < rows; ++y) {
                plans[y] = planRow(source, target, sine, cosine, top + y);
            }
            for (int left = 0; left < target.width; left += tileWidth) {
                const Columns tile{left, std::min(left + tileWidth, target.width)};
                for (int y = 0; y < rows; ++y) {
                    std::uint32_t tileRow[tileWidth];
                    fillTileRow(source, plans[y], tileRow, tile);
                    copyNonTemporal(reinterpret_cast<const std::uint8_t *>(tileRow),
                                    target.row(top + y) + std::ptrdiff_t(4) * left,
                                    std::size_t(tile.end - tile.begin) * 4);
                }
            }
        }
        flushNonTemporal();
    });
}

} // namespace lumora
#endif
