// A land of sweets: a gingerbread house, lollipops and candy canes, a chocolate river, hills of ice cream, a rainbow.
#include "Scenes.h"

#include "GingerbreadHouse.h"
#include "Noise.h"
#include "Shapes.h"
#include "Skies.h"
#include "Sweets.h"

namespace lumora::samples {

namespace {

enum Material { Frosting = SweetParts, Cookie, Scoop = 400, Sauce = 500 }; // and those of the sweets

constexpr Sweet Lollies[] = {
    {{3.05F, 0, 3.1F}, 2.75F, 0.78F, 0xFF2E63, 0xFFF4E6}, {{4.35F, 0, 5.0F}, 2.3F, 0.66F, 0x8E4DFF, 0xFFE45C},
    {{2.0F, 0, 4.6F}, 1.75F, 0.5F, 0x1FB8C8, 0xFFF4E6},   {{-5.0F, 0, 3.0F}, 3.0F, 0.78F, 0xFF8A1E, 0xFFF0C0},
    {{-4.1F, 0, 1.5F}, 1.45F, 0.46F, 0x2FB84A, 0xF8FFD8}, {{0.9F, 0, 8.6F}, 2.6F, 0.7F, 0xFF5CA8, 0xFFE9F4}};
constexpr Sweet Gums[] = {
    {{-0.95F, 0, 0.9F}, 0.5F, 0.3F, 0xE8203C, 0},   {{-1.5F, 0, 1.25F}, 0.38F, 0.24F, 0xFFB01E, 0},
    {{1.25F, 0, 1.2F}, 0.44F, 0.28F, 0x2FB84A, 0},  {{1.75F, 0, 1.75F}, 0.6F, 0.36F, 0x9A3CE0, 0},
    {{-3.0F, 0, 2.2F}, 0.5F, 0.32F, 0x2A8CF0, 0},   {{-2.0F, 0, -1.55F}, 0.3F, 0.2F, 0x2FB84A, 0},
    {{-2.4F, 0, -1.3F}, 0.42F, 0.27F, 0xFF5CA8, 0}, {{1.6F, 0, -1.7F}, 0.28F, 0.19F, 0xFFB01E, 0},
    {{0.3F, 0, 5.2F}, 0.6F, 0.38F, 0xFF7A1E, 0},    {{5.2F, 0, 2.6F}, 0.5F, 0.32F, 0xE8203C, 0}};
constexpr Sweet Trees[] = {{{-6.2F, 0, 7.5F}, 2.5F, 1.25F, 0xFF9ECF, 0}, {{-4.2F, 0, 10.5F}, 2.7F, 1.3F, 0x9FD4FF, 0},
                           {{2.9F, 0, 11}, 2.4F, 1.15F, 0xC9A6FF, 0},    {{6.9F, 0, 8.5F}, 2.6F, 1.3F, 0xFF9ECF, 0},
                           {{5.2F, 0, 13}, 2.8F, 1.3F, 0x9FD4FF, 0},     {{-9.5F, 0, 12}, 3.0F, 1.6F, 0xC9A6FF, 0}};
constexpr Sweet Scoops[] = {{{-10, -0.6F, 22}, 6.4F, 5.2F, 0xFFA8BC, 0x5A2A18},
                            {{-1.2F, -0.8F, 25}, 6.2F, 5.0F, 0xFFF0C4, 0xE8305A},
                            {{7.2F, -0.8F, 21}, 5.6F, 4.4F, 0xA8E8C4, 0x5A2A18},
                            {{15.5F, -1.0F, 29}, 7.4F, 6.4F, 0xFFB8A0, 0xFFF4E6},
                            {{-21, -1.0F, 33}, 8.2F, 7.4F, 0xCBB4F4, 0xE8305A}};
constexpr Vec3 Canes[] = {{-0.85F, 0, 2.35F}, {0.55F, 0, 2.0F}, {-5.6F, 0, 0.4F}};
constexpr Vec3 House{-2.05F, 0.03F, 4.6F};
constexpr float Turn = 0.36F;

class CandyLand : public Scene {
  public:
    CandyLand() {
        camera = {{0.1F, 1.75F, -5.7F}, {-0.1F, 2.0F, 5}, 1.38F};
        sunDirection = normalise({0.62F, 0.62F, -0.48F});
        sunColour = {3.5F, 2.9F, 2.2F};
        skyLight = {0.38F, 0.33F, 0.56F};
        groundLight = {0.22F, 0.16F, 0.15F};
        farthest = 90;
        ceiling = 10;
        caution = 0.85F;
        steps = 180;
        shadowReach = 7;
        shadowSoftness = 14;
        creviceSize = 0.3F;
        waterLevel = -0.1F;
        waterColour = {0.075F, 0.022F, 0.007F};
        exposure = 0.74F;
        bloom = 0.2F;
        vignette = 0.2F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join(p.y > 1.6F ? p.y - 1.1F : (p.y - ground(p.x, p.z)) * 0.85F, Frosting);
        gingerbreadHouse(turnY(p - House, Turn), hit);
        cookies(p, hit);
        for (int i = 0; i < static_cast<int>(std::size(Lollies)); ++i) {
            lollipop(p - Lollies[i].foot, Lollies[i], i, hit);
        }
        for (int i = 0; i < static_cast<int>(std::size(Gums)); ++i) {
            const Sweet &gum = Gums[i];
            const Vec3 q = p - gum.foot - Vec3{0, 0.05F, 0};
            const float slim = mix(gum.radius, 0.6F * gum.radius, clamp01(q.y / gum.height));
            hit.join((rod(length(q.x, q.z), q.y - gum.height / 2, slim, gum.height / 2, 0.5F * gum.radius)) * 0.9F,
                     Gum + i);
        }
        for (int i = 0; i < static_cast<int>(std::size(Trees)); ++i) {
            flossTree(p - Trees[i].foot, Trees[i], i, hit);
        }
        for (const Vec3 &foot : Canes) {
            cane(p - foot, foot.x < -3 ? 1.5F : 1, foot.x < -2 || foot.x > 0 ? -1.0F : 1.0F, hit);
        }
        scoops(p, hit);
        cupcake(p - Vec3{3.55F, 0.02F, 0.75F}, hit);
        doughnut(turnZ(turnY(p - Vec3{-3.25F, 0.55F, -0.15F}, 0.5F), 0.12F), hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        const float rough = fbm(p * 5, 3);
        if (material >= Scoop) {
            const Sweet &one = Scoops[(material - Scoop) % 100];
            return material >= Sauce
                       ? Surface{.colour = colour(one.second), .shine = 0.6F, .sharpness = 40, .mirror = 0.05F}
                       : Surface{.colour = colour(one.tint) * mix(0.75F, 1.08F, rough)};
        }
        if (material >= Floss) {
            return {.colour = mix(colour(Trees[material - Floss].tint), Vec3{1, 1, 1}, 0.25F * rough), .sheer = 0.5F};
        }
        if (material >= Gum) {
            const Vec3 tint = colour(Gums[material - Gum].tint);
            const float sugar = smoothStep(0.62F, 0.8F, noise(p * 55));
            return {.colour = mix(tint, Vec3{1, 1, 1}, 0.03F + 0.4F * sugar),
                    .shine = 0.5F,
                    .sharpness = 12,
                    .sheer = 0.5F,
                    .glow = tint * 0.07F};
        }
        if (material >= Lolly) {
            const Sweet &one = Lollies[material - Lolly];
            const float x = p.x - one.foot.x;
            const float y = p.y - one.foot.y - one.height;
            const float swirl =
                fraction((std::atan2(y, x) / (2 * Pi) + 2.1F * std::sqrt(length(x, y) / one.radius)) * 3);
            const Vec3 tint =
                mix(colour(one.tint), colour(one.second), smoothStep(0.46F, 0.5F, swirl) * smoothStep(1, 0.96F, swirl));
            return {.colour = tint, .shine = 1.1F, .sharpness = 70, .mirror = 0.06F, .sheer = 0.25F};
        }
        switch (material) {
        case Cookie:
            return {.colour = mix(colour(0xB4712E), colour(0xECB468), rough) * mix(0.8F, 1.08F, noise(p * 24))};
        case Chip:
            return {.colour = colour(0x3C1A0C), .shine = 0.5F, .sharpness = 25};
        case Ginger:
            return {.colour = mix(colour(0x9A4F1C), colour(0xC97A34), rough) * mix(0.85F, 1.08F, noise(p * 30))};
        case Icing:
            return {.colour = colour(0xFFF9F2), .shine = 0.35F, .sharpness = 30, .sheer = 0.2F};
        case Roof:
            return {.colour = mix(colour(0x5A2A14), colour(0x7E4222), rough), .shine = 0.45F, .sharpness = 30};
        case Pane:
            return {.colour = colour(0x8A5A10),
                    .shine = 0.8F,
                    .sharpness = 60,
                    .glow = mix(colour(0xFF9E2A), colour(0xFFE27A), noise(p * 5)) * 1.2F};
        case Door: {
            const Vec3 q = turnY(p - House, Turn);
            const float block = std::min(std::fabs(repeat(q.x, 0.24F)), std::fabs(repeat(q.y - 0.16F, 0.24F)));
            return {.colour = colour(0x4A2010) * (block > 0.1F ? 1.3F : 0.9F),
                    .shine = 0.8F,
                    .sharpness = 35,
                    .mirror = 0.04F};
        }
        case Cane: {
            Vec3 q = p - Canes[0];
            for (const Vec3 &foot : Canes) {
                q = length(p.x - foot.x, p.z - foot.z) < length(q.x, q.z) ? p - foot : q;
            }
            const float stripe =
                fraction(q.y * 2.3F + std::atan2(q.z, std::fabs(q.x) < 0.2F ? q.x : q.y) / (2 * Pi) + 1.2F * q.x);
            return {.colour = stripe < 0.45F                     ? colour(0xE8142E)
                              : stripe > 0.66F && stripe < 0.74F ? colour(0x3FB86A)
                                                                 : colour(0xFFFAF2),
                    .shine = 1.1F,
                    .sharpness = 70,
                    .mirror = 0.06F};
        }
        case Stick:
            return {.colour = colour(0xFFF6E8), .shine = 0.3F};
        case Cherry:
            return {.colour = colour(0xD0102A), .shine = 1.4F, .sharpness = 90, .mirror = 0.07F};
        case Cream:
            return {.colour = mix(colour(0xFF8FBE), colour(0xFFC6DE), smoothStep(0.5F, 1.5F, p.y)),
                    .shine = 0.25F,
                    .sharpness = 20,
                    .sheer = 0.25F};
        case Paper:
            return {.colour = fraction(std::atan2(p.x - 3.55F, p.z - 0.75F) * 14 / Pi) < 0.5F ? colour(0x35B8C0)
                                                                                              : colour(0xE8FBF6)};
        case Dough:
            return {.colour = mix(colour(0xC98A44), colour(0xEBB873), rough)};
        case Glaze: {
            const Vec3 q = turnZ(turnY(p - Vec3{-3.25F, 0.55F, -0.15F}, 0.5F), 0.12F);
            return {.colour = sprinkled(colour(0xFF6FAE), q.x * 7, q.y * 7, 0.45F),
                    .shine = 0.9F,
                    .sharpness = 50,
                    .mirror = 0.05F};
        }
        case Button: {
            const Vec3 tints[] = {colour(0xE8203C), colour(0xFFC21E), colour(0x2FB84A),
                                  colour(0x2A8CF0), colour(0x9A3CE0), colour(0xFF7A1E)};
            const Vec3 q = turnY(p - House, Turn);
            const int one =
                static_cast<int>(std::round(q.z / 0.4F) * 5 + std::round(q.y / 0.3F) * 3 + (q.x > 0 ? 1 : 0));
            return {.colour = tints[((one % 6) + 6) % 6], .shine = 1.1F, .sharpness = 60, .mirror = 0.06F};
        }
        default: {
            const float bank = smoothStep(0.12F, -0.02F, p.y);
            Vec3 look = mix(colour(0x6FCB9A), colour(0xB4EBA4), fbm(p.x * 0.8F, p.z * 0.8F, 4));
            look = mix(look, colour(0xFF94C0), smoothStep(0.48F, 0.6F, fbm(p.x * 0.3F + 4, p.z * 0.3F, 3)));
            look = p.z < 9 ? sprinkled(look, p.x * 3.8F, p.z * 3.8F, 0.55F) : look;
            return {.colour = mix(look, mix(colour(0x7A3C1C), colour(0xFFF6EA), smoothStep(0.0F, 0.06F, p.y)), bank),
                    .shine = 0.2F,
                    .sharpness = 14 + 4 * n.y};
        }
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.35F);
        Vec3 light = mix(mix(colour(0xFFC79A), colour(0xFF9CC6), smoothStep(0.02F, 0.22F, up)), colour(0x5AB4F0),
                         smoothStep(0.15F, 0.6F, up));
        light = mix(light, colour(0x3A70E0), smoothStep(0.5F, 1, up));
        // A rainbow: seven colours by the angle from its centre.
        const float bow = (std::acos(clamp01(dot(d, normalise({0.1F, -0.2F, 1})))) - 0.6F) / 0.085F;
        if (bow > 0 && bow < 1) {
            const Vec3 tint{smoothStep(0.45F, 0.8F, bow) + 0.55F * smoothStep(0.16F, 0.0F, bow),
                            smoothStep(0.12F, 0.4F, bow) * smoothStep(1.0F, 0.62F, bow), smoothStep(0.56F, 0.3F, bow)};
            light = mix(light, tint * 1.05F + Vec3{0.2F, 0.2F, 0.2F},
                        0.62F * std::sin(Pi * bow) * smoothStep(0, 0.08F, d.y));
        }
        const Cloud cloud = clouds(d, sunDirection, 0.7F, 0.9F, 2.6F);
        return mix(light, mix(colour(0xE0A8DC), colour(0xFFF2F0) * 1.3F, cloud.lit), cloud.amount * 0.92F);
    }

    float grain(int material, Vec3 p) const override {
        if (material >= Scoop && material < Sauce) {
            return 0.16F * fbm(p * 2.2F, 4);
        }
        if (material >= Floss && material < Scoop) {
            return 0.12F * fbm(p * 5, 4);
        }
        if (material >= Gum && material < Floss) {
            return 0.012F * noise(p * 55);
        }
        switch (material) {
        case Frosting:
            return 0.07F * fbm(p.x * 2.2F, p.z * 3.4F, 3) + 0.006F * noise(p.x * 50, p.z * 50);
        case Ginger:
        case Dough:
        case Cookie:
            return 0.012F * fbm(p * 16, 3);
        default:
            return 0;
        }
    }

    Vec3 waterNormal(Vec3 p, float) const override {
        return normalise(
            {0.12F * (fbm(p.x * 0.9F, p.z * 1.6F, 2) - 0.4F), 1, 0.12F * (fbm(p.x * 0.9F + 5, p.z * 1.6F, 2) - 0.4F)});
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return haze(light, *this, d, distance < farthest - 1 ? std::max(0.0F, distance - 10) : 0.0F, 75,
                    colour(0xEFA8D0), colour(0xFFD8B8));
    }

  private:
    static float pathMiddle(float z) {
        return mix(-1.35F, 0.35F, smoothStep(3.4F, -1.5F, z)) + 0.25F * std::sin(z * 1.1F);
    }

    static float ground(float x, float z) {
        const float river = std::fabs(x - 6.6F + 5.4F * smoothStep(3.5F, 11, z)) - 0.75F - 0.05F * z;
        float height = 0.05F + 0.22F * (fbm(x * 0.5F, z * 0.5F, 3) - 0.42F) * smoothStep(1, 3, std::fabs(x)) +
                       0.9F * smoothStep(9, 20, z) * fbm(x * 0.2F, z * 0.2F, 2);
        height = std::max(height, 0.14F);
        return z > 2 && z < 22 ? mix(-0.55F, height, smoothStep(-0.35F, 0.4F, river)) : height;
    }

    static void scoops(Vec3 p, Hit &hit) {
        if (p.z < 14) {
            hit.join(15.5F - p.z, Scoop);
            return;
        }
        for (int i = 0; i < static_cast<int>(std::size(Scoops)); ++i) {
            const Sweet &one = Scoops[i];
            const Vec3 q = p - one.foot;
            const float ball = ellipsoid(q, {one.radius, one.height, one.radius});
            if (ball > 1.5F) {
                hit.join(ball - 0.8F, Scoop + i);
                continue;
            }
            const float angle = std::atan2(q.z, q.x);
            const float skirt = 0.5F * std::exp(-std::max(q.y - 1.4F, 0.0F)) * noise(angle * 9, 3);
            hit.join((ball - skirt - 0.5F * (fbm(p * 0.7F, 3) - 0.5F)) * 0.7F, Scoop + i);
            const float rim =
                one.height * (0.72F - 0.3F * smoothStep(0.35F, 0.75F, noise(angle * 4.5F, static_cast<float>(i))));
            hit.join(std::max((ball - 0.3F) * 0.8F, (rim - q.y) * 0.5F), Sauce + i);
            hit.join(sphere(q - Vec3{0, one.height + 0.75F, 0}, 0.7F), Cherry);
        }
    }

    static void cookies(Vec3 p, Hit &hit) {
        if (p.z > 3.4F || p.y > 0.6F) {
            hit.join(std::max(p.z - 3.2F, p.y - 0.4F), Cookie);
            return;
        }
        const float tile = std::round(p.z / 0.86F);
        const float z = tile * 0.86F;
        const Vec3 q{p.x - pathMiddle(z) - 0.2F * (hash(static_cast<int>(tile), 3) - 0.5F), p.y - 0.19F, p.z - z};
        const float radius = 0.38F + 0.03F * std::sin(5 * std::atan2(q.z, q.x) + tile);
        hit.join(std::min(rodY(q, radius, 0.06F, 0.05F), 0.35F), Cookie);
        for (int i = 0; i < 7; ++i) {
            const float a = 2.4F * static_cast<float>(i) + tile;
            const float r = 0.13F * std::sqrt(static_cast<float>(i) + 0.3F);
            hit.join(std::min(sphere(q - Vec3{r * std::cos(a), 0.055F, r * std::sin(a)}, 0.042F), 0.35F), Chip);
        }
    }
};

} // namespace

std::unique_ptr<Scene> candyLand() {
    return std::make_unique<CandyLand>();
}

} // namespace lumora::samples
