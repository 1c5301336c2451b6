#include "imaging/transforms/Resample.h"

#include "imaging/kernels/RowBands.h"
#include "imaging/kernels/Targets.h"

#include <cmath>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/transforms/Resample.cpp"
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Down the columns: weighted sums of `count` rows, in 64ths of a level. `bytes` is a multiple of 4.
void mixRows(const std::uint8_t *from, std::ptrdiff_t stride, const std::int32_t *weights, int count, std::size_t bytes,
             std::int16_t *to) {
    const auto run = [&](auto d, std::size_t i) {
        const hn::Rebind<std::uint8_t, decltype(d)> d8;
        const hn::Rebind<std::int16_t, decltype(d)> d16;
        for (const std::size_t lanes = hn::Lanes(d); i + lanes <= bytes; i += lanes) {
            auto sum = hn::Set(d, 128);
            for (int k = 0; k < count; ++k) {
                sum = hn::Add(sum,
                              hn::Mul(hn::PromoteTo(d, hn::LoadU(d8, from + k * stride + i)), hn::Set(d, weights[k])));
            }
            hn::StoreU(hn::DemoteTo(d16, hn::ShiftRight<8>(sum)), d16, to + i);
        }
        return i;
    };
    run(hn::CappedTag<std::int32_t, 4>(), run(hn::ScalableTag<std::int32_t>(), 0));
}

/// Along a row, whose first pixel is number `left`: pixel x of the result is the weighted sum of 2 * `pairs` pixels
/// from number first[x] on. Reads one pixel beyond the row where the last weight, then 0, has no pixel.
void mixColumns(const std::int16_t *from, int left, const int *first, const std::uint32_t *weights, int pairs,
                std::uint8_t *to, int width) {
    const hn::CappedTag<std::int16_t, 8> d16;
    const hn::CappedTag<std::int32_t, 4> d;
    const hn::CappedTag<std::uint32_t, 4> du;
    const hn::Rebind<std::uint8_t, decltype(d)> d8;
    const hn::Repartition<std::uint8_t, decltype(d)> dBytes;
    // Each channel of two pixels side by side.
    HWY_ALIGN static constexpr std::uint8_t order[16] = {0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15};
    const auto sideBySide = hn::Load(dBytes, order);
    for (int x = 0; x < width; ++x, to += 4) {
        const std::int16_t *pixel = from + std::ptrdiff_t(4) * (first[x] - left);
        auto sum = hn::Set(d, 1 << 19);
        auto second = hn::Zero(d);
        for (int k = 0; k < pairs; ++k, pixel += 8, ++weights) {
            const auto two = hn::TableLookupBytes(hn::LoadU(d16, pixel), hn::BitCast(d16, sideBySide));
            sum = hn::ReorderWidenMulAccumulate(d, two, hn::BitCast(d16, hn::Set(du, *weights)), sum, second);
        }
        hn::StoreU(hn::DemoteTo(d8, hn::ShiftRight<20>(hn::RearrangeToOddPlusEven(sum, second))), d8, to);
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(mixRows);
HWY_EXPORT(mixColumns);

namespace {

double cubic(double distance) {
    const double x = std::abs(distance);
    if (x < 1) {
        return (1.5 * x - 2.5) * x * x + 1;
    }
    return x < 2 ? ((-0.5 * x + 2.5) * x - 4) * x + 2 : 0;
}

/// Whole weights that sum to exactly 16384: what rounding loses goes to the largest.
void appendWeights(const std::vector<double> &shares, std::vector<std::int32_t> &weights) {
    constexpr int one = 16384;
    double total = 0;
    for (const double share : shares) {
        total += share;
    }
    const auto begin = static_cast<std::ptrdiff_t>(weights.size());
    int rest = one;
    for (const double share : shares) {
        weights.push_back(static_cast<std::int32_t>(std::lround(share * one / total)));
        rest -= weights.back();
    }
    *std::max_element(weights.begin() + begin, weights.end()) += rest;
}

} // namespace

CubicTaps::CubicTaps(int source, int target) {
    const double ratio = double(source) / target;
    const double stretch = std::max(1.0, ratio);
    const int reached = static_cast<int>(std::ceil(4 * stretch));
    count = std::min(reached, source);
    first.reserve(std::size_t(target));
    weights.reserve(std::size_t(target) * std::size_t(count));
    std::vector<double> shares;
    for (int i = 0; i < target; ++i) {
        const double centre = (i + 0.5) * ratio - 0.5;
        const int lowest = static_cast<int>(std::floor(centre - 2 * stretch)) + 1;
        first.push_back(std::clamp(lowest, 0, source - count));
        shares.assign(std::size_t(count), 0.0);
        for (int k = lowest; k < lowest + reached; ++k) {
            shares[std::size_t(std::clamp(k, 0, source - 1) - first.back())] += cubic((k - centre) / stretch);
        }
        appendWeights(shares, weights);
    }
}

Resampler::Resampler(ConstPixelView source, int width, int height)
    : m_source(source), m_across(source.width, width), m_down(source.height, height),
      m_pairs((m_across.count + 1) / 2) {
    m_weightPairs.reserve(std::size_t(width) * std::size_t(m_pairs));
    for (auto weight = m_across.weights.begin(); weight != m_across.weights.end(); weight += m_across.count) {
        for (int k = 0; k < m_across.count; k += 2) {
            const std::int32_t next = k + 1 < m_across.count ? weight[k + 1] : 0;
            m_weightPairs.push_back((static_cast<std::uint32_t>(weight[k]) & 0xFFFF) | static_cast<std::uint32_t>(next)
                                                                                           << 16);
        }
    }
}

void Resampler::writeRow(int y, int begin, int end, std::uint8_t *to, std::int16_t *memory) const {
    if (begin >= end) {
        return;
    }
    const int *first = m_across.first.data() + begin;
    const int left = *first;
    const std::size_t bytes = std::size_t(m_across.first[std::size_t(end) - 1] + m_across.count - left) * 4;
    HWY_DYNAMIC_DISPATCH(mixRows)
    (m_source.row(m_down.first[std::size_t(y)]) + std::ptrdiff_t(4) * left, m_source.stride,
     m_down.weights.data() + std::ptrdiff_t(y) * m_down.count, m_down.count, bytes, memory);
    HWY_DYNAMIC_DISPATCH(mixColumns)
    (memory, left, first, m_weightPairs.data() + std::ptrdiff_t(begin) * m_pairs, m_pairs, to, end - begin);
}

void resample(ConstPixelView source, PixelView target) {
    const Resampler resampler(source, target.width, target.height);
    const std::int64_t cost = target.width + std::int64_t(source.width) * resampler.down().count / 4;
    forRowBands(target.height, cost, [&](int first, int end) {
        std::vector<std::int16_t> memory(resampler.rowMemory());
        for (int y = first; y < end; ++y) {
            resampler.writeRow(y, 0, target.width, target.row(y), memory.data());
        }
    });
}

} // namespace lumora
#endif
