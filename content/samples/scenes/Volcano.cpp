// A volcano at dusk: lava runs down its flanks, the smoke glows from below, a lake mirrors it; campers watch.
#include "Scenes.h"

#include "Landforms.h"
#include "Noise.h"
#include "Shapes.h"

namespace lumora::samples {

namespace {

enum Material { Ground, Tent, Pole, Trousers, Boots, Jacket, Skin, Hair, Hat, Pack, Bedroll };

constexpr float PeakX = 2.2F;
constexpr float PeakZ = 27;
constexpr float Peak = 11.0F;
constexpr Vec3 TentAt{-1.5F, 0.13F, 0.75F};

class Volcano : public Scene {
  public:
    Volcano() {
        camera = {{0, 0.95F, -3.2F}, {0.45F, 3.5F, 12}, 1.45F};
        sunDirection = normalise({-0.9F, 0.2F, -0.1F});
        sunColour = {1.35F, 0.62F, 0.5F};
        skyLight = {0.16F, 0.17F, 0.31F};
        groundLight = {0.06F, 0.03F, 0.03F};
        farthest = 75;
        ceiling = 12;
        caution = 0.55F;
        steps = 230;
        shadowReach = 8;
        shadowSoftness = 10;
        creviceSize = 0.25F;
        waterLevel = 0;
        waterColour = {0.006F, 0.012F, 0.03F};
        bloom = 0.3F;
        exposure = 1.05F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        if (p.z < 5) {
            hit.join((p.y - shore(p.x, p.z)) * 0.9F, Ground);
            camp(p, hit);
        } else {
            const float r = length(p.x - PeakX, p.z - PeakZ);
            const float above = p.y - (Peak + 1) * std::exp(-0.16F * std::max(0.0F, r - 1)) - 1.3F;
            hit.join(above > 0.3F ? above : p.y - mountain(p.x, p.z), Ground);
        }
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        if (material >= Trousers) {
            constexpr unsigned clothes[] = {0x35415E, 0x4A3020, 0xE8B020, 0xC98A62,
                                            0x3A2418, 0xC8352A, 0x2F62B8, 0x6A8A4A};
            const Vec3 cloth = colour(clothes[material - Trousers]);
            // Some of the tent's light reaches whoever stands beside it.
            const float lamp = smoothStep(0.25F, -0.6F, n.x) * 0.14F;
            return {.colour = cloth * mix(0.8F, 1.1F, fbm(p * 60, 3)),
                    .glow = cloth * (Vec3{1.3F, 0.8F, 0.5F} * lamp + Vec3{0.07F, 0.07F, 0.09F})};
        }
        if (material == Tent) {
            // A lamp stands inside: brightest low in the middle, darker at the seams.
            const Vec3 q = turnY(p - TentAt, 0.5F);
            const float lamp = std::exp(-2.6F * length({q.x, q.y - 0.15F, 0.6F * q.z}));
            const float seam = smoothStep(0.0F, 0.02F, std::fabs(repeat(std::atan2(q.z, q.x), Pi / 3)) * 0.4F);
            const Vec3 cloth = std::fabs(repeat(std::atan2(q.z, q.x) + 0.5F, 2 * Pi / 3)) < Pi / 6 ? colour(0xFF9A1E)
                                                                                                   : colour(0xFF4A1E);
            const Vec3 door = turnY(q, 0.9F);
            const bool zip = door.z < 0 && std::fabs(std::fabs(door.x) -
                                                     0.2F * std::sqrt(std::max(0.0F, 1 - 5 * q.y * q.y))) < 0.007F;
            const float weave = 0.85F + 0.3F * fbm(q * 9, 3);
            return {.colour = cloth * 0.5F,
                    .glow = cloth * ((0.10F + 2.4F * lamp * lamp + 0.5F * lamp) * weave * mix(0.35F, 1.0F, seam) *
                                     (zip ? 0.3F : 1.0F))};
        }
        if (material == Pole) {
            return {.colour = colour(0x1A1A20)};
        }
        return p.z < 5 ? nearGround(p) : slope(p, n);
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.45F);
        const float west = 0.5F - 0.5F * d.x;
        Vec3 light = mix(mix(colour(0xC2566A), colour(0xFF9A54), west * west),
                         mix(colour(0x5B3A8E), colour(0x9A4A92), west), smoothStep(0, 0.32F, up));
        light = mix(light, colour(0x141B52), smoothStep(0.2F, 0.75F, up));
        const float reach = 1 / (d.y + 0.1F);
        const float veil = fbm(d.x * reach * 1.1F + 3, d.z * reach * 2.2F + 1, 6);
        light = mix(light, colour(0xFF8E78) * 0.8F,
                    0.7F * smoothStep(0.52F, 0.78F, veil) * smoothStep(0.4F, 0.05F, d.y) * smoothStep(0, 0.06F, d.y));
        const Cell star = cells(d.x / (d.z + 0.6F) * 62, d.y / (d.z + 0.6F) * 62);
        const float twinkle =
            smoothStep(0.075F, 0.02F, star.distance) * smoothStep(0.72F, 1.1F, star.id) * smoothStep(0.25F, 0.6F, up);
        return light + colour(0xDCE6FF) * (1.3F * twinkle);
    }

    float grain(int material, Vec3 p) const override {
        if (material != Ground) {
            return 0;
        }
        return p.z > 5 ? 0.05F * ridged(p.x * 3.1F, p.z * 3.1F + p.y, 4) : 0.006F * fbm(p.x * 40, p.z * 40, 3);
    }

    Vec3 waterNormal(Vec3 p, float distance) const override {
        const float wave = 0.02F / (1 + 0.06F * distance);
        const auto height = [](float x, float z) { return fbm(x * 1.5F, z * 4.0F, 3) + 0.3F * noise(x * 8, z * 16); };
        const float e = 0.03F;
        const float here = height(p.x, p.z);
        return normalise(
            {wave * (here - height(p.x + e, p.z)) / e * 0.3F, 1, wave * (here - height(p.x, p.z + e)) / e * 0.5F});
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        const bool solid = distance < farthest - 1;
        light = haze(light, *this, d, solid ? distance : 0.0F, 120, colour(0x6A4A86) * 0.7F, colour(0xFF9A70));
        light = smoke(light, from, d, solid ? distance : 200.0F);
        return light + fountain(from, d, distance);
    }

  private:
    struct Lava {
        float heat;  ///< 1 in the middle of a stream, 0 outside
        float light; ///< what falls on the ground beside it
    };
    /// Streams start in the breach of the crater, wander, fork and cool.
    static Lava lava(float x, float z) {
        constexpr float streams[][3] = {
            {-0.62F, 0.9F, 6.5F}, {-0.2F, 1.35F, 13.5F}, {0.16F, 1.0F, 9.5F}, {0.55F, 0.8F, 5.2F}};
        const float r = length(x - PeakX, z - PeakZ);
        const float a = std::atan2(x - PeakX, PeakZ - z);
        Lava found{0, 0};
        if (r > 14) {
            return found;
        }
        for (int i = 0; i < 4; ++i) {
            const auto &[angle, thick, length] = streams[i];
            const auto k = static_cast<float>(i);
            const float path = angle * smoothStep(0, 1.6F, r) + 0.34F * (noise(r * 0.62F, k * 7) - 0.5F) +
                               0.1F * (noise(r * 1.9F, k * 9) - 0.5F);
            float off = std::fabs(a - path) * r;
            if (i == 1 && r > 4.5F) { // forks and joins again
                off = std::min(off, std::fabs(a - path - 0.16F * std::sin((r - 4.5F) * 0.5F)) * r);
            }
            const float wide =
                thick * (0.07F + 0.12F * noise(r * 1.3F, k + 3)) * (1 + 0.07F * r) * smoothStep(length, length - 2, r);
            const float cool = smoothStep(length, length * 0.3F, r);
            found.heat = std::max(found.heat, smoothStep(wide, wide * 0.3F, off) * (0.45F + 0.55F * cool));
            found.light = std::max(found.light, std::exp(-1.5F * std::max(0.0F, off - wide)) * cool);
        }
        const float crater = smoothStep(1.2F, 0.7F, r);
        return {std::max(found.heat, crater), std::max(found.light, smoothStep(2.4F, 0.8F, r))};
    }

    static float mountain(float x, float z) {
        const float r = length(x - PeakX, z - PeakZ);
        const float a = std::atan2(x - PeakX, PeakZ - z);
        const float beach = smoothStep(9.5F, 14.5F, z + 2.2F * noise(x * 0.3F, 4) + 0.02F * x * x);
        float ground = -0.3F + beach * (0.3F + 2.4F * fbm(x * 0.16F + 6, z * 0.16F, 4) * fbm(x * 0.3F, z * 0.3F, 3));
        // The cone: steeper towards the top, furrowed by rain, the crater broken out towards the lake.
        const float furrows = ridged(a * 4.6F + 0.5F * noise(x * 0.4F, z * 0.4F), r * 0.22F + 2, 5);
        const float flank = std::exp(-0.19F * std::max(0.0F, r - 0.9F)) - 0.045F;
        float cone = Peak * flank + (furrows - 0.55F) * 1.1F * smoothStep(0.3F, 3.5F, r) * smoothStep(0, 0.35F, flank);
        const float beside = length(x - PeakX - 5.4F, (z - PeakZ - 1) * 0.9F);
        cone = -blend(-cone, 0.3F - 0.5F * furrows - 4.4F * std::exp(-0.3F * beside), 1.0F);
        cone += 0.5F * (worn(x * 1.1F, z * 1.1F, 4) - 0.5F) * smoothStep(-0.1F, 0.3F, flank);
        const float rim = 0.9F * smoothStep(1.25F, 0.3F, r) * (1 + 0.4F * smoothStep(0.6F, 0.1F, std::fabs(a)));
        cone += 0.5F * (noise(a * 3, 5) - 0.5F) * smoothStep(2, 1, r) - rim -
                0.4F * smoothStep(0.55F, 0.15F, std::fabs(a)) * smoothStep(2.2F, 1.0F, r);
        ground = std::max(ground, beach * (cone + 0.4F) - 0.25F);
        const float distant = smoothStep(34, 48, z) * 4.2F * ridged(x * 0.07F + 5, z * 0.07F, 4);
        ground = std::max(ground, distant);
        const float wood =
            smoothStep(0.0F, 0.15F, ground) * smoothStep(2.3F, 1.3F, ground + 0.8F * noise(x * 0.7F, z * 0.7F));
        if (wood > 0) {
            const Cell tree = cells(x * 4.2F, z * 4.2F);
            ground += wood * (0.2F + 0.32F * tree.id) * std::max(0.0F, 1 - tree.distance * 1.7F);
        }
        return ground;
    }

    static Surface slope(Vec3 p, Vec3 n) {
        const float rough = fbm(p.x * 1.7F, p.z * 1.7F, 5);
        Vec3 rock = mix(colour(0x2A2228), colour(0x6A5450), rough);
        rock = mix(rock, colour(0x7A3A2C), smoothStep(0.5F, 0.75F, fbm(p.x * 0.5F, p.z * 0.5F, 4)) * 0.6F);
        rock = mix(rock, colour(0x8E8288), 0.6F * smoothStep(0.62F, 0.85F, n.y) * smoothStep(3, 6, p.y));
        const float wood = smoothStep(1.9F, 1.2F, p.y + 0.6F * rough);
        rock = mix(rock, mix(colour(0x10201C), colour(0x2C4A30), noise(p.x * 8, p.z * 8)), wood);
        const Lava stream = lava(p.x, p.z);
        // Crust swims on the stream: dark plates, bright cracks.
        const float plates = cells(p.x * 7 + 2 * noise(p.x * 3, p.z * 3), p.z * 4, 0.9F).distance;
        const float heat =
            stream.heat * (0.35F + 0.9F * smoothStep(0.15F, 0.6F, plates) + 0.5F * (fbm(p.x * 4, p.z * 4, 3) - 0.5F));
        const Vec3 fire = Vec3{3.6F, 0.62F, 0.05F} * smoothStep(0.05F, 0.5F, heat) +
                          Vec3{3.0F, 2.2F, 0.5F} * smoothStep(0.5F, 1.15F, heat);
        return {.colour = rock,
                .glow = fire + rock * Vec3{2.4F, 0.6F, 0.12F} * (0.8F * stream.light * smoothStep(1.0F, 3.5F, p.y))};
    }

    /// Black sand and stones.
    static float shore(float x, float z) {
        const float edge = 0.75F + 0.35F * std::sin(x * 0.8F + 1) + 0.5F * noise(x * 0.8F, 3) -
                           0.75F * smoothStep(-0.8F, 1.4F, x) + 1.2F * smoothStep(1.8F, 4, x);
        float ground = 0.17F * smoothStep(edge + 0.5F, edge - 1.2F, z) - 0.08F -
                       0.3F * smoothStep(edge, edge + 2.5F, z) + 0.05F * fbm(x * 2, z * 2, 3);
        const float camp = smoothStep(0.45F, 0.6F, length(x - TentAt.x, z - TentAt.z));
        const Cell big = cells(x * 1.5F + 0.3F, z * 1.5F, 0.7F);
        const Cell small = cells(x * 5.5F, z * 5.5F, 0.8F);
        const float rock =
            std::sqrt(std::max(0.0F, 1 - 6.5F * big.distance * big.distance)) * smoothStep(0.5F, 0.9F, big.id) * 0.24F;
        const float pebble =
            std::sqrt(std::max(0.0F, 1 - 6 * small.distance * small.distance)) * (0.02F + 0.06F * small.id * small.id);
        return ground + camp * std::max(rock * (0.8F + 0.4F * noise(x * 6, z * 6)), pebble);
    }

    static Surface nearGround(Vec3 p) {
        const float wet = smoothStep(0.07F, 0.0F, p.y);
        const Vec3 stone = mix(colour(0x2A282E), colour(0x6E666C), fbm(p * 7, 4));
        const float lamp = std::exp(-2.2F * length(p - TentAt)) * 3.2F;
        return {.colour = stone * mix(1.0F, 0.5F, wet),
                .shine = 0.3F * wet,
                .glow = stone * Vec3{2.6F, 0.9F, 0.25F} * lamp};
    }

    static void camp(Vec3 p, Hit &hit) {
        const Vec3 q = p - TentAt;
        const float near = length(q) - 1.2F;
        if (near > 0.3F) {
            hit.join(near, Tent);
            return;
        }
        const Vec3 t = turnY(q, 0.5F);
        const float lobes = 0.025F * std::cos(6 * std::atan2(t.z, t.x));
        hit.join(0.7F * std::max(ellipsoid(t, {0.5F - lobes, 0.44F, 0.5F - lobes}), -t.y - 0.1F), Tent);
        camper(turnY(q - Vec3{0.78F, -0.04F, -0.05F}, Pi + 0.25F) * (1 / 0.48F), 0.48F, hit);
    }

    /// Somebody with a pack who looks along -z and points at the fire, one unit tall, feet at the origin.
    static void camper(Vec3 p, float size, Hit &hit) {
        const float near = box(p - Vec3{0, 0.5F, 0}, {0.5F, 0.55F, 0.3F});
        if (near > 0.2F) {
            hit.join(near * size, Trousers);
            return;
        }
        const Vec3 q{std::fabs(p.x), p.y, p.z};
        const Vec3 leg = p.x > 0 ? q : q - Vec3{0.01F, 0, 0.035F}; // one foot a little forward
        const float sole = box(leg - Vec3{0.075F, 0.012F, -0.022F}, {0.04F, 0.014F, 0.075F}, 0.012F);
        const float boot = blend(ellipsoid(leg - Vec3{0.075F, 0.035F, -0.03F}, {0.038F, 0.034F, 0.066F}),
                                 stick(leg, {0.073F, 0.05F, 0.01F}, {0.072F, 0.11F, 0.005F}, 0.038F), 0.03F);
        hit.join(std::min(sole, boot) * size, Boots);
        const float shin = stick(leg, {0.072F, 0.1F, 0.005F}, {0.066F, 0.27F, -0.012F}, 0.041F, 0.046F);
        const float thigh = stick(leg, {0.066F, 0.27F, -0.012F}, {0.052F, 0.47F, 0.0F}, 0.046F, 0.062F);
        const float seat = ellipsoid(p - Vec3{0, 0.48F, 0.008F}, {0.105F, 0.07F, 0.078F});
        hit.join(blend(blend(shin, thigh, 0.03F), seat, 0.05F) * size * 0.9F, Trousers);
        // Jacket: chest, shoulders, its hem, the collar.
        const float chest = ellipsoid(p - Vec3{0, 0.63F, 0}, {0.112F, 0.17F, 0.08F});
        const float shoulders = stick(q, {0, 0.76F, 0.005F}, {0.1F, 0.745F, 0.005F}, 0.052F, 0.048F);
        float jacket = blend(chest, shoulders, 0.06F);
        jacket = std::min(jacket, rod(length(p.x, p.z * 1.35F), p.y - 0.5F, 0.112F, 0.03F, 0.02F));
        jacket = std::min(jacket, rod(length(p.x, p.z - 0.003F), p.y - 0.815F, 0.048F, 0.018F, 0.012F));
        // One arm hangs, the other one is raised.
        const Vec3 elbow{0.152F, 0.6F, 0.01F};
        const Vec3 wrist{0.158F, 0.485F, -0.035F};
        const Vec3 raised{-0.22F, 0.78F, -0.07F};
        const Vec3 pointing{-0.315F, 0.9F, -0.12F};
        const float hanging =
            blend(stick(p, {0.112F, 0.745F, 0}, elbow, 0.044F, 0.036F), stick(p, elbow, wrist, 0.036F, 0.03F), 0.02F);
        const float lifted = blend(stick(p, {-0.112F, 0.745F, 0}, raised, 0.044F, 0.036F),
                                   stick(p, raised, pointing, 0.036F, 0.029F), 0.02F);
        hit.join(blend(jacket, std::min(hanging, lifted), 0.03F) * size * 0.9F, Jacket);
        const Vec3 out = normalise(pointing - raised);
        const float hand = blend(
            ellipsoid(p - wrist + Vec3{0, 0.04F, 0.008F}, {0.02F, 0.034F, 0.026F}),
            stick(p, wrist + Vec3{-0.01F, -0.03F, -0.02F}, wrist + Vec3{-0.012F, -0.055F, -0.03F}, 0.009F), 0.01F);
        const float finger = blend(sphere(p - pointing - out * 0.03F, 0.026F),
                                   stick(p, pointing + out * 0.04F, pointing + out * 0.085F, 0.009F, 0.007F), 0.012F);
        // Neck, head, ears.
        const Vec3 head = p - Vec3{0, 0.895F, -0.008F};
        const float face =
            blend(ellipsoid(head, {0.058F, 0.07F, 0.066F}), rodY(p - Vec3{0, 0.82F, 0}, 0.03F, 0.04F, 0.01F), 0.02F);
        const float ear =
            ellipsoid(Vec3{std::fabs(head.x) - 0.059F, head.y + 0.005F, head.z - 0.005F}, {0.01F, 0.018F, 0.013F});
        hit.join(std::min({hand, finger, face, ear}) * size * 0.9F, Skin);
        const float locks = 0.004F * std::sin(60 * std::atan2(head.x, head.z)) * smoothStep(0.02F, -0.04F, head.y);
        hit.join(std::max({ellipsoid(head - Vec3{0, 0.004F, 0.008F}, {0.064F, 0.072F, 0.068F}) - locks,
                           -0.012F - head.z + 0.25F * head.y, -head.y - 0.045F}) *
                     size * 0.8F,
                 Hair);
        // Hat with a brim that dips in front and behind.
        const Vec3 hat = head - Vec3{0, 0.034F, 0};
        const float rim = length(hat.x, hat.z);
        const float brim =
            std::max(rim - 0.115F, std::fabs(hat.y + 0.9F * hat.z * hat.z - 0.6F * hat.x * hat.x) - 0.006F);
        const float crown = std::max(ellipsoid(hat, {0.066F, 0.068F, 0.07F}), -hat.y);
        hit.join(blend(brim, crown, 0.012F) * size * 0.8F, Hat);
        // Pack with a pocket and straps, the bedroll on top.
        float pack = box(p - Vec3{0, 0.635F, 0.115F}, {0.088F, 0.125F, 0.052F}, 0.035F);
        pack = std::min(pack, box(p - Vec3{0, 0.585F, 0.165F}, {0.06F, 0.055F, 0.022F}, 0.018F));
        pack = std::min(pack, ringZ({q.y - 0.66F, q.z - 0.02F, q.x - 0.075F}, 0.098F, 0.011F));
        hit.join(pack * size, Pack);
        hit.join(std::max(rodX(p - Vec3{0, 0.795F, 0.115F}, 0.04F, 0.115F, 0.012F),
                          0.004F - std::fabs(std::fabs(p.x) - 0.06F)) *
                     size,
                 Bedroll);
    }

    /// Rounded lumps with creases between them, as smoke boils up.
    static float billows(Vec3 p, int octaves) {
        float sum = 0;
        float height = 0.5F;
        for (int i = 0; i < octaves; ++i, height *= 0.5F) {
            sum += height * std::fabs(2 * noise(p) - 1);
            p = {1.6F * p.x + 1.2F * p.z + 17.3F, 2.02F * p.y + 3.7F, 1.6F * p.z - 1.2F * p.x + 9.1F};
        }
        return sum;
    }

    static float smokeRadius(float h) { return 0.6F + 0.42F * std::max(h, 0.0F); }

    /// A column of smoke that widens and leans with the wind.
    static float smokeDensity(Vec3 p, int octaves) {
        const float h = p.y - Peak + 0.6F;
        const float radius = smokeRadius(h);
        const Vec3 q{p.x - PeakX + 0.2F * h * std::sqrt(std::max(h, 0.0F)), 0, p.z - PeakZ};
        const float off = length(q) / radius;
        if (h < 0 || off > 1.5F) {
            return 0;
        }
        // The lumps grow with the column.
        const Vec3 within{q.x / radius * 1.25F + 5, std::log(radius) * 3.1F, q.z / radius * 1.25F + 9};
        return clamp01((0.72F - off + 1.5F * billows(within * 1.25F, octaves)) * 1.7F) * smoothStep(0, 0.5F, h);
    }

    /// Fire lights the smoke from below, the last of the day from the left.
    Vec3 smoke(Vec3 light, Vec3 from, Vec3 d, float distance) const {
        const float middle = (PeakZ - from.z) / std::max(d.z, 0.05F); // the ray is near the column's upright plane
        const Vec3 centre = from + d * middle;
        if (centre.y < Peak - 2 || d.z < 0.05F || centre.x > PeakX + 8) {
            return light;
        }
        const float half = 1.5F * smokeRadius(centre.y - Peak + 2);
        const float step = half / 28;
        const float end = std::min(distance, middle + half);
        float clear = 1;
        Vec3 sum;
        for (float t = middle - half; t < end && clear > 0.03F; t += step) {
            const Vec3 p = from + d * t;
            const float here = smokeDensity(p, 5);
            if (here < 0.01F) {
                continue;
            }
            const float h = p.y - Peak + 0.6F;
            const float reach = smokeRadius(h);
            const Vec3 west = Vec3{-0.75F, 0.45F, -0.45F} * reach;
            const float shadow =
                smokeDensity(p + west * 0.22F, 4) + smokeDensity(p + west * 0.5F, 3) + smokeDensity(p + west * 0.9F, 2);
            const float below = smokeDensity(p + Vec3{0.1F, -0.4F, -0.15F} * reach, 3);
            const Vec3 fire = Vec3{3.2F, 0.62F, 0.1F} *
                              ((1.3F * std::exp(-0.55F * h) + 0.10F * std::exp(-0.16F * h)) * std::exp(-1.3F * below));
            const Vec3 dusk = mix(colour(0x2A2650) * 0.42F, colour(0xFF9C8C) * 0.85F, std::exp(-1.25F * shadow));
            const float kept = std::exp(-here * 7 * step / reach);
            sum += (dusk + fire) * (clear * (1 - kept));
            clear *= kept;
        }
        return light * clear + sum;
    }

    /// Glowing stones thrown up above the crater, and the shine around them.
    static Vec3 fountain(Vec3 from, Vec3 d, float distance) {
        const float t = (PeakZ - 0.6F - from.z) / std::max(d.z, 0.05F);
        if (t > distance || d.z < 0.05F) {
            return {};
        }
        const Vec3 p = from + d * t;
        const float x = p.x - PeakX;
        const float h = p.y - Peak + 0.75F;
        Vec3 light = Vec3{2.2F, 0.55F, 0.1F} * (0.55F * std::exp(-0.5F * (x * x + h * h)));
        if (h > 0 && h < 3.2F) {
            const float fan = smoothStep(1.2F, 0.2F, std::fabs(x) / (0.35F + 0.75F * h - 0.12F * h * h));
            const Cell spark = cells(x * 11, h * 6.5F, 0.9F);
            const float drop = smoothStep(0.2F, 0.05F, length(spark.dx, spark.dy * 0.55F)) *
                               smoothStep(0.25F + 0.22F * h, 1, spark.id);
            const float jet = std::exp(-14 * x * x / (0.15F + 0.4F * h)) * std::exp(-1.5F * h);
            light += Vec3{4.5F, 1.7F, 0.35F} * (fan * drop + jet * (0.4F + 0.8F * fbm(x * 9, h * 4, 3)));
        }
        return light;
    }
};

} // namespace

std::unique_ptr<Scene> volcano() {
    return std::make_unique<Volcano>();
}

} // namespace lumora::samples
