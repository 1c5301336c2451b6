// Colourise: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Colourise {
    int red = 127; ///< the colour, 0 to 255 a channel; clamped
    int green = 127;
    int blue = 127;
};

/// The picture in shades of one colour: from black at luma 0 (ITU-R BT.601) through the colour at half to white at 255,
/// so that shadows and highlights stay. This is the lightness ramp of the HSL colour model at full saturation; a
/// middle grey gives a greyscale picture. With y the luma, each channel is
///   (colour * min(2y, 255) + (255 - colour) * max(2y - 255, 0)) / 255, rounded.
/// Alpha is kept. Source and target have equal size and contain area.
void applyColourise(const Colourise &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
