#include "imaging/kernels/StrokeFlow.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace lumora {

namespace {

std::uint32_t hashOf(int x, int y) {
    std::uint32_t h = static_cast<std::uint32_t>(x) * 0x9E3779B1U ^ static_cast<std::uint32_t>(y) * 0x85EBCA77U;
    h = (h ^ h >> 15) * 0x2C1B3C6DU;
    h = (h ^ h >> 12) * 0x297A2D39U;
    return h ^ h >> 15;
}

/// From -1 to 1 and back.
float triangle(float phase) {
    return 4 * std::abs(phase - std::floor(phase) - .5F) - 1;
}

/// Where nothing in the picture says it, strokes run in slowly changing directions: a doubled angle, at a place in
/// pixels of the picture in which directions are sought.
std::array<float, 2> handsOwnDirection(int column, int row) {
    const auto x = static_cast<float>(column);
    const auto y = static_cast<float>(row);
    return {triangle(.0071F * x + .0113F * y) + .3F, triangle(.0127F * x - .0059F * y + .37F) - .2F};
}

} // namespace

void flowOf(ConstPixelView picture, PixelView flow, int left, int top) {
    constexpr float soft = 12; // levels of contrast that count half
    constexpr float own = 5;   // the strength of the hand's own direction
    const int lastColumn = picture.width - 1;
    const int lastRow = picture.height - 1;
    for (int y = 0; y < picture.height; ++y) {
        const std::uint8_t *above = picture.row(std::max(y - 1, 0));
        const std::uint8_t *here = picture.row(y);
        const std::uint8_t *below = picture.row(std::min(y + 1, lastRow));
        std::uint8_t *to = flow.row(y);
        for (int x = 0; x < picture.width; ++x, to += 4) {
            const int before = 4 * std::max(x - 1, 0);
            const int after = 4 * std::min(x + 1, lastColumn);
            int xx = 0;
            int yy = 0;
            int xy = 0;
            for (int c = 0; c < 3; ++c) {
                const int gx = 3 * (above[after + c] - above[before + c] + below[after + c] - below[before + c]) +
                               10 * (here[after + c] - here[before + c]);
                const int gy = 3 * (below[before + c] - above[before + c] + below[after + c] - above[after + c]) +
                               10 * (below[4 * x + c] - above[4 * x + c]);
                xx += gx * gx;
                yy += gy * gy;
                xy += gx * gy;
            }
            const auto energy = static_cast<float>(xx) + static_cast<float>(yy);
            const float contrast = std::sqrt(energy) / 32;
            const float strength = (120 - 1.5F * own) * contrast / (contrast + soft);
            const float scale = energy > 0 ? strength / energy : 0;
            const auto [ownCosine, ownSine] = handsOwnDirection(left + x, top + y);
            // NOLINTNEXTLINE(bugprone-incorrect-roundings): levels are not negative
            const auto byte = [](float value) { return static_cast<std::uint8_t>(value + .5F); };
            to[0] = byte(128 + static_cast<float>(yy - xx) * scale + own * ownCosine);
            to[1] = byte(128 - static_cast<float>(2 * xy) * scale + own * ownSine);
            to[2] = byte(strength + own);
            to[3] = 255;
        }
    }
}

namespace {

/// Where the centres of a line of pixels are between the points of a lattice.
struct LatticePlace {
    int cell;
    int share; ///< of the next point, of 64
};

std::vector<LatticePlace> latticePlaces(int first, int count, double cell) {
    std::vector<LatticePlace> places;
    places.reserve(std::size_t(count));
    for (int i = first; i < first + count; ++i) {
        const double at = (i + .5) / cell;
        places.push_back({static_cast<int>(at), static_cast<int>(64 * (at - std::floor(at)))});
    }
    return places;
}

} // namespace

void addNoise(PixelView flow, int left, int top, double cell) {
    const auto across = latticePlaces(left, flow.width, cell);
    const auto down = latticePlaces(top, flow.height, cell);
    const int firstCell = across.front().cell;
    const auto columns = std::size_t(across.back().cell - firstCell) + 3;
    std::vector<std::int16_t> above(columns);
    std::vector<std::int16_t> below(columns);
    const auto fill = [&](std::vector<std::int16_t> &line, int row) {
        const auto height = [&](int x, int y) { return static_cast<int>(hashOf(x, y) >> 25); };
        for (std::size_t i = 0; i < columns; ++i) {
            const int x = firstCell + int(i);
            line[i] = static_cast<std::int16_t>(height(x + 1, row + 1) - height(x, row));
        }
    };
    std::vector<int> mixed(columns); // in 64ths
    int filled = -2;
    for (int y = 0; y < flow.height; ++y) {
        const auto [row, share] = down[std::size_t(y)];
        if (row != filled) {
            fill(above, row);
            fill(below, row + 1);
            filled = row;
        }
        for (std::size_t i = 0; i < columns; ++i) {
            mixed[i] = above[i] * (64 - share) + below[i] * share;
        }
        std::uint8_t *to = flow.row(y) + 3;
        for (const auto &[cellX, shareX] : across) {
            const int *pair = mixed.data() + (cellX - firstCell);
            *to = static_cast<std::uint8_t>((pair[0] * (64 - shareX) + pair[1] * shareX) >> 12);
            to += 4;
        }
    }
}

} // namespace lumora
