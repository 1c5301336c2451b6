// Reflection: the effect of that name, in four styles.
#pragma once

#include "imaging/Region.h"

namespace lumora {

/// Which they are, from 1.
enum class ReflectionStyle {
    Table = 1,    ///< the photo, made smaller, stands on a polished white table, which mirrors it and fades
    Water = 2,    ///< the lower half mirrors the upper one, darker and in waves
    Beside = 3,   ///< the photo, made smaller, with its mirror image to the right, which fades to white
    FourWays = 4, ///< the upper left quarter, mirrored to the right and downwards
};

struct Reflection {
    int style = 1; ///< a ReflectionStyle
};

/// The picture keeps its size. The styles Table and Beside show the whole photo at 0.78 of its size (scaled by
/// transforms/Resample.h) on opaque white; the mirror image begins with a soft shadow where the two meet. In the other
/// styles pixels that are not mirrored stay, and alpha is copied with its pixel. Returns false and changes nothing for
/// an unknown style and when memory for a smaller photo is refused. Source and target have equal size and contain area.
/// Throws std::bad_alloc when memory for some rows cannot be allocated.
bool applyReflection(const Reflection &parameters, ConstPixelView source, PixelView target, PixelRect area,
                     bool opaque);

} // namespace lumora
