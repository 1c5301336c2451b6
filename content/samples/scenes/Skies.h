// Skies that several scenes share.
#pragma once

#include "Noise.h"
#include "Vec.h"

namespace lumora::samples {

/// Clouds on a flat ceiling far above: how much (0 to 1, `cover` 0 clear to 1 closed) and how thick towards the sun.
struct Cloud {
    float amount = 0;
    float lit = 0;
};
inline Cloud clouds(Vec3 d, Vec3 sun, float cover, float size, float shift = 0) {
    if (d.y < 0.01F) {
        return {};
    }
    const float reach = size / (d.y + 0.08F);
    const float x = d.x * reach + shift;
    const float y = d.z * reach;
    // Two looks: at the place, and a little nearer to the sun. Where it is thinner there, light comes through.
    const float here = fbm(x, y, 6);
    const float sunwards = fbm(x + sun.x * 0.25F, y + sun.z * 0.25F, 4);
    const float edge = 0.78F - 0.45F * cover;
    return {smoothStep(edge, edge + 0.22F, here) * smoothStep(0.01F, 0.15F, d.y),
            clamp01(0.55F + 2.2F * (here - sunwards))};
}

/// A disc with its glow.
inline Vec3 sunGlow(Vec3 d, Vec3 sun, Vec3 light, float disc = 0.9994F) {
    const float a = std::max(dot(d, sun), 0.0F);
    return light * (0.25F * std::pow(a, 8.0F) + 0.5F * std::pow(a, 64.0F) + 6 * smoothStep(disc, disc + 0.0003F, a));
}

} // namespace lumora::samples
