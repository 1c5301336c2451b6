// A castle on a crag above a river at noon: blue roofs, flags in the wind, an arched bridge, poppies in front.
#include "Scenes.h"

#include "CastleWalls.h"
#include "Skies.h"

namespace lumora::samples {

namespace {

using namespace fortress;

constexpr Vec3 Trees[] = {{-4.6F, 0.9F, 15.5F}, {-16.6F, 0.9F, 4.0F}, {13.6F, 1.2F, 3.5F},
                          {15.6F, 1.2F, 9.0F},  {11.4F, 1.2F, -1.4F}, {-18, 0.9F, 12}};

class Castle : public Scene {
  public:
    Castle() {
        camera = {{-7.6F, 3.5F, -20}, {-0.6F, 7.9F, 6}, 1.46F};
        sunDirection = normalise({-0.62F, 0.6F, -0.5F});
        sunColour = {3.4F, 3.0F, 2.4F};
        skyLight = {0.34F, 0.44F, 0.66F};
        groundLight = {0.15F, 0.14F, 0.09F};
        farthest = 220;
        ceiling = 24;
        caution = 0.85F;
        steps = 230;
        shadowReach = 13;
        shadowSoftness = 18;
        creviceSize = 0.4F;
        waterLevel = 0;
        waterColour = {0.012F, 0.05F, 0.05F};
        exposure = 0.8F;
        strands = 500000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        landscape(p, hit);
        stronghold(p - Yard, hit);
        castleRoad(p, hit);
        bridge(p, hit);
        for (int i = 0; i < 6; ++i) {
            const TreeParts tree = broadTree(p - Trees[i], 1.0F + 0.35F * hash(i, 4), static_cast<float>(i) * 1.9F);
            hit.join(tree.bark, Bark);
            hit.join(leaves(p, tree.crown, 0.24F, 0.9F), Leaf);
        }
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        const float dirt = fbm(p * 2.7F, 4);
        switch (material) {
        case Masonry: {
            const Stone stone = block(p);
            Vec3 lime = mix(colour(0xA8926A), colour(0xE2D2AC), stone.id) * mix(0.75F, 1.15F, fbm(p * 8, 3) * 1.3F);
            lime = lime * mix(1.0F, 0.5F, jointDepth(stone, 0.03F));
            // Rain streaks under the battlements, moss near the foot.
            const float streak = noise(alongWall(p) * 3.5F, p.y * 0.35F) * smoothStep(0.35F, 0.6F, dirt);
            lime = mix(lime, colour(0x6B6252), 0.6F * smoothStep(0.25F, 0.55F, streak));
            const float damp = smoothStep(p.x < -6.5F ? 1.0F : 8.6F, p.x < -6.5F ? 0.2F : 7.0F, p.y + dirt);
            return {.colour = mix(lime, colour(0x66743A), 0.6F * damp * smoothStep(0.4F, 0.55F, dirt)), .shine = 0.03F};
        }
        case Slate: {
            const Stone tile = slate(p);
            Vec3 blue = mix(colour(0x1F3F7A), colour(0x4A7CC0), tile.id) * mix(0.7F, 1.1F, dirt * 1.4F);
            blue = mix(blue, colour(0x7A8A5A), 0.45F * smoothStep(0.55F, 0.66F, fbm(p * 1.7F, 4)));
            return {.colour = blue * mix(1.0F, 0.45F, jointDepth(tile, 0.03F)), .shine = 0.35F, .sharpness = 25};
        }
        case Opening:
            return {.colour = colour(0x1A1714)};
        case Timber:
            return {.colour = mix(colour(0x3B2617), colour(0x7A5230), noise(Vec3{p.x * 16, p.y * 2, p.z * 16}))};
        case Gold:
            return {
                .colour = colour(0xB98524), .shine = 1.1F, .sharpness = 50, .mirror = 0.25F, .tint = colour(0xFFD070)};
        case Flag: {
            const bool band = std::fabs(fraction(p.y * 0.9F + 0.15F) - 0.5F) < 0.13F;
            return {.colour = band ? colour(0xFFD23C) : colour(0xD81E28), .sheer = 0.6F};
        }
        case Crag:
            return cragLook(p, n, dirt);
        default:
            return plantLook(material, p, n, dirt);
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.5F);
        Vec3 light = mix(colour(0xDCEBF6), mix(colour(0x7FBBEA), colour(0x1F63B8), smoothStep(0.3F, 1, up)),
                         smoothStep(0, 0.4F, up));
        const Cloud cloud = clouds(d, sunDirection, 0.5F, 0.62F, 12.6F);
        light = mix(light, mix(colour(0xA9B8D2), colour(0xFFFBF0) * 1.35F, cloud.lit), cloud.amount * 0.95F);
        const float a = std::atan2(d.x, d.z); // blue hills on the horizon
        for (int i = 0; i < 2; ++i) {
            const auto k = static_cast<float>(i);
            const float ridge = 0.12F - 0.045F * k + 0.12F * (fbm(a * (2.4F + k) + 3.7F + 5 * k, 1, 5) - 0.5F);
            light =
                mix(light, mix(colour(0xA9C6E2), colour(0x86A9C4), k), 0.9F * smoothStep(-0.001F, 0.003F, ridge - d.y));
        }
        return light;
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Masonry:
            return -0.035F * jointDepth(block(p), 0.045F) + 0.02F * noise(p * 9) + 0.015F * noise(p * 21);
        case Slate:
            return -0.02F * jointDepth(slate(p), 0.04F);
        case Crag:
            return 0.16F * ridged(p.x * 1.3F + p.y * 0.5F, p.z * 1.3F + p.y * 1.4F, 5);
        case Ground:
            return p.z < 30 ? 0.03F * fbm(p.x * 9, p.z * 9, 3) : 0;
        case Bark:
            return 0.03F * fbm(Vec3{p.x * 9, p.y * 3, p.z * 9}, 3);
        default:
            return 0;
        }
    }

    /// Foliage on the woods behind.
    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        if (material != Ground || p.z < 20 || woods(p.x, p.z) < 0.1F) {
            return {};
        }
        const float other = fraction(chance * 733);
        const float turn = 2 * Pi * fraction(chance * 331);
        const float light = 0.6F + 0.9F * fraction(chance * 4001);
        return {.tip = normalise(n + Vec3{std::cos(turn), other - 0.3F, std::sin(turn)}) * (0.3F + 0.3F * other),
                .width = 0.2F,
                .blunt = 0.7F,
                .order = -length(p - camera.eye),
                .tint = {light, light, light * 0.85F}};
    }

    Vec3 waterNormal(Vec3 p, float distance) const override {
        const float ripple = 0.06F / (1 + 0.05F * distance);
        return normalise(
            {ripple * (fbm(p.x * 2, p.z * 3, 3) - 0.45F) * 0.6F, 1, ripple * (fbm(p.x * 2 + 9, p.z * 3, 3) - 0.45F)});
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return distance < farthest - 1 ? haze(light, *this, d, distance, 260, colour(0xBAD3EA), colour(0xFFF0D6))
                                       : light;
    }

  private:
    /// All that grows, and the ground.
    static Surface plantLook(int material, Vec3 p, Vec3 n, float dirt) {
        switch (material) {
        case Ivy:
            return {.colour = mix(colour(0x2E5A1E), colour(0x7FA03A), leafId(p, 0.15F)) * 0.9F, .sheer = 0.25F};
        case Bark:
            return {.colour = mix(colour(0x3A2C22), colour(0x7A6450), fbm(Vec3{p.x * 7, p.y * 2, p.z * 7}, 3))};
        case Leaf:
            return {.colour = mix(colour(0x2C5A1A), colour(0x8FB03E), leafId(p, 0.24F)), .sheer = 0.4F};
        case Flower:
            return flowerLook(p);
        case Grass: {
            const float tip = clamp01((p.y - land(p.x, p.z)) * 4);
            const Vec3 green = mix(colour(0x3A6A1C), colour(0x8FAE3C), noise(p.x * 0.8F, p.z * 0.8F));
            return {.colour = mix(green * 0.55F, mix(green, colour(0xC9BE6A), 0.4F * noise(p.x * 9, p.z * 9)), tip),
                    .sheer = 0.35F};
        }
        default:
            return landLook(p, n, dirt);
        }
    }

    /// Positive on land: distance to the river's bank.
    static float bank(float x, float z) {
        const float middle = -9.6F - 1.5F * std::sin(z * 0.17F + 0.9F) + 9 * smoothStep(14, 60, z) -
                             0.02F * std::max(0.0F, z) * z * 0.1F;
        return std::fabs(x - middle) - 2.7F - 0.7F * (noise(x * 0.5F, z * 0.5F) - 0.5F);
    }

    static float land(float x, float z) {
        const float side = bank(x, z);
        float high = -0.8F + 1.45F * smoothStep(-0.7F, 0.9F, side) +
                     1.1F * smoothStep(0.5F, 7, side) * (0.3F + fbm(x * 0.25F, z * 0.25F, 3));
        high += smoothStep(24, 110, z + 0.5F * std::fabs(x)) * 15 * fbm(x * 0.022F + 4, z * 0.022F, 3) *
                smoothStep(0, 10, side);
        return high;
    }

    /// Share of wood at a place far away, and the round tops of its trees.
    static float woods(float x, float z) {
        return smoothStep(22, 30, z) * smoothStep(0.46F, 0.52F, fbm(x * 0.05F + 2, z * 0.06F, 3)) *
               smoothStep(0.4F, 2, bank(x, z));
    }

    static void landscape(Vec3 p, Hit &hit) {
        const Vec3 q = p - Vec3{4, 0, 7.2F};
        const float r = length(q.x * 0.88F, q.z * 1.02F);
        float face = r - 9.3F + 0.22F * p.y;
        float rock = std::max(face * 0.9F, p.y - Yard.y - 0.3F);
        if (rock < 2.2F) {
            const float angle = std::atan2(q.z, q.x);
            face += 2.6F * (0.5F - ridged(angle * 2.3F, p.y * 0.11F + 3, 3)) -
                    1.9F * (fbm(Vec3{p.x * 0.6F, p.y * 0.9F, p.z * 0.6F}, 4) - 0.45F);
            rock = std::max(face * 0.65F, p.y - Yard.y - 0.25F * noise(p.x, p.z)) * 0.8F;
            // Rock carries the road; the road's inner side is hewn roughly.
            const Road road = roadAt(p);
            const float rough = fbm(p * 0.9F, 4) - 0.45F;
            const float below = road.height - 0.45F - p.y;
            rock = std::min(rock, 0.6F * std::max({road.out + 0.22F - 0.36F * std::max(0.0F, below) +
                                                       2.4F * rough * smoothStep(0.5F, 2.4F, below),
                                                   -below, road.end * 0.2F, -2.5F - road.out}));
            rock = std::max(rock, -0.7F * (roadCut(road, p) + 0.5F * rough));
        } else {
            rock -= 1.4F;
        }
        hit.join(rock, Crag);
        if (p.y > 19) {
            hit.join(p.y - 17, Ground);
            return;
        }
        float high = land(p.x, p.z);
        if (p.z > 20) {
            const float wood = woods(p.x, p.z);
            if (wood > 0) {
                const Cell tree = cells(p.x * 0.6F, p.z * 0.6F);
                high += wood * std::sqrt(std::max(0.0F, 1 - 2.6F * tree.distance * tree.distance)) *
                        (1.0F + 1.3F * tree.id + 0.7F * fbm(p * 2.2F, 3));
            }
        }
        hit.join((p.y - high) * (p.z > 20 ? 0.5F : 0.75F), Ground);
        if (p.z < 4 && p.y < high + 0.9F && p.y > 0) {
            const float side = bank(p.x, p.z);
            const float lush = smoothStep(-0.1F, 0.45F, side);
            if (lush > 0) {
                hit.join(grassBlades(p, high, 0.08F, lush * (0.12F + 0.26F * noise(p.x * 1.1F, p.z * 1.1F))), Grass);
            }
            if (side > 0.9F) {
                hit.join(wildFlowers(p, high, 0.33F, 0.48F,
                                     0.85F * smoothStep(0.42F, 0.62F, noise(p.x * 0.45F + 6, p.z * 0.45F)))
                             .distance,
                         Flower);
            }
        }
    }

    static Surface flowerLook(Vec3 p) {
        const WildFlower flower = wildFlowers(p, land(p.x, p.z), 0.33F, 0.48F, 1);
        if (flower.petal < 0) {
            return {.colour = mix(colour(0x4A7A2A), colour(0x7FA04A), flower.id), .sheer = 0.3F};
        }
        const Vec3 kinds[] = {colour(0xD81E10), colour(0xE8321A), colour(0xF04A22),
                              colour(0xE32413), colour(0xFFF6EA), colour(0xFFC928)};
        const int kind = static_cast<int>(flower.id * 97) % 6;
        return {.colour = flower.petal > 1.5F ? (kind < 4 ? colour(0x1E1420) : colour(0xE0A81E)) : kinds[kind],
                .sheer = 0.6F};
    }

    static Surface landLook(Vec3 p, Vec3 n, float dirt) {
        const float big = fbm(p.x * 0.2F, p.z * 0.2F, 4);
        Vec3 green = mix(colour(0x4A7A24), colour(0x9FB448), smoothStep(0.3F, 0.65F, big)) *
                     (0.6F + 0.7F * noise(p.x * 6, p.z * 6));
        if (p.z > 22) {
            const Vec3 fields[] = {colour(0x7FA63A), colour(0xD2C25A), colour(0x93B548), colour(0xB9BE58),
                                   colour(0x5E9038)};
            green = fields[static_cast<int>(cells(p.x * 0.07F, p.z * 0.05F, 0.9F).id * 89) % 5] *
                    (0.75F + 0.4F * noise(p.x, p.z * 0.5F));
            green = mix(green, mix(colour(0x1F4A1E), colour(0x6F9036), noise(p * 2.5F)), woods(p.x, p.z));
        }
        const float earth = smoothStep(0.42F, 0.12F, p.y + 0.2F * (dirt - 0.5F));
        const Vec3 mud = mix(colour(0x6A563C), colour(0xA89370), cells(p.x * 5, p.z * 5).id) *
                         mix(0.5F, 1.0F, smoothStep(0, 0.2F, p.y));
        return {.colour = mix(green, mud, earth) * mix(0.85F, 1.0F, n.y), .sheer = 0.1F};
    }

    static Surface cragLook(Vec3 p, Vec3 n, float dirt) {
        const float layer = noise(p.y * 1.9F + 2 * fbm(p * 0.35F, 2), 3);
        Vec3 stone = mix(colour(0x5E544C), colour(0xB8A284), mix(layer, dirt, 0.55F));
        stone = mix(stone, colour(0x4A443E),
                    0.6F * smoothStep(0.52F, 0.64F, noise(Vec3{p.x * 1.9F, p.y * 0.25F, p.z * 1.9F})));
        stone = mix(stone, colour(0xC8A24A), 0.4F * smoothStep(0.55F, 0.64F, fbm(p * 1.7F + Vec3{9, 0, 0}, 4)));
        const float grass = smoothStep(0.62F, 0.85F, n.y + 0.45F * (fbm(p * 1.3F, 3) - 0.45F));
        return {.colour = mix(
                    stone, mix(colour(0x44701F), colour(0x97A84A), dirt * 1.2F) * (0.7F + 0.5F * noise(p * 8)), grass)};
    }

    static Stone block(Vec3 p) {
        const Vec3 q = p - Yard;
        for (const RoundTower &tower : Towers) {
            const float x = q.x - tower.x;
            const float z = q.z - tower.z;
            if (length(x, z) < tower.radius + 0.3F) {
                return courses(std::atan2(x, z) * tower.radius, p.y, 0.55F, 0.27F);
            }
        }
        const Road road = roadAt(p);
        if (p.x > -6 && q.z < 2 && std::fabs(road.out) < 1 && road.end < 0.1F && p.y < road.height + 1) {
            return courses(std::atan2(p.x - 4, p.z - 7.2F) * 9, p.y, 0.5F, 0.24F);
        }
        return courses(alongWall(p) * 0.8F, p.y, 0.6F, 0.27F);
    }
    static Stone slate(Vec3 p) {
        const Vec3 q = p - Yard;
        for (const RoundTower &tower : Towers) {
            const float x = q.x - tower.x;
            const float z = q.z - tower.z;
            if (tower.roof > 0 && length(x, z) < tower.radius + 0.4F && q.y > tower.high - 0.5F) {
                return courses(std::atan2(x, z) * tower.radius, p.y, 0.26F, 0.2F);
            }
        }
        return courses(p.z, p.y, 0.26F, 0.18F);
    }

    static void bridge(Vec3 p, Hit &hit) {
        const Vec3 q = p - Vec3{-10.9F, 0, 9.5F};
        const float near = box(q - Vec3{0, 0.8F, 0}, {5.6F, 2.0F, 1.4F});
        if (near > 0.5F) {
            hit.join(near, Masonry);
            return;
        }
        const float road = 1.55F + 0.35F * (1 - q.x * q.x / 25);
        const float y = q.y - road;
        float stone = std::max({std::fabs(q.z) - 0.95F, y, std::fabs(q.x) - 5.4F});
        const float x = repeat(q.x, 2.3F);
        const float arch = archway(x, q.y, 0.86F, 0.2F);
        const float span = std::max(arch, std::fabs(q.x) - 3.45F);
        stone = std::max(stone, -span);
        stone = std::min(stone, std::max({std::fabs(span - 0.1F) - 0.1F, std::fabs(q.z) - 1.0F, -q.y + 0.1F}));
        stone = std::min(
            stone, std::max({std::fabs(std::fabs(q.z) - 0.87F) - 0.12F, y - 0.5F, -y - 0.1F, std::fabs(q.x) - 5.4F}));
        stone =
            std::min(stone, std::max({std::fabs(q.z) - 1.03F, std::fabs(y + 0.02F) - 0.05F, std::fabs(q.x) - 5.4F}));
        // Pointed piers that part the water.
        const float pier = std::fabs(repeat(q.x - 1.15F, 2.3F));
        stone = std::min(stone, std::max({pier * 0.8F + (std::max(std::fabs(q.z), 0.95F) - 1.45F) * 0.6F,
                                          q.y - 0.75F + (std::fabs(q.z) - 0.95F), std::fabs(q.x) - 4}));
        hit.join(stone * 0.9F, Masonry);
    }
};

} // namespace

std::unique_ptr<Scene> castle() {
    return std::make_unique<Castle>();
}

} // namespace lumora::samples
