// Reflection: the effect of that name, in four styles.
#pragma once

#include "imaging/Region.h"

namespace lumora {

/// Which they are, from 1.
enum class ReflectionStyle {
    Table = 1,    ///< the lower third mirrors the part above it and fades to white, as on a polished table
    Water = 2,    ///< the lower half mirrors the upper one, darker and in waves
    Beside = 3,   ///< the right third mirrors the part to its left and fades to white
    FourWays = 4, ///< the upper left quarter, mirrored to the right and downwards
};

struct Reflection {
    int style = 1; ///< a ReflectionStyle
};

/// Returns false and changes nothing for an unknown style. Pixels that are not mirrored stay; alpha is copied with its
/// pixel. Source and target have equal size and contain area. Throws std::bad_alloc when memory for some rows cannot be
/// allocated.
bool applyReflection(const Reflection &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
