// Sand dunes early in the morning: a caravan on a winding crest, ripples in the sand, an oasis in the hollow.
#include "Scenes.h"

#include "Landforms.h"
#include "Noise.h"
#include "Shapes.h"
#include "Skies.h"

namespace lumora::samples {

namespace {

enum Material { Sand, Hide, Blanket, Load, Tent, Trunk, Leaf, Guide }; // the guide has five materials

constexpr Vec3 Pool{-4.6F, 0, 12.5F};
constexpr float Palms[][4] = {{-6.1F, 12.2F, 2.0F, 0.35F}, {-5.7F, 13.6F, 2.3F, -0.3F}, {-4.9F, 14.1F, 2.0F, 0.25F},
                              {-3.5F, 13.8F, 1.8F, 0.45F}, {-6.9F, 13.1F, 1.6F, -0.3F}, {-2.9F, 12.9F, 1.4F, 0.3F},
                              {-5.7F, 11.4F, 1.2F, -0.25F}};

class Dunes : public Scene {
  public:
    Dunes() {
        camera = {{-1.5F, 1.9F, -1.2F}, {-0.75F, 1.3F, 5}, 1.4F};
        sunDirection = normalise({-0.86F, 0.31F, 0.22F});
        sunColour = {4.0F, 2.75F, 1.6F};
        skyLight = {0.22F, 0.29F, 0.55F};
        groundLight = {0.22F, 0.14F, 0.08F};
        farthest = 110;
        ceiling = 9;
        caution = 0.75F;
        steps = 230;
        shadowReach = 14;
        shadowSoftness = 22;
        creviceSize = 0.2F;
        waterLevel = -0.02F;
        waterColour = {0.01F, 0.09F, 0.12F};
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join((p.y - land(p.x, p.z)) * (p.z > 12 ? 0.62F : 1.0F), Sand); // the far dunes are steeper
        caravan(p, hit);
        oasis(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        if (material >= Guide) {
            constexpr unsigned clothes[] = {0x24408A, 0x2F5FC4, 0x8A5A3C, 0xF6F0E2, 0xD8352A};
            return {.colour = colour(clothes[material - Guide])};
        }
        switch (material) {
        case Hide:
            return {.colour = mix(colour(0x6E4526), colour(0xA9713E), fbm(p * 12, 3))};
        case Blanket: {
            const unsigned cloths[] = {0xD8232A, 0x1F6FD0, 0xF2A516, 0x8A35B8, 0x0FA08A};
            const float stripe = fraction(p.y * 16);
            return {.colour = stripe < 0.3F ? colour(0xFFE9B8) : colour(cloths[number(p.z)])};
        }
        case Load:
            return {.colour = mix(colour(0x7A4A26), colour(0xE8D0A0), noise(p * 14))};
        case Tent: {
            const Vec3 q = inTent(p);
            const bool door = q.z < -0.5F && std::fabs(q.x) < 0.5F * (0.5F - q.y);
            const Vec3 cloth = fraction(q.z * 4 + 0.3F) < 0.5F ? colour(0xE8302A) : colour(0xFFF3DC);
            return {.colour = door ? colour(0x2A1810) : cloth, .sheer = door ? 0.0F : 0.3F};
        }
        case Trunk:
            return {.colour = mix(colour(0x5E4630), colour(0x94764E), fraction(p.y * 14))};
        case Leaf:
            return {.colour = mix(colour(0x2F5E1E), colour(0x7EA03A), noise(p * 8)), .shine = 0.2F, .sheer = 0.35F};
        default:
            return sand(p, n);
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.7F);
        Vec3 light = mix(mix(colour(0xFFE0B4) * 1.05F, colour(0x8DBCE6), smoothStep(0, 0.3F, up)), colour(0x1656B0),
                         smoothStep(0.12F, 0.9F, up));
        if (d.y > 0.02F) {
            const float reach = 1 / (d.y + 0.12F);
            const float x = d.x * reach;
            const float z = d.z * reach;
            const float veil = fbm(x * 0.7F + 0.9F * fbm(x * 0.8F, z * 0.8F, 3), z * 2.6F + x * 0.8F, 6);
            light = mix(light, colour(0xFFF3E4) * 1.15F,
                        0.8F * smoothStep(0.5F, 0.84F, veil) * smoothStep(0.02F, 0.2F, d.y));
        }
        return light + sunGlow(d, sunDirection, sunColour) * 0.5F;
    }

    float grain(int material, Vec3 p) const override {
        if (material != Sand) {
            return 0;
        }
        // Wind ripples: crests across the wind that fork and join; too fine to be seen from afar.
        const float distance = length(p - camera.eye);
        const float bend = 0.7F * fbm(p.x * 0.8F, p.z * 0.8F, 2) + 0.05F * noise(p.x * 5, p.z * 5);
        const float wave = fraction((p.x * 0.93F + 0.36F * p.z + bend) * 15);
        const float ripple = smoothStep(0, 0.65F, wave) * smoothStep(1, 0.65F, wave);
        return ripple * 0.0075F * smoothStep(9, 2, distance) * (0.5F + noise(p.x * 0.8F, p.z * 0.8F)) +
               0.0015F * noise(p.x * 110, p.z * 110) * smoothStep(3, 1, distance);
    }

    Vec3 waterNormal(Vec3 p, float) const override {
        return normalise(
            {0.03F * (noise(p.x * 14, p.z * 14) - 0.5F), 1, 0.03F * (noise(p.x * 14 + 5, p.z * 14) - 0.5F)});
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return haze(light, *this, d, distance < farthest - 1 ? distance : 3.0F, 90, colour(0xE2C4A6),
                    colour(0xFFD8A0) * 1.2F);
    }

  private:
    static float crest(float z) { return 1.5F * std::sin(0.33F * z - 0.3F) + 0.07F * z - 0.2F; }

    /// Dunes march to the right: a long windward slope, a sharp crest, a steep slip face.
    static float profile(float f) {
        constexpr float Top = 0.72F;
        const float rise = f < Top ? f / Top : (1 - f) / (1 - Top);
        return f < Top ? rise * rise * (1.9F - 0.9F * rise) : rise * (0.35F + 0.65F * rise * (2 - rise));
    }

    static float land(float x, float z) {
        const float far = smoothStep(8, 30, z);
        const float warp = (0.25F + 0.5F * far) * (fbm(x * 0.09F + 3, z * 0.09F + 1, 3) - 0.5F);
        const float phase =
            (x - crest(z) * (1 - far)) / 7.5F + 0.72F + warp * 2 * smoothStep(0, 4, std::fabs(x - crest(z)));
        const float which = std::floor(phase);
        const float big = 0.75F + 0.5F * noise(which * 7.3F, z * 0.12F);
        const float small = profile(fraction(x * 0.33F + 0.2F * z + 1.5F * noise(x * 0.2F, z * 0.2F)));
        float height = (1.35F + 2.2F * smoothStep(14, 50, z)) * big * profile(phase - which) +
                       0.12F * small * noise(x * 0.3F + 9, z * 0.3F) + 0.04F;
        const float pit = length((x - Pool.x) * 0.8F, z - Pool.z);
        height = mix(height, -0.12F + 0.16F * smoothStep(0.6F, 1.8F, pit), smoothStep(3.4F, 1.2F, pit));
        return height;
    }

    static int number(float z) { return std::clamp(static_cast<int>(std::floor((z - 5.55F) / 1.15F)), 0, 4); }

    /// Camels one behind another along the crest, a guide in front.
    static void caravan(Vec3 p, Hit &hit) {
        const float near = box(p - Vec3{crest(8), 1.8F, 8}, {2.4F, 1.1F, 4.2F});
        if (near > 0.5F) {
            hit.join(near, Hide);
            return;
        }
        for (int i = 0; i < 5; ++i) {
            const float z = 6.1F + 1.15F * static_cast<float>(i);
            const float x = crest(z) - 0.12F;
            const float heading = std::atan2(crest(z + 0.4F) - crest(z - 0.4F), 0.8F);
            camel(turnY(p - Vec3{x, land(x, z) - 0.02F, z}, -heading) * 1.35F, i, hit);
        }
        const float z = 5.0F;
        const float x = crest(z) - 0.1F;
        walker((p - Vec3{x, land(x, z), z}) * (1 / 0.5F), Guide, 0.5F, hit);
    }

    /// About one unit tall, looks along -z.
    static void camel(Vec3 p, int i, Hit &hit) {
        const float near = length(p - Vec3{0, 0.55F, -0.1F}) - 0.85F;
        if (near > 0.2F) {
            hit.join(near * 0.74F, Hide);
            return;
        }
        const Vec3 q{std::fabs(p.x), p.y, p.z};
        float d = ellipsoid(p - Vec3{0, 0.58F, 0}, {0.17F, 0.19F, 0.36F});
        d = blend(d, ellipsoid(p - Vec3{0, 0.78F, 0.02F}, {0.09F, 0.16F, 0.15F}), 0.1F);
        d = blend(d, stick(p, {0, 0.6F, -0.3F}, {0, 0.52F, -0.5F}, 0.1F, 0.065F), 0.08F);
        d = blend(d, stick(p, {0, 0.52F, -0.5F}, {0, 0.92F, -0.62F}, 0.065F, 0.05F), 0.05F);
        d = blend(d, stick(p, {0, 0.94F, -0.62F}, {0, 0.89F, -0.8F}, 0.055F, 0.035F), 0.03F);
        const float step = 0.09F * ((p.x > 0) == (i % 2 == 0) ? 1.0F : -1.0F);
        d = std::min(d, stick(q, {0.09F, 0.5F, -0.25F}, {0.09F, 0.25F, -0.25F + 0.5F * step}, 0.06F, 0.035F));
        d = std::min(d, stick(q, {0.09F, 0.25F, -0.25F + 0.5F * step}, {0.09F, 0.0F, -0.25F + step}, 0.035F, 0.03F));
        d = std::min(d, stick(q, {0.09F, 0.5F, 0.26F}, {0.09F, 0.27F, 0.3F - 0.5F * step}, 0.075F, 0.035F));
        d = std::min(d, stick(q, {0.09F, 0.27F, 0.3F - 0.5F * step}, {0.09F, 0.0F, 0.26F - step}, 0.035F, 0.03F));
        d = std::min(d, stick(p, {0, 0.6F, 0.36F}, {0, 0.35F, 0.42F}, 0.015F));
        hit.join(d * 0.68F, Hide);
        const float cloth = std::max(
            {ellipsoid(p - Vec3{0, 0.6F, 0.02F}, {0.195F, 0.25F, 0.38F}), std::fabs(p.z - 0.02F) - 0.2F, 0.46F - p.y});
        hit.join(cloth * 0.65F, Blanket);
        hit.join(0.7F * box(q - Vec3{0.2F, 0.6F, 0.02F}, {0.06F, 0.09F, 0.12F}, 0.04F), Load);
    }

    static Vec3 inTent(Vec3 p) { return turnY(p - Vec3{-3.25F, 0.03F, 11.3F}, 0.75F); }

    static void oasis(Vec3 p, Hit &hit) {
        const float near = box(p - Vec3{-4.8F, 1.4F, 12.8F}, {3.6F, 2.2F, 2.6F});
        if (near > 0.5F) {
            hit.join(near, Trunk);
            return;
        }
        int i = 0;
        for (const auto &[x, z, tall, lean] : Palms) {
            palm(p - Vec3{x, land(x, z) - 0.05F, z}, Trunk, tall, lean, 1.7F * static_cast<float>(++i), hit);
        }
        const Vec3 tent = inTent(p);
        const float roof = 0.62F - 1.0F * std::fabs(tent.x) + 0.3F * tent.x * tent.x - 0.05F * std::cos(tent.z * 6);
        hit.join(0.6F * std::max({tent.y - roof, std::fabs(tent.z) - 0.52F, std::fabs(tent.x) - 0.75F}), Tent);
    }

    static Surface sand(Vec3 p, Vec3 n) {
        const float tone = fbm(p.x * 0.7F, p.z * 0.7F, 4);
        Vec3 look = mix(colour(0xB8692E), colour(0xDD9650), tone) * (0.9F + 0.2F * noise(p.x * 60, p.z * 60));
        look = look * (0.86F + 0.28F * hash(static_cast<int>(p.x * 300), static_cast<int>(p.z * 300)) * 0.5F + 0.07F);
        const float pit = length((p.x - Pool.x) * 0.8F, p.z - Pool.z);
        const float green = smoothStep(2.0F, 1.3F, pit + 0.5F * noise(p.x * 3, p.z * 3)) * smoothStep(0.6F, 0.9F, n.y);
        look = mix(look, mix(colour(0x3F6B24), colour(0x86A040), noise(p.x * 22, p.z * 22)), green);
        return {.colour = look};
    }
};

} // namespace

std::unique_ptr<Scene> dunes() {
    return std::make_unique<Dunes>();
}

} // namespace lumora::samples
