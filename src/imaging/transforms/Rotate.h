// Rotation of a picture by any angle. Called by Transform.cpp.
#pragma once

#include "imaging/PixelView.h"

namespace lumora {

/// Fills the target with the source rotated clockwise about its middle, which is placed on the target's middle. Sine
/// and cosine of the angle say by how much. Bilinear: positions in 128ths of a pixel across and 32768ths down, integers
/// from there on, rounded once. Pixels beside the source are opaque white, and so the border is smooth. Colours of
/// both are multiplied by alpha, which is 255 in opaque pictures. Neither is empty; they do not overlap.
void rotatePixels(ConstPixelView source, PixelView target, double sine, double cosine);

} // namespace lumora
