// A wheat field late in the afternoon of a harvest day: stubble, standing wheat, bales, a red barn and woods.
#pragma once

#include "Machinery.h"
#include "Plants.h"

namespace lumora::samples {

/// A scene in this field adds the machine that harvests it, with materials from FieldEnd on.
class WheatField : public Scene {
  public:
    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.7F);
        Vec3 light = mix(mix(colour(0xFFE9C4), colour(0x9CCBEE), smoothStep(0, 0.3F, up)), colour(0x2F74C4),
                         smoothStep(0.2F, 1, up));
        light = cumulus(light, d, Heaps, colour(0xFFF3DC) * 1.35F, colour(0xB0AFC6));
        return light;
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return haze(light, *this, d, distance < farthest - 1 ? distance : 8.0F, 170, colour(0xD9D2C8),
                    colour(0xFFE2AC));
    }

  protected:
    enum FieldMaterial { Ground, Wheat, Bale, Barn, Roof, Wall, FieldEnd };

    WheatField() {
        sunDirection = normalise({-0.42F, 0.42F, -0.72F});
        sunColour = {3.6F, 2.75F, 1.75F};
        skyLight = {0.42F, 0.5F, 0.72F};
        groundLight = {0.3F, 0.22F, 0.1F};
        farthest = 260;
        ceiling = 30;
    }

    /// The place seen from the ruts: x along them, forward positive.
    static Vec3 alongRuts(Vec3 p) { return turnY(p, -2.5F); }

    static void field(Vec3 p, Hit &hit) {
        hit.join((p.y - groundHeight(p)) * (p.z > 9 ? 0.6F : 0.8F), Ground);
        if (p.z < -2.4F && p.y < 1.4F) {
            hit.join(ears(p), Wheat);
        }
        bales(p, hit);
        if (p.z > 40) {
            farm(p - Vec3{-12.5F, 4.2F, 60}, hit);
        }
    }

    static Surface fieldLook(int material, Vec3 p, Vec3 n) {
        const float rough = fbm(alongRuts(p) * 4, 4);
        switch (material) {
        case Wheat:
            return wheatLook(p);
        case Bale:
            return straw(p, rough);
        case Barn: {
            const float board = fraction(p.x * 1.6F + p.z * 1.6F);
            return {.colour = mix(colour(0x8E1F16), colour(0xB5382A), rough) * (board < 0.1F ? 0.6F : 1.0F)};
        }
        case Roof:
            return {.colour = mix(colour(0x5C5F66), colour(0x8B8D92), rough), .shine = 0.3F};
        case Wall:
            return {.colour = mix(colour(0xDAD2C0), colour(0xF3EBD8), rough), .shine = 0.2F};
        default:
            return ground(p, n);
        }
    }

    static float fieldGrain(int material, Vec3 p) {
        if (material == Ground) {
            return p.z < 14 ? 0.03F * fbm(p.x * 22, p.z * 22, 3) : 0.35F * fbm(p * 1.8F, 3) * smoothStep(24, 30, p.z);
        }
        return material == Bale ? 0.02F * fbm(p * 20, 3) : 0.0F;
    }

  private:
    static constexpr Heap Heaps[] = {{-0.42F, 0.22F, 0.2F, 0.08F}, {0.12F, 0.17F, 0.15F, 0.05F},
                                     {0.48F, 0.27F, 0.22F, 0.1F},  {-0.1F, 0.1F, 0.12F, 0.025F},
                                     {0.36F, 0.1F, 0.13F, 0.03F},  {-0.6F, 0.1F, 0.13F, 0.03F}};

    static float groundHeight(Vec3 p) {
        const float soil = 0.05F * (fbm(p.x * 0.8F, p.z * 0.8F, 3) - 0.5F);
        if (p.z < 3.2F + 0.12F * p.x) {
            // Stubble in drills, flattened where wheels have run.
            if (p.y > 0.3F) {
                return 0.25F;
            }
            const Vec3 q = alongRuts(p);
            const float track = smoothStep(0.3F, 0.22F, std::fabs(std::fabs(q.z) - 0.83F)) * smoothStep(2, -1, q.x);
            const float drill = 0.5F + 0.5F * std::cos(q.z * 2 * Pi / 0.17F);
            const float stalks = blades(p.x, p.z, 36) * (0.02F + 0.13F * drill) * (1 - track);
            const float print =
                0.03F * track *
                (0.5F + 0.5F * std::cos((q.x + 0.4F * std::fabs(std::fabs(q.z) - 0.83F)) * 2 * Pi / 0.24F));
            return soil * 0.4F + 0.01F + stalks - 0.03F * track + print;
        }
        float height = soil + 0.8F * smoothStep(6, 20, p.z);
        height += smoothStep(20, 90, p.z) * (14 * fbm(p.x * 0.018F + 0.4F, p.z * 0.016F, 3) - 1.5F);
        if (p.z < 26) {
            const float edge = smoothStep(3.2F + 0.12F * p.x, 3.5F + 0.12F * p.x, p.z) * smoothStep(22, 20, p.z);
            const float wave = 0.1F * fbm(p.x * 0.7F, p.z * 0.7F, 2);
            return height + edge * (0.62F + wave + 0.22F * blades(p.x, p.z, 13));
        }
        height = mix(height, 2.4F, yard(p));
        const float wood = woods(p);
        if (wood > 0) {
            const Cell tree = cells(p.x * 0.3F, p.z * 0.3F);
            height += wood * std::sqrt(std::max(0.0F, 1 - tree.distance * tree.distance * 2.4F)) *
                      (1.8F + 2.2F * tree.id + 1.3F * fbm(p * 1.1F, 3));
        }
        return height;
    }

    /// Level ground about the barn.
    static float yard(Vec3 p) {
        return smoothStep(20, 10, std::fabs(p.x + 11)) * smoothStep(26, 40, p.z) * smoothStep(72, 66, p.z);
    }

    static float woods(Vec3 p) {
        const float hedge =
            smoothStep(0.1F, 0.05F, std::fabs(fraction(p.z * 0.03F + 0.06F * std::sin(p.x * 0.06F)) - 0.5F));
        const float copse = smoothStep(0.53F, 0.58F, fbm(p.x * 0.04F + 7, p.z * 0.05F, 3));
        return std::max(hedge * smoothStep(0.35F, 0.5F, noise(p.x * 0.12F, p.z * 0.05F)), copse) *
               smoothStep(24, 30, p.z) * (1 - yard(p));
    }

    static Surface ground(Vec3 p, Vec3 n) {
        if (p.z < 3.2F + 0.12F * p.x) {
            const float high = smoothStep(0.0F, 0.14F, p.y);
            const Vec3 soil = mix(colour(0x6A4A2A), colour(0xA9824E), fbm(p.x * 7, p.z * 7, 4));
            const Vec3 stalk = mix(colour(0xC9993E), colour(0xF4D988), noise(p.x * 21, p.z * 21));
            const float chaff = smoothStep(0.52F, 0.6F, fbm(p.x * 5 + p.z * 9, p.z * 16 - p.x * 3, 3));
            return {.colour = mix(soil, stalk, std::max(high, 0.8F * chaff)) * 0.85F, .sheer = 0.1F};
        }
        if (p.z < 22) {
            return wheatLook(p);
        }
        const float field = cells(p.x * 0.035F, p.z * 0.04F, 0.9F).id;
        const Vec3 fields[] = {colour(0x7FA03C), colour(0xDDB650), colour(0x9DAE48), colour(0xE7C765),
                               colour(0x63893A)};
        const float stripe = fraction((p.x + (field - 0.5F) * 6 * p.z) / 3);
        const Vec3 crop =
            fields[static_cast<int>(field * 89) % 5] * (stripe < 0.5F ? 0.9F : 1.0F) * (0.8F + 0.3F * noise(p.x, p.z));
        const Vec3 leaf =
            mix(colour(0x29501E), colour(0x6E8C30), fbm(p * 1.9F, 3) * 1.5F * smoothStep(-0.3F, 0.9F, n.y));
        return {.colour = mix(crop, leaf, smoothStep(0.02F, 0.15F, woods(p))), .sheer = 0.08F};
    }

    static Surface wheatLook(Vec3 p) {
        const float high = smoothStep(0.15F, 0.95F, p.y);
        const Vec3 ripe = mix(colour(0xB87A22), colour(0xF6CE6A), noise(p.x * 14, p.z * 14));
        const Vec3 stalks = mix(colour(0x6E4E1A), colour(0xD9A648), noise(Vec3{p.x * 45, p.y * 3, p.z * 45}));
        Vec3 tone = mix(stalks, ripe, high) * (0.75F + 0.5F * fbm(p.x * 0.5F, p.z * 0.5F, 3));
        const Cell flower = cells(p.x * 2.1F, p.z * 2.1F);
        if (p.z > 3 && p.z < 9 && flower.id > 0.72F && flower.distance < 0.13F && p.y > 0.55F) {
            tone = flower.id > 0.88F ? colour(0x3F62E0) : colour(0xE3281C);
        }
        return {.colour = tone, .sheer = 0.35F};
    }

    /// Ears of wheat close to the eye, one in each small tile.
    static float ears(Vec3 p) {
        const float edge = std::max(p.x + 1.72F - 0.2F * std::sin(p.z * 2.1F), p.z + 2.7F);
        if (edge > 0) {
            return std::max(0.05F, edge);
        }
        constexpr float Tile = 0.1F;
        const int i = static_cast<int>(std::round(p.x / Tile));
        const int k = static_cast<int>(std::round(p.z / Tile));
        const float lean = 0.035F * (hash(i, k) - 0.5F) * p.y;
        const Vec3 q{repeat(p.x, Tile) + 0.03F * (hash(i, k, 1) - 0.5F) - lean, p.y - 0.62F - 0.2F * hash(i, k, 2),
                     repeat(p.z, Tile)};
        const float grainRows = 0.005F * std::cos(q.y * 2 * Pi / 0.03F) * std::cos(2 * std::atan2(q.z, q.x) + 0.6F);
        float ear = ellipsoid(q, {0.017F, 0.062F, 0.017F}) + grainRows;
        const Vec3 beard = slices({q.x, q.z, q.y}, 5);
        ear =
            std::min(ear, stick({beard.x, beard.z, beard.y}, {0.006F, 0.03F, 0}, {0.02F, 0.13F, 0}, 0.0018F, 0.0008F));
        ear = std::min(ear, std::max(length(q.x, q.z) - 0.004F, std::fabs(q.y + 0.4F) - 0.4F));
        return std::min(ear, 0.05F) * 0.75F;
    }

    static Surface straw(Vec3 p, float rough) {
        const float fibre = noise(Vec3{p.x * 40, p.y * 12, p.z * 40});
        return {.colour = mix(colour(0xA87428), colour(0xF3D078), 0.6F * fibre + 0.4F * rough), .sheer = 0.1F};
    }

    /// Round bales on the stubble.
    static void bales(Vec3 p, Hit &hit) {
        constexpr Vec3 Spots[] = {{6.6F, 0.6F, 1.2F}, {-4.6F, 0.6F, 2.4F}, {9.4F, 0.6F, 3.2F}};
        for (const Vec3 at : Spots) {
            const Vec3 q = turnY(p - at, 0.5F + at.x);
            hit.join(rodX(q, 0.66F, 0.6F, 0.08F) * 0.9F, Bale);
        }
    }

    static void farm(Vec3 p, Hit &hit) {
        const Vec3 q = turnY(p, 0.5F);
        const float near = box(q - Vec3{1, 4, 0}, {14, 9, 8});
        if (near > 2) {
            hit.join(near, Barn);
            return;
        }
        hit.join(box(q, {6, 4, 3.6F}), Barn);
        hit.join(std::max({std::fabs(q.z) * 0.7F + (q.y - 4) * 0.71F - 2.9F, 3.8F - q.y, std::fabs(q.x) - 6.3F}), Roof);
        hit.join(std::max(std::fabs(box(q - Vec3{0, -0.6F, -3.6F}, {1.7F, 2.2F, 0.2F})) - 0.14F, -3.4F - q.z - 0.6F),
                 Wall);
        hit.join(rodY(q - Vec3{8.6F, 1, 0}, 1.9F, 6), Wall);
        hit.join(ellipsoid(q - Vec3{8.6F, 7, 0}, {1.95F, 1.5F, 1.95F}), Roof);
    }
};

} // namespace lumora::samples
