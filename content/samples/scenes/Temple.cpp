// A Greek temple above the sea in the evening: honey-coloured marble, fallen drums, poppies, olive trees.
#include "Scenes.h"

#include "Skies.h"
#include "TempleColumns.h"

#include <array>

namespace lumora::samples {

namespace {

using namespace doric;

constexpr Vec3 Middle{2.6F, 0.35F, 3};
constexpr float Turn = 0.5F;

struct Tree {
    Vec3 foot;
    float size;
};
constexpr Tree Olives[] = {{{-10.2F, 0.1F, -7.5F}, 1.75F}, {{-15.5F, 0, 3.5F}, 1.7F}, {{15.8F, 0, -4.5F}, 1.55F}};
constexpr Tree Cypresses[] = {
    {{-13.0F, -0.3F, 13}, 1.0F}, {{-10.9F, -0.3F, 15}, 1.25F}, {{17.6F, -0.3F, 9}, 1.3F}, {{20.4F, -0.3F, 8}, 1.05F}};

constexpr Vec3 JarAt{4.35F, 0, -13.0F};
constexpr Vec3 WallAt{-6.5F, 0, -15.2F};

class Temple : public Scene {
  public:
    Temple() {
        camera = {{-2.6F, 1.9F, -24.5F}, {1.6F, 3.75F, 0}, 1.42F};
        sunDirection = normalise({-0.68F, 0.33F, -0.5F});
        sunColour = {3.9F, 2.6F, 1.35F};
        skyLight = {0.34F, 0.40F, 0.62F};
        groundLight = {0.20F, 0.15F, 0.09F};
        farthest = 500;
        ceiling = 12;
        caution = 0.85F;
        steps = 220;
        shadowReach = 14;
        shadowSoftness = 16;
        creviceSize = 0.4F;
        waterLevel = -9;
        waterColour = {0.01F, 0.09F, 0.16F};
        exposure = 0.88F;
        bloom = 0.18F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        land(p, hit);
        columns(turnY(p - Middle, Turn), hit);
        fallen(p, hit);
        for (int i = 0; i < 3; ++i) {
            const TreeParts tree = broadTree(p - Olives[i].foot, Olives[i].size, static_cast<float>(i) * 2.3F + 1);
            hit.join(tree.bark - 0.05F * (tree.bark < 0.5F ? noise(p * 3) : 0.0F), Bark);
            hit.join(leaves(p, tree.crown, 0.2F, 0.55F), Olive);
        }
        for (const Tree &one : Cypresses) {
            const Vec3 q = (p - one.foot) * (1 / one.size);
            const float crown = ellipsoid(q - Vec3{0, 3.4F, 0}, {0.75F, 3.6F, 0.75F}) * one.size;
            hit.join(crown > 0.6F ? crown - 0.2F
                                  : leaves(p, crown + 0.35F * (noise(p * Vec3{2, 1, 2}) - 0.5F), 0.2F, 1.2F),
                     Cypress);
        }
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        const float dirt = fbm(p * 2.9F, 4);
        switch (material) {
        case Marble:
            return marble(p, n, dirt);
        case RoofTiles: {
            const Tile tile = roofTile(p);
            const Vec3 clay = mix(colour(0x9A4A2A), colour(0xD27A48), tile.id) * mix(0.6F, 1.0F, tile.lift) *
                              mix(1.0F, 0.5F, tile.gap);
            return {.colour = mix(clay, colour(0xA89A5A), 0.6F * smoothStep(0.52F, 0.64F, fbm(p * 1.9F, 4)))};
        }
        case Clay: {
            // Painted jar: black figures' bands on red clay.
            const float y = p.y - height(p.x, p.z);
            const float a = std::atan2(p.x - JarAt.x, p.z - JarAt.z);
            const bool band = std::fabs(y - 0.62F) < 0.035F || std::fabs(y - 1.13F) < 0.03F || y > 1.42F || y < 0.2F;
            const bool key = std::fabs(y - 1.02F) < 0.06F && fraction(a * 4.5F) < 0.5F;
            const bool wave = std::fabs(y - 0.84F - 0.07F * std::sin(a * 9)) < 0.022F;
            return {.colour = band || key || wave ? colour(0x1E1512) : mix(colour(0xC05A22), colour(0xE8843C), dirt),
                    .shine = 0.35F,
                    .sharpness = 30};
        }
        case Rubble: {
            const Stone stone = courses(alongWall(p), p.y, 0.5F, 0.24F);
            const Vec3 grey =
                mix(colour(0x8F8068), colour(0xCDBd9A), stone.id) * mix(0.65F, 1.15F, fbm(p * 8, 3) * 1.2F);
            return {.colour = mix(grey * mix(1.0F, 0.4F, jointDepth(stone, 0.035F)), colour(0x8C8A4A),
                                  0.5F * smoothStep(0.5F, 0.62F, dirt))};
        }
        default:
            return gardenLook(material, p, n, dirt);
        }
    }

    /// Islands on the horizon are part of the sky, and so is the sea beyond the last ray.
    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.6F);
        const float west = std::pow(0.5F + 0.5F * dot(normalise({d.x, 0, d.z}), normalise({-0.9F, 0, 0.4F})), 2.0F);
        Vec3 light = mix(mix(colour(0xE8DCD8), colour(0xFFDBA0) * 1.15F, west),
                         mix(colour(0x7FB4E4), colour(0x2C66BC), smoothStep(0.25F, 1, up)), smoothStep(0, 0.33F, up));
        const Cloud cloud = clouds(d, sunDirection, 0.5F, 1.1F, 31.7F);
        light = mix(light, mix(colour(0xB0A8C4), colour(0xFFEBD0) * 1.25F, cloud.lit), cloud.amount * 0.9F);
        const float a = std::atan2(d.x, d.z);
        for (int i = 0; i < 2; ++i) {
            const auto k = static_cast<float>(i);
            const float island = 0.30F * (fbm(a * (3.1F + 1.5F * k) + 2.3F + 8 * k, 4, 5) - 0.52F + 0.06F * k) + 0.012F;
            const Vec3 rock =
                mix(mix(colour(0x8FA4CC), colour(0x6F86B4), k), colour(0xE0B090), 0.35F * noise(a * 60, d.y * 90));
            light = mix(light, rock, 0.85F * smoothStep(-0.0005F, 0.0015F, std::min(island, 0.09F) - d.y));
        }
        return d.y < 0 ? colour(0x4F8FC0) * 0.9F : light;
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Marble:
            return 0.018F * fbm(p * 8, 4) - 0.02F * smoothStep(0.6F, 0.75F, fbm(p * 5 + Vec3{7, 0, 0}, 3)) -
                   0.012F * jointDepth(block(p), 0.022F);
        case RoofTiles: {
            const Tile tile = roofTile(p);
            return 0.05F * tile.lift - 0.02F * tile.gap;
        }
        case Rubble:
            return -0.05F * jointDepth(courses(alongWall(p), p.y, 0.5F, 0.24F), 0.06F) + 0.02F * noise(p * 11);
        case Bark:
            return 0.05F * fbm(Vec3{p.x * 7, p.y * 2.5F, p.z * 7}, 3);
        case Ground:
            return 0.03F * fbm(p.x * 8, p.z * 8, 4);
        default:
            return 0;
        }
    }

    Vec3 waterNormal(Vec3 p, float distance) const override {
        const float ripple = 0.09F / (1 + 0.006F * distance);
        return normalise({ripple * (fbm(p.x * 0.3F, p.z * 0.5F, 4) - 0.47F), 1,
                          ripple * (fbm(p.x * 0.3F + 9, p.z * 0.5F, 4) - 0.47F)});
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return distance < farthest - 1
                   ? haze(light, *this, d, std::max(0.0F, distance - 12), 330, colour(0xB8C6E0), colour(0xFFDDA8))
                   : light;
    }

  private:
    /// All that grows, and the ground.
    static Surface gardenLook(int material, Vec3 p, Vec3 n, float dirt) {
        switch (material) {
        case Bark:
            return {.colour = mix(colour(0x3E342A), colour(0x8F7E66), fbm(Vec3{p.x * 8, p.y * 3, p.z * 8}, 4) * 1.2F)};
        case Olive: {
            const float id = leafId(p, 0.2F);
            return {.colour = mix(colour(0x4A5E30), colour(0xB4BE92), id * id), .shine = 0.1F, .sheer = 0.3F};
        }
        case Cypress:
            return {.colour = mix(colour(0x122A18), colour(0x3E5E2C), leafId(p, 0.2F)), .sheer = 0.1F};
        case Bougainvillea: {
            const float id = leafId(p, 0.115F);
            return {.colour = id < 0.85F * smoothStep(0.25F, 0.5F, noise(p * 1.3F))
                                  ? mix(colour(0xC8107A), colour(0xFF4FB4), fraction(id * 37))
                                  : mix(colour(0x2E5A1E), colour(0x7FA03A), id),
                    .sheer = 0.6F};
        }
        case Poppy: {
            const WildFlower flower = poppies(p, height(p.x, p.z));
            if (flower.petal < 0) {
                return {.colour = colour(0x5F7F38), .sheer = 0.3F};
            }
            const Vec3 petal = flower.id > 0.86F   ? colour(0xFFF4DC)
                               : flower.id > 0.74F ? colour(0xFFC41E)
                                                   : mix(colour(0xD8150C), colour(0xFF4A22), fraction(flower.id * 31));
            return {.colour = flower.petal > 1.5F ? colour(0x1A1014) : petal, .sheer = 0.7F};
        }
        case Grass: {
            const float tip = clamp01((p.y - height(p.x, p.z)) * 4.5F);
            const Vec3 dry = mix(colour(0x6C7F2E), colour(0xC9B25A),
                                 noise(p.x * 0.7F, p.z * 0.7F) * 0.7F + 0.4F * noise(p.x * 11, p.z * 11));
            return {.colour = dry * mix(0.5F, 1.1F, tip), .sheer = 0.35F};
        }
        default:
            return earth(p, n, dirt);
        }
    }

    static float pathSide(float x, float z) { return std::fabs(x - mix(-1.2F, 7.4F, smoothStep(-24, -9, z))) - 0.95F; }

    static float height(float x, float z) {
        const float bumps = 0.5F * (fbm(x * 0.3F, z * 0.3F, 3) - 0.45F);
        return 0.1F + bumps - 0.05F * smoothStep(0.2F, -0.2F, pathSide(x, z)) -
               13 * smoothStep(15, 44, z + 0.004F * x * x) - 0.6F * smoothStep(11, 17, z);
    }

    static WildFlower poppies(Vec3 p, float ground) {
        return wildFlowers(p, ground, 0.36F, 0.5F,
                           0.9F * smoothStep(0.40F, 0.6F, noise(p.x * 0.4F + 11, p.z * 0.4F + 3)));
    }

    static void land(Vec3 p, Hit &hit) {
        if (p.y > 2.6F) {
            hit.join(p.y - 1.2F, Ground);
            return;
        }
        const float ground = height(p.x, p.z);
        hit.join((p.y - ground) * 0.8F, Ground);
        if (p.z < -8 && p.y < ground + 0.6F) {
            const float path = pathSide(p.x, p.z);
            const float lush = smoothStep(-0.1F, 0.5F, path + 0.4F * (noise(p.x * 2, p.z * 2) - 0.5F));
            if (lush > 0.1F && p.z < -9) {
                hit.join(grassBlades(p, ground, 0.085F,
                                     lush * (0.08F + 0.3F * smoothStep(0.25F, 0.8F, noise(p.x * 0.8F, p.z * 0.8F)))),
                         Grass);
            }
            if (path > 0.25F && p.z < -10) {
                hit.join(poppies(p, ground).distance, Poppy);
            }
        }
    }

    static Surface earth(Vec3 p, Vec3 n, float dirt) {
        const float path = pathSide(p.x, p.z);
        const Cell flag = cells(p.x * 1.25F, p.z * 1.25F, 0.7F);
        const Vec3 stone = mix(colour(0xB09A74), colour(0xE2D0A8), flag.id) * mix(0.7F, 1.1F, fbm(p * 7, 3) * 1.3F) *
                           (flag.distance > 0.56F ? 0.6F : 1.0F);
        Vec3 soil = mix(colour(0x8A7A3E), colour(0xC9B070), dirt * 1.1F);
        soil = mix(soil, mix(colour(0x5A7030), colour(0x93994A), noise(p * 6)),
                   smoothStep(0.42F, 0.56F, fbm(p.x * 0.5F, p.z * 0.5F, 4)));
        soil = mix(soil, colour(0x9A8468), smoothStep(0.75F, 0.5F, n.y));
        return {.colour = mix(stone, soil, smoothStep(-0.15F, 0.1F, path + 0.3F * (dirt - 0.5F)))};
    }

    static Stone block(Vec3 p) {
        const Vec3 q = turnY(p - Middle, Turn);
        if (std::fabs(q.x) < HalfWide + 1.2F && std::fabs(q.z) < HalfLong + 1.2F && q.y > Floor && q.y < Beam) {
            return {std::fabs(repeat(q.y - Floor + 3 * std::round(q.x / Between) * 0.21F, 1.05F)),
                    hash(static_cast<int>(std::round(q.y)), static_cast<int>(std::round(q.x / Between)),
                         static_cast<int>(std::round(q.z / Between)))};
        }
        return q.y > Beam ? courses(alongWall(q) + 1.1F, q.y - Beam, 2.2F, 0.8F)
                          : courses(alongWall(q), q.y, 1.3F, 0.32F);
    }
    static Tile roofTile(Vec3 p) {
        const Vec3 q = turnY(p - Middle, Turn);
        return tiles(q.z, std::fabs(q.x) * 1.06F, 0.42F, 0.55F);
    }

    static Surface marble(Vec3 p, Vec3 n, float dirt) {
        const Vec3 q = turnY(p - Middle, Turn);
        const Stone stone = block(p);
        Vec3 honey = mix(colour(0xD8B98A), colour(0xF4E6C8), 0.35F * stone.id + 0.65F * fbm(p * 1.3F, 4) * 1.2F) *
                     mix(0.8F, 1.1F, fbm(p * 9, 3) * 1.3F);
        honey = honey * mix(1.0F, 0.6F, jointDepth(stone, 0.02F));
        const float streak = noise(Vec3{p.x * 5, p.y * 0.45F, p.z * 5});
        honey = mix(honey, colour(0x8C7658), 0.55F * smoothStep(0.55F, 0.8F, streak * (0.6F + 0.8F * dirt)));
        honey = mix(honey, colour(0xB07A3A), 0.35F * smoothStep(0.55F, 0.66F, fbm(p * 2.1F + Vec3{5, 0, 0}, 4)));
        honey = mix(honey, colour(0x7A7A66), 0.6F * smoothStep(0.8F, 1, n.y) * smoothStep(0.4F, 0.6F, dirt));
        // What rain has left of the paint: blue behind the gable and on the triglyphs, red under the cornice.
        const float worn = smoothStep(0.62F, 0.42F, fbm(p * 3.7F, 4));
        const float y = q.y - Beam;
        const float side = std::max(std::fabs(q.x) - HalfWide, std::fabs(q.z) - HalfLong);
        if (y > 1.72F && q.z < -HalfLong && q.z > -HalfLong - 0.36F && n.y < 0.3F) {
            honey = mix(honey, colour(0x3A6EB4), 0.75F * worn);
        } else if (y > 0.78F && y < 1.38F && side > 0.4F && triglyph(q) < 0.01F) {
            honey = mix(honey, colour(0x3F76B8), 0.7F * worn);
        } else if (y > 0.68F && y < 0.8F && side > 0.3F) {
            honey = mix(honey, colour(0xB8402A), 0.75F * worn);
        }
        return {.colour = honey, .shine = 0.06F};
    }

    /// Drums and a capital that lie in the grass, the jar, and the low wall with its bougainvillea.
    static void fallen(Vec3 p, Hit &hit) {
        if (p.y > 3.2F || p.z > -6 || p.z < -24) {
            hit.join(std::max({p.y - 2.4F, -6.8F - p.z > 0 ? -1e3F : p.z + 6.6F, -23 - p.z}), Marble);
            return;
        }
        static const std::array<float, 4> grounds{height(-3.3F, -15.4F), height(-1.7F, -13.2F), height(-5.2F, -12.6F),
                                                  height(JarAt.x, JarAt.z)};
        constexpr std::array<Vec3, 3> drums{{{-3.3F, 0.42F, -15.4F}, {-1.7F, 0.36F, -13.2F}, {-5.2F, 0.4F, -12.6F}}};
        constexpr std::array<float, 3> turns{0.5F, 1.25F, -0.4F};
        for (size_t i = 0; i < drums.size(); ++i) {
            const Vec3 from = p - drums[i] - Vec3{0, grounds[i] - 0.08F, 0};
            const float reach = length(from) - 0.9F;
            if (reach > 0.4F) {
                hit.join(reach, Marble);
                continue;
            }
            const Vec3 q = turnY(from, turns[i]);
            const float flute = 0.045F * std::fabs(std::cos(std::atan2(q.z, q.y) * 10));
            const float drum = rod(length(q.y, q.z) + flute, q.x, 0.5F, i == 1 ? 0.35F : 0.62F, 0.04F);
            hit.join((drum + (drum < 0.3F ? 0.07F * (noise(p * 3) - 0.4F) : 0.0F)) * 0.8F, Marble);
        }
        gardenWall(p, hit);
        jar(p - JarAt - Vec3{0, grounds[3], 0}, hit);
    }

    static void gardenWall(Vec3 p, Hit &hit) {
        const float far = std::max({std::fabs(p.x - WallAt.x) - 2.9F, std::fabs(p.z - WallAt.z) - 1.4F, p.y - 2.6F});
        if (far > 0.5F) {
            hit.join(far, Rubble);
            return;
        }
        const float x = p.x - WallAt.x;
        const float z = p.z - WallAt.z - 0.15F * x;
        const float base = height(p.x, p.z);
        const float top = 0.95F + 0.35F * noise(p.x * 0.9F, 2) - 0.5F * smoothStep(1.4F, 2.4F, x);
        hit.join(std::max({std::fabs(z) - 0.28F, std::fabs(x) - 2.6F, p.y - base - top}) * 0.85F, Rubble);
        const Vec3 bush{x - 0.1F, p.y - base - 1.0F, z + 0.2F};
        float bloom = ellipsoid(bush, {1.9F, 0.75F, 0.65F});
        if (bloom < 1) {
            bloom += 0.6F * (noise(p * 1.6F) - 0.5F) + 0.25F * (noise(p * 4) - 0.5F);
        }
        hit.join(leaves(p, bloom, 0.115F, 2.0F), Bougainvillea);
    }

    /// A painted jar, turned on a wheel.
    static void jar(Vec3 jar, Hit &hit) {
        const float r = length(jar.x, jar.z);
        if (r > 1.2F) {
            hit.join(r - 0.8F, Clay);
            return;
        }
        const float t = clamp01(jar.y / 1.62F);
        const float belly = 0.16F + 0.36F * std::pow(std::sin(std::pow(t, 0.85F) * Pi * 0.93F), 1.5F) +
                            (t > 0.9F ? 0.5F * (t - 0.9F) : 0.0F) -
                            0.05F * smoothStep(0.0F, 0.06F, t) * smoothStep(0.15F, 0.06F, t);
        float clay = std::max({(r - belly) * 0.7F, -jar.y, jar.y - 1.62F});
        clay = std::max(clay, -std::max(r - belly + 0.05F, 1.5F - jar.y));
        clay = std::min(clay, (std::fabs(length(std::fabs(jar.x) - 0.24F, jar.y - 1.33F) - 0.19F) < 1
                                   ? length(length(std::fabs(jar.x) - 0.24F, jar.y - 1.33F) - 0.19F, jar.z) - 0.035F
                                   : 1.0F));
        hit.join(clay, Clay);
    }
};

} // namespace

std::unique_ptr<Scene> temple() {
    return std::make_unique<Temple>();
}

} // namespace lumora::samples
