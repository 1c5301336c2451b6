// A blue butterfly on a sunflower at noon, a bumblebee on its way, behind them the field out of focus.
#include "Scenes.h"

#include "Bodies.h"
#include "Skies.h"

namespace lumora::samples {

namespace {

enum Material { Petal, Disc, Green, Wing, Body, Fur, BeeWing, Eye };

/// A flower looks along `z`.
struct Bloom {
    Vec3 at;
    Vec3 x;
    Vec3 y;
    Vec3 z;
    float size;
    Bloom(Vec3 where, Vec3 towards, float large)
        : at(where), x(normalise(cross(towards, {0, 1, 0}))), y(cross(x, normalise(towards))), z(normalise(towards)),
          size(large) {}
    Vec3 local(Vec3 p) const {
        const Vec3 q = p - at;
        return Vec3{dot(q, x), dot(q, y), dot(q, z)} * (1 / size);
    }
};

constexpr Vec3 Bee{1.66F, 1.3F, -0.75F};
constexpr float BeeSize = 0.46F;

class Butterfly : public Scene {
  public:
    Butterfly() {
        camera = {{-0.25F, 0.75F, -6.0F}, {0.08F, 0.28F, 0}, 2.25F};
        sunDirection = normalise({-0.35F, 0.82F, -0.5F});
        sunColour = {2.9F, 2.65F, 2.2F};
        skyLight = {0.42F, 0.55F, 0.75F};
        groundLight = {0.24F, 0.28F, 0.08F};
        farthest = 14;
        caution = 0.72F;
        steps = 190;
        shadowReach = 3;
        shadowSoftness = 11;
        creviceSize = 0.2F;
        bloom = 0.14F;
        exposure = 0.9F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        for (const Bloom &one : m_blooms) {
            flower(one.local(p), one.size, hit);
        }
        stems(p, hit);
        butterfly(insect(p), hit);
        bumblebee(beeLocal(p), hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3 d) const override {
        switch (material) {
        case Petal:
            return petal(nearest(p));
        case Disc:
            return florets(nearest(p));
        case Wing:
            return wing(insect(p), n, d);
        case Body:
            return {.colour = mix(colour(0x14161C), colour(0x4A4650), noise(insect(p) * 40)),
                    .shine = 0.25F,
                    .sharpness = 20};
        case Fur:
            return fur(beeLocal(p));
        case BeeWing: {
            const Vec3 q = beeLocal(p);
            const float veins = std::fabs(repeat(std::atan2(q.y - 0.35F, q.x) * 5 + noise(q * 5), 1));
            return {.colour = mix(colour(0x6A5A3A), colour(0xE8F2FA), smoothStep(0.03F, 0.1F, veins)),
                    .shine = 1,
                    .sharpness = 40,
                    .mirror = 0.06F,
                    .sheer = 0.8F};
        }
        case Eye:
            return {.colour = colour(0x120C0C), .shine = 2.5F, .sharpness = 90, .mirror = 0.05F};
        default: {
            const float veins = noise(p * 9);
            return {.colour = mix(colour(0x2C6A18), colour(0x7CB43A), 0.6F * veins + 0.4F * noise(p * 30)),
                    .shine = 0.15F,
                    .sharpness = 20,
                    .sheer = 0.5F};
        }
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float side = std::atan2(d.x, d.z);
        const float up = d.y + 0.03F;
        Vec3 light = mix(colour(0xBFE4FF), colour(0x2A7CE6), smoothStep(-0.02F, 0.34F, up));
        const float heap = fbm(side * 3.4F + 11, up * 6.5F, 3);
        light =
            mix(light, colour(0xFFFFFF) * 1.05F, 0.85F * smoothStep(0.43F, 0.6F, heap) * smoothStep(0.4F, 0.05F, up));
        // A line of trees, then the field: rows of flowers, larger towards the eye, all blurred.
        const float trees = 0.028F + 0.025F * noise(side * 9, 2) + 0.012F * noise(side * 31, 3);
        light = mix(light, mix(colour(0x3F7A5A), colour(0x7FB07A), noise(side * 16, up * 30)),
                    smoothStep(0.014F, -0.014F, up - trees));
        if (up < 0.02F) {
            Vec3 field = mix(colour(0x86A83A), colour(0x3A6A1E), smoothStep(0, -0.3F, up)) *
                         (0.75F + 0.5F * noise(side * 14, up * 40));
            for (int row = 0; row < 3; ++row) {
                const float size = 0.030F * std::pow(2.1F, static_cast<float>(row));
                const float lift = 0.03F * std::pow(2.3F, static_cast<float>(row)) - 0.02F;
                const Cell head =
                    cells(side / size + 3.7F * static_cast<float>(row), (up + lift) / (size * 0.7F), 0.7F);
                const float there = smoothStep(0.02F, -0.02F, up + lift - 0.5F * size);
                const float soft = smoothStep(0.46F, 0.28F, head.distance) * there * smoothStep(0.12F, 0.2F, head.id);
                const Vec3 gold = mix(colour(0xE89A10), colour(0xFFD83A), head.id);
                field = mix(field,
                            mix(gold, colour(0x5A3414),
                                smoothStep(0.26F, 0.1F, head.distance) * (0.35F + 0.25F * static_cast<float>(row))),
                            soft * (0.45F + 0.25F * static_cast<float>(row)));
            }
            light = mix(light, field, smoothStep(0.016F, -0.012F, up));
        }
        return light;
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Petal: {
            const Vec3 q = nearest(p);
            return 0.006F * noise(std::atan2(q.x, q.y) * 75, length(q.x, q.y) * 3);
        }
        case Green:
            return 0.006F * fbm(p * 24, 3);
        case Fur:
            return 0.022F * fbm(beeLocal(p) * 26, 3);
        case Body:
            return 0.008F * noise(insect(p) * 55);
        default:
            return 0;
        }
    }

  private:
    Bloom m_blooms[3] = {{{0.55F, -0.28F, 0.1F}, {-0.22F, 0.36F, -0.9F}, 1.0F},
                         {{-2.0F, -0.75F, 2.4F}, {-0.1F, 0.2F, -1.0F}, 0.8F},
                         {{2.75F, -0.5F, 3.4F}, {-0.45F, 0.3F, -0.9F}, 0.75F}};

    Vec3 nearest(Vec3 p) const {
        const Bloom *best = m_blooms;
        for (const Bloom &one : m_blooms) {
            best = length(one.local(p)) < length(best->local(p)) ? &one : best;
        }
        return best->local(p);
    }

    /// Crossing spirals, 34 one way and 55 the other: the place within a floret, -0.5 to 0.5 both ways.
    static Vec3 spiral(Vec3 q) {
        const float a = std::atan2(q.y, q.x) / (2 * Pi);
        const float b = std::log(std::max(length(q.x, q.y), 0.02F)) * 6.88F;
        const float u = 34 * a + b;
        const float v = 55 * a - b;
        return {repeat(u, 1), repeat(v, 1), hash(static_cast<int>(std::round(u)), static_cast<int>(std::round(v)))};
    }

    static void flower(Vec3 q, float size, Hit &hit) {
        const float far = std::max(length(q.x, q.y) - 1.6F, std::fabs(q.z) - 0.42F);
        if (far > 0.25F) {
            hit.join(far * size, Petal);
            return;
        }
        const float r = length(q.x, q.y);
        // A cushion with a dimple in its middle.
        float disc = ellipsoid(q - Vec3{0, 0, 0.02F}, {0.74F, 0.74F, 0.24F}) + 0.07F * std::exp(-r * r * 9);
        if (disc < 0.15F) {
            const Vec3 floret = spiral(q);
            const float bump = std::exp(-5.0F * (floret.x * floret.x + floret.y * floret.y));
            disc -= (0.012F + 0.05F * smoothStep(0.3F, 0.7F, r)) * bump * smoothStep(0.06F, 0.3F, r);
        }
        hit.join(disc * size * 0.7F, Disc);
        for (int layer = 0; layer < 3; ++layer) {
            const auto k = static_cast<float>(layer);
            const int count = 19 - 2 * layer;
            const Vec3 turned = turnZ(q, 0.13F * k + 0.1F);
            const Vec3 f = slices(turned, count);
            const int number =
                static_cast<int>(std::round(std::atan2(turned.y, turned.x) / (2 * Pi) * static_cast<float>(count)));
            const float own = hash((number + count) % count, layer, 9);
            const float bend = -0.34F + 0.55F * own + 0.12F * k;
            const float twist = 0.5F * (own - 0.5F) * f.y;
            hit.join(
                blade({f.x - 0.56F, f.y, q.z + 0.05F * (1 - k) - 0.10F - twist}, 0.8F + 0.16F * own, 0.155F, bend) *
                    size,
                Petal);
        }
    }

    static Surface florets(Vec3 q) {
        const float r = length(q.x, q.y);
        const Vec3 floret = spiral(q);
        const float tip = std::exp(-7 * (floret.x * floret.x + floret.y * floret.y));
        Vec3 ring = mix(colour(0x5A6A1A), colour(0x4A2408), smoothStep(0.14F, 0.42F, r));
        const Vec3 top = mix(mix(colour(0xB8B83A), colour(0x9A5A14), smoothStep(0.1F, 0.4F, r)), colour(0xFFB41A),
                             smoothStep(0.42F, 0.66F, r));
        ring = mix(ring, top, tip * (0.7F + 0.5F * floret.z));
        return {.colour = ring, .shine = 0.1F, .sharpness = 20};
    }

    static Surface petal(Vec3 q) {
        const float r = length(q.x, q.y);
        const float streak = noise(std::atan2(q.x, q.y) * 75, r * 3);
        const Vec3 gold = mix(colour(0xE87A00), colour(0xFFC20A), smoothStep(0.6F, 1.1F, r) * 0.75F + 0.3F * streak);
        return {.colour = gold, .shine = 0.12F, .sharpness = 20, .sheer = 0.6F, .glow = gold * 0.05F};
    }

    void stems(Vec3 p, Hit &hit) const {
        const OnCurve main = curve(p, {0.6F, -0.35F, 0.45F}, {0.75F, -1.2F, 0.8F}, {0.55F, -3.2F, 0.6F});
        const OnCurve left = curve(p, {-2.0F, -0.8F, 2.65F}, {-1.9F, -1.5F, 2.9F}, {-2.1F, -3.2F, 2.8F});
        const OnCurve right = curve(p, {2.8F, -0.55F, 3.6F}, {2.9F, -1.5F, 3.8F}, {2.8F, -3.2F, 3.8F});
        hit.join(std::min({main.distance - 0.13F, left.distance - 0.1F, right.distance - 0.1F}), Green);
        // Broad leaves: foot, direction in the picture, lean towards the eye, reach.
        constexpr float Leaves[][6] = {{0.6F, -1.5F, 0.5F, 2.75F, 0.6F, 1.75F},
                                       {0.7F, -1.75F, 0.5F, 0.45F, 0.5F, 1.7F},
                                       {-2.0F, -1.75F, 2.7F, 2.7F, 0.4F, 1.3F},
                                       {-2.0F, -1.9F, 2.7F, 0.5F, 0.5F, 1.4F},
                                       {2.8F, -1.6F, 3.6F, 2.5F, 0.4F, 1.3F}};
        for (const auto &[x, y, z, angle, lean, reach] : Leaves) {
            const Vec3 q = turnX(turnZ(p - Vec3{x, y, z}, angle), -lean);
            const float far = length(q) - reach * 1.2F;
            if (far > 0.3F) {
                hit.join(far, Green);
                continue;
            }
            const float vein =
                0.02F * std::cos(2 * Pi * (q.x - 0.8F * std::fabs(q.y)) * 5) * smoothStep(0.02F, 0.15F, std::fabs(q.y));
            hit.join(blade({q.x, q.y, -q.z + vein}, reach, 0.3F * reach, 0.25F, 0.012F), Green);
        }
    }

    /// The butterfly's own space: x towards its head, y off the flower, z sideways.
    Vec3 insect(Vec3 p) const {
        const Bloom &seat = m_blooms[0];
        const Vec3 q = seat.local(p) - Vec3{-0.33F, 0.34F, 0.36F};
        const Vec3 turned = turnZ(q, 1.95F);
        return Vec3{turned.x, turned.z, turned.y} * (1 / 0.88F);
    }

    /// In the plane of a wing: x forwards, y outwards, z off the sheet; fore wing and hind wing overlap a little.
    static Vec3 wingPlane(Vec3 q) {
        constexpr float Raised = 0.42F;
        const float side = std::fabs(q.z);
        const float lift = q.y - 0.09F;
        return {q.x - 0.1F, side * std::cos(Raised) + lift * std::sin(Raised),
                lift * std::cos(Raised) - side * std::sin(Raised)};
    }

    /// Distances from the outlines of the fore wing and of the hind wing, in their plane.
    static float foreWing(Vec3 w) {
        const float a = 0.55F * w.x + 0.835F * w.y;
        const float b = 0.835F * w.x - 0.55F * w.y;
        const float t = clamp01(a / 1.32F);
        const float lead = 0.10F + 0.34F * t * (1 - 0.55F * t);
        const float trail = -0.06F - 0.8F * t + 0.36F * t * t;
        const float rim = a - 1.3F + 0.9F * (b - 0.12F) * (b - 0.12F) - 0.018F * std::cos(b * 34);
        return std::max({b - lead * std::sqrt(std::max(0.0F, 1.02F - t * t * t * t)), trail - b, rim, -a});
    }
    static float hindWing(Vec3 w) {
        const float a = -0.5F * w.x + 0.866F * w.y;
        const float b = 0.866F * w.x + 0.5F * w.y;
        const float outline = length((a - 0.5F) * 0.92F, (b + 0.06F) * 1.22F) - 0.52F;
        return outline - 0.02F * std::cos(std::atan2(b, a - 0.35F) * 13);
    }

    static void butterfly(Vec3 q, Hit &hit) {
        const float far = box(q - Vec3{0.15F, 0.35F, 0}, {1.35F, 0.55F, 1.3F});
        if (far > 0.3F) {
            hit.join(far * 0.88F, Body);
            return;
        }
        constexpr float Size = 0.88F;
        const Vec3 h{q.x, q.y, std::fabs(q.z)};
        float body = ellipsoid(q - Vec3{0.1F, 0.05F, 0}, {0.2F, 0.095F, 0.09F});
        body = blend(body, ellipsoid(turnZ(q - Vec3{-0.3F, 0.04F, 0}, 0.08F), {0.33F, 0.062F, 0.062F}), 0.06F);
        body = blend(body, sphere(q - Vec3{0.33F, 0.07F, 0}, 0.078F), 0.04F);
        const OnCurve feeler = curve(h, {0.37F, 0.11F, 0.03F}, {0.62F, 0.36F, 0.1F}, {0.9F, 0.4F, 0.3F});
        body = std::min(body, feeler.distance - 0.011F - 0.02F * smoothStep(0.9F, 0.98F, feeler.along));
        const OnCurve tongue = curve(q, {0.39F, 0.03F, 0}, {0.52F, 0.06F, 0}, {0.5F, -0.2F, 0});
        body = std::min(body, tongue.distance - 0.012F);
        for (int leg = 0; leg < 3; ++leg) {
            const float x = 0.22F - 0.12F * static_cast<float>(leg);
            body = std::min(body,
                            limb(h, {x, 0, 0.05F}, {x + 0.03F, 0.02F, 0.2F},
                                 {x + 0.08F - 0.1F * static_cast<float>(leg), -0.18F, 0.28F}, 0.017F, 0.013F, 0.01F));
        }
        hit.join(body * Size * 0.9F, Body);
        hit.join(sphere(h - Vec3{0.36F, 0.085F, 0.052F}, 0.042F) * Size, Eye);
        const Vec3 w = wingPlane(q);
        const float wave = 0.03F * std::sin(w.y * 4 + 1) + 0.03F * w.x * w.x;
        const float fore = std::max(foreWing(w), std::fabs(w.z - wave) - 0.007F);
        const float hind = std::max(hindWing(w), std::fabs(w.z - wave + 0.022F) - 0.007F);
        hit.join(std::min(fore, hind) * Size * 0.6F, Wing);
    }

    static Surface wing(Vec3 q, Vec3 n, Vec3 d) {
        const Vec3 w = wingPlane(q);
        const float wave = 0.03F * std::sin(w.y * 4 + 1) + 0.03F * w.x * w.x;
        const bool front = foreWing(w) < 0.004F && w.z - wave > -0.0115F;
        const float edge = front ? foreWing(w) : hindWing(w);
        const float angle = std::atan2(w.x, w.y);
        const float r = length(w.x, w.y);
        // The blue of scales that split light: it shifts with the direction one looks along.
        const float shift = std::pow(clamp01(-dot(n, d)), 2.0F);
        Vec3 look = mix(colour(0x0A18B8), colour(0x0A78F0),
                        clamp01(0.1F + 0.6F * shift + 0.35F * (noise(r * 14, angle * 16) - 0.5F)));
        look = mix(look, colour(0x3AC0FF),
                   0.5F * smoothStep(0.55F, 0.15F, r) + 0.25F * smoothStep(0.72F, 0.5F, std::fabs(r - 0.75F) * 3));
        const float vein = std::fabs(repeat(angle * (front ? 6.2F : 5.2F) + 0.3F, 1)) * r;
        look = mix(look, colour(0x0A1030), 0.85F * smoothStep(0.022F, 0.008F, vein / (front ? 6.2F : 5.2F) * 3.2F));
        const float margin = 0.10F + (front ? 0.16F * smoothStep(0.8F, 1.25F, r) : 0.03F);
        look = mix(look, colour(0x0B0A14),
                   smoothStep(-margin - 0.035F, -margin + 0.015F, edge + 0.03F * (noise(r * 20, angle * 30) - 0.5F)));
        const float dot = length(repeat(angle * (front ? 9.0F : 8.0F), 1) * 0.12F * r / 0.9F, edge + 0.055F);
        look = mix(look, colour(0xFFFFFF), smoothStep(0.03F, 0.02F, dot) * smoothStep(0.5F, 0.6F, r));

        const float large = length(repeat(angle * 6.0F + 0.4F, 1) * 0.16F * r, edge + 0.15F);
        look =
            mix(look, colour(0xFFF2D0), front ? smoothStep(0.042F, 0.03F, large) * smoothStep(1.02F, 1.12F, r) : 0.0F);
        return {.colour = look, .shine = 0.035F, .sharpness = 30, .sheer = 0.15F};
    }

    static Vec3 beeLocal(Vec3 p) { return turnZ(turnY(p - Bee, -2.72F), -0.1F) * (1 / BeeSize); }

    static void bumblebee(Vec3 q, Hit &hit) {
        const float far = length(q) - 1.5F;
        if (far > 0.3F) {
            hit.join(far * BeeSize, Fur);
            return;
        }
        const Vec3 h{q.x, q.y, std::fabs(q.z)};
        float body = ellipsoid(turnZ(q - Vec3{-0.45F, -0.08F, 0}, 0.25F), {0.58F, 0.42F, 0.42F});
        body = blend(body, sphere(q - Vec3{0.22F, 0.08F, 0}, 0.36F), 0.08F);
        body = blend(body, ellipsoid(q - Vec3{0.6F, -0.02F, 0}, {0.2F, 0.23F, 0.24F}), 0.05F);
        if (body < 0.15F) {
            body -= 0.04F * (noise(q * 36) - 0.3F);
        }
        const OnCurve feeler = curve(h, {0.72F, 0.1F, 0.08F}, {0.9F, 0.3F, 0.14F}, {1.08F, 0.16F, 0.26F});
        body = std::min(body, feeler.distance - 0.03F);
        for (int leg = 0; leg < 3; ++leg) {
            const auto k = static_cast<float>(leg);
            const float x = 0.35F - 0.25F * k;
            body = std::min(body, limb(h, {x, -0.15F, 0.15F}, {x + 0.05F - 0.12F * k, -0.42F, 0.42F},
                                       {x - 0.1F - 0.12F * k, -0.68F, 0.38F}, 0.06F, 0.055F, 0.025F));
        }
        hit.join(body * BeeSize * 0.75F, Fur);
        hit.join(ellipsoid(h - Vec3{0.66F, 0.03F, 0.17F}, {0.1F, 0.15F, 0.09F}) * BeeSize, Eye);
        const Vec3 w = turnX(h - Vec3{0.2F, 0.36F, 0.15F}, -0.6F);
        float wings = blade({w.z, -w.x - 0.1F * w.z, w.y}, 1.15F, 0.24F, 0.1F);
        wings = std::min(
            wings, blade({w.z * 0.9F - 0.25F * w.x, -w.x - 0.28F - 0.35F * w.z, w.y + 0.03F}, 0.75F, 0.17F, 0.1F));
        hit.join(wings * BeeSize, BeeWing);
    }

    static Surface fur(Vec3 q) {
        const float soft = 0.1F * (noise(q * 15) - 0.5F);
        const float x = q.x + 0.2F * q.y + soft;
        Vec3 look = colour(0x14100E);

        look = mix(look, colour(0xFFC21A), smoothStep(0.3F, 0.34F, x) * smoothStep(0.56F, 0.52F, x));
        look = mix(look, colour(0xFFC21A), smoothStep(-0.36F, -0.32F, x) * smoothStep(-0.1F, -0.14F, x));
        look = mix(look, colour(0xFFF8EA), smoothStep(-0.74F, -0.79F, x));
        if (q.y < -0.4F || x > 0.74F) {
            look = colour(0x1A1512);
        }
        return {.colour = look * (0.75F + 0.5F * fbm(q * 30, 2)), .shine = 0.12F, .sharpness = 12};
    }
};

} // namespace

std::unique_ptr<Scene> butterfly() {
    return std::make_unique<Butterfly>();
}

} // namespace lumora::samples
