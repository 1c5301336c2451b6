// An eagle owl and its owlet on a mossy branch at nightfall, the full moon behind them.
#include "Scenes.h"

#include "Bodies.h"

namespace lumora::samples {

namespace {

enum Material { Bark, Cap, Stem, Foliage, Plumage, Wing, Beak, Talon, Eye, Down, OwletBeak, OwletEye };

constexpr Vec3 OwlAt{0.55F, 0.0F, 0};
constexpr Vec3 OwletAt{-0.78F, -0.04F, -0.05F};
constexpr float OwletSize = 0.62F;
constexpr Vec3 EyeAt{0.375F, 1.6F, 0.2F};
constexpr float EyeSize = 0.145F;
constexpr Vec3 OwletEyeAt{0.33F, 1.2F, 0.19F};
constexpr float OwletEyeSize = 0.13F;

class Owl : public Scene {
  public:
    Owl() {
        camera = {{-0.3F, 1.2F, -6.2F}, {-0.06F, 1.08F, 0}, 2.45F};
        sunDirection = normalise({0.62F, 0.5F, -0.6F});
        sunColour = {2.7F, 1.95F, 1.35F};
        skyLight = {0.26F, 0.30F, 0.58F};
        groundLight = {0.14F, 0.11F, 0.20F};
        farthest = 16;
        caution = 0.75F;
        steps = 170;
        shadowReach = 3;
        shadowSoftness = 9;
        creviceSize = 0.25F;
        bloom = 0.3F;
        vignette = 0.4F;
        strands = 420000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        wood(p, hit);
        mushrooms(p, hit);
        leaves(p, hit);
        owl(local(p), hit);
        owlet(owletLocal(p), hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3 d) const override {
        Surface look = bare(material, p, n);
        // The moon draws a silver edge around everything.
        const float edge = std::pow(1 - clamp01(-dot(n, d)), 3.0F) * smoothStep(-0.3F, 0.7F, dot(n, Moon));
        look.glow += colour(0x9FB8FF) * (0.75F * edge);
        return look;
    }

    Vec3 sky(Vec3 d) const override {
        const float side = std::atan2(d.x, d.z);
        const float up = d.y;
        Vec3 light =
            mix(colour(0xE8708A) * 0.8F, colour(0x6A3FA0) * 0.8F, smoothStep(-0.12F, 0.13F, up - 0.15F * side));
        light = mix(light, colour(0x1D2A78) * 0.75F, smoothStep(0.05F, 0.34F, up));
        light = mix(light, colour(0x0A1240) * 0.8F, smoothStep(0.28F, 0.6F, up));
        const Cell star = cells(side * 34, up * 34, 0.9F);
        light += Vec3{0.9F, 0.92F, 1} * (smoothStep(0.10F * star.id, 0.02F * star.id, star.distance) *
                                         smoothStep(0.35F, 0.9F, star.id) * 1.4F);
        const float away = std::acos(std::clamp(dot(d, Moon), -1.0F, 1.0F)) / 0.118F;
        light +=
            colour(0x8F9CFF) * (0.55F * std::exp(-away * 0.75F)) + colour(0xFFE8C0) * (0.25F * std::exp(-away * 1.4F));
        if (away < 1.05F) {
            const float seas = smoothStep(0.42F, 0.62F, fbm(side * 14 + 4.4F, up * 14 + 1.7F, 4));
            const float pits = fbm(side * 60, up * 60, 3);
            const Vec3 disc = mix(colour(0xFFF6DC), colour(0xC4BCC8), 0.75F * seas) * (0.9F + 0.25F * pits);
            light = mix(light, disc * (1.12F - 0.2F * away * away), smoothStep(1.0F, 0.975F, away));
        }
        const float cloud =
            smoothStep(0.46F, 0.72F, fbm(side * 3.2F + 1, up * 15 + 2 * side, 5)) * smoothStep(0.34F, 0.1F, up);
        light = mix(light, mix(colour(0x54388A), colour(0xF0A0B8), smoothStep(2.8F, 0.6F, away)), 0.62F * cloud);
        // Two lines of firs, each nearer and darker, with mist between.
        for (int row = 0; row < 2; ++row) {
            const auto r = static_cast<float>(row);
            const float size = 0.075F + 0.035F * r;
            const float shifted = side + 0.37F * r;
            const int tree = static_cast<int>(std::round(shifted / size));
            const float off = std::fabs(repeat(shifted, size)) / size * 2;
            const float tall = 0.035F - 0.075F * r + (0.06F + 0.03F * r) * hash(tree, row) + 0.02F * noise(side * 4, r);
            const float needles = (0.035F + 0.01F * r) * (fbm(side * (90 - 12 * r), up * (120 - 15 * r), 3) - 0.35F);
            const float top = tall - (0.2F + 0.06F * r) * off + needles;
            const float there = smoothStep(0.0F, 0.006F + 0.003F * r, top - up);
            light = mix(light,
                        mix(colour(0x6A4A9A), colour(0x141238), 0.35F + 0.32F * r) *
                            (0.75F + 0.5F * smoothStep(-0.2F, 0.05F, up - tall)),
                        there);
            light = mix(light, colour(0x9A6AB8) * 0.7F, 0.3F * smoothStep(tall, tall - 0.16F, up));
        }
        return light;
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Bark:
            return mix(0.012F * ridged(p.x * 2.2F, p.y * 9 + p.z * 6, 3) + 0.006F * noise(p * 34),
                       0.035F * fbm(p * 26, 3), moss(p));
        case Plumage:
        case Wing:
            return 0.004F * noise(local(p) * 55);
        default:
            return 0;
        }
    }

    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        const float other = fraction(chance * 733);
        const float light = 0.62F + 0.75F * fraction(chance * 4001);
        if (material == Down) { // fluff that stands in every direction
            const Vec3 q = owletLocal(p);
            if (length(Vec3{q.x, q.y, std::fabs(q.z)} - OwletEyeAt) < 0.19F) {
                return {};
            }
            const bool face = q.x > 0.25F && q.y > 0.9F;
            const float reach = (face ? 0.045F : 0.11F) * (0.6F + 0.7F * fraction(chance * 97));
            const Vec3 way =
                normalise(Vec3{0.9F * (other - 0.5F), -0.75F, 0.9F * (fraction(chance * 331) - 0.5F)} + n * 0.55F);
            return {.tip = way * reach,
                    .sag = n * (0.2F * reach),
                    .width = 0.010F,
                    .order = p.y + 0.15F * other,
                    .solid = 0.65F,
                    .tint = {light, light, light}};
        }
        if (material == Bark && moss(p) > 0.4F && n.y > -0.2F && chance < 0.5F) {
            return {.tip = normalise(n + Vec3{other - 0.5F, 0.2F, fraction(chance * 331) - 0.5F}) * 0.045F,
                    .width = 0.009F,
                    .order = p.y,
                    .tint = {light, light, light * 0.7F}};
        }
        if (material != Plumage && material != Wing) {
            return {};
        }
        const Vec3 q = local(p);
        const float side = std::fabs(q.z);
        const Vec3 h{q.x, q.y, side};
        if (length(h - EyeAt) < EyeSize + 0.03F || q.y < 0.02F) {
            return {};
        }
        Vec3 way{-0.25F, -1, 0};
        float reach = mix(0.17F, 0.10F, smoothStep(1.1F, 1.4F, q.y));
        const bool face = q.x > 0.1F && q.y > 1.15F && q.y < 1.98F && length(side - EyeAt.z, q.y - EyeAt.y) < 0.34F;
        if (face) { // rays about the eye
            way = {0, q.y - EyeAt.y, q.z - (q.z > 0 ? EyeAt.z : -EyeAt.z)};
            reach = 0.09F;
        } else if (q.y > 1.82F && side > 0.2F) { // the tufts
            way = {-0.35F, 1, q.z > 0 ? 0.45F : -0.45F};
            reach = 0.20F;
        }
        // Back into the picture's space.
        way = turnY(way, 1.83F);
        const bool feather = !face && reach < 0.19F && chance < 0.11F;
        if (!feather && chance > 0.95F) {
            return {};
        }
        Vec3 along = normalise(way - n * dot(way, n));
        along = normalise(along + cross(n, along) * (0.4F * (other - 0.5F)) + n * (face ? 0.08F : 0.18F));
        const float full = reach * (material == Wing && feather ? 1.5F : 1.0F) * (0.7F + 0.5F * fraction(chance * 97));
        return {.tip = along * full,
                .sag = n * (0.12F * full),
                .width = feather ? full * 0.38F : 0.011F,
                .blunt = feather ? 0.6F : 0.0F,
                .order = (material == Wing ? 4.0F : 0.0F) + (face ? 8 - length(side - EyeAt.z, q.y - EyeAt.y) : q.y) +
                         0.05F * other,
                .solid = feather ? 0.85F : 0.7F,
                .tint = {light, light, light}};
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        for (int i = 0; i < 16; ++i) { // fireflies
            const Vec3 at{5.2F * hash(i, 41) - 2.7F, 2.5F * hash(i, 42) - 0.75F, 4 * hash(i, 43) - 1.4F};
            const Vec3 to = at - from;
            const float along = dot(to, d);
            if (along > 0 && along < distance) {
                const float off = dot(to, to) - along * along;
                const float size = 0.00016F * (0.4F + hash(i, 44));
                light += colour(0xFFE47A) * (3.0F * size / (off + size) * smoothStep(0.05F, 0.0F, off));
            }
        }
        return light;
    }

  private:
    inline static const Vec3 Moon = normalise({-0.115F, 0.135F, 1});

    static Vec3 local(Vec3 p) { return turnY(p - OwlAt, -1.83F); }
    static Vec3 owletLocal(Vec3 p) { return turnY(p - OwletAt, -1.4F) * (1 / OwletSize); }

    static void wood(Vec3 p, Hit &hit) {
        const float y = p.y + 0.34F - 0.07F * std::sin(p.x * 0.9F + 1) + 0.05F * std::sin(p.x * 2.1F);
        const float z = p.z - 0.05F - 0.1F * std::sin(p.x * 1.2F);
        float d = length(y, z) - 0.33F + 0.03F * p.x;
        const Vec3 t{p.x - 2.72F - 0.05F * p.y, p.y, p.z - 0.75F};
        d = blend(d, length(t.x, t.z) - 0.6F, 0.35F);
        d = blend(d, stick(p, {-1.2F, -0.4F, 0.1F}, {-2.5F, 0.5F, 0.7F}, 0.13F, 0.07F), 0.15F);
        if (d < 0.3F) {
            const float round = std::atan2(t.x, t.z);
            d += p.x > 1.9F ? 0.07F * (ridged(round * 5, p.y * 1.4F, 3) - 0.5F)
                            : 0.04F * (fbm(p.x * 2.5F, y * 9 + z * 7, 3) - 0.4F);
            d -= moss(p) * (0.02F + 0.05F * noise(p * 13) + 0.045F * noise(p * 31));
        }
        hit.join(d * 0.8F, Bark);
    }

    /// Where moss covers the wood, 0 to 1: on top of the branch, in patches on the trunk.
    static float moss(Vec3 p) {
        const float top = p.x < 1.9F ? smoothStep(-0.38F, -0.08F, p.y + 0.3F * (noise(p * 3) - 0.5F)) : 0.55F;
        return top * smoothStep(0.28F, 0.5F, fbm(p * 2.4F, 3) + 0.1F * top);
    }

    static void mushrooms(Vec3 p, Hit &hit) {
        const float far = box(p - Vec3{-1.62F, 0.15F, -0.1F}, {0.42F, 0.4F, 0.3F});
        if (far > 0.2F) {
            hit.join(far, Cap);
            return;
        }
        constexpr float Ones[][4] = {
            {-1.75F, -0.06F, -0.12F, 0.2F}, {-1.45F, -0.08F, -0.2F, 0.135F}, {-1.93F, -0.06F, -0.02F, 0.11F}};
        for (const auto &[x, y, z, r] : Ones) {
            const Vec3 q = (p - Vec3{x, y, z}) * (1 / r);
            hit.join(stick(q, {0, -0.5F, 0}, {0.1F, 1.5F, 0}, 0.26F, 0.18F) * r * 0.9F, Stem);
            hit.join(carve(ellipsoid(q - Vec3{0.1F, 1.45F, 0}, {1, 0.72F, 1}), q.y - 1.45F, 0.15F) * r * 0.85F, Cap);
        }
    }

    /// A twig with autumn leaves that hangs into the picture from above.
    static void leaves(Vec3 p, Hit &hit) {
        const float far = box(p - Vec3{1.75F, 2.3F, -0.5F}, {1.1F, 0.75F, 0.45F});
        if (far > 0.3F) {
            hit.join(far, Foliage);
            return;
        }
        const OnCurve twig = curve(p, {2.9F, 2.75F, -0.4F}, {1.9F, 2.75F, -0.5F}, {1.1F, 2.2F, -0.5F});
        hit.join(twig.distance - 0.03F + 0.015F * twig.along, Bark);
        for (int i = 0; i < 13; ++i) {
            const float t = static_cast<float>(i) / 12;
            const Vec3 on = mix(mix(Vec3{2.9F, 2.75F, -0.4F}, {1.9F, 2.75F, -0.5F}, t),
                                mix(Vec3{1.9F, 2.75F, -0.5F}, {1.1F, 2.2F, -0.5F}, t), t);
            const float droop = 4.0F + 1.3F * (hash(i, 51) - 0.5F) + (i % 2 == 0 ? 0.5F : -0.7F);
            Vec3 q = turnZ(p - on, droop);
            q = turnX(q, 2.2F * (hash(i, 52) - 0.5F));
            const float reach = 0.3F + 0.12F * hash(i, 53);
            hit.join(blade(q, reach, 0.13F, 0.3F, 0.02F), Foliage);
        }
    }

    static void owl(Vec3 q, Hit &hit) {
        const float far = box(q - Vec3{0, 1.0F, 0}, {0.8F, 1.5F, 0.8F}, 0.3F);
        if (far > 0.3F) {
            hit.join(far, Plumage);
            return;
        }
        const Vec3 h{q.x, q.y, std::fabs(q.z)};
        float body = ellipsoid(turnZ(q - Vec3{-0.02F, 0.78F, 0}, -0.08F), {0.5F, 0.8F, 0.54F});
        body = blend(body, ellipsoid(q - Vec3{0.05F, 1.57F, 0}, {0.45F, 0.42F, 0.53F}), 0.22F);
        // Two shallow dishes for the face, the brows a ridge that runs up into the tufts.
        body = carve(body, sphere(h - Vec3{0.78F, 1.56F, 0.25F}, 0.42F), 0.06F);
        body = blend(body, stick(h, {0.47F, 1.58F, 0.02F}, {0.36F, 1.86F, 0.36F}, 0.055F, 0.06F), 0.06F);
        body = blend(body, stick(h, {0.28F, 1.86F, 0.33F}, {0.18F, 2.10F, 0.45F}, 0.115F, 0.02F), 0.10F);
        body = blend(body, ellipsoid(h - Vec3{0.2F, 0.14F, 0.22F}, {0.2F, 0.26F, 0.18F}), 0.1F); // trousers
        body = blend(body, stick(q, {-0.25F, 0.2F, 0}, {-0.5F, -0.75F, 0}, 0.22F, 0.14F), 0.15F);
        hit.join(body * 0.85F, Plumage);
        const Vec3 w = turnZ(h - Vec3{-0.12F, 0.78F, 0.47F}, 0.1F);
        const float folded = ellipsoid({w.x, w.y, w.z + 0.12F * w.y * w.y}, {0.36F, 0.74F, 0.13F});
        hit.join(blend(folded, stick(h, {-0.25F, 0.5F, 0.4F}, {-0.55F, -0.35F, 0.16F}, 0.15F, 0.04F), 0.15F) * 0.8F,
                 Wing);
        const OnCurve beak = curve(q, {0.42F, 1.56F, 0}, {0.62F, 1.52F, 0}, {0.555F, 1.33F, 0});
        hit.join(beak.distance - mix(0.075F, 0.012F, beak.along), Beak);
        hit.join(sphere(h - EyeAt, EyeSize), Eye);
        for (int toe = -1; toe <= 1; ++toe) {
            const auto t = static_cast<float>(toe);
            const Vec3 from{0.3F, 0.03F, 0.22F + 0.03F * t};
            const Vec3 knuckle{0.45F, 0.02F, 0.22F + 0.12F * t};
            hit.join(blend(stick(h, from, knuckle, 0.075F, 0.06F),
                           stick(h, knuckle, {0.52F, -0.1F, 0.22F + 0.13F * t}, 0.05F, 0.04F), 0.05F),
                     Plumage);
            hit.join(stick(h, {0.53F, -0.1F, 0.22F + 0.13F * t}, {0.5F, -0.24F, 0.22F + 0.13F * t}, 0.035F, 0.008F),
                     Talon);
        }
    }

    static void owlet(Vec3 q, Hit &hit) {
        const float far = sphere(q - Vec3{0, 0.75F, 0}, 1.05F);
        if (far > 0.3F) {
            hit.join(far * OwletSize, Down);
            return;
        }
        const Vec3 h{q.x, q.y, std::fabs(q.z)};
        float body = ellipsoid(q - Vec3{0, 0.55F, 0}, {0.5F, 0.56F, 0.54F});
        body = blend(body, ellipsoid(q - Vec3{0.05F, 1.18F, 0}, {0.42F, 0.37F, 0.48F}), 0.18F);
        body = carve(body, sphere(h - Vec3{0.75F, 1.17F, 0.22F}, 0.4F), 0.06F);
        body = blend(body, stick(h, {0.15F, 1.45F, 0.24F}, {0.1F, 1.62F, 0.33F}, 0.07F, 0.02F), 0.08F);
        body = blend(body, ellipsoid(turnX(h - Vec3{-0.02F, 0.6F, 0.5F}, -0.15F), {0.26F, 0.4F, 0.1F}), 0.06F);
        if (body < 0.1F) {
            body -= 0.028F * (noise(Vec3{q.x * 34, q.y * 15, q.z * 34}) - 0.3F);
        }
        hit.join(body * OwletSize * 0.75F, Down);
        hit.join(sphere(h - OwletEyeAt, OwletEyeSize) * OwletSize, OwletEye);
        const OnCurve beak = curve(q, {0.38F, 1.14F, 0}, {0.54F, 1.12F, 0}, {0.5F, 0.98F, 0});
        hit.join((beak.distance - mix(0.06F, 0.012F, beak.along)) * OwletSize, OwletBeak);
        for (int toe = -1; toe <= 1; ++toe) {
            const float z = 0.2F + 0.1F * static_cast<float>(toe);
            hit.join(stick(h, {0.35F, 0.06F, 0.2F}, {0.55F, -0.02F, z}, 0.07F, 0.05F) * OwletSize, OwletBeak);
        }
    }

    static Surface plumage(Vec3 q) {
        const float side = std::fabs(q.z);
        const float back = smoothStep(0.1F, -0.15F, q.x);
        const float angle = std::atan2(q.z, q.x);
        Vec3 look = mix(colour(0xE8BE84), colour(0xA8682E), 0.3F * back + 0.9F * (fbm(q * 3.5F, 3) - 0.25F));
        const bool head = q.y > 1.3F;
        // Dark streaks down the breast, finer on the head, and thin bars across.
        const float streak = noise(angle * (head ? 15.0F : 9.0F), q.y * (head ? 9.0F : 4.2F) + 3);
        look = mix(look, colour(0x33200F), 0.9F * smoothStep(0.60F, 0.74F, streak));
        const float bar = std::sin(q.y * 62 + 4 * noise(angle * 6, q.y * 5));
        look = mix(look, colour(0x5A3A1E), (head ? 0.15F : 0.35F) * smoothStep(0.3F, 0.9F, bar));
        look = look * (0.85F + 0.3F * noise(q * 30));
        if (q.x > 0.1F && q.y > 1.15F && q.y < 1.98F) {
            // The face: fine rays about each eye, a dark rim, a white bib and white whiskers at the beak.
            const float u = side - EyeAt.z;
            const float v = q.y - EyeAt.y;
            const float r = length(u * 0.92F, v * 1.02F);
            const float ray = noise(std::atan2(u, v) * 16, r * 5);
            Vec3 face = mix(colour(0xF2D9B0), colour(0xB98A5A), 0.75F * ray);
            face = mix(face, colour(0x2A170C), smoothStep(0.21F, 0.15F, r));
            face = mix(face, colour(0x2E1A10), smoothStep(0.25F, 0.31F, r + 0.03F * ray) * 0.85F);
            look = mix(look, face, smoothStep(0.36F, 0.32F, r));
            const float whiskers = length(side * 1.5F, (q.y - 1.5F) * 0.75F);
            look = mix(look, colour(0xFFF6E6), smoothStep(0.15F, 0.10F, whiskers + 0.03F * ray));
            const float bib = length(side * 0.62F, (q.y - 1.215F) * 2.0F);
            look = mix(look, colour(0xFFF4DE) * (0.9F + 0.15F * noise(q * 20)), 0.9F * smoothStep(0.2F, 0.13F, bib));
            const float brow = std::fabs((q.y - 1.585F) - 0.82F * (side - 0.02F));
            look = mix(look, colour(0xFFF2DC), 0.85F * smoothStep(0.07F, 0.035F, brow) * smoothStep(0.28F, 0.2F, side));
        }
        if (q.y > 1.93F && side > 0.3F) {
            look = mix(look, colour(0x24140C), 0.7F);
        }
        return {.colour = look, .shine = 0.08F, .sharpness = 12, .sheer = 0.1F};
    }

    static Surface wing(Vec3 q) {
        Vec3 look = mix(colour(0x5A3A20), colour(0x94683A), noise(q * 9));
        const float uneven = noise(Vec3{q.x * 12, q.y * 5, q.z * 12});
        look = mix(look, colour(0x26160C), 0.75F * smoothStep(0.1F, 0.6F, std::sin(q.y * 24 + 5 * uneven)));
        look = mix(look, colour(0xE8C88E), 0.8F * smoothStep(0.70F, 0.82F, noise(Vec3{q.x * 11, q.y * 11, 3})));
        return {.colour = look, .shine = 0.03F, .sharpness = 14};
    }

    static Surface eye(Vec3 q, Vec3 at, float size, Vec3 outer, Vec3 inner) {
        const Vec3 e = (Vec3{q.x, q.y, std::fabs(q.z)} - at) * (1 / size);
        const float r = length(e.y - 0.02F, e.z - 0.06F);
        Vec3 look =
            mix(inner, outer, smoothStep(0.5F, 0.85F, r)) * (0.85F + 0.3F * noise(std::atan2(e.y, e.z) * 10, r * 3));
        look = mix(look, colour(0x0A0605), std::max(smoothStep(0.53F, 0.48F, r), smoothStep(0.84F, 0.92F, r)));
        return {.colour = look, .shine = 4, .sharpness = 350, .mirror = 0.025F, .glow = look * 0.5F};
    }

    static Surface down(Vec3 q) {
        const float fluff = 0.5F * fbm(Vec3{q.x * 58, q.y * 22, q.z * 58}, 3) + 0.5F * fbm(q * 9, 2);
        Vec3 look = mix(colour(0x6A5E58), colour(0xD2C6B8), 1.2F * fluff);
        const float bars = smoothStep(0.55F, 0.9F, std::sin(q.y * 32 + 3 * noise(q * 5)));
        look = mix(look, colour(0x8A6A4E), 0.35F * bars);
        if (q.x > 0.12F && q.y > 0.85F) {
            const float u = std::fabs(q.z) - OwletEyeAt.z;
            const float r = length(u * 0.95F, q.y - OwletEyeAt.y);
            look = mix(look, colour(0xFBF4E6), smoothStep(0.3F, 0.26F, r));
            look = mix(look, colour(0x33261E), smoothStep(0.215F, 0.16F, r + 0.03F * fluff));
        }
        return {.colour = look, .sheer = 0.2F};
    }

    static Surface bare(int material, Vec3 p, Vec3 n) {
        const float grainy = fbm(p * 4, 4);
        switch (material) {
        case Bark: {
            const Vec3 bark = mix(colour(0x2C1E1A), colour(0x84664E), fbm(p.x * 3, p.y * 11 + p.z * 7, 4));
            const Vec3 green = mix(colour(0x21481A), colour(0x7FA532), 1.5F * fbm(p * 24, 3) - 0.35F + 0.35F * grainy);
            return {.colour = mix(bark, green, moss(p) * smoothStep(-0.5F, 0.1F, n.y)), .sheer = 0.1F};
        }
        case Cap: {
            const Cell dot = cells(p.x * 15, p.y * 15 + p.z * 9, 0.6F);
            const Vec3 red = mix(colour(0xC41A10), colour(0xF0461E), grainy);
            return {.colour = n.y < -0.2F ? colour(0xF2DDB8)
                                          : mix(red, colour(0xFFF4E4), smoothStep(0.24F, 0.19F, dot.distance)),
                    .shine = 0.6F,
                    .sharpness = 50,
                    .mirror = 0.02F,
                    .sheer = 0.15F};
        }
        case Stem:
            return {.colour = colour(0xF2E4CC) * (0.8F + 0.3F * grainy), .sheer = 0.2F};
        case Foliage:
            return {.colour = mix(colour(0xB8380F), colour(0xF5A623),
                                  noise(p * 2.7F + Vec3{4, 0, 0}) * 0.7F + 0.4F * noise(p * 14)),
                    .shine = 0.15F,
                    .sheer = 0.6F};
        case Plumage:
            return plumage(local(p));
        case Wing:
            return wing(local(p));
        case Beak:
        case Talon:
            return {.colour = mix(colour(0x1A1614), colour(0x4A423C), grainy),
                    .shine = 1.0F,
                    .sharpness = 60,
                    .mirror = 0.04F};
        case Eye:
            return eye(local(p), EyeAt, EyeSize, colour(0xF06A00), colour(0xFFB81A));
        case OwletEye:
            return eye(owletLocal(p), OwletEyeAt, OwletEyeSize, colour(0xF59A00), colour(0xFFD23A));
        case OwletBeak:
            return {.colour = mix(colour(0x5A4A44), colour(0x9A8478), grainy), .shine = 0.4F};
        default:
            return down(owletLocal(p));
        }
    }
};

} // namespace

std::unique_ptr<Scene> owl() {
    return std::make_unique<Owl>();
}

} // namespace lumora::samples
