// Hot-air balloons over a misty valley, early in the morning.
#include "Scenes.h"

#include "Noise.h"
#include "Shapes.h"
#include "Skies.h"

namespace lumora::samples {

namespace {

enum Material { Land, Basket, Burner, Envelope }; // every balloon has an envelope of its own: Envelope + its number

struct Balloon {
    Vec3 at; ///< middle of the envelope
    float size;
    unsigned first; ///< colours of its panels
    unsigned second;
    unsigned third;
};
constexpr Balloon Balloons[] = {
    {{-2.3F, 3.6F, 7.5F}, 1.75F, 0xE8322A, 0xFFC53D, 0x2F80ED}, {{3.7F, 4.9F, 12}, 1.7F, 0x34B27B, 0xFFF4DC, 0xFF7A2E},
    {{0.9F, 1.9F, 17}, 1.5F, 0x8A5CF6, 0xFF9BC4, 0xFFE27A},     {{-6.6F, 6.6F, 20}, 1.7F, 0x1FA7D6, 0xFFFFFF, 0xF0413A},
    {{8.6F, 2.6F, 24}, 1.6F, 0xFF6B57, 0xFFE08A, 0x7A3FD0},     {{-1.8F, 7.6F, 30}, 1.7F, 0xFFB12E, 0xD9302A, 0xFFF4DC},
    {{-12, 3.2F, 36}, 1.8F, 0x2FB56A, 0xFFE08A, 0x2F6FE0},      {{6.2F, 8.8F, 40}, 1.8F, 0xE94B8A, 0xFFFFFF, 0x8A5CF6}};

class BalloonMorning : public Scene {
  public:
    BalloonMorning() {
        camera = {{0, 3.2F, -3}, {0.3F, 3.75F, 10}, 1.4F};
        sunDirection = normalise({-0.78F, 0.33F, -0.3F});
        sunColour = {3.5F, 2.6F, 1.7F};
        skyLight = {0.42F, 0.46F, 0.68F};
        groundLight = {0.2F, 0.19F, 0.16F};
        farthest = 150;
        caution = 0.9F;
        steps = 150;
        shadowReach = 10;
        ceiling = 12;
        creviceSize = 0.4F;
        vignette = 0.2F;
        strands = 420000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        const float top = 1.2F + 6 * smoothStep(40, 90, p.z);
        hit.join(p.y > top + 1.5F ? p.y - top : (p.y - land(p.x, p.z)) * 0.55F, Land);
        for (int i = 0; i < static_cast<int>(std::size(Balloons)); ++i) {
            balloon(p, i, hit);
        }
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        if (material >= Envelope) {
            return envelope(Balloons[material - Envelope], p);
        }
        if (material == Basket) {
            const bool weave =
                (static_cast<int>(std::floor(p.y * 34)) + static_cast<int>(std::floor((p.x + p.z) * 26))) % 2 == 0;
            return {.colour = weave ? colour(0x8A5A2C) : colour(0xB98144)};
        }
        if (material == Burner) {
            return {.colour = colour(0x2B2420), .shine = 0.4F};
        }
        return fields(p, n);
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.5F);
        const float east = 0.5F + 0.5F * dot(normalise({d.x, 0, d.z}), normalise({sunDirection.x, 0, sunDirection.z}));
        Vec3 light = mix(mix(colour(0xFBC9B0), colour(0xFFE0A0), east) * 1.1F,
                         mix(colour(0x8FB9E8), colour(0x3F78C8), smoothStep(0.35F, 1, up)), smoothStep(0, 0.45F, up));
        const Cloud cloud = clouds(d, sunDirection, 0.55F, 0.8F, 11.3F);
        light = mix(light, mix(colour(0xA9A2C6), colour(0xFFE6CC) * 1.35F, cloud.lit), cloud.amount * 0.85F);
        return light + sunGlow(d, sunDirection, sunColour) * 0.4F;
    }

    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        const float far = length(p - camera.eye);
        if (material != Land || far > 45) {
            return {};
        }
        const float other = fraction(chance * 733);
        const float turn = 2 * Pi * fraction(chance * 331);
        const float light = 0.65F + 0.8F * fraction(chance * 4001);
        const bool tree = fbm(p.x * 0.16F + 7, p.z * 0.16F, 3) > 0.535F;
        if (!tree) { // stalks of what grows in the fields
            const float tall = 0.05F + 0.05F * other;
            return {.tip = Vec3{0.3F * std::cos(turn), 1, 0.3F * std::sin(turn)} * tall,
                    .width = 0.02F,
                    .order = -far,
                    .solid = 0.7F,
                    .tint = {light, light, light * 0.9F}};
        }
        const Vec3 way = normalise(n + Vec3{std::cos(turn), 1.2F * (other - 0.4F), std::sin(turn)} * 0.9F);
        return {.tip = way * (0.13F + 0.1F * other),
                .width = 0.07F,
                .blunt = 0.6F,
                .order = -far,
                .solid = 0.9F,
                .tint = {light, light, light * 0.85F}};
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        light = haze(light, *this, d, distance < farthest - 1 ? distance : 3.0F, 140, colour(0xA9BAE2),
                     colour(0xFFDFB0) * 1.15F);
        // Mist lies in the valley: thicker the longer the ray stays below its surface.
        const Vec3 p = from + d * distance;
        if (p.y < 1.3F && distance < farthest - 1) {
            const float wisps = fbm(p.x * 0.12F, p.z * 0.09F, 4);
            const float thick =
                smoothStep(1.3F, -0.4F, p.y) * smoothStep(0.36F, 0.62F, wisps + 0.12F * smoothStep(10, 40, p.z));
            light = mix(light, colour(0xFFE9D6) * 1.05F, 0.85F * thick);
        }
        return light;
    }

  private:
    static float land(float x, float z) {
        const float roll = 2.6F * fbm(x * 0.07F + 2.2F, z * 0.06F, 3) - 1.5F;
        const float far = smoothStep(38, 95, z);
        float height = roll + far * (7.5F * ridged(x * 0.028F + 0.4F, z * 0.02F, 5) - 1.0F);
        const float wood = smoothStep(0.52F, 0.58F, fbm(x * 0.16F + 7, z * 0.16F, 3)) * (1 - far);
        if (wood > 0) {
            const Cell tree = cells(x * 2.2F, z * 2.2F);
            height += wood * 0.42F * std::sqrt(std::max(0.0F, 1 - tree.distance * tree.distance * 3)) *
                      (0.6F + 0.6F * tree.id);
        }
        return height;
    }

    static Surface fields(Vec3 p, Vec3 n) {
        const float far = smoothStep(38, 95, p.z);
        const Cell field = cells(p.x * 0.17F + 0.5F * noise(p.x * 0.1F, p.z * 0.1F), p.z * 0.12F, 0.9F);
        const Vec3 crops[] = {colour(0x6E9A35), colour(0xD2BC55), colour(0x93B347),
                              colour(0x557F34), colour(0xE6CF6E), colour(0xA67FC4)};
        const float angle = 6 * fraction(field.id * 31);
        const float furrow =
            0.94F + 0.06F * smoothStep(26, 8, p.z) * std::sin((p.x * std::cos(angle) + p.z * std::sin(angle)) * 11);
        Vec3 look =
            crops[static_cast<int>(field.id * 83) % 6] * furrow * (0.8F + 0.4F * fbm(p.x * 0.9F, p.z * 0.9F, 4));
        const float wood = smoothStep(0.52F, 0.55F, fbm(p.x * 0.16F + 7, p.z * 0.16F, 3)) * (1 - far);
        look = mix(look, mix(colour(0x2A5224), colour(0x6B8A34), noise(p * 4)), wood);
        const Vec3 rock = mix(colour(0x5F6F52), colour(0x8E8296), smoothStep(1, 4, p.y) + 0.3F * n.y);
        return {.colour = mix(look, rock, far)};
    }

    /// The envelope narrows to its mouth; its panels bulge between the seams.
    static void balloon(Vec3 p, int number, Hit &hit) {
        const Balloon &one = Balloons[number];
        const Vec3 q = (p - one.at) * (1 / one.size);
        const float near = length(q + Vec3{0, 0.35F, 0}) - 1.55F;
        if (near > 0.3F) {
            hit.join(near * one.size, Envelope + number);
            return;
        }
        const float out = length(q.x, q.z);
        const float bulge = 0.016F * std::fabs(std::sin(12 * std::atan2(q.z, q.x)));
        const float neck = mix(1.0F, 0.2F, smoothStep(0.05F, -1.32F, q.y));
        const float side = q.y > 0 ? length(q) - 1 : (out - neck) * 0.82F;
        hit.join(one.size * 0.9F * std::max(side - bulge * smoothStep(1.0F, 0.4F, std::fabs(q.y)), -1.12F - q.y),
                 Envelope + number);
        const Vec3 basket = q - Vec3{0, -1.6F, 0};
        float woven = std::max(box(basket, {0.16F, 0.12F, 0.16F}, 0.03F),
                               -box(basket - Vec3{0, 0.08F, 0}, {0.13F, 0.12F, 0.13F}));
        hit.join(woven * one.size, Basket);
        const Vec3 corner{std::fabs(basket.x), basket.y, std::fabs(basket.z)};
        hit.join(one.size * std::min(stick(corner, {0.14F, 0.1F, 0.14F}, {0.17F, 0.5F, 0.17F}, 0.008F),
                                     box(basket - Vec3{0, 0.3F, 0}, {0.05F, 0.05F, 0.05F}, 0.01F)),
                 Burner);
    }

    static Surface envelope(const Balloon &one, Vec3 p) {
        const Vec3 q = (p - one.at) * (1 / one.size);
        const float angle = std::atan2(q.z, q.x) / Pi * 12; // 24 panels
        const int panel = static_cast<int>(std::floor(angle)) + 12;
        const float zigzag = 0.16F * std::fabs(2 * fraction(angle / 2) - 1);
        Vec3 cloth = colour(panel % 2 == 0 ? one.first : one.second);
        if (std::fabs(q.y + zigzag - 0.05F) < 0.14F) {
            cloth = colour(panel % 2 == 0 ? one.second : one.third);
        } else if (q.y > 0.78F || q.y < -0.95F) {
            cloth = colour(one.third);
        }
        const float seam = std::min(fraction(angle), 1 - fraction(angle));
        return {.colour = cloth * mix(0.72F, 1.0F, smoothStep(0, 0.08F, seam)),
                .shine = 0.12F,
                .sharpness = 20,
                .sheer = 0.45F};
    }
};

} // namespace

std::unique_ptr<Scene> balloons() {
    return std::make_unique<BalloonMorning>();
}

} // namespace lumora::samples
