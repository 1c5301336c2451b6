#include "imaging/effects/Tile.h"

#include "imaging/kernels/Shade.h"

#include <algorithm>

namespace lumora {

namespace {

constexpr Shade jointShade = shadeTowards(232, 256);
constexpr Shade lightShade = shadeTowards(255, 100);
constexpr Shade darkShade = shadeTowards(0, 90);

/// The shade at a place in a tile. A lit and a dark edge meet along the diagonal of the corner.
Shade shadeAt(int x, int y, int width, int height, int joint, int edge) {
    const int lit = std::min(x, y);
    const int dark = std::min(width - 1 - x, height - 1 - y);
    const int distance = std::min(lit, dark);
    if (distance < joint) {
        return jointShade;
    }
    if (distance < edge) {
        return lit <= dark ? lightShade : darkShade;
    }
    return noShade;
}

} // namespace

void applyTile(const Tile &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    const int width = std::clamp(parameters.width, 1, source.width);
    const int height = std::clamp(parameters.height, 1, source.height);
    const int shorter = std::min(width, height);
    const int joint = shorter / 48;
    const int edge = joint + shorter / 16;
    // The rows of the upper edge, one for all rows between, and those of the lower edge.
    ShadePattern pattern(width, 2 * edge + 1);
    for (int row = 0; row <= 2 * edge; ++row) {
        const int y = row <= edge ? row : height - 1 - 2 * edge + row;
        for (int x = 0; x < width; ++x) {
            pattern.set(row, x, shadeAt(x, y, width, height, joint, edge));
        }
    }
    const auto rowOf = [=](int y) {
        const int inTile = y % height;
        return inTile < edge ? inTile : std::max(edge, inTile - (height - 1 - 2 * edge));
    };
    applyPattern(pattern, rowOf, source, target, area);
}

} // namespace lumora
