// Grass that several scenes grow.
#pragma once

#include "Noise.h"

namespace lumora::samples {

/// Height of a meadow's blades, 0 to 1; `density` blades a unit each way.
inline float blades(float x, float z, float density) {
    const Cell blade = cells(x * density, z * density);
    return (0.3F + 0.7F * blade.id) * std::max(0.0F, 1 - blade.distance * 1.35F);
}

} // namespace lumora::samples
