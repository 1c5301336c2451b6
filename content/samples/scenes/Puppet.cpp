// A wooden puppet on strings: a jester with bells, before the curtain of a small theatre.
#include "Scenes.h"

#include "Bodies.h"

namespace lumora::samples {

namespace {

enum Material { Wood, EyeBall, Hat, Bell, Ruff, Coat, String, Floor };

constexpr Vec3 EyeAt{0.30F, 1.30F, -0.60F};

class Puppet : public Scene {
  public:
    Puppet() {
        camera = {{0.2F, 1.25F, -6}, {0, 0.95F, 0}, 2.25F};
        sunDirection = normalise({0.45F, 0.6F, -0.66F});
        sunColour = {2.5F, 2.25F, 1.8F};
        skyLight = {0.34F, 0.30F, 0.30F};
        groundLight = {0.22F, 0.14F, 0.10F};
        farthest = 14;
        caution = 0.8F;
        steps = 150;
        shadowReach = 3;
        shadowSoftness = 9;
        creviceSize = 0.2F;
        focus = 5.4F;
        aperture = 0.010F;
        vignette = 0.4F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        const float far = box(p - Vec3{0, 1.0F, 0.1F}, {1.8F, 2.6F, 1.1F});
        if (far > 0.3F) {
            hit.join(far, Wood);
            return hit;
        }
        const Vec3 h{std::fabs(p.x), p.y, p.z};
        head(p, h, hit);
        hat(p, h, hit);
        costume(p, h, hit);
        float strings = stick(h, {0.62F, 1.62F, 0.1F}, {0.52F, 3.6F, 0.1F}, 0.009F);
        strings = std::min(strings, stick(h, {1.32F, -0.06F, -0.62F}, {1.0F, 3.6F, -0.1F}, 0.009F));
        hit.join(strings, String);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3, Vec3) const override {
        const Vec3 h{std::fabs(p.x), p.y, p.z};
        const float weave = 0.93F + 0.05F * std::sin(p.x * 260) * std::sin(p.y * 260);
        switch (material) {
        case Wood:
            return carved(p, h);
        case EyeBall: {
            const Vec3 e = (h - EyeAt) * (1 / 0.145F);
            const float r = length(e.x + 0.05F, e.y);
            Vec3 look = colour(0xF4EEE0);
            look = mix(look, colour(0x2A6AA8), smoothStep(0.60F, 0.55F, r));
            look = mix(look, colour(0x0C0A0A),
                       std::max(smoothStep(0.34F, 0.30F, r), r < 0.62F ? smoothStep(0.52F, 0.58F, r) : 0.0F));
            look = mix(look, colour(0xFFFFFF), smoothStep(0.12F, 0.08F, length(e.x - 0.1F, e.y - 0.2F)));
            return {.colour = look, .shine = 0.9F, .sharpness = 120, .mirror = 0.02F};
        }
        case Hat:
            return {.colour =
                        (p.x < 0 ? colour(0x1E6A4A) : colour(0xC23026)) * (weave * (0.85F + 0.25F * fbm(p * 5, 3))),
                    .shine = 0.12F,
                    .sharpness = 8};
        case Bell:
            return {
                .colour = colour(0xA87820), .shine = 1.4F, .sharpness = 60, .mirror = 0.3F, .tint = {1, 0.8F, 0.42F}};
        case Ruff:
            return {.colour = colour(0xF0E9DA) * weave, .sheer = 0.15F};
        case String:
            return {.colour = colour(0xD8CDB8)};
        default: {
            const Vec3 q = turnZ(p, Pi / 4);
            const bool one =
                (static_cast<int>(std::floor(q.x / 0.30F)) + static_cast<int>(std::floor(q.y / 0.30F))) % 2 == 0;
            const float seam = std::min(std::fabs(repeat(q.x, 0.30F)), std::fabs(repeat(q.y, 0.30F)));
            return {.colour = mix(colour(0xE0B040), one ? colour(0xB82A28) : colour(0x24508A),
                                  smoothStep(0.008F, 0.016F, seam)) *
                              (weave * (0.85F + 0.25F * fbm(p * 5, 3))),
                    .shine = 0.12F,
                    .sharpness = 8};
        }
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float side = std::atan2(d.x, std::max(std::fabs(d.z), 0.05F));
        // A velvet curtain in heavy folds; the spot lights its middle.
        const float fold = side * 46 + 1.3F * noise(side * 9, d.y * 2.5F) + 1.2F * std::sin(side * 13);
        const float light =
            0.30F + 0.55F * std::pow(0.5F + 0.5F * std::sin(fold), 1.6F) + 0.12F * std::sin(fold * 0.5F);
        const float spot = smoothStep(0.62F, 0.05F, length(side - 0.04F, (d.y + 0.02F) * 1.1F));
        return colour(0x8A1418) * (light * mix(0.35F, 1.5F, spot));
    }

    float grain(int material, Vec3 p) const override {
        return material == Wood                      ? 0.004F * fbm(Vec3{p.x * 14, p.y * 4, p.z * 14}, 3)
               : material == Hat || material == Coat ? 0.012F * fbm(p * 5, 3)
                                                     : 0.0F;
    }

  private:
    static void head(Vec3 p, Vec3 h, Hit &hit) {
        float d = ellipsoid(p - Vec3{0, 1.28F, 0}, {0.72F, 0.72F, 0.68F});
        d = blend(d, ellipsoid(p - Vec3{0, 0.92F, -0.12F}, {0.50F, 0.42F, 0.50F}), 0.25F);
        d = blend(d, ellipsoid(h - Vec3{0.36F, 1.06F, -0.46F}, {0.20F, 0.17F, 0.16F}), 0.14F); // cheeks
        d = blend(d, stick(p, {0, 1.26F, -0.60F}, {0, 1.10F, -0.94F}, 0.085F, 0.125F), 0.07F); // the nose
        d = blend(d, ellipsoid(p - Vec3{0, 0.62F, -0.50F}, {0.20F, 0.15F, 0.15F}), 0.12F);     // chin
        const Vec3 e = h - EyeAt;
        d = blend(d, ellipsoid(turnZ(e - Vec3{0.02F, 0.21F, 0.0F}, -0.15F), {0.21F, 0.06F, 0.09F}), 0.06F);
        d = carve(d, sphere(e - Vec3{0, 0, -0.03F}, 0.148F), 0.03F);
        // The jaw moves: a cut on each side of the mouth.
        const float jaw = std::max(std::fabs(h.x - 0.235F) - 0.008F, std::fabs(p.y - 0.66F) - 0.17F);
        const float mouth =
            ellipsoid(turnX(p - Vec3{0, 0.80F + 0.55F * p.x * p.x, -0.62F}, 0.0F), {0.25F, 0.035F, 0.2F});
        d = carve(carve(d, std::max(jaw, p.z + 0.2F), 0.01F), mouth, 0.02F);
        d = blend(d, ellipsoid(h - Vec3{0.72F, 1.16F, 0.0F}, {0.07F, 0.17F, 0.12F}), 0.05F); // ears
        d = std::min(d, rodY(p - Vec3{0, 0.4F, 0.05F}, 0.2F, 0.25F));
        hit.join(d * 0.85F, Wood);
        hit.join(sphere(e, 0.145F), EyeBall);
        // Hands hang from the strings.
        float hand = ellipsoid(h - Vec3{1.33F, -0.16F, -0.62F}, {0.12F, 0.13F, 0.08F});
        for (int i = 0; i < 4; ++i) {
            const auto k = static_cast<float>(i);
            hand = blend(hand,
                         stick(h, {1.25F + 0.05F * k, -0.10F, -0.64F},
                               {1.19F + 0.10F * k, 0.10F - 0.02F * std::fabs(k - 1.5F), -0.66F}, 0.035F, 0.028F),
                         0.02F);
        }
        hand = blend(hand, stick(h, {1.24F, -0.2F, -0.64F}, {1.08F, -0.10F, -0.70F}, 0.04F, 0.03F), 0.02F);
        hit.join(hand * 0.85F, Wood);
    }

    static void hat(Vec3 p, Vec3 h, Hit &hit) {
        const OnCurve horn = curve(h, {0.28F, 1.72F, 0.05F}, {0.75F, 2.65F, 0.1F}, {1.35F, 1.86F, -0.1F});
        float d = std::max(ellipsoid(p - Vec3{0, 1.45F, 0.06F}, {0.80F, 0.66F, 0.76F}), 1.56F + 0.12F * p.z - p.y);
        d = blend(d, horn.distance - mix(0.36F, 0.05F, horn.along), 0.12F);
        const float brim =
            length(length(p.x / 0.80F, (p.z - 0.05F) / 0.76F) - 0.98F, (p.y - 1.57F - 0.12F * p.z) / 0.78F) * 0.76F -
            0.075F;
        hit.join(d * 0.75F, Hat);
        hit.join(brim, Ruff);
        const Vec3 b = h - Vec3{1.39F, 1.74F, -0.12F};
        float bell = sphere(b, 0.12F);
        bell = carve(bell, box(b - Vec3{0, -0.08F, 0}, {0.014F, 0.1F, 0.2F}), 0.01F);
        hit.join(std::min(bell, ringZ(turnX(b, Pi / 2), 0.12F, 0.018F)), Bell);
    }

    static void costume(Vec3 p, Vec3 h, Hit &hit) {
        float coat = ellipsoid(p - Vec3{0, -0.55F, 0.1F}, {0.86F, 0.95F, 0.58F});
        coat = blend(coat,
                     limb(h, {0.55F, 0.02F, 0.08F}, {1.16F, -0.52F, 0.0F}, {1.32F, -0.28F, -0.55F}, 0.24F, 0.2F, 0.19F),
                     0.12F);
        hit.join(coat * 0.8F, Coat);
        hit.join(length(length(h.x - 1.32F, h.z + 0.56F) - 0.17F, h.y + 0.27F) - 0.055F, Ruff);
        for (int layer = 0; layer < 2; ++layer) {
            const auto k = static_cast<float>(layer);
            const float angle = std::atan2(p.x, -p.z);
            const float out = length(p.x * 0.9F, (p.z - 0.03F) * 1.1F);
            const float wave = 0.075F * std::sin(angle * 13 + 2 * k) * smoothStep(0.2F, 0.6F, out);
            hit.join(std::max({std::fabs(p.y - 0.32F + 0.13F * k + 0.30F * (out - 0.3F) + wave) - 0.02F,
                               out - 0.70F - 0.07F * k, 0.15F - out}) *
                         0.5F,
                     Ruff);
        }
        for (int i = 0; i < 3; ++i) {
            hit.join(sphere(p - Vec3{0, -0.35F - 0.3F * static_cast<float>(i), -0.50F}, 0.075F), Bell);
        }
    }

    static Surface carved(Vec3 p, Vec3 h) {
        const float rings = fbm(Vec3{p.x * 7 + 0.5F * std::sin(p.y * 3), p.y * 1.1F, p.z * 7}, 4);
        Vec3 look = mix(colour(0xB88450), colour(0xE2BC88), rings);
        look = look * (0.86F + 0.2F * noise(p.x * 50, p.y * 7 + p.z * 20));
        if (p.z < -0.2F && p.y > 0.4F && h.x < 1) {
            look = mix(look, colour(0xC84838),
                       0.65F * smoothStep(0.19F, 0.06F, length(h.x - 0.42F, p.y - 1.05F))); // painted cheeks
            look = mix(look, colour(0xC23A30),
                       0.75F * smoothStep(0.12F, 0.07F, length(p.x, p.y - 1.09F)) * smoothStep(-0.82F, -0.9F, p.z));
            const float lips = length(p.x / 0.30F, (p.y - 0.80F - 0.55F * p.x * p.x) / 0.075F);
            look = mix(look, colour(0xA82A26), smoothStep(1.1F, 0.95F, lips));
            look = mix(look, colour(0x240C0A), smoothStep(0.72F, 0.55F, lips) * smoothStep(-0.62F, -0.56F, p.z));
            const Vec3 e = turnZ(h - EyeAt - Vec3{0.02F, 0.22F, 0}, -0.15F);
            look = mix(look, colour(0x3A2214), smoothStep(1.0F, 0.85F, length(e.x / 0.20F, e.y / 0.05F)));
        }
        return {.colour = look, .shine = 0.35F, .sharpness = 30, .mirror = 0.015F};
    }
};

} // namespace

std::unique_ptr<Scene> puppet() {
    return std::make_unique<Puppet>();
}

} // namespace lumora::samples
