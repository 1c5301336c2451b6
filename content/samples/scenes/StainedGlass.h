// Patterns of coloured glass for church and castle windows.
#pragma once

#include "Noise.h"
#include "Shapes.h"

namespace lumora::samples {

/// Colour of a tall window's pane, leads included; u from its middle, v its height, both in metres.
inline Vec3 lancetGlass(float u, float v, int window) {
    const Vec3 tints[] = {colour(0xE8203A), colour(0x2458F0), colour(0xFFC21E),
                          colour(0x18B060), colour(0x9A34E0), colour(0x28C4E8)};
    // Medallions over a net of diamonds.
    const float y = repeat(v - 2.3F, 1.25F);
    const float r = length(u, y);
    if (r < 0.5F) {
        if (std::fabs(r - 0.47F) < 0.03F || std::fabs(r - 0.2F) < 0.02F) {
            return {0.02F, 0.02F, 0.02F};
        }
        const int petal = static_cast<int>(std::floor((std::atan2(y, u) / Pi + 1) * 4));
        return r < 0.2F ? tints[2] : tints[(petal % 2 == 0 ? 0 : 1) + (window & 1) * 3];
    }
    const float a = (u + v * 0.6F) * 3.2F;
    const float b = (u - v * 0.6F) * 3.2F;
    if (std::min(fraction(a), fraction(b)) < 0.09F) {
        return {0.02F, 0.02F, 0.02F};
    }
    const int one =
        static_cast<int>(hash(static_cast<int>(std::floor(a)), static_cast<int>(std::floor(b)), window) * 6);
    return mix(tints[one], tints[1 + (window & 1) * 4], 0.35F);
}

/// Colour of a round window of twelve petals, 2 metres in radius; a negative red is the stone between the panes.
inline Vec3 roseGlass(float x, float y) {
    const float r = length(x, y);
    const float angle = std::atan2(y, x);
    const float slice = repeat(angle, Pi / 6);
    const int one = static_cast<int>(std::round(angle / (Pi / 6)) + 12);
    const float petal = std::min(length(r * std::cos(slice) - 1.55F, r * std::sin(slice)) - 0.36F,
                                 std::max(std::fabs(r * std::sin(slice)) - 0.17F * r, std::fabs(r - 0.98F) - 0.4F));
    const Vec3 tints[] = {colour(0xE8203A), colour(0xFFC21E), colour(0x2458F0),
                          colour(0x9A34E0), colour(0x28C4E8), colour(0x18B060)};
    const float eye = r - 0.45F;
    if (std::min(petal, eye) > -0.03F) {
        return {-1, 0, 0};
    }
    return eye < 0 ? colour(0xFFE08A) : tints[(one + (r > 1.2F ? 2 : 0)) % 6];
}

} // namespace lumora::samples
