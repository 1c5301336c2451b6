// A red pagoda among cherry trees in the morning: a pond with fallen petals, an arched bridge, a stone lantern.
#include "Scenes.h"

#include "PagodaTower.h"
#include "Skies.h"

namespace lumora::samples {

namespace {

using namespace shrine;

constexpr Vec3 Foot{-3.6F, 0.5F, 9};
constexpr Vec3 Bridge{4.4F, 0.35F, 2.6F};
constexpr Vec3 Lantern{2.85F, 0.45F, -9.0F};

struct Tree {
    Vec3 foot;
    float size;
    bool pine;
};
constexpr Tree Trees[] = {{{2.0F, 0.4F, 10.5F}, 1.45F, false}, {{-8.6F, 0.4F, 7.5F}, 1.35F, false},
                          {{7.6F, 0.4F, 7.0F}, 1.6F, false},   {{-9.6F, 0.4F, 15}, 2.1F, true},
                          {{5.0F, 0.4F, 16.5F}, 2.1F, true},   {{-6.6F, 0.4F, 2.8F}, 0.85F, false},
                          {{12, 0.4F, 15}, 2.1F, false}};

constexpr Vec3 Bushes[] = {{-0.1F, 0.5F, 5.2F}, {-7.4F, 0.5F, 5.8F}, {0.9F, 0.45F, 6.4F},
                           {-8.7F, 0.4F, 4.6F}, {9.0F, 0.5F, 3.6F},  {10.2F, 0.5F, 2.6F}};

class Pagoda : public Scene {
  public:
    Pagoda() {
        camera = {{0.5F, 2.55F, -14}, {0.1F, 3.95F, 6}, 1.36F};
        sunDirection = normalise({0.72F, 0.5F, -0.48F});
        sunColour = {3.3F, 2.75F, 2.2F};
        skyLight = {0.44F, 0.5F, 0.66F};
        groundLight = {0.16F, 0.14F, 0.12F};
        farthest = 90;
        ceiling = 17;
        caution = 0.85F;
        steps = 240;
        shadowReach = 9;
        shadowSoftness = 12;
        creviceSize = 0.35F;
        waterLevel = 0;
        waterColour = {0.02F, 0.06F, 0.05F};
        exposure = 0.95F;
        bloom = 0.2F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        ground(p, hit);
        storeys(p - Foot, hit);
        bridge(p - Bridge, hit);
        lantern((p - Lantern) * (1 / 0.85F), hit);
        for (int i = 0; i < 7; ++i) {
            tree(p, i, hit);
        }
        branch(p, hit);
        float bush = 1e3F;
        for (const Vec3 at : Bushes) {
            bush = std::min(bush, ellipsoid(p - at, {0.85F, 0.75F, 0.85F}));
        }
        hit.join(leaves(p, bush + 0.2F * (bush < 1 ? noise(p * 2.5F) - 0.5F : 0.0F), 0.15F, 1.2F), Azalea);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        const float dirt = fbm(p * 3.3F, 4);
        switch (material) {
        case Stone_: {
            Vec3 grey = mix(colour(0x77736C), colour(0xB4AEA2), fbm(p * 8, 4) * 1.3F);
            if (p.z > 2) {
                const Stone stone = block(p);
                grey = mix(colour(0x857E74), colour(0xBDB4A5), stone.id) * mix(0.65F, 1.2F, fbm(p * 7, 3)) *
                       mix(1.0F, 0.45F, jointDepth(stone, 0.03F));
            }
            return {.colour = mix(grey, colour(0x6B8438), 0.85F * smoothStep(0.35F, 0.75F, n.y * 0.7F + dirt - 0.3F))};
        }
        case RedWood: {
            const float worn = fbm(Vec3{p.x * 8, p.y * 2, p.z * 8}, 4);
            return {.colour = mix(colour(0x96200F), colour(0xDC3E1E), worn * 1.4F) * mix(0.75F, 1.05F, dirt),
                    .shine = 0.2F};
        }
        case Plaster:
            return {.colour = mix(colour(0xD5CBB6), colour(0xFBF5E6), dirt * 1.5F)};
        case RoofTiles: {
            const float row = fraction(roofUp(p) * 5.2F);
            const Vec3 tile = mix(colour(0x39454C), colour(0x76868A),
                                  hash(static_cast<int>(std::floor(roofUp(p) * 5.2F)),
                                       static_cast<int>(std::floor(acrossRoof(p) / 0.2F))));
            return {.colour = mix(tile * mix(0.7F, 1.1F, row), colour(0x6C7C3C),
                                  0.75F * smoothStep(0.52F, 0.64F, fbm(p * 1.9F, 4))),
                    .shine = 0.2F};
        }
        case Gold:
            return {
                .colour = colour(0xB97F1E), .shine = 1.2F, .sharpness = 50, .mirror = 0.3F, .tint = colour(0xFFD070)};
        case Lattice: {
            const Vec3 q = folded(p);
            const bool bar = fraction(q.y * 13) < 0.35F;
            return {.colour = bar ? colour(0x2D6B4C) : colour(0x15201C)};
        }
        case Flame:
            return {.colour = colour(0x301806), .glow = colour(0xFFB04A) * 1.6F};
        default:
            return gardenLook(material, p, n);
        }
    }

    /// Mountains far away are part of the sky: a snow peak and two ridges in the mist.
    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.4F);
        Vec3 light = mix(colour(0xFBE3D6) * 1.05F, mix(colour(0xA9CFE6), colour(0x4C8FCB), smoothStep(0.3F, 1, up)),
                         smoothStep(0, 0.45F, up));
        const Cloud cloud = clouds(d, sunDirection, 0.62F, 0.9F, 5.3F);
        light = mix(light, mix(colour(0xC9CBDD), colour(0xFFF6EC) * 1.25F, cloud.lit), cloud.amount * 0.9F);
        const float a = std::atan2(d.x, d.z);
        const float e = std::atan2(d.y, length(d.x, d.z));
        const float off = a + 0.5F;
        const float peak =
            0.40F -
            0.62F * (std::sqrt(std::max(off * off - 0.0006F, 0.0F) + 0.0004F) - 0.02F) / (1 + 1.2F * std::fabs(off)) +
            0.012F * fbm(a * 40, 3, 4);
        if (e < peak) {
            const float furrow = fbm(a * 42 + std::clamp(off * 9, -1.0F, 1.0F) * e * 26, e * 9, 4);
            const float snow = smoothStep(0.22F, 0.27F, e + 0.16F * (furrow - 0.5F));
            const Vec3 rock = mix(colour(0x5F7EB0), colour(0x8BA2C6), furrow);
            const Vec3 white =
                mix(colour(0xC3D0E8), colour(0xFFF7F0) * 1.1F, smoothStep(-0.02F, 0.05F, off + 0.1F * (furrow - 0.5F)));
            light = mix(light, mix(rock, white, snow),
                        smoothStep(0.0F, 0.004F, peak - e) * mix(0.2F, 0.95F, smoothStep(0, 0.25F, e)));
        }
        for (int i = 0; i < 2; ++i) {
            const auto k = static_cast<float>(i);
            const float ridge =
                0.10F - 0.035F * k + 0.09F * (fbm(a * (3 + 2 * k) + 7 * k, 1, 4) - 0.5F) + 0.006F * noise(a * 190, k);
            light =
                mix(light, mix(colour(0xA3B6C4), colour(0x7A9A92), k * 0.6F + 0.3F * noise(a * 30, e * 50)),
                    0.85F * smoothStep(-0.001F, 0.003F, ridge - e) * mix(0.15F, 1.0F, smoothStep(-0.02F, 0.09F, e)));
        }
        return light + sunGlow(d, sunDirection, sunColour) * 0.3F;
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Stone_:
            return (p.z > 2 ? -0.03F * jointDepth(block(p), 0.04F) : 0.0F) + 0.025F * fbm(p * 9, 4);
        case RoofTiles:
            return 0.03F * fraction(roofUp(p) * 5.2F);
        case Bark:
            return 0.04F * fbm(Vec3{p.x * 9, p.y * 3, p.z * 9}, 3);
        case Ground:
            return 0.02F * fbm(p.x * 13, p.z * 13, 3);
        default:
            return 0;
        }
    }

    Vec3 waterNormal(Vec3 p, float distance) const override {
        const float ripple = 0.035F / (1 + 0.06F * distance);
        return normalise({ripple * (fbm(p.x * 1.6F, p.z * 4, 3) - 0.45F) * 0.6F, 1,
                          ripple * (fbm(p.x * 1.6F + 9, p.z * 4, 3) - 0.45F)});
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        if (distance >= farthest - 1) {
            return light;
        }
        light = haze(light, *this, d, std::max(0.0F, distance - 8), 170, colour(0xD6DCE2), colour(0xFFE6D0));
        const Vec3 p = from + d * distance; // ground mist behind the garden
        return mix(light, colour(0xF6EAE4), 0.6F * smoothStep(14, 42, p.z) * smoothStep(6, 0, p.y));
    }

  private:
    /// All that grows, and the ground.
    static Surface gardenLook(int material, Vec3 p, Vec3 n) {
        switch (material) {
        case Bark:
            return {.colour = mix(colour(0x2A1F1C), colour(0x6B5448), fbm(Vec3{p.x * 6, p.y * 3, p.z * 6}, 4))};
        case Blossom: {
            const float id = leafId(p, p.z < -6.5F ? 0.17F : 0.21F);
            return {.colour = mix(mix(colour(0xF585B4), colour(0xFFC4DA), id), colour(0xFFF4F6),
                                  0.65F * hash(static_cast<int>(id * 9999))),
                    .sheer = 0.8F};
        }
        case Pine:
            return {.colour = mix(colour(0x12301A), colour(0x4C6E2E), leafId(p, 0.24F)), .sheer = 0.1F};
        case Azalea: {
            const float id = leafId(p, 0.15F);
            return {.colour = id < 0.35F ? mix(colour(0xD8285A), colour(0xFF5C86), id * 3)
                                         : mix(colour(0x1E4A1E), colour(0x6C8C3A), id),
                    .sheer = 0.3F};
        }
        case Petal:
            return {.colour = mix(colour(0xF4A0C0), colour(0xFFE6EE), cells(p.x * 6, p.z * 6).id)};
        case Iris: {
            const float y = p.y - height(p.x, p.z);
            const float id = noise(p.x * 2.5F, p.z * 2.5F);
            return {.colour = y > 0.36F ? mix(colour(0x5A35B8), colour(0xA07BEA), id)
                                        : mix(colour(0x3C6B2C), colour(0x84A94A), id),
                    .sheer = 0.4F};
        }
        default:
            return land(p, n);
        }
    }

    /// Below 0 in the pond and the brook that feeds it, about the distance to their banks.
    static float pond(float x, float z) {
        const float wobble = 0.5F * (noise(x * 0.7F + 5, z * 0.7F) - 0.5F);
        const float round = (length((x - 0.2F) / 7.4F, (z + 3.3F) / 6.3F) - 1) * 6;
        const float brook = std::max(std::fabs(x - 4.4F - 0.5F * std::sin(z * 0.4F)) - 1.75F, -z);
        const float spit = 1.0F - length(x - Lantern.x - 0.2F, (z - Lantern.z + 0.3F) * 0.6F); // the lantern's ground
        return std::max(blend(round, brook, 1), std::min(spit, 0.6F)) + wobble;
    }

    static float height(float x, float z) {
        const float side = pond(x, z);
        float ground = -0.55F + 0.95F * smoothStep(-0.7F, 0.35F, side) +
                       0.22F * (fbm(x * 0.6F, z * 0.6F, 2) - 0.4F) * smoothStep(0, 1.5F, side);
        if (std::fabs(side - 0.05F) < 0.6F) {
            const Cell stone = cells(x * 1.15F, z * 1.15F);
            ground += smoothStep(0.6F, 0.25F, std::fabs(side - 0.05F)) *
                      (0.08F + 0.26F * stone.id + 0.14F * noise(x * 3, z * 3)) *
                      smoothStep(0, 0.9F, 1 - 3.4F * stone.distance * stone.distance);
        }
        return ground;
    }

    static void ground(Vec3 p, Hit &hit) {
        if (p.y > 1.7F) {
            hit.join(p.y - 1.2F, Ground);
            return;
        }
        const float high = height(p.x, p.z);
        hit.join((p.y - high) * 0.7F, Ground);
        if (p.z < -7 && p.y > 0.1F) {
            const float side = pond(p.x, p.z);
            if (side > 0.5F) {
                hit.join(grassBlades(p, high, 0.06F, 0.05F + 0.1F * noise(p.x * 1.4F, p.z * 1.4F)), Ground);
            }
            if (side > 0.15F && side < 1.5F && (p.x < -0.9F || p.x > 3.3F)) {
                hit.join(irises(p, high), Iris);
            }
        }
        if (std::fabs(p.y) < 0.25F && high < 0) {
            const Cell petal = cells(p.x * 6, p.z * 6, 0.9F);
            const float many = smoothStep(0.42F, 0.95F, noise(p.x * 0.5F + 3, p.z * 0.8F));
            if (petal.id < 0.75F * many) {
                hit.join(std::max({petal.distance / 6 - 0.03F * (0.7F + petal.id), std::fabs(p.y - 0.006F) - 0.006F}) *
                             0.8F,
                         Petal);
            } else {
                hit.join(std::max(0.05F, std::fabs(p.y)), Petal);
            }
        }
    }

    /// Upright leaves and violet flowers at the water's edge, one plant in each tile.
    static float irises(Vec3 p, float ground) {
        constexpr float Size = 0.3F;
        const int i = static_cast<int>(std::round(p.x / Size));
        const int k = static_cast<int>(std::round(p.z / Size));
        if (hash(i, k, 8) < 0.35F) {
            return 0.12F;
        }
        const Vec3 q{repeat(p.x, Size), p.y - ground, repeat(p.z, Size)};
        float d = 0.16F;
        for (int leaf = 0; leaf < 5; ++leaf) {
            const float a = 2 * Pi * hash(i, k, leaf);
            d = std::min(d, stick(q, {0.02F * std::cos(a), 0, 0.02F * std::sin(a)},
                                  {0.09F * std::cos(a), 0.2F + 0.16F * hash(i, k, leaf + 9), 0.09F * std::sin(a)},
                                  0.016F, 0.003F));
        }
        const Vec3 head = q - Vec3{0, 0.42F + 0.08F * hash(i, k, 3), 0};
        const Vec3 fall = slices({head.x, head.z, head.y}, 3);
        d = std::min(d, ellipsoid(turnZ({fall.x - 0.055F, fall.z, fall.y}, -0.5F), {0.06F, 0.018F, 0.036F}));
        const Vec3 standard = slices({-head.x, head.z, head.y}, 3);
        d = std::min(
            d, ellipsoid(turnZ({standard.x - 0.02F, standard.z - 0.055F, standard.y}, -0.25F), {0.02F, 0.065F, 0.03F}));
        d = std::min(d, stick(q, {0, 0, 0}, {0, 0.42F, 0}, 0.009F));
        return d * 0.75F;
    }

    static Surface land(Vec3 p, Vec3 n) {
        const float side = pond(p.x, p.z);
        const float big = fbm(p.x * 0.9F, p.z * 0.9F, 4);
        Vec3 moss = mix(colour(0x3F6A22), colour(0x9AAE42), big * 1.2F) * (0.6F + 0.7F * noise(p.x * 14, p.z * 14));
        const Cell petal = cells(p.x * 9, p.z * 9, 0.9F);
        if (petal.distance < 0.22F && petal.id < 0.35F) {
            moss = colour(0xFFC2D6);
        }
        const Cell stone = cells(p.x * 1.15F, p.z * 1.15F);
        const Vec3 grey = mix(colour(0x5E5B56), colour(0xA8A196), stone.id * 0.5F + 0.5F * fbm(p * 8, 3)) *
                          mix(0.5F, 1.0F, smoothStep(-0.02F, 0.14F, p.y));
        const float onStone =
            smoothStep(0.55F, 0.4F, std::fabs(side - 0.05F)) * smoothStep(0.52F, 0.44F, stone.distance);
        const Vec3 mossy =
            mix(grey, moss, 0.7F * smoothStep(0.7F, 0.95F, n.y) * smoothStep(0.45F, 0.6F, fbm(p * 5, 3)));
        return {.colour = mix(p.y < 0.08F ? colour(0x4E4434) : moss, mossy, onStone), .sheer = 0.15F};
    }

    /// Where the look of wall and roof is read.
    static Vec3 folded(Vec3 p) {
        const Vec3 q = plan(p - Foot);
        return {q.x, q.z, q.y};
    }
    static float roofUp(Vec3 p) { return plan(p - Foot).x; }
    static float acrossRoof(Vec3 p) { return plan(p - Foot).z; }
    static Stone block(Vec3 p) {
        const Vec3 q = turnY(p - Foot, Turn);
        return courses(alongWall(q), p.y, 0.62F, 0.3F);
    }

    static void tree(Vec3 p, int index, Hit &hit) {
        const Tree &one = Trees[index];
        Vec3 q = (p - one.foot) * (1 / one.size);
        const float near = sphere(q - Vec3{0, 2.4F, 0}, one.pine ? 3.2F : 2.7F) * one.size;
        if (near > 0.6F) {
            hit.join(near, Bark);
            return;
        }
        const auto seed = static_cast<float>(index) * 1.7F;
        float bark = stick(q, {0, -0.2F, 0}, {0.15F * std::sin(seed), 1.3F, 0.1F}, 0.2F, 0.13F);
        float crown = 1e3F;
        for (int k = 0; k < 6; ++k) {
            const auto j = static_cast<float>(k);
            const float a = seed + j * 2.4F;
            Vec3 at{1.15F * std::cos(a), 2.0F + 0.28F * j, 1.15F * std::sin(a)};
            Vec3 radii{0.95F, 0.68F, 0.95F};
            if (one.pine) {
                at = {0.5F * std::cos(a), 1.1F + 0.72F * j, 0.5F * std::sin(a)};
                radii = Vec3{1.35F - 0.17F * j, 0.42F, 1.35F - 0.17F * j};
            }
            crown = std::min(crown, ellipsoid(q - at, radii));
            bark = std::min(bark, stick(q, {0.15F * std::sin(seed), 1.2F, 0.1F}, at, 0.1F, 0.03F));
        }
        crown = crown * one.size + 0.5F * (noise(p * 1.9F) - 0.5F);
        hit.join(bark * one.size, Bark);
        hit.join(one.pine ? leaves(p, crown, 0.24F, 0.95F) : leaves(p, crown, 0.21F, 0.85F), one.pine ? Pine : Blossom);
    }

    /// The bough that hangs into the picture from the right.
    static void branch(Vec3 p, Hit &hit) {
        const float near = box(p - Vec3{3.3F, 5.0F, -8.3F}, {2.6F, 1.2F, 1.0F});
        if (near > 0.4F) {
            hit.join(near, Bark);
            return;
        }
        constexpr Vec3 knots[] = {{6.0F, 5.9F, -8.2F},
                                  {4.4F, 5.35F, -8.4F},
                                  {3.1F, 5.15F, -8.2F},
                                  {1.9F, 4.75F, -8.4F},
                                  {1.05F, 4.72F, -8.3F}};
        float bark = 1e3F;
        float crown = 1e3F;
        for (int i = 0; i < 4; ++i) {
            const auto k = static_cast<float>(i);
            bark = std::min(bark, stick(p, knots[i], knots[i + 1], 0.11F - 0.024F * k, 0.086F - 0.024F * k));
            const Vec3 twig = knots[i + 1] + Vec3{-0.45F, 0.45F - 0.9F * static_cast<float>(i % 2), 0.3F};
            bark = std::min(bark, stick(p, knots[i + 1] + Vec3{0.5F, 0.15F, 0}, twig, 0.035F, 0.012F));
            crown = std::min({crown, sphere(p - twig, 0.36F), sphere(p - knots[i + 1] - Vec3{0.3F, 0.12F, 0.1F}, 0.4F),
                              sphere(p - knots[i + 1] - Vec3{-0.25F, -0.1F, -0.2F}, 0.3F)});
        }
        hit.join(bark, Bark);
        hit.join(leaves(p, crown + 0.35F * (noise(p * 3) - 0.6F), 0.17F, 1.5F, 5), Blossom);
    }
};

} // namespace

std::unique_ptr<Scene> pagoda() {
    return std::make_unique<Pagoda>();
}

} // namespace lumora::samples
