// A blue tractor with a load of straw in a wheat field, late in the afternoon of a harvest day.
#include "Scenes.h"

#include "Machinery.h"
#include "Plants.h"

#include <array>

namespace lumora::samples {

namespace {

enum Material { Ground, Wheat, Bale, Barn, Roof, Blue, White, Dark, Steel, Shiny, Tyre, Plank, Lamp, Red, Leaves };

constexpr float BackAxle = -0.95F;
constexpr float BackRadius = 0.86F;
constexpr float FrontAxle = 1.32F;
constexpr float FrontRadius = 0.46F;

constexpr Heap Heaps[] = {{-0.42F, 0.22F, 0.2F, 0.08F}, {0.12F, 0.17F, 0.15F, 0.05F}, {0.48F, 0.27F, 0.22F, 0.1F},
                          {-0.1F, 0.1F, 0.12F, 0.025F}, {0.36F, 0.1F, 0.13F, 0.03F},  {-0.6F, 0.1F, 0.13F, 0.03F}};

/// Side view of the bonnet.
constexpr std::array<Corner, 8> Bonnet{{{-0.2F, 0.98F},
                                        {-0.2F, 1.5F},
                                        {0.9F, 1.5F},
                                        {1.72F, 1.43F},
                                        {1.9F, 1.33F},
                                        {1.93F, 0.8F},
                                        {1.62F, 0.76F},
                                        {0.1F, 0.98F}}};

class Tractor : public Scene {
  public:
    Tractor() {
        camera = {{-1.5F, 1.25F, -6.4F}, {0.62F, 1.42F, 0}, 1.72F};
        sunDirection = normalise({-0.42F, 0.42F, -0.72F});
        sunColour = {3.6F, 2.75F, 1.75F};
        skyLight = {0.42F, 0.5F, 0.72F};
        groundLight = {0.3F, 0.22F, 0.1F};
        farthest = 260;
        caution = 0.8F;
        steps = 240;
        shadowReach = 9;
        shadowSoftness = 20;
        creviceSize = 0.3F;
        ceiling = 30;
        exposure = 0.86F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join((p.y - groundHeight(p)) * (p.z > 9 ? 0.6F : 0.8F), Ground);
        if (p.z < -2.4F && p.y < 1.4F) {
            hit.join(ears(p), Wheat);
        }
        bales(p, hit);
        if (p.z > 40) {
            farm(p - Vec3{-12.5F, 4.2F, 60}, hit);
        }
        const Vec3 q = toTractor(p);
        const float near = box(q - Vec3{-1.9F, 1.2F, 0}, {4.2F, 1.5F, 1.3F});
        if (near > 0.5F) {
            hit.join(near, Blue);
            return hit;
        }
        body(q, hit);
        seat(q, hit);
        machinery(q, hit);
        wheels(q, hit);
        trailer(q, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        const Vec3 q = toTractor(p);
        const float rough = fbm(p * 4, 4);
        switch (material) {
        case Wheat: {
            const int i = static_cast<int>(std::round(p.x / 0.1F));
            const int k = static_cast<int>(std::round(p.z / 0.1F));
            const float y = p.y - 0.68F - 0.2F * hash(i, k, 2);
            if (hash(i, k, 3) > 0.93F) {
                const float middle = length(repeat(p.x, 0.1F) + 0.03F * (hash(i, k, 1) - 0.5F), repeat(p.z, 0.1F));
                return {.colour = y < -0.035F       ? colour(0x5C7F34)
                                  : middle < 0.014F ? colour(0x20181C)
                                                    : colour(0xE4200F),
                        .sheer = 0.5F};
            }
            return wheatLook(p);
        }
        case Bale:
            return straw(p, rough);
        case Barn: {
            const float board = fraction(p.x * 1.6F + p.z * 1.6F);
            return {.colour = mix(colour(0x8E1F16), colour(0xB5382A), rough) * (board < 0.1F ? 0.6F : 1.0F)};
        }
        case Roof:
            return {.colour = mix(colour(0x5C5F66), colour(0x8B8D92), rough), .shine = 0.3F};
        case Leaves:
            return {.colour = mix(colour(0x2C5420), colour(0x6B8C30), noise(p * 2)), .sheer = 0.1F};
        case Blue: {
            Surface look = lacquer(colour(0x0B4FB5), q);
            // Dust and splashes low down; a white stripe along the bonnet, a seam, louvres.
            if (q.x > -0.15F && q.x < 1.7F && std::fabs(q.y - 1.33F + 0.02F * q.x) < 0.045F && std::fabs(q.z) > 0.3F) {
                look.colour = colour(0xFFF6E2);
            }
            const bool louvre =
                q.x > 0.15F && q.x < 0.75F && std::fabs(q.y - 1.14F) < 0.09F && fraction(q.x * 13) < 0.42F;
            if (louvre || std::fabs(q.x - 1.55F) < 0.008F) {
                look.colour = look.colour * 0.2F;
            }
            look.colour =
                mix(look.colour, colour(0xA58A5C), 0.6F * smoothStep(0.55F, 0.95F, fbm(q * 7, 4) + 0.6F * (1 - q.y)));
            return look;
        }
        case White: {
            Surface look = lacquer(colour(0xF3EBD8), q);
            look.mirror = n.y < -0.3F ? 0.0F : look.mirror;
            look.colour = mix(look.colour, colour(0xA58A5C),
                              0.75F * smoothStep(0.42F, 0.8F, fbm(q * 6, 4) + 0.3F * (0.9F - q.y)));
            return look;
        }
        case Steel:
            return steel(q);
        case Shiny:
            return chrome();
        case Red:
            return lacquer(colour(0xC8201A), q);
        case Tyre:
            return rubber(q, colour(0x8A7350), 0.24F);
        case Plank: {
            const float board = fraction(q.y * 5.5F);
            return {.colour = mix(colour(0x6B4526), colour(0xB08050), fbm(Vec3{q.x * 2, q.y * 18, q.z * 2}, 4)) *
                              (board < 0.07F ? 0.35F : 1.0F),
                    .shine = 0.1F};
        }
        case Lamp:
            return {.colour = colour(0xFFF3D0),
                    .shine = 2,
                    .sharpness = 90,
                    .mirror = 0.25F,
                    .glow = colour(0xFFE7A8) * 0.25F};
        case Dark:
            return {.colour = mix(colour(0x232427), colour(0x4A4238), rough * 0.8F), .shine = 0.5F, .sharpness = 35};
        default:
            return ground(p, n);
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.7F);
        Vec3 light = mix(mix(colour(0xFFE9C4), colour(0x9CCBEE), smoothStep(0, 0.3F, up)), colour(0x2F74C4),
                         smoothStep(0.2F, 1, up));
        light = cumulus(light, d, Heaps, colour(0xFFF3DC) * 1.35F, colour(0xB0AFC6));
        return light;
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Ground:
            return p.z < 14 ? 0.03F * fbm(p.x * 22, p.z * 22, 3) : 0.35F * fbm(p * 1.8F, 3) * smoothStep(24, 30, p.z);
        case Bale:
            return 0.02F * fbm(p * 20, 3);
        case Plank:
            return 0.004F * noise(p * 30);
        default:
            return 0;
        }
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return haze(light, *this, d, distance < farthest - 1 ? distance : 8.0F, 170, colour(0xD9D2C8),
                    colour(0xFFE2AC));
    }

  private:
    static Vec3 toTractor(Vec3 p) { return turnY(p, -2.5F); }

    // ---- the tractor; forward along +x, its wheels stand on y = 0

    static void body(Vec3 p, Hit &hit) {
        const float side = outline(p.x, p.y, Bonnet);
        hit.join(plate(side, p.z, 0.35F + 0.03F * smoothStep(1.8F, 0.4F, p.x), 0.09F) * 0.95F, Blue);
        // Grille in a white frame, headlamps beside it.
        const Vec3 nose = p - Vec3{1.93F, 1.05F, 0};
        hit.join(plate(std::fabs(box({nose.y, nose.z, 0}, {0.22F, 0.24F, 1}, 0.06F)) - 0.025F, nose.x, 0.05F, 0.02F),
                 White);
        hit.join(box(nose, {0.02F, 0.2F, 0.22F}), Dark);
        hit.join(std::max(box(nose, {0.035F, 0.2F, 0.22F}), std::fabs(repeat(nose.y, 0.07F)) - 0.012F), Shiny);
        const Vec3 lamp = bothSides(p) - Vec3{1.72F, 1.18F, 0.46F};
        hit.join(std::max(ellipsoid(lamp, {0.17F, 0.115F, 0.115F}), lamp.x - 0.07F), Blue);
        hit.join(length(length(lamp.y, lamp.z) - 0.1F, lamp.x - 0.07F) - 0.018F, Shiny);
        hit.join(std::max(ellipsoid(lamp - Vec3{0.05F, 0, 0}, {0.055F, 0.095F, 0.095F}), -lamp.x), Lamp);
        hit.join(stick(bothSides(p), {1.7F, 1.12F, 0.3F}, {1.7F, 1.16F, 0.44F}, 0.025F), Dark);
        // Mudguards: a bent sheet over each back wheel and a wall inside it.
        const Vec3 guard = bothSides(p) - Vec3{BackAxle, BackRadius, 0.83F};
        const float r = length(guard.x, guard.y);
        const float cut = std::max(-0.02F - guard.y + 0.75F * guard.x, 0.1F - guard.y - 0.55F * guard.x);
        const float sheet = std::max({std::fabs(r - 1.0F) - 0.022F, std::fabs(guard.z) - 0.31F, cut});
        const float wall = std::max({r - 1.0F, std::fabs(guard.z + 0.3F) - 0.02F, cut});
        const float rim = std::max(length(r - 1.0F, guard.z - 0.31F) - 0.028F, cut);
        hit.join(std::min({sheet, wall, rim}), Blue);
        const Vec3 back = bothSides(p) - Vec3{BackAxle + 0.1F, 1.94F, 0.85F};
        hit.join(box(back, {0.09F, 0.06F, 0.06F}, 0.02F), Dark);
        hit.join(rodX(back - Vec3{0.08F, 0.005F, 0}, 0.045F, 0.02F, 0.01F), Lamp);
        // Sun roof on four posts.
        const Vec3 roof = p - Vec3{-0.78F, 2.56F, 0};
        hit.join(box(roof - Vec3{0, -0.05F * (roof.x * roof.x + roof.z * roof.z), 0}, {0.78F, 0.055F, 0.68F}, 0.05F),
                 White);
        const Vec3 half = bothSides(p);
        hit.join(std::min(stick(half, {-1.35F, 1.3F, 0.5F}, {-1.35F, 2.5F, 0.55F}, 0.035F),
                          stick(half, {-0.2F, 1.5F, 0.33F}, {-0.2F, 2.5F, 0.55F}, 0.03F)),
                 Dark);
    }

    static void seat(Vec3 p, Hit &hit) {
        const Vec3 q = p - Vec3{-0.98F, 1.28F, 0};
        if (length(q) > 1.4F) {
            return;
        }
        hit.join(box(q, {0.23F, 0.06F, 0.25F}, 0.05F), Dark);
        hit.join(box(turnZ(q - Vec3{-0.24F, 0.25F, 0}, 0.2F), {0.06F, 0.24F, 0.24F}, 0.05F), Dark);
        hit.join(rodY(q - Vec3{0, -0.25F, 0}, 0.06F, 0.22F), Steel);
        const Vec3 wheel = turnZ(p - Vec3{-0.45F, 1.66F, 0}, 0.6F);
        hit.join(std::min(ringZ({wheel.x, wheel.z, wheel.y}, 0.2F, 0.02F),
                          std::max(std::fabs(wheel.y) - 0.012F,
                                   std::max(length(wheel.x, wheel.z) - 0.2F,
                                            std::fabs(slices({wheel.x, wheel.z, 0}, 3).y) - 0.015F))),
                 Dark);
        hit.join(stick(p, {-0.45F, 1.66F, 0}, {-0.15F, 1.25F, 0}, 0.025F), Steel);
        hit.join(stick(p, {-0.55F, 0.95F, 0.2F}, {-0.62F, 1.35F, 0.22F}, 0.015F), Steel);
        hit.join(sphere(p - Vec3{-0.62F, 1.37F, 0.22F}, 0.035F), Red);
    }

    static void machinery(Vec3 p, Hit &hit) {
        const Vec3 half = bothSides(p);
        float dark = box(p - Vec3{0.75F, 0.8F, 0}, {0.72F, 0.24F, 0.2F}, 0.03F);
        dark = std::min(dark, box(p - Vec3{-0.5F, 0.78F, 0}, {0.65F, 0.24F, 0.27F}, 0.06F));
        dark = std::min(dark, rodZ(p - Vec3{BackAxle, BackRadius, 0}, 0.17F, 0.75F));
        dark = std::min(dark, box(half - Vec3{-0.5F, 0.6F, 0.5F}, {0.3F, 0.025F, 0.2F}, 0.01F));
        dark = std::min(dark, box(half - Vec3{-0.25F, 0.38F, 0.62F}, {0.13F, 0.015F, 0.1F}));
        dark = std::min(dark, stick(half, {-0.3F, 0.38F, 0.55F}, {-0.3F, 0.6F, 0.55F}, 0.018F));
        // Front axle, its pivot and the frame to the nose.
        dark = std::min({dark, box(p - Vec3{FrontAxle, 0.5F, 0}, {0.09F, 0.08F, 0.55F}, 0.02F),
                         box(p - Vec3{1.55F, 0.68F, 0}, {0.38F, 0.1F, 0.24F}, 0.02F)});
        hit.join(dark, Dark);
        float metal = bolts(Vec3{p.x - 0.75F, p.y - 0.8F, half.z - 0.2F} + Vec3{0, 0, 0}, 10, 0.17F, 0.022F);
        metal = std::min(metal, rodY(half - Vec3{0.35F, 0.83F, 0.27F}, 0.065F, 0.12F, 0.02F));
        metal = std::min(metal, rodX(half - Vec3{1.0F, 0.93F, 0.24F}, 0.05F, 0.35F, 0.03F));
        metal = std::min(metal, stick(half, {0.2F, 0.62F, 0.32F}, {FrontAxle - 0.15F, 0.5F, 0.5F}, 0.022F));
        metal = std::min(metal, rodY(half - Vec3{FrontAxle, 0.5F, 0.52F}, 0.05F, 0.16F, 0.02F));
        hit.join(metal, Steel);
        hit.join(rodZ(half - Vec3{0.62F, 0.7F, 0.25F}, 0.09F, 0.05F, 0.02F), Red);
        // Exhaust with its silencer and rain flap.
        const Vec3 pipe = p - Vec3{1.05F, 1.5F, -0.18F};
        float stack =
            std::max(rodY(pipe - Vec3{0, 0.5F, 0}, 0.042F, 0.52F), -rodY(pipe - Vec3{0, 0.95F, 0}, 0.03F, 0.2F));
        stack = std::min(stack, rodY(pipe - Vec3{0, 0.4F, 0}, 0.085F, 0.24F, 0.05F));
        hit.join(stack, Steel);
        hit.join(box(turnZ(pipe - Vec3{-0.02F, 1.06F, 0}, 0.5F), {0.055F, 0.008F, 0.05F}, 0.005F), Steel);
        const Vec3 intake = p - Vec3{0.55F, 1.5F, 0.16F};
        hit.join(std::min(rodY(intake - Vec3{0, 0.15F, 0}, 0.045F, 0.2F),
                          rodY(intake - Vec3{0, 0.38F, 0}, 0.09F, 0.06F, 0.04F)),
                 Dark);
        // Drawbar.
        hit.join(stick(p, {-1.1F, 0.55F, 0}, {-2.6F, 0.75F, 0}, 0.05F), Dark);
        hit.join(stick(half, {-1.2F, 0.6F, 0.35F}, {-1.85F, 0.55F, 0.3F}, 0.035F), Steel);
    }

    /// A wheel about the z axis, its outer face towards +z.
    static void wheel(Vec3 p, float radius, float wide, int lugs, Hit &hit) {
        const float r = length(p.x, p.y);
        if (r > radius + 0.4F || std::fabs(p.z) > wide + 0.4F) {
            hit.join(std::max(r - radius, std::fabs(p.z) - wide), Tyre);
            return;
        }
        const float inner = 0.56F * radius;
        float rubber = tyre(p, radius * 0.95F, inner, wide, 0.4F * wide);
        // Lugs: slanting bars, left and right half a step apart.
        const float slice = 2 * Pi / static_cast<float>(lugs);
        const float angle = std::atan2(p.y, p.x) + (p.z > 0 ? 0.0F : slice / 2) + 0.42F * std::fabs(p.z) / radius;
        const float bar = std::fabs(repeat(angle, slice)) * r - 0.055F * radius / 0.86F;
        const float edge = radius - 0.3F * std::max(0.0F, std::fabs(p.z) - 0.72F * wide);
        rubber = std::min(rubber, 0.6F * std::max({bar, r - edge, radius * 0.82F - r, std::fabs(p.z) - wide * 1.03F}));
        hit.join(rubber, Tyre);
        float rim = std::max(std::fabs(r - inner) - 0.025F, std::fabs(p.z) - wide * 0.75F);
        rim = std::min(rim, length(r - inner - 0.02F, std::fabs(p.z) - wide * 0.75F) - 0.025F);
        const float dish = wide * 0.25F + 0.25F * smoothStep(0.55F * inner, inner, r) * wide;
        float disc = std::max(std::fabs(p.z - dish) - 0.02F, r - inner);
        const Vec3 hole = slices(p, 8);
        disc = std::max(disc, 0.05F * radius - length(hole.x - inner * 0.74F, hole.y));
        rim = std::min(rim, disc * 0.9F);
        rim = std::min(rim, rodZ(p - Vec3{0, 0, dish}, inner * 0.3F, 0.1F, 0.03F));
        hit.join(rim, White);
        hit.join(bolts(p - Vec3{0, 0, wide * 0.25F + 0.02F}, 8, inner * 0.45F, 0.03F), Steel);
        hit.join(rodZ(p - Vec3{0, 0, dish + 0.1F}, inner * 0.14F, 0.05F, 0.02F), Red);
    }

    static void wheels(Vec3 p, Hit &hit) {
        const Vec3 half = bothSides(p);
        wheel(turnZ(half - Vec3{BackAxle, BackRadius - 0.02F, 0.83F}, 0.1F), BackRadius, 0.25F, 22, hit);
        wheel(turnY(half - Vec3{FrontAxle, FrontRadius - 0.01F, 0.7F}, p.z > 0 ? 0.12F : -0.12F), FrontRadius, 0.15F,
              18, hit);
    }

    static void trailer(Vec3 p, Hit &hit) {
        const Vec3 q = p - Vec3{-4.2F, 0.95F, 0};
        const Vec3 half = bothSides(q);
        float planks = box(q, {1.65F, 0.07F, 1.0F}, 0.01F);
        planks = std::min({planks, box(half - Vec3{0, 0.25F, 1.0F}, {1.65F, 0.2F, 0.025F}),
                           box(q - Vec3{1.63F, 0.45F, 0}, {0.025F, 0.45F, 1.0F})});
        hit.join(planks, Plank);
        hit.join(
            std::max(box(half - Vec3{0, 0.22F, 1.03F}, {1.6F, 0.24F, 0.02F}), std::fabs(repeat(q.x, 0.8F)) - 0.03F),
            Dark);
        hit.join(box(q - Vec3{0, -0.14F, 0}, {1.6F, 0.07F, 0.45F}), Dark);
        hit.join(rodZ(q - Vec3{-0.3F, -0.5F, 0}, 0.05F, 0.85F), Dark);
        hit.join(box(half - Vec3{-0.3F, -0.3F, 0.5F}, {0.3F, 0.08F, 0.04F}, 0.02F), Dark);
        const Vec3 spot = half - Vec3{-0.3F, -0.53F, 0.82F};
        hit.join(tyre(spot, 0.42F, 0.24F, 0.11F, 0.06F), Tyre);
        hit.join(std::max(length(spot.x, spot.y) - 0.25F, std::fabs(spot.z) - 0.07F), White);
        // Bales in three layers, the upper ones set back.
        const Vec3 load = q - Vec3{0, 0.3F, 0};
        const int layer = std::clamp(static_cast<int>(std::floor(load.y / 0.46F + 0.5F)), 0, 2);
        const auto level = static_cast<float>(layer);
        const float shift = layer == 1 ? 0.5F : 0.0F;
        const float i = std::clamp(std::round((load.x + shift) / 1.02F), -1.0F,
                                   layer == 0   ? 1.0F
                                   : layer == 1 ? 2.0F
                                                : 0.0F);
        const float k = std::clamp(std::round(load.z / 0.62F), -1.0F, 1.0F);
        const Vec3 one = load - Vec3{i * 1.02F - shift, level * 0.46F, k * 0.62F};
        const float lean = 0.05F * (hash(static_cast<int>(i), static_cast<int>(k), layer) - 0.5F);
        hit.join(box(turnZ(one, lean), {0.49F, 0.215F, 0.29F}, 0.05F) * 0.85F, Bale);
    }

    // ---- the farm

    static bool standing(Vec3 p) { return p.z > 3.6F + 0.12F * p.x && p.z < 20; }

    static float groundHeight(Vec3 p) {
        const float soil = 0.05F * (fbm(p.x * 0.8F, p.z * 0.8F, 3) - 0.5F);
        if (p.z < 3.2F + 0.12F * p.x) {
            // Stubble in drills, flattened where wheels have run.
            if (p.y > 0.3F) {
                return 0.25F;
            }
            const Vec3 q = toTractor(p);
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
        const float grainRows = 0.004F * std::cos(q.y * 2 * Pi / 0.022F);
        float ear = ellipsoid(q, {0.017F, 0.062F, 0.017F}) + grainRows;
        const Vec3 beard = slices({q.x, q.z, q.y}, 5);
        ear =
            std::min(ear, stick({beard.x, beard.z, beard.y}, {0.006F, 0.03F, 0}, {0.02F, 0.13F, 0}, 0.0018F, 0.0008F));
        ear = std::min(ear, std::max(length(q.x, q.z) - 0.004F, std::fabs(q.y + 0.4F) - 0.4F));
        if (hash(i, k, 3) > 0.93F) {
            ear = poppy(q - Vec3{0, 0.06F, 0});
        }
        return std::min(ear, 0.05F) * 0.75F;
    }

    static float poppy(Vec3 q) {
        const float cup = std::max(std::fabs(ellipsoid(q, {0.034F, 0.034F, 0.034F})) - 0.0015F,
                                   q.y - 0.008F - 0.006F * std::sin(4 * std::atan2(q.z, q.x)));
        return std::min({cup, sphere(q, 0.012F), std::max(length(q.x, q.z) - 0.0025F, std::fabs(q.y + 0.4F) - 0.4F)});
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
                 White);
        hit.join(rodY(q - Vec3{8.6F, 1, 0}, 1.9F, 6), White);
        hit.join(ellipsoid(q - Vec3{8.6F, 7, 0}, {1.95F, 1.5F, 1.95F}), Roof);
    }
};

} // namespace

std::unique_ptr<Scene> tractor() {
    return std::make_unique<Tractor>();
}

} // namespace lumora::samples
