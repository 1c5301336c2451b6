#include "imaging/effects/Posterise.h"

#include "imaging/kernels/RowBands.h"

#include <algorithm>
#include <array>

namespace lumora {

void applyPosterise(const Posterise &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    const int steps = std::clamp(parameters.levels, 2, 256) - 1;
    std::array<std::uint8_t, 256> level{};
    for (int value = 0; value < 256; ++value) {
        const int step = (value * steps + 127) / 255;
        level[std::size_t(value)] = static_cast<std::uint8_t>((step * 255 + steps / 2) / steps);
    }
    forBands(area, [&](PixelRect band) {
        for (int y = band.top; y < band.bottom; ++y) {
            for (int i = 4 * band.left; i < 4 * band.right; ++i) {
                const std::uint8_t value = source.row(y)[i];
                target.row(y)[i] = i % 4 == 3 ? value : level[value];
            }
        }
    });
}

} // namespace lumora
