// A red biplane banks over a rocky coast on a summer afternoon.
#include "Scenes.h"

#include "Machinery.h"
#include "Skies.h"

namespace lumora::samples {

namespace {

enum Material { Land, Red, Cream, Metal, Black, Tyre, Strut, Leather, Skin, Scarf, Glass, Canvas, Tower, Roof };

constexpr float Sea = -42;
constexpr float UpperWing = 1.28F;
constexpr float LowerWing = -0.52F;
constexpr float Propeller = 2.95F;

constexpr Heap Heaps[] = {{-0.4F, 0.15F, 0.17F, 0.075F}, {-0.02F, 0.11F, 0.12F, 0.045F}, {0.31F, 0.125F, 0.17F, 0.07F},
                          {-0.62F, 0.12F, 0.14F, 0.06F}, {0.62F, 0.1F, 0.15F, 0.055F},   {0.13F, 0.05F, 0.1F, 0.02F},
                          {-0.2F, 0.06F, 0.1F, 0.02F},   {0.45F, 0.045F, 0.1F, 0.02F}};

class Biplane : public Scene {
  public:
    Biplane() {
        camera = {{-0.3F, 2.2F, -10.6F}, {-0.35F, 0.0F, 0}, 1.72F};
        sunDirection = normalise({-0.45F, 0.68F, -0.58F});
        sunColour = {3.2F, 2.9F, 2.45F};
        skyLight = {0.44F, 0.55F, 0.78F};
        groundLight = {0.12F, 0.2F, 0.24F};
        farthest = 900;
        caution = 0.85F;
        steps = 260;
        shadowReach = 12;
        shadowSoftness = 24;
        creviceSize = 0.3F;
        waterLevel = Sea;
        waterColour = {0.008F, 0.11F, 0.2F};
        exposure = 0.92F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join(p.y > -14 ? p.y + 15 : (p.y - landHeight(p)) * 0.5F, Land);
        lighthouse(p - Vec3{-37, -24.2F, 92}, hit);
        boats(p, hit);
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
        case Land:
            return land(p, n);
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
        case Scarf:
            return {.colour = colour(0xFFF6E6), .sheer = 0.4F};
        case Glass:
            return pane();
        case Roof:
            return {.colour = colour(0xC4432E) * mix(0.7F, 1.1F, noise(p * 3)), .shine = 0.1F};
        case Canvas:
            return {.colour = colour(0xFFF8EA), .sheer = 0.4F};
        default:
            return {.colour = std::fmod(p.y + 60, 5.2F) < 2.6F ? colour(0xF7F2E6) : colour(0xD8362A), .shine = 0.2F};
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.9F);
        Vec3 light = mix(colour(0xDDF0FA), mix(colour(0x62ADEB), colour(0x1E5FBC), smoothStep(0.2F, 1, up)),
                         smoothStep(-0.02F, 0.32F, up));
        const Cloud cloud = clouds(d, sunDirection, 0.42F, 0.9F, 3.4F);
        light = mix(light, mix(colour(0xC4D2E6), colour(0xFFFEF8) * 1.25F, cloud.lit), cloud.amount * 0.8F);
        light = cumulus(light, d, Heaps, colour(0xFFFDF6) * 1.3F, colour(0xA9BBD6));
        return light + sunGlow(d, sunDirection, sunColour) * 0.35F;
    }

    float grain(int material, Vec3 p) const override {
        if (material == Red) {
            // Cloth sinks a little between the ribs of the wings.
            const Vec3 q = toPlane(p);
            return std::fabs(q.z) > 0.6F && q.x > -1 ? 0.006F * std::cos(q.z * 2 * Pi / 0.42F) : 0;
        }
        return 0;
    }

    Vec3 waterNormal(Vec3 p, float distance) const override {
        const float ripple = 0.22F / (1 + 0.004F * distance);
        const float a = fbm(p.x * 0.3F, p.z * 0.5F, 4);
        const float b = fbm(p.x * 0.3F + 9, p.z * 0.5F, 4);
        return normalise({ripple * (a - 0.47F) * 0.7F, 1, ripple * (b - 0.47F)});
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        light = foam(light, from, d, distance);
        light =
            haze(light, *this, d, distance < farthest - 1 ? distance : 30.0F, 620, colour(0xB8D9F2), colour(0xFFF0D0));
        return propellerBlur(light, from, d, distance);
    }

  private:
    static Vec3 toPlane(Vec3 p) { return turnZ(turnX(turnY(p, -0.62F), -0.3F), 0.06F); }

    // ---- the aeroplane; nose along +x, wings along z

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
            const float rim = hole.y + 0.02F + 0.35F * hole.z * hole.z - 0.02F;
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
        hit.join(std::max(rodX(q - Vec3{-0.1F, 0, 0}, 0.56F, 0.04F), -0.3F), Black);
        hit.join(std::min(rodX(q - Vec3{0.2F, 0, 0}, 0.22F, 0.15F, 0.05F), rodX(q - Vec3{0.4F, 0, 0}, 0.1F, 0.14F)),
                 Metal);
        hit.join(std::min(length(s.y - 0.06F, s.z - 0.22F) - 0.014F, 9.0F) +
                     std::max(std::fabs(s.x - 0.32F) - 0.16F, 0.0F),
                 Black);
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
        hit.join(blend(ellipsoid(p - Vec3{0, -0.18F, 0}, {0.2F, 0.2F, 0.3F}), sphere(p - Vec3{0, 0, 0}, 0.1F), 0.1F),
                 Leather);
        // The scarf streams back.
        const float back = -p.x;
        if (back > -0.2F && back < 1.2F) {
            const float wave = 0.09F * back * std::sin(back * 7 + 1);
            const Vec3 s{back - 0.55F, p.y - 0.06F - 0.12F * back + wave,
                         p.z + 0.05F + 0.12F * std::sin(back * 4) * back};
            hit.join(box(s, {0.5F, 0.065F + 0.04F * back, 0.016F}, 0.012F) * 0.6F, Scarf);
        }
        hit.join(ringZ({p.x, p.z, p.y - 0.045F}, 0.11F, 0.05F), Scarf);
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

    /// The turning propeller: a shimmering disc with the ghost of two blades.
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
        const float blade = std::pow(std::fabs(std::cos(angle - 0.6F)), 14.0F);
        const float edge = smoothStep(1.32F, 1.27F, r) * smoothStep(0.1F, 0.3F, r);
        const Vec3 tone = r > 1.12F && r < 1.24F ? colour(0xFFC61A) * 1.3F : colour(0x6B4A30);
        return mix(light, tone, edge * (0.13F + 0.5F * blade) * (r > 1.12F ? 1.0F : 0.85F));
    }

    // ---- the coast

    /// Towards land positive, out to sea negative; bays and headlands.
    static float inland(float x, float z) {
        return -x - 16 + 0.1F * z + 38 * (fbm(x * 0.011F + 4.1F, z * 0.011F + 1.3F, 4) - 0.47F) * 2;
    }

    static float landHeight(Vec3 p) {
        const float in = inland(p.x, p.z);
        if (in < -40) {
            return Sea - 8;
        }
        float height = Sea + mix(-3.4F, 0.7F, std::pow(clamp01((in + 26) / 28), 0.8F)) + 0.6F * smoothStep(0, 8, in);
        const float cliff = smoothStep(0.36F, 0.5F, fbm(p.x * 0.016F + 8, p.z * 0.012F, 3));
        const float rough = fbm(p.x * 0.12F, p.z * 0.12F, 4);
        height += cliff * smoothStep(2, 7 + 4 * rough, in) * (8 + 7 * rough);
        height += smoothStep(10, 90, in) * 22 * fbm(p.x * 0.014F, p.z * 0.014F, 3);
        height = mix(height, -23.9F, headland(p));
        const float wood = woods(p, in);
        if (wood > 0) {
            const Cell tree = cells(p.x * 0.3F, p.z * 0.3F);
            height += wood * std::sqrt(std::max(0.0F, 1 - tree.distance * tree.distance * 2.6F)) *
                      (2.0F + 1.6F * tree.id + 0.9F * fbm(p * 0.9F, 2));
        }
        return height;
    }

    /// Level, bare ground under the lighthouse.
    static float headland(Vec3 p) {
        return smoothStep(14, 9, length(p.x + 35, p.z - 91) + 4 * fbm(p.x * 0.3F, p.z * 0.3F, 3));
    }

    static float woods(Vec3 p, float in) {
        return smoothStep(0.47F, 0.53F, fbm(p.x * 0.028F + 3, p.z * 0.028F, 3)) * smoothStep(14, 20, in) *
               (1 - headland(p));
    }

    static Surface land(Vec3 p, Vec3 n) {
        const float in = inland(p.x, p.z);
        const float rough = fbm(p * 0.5F, 4);
        Vec3 ground = mix(colour(0xCDB27C), colour(0xF3E4BC), rough * smoothStep(Sea + 0.2F, Sea + 0.9F, p.y));
        ground = ground * (0.8F + 0.35F * noise(p.x * 1.1F, p.z * 1.1F));
        ground = mix(ground, colour(0x9AA65A),
                     0.8F * smoothStep(0.5F, 0.62F, fbm(p.x * 0.2F, p.z * 0.2F, 4)) * smoothStep(4, 9, in));
        if (p.y > Sea + 2.2F) {
            const float field = cells(p.x * 0.035F, p.z * 0.035F).id;
            const Vec3 fields[] = {colour(0x6FA338), colour(0x8DB544), colour(0xD8C25A), colour(0x5A9136),
                                   colour(0xB7C24E)};
            ground = fields[static_cast<int>(field * 89) % 5] * (0.7F + 0.5F * noise(p.x * 0.8F, p.z * 0.8F));
            const float turn = 6 * field;
            ground = ground *
                     mix(0.8F, 1.0F,
                         smoothStep(0.1F, 0.4F,
                                    std::fabs(fraction((p.x * std::cos(turn) + p.z * std::sin(turn)) / 1.8F) - 0.5F)));
            ground = mix(mix(colour(0x8E7A62), colour(0xD9C7A4), fbm(Vec3{p.x * 0.2F, p.y * 1.1F, p.z * 0.2F}, 4)),
                         ground, smoothStep(0.6F, 0.8F, n.y));
        }
        const float wood = woods(p, in);
        ground = mix(ground, mix(colour(0x1E4F22), colour(0x5B8E33), noise(p * 0.9F)), smoothStep(0.3F, 0.6F, wood));
        return {.colour = ground * 0.72F, .sheer = 0.08F};
    }

    /// White water along the beaches.
    Vec3 foam(Vec3 light, Vec3 from, Vec3 d, float distance) const {
        if (d.y > -0.01F) {
            return light;
        }
        const float t = (Sea - from.y) / d.y;
        if (t < 0 || std::fabs(t - distance) > 0.5F) {
            return light;
        }
        const Vec3 p = from + d * t;
        const float in = inland(p.x, p.z) + 2.5F * (fbm(p.x * 0.25F, p.z * 0.25F, 3) - 0.5F);
        const float shoal = smoothStep(-48, -2, in + 14 * (fbm(p.x * 0.05F, p.z * 0.05F, 3) - 0.5F));
        light = mix(light, colour(0x27BFC0) * 0.8F, 0.55F * shoal * smoothStep(-0.03F, -0.3F, d.y));
        const float crest = smoothStep(0.66F, 0.76F, fbm(p.x * 0.22F, p.z * 0.6F, 4)) * noise(p.x * 0.9F, p.z * 1.8F);
        light = mix(light, Vec3{1, 1, 1} * 1.2F, 0.6F * crest);
        const float wave = std::max(smoothStep(1.4F, 0.3F, std::fabs(in - 0.2F)),
                                    0.7F * smoothStep(0.9F, 0.2F, std::fabs(in + 4.2F)) *
                                        smoothStep(0.42F, 0.6F, noise(p.x * 0.2F, p.z * 0.2F)));
        return mix(light, Vec3{1, 1, 1} * 1.5F, wave * (0.55F + 0.4F * noise(p.x * 1.5F, p.z * 1.5F)));
    }

    static void lighthouse(Vec3 p, Hit &hit) {
        const float near = box(p - Vec3{1, 4, 0}, {7, 15, 6});
        if (near > 2) {
            hit.join(near, Tower);
            return;
        }
        hit.join(cone(p + Vec3{0, 7, 0}, 2.1F, 1.2F, 20), Tower);
        const Vec3 house = turnY(p - Vec3{5.2F, 2, -1.5F}, 0.4F);
        hit.join(box(house, {2.4F, 2.4F, 1.6F}), Canvas);
        hit.join(
            std::max({std::fabs(house.z) * 0.6F + house.y * 0.8F - 2.9F, 2.3F - house.y, std::fabs(house.x) - 2.7F}),
            Roof);
        hit.join(rodY(p - Vec3{0, 13.2F, 0}, 1.9F, 0.25F), Canvas);
        hit.join(rodY(p - Vec3{0, 14.4F, 0}, 0.95F, 1.1F), Glass);
        hit.join(cone(p - Vec3{0, 15.4F, 0}, 1.4F, 0.1F, 1.4F), Roof);
    }

    static void boats(Vec3 p, Hit &hit) {
        if (p.y > Sea + 8) {
            return;
        }
        for (const Vec3 at : {Vec3{22, Sea, 95}, Vec3{44, Sea, 150}, Vec3{9, Sea, 190}, Vec3{80, Sea, 230}}) {
            const Vec3 q = turnY(p - at, 0.5F);
            hit.join(std::max(ellipsoid(q, {3, 0.9F, 1}), q.y - 0.6F), Strut);
            const float sail = std::max({q.y * 0.42F + q.x - 2.2F, -q.x - 0.1F, 0.9F - q.y, std::fabs(q.z) - 0.06F});
            const float jib = std::max({q.y * 0.35F - q.x - 2.4F, q.x + 0.3F, 0.9F - q.y, std::fabs(q.z) - 0.06F});
            hit.join(std::min(sail, jib), Canvas);
        }
    }
};

} // namespace

std::unique_ptr<Scene> biplane() {
    return std::make_unique<Biplane>();
}

} // namespace lumora::samples
