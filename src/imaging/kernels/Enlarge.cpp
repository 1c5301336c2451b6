#include "imaging/kernels/Enlarge.h"

#include "imaging/kernels/PartOf.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/kernels/Targets.h"

#include <cmath>
#include <cstring>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/kernels/Enlarge.cpp"
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

#ifndef LUMORA_ENLARGE_PLACES
#define LUMORA_ENLARGE_PLACES
namespace lumora {

constexpr int steps = 128;         // weights of the next pixel or row: 0 to 127 of 128
constexpr int mixedSteps = 32;     // what a row is multiplied by after rows were mixed, to fit 16 bits
constexpr int weightToFixed = 256; // MulFixedPoint15 takes fractions of 2^15

/// Where the pixels of an enlarged line are between those of the small one.
struct Places {
    Places(int begin, int end, int length, int smallLength) {
        const double scale = double(smallLength) / length;
        for (int i = begin; i < end; ++i) {
            const double place = std::clamp((i + 0.5) * scale - 0.5, 0.0, double(smallLength - 1));
            index.push_back(static_cast<int>(place));
            weight.push_back(static_cast<int>((place - index.back()) * steps));
        }
    }

    std::vector<int> index;
    std::vector<int> weight;
};

/// Two rows of the small picture, and of the one that is taken off it where there is one.
struct RowPair {
    const std::uint8_t *upper, *lower, *minusUpper, *minusLower;
    int weight; ///< of the lower row
};

} // namespace lumora
#endif

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Eight = hn::CappedTag<std::int16_t, 8>; // two pixels

/// Two rows mixed, times mixedSteps. `count` bytes; a multiple of 8 is read and written.
void mixRows(const RowPair &rows, std::size_t count, std::int16_t *to) {
    const hn::ScalableTag<std::int16_t> d;
    const hn::Rebind<std::uint8_t, decltype(d)> d8;
    const auto upperWeight = hn::Set(d, static_cast<std::int16_t>(steps - rows.weight));
    const auto lowerWeight = hn::Set(d, static_cast<std::int16_t>(rows.weight));
    const auto load = [&](const std::uint8_t *from, const std::uint8_t *minus, std::size_t i) {
        const auto value = hn::PromoteTo(d, hn::LoadU(d8, from + i));
        return minus == nullptr ? value : hn::Sub(value, hn::PromoteTo(d, hn::LoadU(d8, minus + i)));
    };
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        const auto sum = hn::Add(hn::Mul(load(rows.upper, rows.minusUpper, i), upperWeight),
                                 hn::Mul(load(rows.lower, rows.minusLower, i), lowerWeight));
        hn::StoreU(hn::ShiftRight<2>(sum), d, to + i);
    }
    for (; i < count; ++i) {
        const int upper = rows.upper[i] - (rows.minusUpper != nullptr ? rows.minusUpper[i] : 0);
        const int lower = rows.lower[i] - (rows.minusLower != nullptr ? rows.minusLower[i] : 0);
        to[i] = static_cast<std::int16_t>((upper * (steps - rows.weight) + lower * rows.weight) >> 2);
    }
}

/// Two pixels of the enlarged row, rounded to whole levels.
HWY_INLINE hn::Vec<Eight> enlargedPair(const std::int16_t *mixed, const int *index, const std::int16_t *weights) {
    const Eight d;
    const auto first = hn::LoadU(d, mixed + std::ptrdiff_t(4) * index[0]);
    const auto second = hn::LoadU(d, mixed + std::ptrdiff_t(4) * index[1]);
    const auto here = hn::ConcatLowerLower(d, second, first);
    const auto next = hn::ConcatUpperUpper(d, second, first);
    const auto value = hn::Add(here, hn::MulFixedPoint15(hn::Sub(next, here), hn::LoadU(d, weights)));
    return hn::ShiftRight<5>(hn::Add(value, hn::Set(d, mixedSteps / 2)));
}

/// `count` pixels; photo may be null. `weights` are four of a pixel.
void enlargeRow(const std::int16_t *mixed, const int *index, const std::int16_t *weights, const std::uint8_t *photo,
                std::uint8_t *to, std::size_t count) {
    const Eight d;
    const hn::Rebind<std::uint8_t, Eight> d8;
    std::size_t x = 0;
    for (; x + 2 <= count; x += 2) {
        auto value = enlargedPair(mixed, index + x, weights + 4 * x);
        if (photo != nullptr) {
            value = hn::Add(value, hn::PromoteTo(d, hn::LoadU(d8, photo + 4 * x)));
        }
        hn::StoreU(hn::DemoteTo(d8, value), d8, to + 4 * x);
    }
    if (x < count) {
        const int twice[2] = {index[x], index[x]};
        std::int16_t weight[8];
        std::uint8_t bytes[8] = {};
        std::memcpy(weight, weights + 4 * x, 8);
        std::memcpy(weight + 4, weights + 4 * x, 8);
        auto value = enlargedPair(mixed, twice, weight);
        if (photo != nullptr) {
            std::memcpy(bytes, photo + 4 * x, 4);
            value = hn::Add(value, hn::PromoteTo(d, hn::LoadU(d8, bytes)));
        }
        hn::StoreU(hn::DemoteTo(d8, value), d8, bytes);
        std::memcpy(to + 4 * x, bytes, 4);
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(mixRows);
HWY_EXPORT(enlargeRow);

namespace {

void enlargeArea(ConstPixelView small, const ConstPixelView *minus, const ConstPixelView *photo, PixelView target,
                 PixelRect area) {
    const Places columns(area.left, area.right, target.width, small.width);
    const Places rows(area.top, area.bottom, target.height, small.height);
    std::vector<std::int16_t> weights;
    weights.reserve(columns.weight.size() * 4);
    for (const int weight : columns.weight) {
        weights.insert(weights.end(), 4, static_cast<std::int16_t>(weight * weightToFixed));
    }
    const auto bytes = std::size_t(small.width) * 4;
    forBands(area, [&](PixelRect band) {
        std::vector<std::int16_t> mixed(bytes + 4); // one pixel after the last one, whose weight is 0
        for (int y = band.top; y < band.bottom; ++y) {
            const int upper = rows.index[std::size_t(y - area.top)];
            const int lower = std::min(upper + 1, small.height - 1);
            const RowPair pair{small.row(upper), small.row(lower), minus != nullptr ? minus->row(upper) : nullptr,
                               minus != nullptr ? minus->row(lower) : nullptr, rows.weight[std::size_t(y - area.top)]};
            HWY_DYNAMIC_DISPATCH(mixRows)(pair, bytes, mixed.data());
            const std::ptrdiff_t begin = std::ptrdiff_t(4) * area.left;
            HWY_DYNAMIC_DISPATCH(enlargeRow)
            (mixed.data(), columns.index.data(), weights.data(), photo != nullptr ? photo->row(y) + begin : nullptr,
             target.row(y) + begin, std::size_t(area.width()));
        }
    });
}

} // namespace

void enlarge(ConstPixelView small, PixelView target, PixelRect area) {
    enlargeArea(small, nullptr, nullptr, target, area);
}

void addEnlargedDifference(ConstPixelView photo, ConstPixelView small, ConstPixelView changed, PixelView target,
                           PixelRect area) {
    enlargeArea(changed, &small, &photo, target, area);
}

} // namespace lumora
#endif
