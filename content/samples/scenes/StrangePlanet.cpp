// A far planet at dusk: a small rocket has landed among dunes and glowing crystals; rings and moons stand in the sky.
#include "Scenes.h"

#include "Noise.h"
#include "Shapes.h"
#include "Worlds.h"

#include <array>

namespace lumora::samples {

namespace {

enum Material { Sand, Rock, Crystal, Shell, Paint, Steel, Pane };

constexpr Vec3 Rocket{2.15F, 0.12F, 4.2F};

struct Prism {
    Vec3 foot;
    float height;
    float radius;
    float leanX;
    float leanZ;
    int tint; ///< 0 cyan, 1 violet
};
constexpr Prism Prisms[] = {
    {{-3.0F, 0, 1.6F}, 1.9F, 0.25F, -0.12F, 0.1F, 0},    {{-2.55F, 0, 1.45F}, 1.25F, 0.19F, 0.28F, -0.1F, 0},
    {{-3.45F, 0, 1.5F}, 1.2F, 0.2F, -0.42F, -0.05F, 1},  {{-2.95F, 0, 1.15F}, 0.75F, 0.15F, 0.05F, -0.4F, 1},
    {{-2.45F, 0, 1.1F}, 0.45F, 0.1F, 0.5F, -0.3F, 0},    {{-3.5F, 0, 1.05F}, 0.5F, 0.12F, -0.3F, -0.4F, 0},
    {{4.7F, 0, 7.2F}, 2.3F, 0.3F, 0.2F, 0.1F, 1},        {{4.2F, 0, 7.0F}, 1.4F, 0.24F, -0.2F, -0.1F, 0},
    {{5.2F, 0, 6.9F}, 1.5F, 0.22F, 0.45F, -0.1F, 1},     {{2.35F, 0, -0.9F}, 0.42F, 0.09F, 0.2F, -0.1F, 1},
    {{2.18F, 0, -0.95F}, 0.28F, 0.07F, -0.3F, -0.1F, 0}, {{2.52F, 0, -1.0F}, 0.22F, 0.06F, 0.5F, -0.1F, 1},
    {{-3.9F, 0, 10.6F}, 2.1F, 0.3F, -0.2F, 0, 1},        {{-3.3F, 0, 10.4F}, 1.3F, 0.24F, 0.35F, 0, 0}};
constexpr int Count = static_cast<int>(std::size(Prisms));

class StrangePlanet : public Scene {
  public:
    StrangePlanet() {
        for (int i = 0; i < Count; ++i) {
            m_foot[i] = Prisms[i].foot + Vec3{0, dunes(Prisms[i].foot.x, Prisms[i].foot.z) - 0.1F, 0};
        }
        camera = {{0, 1.55F, -5.2F}, {0.1F, 2.5F, 5}, 1.4F};
        sunDirection = normalise({-0.86F, 0.36F, -0.3F});
        sunColour = {4.3F, 2.65F, 1.55F};
        skyLight = {0.36F, 0.3F, 0.62F};
        groundLight = {0.26F, 0.13F, 0.1F};
        farthest = 130;
        ceiling = 13;
        caution = 0.62F;
        steps = 260;
        shadowReach = 10;
        shadowSoftness = 12;
        creviceSize = 0.3F;
        exposure = 0.95F;
        bloom = 0.25F;
        vignette = 0.35F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        if (p.y > 2.5F) {
            hit.join(p.y - 2.2F, Sand); // above every crest
        } else {
            hit.join(p.y - dunes(p.x, p.z), Sand);
        }
        hit.join(p.z > 9 ? rocks(p) : 10.5F - p.z, Rock);
        crystals(p, hit);
        rocket(p - Rocket, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3 d) const override {
        Surface look = bare(material, p, n, d);
        // The crystals shine on the sand and on the rocket.
        for (int i = 0; i < Count; ++i) {
            const Prism &prism = Prisms[i];
            const Vec3 to = m_foot[i] + Vec3{0, 0.45F * prism.height, 0} - p;
            const float near = prism.height * prism.radius / (0.12F + dot(to, to));
            if (material != Crystal && near > 0.01F) {
                look.glow +=
                    look.colour * tintOf(prism.tint) * (1.3F * near * (0.35F + 0.65F * clamp01(dot(n, normalise(to)))));
            }
        }
        return look;
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y);
        const float west = 0.5F + 0.5F * dot(normalise({d.x, 0, d.z}), normalise({sunDirection.x, 0, sunDirection.z}));
        Vec3 light = mix(mix(colour(0xF08A6A), colour(0xFFC07A), west), colour(0xB0508C), smoothStep(0.0F, 0.24F, up));
        light = mix(light, colour(0x3B2F86), smoothStep(0.14F, 0.42F, up));
        light = mix(light, colour(0x10123C), smoothStep(0.35F, 0.75F, up));
        const float dark = smoothStep(0.16F, 0.5F, up);
        // A band of far stars and single bright ones.
        const float u = d.x / (d.z + 0.4F);
        const float v = d.y / (d.z + 0.4F);
        const float band = fbm(u * 3 + 4, v * 3 - u, 5) * smoothStep(0.5F, 0, std::fabs(v - 0.72F + 0.35F * u));
        light += mix(colour(0x5A3FB0), colour(0x2E8FB8), fbm(u * 5, v * 5, 3)) * (0.55F * band * dark);
        for (const float scale : {38.0F, 85.0F}) {
            const Cell star = cells(u * scale, v * scale);
            const float size = 0.03F + 0.05F * star.id * star.id;
            light += mix(colour(0xFFD9B0), colour(0xBFDcFF), fraction(star.id * 13)) *
                     (star.id > 0.45F ? 2.6F * star.id * star.id * dark * smoothStep(size, size * 0.3F, star.distance)
                                      : 0.0F);
        }
        const float streak = smoothStep(0.48F, 0.8F, fbm(u * 1.6F + 3, v * 9 + 0.6F * u, 5));
        light = mix(light, mix(colour(0xFF8A78), colour(0xFFD0A0), west), 0.5F * streak * smoothStep(0.5F, 0.1F, up));
        light = moon(light, d, sunDirection, {0.2F, 0.56F, 1}, 0.05F, colour(0xFFE2C0), 3);
        light = moon(light, d, sunDirection, {0.56F, 0.44F, 1}, 0.024F, colour(0x9FE0E0), 8);
        return ringedPlanet(light, d, sunDirection, {-0.36F, 0.47F, 1}, 0.155F);
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Sand: {
            const float near = smoothStep(26, 4, p.z);
            const float wave = p.z + 0.5F * p.x + 1.1F * fbm(p.x * 0.55F, p.z * 0.8F, 3);
            return near * (0.011F * std::sin(wave * 21) * (0.4F + noise(p.x * 1.2F, p.z * 1.2F)) +
                           0.005F * noise(p.x * 60, p.z * 60));
        }
        case Rock:
            return 0.16F * fbm(Vec3{p.x * 1.6F, p.y * 4.5F, p.z * 1.6F}, 4);
        case Shell:
            return std::fabs(repeat(p.y, 0.55F)) < 0.012F ? -0.006F : 0.0F;
        default:
            return 0;
        }
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        const float reach = distance < farthest - 1 ? std::max(0.0F, distance - 5) : 0.0F;
        light = haze(light, *this, d, reach, 62, colour(0xC9668A) * 0.8F, colour(0xFFB680) * 1.1F);
        return light;
    }

  private:
    std::array<Vec3, Count> m_foot; ///< of the prisms, on the ground

    static Vec3 tintOf(int tint) { return tint == 0 ? colour(0x2EF0E0) : colour(0xC85CFF); }

    static float dunes(float x, float z) {
        const float far = smoothStep(1, 14, z);
        const float warp = 1.5F * fbm(x * 0.11F + 2, z * 0.08F, 3);
        const float t = fraction(0.075F * z + 0.045F * x + warp);
        const float crest = t < 0.68F ? smoothStep(0, 0.68F, t) : smoothStep(1, 0.68F, t);
        return far * (2.3F * crest - 0.5F) + 0.32F * fbm(x * 0.35F, z * 0.35F, 3) - 0.12F + stones(x, z);
    }

    /// Pebbles and boulders that lie about.
    static float stones(float x, float z) {
        if (z > 12) {
            return 0;
        }
        float height = 0;
        for (const float scale : {0.8F, 2.6F}) {
            const Cell one = cells(x * scale + 5, z * scale, 0.4F); // far enough apart not to cut each other
            const float size = one.id > 0.84F ? 0.12F + 0.17F * fraction(one.id * 37) : 0.0F;
            const bool free = scale < 1 && std::fabs(x - one.dx / scale) < 2.2F && z - one.dy / scale < 2; // the middle
            if (one.distance < size && !free) {
                height += 0.75F * std::sqrt(size * size - one.distance * one.distance) / scale;
            }
        }
        return height;
    }

    /// Table mountains, and a natural arch.
    static float rocks(Vec3 p) {
        float d = 8;
        constexpr Vec3 tables[] = {{-15, 7.2F, 34}, {-7.5F, 4.4F, 44}, {9, 5.2F, 40},
                                   {19, 8.2F, 42},  {-27, 9.0F, 52},   {2, 3.4F, 62}};
        constexpr float widths[] = {3.6F, 3.0F, 3.2F, 4.4F, 6, 7};
        for (int i = 0; i < 6; ++i) {
            const Vec3 q = p - Vec3{tables[i].x, 0, tables[i].z};
            const float radius =
                widths[i] * (1.25F - 0.35F * smoothStep(0, tables[i].y, q.y) + 0.5F * std::exp(-std::max(q.y, 0.0F)));
            d = std::min(d, std::max(length(q.x, q.z) - radius, q.y - tables[i].y) * 0.9F);
        }
        const Vec3 a = turnY(p - Vec3{-5.2F, 0.2F, 15.5F}, 0.5F);
        const float bow = length(length(a.x * 0.8F, a.y) - 3.0F, a.z) - 0.55F - 0.2F * std::fabs(a.x);
        if (std::min(d, bow) > 1.6F) {
            return std::min(d, bow) - 0.8F;
        }
        const float strata = 0.14F * std::sin(p.y * 5.5F + 2 * noise(p.x * 0.3F, p.z * 0.3F));
        const float rough = fbm(p * 0.55F, 4) - 0.5F;
        return std::min(d - strata - 1.7F * rough, bow - strata - 0.8F * rough) * 0.75F;
    }

    void crystals(Vec3 p, Hit &hit) const {
        if (p.z > 13 || p.y > 4) {
            hit.join(std::max(p.z - 12, p.y - 3), Crystal);
            return;
        }
        for (int i = 0; i < Count; ++i) {
            const Prism &prism = Prisms[i];
            Vec3 q = p - m_foot[i];
            const float near = length(q - Vec3{0, 0.5F * prism.height, 0}) - 0.75F * prism.height;
            if (near > 0.4F) {
                hit.join(near, Crystal);
                continue;
            }
            q = {q.x - prism.leanX * q.y, q.y, q.z - prism.leanZ * q.y};
            q = turnY(q, prism.height * 7);
            const Vec3 side = slices({q.x, q.z, q.y}, 6);
            const float wall = side.x - prism.radius * mix(0.8F, 1.0F, clamp01(q.y / prism.height));
            const float tip = (side.x + (q.y - prism.height) * 0.62F) * 0.85F;
            hit.join(std::max({wall, tip, -q.y}) * 0.85F, Crystal);
        }
    }

    static void rocket(Vec3 p, Hit &hit) {
        const float near = box(p - Vec3{0, 2.3F, 0}, {1.7F, 2.9F, 1.7F});
        if (near > 0.5F) {
            hit.join(near, Shell);
            return;
        }
        const Vec3 q = turnY(p, -0.35F);
        const float r = length(q.x, q.z);
        const float body = std::max(ellipsoid(q - Vec3{0, 2.25F, 0}, {0.86F, 2.55F, 0.86F}), 0.62F - q.y);
        hit.join(body, Shell);
        hit.join(std::max(std::fabs(r - 0.7F) - 0.08F, std::fabs(q.y - 0.64F) - 0.07F), Steel);
        hit.join(std::max(std::fabs(r - mix(0.5F, 0.34F, clamp01((q.y - 0.25F) * 3))) - 0.04F,
                          std::fabs(q.y - 0.43F) - 0.2F),
                 Steel);
        hit.join(stick(q, {0, 4.7F, 0}, {0, 5.25F, 0}, 0.04F, 0.015F), Steel);
        hit.join(sphere(q - Vec3{0, 5.27F, 0}, 0.06F), Paint);
        // Three fins that it stands on.
        const Vec3 fin = slices({q.z, q.x, q.y}, 3);
        const float outline = std::max({(fin.z - 2.15F + 1.45F * (fin.x - 0.45F)) * 0.57F,
                                        (0.95F - 0.9F * (fin.x - 0.45F) - fin.z) * 0.74F, fin.x - 1.55F});
        hit.join(std::max(outline, std::fabs(fin.y) - 0.06F) - 0.03F, Paint);
        hit.join(ellipsoid(fin - Vec3{1.5F, 0, 0.0F}, {0.2F, 0.2F, 0.1F}), Steel);
        porthole(q - Vec3{0, 3.05F, -0.8F}, 0.3F, hit);
        porthole(turnY(q, 1.2F) - Vec3{0, 3.05F, -0.8F}, 0.24F, hit);
        porthole(turnY(q, -1.2F) - Vec3{0, 3.05F, -0.8F}, 0.24F, hit);
        // Door and ladder.
        const Vec3 door = q - Vec3{0, 1.75F, -0.8F};
        const float leaf = std::max(box({door.x, door.y, 0}, {0.3F, 0.48F, 1}, 0.2F), std::fabs(door.z) - 0.12F);
        hit.join(leaf, Paint);
        hit.join(
            std::max(std::fabs(box({door.x, door.y, 0}, {0.33F, 0.51F, 1}, 0.22F)) - 0.035F, std::fabs(door.z) - 0.16F),
            Steel);
        const Vec3 ladder{std::fabs(q.x), q.y, q.z + 0.92F + 0.28F * (1.2F - q.y)};
        const float rails = length(ladder.x - 0.2F, ladder.z) - 0.03F;
        const float rungs = std::max(length(repeat(ladder.y, 0.22F), ladder.z) - 0.025F, ladder.x - 0.2F);
        hit.join(std::max({std::min(rails, rungs), q.y - 1.25F, -q.y}) * 0.9F, Steel);
    }

    static void porthole(Vec3 q, float size, Hit &hit) {
        hit.join(ringZ(q - Vec3{0, 0, -0.02F}, size, 0.06F), Steel);
        hit.join(std::max(length(q.x, q.y) - size, std::fabs(q.z) - 0.04F), Pane);
    }

    Surface bare(int material, Vec3 p, Vec3 n, Vec3 d) const {
        const float rough = fbm(p * 2.2F, 4);
        switch (material) {
        case Rock: {
            const float layer = noise(p.y * 2.6F + 1.2F * rough, 4);
            return {.colour = mix(mix(colour(0x7A2F2A), colour(0xC8643A), layer), colour(0xE6A468),
                                  smoothStep(0.62F, 0.8F, layer)) *
                              mix(0.7F, 1.15F, rough)};
        }
        case Crystal: {
            int tint = 0;
            float up = 0;
            float nearest = 1e6F;
            for (int i = 0; i < Count; ++i) {
                const Prism &prism = Prisms[i];
                const float y = std::max(p.y - m_foot[i].y, 0.0F);
                const float off =
                    length(p.x - prism.foot.x - prism.leanX * y, p.z - prism.foot.z - prism.leanZ * y) / prism.radius;
                if (off < nearest) {
                    nearest = off;
                    tint = prism.tint;
                    up = y / prism.height;
                }
            }
            const float rim = std::pow(1 - std::fabs(dot(n, d)), 2.0F);
            const float veins = smoothStep(0.5F, 0.75F, fbm(p * Vec3{7, 2.5F, 7}, 3));
            const Vec3 light = tintOf(tint);
            return {.colour = light * 0.32F,
                    .shine = 1.2F,
                    .sharpness = 60,
                    .mirror = 0.12F,
                    .sheer = 0.5F,
                    .glow = light * (0.25F + 0.75F * clamp01(1 - up) + 0.35F * veins) +
                            mix(light, Vec3{1, 1, 1}, 0.5F) * (0.5F * rim)};
        }
        case Shell: {
            const Vec3 q = turnY(p - Rocket, -0.35F);
            const bool nose = q.y > 3.75F;
            const bool stripe = q.y > 1.0F && q.y < 1.22F;
            const bool checks = q.y > 3.5F && q.y < 3.75F;
            const bool odd =
                (static_cast<int>(std::floor(std::atan2(q.x, q.z) * 16 / (2 * Pi))) + (q.y > 3.625F ? 1 : 0)) % 2 == 0;
            const Vec3 red = colour(0xD8262B);
            const Vec3 white = colour(0xF2EEE6);
            const float dust = smoothStep(1.6F, 0.5F, q.y + 0.6F * rough);
            return {.colour = mix(nose || stripe ? red
                                  : checks       ? (odd ? red : white)
                                                 : white,
                                  colour(0xC88A5A), 0.45F * dust),
                    .shine = 0.7F,
                    .sharpness = 45,
                    .mirror = 0.06F};
        }
        case Paint:
            return {.colour = mix(colour(0xD8262B), colour(0xC87048), 0.5F * smoothStep(0.7F, 0.1F, p.y - Rocket.y)),
                    .shine = 0.7F,
                    .sharpness = 45,
                    .mirror = 0.05F};
        case Steel:
            return {.colour = colour(0xB89A6A) * 0.6F,
                    .shine = 1,
                    .sharpness = 40,
                    .mirror = 0.3F,
                    .tint = colour(0xFFE0B0)};
        case Pane:
            return {.colour = colour(0x16283A),
                    .shine = 1,
                    .sharpness = 120,
                    .mirror = 0.15F,
                    .glow = colour(0xFFC860) * 1.5F};
        default: {
            const float flat = smoothStep(0.55F, 0.95F, n.y);
            const float stone = smoothStep(0.01F, 0.05F, stones(p.x, p.z));
            Vec3 sand = mix(colour(0xB8502A), colour(0xF2A05A), 0.25F + 0.5F * rough + 0.25F * flat);
            sand = sand * mix(0.82F, 1.12F, noise(p.x * 45, p.z * 45));
            return {.colour = mix(sand, mix(colour(0x6A3238), colour(0xA8604A), rough), stone)};
        }
        }
    }
};

} // namespace

std::unique_ptr<Scene> strangePlanet() {
    return std::make_unique<StrangePlanet>();
}

} // namespace lumora::samples
