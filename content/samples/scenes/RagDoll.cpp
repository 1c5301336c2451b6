// A rag doll with button eyes and plaits of wool, by a window with flowered curtains.
#include "Scenes.h"

#include "Bodies.h"

#include <array>

namespace lumora::samples {

namespace {

enum Material { Skin, Wool, Button, Thread, Stitch, Nose, Dress, Lace, Ribbon, Table };

constexpr Vec3 HeadAt{0, 1.2F, 0};
constexpr Vec3 HeadHalf{0.88F, 0.86F, 0.74F};
constexpr Vec3 EyeAt{0.31F, 1.27F, -0.66F};

class RagDoll : public Scene {
  public:
    RagDoll() {
        camera = {{0.25F, 1.25F, -6}, {0.02F, 0.86F, 0}, 2.3F};
        sunDirection = normalise({-0.55F, 0.55F, -0.65F});
        sunColour = {2.3F, 2.1F, 1.8F};
        skyLight = {0.42F, 0.44F, 0.5F};
        groundLight = {0.24F, 0.19F, 0.14F};
        farthest = 14;
        caution = 0.8F;
        steps = 140;
        shadowReach = 3;
        shadowSoftness = 9;
        creviceSize = 0.2F;
        focus = 5.4F;
        aperture = 0.012F;
        strands = 420000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join(std::max(p.y + 0.95F, p.z - 2.6F), Table);
        const float far = box(p - Vec3{0, 0.5F, 0.1F}, {1.9F, 1.7F, 1.1F});
        if (far > 0.3F) {
            hit.join(far, Skin);
            return hit;
        }
        const Vec3 h{std::fabs(p.x), p.y, p.z};
        face(p, h, hit);
        hair(p, h, hit);
        clothes(p, h, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3, Vec3) const override {
        const Vec3 h{std::fabs(p.x), p.y, p.z};
        switch (material) {
        case Skin: {
            Vec3 look = mix(colour(0xD8B490), colour(0xEBCBA8), fbm(p * 3, 3));
            const float blush = length(h.x - 0.5F, p.y - 1.0F);
            look = mix(look, colour(0xD8706A), 0.55F * smoothStep(0.24F, 0.05F, blush) * (p.z < 0 ? 1.0F : 0.0F));
            return {.colour = look * cloth(p)};
        }
        case Wool:
            return {.colour = mix(colour(0x8A3410), colour(0xC05A1E), noise(p * 14))};
        case Button:
            return {.colour = colour(0x2A4A8A) * (0.9F + 0.2F * noise(p * 8)),
                    .shine = 0.7F,
                    .sharpness = 60,
                    .mirror = 0.03F};
        case Thread:
            return {.colour = colour(0xE8E0D0)};
        case Stitch:
            return {.colour = mix(colour(0xA81A26), colour(0xC83A3E), noise(p * 60))};
        case Nose:
            return {.colour = colour(0xC8442E) * cloth(p)};
        case Lace:
            return {.colour = colour(0xF0EBE0) * cloth(p), .sheer = 0.1F};
        case Ribbon:
            return {.colour = colour(0xC8303A) * cloth(p), .shine = 0.1F};
        case Dress:
            return {.colour = printed(p) * cloth(p)};
        default: {
            const float grainLine = fbm(p.x * 1.2F, p.z * 9, 4);
            return {.colour = mix(colour(0x7A5230), colour(0xB4885A), grainLine), .shine = 0.15F};
        }
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float side = std::atan2(d.x, d.z);
        Vec3 light = mix(colour(0xE8DCC4), colour(0xD2C0A0), smoothStep(-0.3F, 0.3F, side));
        // The window with the garden outside, between curtains.
        const float window = std::max(std::fabs(side + 0.20F) - 0.17F, std::fabs(d.y - 0.12F) - 0.22F);
        const float cross = std::min(std::fabs(side + 0.20F), std::fabs(d.y - 0.12F)) - 0.008F;
        Vec3 outside =
            mix(colour(0x6AA04A), colour(0xCDE8F6), smoothStep(0.0F, 0.16F, d.y + 0.08F * noise(side * 14, 3))) * 1.5F;
        static const std::array tints{colour(0xB8E070), colour(0xFFF0A0), colour(0xF0A0B8)};
        outside += bokeh(side * 16, d.y * 16, tints, 0.6F) * (0.5F * smoothStep(0.14F, 0.02F, d.y));
        light = mix(light, outside, smoothStep(0.004F, -0.004F, window));
        light = mix(light, colour(0xF4F0E6),
                    smoothStep(0.004F, -0.004F, std::min(std::fabs(window) - 0.012F, std::max(cross, window))));
        const float fold = 0.75F + 0.25F * std::sin(side * 90);
        const float curtain = std::min(std::fabs(side - 0.04F) - 0.06F, std::fabs(side + 0.42F) - 0.06F);
        return mix(light, mix(colour(0x8AA8C8), colour(0xC8D8E8), fold), smoothStep(0.006F, -0.006F, curtain));
    }

    float grain(int material, Vec3 p) const override {
        return material == Skin || material == Dress || material == Nose || material == Ribbon || material == Lace
                   ? 0.0006F * (std::sin(p.x * 330) + std::sin(p.y * 330)) + 0.012F * fbm(p * 5, 3)
                   : 0.0F;
    }

    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        const float other = fraction(chance * 733);
        const float light = 0.6F + 0.85F * fraction(chance * 4001);
        if (material == Wool) { // single threads of the wool
            if (chance > 0.25F) {
                return {};
            }
            const bool plait = p.y < 0.78F;
            const float part = p.x < 0 ? -1.0F : 1.0F;
            const Vec3 way = plait ? Vec3{part * 0.5F * std::sin(p.y * 21), -1, 0}
                                   : Vec3{part * (0.9F - 0.3F * std::fabs(p.x)), -0.35F - std::fabs(p.x), -0.1F};
            Vec3 along = normalise(way - n * dot(way, n));
            along = normalise(along + cross(n, along) * (0.25F * (other - 0.5F)) + n * 0.08F);
            const float reach = plait ? 0.14F : 0.30F;
            return {.tip = along * reach,
                    .sag = n * 0.03F,
                    .width = 0.032F,
                    .blunt = 0.7F,
                    .order = p.y - 0.3F * std::fabs(p.x) + 0.1F * other,
                    .solid = 0.9F,
                    .tint = {light, light, light}};
        }
        if ((material == Skin || material == Dress) && chance < 0.12F) { // fluff on the cloth
            return {.tip = normalise(n + Vec3{other - 0.5F, fraction(chance * 97) - 0.5F, 0}) * 0.03F,
                    .width = 0.003F,
                    .solid = 0.25F,
                    .tint = {light, light, light}};
        }
        return {};
    }

  private:
    static float cloth(Vec3 p) {
        return 0.9F + 0.04F * std::sin(p.x * 330) * std::sin(p.y * 330) + 0.1F * (noise(p * 20) - 0.5F);
    }

    static Vec3 printed(Vec3 p) {
        const Cell dot = cells(p.x * 4.4F, p.y * 4.4F + 0.6F * p.z, 0.25F);
        return mix(colour(0x3A6AA8), colour(0xF2EEE4), smoothStep(0.24F, 0.20F, dot.distance));
    }

    static void face(Vec3 p, Vec3 h, Hit &hit) {
        float head = ellipsoid(p - HeadAt, HeadHalf);
        head = blend(head, ellipsoid(h - Vec3{0.38F, 0.98F, -0.2F}, {0.42F, 0.38F, 0.42F}), 0.2F);
        head = blend(head, stick(p, {0, 0.1F, 0.05F}, {0, 0.6F, 0.05F}, 0.26F, 0.26F), 0.12F);
        head += 0.012F * smoothStep(0.03F, 0.0F, h.x) * smoothStep(0.5F, 0.9F, p.y); // the seam
        const Vec3 e = turnX(turnY(h - EyeAt, 0.36F), -0.04F);
        head += 0.05F * smoothStep(0.26F, 0.1F, length(e)); // the buttons pull the cloth in
        hit.join(head * 0.8F, Skin);
        float button = rodZ(e, 0.165F, 0.035F, 0.02F);
        button = blend(button, ringZ(e - Vec3{0, 0, -0.035F}, 0.14F, 0.022F), 0.02F);
        for (const float x : {-0.045F, 0.045F}) {
            for (const float y : {-0.045F, 0.045F}) {
                button = carve(button, length(e.x - x, e.y - y) - 0.02F, 0.008F);
            }
        }
        hit.join(button * 0.8F, Button);
        hit.join(std::min(stick(e, {-0.045F, -0.045F, -0.045F}, {0.045F, 0.045F, -0.045F}, 0.011F),
                          stick(e, {-0.045F, 0.045F, -0.045F}, {0.045F, -0.045F, -0.045F}, 0.011F)),
                 Thread);
        const Vec3 nose = p - Vec3{0, 1.06F, -0.76F};
        hit.join(blend(ellipsoid(nose, {0.095F, 0.075F, 0.06F}),
                       ellipsoid(nose + Vec3{0, 0.05F, 0}, {0.05F, 0.06F, 0.05F}), 0.05F),
                 Nose);
        // A smile of stitches; lashes above the buttons.
        float stitches = 9;
        for (int i = 0; i < 9; ++i) {
            const float a = 0.115F * (static_cast<float>(i) - 4);
            const Vec3 at{0.56F * std::sin(a), 1.28F - 0.50F * std::cos(a), 0};
            const float z = onFace(at.x, at.y);
            stitches = std::min(stitches, stick(p, {at.x - 0.027F * std::cos(a), at.y - 0.027F * std::sin(a), z},
                                                {at.x + 0.027F * std::cos(a), at.y + 0.027F * std::sin(a), z}, 0.016F));
        }
        for (int i = 0; i < 3; ++i) {
            const float a = 0.5F * (static_cast<float>(i) - 0.6F);
            const Vec3 from{0.20F * std::sin(a), 0.20F * std::cos(a), -0.0F};
            stitches = std::min(stitches, stick(e, from, from * 1.5F, 0.012F));
        }
        hit.join(stitches, Stitch);
    }

    /// The z of the face in front, where the mouth is sewn.
    static float onFace(float x, float y) {
        const float u = x / 0.80F;
        const float v = (y - 1.1F) / 0.82F;
        return -0.72F * std::sqrt(std::max(0.0F, 1 - u * u - v * v)) - 0.01F;
    }

    static void hair(Vec3 p, Vec3 h, Hit &hit) {
        // A cap of wool, parted in the middle, open over the face.
        const float cap = ellipsoid(p - HeadAt - Vec3{0, 0.08F, 0.08F}, HeadHalf + Vec3{0.10F, 0.10F, 0.10F});
        const float open = length(h.x / 0.78F, (p.y - 1.02F) / 0.66F) - 1;
        float wool = std::max(cap, -std::max(-open * -0.6F, p.z - 0.1F));
        wool = std::max(wool, 0.55F - p.y);
        wool += 0.03F * smoothStep(0.04F, 0.0F, h.x);
        // Plaits that hang over the shoulders.
        for (int i = 0; i < 7; ++i) {
            const auto k = static_cast<float>(i);
            const Vec3 at{0.98F + 0.03F * k, 0.72F - 0.155F * k, -0.12F - 0.03F * k};
            wool = blend(wool, ellipsoid(turnZ(h - at, i % 2 == 0 ? 0.5F : -0.5F), {0.165F, 0.11F, 0.14F}), 0.03F);
        }
        wool = std::min(wool, stick(h, {1.19F, -0.42F, -0.32F}, {1.24F, -0.66F, -0.34F}, 0.07F, 0.15F));
        hit.join(wool * 0.7F, Wool);
        const Vec3 r = h - Vec3{1.18F, -0.36F, -0.32F};
        float bow = ellipsoid(r, {0.12F, 0.08F, 0.14F});
        for (const float s : {-1.0F, 1.0F}) {
            bow = blend(bow, ellipsoid(turnZ(r - Vec3{0.17F * s, 0.03F, -0.10F}, 0.35F * s), {0.15F, 0.10F, 0.05F}),
                        0.03F);
        }
        hit.join(bow * 0.8F, Ribbon);
    }

    static void clothes(Vec3 p, Vec3 h, Hit &hit) {
        const float folds = 0.025F * std::sin(std::atan2(p.x, -p.z) * 16) * smoothStep(0.2F, -0.6F, p.y);
        float dress = ellipsoid(p - Vec3{0, -0.55F, 0.1F}, {0.92F, 0.85F, 0.62F}) + folds;
        dress = blend(
            dress, limb(h, {0.5F, 0.0F, 0.05F}, {0.98F, -0.25F, -0.05F}, {1.18F, -0.85F, -0.25F}, 0.26F, 0.24F, 0.22F),
            0.12F);
        hit.join(dress * 0.7F, Dress);
        // A ruffled collar.
        const float angle = std::atan2(p.x, -p.z);
        const float out = length(p.x * 0.95F, (p.z - 0.05F) * 1.15F);
        const float wave = 0.05F * std::sin(angle * 17) * smoothStep(0.3F, 0.6F, out);
        hit.join(std::max({std::fabs(p.y - 0.27F + 0.42F * (out - 0.3F) + wave) - 0.018F,
                           out - 0.64F - 0.02F * std::cos(angle * 34), 0.2F - out}) *
                     0.55F,
                 Lace);
    }
};

} // namespace

std::unique_ptr<Scene> ragDoll() {
    return std::make_unique<RagDoll>();
}

} // namespace lumora::samples
