// A mountain lake in the morning: snow peaks and their mirror image, a forest on the far shore, boulders and flowers
// near.
#include "Scenes.h"

#include "Noise.h"
#include "Plants.h"
#include "Shapes.h"
#include "Skies.h"

namespace lumora::samples {

namespace {

enum Material { Land, Boulder, Flower };

class MountainLake : public Scene {
  public:
    MountainLake() {
        camera = {{0, 0.62F, -3.4F}, {0.45F, 1.75F, 10}, 1.5F};
        sunDirection = normalise({-0.75F, 0.42F, -0.25F});
        sunColour = {3.3F, 2.7F, 2.0F};
        skyLight = {0.34F, 0.45F, 0.72F};
        groundLight = {0.12F, 0.13F, 0.10F};
        farthest = 70;
        ceiling = 11.5F;
        caution = 0.42F;
        steps = 330;
        shadowReach = 9;
        shadowSoftness = 18;
        creviceSize = 0.22F;
        waterLevel = 0;
        waterColour = {0.008F, 0.055F, 0.06F};
        exposure = 1.0F;
        strands = 700000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        if (p.z < 5) {
            const float ground = std::max(nearLand(p.x, p.z), leftShore(p.x, p.z));
            hit.join(p.y - ground - (p.y < ground + 0.12F ? meadow(p.x, p.z, ground) : 0.05F), Land);
            if (p.z < 0 && p.y < ground + 0.3F) {
                hit.join(flowers(p, ground), Flower);
            }
        } else {
            const float top = 1.5F + 9.0F * smoothStep(6, 24, p.z);
            hit.join(p.y > top + 1 ? (p.y - top) * 1.5F : p.y - farLand(p.x, p.z), Land);
        }
        if (p.z < 2.5F && p.y < 0.8F) {
            hit.join(boulders(p), Boulder);
        }
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        if (material == Boulder) {
            const float grey = fbm(p * 6, 4);
            Vec3 stone = mix(colour(0x6E6A66), colour(0xB5ADA0), grey);
            stone = mix(stone, colour(0x6F7F3A), smoothStep(0.55F, 0.9F, n.y) * smoothStep(0.45F, 0.6F, fbm(p * 9, 3)));
            return {.colour = stone * mix(0.35F, 1.0F, smoothStep(-0.01F, 0.06F, p.y)),
                    .shine = p.y < 0.05F ? 0.5F : 0.03F};
        }
        if (material == Flower) {
            const Cell flower = flowerAt(p);
            const Vec3 petals[] = {colour(0xFFFFFF), colour(0xFFC53D), colour(0xA25BFF), colour(0xFF5C93),
                                   colour(0xFF6B3D)};
            if (flower.distance < 0.03F && n.y < 0.5F) {
                return {.colour = colour(0x4F8A2A)};
            }
            const bool heart = flower.distance < 0.06F;
            return {.colour = heart ? colour(0xFFC21E) : petals[static_cast<int>(flower.id * 97) % 5], .sheer = 0.4F};
        }
        return p.z < 5 ? nearShore(p) : mountain(p, n);
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.6F);
        Vec3 light = mix(mix(colour(0xFFE9C8) * 1.05F, colour(0x9CCBF0), smoothStep(0, 0.32F, up)),
                         colour(0x2D6FC4) * 0.9F, smoothStep(0.2F, 1, up));
        const Cloud cloud = clouds(d, sunDirection, 0.72F, 0.9F, 4.6F);
        light = mix(light, mix(colour(0xB9C4DC), colour(0xFFF4E2) * 1.35F, cloud.lit), cloud.amount * 0.92F);
        return light + sunGlow(d, sunDirection, sunColour) * 0.4F;
    }

    float grain(int material, Vec3 p) const override {
        if (material == Boulder) {
            return 0.02F * fbm(p * 14, 4);
        }
        return p.z > 5 ? 0.09F * ridged(p.x * 2.5F, p.z * 2.5F + p.y, 5) : 0.012F * fbm(p.x * 30, p.z * 30, 3);
    }

    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        if (material != Land) {
            return {};
        }
        const float other = fraction(chance * 733);
        const float turn = 2 * Pi * fraction(chance * 331);
        const float light = 0.7F + 0.8F * fraction(chance * 4001);
        const float order = -length(p - camera.eye);
        if (p.z < 5) { // blades of grass
            if (p.y < 0.11F) {
                return {};
            }
            const float tall = 0.016F + 0.026F * other;
            return {.tip = Vec3{0.4F * std::cos(turn), 1, 0.3F * std::sin(turn)} * tall,
                    .sag = Vec3{-0.15F * std::cos(turn), 0.1F, 0} * tall,
                    .width = 0.0035F,
                    .order = order,
                    .tint = {light, light * 1.02F, light * 0.8F}};
        }
        if (p.y > 2.5F || n.y > 0.93F || p.y < 0.06F) {
            return {};
        }
        // Twigs of the firs: outwards and down, larger than life where they are far away.
        const float reach = 0.08F + 0.004F * p.z;
        return {.tip = Vec3{std::cos(turn), -0.9F + 0.7F * other, 0.5F * std::sin(turn) - 0.3F} * reach,
                .width = 0.28F * reach,
                .order = order,
                .solid = 0.8F,
                .tint = {light, light, light}};
    }

    Vec3 waterNormal(Vec3 p, float distance) const override {
        const float ripple = 0.022F * smoothStep(-2, 6, distance) / (1 + 0.06F * distance);
        const auto height = [](float x, float z) { return fbm(x * 1.6F, z * 5.0F, 3) + 0.4F * noise(x * 9, z * 17); };
        const float e = 0.03F;
        const float here = height(p.x, p.z);
        return normalise(
            {ripple * (here - height(p.x + e, p.z)) / e * 0.25F, 1, ripple * (here - height(p.x, p.z + e)) / e * 0.4F});
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        light = haze(light, *this, d, std::min(distance, 30.0F) * (distance < farthest - 1 ? 1.0F : 0.15F), 85,
                     colour(0x8FB4E0) * 0.85F, colour(0xFFE2BE) * 1.1F);
        // A bank of mist over the far water: thick where the ray stays low.
        const Vec3 p = from + d * distance;
        const float low = std::exp(-std::max(p.y, 0.0F) * 3.2F) * smoothStep(7, 12, p.z) * smoothStep(20, 13, p.z);
        return mix(light, colour(0xF5EBDD) * 0.95F, 0.55F * low * (0.4F + 0.9F * noise(p.x * 0.6F, p.y * 2)));
    }

  private:
    static float leftShore(float x, float z) {
        return x < -3.2F && z < 14
                   ? smoothStep(-3.2F, -6, x) * smoothStep(14, 4, z) * 1.2F * (0.3F + fbm(x * 0.8F, z * 0.8F, 3)) -
                         0.25F
                   : -0.25F;
    }

    /// Height of the lake's bed, the forested slope and the peaks.
    static float farLand(float x, float z) {
        const float left = leftShore(x, z);
        const float back =
            smoothStep(9.5F, 26, z + 2.4F * noise(x * 0.35F, 2) + 0.11F * x * x * smoothStep(1, 6, std::fabs(x)));
        if (back <= 0) {
            return left;
        }
        const float peaks = ridged(x * 0.085F + 3.35F, z * 0.085F + 0.3F, 6);
        const float ground = std::max(back * (7.9F * std::pow(peaks, 1.25F) - 0.3F) - 0.25F, left);
        return ground > -0.1F && ground < 2.6F ? ground + firs(x, z, ground) : ground;
    }

    /// Height of the meadow in front, without its grass.
    static float nearLand(float x, float z) {
        const float shore = -2.0F + 0.3F * std::sin(x * 0.9F + 0.4F) + 0.4F * noise(x * 1.7F, 5) +
                            (x < 0 ? -0.55F * x : 0.42F * x) * smoothStep(0.6F, 2.2F, std::fabs(x));
        return smoothStep(shore + 1.0F, shore - 1.2F, z) * 0.36F + 0.05F * fbm(x * 3, z * 3, 3) - 0.09F -
               0.25F * smoothStep(shore, shore + 2, z);
    }

    static float meadow(float x, float z, float ground) {
        const float where = smoothStep(0.05F, 0.12F, ground);
        return where > 0 ? where * (0.02F + 0.05F * noise(x * 3, z * 3)) * blades(x, z, 95) : 0;
    }

    /// Pointed tree tops as a bump of the ground.
    static float firs(float x, float z, float ground) {
        const float where = smoothStep(0.02F, 0.1F, ground) *
                            smoothStep(2.1F, 1.1F, ground + 1.1F * (noise(x * 1.1F, z * 1.1F) - 0.5F));
        if (where <= 0) {
            return 0;
        }
        const Cell tree = cells(x * 5.2F, z * 5.2F);
        return where * (0.16F + 0.3F * tree.id) * std::max(0.0F, 1 - tree.distance * 1.75F);
    }

    static Cell flowerAt(Vec3 p) { return cells(p.x * 9.5F, p.z * 9.5F, 0.6F); }

    /// Five-petalled heads on thin stems, on the grass only.
    static float flowers(Vec3 p, float ground) {
        const Cell cell = flowerAt(p);
        if (cell.id < 0.72F || ground < 0.1F) {
            return 0.035F;
        }
        const float x = cell.dx / 9.5F;
        const float z = cell.dy / 9.5F;
        const float y = p.y - ground - 0.05F - 0.05F * cell.id + 0.4F * z;
        const float r = length(x, z);
        const float petal = 0.019F * (0.55F + 0.45F * std::fabs(std::cos(4 * std::atan2(z, x))));
        const float head =
            std::min(std::max(r - petal, std::fabs(y - 0.25F * r) - 0.0025F) * 0.7F, length(r, y) - 0.006F);
        const float stem = std::max(r - 0.0016F, std::max(y, -y - 0.15F));
        return std::min({head, stem, 0.035F});
    }

    static float boulders(Vec3 p) {
        float d = 1e3F;
        constexpr Vec3 places[] = {{-0.75F, 0.02F, -1.75F}, {-0.35F, -0.01F, -1.35F}, {0.95F, 0.0F, -1.25F},
                                   {1.25F, 0.05F, -1.75F},  {0.25F, -0.03F, -0.75F},  {-1.25F, 0.0F, -0.9F},
                                   {1.9F, -0.02F, -0.4F},   {0.62F, -0.01F, -1.65F}};
        constexpr float sizes[] = {0.24F, 0.13F, 0.2F, 0.3F, 0.12F, 0.28F, 0.2F, 0.1F};
        for (int i = 0; i < 8; ++i) {
            const Vec3 q = turnY(p - places[i], static_cast<float>(i));
            d = std::min(d, ellipsoid(q, Vec3{1.25F, 0.72F, 0.95F} * sizes[i]));
        }
        return d > 0.2F ? d - 0.1F : d + 0.07F * (fbm(p * 5, 3) - 0.5F);
    }

    static Surface nearShore(Vec3 p) {
        const float pebbles = cells(p.x * 14, p.z * 14).id;
        const Vec3 gravel =
            mix(colour(0x7A6F60), colour(0xB8AE9C), pebbles) * mix(0.35F, 1.0F, smoothStep(-0.02F, 0.08F, p.y));
        Vec3 grass = mix(colour(0x3F6B1E), colour(0x8DA83A), fbm(p.x * 5, p.z * 5, 4));
        grass = grass * (0.55F + 0.9F * noise(p.x * 70, p.z * 24));
        return {.colour = mix(gravel, grass, smoothStep(0.09F, 0.16F, p.y + 0.05F * noise(p.x * 8, p.z * 8)))};
    }

    static Surface mountain(Vec3 p, Vec3 n) {
        const float rough = fbm(p.x * 2.3F, p.z * 2.3F, 5);
        Vec3 look = mix(colour(0x5F5A60), colour(0xA0937F), rough);
        look = mix(look, colour(0x7C6A56), smoothStep(0.4F, 0.7F, noise(p.x * 0.7F, p.y * 5 + p.x)) * 0.5F);
        const float meadow = smoothStep(3.4F, 1.6F, p.y + 1.2F * rough) * smoothStep(0.45F, 0.75F, n.y);
        look = mix(look, mix(colour(0x5E7A32), colour(0x8C9A4A), rough), meadow);
        const float forest = smoothStep(2.75F, 2.1F, p.y + 0.6F * rough);
        look = mix(look, mix(colour(0x16351F), colour(0x3E6630), noise(p.x * 9, p.z * 9)), forest);
        const float snow =
            smoothStep(2.6F, 3.6F, p.y + 1.4F * (rough - 0.5F)) * smoothStep(0.3F, 0.55F, n.y + 0.25F * (rough - 0.5F));
        return {.colour = mix(look, colour(0xF6F9FF), snow), .shine = 0.1F * snow};
    }
};

} // namespace

std::unique_ptr<Scene> mountainLake() {
    return std::make_unique<MountainLake>();
}

} // namespace lumora::samples
