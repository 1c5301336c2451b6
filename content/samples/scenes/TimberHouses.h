// Half-timbered houses of MarketSquare: jettied floors, gables, flower boxes; and what its solids are made of.
#pragma once

#include "Builders.h"

namespace lumora::samples::market {

enum Material {
    Cobbles,
    Plaster,
    Beam,
    Masonry,
    RoofTiles,
    Frame,
    Pane,
    Shutter,
    Door,
    Geranium,
    Awning,
    Fruit,
    Crate,
    Copper,
    Dial,
    Gold,
    Iron,
    Pennant,
    Water
};

struct House {
    float x; ///< middle of the front
    float half;
    int floors; ///< above the ground floor
    bool gable; ///< towards the square; otherwise the eaves
    unsigned plaster;
    unsigned shutter;
    unsigned roof;
};

constexpr House Houses[] = {
    {-8.4F, 2.6F, 2, false, 0xD9A878, 0x2F5E8C, 0xA8452A},  {-3.72F, 2.3F, 2, true, 0xEFD9A4, 0x2C6B45, 0xB5482C},
    {0.5F, 2.05F, 2, true, 0xD8703E, 0x7A2A1E, 0x8E3A26},   {6.1F, 2.15F, 2, true, 0xF2C23E, 0x1F5B7A, 0xB04A2A},
    {10.8F, 2.62F, 2, false, 0x5E9CB8, 0xE8DCC0, 0xA04028}, {15.6F, 2.3F, 2, true, 0xE6B8A8, 0x8C2A22, 0xB5482C}};
constexpr float Front = 6;      ///< where the houses begin
constexpr float Ground = 2.75F; ///< height of the ground floor
constexpr float Floor = 2.25F;  ///< height of each floor above it
constexpr float Jetty = 0.24F;  ///< each floor stands further out than the one below

/// A window with flower box and shutters in a wall whose face is z = 0.
inline void flowerWindow(Vec3 q, float wide, float high, bool shutters, float &wall, Hit &hit) {
    const WindowParts parts = window(q, wide, high, 0.12F, 3);
    wall = std::max(wall, -parts.reveal);
    hit.join(parts.pane, Pane);
    hit.join(std::min(parts.frame, parts.sill), Frame);
    const Vec3 trough = q - Vec3{0, -high - 0.16F, -0.2F};
    hit.join(box(trough, {wide + 0.04F, 0.1F, 0.11F}, 0.015F), Crate);
    const float bush = ellipsoid(trough - Vec3{0, 0.12F, -0.03F}, {wide + 0.12F, 0.2F, 0.2F});
    hit.join(leaves(q, bush, 0.105F, 2.2F), Geranium);
    if (shutters) {
        hit.join(box({std::fabs(q.x) - wide - 0.2F, q.y, q.z + 0.05F}, {0.17F, high + 0.03F, 0.025F}, 0.01F), Shutter);
    }
}

/// Plinth, corner stones, door, shop window and sign; p.z = 0 is the front, `index` the house's place in the row.
inline void groundFloor(Vec3 p, const House &one, int index, float &wall, Hit &hit) {
    hit.join(box(p - Vec3{0, 0.3F, 1}, {one.half + 0.03F, 0.36F, 1.08F}, 0.03F), Masonry);
    hit.join(std::max(std::fabs(std::fabs(p.x) - one.half + 0.22F) - 0.24F,
                      std::max(std::fabs(p.z) - 0.06F, p.y - Ground + 0.15F)),
             Masonry);
    const float side = index % 2 == 0 ? 1.0F : -1.0F;
    // Door under an arch of stone, one step high.
    const Vec3 door = p - Vec3{-side * one.half * 0.45F, 0.2F, 0};
    const float arch = archway(door.x, door.y, 0.5F, 1.55F);
    wall = std::max(wall, -std::max(arch, std::fabs(door.z) - 0.2F));
    hit.join(std::max({arch, std::fabs(door.z - 0.2F) - 0.05F}), Door);
    hit.join(sphere(door - Vec3{0.34F, 1, 0.1F}, 0.05F), Gold);
    hit.join(std::max({std::fabs(arch - 0.1F) - 0.12F, std::fabs(door.z) - 0.1F, -door.y}), Masonry);
    hit.join(box(door - Vec3{0, -0.1F, -0.35F}, {0.75F, 0.12F, 0.4F}, 0.03F), Masonry);
    // Shop window and its flowers.
    flowerWindow(p - Vec3{side * one.half * 0.42F, 1.5F, 0}, 0.62F, 0.62F, false, wall, hit);
    // Lantern and sign on iron arms.
    const Vec3 arm = p - Vec3{side * one.half * 0.02F, 2.25F, 0};
    float iron = stick(arm, {0, 0.1F, 0}, {0, 0.1F, -0.75F}, 0.022F);
    iron = std::min(iron, stick(arm, {0, -0.25F, 0}, {0, 0.1F, -0.5F}, 0.016F));
    const Vec3 sign = arm - Vec3{0, -0.22F, -0.62F};
    const float round = length(sign.y, sign.z);
    hit.join(std::max({std::fabs(round - 0.2F) - 0.045F, std::fabs(sign.x) - 0.03F}), Gold);
    iron = std::min(iron, std::max(round - 0.2F, std::fabs(sign.x) - 0.015F));
    hit.join(iron, Iron);
}

/// q: y from the floor's own foot, z from its own face.
inline void upperFloor(Vec3 q, const House &one, float &wall, float &beams, Hit &hit) {
    if (q.y > Floor + 0.3F || q.y < -1.2F) {
        return;
    }
    const float a = std::fabs(q.x);
    const float step = one.half * 0.64F;
    const float u = q.x - step * std::clamp(std::round(q.x / step), -1.0F, 1.0F); // three windows side by side
    const float inRow = a - step * 1.5F;
    const auto beam = [](float distance, float half) { return std::fabs(distance) - half; };
    float wood = std::min({beam(q.y - 0.1F, 0.1F), beam(q.y - Floor + 0.1F, 0.1F), beam(q.y - 0.82F, 0.06F)});
    wood = std::min({wood, beam(std::fabs(u) - step / 2, 0.08F), beam(a - one.half + 0.09F, 0.09F)});
    // Crosses under the windows, braces at the corners.
    const float cross = (std::fabs(u) - (q.y - 0.46F) * 1.1F);
    const float cross2 = (std::fabs(u) + (q.y - 0.46F) * 1.1F);
    const float crosses =
        std::max(std::min(std::fabs(cross), std::fabs(cross2)) * 0.67F - 0.045F, std::fabs(q.y - 0.46F) - 0.36F);
    const float brace =
        std::max(std::fabs(a - one.half + 0.1F + (q.y - 0.85F) * 0.25F) - 0.06F, std::fabs(q.y - 1.5F) - 0.7F);
    wood = std::min({wood, crosses, brace});
    wood = std::max({wood, std::fabs(q.z) - 0.045F, -q.y, q.y - Floor, a - one.half - 0.02F});
    // Joists carry the floor out over the one below.
    const float joists = std::max({std::fabs(repeat(q.x, 0.5F)) - 0.09F, std::fabs(q.y + 0.1F) - 0.1F,
                                   std::fabs(q.z - 0.1F) - 0.18F, a - one.half});
    beams = std::min({beams, wood, joists});
    if (inRow < 0.4F) {
        flowerWindow({u, q.y - 1.42F, q.z}, 0.27F, 0.44F, step > 1.15F, wall, hit);
    }
}

/// Timbers and window of the gable; q: y from its foot, z from its face; `high` is its height.
inline void gable(Vec3 q, const House &one, float high, float &wall, float &beams, Hit &hit) {
    if (q.y < -1) {
        return;
    }
    const float a = std::fabs(q.x);
    float wood = std::min({std::fabs(q.y - 0.1F), std::fabs(q.y - 1.42F), std::fabs(q.y - 0.52F)}) - 0.07F;
    wood = std::min({wood, std::fabs(a - 0.52F) - 0.07F,
                     std::max(std::fabs(a - 1.45F + 0.5F * (q.y - 0.1F)) - 0.06F, q.y - 1.4F),
                     std::max(std::fabs(q.x) - 0.07F, 1.4F - q.y)});
    const float inside = (q.y - high + 1.42F * a) * 0.57F;
    wood = std::max({wood, inside, std::fabs(q.z) - 0.045F, -q.y});
    beams =
        std::min(beams, std::min(wood, std::max({std::fabs(repeat(q.x, 0.5F)) - 0.09F, std::fabs(q.y + 0.02F) - 0.09F,
                                                 std::fabs(q.z + 0.02F) - 0.1F, a - one.half})));
    flowerWindow(q - Vec3{0, 0.98F, 0}, 0.3F, 0.36F, false, wall, hit);
}

/// Two windows with roofs of their own in a roof that falls towards the square; q = 0 between them.
inline void dormer(Vec3 q, float &wall, float &beams, Hit &hit) {
    for (const float x : {-1.15F, 1.15F}) {
        const Vec3 w = q - Vec3{x, 0, 0};
        wall = std::min(wall, std::max({std::fabs(w.x) - 0.5F, std::fabs(w.y) - 0.6F, -w.z, w.z - 2}));
        hit.join(roofSide({w.z - 1, w.y - 1.05F, -std::fabs(w.x)}, 0.75F, 1.2F, 0.9F, 0.05F), RoofTiles);
        wall = std::min(wall, std::max({(w.y - 1.0F + 0.93F * std::fabs(w.x)) * 0.7F, 0.6F - w.y, -w.z, w.z - 2}));
        beams = std::min(beams, std::max({std::min(std::fabs(std::fabs(w.x) - 0.45F), std::fabs(w.y - 0.55F)) - 0.06F,
                                          std::fabs(w.x) - 0.52F, std::fabs(w.y) - 0.62F, std::fabs(w.z) - 0.03F}));
        flowerWindow(w - Vec3{0, 0.08F, 0}, 0.27F, 0.36F, false, wall, hit);
    }
}

/// A whole house; p = 0 is the middle of its front, on the ground.
inline void house(Vec3 p, const House &one, int index, Hit &hit) {
    const float top = Ground + Floor * static_cast<float>(one.floors);
    const float ridge = top + (one.gable ? one.half * 1.42F : 3.0F);
    const float near = std::max({std::fabs(p.x) - one.half - 0.4F, -p.z - 1.5F, p.y - ridge - 1.2F});
    if (near > 0.6F) {
        hit.join(near, Plaster);
        return;
    }
    // The wind and the years have bent the beams a little.
    p.x += 0.05F * (noise(p.y * 0.8F, static_cast<float>(index) * 7) - 0.5F);
    const int level = std::clamp(static_cast<int>(std::floor((p.y - Ground) / Floor)) + 1, 0, one.floors);
    const float face = -Jetty * static_cast<float>(level); // of the floor at this height
    const float body = std::max({std::fabs(p.x) - one.half, face - p.z, p.y - top, p.z - 8});
    float wall = body;
    float beams = 1e3F;
    if (level == 0) {
        groundFloor(p, one, index, wall, hit);
    }
    for (int k = std::max(1, level); k <= std::min(level + 1, one.floors); ++k) {
        upperFloor({p.x, p.y - Ground - Floor * static_cast<float>(k - 1), p.z + Jetty * static_cast<float>(k)}, one,
                   wall, beams, hit);
    }
    const float out = Jetty * static_cast<float>(one.floors);
    if (one.gable) {
        const float slope = p.y - ridge + 1.42F * std::fabs(p.x);
        wall = std::min(wall, std::max({slope * 0.57F, top - p.y, -out - p.z, p.z - 8}));
        gable({p.x, p.y - top, p.z + out}, one, ridge - top, wall, beams, hit);
        const float pitch = std::atan(1.42F);
        hit.join(roofSide({p.z - 3.6F, p.y - ridge - 0.12F, -std::fabs(p.x)}, pitch, 4.6F,
                          (one.half + 0.32F) / std::cos(pitch), 0.07F),
                 RoofTiles);
        const float verge =
            std::max({std::fabs(slope + 0.02F) * 0.57F - 0.1F, std::fabs(p.z + 0.98F) - 0.04F, top - 0.55F - p.y});
        beams = std::min(beams, verge);
    } else {
        const Vec3 fold{p.x, p.y - ridge, p.z - 2.6F};
        hit.join(roofSide(fold, 0.8F, one.half + 0.02F, 4.55F, 0.08F), RoofTiles);
        wall = std::min(wall, std::max({(p.y - ridge + std::fabs(p.z - 2.6F)) * 0.7F + 0.15F, std::fabs(p.x) - one.half,
                                        top - p.y}));
        hit.join(rodX({p.x, p.y - top - 0.12F, p.z + out + 0.42F}, 0.07F, one.half, 0.02F), Copper);
        dormer(p - Vec3{0, top + 0.95F, 0.2F}, wall, beams, hit);
    }
    const Vec3 chimney = p - Vec3{one.half * 0.55F, ridge - 0.3F, 2.6F};
    hit.join(
        std::min(box(chimney, {0.32F, 1.1F, 0.32F}, 0.02F), box(chimney - Vec3{0, 1.0F, 0}, {0.4F, 0.1F, 0.4F}, 0.02F)),
        Masonry);
    hit.join(wall, Plaster);
    hit.join(beams, Beam);
}

} // namespace lumora::samples::market
