// Adding up rows of bytes, the first half of every mean over an area.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lumora {

/// How much each of a run of rows counts: the first, those between, the last.
struct RowWeights {
    std::uint32_t first = 1;
    int rowsBetween = 0;
    std::uint32_t between = 1;
    std::uint32_t last = 0; ///< 0: there is none, and no such row is read
};

/// totals[i] = the weighted sum of byte i of the rows that begin at firstRow, `stride` bytes apart, for `bytes` bytes.
/// The caller sees to it that sums stay below 2^32.
void sumColumns(const std::uint8_t *firstRow, std::ptrdiff_t stride, const RowWeights &weights, std::uint32_t *totals,
                std::size_t bytes);

} // namespace lumora
