// Trees and grass that several scenes plant.
#pragma once

#include "Noise.h"
#include "Shapes.h"

namespace lumora::samples {

/// A fir of the given height with drooping tiers of branches; p = 0 is the foot of its trunk.
inline float fir(Vec3 p, float height, float spread, float seed) {
    const float rough = rodY(p - Vec3{0, height * 0.5F, 0}, spread, height * 0.5F);
    if (rough > height * 0.15F) {
        return rough;
    }
    const float y = p.y / height;
    const float angle = std::atan2(p.z, p.x);
    const float tiers = 9 * std::pow(std::max(y, 0.0F), 0.85F) + 0.12F * std::sin(angle * 5 + seed * 9) +
                        0.35F * noise(angle * 2 + seed * 31, y * 7);
    const float tier = fraction(tiers);
    const float needles = noise(Vec3{p.x * 34, p.y * 22, p.z * 34} * (1 / height)) +
                          0.5F * noise(Vec3{p.x * 80, p.y * 50, p.z * 80} * (1 / height));
    const float twigs = 0.78F + 0.22F * std::sin(angle * 13 + std::floor(tiers) * 2.4F + seed * 7);
    const float radius = spread * (1.02F - y) * mix(0.98F, 0.45F, tier) * twigs + spread * 0.16F * (needles - 0.75F);
    const float crown = std::max((length(p.x, p.z) - radius) * 0.5F, std::max(0.12F * height - p.y, p.y - height));
    return std::min(crown, rodY(p - Vec3{0, height * 0.1F, 0}, height * 0.022F, height * 0.12F));
}

/// Height of a meadow's blades, 0 to 1; `density` blades a unit each way.
inline float blades(float x, float z, float density) {
    const Cell blade = cells(x * density, z * density);
    return (0.3F + 0.7F * blade.id) * std::max(0.0F, 1 - blade.distance * 1.35F);
}

} // namespace lumora::samples
