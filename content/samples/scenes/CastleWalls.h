// Towers, walls, keep and hall of Castle, and what its solids are made of.
#pragma once

#include "Builders.h"

namespace lumora::samples::fortress {

enum Material { Ground, Crag, Masonry, Slate, Opening, Timber, Gold, Flag, Ivy, Bark, Leaf, Flower, Grass };

constexpr Vec3 Yard{3.5F, 7.5F, 7}; ///< the castle's courtyard, on top of the crag

struct RoundTower {
    float x;
    float z;
    float radius;
    float high;
    float roof; ///< height of the pointed roof, 0: battlements
    bool flag;
};

constexpr RoundTower Towers[] = {{-4.7F, -2.4F, 1.25F, 4.5F, 2.9F, true},  {5.1F, -2.0F, 1.5F, 4.9F, 0, true},
                                 {-1.2F, -3.6F, 0.85F, 4.6F, 2.3F, false}, {1.35F, -3.6F, 0.85F, 4.6F, 2.3F, false},
                                 {-1.9F, 2.2F, 1.6F, 9.4F, 4.2F, true},    {0.55F, 0.1F, 0.55F, 7.7F, 1.7F, false},
                                 {4.05F, 0.1F, 0.55F, 7.7F, 1.7F, false},  {4.05F, 3.4F, 0.55F, 7.7F, 1.7F, false},
                                 {6.6F, 3.2F, 1.05F, 6.2F, 2.9F, true}};

struct Stretch {
    Vec3 from; ///< y: height of the top
    Vec3 to;
    float half;
    bool battlements;
};

constexpr Stretch Walls[] = {{{-4.7F, 3.0F, -2.4F}, {-1.2F, 3.0F, -3.6F}, 0.45F, true},
                             {{-1.2F, 3.9F, -3.6F}, {1.35F, 3.9F, -3.6F}, 0.6F, true},
                             {{1.35F, 3.0F, -3.6F}, {5.1F, 3.0F, -2.0F}, 0.45F, true},
                             {{5.1F, 3.2F, -2.0F}, {6.6F, 3.2F, 3.2F}, 0.45F, true},
                             {{-4.7F, 3.0F, -2.4F}, {-5.0F, 3.0F, 3.5F}, 0.45F, true}};

/// A wall between two points, its top falling or level, deep enough to reach into the rock.
inline float stretch(Vec3 p, const Stretch &wall) {
    const Vec3 along{wall.to.x - wall.from.x, 0, wall.to.z - wall.from.z};
    const float reach = length(along);
    const Vec3 u = along * (1 / reach);
    const Vec3 q = p - wall.from;
    const float s = dot(q, u);
    const float across = std::fabs(q.x * u.z - q.z * u.x);
    const float high = q.y - (wall.to.y - wall.from.y) * clamp01(s / reach);
    const float within = std::fabs(s - reach / 2) - reach / 2;
    const float near = std::max({across - wall.half - 0.3F, within, high - 0.8F});
    if (near > 0.8F) {
        return near;
    }
    const float body = std::max({across - wall.half - 0.06F * std::max(0.0F, -high - 2), within, high, -high - 7.5F});
    float parapet = std::max({std::fabs(across - wall.half) - 0.14F, within, high - 0.35F, -high - 0.12F});
    if (wall.battlements) {
        parapet = std::min(parapet, std::max({std::fabs(across - wall.half) - 0.14F, std::fabs(repeat(s, 0.9F)) - 0.27F,
                                              within, high - 0.85F, -high}));
        const float corbels = std::max(
            {across - wall.half - 0.13F, std::fabs(repeat(s, 0.36F)) - 0.09F, within, std::fabs(high + 0.22F) - 0.13F});
        parapet = std::min(parapet, corbels);
    }
    return std::min(body, parapet);
}

/// The road that winds up the crag from the bridge to the gate and the terrace before it: a ledge cut into the rock,
/// walled towards the valley.
struct Road {
    float height; ///< of the road at this side of the crag
    float out;    ///< distance from the road's outer edge, positive towards the valley
    float end;    ///< above 0 before the road begins and after it ends
};
inline Road roadAt(Vec3 p) {
    const Vec3 q = p - Vec3{4, 0, 7.2F};
    const float x = q.x * 0.88F;
    const float z = q.z * 1.02F;
    float angle = std::atan2(z, x) + Pi; // grows from the left end of the crag towards the viewer
    angle = angle > 1.5F * Pi ? angle - 2 * Pi : angle;
    const float climb = smoothStep(-0.25F, 1.35F, angle) * 0.35F + clamp01((angle + 0.25F) / 1.6F) * 0.65F;
    const float height = mix(1.6F, Yard.y, climb);
    return {height, length(x, z) - 9.55F + 0.2F * height, std::max(-0.3F - angle, angle - 2.75F) * 8};
}
/// What is taken from the rock for it: below 0 inside.
inline float roadCut(const Road &road, Vec3 p) {
    return std::max({-1.75F - road.out, road.height - p.y, road.end});
}
inline void castleRoad(Vec3 p, Hit &hit) {
    const Road road = roadAt(p);
    const float below = road.height - p.y;
    const float near = std::max({std::fabs(road.out + 0.9F) - 1.2F, road.end, -below - 0.7F, below - 2.4F});
    if (near > 0.8F) {
        hit.join(near * 0.8F, Masonry);
        return;
    }
    // The wall stands on uneven rock; its parapet ends in a coping.
    const float foot = 1.1F + 0.9F * noise(p.x * 0.6F + 5, p.z * 0.6F);
    const float wall = std::max({road.out - 0.07F * std::max(0.0F, below), -0.9F - road.out, -below, below - foot});
    const float parapet = std::max({std::fabs(road.out + 0.17F) - 0.15F, -below - 0.48F, below - 0.2F});
    const float coping = std::max(std::fabs(road.out + 0.17F) - 0.21F, std::fabs(below + 0.5F) - 0.06F);
    const float band = std::max(std::fabs(road.out) - 0.09F, std::fabs(below - 0.02F) - 0.07F);
    hit.join(std::max(std::min({wall, parapet, coping, band}), road.end) * 0.8F, Masonry);
}

/// A window under a round arch in a wall that looks towards -z.
inline void archedWindow(Vec3 q, float half, float &stone, Hit &hit) {
    const float arch = std::max(archway(q.x, q.y, half, 0.2F), -q.y - 1.85F * half);
    stone = std::min(stone, std::max(std::fabs(arch - 0.05F) - 0.06F, std::fabs(q.z) - 0.07F));
    stone = std::max(stone, -std::max(arch, std::fabs(q.z) - 0.25F));
    hit.join(std::max(arch, std::fabs(q.z - 0.16F) - 0.05F), Opening);
    hit.join(std::max({arch, std::min(std::fabs(q.x), std::fabs(q.y + 0.05F)) - 0.02F, std::fabs(q.z - 0.1F) - 0.02F}),
             Timber);
}

/// The pole stands at 0; the wind blows towards x.
inline void flag(Vec3 pole, int index, Hit &hit) {
    hit.join(stick(pole, {0, -0.3F, 0}, {0, 2.0F, 0}, 0.035F), Timber);
    const float x = pole.x - 0.03F;
    const float wave = 0.13F * std::sin(3.6F * x + static_cast<float>(index)) * clamp01(x * 1.5F);
    const float cloth =
        std::max({std::fabs(x - 0.75F) - 0.75F, std::fabs(pole.y - 1.55F - 0.08F * std::sin(2.6F * x)) - 0.4F,
                  std::fabs(pole.z - wave + 0.25F * x) - 0.015F, 1.25F * x - 1.55F - 0.9F * std::fabs(pole.y - 1.55F)});
    hit.join(cloth * 0.75F, Flag);
}

/// One of the round towers; p = 0 is the middle of the yard, as for all below.
inline void tower(Vec3 p, int index, Hit &hit) {
    const RoundTower &one = Towers[index];
    const Vec3 q = p - Vec3{one.x, 0, one.z};
    const float r = length(q.x, q.z);
    const float tall = one.high + one.roof + (one.flag ? 2.4F : 0.6F);
    const float near = std::max(r - one.radius - (one.flag && q.y > one.high + 0.8F ? 1.9F : 0.5F), q.y - tall);
    if (near > 0.6F) {
        hit.join(near, Masonry);
        return;
    }
    const bool turret = one.radius < 0.6F;
    const float radius = one.radius + 0.05F * std::max(0.0F, 1.2F - q.y);
    float stone = std::max({r - radius, q.y - one.high, turret ? 4.6F - q.y - 0.9F * (one.radius - r) : -q.y - 5});
    stone = std::min(stone, std::max(r - one.radius - 0.08F, std::fabs(q.y - one.high * 0.62F) - 0.08F));
    const Vec3 corbel = slices({q.x, q.z, q.y}, turret ? 10 : 18);
    if (q.y > one.high - 1.2F && q.y < one.high + 1.4F) {
        stone = std::min(stone, std::max({corbel.x - one.radius - 0.2F, std::fabs(corbel.y) - 0.075F,
                                          std::fabs(q.y - one.high + 0.16F) - 0.14F}));
        stone = std::min(stone, std::max({r - one.radius - 0.24F, std::fabs(q.y - one.high - 0.2F) - 0.2F}));
        if (one.roof <= 0) {
            const Vec3 merlon = slices({q.x, q.z, q.y}, 9);
            stone = std::max(stone, -std::max(r - one.radius + 0.12F, std::fabs(q.y - one.high - 0.3F) - 0.4F));
            stone = std::min(stone, std::max({std::fabs(r - one.radius - 0.06F) - 0.18F,
                                              std::fabs(merlon.y) - 0.3F * one.radius * 0.68F,
                                              std::fabs(q.y - one.high - 0.55F) - 0.36F}));
        }
    }
    for (int k = 0; k < (turret ? 1 : 2); ++k) { // on the side that is seen
        const float angle = -0.25F + 0.7F * (hash(index, k, 2) - 0.3F);
        const float y = one.high * (k == 0 ? 0.8F : 0.42F);
        archedWindow(turnY(q, -angle) - Vec3{0, y, -one.radius}, 0.15F, stone, hit);
    }
    hit.join(stone, Masonry);
    if (index < 2 && q.y < one.high - 0.6F) {
        const float patch = 0.35F * (noise(p * 0.9F + Vec3{3, 0, index == 0 ? 4.0F : 1.0F}) - 0.40F - 0.075F * q.y);
        hit.join(leaves(p, std::max(r - one.radius - 0.14F, -patch * 1.5F), 0.15F, 1.6F), Ivy);
    }
    const float top = one.high + (one.roof > 0 ? 0.35F : 0.3F);
    if (one.roof > 0) {
        const float t = clamp01((q.y - top) / one.roof);
        const float wide = mix(one.radius + 0.3F, 0.03F, t) + 0.16F * (1 - t) * (1 - t) * (1 - t) * (1 - t);
        hit.join(std::max({(r - wide) * 0.85F, top - q.y, q.y - top - one.roof}) * 0.9F, Slate);
        hit.join(sphere(q - Vec3{0, top + one.roof, 0}, 0.1F), Gold);
    }
    if (one.flag) {
        flag(q - Vec3{0, top + one.roof, 0}, index, hit);
    }
}

/// The square tower; p = 0 is the middle of its foot.
inline void keep(Vec3 p, Hit &hit) {
    float stone = box(p - Vec3{0, 2.4F, 0}, {1.75F, 4.2F, 1.75F});
    const float side = std::max(std::fabs(p.x), std::fabs(p.z));
    const float along = std::min(std::fabs(p.x), std::fabs(p.z));
    stone = std::min(stone, std::max(std::fabs(side - 1.8F) - 0.16F, std::fabs(p.y - 6.55F) - 0.25F));
    stone = std::min(stone, std::max({std::fabs(side - 1.8F) - 0.16F, std::fabs(repeat(along, 0.8F)) - 0.24F,
                                      std::fabs(p.y - 6.9F) - 0.34F}));
    stone = std::min(stone,
                     std::max({side - 1.93F, std::fabs(repeat(along, 0.34F)) - 0.08F, std::fabs(p.y - 6.2F) - 0.13F}));
    for (const Vec3 at : {Vec3{-0.6F, 5.2F, -1.75F}, Vec3{0.6F, 5.2F, -1.75F}, Vec3{0, 3.7F, -1.75F}}) {
        archedWindow(p - at, 0.22F, stone, hit);
    }
    hit.join(stone, Masonry);
}

/// The house with the gable; p = 0 is the middle of its foot.
inline void hall(Vec3 p, Hit &hit) {
    float stone = box(p - Vec3{0, 1.7F, 0}, {1.15F, 2.6F, 1.9F});
    stone =
        std::min(stone, std::max({std::fabs(p.z) - 1.9F, 4.0F - p.y, (p.y - 5.75F + 1.4F * std::fabs(p.x)) * 0.58F}));
    for (const float y : {2.35F, 3.6F}) {
        const WindowParts parts = window(p - Vec3{0, y, -1.9F}, 0.28F, 0.36F, 0.12F, 2);
        stone = std::max(stone, -parts.reveal);
        hit.join(parts.pane, Opening);
        hit.join(parts.frame, Timber);
        stone = std::min(stone, parts.sill);
    }
    hit.join(stone, Masonry);
    hit.join(roofSide({p.z, p.y - 5.9F, -std::fabs(p.x)}, 0.95F, 2.1F, 2.55F, 0.08F), Slate);
}

/// The whole castle; p = 0 is the middle of the yard.
inline void stronghold(Vec3 p, Hit &hit) {
    const float near = box(p - Vec3{0.4F, 5, 0}, {7.6F, 10.6F, 5.5F});
    if (near > 1) {
        hit.join(near, Masonry);
        return;
    }
    for (int i = 0; i < 9; ++i) {
        tower(p, i, hit);
    }
    for (int i = 0; i < 5; ++i) {
        hit.join(stretch(p, Walls[i]), Masonry);
    }
    // Gate: an arch with its portcullis.
    const Vec3 gate = p - Vec3{0.08F, 1.1F, -4.2F};
    const float arch = archway(gate.x, gate.y, 0.62F, 0.5F);
    hit.join(std::max(arch, std::fabs(gate.z) - 0.03F), Opening);
    hit.join(std::max({std::fabs(arch - 0.09F) - 0.1F, std::fabs(gate.z) - 0.09F}), Masonry);
    const float bars = std::min(std::fabs(repeat(gate.x, 0.25F)), std::fabs(repeat(gate.y, 0.3F))) - 0.03F;
    hit.join(std::max({arch, bars, std::fabs(gate.z + 0.03F) - 0.04F, -gate.y - 0.1F}), Timber);
    // Shield above the gate.
    const Vec3 shield = p - Vec3{0.08F, 3.05F, -4.22F};
    hit.join(std::max({std::fabs(shield.x) - 0.3F, shield.y - 0.3F, length(shield.x, shield.y - 0.1F) - 0.48F,
                       std::fabs(shield.z) - 0.05F}),
             Flag);
    keep(p - Vec3{2.3F, 0, 1.75F}, hit);
    hall(p - Vec3{-3.3F, 0, 0.2F}, hit);
}

} // namespace lumora::samples::fortress
