// A tropical beach at noon: an open treasure chest under palms, a pirate ship at anchor in turquoise water.
#include "Scenes.h"

#include "Noise.h"
#include "Palms.h"
#include "PirateShip.h"
#include "Plants.h"
#include "Shapes.h"
#include "Skies.h"

namespace lumora::samples {

namespace {

enum Material { Beach, Rock, Trunk, Frond, Nut, Wood, Gold, Coins, Jewel, Iron, Star, ShipParts };

constexpr Palm Palms[] = {
    {{-5.5F, 0.3F, -3.6F}, 4.4F, 0.9F, 0.2F, 1.1F}, // only its shadow is seen
    {{-3.7F, 0.35F, 0.8F}, 4.3F, 1.55F, 0.3F, 1},   {{-4.9F, 0.4F, 3.4F}, 5.0F, 0.9F, -0.2F, 1.05F},
    {{5.6F, 0.2F, 4.6F}, 4.0F, -1.1F, 0.2F, 0.95F}, {{13.6F, 3.4F, 24}, 3.6F, -0.9F, 0, 1},
    {{11.2F, 3.1F, 26}, 4.2F, 0.6F, 0, 1},          {{16.4F, 3.6F, 25}, 4.0F, 0.9F, 0, 1},
    {{-17, 1.2F, 40}, 4.6F, 1.0F, 0, 1.2F},         {{-14.5F, 1.2F, 41}, 3.8F, -0.9F, 0, 1.2F}};
constexpr Vec3 Chest{1.75F, 0.18F, 0.9F};
constexpr Vec3 Ship{-1.5F, 0.1F, 17.5F};

class TreasureIsland : public Scene {
  public:
    TreasureIsland() {
        camera = {{0, 1.75F, -5.6F}, {0.15F, 2.05F, 6}, 1.38F};
        sunDirection = normalise({-0.52F, 0.74F, -0.42F});
        sunColour = {3.5F, 3.2F, 2.65F};
        skyLight = {0.32F, 0.45F, 0.68F};
        groundLight = {0.24F, 0.2F, 0.14F};
        farthest = 240;
        ceiling = 9.5F;
        caution = 0.8F;
        steps = 210;
        shadowReach = 8;
        shadowSoftness = 70;
        creviceSize = 0.25F;
        waterLevel = 0;
        waterColour = {0.0F, 0.26F, 0.31F};
        exposure = 0.8F;
        bloom = 0.16F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join(p.y > 1.4F ? p.y - 1.0F : (p.y - ground(p.x, p.z)) * 0.85F, Beach);
        for (const Palm &palm : Palms) {
            palmTree(p - palm.foot, palm, {Trunk, Frond, Nut}, hit);
        }
        if (p.z < 7) {
            treasure(turnY(p - Chest, 0.4F), hit);
            things(p, hit);
            coins(p, hit);
        } else {
            hit.join(p.z - 6, Rock);
        }
        hit.join(cliffs(p), Rock);
        pirateShip(turnY(p - Ship, -0.8F), ShipParts, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3 d) const override {
        const float rough = fbm(p * 5, 4);
        if (material >= ShipParts) {
            return shipLook(material - ShipParts, turnY(p - Ship, -0.8F), rough);
        }
        switch (material) {
        case Rock: {
            const Vec3 stone = mix(colour(0x6E5A48), colour(0xC2A684), fbm(Vec3{p.x * 1.2F, p.y * 4, p.z * 1.2F}, 4));
            const float green = smoothStep(0.45F, 0.8F, n.y + 0.5F * (rough - 0.5F)) * smoothStep(0.8F, 1.6F, p.y);
            return {.colour = mix(stone, mix(colour(0x2E6A1E), colour(0x86B03A), rough), green) *
                              mix(0.4F, 1.0F, smoothStep(0.05F, 0.3F, p.y))};
        }
        case Trunk:
            return {.colour = mix(colour(0x6E5236), colour(0xB8946A), noise(Vec3{p.x * 8, p.y * 24, p.z * 8})) *
                              mix(0.75F, 1.1F, rough)};
        case Frond:
            return {.colour = mix(colour(0x2C7A1C), colour(0x93C23C), noise(p * 2.2F)) * mix(0.8F, 1.15F, rough),
                    .shine = 0.25F,
                    .sharpness = 18,
                    .sheer = 0.55F};
        case Nut:
            return {.colour = mix(colour(0x4A2E18), colour(0x7C5632), rough), .shine = 0.15F};
        case Wood: {
            const Vec3 q = turnY(p - Chest, 0.4F);
            const float line =
                fraction((q.z < 3 && length(q) < 1.6F ? q.y : std::atan2(p.z - 2.1F, p.x + 2.75F) * 0.4F) * 7);
            return {.colour = mix(colour(0x6A3A1C), colour(0xA9693A), noise(Vec3{p.x * 7, p.y * 30, p.z * 7})) *
                              (line < 0.08F ? 0.45F : 1.0F),
                    .shine = 0.15F};
        }
        case Gold:
        case Coins: {
            const Vec3 metal = material == Gold ? colour(0xD89A2A) : colour(0xF5B52C);
            return {.colour = metal * mix(0.7F, 1.05F, rough),
                    .shine = 1.6F,
                    .sharpness = 35,
                    .mirror = 0.3F,
                    .tint = colour(0xFFD878),
                    .glow = metal * 0.06F};
        }
        case Jewel: {
            const Vec3 stones[] = {colour(0xE8103A), colour(0x12C060), colour(0x2A5CFF), colour(0xB030E0),
                                   colour(0xFF7A18)};
            const Vec3 stone = stones[static_cast<int>(std::fabs(std::floor(turnY(p - Chest, 0.4F).x * 5 + 10))) % 5];
            return {.colour = stone * 0.7F,
                    .shine = 2,
                    .sharpness = 90,
                    .mirror = 0.18F,
                    .sheer = 0.4F,
                    .glow = stone * 0.25F};
        }
        case Iron:
            return {.colour = mix(colour(0x3A3A40), colour(0x6A5A50), rough), .shine = 0.5F, .sharpness = 25};
        case Star:
            return {.colour = mix(colour(0xD8482A), colour(0xFF9A5A), noise(p * 30))};
        default:
            return sand(p, d);
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.4F);
        Vec3 light = mix(mix(colour(0xAEE4F8), colour(0x3FA4EE), smoothStep(0, 0.22F, up)), colour(0x1766C8),
                         smoothStep(0.15F, 0.85F, up));
        const Cloud cloud = clouds(d, sunDirection, 0.6F, 1.1F, 7.3F);
        light = mix(light, mix(colour(0xA8C4E0), colour(0xFFFFFF) * 1.5F, cloud.lit), cloud.amount * 0.95F);
        return light + sunGlow(d, sunDirection, sunColour) * 0.3F;
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Beach: {
            const float wave = p.z + 0.35F * p.x + 0.8F * fbm(p.x * 0.7F, p.z * 0.9F, 3);
            return smoothStep(9, 3, p.z) * smoothStep(0.03F, 0.12F, p.y) *
                   (0.007F * std::sin(wave * 26) * noise(p.x * 1.3F, p.z * 1.3F) + 0.004F * noise(p.x * 70, p.z * 70) +
                    0.02F * fbm(p.x * 6, p.z * 6, 2));
        }
        case Rock:
            return 0.1F * fbm(p * 2.4F, 4);
        case Coins:
            return p.y > Chest.y + 0.45F ? -0.02F * smoothStep(0.42F, 0.5F, cells(p.x * 13, p.z * 13).distance) : 0.0F;
        default:
            return 0;
        }
    }

    Vec3 waterNormal(Vec3 p, float distance) const override {
        const float ripple = 0.11F / (1 + 0.09F * distance);
        const auto height = [](float x, float z) { return fbm(x * 0.9F, z * 2.2F, 3) + 0.35F * noise(x * 5, z * 9); };
        const float here = height(p.x, p.z);
        return normalise(
            {ripple * (here - height(p.x + 0.05F, p.z)) * 5, 1, ripple * (here - height(p.x, p.z + 0.05F)) * 6});
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return haze(light, *this, d, distance < farthest - 1 ? std::max(0.0F, distance - 8) : 0.0F, 120,
                    colour(0xA8DCF2), colour(0xFFF4DC));
    }

  private:
    /// How far in front of the water's edge, along z.
    static float beyondShore(float x, float z) {
        return 4.4F + 0.9F * std::sin(0.42F * x + 0.6F) + 0.5F * (noise(x * 0.7F, 3) - 0.5F) + 0.05F * x * x - z;
    }

    static float ground(float x, float z) {
        const float shore = beyondShore(x, z);
        float height = shore > 0 ? 0.42F * (1 - std::exp(-shore * 0.22F)) : std::max(0.13F * shore, -2.5F);
        height += 0.12F * smoothStep(0.5F, 3, shore) * (fbm(x * 0.6F, z * 0.6F, 3) - 0.3F);
        const float dune = smoothStep(-2.9F, -4.6F, x + 0.5F * noise(x, z)) * smoothStep(1, 2.5F, shore);
        if (dune > 0) {
            height += dune * (0.12F + 0.42F * blades(x, z, 11) * smoothStep(0.35F, 0.6F, noise(x * 1.5F, z * 1.5F)));
        }
        return height;
    }

    static float cliffs(Vec3 p) {
        const float right = ellipsoid(p - Vec3{13.6F, 0.2F, 25}, {5.6F, 3.7F, 4});
        const float tower = ellipsoid(p - Vec3{8.2F, 0.2F, 23.5F}, {1.3F, 3.4F, 1.3F});
        const float left = ellipsoid(p - Vec3{-16, -0.2F, 41}, {7, 1.9F, 4});
        const float near = std::min(ellipsoid(p - Vec3{3.9F, 0.15F, 1.9F}, {0.75F, 0.5F, 0.6F}),
                                    ellipsoid(p - Vec3{4.6F, 0.1F, 1.3F}, {0.5F, 0.32F, 0.45F}));
        const float d = std::min({blend(right, tower, 1.2F), left, near});
        if (d > 1.2F) {
            return d - 0.6F;
        }
        const float size = p.z < 8 ? 0.3F : 1.0F;
        return (d - size * 1.5F * (fbm(p * (0.75F / size), 4) - 0.5F)) * 0.7F;
    }

    static void treasure(Vec3 p, Hit &hit) {
        if (sphere(p - Vec3{0, 0.5F, 0.2F}, 1.35F) > 0.4F) {
            hit.join(sphere(p - Vec3{0, 0.5F, 0.2F}, 1.35F), Wood);
            return;
        }
        const auto banded = [&](Vec3 q, float wood, float shell) {
            hit.join(wood, Wood);
            const float band = std::min(std::fabs(std::fabs(q.x) - 0.5F) - 0.055F, std::fabs(q.x) - 0.05F);
            hit.join(std::max(shell, band), Gold);
        };
        const Vec3 body = p - Vec3{0, 0.3F, 0};
        const float inside = box(body - Vec3{0, 0.1F, 0}, {0.66F, 0.3F, 0.38F});
        banded(p, std::max(box(body, {0.74F, 0.32F, 0.46F}, 0.03F), -inside),
               std::max(box(body, {0.76F, 0.335F, 0.48F}, 0.03F), -inside));
        hit.join(std::max(std::fabs(box({body.x, 0, body.z}, {0.72F, 1, 0.44F})) - 0.045F,
                          std::fabs(body.y - 0.29F) - 0.045F),
                 Gold);
        // The lid stands open, hinged at the back.
        const Vec3 hinge = p - Vec3{0, 0.62F, 0.46F};
        constexpr float Open = 1.8F;
        const Vec3 lid = Vec3{hinge.x, std::cos(Open) * hinge.y + std::sin(Open) * hinge.z,
                              std::cos(Open) * hinge.z - std::sin(Open) * hinge.y} +
                         Vec3{0, 0, 0.46F};
        const float half = std::max(rodX(lid, 0.46F, 0.74F, 0.02F), -lid.y);
        const float hollow = rodX(lid, 0.38F, 0.66F);
        banded(lid, std::max(half, -hollow), std::max({rodX(lid, 0.48F, 0.76F, 0.02F), -lid.y - 0.02F, -hollow}));
        hit.join(box(body - Vec3{0, 0.2F, -0.5F}, {0.11F, 0.13F, 0.03F}, 0.02F), Gold);
        hit.join(std::max(length(body.x, body.y - 0.21F) - 0.03F, std::fabs(body.z + 0.54F) - 0.01F), Iron);
        // Gold to the brim, and stones on it.
        const float heap =
            ellipsoid(p - Vec3{0, 0.5F, 0}, {0.68F, 0.36F, 0.4F}) + 0.05F * (cells(p.x * 9, p.z * 9).id - 0.5F);
        hit.join(std::max(heap, std::max(std::fabs(p.x) - 0.67F, std::fabs(p.z) - 0.39F)) * 0.8F, Coins);
        constexpr Vec3 stones[] = {{-0.4F, 0.78F, -0.14F},
                                   {-0.12F, 0.87F, -0.06F},
                                   {0.17F, 0.84F, -0.15F},
                                   {0.42F, 0.77F, -0.06F},
                                   {0.05F, 0.77F, -0.29F}};
        for (const Vec3 &stone : stones) {
            const Vec3 q = absolute(turnY(p - stone, stone.x * 9));
            hit.join(std::max((q.x + q.y * 0.8F + q.z) * 0.6F - 0.068F, q.y - 0.055F), Jewel);
        }
        const Vec3 cup = turnZ(p - Vec3{-0.98F, 0.1F, -0.35F}, 1.2F);
        const float bowl =
            std::max(std::fabs(ellipsoid(cup - Vec3{0, 0.2F, 0}, {0.15F, 0.2F, 0.15F})) - 0.015F, cup.y - 0.24F);
        hit.join(std::min({bowl, rodY(cup + Vec3{0, 0.1F, 0}, 0.03F, 0.14F),
                           rodY(cup + Vec3{0, 0.24F, 0}, 0.12F, 0.015F, 0.01F)}),
                 Gold);
    }

    /// Single coins in the sand about the chest.
    static void coins(Vec3 p, Hit &hit) {
        const float off = length(p.x - Chest.x + 0.3F, p.z - Chest.z + 0.5F);
        if (off > 1.7F || p.y > 0.8F) {
            hit.join(std::max(off - 1.5F, p.y - 0.6F), Coins);
            return;
        }
        constexpr float Tile = 0.27F;
        const int i = static_cast<int>(std::round(p.x / Tile));
        const int j = static_cast<int>(std::round(p.z / Tile));
        const float cx = static_cast<float>(i) * Tile + 0.08F * (hash(i, j, 1) - 0.5F);
        const float cz = static_cast<float>(j) * Tile + 0.08F * (hash(i, j, 2) - 0.5F);
        const float there = smoothStep(1.5F, 0.4F, length(cx - Chest.x + 0.3F, cz - Chest.z + 0.5F));
        if (hash(i, j, 3) > there) {
            hit.join(0.1F, Coins);
            return;
        }
        Vec3 q{p.x - cx, p.y - ground(cx, cz) - 0.025F, p.z - cz};
        q = turnZ(turnY(q, 6 * hash(i, j, 4)), 0.9F * (hash(i, j, 5) - 0.4F));
        hit.join(std::min(rodY(q, 0.085F, 0.014F, 0.008F), 0.1F), Coins);
    }

    /// A spade, a barrel, a starfish.
    static void things(Vec3 p, Hit &hit) {
        const Vec3 spade = turnZ(p - Vec3{3.0F, 0.2F, 1.1F}, 0.2F);
        hit.join(std::min(stick(spade, {0, 0.2F, 0}, {0, 1.35F, 0}, 0.03F),
                          rodX(spade - Vec3{0, 1.36F, 0}, 0.035F, 0.14F, 0.02F)),
                 Wood);
        hit.join(box(spade - Vec3{0, 0.1F, 0}, {0.15F, 0.22F, 0.015F}, 0.012F), Iron);
        const Vec3 barrel = p - Vec3{-2.75F, 0.68F, 2.1F};
        const float r = length(barrel.x, barrel.z);
        const float bulge = 0.4F - 0.22F * barrel.y * barrel.y;
        hit.join(std::max(r - bulge, std::fabs(barrel.y) - 0.5F) * 0.9F, Wood);
        hit.join(std::max(r - bulge - 0.02F, std::fabs(std::fabs(barrel.y) - 0.28F) - 0.04F) * 0.9F, Iron);
        const Vec3 s = p - Vec3{-1.35F, ground(-1.35F, -1.1F) + 0.01F, -1.1F};
        if (length(s) > 0.6F) {
            hit.join(length(s) - 0.4F, Star);
            return;
        }
        const Vec3 arm = slices({s.x, s.z, s.y}, 5);
        hit.join(
            (length({std::max(arm.x - 0.2F, 0.0F), arm.y, arm.z * 1.3F}) - mix(0.085F, 0.03F, clamp01(arm.x / 0.22F))) *
                0.75F,
            Star);
    }

    static Surface sand(Vec3 p, Vec3) {
        const float shore = beyondShore(p.x, p.z);
        const float rough = fbm(p.x * 3, p.z * 3, 4);
        Vec3 look = mix(colour(0xD9B478), colour(0xF6DDA8), rough) * mix(0.86F, 1.06F, noise(p.x * 60, p.z * 60));
        const float dune = smoothStep(-2.9F, -4.6F, p.x + 0.5F * noise(p.x, p.z)) * smoothStep(1, 2.5F, shore);
        const float grass = dune * smoothStep(0.1F, 0.4F, blades(p.x, p.z, 11)) *
                            smoothStep(0.35F, 0.6F, noise(p.x * 1.5F, p.z * 1.5F));
        look = mix(look, mix(colour(0x4C8A24), colour(0xA8C850), rough), grass);
        const Cell shell = cells(p.x * 3.2F, p.z * 3.2F);
        if (shell.id > 0.8F && shell.distance < 0.09F && shore > 0.4F && dune <= 0) {
            const Vec3 tints[] = {colour(0xFFB8A0), colour(0xFFFFFF), colour(0xC88A9A), colour(0xE8A860)};
            look = tints[static_cast<int>(shell.id * 97) % 4];
        }
        // Wet where the last wave has been, with a lace of foam at its edge.
        const float wave = shore + 0.25F * (fbm(p.x * 1.6F, p.z * 1.6F, 3) - 0.45F);
        const float wet = smoothStep(0.75F, 0.35F, wave);
        const float lace = smoothStep(0.55F, 0.75F, cells(p.x * 6, p.z * 6 + 2 * rough).distance + 0.25F * rough);
        const float foam = smoothStep(0.5F, 0.38F, wave) * smoothStep(-0.5F, 0.1F, wave) * (0.25F + 0.75F * lace) +
                           smoothStep(0.1F, 0.0F, std::fabs(wave - 0.42F));
        look = mix(look, look * 0.62F, wet);
        return {.colour = mix(look, Vec3{0.95F, 0.98F, 1}, clamp01(foam)), .shine = 0.15F * wet, .mirror = 0.06F * wet};
    }
};

} // namespace

std::unique_ptr<Scene> treasureIsland() {
    return std::make_unique<TreasureIsland>();
}

} // namespace lumora::samples
