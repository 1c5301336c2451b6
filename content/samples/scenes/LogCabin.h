// A log cabin under snow, with lit windows and a chain of lamps along its gable.
#pragma once

#include "Noise.h"
#include "Scene.h"
#include "Shapes.h"

namespace lumora::samples {

enum CabinPart { Snow, Log, Plank, Pane, Door, Shutter, Stone, Wreath, Berry, Bulb, Iron, Ice, CabinParts };

constexpr float CabinWidth = 1.75F; ///< half of it, as the depth; the door looks along -z
constexpr float CabinDepth = 1.8F;
constexpr float CabinRidge = 3.75F;

/// A window in a wall that faces -z; p = 0 is its middle on the wall.
inline void cabinWindow(Vec3 p, float size, Hit &hit) {
    const float pane = std::max(std::fabs(p.x) - 0.3F, std::fabs(p.y) - 0.34F);
    hit.join(std::max(pane, std::fabs(p.z + 0.12F) - 0.05F) * size, Pane);
    const float bars = std::min({std::fabs(pane - 0.03F) - 0.05F, std::fabs(p.x) - 0.02F, std::fabs(p.y) - 0.02F});
    hit.join(std::max({bars, pane - 0.08F, std::fabs(p.z + 0.15F) - 0.07F}) * size, Plank);
    hit.join(box({std::fabs(p.x) - 0.52F, p.y, p.z + 0.17F}, {0.13F, 0.4F, 0.03F}, 0.01F) * size, Shutter);
    hit.join(ellipsoid(p - Vec3{0, -0.4F, -0.24F}, {0.42F, 0.09F, 0.13F}) * size, Snow);
}

inline void cabinFront(Vec3 p, float size, Hit &hit) {
    if (p.z > 0.3F) {
        return;
    }
    hit.join(box(p - Vec3{0, 0.85F, -0.08F}, {0.52F, 0.92F, 0.1F}, 0.03F) * size, Plank);
    hit.join(box(p - Vec3{0, 0.8F, -0.14F}, {0.42F, 0.82F, 0.08F}, 0.02F) * size, Door);
    hit.join(sphere(p - Vec3{0.3F, 0.78F, -0.26F}, 0.05F) * size, Iron);
    const Vec3 ring = p - Vec3{0, 1.18F, -0.26F};
    hit.join((ringZ(ring, 0.2F, 0.07F) + 0.035F * (noise(p * 26) - 0.3F)) * 0.7F * size, Wreath);
    const Vec3 slice = slices(ring, 6);
    hit.join(std::min(sphere(slice - Vec3{0.2F, 0, -0.07F}, 0.03F), sphere(ring - Vec3{0, -0.2F, -0.07F}, 0.05F)) *
                 size,
             Berry);
    for (const float x : {-1.05F, 1.05F}) {
        cabinWindow(p - Vec3{x, 1.2F, 0}, size, hit);
    }
    const Vec3 attic = p - Vec3{0, 2.62F, -0.1F};
    const float r = length(attic.x, attic.y);
    hit.join(std::max(r - 0.26F, std::fabs(attic.z) - 0.06F) * size, Pane);
    hit.join(std::max({std::min(std::fabs(r - 0.28F) - 0.05F, std::min(std::fabs(attic.x), std::fabs(attic.y)) - 0.02F),
                       r - 0.33F, std::fabs(attic.z) - 0.1F}) *
                 size,
             Plank);
    // The lamp over the door, and a snowy step.
    hit.join(sphere(p - Vec3{0, 2.05F, -0.32F}, 0.08F) * size, Bulb);
    hit.join(cone(p - Vec3{0, 2.08F, -0.32F}, 0.16F, 0.03F, 0.1F) * size, Iron);
    hit.join(box(p - Vec3{0, 0.05F, -0.5F}, {0.7F, 0.12F, 0.35F}, 0.06F) * size, Snow);
}

/// Joins the cabin to what was hit; p is measured from the middle of its floor and in its own size, `size` metres a
/// unit.
inline void logCabin(Vec3 p, float size, Hit &hit) {
    const float near = box(p - Vec3{0, 2.3F, 0}, {2.5F, 2.6F, 2.5F});
    if (near > 0.4F) {
        hit.join(near * size, Log);
        return;
    }
    const float x = std::fabs(p.x);
    const float z = std::fabs(p.z);
    constexpr float Pitch = 0.27F;
    const float roofLine = (p.y - CabinRidge + x) * 0.707F;
    const float front = std::max(
        {length(repeat(p.y - 0.13F, Pitch), z - CabinDepth) - 0.145F, x - CabinWidth - 0.27F, roofLine + 0.1F});
    const float sides =
        std::max({length(repeat(p.y, Pitch), x - CabinWidth) - 0.145F, z - CabinDepth - 0.27F, p.y - 1.9F});
    const float inside = std::max({x - CabinWidth, z - CabinDepth, roofLine + 0.05F});
    hit.join(std::min({front, sides, inside}) * size, Log);
    // Roof, its snow, icicles and the chain of lamps on the gable's edge.
    const float along = (x - (p.y - CabinRidge)) * 0.707F;
    hit.join(std::max({std::fabs(roofLine - 0.06F) - 0.07F, z - CabinDepth - 0.42F, along - 3.0F}) * size, Plank);
    const float soft = 0.09F * (noise(p * 1.7F) - 0.5F) + 0.04F * noise(p * 5);
    hit.join((box({along - 1.4F, roofLine - 0.3F, p.z}, {1.7F, 0.18F, CabinDepth + 0.52F}, 0.17F) + soft) * 0.85F *
                 size,
             Snow);
    const float edge = p.z + CabinDepth + 0.44F;
    const float at = std::round(x / 0.19F) * 0.19F;
    const float drop = 0.14F + 0.3F * hash(static_cast<int>(std::round(p.x / 0.19F)), 3);
    const float icicle = cone({x - at, p.y - (CabinRidge - at) + drop, edge}, 0.003F, 0.035F, drop);
    hit.join(std::max(icicle, x - 2.1F) * size * 0.8F, Ice);
    const float bulb = std::round((x - 0.16F) / 0.32F) * 0.32F + 0.16F;
    hit.join(sphere({x - bulb, p.y - (CabinRidge - bulb) + 0.12F, edge + 0.1F}, bulb < 2.2F ? 0.06F : -1.0F) * size,
             Bulb);
    hit.join(std::max(length(roofLine + 0.05F, edge + 0.08F) - 0.012F, x - 2.1F) * size, Iron);
    cabinFront(p - Vec3{0, 0, -CabinDepth}, size, hit);
    // Side window and chimney.
    cabinWindow({p.z - 0.2F, p.y - 1.2F, CabinWidth - x}, size, hit);
    const Vec3 chimney = p - Vec3{0.85F, 3.6F, 0.5F};
    hit.join(box(chimney, {0.27F, 0.75F, 0.27F}, 0.03F) * size, Stone);
    hit.join(box(chimney - Vec3{0, 0.76F, 0}, {0.34F, 0.07F, 0.34F}, 0.02F) * size, Stone);
    hit.join(
        std::max(ellipsoid(chimney - Vec3{0, 0.84F, 0}, {0.37F, 0.16F, 0.37F}), 0.15F - length(chimney.x, chimney.z)) *
            size,
        Snow);
}

} // namespace lumora::samples
