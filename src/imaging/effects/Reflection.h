// Reflection: the effect of that name, in four styles.
#pragma once

#include "imaging/Region.h"

namespace lumora {

/// Which they are, from 1.
enum class ReflectionStyle {
    Table = 1,    ///< the lower third mirrors what lies above it and fades into white, as on a polished table
    Water = 2,    ///< the lower half mirrors the upper one, darker and in waves
    Beside = 3,   ///< the right third mirrors what lies left of it and fades into white
    FourWays = 4, ///< the upper left quarter, mirrored to the right and downwards
};

struct Reflection {
    int style = 1; ///< a ReflectionStyle
};

/// False, and nothing done, for a style that does not exist. What is not mirrored stays where it is; alpha goes with
/// its pixel. Source and target have one size; the area lies within it. Throws std::bad_alloc when memory for some rows
/// is refused.
bool applyReflection(const Reflection &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
