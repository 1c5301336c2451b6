// A ladybird on a dewy leaf, very near; behind it the garden lies out of focus.
#include "Scenes.h"

#include "Noise.h"
#include "Shapes.h"

namespace lumora::samples {

namespace {

enum Material { Leaf, Wings, Black, Drop };

class Ladybird : public Scene {
  public:
    Ladybird() {
        camera = {{-2.9F, 1.75F, -4.3F}, {0.15F, 0.42F, 0.1F}, 2.35F};
        sunDirection = normalise({0.45F, 0.75F, 0.35F});
        sunColour = {3.0F, 2.75F, 2.15F};
        skyLight = {0.5F, 0.62F, 0.55F};
        groundLight = {0.10F, 0.20F, 0.04F};
        farthest = 22;
        caution = 0.75F;
        steps = 160;
        shadowReach = 3;
        shadowSoftness = 9;
        creviceSize = 0.3F;
        bloom = 0.14F;
        exposure = 0.95F;
        strands = 200000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        const float height = leafHeight(p.x, p.z);
        const float above = p.y - height;
        hit.join(std::max(std::fabs(above) - 0.03F, (std::fabs(p.z) - halfWidth(p.x)) * 0.6F), Leaf);
        if (above < 0.35F && above > -0.1F) {
            hit.join(drops(p, above), Drop);
        }
        beetle(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3 d) const override {
        switch (material) {
        case Wings:
            return wings(local(p));
        case Black:
            return blackParts(local(p));
        case Drop: {
            // Water: the leaf seen through it, brightest on the side away from the sun, where it gathers the light.
            const Vec3 bent = normalise(d * 0.75F - n * 0.35F);
            const Vec3 q = p + bent * 0.16F;
            const float gathered =
                smoothStep(-0.1F, 0.9F, -dot(n, normalise({sunDirection.x, -0.15F, sunDirection.z})));
            return {.colour = {},
                    .shine = 2.2F,
                    .sharpness = 500,
                    .mirror = 0.04F,
                    .glow = leafColour(q.x, q.z) * (0.5F + 2.6F * gathered * gathered)};
        }
        default:
            return {.colour = leafColour(p.x, p.z), .shine = 0.12F, .sharpness = 24, .mirror = 0.015F, .sheer = 0.6F};
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float side = std::atan2(d.x, d.z);
        Vec3 light = mix(colour(0x0E3311), colour(0x5E9E2C),
                         smoothStep(-0.6F, 0.45F, d.y + 0.25F * noise(side * 2.4F, d.y * 3)));
        light = mix(light, colour(0xFFE98A) * 1.1F,
                    smoothStep(0.05F, 0.9F, d.y + 0.25F * std::sin(side * 1.7F + 0.6F)) * 0.8F);
        light = light * (0.55F + 0.9F * noise(side * 3, d.y * 4));
        const Vec3 tints[] = {colour(0xFFF6C0), colour(0xC8F06A), colour(0xFF9EC4), colour(0xFFD35C), colour(0x9BD7FF)};
        for (int layer = 0; layer < 3; ++layer) {
            const float size = 3.2F + 2.1F * static_cast<float>(layer);
            const Cell disc = cells(side * size + 7.7F * static_cast<float>(layer), d.y * size * 1.1F, 0.35F);
            const float radius = 0.13F + 0.19F * fraction(disc.id * 7);
            const float edge = smoothStep(radius, radius - 0.05F, disc.distance) *
                               (0.6F + 0.4F * smoothStep(0, radius, disc.distance));
            light += tints[static_cast<int>(disc.id * 53) % 5] * (edge * 0.42F * smoothStep(0.35F, 0.9F, disc.id));
        }
        // For reflections: the bright sky above the garden.
        return light + Vec3{1.1F, 1.25F, 1.4F} * smoothStep(0.55F, 0.8F, d.y) +
               sunColour * (2.5F * smoothStep(0.985F, 0.995F, dot(d, sunDirection)));
    }

    float grain(int material, Vec3 p) const override {
        if (material == Wings) { // fine pits in the shell
            const Vec3 q = local(p);
            return -0.0013F * smoothStep(0.35F, 0.1F, cells(q.x * 26, q.z * 26).distance);
        }
        return material == Leaf ? 0.006F * fbm(p.x * 38, p.z * 38, 3) : 0;
    }

    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        const Vec3 q = local(p);
        if (material != Black || chance > 0.35F || q.y > 0.08F) { // bristles on legs and belly
            return {};
        }
        const float other = fraction(chance * 733);
        return {.tip = normalise(n + Vec3{other - 0.5F, -0.3F, fraction(chance * 97) - 0.5F}) * 0.035F,
                .width = 0.004F,
                .solid = 0.8F,
                .tint = {1.6F, 1.5F, 1.3F}};
    }

  private:
    static float halfWidth(float x) {
        const float t = x / 6.2F;
        return 2.7F * std::max(0.0F, 1 - t * t) + 0.05F * std::fabs(repeat(x, 0.24F)) / 0.12F;
    }

    /// Distance to the nearest side vein, in units; they leave the midrib slanting forwards.
    static float vein(float x, float z) {
        return std::fabs(repeat(x - 0.75F * std::fabs(z) + 0.12F * std::fabs(z) * std::fabs(z), 0.85F));
    }

    static float leafHeight(float x, float z) {
        const float side = std::fabs(z);
        const float v = vein(x, z);
        const float midrib = std::exp(-side * side * 90);
        return -0.36F + 0.16F * side + 0.12F * std::sin(x * 0.7F + 0.6F * z) - 0.022F * x * x - 0.03F * z * z +
               (0.05F * smoothStep(0, 0.42F, v) - 0.02F) * smoothStep(0, 0.3F, side) - 0.06F * midrib;
    }

    static Vec3 leafColour(float x, float z) {
        const float side = std::fabs(z);
        const float v = vein(x, z);
        Vec3 green = mix(colour(0x236B1C), colour(0x5EA42A), fbm(x * 1.3F, z * 1.3F, 4));
        const Cell net = cells(x * 7, z * 7);
        green =
            green * (0.86F + 0.22F * smoothStep(0.1F, 0.6F, net.distance)) * (0.85F + 0.3F * fbm(x * 16, z * 16, 3));
        const float lines = std::max(smoothStep(0.05F, 0.015F, v) * 0.75F, smoothStep(0.11F, 0.05F, side));
        return mix(green, colour(0xB9DB6A), lines);
    }

    /// Dew, a drop in about every second cell, none under the beetle.
    static float drops(Vec3 p, float above) {
        constexpr float Size = 0.62F;
        const Cell cell = cells(p.x / Size, p.z / Size, 0.5F);
        const float x = cell.dx * Size;
        const float z = cell.dy * Size;
        const float cx = p.x - x;
        const float cz = p.z - z;
        const bool beetleThere = cx * cx + cz * cz < 1.0F || (cx < -0.4F && cx > -1.7F && std::fabs(cz + 0.25F) < 0.5F);
        if (cell.id < 0.35F || beetleThere || std::fabs(cz) > halfWidth(cx) - 0.2F) {
            return 0.2F;
        }
        const float r = 0.05F + 0.15F * fraction(cell.id * 13) * fraction(cell.id * 13);
        return std::min(ellipsoid({x, above - r * 0.45F, z}, {r, r * 0.72F, r}), 0.2F);
    }

    /// The beetle's own space: x towards its head, y up.
    static Vec3 local(Vec3 p) { return turnZ(turnY(p - Vec3{0, 0.02F, 0}, 2.75F), 0.05F); }

    static void beetle(Vec3 p, Hit &hit) {
        const float far = length(p - Vec3{-0.2F, 0.25F, 0}) - 1.5F;
        if (far > 0.4F) {
            hit.join(far, Black);
            return;
        }
        const Vec3 q = local(p);
        const Vec3 half{q.x, q.y, std::fabs(q.z)};
        const float seam = 0.012F * smoothStep(0.03F, 0, half.z);
        hit.join(std::max(ellipsoid(q - Vec3{-0.12F, 0.02F, 0}, {0.86F, 0.70F, 0.72F}) + seam, 0.03F - q.y), Wings);
        float black = ellipsoid(q - Vec3{-0.1F, -0.02F, 0}, {0.78F, 0.14F, 0.62F});
        black = std::min(black, ellipsoid(q - Vec3{0.66F, 0.14F, 0}, {0.27F, 0.25F, 0.44F}));
        black = blend(black, ellipsoid(q - Vec3{0.9F, 0.06F, 0}, {0.17F, 0.15F, 0.24F}), 0.04F);
        black = std::min(black, stick(half, {0.98F, 0.1F, 0.12F}, {1.2F, 0.24F, 0.27F}, 0.022F, 0.018F));
        black = std::min(black, stick(half, {1.2F, 0.24F, 0.27F}, {1.32F, 0.2F, 0.36F}, 0.018F, 0.04F));
        // Thigh, shin and a foot with claws; the front legs reach forwards, the last ones back.
        constexpr Vec3 Hips[] = {{0.52F, -0.02F, 0.30F}, {0.12F, -0.04F, 0.42F}, {-0.30F, -0.04F, 0.40F}};
        constexpr Vec3 Knees[] = {{0.86F, 0.10F, 0.62F}, {0.20F, 0.10F, 0.86F}, {-0.62F, 0.10F, 0.80F}};
        constexpr Vec3 Ankles[] = {{1.08F, -0.16F, 0.60F}, {0.34F, -0.17F, 1.02F}, {-0.98F, -0.17F, 0.92F}};
        constexpr Vec3 Toes[] = {{1.28F, -0.26F, 0.52F}, {0.50F, -0.27F, 1.08F}, {-1.16F, -0.27F, 0.96F}};
        for (int leg = 0; leg < 3; ++leg) {
            float one = stick(half, Hips[leg], Knees[leg], 0.055F, 0.040F);
            one = blend(one, stick(half, Knees[leg], Ankles[leg], 0.034F, 0.022F), 0.03F);
            one = blend(one, stick(half, Ankles[leg], Toes[leg], 0.024F, 0.013F), 0.02F);
            black = std::min(black, one);
        }
        hit.join(black, Black);
    }

    static Surface wings(Vec3 q) {
        // Spots as (along, across) seen from above; the middle one lies on the seam.
        constexpr float spots[][3] = {{0.42F, 0, 0.15F},
                                      {0.22F, 0.42F, 0.135F},
                                      {-0.16F, 0.27F, 0.15F},
                                      {-0.3F, 0.58F, 0.12F},
                                      {-0.6F, 0.28F, 0.12F}};
        Vec3 red =
            mix(colour(0x9A1208), colour(0xDA3412), smoothStep(0.05F, 0.75F, q.y)) * (0.9F + 0.2F * fbm(q * 7, 3));
        float black = 0;
        for (const auto &[x, z, r] : spots) {
            black = std::max(black, smoothStep(r, r - 0.02F, length(q.x - x, (std::fabs(q.z) - z) * 0.9F)));
        }
        black = std::max(black, 0.85F * smoothStep(0.016F, 0.006F, std::fabs(q.z)));
        return {.colour = mix(red, colour(0x14100F), black), .shine = 0.85F, .sharpness = 70, .mirror = 0.025F};
    }

    static Surface blackParts(Vec3 q) {
        const float z = std::fabs(q.z);
        const bool cheek = q.x > 0.55F && q.x < 0.86F && z > 0.24F && z < 0.5F && q.y > 0.08F;
        const bool brow = q.x > 0.9F && length(z - 0.13F, q.y - 0.13F) < 0.055F;
        return {.colour = cheek || brow ? colour(0xFFF3DC) : colour(0x17141A),
                .shine = 0.7F,
                .sharpness = 60,
                .mirror = 0.05F};
    }
};

} // namespace

std::unique_ptr<Scene> ladybird() {
    return std::make_unique<Ladybird>();
}

} // namespace lumora::samples
