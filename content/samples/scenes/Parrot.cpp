// Two macaws over a bay in the south seas at noon: a scarlet one, and farther back a blue and yellow one.
#include "Scenes.h"

#include "Bodies.h"
#include "Skies.h"

namespace lumora::samples {

namespace {

enum Material { Bark, Green, Petal, Stamen, Foot, Eye, Plumage, Wing = Plumage + 2, Tail = Wing + 2, Bill = Tail + 2 };

struct Macaw {
    Vec3 at;
    float size;
    float heading; ///< radians; 0 looks to the right
    unsigned front;
    unsigned back;
    unsigned forehead;
    unsigned coverts; ///< the wing's three bands, from the shoulder
    unsigned middle;
    unsigned flight;
    unsigned tail;
    unsigned bill;
};
constexpr Macaw Macaws[] = {{{0.62F, 0.06F, 0.0F},
                             1.06F,
                             -2.5F,
                             0xE0161C,
                             0xC40F16,
                             0xE81A1E,
                             0xD0121A,
                             0xFFC61A,
                             0x1450C8,
                             0xD8121C,
                             0xF6E6CC},
                            {{-1.72F, 0.72F, 2.3F},
                             0.92F,
                             -0.75F,
                             0xFFB00A,
                             0x0F66D8,
                             0x58B83A,
                             0x0F7AE0,
                             0x0F66D8,
                             0x123FB0,
                             0x0F5CD0,
                             0x25201F}};
constexpr Vec3 EyeAt{0.265F, 1.535F, 0.232F};
constexpr Vec3 Blossoms[] = {{-1.18F, 0.12F, -0.42F}, {-0.72F, -0.36F, -0.5F}, {1.95F, 0.42F, -0.35F}};

class Parrot : public Scene {
  public:
    Parrot() {
        camera = {{-0.1F, 1.0F, -6.4F}, {-0.06F, 0.5F, 0}, 2.3F};
        sunDirection = normalise({-0.45F, 0.78F, -0.5F});
        sunColour = {2.9F, 2.7F, 2.35F};
        skyLight = {0.45F, 0.58F, 0.75F};
        groundLight = {0.22F, 0.30F, 0.30F};
        farthest = 16;
        caution = 0.78F;
        steps = 160;
        shadowReach = 3;
        shadowSoftness = 10;
        creviceSize = 0.22F;
        bloom = 0.14F;
        exposure = 0.95F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        branches(p, hit);
        for (int i = 0; i < 2; ++i) {
            macaw(local(p, i), i, hit);
        }
        for (const Vec3 &at : Blossoms) {
            blossom(p - at, at.x, hit);
        }
        foliage(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        switch (material) {
        case Bark: {
            const Vec3 wood = mix(colour(0x4A3526), colour(0xA88662), fbm(p.x * 2.5F, p.y * 14 + p.z * 9, 4));
            return {.colour = mix(wood, colour(0x7F9A4A),
                                  0.6F * smoothStep(0.55F, 0.7F, fbm(p * 3, 4)) * smoothStep(-0.2F, 0.5F, n.y))};
        }
        case Green: {
            const float tone = noise(p * 3.1F);
            return {.colour = mix(colour(0x1C6A24), colour(0x63B83A), 0.5F * tone + 0.5F * fbm(p * 14, 3)),
                    .shine = 0.4F,
                    .sharpness = 36,
                    .mirror = 0.015F,
                    .sheer = 0.6F};
        }
        case Petal:
            return petal(p);
        case Stamen:
            return {.colour = colour(0xFFD83A), .sheer = 0.2F};
        case Foot:
            return {.colour = mix(colour(0x3A3634), colour(0x7A726C), noise(p * 32)), .shine = 0.2F};
        case Eye:
            return eye(local(p, p.z > 1 ? 1 : 0));
        default:
            return bird(material, p);
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float side = std::atan2(d.x, d.z);
        const float up = d.y + 0.012F;
        Vec3 light = mix(colour(0xA8DCFF), colour(0x2478E8), smoothStep(0.0F, 0.34F, up));
        light = mix(light, colour(0x1560C8), smoothStep(0.35F, 0.9F, up));
        // Heaped clouds out of focus.
        const float heap = fbm(side * 4.2F + 5, up * 7.5F + 0.6F, 4);
        const float base = smoothStep(0.02F, 0.09F, up) * smoothStep(0.42F, 0.12F, up);
        light = mix(light, mix(colour(0xB8CDE8), colour(0xFFFFFF), smoothStep(0.42F, 0.62F, heap)) * 1.15F,
                    base * smoothStep(0.44F, 0.56F, heap) * 0.92F);
        if (up < 0) { // the sea: deep far out, turquoise towards the beach, glittering
            light = mix(colour(0x1272C4), colour(0x22C8D0), smoothStep(-0.02F, -0.17F, up));
            light = mix(light, colour(0x8AF0DC), smoothStep(-0.16F, -0.31F, up + 0.03F * std::sin(side * 5)));
            light = light * (0.78F + 0.45F * fbm(side * 22, 1.4F / (0.03F - up), 3) * 1.2F);
            const Cell glint = cells(side * 26, up * 70, 0.9F);
            light += Vec3{1, 1, 0.95F} *
                     (0.55F * smoothStep(0.2F, 0.05F, glint.distance) * smoothStep(0.75F, 1.0F, glint.id));
            const float sand = -0.315F + 0.05F * std::sin(side * 3.4F + 0.6F);
            light = mix(light, colour(0xFFFFFF), 0.7F * smoothStep(0.016F, 0.0F, std::fabs(up - sand - 0.008F)));
            light = mix(light,
                        mix(colour(0xD8B884), colour(0xFFEFC8), smoothStep(0.0F, -0.06F, up - sand)) *
                            (0.85F + 0.3F * fbm(side * 40, up * 130, 3)),
                        smoothStep(0.0F, -0.012F, up - sand));
        }
        light = island(light, side, up, 0.30F, 0.30F, 0.105F);
        return island(light, side, up, -0.52F, 0.22F, 0.06F);
    }

    float grain(int material, Vec3 p) const override {
        if (material == Bark) {
            return 0.012F * ridged(p.x * 2.2F, p.y * 12 + p.z * 9, 3) + 0.005F * noise(p * 40);
        }
        if (material < Plumage || material >= Bill) {
            return 0;
        }
        const int i = (material - Plumage) % 2;
        const Vec3 q = local(p, i);
        const Feather f = featherAt(material, q);
        const float large = material < Wing   ? 0.0055F * (1 - bareSkin(q))
                            : material < Tail ? (wingPlace({q.x, q.y, std::fabs(q.z)}).y > -0.05F ? 0.02F : 0.007F)
                                              : 0.0F;
        return (large * (0.9F - std::min(f.along, 0.9F)) + 0.003F * noise(Vec3{q.x * 70, q.y * 25, q.z * 70})) *
               Macaws[i].size;
    }

    Vec3 air(Vec3 light, Vec3, Vec3, float distance) const override {
        return distance < farthest ? mix(light, colour(0x9FD8F0), 0.08F * smoothStep(6.5F, 9.5F, distance)) : light;
    }

  private:
    static Vec3 local(Vec3 p, int i) { return turnY(p - Macaws[i].at, Macaws[i].heading) * (1 / Macaws[i].size); }

    /// A wooded hill that rises from the sea, palms along its shore.
    static Vec3 island(Vec3 light, float side, float up, float at, float wide, float tall) {
        const float off = (side - at) / wide;
        const float bumps = fbm(side * 30, up * 38, 5);
        const float top = tall * std::exp(-5 * off * off) + 0.022F * (bumps - 0.3F) - 0.006F;
        const Vec3 wood = mix(colour(0x2C7A5A), colour(0x8AC86A),
                              smoothStep(0.25F, 0.68F, bumps + 0.25F * noise(side * 130, up * 170) - 0.1F));
        light = mix(light, mix(wood, colour(0x9FD0E8), 0.25F), smoothStep(0, 0.006F, std::min(top - up, up + 0.004F)));
        const float beach = std::max(std::fabs(up + 0.004F) - 0.005F, (std::fabs(off) - 0.62F) * 0.05F);
        return mix(light, colour(0xFFEFC8), smoothStep(0.003F, 0, beach));
    }

    static void branches(Vec3 p, Hit &hit) {
        const float bend = 0.06F * std::sin(p.x * 1.7F);
        float d = stick(p - Vec3{0, bend, 0.08F * std::sin(p.x)}, {-4, -0.42F, 0.3F}, {4, 0.2F, 0}, 0.13F, 0.2F);
        d = blend(d, stick(p, {-1.6F, -0.2F, 0.1F}, {-2.9F, 0.55F, -0.4F}, 0.085F, 0.05F), 0.1F);
        d = std::min(d, stick(p - Vec3{0, bend, 0}, {-5, 0.35F, 2.3F}, {-0.6F, 0.82F, 2.5F}, 0.16F, 0.07F));
        if (d < 0.2F) {
            d += 0.045F * (fbm(p.x * 2.4F, p.y * 9 + p.z * 6, 3) - 0.4F);
        }
        hit.join(d * 0.85F, Bark);
    }

    static void macaw(Vec3 q, int number, Hit &hit) {
        const float full = Macaws[number].size;
        const float far = box(q - Vec3{-0.25F, 0.05F, 0}, {1.2F, 1.85F, 0.55F}, 0.1F);
        if (far > 0.3F) {
            hit.join(far * full, Plumage + number);
            return;
        }
        const float size = full * 0.85F;
        const Vec3 h{q.x, q.y, std::fabs(q.z)};
        float body = ellipsoid(turnZ(q - Vec3{-0.02F, 0.68F, 0}, -0.32F), {0.36F, 0.66F, 0.35F});
        body = blend(body, stick(q, {0.1F, 1.05F, 0}, {0.17F, 1.42F, 0}, 0.29F, 0.25F), 0.15F);
        body = blend(body, ellipsoid(q - Vec3{0.19F, 1.47F, 0}, {0.33F, 0.29F, 0.255F}), 0.1F);
        body = blend(body, ellipsoid(h - Vec3{0.08F, 0.2F, 0.15F}, {0.17F, 0.25F, 0.15F}), 0.1F);
        body = blend(body, stick(q, {-0.2F, 0.25F, 0}, {-0.48F, -0.35F, 0}, 0.2F, 0.12F), 0.15F);
        body = blend(body, sphere(h - EyeAt, 0.068F), 0.03F);
        hit.join(body * size, Plumage + number);
        hit.join(sphere(h - EyeAt - Vec3{0.008F, 0, 0.022F}, 0.056F) * full, Eye);
        const Vec3 w = wingPlace(h);
        float wing = ellipsoid({w.x, w.y, w.z + 0.16F * w.y * w.y}, {0.29F - 0.06F * w.y, 0.72F, 0.10F});
        wing = blend(wing, stick(h, {-0.33F, 0.2F, 0.3F}, {-0.68F, -0.62F, 0.1F}, 0.12F, 0.03F), 0.12F);
        hit.join(wing * size, Wing + number);
        hit.join(tail(h) * size, Tail + number);
        // The bill is higher than wide; its upper half hooks over the lower one.
        const Vec3 b{q.x, q.y, q.z * 1.3F};
        const OnCurve upper = curve(b, {0.4F, 1.52F, 0}, {0.86F, 1.62F, 0}, {0.74F, 1.08F, 0});
        const OnCurve lower = curve(b, {0.38F, 1.31F, 0}, {0.52F, 1.16F, 0}, {0.665F, 1.22F, 0});
        hit.join(std::min(upper.distance - mix(0.185F, 0.012F, std::pow(upper.along, 0.85F)),
                          lower.distance - mix(0.12F, 0.06F, lower.along)) *
                     full * 0.7F,
                 Bill + number);
        float feet = 9;
        for (const float z : {0.1F, 0.2F}) { // two toes in front, two behind
            feet = std::min(feet, limb(h, {0.12F, 0.06F, 0.15F}, {0.3F, 0.03F, z}, {0.33F, -0.14F, z}, 0.055F, 0.05F,
                                       0.018F, 0.03F));
            feet = std::min(feet, limb(h, {0.12F, 0.06F, 0.15F}, {-0.06F, 0.04F, z}, {-0.1F, -0.12F, z}, 0.055F, 0.045F,
                                       0.018F, 0.03F));
        }
        hit.join(feet * full, Foot);
    }

    /// The folded wing's own space: y up towards the shoulder, x forwards, z out of the body.
    static Vec3 wingPlace(Vec3 h) { return turnX(turnZ(h - Vec3{-0.16F, 0.66F, 0.30F}, -0.36F), 0.06F); }

    /// Long narrow feathers, the middle ones longest.
    static float tail(Vec3 h) {
        float d = 9;
        for (int i = 0; i < 4; ++i) {
            const auto k = static_cast<float>(i);
            const float reach = 1.62F - 0.27F * k;
            const Vec3 q = turnX(turnZ(h - Vec3{-0.36F, -0.12F, 0.03F * k}, -0.34F), 0.05F * k) +
                           Vec3{-0.035F * k, 0.45F * reach, 0};
            d = std::min(d, ellipsoid(q, {0.035F, 0.62F * reach, 0.085F - 0.006F * k}));
        }
        return d;
    }

    static Feather featherAt(int material, Vec3 q) {
        const Vec3 h{q.x, q.y, std::fabs(q.z)};
        const float uneven = 0.5F * noise(q * 6);
        if (material < Wing) {
            const float angle = std::atan2(h.z, q.x + 0.1F);
            return q.y > 1.2F ? feathers(angle * 8.5F + uneven, q.y * 27 + uneven)
                              : feathers(angle * 5.6F + uneven, q.y * 15 + 1.6F * uneven);
        }
        if (material < Tail) {
            const Vec3 w = wingPlace(h);
            return w.y > -0.05F ? feathers(w.x * 10 + uneven, w.y * 9 + uneven)
                                : feathers(w.x * 9 + 1.6F * w.y, w.y * 1.7F);
        }
        return {repeat(q.z, 0.17F) / 0.17F, fraction(q.y * 0.8F), 0.5F};
    }

    /// The bare white cheek about the eye, 0 to 1.
    static float bareSkin(Vec3 q) {
        const float off = length((q.x - 0.36F) / 0.21F, (q.y - 1.43F + 0.1F * (q.x - 0.36F)) / 0.2F);
        return std::fabs(q.z) > 0.08F && q.x > 0.1F ? smoothStep(1.05F, 0.95F, off + 0.06F * (noise(q * 20) - 0.5F))
                                                    : 0.0F;
    }

    static Surface bird(int material, Vec3 p) {
        const int number = (material - Plumage) % 2;
        const Macaw &one = Macaws[number];
        const Vec3 q = local(p, number);
        const float side = std::fabs(q.z);
        if (material >= Bill) {
            return bill(q, one);
        }
        const Feather f = featherAt(material, q);
        const float shaded = mix(1.18F, 0.68F, smoothStep(0.0F, 0.9F, f.along)) *
                             (0.8F + 0.22F * f.id + 0.2F * noise(f.across * 26 + 40 * f.id, f.along * 3));
        Vec3 look;
        if (material < Wing) {
            const float border = q.x + 0.12F + 0.25F * (q.y - 0.8F) * (q.y < 0.8F ? 1.0F : -0.35F);
            look = mix(colour(one.back), colour(one.front), smoothStep(-0.05F, 0.03F, border - 0.06F * f.id));
            look = mix(look, colour(one.forehead), smoothStep(1.52F, 1.62F, q.y + 0.35F * (q.x - 0.2F)));
            look = look * shaded;
            // The bare cheek: white skin with thin rows of feathers under the eye.

            if (bareSkin(q) > 0) {
                const float row = std::fabs(repeat(q.y + 0.35F * (q.x - 0.3F) * (q.x - 0.3F), 0.052F));
                const float dash = smoothStep(0.010F, 0.004F, row) * smoothStep(0.3F, 0.5F, noise(q * 26)) *
                                   (q.y < 1.47F ? 1.0F : 0.0F);
                const Vec3 skin =
                    mix(colour(0xFFF6EC), number == 0 ? colour(0xC8202A) : colour(0x1A1A1E), 0.85F * dash);
                look = mix(look, skin, bareSkin(q));
            }
            if (number == 1) {
                const float throat = length((q.x - 0.36F) / 0.16F, (q.y - 1.2F) / 0.055F);
                look = mix(look, colour(0x16181C), smoothStep(1.1F, 0.9F, throat));
            }
        } else if (material < Tail) {
            const Vec3 w = wingPlace({q.x, q.y, side});
            const float ragged = w.y + 0.07F * (f.id - 0.5F);
            look = mix(colour(one.middle), colour(one.coverts), smoothStep(0.2F, 0.25F, ragged));
            if (number == 0) {
                look = mix(look, colour(0x3FA84A), smoothStep(0.06F, 0.03F, ragged) * smoothStep(0.5F, 0.2F, f.along));
            }
            look = mix(colour(one.flight), look, smoothStep(-0.06F, -0.02F, ragged)) * shaded;
        } else {
            look = mix(colour(one.tail), colour(one.flight), smoothStep(0.09F, 0.13F, side) * 0.85F);
            look = look * (0.85F + 0.3F * noise(q.x * 30, q.z * 60)) *
                   mix(0.75F, 1.1F, smoothStep(0.5F, 0.15F, std::fabs(f.across)));
        }
        return {.colour = look, .shine = 0.22F, .sharpness = 18, .sheer = 0.12F};
    }

    static Surface bill(Vec3 q, const Macaw &one) {
        const Vec3 b{q.x, q.y, q.z * 1.3F};
        const OnCurve upper = curve(b, {0.4F, 1.52F, 0}, {0.86F, 1.62F, 0}, {0.74F, 1.08F, 0});
        const OnCurve lower = curve(b, {0.38F, 1.31F, 0}, {0.52F, 1.16F, 0}, {0.665F, 1.22F, 0});
        const bool below = lower.distance - mix(0.12F, 0.06F, lower.along) <
                           upper.distance - mix(0.185F, 0.012F, std::pow(upper.along, 0.85F));
        Vec3 look = mix(colour(one.bill), colour(0x2A2322), smoothStep(0.66F, 0.88F, upper.along));
        look = mix(look, colour(0x2A2322), smoothStep(0.02F, 0.0F, q.y - 1.36F) * smoothStep(0.6F, 0.45F, q.x));
        return {.colour =
                    (below ? colour(0x201C1C) : look) * (0.88F + 0.2F * fbm(Vec3{q.x * 12, q.y * 4, q.z * 12}, 3)),
                .shine = 0.7F,
                .sharpness = 45,
                .mirror = 0.02F,
                .sheer = 0.05F};
    }

    static Surface eye(Vec3 q) {
        const Vec3 e = (Vec3{q.x, q.y, std::fabs(q.z)} - EyeAt - Vec3{0.008F, 0, 0.022F}) * (1 / 0.056F);
        const float r = length(e.x - 0.12F, e.y);
        Vec3 look = mix(colour(0xFFF0A0), colour(0xF0C23A), smoothStep(0.4F, 0.8F, r));
        look = mix(look, colour(0x080606), std::max(smoothStep(0.50F, 0.44F, r), smoothStep(0.8F, 0.9F, r)));
        return {.colour = look, .shine = 4, .sharpness = 260, .mirror = 0.03F};
    }

    static Vec3 blossomPlace(Vec3 p, float number) { return turnX(turnY(p, 0.5F * std::sin(number * 3)), -0.3F); }

    /// A hibiscus that faces the eye: five wavy petals about a long stamen.
    static void blossom(Vec3 p, float number, Hit &hit) {
        const float far = sphere(p, 0.52F);
        if (far > 0.2F) {
            hit.join(far, Petal);
            return;
        }
        const Vec3 q = blossomPlace(p, number);
        // Each petal is tilted about its own length, so that it lies over its neighbour.
        const Vec3 f = slices(turnZ(q, number), 5);
        const float r = f.x;
        const float t = clamp01(r / 0.42F);
        const float wide = 0.02F + 0.27F * std::sqrt(t) * std::sqrt(std::max(0.0F, 1.04F - t * t));
        const float rise = 0.12F - 0.75F * r + 0.95F * r * r + 0.018F * std::sin(f.y * 42 + r * 8) * t + 0.16F * f.y;
        hit.join(std::max({std::fabs(q.z - rise) * 0.7F - 0.009F, std::fabs(f.y) - wide, r - 0.42F}) * 0.65F, Petal);
        float stamen = stick(q, {0, 0, 0.1F}, {0.06F, 0.07F, -0.38F}, 0.024F, 0.018F);
        for (int i = 0; i < 9; ++i) {
            const auto k = static_cast<float>(i);
            const float along = 0.55F + 0.05F * k;
            const Vec3 on = mix(Vec3{0, 0, 0.1F}, Vec3{0.06F, 0.07F, -0.38F}, along);
            stamen = std::min(
                stamen, sphere(q - on - Vec3{0.045F * std::cos(k * 2.4F), 0.045F * std::sin(k * 2.4F), 0}, 0.019F));
        }
        hit.join(stamen, Stamen);
    }

    static Surface petal(Vec3 p) {
        for (const Vec3 &at : Blossoms) {
            const Vec3 q = blossomPlace(p - at, at.x);
            const float r = length(q.x, q.y);
            if (length(p - at) < 0.6F) {
                const float veins = noise(std::atan2(q.x, q.y) * 22, r * 3);
                Vec3 look = mix(colour(0xF0287E), colour(0xFF8CC4), smoothStep(0.1F, 0.42F, r) * 0.6F + 0.4F * veins);
                look = mix(look, colour(0x9C0838), smoothStep(0.16F, 0.05F, r + 0.06F * veins));
                return {.colour = look, .shine = 0.1F, .sheer = 0.5F, .glow = look * 0.15F};
            }
        }
        return {};
    }

    static void foliage(Vec3 p, Hit &hit) {
        struct Spray {
            Vec3 at;
            int leaves;
            float reach;
            float from; ///< radians over which the leaves fan out
            float to;
        };
        constexpr Spray Sprays[] = {{{-1.0F, -0.15F, -0.28F}, 7, 0.62F, 0.2F, 6.2F},
                                    {{-2.75F, 0.45F, -0.35F}, 6, 0.7F, -0.6F, 3.6F},
                                    {{1.95F, 0.25F, -0.15F}, 6, 0.6F, 0.3F, 6.0F},
                                    {{2.75F, 2.35F, -0.3F}, 6, 1.05F, 2.1F, 4.6F},
                                    {{-2.7F, -1.45F, -0.6F}, 5, 1.1F, 0.1F, 2.2F}};
        for (const Spray &spray : Sprays) {
            const Vec3 q = p - spray.at;
            const float far = length(q) - spray.reach * 1.05F;
            if (far > 0.2F) {
                hit.join(far, Green);
                continue;
            }
            for (int i = 0; i < spray.leaves; ++i) {
                const float t = static_cast<float>(i) / static_cast<float>(spray.leaves - 1);
                const Vec3 turned = turnX(turnZ(q, mix(spray.from, spray.to, t)),
                                          0.9F * (hash(i, 61, static_cast<int>(spray.at.x * 9)) - 0.5F));
                hit.join(blade(turned, spray.reach * (0.8F + 0.2F * hash(i, 62)), 0.19F * spray.reach, 0.35F), Green);
            }
        }
    }
};

} // namespace

std::unique_ptr<Scene> parrot() {
    return std::make_unique<Parrot>();
}

} // namespace lumora::samples
