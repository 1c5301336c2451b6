// A steam locomotive on a summer day, seen from the meadow beside the line.
#include "Scenes.h"

#include "Noise.h"
#include "Plants.h"
#include "Shapes.h"
#include "Skies.h"

namespace lumora::samples {

namespace {

enum Material { Ground, Rail, Sleeper, Green, Black, Brass, Red, Steel, Glass, Coal };

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
        steps = 200;
        shadowReach = 9;
        shadowSoftness = 20;
        creviceSize = 0.35F;
        ceiling = 9.5F;
        exposure = 0.9F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        const float ground = groundHeight(p);
        hit.join((p.y - ground) * (p.z > 8 ? 0.55F : 0.85F), Ground);
        if (std::fabs(p.z) < 2.2F && p.y < 0.6F) {
            track(p, hit);
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
            return {.colour = paint * mix(0.8F, 1.1F, dirt), .shine = 1.2F, .sharpness = 120, .mirror = 0.06F};
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
            return {.colour = colour(0xA9ADB6) * 0.6F, .shine = 1.4F, .sharpness = 50, .mirror = 0.35F};
        case Glass:
            return {.colour = colour(0x1A2530), .shine = 1, .sharpness = 200, .mirror = 0.35F};
        case Coal:
            return {.colour = colour(0x17161A), .shine = 0.5F, .sharpness = 20};
        default:
            return {.colour = mix(colour(0x1B1B1F), colour(0x2C2A2B), dirt),
                    .shine = 0.6F,
                    .sharpness = 45,
                    .mirror = 0.04F};
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
        return material == Ground && p.z < 12 ? 0.02F * fbm(p.x * 16, p.z * 16, 3) : 0;
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        light =
            haze(light, *this, d, distance < farthest - 1 ? distance : 6.0F, 120, colour(0xB9D6F2), colour(0xFFE9C9));
        return steam(light, from, d, distance);
    }

  private:
    static float groundHeight(Vec3 p) {
        const float side = std::fabs(p.z);
        const float bank = 0.12F * smoothStep(2.6F, 1.5F, side);
        if (side < 1.9F) {
            const float stones = cells(p.x * 6, p.z * 6).distance;
            return bank + (p.y < 0.5F ? 0.05F * (1 - stones) : 0.05F);
        }
        float height = bank + 0.18F * (fbm(p.x * 0.5F, p.z * 0.5F, 3) - 0.5F) * smoothStep(1.9F, 3, side);
        if (p.z < 6) {
            if (p.y < 0.6F) {
                height += smoothStep(1.9F, 2.5F, side) * (0.06F + 0.16F * noise(p.x, p.z)) * blades(p.x, p.z, 30);
            }
            return height;
        }
        height += smoothStep(14, 75, p.z) * (11 * fbm(p.x * 0.025F + 3.3F, p.z * 0.02F, 3) - 2.6F);
        // Round tree tops: hedgerows and copses.
        const float wood =
            smoothStep(0.5F, 0.6F,
                       fbm(p.x * 0.07F + 5, p.z * 0.1F, 3) + 0.12F * smoothStep(30, 45, p.z) - smoothStep(20, 14, p.z));
        if (wood > 0) {
            const Cell tree = cells(p.x * 0.55F, p.z * 0.55F);
            const float dome = std::max(0.0F, 1 - tree.distance * tree.distance * 3.2F);
            const float leaves = p.y < height + 4 ? 0.45F * fbm(Vec3{p.x * 2.2F, p.y * 2.2F, p.z * 2.2F}, 3) : 0.3F;
            height += wood * std::sqrt(dome) * (1.5F + 1.4F * tree.id + leaves);
        }
        return height;
    }

    static Surface ground(Vec3 p, Vec3 n) {
        if (std::fabs(p.z) < 2.0F + 0.3F * noise(p.x * 3, p.z)) {
            const float stone = cells(p.x * 6, p.z * 6).id;
            return {.colour = mix(colour(0x6E655C), colour(0xB1A797), stone)};
        }
        const float big = fbm(p.x * 0.12F, p.z * 0.12F, 4);
        Vec3 grass = mix(colour(0x33661A), colour(0x7E9A34), smoothStep(0.3F, 0.65F, big));
        grass = grass * (0.45F + 0.9F * noise(p.x * 9, p.z * 9));
        const Cell flower = cells(p.x * 3.2F, p.z * 3.2F);
        if (p.z < 8 && flower.id > 0.5F && flower.distance < 0.16F && fbm(p.x * 0.4F, p.z * 0.4F, 2) > 0.33F) {
            const Vec3 petals[] = {colour(0xE8261B), colour(0xF3401F), colour(0xFFFFFF), colour(0x6A7BFF),
                                   colour(0xFFD02E)};
            grass = petals[static_cast<int>(flower.id * 91) % 5];
        }
        if (p.z > 14) {
            // Fields in strips, and the darker woods on them.
            const float field = cells(p.x * 0.06F + 0.3F * noise(p.x * 0.02F, p.z * 0.02F), p.z * 0.045F, 0.9F).id;
            const Vec3 fields[] = {colour(0x6F9E32), colour(0xC9B44A), colour(0x88AE3F), colour(0xE0C95A),
                                   colour(0x4F8430)};
            grass = fields[static_cast<int>(field * 89) % 5] * (0.8F + 0.3F * noise(p.x * 2, p.z * 0.6F));
        }
        const float wood =
            smoothStep(0.5F, 0.56F,
                       fbm(p.x * 0.07F + 5, p.z * 0.1F, 3) + 0.12F * smoothStep(30, 45, p.z) - smoothStep(20, 14, p.z));
        const float leaf = noise(p * 3);
        return {.colour = mix(grass, mix(colour(0x1E4A1C), colour(0x5C8A2C), leaf * smoothStep(-0.2F, 1, n.y)),
                              p.z > 7 ? wood : 0.0F),
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
        black = std::min(black, box(p - Vec3{0.6F, 1.1F, 0}, {4.0F, 0.3F, 0.5F}, 0.02F));
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

    static float wheel(Vec3 p, float radius, int spokes) {
        const float r = length(p.x, p.y);
        const float rim = std::max(std::fabs(r - radius + 0.07F) - 0.07F, std::fabs(p.z) - 0.08F);
        const float flange = std::max(r - radius - 0.05F, std::fabs(p.z - 0.08F) - 0.02F);
        const float outer = std::max(flange, radius - 0.1F - r);
        const Vec3 s = slices(p, spokes);
        const float spoke = std::max({std::fabs(s.y) - 0.035F, std::fabs(s.z) - 0.04F, r - radius + 0.05F});
        return std::min({rim, outer, spoke, std::max(r - radius * 0.2F, std::fabs(p.z) - 0.12F)});
    }

    static void wheels(Vec3 p, Hit &hit) {
        if (p.y > 1.9F) {
            return;
        }
        const bool far = p.z > 0;
        const Vec3 half{p.x, p.y, far ? 0.78F - p.z : p.z + 0.78F};
        float red = 10;
        for (const float x : {-1.55F, 0.25F, 2.05F}) {
            red = std::min(red, wheel(turnZ(half - Vec3{x, 1.02F, 0}, 0.1F), 0.72F, 12));
        }
        for (const float x : {3.3F, 4.25F}) {
            red = std::min(red, wheel(half - Vec3{x, 0.72F, 0}, 0.42F, 9));
        }
        for (const float x : {-4.7F, -6.2F, -7.7F}) {
            red = std::min(red, wheel(half - Vec3{x, 0.82F, 0}, 0.52F, 10));
        }
        hit.join(red, Red);
        // Coupling rods join the cranks, the connecting rod runs to the cylinder.
        const Vec3 side{p.x, p.y, far ? 1.02F - p.z : p.z + 1.02F};
        const Vec3 crank{0.22F, -0.26F, 0};
        float steel = box(side - Vec3{0.25F, 1.02F, 0} - crank, {1.95F, 0.06F, 0.03F}, 0.01F);
        for (const float x : {-1.55F, 0.25F, 2.05F}) {
            steel = std::min(steel, rodZ(side - Vec3{x, 1.02F, 0} - crank, 0.12F, 0.06F, 0.02F));
        }
        const Vec3 outer = side + Vec3{0, 0, 0.08F};
        steel = std::min({steel, stick(outer, Vec3{0.25F, 1.02F, 0} + crank, {2.6F, 0.95F, 0}, 0.055F),
                          rodX(side - Vec3{2.95F, 0.95F, 0}, 0.04F, 0.5F)});
        hit.join(steel, Steel);
    }

    /// Steam from the chimney, thinning as it drifts back along the train.
    Vec3 steam(Vec3 light, Vec3 from, Vec3 d, float distance) const {
        constexpr int Steps = 34;
        // The cloud lives in the slab around the track, above the boiler.
        const float a = (-2.0F - from.z) / d.z;
        const float b = (2.6F - from.z) / d.z;
        const float enter = std::max(std::min(a, b), 0.0F);
        const float leave = std::min(std::max(a, b), distance);
        const Vec3 in = from + d * enter;
        const Vec3 out = from + d * leave;
        if (leave <= enter || std::max(in.y, out.y) < 3.6F || std::min(in.x, out.x) > 4.8F) {
            return light;
        }
        const float step = (leave - enter) / Steps;
        float clear = 1;
        Vec3 cloud;
        for (int i = 0; i < Steps && clear > 0.03F; ++i) {
            const Vec3 p = from + d * (enter + step * (static_cast<float>(i) + 0.5F));
            const float thick = steamAt(p);
            if (thick > 0.01F) {
                const float sunwards = steamAt(p + sunDirection * 0.45F);
                const float passed = std::exp(-thick * step * 4.5F);
                const Vec3 lit = mix(colour(0xFFF8EC) * 1.35F, colour(0x9FA9BF), clamp01(0.85F * sunwards));
                cloud += lit * (clear * (1 - passed));
                clear *= passed;
            }
        }
        return light * clear + cloud;
    }

    static float steamAt(Vec3 p) {
        const float back = 4.0F - p.x;
        if (back < -0.9F) {
            return 0;
        }
        const float along = std::max(back, 0.0F);
        const float rise = 3.85F + 1.55F * (1 - std::exp(-along * 0.85F)) + 0.16F * along;
        const float radius = 0.26F + 0.75F * (1 - std::exp(-along * 0.55F)) + 0.07F * along;
        const float off = length({std::min(back, 0.0F), p.y - rise, p.z - 0.05F * along}) / radius;
        if (off > 1.35F || p.y < 3.7F) {
            return 0;
        }
        const float puffs = fbm(Vec3{p.x * 1.5F, p.y * 1.7F, p.z * 1.2F}, 3);
        return clamp01((1.15F - off + 2.7F * (puffs - 0.47F)) * 1.6F) * std::exp(-along * 0.09F);
    }
};

} // namespace

std::unique_ptr<Scene> locomotive() {
    return std::make_unique<Locomotive>();
}

} // namespace lumora::samples
