// Sweets as large as trees, for whoever paints a land of them.
#pragma once

#include "Noise.h"
#include "Scene.h"
#include "Shapes.h"

namespace lumora::samples {

/// What sweets are made of. The last three are the first of many: the number of the one sweet is added.
enum SweetPart {
    Ginger,
    Icing,
    Roof,
    Pane,
    Door,
    Button,
    Chip,
    Cane,
    Stick,
    Cherry,
    Cream,
    Paper,
    Dough,
    Glaze,
    SweetParts,
    Lolly = 100,
    Gum = 200,
    Floss = 300
};

struct Sweet {
    Vec3 foot;
    float height;
    float radius;
    unsigned tint;
    unsigned second;
};

/// Short sugar strands, thrown at random over a surface.
inline Vec3 sprinkled(Vec3 base, float u, float v, float from) {
    const Cell cell = cells(u, v);
    if (cell.id < from) {
        return base;
    }
    const float turn = cell.id * 61;
    const float along = cell.dx * std::cos(turn) + cell.dy * std::sin(turn);
    const float off = cell.dy * std::cos(turn) - cell.dx * std::sin(turn);
    const float d = length(std::max(std::fabs(along) - 0.16F, 0.0F), off) - 0.055F;
    const Vec3 tints[] = {colour(0xFF3B5C), colour(0xFFC21E), colour(0x2A9CF0),
                          colour(0xFFFFFF), colour(0xA04CF0), colour(0xFF7ABF)};
    return d < 0 ? tints[static_cast<int>(cell.id * 997) % 6] : base;
}

inline void lollipop(Vec3 p, const Sweet &one, int number, Hit &hit) {
    const float near =
        box(p - Vec3{0, one.height / 2 + one.radius / 2, 0}, {one.radius, (one.height + one.radius) / 2, 0.2F});
    if (near > 0.4F) {
        hit.join(near, Stick);
        return;
    }
    hit.join(std::max(length(p.x, p.z) - 0.06F, p.y - one.height), Stick);
    hit.join(rodZ(p - Vec3{0, one.height, 0}, one.radius, 0.13F, 0.12F), Lolly + number);
}

inline void flossTree(Vec3 p, const Sweet &one, int number, Hit &hit) {
    const Vec3 q = p - Vec3{0, one.height, 0};
    const float near = std::max(sphere(q, 1.75F * one.radius), -q.y - one.height - 0.3F);
    if (near > 0.5F && length(p.x, p.z) > 0.6F) {
        hit.join(std::min(near, std::max(length(p.x, p.z) - 0.2F, p.y - one.height)), Floss + number);
        return;
    }
    const float r = one.radius;
    float d = sphere(q, 0.85F * r);
    d = blend(d, sphere(q - Vec3{0.62F, -0.2F, -0.2F} * r, 0.6F * r), 0.3F * r);
    d = blend(d, sphere(q - Vec3{-0.65F, -0.12F, -0.1F} * r, 0.62F * r), 0.3F * r);
    d = blend(d, sphere(q - Vec3{0.1F, 0.6F, 0} * r, 0.6F * r), 0.3F * r);
    hit.join((d - 0.5F * r * (fbm(p * (2.4F / r), 3) - 0.5F)) * 0.75F, Floss + number);
    hit.join(std::max(length(p.x, p.z) - 0.11F, p.y - one.height), Stick);
}

inline void cane(Vec3 p, float size, float side, Hit &hit) {
    const Vec3 q{p.x * side / size, p.y / size, p.z / size};
    if (length(q - Vec3{0.2F, 0.8F, 0}) > 1.5F) {
        hit.join((length(q - Vec3{0.2F, 0.8F, 0}) - 1.2F) * size, Cane);
        return;
    }
    const float hook = length(length(q.x - 0.27F, q.y - 1.25F) - 0.27F, q.z);
    const float bend = q.y > 1.25F ? hook : length({q.x - 0.54F, q.y - 1.25F, q.z});
    const float shaft = length({q.x, q.y - std::clamp(q.y, 0.0F, 1.25F), q.z});
    hit.join((std::min(bend, shaft) - 0.095F) * size * 0.95F, Cane);
}

inline void cupcake(Vec3 p, Hit &hit) {
    if (sphere(p - Vec3{0, 0.9F, 0}, 1.3F) > 0.4F) {
        hit.join(sphere(p - Vec3{0, 0.9F, 0}, 1.3F), Paper);
        return;
    }
    const float r = length(p.x, p.z);
    const float angle = std::atan2(p.x, p.z);
    const float pleat = 0.025F * std::cos(angle * 28);
    hit.join(std::max({(r - mix(0.52F, 0.74F, clamp01(p.y / 0.72F)) - pleat) * 0.8F, p.y - 0.72F, -p.y}), Paper);
    // Piped cream: one bead winds upwards.
    const float turn = fraction((p.y - 0.62F) / 0.34F - angle / (2 * Pi));
    const float bead = 0.14F * std::sqrt(std::max(0.0F, 1 - 4 * (turn - 0.5F) * (turn - 0.5F)));
    const float cream =
        r - 0.74F * clamp01(1 - (p.y - 0.7F) / 1.15F) - bead + 0.05F + 0.02F * std::cos(angle * 9 + p.y * 8);
    hit.join(std::max({cream * 0.6F, 0.66F - p.y, p.y - 1.75F}), Cream);
    hit.join(sphere(p - Vec3{0.02F, 1.83F, 0}, 0.19F), Cherry);
    hit.join(stick(p, {0.02F, 1.95F, 0}, {0.16F, 2.3F, 0.02F}, 0.016F), Chip);
}

inline void doughnut(Vec3 p, Hit &hit) {
    const float ring = ringZ(p, 0.47F, 0.24F);
    hit.join(ring, Dough);
    const float edge = 0.02F + 0.06F * std::sin(7 * std::atan2(p.y, p.x)) + 0.05F * std::sin(11 * std::atan2(p.y, p.x));
    hit.join(std::max(ring - 0.035F, p.z + edge * std::fabs(length(p.x, p.y) - 0.47F) * 5) * 0.85F, Glaze);
}

} // namespace lumora::samples
