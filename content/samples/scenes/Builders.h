// What the builders and gardeners of several scenes bring along: courses of stone, roof tiles, windows, leaves, grass.
#pragma once

#include "Noise.h"
#include "Scene.h"
#include "Shapes.h"

namespace lumora::samples {

/// One stone of a wall, or one tile of a roof.
struct Stone {
    float joint; ///< distance to the nearest joint, in units
    float id;    ///< 0 to 1, its own number
};

/// Stones in courses, each `wide` and `high`, no two courses broken alike; `along` and `up` are places on the wall.
inline Stone courses(float along, float up, float wide, float high) {
    up += 0.09F * high * (noise(along / wide * 0.6F, up / high * 0.5F) - 0.5F);
    const float row = std::floor(up / high);
    const int r = static_cast<int>(row);
    const float place = along / wide + 0.5F * static_cast<float>(r & 1) + 0.35F * hash(r, 77);
    const float block = std::floor(place);
    const int b = static_cast<int>(block);
    // The joint between two stones stands where its own number says; 0 to 1 becomes uneven lengths.
    const float left = 0.3F * (hash(r, b, 9) - 0.5F);
    const float right = 1 + 0.3F * (hash(r, b + 1, 9) - 0.5F);
    const float f = place - block;
    const float side = f < left ? left - f : f > right ? f - right : std::min(f - left, right - f);
    const int owner = f < left ? b - 1 : f > right ? b + 1 : b;
    const float g = up / high - row;
    return {std::min(side * wide, std::min(g, 1 - g) * high), hash(r, owner, 5)};
}

/// Walls that follow the x or the z axis share one measure along them.
inline float alongWall(Vec3 p) {
    return p.x + p.z;
}

/// How far a stone's rounded edge lies behind its face, 0 to 1: for `grain`.
inline float jointDepth(const Stone &stone, float width) {
    return smoothStep(width, 0, stone.joint);
}

/// Roof tiles in rows; `down` is measured along the slope from the ridge. `lift` is 0 to 1, highest at the lower edge.
struct Tile {
    float lift;
    float gap; ///< 1 in the joint between two tiles
    float id;
};
inline Tile tiles(float along, float down, float wide, float high) {
    const float row = std::floor(down / high);
    const int r = static_cast<int>(row);
    const float place = along / wide + 0.5F * static_cast<float>(r & 1);
    const int column = static_cast<int>(std::floor(place));
    const float f = fraction(place);
    const float id = hash(r, column, 21);
    const float sag = 0.12F * (id - 0.5F); // the lower edges do not stand in line
    return {clamp01(fraction(down / high) + sag), smoothStep(0.07F, 0.02F, std::min(f, 1 - f)), id};
}

/// An opening under a round arch that springs at y = `spring`; x = 0 is its middle, `half` half its width. No floor.
inline float archway(float x, float y, float half, float spring) {
    return y > spring ? length(x, y - spring) - half : std::fabs(x) - half;
}

/// One side of a gabled roof as a slab: the ridge runs along x at p = 0, the slope falls towards -z by `pitch` radians.
/// `half` is half the ridge, `slope` the length down, `thick` the slab.
inline float roofSide(Vec3 p, float pitch, float half, float slope, float thick) {
    const float c = std::cos(pitch);
    const float s = std::sin(pitch);
    const float down = -p.z * c - p.y * s;
    const float out = p.y * c - p.z * s;
    return std::max({std::fabs(p.x) - half, std::fabs(down - slope / 2) - slope / 2, std::fabs(out) - thick});
}

/// A window in a wall that looks towards -z; q = 0 is the middle of the opening, in the wall's face. Cut `reveal` out
/// of the wall. Bars divide the pane into 2 x `rows`.
struct WindowParts {
    float reveal;
    float frame;
    float pane;
    float sill;
};
inline WindowParts window(Vec3 q, float wide, float high, float deep, int rows) {
    const float outline = std::max(std::fabs(q.x) - wide, std::fabs(q.y) - high);
    const float inFrame = std::fabs(q.z - deep) - 0.04F;
    const float step = 2 * high / static_cast<float>(rows);
    const float bars =
        std::min(std::fabs(q.x), std::fabs(repeat(q.y + (rows % 2 == 0 ? 0.0F : step / 2), step))) - 0.016F;
    return {std::max(outline, std::fabs(q.z) - deep - 0.06F),
            std::max({outline, std::min(-outline - 0.055F, bars), inFrame}),
            std::max(outline, std::fabs(q.z - deep - 0.02F) - 0.02F),
            box(q - Vec3{0, -high - 0.04F, -0.02F}, {wide + 0.07F, 0.04F, 0.1F}, 0.015F)};
}

/// The lattice in which leaves hang, turned so that no row of it is seen.
inline Vec3 leafLattice(Vec3 p, float size) {
    const Vec3 q{0.8F * p.x + 0.6F * p.z, p.y, 0.8F * p.z - 0.6F * p.x};
    return Vec3{q.x, 0.8F * q.y + 0.6F * q.z, 0.8F * q.z - 0.6F * q.y} * (1 / size);
}

/// The number, 0 to 1, of the leaf at the place.
inline float leafId(Vec3 p, float size) {
    const Vec3 q = leafLattice(p, size);
    return hash(static_cast<int>(std::floor(q.x)), static_cast<int>(std::floor(q.y)),
                static_cast<int>(std::floor(q.z)));
}

/// Single leaves, one in each cell `size` wide, within the solid that is `crown` away; `fill` is the share of cells
/// with a leaf. Every leaf looks its own way. With `petals` they are flowers.
inline float leaves(Vec3 p, float crown, float size, float fill, int petals = 0) {
    if (crown > size) {
        return crown - 0.5F * size;
    }
    const Vec3 q = leafLattice(p, size);
    const int i = static_cast<int>(std::floor(q.x));
    const int j = static_cast<int>(std::floor(q.y));
    const int k = static_cast<int>(std::floor(q.z));
    const Vec3 f{fraction(q.x) - 0.5F, fraction(q.y) - 0.5F, fraction(q.z) - 0.5F};
    const float wall = (0.54F - std::max({std::fabs(f.x), std::fabs(f.y), std::fabs(f.z)})) * size;
    const float id = hash(i, j, k);
    // Thinner towards the outside, so that the outline is ragged.
    if (id > fill * clamp01(0.25F - crown / size * 0.5F)) {
        return std::max(wall, 0.1F * size);
    }
    const float a = hash(i, j, k + 311) * 2 * Pi;
    const float up = 2 * hash(i + 173, j, k) - 1;
    const float out = std::sqrt(1 - up * up);
    const Vec3 v = f - Vec3{0.14F * std::cos(5 * a), 0.14F * std::sin(7 * a), 0.14F * std::cos(3 * a + 1)};
    const float r = length(v);
    const Vec3 face{out * std::cos(a), up, out * std::sin(a)};
    const float side = dot(v, face) + 0.5F * r * r;
    float edge = 0.36F;
    if (petals > 0 && r < 0.5F) {
        const Vec3 right = normalise(cross(face, Vec3{0.31F, 0.2F, 0.93F}));
        const float angle = std::atan2(dot(v, cross(face, right)), dot(v, right));
        edge *= 0.72F + 0.34F * std::fabs(std::cos(0.5F * static_cast<float>(petals) * angle));
    }
    const float leaf = std::max(r - edge, std::fabs(side) - 0.05F) * size;
    return std::min(leaf * 0.8F, std::max(wall, 0.1F * size));
}

/// Single bent blades of grass on `ground`, one or two in each `size`; `tall` is the height of the longest.
inline float grassBlades(Vec3 p, float ground, float size, float tall) {
    const float y = p.y - ground;
    if (y > tall) {
        return std::max(y - tall, 0.2F * size);
    }
    float d = size;
    for (int layer = 0; layer < 2; ++layer) {
        const float x = layer == 0 ? p.x / size : (0.8F * p.x + 0.6F * p.z) / size + 31;
        const float z = layer == 0 ? p.z / size : (0.8F * p.z - 0.6F * p.x) / size + 17;
        const int i = static_cast<int>(std::floor(x));
        const int k = static_cast<int>(std::floor(z));
        const float fx = fraction(x) - 0.5F;
        const float fz = fraction(z) - 0.5F;
        const float high = tall * (0.4F + 0.6F * hash(i, k));
        const float turn = 2 * Pi * hash(i, k, 1);
        const float t = clamp01(y / high);
        const float bend = 0.1F + 0.24F * t * t;
        const float off = length(fx - bend * std::cos(turn), fz - bend * std::sin(turn)) * size;
        const float blade = std::max(off - 0.13F * size * (1 - t * t), y - high);
        const float wall = (0.55F - std::max(std::fabs(fx), std::fabs(fz))) * size;
        d = std::min({d, blade, std::max(wall, 0.16F * size)});
    }
    return d * 0.8F;
}

/// Bowl-shaped flowers on thin stems, at most one in each `size`; `share` of the places have one, `tall` units high.
struct WildFlower {
    float distance;
    float petal; ///< below 0 in the stem, above in the bowl
    float id;
};
inline WildFlower wildFlowers(Vec3 p, float ground, float size, float tall, float share) {
    if (p.y - ground > tall + 0.5F * size) {
        return {p.y - ground - tall - 0.2F * size, -1, 0};
    }
    const int i = static_cast<int>(std::floor(p.x / size));
    const int k = static_cast<int>(std::floor(p.z / size));
    const float id = hash(i, k, 61);
    const Vec3 q{p.x - (static_cast<float>(i) + 0.5F) * size, p.y - ground,
                 p.z - (static_cast<float>(k) + 0.5F) * size};
    const float wall = (0.56F - std::max(std::fabs(q.x), std::fabs(q.z)) / size) * size;
    if (hash(i, k, 62) > share) {
        return {std::max(wall, 0.08F * size), -1, id};
    }
    const float high = tall * (0.6F + 0.4F * id);
    const Vec3 top{0.16F * size * std::cos(20 * id), high, 0.16F * size * std::sin(20 * id)};
    const Vec3 head = turnZ(q - top, 0.5F * std::cos(9 * id));
    const float around = std::atan2(head.z, head.x);
    const float wide = 0.2F * size * (1 + 0.13F * std::cos(4 * around + id));
    const float bowl =
        std::max(std::fabs(ellipsoid(head - Vec3{0, 0.3F * wide, 0}, {wide, 0.75F * wide, wide})) - 0.012F * size,
                 head.y - 0.35F * wide - 0.12F * wide * std::cos(8 * around));
    const float heart = sphere(head + Vec3{0, 0.2F * wide, 0}, 0.32F * wide);
    const float stem = stick(q, {0, 0, 0}, top, 0.022F * size);
    const float flower = std::min(bowl, heart);
    return {std::min({flower, stem, std::max(wall, 0.08F * size)}) * 0.75F,
            flower < stem ? (heart < bowl ? 2.0F : 1.0F) : -1.0F, id};
}

/// A broad-leaved tree that stands at p = 0, about 4 units high at size 1: its wood, and the solid its leaves fill.
struct TreeParts {
    float bark;
    float crown;
};
inline TreeParts broadTree(Vec3 p, float size, float seed) {
    const Vec3 q = p * (1 / size);
    const float near = sphere(q - Vec3{0, 2.3F, 0}, 2.5F) * size;
    if (near > 0.8F) {
        return {near, near};
    }
    const Vec3 fork{0.2F * std::sin(seed), 1.2F, 0.1F};
    float bark = stick(q, {0, -0.3F, 0}, fork, 0.2F, 0.13F);
    float crown = 1e3F;
    for (int k = 0; k < 7; ++k) {
        const auto j = static_cast<float>(k);
        const float a = seed + j * 2.4F;
        const float out = k == 6 ? 0.2F : 0.95F;
        const Vec3 at{out * std::cos(a), 1.75F + 0.27F * j, out * std::sin(a)};
        crown = std::min(crown, sphere(q - at, 0.78F));
        bark = std::min(bark, stick(q, fork, at, 0.1F, 0.03F));
    }
    return {bark * size, crown * size + 0.5F * size * (noise(p * (1.6F / size)) - 0.5F)};
}

} // namespace lumora::samples
