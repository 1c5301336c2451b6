// The alpha bytes of a picture: whether any of them is below 255, and setting all of them to 255.
#pragma once

#include "imaging/PixelView.h"

namespace lumora {

/// Whether every alpha byte is 255.
bool allOpaque(ConstPixelView picture);

/// Sets every alpha byte to 255; colours stay.
void makeOpaque(PixelView picture);

} // namespace lumora
