// A rocky coast on a summer afternoon, seen from the air: beaches, woods, a lighthouse, sails on the sea.
#pragma once

#include "Machinery.h"
#include "Skies.h"

namespace lumora::samples {

/// A scene over this coast adds what flies there, with materials from CoastEnd on.
class Coast : public Scene {
  public:
    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.9F);
        Vec3 light = mix(colour(0xDDF0FA), mix(colour(0x62ADEB), colour(0x1E5FBC), smoothStep(0.2F, 1, up)),
                         smoothStep(-0.02F, 0.32F, up));
        const Cloud cloud = clouds(d, sunDirection, 0.42F, 0.9F, 3.4F);
        light = mix(light, mix(colour(0xC4D2E6), colour(0xFFFEF8) * 1.25F, cloud.lit), cloud.amount * 0.8F);
        light = cumulus(light, d, Heaps, colour(0xFFFDF6) * 1.3F, colour(0xA9BBD6));
        return light + sunGlow(d, sunDirection, sunColour) * 0.35F;
    }

    Vec3 waterNormal(Vec3 p, float distance) const override {
        const float ripple = 0.22F / (1 + 0.004F * distance);
        const float a = fbm(p.x * 0.3F, p.z * 0.5F, 4);
        const float b = fbm(p.x * 0.3F + 9, p.z * 0.5F, 4);
        return normalise({ripple * (a - 0.47F) * 0.7F, 1, ripple * (b - 0.47F)});
    }

  protected:
    enum CoastMaterial { Land, Canvas, Tower, Roof, Hull, Lantern, CoastEnd };
    static constexpr float Sea = -42;

    Coast() {
        sunDirection = normalise({-0.45F, 0.68F, -0.58F});
        sunColour = {3.2F, 2.9F, 2.45F};
        skyLight = {0.44F, 0.55F, 0.78F};
        groundLight = {0.12F, 0.2F, 0.24F};
        farthest = 900;
        waterLevel = Sea;
        waterColour = {0.008F, 0.11F, 0.2F};
    }

    void coast(Vec3 p, Hit &hit) const {
        hit.join(p.y > -14 ? p.y + 15 : (p.y - landHeight(p)) * 0.5F, Land);
        lighthouse(p - Vec3{-37, -24.2F, 92}, hit);
        boats(p, hit);
    }

    static Surface coastLook(int material, Vec3 p, Vec3 n) {
        switch (material) {
        case Land:
            return land(p, n);
        case Hull:
            return {.colour = colour(0xA86A32), .shine = 0.6F};
        case Lantern:
            return pane();
        case Roof:
            return {.colour = colour(0xC4432E) * mix(0.7F, 1.1F, noise(p * 3)), .shine = 0.1F};
        case Canvas:
            return {.colour = colour(0xFFF8EA), .sheer = 0.4F};
        default:
            return {.colour = std::fmod(p.y + 60, 5.2F) < 2.6F ? colour(0xF7F2E6) : colour(0xD8362A), .shine = 0.2F};
        }
    }

    /// What grows on the land: foliage of the woods, crops, dune grass.
    Strand growth(Vec3 p, Vec3 n, float chance) const {
        const float far = length(p - camera.eye);
        const float in = inland(p.x, p.z);
        if (far > 420 || in < 5 || (n.y < 0.6F && woods(p, in) < 0.3F)) {
            return {};
        }
        const float other = fraction(chance * 733);
        const float turn = 2 * Pi * fraction(chance * 331);
        const float light = 0.55F + fraction(chance * 4001);
        const Vec3 around{std::cos(turn), 0.3F, std::sin(turn)};
        const bool tree = woods(p, in) > 0.3F;
        const float tall = tree ? 0.7F + 0.7F * other : p.y > Sea + 2.2F ? 0.35F + 0.3F * other : 0.2F;
        return {.tip = normalise((tree ? n : Vec3{0, 1, 0}) + around * (tree ? 1.0F : 0.6F)) * tall,
                .width = tree ? 0.55F : 0.12F,
                .blunt = tree ? 0.7F : 0.2F,
                .order = -far,
                .tint = {light, light, light * 0.85F}};
    }

    Vec3 seaAir(Vec3 light, Vec3 from, Vec3 d, float distance) const {
        light = foam(light, from, d, distance);
        return haze(light, *this, d, distance < farthest - 1 ? distance : 30.0F, 620, colour(0xB8D9F2),
                    colour(0xFFF0D0));
    }

  private:
    static constexpr Heap Heaps[] = {{-0.4F, 0.15F, 0.17F, 0.075F}, {-0.02F, 0.11F, 0.12F, 0.045F},
                                     {0.31F, 0.125F, 0.17F, 0.07F}, {-0.62F, 0.12F, 0.14F, 0.06F},
                                     {0.62F, 0.1F, 0.15F, 0.055F},  {0.13F, 0.05F, 0.1F, 0.02F},
                                     {-0.2F, 0.06F, 0.1F, 0.02F},   {0.45F, 0.045F, 0.1F, 0.02F}};

    /// Towards land positive, out to sea negative; bays and headlands.
    static float inland(float x, float z) {
        return -x - 16 + 0.1F * z + 38 * (fbm(x * 0.011F + 4.1F, z * 0.011F + 1.3F, 4) - 0.47F) * 2;
    }

    static float landHeight(Vec3 p) {
        const float in = inland(p.x, p.z);
        if (in < -40) {
            return Sea - 8;
        }
        float height = Sea + mix(-3.4F, 0.7F, std::pow(clamp01((in + 26) / 28), 0.8F)) + 0.6F * smoothStep(0, 8, in);
        const float cliff = smoothStep(0.36F, 0.5F, fbm(p.x * 0.016F + 8, p.z * 0.012F, 3));
        const float rough = fbm(p.x * 0.12F, p.z * 0.12F, 4);
        height += cliff * smoothStep(2, 7 + 4 * rough, in) * (8 + 7 * rough);
        height += smoothStep(10, 90, in) * 22 * fbm(p.x * 0.014F, p.z * 0.014F, 3);
        height = mix(height, -23.9F, headland(p));
        const float wood = woods(p, in);
        if (wood > 0) {
            const Cell tree = cells(p.x * 0.3F, p.z * 0.3F);
            height += wood * std::sqrt(std::max(0.0F, 1 - tree.distance * tree.distance * 2.6F)) *
                      (2.0F + 1.6F * tree.id + 0.9F * fbm(p * 0.9F, 2));
        }
        return height;
    }

    /// Level, bare ground under the lighthouse.
    static float headland(Vec3 p) {
        return smoothStep(14, 9, length(p.x + 35, p.z - 91) + 4 * fbm(p.x * 0.3F, p.z * 0.3F, 3));
    }

    static float woods(Vec3 p, float in) {
        return smoothStep(0.47F, 0.53F, fbm(p.x * 0.028F + 3, p.z * 0.028F, 3)) * smoothStep(14, 20, in) *
               (1 - headland(p));
    }

    static Surface land(Vec3 p, Vec3 n) {
        const float in = inland(p.x, p.z);
        const float rough = fbm(p * 0.5F, 4);
        Vec3 ground = mix(colour(0xCDB27C), colour(0xF3E4BC), rough * smoothStep(Sea + 0.2F, Sea + 0.9F, p.y));
        ground = ground * (0.8F + 0.35F * noise(p.x * 1.1F, p.z * 1.1F));
        ground = mix(ground, colour(0x9AA65A),
                     0.8F * smoothStep(0.5F, 0.62F, fbm(p.x * 0.2F, p.z * 0.2F, 4)) * smoothStep(4, 9, in));
        if (p.y > Sea + 2.2F) {
            const float field = cells(p.x * 0.035F, p.z * 0.035F).id;
            const Vec3 fields[] = {colour(0x6FA338), colour(0x8DB544), colour(0xD8C25A), colour(0x5A9136),
                                   colour(0xB7C24E)};
            ground = fields[static_cast<int>(field * 89) % 5] * (0.7F + 0.5F * noise(p.x * 0.8F, p.z * 0.8F));
            const float turn = 6 * field;
            ground = ground *
                     mix(0.8F, 1.0F,
                         smoothStep(0.1F, 0.4F,
                                    std::fabs(fraction((p.x * std::cos(turn) + p.z * std::sin(turn)) / 1.8F) - 0.5F)));
            ground = mix(mix(colour(0x8E7A62), colour(0xD9C7A4), fbm(Vec3{p.x * 0.2F, p.y * 1.1F, p.z * 0.2F}, 4)),
                         ground, smoothStep(0.6F, 0.8F, n.y));
        }
        const float wood = woods(p, in);
        ground = mix(ground, mix(colour(0x1E4F22), colour(0x5B8E33), noise(p * 0.9F)), smoothStep(0.3F, 0.6F, wood));
        return {.colour = ground * 0.72F, .sheer = 0.08F};
    }

    /// White water along the beaches.
    Vec3 foam(Vec3 light, Vec3 from, Vec3 d, float distance) const {
        if (d.y > -0.01F) {
            return light;
        }
        const float t = (Sea - from.y) / d.y;
        if (t < 0 || std::fabs(t - distance) > 0.5F) {
            return light;
        }
        const Vec3 p = from + d * t;
        const float in = inland(p.x, p.z) + 2.5F * (fbm(p.x * 0.25F, p.z * 0.25F, 3) - 0.5F);
        const float shoal = smoothStep(-48, -2, in + 14 * (fbm(p.x * 0.05F, p.z * 0.05F, 3) - 0.5F));
        light = mix(light, colour(0x27BFC0) * 0.8F, 0.55F * shoal * smoothStep(-0.03F, -0.3F, d.y));
        const float crest = smoothStep(0.66F, 0.76F, fbm(p.x * 0.22F, p.z * 0.6F, 4)) * noise(p.x * 0.9F, p.z * 1.8F);
        light = mix(light, Vec3{1, 1, 1} * 1.2F, 0.6F * crest);
        const float wave = std::max(smoothStep(1.4F, 0.3F, std::fabs(in - 0.2F)),
                                    0.7F * smoothStep(0.9F, 0.2F, std::fabs(in + 4.2F)) *
                                        smoothStep(0.42F, 0.6F, noise(p.x * 0.2F, p.z * 0.2F)));
        return mix(light, Vec3{1, 1, 1} * 1.5F, wave * (0.55F + 0.4F * noise(p.x * 1.5F, p.z * 1.5F)));
    }

    static void lighthouse(Vec3 p, Hit &hit) {
        const float near = box(p - Vec3{1, 4, 0}, {7, 15, 6});
        if (near > 2) {
            hit.join(near, Tower);
            return;
        }
        hit.join(cone(p + Vec3{0, 7, 0}, 2.1F, 1.2F, 20), Tower);
        const Vec3 house = turnY(p - Vec3{5.2F, 2, -1.5F}, 0.4F);
        hit.join(box(house, {2.4F, 2.4F, 1.6F}), Canvas);
        hit.join(
            std::max({std::fabs(house.z) * 0.6F + house.y * 0.8F - 2.9F, 2.3F - house.y, std::fabs(house.x) - 2.7F}),
            Roof);
        hit.join(rodY(p - Vec3{0, 13.2F, 0}, 1.9F, 0.25F), Canvas);
        hit.join(rodY(p - Vec3{0, 14.4F, 0}, 0.95F, 1.1F), Lantern);
        hit.join(cone(p - Vec3{0, 15.4F, 0}, 1.4F, 0.1F, 1.4F), Roof);
    }

    static void boats(Vec3 p, Hit &hit) {
        if (p.y > Sea + 8) {
            return;
        }
        for (const Vec3 at : {Vec3{22, Sea, 95}, Vec3{44, Sea, 150}, Vec3{9, Sea, 190}, Vec3{80, Sea, 230}}) {
            const Vec3 q = turnY(p - at, 0.5F);
            hit.join(std::max(ellipsoid(q, {3, 0.9F, 1}), q.y - 0.6F), Hull);
            const float sail = std::max({q.y * 0.42F + q.x - 2.2F, -q.x - 0.1F, 0.9F - q.y, std::fabs(q.z) - 0.06F});
            const float jib = std::max({q.y * 0.35F - q.x - 2.4F, q.x + 0.3F, 0.9F - q.y, std::fabs(q.z) - 0.06F});
            hit.join(std::min(sail, jib), Canvas);
        }
    }
};

} // namespace lumora::samples
