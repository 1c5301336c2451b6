// What the bodies of several painted animals are put together from, and the blurred surroundings behind them.
#pragma once

#include "Noise.h"
#include "Shapes.h"

#include <span>

namespace lumora::samples {

/// What lies in `a` and not in `b`, with a soft edge about `k` wide.
inline float carve(float a, float b, float k) {
    return -blend(-a, b, k);
}

/// A limb from a over the joint b to c.
inline float limb(Vec3 p, Vec3 a, Vec3 b, Vec3 c, float ra, float rb, float rc, float k = 0.06F) {
    return blend(stick(p, a, b, ra, rb), stick(p, b, c, rb, rc), k);
}

/// The nearest place on a curve that leaves a towards b and arrives at c from b: how far, and 0 (a) to 1 (c).
/// After Inigo Quilez, "Quadratic Bezier - distance 3D".
struct OnCurve {
    float distance;
    float along;
};
inline OnCurve curve(Vec3 p, Vec3 a, Vec3 b, Vec3 c) {
    const Vec3 u = b - a;
    const Vec3 v = a - b * 2 + c;
    const Vec3 w = u * 2;
    const Vec3 d = a - p;
    const float k = 1 / dot(v, v);
    const float kx = k * dot(u, v);
    const float ky = k * (2 * dot(u, u) + dot(d, v)) / 3;
    const float kz = k * dot(d, u);
    const float s = ky - kx * kx;
    const float q = kx * (2 * kx * kx - 3 * ky) + kz;
    const float h = q * q + 4 * s * s * s;
    const auto away = [&](float t) { return length(d + (w + v * t) * t); };
    if (h >= 0) {
        const float root = std::sqrt(h);
        const float t = clamp01(std::cbrt((root - q) / 2) + std::cbrt((-root - q) / 2) - kx);
        return {away(t), t};
    }
    const float z = std::sqrt(-s);
    const float angle = std::acos(std::clamp(q / (2 * s * z), -1.0F, 1.0F)) / 3;
    const float m = std::cos(angle);
    const float n = std::sin(angle) * 1.7320508F;
    const float t1 = clamp01((m + m) * z - kx);
    const float t2 = clamp01((-n - m) * z - kx);
    const float d1 = away(t1);
    const float d2 = away(t2);
    return d1 < d2 ? OnCurve{d1, t1} : OnCurve{d2, t2};
}

/// Overlapping feathers or scales, a unit wide and a row a unit; their tips point to smaller `v`.
struct Feather {
    float across; ///< from the shaft, -0.5 to 0.5
    float along;  ///< 0 at the tip, rising towards the root
    float id;     ///< 0 to 1
};
inline Feather feathers(float u, float v) {
    const int row = static_cast<int>(std::floor(v));
    // The row above hangs over this one with rounded tips.
    for (int r = row + 1; r >= row; --r) {
        const float shift = u + (r % 2 == 0 ? 0.0F : 0.5F);
        const float across = repeat(shift, 1);
        const float tip = static_cast<float>(r) - 0.55F + 1.9F * across * across;
        if (v > tip || r == row) {
            return {across, v - tip, hash(static_cast<int>(std::round(shift)), r, 5)};
        }
    }
    return {};
}

/// A leaf or a petal, thin and slightly troughed, ribbed, from its stalk at 0 along x; its upper side looks to z.
inline float blade(Vec3 p, float reach, float width, float bend, float lobes = 0) {
    const float t = clamp01(p.x / reach);
    const float half = (width + lobes * std::sin(p.x * 48)) * 2 * std::sqrt(t * (1 - t));
    const float side = std::fabs(p.y) / width;
    const float ribs = 0.03F * std::exp(-60 * side * side) + 0.008F * std::cos(28 * (p.x / reach) - 9 * side);
    const float sheet = std::fabs(p.z - 0.4F * p.y * p.y - bend * p.x * p.x + ribs * width) * 0.8F - 0.008F;
    return std::max({sheet, std::fabs(p.y) - half, p.x - reach, -p.x}) * 0.6F;
}

/// Discs of light out of focus: what one adds to the light of a background at (x, y), a disc about every unit.
inline Vec3 bokeh(float x, float y, std::span<const Vec3> tints, float share) {
    Vec3 light;
    for (int layer = 0; layer < 3; ++layer) {
        const float size = 1 + 0.65F * static_cast<float>(layer);
        const Cell disc = cells(x * size + 7.7F * static_cast<float>(layer), y * size, 0.35F);
        const float radius = 0.13F + 0.19F * fraction(disc.id * 7);
        const float edge =
            smoothStep(radius, radius - 0.05F, disc.distance) * (0.6F + 0.4F * smoothStep(0, radius, disc.distance));
        light += tints[static_cast<size_t>(disc.id * 53) % tints.size()] *
                 (edge * smoothStep(1 - share, 1.15F - 0.15F * share, disc.id));
    }
    return light;
}

} // namespace lumora::samples
