// A red-eyed tree frog on a wet leaf in the rain forest, a bromeliad in bloom behind it.
#include "Scenes.h"

#include "Bodies.h"

#include <array>

namespace lumora::samples {

namespace {

enum Material { Leaf, Drop, Bract, Torso, Limb, Foot, Eye };

constexpr Vec3 EyeAt{0.70F, 1.02F, 0.37F};
constexpr float EyeSize = 0.215F;
constexpr Vec3 Flower{1.95F, -0.9F, 2.3F};

class TreeFrog : public Scene {
  public:
    TreeFrog() {
        camera = {{-1.35F, 1.35F, -4.6F}, {0.2F, 0.62F, 0.0F}, 2.4F};
        sunDirection = normalise({-0.55F, 0.8F, -0.42F});
        sunColour = {2.7F, 2.5F, 2.1F};
        skyLight = {0.42F, 0.56F, 0.5F};
        groundLight = {0.24F, 0.32F, 0.15F};
        farthest = 16;
        caution = 0.75F;
        steps = 170;
        shadowReach = 3;
        shadowSoftness = 9;
        creviceSize = 0.25F;
        bloom = 0.18F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        const float above = p.y - leafHeight(p.x, p.z);
        hit.join(std::max(std::fabs(above) - 0.014F, (std::fabs(along(p.x, p.z).z) - halfWidth(p.x, p.z)) * 0.6F),
                 Leaf);
        if (above < 0.3F && above > -0.1F) {
            hit.join(drops(p, above), Drop);
        }
        frog(local(p), hit);
        bromeliad(p - Flower, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3 d) const override {
        const Vec3 q = local(p);
        switch (material) {
        case Torso:
            return torso(q, n);
        case Limb:
            return limbs(q, n);
        case Foot:
            return {.colour = mix(colour(0xE8590C), colour(0xFFA02A), noise(q * 7)),
                    .shine = 0.6F,
                    .sharpness = 60,
                    .mirror = 0.02F,
                    .sheer = 0.2F};
        case Eye:
            return eye(q);
        case Bract: {
            const Vec3 b = p - Flower;
            const float r = length(b.x, b.z);
            const float streak = noise(std::atan2(b.x, b.z) * 30, r * 2);
            const Vec3 red = mix(colour(0xC4104A), colour(0xFF3D7F), smoothStep(0.2F, 1.3F, r) * 0.7F + 0.3F * streak);
            return {.colour = mix(red, colour(0xFFC23A), smoothStep(0.95F, 1.45F, r + 0.1F * streak)),
                    .shine = 0.35F,
                    .sharpness = 40,
                    .mirror = 0.02F,
                    .sheer = 0.45F};
        }
        case Drop: {
            const Vec3 bent = normalise(d * 0.75F - n * 0.35F);
            const Vec3 under = p + bent * 0.13F;
            const float gathered =
                smoothStep(-0.1F, 0.9F, -dot(n, normalise({sunDirection.x, -0.15F, sunDirection.z})));
            return {.colour = {},
                    .shine = 2.2F,
                    .sharpness = 500,
                    .mirror = 0.05F,
                    .glow = leafColour(under.x, under.z) * (1.5F + 4.5F * gathered * gathered)};
        }
        default:
            return {.colour = leafColour(p.x, p.z), .shine = 0.35F, .sharpness = 40, .mirror = 0.012F, .sheer = 0.5F};
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float side = std::atan2(d.x, d.z);
        const float up = d.y;
        Vec3 light = mix(colour(0x05231F), colour(0x1E6B4A), smoothStep(-0.5F, 0.5F, up + 0.3F * noise(side * 3, 2)));
        // Great leaves far out of focus: strokes one way, and darker ones across.
        const float stroke = fbm(side * 4.2F + up * 1.6F + 4, up * 2.2F - side * 1.7F, 2) * 1.33F;
        const float across = noise(side * 3.5F - up * 3.1F + 9, up * 1.5F + side * 1.2F);
        light = mix(light, colour(0x6DB53E), smoothStep(0.5F, 0.72F, stroke) * 0.8F);
        light = light * mix(0.35F, 1.1F, smoothStep(0.25F, 0.5F, across));
        light += colour(0xFFF0B0) * (0.5F * smoothStep(0.42F, 0.0F, length(side + 0.12F, (up - 0.2F) * 1.2F)));
        static const std::array tints{colour(0xFF5FA8), colour(0xFFB04A), colour(0xB6F07A), colour(0x7AE0D0),
                                      colour(0xFFE88A)};
        light += bokeh(side * 5.5F, up * 5.5F, tints, 0.35F) * 0.25F;
        return light + Vec3{1.2F, 1.3F, 1.3F} * smoothStep(0.5F, 0.85F, up) * 1.1F;
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Torso:
        case Limb:
            return 0.005F * fbm(p * 34, 3);
        case Leaf:
            return 0.004F * fbm(p.x * 30, p.z * 30, 3);
        default:
            return 0;
        }
    }

  private:
    /// The leaf's own directions: x along its midrib, which runs slanting through the picture.
    static Vec3 along(float x, float z) { return turnY({x, 0, z}, 0.42F); }

    static float halfWidth(float x, float z) {
        const float t = (along(x, z).x + 0.6F) / 5.2F;
        return 1.75F * std::sqrt(std::max(0.0F, 1 - t * t)) + 0.03F * std::sin(along(x, z).x * 5);
    }

    /// Side veins stand close together and bend towards the leaf's tip: a number that grows by one a vein.
    static float veins(Vec3 a) {
        const float side = std::fabs(a.z);
        return (a.x + 0.35F * side + 0.16F * side * side) * 6.2F;
    }

    static float leafHeight(float x, float z) {
        const Vec3 a = along(x, z);
        const float side = std::fabs(a.z);
        const float wave = std::cos(2 * Pi * veins(a));
        return -0.03F + 0.05F * side - 0.055F * side * side * side + 0.045F * std::sin(a.x * 1.3F + 0.8F) * side -
               0.02F * a.x * a.x - 0.07F * std::exp(-side * side * 130) +
               0.009F * wave * smoothStep(0.05F, 0.3F, side) * smoothStep(0.0F, 0.45F, halfWidth(x, z) - side);
    }

    static Vec3 leafColour(float x, float z) {
        const Vec3 a = along(x, z);
        const float side = std::fabs(a.z);
        Vec3 green = mix(colour(0x0F5A2C), colour(0x3FA03A), fbm(a.x * 0.9F + 3, a.z * 1.6F, 4));
        green = green * (0.8F + 0.35F * fbm(veins(a) * 0.9F, a.z * 2, 3));
        const float line = smoothStep(0.42F, 0.5F, std::fabs(repeat(veins(a), 1)));
        green = mix(green, colour(0x7CC85A), 0.5F * line * smoothStep(0.04F, 0.12F, side));
        const float rim = smoothStep(0.09F, 0.02F, halfWidth(x, z) - side);
        green = mix(green, colour(0xB8D24A), 0.35F * rim);
        return mix(green, colour(0xC9E88A), smoothStep(0.075F, 0.045F, side));
    }

    static float drops(Vec3 p, float above) {
        constexpr float Size = 0.5F;
        const Cell cell = cells(p.x / Size + 3, p.z / Size, 0.55F);
        const float x = cell.dx * Size;
        const float z = cell.dy * Size;
        const Vec3 at{p.x - x, 0, p.z - z};
        const bool frogThere = length(at.x - 0.1F, at.z + 0.05F) < 1.05F || length(at.x + 0.5F, at.z + 0.75F) < 0.6F;
        if (cell.id < 0.25F || frogThere || std::fabs(along(at.x, at.z).z) > halfWidth(at.x, at.z) - 0.15F) {
            return 0.18F;
        }
        const float r = 0.03F + 0.11F * fraction(cell.id * 13) * fraction(cell.id * 13);
        return std::min(ellipsoid({x, above - r * 0.4F, z}, {r, r * 0.7F, r}), 0.18F);
    }

    /// The frog's own space: x towards its nose, y up.
    static Vec3 local(Vec3 p) { return turnY(p - Vec3{0.12F, -0.02F, 0.1F}, -2.5F); }

    static void frog(Vec3 q, Hit &hit) {
        const float far = length(q - Vec3{0.0F, 0.5F, 0}) - 1.55F;
        if (far > 0.3F) {
            hit.join(far, Torso);
            return;
        }
        const Vec3 h{q.x, q.y, std::fabs(q.z)};
        // Rump, chest and head lie on a slope; the back keeps the hump of a sitting frog.
        float body = ellipsoid(turnZ(q - Vec3{-0.28F, 0.48F, 0}, 0.42F), {0.78F, 0.36F, 0.45F});
        body = blend(body, ellipsoid(q - Vec3{0.22F, 0.52F, 0}, {0.4F, 0.38F, 0.4F}), 0.15F);
        const Vec3 s = turnZ(q - Vec3{0.58F, 0.8F, 0}, 0.08F);
        float head = ellipsoid(s, {0.55F, 0.27F, 0.5F});
        head = blend(head, ellipsoid(s - Vec3{0.33F, -0.02F, 0}, {0.28F, 0.19F, 0.27F}), 0.12F);
        body = blend(body, head, 0.14F);
        body = blend(body, sphere(h - (EyeAt + Vec3{-0.05F, -0.02F, -0.035F}), EyeSize + 0.012F), 0.07F);
        // The mouth: a long smile around the head.
        const float smile = std::fabs(s.y + 0.105F - 0.16F * s.z * s.z - 0.03F * s.x);
        body = carve(body, std::max(smile - 0.008F, 0.12F - s.x), 0.025F);
        body = carve(body, sphere(h - Vec3{1.14F, 0.93F, 0.09F}, 0.022F), 0.02F);
        hit.join(body * 0.85F, Torso);
        hit.join(sphere(h - EyeAt, EyeSize), Eye);

        float arms = limb(h, {0.3F, 0.45F, 0.34F}, {0.16F, 0.24F, 0.66F}, {0.55F, 0.07F, 0.62F}, 0.12F, 0.085F, 0.07F);
        const float thigh = blend(stick(h, {-0.78F, 0.26F, 0.22F}, {-0.08F, 0.4F, 0.68F}, 0.17F, 0.12F),
                                  stick(h, {-0.08F, 0.4F, 0.68F}, {-0.72F, 0.12F, 0.72F}, 0.12F, 0.075F), 0.05F);
        arms = std::min(arms, thigh);
        hit.join(arms * 0.9F, Limb);
        float feet = stick(h, {-0.72F, 0.1F, 0.72F}, {-0.3F, 0.06F, 0.92F}, 0.07F, 0.06F);
        feet = std::min(feet, hand(h, {0.55F, 0.06F, 0.62F}, 0.0F, 4, 0.34F));
        feet = std::min(feet, hand(h, {-0.3F, 0.06F, 0.92F}, 0.45F, 5, 0.36F));
        hit.join(feet * 0.9F, Foot);
    }

    /// Spread fingers with round pads, the middle one pointing to `angle` from ahead.
    static float hand(Vec3 p, Vec3 wrist, float angle, int fingers, float reach) {
        float d = length(p - wrist) - 0.6F;
        if (d > 0.1F) {
            return d;
        }
        d = ellipsoid(p - wrist, {0.1F, 0.06F, 0.1F});
        for (int i = 0; i < fingers; ++i) {
            const float off = static_cast<float>(i) - 0.5F * static_cast<float>(fingers - 1);
            const float a = angle + off * 0.48F;
            const float l = reach * (1 - 0.07F * off * off);
            const Vec3 knuckle = wrist + Vec3{std::cos(a) * l * 0.55F, 0.035F, std::sin(a) * l * 0.55F};
            const Vec3 tip = wrist + Vec3{std::cos(a) * l, -0.02F, std::sin(a) * l};
            const float finger = std::min(stick(p, wrist, knuckle, 0.05F, 0.036F), stick(p, knuckle, tip, 0.036F));
            d = blend(d, finger, 0.05F);
            d = blend(d, ellipsoid(p - tip, {0.068F, 0.045F, 0.068F}), 0.025F);
        }
        return d;
    }

    /// Three whorls of pointed leaves about an upright stem.
    static void bromeliad(Vec3 p, Hit &hit) {
        const float far = length(p - Vec3{0, 0.9F, 0}) - 2.1F;
        if (far > 0.3F) {
            hit.join(far, Bract);
            return;
        }
        for (int whorl = 0; whorl < 4; ++whorl) {
            const auto w = static_cast<float>(whorl);
            const Vec3 turned = turnY(p, w * 0.5F + 0.3F);
            const Vec3 flat = slices({turned.x, turned.z, p.y}, 7 - whorl);
            const float r = flat.x;
            const float reach = 1.6F - 0.27F * w;
            const float t = clamp01(r / reach);
            const float height = 0.25F + 0.42F * w + r * (1.15F + 0.35F * w) - 0.62F * r * r;
            const float wide = 0.02F * (1 - t) + 0.24F * std::sqrt(t) * (1 - t * t);
            const float trough = height + 1.1F * flat.y * flat.y;
            const float sheet =
                std::max({std::fabs(flat.z - trough) * 0.6F - 0.012F, std::fabs(flat.y) - wide, r - reach});
            hit.join(sheet * 0.65F, Bract);
        }
    }

    static Surface torso(Vec3 q, Vec3 n) {
        const float mottled = fbm(q * 5, 3);
        Vec3 skin = mix(colour(0x2F9A12), colour(0x62C41E), smoothStep(0.35F, 1.25F, q.y + 0.5F * mottled - 0.2F));
        skin = skin * (0.72F + 0.5F * fbm(q * 17, 3));
        // Under a wavy line the flank: blue with cream bars; the belly and the lips are cream.
        const float side = std::fabs(q.z);
        const float line = 0.57F + 0.5F * (q.x - 0.1F) + 0.05F * std::sin(q.x * 9);
        const float flank = smoothStep(0.03F, -0.03F, q.y - line) * smoothStep(0.42F, 0.32F, q.x);
        const float bar = smoothStep(0.62F, 0.72F, std::fabs(repeat(q.x * 7 + 1.2F * q.y, 1)) * 2);
        skin = mix(skin, mix(colour(0x1D55C0), colour(0xFFE9A0), bar), flank);
        const Vec3 s = turnZ(q - Vec3{0.58F, 0.8F, 0}, 0.08F);
        const float smile = s.y + 0.105F - 0.16F * s.z * s.z - 0.03F * s.x;
        const float throat = s.x > -0.3F ? smoothStep(0.0F, -0.03F, smile) : 0.0F;
        const float belly = std::max(throat * smoothStep(0.15F, 0.3F, q.x), smoothStep(-0.25F, -0.6F, n.y));
        skin = mix(skin, mix(colour(0xFFF6DC), colour(0xFFE2A8), mottled), belly);
        skin = mix(skin, colour(0x1D4A10),
                   0.85F * smoothStep(0.02F, 0.006F, std::fabs(smile)) * (s.x > 0.12F ? 1.0F : 0.0F));
        skin = mix(skin, colour(0x12300C),
                   smoothStep(0.035F, 0.02F, length(Vec3{q.x, q.y, side} - Vec3{1.14F, 0.93F, 0.09F})));
        return {.colour = skin,
                .shine = 0.75F,
                .sharpness = 55,
                .mirror = 0.01F,
                .sheer = 0.05F,
                .glow = skin * (0.14F * belly)};
    }

    static Surface limbs(Vec3 q, Vec3 n) {
        const Vec3 green = mix(colour(0x2F9A12), colour(0x7CCB28), 1.5F * fbm(q * 9, 4) - 0.2F);
        const bool arm = q.x > 0.12F;
        const Vec3 inner =
            arm ? colour(0xF08A2A) : mix(colour(0x2A62C8), colour(0xF28A2A), smoothStep(0.25F, 0.1F, q.y));
        const float under = smoothStep(0.05F, -0.4F, n.y);
        return {.colour = mix(green, inner, under), .shine = 0.45F, .sharpness = 55, .mirror = 0.02F};
    }

    static Surface eye(Vec3 q) {
        const Vec3 e = (Vec3{q.x, q.y, std::fabs(q.z)} - EyeAt) * (1 / EyeSize);
        const Vec3 gaze = normalise({0.72F, 0.06F, 0.69F});
        const Vec3 right = normalise(cross(Vec3{0, 1, 0}, gaze));
        const Vec3 up = cross(gaze, right);
        const float u = dot(e, right);
        const float v = dot(e, up);
        const float r = length(u, v);
        Vec3 look = mix(colour(0xFF3A0E), colour(0xC00808), smoothStep(0.15F, 0.8F, r)) *
                    (0.8F + 0.4F * noise(std::atan2(u, v) * 9, r * 3));
        look = mix(look, colour(0x240404), smoothStep(0.86F, 0.97F, r));
        const float slit = length(u / 0.2F, v / 0.62F);
        look = mix(look, colour(0x060304), smoothStep(1.06F, 0.94F, slit));
        return {.colour = look, .shine = 3.2F, .sharpness = 420, .mirror = 0.06F, .glow = look * 0.25F};
    }
};

} // namespace

std::unique_ptr<Scene> treeFrog() {
    return std::make_unique<TreeFrog>();
}

} // namespace lumora::samples
