// The mean of a block of pixels, plainly: for blocks that are cut short and for transparent pictures.
#pragma once

#include "imaging/Region.h"

namespace lumora {

/// The four bytes of the mean pixel of the block, rounded, halves up; colours are weighted with alpha, and where all
/// alpha is 0 the result is 0.
inline void meanOfBlock(ConstPixelView source, PixelRect block, std::uint8_t *mean) {
    std::uint64_t colour[3] = {};
    std::uint64_t alpha = 0;
    for (int y = block.top; y < block.bottom; ++y) {
        const std::uint8_t *from = source.row(y) + std::ptrdiff_t(4) * block.left;
        for (int x = block.left; x < block.right; ++x, from += 4) {
            alpha += from[3];
            for (int c = 0; c < 3; ++c) {
                colour[c] += std::uint32_t(from[c]) * from[3];
            }
        }
    }
    const std::uint64_t count = std::uint64_t(block.width()) * std::uint64_t(block.height());
    for (int c = 0; c < 3; ++c) {
        mean[c] = alpha == 0 ? 0 : static_cast<std::uint8_t>((colour[c] + alpha / 2) / alpha);
    }
    mean[3] = static_cast<std::uint8_t>((alpha + count / 2) / count);
}

} // namespace lumora
