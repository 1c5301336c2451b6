// Columns, beams and gable of Temple, and what its solids are made of.
#pragma once

#include "Builders.h"

namespace lumora::samples::doric {

enum Material { Ground, Marble, RoofTiles, Clay, Rubble, Bark, Olive, Cypress, Bougainvillea, Poppy, Grass };

constexpr float Floor = 0.96F; ///< on top of the three steps
constexpr float Column = 5.3F; ///< height with its capital
constexpr float Beam = Floor + Column;
constexpr float Between = 2.2F; ///< from column to column
constexpr float HalfWide = 5.5F;
constexpr float HalfLong = 8.8F;
constexpr float Whole = 1.4F; ///< the roof still stands in front of here

/// Along the frieze: below 0 within a triglyph.
inline float triglyph(Vec3 q) {
    const float along = std::fabs(q.x) - HalfWide > std::fabs(q.z) - HalfLong ? q.z : q.x;
    return std::fabs(repeat(along, Between / 2)) - 0.24F;
}

/// The column at (x, z): whole in the front, a stump or gone further back.
inline float columnAt(Vec3 q, float x, float z) {
    const int i = static_cast<int>(std::round(x * 2));
    const int k = static_cast<int>(std::round(z * 2));
    const Vec3 c{q.x - x, q.y - Floor, q.z - z};
    float high = Column;
    if (z > Whole) {
        const float stump = hash(i, k, 4);
        high = stump > 0.72F ? Column : 0.5F + 4.2F * stump;
    }
    const float r = length(c.x, c.z);
    if (r > 1.1F || c.y > high + 0.6F) {
        return std::max(r - 0.8F, c.y - high - 0.2F);
    }
    const float t = clamp01(c.y / (Column - 0.7F));
    const float radius = 0.5F - 0.1F * t * t;
    const float flute = r < radius + 0.2F ? 0.05F * std::fabs(std::cos(std::atan2(c.z, c.x) * 10)) : 0.0F;
    float shaft = std::max({r - radius + flute, -c.y, c.y - std::min(high, Column - 0.55F)});
    if (high < Column) {
        shaft = std::max(shaft, c.y - high + 0.5F * (noise(c * 3 + Vec3{x, 0, z}) - 0.2F));
        return shaft * 0.8F;
    }
    const Vec3 head = c - Vec3{0, Column - 0.55F, 0};
    const float echinus =
        std::max({(r - 0.42F - 0.75F * head.y + 0.5F * head.y * head.y) * 0.8F, -head.y, head.y - 0.34F});
    const float abacus = box(head - Vec3{0, 0.44F, 0}, {0.68F, 0.11F, 0.68F}, 0.02F);
    return std::min({shaft, echinus, abacus}) * 0.85F;
}

/// Architrave, frieze, cornice, gable and roof: what the columns carry.
inline void entablature(Vec3 q, float &stone, Hit &hit) {
    const float y = q.y - Beam;
    if (y < -0.8F) {
        stone = std::min(stone, std::max(-y - 0.1F, 0.5F));
        return;
    }
    const float broken = q.z - Whole - 0.9F * noise(q.y * 1.7F, q.x * 0.3F); // ends in a ragged edge
    const float side = std::max(std::fabs(q.x) - HalfWide, std::fabs(q.z) - HalfLong);
    const auto course = [&](float from, float to, float out) {
        return std::max({side - out, -0.55F - side, std::fabs(y - (from + to) / 2) - (to - from) / 2});
    };
    float band = std::min({course(0, 0.68F, 0.42F), course(0.68F, 0.78F, 0.5F), course(0.78F, 1.38F, 0.4F),
                           course(1.38F, 1.66F, 0.86F), course(1.36F, 1.42F, 0.98F)});
    const float along = repeat(std::fabs(q.x) - HalfWide > std::fabs(q.z) - HalfLong ? q.z : q.x, Between / 2);
    const float grooves = 0.035F * smoothStep(0.03F, 0.01F, std::fabs(std::fabs(along) - 0.08F));
    band = std::min(
        band, std::max({std::fabs(along) - 0.24F, side - 0.48F + grooves, -side, std::fabs(y - 1.08F) - 0.3F}) * 0.8F);
    band = std::min(band, std::max({std::fabs(along) - 0.24F, side - 0.8F, -side, std::fabs(y - 1.34F) - 0.05F}));
    const float shields =
        std::max(length(std::fabs(along) - Between / 4, y - 1.08F) - 0.17F, std::fabs(side - 0.4F) - 0.06F);
    band = std::min(band, shields);
    // Gable and roof.
    const float slope = y - 1.66F - 2.15F * (1 - std::fabs(q.x) / (HalfWide + 0.95F));
    const float face = q.z + HalfLong;
    float gable = std::max({slope * 0.93F, 1.6F - y, face - 0.4F, -face - 0.3F});
    gable = std::min(gable, std::max({std::fabs(slope) * 0.93F - 0.14F, 1.6F - y, face, -face - 0.86F}));
    gable = std::min(gable, std::max({length(q.x, y - 2.45F) - 0.52F, std::fabs(face + 0.3F) - 0.1F}));
    gable =
        std::min(gable, std::max({std::fabs(length(q.x, y - 2.45F) - 0.62F) - 0.05F, std::fabs(face + 0.3F) - 0.14F}));
    for (const float x : {2.1F, 3.2F, 4.2F}) {
        gable = std::min(gable, rodZ({std::fabs(q.x) - x, y - 1.66F - 0.5F * (2.15F * (1 - x / 6.45F)), face + 0.3F},
                                     0.09F + 0.2F * (1 - x / 5), 0.09F, 0.04F));
    }
    // Ornaments like palm leaves on the corners.
    for (const Vec3 at : {Vec3{0, 4.0F, -0.5F}, Vec3{HalfWide + 0.8F, 1.75F, -0.5F}}) {
        const Vec3 leaf{std::fabs(q.x) - at.x, y - at.y, face - at.z};
        const float r = length(leaf.x, leaf.y);
        const float rays = 0.07F * std::fabs(std::sin(std::atan2(leaf.x, leaf.y) * 4));
        gable = std::min(gable, std::max({r - 0.5F + rays, -leaf.y, std::fabs(leaf.z) - 0.08F}) * 0.8F);
    }
    stone = std::min(stone, std::max(std::min(band, gable), broken * 0.7F));
    hit.join(std::max({std::fabs(slope - 0.2F) * 0.93F - 0.07F, 1.5F - y, face < 0 ? -face - 0.9F : 0.0F,
                       (broken + 1.2F + 0.6F * noise(q.x * 1.3F, q.z) - 1.6F) * 0.6F, std::fabs(q.x) - HalfWide - 1}),
             RoofTiles);
}

/// The whole temple, its front towards -z; q = 0 is its middle, on the ground.
inline void columns(Vec3 q, Hit &hit) {
    const float near = box(q - Vec3{0, 4.5F, 0}, {HalfWide + 2.4F, 5.6F, HalfLong + 2.4F});
    if (near > 0.8F) {
        hit.join(near, Marble);
        return;
    }
    float stone = 1e3F;
    for (int i = 0; i < 3; ++i) { // steps
        const auto k = static_cast<float>(i);
        stone = std::min(stone, box(q - Vec3{0, 0.32F * k - 0.34F, 0},
                                    {HalfWide + 1.6F - 0.4F * k, 0.5F + 0.16F * 1, HalfLong + 1.6F - 0.4F * k}, 0.03F));
    }
    stone += 0.05F * smoothStep(0.6F, 0.8F, stone < 0.3F ? fbm(q * 1.7F, 3) + 0.1F : 0.0F); // worn corners
    // The columns stand around the edge: the nearest of each side.
    const float x = std::clamp((std::round(q.x / Between - 0.5F) + 0.5F) * Between, -HalfWide, HalfWide);
    const float z = std::clamp(std::round(q.z / Between) * Between, -HalfLong, HalfLong);
    stone = std::min(
        {stone, columnAt(q, x, q.z > 0 ? HalfLong : -HalfLong), columnAt(q, q.x > 0 ? HalfWide : -HalfWide, z)});
    // The chamber inside, its walls broken down towards the back.
    const float top = Beam - 0.4F - (q.z > -2 ? 3.6F * smoothStep(-2, 5, q.z + 2 * noise(q.x, q.z * 0.8F)) : 0.0F);
    float wall = std::max(box({q.x, 0, q.z - 0.6F}, {3.3F, 9, 6.4F}), -box({q.x, 0, q.z - 0.6F}, {2.8F, 9, 5.9F}));
    wall = std::max({wall, q.y - top, -std::max({std::fabs(q.x) - 0.95F, q.z + 4, q.y - Floor - 4})});
    stone = std::min(stone, wall * 0.85F);
    entablature(q, stone, hit);
    hit.join(stone, Marble);
}

} // namespace lumora::samples::doric
