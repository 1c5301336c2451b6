// A three-masted ship with striped sails and a skull on its flag.
#pragma once

#include "Scene.h"
#include "Shapes.h"

namespace lumora::samples {

enum ShipPart { Hull, Mast, Sail, Flag };

inline float shipDeck(float x) {
    const float sheer = 1.05F + 0.032F * x * x;
    return x < -2.3F ? sheer + 0.9F : x < -1.2F ? sheer + 0.35F : sheer;
}

/// Joins the ship to what was hit: bow towards +x, the water's surface at y = 0. The scene counts its parts from
/// `first`.
inline void pirateShip(Vec3 p, int first, Hit &hit) {
    const float near = box(p - Vec3{0.6F, 3.6F, 0}, {5.6F, 4.4F, 2.1F});
    if (near > 0.8F) {
        hit.join(near, first + Hull);
        return;
    }
    const float x = p.x;
    const float z = std::fabs(p.z);
    const float bow = clamp01((x + 0.5F) / 4.75F);
    const float stern = clamp01((-x - 1) / 3.4F);
    const float beam = 1.2F * std::sqrt(std::max(0.0F, 1.02F - bow * bow * bow)) * (1 - 0.25F * stern * stern) *
                       (0.72F + 0.28F * smoothStep(-0.6F, 1.0F, p.y));
    const float hull = std::max(
        {(z - beam) * 0.75F, (p.y - shipDeck(x)) * 0.9F, -x - 3.9F - 0.12F * p.y, x - 3.85F - 0.2F * p.y, -p.y - 0.6F});
    hit.join(std::max(hull, -std::max(z - beam + 0.12F, shipDeck(x) - 0.3F - p.y)) * 0.8F, first + Hull);
    hit.join(std::max(std::fabs(z - beam) - 0.05F, std::fabs(p.y - shipDeck(x)) - 0.05F) * 0.7F +
                 (x < -3.9F || x > 4 ? 0.3F : 0.0F),
             first + Mast);
    float wood = stick(p, {3.8F, 1.7F, 0}, {6.1F, 2.8F, 0}, 0.09F, 0.05F);
    constexpr float masts[] = {-2.5F, 0.1F, 2.5F};
    constexpr float tops[] = {6.0F, 7.3F, 6.1F};
    for (int i = 0; i < 3; ++i) {
        const Vec3 q = p - Vec3{masts[i], 0, 0};
        wood = std::min(wood, stick(q, {0, 0, 0}, {0, tops[i], 0}, 0.1F, 0.05F));
        const float low = 2.2F + (i == 0 ? 0.4F : 0.0F);
        const float half = (tops[i] - low - 0.5F) / 2;
        for (const float level : {0.0F, 1.0F}) {
            const float foot = low + level * (half + 0.1F);
            const float v = (q.y - foot) / (half - 0.1F);
            const float wide = mix(1.75F, 1.35F, (level + clamp01(v)) / 2) * (i == 1 ? 1.05F : 0.92F);
            const float belly = 0.55F * (1 - clamp01(std::pow(std::fabs(q.z) / wide, 2.0F))) *
                                std::sin(Pi * clamp01(0.15F + 0.85F * v) * 0.9F);
            hit.join(std::max({(std::fabs(q.x - 0.12F - belly) - 0.035F) * 0.6F,
                               std::fabs(q.z) - wide + 0.12F * std::sin(Pi * clamp01(v)),
                               std::fabs(q.y - foot - half / 2 + 0.05F) - half / 2 + 0.05F}),
                     first + Sail);
            wood = std::min(wood, rodZ(q - Vec3{0.1F, foot + half - 0.08F, 0}, 0.055F, wide + 0.15F, 0.03F));
        }
        wood = std::min(wood, stick({q.x, q.y, z}, {0, tops[i] - 0.5F, 0}, {-0.5F, 1.2F, 1.1F}, 0.022F));
        wood = std::min(wood, rodY(q - Vec3{0, tops[i] - 0.75F, 0}, 0.2F, 0.1F, 0.03F));
    }
    wood = std::min({wood, stick(p, {2.5F, 5.9F, 0}, {6.0F, 2.75F, 0}, 0.022F),
                     stick(p, {0.1F, 7.1F, 0}, {2.5F, 4.6F, 0}, 0.022F)});
    hit.join(wood, first + Mast);
    const Vec3 flag = p - Vec3{0.75F, 7.35F, 0.1F * std::sin(p.x * 5)};
    hit.join(box(flag, {0.65F, 0.36F, 0.02F}), first + Flag);
    hit.join(stick(p, {0.1F, 7, 0}, {0.1F, 7.85F, 0}, 0.035F), first + Mast);
}

/// The look of one part, at the same place p; `rough` is the scene's noise there.
inline Surface shipLook(int part, Vec3 p, float rough) {
    switch (part) {
    case Hull: {
        const bool port =
            std::fabs(p.y - 0.85F) < 0.14F && std::fabs(repeat(p.x, 0.9F)) < 0.15F && std::fabs(p.x) < 3.3F;
        const bool stripe = std::fabs(p.y - 0.85F) < 0.27F;
        const bool cabin = p.x < -2.4F && std::fabs(p.y - 1.95F) < 0.17F && std::fabs(repeat(p.x + p.z, 0.42F)) < 0.13F;
        if (cabin) {
            return {.colour = colour(0x6A4A20), .glow = colour(0xFFC860) * 0.9F};
        }
        const Vec3 wood = stripe ? colour(0xD8962A) : p.x < -2.3F && p.y > 1.6F ? colour(0x2A5C7A) : colour(0x7A4424);
        return {.colour = port ? colour(0x1A0E08)
                               : wood * mix(0.6F, 1.15F, rough) * (fraction(p.y * 6) < 0.12F ? 0.6F : 1.0F),
                .shine = 0.1F};
    }
    case Sail: {
        const bool stripe = fraction(p.z * 1.15F + 0.25F) < 0.5F;
        return {.colour = (stripe ? colour(0xC92A2A) : colour(0xF6EBD2)) * mix(0.85F, 1.08F, rough), .sheer = 0.5F};
    }
    case Flag: {
        const float x = p.x - 0.75F;
        const float y = p.y - 7.38F;
        const float head =
            std::min(length(x, y - 0.06F) - 0.13F, std::max(std::fabs(x) - 0.07F, std::fabs(y + 0.07F) - 0.07F));
        const float eyes = length(std::fabs(x) - 0.055F, y - 0.05F) - 0.038F;
        const float bones =
            std::max(std::fabs(std::fabs(x) * 0.45F - std::fabs(y + 0.12F)) - 0.03F, std::fabs(x) - 0.3F);
        const bool white = (head < 0 && eyes > 0) || (bones < 0 && head > 0.03F);
        return {.colour = white ? colour(0xF4F0E8) : colour(0x17171C)};
    }
    default:
        return {.colour = mix(colour(0x5A3418), colour(0x96602E), rough)};
    }
}

} // namespace lumora::samples
