// Parts, shapes and materials that several machines share.
#pragma once

#include "Noise.h"
#include "Scene.h"
#include "Shapes.h"

#include <span>

namespace lumora::samples {

/// The half space z > 0 for both sides of a machine.
inline Vec3 bothSides(Vec3 p) {
    return {p.x, p.y, std::fabs(p.z)};
}

struct Corner {
    float x;
    float y;
};

/// Distance in a plane to a closed outline (Inigo Quilez, "2D distance functions", polygon).
inline float outline(float x, float y, std::span<const Corner> corners) {
    float nearest = 1e12F;
    float side = 1;
    for (size_t i = 0, j = corners.size() - 1; i < corners.size(); j = i++) {
        const Corner a = corners[i];
        const Corner b = corners[j];
        const float ex = b.x - a.x;
        const float ey = b.y - a.y;
        const float wx = x - a.x;
        const float wy = y - a.y;
        const float t = clamp01((wx * ex + wy * ey) / (ex * ex + ey * ey));
        const float dx = wx - ex * t;
        const float dy = wy - ey * t;
        nearest = std::min(nearest, dx * dx + dy * dy);
        const bool above = y >= a.y;
        const bool below = y < b.y;
        const bool left = ex * wy > ey * wx;
        if ((above && below && left) || (!above && !below && !left)) {
            side = -side;
        }
    }
    return side * std::sqrt(nearest);
}

/// A flat shape given thickness: `flat` is the distance in its plane, `across` the place along the thickness.
inline float plate(float flat, float across, float half, float round = 0) {
    const float a = flat + round;
    const float b = std::fabs(across) - half + round;
    return std::min(std::max(a, b), 0.0F) + length(std::max(a, 0.0F), std::max(b, 0.0F)) - round;
}

/// Round heads of bolts on a circle about the z axis.
inline float bolts(Vec3 p, int count, float radius, float size) {
    const Vec3 s = slices(p, count);
    return ellipsoid(s - Vec3{radius, 0, 0}, {size, size, size * 0.7F});
}

/// A tyre about the z axis, `wide` its half width.
inline float tyre(Vec3 p, float radius, float inner, float wide, float round) {
    const float middle = (radius + inner) / 2;
    return rod(std::fabs(length(p.x, p.y) - middle), p.z, (radius - inner) / 2, wide, round);
}

/// A fair-weather cloud on the horizon: where (radians to the right of +z and above the horizon) and its half sizes.
struct Heap {
    float right;
    float up;
    float wide;
    float high;
};
inline Vec3 cumulus(Vec3 light, Vec3 d, std::span<const Heap> heaps, Vec3 bright, Vec3 shade) {
    const float right = std::atan2(d.x, d.z);
    const float up = std::asin(d.y);
    for (const Heap &heap : heaps) {
        const float u = (right - heap.right) / heap.wide;
        const float v = (up - heap.up) / heap.high;
        if (std::fabs(u) > 1.6F || v > 1.7F || v < -0.7F) {
            continue;
        }
        const float x = 2.6F * u + 31 * heap.right;
        const float y = 2.6F * v * heap.high / heap.wide + 17 * heap.up;
        const float here = fbm(x, y, 6);
        const float sunwards = fbm(x - 0.12F, y + 0.16F, 5);
        const float foot = v < 0 ? 3.2F * v : v; // flat below
        const float amount = smoothStep(0.0F, 0.28F, 1 - u * u - foot * foot + 3.2F * (here - 0.55F));
        const float lit = clamp01(0.42F + 0.42F * v + 2.6F * (here - sunwards));
        light = mix(light, mix(shade, bright, lit), 0.96F * amount);
    }
    return light;
}

inline Surface lacquer(Vec3 paint, Vec3 p) {
    return {.colour = paint * mix(0.85F, 1.1F, fbm(p * 2.5F, 4)), .shine = 1.1F, .sharpness = 120, .mirror = 0.06F};
}
inline Surface steel(Vec3 p) {
    return {
        .colour = colour(0xA4A8B0) * mix(0.35F, 0.7F, fbm(p * 5, 3)), .shine = 1.2F, .sharpness = 45, .mirror = 0.3F};
}
inline Surface chrome() {
    return {.colour = colour(0x8A8F98) * 0.4F, .shine = 2, .sharpness = 180, .mirror = 0.7F};
}
inline Surface brass(Vec3 p) {
    return {.colour = colour(0xC27A1C) * mix(0.45F, 0.8F, fbm(p * 4, 3)),
            .shine = 1.6F,
            .sharpness = 70,
            .mirror = 0.55F,
            .tint = colour(0xFFC861)};
}
inline Surface rubber(Vec3 p, Vec3 dust, float dusty) {
    const float worn = fbm(p * 6, 3);
    return {
        .colour = mix(colour(0x222327), dust, clamp01(dusty * (0.4F + 1.3F * worn))), .shine = 0.1F, .sharpness = 14};
}
inline Surface pane() {
    return {.colour = colour(0x16222C), .shine = 1.5F, .sharpness = 250, .mirror = 0.35F};
}

} // namespace lumora::samples
