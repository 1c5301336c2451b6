// Tower and keeper's cottage of Lighthouse, and what its solids are made of.
#pragma once

#include "Builders.h"

namespace lumora::samples::beacon {

enum Material {
    Rock,
    Sea,
    Tower,
    Granite,
    Iron,
    Copper,
    Lamp,
    White,
    Door,
    Pane,
    Wall,
    Roof,
    Brick,
    Post,
    Grass,
    Boulder,
    Thrift
};

/// The lamp above the tower's foot.
constexpr float LampHeight = 12.25F;

/// Corbels, deck and railing, and above them the watch room, the lantern and its dome.
inline void gallery(Vec3 p, float &shaft, float &granite, Hit &hit) {
    const float r = length(p.x, p.z);
    const Vec3 slice = slices({p.x, p.z, p.y}, 16);
    granite = std::min(granite, rodY(p - Vec3{0, 10.42F, 0}, 1.42F, 0.12F, 0.05F));
    granite = std::min(granite, box(Vec3{slice.x - 1.55F, p.y - 10.42F - 0.45F * (slice.x - 1.5F), slice.y},
                                    {0.32F, 0.13F, 0.08F}, 0.03F) *
                                    0.85F);
    granite = std::min(granite, rodY(p - Vec3{0, 10.75F, 0}, 2.02F, 0.1F, 0.04F));
    float iron = std::max(
        std::fabs(r - 1.94F) - 0.022F,
        std::min(std::fabs(p.y - 11.72F) - 0.03F, std::min(std::fabs(p.y - 11.42F), std::fabs(p.y - 11.12F)) - 0.016F));
    const Vec3 baluster = slices({p.x, p.z, p.y}, 32);
    iron = std::min(iron, std::max(length(baluster.x - 1.94F, baluster.y) - 0.022F, std::fabs(p.y - 11.25F) - 0.47F));
    // Watch room, lantern, dome.
    shaft = std::min(shaft, rodY(p - Vec3{0, 11.15F, 0}, 1.12F, 0.45F));
    granite = std::min(granite, rodY(p - Vec3{0, 11.62F, 0}, 1.2F, 0.06F, 0.02F));
    const Vec3 pane = slices({p.x, p.z, p.y}, 8);
    const float glazing = std::fabs(pane.x - 0.93F) - 0.035F;
    const float bars =
        std::min({std::fabs(std::fabs(pane.y) - 0.37F) - 0.035F, std::fabs(p.y - 11.75F) - 0.07F,
                  std::fabs(p.y - 12.2F) - 0.02F, std::fabs(p.y - 12.75F) - 0.02F, std::fabs(p.y - 13.15F) - 0.09F});
    iron = std::min(iron, std::max({glazing, bars, std::fabs(p.y - 12.45F) - 0.8F}));
    hit.join(ellipsoid(p - Vec3{0, LampHeight, 0}, {0.5F, 0.62F, 0.5F}), Lamp);
    const Vec3 cap = p - Vec3{0, 13.2F, 0};
    float copper = std::max(ellipsoid(cap, {1.16F, 0.95F, 1.16F}), -cap.y);
    copper = std::min({copper, rodY(cap, 1.22F, 0.06F, 0.04F), sphere(cap - Vec3{0, 1.12F, 0}, 0.2F),
                       rodY(cap - Vec3{0, 0.95F, 0}, 0.13F, 0.12F, 0.03F)});
    hit.join(copper, Copper);
    iron = std::min(iron, stick(cap, {0, 1.2F, 0}, {0, 2.3F, 0}, 0.035F, 0.012F));
    hit.join(iron, Iron);
}

/// The door with its steps, the windows in their reveals.
inline void openings(Vec3 p, float &shaft, float &granite, Hit &hit) {
    const Vec3 door = p - Vec3{0.05F, 2.0F, -1.9F};
    const float arch = std::max(archway(door.x, door.y, 0.42F, 0.45F), -door.y - 1.05F);
    granite = std::min(granite, std::max({std::fabs(arch - 0.08F) - 0.1F, std::fabs(door.z) - 0.22F, -door.y - 1.05F}));
    shaft = std::max(shaft, -std::max(arch, std::fabs(door.z) - 0.4F));
    hit.join(std::max(arch, std::fabs(door.z - 0.12F) - 0.05F), Door);
    for (int i = 0; i < 4; ++i) {
        const auto k = static_cast<float>(i);
        granite =
            std::min(granite, box(p - Vec3{0.05F, 0.8F - 0.22F * k, -2.4F - 0.28F * k}, {0.75F, 0.13F, 0.3F}, 0.03F));
    }
    for (const Vec3 at : {Vec3{-0.35F, 4.4F, 0}, Vec3{0.28F, 6.8F, 0}, Vec3{-0.25F, 9.1F, 0}}) {
        const float face = mix(1.95F, 1.28F, (at.y - 0.8F) / 9.6F);
        const WindowParts parts = window(turnY(p, -at.x) - Vec3{0, at.y, -face - 0.01F}, 0.24F, 0.42F, 0.12F, 3);
        shaft = std::max(shaft, -parts.reveal);
        hit.join(parts.pane, Pane);
        hit.join(parts.frame, White);
        granite = std::min(granite, parts.sill);
    }
}

/// The lighthouse; p = 0 is the middle of its foot.
inline void tower(Vec3 p, Hit &hit) {
    const float r = length(p.x, p.z);
    const float near = std::max(r - 3.0F, p.y - 15.8F);
    if (near > 0.6F) {
        hit.join(near, Tower);
        return;
    }
    const float radius = mix(1.95F, 1.28F, clamp01((p.y - 0.8F) / 9.6F));
    float shaft = std::max({(r - radius) * 0.99F, p.y - 10.5F, -p.y});
    float granite =
        std::min(rodY(p - Vec3{0, 0.2F, 0}, 2.45F, 0.7F, 0.06F), rodY(p - Vec3{0, 0.85F, 0}, 2.2F, 0.2F, 0.08F));
    gallery(p, shaft, granite, hit);
    openings(p, shaft, granite, hit);
    hit.join(shaft, Tower);
    hit.join(granite, Granite);
}

/// The keeper's house, its door towards -z; p = 0 is the middle of its floor.
inline void cottage(Vec3 p, Hit &hit) {
    p = turnY(p, 0.22F);
    const float near = box(p - Vec3{0, 2, 0}, {3.6F, 3.0F, 2.9F});
    if (near > 0.5F) {
        hit.join(near, Wall);
        return;
    }
    float wall = std::max(box(p - Vec3{0, 1, 0}, {2.8F, 1.4F, 1.9F}, 0.04F), -1e3F);
    const float gable = std::max({std::fabs(p.x) - 2.8F, 2.3F - p.y, (p.y - 4.2F + std::fabs(p.z) * 0.98F) * 0.71F});
    wall = std::min(wall, gable);
    hit.join(box(p - Vec3{0, -0.2F, 0}, {2.9F, 0.5F, 2.0F}, 0.04F), Granite);
    const Vec3 fold{p.x, p.y - 4.32F, -std::fabs(p.z)};
    hit.join(roofSide(fold, 0.775F, 3.1F, 3.15F, 0.08F), Roof);
    hit.join(rodX(p - Vec3{0, 4.36F, 0}, 0.13F, 3.12F, 0.02F), Roof);
    const Vec3 stack = p - Vec3{1.9F, 4.5F, 0.1F};
    hit.join(
        std::min(box(stack, {0.36F, 0.9F, 0.36F}, 0.02F), box(stack - Vec3{0, 0.85F, 0}, {0.43F, 0.09F, 0.43F}, 0.02F)),
        Brick);
    hit.join(rodY(stack - Vec3{0, 1.1F, 0}, 0.14F, 0.2F, 0.03F), Roof);
    for (const float x : {-1.75F, 1.55F}) {
        const WindowParts parts = window(p - Vec3{x, 1.3F, -1.9F}, 0.46F, 0.52F, 0.12F, 2);
        wall = std::max(wall, -parts.reveal);
        hit.join(parts.pane, Lamp);
        hit.join(parts.frame, White);
        hit.join(parts.sill, Granite);
    }
    const Vec3 door = p - Vec3{-0.1F, 0.98F, -1.9F};
    wall = std::max(wall, -box(door, {0.46F, 0.95F, 0.14F}));
    hit.join(box(door - Vec3{0, 0, 0.1F}, {0.46F, 0.95F, 0.06F}), Door);
    hit.join(std::max(box(door - Vec3{0, 0, 0.04F}, {0.52F, 1.0F, 0.07F}), -box(door, {0.42F, 0.93F, 0.4F})), White);
    hit.join(wall, Wall);
    hit.join(rodX(p - Vec3{0, 2.14F, -2.2F}, 0.07F, 3.1F, 0.02F), White); // gutter and its pipe
    hit.join(stick(p, {2.72F, 2.1F, -2.15F}, {2.72F, 0.2F, -1.97F}, 0.045F), White);
}

} // namespace lumora::samples::beacon
