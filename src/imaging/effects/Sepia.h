// Sepia: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Sepia {};

/// Brown tones by the matrix that most programs use (it is also the reference code of the W3C's
/// Filter Effects Module, "sepia"):
///   R' = 0.393 R + 0.769 G + 0.189 B,  G' = 0.349 R + 0.686 G + 0.168 B,  B' = 0.272 R + 0.534 G + 0.131 B,
/// each rounded and cut at 255. Alpha is kept. Source and target have equal size and contain area.
void applySepia(const Sepia &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
