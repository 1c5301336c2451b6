// A chalk coast at noon: white cliffs, a sea arch and a stack, surf on the beach, sea pinks on the cliff top.
#include "Scenes.h"

#include "Landforms.h"
#include "Noise.h"
#include "Shapes.h"

namespace lumora::samples {

namespace {

enum Material { Chalk, Bed, Meadow, Stem, Petals, Kayak, Paddle, Hull, Sail, Paddler };

constexpr Vec3 KayakAt{-1.1F, 0, 3.6F};
constexpr Vec3 BoatAt{-4.9F, 0, 13.0F};

class ChalkCoast : public Scene {
  public:
    ChalkCoast() {
        camera = {{-0.4F, 3.0F, -4.2F}, {0.3F, 1.1F, 6}, 1.4F};
        sunDirection = normalise({-0.76F, 0.52F, -0.14F});
        sunColour = {3.0F, 2.85F, 2.6F};
        skyLight = {0.30F, 0.42F, 0.66F};
        groundLight = {0.20F, 0.24F, 0.22F};
        farthest = 90;
        ceiling = 4.6F;
        caution = 0.7F;
        steps = 500;
        shadowReach = 6;
        shadowSoftness = 26;
        creviceSize = 0.22F;
        waterLevel = 0;
        waterColour = {0.005F, 0.18F, 0.235F};
        exposure = 0.85F;
        strands = 1100000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        if (p.z < -0.6F) {
            meadow(p, hit);
        }
        hit.join(cliffs(p), Chalk);
        const float bed = seabed(p.x, p.z);
        hit.join((p.y - bed - pebbles(p, bed)) * 0.9F, Bed);
        kayak(p, hit);
        boat(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        switch (material) {
        case Chalk:
            return chalk(p, n);
        case Meadow: {
            const Vec3 grass =
                mix(colour(0x2F5A1A), colour(0x86A244), smoothStep(0.3F, 0.7F, fbm(p.x * 2.5F, p.z * 2.5F, 4)));
            return {.colour = grass * (0.6F + 0.5F * noise(p.x * 30, p.z * 30)), .sheer = 0.2F};
        }
        case Stem:
            return {.colour = colour(0x5E8A34)};
        case Petals: {
            // Light strays from floret to floret, also in the shade.
            const Vec3 pink = mix(colour(0xD8488E), colour(0xF590BE), noise(p * 60));
            return {.colour = pink, .sheer = 0.4F, .glow = pink * 0.14F};
        }
        case Kayak:
            return {.colour = colour(0xFFC40E), .shine = 0.6F, .sharpness = 60};
        case Paddle:
            return {.colour = colour(0xE8301E)};
        case Hull:
            return {.colour = p.y > 0.13F ? colour(0x8A5A30) : colour(0x1E3F7A), .shine = 0.3F};
        case Sail:
            return {.colour = colour(0xD02818) * (0.85F + 0.2F * std::sin(p.y * 40)), .sheer = 0.35F};
        case Bed:
            return bedLook(p);
        default: {
            constexpr unsigned clothes[] = {0x1E2A44, 0xE8301E, 0xD8A078, 0xFFFFFF, 0xE8301E};
            return {.colour = colour(clothes[material - Paddler])};
        }
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 2.0F);
        Vec3 light = mix(mix(colour(0xD8ECF8), colour(0x7DB9EE), smoothStep(0, 0.35F, up)), colour(0x1F64C0),
                         smoothStep(0.2F, 1, up));
        light = throughHeaps(light, d, sunDirection,
                             {.cover = 0.4F, .size = 1.2F, .shift = 21.0F, .shaded = {0.5F, 0.57F, 0.68F}});
        const float gulls = std::max(
            {bird(d, {-0.42F, 0.12F, 1}, 0.034F, 0.5F, 0.2F), bird(d, {-0.3F, 0.17F, 1}, 0.02F, 0.4F, -0.3F),
             bird(d, {-0.52F, 0.03F, 1}, 0.015F, 0.45F, -0.1F), bird(d, {-0.2F, 0.08F, 1}, 0.013F, 0.4F, 0.15F)});
        return mix(light, Vec3{1.15F, 1.15F, 1.12F}, gulls);
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Chalk:
            return 0.03F * fbm(Vec3{p.x * 7, p.y * 16, p.z * 7}, 5);
        case Bed:
            return 0.01F * fbm(p.x * 18, p.z * 18, 3);
        default:
            return 0;
        }
    }

    Vec3 waterNormal(Vec3 p, float distance) const override {
        const float calm = 1 / (1 + 0.05F * distance);
        const auto height = [](float x, float z) {
            return 0.05F * fbm(x * 0.9F + 0.3F * z, z * 2.0F, 3) + 0.006F * noise(x * 6 + z, z * 9 - x) +
                   0.0016F * noise(x * 17, z * 23);
        };
        const float e = 0.02F + 0.002F * distance;
        const float here = height(p.x, p.z);
        // Far away one sees the sides of the waves that face the eye.
        return normalise({calm * (here - height(p.x + e, p.z)) / e, 1,
                          calm * (here - height(p.x, p.z + e)) / e - 0.16F * smoothStep(3, 20, distance)});
    }

    /// Blades of grass, and the florets of the sea pinks.
    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        const float other = fraction(chance * 733);
        const float turn = 2 * Pi * fraction(chance * 331);
        const float light = 0.62F + 0.8F * fraction(chance * 4001);
        const Vec3 around{std::cos(turn), 0, std::sin(turn)};
        const float far = length(p - camera.eye);
        if (material == Petals) {
            return {.tip = normalise(n + around * 0.5F + Vec3{0, 0.3F, 0}) * (0.008F + 0.008F * other),
                    .width = 0.010F,
                    .blunt = 1,
                    .order = 100 - far,
                    .solid = 0.85F,
                    .tint = Vec3{light * 1.15F, light * (0.8F + 0.5F * other), light * 1.1F}};
        }
        if (material != Meadow) {
            return {};
        }
        const float tuft = 0.3F + noise(p.x * 4, p.z * 4);
        const Vec3 lean = around * 0.55F + Vec3{0.25F, 0, 0.1F};
        return {.tip = (Vec3{0, 1, 0} + lean) * (tuft * (0.04F + 0.05F * other)),
                .sag = lean * (-0.02F * tuft),
                .width = 0.0055F,
                .order = -far,
                .tint = {light * 1.05F, light * 0.95F, light * 0.62F}};
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        const float toWater = d.y < 0 ? -from.y / d.y : -1;
        if (toWater > 0 && std::fabs(toWater - distance) < 0.001F * distance) {
            light = mix(light, Vec3{0.92F, 0.97F, 1.0F} * 1.6F, froth(from + d * toWater));
        }
        return haze(light, *this, d, distance < farthest - 1 ? distance : 0.0F, 130, colour(0xA4CCF0),
                    colour(0xE8EEF4));
    }

  private:
    /// Where the sea meets the beach; the land lies to the right.
    static float shoreX(float z) {
        return 1.1F + 0.32F * z + 0.012F * z * z + 0.35F * std::sin(z * 0.55F + 0.6F) +
               0.3F * (noise(z * 0.7F, 3) - 0.5F);
    }

    static float seabed(float x, float z) {
        const float in = x - shoreX(z);
        return in > 0 ? 0.13F * in
                      : std::max(0.11F * in - 0.012F * in * in, -1.8F) +
                            0.1F * (fbm(x * 0.8F, z * 0.8F, 3) - 0.5F) * smoothStep(0, -1, in);
    }

    static float pebbles(Vec3 p, float bed) {
        if (bed < -0.3F || p.y > bed + 0.2F) {
            return 0;
        }
        const Cell stone = cells(p.x * 11, p.z * 11);
        return 0.035F * stone.id * stone.id * std::sqrt(std::max(0.0F, 1 - 5 * stone.distance * stone.distance));
    }

    /// White water, 0 to 1: waves that run up the beach, each with a web of foam behind its crest; wash around the
    /// rocks.
    static float froth(Vec3 p) {
        const float bed = seabed(p.x, p.z);
        const float warp = 0.35F * noise(p.x * 2.2F, p.z * 2.2F);
        const float web = ridged(p.x * 2.6F + warp, p.z * 2.6F - warp, 4);
        float foam = 0;
        if (bed > -1.0F) {
            const float place = bed + 0.16F * (fbm(p.z * 0.7F + 3, p.x * 0.5F, 3) - 0.5F);
            constexpr float Crests[] = {-0.015F, -0.2F, -0.42F};
            for (int i = 0; i < 3; ++i) {
                const float behind = Crests[i] - place;
                const float along = i == 0 ? 1.0F : smoothStep(0.35F, 0.6F, noise(p.z * 0.55F + 4.0F * i, 2.0F + i));
                const float thick = smoothStep(-0.012F, 0.004F, behind) * std::exp(-12 * std::max(0.0F, behind));
                foam = std::max(foam, thick * along);
            }
        }
        const float rock = cliffs({p.x, 0.03F, p.z});
        foam = std::max(foam, 0.9F * smoothStep(0.34F, 0.0F, rock + 0.12F * (web - 0.5F)));
        // Thick foam is closed; where it thins, holes open until only threads are left.
        return 0.92F * smoothStep(0.93F - foam, 1.4F - foam, web + 0.25F * fbm(p.x * 14, p.z * 14, 2)) *
               smoothStep(0, 0.12F, foam);
    }

    /// The headland with its arch, two stacks, the cliff behind the beach and far ones on the horizon.
    static float cliffs(Vec3 p) {
        if (p.z > 30) {
            // A chain of hills that ends in a low, broken point.
            const float out = std::max(0.0F, p.x + 13);
            const float top = 2.4F + 0.9F * std::sin(p.x * 0.42F) + 0.5F * std::sin(p.x * 0.17F + 2) -
                              0.075F * out * out + 0.25F * noise(p.x * 2, 4);
            const float half = 5 - 0.09F * out * out + 0.9F * (ridged(p.x * 0.5F, p.z * 0.3F, 4) - 0.5F);
            return std::max(std::fabs(p.z - 44) - half + 0.45F * p.y, (p.y - top) * 0.6F) * 0.8F;
        }
        const float fine = 0.16F * (fbm(Vec3{p.x * 3, p.y * 1.2F, p.z * 3}, 4) - 0.5F) +
                           0.05F * (noise(p.y * 9 + 0.3F * p.x, 1) - 0.5F);
        const float rough = 0.55F * (ridged(p.x * 0.8F + 3, p.z * 0.8F, 4) - 0.5F) + fine;
        const float lean = 0.16F * p.y;
        // The headland: a wall from the right to its tip.
        constexpr Vec3 tip{-0.35F, 0, 8.2F};
        constexpr Vec3 root{7.5F, 0, 10.8F};
        const Vec3 along = root - tip;
        const float u = ((p.x - tip.x) * along.x + (p.z - tip.z) * along.z) / dot(along, along);
        const Vec3 nearest = tip + along * clamp01(u);
        const float off = length(p.x - nearest.x, p.z - nearest.z);
        const float wide = 0.62F + 1.2F * smoothStep(0.25F, 0.8F, u);
        float d = std::max(off - wide + lean - rough,
                           p.y - 1.9F - 1.3F * smoothStep(0.0F, 0.5F, u) - 0.3F * noise(p.x * 0.8F, p.z * 0.8F));
        const float run = u * length(along) - 1.05F;
        const float hole = length(run * (p.y > 0.7F ? 1.0F : 1.15F), std::max(p.y - 0.75F, 0.0F) * 0.95F) - 0.72F -
                           0.35F * rough - 0.08F * noise(p.y * 3, p.x * 3);
        d = std::max(d, -hole);
        // Stacks: what is left of older arches.
        const float needle = length(p.x + 2.15F + 0.12F * p.y, p.z - 9.6F) - 0.52F + 0.15F * p.y - 0.6F * rough;
        d = std::min(d, std::max(needle, p.y - 2.05F - 0.4F * rough));
        const float stump = length(p.x + 3.4F, p.z - 11.6F) - 0.5F + 0.2F * p.y - 0.6F * rough;
        d = std::min(d, std::max(stump, p.y - 0.75F - 0.5F * rough));
        // The cliff behind the beach.
        const float wall = shoreX(p.z) + 1.5F - p.x + 0.28F * p.y -
                           0.9F * (ridged(p.x * 0.8F + 3, p.z * 0.8F, 2) - 0.5F) - 1.1F * fine;
        const float top = 2.9F + 0.9F * smoothStep(2, 9, p.x) + 0.3F * noise(p.x * 0.5F, p.z * 0.5F);
        return std::min(d, std::max(wall * 0.7F, p.y - top)) * 0.9F;
    }

    static Surface chalk(Vec3 p, Vec3 n) {
        const float stain = fbm(Vec3{p.x * 1.6F, p.y * 0.5F, p.z * 1.6F}, 4);
        Vec3 look = mix(colour(0xDED6C2), colour(0xB5A27C), smoothStep(0.35F, 0.72F, stain));
        // Bands of dark flint stones, a little tilted.
        const float level = p.y + 0.06F * p.x + 0.03F * noise(p.x * 2, p.z * 2);
        const float band = smoothStep(0.12F, 0.03F, std::fabs(repeat(level, 0.27F)) / 0.27F * 1.4F);
        look = mix(look, colour(0x6A6660), 0.75F * band * smoothStep(0.42F, 0.6F, noise(p * 11)));
        look = look * (0.54F + 0.34F * fbm(p * 9, 3) + 0.3F * fbm(Vec3{p.x * 22, p.y * 40, p.z * 22}, 3));
        look = mix(look, colour(0x4E5A3C), 0.8F * smoothStep(0.3F, 0.08F, p.y + 0.2F * (stain - 0.5F)));
        const float grass = smoothStep(0.5F, 0.72F, n.y + 0.3F * (fbm(p * 3, 3) - 0.5F)) * smoothStep(1.7F, 2.1F, p.y);
        const Vec3 green = mix(colour(0x4F7A24), colour(0x93AE48), fbm(p.x * 2, p.z * 2, 4)) *
                           (0.7F + 0.6F * noise(p.x * 30, p.z * 30));
        return {.colour = mix(look, green, grass)};
    }

    static Surface bedLook(Vec3 p) {
        const Cell stone = cells(p.x * 11, p.z * 11);
        Vec3 look = mix(colour(0xC4AC80), colour(0xE0CFA8), fbm(p.x * 3, p.z * 3, 3));
        look = mix(look, mix(colour(0x9A8668), colour(0xE8E0CE), fraction(stone.id * 37)),
                   0.8F * smoothStep(0.3F, 0.7F, stone.id));
        const float weed =
            smoothStep(0.52F, 0.64F, fbm(p.x * 0.55F + 8, p.z * 0.55F, 4)) * smoothStep(-0.25F, -0.6F, p.y);
        look = mix(look, colour(0x2E4A34), 0.8F * weed);
        return {.colour = look * mix(1.0F, 0.7F, smoothStep(0.1F, 0.02F, p.y) * smoothStep(-0.12F, 0.0F, p.y))};
    }

    /// The cliff top one stands on, with its flowers.
    static float knoll(float x, float z) {
        const float edge = -2.62F - 0.2F * x + 0.25F * noise(x * 1.5F, 7) - 1.1F * smoothStep(-0.3F, 1.5F, x);
        return 2.0F + 0.12F * fbm(x * 1.5F, z * 1.5F, 3) + 0.05F * x - 3.5F * smoothStep(edge, edge + 1.3F, z);
    }

    static void meadow(Vec3 p, Hit &hit) {
        const float ground = knoll(p.x, p.z);
        if (p.y > ground + 0.5F) {
            hit.join((p.y - ground) * 0.5F, Meadow);
            return;
        }
        hit.join((p.y - ground) * 0.55F, Meadow);
        const Cell cell = cells(p.x * 7, p.z * 7, 0.7F);
        if (cell.id < 0.3F || ground < 1.7F) {
            return;
        }
        const float x = cell.dx / 7;
        const float z = cell.dy / 7;
        const float tall = 0.1F + 0.13F * fraction(cell.id * 17);
        const float y = p.y - ground;
        const float lean = 0.25F * (fraction(cell.id * 53) - 0.5F) * y;
        hit.join(0.7F * std::max(length(x - lean, z) - 0.0035F, y - tall), Stem);
        const Vec3 head = Vec3{x - lean, y - tall, z};
        const float size = 0.017F + 0.006F * fraction(cell.id * 91);
        hit.join(0.7F * ellipsoid(head, {size, 0.8F * size, size}), Petals);
    }

    static void kayak(Vec3 p, Hit &hit) {
        const Vec3 q = turnY(p - KayakAt, -0.5F);
        const float near = length(q) - 0.7F;
        if (near > 0.3F) {
            hit.join(near, Kayak);
            return;
        }
        const float taper = 0.09F * std::sqrt(std::max(0.0F, 1 - q.x * q.x * 4.2F));
        const float sheer = 0.04F + 0.25F * q.x * q.x;
        hit.join(0.6F * std::max({length(q.z, (q.y - 0.02F) * 1.1F) - taper, q.y - sheer, std::fabs(q.x) - 0.48F}),
                 Kayak);
        Vec3 who = turnY(q, -Pi / 2) - Vec3{0, -0.17F, 0};
        walker(who * (1 / 0.42F), Paddler, 0.42F, hit);
        hit.join(stick(q, {0.06F, 0.08F, -0.32F}, {0.06F, 0.2F, 0.32F}, 0.009F), Paddle);
        const Vec3 blade{q.x - 0.06F, q.y - 0.14F - 0.1875F * q.z, std::fabs(q.z) - 0.32F};
        hit.join(ellipsoid(blade, {0.012F, 0.035F, 0.075F}), Paddle);
    }

    static void boat(Vec3 p, Hit &hit) {
        const Vec3 q = turnY(p - BoatAt, 0.35F);
        const float near = length(q - Vec3{0, 0.7F, 0}) - 1.2F;
        if (near > 0.3F) {
            hit.join(near, Hull);
            return;
        }
        const float wide = 0.2F * std::sqrt(std::max(0.0F, 1 - (q.x + 0.1F) * (q.x + 0.1F) * 1.9F));
        hit.join(0.6F * std::max({std::fabs(q.z) - wide + 0.25F * std::max(0.0F, 0.15F - q.y),
                                  q.y - 0.17F - 0.08F * q.x * q.x, -q.y - 0.1F, std::fabs(q.x + 0.1F) - 0.7F}),
                 Hull);
        hit.join(stick(q, {0.1F, 0.1F, 0}, {0.1F, 1.5F, 0}, 0.018F), Hull);
        const float belly = 0.12F * std::sin(clamp01((q.y - 0.25F) / 1.2F) * Pi);
        const float main = std::max(
            {std::fabs(q.z - belly) - 0.012F, q.x - 0.08F, 0.3F - q.y, (q.y - 1.48F) * 0.45F - (q.x - 0.08F) * 0.85F});
        const float jib = std::max(
            {std::fabs(q.z - belly) - 0.012F, 0.13F - q.x, 0.28F - q.y, (q.y - 1.4F) * 0.45F + (q.x - 0.13F) * 0.9F});
        hit.join(0.8F * std::min(main, jib), Sail);
    }
};

} // namespace

std::unique_ptr<Scene> chalkCoast() {
    return std::make_unique<ChalkCoast>();
}

} // namespace lumora::samples
