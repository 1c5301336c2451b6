// A steam locomotive on a summer day, seen from the meadow beside the line.
#include "Scenes.h"

#include "Builders.h"
#include "Skies.h"

#include <array>

namespace lumora::samples {

namespace {

enum Material { Ground, Rail, Sleeper, Green, Black, Brass, Red, Steel, Glass, Coal, Tyre, Bark, Leaf, Flower };

/// Where the trees behind the line stand.
constexpr std::array<Vec3, 9> Trees{{{1.6F, 1, 17},
                                     {-2.6F, 1.25F, 19},
                                     {-5.5F, 0.85F, 21.5F},
                                     {-9.5F, 1.2F, 20},
                                     {4.4F, 1.1F, 22},
                                     {-15, 1.3F, 24},
                                     {-26, 1.25F, 22},
                                     {-33, 1.35F, 25},
                                     {-41, 1.3F, 22}}}; // y: how large

constexpr float BoilerHeight = 2.35F;

class Locomotive : public Scene {
  public:
    Locomotive() {
        camera = {{9.2F, 1.5F, -6.6F}, {1.7F, 2.35F, 0.2F}, 1.75F};
        sunDirection = normalise({0.55F, 0.62F, -0.6F});
        sunColour = {3.1F, 2.75F, 2.25F};
        skyLight = {0.42F, 0.52F, 0.72F};
        groundLight = {0.16F, 0.17F, 0.08F};
        farthest = 130;
        caution = 0.8F;
        steps = 600;
        shadowReach = 9;
        shadowSoftness = 20;
        creviceSize = 0.35F;
        ceiling = 9.5F;
        exposure = 0.9F;
        strands = 900000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        const float ground = groundHeight(p);
        hit.join((p.y - ground) * (p.z > 8 ? 0.55F : 0.85F), Ground);
        if (std::fabs(p.z) < 2.2F && p.y < 0.6F) {
            track(p, hit);
        }
        if (p.z < -2.7F && p.y < 1) {
            hit.join(flowers(p).distance, Flower);
        }
        if (p.z > 10) {
            for (size_t i = 0; i < Trees.size(); ++i) {
                const Vec3 foot{Trees[i].x, meadow(Trees[i].x, Trees[i].z), Trees[i].z};
                const TreeParts tree = broadTree(p - foot, Trees[i].y, 1.7F * static_cast<float>(i));
                hit.join(tree.bark, Bark);
                hit.join(leaves(p, tree.crown, 0.2F, 1.0F), Leaf);
            }
        }
        const float near = box(p - Vec3{-1.7F, 2.1F, 0}, {7.2F, 2.3F, 1.5F});
        if (near > 0.6F) {
            hit.join(near, Black);
            return hit;
        }
        boiler(p, hit);
        cabAndTender(p, hit);
        frontAndFrame(p, hit);
        wheels(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        const float dirt = fbm(p * 3, 4);
        switch (material) {
        case Ground:
            return ground(p, n);
        case Rail:
            return {.colour = p.y > 0.27F ? colour(0xB9BCC4) : colour(0x6B4632),
                    .shine = 0.8F,
                    .sharpness = 60,
                    .mirror = p.y > 0.27F ? 0.4F : 0.0F};
        case Sleeper:
            return {.colour = mix(colour(0x4A3626), colour(0x7B5D43), fbm(Vec3{p.x * 12, p.y * 12, p.z * 2}, 3))};
        case Green: {
            Vec3 paint = mix(colour(0x0B5A36), colour(0x11693F), dirt);
            // Lining: a thin gold line around the panels of cab and tender.
            if (p.x < -1.25F && p.y > 1.5F && p.y < 3.2F) {
                const float x = p.x > -3.6F ? std::fabs(p.x + 2.35F) - 0.9F : std::fabs(p.x + 6.2F) - 2.1F;
                const float y = p.x > -3.6F ? std::fabs(p.y - 1.95F) - 0.32F : std::fabs(p.y - 2.0F) - 0.42F;
                if (std::fabs(std::max(x, y)) < 0.02F) {
                    paint = colour(0xF0B93A);
                }
            }
            // What lies below is matt in it: gravel and flowers would be mere specks.
            return {.colour = paint * mix(0.8F, 1.1F, dirt),
                    .shine = 1.2F,
                    .sharpness = 120,
                    .mirror = 0.06F * smoothStep(0.05F, 0.5F, n.y)};
        }
        case Brass:
            return {.colour = colour(0xC27A1C) * 0.7F,
                    .shine = 1.6F,
                    .sharpness = 70,
                    .mirror = 0.6F,
                    .tint = colour(0xFFC861)};
        case Red:
            return {.colour = mix(colour(0xB3160E), colour(0xD42617), dirt),
                    .shine = 0.9F,
                    .sharpness = 70,
                    .mirror = 0.03F};
        case Steel:
            return {.colour = colour(0xA9ADB6) * 0.6F, .shine = 1.4F, .sharpness = 50, .mirror = 0.2F};
        case Glass:
            return {.colour = colour(0x1A2530), .shine = 1, .sharpness = 200, .mirror = 0.35F};
        case Tyre:
            return {.colour = colour(0x8D9098) * 0.45F, .shine = 1, .sharpness = 40, .mirror = 0.14F};
        case Bark:
            return {.colour = mix(colour(0x3A2C22), colour(0x7A6450), fbm(Vec3{p.x * 7, p.y * 2, p.z * 7}, 3))};
        case Leaf:
            return {.colour = mix(colour(0x2C5A1A), colour(0x86A83A), leafId(p, 0.2F)), .sheer = 0.4F};
        case Flower: {
            const WildFlower one = flowers(p);
            if (one.petal < 0) {
                return {.colour = mix(colour(0x4A7A2A), colour(0x7FA04A), one.id), .sheer = 0.3F};
            }
            const int kind = static_cast<int>(one.id * 97) % 5;
            const Vec3 petals[] = {colour(0xE32413), colour(0xE8321A), colour(0xFFF6EA), colour(0xFFC928),
                                   colour(0x5A6EE8)};
            return {.colour = one.petal > 1.5F ? (kind < 2 ? colour(0x1E1420) : colour(0xE0A81E)) : petals[kind],
                    .sheer = 0.6F};
        }
        case Coal:
            return {.colour = colour(0x17161A), .shine = 0.5F, .sharpness = 20};
        default:
            return {.colour = mix(colour(0x1B1B1F), colour(0x2C2A2B), dirt),
                    .shine = 0.6F,
                    .sharpness = 45,
                    .mirror = 0.04F * smoothStep(0.05F, 0.5F, n.y)};
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.7F);
        Vec3 light = mix(colour(0xD8ECFA), mix(colour(0x6FB1EA), colour(0x2566BE), smoothStep(0.25F, 1, up)),
                         smoothStep(0, 0.3F, up));
        const Cloud cloud = clouds(d, sunDirection, 0.6F, 0.8F, 7.7F);
        light = mix(light, mix(colour(0xB4C2D8), colour(0xFFFCF4) * 1.3F, cloud.lit), cloud.amount * 0.95F);
        return light + sunGlow(d, sunDirection, sunColour) * 0.4F;
    }

    float grain(int material, Vec3 p) const override {
        if (material != Ground) {
            return 0;
        }
        return p.z > 40 ? 0.25F * fbm(p * 1.6F, 3) : 0.02F * fbm(p.x * 16, p.z * 16, 3);
    }

    /// Grass and flowers of the meadow; leaves on the woods far away.
    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        const float side = std::fabs(p.z);
        if (material != Ground || side < 2.12F + 0.3F * noise(p.x * 3, p.z)) {
            return {};
        }
        const float far = length(p - camera.eye);
        const float other = fraction(chance * 733);
        const float turn = 2 * Pi * fraction(chance * 331);
        const float light = 0.6F + 0.9F * fraction(chance * 4001);
        if (woods(p.x, p.z) > 0.3F) {
            return {.tip = normalise(n + Vec3{std::cos(turn), other - 0.2F, std::sin(turn)} * 0.9F) *
                           (0.3F + 0.3F * other),
                    .width = 0.2F,
                    .blunt = 0.7F,
                    .order = -far,
                    .tint = {light, light, light * 0.85F}};
        }
        if (far > 60) {
            return {};
        }
        const float tuft = 0.5F + noise(p.x * 1.4F, p.z * 1.4F);
        const Vec3 lean{0.45F * std::cos(turn) - 0.15F, 0, 0.45F * std::sin(turn)};
        Strand blade{.tip = (Vec3{0, 1, 0} + lean) * (tuft * (0.1F + 0.12F * other)),
                     .sag = lean * (-0.05F * tuft),
                     .width = 0.012F,
                     .order = -far,
                     .tint = {light * 1.15F, light, light * 0.7F}};
        return blade;
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        light =
            haze(light, *this, d, distance < farthest - 1 ? distance : 6.0F, 120, colour(0xB9D6F2), colour(0xFFE9C9));
        return steam(light, from, d, distance);
    }

  private:
    /// Share of wood at a place far away.
    static float woods(float x, float z) {
        return smoothStep(30, 44, z) *
               smoothStep(0.42F, 0.5F, fbm(x * 0.05F + 5, z * 0.08F, 3) + 0.1F * smoothStep(45, 70, z));
    }

    /// The land without what lies or grows on it.
    static float meadow(float x, float z) {
        const float side = std::fabs(z);
        float height = 0.12F * smoothStep(2.6F, 1.5F, side);
        height += 0.3F * (fbm(x * 0.4F, z * 0.4F, 3) - 0.5F) * smoothStep(1.9F, 4, side);
        return height + smoothStep(14, 75, z) * (11 * fbm(x * 0.025F + 3.3F, z * 0.02F, 3) - 2.6F);
    }

    static WildFlower flowers(Vec3 p) {
        return wildFlowers(p, meadow(p.x, p.z), 0.24F, 0.34F,
                           0.5F * smoothStep(0.42F, 0.62F, noise(p.x * 0.5F + 3, p.z * 0.5F)));
    }

    /// Broken stone under the track: the upper of two layers of pebbles.
    struct Pebble {
        float height;
        float id;
    };
    static Pebble gravel(float x, float z) {
        const Cell a = cells(x * 7, z * 7, 0.9F);
        const Cell b = cells((0.8F * x + 0.6F * z) * 9 + 31, (0.8F * z - 0.6F * x) * 9, 0.9F);
        const float high = (0.6F + 0.6F * a.id) * (1 - 1.5F * a.distance * a.distance + 0.7F * (a.dx * (a.id - 0.5F)));
        const float low = (0.4F + 0.6F * b.id) * (1 - 1.6F * b.distance * b.distance + 0.7F * (b.dy * (b.id - 0.5F)));
        return high > low ? Pebble{high, a.id} : Pebble{low, fraction(b.id + 0.37F)};
    }

    static float groundHeight(Vec3 p) {
        const float side = std::fabs(p.z);
        float height = meadow(p.x, p.z);
        if (side < 2.6F) {
            return height + (p.y < 0.5F ? 0.085F * gravel(p.x, p.z).height * smoothStep(2.5F, 1.9F, side) : 0.06F);
        }
        const float wood = p.z > 20 ? woods(p.x, p.z) : 0.0F;
        if (wood > 0) {
            const Cell tree = cells(p.x * 0.4F, p.z * 0.4F);
            const float dome = std::max(0.0F, 1 - tree.distance * tree.distance * 2.2F);
            height += wood * std::sqrt(dome) * (2.6F + 1.6F * tree.id + 1.2F * fbm(p * 1.1F, 3));
        }
        return height;
    }

    static Surface ground(Vec3 p, Vec3 n) {
        if (std::fabs(p.z) < 2.0F + 0.3F * noise(p.x * 3, p.z)) {
            const Pebble stone = gravel(p.x, p.z);
            return {.colour = mix(colour(0x5E5650), colour(0xB9AF9F), stone.id) *
                              mix(0.35F, 1.05F, smoothStep(0.1F, 0.6F, stone.height)) *
                              mix(0.8F, 1.15F, fbm(p * 24, 2))};
        }
        const float big = fbm(p.x * 0.12F, p.z * 0.12F, 4);
        Vec3 grass = mix(colour(0x3A6A1C), colour(0x86A23A), smoothStep(0.3F, 0.65F, big));
        grass = grass * (0.55F + 0.6F * noise(p.x * 9, p.z * 9));
        if (p.z > 14) {
            // Fields in strips, and the darker woods on them.
            const float field = cells(p.x * 0.06F + 0.3F * noise(p.x * 0.02F, p.z * 0.02F), p.z * 0.045F, 0.9F).id;
            const Vec3 fields[] = {colour(0x6F9E32), colour(0xC9B44A), colour(0x88AE3F), colour(0xB9B850),
                                   colour(0x4F8430)};
            grass = mix(grass, fields[static_cast<int>(field * 89) % 5] * (0.8F + 0.3F * noise(p.x * 2, p.z * 0.6F)),
                        smoothStep(14, 24, p.z));
        }
        const float leaf = noise(p * 2.2F);
        return {.colour = mix(grass, mix(colour(0x1E4A1C), colour(0x5C8A2C), leaf * smoothStep(-0.2F, 1, n.y)),
                              p.z > 7 ? woods(p.x, p.z) : 0.0F),
                .sheer = 0.1F};
    }

    static void track(Vec3 p, Hit &hit) {
        const Vec3 mirrored{p.x, p.y, std::fabs(p.z)};
        hit.join(box(Vec3{repeat(p.x, 0.72F), p.y - 0.14F, p.z}, {0.14F, 0.09F, 1.5F}, 0.02F), Sleeper);
        const Vec3 rail = mirrored - Vec3{0, 0, 0.76F};
        hit.join(std::min({std::max(std::fabs(rail.y - 0.29F) - 0.03F, std::fabs(rail.z) - 0.045F),
                           std::max(std::fabs(rail.y - 0.24F) - 0.04F, std::fabs(rail.z) - 0.015F),
                           std::max(std::fabs(rail.y - 0.22F) - 0.012F, std::fabs(rail.z) - 0.08F)}),
                 Rail);
    }

    static void boiler(Vec3 p, Hit &hit) {
        const Vec3 q = p - Vec3{0, BoilerHeight, 0};
        hit.join(rodX(q - Vec3{1.05F, 0, 0}, 0.78F, 2.35F, 0.02F), Green);
        for (const float x : {-0.6F, 0.55F, 1.7F, 2.85F}) {
            hit.join(rodX(q - Vec3{x, 0, 0}, 0.8F, 0.05F, 0.01F), Brass);
        }
        const Vec3 front = q - Vec3{3.95F, 0, 0};
        float black = rodX(front, 0.82F, 0.62F, 0.03F);
        black = std::min(black, rodX(front - Vec3{0.63F, 0, 0}, 0.62F, 0.05F, 0.04F));
        const Vec3 rivet = slices({q.y, q.z, 0}, 18);
        black = std::min(black, length({rivet.x - 0.74F, rivet.y, front.x - 0.62F}) - 0.03F);
        const Vec3 chimney = p - Vec3{4.0F, 3.05F, 0};
        black = std::min(black, cone(chimney, 0.27F, 0.33F, 0.75F));
        black = blend(black, rodY(chimney - Vec3{0, 0.02F, 0}, 0.42F, 0.06F, 0.05F), 0.2F);
        black = std::max(black, -rodY(chimney - Vec3{0, 0.7F, 0}, 0.22F, 0.3F));
        hit.join(black, Black);
        float brass = rodY(chimney - Vec3{0, 0.74F, 0}, 0.38F, 0.06F, 0.05F);
        brass = std::max(brass, -rodY(chimney - Vec3{0, 0.7F, 0}, 0.22F, 0.3F));
        const Vec3 dome = p - Vec3{1.55F, 3.05F, 0};
        brass = std::min(brass, blend(ellipsoid(dome - Vec3{0, 0.25F, 0}, {0.4F, 0.42F, 0.4F}),
                                      rodY(dome - Vec3{0, 0.03F, 0}, 0.5F, 0.05F, 0.04F), 0.2F));
        brass = std::min(brass, cone(p - Vec3{-0.15F, 3.0F, 0}, 0.2F, 0.14F, 0.5F));
        brass = std::min(brass, stick(p, {0.65F, 3.15F, 0.0F}, {0.65F, 3.42F, 0}, 0.06F, 0.05F));
        // Handle in the smokebox door, and the handrail along the boiler.
        const Vec3 door = front - Vec3{0.72F, 0, 0};
        brass = std::min({brass, sphere(door, 0.09F), stick(door, {0.02F, 0, 0}, {0.04F, -0.22F, 0.1F}, 0.025F)});
        brass =
            std::min(brass, stick(Vec3{p.x, p.y, std::fabs(p.z)}, {-1.2F, 2.62F, 0.84F}, {4.3F, 2.62F, 0.88F}, 0.025F));
        hit.join(brass, Brass);
        // Lamp over the buffer beam.
        const Vec3 lamp = p - Vec3{4.72F, 3.2F, 0};
        hit.join(
            std::min(box(lamp, {0.13F, 0.17F, 0.15F}, 0.03F), box(lamp - Vec3{-0.1F, -0.26F, 0}, {0.14F, 0.1F, 0.06F})),
            Black);
        hit.join(rodX(lamp - Vec3{0.13F, 0.02F, 0}, 0.1F, 0.03F, 0.02F), Steel);
    }

    static void cabAndTender(Vec3 p, Hit &hit) {
        const Vec3 cab = p - Vec3{-2.35F, 2.45F, 0};
        float wall = box(cab, {1.1F, 1.0F, 1.12F}, 0.04F);
        wall = std::max(wall, -box(cab - Vec3{-0.3F, 0.1F, 0}, {1.2F, 0.98F, 1.05F}));
        const float window = box(cab - Vec3{-0.05F, 0.45F, 0}, {0.5F, 0.33F, 1.4F}, 0.08F);
        const float frontWindow = length(cab.y - 0.62F, std::fabs(p.z) - 0.78F) - 0.2F;
        wall = std::max({wall, -window, cab.x > 0.8F ? -frontWindow : -1.0F});
        hit.join(wall, Green);
        hit.join(std::max(std::fabs(window) - 0.035F, std::fabs(std::fabs(p.z) - 1.12F) - 0.03F), Brass);
        hit.join(std::max(box(cab, {1.08F, 0.95F, 1.0F}), std::fabs(cab.x - 1.0F) - 0.02F), Glass);
        // Roof: a shallow vault.
        const Vec3 roof = cab - Vec3{-0.1F, -0.55F, 0};
        hit.join(std::max({std::fabs(length(roof.y, roof.z) - 1.92F) - 0.05F, std::fabs(roof.x) - 1.35F, 1.5F - roof.y,
                           std::fabs(p.z) - 1.25F}),
                 Black);
        const Vec3 tender = p - Vec3{-6.2F, 2.0F, 0};
        hit.join(box(tender, {2.35F, 0.62F, 1.15F}, 0.05F), Green);
        hit.join(box(tender - Vec3{0, -0.72F, 0}, {2.5F, 0.12F, 1.2F}, 0.02F), Black);
        if (tender.y > 0.2F) {
            const float lumps = cells(p.x * 3.4F, p.z * 3.4F).distance;
            const float heap =
                tender.y - 0.6F - 0.45F * (1 - 0.2F * tender.x * tender.x) * (1 - p.z * p.z) + 0.22F * lumps;
            hit.join(std::max(heap * 0.6F, box(tender, {2.2F, 1.5F, 1.05F})), Coal);
        }
    }

    static void frontAndFrame(Vec3 p, Hit &hit) {
        const Vec3 half{p.x, p.y, std::fabs(p.z)};
        float black = box(p - Vec3{0.75F, 1.5F, 0}, {4.1F, 0.05F, 1.2F}, 0.01F);
        black = std::min(black, box(p - Vec3{0.6F, 1.17F, 0}, {4.0F, 0.37F, 0.5F}, 0.02F));
        // Cylinders, and splashers over the driving wheels.
        black = std::min(black, rodX(half - Vec3{3.55F, 0.95F, 1.0F}, 0.34F, 0.5F, 0.04F));
        hit.join(black, Black);
        for (const float x : {-1.55F, 0.25F, 2.05F}) {
            const Vec3 splasher = half - Vec3{x, 1.02F, 1.0F};
            hit.join(std::max(rodZ(splasher, 0.86F, 0.14F, 0.03F), 0.5F - splasher.y), Green);
            hit.join(std::max(std::max(std::fabs(length(splasher.x, splasher.y) - 0.86F) - 0.025F,
                                       std::fabs(splasher.z - 0.13F) - 0.03F),
                              0.5F - splasher.y),
                     Brass);
        }
        float red = box(p - Vec3{4.85F, 1.2F, 0}, {0.08F, 0.3F, 1.25F}, 0.03F);
        const Vec3 buffer = half - Vec3{5.05F, 1.2F, 0.85F};
        hit.join(red, Red);
        hit.join(std::min(rodX(buffer, 0.11F, 0.2F, 0.02F), rodX(buffer - Vec3{0.26F, 0, 0}, 0.25F, 0.04F, 0.03F)),
                 Steel);
        hit.join(std::min(ringZ({p.y - 1.05F, p.x - 5.02F, p.z}, 0.11F, 0.035F),
                          ringZ({p.z, p.y - 0.86F, p.x - 5.05F}, 0.1F, 0.03F)),
                 Steel);
    }

    /// A red wheel, z pointing inwards, with a tyre of bright steel.
    static void wheel(Vec3 p, float radius, int spokes, Hit &hit) {
        const float r = length(p.x, p.y);
        const float rim = std::max(std::fabs(r - radius + 0.1F) - 0.045F, std::fabs(p.z) - 0.075F);
        const float tread = std::max(std::fabs(r - radius + 0.03F) - 0.03F, std::fabs(p.z) - 0.085F);
        const float flange = std::max({r - radius - 0.05F, std::fabs(p.z - 0.08F) - 0.02F, radius - 0.1F - r});
        const Vec3 s = slices(p, spokes);
        const float spoke = std::max({std::fabs(s.y) - 0.035F, std::fabs(s.z) - 0.04F, r - radius + 0.05F});
        hit.join(std::min({rim, spoke, std::max(r - radius * 0.2F, std::fabs(p.z) - 0.12F)}), Red);
        hit.join(std::min(tread, flange), Tyre);
    }

    static void wheels(Vec3 p, Hit &hit) {
        if (p.y > 1.9F) {
            return;
        }
        const bool far = p.z > 0;
        const Vec3 half{p.x, p.y, far ? 0.78F - p.z : p.z + 0.78F};
        const Vec3 crank{0.22F, -0.26F, 0};
        for (const float x : {-1.55F, 0.25F, 2.05F}) {
            const Vec3 q = half - Vec3{x, 1.02F, 0};
            wheel(turnZ(q, 0.1F), 0.72F, 12, hit);
            // The web that carries the crank pin.
            hit.join(std::max(stick({q.x, q.y, 0}, {0, 0, 0}, crank, 0.15F, 0.12F), std::fabs(q.z + 0.03F) - 0.08F),
                     Red);
        }
        for (const float x : {3.3F, 4.25F}) {
            wheel(half - Vec3{x, 0.72F, 0}, 0.42F, 9, hit);
        }
        for (const float x : {-4.7F, -6.2F, -7.7F}) {
            wheel(half - Vec3{x, 0.82F, 0}, 0.52F, 10, hit);
        }
        // Coupling rods join the crank pins, the connecting rod runs from the middle one to the crosshead, which slides
        // between two bars behind the cylinder.
        const Vec3 side{p.x, p.y, far ? 0.96F - p.z : p.z + 0.96F};
        const Vec3 rod = side - Vec3{0.25F, 1.02F, 0} - crank;
        float steel = std::max(box(rod, {1.8F, 0.075F, 0.035F}, 0.012F),
                               -box({std::fabs(rod.x) - 0.9F, rod.y, rod.z + 0.045F}, {0.66F, 0.032F, 0.03F}, 0.01F));
        for (const float x : {-1.55F, 0.25F, 2.05F}) {
            const Vec3 pin = side - Vec3{x, 1.02F, -0.02F} - crank;
            steel = std::min({steel, rodZ(pin, 0.13F, 0.055F, 0.02F), rodZ(pin, 0.055F, 0.16F, 0.01F)});
        }
        const Vec3 outer = side + Vec3{0, 0, 0.1F};
        const Vec3 big = Vec3{0.25F, 1.02F, 0} + crank;
        const Vec3 head{2.62F, 0.95F, 0};
        steel = std::min(
            {steel, std::max(stick({outer.x, outer.y, 0}, big, head, 0.1F, 0.065F), std::fabs(outer.z) - 0.035F),
             rodZ(outer - big, 0.15F, 0.05F, 0.02F), rodZ(outer - big, 0.06F, 0.1F, 0.01F),
             box(outer - head, {0.14F, 0.13F, 0.075F}, 0.02F), rodZ(outer - head, 0.06F, 0.1F, 0.01F),
             rodX(outer - Vec3{3.0F, 0.95F, 0}, 0.045F, 0.4F),
             box({outer.x - 2.7F, std::fabs(outer.y - 0.95F) - 0.17F, outer.z}, {0.5F, 0.035F, 0.06F}, 0.01F)});
        hit.join(steel, Steel);
        // The bracket that holds the bars.
        hit.join(box(outer - Vec3{2.25F, 1.28F, 0.05F}, {0.05F, 0.2F, 0.1F}, 0.01F), Black);
    }

    /// Steam from the chimney, thinning as it drifts back along the train.
    Vec3 steam(Vec3 light, Vec3 from, Vec3 d, float distance) const {
        // The box that holds the cloud.
        constexpr Vec3 low{-24, 3.7F, -3.8F};
        constexpr Vec3 high{5.2F, 13, 4.2F};
        float enter = 0;
        float leave = distance;
        const auto clip = [&](float at, float way, float from0, float to) {
            const float a = (from0 - at) / way;
            const float b = (to - at) / way;
            enter = std::max(enter, std::min(a, b));
            leave = std::min(leave, std::max(a, b));
        };
        clip(from.x, d.x, low.x, high.x);
        clip(from.y, d.y, low.y, high.y);
        clip(from.z, d.z, low.z, high.z);
        // Every ray begins at another part of a step: no steps are seen.
        constexpr float Step = 0.11F;
        float t = enter + Step * hash(static_cast<int>(d.x * 2e5F), static_cast<int>(d.y * 2e5F));
        float clear = 1;
        Vec3 cloud;
        while (t < leave && clear > 0.02F) {
            const Vec3 p = from + d * t;
            const float off = steamOff(p);
            if (off > 1.8F) { // outside: a longer step
                t += Step * std::min(2.5F, 1 + 2 * (off - 1.8F));
                continue;
            }
            const float thick = steamAt(p, off, 5);
            if (thick > 0.01F) {
                const Vec3 q = p + sunDirection * 0.35F;
                const Vec3 r = p + sunDirection * 0.9F;
                const float sunwards = 0.6F * steamAt(q, steamOff(q), 4) + 0.5F * steamAt(r, steamOff(r), 3);
                const float passed = std::exp(-thick * Step * 7);
                const Vec3 lit = mix(colour(0xFFF8EA) * 1.05F, colour(0x8593B4) * 0.8F, clamp01(1.1F * sunwards));
                cloud += lit * (clear * (1 - passed));
                clear *= passed;
            }
            t += Step;
        }
        return light * clear + cloud;
    }

    /// How far from the middle of the plume, as a share of its radius there.
    static float steamOff(Vec3 p) {
        const float back = 4.0F - p.x;
        const float along = std::max(back, 0.0F);
        const float rise = 3.8F + 1.75F * (1 - std::exp(-along * 0.8F)) + 0.2F * along;
        const float radius = 0.27F + 0.62F * (1 - std::exp(-along * 0.6F)) + 0.075F * along;
        return length({std::min(back, 0.0F), p.y - rise, p.z - 0.05F * along}) / radius;
    }

    /// How thick the steam is: round billows, smaller ones upon larger ones, that thin out with the way from the
    /// chimney.
    static float steamAt(Vec3 p, float off, int octaves) {
        if (off > 1.8F || p.y < 3.7F) {
            return 0;
        }
        const float along = std::max(4.0F - p.x, 0.0F);
        Vec3 q = p * (1.5F / (1 + 0.04F * along));
        float billows = 0;
        float weight = 0.55F;
        for (int i = 0; i < octaves; ++i) {
            billows += weight * std::fabs(2 * noise(q) - 1);
            q = Vec3{0.8F * q.x + 0.6F * q.y, 0.8F * q.y - 0.6F * q.x, q.z} * 2.03F + Vec3{3.1F, 7.7F, 1.9F};
            weight *= 0.5F;
        }
        return clamp01((0.72F - off + 1.15F * billows) * 3.2F) * std::exp(-along * 0.1F);
    }
};

} // namespace

std::unique_ptr<Scene> locomotive() {
    return std::make_unique<Locomotive>();
}

} // namespace lumora::samples
