#include "imaging/effects/Texture.h"

#include "imaging/kernels/Shade.h"

#include <algorithm>

namespace lumora {

namespace {

constexpr int neutral = 128;

/// The shade of one pixel of the texture; `strength` in percent.
Shade shadeOf(const std::uint8_t *pixel, int strength) {
    const int luma = (3736 * pixel[0] + 19235 * pixel[1] + 9797 * pixel[2] + (1 << 14)) >> 15;
    const int level = neutral + (luma - neutral) * pixel[3] * strength / (255 * 100);
    return level < neutral ? shadeTowards(0, 256 - 2 * level) : shadeTowards(255, 2 * (level - neutral));
}

} // namespace

bool applyTexture(const Texture &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    const ConstPixelView &texture = parameters.picture;
    if (texture.isEmpty() || parameters.layout != 0) {
        return false;
    }
    const int strength = 100 - std::clamp(parameters.fade, 0, 100);
    const int rows = std::min(texture.height, source.height);
    // Columns that the picture never shows are left out; the rest is then never repeated.
    const int columns = std::min(texture.width, source.width);
    ShadePattern pattern(columns, rows);
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < columns; ++x) {
            pattern.set(y, x, shadeOf(texture.row(y) + std::ptrdiff_t(4) * x, strength));
        }
    }
    applyPattern(
        pattern, [rows](int y) { return y % rows; }, source, target, area);
    return true;
}

} // namespace lumora
