// Pop-art: a photo as a silkscreen print in one dark and one light colour. Four of them make the pop-art row.
#pragma once

#include "imaging/Region.h"

#include <cstdint>

namespace lumora {

/// The thresholds between the tones of a photo, in levels, 0 to 255; clamped, and `highlight` not below `light`.
struct PopArtLevels {
    int light = 85;      ///< darker is printed in the dark colour
    int highlight = 170; ///< lighter is printed in a tint of the light colour

    bool operator==(const PopArtLevels &) const = default;
};

struct PopArtColours {
    std::uint32_t dark = 0; ///< 0xRRGGBB; higher bits are ignored
    std::uint32_t light = 0xFFFFFF;

    bool operator==(const PopArtColours &) const = default;
};

struct PopArt {
    PopArtColours colours;
    PopArtLevels levels;
};

/// Three flat tones: the dark colour, the light one, and half-way from that to white for what is lightest. Lightness is
/// weighted like a photographer's orange filter, 0.5 R + 0.4 G + 0.1 B rounded: it brightens faces, fur and petals and
/// darkens sky and sea. Around a threshold the tones blend over 13 levels, which gives smooth edges and no gradients:
/// with s(level) = clamp(20 * (lightness - level) + 128, 0, 255), each channel is
///   (dark * (255 - s(light)) + light * (s(light) - s(highlight)) + tint * s(highlight)) / 255, rounded.
/// Alpha is kept. Source and target have equal size and contain area.
void applyPopArt(const PopArt &parameters, ConstPixelView source, PixelView target, PixelRect area);

/// The thresholds that divide the picture's pixels by lightness into the three classes with the smallest variance
/// within (N. Otsu, "A threshold selection method from gray-level histograms", IEEE Transactions on Systems, Man, and
/// Cybernetics 9, 1979). Pixels are weighted with alpha. The default thresholds when all are equally light.
PopArtLevels popArtLevels(ConstPixelView picture);

} // namespace lumora
