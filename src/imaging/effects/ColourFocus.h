// Colour focus: one colour of the photo stays, the others turn grey.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct ColourFocus {
    int red = 0; ///< the colour that stays; channels 0 to 255, clamped
    int green = 0;
    int blue = 0;
    int tolerance = 30; ///< degrees of hue to either side, 0 to 180, clamped; 180 keeps every colour
};

/// Pixels whose hue is within the tolerance keep their colour; over the next 20 degrees of hue it fades into the luma
/// (ITU-R BT.601), which all others get. Hue is the direction in the plane of blue - luma and red - luma, so light and
/// dark shades of a colour count as one; a colour without hue (grey) is far from every other, and so picking grey makes
/// the whole photo grey. Alpha stays. The fade is computed in floating point (square root, division, one product) that
/// every processor rounds alike. Source and target have equal size, may be the same picture and contain area.
void applyColourFocus(const ColourFocus &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
