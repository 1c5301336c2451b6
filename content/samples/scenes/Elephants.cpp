// An elephant and her calf at a waterhole in the savannah, shortly before the sun goes down.
#include "Scenes.h"

#include "Bodies.h"
#include "Plants.h"
#include "Skies.h"

namespace lumora::samples {

namespace {

enum Material { Ground, Wood, Canopy, Stone, Reed, Tusk, Nail, Eye, Egret, Beak, Skin }; // Skin + number of the animal

struct Animal {
    Vec3 at;
    float size;
    float heading; ///< radians; 0 looks to the right
    bool calf;
};
constexpr Animal Animals[] = {{{1.0F, 0.02F, 1.1F}, 1.0F, 3.62F, false}, {{-2.6F, 0.0F, -0.2F}, 0.52F, -0.8F, true}};

struct Tree {
    Vec3 foot;
    float tall;
    float lean;
};
constexpr Tree Trees[] = {{{9.5F, 0.3F, 17}, 7.0F, -0.1F},
                          {{-15, 0.3F, 34}, 7.5F, 0.08F},
                          {{26, 0.3F, 52}, 8.0F, 0},
                          {{-4, 0.3F, 60}, 7.0F, -0.06F},
                          {{-38, 0.3F, 66}, 9.0F, 0.04F}};

class Elephants : public Scene {
  public:
    Elephants() {
        camera = {{-1.5F, 1.35F, -9.2F}, {-0.45F, 1.52F, 1}, 1.95F};
        sunDirection = normalise({-0.86F, 0.36F, -0.36F});
        sunColour = {3.3F, 2.05F, 1.05F};
        skyLight = {0.42F, 0.36F, 0.42F};
        groundLight = {0.26F, 0.17F, 0.10F};
        farthest = 140;
        ceiling = 10;
        caution = 0.75F;
        steps = 190;
        shadowReach = 9;
        shadowSoftness = 10;
        creviceSize = 0.45F;
        waterLevel = 0;
        waterColour = {0.09F, 0.055F, 0.035F};
        bloom = 0.25F;
        exposure = 1.0F;
        vignette = 0.35F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join((p.y - groundHeight(p)) * 0.8F, Ground);
        for (int i = 0; i < static_cast<int>(std::size(Animals)); ++i) {
            elephant(local(p, Animals[i]), i, hit);
        }
        for (const Tree &tree : Trees) {
            acacia(p - tree.foot, tree, hit);
        }
        egret(p - Vec3{-4.0F, -0.05F, -1.6F}, 1, hit);
        egret(p - Vec3{2.75F, -0.05F, -1.8F}, -1, hit);
        stones(p, hit);
        reeds(p - Vec3{-3.1F, 0, -5.3F}, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        switch (material) {
        case Ground:
            return ground(p, n);
        case Wood:
            return {.colour = mix(colour(0x3A281E), colour(0x7A5A42), noise(Vec3{p.x * 6, p.y * 1.5F, p.z * 6}))};
        case Canopy:
            return {.colour = mix(colour(0x2C3A14), colour(0x8A8A30), noise(p * 2.2F)), .sheer = 0.3F};
        case Stone:
            return {.colour = mix(colour(0x6A5648), colour(0xB59A80), fbm(p * 5, 4))};
        case Reed:
            return {.colour = mix(colour(0x3A4A14), colour(0xB8A83A), smoothStep(0.0F, 1.4F, p.y)),
                    .shine = 0.2F,
                    .sheer = 0.4F};
        case Tusk:
            return {.colour = mix(colour(0xF2E3BE), colour(0xFFF8E4), noise(p * 9)),
                    .shine = 0.5F,
                    .sharpness = 50,
                    .mirror = 0.02F,
                    .sheer = 0.1F};
        case Nail:
            return {.colour = colour(0xCDB79C), .shine = 0.2F};
        case Eye:
            return {.colour = colour(0x2A160A), .shine = 1.2F, .sharpness = 120, .mirror = 0.02F};
        case Egret:
            return {.colour = mix(colour(0xF2EAE0), colour(0xFFFFFF), noise(p * 14)), .sheer = 0.2F};
        case Beak:
            return {.colour = colour(0xF2A21E), .shine = 0.3F};
        default:
            return skin(local(p, Animals[material - Skin]), material - Skin, n);
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float up = d.y;
        Vec3 light = mix(colour(0xFFC45E), colour(0xFF8A3D), smoothStep(0.0F, 0.14F, up));
        light = mix(light, colour(0xD8566A), smoothStep(0.1F, 0.34F, up));
        light = mix(light, colour(0x5A3E86), smoothStep(0.26F, 0.62F, up));
        light = light * 0.95F;
        // The sun itself, low on the left; the animals are lit from nearer to the eye, as a painter would.
        const Vec3 sun = normalise({-0.2F, 0.165F, 1.0F});
        const float near = std::max(dot(d, sun), 0.0F);
        light += colour(0xFF9A3A) * (0.9F * std::pow(near, 14.0F)) + colour(0xFFD27A) * (0.8F * std::pow(near, 90.0F));
        const Cloud cloud = clouds({d.x * 0.55F, up, d.z}, sun, 0.62F, 1.9F, 4.6F);
        const Vec3 lit = mix(colour(0x8A4A7A), colour(0xFFB070) * 1.25F, cloud.lit);
        light = mix(light, lit, 0.75F * cloud.amount);
        light += colour(0xFFF0B8) * (6 * smoothStep(0.99915F, 0.9995F, near));
        return range(light, d);
    }

    float grain(int material, Vec3 p) const override {
        if (material < Skin) {
            return material == Canopy ? 0.25F * noise(p * 3.1F) : 0;
        }
        const Vec3 q = local(p, Animals[material - Skin]);
        // Skin wrinkled by fine folds that bend with the body, not by a net of bricks.
        const float bent = 3 * fbm(q * 1.7F, 3);
        const float folds = 0.5F + 0.5F * std::sin(q.y * 34 + 6 * bent + 2.5F * noise(q * 5));
        float rough = 0.0030F * folds * noise(q * 4) + 0.0035F * fbm(q * 26, 3) + 0.006F * fbm(q * 7, 2);
        if (q.x > 1.9F && std::fabs(q.z) < 0.4F) {
            const OnCurve nose = trunk(q, Animals[material - Skin].calf);
            rough = mix(rough, 0.007F * std::sin(nose.along * 105 + 1.5F * noise(q * 6)) + 0.006F * fbm(q * 18, 3),
                        smoothStep(0.02F, 0.2F, nose.along));
        }
        return rough * Animals[material - Skin].size;
    }

    Vec3 waterNormal(Vec3 p, float distance) const override {
        const float calm = 0.05F / (1 + 0.12F * distance);
        float x = calm * (fbm(p.x * 1.3F, p.z * 4.5F, 3) - 0.44F);
        float z = calm * 2.2F * (fbm(p.x * 1.6F + 9, p.z * 5.5F, 3) - 0.44F);
        // Rings run from where the calf has stepped into the water.
        const float dx = p.x + 2.2F;
        const float dz = p.z + 1.55F;
        const float r = length(dx, dz);
        const float ring = 0.07F * std::sin(r * 15) * std::exp(-r * 0.85F) / std::max(r, 0.15F);
        return normalise({x + ring * dx, 1, z + ring * dz});
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return distance >= farthest
                   ? light
                   : haze(light, *this, d, std::max(0.0F, distance - 9), 75, colour(0xFFB568) * 0.8F, colour(0xFFC878));
    }

  private:
    /// Snow mountain and hills on the horizon, before the sky's light.
    static Vec3 range(Vec3 light, Vec3 d) {
        const float side = std::atan2(d.x, d.z);
        const float rough = 0.016F * (fbm(side * 26, 3, 4) - 0.45F);
        const float away = std::fabs(side + 0.05F);
        const float top = 0.235F * std::exp(-away * 3.6F);
        const float peak = std::min(top, 0.192F + rough) + rough * 0.6F;
        if (d.y < peak) {
            const float ridge = ridged(side * 30 + d.y * 25, d.y * 9 - side * 8, 4);
            const float snow = smoothStep(0.135F, 0.165F, d.y + 0.05F * ridge);
            const Vec3 rock = mix(colour(0x8A5A86), colour(0xD98A78), ridge);
            const Vec3 stone = mix(rock, mix(colour(0xD8A0B8), colour(0xFFEFDC) * 1.1F, ridge), snow);
            light = mix(stone, colour(0xFFB060), 0.75F * smoothStep(0.17F, 0.0F, d.y) + 0.12F);
        }
        const float hills = 0.018F + 0.03F * fbm(side * 5 + 2, 1, 4);
        return d.y < hills ? mix(colour(0xB5705A), colour(0xE89A58), smoothStep(hills, 0, d.y)) : light;
    }

    static float shore(float x) { return -1.25F + 0.55F * std::sin(x * 0.55F + 0.5F) + 0.25F * std::sin(x * 1.7F); }

    static float groundHeight(Vec3 p) {
        const float inland = p.z - shore(p.x);
        float height = (inland > 0 ? 0.14F : 0.3F) * inland / (1 + 0.25F * std::fabs(inland)) +
                       0.05F * (fbm(p.x * 1.5F, p.z * 1.5F, 3) - 0.45F);
        const float dry = smoothStep(0.8F, 3.2F, inland + 1.5F * (noise(p.x * 0.9F, p.z * 0.9F) - 0.5F));
        if (dry > 0 && p.y < height + 0.6F && p.z < 26) {
            const float bend = 0.12F * std::sin(p.x * 1.3F) + 0.1F * noise(p.x * 2, p.z * 2);
            const float tuft = 0.15F + 0.4F * smoothStep(0.3F, 0.75F, noise(p.x * 0.8F + 5, p.z * 0.8F));
            height += dry * tuft * blades(p.x + bend * (p.y - height), p.z, 11);
        }
        return height;
    }

    static Vec3 local(Vec3 p, const Animal &one) { return turnY(p - one.at, one.heading) * (1 / one.size); }

    static OnCurve trunk(Vec3 q, bool calf) {
        return calf ? curve(q, {2.1F, 2.3F, 0}, {2.95F, 1.35F, 0}, {3.45F, 2.6F, 0.05F})
                    : curve(q, {2.1F, 2.35F, 0}, {2.95F, 1.1F, 0}, {2.5F, 0.42F, 0});
    }

    static void elephant(Vec3 q, int number, Hit &hit) {
        const Animal &one = Animals[number];
        const float far = box(q - Vec3{0.45F, 1.75F, 0}, {3.1F, 1.75F, 1.75F}, 0.3F);
        if (far > 0.4F) {
            hit.join(far * one.size, Skin + number);
            return;
        }
        const float size = one.size * 0.85F;
        const float side = q.z > 0 ? 1.0F : -1.0F;
        const Vec3 h{q.x, q.y, std::fabs(q.z)};
        float body = ellipsoid(q - Vec3{0, 1.9F, 0}, {1.45F, 0.82F, 0.74F});
        body = blend(body, ellipsoid(q - Vec3{0.78F, 2.1F, 0}, {0.72F, 0.85F, 0.66F}), 0.25F);
        body = blend(body, ellipsoid(q - Vec3{-0.85F, 2.05F, 0}, {0.72F, 0.82F, 0.68F}), 0.3F);
        body = blend(body, ellipsoid(turnZ(q - Vec3{1.35F, 2.35F, 0}, 0.3F), {0.6F, 0.55F, 0.45F}), 0.3F); // neck
        // Legs: columns in front, a knee behind; one of each pair a step ahead.
        const float step = 0.17F * side;
        const Vec3 f{h.x - step * smoothStep(1.7F, 0.2F, q.y), h.y, h.z};
        const Vec3 b{h.x + step * smoothStep(1.7F, 0.2F, q.y), h.y, h.z};
        float legs =
            limb(f, {0.85F, 1.6F, 0.34F}, {0.9F, 0.85F, 0.4F}, {0.86F, 0.16F, 0.4F}, 0.36F, 0.25F, 0.23F, 0.1F);
        legs = std::min(legs, limb(b, {-0.9F, 1.65F, 0.32F}, {-0.72F, 0.95F, 0.4F}, {-0.98F, 0.16F, 0.4F}, 0.5F, 0.28F,
                                   0.22F, 0.12F));
        const float feet = std::min(rodY(f - Vec3{0.9F, 0.1F, 0.4F}, 0.29F, 0.14F, 0.1F),
                                    rodY(b - Vec3{-0.95F, 0.1F, 0.4F}, 0.28F, 0.14F, 0.1F));
        legs = blend(legs, feet, 0.12F);
        body = blend(body, legs, 0.22F);
        // Head: a high forehead, full cheeks, the lower lip under the trunk.
        const float big = one.calf ? 1.12F : 1.0F;
        const Vec3 head = (h - Vec3{1.8F, 2.5F, 0}) * (1 / big);
        float face = ellipsoid(turnZ(head, 0.35F), {0.5F, 0.64F, 0.45F});
        face = blend(face, ellipsoid(head - Vec3{0.22F, -0.3F, 0}, {0.36F, 0.42F, 0.34F}), 0.2F);
        face = blend(face, sphere(head - Vec3{0.27F, 0.1F, 0.3F}, 0.13F), 0.14F); // brow
        const Vec3 eye = turnZ(head - Vec3{0.4F, 0.0F, 0.350F}, -0.25F);
        const float lids = std::max(sphere(eye, 0.082F), 0.026F + 0.8F * eye.x * eye.x - std::fabs(eye.y + 0.012F));
        face = blend(face, lids, 0.03F);
        face = blend(face, ellipsoid(head - Vec3{0.2F, -0.66F, 0}, {0.28F, 0.13F, 0.15F}), 0.15F);
        const OnCurve nose = trunk(q, one.calf);
        face = blend(face, nose.distance - mix(0.32F, 0.11F, std::pow(nose.along, 0.7F)), 0.16F);
        if (!one.calf) {
            face = blend(face, limb(q, {2.5F, 0.42F, 0}, {2.50F, 0.30F, 0}, {2.62F, 0.22F, 0}, 0.115F, 0.095F, 0.06F),
                         0.05F);
            face = carve(face, sphere(q - Vec3{2.66F, 0.20F, 0}, 0.045F), 0.02F); // the nostrils
        }
        body = blend(body, face * big, 0.2F);
        const float small = one.calf ? 0.85F : 1.0F;
        body = blend(body, ear(head * (1 / small)) * small * big, 0.05F);
        const OnCurve tail = curve(q, {-1.5F, 2.3F, 0}, {-1.85F, 1.9F, 0.05F}, {-1.72F, 1.0F, 0.15F});
        body = blend(body, tail.distance - mix(0.09F, 0.035F, tail.along), 0.08F);
        body = std::min(body, ellipsoid(q - Vec3{-1.72F, 0.85F, 0.17F}, {0.06F, 0.2F, 0.06F}));
        hit.join(body * size, Skin + number);
        hit.join(sphere(head - Vec3{0.4F, 0.0F, 0.350F}, 0.062F) * size * big, Eye);
        if (!one.calf) {
            const OnCurve tusk = curve(h, {2.05F, 2.1F, 0.24F}, {2.42F, 1.35F, 0.4F}, {2.98F, 1.42F, 0.42F});
            hit.join((tusk.distance - mix(0.085F, 0.02F, tusk.along)) * size, Tusk);
        }
        float nails = 9;
        for (int i = -1; i <= 1; ++i) {
            const float a = static_cast<float>(i) * 0.65F;
            const Vec3 off{0.27F * std::cos(a), -0.04F, 0.27F * std::sin(a)};
            nails = std::min({nails, ellipsoid(f - Vec3{0.9F, 0.1F, 0.4F} - off, {0.05F, 0.075F, 0.07F}),
                              ellipsoid(b - Vec3{-0.95F, 0.1F, 0.4F} - off, {0.05F, 0.075F, 0.07F})});
        }
        hit.join(nails * size, Nail);
    }

    /// A great flap that hangs from behind the eye, backwards and outwards; `p` from the middle of the head.
    static float ear(Vec3 p) {
        const Vec3 q = p - Vec3{-0.3F, 0.22F, 0.38F};
        const float u = -0.84F * q.x + 0.54F * q.z;
        const float w = 0.54F * q.x + 0.84F * q.z + 0.16F * u * u + 0.05F * std::sin(q.y * 5 + 1) * clamp01(u) * 1.5F;
        const float flap = blend(ellipsoid({u - 0.44F - 0.12F * q.y, q.y + 0.12F, w}, {0.6F, 0.6F, 0.06F}),
                                 ellipsoid({u - 0.16F + 0.25F * q.y, q.y + 0.62F, w}, {0.3F, 0.55F, 0.05F}), 0.2F);
        return flap * 0.8F;
    }

    static void acacia(Vec3 p, const Tree &tree, Hit &hit) {
        const float tall = tree.tall;
        const float far = box(p - Vec3{0, tall * 0.5F, 0}, {tall * 0.8F, tall * 0.56F, tall * 0.8F}, 0.2F);
        if (far > 1) {
            hit.join(far, Canopy);
            return;
        }
        const Vec3 q = turnZ(p, tree.lean) * (7 / tall);
        const Vec3 fork{0.15F, 2.6F, 0};
        float wood = stick(q, {0, -0.5F, 0}, fork, 0.36F, 0.24F);
        float crown = 9;
        for (int i = 0; i < 5; ++i) {
            const auto k = static_cast<float>(i);
            const float a = k * 1.2566F + tree.foot.x;
            const Vec3 end{2.3F * std::cos(a), 5.5F + 0.5F * std::sin(k * 2.3F + tree.foot.z), 2.3F * std::sin(a)};
            wood = blend(wood, stick(q, fork, end, 0.17F, 0.06F), 0.15F);
            crown = blend(crown, ellipsoid(q - end - Vec3{0, 0.3F, 0}, {2.4F, 0.55F, 2.4F}), 0.3F);
        }
        crown = blend(crown, ellipsoid(q - Vec3{0, 6.1F, 0}, {2.8F, 0.6F, 2.8F}), 0.3F);
        if (crown < 0.8F) {
            crown += 0.75F * (fbm(q * 2.3F, 3) - 0.3F);
        }
        hit.join(wood * 0.8F * tall / 7, Wood);
        hit.join(crown * 0.6F * tall / 7, Canopy);
    }

    /// A white wading bird, looking to the right (1) or to the left (-1).
    static void egret(Vec3 p, float facing, Hit &hit) {
        const float far = sphere(p - Vec3{0, 0.5F, 0}, 0.65F);
        if (far > 0.3F) {
            hit.join(far, Egret);
            return;
        }
        const Vec3 q{p.x * facing, p.y, p.z};
        float white = ellipsoid(turnZ(q - Vec3{0, 0.52F, 0}, 0.35F), {0.27F, 0.12F, 0.11F});
        white = blend(white, stick(q, {0.18F, 0.6F, 0}, {0.13F, 0.85F, 0}, 0.055F, 0.035F), 0.06F);
        white = blend(white, stick(q, {0.13F, 0.85F, 0}, {0.24F, 1.02F, 0}, 0.035F, 0.04F), 0.04F);
        white = blend(white, stick(q, {-0.2F, 0.45F, 0}, {-0.36F, 0.37F, 0}, 0.06F, 0.02F), 0.04F);
        hit.join(white * 0.9F, Egret);
        const Vec3 h{q.x, q.y, std::fabs(q.z)};
        float dark = stick(h, {0.02F, 0.45F, 0.04F}, {0.0F, -0.1F, 0.05F}, 0.013F);
        dark = std::min(dark, stick(q, {0.27F, 1.02F, 0}, {0.47F, 0.99F, 0}, 0.032F, 0.008F));
        hit.join(dark, Beak);
    }

    static void stones(Vec3 p, Hit &hit) {
        if (p.y > 0.9F || p.z > 2 || p.z < -9) {
            return;
        }
        constexpr float Stones[][3] = {{-4.2F, -2.0F, 0.4F},
                                       {-4.75F, -1.5F, 0.28F},
                                       {4.3F, -0.9F, 0.45F},
                                       {5.0F, -1.3F, 0.25F},
                                       {-0.2F, -2.0F, 0.18F}};
        for (const auto &[x, z, r] : Stones) {
            const Vec3 q = p - Vec3{x, 0.02F, z};
            const float rough = length(q) < r * 2 ? 0.16F * r * (fbm(q * (2 / r), 3) - 0.4F) : 0.0F;
            hit.join((ellipsoid(turnY(q, x), {r * 1.2F, r * 0.65F, r}) + rough) * 0.8F, Stone);
        }
    }

    /// Blades that rise out of the water near the eye.
    static void reeds(Vec3 p, Hit &hit) {
        const float far = box(p - Vec3{0.1F, 0.7F, 0}, {0.95F, 0.9F, 0.5F});
        if (far > 0.3F) {
            hit.join(far, Reed);
            return;
        }
        for (int i = 0; i < 11; ++i) {
            const Vec3 foot{0.8F * hash(i, 21) - 0.55F, -0.2F, 0.7F * hash(i, 22) - 0.35F};
            const float tall = 0.7F + 0.85F * hash(i, 23);
            const float lean = 0.9F * (hash(i, 24) - 0.35F);
            const OnCurve blade =
                curve(p, foot, foot + Vec3{0.1F * lean, tall * 0.7F, 0}, foot + Vec3{lean, tall, 0.1F});
            hit.join((blade.distance - 0.022F * (1 - blade.along) - 0.003F) * 0.9F, Reed);
        }
    }

    static Surface skin(Vec3 q, int number, Vec3 n) {
        const float blotch = fbm(q * 2.4F, 4);
        Vec3 grey = mix(colour(0x625E60), colour(0xA09A98), blotch);
        grey = grey * (0.8F + 0.4F * noise(q * 16));
        // Dust on the back, mud at the feet, pink freckles at ear, brow and trunk.
        grey = mix(grey, colour(0xC79A70), 0.4F * smoothStep(0.35F, 0.9F, n.y + 0.5F * blotch - 0.25F));
        grey = mix(grey, colour(0x4A352A), 0.75F * smoothStep(0.55F, 0.1F, q.y + 0.5F * (noise(q * 5) - 0.5F)));
        const float ear = smoothStep(0.5F, 0.75F, std::fabs(q.z)) * smoothStep(1.9F, 1.6F, q.x) *
                          smoothStep(0.6F, 0.9F, q.x) * smoothStep(1.3F, 1.6F, q.y);
        grey = mix(grey, colour(0xB08A80), 0.25F * ear * fbm(q * 6, 3));
        if (q.x < -1.6F && q.y < 1.05F) {
            grey = colour(0x1E1713);
        }
        return {.colour = number == 0 ? grey : grey * 1.1F, .shine = 0.07F, .sharpness = 14, .sheer = 0.25F * ear};
    }

    static Surface ground(Vec3 p, Vec3 n) {
        const float inland = p.z - shore(p.x);

        const float dry = smoothStep(0.6F, 2.4F, inland + 1.5F * (noise(p.x * 0.9F, p.z * 0.9F) - 0.5F));
        const Vec3 mud = mix(colour(0x5A3A26), colour(0xA87448), fbm(p.x * 3, p.z * 3, 4)) *
                         mix(0.55F, 1.0F, smoothStep(-0.1F, 0.6F, inland));
        const Vec3 straw = mix(colour(0x8A6A1E), colour(0xF0C860), noise(p.x * 3, p.z * 3)) *
                           (0.55F + 0.75F * noise(p.x * 17, p.z * 17));
        const Vec3 green = mix(straw, colour(0x7A8A2A), 0.5F * smoothStep(0.45F, 0.7F, fbm(p.x * 0.4F, p.z * 0.4F, 3)));
        return {.colour = mix(mud, green, dry), .sheer = 0.35F * dry * smoothStep(0.9F, 0.3F, n.y)};
    }
};

} // namespace

std::unique_ptr<Scene> elephants() {
    return std::make_unique<Elephants>();
}

} // namespace lumora::samples
