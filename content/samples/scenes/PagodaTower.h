// The five storeys, the bridge and the lantern of Pagoda, and what its solids are made of.
#pragma once

#include "Builders.h"

namespace lumora::samples::shrine {

enum Material {
    Ground,
    Stone_,
    RedWood,
    Plaster,
    RoofTiles,
    Gold,
    Lattice,
    Bark,
    Blossom,
    Pine,
    Petal,
    Flame,
    Iris,
    Azalea
};

constexpr float Turn = 0.62F;
constexpr int Storeys = 5;
/// Heights of a storey and of the platform below.
constexpr float High = 2.15F;
constexpr float Platform = 0.85F;

/// One eighth of the square plan: x out of the wall, y up, z along it.
inline Vec3 plan(Vec3 p) {
    const Vec3 q = turnY(p, Turn);
    const float a = std::fabs(q.x);
    const float b = std::fabs(q.z);
    return {std::max(a, b), p.y, std::min(a, b)};
}

/// Half the width of a storey's walls.
inline float halfOf(int storey) {
    return 1.95F - 0.2F * static_cast<float>(storey);
}

/// One storey with its roof; q is a place of the plan, y from the storey's floor.
inline void floorAt(Vec3 q, int storey, Hit &hit) {
    const float half = halfOf(storey);
    const float eave = half + 1.55F;
    const bool top = storey == Storeys - 1;
    // Walls: plaster between posts and beams, lattice windows, doors in the middle.
    hit.join(std::max({q.x - half, -q.y, q.y - 1.4F}), Plaster);
    const float post = std::fabs(repeat(q.z, half * 0.64F)) - 0.085F;
    const float beam = std::min({std::fabs(q.y - 0.1F), std::fabs(q.y - 0.95F), std::fabs(q.y - 1.3F)}) - 0.06F;
    float red = std::max({std::min(post, beam), q.x - half - 0.05F, std::fabs(q.y - 0.66F) - 0.72F});
    red = std::min(red, rodY({q.x - half + 0.02F, q.y - 0.66F, q.z - half + 0.02F}, 0.13F, 0.72F));
    const float inMiddle = q.z - half * 0.28F;
    hit.join(std::max({inMiddle, q.x - half - 0.025F, std::fabs(q.y - 0.52F) - 0.42F}),
             storey == 0 ? RedWood : Lattice);
    // Brackets and rafters under the roof, their ends painted yellow.
    const float step = 0.27F;
    const float rib = std::fabs(repeat(q.z - step / 2, step)) - 0.05F;
    const float out = (q.x - half) / 1.55F;
    const float corner = q.z / std::max(q.x, 0.01F);
    const float lift = 0.42F * corner * corner * corner * corner * out * std::max(out, 0.0F);
    const float under = q.y - 1.42F - lift + 0.05F * out;
    const float rafters = std::max({rib, std::fabs(under) - 0.06F, q.x - eave + 0.14F, half - q.x});
    hit.join(rafters * 0.85F, q.x > eave - 0.17F ? Gold : RedWood);
    const float bracket = std::max({std::fabs(repeat(q.z, half * 0.64F)) - 0.13F, std::fabs(q.y - 1.28F) - 0.1F,
                                    q.x - half - 0.15F - 1.6F * std::max(0.0F, q.y - 1.2F)});
    red = std::min(red, bracket * 0.8F);
    // Roof: hollow slope with ribs of round tiles, the corners swept up.
    const float inner = top ? 0.0F : half - 0.35F;
    const float t = clamp01((q.x - inner) / (eave - inner));
    const float rise = (top ? 1.35F : 0.72F) * (1 - t) * (1.15F - 0.3F * t - 0.15F * t * t);
    const float tileRib = 0.028F * std::fabs(std::cos(q.z / 0.2F * Pi));
    const float roof =
        std::max({std::fabs(q.y - 1.52F - rise - lift - tileRib) - 0.07F, q.x - eave, inner - 0.1F - q.x});
    hit.join(roof * (top ? 0.6F : 0.72F), RoofTiles);
    // Hips: a thick seam on each corner.
    const float hip = length((q.x - q.z) * 0.7F, q.y - 1.62F - rise - lift) - 0.11F;
    hit.join(std::max({hip, q.x - eave - 0.08F, inner - q.x}) * 0.65F, RoofTiles);
    // Balcony.
    if (storey > 0) {
        const float rim = half + 0.42F;
        float rail = std::max(q.x - rim, std::fabs(q.y + 0.02F) - 0.04F);
        const float bars = std::min(std::fabs(q.y - 0.4F) - 0.03F, std::fabs(q.y - 0.22F) - 0.018F);
        const float posts = std::max(std::fabs(repeat(q.z, 0.42F)) - 0.03F, std::fabs(q.y - 0.2F) - 0.24F);
        rail = std::min(rail, std::max(std::fabs(q.x - rim + 0.05F) - 0.03F, std::min(bars, posts)));
        red = std::min(red, rail);
    }
    hit.join(red, RedWood);
}

/// The whole pagoda; p = 0 is the middle of its foot.
inline void storeys(Vec3 p, Hit &hit) {
    const Vec3 q = plan(p);
    const float near = std::max(q.x - 4.2F, p.y - 15.6F);
    if (near > 0.5F) {
        hit.join(near, RedWood);
        return;
    }
    // Platform with steps on each side.
    float stone = std::max(q.x - 3.3F, p.y - Platform + 0.18F);
    stone = std::min(stone, box({q.x, p.y - Platform + 0.1F, 0}, {3.42F, 0.1F, 1}, 0.03F));
    for (int i = 0; i < 3; ++i) {
        const auto k = static_cast<float>(i);
        stone = std::min(stone, std::max({q.x - 3.6F - 0.3F * k, p.y - Platform + 0.22F + 0.22F * k, q.z - 0.9F}));
    }
    hit.join(stone, Stone_);
    const float level = (p.y - Platform) / High;
    const int storey = std::clamp(static_cast<int>(std::floor(level)), 0, Storeys - 1);
    const int other = level - std::floor(level) < 0.5F ? storey - 1 : storey + 1;
    Hit part;
    part.distance = 0.9F;
    floorAt({q.x, p.y - Platform - High * static_cast<float>(storey), q.z}, storey, part);
    if (other >= 0 && other < Storeys) {
        floorAt({q.x, p.y - Platform - High * static_cast<float>(other), q.z}, other, part);
    }
    // The mast with its nine rings.
    const Vec3 mast = p - Vec3{0, Platform + High * Storeys - 0.2F, 0};
    const float r = length(p.x, p.z);
    float gold = std::max(r - 0.045F, std::fabs(mast.y - 1.3F) - 1.4F);
    gold = std::min({gold, rodY(mast, 0.32F, 0.14F, 0.03F), sphere(mast - Vec3{0, 2.75F, 0}, 0.13F)});
    const float ring = repeat(mast.y - 0.15F, 0.23F);
    const float wide = 0.3F - 0.055F * mast.y;
    gold = std::min(gold, std::max(length(r - wide, ring) - 0.035F, std::fabs(mast.y - 1.3F) - 1.03F));
    part.join(gold, Gold);
    hit.join(part.distance, part.material);
}

/// An arched bridge along x; p = 0 is its middle, on the bank.
inline void bridge(Vec3 p, Hit &hit) {
    const float near = box(p - Vec3{0, 0.9F, 0}, {3.4F, 1.5F, 1.1F});
    if (near > 0.4F) {
        hit.join(near, RedWood);
        return;
    }
    const float t = p.x / 3.2F;
    const float arch = 0.05F + 0.95F * (1 - t * t);
    const float y = p.y - arch;
    float red = std::max({std::fabs(y) - 0.08F, std::fabs(p.z) - 0.85F, std::fabs(p.x) - 3.2F});
    const float sideways = std::fabs(std::fabs(p.z) - 0.78F);
    red = std::min(red, std::max({sideways - 0.05F, std::fabs(y + 0.1F) - 0.14F, std::fabs(p.x) - 3.2F}));
    const float rails = std::min(std::fabs(y - 0.72F) - 0.045F, std::fabs(y - 0.42F) - 0.03F);
    const float posts = std::max(std::fabs(repeat(p.x, 0.8F)) - 0.055F, std::fabs(y - 0.4F) - 0.45F);
    red = std::min(red, std::max({sideways - 0.055F, std::min(rails, posts), std::fabs(p.x) - 3.0F}));
    hit.join(red * 0.82F, RedWood);
    hit.join(std::max({sideways - 0.08F, std::fabs(repeat(p.x, 0.8F)) - 0.08F, std::fabs(y - 0.88F) - 0.05F,
                       std::fabs(p.x) - 3.0F}) *
                 0.82F,
             Gold);
}

/// A stone lantern two units high; p = 0 is the middle of its foot.
inline void lantern(Vec3 p, Hit &hit) {
    const float near = box(p - Vec3{0, 1, 0}, {0.7F, 1.2F, 0.7F});
    if (near > 0.3F) {
        hit.join(near, Stone_);
        return;
    }
    const Vec3 six = slices({p.x, p.z, p.y}, 6);
    const auto hexagon = [&](float y, float wide, float half) {
        return std::max(six.x - wide, std::fabs(p.y - y) - half) - 0.02F;
    };
    float stone =
        std::min({hexagon(0.08F, 0.42F, 0.1F), hexagon(0.24F, 0.32F, 0.06F),
                  cone(p - Vec3{0, 0.25F, 0}, 0.19F, 0.15F, 0.75F), rodY(p - Vec3{0, 0.62F, 0}, 0.2F, 0.05F, 0.02F)});
    stone = std::min({stone, hexagon(1.06F, 0.36F, 0.07F)});
    const float room = std::max(hexagon(1.36F, 0.26F, 0.22F),
                                -std::max({std::fabs(six.y) - 0.1F, std::fabs(p.y - 1.36F) - 0.13F, 0.2F - six.x}));
    stone = std::min(stone, room);
    const float t = clamp01(six.x / 0.6F);
    const float roof = p.y - 1.6F - 0.42F * (1 - t) * (1 - t) - 0.09F * std::pow(std::fabs(six.y) / 0.33F, 3.0F) * t;
    stone = std::min(stone, std::max(std::fabs(roof) - 0.06F, six.x - 0.56F) * 0.65F);
    stone = std::min(stone, ellipsoid(p - Vec3{0, 2.08F, 0}, {0.11F, 0.15F, 0.11F}));
    hit.join(stone, Stone_);
    hit.join(rodY(p - Vec3{0, 1.36F, 0}, 0.14F, 0.15F), Flame);
}

} // namespace lumora::samples::shrine
