// Coconut palms for beaches.
#pragma once

#include "Noise.h"
#include "Scene.h"
#include "Shapes.h"

namespace lumora::samples {

struct Palm {
    Vec3 foot;
    float height;
    float leanX;
    float leanZ;
    float size; ///< of the crown
};
/// What the scene calls the parts.
struct PalmMaterials {
    int trunk;
    int frond;
    int nut;
};

/// Feathered leaves that arch out of the crown; the lower layers hang.
inline float palmFronds(Vec3 p, int layer, float seed) {
    constexpr int Number = 6;
    constexpr float Slice = 2 * Pi / Number;
    const float angle = std::atan2(p.z, p.x) + static_cast<float>(layer) * 0.37F + seed;
    const int one = static_cast<int>(std::round(angle / Slice)) % Number;
    const float off = repeat(angle, Slice);
    const float r = length(p.x, p.z);
    const float u = r * std::cos(off);
    const float w = std::fabs(r * std::sin(off));
    const float vary = hash(one, layer, static_cast<int>(seed * 10));
    const float rise = 0.95F - 0.5F * static_cast<float>(layer) + 0.2F * vary;
    const float bend = 0.42F - 0.03F * static_cast<float>(layer) + 0.1F * vary;
    const float reach = 1.75F + 0.35F * vary;
    const float arc = rise * u - bend * u * u;
    const float width = 0.36F * std::pow(clamp01(std::sin(Pi * clamp01(u / reach * 0.97F + 0.03F))), 0.6F);
    const float comb = 0.1F * smoothStep(0.5F, 0.1F, fraction(u * 10 - w * 5)) + 0.02F;
    const float leaf = std::max({std::fabs(p.y - arc + 0.75F * w) - 0.02F,
                                 w - width + comb * smoothStep(0.03F, 0.12F, w) * 1.8F, u - reach, -u});
    const float rib = std::max(length(p.y - arc, w) - 0.028F, u - reach);
    return std::min(leaf, std::max(rib, -u)) * 0.5F;
}

/// Joins the palm to what was hit; p is measured from its foot.
inline void palmTree(Vec3 p, const Palm &palm, PalmMaterials as, Hit &hit) {
    const float t = clamp01(p.y / palm.height);
    const float x = p.x - palm.leanX * t * t;
    const float z = p.z - palm.leanZ * t * t;
    const float near = std::max(length(x, z) - 2.7F * palm.size, p.y - palm.height - 1.6F);
    if (near > 0.6F) {
        hit.join(near * 0.8F, as.frond);
        return;
    }
    const float ring = 0.022F * fraction(p.y * 5.5F);
    const float trunk = length(x, z) - mix(0.2F, 0.11F, t) - ring - 0.14F * std::exp(-std::max(p.y, 0.0F) * 4);
    hit.join(std::max(trunk, p.y - palm.height) * 0.72F, as.trunk);
    const Vec3 crown = (p - Vec3{palm.leanX, palm.height, palm.leanZ}) * (1 / palm.size);
    if (sphere(crown, 2.4F) > 0.3F) {
        hit.join(sphere(crown, 2.4F) * palm.size, as.frond);
        return;
    }
    for (int layer = 0; layer < 3; ++layer) {
        hit.join(palmFronds(crown, layer, palm.height) * palm.size, as.frond);
    }
    for (const float a : {0.4F, 2.3F, 4.4F}) {
        hit.join(sphere(crown - Vec3{0.17F * std::cos(a), -0.12F, 0.17F * std::sin(a)}, 0.13F) * palm.size, as.nut);
    }
}

} // namespace lumora::samples
