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
                             0xC4161A,
                             0xA81016,
                             0xCC1A1C,
                             0xB81218,
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
constexpr Vec3 EyeAt{0.295F, 1.555F, 0.200F};
constexpr float EyeSize = 0.040F;
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
        strands = 260000;
        focus = 6.2F;
        aperture = 0.010F;
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
        light = mix(light, mix(colour(0xB8CDE8), colour(0xFFFFFF), smoothStep(0.46F, 0.66F, heap)) * 1.5F,
                    base * smoothStep(0.50F, 0.64F, heap) * 0.9F);
        if (up < 0) { // the sea: deep far out, turquoise towards the beach, glittering
            light = mix(colour(0x1272C4), colour(0x22C8D0), smoothStep(-0.02F, -0.17F, up));
            light = mix(light, colour(0x8AF0DC), smoothStep(-0.16F, -0.31F, up + 0.03F * std::sin(side * 5)));
            light = light * (0.78F + 0.45F * fbm(side * 22, 1.4F / (0.03F - up), 3) * 1.2F);
            const Cell glint = cells(side * 26, up * 70, 0.9F);
            light += Vec3{1, 1, 0.95F} *
                     (0.55F * smoothStep(0.2F, 0.05F, glint.distance) * smoothStep(0.75F, 1.0F, glint.id));
        }
        light = island(light, side, up, 0.30F, 0.30F, 0.105F);
        return island(light, side, up, -0.52F, 0.22F, 0.06F);
    }

    float grain(int material, Vec3 p) const override {
        if (material == Bark) {
            return 0.012F * ridged(p.x * 2.2F, p.y * 12 + p.z * 9, 3) + 0.005F * noise(p * 40);
        }
        if (material >= Bill) {
            const Vec3 q = local(p, (material - Plumage) % 2);
            return 0.004F * fbm(Vec3{q.x * 40, q.y * 14, q.z * 40}, 3);
        }
        if (material == Foot) {
            return 0.006F * noise(p * 60);
        }
        return 0;
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
        const float far = box(q - Vec3{-0.25F, 0.05F, 0}, {1.2F, 1.95F, 0.55F}, 0.1F);
        if (far > 0.3F) {
            hit.join(far * full, Plumage + number);
            return;
        }
        const float size = full * 0.85F;
        const Vec3 h{q.x, q.y, std::fabs(q.z)};
        float body = ellipsoid(turnZ(q - Vec3{-0.05F, 0.62F, 0}, -0.30F), {0.34F, 0.60F, 0.35F});
        body = blend(body, ellipsoid(q - Vec3{0.11F, 1.0F, 0}, {0.26F, 0.30F, 0.29F}), 0.2F);
        body = blend(body, stick(q, {0.10F, 1.15F, 0}, {0.15F, 1.46F, 0}, 0.22F, 0.22F), 0.16F);
        body = blend(body, ellipsoid(turnZ(q - Vec3{0.20F, 1.53F, 0}, 0.15F), {0.30F, 0.255F, 0.225F}), 0.1F);
        body = blend(body, ellipsoid(h - Vec3{0.06F, 0.2F, 0.16F}, {0.15F, 0.24F, 0.14F}), 0.1F);
        body = blend(body, stick(q, {-0.2F, 0.25F, 0}, {-0.44F, -0.24F, 0}, 0.2F, 0.07F), 0.15F);
        body = blend(body, ellipsoid(h - EyeAt - Vec3{0, 0.035F, -0.015F}, {0.09F, 0.05F, 0.05F}), 0.05F); // brow
        body = carve(body, sphere(h - EyeAt - Vec3{0, 0, 0.03F}, 0.050F), 0.015F);
        hit.join(body * size, Plumage + number);
        hit.join(sphere(h - EyeAt, EyeSize) * full, Eye);
        const Vec3 w = wingPlace(h);
        const float wing = ellipsoid({w.x, w.y - 0.08F, w.z + 0.16F * w.y * w.y}, {0.30F - 0.05F * w.y, 0.60F, 0.09F});
        hit.join(wing * size, Wing + number);
        hit.join(flights(h) * size, Wing + number);
        hit.join(tail(h) * size, Tail + number);
        hit.join(std::min(upperBill(q), lowerBill(q)) * full * 0.7F, Bill + number);
        float feet = 9;
        for (const float z : {0.11F, 0.2F}) { // two toes in front, two behind
            feet = std::min(feet, limb(h, {0.12F, 0.07F, 0.15F}, {0.29F, 0.03F, z}, {0.335F, -0.10F, z}, 0.05F, 0.042F,
                                       0.030F, 0.03F));
            feet = std::min(feet, limb(h, {0.12F, 0.07F, 0.15F}, {-0.04F, 0.04F, z}, {-0.1F, -0.08F, z}, 0.05F, 0.042F,
                                       0.030F, 0.03F));
            feet = std::min(feet, stick(h, {0.338F, -0.10F, z}, {0.30F, -0.19F, z}, 0.022F, 0.004F));
        }
        hit.join(feet * full, Foot);
    }

    /// The bill is higher than wide; its upper half hooks over the lower one.
    static OnCurve upperCurve(Vec3 q) {
        return curve({q.x, q.y, q.z * 1.35F}, {0.34F, 1.53F, 0}, {0.76F, 1.67F, 0}, {0.675F, 1.16F, 0});
    }
    static float upperBill(Vec3 q) {
        const OnCurve on = upperCurve(q);
        return on.distance - mix(0.19F, 0.014F, on.along * on.along * (1.6F - 0.6F * on.along));
    }
    static float lowerBill(Vec3 q) {
        const OnCurve on = curve({q.x, q.y, q.z * 1.25F}, {0.32F, 1.37F, 0}, {0.44F, 1.235F, 0}, {0.57F, 1.29F, 0});
        return on.distance - mix(0.11F, 0.065F, on.along);
    }

    /// The folded wing's own space: y up towards the shoulder, x forwards, z out of the body.
    static Vec3 wingPlace(Vec3 h) { return turnX(turnZ(h - Vec3{-0.16F, 0.66F, 0.30F}, -0.36F), 0.06F); }

    /// The wing's long feathers, each a little over the next; `number` 0 is the one nearest to the back.
    struct Flight {
        Vec3 place; ///< y from the middle of the feather along its shaft, x across
        float reach;
        float wide;
    };
    static Flight flight(Vec3 h, int number) {
        const auto k = static_cast<float>(number);
        const float reach = 0.34F + 0.045F * k;
        const Vec3 w = wingPlace(h);
        const Vec3 q = turnZ(w - Vec3{-0.20F + 0.058F * k, 0.02F - 0.02F * k, 0.055F - 0.012F * k}, 0.16F - 0.022F * k);
        return {{q.x, q.y + reach * 0.78F, q.z + 0.10F * w.y * w.y}, reach, 0.062F};
    }
    static float flights(Vec3 h) {
        float d = 9;
        for (int i = 0; i < 8; ++i) {
            const Flight f = flight(h, i);
            const Vec3 p = f.place;
            const float half = f.wide * std::sqrt(std::max(0.02F, 1 - std::pow(std::fabs(p.y) / f.reach, 5.0F)));
            const float sheet = std::fabs(p.z + 1.2F * p.x * p.x) - 0.012F;
            d = std::min(d, std::max({sheet, std::fabs(p.x) - half, std::fabs(p.y) - f.reach}) * 0.7F);
        }
        return d;
    }

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

    /// The bare white cheek about the eye, 0 to 1.
    static float bareSkin(Vec3 q) {
        const float off = length((q.x - 0.37F) / 0.20F, (q.y - 1.45F + 0.25F * (q.x - 0.36F)) / 0.185F);
        return std::fabs(q.z) > 0.06F && q.x > 0.1F ? smoothStep(1.06F, 0.94F, off + 0.1F * (noise(q * 16) - 0.5F))
                                                    : 0.0F;
    }

    /// Feathers lie backwards on the head and downwards on the body.
    static Vec3 flow(Vec3 q) {
        return mix(Vec3{-0.35F, -1, 0}, Vec3{-1, -0.15F, 0}, smoothStep(1.25F, 1.65F, q.y + 0.25F * q.x));
    }

    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        if (material < Plumage || material >= Tail) {
            return {};
        }
        const int number = (material - Plumage) % 2;
        const Vec3 q = local(p, number);
        const float bare = material < Wing ? bareSkin(q) : 0.0F;
        const bool wing = material >= Wing;
        const float w = wing ? wingPlace({q.x, q.y, std::fabs(q.z)}).y : 0.0F;
        if (bare > 0.12F || (wing && w < -0.08F)) {
            return {};
        }
        if (chance > 0.55F) {
            return {};
        }
        const bool barb = chance > 0.10F; // between the feathers single barbs stand out
        const float head = smoothStep(1.2F, 1.45F, q.y);
        const float large = wing ? mix(0.17F, 0.115F, smoothStep(0.1F, 0.5F, w)) : mix(0.13F, 0.062F, head);
        const float reach = Macaws[number].size * large * (0.8F + 0.4F * fraction(chance * 97)) * (barb ? 0.6F : 1.0F);
        const Vec3 way = fromLocal(wing ? Vec3{-0.40F, -1, 0} : flow(q), number);
        Vec3 along = normalise(way - n * dot(way, n));
        along =
            normalise(along + cross(n, along) * (0.35F * (fraction(chance * 313) - 0.5F)) + n * (barb ? 0.22F : 0.1F));
        const float light = 0.68F + 0.7F * fraction(chance * 41);
        return {.tip = along * reach,
                .sag = n * (0.10F * reach),
                .width = barb ? 0.010F * Macaws[number].size : reach * 0.62F,
                .blunt = barb ? 0.0F : 1.0F,
                .order = q.y + 0.5F * q.x + (wing ? 4.0F : 0.0F) + (barb ? 0.02F : 0.0F),
                .solid = barb ? 0.4F : 0.92F,
                .tint = Vec3{light, light, light}};
    }

    static Vec3 fromLocal(Vec3 q, int i) { return turnY(q, -Macaws[i].heading); }

    static Surface bird(int material, Vec3 p) {
        const int number = (material - Plumage) % 2;
        const Macaw &one = Macaws[number];
        const Vec3 q = local(p, number);
        const Vec3 h{q.x, q.y, std::fabs(q.z)};
        if (material >= Bill) {
            return bill(q, one);
        }
        const float mottled = 0.82F + 0.3F * fbm(q * 9, 3);
        Vec3 look;
        if (material < Wing) {
            const float border = q.x + 0.12F + 0.25F * (q.y - 0.8F) * (q.y < 0.8F ? 1.0F : -0.35F);
            look = mix(colour(one.back), colour(one.front), smoothStep(-0.06F, 0.05F, border));
            look = mix(look, colour(one.forehead), smoothStep(1.60F, 1.68F, q.y + 0.35F * (q.x - 0.2F)));
            look = look * mottled;
            if (number == 1) {
                const float throat = length((q.x - 0.38F) / 0.17F, (q.y - 1.24F) / 0.055F);
                look = mix(look, colour(0x16181C), smoothStep(1.1F, 0.9F, throat));
            }
            look = mix(look, cheek(q, number), bareSkin(q));
            look = mix(look, colour(0x4A4440), 0.8F * smoothStep(0.066F, 0.052F, length(h - EyeAt))); // the lid
        } else if (material < Tail) {
            look = wingLook(h, one, number) * mottled;
        } else {
            look = mix(colour(one.tail), colour(one.flight), smoothStep(0.09F, 0.13F, h.z) * 0.85F);
            const float shaft = repeat(q.z, 0.085F);
            look = look * (0.75F + 0.4F * noise(q.y * 60 + std::fabs(shaft) * 160, q.z * 30)) *
                   (1 - 0.3F * smoothStep(0.006F, 0.003F, std::fabs(shaft)));
        }
        return {.colour = look, .shine = 0.02F, .sharpness = 12, .sheer = 0.10F};
    }

    /// White wrinkled skin with thin rows of tiny feathers under the eye.
    static Vec3 cheek(Vec3 q, int number) {
        const float down = q.y + 0.9F * (q.x - 0.34F) * (q.x - 0.34F) + 0.006F * noise(q * 24);
        const float row = std::fabs(repeat(down, 0.036F));
        const float dash = smoothStep(0.0055F, 0.002F, row) * smoothStep(0.35F, 0.5F, noise(q.x * 70, down * 30)) *
                           smoothStep(1.50F, 1.46F, q.y) * smoothStep(0.50F, 0.42F, q.x);
        const Vec3 skin = mix(colour(0xE9D8CC), colour(0xFFF9F2), fbm(q * 22, 3));
        return mix(skin, number == 0 ? colour(0xA8202A) : colour(0x1A1A1E), 0.75F * dash);
    }

    static Vec3 wingLook(Vec3 h, const Macaw &one, int number) {
        const Vec3 w = wingPlace(h);
        const float ragged = w.y + 0.05F * (noise(h * 14) - 0.5F);
        Vec3 look = mix(colour(one.middle), colour(one.coverts), smoothStep(0.26F, 0.31F, ragged));
        if (number == 0) {
            look = mix(look, colour(0x2E9A4A), smoothStep(0.13F, 0.09F, ragged));
        }
        look = mix(colour(one.flight), look, smoothStep(0.02F, 0.06F, ragged));
        if (w.y < 0.02F) {
            for (int i = 0; i < 8; ++i) { // which of the long feathers it is
                const Flight f = flight(h, i);
                const Vec3 q = f.place;
                if (std::fabs(q.x) < f.wide * 1.05F && std::fabs(q.z + 1.2F * q.x * q.x) < 0.02F &&
                    std::fabs(q.y) < f.reach) {
                    const float barbs = noise(q.y * 75 + std::fabs(q.x) * 130, static_cast<float>(i) * 9);
                    const float rim = smoothStep(0.55F, 1.0F, std::fabs(q.x) / f.wide);
                    look = mix(look, colour(number == 0 ? 0x0A2E8A : 0x0B2A7C), 0.55F * rim) * (0.78F + 0.4F * barbs);
                    look = mix(look, colour(0x0A1230), 0.6F * smoothStep(0.007F, 0.003F, std::fabs(q.x)));
                    break;
                }
            }
        }
        return look;
    }

    static Surface bill(Vec3 q, const Macaw &one) {
        const OnCurve on = upperCurve(q);
        const bool below = lowerBill(q) < upperBill(q);
        // Grown in layers: faint lines along it, a worn tip, and a dark edge where it meets the lower half.
        const float layers = fbm(Vec3{on.along * 26, q.y * 5, q.z * 9}, 3);
        Vec3 look =
            mix(colour(one.bill), colour(0x2A2322), smoothStep(0.74F, 0.97F, on.along + 0.15F * (layers - 0.5F)));
        look = mix(look, colour(0x2A2322), smoothStep(0.03F, 0.0F, q.y - 1.40F) * smoothStep(0.56F, 0.44F, q.x));
        look = mix(look, look * Vec3{0.86F, 0.74F, 0.58F}, smoothStep(0.35F, 0.75F, layers));
        return {.colour = (below ? colour(0x2A2523) : look) * (0.85F + 0.25F * fbm(q * 20, 3)),
                .shine = 0.28F,
                .sharpness = 22,
                .sheer = 0.05F};
    }

    static Surface eye(Vec3 q) {
        const Vec3 e = (Vec3{q.x, q.y, std::fabs(q.z)} - EyeAt) * (1 / EyeSize);
        const float r = length(e.x - 0.06F, e.y);
        Vec3 look = mix(colour(0xF2E6B8), colour(0xA8884A), smoothStep(0.4F, 0.8F, r)) *
                    (0.8F + 0.35F * noise(std::atan2(e.y, e.x - 0.06F) * 6, r * 4));
        look = mix(look, colour(0x060504), std::max(smoothStep(0.56F, 0.48F, r), smoothStep(0.72F, 0.84F, r)));
        look = look * mix(0.55F, 1.0F, smoothStep(0.7F, 0.2F, e.y)); // in the shade of the brow
        return {.colour = look, .shine = 2.5F, .sharpness = 300, .mirror = 0.03F};
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
