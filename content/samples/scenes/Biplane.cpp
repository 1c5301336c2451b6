// A red biplane banks over a rocky coast on a summer afternoon.
#include "Scenes.h"

#include "Coast.h"

namespace lumora::samples {

namespace {

constexpr float UpperWing = 1.28F;
constexpr float LowerWing = -0.52F;
constexpr float Propeller = 2.95F;

class Biplane : public Coast {
    enum Material { Red = CoastEnd, Cream, Metal, Black, Tyre, Strut, Leather, Skin, Scarf, Glass };

  public:
    Biplane() {
        camera = {{-0.3F, 2.2F, -10.6F}, {-0.35F, 0.0F, 0}, 1.72F};
        caution = 0.85F;
        steps = 260;
        shadowReach = 12;
        shadowSoftness = 24;
        creviceSize = 0.3F;
        exposure = 0.92F;
        strands = 900000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        coast(p, hit);
        const Vec3 q = toPlane(p);
        const float near = box(q - Vec3{-0.55F, 0.2F, 0}, {4.2F, 1.9F, 5.0F});
        if (near > 0.8F) {
            hit.join(near, Red);
            return hit;
        }
        wings(q, hit);
        body(q, hit);
        engine(q, hit);
        struts(q, hit);
        gear(q, hit);
        pilot(q - Vec3{-0.95F, 0.66F, 0}, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        const Vec3 q = toPlane(p);
        switch (material) {
        case Red:
            return paintwork(q);
        case Cream:
            return lacquer(colour(0xF6E7C4), q);
        case Metal:
            return steel(q);
        case Black:
            return {.colour = colour(0x1C1D20), .shine = 0.5F, .sharpness = 40, .mirror = 0.03F};
        case Tyre:
            return rubber(q, colour(0x6A6258), 0.2F);
        case Strut:
            return {.colour = mix(colour(0x7A4A1E), colour(0xB97A38), fbm(Vec3{q.x * 8, q.y * 2, q.z * 8}, 3)),
                    .shine = 0.8F,
                    .sharpness = 80,
                    .mirror = 0.04F};
        case Leather:
            return {.colour = colour(0x5A3218) * mix(0.7F, 1.2F, fbm(q * 12, 3)), .shine = 0.4F, .sharpness = 25};
        case Skin:
            return {.colour = colour(0xE3A67F), .shine = 0.15F, .sheer = 0.1F};
        case Scarf: { // striped wool
            const float stripe = std::fabs(repeat(q.x, 0.16F));
            return {.colour = mix(colour(0xF2E6CE), colour(0x2B56A0), smoothStep(0.03F, 0.04F, stripe)) *
                              mix(0.75F, 1.05F, fbm(q * 30, 2)),
                    .sheer = 0.2F};
        }
        case Glass:
            return pane();
        default:
            return coastLook(material, p, n);
        }
    }

    float grain(int material, Vec3 p) const override {
        if (material == Red) {
            // Cloth sinks a little between the ribs of the wings.
            const Vec3 q = toPlane(p);
            return std::fabs(q.z) > 0.6F && q.x > -1 ? 0.0007F * std::cos(q.z * 2 * Pi / 0.42F) : 0;
        }
        return 0;
    }

    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        return material == Land ? growth(p, n, chance) : Strand{};
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        return propellerBlur(seaAir(light, from, d, distance), from, d, distance);
    }

  private:
    static Vec3 toPlane(Vec3 p) { return turnZ(turnX(turnY(p, -0.62F), -0.3F), 0.06F); }

    static float wing(Vec3 p, float span, float chord) {
        const float tip = std::max(std::fabs(p.z) - span + 0.55F, 0.0F);
        const float back = p.x + chord / 2;
        const float along = clamp01(1 - back / chord); // 0 at the leading edge
        const float thick = 0.125F * std::sqrt(along) * (1.25F - along) + 0.012F;
        const float camber = 0.1F * (1 - 4 * (along - 0.4F) * (along - 0.4F));
        const float a = std::fabs(p.x) - chord / 2 + 0.5F;
        const float b = std::fabs(p.z) - span + 0.5F;
        const float plan = length(std::max(a, 0.0F), std::max(b, 0.0F)) + std::min(std::max(a, b), 0.0F) - 0.5F;
        return std::max(plan, (std::fabs(p.y - camber) - thick * smoothStep(0.7F, 0.0F, tip) - 0.016F) * 0.9F);
    }

    static void wings(Vec3 p, Hit &hit) {
        hit.join(wing(p - Vec3{1.05F, UpperWing, 0}, 4.55F, 1.45F), Red);
        const Vec3 low = p - Vec3{0.55F, LowerWing + 0.05F * std::fabs(p.z), 0};
        hit.join(wing(low, 4.15F, 1.35F), Red);
        // Tail plane and fin.
        const Vec3 tail = p - Vec3{-3.95F, 0.18F, 0};
        const float plane = ellipsoid({tail.x, tail.z, 0}, {0.62F, 1.45F, 1});
        hit.join(plate(std::max(plane, -tail.x - 0.5F), tail.y, 0.04F, 0.03F) * 0.9F, Red);
        const Vec3 fin = p - Vec3{-4.15F, 0.55F, 0};
        const float leaf = ellipsoid({fin.x + 0.25F * fin.y, fin.y, 0}, {0.52F, 0.82F, 1});
        hit.join(plate(std::max(leaf, -0.45F - fin.y), fin.z, 0.04F, 0.03F) * 0.9F, Red);
    }

    static void body(Vec3 p, Hit &hit) {
        const float t = clamp01((2.2F - p.x) / 6.5F);
        const float wide = mix(0.54F, 0.05F, t * t * 0.6F + 0.4F * t);
        const float high = mix(0.58F, 0.13F, t * t * 0.5F + 0.5F * t);
        const float middle = mix(0.05F, 0.2F, t);
        const float sidewise = std::fabs(p.z) - wide * 0.35F;
        const float upward = std::fabs(p.y - middle) - high * 0.45F;
        const float round =
            length(std::max(sidewise, 0.0F) / (wide * 0.65F), std::max(upward, 0.0F) / (high * 0.55F)) - 1;
        float skin = std::max({round * std::min(wide, high) * 0.6F, p.x - 2.2F, -4.3F - p.x});
        // Two cockpits with padded rims and windscreens.
        for (const float x : {-0.95F, 0.15F}) {
            const Vec3 hole = p - Vec3{x, 0.55F, 0};
            const float opening = length(hole.x / 0.36F, hole.z / 0.3F) - 1;
            skin = std::max(skin, -std::max(opening * 0.28F, -0.45F - hole.y));
            const float rim = hole.y + 0.35F * hole.z * hole.z;
            hit.join(length(opening * 0.3F, rim + 0.02F) - 0.045F, Leather);
            const Vec3 screen = turnZ(hole - Vec3{0.42F, 0.13F, 0}, -0.5F);
            const float glass =
                std::max(box(screen, {0.012F, 0.17F, 0.25F}), length(screen.y + 0.16F, screen.z) - 0.31F);
            hit.join(glass, Glass);
            hit.join(std::max(std::fabs(length(screen.y + 0.16F, screen.z) - 0.31F) - 0.016F,
                              std::max(std::fabs(screen.x) - 0.02F, -screen.y - 0.17F)),
                     Metal);
        }
        hit.join(skin, Red);
    }

    static void engine(Vec3 p, Hit &hit) {
        const Vec3 q = p - Vec3{2.42F, 0.05F, 0};
        const float out = length(q.y, q.z);
        float cowl = rodX(q, 0.66F, 0.3F, 0.09F);
        cowl = std::max(cowl, -rodX(q - Vec3{0.15F, 0, 0}, 0.55F, 0.35F, 0.05F));
        hit.join(cowl, Red);
        hit.join(length(out - 0.605F, q.x - 0.3F) - 0.03F, Metal);
        // Nine cylinders with cooling fins about the crank case.
        const Vec3 s = slices({q.y, q.z, q.x}, 9);
        const float fins = 0.012F * std::cos(s.x * 2 * Pi / 0.045F);
        hit.join((std::max(length(s.y, s.z - 0.1F) - 0.105F - fins, std::fabs(s.x - 0.36F) - 0.16F)) * 0.7F, Metal);
        hit.join(rodX(q - Vec3{-0.1F, 0, 0}, 0.56F, 0.04F), Black);
        hit.join(std::min(rodX(q - Vec3{0.2F, 0, 0}, 0.22F, 0.15F, 0.05F), rodX(q - Vec3{0.4F, 0, 0}, 0.1F, 0.14F)),
                 Metal);
        hit.join(length(s.y - 0.06F, s.z - 0.22F) - 0.014F + std::max(std::fabs(s.x - 0.32F) - 0.16F, 0.0F), Black);
        hit.join(ellipsoid(p - Vec3{Propeller, 0.05F, 0}, {0.26F, 0.17F, 0.17F}), Cream);
        // Exhausts under the cowling, bolts around it.
        const Vec3 half = bothSides(p);
        hit.join(stick(half, {2.2F, -0.42F, 0.42F}, {1.15F, -0.5F, 0.5F}, 0.06F), Metal);
        hit.join(bolts({q.y, q.z, 0}, 22, 0.664F, 0.016F) + std::max(std::fabs(q.x + 0.2F) - 0.002F, 0.0F), Metal);
    }

    static void struts(Vec3 p, Hit &hit) {
        const Vec3 half = bothSides(p);
        float wood = 9;
        float wire = 9;
        const Vec3 lowFront{0.95F, LowerWing + 0.16F, 3.0F};
        const Vec3 lowBack{0.2F, LowerWing + 0.14F, 3.0F};
        const Vec3 highFront{1.45F, UpperWing, 3.1F};
        const Vec3 highBack{0.7F, UpperWing, 3.1F};
        for (const auto &[low, high] : {std::pair{lowFront, highFront}, std::pair{lowBack, highBack}}) {
            wood = std::min(wood, stick(half, low, high, 0.045F));
            wire = std::min({wire, stick(half, {low.x, low.y, 0.5F}, high, 0.009F),
                             stick(half, low, {high.x, high.y, 0.45F}, 0.009F)});
        }
        wood = std::min({wood, stick(half, {1.45F, 0.5F, 0.4F}, {1.5F, UpperWing, 0.55F}, 0.035F),
                         stick(half, {0.5F, 0.5F, 0.42F}, {0.65F, UpperWing, 0.55F}, 0.035F),
                         stick(half, {0.5F, 0.5F, 0.42F}, {1.5F, UpperWing, 0.55F}, 0.025F)});
        wire = std::min({wire, stick(half, {-3.9F, 0.2F, 1.0F}, {-4.1F, 0.95F, 0.03F}, 0.009F),
                         stick(half, lowFront, highBack, 0.009F)});
        hit.join(wood, Strut);
        hit.join(wire, Metal);
    }

    static void gear(Vec3 p, Hit &hit) {
        if (p.y > 0.1F) {
            hit.join(std::max(p.y - 0.05F, 0.3F), Black);
            return;
        }
        const Vec3 half = bothSides(p);
        const Vec3 hub{1.45F, -1.38F, 0.85F};
        hit.join(
            std::min(stick(half, {1.9F, -0.4F, 0.35F}, hub, 0.04F), stick(half, {0.85F, -0.45F, 0.35F}, hub, 0.04F)),
            Strut);
        hit.join(stick(p, {hub.x, hub.y, -0.95F}, {hub.x, hub.y, 0.95F}, 0.035F), Metal);
        const Vec3 wheel = half - hub - Vec3{0, 0, 0.08F};
        hit.join(tyre(wheel, 0.37F, 0.22F, 0.09F, 0.06F), Tyre);
        hit.join(
            std::max(length(wheel.x, wheel.y) - 0.25F, std::fabs(wheel.z) - 0.085F + 0.18F * length(wheel.x, wheel.y)),
            Cream);
        hit.join(stick(p, {-3.85F, 0.05F, 0}, {-4.35F, -0.2F, 0}, 0.035F), Metal);
    }

    static void pilot(Vec3 p, Hit &hit) {
        if (length(p) > 2) {
            return;
        }
        const Vec3 head = p - Vec3{0, 0.2F, 0};
        hit.join(std::max(sphere(head, 0.165F), -0.03F - head.x + 0.6F * head.y), Skin);
        hit.join(std::max(sphere(head, 0.18F), 0.02F + head.x - 0.55F * head.y), Leather);
        const Vec3 eye = bothSides(head) - Vec3{0.145F, 0.03F, 0.065F};
        hit.join(std::min(std::max(sphere(eye, 0.055F), -eye.x), ringZ({eye.y, eye.z, eye.x}, 0.055F, 0.016F)), Glass);
        hit.join(std::max(std::fabs(sphere(head, 0.185F)) - 0.008F, std::fabs(head.y - 0.04F) - 0.022F), Black);
        hit.join(blend(ellipsoid(p - Vec3{0, -0.18F, 0}, {0.2F, 0.2F, 0.3F}), sphere(p, 0.1F), 0.1F), Leather);
        // Nose and a smile.
        hit.join(blend(sphere(head - Vec3{0.165F, -0.03F, 0}, 0.028F), sphere(head, 0.15F), 0.03F), Skin);
        const float smile = length(length(head.y + 0.045F, head.z) - 0.055F, head.x - 0.14F) - 0.016F;
        hit.join(std::max(smile, head.y + 0.075F), Leather);
        // The scarf streams back in waves that grow, its end frayed.
        const float back = -p.x;
        if (back > -0.2F && back < 1.3F) {
            const float grow = 0.02F + 0.09F * std::max(back, 0.0F);
            const float wave = grow * std::sin(back * 8 + 1);
            const float twist = 0.5F * std::sin(back * 5);
            const Vec3 s = turnX({back - 0.55F, p.y - 0.05F - 0.08F * back + 0.4F * wave, p.z + 0.04F + wave}, twist);
            const float fringe = 0.04F * (std::fabs(fraction(s.y * 34) - 0.5F) - 0.25F);
            hit.join(std::max(box(s, {0.5F, 0.05F + 0.03F * back, 0.012F}, 0.01F), s.x - 0.47F - fringe) * 0.5F, Scarf);
        }
        hit.join(ringZ({p.x, p.z, p.y - 0.045F}, 0.1F, 0.05F), Scarf);
    }

    static Surface paintwork(Vec3 q) {
        Vec3 paint = colour(0xC8140F);
        const Vec3 cream = colour(0xF8E9C6);
        const float side = std::fabs(q.z);
        if (q.x > -1.2F && side > 0.7F) {
            // Wings: cream tips, a star and a thin shadow along the ribs and the aileron.
            const bool upper = q.y > 0.6F;
            const float chordMiddle = upper ? 1.05F : 0.55F;
            // A star of five points.
            const Vec3 star = slices({q.x - chordMiddle + 0.08F, side - 3.3F, 0}, 5);
            if (star.x * 0.309F + std::fabs(star.y) * 0.951F < 0.15F) {
                paint = colour(0xFFC32E);
            } else if (side > (upper ? 4.0F : 3.7F)) {
                paint = cream;
            }
            const float rib = std::fabs(repeat(side, 0.42F));
            paint = paint * mix(0.78F, 1.0F, smoothStep(0.008F, 0.025F, rib));
            const float hinge = q.x - chordMiddle + 0.42F;
            if (side > 2.2F && std::fabs(hinge) < 0.014F) {
                paint = paint * 0.3F;
            }
        } else if (q.x < -3.3F) {
            const float bar = fraction((q.y - 0.2F) / 0.36F);
            if (q.y > 0.42F && q.x < -4.2F + 0.2F * q.y) {
                paint = bar < 0.5F ? cream : paint;
            }
            if (std::fabs(q.x + 4.1F - 0.08F * q.y) < 0.012F) {
                paint = paint * 0.3F;
            }
        } else if (q.x < 2.15F) {
            // A cream arrow along the body.
            const float half = 0.11F * smoothStep(-3.6F, 1.9F, q.x);
            const float y = std::fabs(q.y - 0.1F);
            if (y < half) {
                paint = cream;
            } else if (y > half + 0.03F && y < half + 0.05F) {
                paint = colour(0xE8B23A);
            }
            const float seam = std::min(std::fabs(q.x - 1.3F), std::fabs(q.x - 2.05F));
            paint = paint * mix(0.45F, 1.0F, smoothStep(0.004F, 0.014F, seam));
        }
        return lacquer(paint, q);
    }

    /// The turning propeller: the wedges that two blades smear while the shutter is open.
    static Vec3 propellerBlur(Vec3 light, Vec3 from, Vec3 d, float distance) {
        const Vec3 a = toPlane(from);
        const Vec3 b = toPlane(from + d) - toPlane(Vec3{});
        const Vec3 dir = b - toPlane(from) + toPlane(Vec3{});
        const float t = (Propeller - 0.05F - a.x) / dir.x;
        if (t < 0 || t > distance) {
            return light;
        }
        const Vec3 p = a + dir * t;
        const float r = length(p.y - 0.05F, p.z);
        if (r > 1.32F || r < 0.1F) {
            return light;
        }
        const float angle = std::atan2(p.z, p.y - 0.05F);
        const float off = 0.5F * std::acos(std::clamp(std::cos(2 * (angle - 0.6F)), -1.0F, 1.0F));
        const float blade = smoothStep(0.62F, 0.08F, off) * mix(1.0F, 0.6F, r / 1.32F);
        const float edge = smoothStep(1.32F, 1.24F, r) * smoothStep(0.1F, 0.3F, r);
        const Vec3 tone = mix(colour(0x6B4A30), colour(0xE8A81A), smoothStep(1.1F, 1.14F, r));
        return mix(light, tone, edge * (0.045F + 0.62F * blade));
    }
};

} // namespace

std::unique_ptr<Scene> biplane() {
    return std::make_unique<Biplane>();
}

} // namespace lumora::samples
