// What several landscapes share: heaped clouds with light in them, ground that rain has worn, birds far away, a
// walker for scale.
#pragma once

#include "Noise.h"
#include "Scene.h"
#include "Shapes.h"

namespace lumora::samples {

/// Value noise with its slope: the height (0 to 1) and how fast it grows along x and y.
struct Sloped {
    float height;
    float x;
    float y;
};
inline Sloped slopedNoise(float x, float y) {
    const float fx = std::floor(x);
    const float fy = std::floor(y);
    const float u = x - fx;
    const float v = y - fy;
    const int i = static_cast<int>(fx);
    const int j = static_cast<int>(fy);
    const float a = hash(i, j);
    const float b = hash(i + 1, j) - a;
    const float c = hash(i, j + 1) - a;
    const float twist = hash(i + 1, j + 1) - a - b - c;
    const float su = u * u * u * (u * (u * 6 - 15) + 10);
    const float sv = v * v * v * (v * (v * 6 - 15) + 10);
    return {a + b * su + c * sv + twist * su * sv, 30 * u * u * (u * (u - 2) + 1) * (b + twist * sv),
            30 * v * v * (v * (v - 2) + 1) * (c + twist * su)};
}

/// Worn ground, about 0 to 1: octaves fade where the coarser ones are steep, so slopes are smooth and crests rough
/// (after Inigo Quilez, "Value noise derivatives").
inline float worn(float x, float y, int octaves) {
    float sum = 0;
    float height = 0.5F;
    float sx = 0;
    float sy = 0;
    for (int i = 0; i < octaves; ++i, height *= 0.5F) {
        const Sloped n = slopedNoise(x, y);
        sx += n.x;
        sy += n.y;
        sum += height * n.height / (1 + 0.6F * (sx * sx + sy * sy));
        const float turned = 1.6F * x - 1.2F * y + 17.3F;
        y = 1.6F * y + 1.2F * x + 9.1F;
        x = turned;
    }
    return sum;
}

/// Fair-weather clouds: a layer whose floor is one unit above the eye.
struct Heaps {
    float cover = 0.5F; ///< 0 clear to 1 closed
    float size = 1;     ///< of one cloud, in units
    float depth = 0.6F; ///< height of the layer
    float shift = 0;    ///< another number is another day
    Vec3 sunlit{1.2F, 1.15F, 1.08F};
    Vec3 shaded{0.42F, 0.48F, 0.6F};
};

inline float heapDensity(const Heaps &heaps, Vec3 p, int octaves) {
    const float up = (p.y - 1) / heaps.depth;
    if (up < 0 || up > 1) {
        return 0;
    }
    const Vec3 q = p * (1 / heaps.size);
    const float where = noise(q.x * 0.9F + heaps.shift, q.z * 0.9F) * 0.65F + 0.35F * noise(q.x * 2.3F, q.z * 2.3F);
    const float body = where - (1 - heaps.cover) - 0.5F * up * up - 0.15F * smoothStep(0.15F, 0, up);
    if (body < -0.35F) {
        return 0;
    }
    const float puffs = fbm(Vec3{q.x, q.y * 1.2F, q.z} * 3.2F + Vec3{heaps.shift, 0, 0}, octaves) - 0.5F;
    return clamp01((body + 0.85F * puffs) * 5);
}

/// The sky's light seen through the clouds along `d`.
inline Vec3 throughHeaps(Vec3 light, Vec3 d, Vec3 sun, const Heaps &heaps) {
    if (d.y < 0.025F) {
        return light;
    }
    // Every ray starts a little elsewhere: what would be bands becomes the grain of a film.
    const float start = hash(static_cast<int>(d.x * 60000), static_cast<int>(d.y * 60000));
    float t = (1 + 0.02F * start) / d.y;
    const float end = std::min((1 + heaps.depth) / d.y, 26.0F);
    float clear = 1;
    Vec3 sum;
    while (t < end && clear > 0.03F) {
        const float step = 0.009F + 0.009F * t;
        const Vec3 p = d * (t + step * 0.5F);
        const float here = heapDensity(heaps, p, 5);
        if (here > 0.01F) {
            const float towards = heapDensity(heaps, p + sun * 0.09F, 3) + heapDensity(heaps, p + sun * 0.22F, 3) +
                                  0.8F * heapDensity(heaps, p + sun * 0.42F, 2);
            const float kept = std::exp(-here * step * 13);
            const float lit = std::exp(-1.1F * towards) * (0.75F + 0.25F * clamp01((p.y - 1) / heaps.depth));
            sum += mix(heaps.shaded, heaps.sunlit, lit) * (clear * (1 - kept));
            clear *= kept;
        }
        t += step;
    }
    // Low clouds are far ones: the air takes them in.
    return mix(light, light * clear + sum, smoothStep(0.025F, 0.11F, d.y));
}

/// How much of a soaring bird covers the direction `d`; `wing` is the span's half as an angle, `lift` bends the wings.
inline float bird(Vec3 d, Vec3 at, float wing, float lift, float bank = 0) {
    at = normalise(at);
    const Vec3 right = normalise(cross(Vec3{0, 1, 0}, at));
    Vec3 q{dot(d, right) / wing, dot(d, cross(at, right)) / wing, 0};
    if (std::fabs(q.x) > 1.2F || std::fabs(q.y) > 1.2F || dot(d, at) < 0.5F) {
        return 0;
    }
    q = turnZ(q, bank);
    const float out = std::fabs(q.x);
    const float bow = lift * (1.9F * out - 1.7F * out * out);
    const float thick = 0.11F * (1 - out) + 0.1F * smoothStep(0.16F, 0.02F, out);
    return smoothStep(0.02F, -0.02F, std::max(std::fabs(q.y - bow) - thick, out - 1));
}

/// Somebody who stands and looks along -z, one unit tall, feet at the origin. Takes five materials from `first` on:
/// boots and trousers, jacket, skin, hat, pack.
inline void walker(Vec3 p, int first, float size, Hit &hit) {
    const float near = length(p - Vec3{0, 0.5F, 0}) - 0.6F;
    if (near > 0.2F) {
        hit.join(near * size, first);
        return;
    }
    const Vec3 q{std::fabs(p.x), p.y, p.z};
    const float boots = ellipsoid(q - Vec3{0.1F, 0.03F, -0.03F}, {0.045F, 0.04F, 0.085F});
    const float legs = std::min(boots, stick(q, {0.1F, 0.04F, 0}, {0.065F, 0.47F, 0}, 0.045F, 0.068F));
    const float body = blend(stick(q, {0.03F, 0.5F, 0}, {0.06F, 0.76F, 0}, 0.085F, 0.075F),
                             stick(q, {0.13F, 0.77F, 0}, {0.2F, 0.52F, 0.02F}, 0.05F, 0.035F), 0.05F);
    hit.join(legs * size * 0.9F, first);
    hit.join(body * size * 0.9F, first + 1);
    hit.join(std::min(sphere(q - Vec3{0, 0.91F, 0}, 0.07F), sphere(q - Vec3{0.2F, 0.5F, 0}, 0.035F)) * size, first + 2);
    const float hat = std::min(ellipsoid(q - Vec3{0, 0.955F, 0}, {0.075F, 0.06F, 0.075F}),
                               rodY(q - Vec3{0, 0.945F, 0}, 0.125F, 0.01F, 0.008F));
    hit.join(hat * size, first + 3);
    hit.join(box(q - Vec3{0, 0.68F, 0.13F}, {0.1F, 0.15F, 0.06F}, 0.04F) * size, first + 4);
}

/// A date or coconut palm, its foot at the origin: `tall` units up to the crown, leaning along x by `lean`. Takes two
/// materials from `first` on: trunk and leaves.
inline void palm(Vec3 p, int first, float tall, float lean, float turn, Hit &hit) {
    const float near =
        std::max(length(p.x - 0.5F * lean, p.z) - 0.75F * tall, std::fabs(p.y - 0.6F * tall) - 0.75F * tall);
    if (near > 0.15F * tall) {
        hit.join(near, first);
        return;
    }
    const float up = clamp01(p.y / tall);
    const float bow = lean * up * up;
    const float ring = 0.006F * tall * std::fabs(std::sin(p.y / tall * 60));
    hit.join(0.8F * std::max(length(p.x - bow, p.z) - (0.045F - 0.018F * up) * tall - ring,
                             std::fabs(p.y - 0.5F * tall) - 0.52F * tall),
             first);
    const Vec3 q = turnY(p - Vec3{lean, tall, 0}, turn) * (1 / tall);
    // Two wreaths of feathers: the upper one rises before it bends down.
    for (int wreath = 0; wreath < 2; ++wreath) {
        const Vec3 turned = turnY(q, wreath == 0 ? 0.0F : 0.35F);
        const Vec3 leaf = slices({turned.x, turned.z, turned.y}, wreath == 0 ? 8 : 9);
        const float rise = wreath == 0 ? 0.55F : 0.95F;
        const float reach = wreath == 0 ? 0.52F : 0.46F;
        const float arch = rise * leaf.x - (wreath == 0 ? 1.9F : 1.75F) * leaf.x * leaf.x;
        const float wide = 0.09F * std::sqrt(std::max(0.0F, std::sin(Pi * clamp01(leaf.x / reach))));
        const float feather = wide * (0.72F + 0.28F * std::cos((leaf.x - 0.7F * std::fabs(leaf.y)) * 150));
        const float sheet = std::fabs(leaf.z - arch + 0.55F * std::fabs(leaf.y)) * 0.6F - 0.004F;
        hit.join(0.7F * tall * std::max({sheet, std::fabs(leaf.y) - feather, leaf.x - reach}), first + 1);
    }
}

} // namespace lumora::samples
