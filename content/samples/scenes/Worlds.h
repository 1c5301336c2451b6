// Moons and planets that hang in a scene's sky.
#pragma once

#include "Noise.h"
#include "Vec.h"

namespace lumora::samples {

constexpr Vec3 NightSide{0.016F, 0.011F, 0.07F}; ///< the air shimmers a little before the dark side

/// A ball far away, `size` radians in radius, over the light of the sky. Lit by the sun, dark as night behind.
inline Vec3 moon(Vec3 light, Vec3 d, Vec3 sun, Vec3 towards, float size, Vec3 tint, float craters) {
    const Vec3 c = normalise(towards);
    const float b = dot(c, d);
    const float inside = size * size - (1 - b * b);
    if (inside <= 0 || b < 0) {
        return light;
    }
    const Vec3 n = (d * (b - std::sqrt(inside)) - c) * (1 / size);
    const float lit = smoothStep(-0.08F, 0.6F, dot(n, sun));
    const Vec3 q = n * 1.7F + Vec3{craters, craters, craters};
    const float pits = mix(0.6F, 1.1F, smoothStep(0.3F, 0.6F, fbm(q * 2, 5)));
    return mix(light, NightSide + tint * (1.2F * lit * pits), smoothStep(0, 0.1F, inside / (size * size)));
}

/// The same with bands of cloud and a ring, on which its shadow falls.
inline Vec3 ringedPlanet(Vec3 light, Vec3 d, Vec3 sun, Vec3 towards, float size) {
    const Vec3 c = normalise(towards);
    const Vec3 axis = normalise({0.36F, 0.72F, -0.6F});
    const float b = dot(c, d);
    const float inside = size * size - (1 - b * b);
    const float toBall = inside > 0 && b > 0 ? b - std::sqrt(inside) : -1;
    // The ring lies in the plane through the planet's middle.
    const float toRing = dot(c, axis) / dot(d, axis);
    const Vec3 at = d * toRing - c;
    const float r = length(at) / size;
    float cover = 0;
    Vec3 ringLight;
    if (toRing > 0 && r > 1.3F && r < 2.35F) {
        const float groove = 0.35F + 0.65F * noise(r * 26, 2) * smoothStep(0.02F, 0.06F, std::fabs(r - 1.93F));
        cover = smoothStep(1.3F, 1.42F, r) * smoothStep(2.35F, 2.28F, r) * clamp01(groove * 1.1F);
        // The planet's own shadow falls across it.
        const float along = dot(at, sun);
        const float off = length(at - sun * along) / size;
        const float free = along < 0 ? smoothStep(0.95F, 1.05F, off) : 1.0F;
        ringLight = mix(colour(0xC89A8A), colour(0xFFE8C8), noise(r * 13, 5)) * (0.15F + 0.95F * free);
    }
    const bool before = toBall < 0 || toRing < toBall;
    if (!before && toBall > 0) {
        cover = 0;
    }
    if (toBall > 0) {
        const Vec3 n = (d * toBall - c) * (1 / size);
        const float latitude = dot(n, axis);
        const float swirl = 0.05F * fbm(n * 5, 4) + 0.02F * fbm(n * 14, 3);
        const float band = noise((latitude + swirl) * 9, 7);
        Vec3 tint = mix(colour(0xB8643C), colour(0xFFDCA0), band);
        tint = mix(tint, colour(0x7A3A5A), smoothStep(0.7F, 0.9F, noise((latitude + swirl) * 21, 3)) * 0.7F);
        const float lit = smoothStep(-0.15F, 0.75F, dot(n, sun));
        const float rim = std::pow(1 - std::fabs(dot(n, d)), 3.0F);
        const Vec3 ball = NightSide + tint * (1.15F * lit) + colour(0xFFB090) * (0.5F * rim * lit);
        light = mix(light, ball, smoothStep(0, 0.05F, inside / (size * size)));
    }
    return mix(light, ringLight, cover * 0.85F);
}

} // namespace lumora::samples
