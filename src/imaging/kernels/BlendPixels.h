// Blending neighbouring pixels: the two steps of bilinear sampling.
#pragma once

#include <cstdint>
#include <span>

namespace lumora {

/// For each result pixel the two source pixels of a row that it lies between, and how far it is on the way.
struct PixelPairs {
    std::span<const std::int32_t> first;   ///< indices of pixels in the row
    std::span<const std::int32_t> second;  ///< as many
    std::span<const std::uint32_t> weight; ///< of the second: 0 to 256, in both halves of the number; as many
};

/// out[x] = the blend of a[x] and b[x], b counting `weight` 256ths (0 to 256): each byte rounded, halves up. `out` may
/// be `a` or `b`; all have the same length.
void blendRows(std::span<const std::uint32_t> a, std::span<const std::uint32_t> b, unsigned weight,
               std::span<std::uint32_t> out);

/// out[x] = the blend of the pixels `pairs.first[x]` and `pairs.second[x]` of the row, rounded in the same way. `out`
/// is as long as the pairs; no index is checked.
void blendPairs(const std::uint32_t *row, const PixelPairs &pairs, std::span<std::uint32_t> out);

} // namespace lumora
