#include "imaging/kernels/ColumnSums.h"

#include "imaging/kernels/Targets.h"

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/kernels/ColumnSums.cpp"
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Bytes `i` to `i` + lanes of a row as 32-bit numbers.
template <typename D32> hn::Vec<D32> wideBytes(D32 d32, const std::uint8_t *from) {
    return hn::PromoteTo(d32, hn::LoadU(hn::Rebind<std::uint8_t, D32>(), from));
}

/// Where all of up to 257 rows have one weight: their 16-bit sums are multiplied. Returns how many sums were made.
std::size_t sumEvenly(const std::uint8_t *first, std::ptrdiff_t stride, int rows, std::uint32_t weight,
                      std::uint32_t *totals, std::size_t bytes) {
    const hn::ScalableTag<std::uint16_t> d16;
    const hn::Half<decltype(d16)> half16;
    const hn::Rebind<std::uint8_t, decltype(d16)> d8;
    const hn::ScalableTag<std::uint32_t> d32;
    const std::size_t lanes = hn::Lanes(d16);
    const auto weights = hn::Set(d32, weight);
    std::size_t i = 0;
    for (; i + lanes <= bytes; i += lanes) {
        auto sum = hn::Zero(d16);
        const std::uint8_t *row = first + i;
        for (int y = 0; y < rows; ++y, row += stride) {
            sum = hn::Add(sum, hn::PromoteTo(d16, hn::LoadU(d8, row)));
        }
        hn::StoreU(hn::Mul(hn::PromoteTo(d32, hn::LowerHalf(half16, sum)), weights), d32, totals + i);
        hn::StoreU(hn::Mul(hn::PromoteTo(d32, hn::UpperHalf(half16, sum)), weights), d32, totals + i + lanes / 2);
    }
    return i;
}

void sumColumnsKernel(const std::uint8_t *first, std::ptrdiff_t stride, const RowWeights &rows, std::uint32_t *totals,
                      std::size_t bytes) {
    const hn::ScalableTag<std::uint16_t> d16;
    const hn::Half<decltype(d16)> half16;
    const hn::Rebind<std::uint8_t, decltype(d16)> d8;
    const hn::ScalableTag<std::uint32_t> d32;
    const std::size_t lanes = hn::Lanes(d16);
    constexpr int rowsAtOnce = 256; // 16-bit sums of bytes hold 257
    const std::uint8_t *last = rows.last != 0 ? first + stride * (rows.rowsBetween + 1) : first;
    const auto wholeWeight = hn::Set(d32, rows.between);
    const bool isEven = rows.first == rows.between && (rows.last == rows.between || rows.last == 0);
    const int count = 1 + rows.rowsBetween + (rows.last != 0 ? 1 : 0);
    std::size_t i = isEven && count <= rowsAtOnce ? sumEvenly(first, stride, count, rows.between, totals, bytes) : 0;
    for (; i + lanes <= bytes; i += lanes) {
        auto low = hn::Add(hn::Mul(wideBytes(d32, first + i), hn::Set(d32, rows.first)),
                           hn::Mul(wideBytes(d32, last + i), hn::Set(d32, rows.last)));
        auto high = hn::Add(hn::Mul(wideBytes(d32, first + i + lanes / 2), hn::Set(d32, rows.first)),
                            hn::Mul(wideBytes(d32, last + i + lanes / 2), hn::Set(d32, rows.last)));
        const std::uint8_t *row = first + stride + i;
        for (int done = 0; done < rows.rowsBetween; done += rowsAtOnce) {
            auto sum = hn::Zero(d16);
            for (int y = std::min(rowsAtOnce, rows.rowsBetween - done); y > 0; --y, row += stride) {
                sum = hn::Add(sum, hn::PromoteTo(d16, hn::LoadU(d8, row)));
            }
            low = hn::Add(low, hn::Mul(hn::PromoteTo(d32, hn::LowerHalf(half16, sum)), wholeWeight));
            high = hn::Add(high, hn::Mul(hn::PromoteTo(d32, hn::UpperHalf(half16, sum)), wholeWeight));
        }
        hn::StoreU(low, d32, totals + i);
        hn::StoreU(high, d32, totals + i + lanes / 2);
    }
    for (; i < bytes; ++i) {
        std::uint32_t sum = first[i] * rows.first + last[i] * rows.last;
        for (int y = 1; y <= rows.rowsBetween; ++y) {
            sum += first[y * stride + static_cast<std::ptrdiff_t>(i)] * rows.between;
        }
        totals[i] = sum;
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(sumColumnsKernel);

void sumColumns(const std::uint8_t *firstRow, std::ptrdiff_t stride, const RowWeights &weights, std::uint32_t *totals,
                std::size_t bytes) {
    HWY_DYNAMIC_DISPATCH(sumColumnsKernel)(firstRow, stride, weights, totals, bytes);
}

} // namespace lumora
#endif
