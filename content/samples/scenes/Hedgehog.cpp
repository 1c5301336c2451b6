// A hedgehog in the autumn leaves, an apple before its nose, early sun in the wood behind it.
#include "Scenes.h"

#include "Bodies.h"

#include <array>

namespace lumora::samples {

namespace {

enum Material { Soil, Leaf, Flying, Spine, Fur, Paw, Nose, Eye, Apple, Stalk, Cap, Stem, Log };

constexpr Vec3 BodyAt{-0.12F, 0.52F, 0};
constexpr Vec3 BodyHalf{0.86F, 0.58F, 0.6F};
constexpr Vec3 AppleAt{-1.33F, 0.26F, -0.95F};

/// Leaves that are just coming down: where, and how far each has turned.
constexpr float Falling[][4] = {
    {-1.6F, 1.55F, 0.6F, 1}, {1.35F, 1.6F, 0.4F, 3}, {0.15F, 1.85F, 1.2F, 5}, {-0.75F, 1.95F, -0.3F, 8}};

class Hedgehog : public Scene {
  public:
    Hedgehog() {
        camera = {{-0.95F, 0.95F, -4.6F}, {-0.12F, 0.58F, 0}, 2.15F};
        sunDirection = normalise({-0.62F, 0.62F, -0.5F});
        sunColour = {2.7F, 2.1F, 1.4F};
        skyLight = {0.36F, 0.36F, 0.38F};
        groundLight = {0.22F, 0.12F, 0.05F};
        farthest = 13;
        caution = 0.7F;
        steps = 190;
        shadowReach = 3;
        shadowSoftness = 10;
        creviceSize = 0.22F;
        bloom = 0.22F;
        exposure = 0.95F;
        vignette = 0.35F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        litter(p, hit);
        hedgehog(local(p), hit);
        things(p, hit);
        flying(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3 d) const override {
        Surface look = bare(material, p, n);
        // The low sun behind the trees draws a golden edge.
        const float edge =
            std::pow(1 - clamp01(-dot(n, d)), 3.0F) * smoothStep(-0.2F, 0.8F, dot(n, normalise({0.7F, 0.5F, 0.6F})));
        look.glow += colour(0xFFC060) * (0.8F * edge);
        return look;
    }

    Vec3 sky(Vec3 d) const override {
        const float side = std::atan2(d.x, d.z);
        const float up = d.y;
        const float sun = std::exp(-6.0F * length(side - 0.62F, 1.2F * (up - 0.2F)));
        Vec3 light =
            mix(colour(0x5A2E12), colour(0xD8862A), smoothStep(-0.2F, 0.25F, up + 0.15F * noise(side * 4, up * 4)));
        const float crowns = fbm(side * 5, up * 6 + 3, 3);
        light = mix(light, colour(0xC8501A), 0.65F * smoothStep(0.42F, 0.6F, crowns) * smoothStep(0.0F, 0.2F, up));
        light = mix(light, colour(0x8A9A3A), 0.5F * smoothStep(0.5F, 0.7F, fbm(side * 4 + 9, up * 5, 3)));
        // Trunks, the nearer ones darker and wider, all out of focus.
        for (int row = 0; row < 2; ++row) {
            const float gap = row == 0 ? 0.16F : 0.37F;
            const float shifted = side + 0.11F * static_cast<float>(row) + 0.02F * up;
            const int tree = static_cast<int>(std::round(shifted / gap));
            const float off = std::fabs(repeat(shifted, gap) + 0.3F * gap * (hash(tree, row, 70) - 0.5F));
            const float half = gap * (0.09F + 0.10F * hash(tree, row, 71));
            light = mix(light, mix(colour(0x8A5426), colour(0x38200F), 0.3F + 0.5F * static_cast<float>(row)),
                        0.85F * smoothStep(half + 0.012F, half - 0.012F, off));
        }
        light = mix(light, colour(0xFFDC8A), 0.45F * smoothStep(0.12F, -0.06F, std::fabs(up - 0.02F)));
        static const std::array tints{colour(0xFFD24A), colour(0xFF8A2A), colour(0xFFF0B0), colour(0xE85A1E)};
        light += bokeh(side * 6.5F, up * 6.5F, tints, 0.6F) * (0.45F * smoothStep(-0.02F, 0.12F, up));
        return light * 0.85F + colour(0xFFE8A8) * (1.5F * sun);
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Fur:
            return furry(local(p));
        case Nose:
            return 0.0015F * noise(p * 60);
        case Log:
            return 0.03F * ridged(p.x * 1.4F, std::atan2(p.y - 0.3F, p.z - 1.9F) * 5, 3);
        case Soil:
            return 0.03F * fbm(p.x * 20, p.z * 20, 3);
        default:
            return 0;
        }
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        if (distance < farthest) {
            light = mix(light, colour(0xFFD088) * 0.9F, 0.6F * smoothStep(6.0F, 12.0F, distance));
        }
        const float angle = std::atan2(d.y - 0.42F, d.x - 0.55F);
        const float streak = smoothStep(0.45F, 0.95F, 0.6F * noise(angle * 9 + 30, 1) + 0.45F * noise(angle * 23, 7));
        const float reach =
            smoothStep(0.95F, 0.1F, length(d.x - 0.55F, d.y - 0.42F)) * (1 - std::exp(-distance * 0.1F));
        return light + colour(0xFFDC98) * (0.33F * streak * reach);
    }

  private:
    static Vec3 local(Vec3 p) { return turnY(p - Vec3{0.25F, 0.07F, 0.1F}, -2.62F); }

    struct Litter {
        float distance;
        float id;
        float vein; ///< from the nearest vein, in units
    };

    /// A fallen maple leaf in its own plane, a unit across: distance from its outline.
    static float maple(float x, float y) {
        const float a = std::atan2(y, x);
        const float r = length(x, y);
        const float lobes = 0.36F + 0.11F * std::cos(5 * a) + 0.035F * std::cos(15 * a);
        return std::min((r - lobes * (1 - 0.35F * smoothStep(2.3F, 3.14F, std::fabs(a)))) * 0.7F,
                        std::max(std::fabs(y) - 0.012F, std::fabs(x + 0.4F) - 0.3F));
    }

    /// One layer of leaves: one in each tile, tilted and curled its own way.
    static Litter layer(Vec3 p, int number) {
        const float size = 0.44F + 0.07F * static_cast<float>(number % 2);
        const float shift = 3.7F * static_cast<float>(number);
        const Cell cell = cells(p.x / size + shift, p.z / size + 2 * shift, 0.8F);
        const float turn = cell.id * 40 + static_cast<float>(number);
        const float x = cell.dx * std::cos(turn) + cell.dy * std::sin(turn);
        const float y = cell.dy * std::cos(turn) - cell.dx * std::sin(turn);
        const float lean = 0.5F * (fraction(cell.id * 17) - 0.5F) * size;
        const float curl = 0.5F * (fraction(cell.id * 29) - 0.2F) * size;
        const float height = 0.035F * static_cast<float>(number) + lean * x + curl * (x * x + y * y) - 0.02F;
        const float sheet = std::fabs(p.y - height) * 0.8F - 0.0035F;
        if (sheet > 0.15F) {
            return {sheet, 0, 0};
        }
        const float veins = std::fabs(repeat(std::atan2(y, x), 2 * Pi / 5)) * length(x, y);
        return {std::max(sheet, maple(x, y) * size), cell.id, veins};
    }

    static void litter(Vec3 p, Hit &hit) {
        hit.join(p.y + 0.04F, Soil);
        if (p.y > 0.45F) {
            hit.join(p.y - 0.25F, Leaf);
            return;
        }
        for (int i = 0; i < 3; ++i) {
            hit.join(layer(p, i).distance * 0.85F, Leaf);
        }
    }

    static Surface leaf(float id, float vein, Vec3 p) {
        static const std::array tints{colour(0xC8401A), colour(0xE8862A), colour(0xF2B83A), colour(0x9A2E18),
                                      colour(0xD86A1E), colour(0x8A5A2A), colour(0xB8963A)};
        Vec3 look = tints[static_cast<size_t>(id * 83) % tints.size()];
        look = look * (0.7F + 0.6F * fbm(p * 9, 3));
        look = mix(look, colour(0x5A3414), 0.5F * smoothStep(0.6F, 0.75F, noise(p * 13)));
        look = mix(look, colour(0xF6D48A), 0.5F * smoothStep(0.025F, 0.008F, vein));
        return {.colour = look, .shine = 0.15F, .sharpness = 16, .sheer = 0.5F};
    }

    struct Quill {
        float distance;
        float along; ///< 0 at the root, 1 at the tip
        float id;
    };

    /// The nearest quill: they stand in rings about the body's long axis and lie backwards.
    static Quill quills(Vec3 q) {
        constexpr float Gap = 0.1F;
        const Vec3 c = q - BodyAt;
        const float height = std::max(0.0F, ellipsoid(c, BodyHalf));
        const Vec3 lie{-0.85F, 0.22F, 0};
        const Vec3 v = normalise((c - lie * (height * 1.25F)) / BodyHalf);
        const float ring = std::acos(std::clamp(v.x, -1.0F, 1.0F)) / Gap;
        const float round = std::atan2(v.z, v.y);
        Quill nearest{9, 0, 0};
        for (int i = -1; i <= 1; ++i) {
            const int row = static_cast<int>(std::round(ring)) + i;
            const float theta = static_cast<float>(row) * Gap;
            if (theta < 0.8F || theta > 3.05F) {
                continue;
            }
            const float st = std::sin(theta);
            const float count = std::max(3.0F, std::round(2 * Pi * st / Gap));
            const float place = round / (2 * Pi) * count + (row % 2 == 0 ? 0.5F : 0.0F);
            for (int j = -1; j <= 1; ++j) {
                const float k = std::round(place) + static_cast<float>(j);
                const int own = static_cast<int>(k + (k < -count / 2 ? count : k > count / 2 ? -count : 0.0F));
                const float phi =
                    (k + 0.6F * (hash(row, own, 81) - 0.5F) - (row % 2 == 0 ? 0.5F : 0.0F)) / count * 2 * Pi;
                const float tilt = theta + Gap * 0.6F * (hash(row, own, 82) - 0.5F);
                const Vec3 out{std::cos(tilt), std::sin(tilt) * std::cos(phi), std::sin(tilt) * std::sin(phi)};
                const Vec3 root = out * BodyHalf;
                if (root.y < -0.24F + 0.1F * hash(row, own, 83)) {
                    continue;
                }
                const Vec3 stray =
                    Vec3{hash(row, own, 84), hash(row, own, 85), hash(row, own, 86)} - Vec3{0.5F, 0.5F, 0.5F};
                const Vec3 way = normalise(normalise(out / BodyHalf) * 0.75F + lie * 0.75F + stray * 0.55F);
                const float reach = 0.30F + 0.10F * hash(row, own, 87);
                const float along = clamp01(dot(c - root, way) / reach);
                const float thick = 0.021F * (1 - 0.85F * along * along);
                const float d = length(c - root - way * (along * reach)) - thick;
                if (d < nearest.distance) {
                    nearest = {d, along, hash(row, own, 88)};
                }
            }
        }
        return nearest;
    }

    static float furry(Vec3 q) { return 0.012F * fbm(Vec3{q.x * 20, q.y * 60, q.z * 60}, 3); }

    static void hedgehog(Vec3 q, Hit &hit) {
        const float far = box(q - Vec3{0.05F, 0.62F, 0}, {1.35F, 0.72F, 0.95F}, 0.3F);
        if (far > 0.3F) {
            hit.join(far, Spine);
            return;
        }
        const Vec3 h{q.x, q.y, std::fabs(q.z)};
        const float shell = ellipsoid(q - BodyAt, BodyHalf);
        if (shell < 0.5F) {
            hit.join(std::min(quills(q).distance * 0.8F, 0.2F), Spine);
        } else {
            hit.join(shell - 0.42F, Spine);
        }
        float fur = ellipsoid(q - BodyAt, BodyHalf);
        fur = blend(fur, ellipsoid(turnZ(q - Vec3{0.6F, 0.47F, 0}, -0.2F), {0.38F, 0.31F, 0.33F}), 0.12F);
        fur = blend(fur, stick(q, {0.8F, 0.43F, 0}, {1.2F, 0.41F, 0}, 0.175F, 0.06F), 0.14F);
        fur = blend(fur, ellipsoid(h - Vec3{0.7F, 0.36F, 0.17F}, {0.2F, 0.15F, 0.13F}), 0.08F); // cheeks
        const Vec3 ear = turnY(h - Vec3{0.56F, 0.74F, 0.29F}, -0.6F);
        fur = blend(fur,
                    carve(ellipsoid(ear, {0.075F, 0.17F, 0.15F}),
                          ellipsoid(ear - Vec3{0.08F, 0.0F, 0.01F}, {0.075F, 0.125F, 0.105F}), 0.02F),
                    0.04F);
        fur = blend(fur, stick(h, {0.42F, 0.3F, 0.3F}, {0.52F, 0.07F, 0.33F}, 0.14F, 0.1F), 0.08F);
        fur = blend(fur, stick(h, {-0.55F, 0.3F, 0.33F}, {-0.48F, 0.07F, 0.4F}, 0.2F, 0.11F), 0.08F);
        // A small smile under the snout.
        const float lip = std::fabs(q.y - 0.315F - 0.6F * (q.z * q.z)) - 0.006F;
        fur = carve(fur, std::max(lip, 0.93F - q.x), 0.018F);
        hit.join(fur * 0.85F, Fur);
        hit.join(ellipsoid(q - Vec3{1.25F, 0.43F, 0}, {0.08F, 0.075F, 0.09F}), Nose);
        hit.join(sphere(h - Vec3{0.86F, 0.55F, 0.18F}, 0.074F), Eye);
        float paws = 9;
        for (int toe = -1; toe <= 1; ++toe) {
            const auto t = static_cast<float>(toe);
            paws = std::min(
                {paws,
                 stick(h, {0.54F, 0.06F, 0.33F}, {0.68F - 0.02F * t * t, 0.03F, 0.33F + 0.075F * t}, 0.055F, 0.035F),
                 stick(h, {-0.46F, 0.06F, 0.4F}, {-0.3F - 0.02F * t * t, 0.03F, 0.41F + 0.08F * t}, 0.06F, 0.035F)});
        }
        hit.join(paws, Paw);
    }

    /// Apple, mushrooms and the log behind.
    static void things(Vec3 p, Hit &hit) {
        const Vec3 a = turnZ(p - AppleAt, -0.3F);
        const float r = length(a.x, a.z);
        const float dent = 0.13F * std::exp(-r * r * 40) * smoothStep(0.05F, 0.2F, std::fabs(a.y));
        hit.join((length(Vec3{a.x, a.y * (1.02F + 0.15F * r), a.z}) - 0.29F + dent) * 0.8F, Apple);
        hit.join(curve(a, {0, 0.14F, 0}, {0.01F, 0.3F, 0}, {0.08F, 0.4F, 0.02F}).distance - 0.016F, Stalk);
        const Vec3 onApple = turnX(turnZ(a - Vec3{0.0F, 0.27F, 0}, 2.5F), -1.2F);
        hit.join(blade(onApple, 0.34F, 0.085F, -0.6F), Stalk);
        constexpr float Caps[][4] = {
            {1.28F, -0.55F, 0.3F, 0.62F}, {1.62F, -0.3F, 0.2F, 0.4F}, {1.02F, -0.78F, 0.15F, 0.28F}};
        for (const auto &[x, z, wide, tall] : Caps) {
            const Vec3 q = p - Vec3{x, 0, z};
            const float round = length(q.x, q.z) - wide * (0.42F - 0.16F * smoothStep(0.0F, tall, q.y));
            hit.join(std::max(round * 0.85F, std::fabs(q.y - tall * 0.4F) - tall * 0.6F), Stem);
            hit.join(
                carve(ellipsoid(q - Vec3{0, tall - 0.05F, 0}, {wide, wide * 0.68F, wide}), q.y - tall + 0.05F, 0.06F) *
                    0.9F,
                Cap);
        }
        const Vec3 l = turnY(p - Vec3{0.4F, 0.3F, 2.1F}, 0.12F);
        float log = rodX(l, 0.42F, 3.4F, 0.1F);
        if (log < 0.25F) {
            log += 0.06F * (fbm(p * 3, 3) - 0.45F) - 0.05F * mossy(p) * fbm(p * 16, 2);
        }
        hit.join(log * 0.85F, Log);
    }

    static float mossy(Vec3 p) { return smoothStep(0.35F, 0.65F, p.y + 0.4F * (fbm(p * 2.3F, 3) - 0.45F)); }

    static void flying(Vec3 p, Hit &hit) {

        for (const auto &[x, y, z, turn] : Falling) {
            const Vec3 q = p - Vec3{x, y, z};
            const float far = length(q) - 0.3F;
            if (far > 0.2F) {
                hit.join(far, Flying);
                continue;
            }
            const Vec3 t = turnX(turnZ(q, turn), 0.7F + 0.2F * turn) * (1 / 0.46F);
            hit.join(std::max(std::fabs(t.z - 0.5F * t.x * t.x) * 0.7F - 0.012F, maple(t.x, t.y)) * 0.42F, Flying);
        }
    }

    static Surface bare(int material, Vec3 p, Vec3 n) {
        const float grainy = fbm(p * 5, 4);
        switch (material) {
        case Leaf: {
            Litter top = layer(p, 0);
            for (int i = 1; i < 3; ++i) {
                const Litter other = layer(p, i);
                top = other.distance < top.distance ? other : top;
            }
            return leaf(top.id, top.vein, p);
        }
        case Flying:
            for (const auto &[x, y, z, turn] : Falling) {
                if (length(p - Vec3{x, y, z}) < 0.4F) {
                    return leaf(fraction(turn * 0.37F), 1, p);
                }
            }
            return {};
        case Spine: {
            const Quill quill = quills(local(p));
            Vec3 look = mix(colour(0x3A2616), colour(0xF2DCB0), smoothStep(0.15F, 0.45F, quill.along));
            look = mix(look, colour(0x3A2212),
                       smoothStep(0.52F, 0.6F, quill.along) * smoothStep(0.86F, 0.78F, quill.along));
            return {.colour = look * (0.75F + 0.45F * quill.id), .shine = 0.3F, .sharpness = 22, .sheer = 0.15F};
        }
        case Fur:
            return fur(local(p));
        case Paw:
            return {.colour = mix(colour(0x8A6450), colour(0xC89A80), grainy), .shine = 0.15F};
        case Nose:
            return {.colour = colour(0x171112), .shine = 1.2F, .sharpness = 40, .mirror = 0.03F};
        case Eye:
            return {.colour = colour(0x0A0606), .shine = 4, .sharpness = 200, .mirror = 0.04F};
        case Apple: {
            const Vec3 a = turnZ(p - AppleAt, -0.3F);
            const float streak = fbm(std::atan2(a.x, a.z) * 9, a.y * 4, 3);
            Vec3 red = mix(colour(0xB80E12), colour(0xF23A1E), streak);
            red = mix(
                red, colour(0xF5C83A),
                0.8F * smoothStep(0.62F, 0.85F,
                                  streak +
                                      0.5F * smoothStep(0.12F, 0.3F, a.y) * smoothStep(0.2F, 0.05F, length(a.x, a.z)) +
                                      0.2F * a.x));
            return {.colour = red, .shine = 1.2F, .sharpness = 90, .mirror = 0.03F};
        }
        case Stalk:
            return {.colour = length(p - AppleAt - Vec3{0.1F, 0.33F, 0}) < 0.08F
                                  ? colour(0x5A3A1E)
                                  : mix(colour(0x4A7A1E), colour(0x8AB83A), grainy),
                    .sheer = 0.4F};
        case Cap:
            return {.colour = n.y < -0.1F ? colour(0xE8D898) : mix(colour(0x6A3414), colour(0xB8692A), grainy),
                    .shine = 0.4F,
                    .sharpness = 30};
        case Stem:
            return {.colour = mix(colour(0xD8C4A0), colour(0xFBF0DA), fbm(Vec3{p.x * 14, p.y * 5, p.z * 14}, 3)),
                    .sheer = 0.15F};
        case Log: {
            const Vec3 bark =
                mix(colour(0x3A2618), colour(0x8A6444), fbm(p.x * 3, std::atan2(p.y - 0.3F, p.z - 1.9F) * 9, 4));
            return {.colour = mix(bark, mix(colour(0x3A5A1A), colour(0x9AB83A), fbm(p * 14, 3)), mossy(p)),
                    .sheer = 0.1F};
        }
        default:
            return {.colour = mix(colour(0x2A1A0E), colour(0x6A4426), grainy)};
        }
    }

    static Surface fur(Vec3 q) {
        const float hair = 1.4F * fbm(Vec3{q.x * 20, q.y * 60, q.z * 60}, 3) - 0.15F;
        Vec3 look = mix(colour(0x523620), colour(0xB48C5C), 0.7F * hair + 0.3F * smoothStep(0.55F, 0.3F, q.y));
        // A dark mask from the eyes to the nose, pale brow and cheeks.
        const float side = std::fabs(q.z);
        const float mask = length((q.x - 0.93F) / 0.24F, (q.y - 0.51F + 0.35F * (q.x - 0.9F)) / 0.08F);
        look = mix(look, mix(colour(0x120A06), colour(0x38241A), hair),
                   0.88F * smoothStep(1.6F, 0.6F, mask) * smoothStep(0.02F, 0.1F, side + 0.3F * (q.x - 0.85F)));
        look = mix(look, colour(0x1E100A),
                   0.9F * smoothStep(0.02F, 0.006F, std::fabs(q.y - 0.315F - 0.6F * q.z * q.z)) *
                       (q.x > 0.92F ? 1.0F : 0.0F));
        if (q.x < 0.42F && q.y > 0.3F) {
            look = colour(0x2A1A10);
        }
        const float rosy = length(Vec3{q.x, q.y, side} - Vec3{0.76F, 0.4F, 0.27F});
        look = mix(look, colour(0xF09A78), 0.4F * smoothStep(0.13F, 0.03F, rosy));
        return {.colour = look, .sheer = 0.12F};
    }
};

} // namespace

std::unique_ptr<Scene> hedgehog() {
    return std::make_unique<Hedgehog>();
}

} // namespace lumora::samples
