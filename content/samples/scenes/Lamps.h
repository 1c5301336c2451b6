// Lamps that stand in a scene, beside the one sun that Light knows. A scene adds what they throw on a place to the
// glow of its surfaces, and what they throw into dusty air in its `air`.
#pragma once

#include "Scene.h"

namespace lumora::samples {

/// Share of the lamp's light that gets as far as `p`; a higher `softness` is a harder edge.
inline float lampReaching(const Scene &scene, Vec3 p, Vec3 lamp, float softness = 14) {
    const float end = length(lamp - p);
    const Vec3 d = (lamp - p) * (1 / end);
    float share = 1;
    float t = 0.04F;
    for (int i = 0; i < 30 && t < end - 0.3F; ++i) {
        const float h = scene.map(p + d * t).distance;
        share = std::min(share, 0.5F + 0.5F * softness * h / t);
        if (share < 0.02F) {
            return 0;
        }
        t += std::clamp(h, end / 120, end / 8);
    }
    share = clamp01(share);
    return share * share * (3 - 2 * share);
}

/// A stage light: its cone has a soft rim, and its light thins with the distance.
struct Spot {
    Vec3 at;
    Vec3 aim;
    float width; ///< tangent of half the cone's angle
    Vec3 light;

    /// How bright it shines at the place, if nothing stands between.
    float brightness(Vec3 p) const {
        const Vec3 axis = normalise(aim - at);
        const float along = dot(p - at, axis);
        if (along <= 0) {
            return 0;
        }
        const float off = length(p - at - axis * along) / (along * width);
        return smoothStep(1.0F, 0.72F, off) / (1 + 0.02F * along * along);
    }
};

} // namespace lumora::samples
