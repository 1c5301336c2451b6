// Blending transparent pixels with white, for formats without transparency.
#pragma once

#include <cstdint>

namespace lumora {

/// Blends `width` pixels (blue, green, red, straight alpha) with white; the result is opaque. Rounded to the nearest.
inline void rowOntoWhite(const std::uint8_t *from, int width, std::uint8_t *to) {
    for (int x = 0; x < width; ++x, from += 4, to += 4) {
        const int alpha = from[3];
        for (int channel = 0; channel < 3; ++channel) {
            to[channel] = static_cast<std::uint8_t>((from[channel] * alpha + 255 * (255 - alpha) + 127) / 255);
        }
        to[3] = 255;
    }
}

} // namespace lumora
