// A building site after a shower: mud and puddles, cones and pipes, a house going up, a crane and a rainbow.
#pragma once

#include "Machinery.h"

namespace lumora::samples {

/// A scene at this site adds the machine that works there, with materials from SiteEnd on.
class BuildingSite : public Scene {
  public:
    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.6F);
        Vec3 light = mix(colour(0x9DB2C6), mix(colour(0x5D7492), colour(0x3C5878), up), smoothStep(0, 0.4F, up));
        // The shower that has moved on, still dark beneath, and the bow in it.
        const float rain = fbm(d.x * 5 + 2 * d.y, d.y * 1.2F + 3, 4);
        light = light * mix(0.78F, 1.12F, rain);
        light = cumulus(light, d, Heaps, colour(0xD7DBE2), colour(0x56677F));
        if (d.y > -0.05F) {
            light += rainbow(d);
        }
        return light;
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return haze(light, *this, d, distance < farthest - 1 ? distance : 4.0F, 130, colour(0x9FB2C4),
                    colour(0xE8DCC8));
    }

  protected:
    enum SiteMaterial { Ground, Brick, Beam, Concrete, Cone, Crane, Red, Lamp, Black, SiteEnd };

    BuildingSite() {
        sunDirection = normalise({0.3F, 0.4F, -0.86F});
        sunColour = {3.5F, 2.95F, 2.25F};
        skyLight = {0.34F, 0.42F, 0.6F};
        groundLight = {0.16F, 0.12F, 0.08F};
        farthest = 200;
    }

    static void site(Vec3 p, Hit &hit) {
        hit.join(p.y > 5 && p.z < 20 ? std::min(p.y - 3.5F, 5.5F) : (p.y - groundHeight(p.x, p.z)) * 0.75F, Ground);
        things(p, hit);
        house(turnY(p - Vec3{11, 0, 17}, 0.35F), hit);
        constexpr float Size = 0.64F;
        crane(turnY(p - Vec3{-9.3F, 0, 24}, -0.5F) * (1 / Size), Size, hit);
    }

    static Surface siteLook(int material, Vec3 p, Vec3 n) {
        switch (material) {
        case Brick: {
            const Vec3 h = turnY(p - Vec3{11, 0, 17}, 0.35F);
            const float row = std::floor(h.y * 5);
            const float across =
                (std::fabs(n.x) > 0.75F ? h.z : h.x) * 2.2F + (static_cast<int>(row) % 2 == 0 ? 0.5F : 0.0F);
            const bool joint = fraction(h.y * 5) < 0.13F || fraction(across) < 0.06F;
            const float one = hash(static_cast<int>(row), static_cast<int>(std::floor(across)));
            return {.colour = joint ? colour(0xB8A994) : mix(colour(0x9A4A2C), colour(0xC9774A), one)};
        }
        case Beam:
            return {.colour = mix(colour(0xA87440), colour(0xDDAE6C), fbm(p * 5, 3))};
        case Concrete:
            return {.colour = mix(colour(0x8D8B86), colour(0xC2BFB6), fbm(p * 3, 4)), .shine = 0.1F};
        case Cone: {
            const float h = p.y - 0.02F;
            const bool white = (h > 0.22F && h < 0.34F) || (h > 0.46F && h < 0.56F);
            return {
                .colour = white ? colour(0xF6F3EA) : colour(0xF4511E), .shine = 0.5F, .sharpness = 40, .mirror = 0.02F};
        }
        case Crane:
            return {.colour = fraction(p.y / 5 + 0.02F * p.x) < 0.5F ? colour(0xD92B20) : colour(0xF4EEE2)};
        case Red:
            return {.colour = fraction(p.x * 1.6F + p.y * 1.6F) < 0.5F ? colour(0xD8241B) : colour(0xF7F3EA),
                    .shine = 0.5F};
        case Lamp:
            return {.colour = colour(0xFF8A1A), .shine = 1.5F, .mirror = 0.08F, .glow = colour(0xFF7A10) * 0.9F};
        case Black:
            return {.colour = colour(0x1A1B1E), .shine = 0.6F, .sharpness = 40, .mirror = 0.02F};
        default:
            return ground(p, n);
        }
    }

    static float siteGrain(int material, Vec3 p) {
        if (material == Ground) {
            return p.z > 24 ? 0.5F * fbm(p * 1.7F, 3)
                            : 0.012F * fbm(p.x * 14, p.z * 14, 3) * smoothStep(0, -0.03F, wet(p));
        }
        return material == Concrete ? 0.006F * fbm(p * 20, 3) : 0.0F;
    }

    /// Foliage on the woods, grass at the edge of the site.
    Strand growth(Vec3 p, Vec3 n, float chance) const {
        const float other = fraction(chance * 733);
        const float turn = 2 * Pi * fraction(chance * 331);
        const float light = 0.6F + 0.9F * fraction(chance * 4001);
        const Vec3 around{std::cos(turn), 0, std::sin(turn)};
        if (p.z > 24 && woods(p.x, p.z) > 0.2F) {
            return {.tip = normalise(n + around + Vec3{0, other - 0.2F, 0}) * (0.4F + 0.4F * other),
                    .width = 0.35F,
                    .blunt = 0.7F,
                    .order = -length(p - camera.eye),
                    .tint = {light, light, light * 0.85F}};
        }
        return {};
    }

  private:
    static constexpr Heap Heaps[] = {{-0.3F, 0.2F, 0.4F, 0.12F},
                                     {0.53F, 0.22F, 0.35F, 0.13F},
                                     {0.15F, 0.42F, 0.4F, 0.1F},
                                     {-0.65F, 0.4F, 0.3F, 0.12F},
                                     {0.2F, 0.09F, 0.3F, 0.045F}};

    /// Depth of the puddle at the place, negative where it is dry.
    static float wet(Vec3 p) { return -0.035F - groundRaw(p.x, p.z); }

    static float groundRaw(float x, float z) {
        float height = 0.05F + 0.12F * (fbm(x * 0.55F + 1.7F, z * 0.55F + 0.6F, 3) - 0.43F);
        // Ruts of the lorries, with the print of their tyres.
        const float road = z + 2.2F + 0.12F * x + 0.3F * std::sin(0.4F * x);
        const float rut = std::fabs(std::fabs(road) - 0.85F);
        height += 0.035F * smoothStep(0.2F, 0.3F, rut) * smoothStep(0.5F, 0.34F, rut);
        height -= smoothStep(0.28F, 0.16F, rut) * (0.05F + 0.012F * std::cos((x + 0.7F * rut) * 22));
        // What has been dug out, and a spoil heap behind.
        height += heap(x, z, -4.3F, -1.0F, 1.5F, 0.55F) + heap(x, z, -7.8F, 4.5F, 3.6F, 2.3F) +
                  heap(x, z, 7.4F, 3.8F, 2.2F, 1.1F);
        return height - hollow(x, z, 0.6F, -4.6F, 1.25F, 0.8F) - hollow(x, z, -3.1F, -4.1F, 1.1F, 0.5F) -
               hollow(x, z, 4.3F, -3.6F, 1.3F, 0.6F);
    }

    /// Where the rain has gathered.
    static float hollow(float x, float z, float atX, float atZ, float wide, float deep) {
        const float out = length((x - atX) / wide, (z - atZ) / deep);
        return out > 1.6F ? 0.0F : 0.2F * smoothStep(1.5F, 0.5F, out + 0.7F * (fbm(x * 1.1F, z * 1.6F + 4, 3) - 0.45F));
    }

    /// Clods and stones that lie on the ground, 0 to 1.
    static float clods(float x, float z) {
        const Cell a = cells(x * 4.5F, z * 4.5F, 0.9F);
        const Cell b = cells((0.8F * x + 0.6F * z) * 11, (0.8F * z - 0.6F * x) * 11, 0.9F);
        const float big =
            a.id * a.id * a.id * (1 - 8 * a.distance * a.distance) + 0.25F * (noise(x * 23, z * 23) - 0.5F);
        return std::max({0.0F, big, 0.4F * b.id * b.id * (1 - 4 * b.distance * b.distance)});
    }

    static float heap(float x, float z, float atX, float atZ, float wide, float high) {
        const float out = length(x - atX, z - atZ) / wide;
        return out > 1.2F ? 0.0F : high * smoothStep(1.1F, 0.0F, out + 0.35F * (fbm(x * 1.3F, z * 1.3F, 3) - 0.5F));
    }

    static float woods(float x, float z) {
        return smoothStep(27, 31, z) * smoothStep(0.38F, 0.5F, fbm(x * 0.06F + 3, z * 0.05F, 3));
    }

    static float groundHeight(float x, float z) {
        float height = groundRaw(x, z);
        if (height < -0.035F) {
            return -0.035F;
        }
        if (z < 10) {
            height += 0.05F * clods(x, z) * smoothStep(-0.03F, 0.03F, height);
        }
        if (z > 22) {
            height += smoothStep(22, 70, z) * (9 * fbm(x * 0.03F, z * 0.02F, 3) - 0.6F);
            const Cell tree = cells(x * 0.33F, z * 0.33F);
            const float wood = woods(x, z);
            height += wood * std::sqrt(std::max(0.0F, 1 - tree.distance * tree.distance * 2.2F)) *
                      (2.4F + 2.4F * tree.id + 1.2F * fbm(x * 1.6F, z * 1.6F, 3));
        }
        return height;
    }

    static Surface ground(Vec3 p, Vec3 n) {
        if (p.z > 24) {
            const float leaf = 1.4F * fbm(p * 2.1F, 3);
            return {.colour = mix(colour(0x23461F),
                                  mix(colour(0x5E8A34), colour(0xB98A2E),
                                      smoothStep(0.6F, 0.9F, noise(p.x * 0.25F, p.z * 0.25F))),
                                  leaf * smoothStep(-0.3F, 0.9F, n.y)),
                    .sheer = 0.08F};
        }
        const float under = wet(p);
        const float damp = smoothStep(-0.1F, 0.0F, under);
        const Vec3 earth = mix(colour(0x64462C), colour(0xA07C50), fbm(p.x * 1.7F, p.z * 1.7F, 5));
        Vec3 tone = mix(earth, colour(0x4A3320), 0.75F * damp);
        const Cell clod = cells(p.x * 4.5F, p.z * 4.5F, 0.9F);
        const float lies = clod.id * clod.id * clod.id * (1 - 8 * clod.distance * clod.distance);
        if (lies > 0.2F && under < 0) { // stones among the clods
            const float kind = fraction(clod.id * 40);
            tone = kind > 0.6F ? mix(colour(0x5E564C), colour(0x8E8270), fraction(kind * 40))
                               : tone * (0.75F + 0.5F * kind);
        }
        tone = tone * mix(0.75F, 1.15F, fbm(p.x * 17, p.z * 17, 3));
        tone = mix(tone, mix(colour(0x5C3D22), colour(0x96683C), fbm(p * 4, 4)), smoothStep(0.12F, 0.5F, p.y));
        return {.colour = under > 0 ? colour(0x3A2A1C) : tone,
                .shine = under > 0 ? 1.0F : 0.3F * damp,
                .sharpness = under > 0 ? 300.0F : 20.0F,
                .mirror = under > 0 ? mix(0.25F, 0.5F, clamp01(under * 30)) : 0.0F};
    }

    static void things(Vec3 p, Hit &hit) {
        if (p.y > 2.4F || p.z > 8) {
            hit.join(std::max(p.y - 1.8F, p.z - 7.0F), Concrete);
            return;
        }
        // Concrete pipes in a stack.
        const Vec3 pipes = turnY(p - Vec3{6.5F, 0.02F, 2.2F}, 0.5F);
        const float level = pipes.y > 1.02F ? 1.0F : 0.0F;
        const float i = level > 0 ? 0.0F : std::clamp(std::round((pipes.x - 0.52F) / 1.04F), -1.0F, 0.0F);
        const Vec3 one{pipes.x - (level > 0 ? 0.0F : i * 1.04F + 0.52F), pipes.y - 0.53F - level * 0.9F, pipes.z};
        const float r = length(one.x, one.y);
        hit.join(std::max(std::fabs(r - 0.45F) - 0.07F, std::fabs(one.z) - 1.3F) * 0.95F, Concrete);
        // Cones, and a barrier.
        for (const Vec3 at : {Vec3{-1.35F, 0, -5.0F}, Vec3{2.35F, 0, -4.6F}}) {
            const Vec3 q = p - at - Vec3{0, groundRaw(at.x, at.z) > 0 ? 0.04F : 0.0F, 0};
            hit.join(std::min(cone(q, 0.19F, 0.035F, 0.7F), box(q - Vec3{0, 0.02F, 0}, {0.25F, 0.03F, 0.25F}, 0.015F)) *
                         0.9F,
                     Cone);
        }
        const Vec3 barrier = turnY(p - Vec3{4.5F, 0, -1.9F}, 0.25F);
        hit.join(std::min(box(barrier - Vec3{0, 0.95F, 0}, {1.15F, 0.1F, 0.025F}, 0.01F),
                          box(barrier - Vec3{0, 0.55F, 0}, {1.15F, 0.07F, 0.02F}, 0.01F)),
                 Red);
        const Vec3 leg{std::fabs(barrier.x) - 0.9F, barrier.y, std::fabs(barrier.z)};
        hit.join(stick(leg, {0, 1.05F, 0}, {0, -0.02F, 0.28F}, 0.03F), Black);
        hit.join(rodY(leg - Vec3{0, 1.14F, 0}, 0.08F, 0.08F, 0.04F), Lamp);
    }

    /// A house half built: walls, window holes, naked rafters.
    static void house(Vec3 p, Hit &hit) {
        const float near = box(p - Vec3{0, 3.5F, 0}, {5.6F, 4.2F, 4});
        if (near > 1) {
            hit.join(near, Brick);
            return;
        }
        float wall =
            std::max(box(p - Vec3{0, 2.2F, 0}, {4.6F, 2.4F, 3.2F}), -box(p - Vec3{0, 2.5F, 0}, {4.3F, 2.8F, 2.9F}));
        const Vec3 window{repeat(p.x, 2.4F), p.y - 2.7F, p.z};
        wall = std::max(wall, -std::max(box(window, {0.6F, 0.8F, 9}), std::fabs(p.x) - 4));
        wall = std::max(wall, -box({p.x, p.y - 2.7F, repeat(p.z, 2.6F)}, {9, 0.8F, 0.6F}));
        hit.join(wall, Brick);
        hit.join(std::max(box(window - Vec3{0, -0.9F, 0}, {0.75F, 0.09F, 9}),
                          std::max(std::fabs(p.z) - 3.35F, std::fabs(p.x) - 4)),
                 Concrete);
        const Vec3 rafter{repeat(p.x, 0.9F), p.y - 4.6F, std::fabs(p.z)};
        float beams =
            std::max(std::fabs(rafter.z * 0.62F + rafter.y * 0.78F - 2.05F) - 0.1F, std::fabs(rafter.x) - 0.06F);
        beams = std::max({beams, std::fabs(p.x) - 4.6F, -rafter.y - 0.15F});
        beams = std::min({beams, box(p - Vec3{0, 7.2F, 0}, {4.8F, 0.12F, 0.07F}),
                          box(Vec3{p.x, p.y - 5.6F, std::fabs(p.z) - 1.9F}, {4.7F, 0.09F, 0.07F})});
        hit.join(beams, Beam);
        // Scaffolding in front of it.
        const Vec3 pole{repeat(p.x, 2.2F), p.y - 2.5F, std::fabs(p.z + 4) - 0.45F};
        hit.join(std::max(std::min(length(pole.x, pole.z) - 0.045F, length(repeat(pole.y, 2), pole.z) - 0.04F),
                          box(p - Vec3{0, 2.6F, -4}, {5, 2.6F, 0.6F})),
                 Concrete);
        hit.join(std::max(std::fabs(repeat(p.y - 1.5F, 2)) - 0.04F, box(p - Vec3{0, 2.5F, -4}, {5, 2.2F, 0.5F})), Beam);
    }

    /// A tower crane with a load of beams; p = 0 is its foot, `size` its scale.
    static void crane(Vec3 p, float size, Hit &hit) {
        const float near = std::min({box(p - Vec3{0, 10, 0}, {2.3F, 12, 2.3F}), box(p - Vec3{6, 20.5F, 0}, {16, 4, 1}),
                                     box(p - Vec3{15, 15, 0}, {1.6F, 6, 0.9F})});
        if (near > 1) {
            hit.join(near * size, Crane);
            return;
        }
        const auto lattice = [](float along, Vec3 across, float half) {
            const Vec3 c{std::fabs(across.x), std::fabs(across.y), 0};
            const float zig = half - 2 * half * std::fabs(2 * fraction(along / (4 * half)) - 1);
            const float corner = length(c.x - half, c.y - half) - 0.11F;
            return std::min(
                {corner, length(across.x - zig, c.y - half) - 0.08F, length(across.y - zig, c.x - half) - 0.08F});
        };
        float bars = std::max(lattice(p.y, {p.x, p.z, 0}, 0.75F), std::fabs(p.y - 9) - 11);
        bars = std::min(bars, std::max(lattice(p.x, {p.y - 20.3F, p.z, 0}, 0.5F), std::fabs(p.x - 6.5F) - 14.5F));
        bars = std::min({bars * 0.7F, stick(p, {0, 24, 0}, {14, 20.8F, 0}, 0.07F),
                         stick(p, {0, 24, 0}, {-7.5F, 20.8F, 0}, 0.07F), stick(p, {0, 20, 0}, {0, 24, 0}, 0.3F, 0.12F),
                         stick(p, {15, 20, 0}, {15, 11, 0}, 0.06F)});
        hit.join(bars * size, Crane);
        hit.join(size * std::min({box(p - Vec3{-6.5F, 19, 0}, {1.3F, 1.3F, 0.8F}),
                                  box(p - Vec3{1.3F, 19, 0}, {0.7F, 0.9F, 0.8F}, 0.1F),
                                  box(p - Vec3{0, 0.5F, 0}, {2.1F, 0.6F, 2.1F}, 0.05F)}),
                 Concrete);
        hit.join(size * box(p - Vec3{15, 10.4F, 0}, {1.2F, 0.25F, 0.5F}), Beam);
    }

    Vec3 rainbow(Vec3 d) const {
        const float angle = std::acos(std::clamp(-dot(d, sunDirection), -1.0F, 1.0F)) * 180 / Pi;
        const float t = (angle - 39.6F) / 2.9F; // violet inside, red outside
        const Vec3 bow{smoothStep(0.45F, 0.85F, t) * smoothStep(1.12F, 0.92F, t) +
                           0.35F * smoothStep(0, 0.15F, t) * smoothStep(0.3F, 0.15F, t),
                       smoothStep(0.25F, 0.5F, t) * smoothStep(0.88F, 0.6F, t),
                       smoothStep(-0.1F, 0.2F, t) * smoothStep(0.52F, 0.25F, t)};
        const float inside = 0.05F * smoothStep(40.5F, 38, angle);
        return (bow * 0.27F + Vec3{inside, inside, inside}) * smoothStep(0.75F, 0.1F, d.y);
    }
};

} // namespace lumora::samples
