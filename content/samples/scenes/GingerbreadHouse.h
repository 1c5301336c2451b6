// A gingerbread house with chocolate tiles, dripping icing and sugar buttons.
#pragma once

#include "Noise.h"
#include "Scene.h"
#include "Shapes.h"
#include "Sweets.h"

namespace lumora::samples {

constexpr float HouseWidth = 1.35F; ///< half of it, as the depth
constexpr float HouseDepth = 1.2F;
constexpr float HouseRidge = 3.15F;

inline void sugarWindow(Vec3 p, Hit &hit) {
    const float pane = std::max(std::fabs(p.x), std::fabs(p.y)) - 0.26F;
    hit.join(std::max(pane, std::fabs(p.z) - 0.05F), Pane);
    const float bars = std::min({std::fabs(pane - 0.03F), std::fabs(p.x), std::fabs(p.y)});
    hit.join(std::max(length(std::max(pane > 0.04F ? std::fabs(pane - 0.03F) : bars, 0.0F), p.z + 0.05F) - 0.04F,
                      pane - 0.1F) *
                 0.8F,
             Icing);
}

inline void gingerbreadFront(Vec3 p, Hit &hit) {
    if (p.z > 0.3F) {
        return;
    }
    const float arch = std::max(p.y > 0.95F ? length(p.x, p.y - 0.95F) - 0.4F : std::fabs(p.x) - 0.4F, -p.y);
    hit.join(std::max(arch, std::fabs(p.z) - 0.07F), Door);
    hit.join(length(arch - 0.04F, p.z + 0.04F) - 0.065F - 0.015F * std::sin(20 * p.y), Icing);
    hit.join(sphere(p - Vec3{0.25F, 0.72F, -0.1F}, 0.055F), Cherry);
    sugarWindow(p - Vec3{0.92F, 1.0F, 0}, hit);
    sugarWindow(p - Vec3{-0.92F, 1.0F, 0}, hit);
    // A heart in the gable, and sugar buttons about the door.
    const Vec3 heart{std::fabs(p.x), p.y - 2.12F, p.z};
    const float lobes =
        std::min(length(heart.x - 0.13F, heart.y - 0.13F) - 0.184F, (heart.x + std::fabs(heart.y) - 0.26F) * 0.707F);
    hit.join(std::max(lobes, std::fabs(p.z) - 0.06F) * 0.85F - 0.02F, Cherry);
    const Vec3 ring = slices({p.x, p.y - 0.95F, p.z}, 14);
    hit.join(ellipsoid(ring - Vec3{0.6F, 0, 0}, {0.07F, 0.07F, 0.05F}) + (p.y < 0.85F ? 0.3F : 0.0F), Button);
}

/// Joins the house to what was hit; p is measured from the middle of its floor, the door looks along -z.
inline void gingerbreadHouse(Vec3 p, Hit &hit) {
    const float near = box(p - Vec3{0, 2.0F, 0}, {1.9F, 2.1F, 1.8F});
    if (near > 0.4F) {
        hit.join(near, Ginger);
        return;
    }
    const float x = std::fabs(p.x);
    const float z = std::fabs(p.z);
    const float roofLine = (p.y - HouseRidge + 1.15F * x) * 0.656F;
    const float along = (x - 1.15F * (p.y - HouseRidge)) * 0.656F;
    hit.join(std::max({x - HouseWidth, z - HouseDepth, roofLine}), Ginger);
    // Roof of chocolate with icing that drips over its edges, sugar buttons on it.
    hit.join(box({along - 1.1F, roofLine - 0.06F, p.z}, {1.35F, 0.09F, HouseDepth + 0.3F}, 0.05F) * 0.95F, Roof);
    const float drip = 0.12F + 0.16F * (0.5F + 0.5F * std::sin(along * 11)) * noise(along * 4, p.z > 0 ? 1.0F : 2.0F);
    const float front = std::max({std::fabs(z - HouseDepth - 0.31F) - 0.05F,
                                  std::fabs(roofLine - 0.1F + drip / 2) - drip / 2 - 0.06F, along - 2.47F});
    hit.join((front - 0.03F) * 0.6F, Icing);
    const float eaves = std::max({std::fabs(along - 2.46F) - 0.05F, z - HouseDepth - 0.3F,
                                  std::fabs(roofLine - 0.03F) - 0.08F - 0.12F * noise(p.z * 5, 3)});
    hit.join((eaves - 0.03F) * 0.6F, Icing);
    hit.join((length(x * 0.8F, p.y - HouseRidge - 0.13F) - 0.13F - 0.03F * std::sin(p.z * 9) +
              (z > HouseDepth + 0.32F ? 1.0F : 0.0F)) *
                 0.8F,
             Icing);
    const Vec3 knob{along - std::clamp(std::round((along - 0.25F) / 0.42F), 0.0F, 4.0F) * 0.42F - 0.4F,
                    roofLine - 0.14F, p.z - std::clamp(std::round(p.z / 0.4F), -3.0F, 3.0F) * 0.4F};
    hit.join(ellipsoid(knob, {0.13F, 0.07F, 0.13F}), Button);
    const Vec3 crest{p.x, p.y - HouseRidge - 0.3F, p.z - std::clamp(std::round(p.z / 0.4F), -3.0F, 3.0F) * 0.4F};
    hit.join(sphere(crest, 0.13F), Button);
    // Chimney of marshmallow.
    const Vec3 chimney = p - Vec3{-0.75F, 2.95F, 0.45F};
    hit.join(rodY(chimney, 0.23F, 0.55F, 0.05F), Cream);
    hit.join(rodY(chimney - Vec3{0, 0.55F, 0}, 0.29F, 0.09F, 0.08F), Icing);
    gingerbreadFront(p + Vec3{0, 0, HouseDepth}, hit);
    const Vec3 side{p.z, p.y - 1.0F, HouseWidth - x};
    sugarWindow(side, hit);
    // White piping up the corners.
    hit.join(std::max(length(x - HouseWidth, z - HouseDepth) - 0.07F - 0.025F * std::sin(p.y * 24), p.y - 1.65F) * 0.8F,
             Icing);
}

} // namespace lumora::samples
