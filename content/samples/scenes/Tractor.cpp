// A blue tractor with a load of straw in a wheat field, late in the afternoon of a harvest day.
#include "Scenes.h"

#include "WheatField.h"

#include <array>

namespace lumora::samples {

namespace {

constexpr float BackAxle = -0.95F;
constexpr float BackRadius = 0.86F;
constexpr float FrontAxle = 1.32F;
constexpr float FrontRadius = 0.46F;

/// Side view of the bonnet.
constexpr std::array<Corner, 8> Bonnet{{{-0.2F, 0.98F},
                                        {-0.2F, 1.5F},
                                        {0.9F, 1.5F},
                                        {1.72F, 1.43F},
                                        {1.9F, 1.33F},
                                        {1.93F, 0.8F},
                                        {1.62F, 0.76F},
                                        {0.1F, 0.98F}}};

class Tractor : public WheatField {
    enum Material { Blue = FieldEnd, White, Dark, Steel, Shiny, Tyre, Plank, Lamp, Red };

  public:
    Tractor() {
        camera = {{-1.5F, 1.25F, -6.4F}, {0.62F, 1.42F, 0}, 1.72F};
        caution = 0.8F;
        steps = 240;
        shadowReach = 9;
        shadowSoftness = 20;
        creviceSize = 0.3F;
        exposure = 0.86F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        field(p, hit);
        const Vec3 q = alongRuts(p);
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
        const Vec3 q = alongRuts(p);
        const float rough = fbm(p * 4, 4);
        switch (material) {
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
            return fieldLook(material, p, n);
        }
    }

    float grain(int material, Vec3 p) const override {
        return material == Plank ? 0.004F * noise(p * 30) : fieldGrain(material, p);
    }

  private:
    static void body(Vec3 p, Hit &hit) {
        const float side = outline(p.x, p.y, Bonnet);
        hit.join(plate(side, p.z, 0.35F + 0.03F * smoothStep(1.8F, 0.4F, p.x), 0.09F) * 0.95F, Blue);
        // Grille in a white frame, headlamps beside it.
        const Vec3 nose = p - Vec3{1.93F, 1.05F, 0};
        hit.join(plate(std::fabs(box({nose.y, nose.z, 0}, {0.22F, 0.24F, 1}, 0.06F)) - 0.025F, nose.x, 0.05F, 0.02F),
                 White);
        hit.join(box(nose, {0.02F, 0.2F, 0.22F}), Dark);
        hit.join(std::max(box(nose, {0.035F, 0.2F, 0.22F}), std::fabs(repeat(nose.y, 0.07F)) - 0.012F), White);
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
        float metal = bolts(half - Vec3{0.75F, 0.8F, 0.2F}, 10, 0.17F, 0.022F);
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
};

} // namespace

std::unique_ptr<Scene> tractor() {
    return std::make_unique<Tractor>();
}

} // namespace lumora::samples
