// Pop-art: a photo as a silkscreen print in one dark and one light colour. Four of them make the pop-art row.
#pragma once

#include "imaging/Region.h"

#include <cstdint>

namespace lumora {

/// Where the tones of a photo part, in levels of luma, 0 to 255; clamped, and `highlight` not below `light`.
struct PopArtLevels {
    int light = 85;      ///< darker is printed in the dark colour
    int highlight = 170; ///< lighter is printed in a tint of the light colour

    bool operator==(const PopArtLevels &) const = default;
};

struct PopArtColours {
    std::uint32_t dark = 0; ///< 0xRRGGBB; what lies above is ignored
    std::uint32_t light = 0xFFFFFF;

    bool operator==(const PopArtColours &) const = default;
};

struct PopArt {
    PopArtColours colours;
    PopArtLevels levels;
};

/// Three flat tones by luma (ITU-R BT.601): the dark colour, the light one, and half-way from that to white for what is
/// lightest. About a level the tones pass into each other over 13 levels, which makes smooth edges and no gradients:
/// with s(level) = clamp(20 * (luma - level) + 128, 0, 255), each channel is
///   (dark * (255 - s(light)) + light * (s(light) - s(highlight)) + tint * s(highlight)) / 255, rounded.
/// Alpha is kept. Source and target have one size; the area lies within it.
void applyPopArt(const PopArt &parameters, ConstPixelView source, PixelView target, PixelRect area);

/// The levels that part the picture's luma into the three classes that differ least within themselves (N. Otsu, "A
/// threshold selection method from gray-level histograms", IEEE Transactions on Systems, Man, and Cybernetics 9, 1979).
/// Pixels count as much as they are opaque. The usual levels where the picture has one luma only.
PopArtLevels popArtLevels(ConstPixelView picture);

} // namespace lumora
