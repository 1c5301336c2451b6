// The alpha bytes of a picture: whether any says "not opaque", and making them all 255.
#pragma once

#include "imaging/PixelView.h"

namespace lumora {

/// Whether every alpha byte is 255.
bool allOpaque(ConstPixelView picture);

/// Sets every alpha byte to 255; colours stay.
void makeOpaque(PixelView picture);

} // namespace lumora
