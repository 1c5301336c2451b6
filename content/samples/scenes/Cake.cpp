// A birthday cake on a stand: cream, strawberries, candles that burn; cups and bunting behind it.
#include "Scenes.h"

#include "Bodies.h"

#include <array>

namespace lumora::samples {

namespace {

enum Material { Cloth, Stand, Sponge, Icing, Chocolate, Berry, Leaf, Candle, Wick, Flame, Plate, Sprinkle };

constexpr float Top = 1.18F; ///< height of the upper tier's icing
constexpr int Candles = 6;
constexpr int Berries = 9;

class Cake : public Scene {
  public:
    Cake() {
        camera = {{0.5F, 2.55F, -5.6F}, {0, 0.62F, 0}, 2.15F};
        sunDirection = normalise({-0.62F, 0.55F, -0.45F});
        sunColour = {2.2F, 2.0F, 1.7F};
        skyLight = {0.42F, 0.42F, 0.46F};
        groundLight = {0.30F, 0.25F, 0.20F};
        farthest = 16;
        caution = 0.8F;
        steps = 150;
        shadowReach = 3;
        shadowSoftness = 8;
        creviceSize = 0.18F;
        focus = 5.6F;
        aperture = 0.014F;
        bloom = 0.16F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join(std::max(p.y + 0.55F - 0.02F * fbm(p.x * 0.8F, p.z * 0.8F, 3), p.z - 4.5F), Cloth);
        for (const auto &[x, z] : {std::pair{-2.15F, 1.7F}, {2.3F, 2.1F}}) {
            cup(p - Vec3{x, -0.53F, z}, hit);
        }
        hit.join(plate(p - Vec3{2.0F, -0.5F, -0.8F}), Plate);
        const float far = box(p - Vec3{0, 0.7F, 0}, {1.9F, 1.4F, 1.9F});
        if (far > 0.3F) {
            hit.join(far, Sponge);
            return hit;
        }
        cake(p, hit);
        fruit(p, hit);
        candles(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        switch (material) {
        case Stand:
        case Plate:
            return {.colour = colour(0xE4E8EA), .shine = 0.6F, .sharpness = 70, .mirror = 0.05F};
        case Sponge: {
            const float crumb = fbm(p * 14, 4);
            return {.colour = mix(colour(0xB87A36), colour(0xE8BC78), crumb) * (0.75F + 0.4F * noise(p * 60))};
        }
        case Icing:
            return {.colour = mix(colour(0xF4E6D8), colour(0xFFF8F0), fbm(p * 4, 3)),
                    .shine = 0.12F,
                    .sharpness = 14,
                    .sheer = 0.12F};
        case Chocolate:
            return {.colour = colour(0x3A1C0E) * (0.85F + 0.3F * noise(p * 5)),
                    .shine = 0.6F,
                    .sharpness = 45,
                    .mirror = 0.04F};
        case Berry:
            return berry(p, n);
        case Leaf:
            return {.colour = mix(colour(0x2E6A1E), colour(0x7AAE3A), noise(p * 22)), .shine = 0.15F, .sheer = 0.2F};
        case Candle: {
            const float twist = std::sin(std::atan2(p.z, p.x) + p.y * 38 + 7 * p.x);
            const Vec3 tints[] = {colour(0x2A7AC0), colour(0xE0B02A), colour(0xC83A6A), colour(0x3A9A5A)};
            const int i = nearestCandle(p);
            return {.colour = mix(colour(0xF6F0E6), tints[i % 4], smoothStep(-0.1F, 0.1F, twist)),
                    .shine = 0.3F,
                    .sharpness = 30,
                    .sheer = 0.3F,
                    .glow = colour(0xFFB060) * (0.45F * smoothStep(Top + 0.35F, Top + 0.6F, p.y))};
        }
        case Wick:
            return {.colour = colour(0x16120F)};
        case Flame: {
            const float up = (p.y - Top - 0.62F) / 0.26F;
            return {.colour = {},
                    .glow = mix(mix(colour(0x4A6AE0) * 0.8F, colour(0xFFE890) * 3.2F, smoothStep(0.0F, 0.35F, up)),
                                colour(0xFF8A1A) * 2.2F, smoothStep(0.55F, 1.0F, up))};
        }
        case Sprinkle: {
            const float id = cells(std::atan2(p.z, p.x) * 9, p.y * 8).id;
            constexpr std::array tints{0xE8384AU, 0x2A8AD0U, 0xF0C02AU, 0x3AA85AU, 0x9A4AC0U};
            return {.colour = colour(tints[static_cast<size_t>(id * 4.99F)]), .shine = 0.4F};
        }
        default: {
            const float check =
                0.5F * (smoothStep(-0.03F, 0.03F, std::sin(p.x * 8)) + smoothStep(-0.03F, 0.03F, std::sin(p.z * 8)));
            return {.colour = mix(colour(0xF2EFE8), colour(0x8AB0C8), check) *
                              (0.94F + 0.06F * std::sin(p.x * 190) * std::sin(p.z * 190))};
        }
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float side = std::atan2(d.x, std::max(std::fabs(d.z), 0.05F));
        Vec3 light = mix(colour(0xC8B49A), colour(0xE4D8C4), smoothStep(-0.3F, 0.1F, d.y));
        static const std::array tints{colour(0xFFE0A0), colour(0xF8B0B8), colour(0xA8D0F0)};
        return light * 0.85F + bokeh(side * 8, d.y * 8 + 2, tints, 0.45F) * 0.35F;
    }

    float grain(int material, Vec3 p) const override {
        return material == Icing ? 0.010F * fbm(p * 6, 3) : material == Sponge ? 0.02F * fbm(p * 22, 3) : 0.0F;
    }

  private:
    static void cup(Vec3 p, Hit &hit) {
        const float far = length(p - Vec3{0, 0.35F, 0}) - 0.8F;
        if (far > 0.3F) {
            hit.join(far, Stand);
            return;
        }
        float d = cone(p, 0.26F, 0.40F, 0.62F) - 0.02F;
        d = carve(d, cone(p - Vec3{0, 0.08F, 0}, 0.22F, 0.38F, 0.7F), 0.02F);
        d = std::min(d, ringZ(p - Vec3{0.42F, 0.33F, 0}, 0.17F, 0.035F));
        hit.join(d * 0.8F, Stand);
    }

    static float plate(Vec3 p) {
        const float out = length(p.x, p.z);
        return std::max(std::fabs(p.y - 0.10F * smoothStep(0.42F, 0.75F, out)) - 0.022F, out - 0.78F) * 0.8F;
    }

    static void cake(Vec3 p, Hit &hit) {
        const float out = length(p.x, p.z);
        const float angle = std::atan2(p.z, p.x);
        float stand = rodY(p - Vec3{0, -0.10F, 0}, 1.62F, 0.035F, 0.03F);
        stand = blend(stand, cone(p - Vec3{0, -0.53F, 0}, 0.6F, 0.16F, 0.42F), 0.12F);
        hit.join(stand, Stand);
        // Two layers of sponge with cream between, and a smaller tier on top.
        const float crumbs = 0.03F * (fbm(p * 9, 3) - 0.5F);
        hit.join((rodY(p - Vec3{0, 0.28F, 0}, 1.28F, 0.33F, 0.05F) + crumbs) * 0.85F, Sponge);
        const float cream = rodY(p - Vec3{0, 0.25F, 0}, 1.31F + 0.02F * std::sin(angle * 19), 0.07F, 0.06F);
        hit.join((cream - 0.015F * noise(p * 7)) * 0.8F, Icing);
        hit.join((rodY(p - Vec3{0, 0.90F, 0}, 0.80F, 0.26F, 0.06F) + 0.01F * fbm(p * 5, 3)) * 0.9F, Icing);
        // Chocolate runs down from both edges in drops of different length.
        for (const auto &[r, y, longest] : {std::tuple{1.285F, 0.60F, 0.26F}, {0.805F, 1.15F, 0.22F}}) {
            const float count = r * 15;
            const int i = static_cast<int>(std::round(angle / (2 * Pi) * std::floor(count)));
            const float turn = static_cast<float>(i) * 2 * Pi / std::floor(count);
            const float reach = longest * (0.35F + 0.65F * hash((i + 200) % static_cast<int>(count), 4));
            const float across = repeat(angle - turn, 2 * Pi) * r;
            float drip = rodY(p - Vec3{0, y, 0}, r + 0.025F, 0.045F, 0.04F);
            const float down = std::clamp(y - p.y, 0.0F, reach);
            drip = blend(drip, length({across, p.y - y + down, out - r}) - mix(0.045F, 0.062F, down / reach), 0.06F);
            hit.join(drip * 0.7F, Chocolate);
        }
        // Rosettes of cream round the foot.
        const float slice = 2 * Pi / 26;
        const float near = repeat(angle, slice);
        const Vec3 rose{1.38F - out * std::cos(near), p.y + 0.0F, out * std::sin(near)};
        const float swirl = 0.022F * std::sin(5 * std::atan2(rose.z, rose.x) + rose.y * 26);
        hit.join((ellipsoid(rose, {0.135F, 0.14F, 0.14F}) + swirl) * 0.7F, Icing);
        const Vec3 upper{0.88F - out * std::cos(repeat(angle, 2 * Pi / 18)), p.y - 0.66F,
                         out * std::sin(repeat(angle, 2 * Pi / 18))};
        hit.join((ellipsoid(upper, {0.11F, 0.10F, 0.12F}) +
                  0.018F * std::sin(5 * std::atan2(upper.z, upper.x) + upper.y * 30)) *
                     0.7F,
                 Icing);
        // Sprinkles on the upper tier's side.
        const Cell one = cells(angle * 9, p.y * 8, 0.7F);
        const float lean = 3 * one.id;
        const float u = one.dx / 9 * 0.8F;
        const float v = one.dy / 8;
        const float a = std::fabs(u * std::cos(lean) + v * std::sin(lean));
        const float b = u * std::sin(lean) - v * std::cos(lean);
        const float grain = length({std::max(a - 0.03F, 0.0F), b, out - 0.80F}) - 0.013F;
        hit.join(std::max(std::min(grain, 0.03F), std::fabs(p.y - 0.93F) - 0.16F) * 0.7F, Sprinkle);
    }

    static Vec3 berryAt(int i) {
        const float a = 2 * Pi * static_cast<float>(i) / Berries + 0.2F;
        return {1.04F * std::cos(a), 0.78F, 1.04F * std::sin(a)};
    }

    static void fruit(Vec3 p, Hit &hit) {
        for (int i = 0; i <= Berries; ++i) {
            const Vec3 at = i < Berries ? berryAt(i) : Vec3{0, Top + 0.15F, 0};
            const Vec3 q = turnY(p - at, 1.9F * static_cast<float>(i));
            const float far = length(q) - 0.3F;
            if (far > 0.1F) {
                hit.join(far, Berry);
                continue;
            }
            const float taper = q.y * 0.35F; // narrower towards the tip, which points up
            float d = ellipsoid({q.x * (1 + taper), q.y, q.z * (1 + taper)}, {0.165F, 0.20F, 0.165F});
            const float angle = std::atan2(q.z, q.x);
            const Cell seed = cells(angle * 2.6F, q.y * 15 + 3, 0.3F);
            d += 0.012F * smoothStep(0.3F, 0.05F, seed.distance);
            hit.join(d * 0.75F, Berry);
            const float leaf = std::max(std::fabs(q.y + 0.155F - 0.25F * length(q.x, q.z)) - 0.012F,
                                        length(q.x, q.z) - 0.13F - 0.09F * std::cos(angle * 6));
            hit.join(leaf * 0.6F, Leaf);
        }
    }

    static Surface berry(Vec3 p, Vec3) {
        Vec3 q = p - Vec3{0, Top + 0.15F, 0};
        for (int i = 0; i < Berries; ++i) {
            const Vec3 r = turnY(p - berryAt(i), 1.9F * static_cast<float>(i));
            if (length(r) < 0.3F) {
                q = r;
            }
        }
        const Cell seed = cells(std::atan2(q.z, q.x) * 2.6F, q.y * 15 + 3, 0.3F);
        Vec3 look = mix(colour(0xA80E14), colour(0xD8221E), smoothStep(-0.15F, 0.1F, q.y));
        look = mix(look, colour(0xE8B84A), 0.9F * smoothStep(0.22F, 0.12F, seed.distance));
        return {.colour = look, .shine = 0.6F, .sharpness = 45, .mirror = 0.03F, .sheer = 0.08F};
    }

    static Vec3 candleAt(int i) {
        const float a = 2 * Pi * (static_cast<float>(i) + 0.3F) / Candles;
        return {0.52F * std::cos(a), Top, 0.52F * std::sin(a)};
    }
    static int nearestCandle(Vec3 p) {
        int best = 0;
        for (int i = 1; i < Candles; ++i) {
            if (length(p - candleAt(i)) < length(p - candleAt(best))) {
                best = i;
            }
        }
        return best;
    }

    static void candles(Vec3 p, Hit &hit) {
        const Vec3 q = p - candleAt(nearestCandle(p));
        hit.join(rodY(q - Vec3{0, 0.25F, 0}, 0.05F, 0.3F, 0.015F), Candle);
        hit.join(stick(q, {0, 0.55F, 0}, {0.006F, 0.63F, 0}, 0.009F), Wick);
        const float up = (q.y - 0.62F) / 0.26F;
        const float wide = 0.058F * std::sqrt(std::max(0.02F, clamp01(up + 0.06F))) * (1.15F - clamp01(up));
        hit.join(std::max(length(q.x - 0.012F * std::sin(up * 3), q.z) - wide, std::fabs(up - 0.47F) * 0.26F - 0.135F) *
                     0.6F,
                 Flame);
    }
};

} // namespace

std::unique_ptr<Scene> cake() {
    return std::make_unique<Cake>();
}

} // namespace lumora::samples
