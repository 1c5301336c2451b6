// A waterfall in a rain forest: one long drop over dark rock into a green pool, spray with a rainbow.
#include "Scenes.h"

#include "Landforms.h"
#include "Noise.h"
#include "Shapes.h"

namespace lumora::samples {

namespace {

enum Material { Wall, Fall, Boulder, Foam, Trunk, Leaf };

constexpr Vec3 Foot{0.35F, 0, 8.6F}; ///< where the water meets the pool
constexpr float Lip = 5.2F;          ///< height from which it falls
/// Tree ferns: x, y, z of the foot, height, lean.
constexpr float Ferns[][5] = {{-2.75F, 0.3F, 0.1F, 1.35F, 0.3F},     {-3.2F, 0.6F, 2.3F, 1.5F, 0.35F},
                              {2.75F, 0.15F, 0.5F, 1.25F, -0.35F},   {3.3F, 0.5F, 3.0F, 1.6F, -0.3F},
                              {-2.05F, -0.05F, -1.5F, 0.62F, 0.12F}, {2.15F, -0.1F, -1.4F, 0.6F, -0.15F},
                              {-2.9F, 0.4F, 5.6F, 1.3F, 0.3F},       {3.1F, 0.4F, 6.2F, 1.2F, -0.25F}};

class Waterfall : public Scene {
  public:
    Waterfall() {
        camera = {{-0.25F, 1.25F, -4.4F}, {0.15F, 2.42F, 8}, 1.35F};
        sunDirection = normalise({-0.5F, 0.46F, -0.73F});
        sunColour = {3.0F, 2.6F, 1.95F};
        skyLight = {0.20F, 0.29F, 0.36F};
        groundLight = {0.10F, 0.15F, 0.07F};
        farthest = 32;
        ceiling = 8.2F;
        caution = 0.6F;
        steps = 300;
        shadowReach = 6;
        shadowSoftness = 12;
        creviceSize = 0.28F;
        waterLevel = 0;
        waterColour = {0.008F, 0.10F, 0.075F};
        bloom = 0.14F;
        strands = 420000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        const float wall = cliff(p);
        hit.join(wall, Wall);
        hit.join(fall(p), Fall);
        if (p.y < 0.9F) {
            hit.join(boulders(p), Boulder);
        }
        if (p.y < 0.15F && p.y > 0) { // seen from below the foam does not matter
            const float foam = froth(p, wall);
            hit.join(p.y - (foam > 0.5F ? 0.006F + 0.05F * (foam - 0.5F) : -0.03F), Foam);
        }
        ferns(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        switch (material) {
        case Wall:
            return wallLook(p, n);
        case Fall: {
            const float streak = torn(p);
            return {.colour = mix(colour(0x8FB4C0), colour(0xF6FBFF), smoothStep(0.3F, 0.65F, streak)) * 0.8F,
                    .sheer = 0.3F,
                    .glow = Vec3{0.16F, 0.19F, 0.20F} * (0.4F + 0.6F * streak)};
        }
        case Boulder: {
            const Vec3 stone = mix(colour(0x3A3A38), colour(0x8A867A), fbm(p * 6, 4));
            const float moss =
                smoothStep(0.35F, 0.75F, n.y + 0.5F * (fbm(p * 4, 3) - 0.5F)) * smoothStep(0.06F, 0.16F, p.y);
            return {.colour = mix(stone * mix(0.4F, 1.0F, smoothStep(0, 0.12F, p.y)),
                                  mix(colour(0x2E5220), colour(0x66822E), fbm(p * 14, 3)), moss),
                    .shine = p.y < 0.14F ? 0.6F : 0.08F};
        }
        case Foam:
            return {.colour = Vec3{0.8F, 0.88F, 0.86F} * (0.8F + 0.3F * fbm(p.x * 14, p.z * 14, 3))};
        case Trunk:
            return {.colour = mix(colour(0x2E2218), colour(0x6E543A), noise(p * 22))};
        case Leaf:
            return {.colour = mix(colour(0x2A6A1A), colour(0x94C83A), noise(p * 5)) * (0.8F + 0.4F * noise(p * 40)),
                    .shine = 0.25F,
                    .sheer = 0.5F};
        default:
            return {};
        }
    }

    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        const float other = fraction(chance * 911);
        if (material == Fall) { // threads of water, whiter than what they cover
            if (chance > 0.5F) {
                return {};
            }
            const float reach = 0.25F + 0.45F * other + 0.05F * (Lip - p.y);
            const float out = 0.05F * (p.x - Foot.x) + 0.05F * (other - 0.5F);
            const float light = 0.95F + 0.35F * fraction(chance * 77);
            return {.tip = {out, -reach, -0.06F},
                    .width = 0.02F + 0.035F * other,
                    .order = p.y,
                    .solid = 0.35F,
                    .tint = {light, light, light}};
        }
        const float share = material == Wall ? plants(p) : material == Boulder ? 0.0F : -1.0F;
        if (material == Boulder && n.y > 0.45F && p.y > 0.18F && chance < 0.5F) { // moss
            const float light = 0.7F + 0.8F * other;
            return {.tip = normalise(n + Vec3{other - 0.5F, 0.1F, fraction(chance * 77) - 0.5F}) * 0.035F,
                    .width = 0.007F,
                    .order = -length(p - camera.eye),
                    .tint = {light, light, light * 0.8F}};
        }
        if (share < 0.3F || chance > 0.62F * share) {
            return {};
        }
        // Leaves hang out of the slope; some kinds are broad, some are blades.
        const float far = 0.55F + 0.05F * std::max(p.z, 0.0F);
        const bool broad = noise(p * 1.3F) > 0.42F;
        const float angle = 2 * Pi * other;
        const Vec3 side = normalise(cross(n, Vec3{0.2F, 1, 0.1F}));
        const Vec3 way =
            normalise(n * 0.5F + side * (0.9F * std::cos(angle)) + Vec3{0, 0.55F * std::sin(angle) - 0.25F, 0});
        const float reach = far * (broad ? 0.15F + 0.10F * chance : 0.24F + 0.2F * chance);
        const float light = 0.5F + 1.1F * fraction(chance * 5003);
        return {.tip = way * reach,
                .sag = Vec3{0, 0.16F * reach, 0},
                .width = reach * (broad ? 0.42F : 0.14F),
                .blunt = 0.85F,
                .order = -length(p - camera.eye),
                .solid = 0.95F,
                .tint = Vec3{light, light * 1.03F, light * 0.9F}};
    }

    Vec3 sky(Vec3 d) const override {
        const Vec3 light = mix(colour(0xDCEFF6), colour(0x3F8FD8), smoothStep(0.1F, 0.8F, d.y * 1.6F));
        return throughHeaps(light, d, sunDirection, {.cover = 0.46F, .size = 0.8F, .shift = 5.0F});
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Wall:
            return 0.035F * fbm(p * 21, 3);
        case Fall:
            return 0.03F * torn(p);
        case Boulder:
            return 0.02F * fbm(p * 13, 4);
        default:
            return 0;
        }
    }

    Vec3 waterNormal(Vec3 p, float) const override {
        const auto height = [](float x, float z) {
            const float r = length(x - Foot.x, z - Foot.z);
            return 0.012F * std::sin(r * 7 + 2.5F * noise(x * 0.9F, z * 0.9F)) / (1 + 0.25F * r) +
                   0.02F * fbm(x * 1.8F, z * 3.4F, 3);
        };
        const float e = 0.03F;
        const float here = height(p.x, p.z);
        return normalise({(here - height(p.x + e, p.z)) / e, 1, (here - height(p.x, p.z + e)) / e});
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        light =
            haze(light, *this, d, distance < farthest - 1 ? distance : 0.0F, 80, colour(0xA4CCC8), colour(0xF4F4DC));
        // Spray hangs about the foot of the fall and drifts over the pool.
        float mist = 0;
        for (int i = 0; i < 9; ++i) {
            const float z = 5.2F + 0.45F * static_cast<float>(i);
            const float t = (z - from.z) / std::max(d.z, 0.05F);
            if (t > distance || d.z < 0.05F) {
                break;
            }
            const Vec3 p = from + d * t;
            const float x = (p.x - Foot.x) / (1.9F - 0.12F * p.y);
            const float near = std::exp(-x * x - 0.9F * std::max(p.y, 0.0F) - 0.35F * (z - Foot.z) * (z - Foot.z));
            mist += near * (0.35F + 0.9F * fbm(Vec3{p.x * 0.9F + 3, p.y * 0.9F, z * 0.9F}, 4));
        }
        mist = 1 - std::exp(-0.62F * mist);
        light = mix(light, colour(0xF2F8F6) * 1.0F, mist);
        return light + rainbow(d) * (1.1F * mist);
    }

  private:
    /// Droplets throw each colour back at an angle of its own about the point opposite the sun: 40.5 to 42.5 degrees.
    Vec3 rainbow(Vec3 d) const {
        const float angle = std::acos(clamp01(-dot(d, sunDirection))) * 180 / Pi;
        const float hue = (angle - 37.5F) / 4.6F; // a little wider than in nature
        const auto band = [hue](float at) { return std::exp(-14 * (hue - at) * (hue - at)); };
        return {band(0.85F) + 0.45F * band(0.1F), 0.9F * band(0.5F) + 0.25F * band(0.7F), band(0.18F)};
    }

    /// 0 in the dark between the leaves to 1 at their tips.
    static float leaves(Vec3 p) { return smoothStep(0.28F, 0.66F, fbm(p * 8.5F, 3)); }

    /// Leaves, twigs and crowns stand out from the ground by this much.
    static float foliage(Vec3 p) {
        const float puffs = fbm(Vec3{p.x, p.y * 1.2F, p.z} * 1.9F, 2);
        return 0.7F * (puffs - 0.22F) + 0.06F * leaves(p);
    }

    /// Share of plants, 0 where the fall keeps the rock bare.
    static float plants(Vec3 p) {
        const float beside = std::fabs(p.x - Foot.x) - 0.75F - 0.35F * noise(p.y * 1.1F, 3);
        const float bare = p.z > 5 ? smoothStep(1.1F, -0.1F, beside) : 0.0F;
        const float patch = smoothStep(
            0.36F, 0.5F, fbm(Vec3{p.x * 0.6F, p.y * 0.9F, p.z * 0.6F}, 3) + 0.10F * std::max(p.y - 4.2F, 0.0F));
        return patch * (1 - bare) * smoothStep(0.0F, 0.25F, p.y);
    }

    /// A rock bowl, open towards the viewer: ledges below, forest on top.
    static float cliff(Vec3 p) {
        const float z = p.z - 5.2F;
        const float out = z > 0 ? length(p.x, z) : std::fabs(p.x);
        float s = out - 3.55F - 0.55F * (fbm(p.x * 0.7F, p.z * 0.7F, 3) - 0.5F);
        const float lean = mix(0.55F, 0.16F, smoothStep(1.5F, 6.5F, p.z));
        const float open = lean * p.y +
                           0.3F * smoothStep(1.6F, 2.6F, p.y + 0.5F * noise(p.x, 4)) * smoothStep(3, 6, p.z) -
                           0.25F * smoothStep(0.5F, 0, p.y);
        if (open - s > 1.5F) {
            return open - s - 0.9F;
        }
        const float joints = 0.22F * (ridged(p.x * 1.3F + 0.3F * p.z, p.y * 0.45F + 3, 3) - 0.5F) +
                             0.10F * (noise(p.y * 5, p.x * 0.6F) - 0.5F);
        float d = open - s - joints;
        if (p.y > 3.4F) {
            const Cell crown = cells(p.x * 0.75F, p.z * 0.75F);
            const float notch = p.z > 5 ? 1.1F * smoothStep(0.9F, 0.5F, std::fabs(p.x - Foot.x)) : 0.0F;
            const float top = 5.15F +
                              1.9F * std::sqrt(std::max(0.0F, 1 - 1.6F * crown.distance * crown.distance)) * crown.id +
                              0.9F * smoothStep(1, 3, std::fabs(p.x)) - notch * 1.2F;
            d = std::max(d, p.y - top);
        }
        return d < 0.7F ? d - plants(p) * foliage(p) : d - 0.4F;
    }

    static Surface wallLook(Vec3 p, Vec3 n) {
        const float plant = plants(p);
        const float wet = p.z > 5 ? smoothStep(1.7F, 0.6F, std::fabs(p.x - Foot.x)) : 0.0F;
        Vec3 rock = mix(colour(0x332E2A), colour(0x7A6E60), fbm(p * 4, 4)) * mix(1.0F, 0.55F, wet);
        const float moss = smoothStep(0.2F, 0.6F, n.y + 0.6F * (fbm(p * 3, 3) - 0.4F));
        rock = mix(rock, mix(colour(0x3A6E1E), colour(0x86B032), noise(p * 9)), 0.85F * moss);
        const float leaf = leaves(p);
        const float kind = fbm(p * 0.9F, 3);
        const float young = noise(p * 5.5F);
        Vec3 green = mix(colour(0x2A6A20), colour(0x6FA028), smoothStep(0.32F, 0.68F, kind));
        green = mix(green, colour(0xA8C040), 0.7F * smoothStep(0.55F, 0.85F, young));
        green = mix(colour(0x0B2410), green, leaf) * (0.75F + 0.5F * noise(p * 34));
        if (noise(p * 20 + Vec3{7, 7, 7}) > 0.92F && noise(p * 0.9F) > 0.6F) {
            green = colour(kind > 0.5F ? 0xFF5A2A : 0xE83A8A); // blossoms
        }
        return {.colour = mix(rock, green, smoothStep(0.16F, 0.32F, plant)),
                .shine = 0.35F * wet * (1 - plant) + 0.03F,
                .sheer = 0.25F * plant};
    }

    /// Thick and thin water, 0 to 1, drawn out by the fall.
    static float torn(Vec3 p) {
        const float x = (p.x - Foot.x) / (1 + 0.09F * (Lip - p.y));
        const float drop = std::sqrt(std::max(0.0F, Lip - p.y));
        return 0.5F * noise(x * 8 + 1, drop * 2.2F) + 0.3F * noise(x * 19, drop * 4.5F) +
               0.2F * noise(x * 41, drop * 8);
    }

    /// Water as one curtain that spreads as it falls.
    static float fall(Vec3 p) {
        const float near = box(p - Vec3{Foot.x, 2.6F, 8.7F}, {1.5F, 2.9F, 1.3F});
        if (near > 0.4F) {
            return near;
        }
        const float drop = std::max(Lip - p.y, 0.0F);
        const float wide = 0.40F + 0.075F * drop + 0.10F * (noise(drop * 0.8F, p.x > Foot.x ? 5.0F : 9.0F) - 0.5F);
        const float jump = 8.95F - 0.33F * std::sqrt(drop);
        const float x = (p.x - Foot.x) / wide;
        const float sheet = std::fabs(p.z - jump + 0.10F * torn(p) - 0.16F * x * x) - 0.10F;
        return 0.55F *
               std::max({sheet, (std::fabs(x) - 1) * wide + 0.1F * noise(drop * 3, p.x * 4), p.y - Lip - 0.03F});
    }

    static float boulders(Vec3 p) {
        constexpr Vec3 places[] = {{-1.55F, 0.0F, -1.3F}, {-2.2F, 0.1F, -0.5F},   {1.45F, 0.02F, -1.5F},
                                   {2.1F, 0.1F, -0.5F},   {0.75F, -0.06F, -0.9F}, {-1.9F, 0, 2.6F},
                                   {-0.75F, 0, 6.9F},     {1.7F, 0.05F, 6.6F},    {2.2F, 0, 3.2F},
                                   {-1.7F, 0.05F, 7.1F},  {0.9F, 0, 7.5F},        {-0.65F, -0.05F, -1.7F},
                                   {0.35F, 0.1F, 7.95F}};
        constexpr float sizes[] = {0.42F, 0.6F, 0.4F,  0.55F, 0.24F, 0.45F, 0.35F,
                                   0.5F,  0.4F, 0.55F, 0.3F,  0.22F, 0.35F};
        float d = 1e3F;
        for (int i = 0; i < 13; ++i) {
            const Vec3 q = turnY(p - places[i], static_cast<float>(i) * 1.7F);
            d = std::min(d, ellipsoid(q, Vec3{1.2F, 0.68F, 0.9F} * sizes[i]));
        }
        return d > 0.25F ? d - 0.12F : d + 0.13F * (fbm(p * 3.2F, 4) - 0.5F);
    }

    /// White water, more than 0.5 where it is.
    static float froth(Vec3 p, float wall) {
        const float r = length((p.x - Foot.x) * 0.8F, p.z - Foot.z + 0.3F);
        const float lace = fbm(p.x * 2.6F + noise(p.x * 2, p.z * 2), p.z * 3.6F, 5);
        const float churn = smoothStep(3.4F, 0.5F, r) + 0.5F * smoothStep(0.2F, 0.0F, wall);
        return churn * 0.8F + (lace - 0.55F) * 1.5F * smoothStep(0, 0.25F, churn);
    }

    static void ferns(Vec3 p, Hit &hit) {
        int i = 0;
        for (const auto &[x, y, z, tall, lean] : Ferns) {
            palm(p - Vec3{x, y, z}, Trunk, tall, lean, 1.9F * static_cast<float>(++i), hit);
        }
    }
};

} // namespace

std::unique_ptr<Scene> waterfall() {
    return std::make_unique<Waterfall>();
}

} // namespace lumora::samples
