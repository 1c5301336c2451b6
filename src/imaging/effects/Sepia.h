// Sepia: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Sepia {};

/// The tones of a toned print on cream paper: with L for luma (ITU-R BT.601) from 0 to 1,
///   R' = L (1.2 - 0.2 L),  G' = L (0.87 + 0.09 L),  B' = L (0.64 + 0.18 L).
/// Brown between black and a white of (255, 245, 209), chosen by eye; middle tones keep their lightness within a
/// twentieth. Unlike the matrix of the W3C's Filter Effects Module, whose rows add up to 1.35, it never exceeds white,
/// so that clouds keep their shape. Each channel is rounded. Alpha is kept. Source and target have equal size and
/// contain area.
void applySepia(const Sepia &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
