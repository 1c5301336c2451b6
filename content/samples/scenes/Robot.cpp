// A tin robot on a workshop shelf: lamps for eyes, a key-hole mouth of slots, dials on its chest.
#include "Scenes.h"

#include "Bodies.h"

#include <array>

namespace lumora::samples {

namespace {

enum Material { Enamel, Chest, Steel, Brass, Lamp, Dark, Bulb, Dial, Knob, Shelf };

class Robot : public Scene {
  public:
    Robot() {
        camera = {{-0.3F, 1.35F, -6}, {0, 0.78F, 0}, 2.3F};
        sunDirection = normalise({-0.5F, 0.6F, -0.62F});
        sunColour = {2.3F, 2.15F, 1.9F};
        skyLight = {0.40F, 0.42F, 0.46F};
        groundLight = {0.22F, 0.17F, 0.12F};
        farthest = 14;
        caution = 0.85F;
        steps = 150;
        shadowReach = 3;
        shadowSoftness = 9;
        creviceSize = 0.2F;
        focus = 5.4F;
        aperture = 0.012F;
        bloom = 0.18F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join(std::max(p.y + 1.0F, p.z - 2.2F), Shelf);
        const float far = box(p - Vec3{0, 0.7F, 0}, {1.9F, 2.0F, 1.0F});
        if (far > 0.3F) {
            hit.join(far, Steel);
            return hit;
        }
        const Vec3 h{std::fabs(p.x), p.y, p.z};
        head(p, h, hit);
        trunk(p, h, hit);
        arms(h, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3, Vec3) const override {
        // Old toys: scratches down to the tin along the edges, dust in the paint.
        const float scratch =
            smoothStep(0.72F, 0.78F, noise(p.x * 9 + 31 * p.y, p.y * 3 + 5 * p.z) * 0.6F + 0.4F * fbm(p * 16, 3));
        const float dust = 0.85F + 0.25F * fbm(p * 5, 4);
        switch (material) {
        case Enamel:
            return painted(mix(colour(0x2A8A8E), colour(0xB8B0A4), 0.7F * scratch) * dust);
        case Chest:
            return painted(mix(colour(0xB8321E), colour(0xB8B0A4), 0.7F * scratch) * dust);
        case Steel:
            return {.colour = Vec3{0.30F, 0.31F, 0.32F} * dust,
                    .shine = 0.9F,
                    .sharpness = 40,
                    .mirror = 0.35F,
                    .tint = {0.8F, 0.8F, 0.82F}};
        case Brass:
            return {.colour = colour(0x8A6420) * dust,
                    .shine = 1.0F,
                    .sharpness = 40,
                    .mirror = 0.35F,
                    .tint = {0.9F, 0.68F, 0.32F}};
        case Lamp: {
            const Vec3 e{std::fabs(p.x) - 0.38F, p.y - 1.42F, 0};
            const float r = length(e.x, e.y);
            const float ribs = 0.75F + 0.25F * std::cos(r * 130);
            return {.colour = colour(0xE8B84A),
                    .shine = 1.5F,
                    .sharpness = 120,
                    .mirror = 0.06F,
                    .glow = mix(colour(0xFFF4C0) * 2.2F, colour(0xF0901A) * 0.8F, smoothStep(0.02F, 0.2F, r)) * ribs};
        }
        case Bulb:
            return {.colour = colour(0xD8201A),
                    .shine = 1.5F,
                    .sharpness = 120,
                    .mirror = 0.05F,
                    .glow = colour(0xE0200A) * 0.35F};
        case Dial:
            return {.colour = gauge(p), .shine = 0.5F, .sharpness = 90};
        case Knob: {
            constexpr std::array colours{0xE8B82AU, 0x3A9A4AU, 0xE8E0D0U, 0x2A5AB8U};
            const int i = std::clamp(static_cast<int>((p.x + 0.55F) / 0.28F), 0, 3);
            return {.colour = colour(colours[static_cast<size_t>(i)]), .shine = 0.8F, .sharpness = 70, .mirror = 0.03F};
        }
        case Dark:
            return {.colour = colour(0x14110F)};
        default: {
            const float line = fbm(p.x * 1.1F, p.z * 8, 4);
            return {.colour = mix(colour(0x5A3A20), colour(0x9A6A3C), line),
                    .shine = 0.2F,
                    .sharpness = 30,
                    .mirror = 0.02F};
        }
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float side = std::atan2(d.x, std::max(d.z, 0.05F));
        if (d.z < 0) { // what the metal mirrors: the room, and a bright window
            const float window = std::max(std::fabs(d.x + 0.45F) - 0.25F, std::fabs(d.y - 0.4F) - 0.3F);
            return mix(colour(0x6A5A48), colour(0xFFFFFF) * 1.6F, smoothStep(0.05F, -0.05F, window)) *
                   mix(0.5F, 1.0F, smoothStep(-0.6F, 0.6F, d.y));
        }
        Vec3 light =
            mix(colour(0x6A4E34), colour(0xB08C62), smoothStep(-0.2F, 0.35F, d.y + 0.1F * noise(side * 5, d.y * 4)));
        // Tools and boxes on the board behind.
        const int box = static_cast<int>(std::floor(side / 0.11F));
        const float tall = -0.05F + 0.13F * hash(box, 3);
        const Vec3 tints[] = {colour(0x3A6A8A), colour(0xC89A3A), colour(0x8A3A2A), colour(0x4A7A4A), colour(0xD8CDB8)};
        light = mix(light, tints[static_cast<int>(hash(box, 5) * 4.99F)] * 0.8F,
                    smoothStep(0.006F, -0.006F,
                               std::max(d.y - tall, std::fabs(fraction(side / 0.11F) - 0.5F) * 0.11F - 0.05F)));
        light = mix(light, colour(0x4A3220), smoothStep(0.004F, -0.004F, std::fabs(d.y - 0.24F) - 0.014F));
        static const std::array glows{colour(0xFFD890), colour(0xFFF0C8), colour(0xF0A850)};
        return light + bokeh(side * 9 + 3, d.y * 9, glows, 0.35F) * (0.4F * smoothStep(0.0F, 0.2F, d.y));
    }

    float grain(int material, Vec3 p) const override {
        return material == Enamel || material == Chest ? 0.004F * fbm(p * 6, 3)
               : material == Steel                     ? 0.0015F * noise(p * 50)
                                                       : 0.0F;
    }

  private:
    static Surface painted(Vec3 look) { return {.colour = look, .shine = 0.55F, .sharpness = 50, .mirror = 0.045F}; }

    static float rivets(Vec3 q, float gap, Vec3 half) {
        const Vec3 at{repeat(q.x + gap / 2, gap), std::fabs(q.y) - half.y, q.z + half.z};
        return std::fabs(q.x) < half.x ? sphere(at, 0.032F) : 0.1F;
    }

    static void head(Vec3 p, Vec3 h, Hit &hit) {
        const Vec3 q = p - Vec3{0, 1.3F, 0};
        float shell = box(q, {0.86F, 0.62F, 0.55F}, 0.13F);
        shell = carve(shell, box(q - Vec3{0, -0.33F, -0.56F}, {0.52F, 0.15F, 0.06F}, 0.05F), 0.02F);
        hit.join(shell, Enamel);
        hit.join(rivets(q, 0.19F, {0.72F, 0.53F, 0.55F}), Steel);
        hit.join(box(q - Vec3{0, -0.33F, -0.47F}, {0.5F, 0.13F, 0.02F}), Dark);
        const float slots = box({repeat(q.x, 0.14F), q.y + 0.33F, q.z + 0.53F}, {0.028F, 0.14F, 0.025F}, 0.02F);
        hit.join(std::max(slots, h.x - 0.5F), Brass);
        const Vec3 e = h - Vec3{0.38F, 1.42F, -0.55F};
        hit.join(ringZ(e - Vec3{0, 0, -0.03F}, 0.235F, 0.05F), Brass);
        hit.join(ellipsoid(e - Vec3{0, 0, 0.0F}, {0.2F, 0.2F, 0.11F}), Lamp);
        // Brows of tin, ears with springs, the antenna.
        hit.join(box(turnZ(e - Vec3{0.02F, 0.33F, -0.01F}, -0.14F), {0.23F, 0.035F, 0.05F}, 0.02F), Steel);
        hit.join(rodX(h - Vec3{0.90F, 1.32F, 0}, 0.23F, 0.07F, 0.03F), Brass);
        hit.join(rodX(h - Vec3{1.02F, 1.32F, 0}, 0.12F, 0.08F, 0.03F), Steel);
        hit.join(cone(p - Vec3{0, 1.9F, 0}, 0.2F, 0.06F, 0.12F), Brass);
        hit.join(stick(p, {0, 1.95F, 0}, {0, 2.28F, 0}, 0.024F), Steel);
        hit.join(sphere(p - Vec3{0, 2.30F, 0}, 0.095F), Bulb);
        // A neck of rings.
        const float ring = repeat(p.y - 0.56F, 0.085F);
        hit.join(std::max(length(length(p.x, p.z) - 0.27F, ring) - 0.042F, std::fabs(p.y - 0.56F) - 0.17F), Steel);
    }

    static void trunk(Vec3 p, Vec3 h, Hit &hit) {
        const Vec3 q = p - Vec3{0, -0.38F, 0.05F};
        hit.join(box(q, {1.02F, 0.80F, 0.58F}, 0.16F), Chest);
        hit.join(rivets(q, 0.2F, {0.86F, 0.68F, 0.575F}), Steel);
        hit.join(box(q - Vec3{0, 0.05F, -0.56F}, {0.80F, 0.52F, 0.045F}, 0.04F), Steel);
        const Vec3 d = h - Vec3{0.36F, -0.18F, -0.58F};
        hit.join(ringZ(d, 0.235F, 0.04F), Brass);
        hit.join(rodZ(d, 0.225F, 0.02F), Dial);
        const Vec3 k{repeat(p.x + 0.14F, 0.28F), p.y + 0.62F, p.z + 0.59F};
        hit.join(h.x < 0.56F ? rodZ(k, 0.085F, 0.06F, 0.035F) : 0.2F, Knob);
    }

    static void arms(Vec3 h, Hit &hit) {
        hit.join(sphere(h - Vec3{1.12F, 0.12F, 0.05F}, 0.25F), Brass);
        const Vec3 q = turnZ(h - Vec3{1.2F, 0.05F, 0.02F}, 0.16F);
        const float ring = repeat(q.y, 0.12F);
        hit.join(std::max(length(length(q.x, q.z) - 0.13F, ring) - 0.065F, std::fabs(q.y + 0.6F) - 0.55F), Steel);
    }

    /// A clock face with marks and a red hand.
    static Vec3 gauge(Vec3 p) {
        const Vec3 d{std::fabs(p.x) - 0.36F, p.y + 0.18F, 0};
        const float x = p.x < 0 ? -d.x : d.x;
        const float r = length(x, d.y);
        const float angle = std::atan2(x, d.y);
        Vec3 look = colour(0xEFE6D0);
        const float mark = std::fabs(repeat(angle, Pi / 6)) * r;
        look = mix(look, colour(0x201A16), r > 0.15F && r < 0.2F ? smoothStep(0.010F, 0.005F, mark) : 0.0F);
        const float turn = p.x < 0 ? 0.7F : -0.5F;
        const float along = x * std::sin(turn) + d.y * std::cos(turn);
        const float off = std::fabs(x * std::cos(turn) - d.y * std::sin(turn));
        look = mix(look, colour(0xC8201A), along > -0.04F && along < 0.16F ? smoothStep(0.013F, 0.008F, off) : 0.0F);
        return mix(look, colour(0x8A6420), smoothStep(0.03F, 0.02F, r));
    }
};

} // namespace

std::unique_ptr<Scene> robot() {
    return std::make_unique<Robot>();
}

} // namespace lumora::samples
