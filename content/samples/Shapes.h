// Signed distances: how far a point is from a solid, negative inside. Formulas after Inigo Quilez, "Distance functions"
// (iquilezles.org/articles/distfunctions). Scenes put their solids together from these.
#pragma once

#include "Vec.h"

namespace lumora::samples {

inline Vec3 absolute(Vec3 p) {
    return {std::fabs(p.x), std::fabs(p.y), std::fabs(p.z)};
}

inline float sphere(Vec3 p, float radius) {
    return length(p) - radius;
}

/// Close to the true distance near the surface, which is all that marching needs.
inline float ellipsoid(Vec3 p, Vec3 radii) {
    const float k = length(p / radii);
    return k < 0.01F ? -std::min({radii.x, radii.y, radii.z}) : k * (k - 1) / length(p / (radii * radii));
}

/// A box of half sizes `half`, its edges rounded by `round`.
inline float box(Vec3 p, Vec3 half, float round = 0) {
    const Vec3 q = absolute(p) - half + Vec3{round, round, round};
    const Vec3 out{std::max(q.x, 0.0F), std::max(q.y, 0.0F), std::max(q.z, 0.0F)};
    return length(out) + std::min(std::max({q.x, q.y, q.z}), 0.0F) - round;
}

/// Rounded cylinders along an axis; `half` is half their length.
inline float rod(float radial, float along, float radius, float half, float round) {
    const float a = radial - radius + round;
    const float b = std::fabs(along) - half + round;
    return std::min(std::max(a, b), 0.0F) + length(std::max(a, 0.0F), std::max(b, 0.0F)) - round;
}
inline float rodX(Vec3 p, float radius, float half, float round = 0) {
    return rod(length(p.y, p.z), p.x, radius, half, round);
}
inline float rodY(Vec3 p, float radius, float half, float round = 0) {
    return rod(length(p.x, p.z), p.y, radius, half, round);
}
inline float rodZ(Vec3 p, float radius, float half, float round = 0) {
    return rod(length(p.x, p.y), p.z, radius, half, round);
}

/// A round stick from a to b, `ra` thick at a and `rb` at b.
inline float stick(Vec3 p, Vec3 a, Vec3 b, float ra, float rb) {
    const Vec3 ab = b - a;
    const float t = clamp01(dot(p - a, ab) / dot(ab, ab));
    return length(p - a - ab * t) - mix(ra, rb, t);
}
inline float stick(Vec3 p, Vec3 a, Vec3 b, float radius) {
    return stick(p, a, b, radius, radius);
}

/// A ring about the z axis.
inline float ringZ(Vec3 p, float radius, float thick) {
    return length(length(p.x, p.y) - radius, p.z) - thick;
}

/// A round tower that narrows from `low` at y = 0 to `high` at y = height.
inline float cone(Vec3 p, float low, float high, float height) {
    const float radius = mix(low, high, clamp01(p.y / height));
    const float slant = height / std::sqrt(height * height + (low - high) * (low - high));
    return std::max({(length(p.x, p.z) - radius) * slant, -p.y, p.y - height});
}

/// Union with a soft seam about `k` wide.
inline float blend(float a, float b, float k) {
    const float h = std::max(k - std::fabs(a - b), 0.0F) / k;
    return std::min(a, b) - h * h * k * 0.25F;
}

/// The place within one of endless tiles of the given size, and the tile's number.
inline float repeat(float v, float size) {
    return v - size * std::round(v / size);
}

/// Folds the circle in the x-y plane into one of `count` equal slices, its middle on the x axis.
inline Vec3 slices(Vec3 p, int count) {
    const float slice = 2 * Pi / static_cast<float>(count);
    const float a = repeat(std::atan2(p.y, p.x), slice);
    const float r = length(p.x, p.y);
    return {r * std::cos(a), r * std::sin(a), p.z};
}

} // namespace lumora::samples
