// A waterfall in a rain forest: two steps over dark rock into a green pool, spray with a rainbow, a macaw flies by.
#include "Scenes.h"

#include "Landforms.h"
#include "Noise.h"
#include "Shapes.h"

namespace lumora::samples {

namespace {

enum Material { Wall, Fall, Boulder, Foam, Trunk, Leaf, Macaw };

constexpr Vec3 Foot{0.35F, 0, 8.6F}; ///< where the water meets the pool
constexpr Vec3 MacawAt{-0.95F, 1.95F, 0.2F};
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
        steps = 170;
        shadowReach = 6;
        shadowSoftness = 12;
        creviceSize = 0.28F;
        waterLevel = 0;
        waterColour = {0.008F, 0.10F, 0.075F};
        bloom = 0.14F;
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
        macaw(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        switch (material) {
        case Wall:
            return wallLook(p, n);
        case Fall: {
            const float streak = noise(p.x * 13, p.y * 0.7F + 2) * 0.6F + noise(p.x * 31, p.y * 1.3F) * 0.4F;
            return {.colour = mix(colour(0x9FC4CE), colour(0xFFFFFF), smoothStep(0.25F, 0.65F, streak)),
                    .sheer = 0.3F,
                    .glow = Vec3{0.10F, 0.13F, 0.14F} * streak};
        }
        case Boulder: {
            const Vec3 stone = mix(colour(0x3A3A38), colour(0x8A867A), fbm(p * 6, 4));
            const float moss =
                smoothStep(0.35F, 0.75F, n.y + 0.5F * (fbm(p * 4, 3) - 0.5F)) * smoothStep(0.06F, 0.16F, p.y);
            return {.colour = mix(stone * mix(0.4F, 1.0F, smoothStep(0, 0.12F, p.y)),
                                  mix(colour(0x3F7A1C), colour(0x86AC32), fbm(p * 14, 3)), moss),
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
            return feathers(p);
        }
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
            return 0.05F * noise(p.x * 24, p.y * 1.6F);
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
        return 0.95F * (puffs - 0.22F) + 0.13F * leaves(p);
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
        // Steps: the fall jumps from the lip at 5.2 to the ledge at 2.3.
        const float lean = p.z < 4 ? 0.55F : 0.16F;
        const float open = lean * p.y + 0.55F * smoothStep(2.15F, 2.35F, p.y) * smoothStep(3, 6, p.z) -
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
        if (noise(p * 20 + Vec3{7, 7, 7}) > 0.85F && noise(p * 0.9F) > 0.5F) {
            green = colour(kind > 0.5F ? 0xFF5A2A : 0xE83A8A); // blossoms
        }
        return {.colour = mix(rock, green, smoothStep(0.25F, 0.5F, plant)),
                .shine = 0.35F * wet * (1 - plant) + 0.08F,
                .sheer = 0.25F * plant};
    }

    /// Water as a curtain of strands: narrow from the lip to the ledge, wide and torn below it.
    static float fall(Vec3 p) {
        const float near = box(p - Vec3{Foot.x, 2.6F, 9.0F}, {1.5F, 2.9F, 1.2F});
        if (near > 0.4F) {
            return near;
        }
        const bool upper = p.y > 2.2F;
        const float drop = upper ? 5.2F - p.y : 2.2F - p.y;
        const float wide = upper ? 0.42F + 0.05F * drop + 0.1F * noise(p.y * 0.9F, 2) : 0.72F + 0.12F * drop;
        const float jump =
            upper ? 9.0F - 0.26F * std::sqrt(std::max(drop, 0.0F)) : 8.55F - 0.22F * std::sqrt(std::max(drop, 0.0F));
        const float strand = noise((p.x - Foot.x) * 7 + 1, p.y * 0.35F + (upper ? 0.0F : 7.0F)) * 0.65F +
                             noise((p.x - Foot.x) * 17, p.y * 0.7F) * 0.35F;
        const float torn = (upper ? 0.18F : 0.34F) + 0.05F * drop;
        const float sheet = std::fabs(p.z - jump - 0.10F * strand) - 0.05F - 0.06F * strand;
        const float edge = std::fabs(p.x - Foot.x) - wide + 0.12F * noise(p.y * 2.2F, p.x > Foot.x ? 5.0F : 9.0F);
        return 0.55F * std::max({sheet, edge, (torn - strand) * 0.25F, p.y - 5.25F});
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

    static Vec3 inMacaw(Vec3 p) { return turnZ(turnY(p - MacawAt, -0.55F), 0.22F) * (1 / 0.62F); }

    /// Flies to the right, wings raised.
    static void macaw(Vec3 p, Hit &hit) {
        const Vec3 q = inMacaw(p);
        const float near = length(q) - 1.15F;
        if (near > 0.3F) {
            hit.join(near * 0.62F, Macaw);
            return;
        }
        float d = ellipsoid(q, {0.26F, 0.1F, 0.1F});
        d = blend(d, ellipsoid(q - Vec3{0.26F, 0.05F, 0}, {0.11F, 0.085F, 0.08F}), 0.06F);
        d = std::min(d, ellipsoid(q - Vec3{0.37F, 0.03F, 0}, {0.05F, 0.05F, 0.03F}));
        const float tail = std::max({std::fabs(q.y + 0.02F + 0.1F * (q.x + 0.2F)) - 0.012F,
                                     std::fabs(q.z) - 0.06F - 0.05F * (q.x + 0.85F), std::fabs(q.x + 0.52F) - 0.36F});
        const float side = std::fabs(q.z);
        const float rise = 0.85F * side - 0.55F * side * side;
        const float chord = 0.21F - 0.16F * side * side + 0.02F * std::cos(side * 60) * smoothStep(0.0F, -0.15F, q.x);
        const float wing = std::max({std::fabs(q.y - 0.05F - rise) * 0.75F - 0.014F,
                                     std::fabs(q.x - 0.05F + 0.22F * side) - chord, side - 0.82F});
        hit.join(0.62F * 0.8F * std::min({d, tail, wing}), Macaw);
    }

    static Surface feathers(Vec3 p) {
        const Vec3 q = inMacaw(p);
        const float side = std::fabs(q.z);
        Vec3 look = colour(0xE3160E);
        if (side > 0.12F) { // red, yellow and blue bands across the wing
            const float back = 0.05F - 0.22F * side - q.x + 0.25F * side;
            look = back < 0.04F ? colour(0xE3160E) : back < 0.13F ? colour(0xFFC814) : colour(0x1450C8);
            look = look * (0.8F + 0.25F * std::cos(side * 60));
        } else if (q.x > 0.33F) {
            look = colour(q.y > 0.02F ? 0xE8DCC0 : 0x201C1C);
        } else if (q.x > 0.22F && q.y > 0.0F && side > 0.045F) {
            look = length(q.x - 0.29F, q.y - 0.07F) < 0.018F ? colour(0x101010) : colour(0xFFF6EC);
        } else if (q.x < -0.65F) {
            look = colour(0x1E5AD0);
        }
        return {.colour = look, .shine = 0.15F, .sheer = side > 0.12F ? 0.4F : 0.0F};
    }
};

} // namespace

std::unique_ptr<Scene> waterfall() {
    return std::make_unique<Waterfall>();
}

} // namespace lumora::samples
