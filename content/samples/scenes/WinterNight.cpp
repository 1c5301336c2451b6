// A log cabin in the snow at night: warm windows, a chain of coloured lamps, northern lights over a frozen lake.
#include "Scenes.h"

#include "LogCabin.h"
#include "Noise.h"
#include "Shapes.h"

namespace lumora::samples {

namespace {

enum Material { Fir = CabinParts }; // and those of the cabin

struct Place {
    Vec3 foot;
    float size;
    float turn;
};
constexpr Place Cabins[] = {
    {{2.0F, 0.05F, 4.6F}, 1, -0.3F}, {{-4.6F, 0.7F, 17.5F}, 0.9F, 0.45F}, {{9.2F, 1.15F, 23}, 1, -0.5F}};

struct Tree {
    float x;
    float z;
    float height;
};
constexpr Tree Trees[] = {{-5.0F, 1.5F, 4.3F},  {-6.4F, 2.6F, 2.2F},  {-8.0F, 6.5F, 6.2F}, {-7.2F, 14, 6.2F},
                          {-2.6F, 13.6F, 4.4F}, {-1.3F, 13.6F, 6.4F}, {0.6F, 14.5F, 5.4F}, {5.6F, 5.4F, 4.6F},
                          {6.9F, 8.5F, 6.4F},   {4.7F, 11.5F, 5.8F},  {4.35F, 1.2F, 1.7F}, {-9.8F, 13, 6.5F},
                          {2.7F, 15, 6.6F},     {-2.75F, 1.0F, 0.95F}};

constexpr Vec3 Lanterns[] = {{-0.95F, 1.22F, -1.3F}, {2.5F, 1.25F, 0.7F}};
class WinterNight : public Scene {
  public:
    WinterNight() {
        camera = {{-0.1F, 2.15F, -6.3F}, {0.1F, 2.5F, 5}, 1.36F};
        sunDirection = normalise({-0.62F, 0.5F, -0.42F});
        sunColour = {0.34F, 0.47F, 0.78F};
        skyLight = {0.035F, 0.1F, 0.135F};
        groundLight = {0.03F, 0.05F, 0.09F};
        farthest = 95;
        ceiling = 14;
        caution = 0.8F;
        steps = 200;
        shadowReach = 9;
        shadowSoftness = 10;
        creviceSize = 0.4F;
        waterLevel = 0.06F;
        waterColour = {0.03F, 0.09F, 0.12F};
        exposure = 1.25F;
        bloom = 0.38F;
        vignette = 0.4F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        const float above = p.z > 16 ? 0.5F + 0.5F * (p.z - 13) : 1.1F;
        hit.join(p.y > above + 1 ? (p.y - above) * 0.8F : (p.y - ground(p.x, p.z)) * 0.8F, Snow);
        for (const Place &cabin : Cabins) {
            logCabin(turnY(p - cabin.foot, cabin.turn) * (1 / cabin.size), cabin.size, hit);
        }
        for (const Tree &tree : Trees) {
            hit.join(fir(p - Vec3{tree.x, 0.05F, tree.z}, tree.height), Fir);
        }
        for (const Vec3 &lantern : Lanterns) {
            post(p - lantern, hit);
        }
        sledge(turnY(p - Vec3{-1.75F, 0.32F, 0.9F}, 0.7F), hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3 d) const override {
        Surface look = bare(material, p, n, d);
        Vec3 warm;
        for (const Vec3 &lantern : Lanterns) {
            const Vec3 to = lantern - p;
            warm +=
                colour(0xFF9A3C) * (1.9F * std::max(0.0F, dot(n, normalise(to)) * 0.8F + 0.2F) / (0.25F + dot(to, to)));
        }
        // What falls out of the windows and the door lamp, on whatever lies before the front wall.
        const Place &home = Cabins[0];
        const Vec3 q = turnY(p - home.foot, home.turn);
        const Vec3 m = turnY(n, home.turn);
        for (const float x : {-1.05F, 1.05F}) {
            const Vec3 to = Vec3{x, 1.2F, -CabinDepth - 0.05F} - q;
            const float out = std::max(0.0F, to.z / length(to));
            warm += colour(0xFFA94A) * (2.8F * out * std::max(0.0F, dot(m, normalise(to))) / (0.35F + dot(to, to)));
        }
        const Vec3 lamp = Vec3{0, 2.05F, -CabinDepth - 0.5F} - q;
        warm += colour(0xFFB45A) * (0.9F * std::max(0.0F, dot(m, normalise(lamp))) / (0.25F + dot(lamp, lamp)));
        look.glow += look.colour * warm;
        return look;
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y);
        Vec3 light = mix(colour(0x163A60), colour(0x080F38), smoothStep(0, 0.45F, up));
        const float u = std::atan2(d.x, d.z);
        for (const float scale : {30.0F, 75.0F}) {
            const Cell star = cells(u * scale, d.y * scale);
            const float size = 0.03F + 0.05F * star.id * star.id;
            light += star.id > 0.4F ? mix(colour(0xFFE2C0), colour(0xC8DCFF), fraction(star.id * 13)) *
                                          (1.7F * star.id * star.id * smoothStep(0.05F, 0.2F, up) *
                                           smoothStep(size, size * 0.3F, star.distance))
                                    : Vec3{};
        }
        // Three hanging curtains of light: sharp below, fading in rays above; green, then violet.
        constexpr float feet[] = {0.2F, 0.31F, 0.45F};
        for (int i = 0; i < 3; ++i) {
            const auto k = static_cast<float>(i);
            const float wave = u * (1.6F + 0.5F * k) + 2.1F * k + 1.5F * fbm(u * 1.4F + 5 * k, 1, 3);
            const float foot = feet[i] + 0.07F * std::sin(wave * 2.3F) + 0.035F * std::sin(wave * 5.1F + k);
            const float high = d.y - foot - 0.02F * noise(u * 38, k);
            const float tall = 0.07F + 0.13F * noise(u * 3.1F + 9 * k, 4);
            const float rays =
                0.45F + 0.8F * noise(u * 34 + 7 * k + 4 * wave, 2) * noise(u * 11, 3 + k) + 0.3F * noise(u * 90, k);
            const float part = smoothStep(-0.012F, 0.025F, high) * std::exp(-std::max(high, 0.0F) / tall);
            const float there = smoothStep(0.3F, 0.75F, noise(u * 1.7F + 3.7F * k, 8));
            const Vec3 tint =
                mix(colour(0x2CFF9A), mix(colour(0x22C8E8), colour(0xC03CFF), smoothStep(0.1F, 0.26F, high)),
                    smoothStep(0.0F, 0.17F, high));
            light += tint * ((0.74F - 0.14F * k) * part * rays * there);
        }
        return light;
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Snow:
            return p.z < 14 ? 0.006F * fbm(p.x * 22, p.z * 22, 3) + 0.012F * fbm(p.x * 5, p.z * 5, 2)
                            : 0.05F * ridged(p.x * 0.9F, p.z * 0.9F, 4);
        case Fir:
            return 0.05F * noise(p * 16) + 0.02F * noise(p * 37);
        case Log:
        case Plank:
            return 0.008F * noise(p * 14);
        case Stone:
            return 0.03F * smoothStep(0.25F, 0.6F, cells((p.x + p.z) * 5, p.y * 6).distance) * -1;
        default:
            return 0;
        }
    }

    /// Ice: a mirror with blind places.
    Vec3 waterNormal(Vec3 p, float) const override {
        return normalise(
            {0.03F * (fbm(p.x * 2, p.z * 2, 4) - 0.47F), 1, 0.03F * (fbm(p.x * 2 + 7, p.z * 2, 4) - 0.47F)});
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        if (distance < farthest - 1) {
            light = mix(light, colour(0x2A6A86) * 0.55F, 1 - std::exp(-std::max(0.0F, distance - 8) / 46));
        }
        light = smoke(light, from, d, distance);
        for (int i = 0; i < 60; ++i) { // falling snow
            const Vec3 flake{9 * hash(i, 1) - 4.5F, 5.5F * hash(i, 2), 8.5F * hash(i, 4) - 4.5F};
            const Vec3 to = flake - from;
            const float along = dot(to, d);
            if (along > 0.6F && along < distance) {
                const float off = dot(to, to) - along * along;
                const float size = 0.018F + 0.012F * hash(i, 5);
                light = mix(light, colour(0xCFE6F6) * 0.8F, 0.75F * smoothStep(size * size, 0.2F * size * size, off));
            }
        }
        return light;
    }

  private:
    static float pathMiddle(float z) {
        return mix(1.45F, -0.35F, smoothStep(2.9F, -4.5F, z)) + 0.2F * std::sin(z * 1.3F);
    }

    static float ground(float x, float z) {
        float height = 0.17F + 0.28F * fbm(x * 0.33F, z * 0.33F, 3) +
                       std::min(0.012F * x * x, 1.1F) * smoothStep(3, 7, std::fabs(x));
        const float lake = length((x + 3.9F) / 3.6F, (z - 7.0F) / 3.7F) + 0.22F * (noise(x * 0.8F, z * 0.8F) - 0.5F);
        height = mix(height, -0.4F, smoothStep(1.12F, 0.9F, lake));
        if (z < 2.9F && z > -8) {
            const float off = std::fabs(x - pathMiddle(z));
            const float trodden = smoothStep(0.52F, 0.3F, off + 0.12F * (noise(x * 5, z * 5) - 0.5F));
            height -=
                trodden * (0.1F + 0.05F * noise(x * 9, z * 6)) - 0.05F * smoothStep(0.16F, 0.0F, std::fabs(off - 0.6F));
            height = std::max(height, 0.1F + 0.03F * noise(x * 8, z * 8));
        }
        if (z > 15) {
            const float far = smoothStep(15, 46, z);
            height += far * (0.6F + 13 * std::pow(ridged(x * 0.045F + 1.3F, z * 0.045F, 5), 1.7F)) +
                      0.9F * smoothStep(15, 22, z);
            const float wood = smoothStep(20, 24, z) * smoothStep(36, 27, z);
            if (wood > 0) {
                const Cell tree = cells(x * 0.75F, z * 0.75F);
                height += wood * (1.0F + 1.6F * tree.id) * std::max(0.0F, 1 - tree.distance * 1.7F);
            }
        }
        return height;
    }

    /// A spruce bowed by snow: tiers of drooping branches.
    static float fir(Vec3 p, float h) {
        const float r = length(p.x, p.z);
        const float rough = std::max((r - 0.46F * h * clamp01(1.08F - p.y / h)) * 0.88F, p.y - h);
        if (rough > 0.4F) {
            return rough;
        }
        const float angle = std::atan2(p.z, p.x);
        const float t = (p.y + 0.3F * r) / h * 8.5F;
        const float tier = std::floor(t);
        const float f = t - tier;
        const float taper = std::max(0.0F, 1.02F - (tier + 0.3F * f) / 9.2F);
        // Each tier is a ring of branches, the gaps of one above the branches of the next.
        const float branch = std::fabs(std::cos(angle * 4.5F + tier * 1.9F + h + 1.4F * r / h));
        const float arms = 0.66F + 0.34F * branch - 0.05F * noise(angle * 3, tier);
        const float radius = std::min(0.44F * h * taper * arms * (1 - 0.6F * std::pow(f, 0.7F)), 0.3F * (h - p.y));
        const float needles = 0.12F * noise(p * 7) + 0.08F * noise(p * 19);
        return std::max((r - radius - needles * smoothStep(0, 0.25F, h - p.y) + 0.07F) * 0.4F, p.y - h);
    }

    static void post(Vec3 p, Hit &hit) {
        if (sphere(p + Vec3{0, 0.6F, 0}, 1.1F) > 0.4F) {
            hit.join(sphere(p + Vec3{0, 0.6F, 0}, 1.1F), Iron);
            return;
        }
        hit.join(box(p + Vec3{0, 0.85F, 0}, {0.06F, 0.68F, 0.06F}, 0.015F), Plank);
        hit.join(box(p, {0.1F, 0.14F, 0.1F}, 0.02F), Bulb);
        const Vec3 q{std::fabs(p.x) - 0.11F, p.y, std::fabs(p.z) - 0.11F};
        hit.join(std::min(box(q, {0.014F, 0.17F, 0.014F}), box(p + Vec3{0, 0.16F, 0}, {0.13F, 0.02F, 0.13F})), Iron);
        hit.join(ellipsoid(p - Vec3{0, 0.19F, 0}, {0.19F, 0.1F, 0.19F}), Snow);
    }

    static void sledge(Vec3 p, Hit &hit) {
        if (sphere(p, 0.9F) > 0.3F) {
            hit.join(sphere(p, 0.9F), Plank);
            return;
        }
        const Vec3 q{p.x, p.y, std::fabs(p.z)};
        const float curl = length(length(q.x - 0.42F, q.y - 0.03F) - 0.15F, q.z - 0.2F) - 0.025F;
        float wood =
            std::min(stick(q, {-0.55F, -0.13F, 0.2F}, {0.42F, -0.13F, 0.2F}, 0.03F), std::max(curl, 0.42F - q.x));
        for (const float x : {-0.35F, 0.0F, 0.33F}) {
            wood = std::min(wood, box(q - Vec3{x, -0.03F, 0.2F}, {0.025F, 0.1F, 0.025F}));
        }
        hit.join(wood, Shutter);
        hit.join(box({q.x, q.y - 0.08F, q.z - std::clamp(std::round(q.z / 0.11F), 0.0F, 2.0F) * 0.11F},
                     {0.5F, 0.016F, 0.042F}, 0.01F),
                 Plank);
    }

    static Surface bare(int material, Vec3 p, Vec3 n, Vec3) {
        const float rough = fbm(p * 5, 3);
        switch (material) {
        case Fir: {
            const float snow = smoothStep(0.28F, 0.62F, n.y + 0.9F * (fbm(p * 2.6F, 3) - 0.42F));
            const Vec3 needles = mix(colour(0x12382A), colour(0x3F7A4C), noise(p * 11)) * mix(0.6F, 1.2F, rough);
            return {.colour = mix(needles, colour(0xEAF3FF), snow), .shine = 0.05F};
        }
        case Log: {
            const Vec3 q = turnY(p - Cabins[0].foot, Cabins[0].turn);
            const float along = std::fabs(std::fabs(q.x) - CabinWidth) < 0.16F ? q.z : q.x;
            return {.colour = mix(colour(0x5E3416), colour(0xA9682F), fbm(along * 1.7F, q.y * 26, 3)) *
                              mix(0.7F, 1.15F, rough)};
        }
        case Plank:
            return {.colour = mix(colour(0x4A2A14), colour(0x8A5A30), noise(Vec3{p.x * 5, p.y * 22, p.z * 5}))};
        case Pane: {
            const float curtain = 0.75F + 0.25F * noise(p.x * 9, p.y * 3);
            return {.colour = colour(0x2A1608),
                    .glow = mix(colour(0xFF8A24), colour(0xFFD070), curtain) * (2.3F * curtain)};
        }
        case Door:
            return {.colour = colour(0x2F7A6A) * (fraction(p.x * 5.2F) < 0.08F ? 0.5F : mix(0.8F, 1.1F, rough)),
                    .shine = 0.15F};
        case Shutter:
            return {.colour = colour(0xB8241E) * mix(0.75F, 1.1F, rough), .shine = 0.15F};
        case Stone:
            return {.colour = mix(colour(0x5A5660), colour(0x98929A), cells((p.x + p.z) * 5, p.y * 6).id)};
        case Wreath:
            return {.colour = mix(colour(0x1C4A22), colour(0x4C8A3A), rough)};
        case Berry:
            return {.colour = colour(0xD81E2A), .shine = 0.8F};
        case Bulb: {
            const Vec3 q = turnY(p - Cabins[0].foot, Cabins[0].turn);
            if (q.y < 2.4F && std::fabs(q.x) < 0.12F) {
                return {.colour = {0, 0, 0}, .glow = colour(0xFFC870) * 3.2F};
            }
            const bool lantern = p.y < 1.6F;
            const Vec3 lamps[] = {colour(0xFF3B30), colour(0xFFD23A), colour(0x35E06A), colour(0x3AA8FF),
                                  colour(0xFF5CC8)};
            const int one = static_cast<int>(std::floor(q.x / 0.32F));
            return {.colour = {0, 0, 0}, .glow = lantern ? colour(0xFFB860) * 3.0F : lamps[((one % 5) + 5) % 5] * 2.6F};
        }
        case Iron:
            return {.colour = colour(0x20222A), .shine = 0.5F};
        case Ice:
            return {.colour = colour(0xBFE0F0) * 0.7F, .shine = 1, .sharpness = 60, .mirror = 0.2F, .sheer = 0.5F};
        default: {
            const float wood = p.z > 20 ? smoothStep(0.75F, 0.4F, n.y) * smoothStep(40, 30, p.z) : 0.0F;
            const float rock = p.z > 34 ? smoothStep(0.7F, 0.5F, n.y) : 0.0F;
            Vec3 snow = mix(colour(0xDCE8F6), colour(0xF8FBFF), rough);
            snow = mix(snow, mix(colour(0x14302C), colour(0x3C4A5C), rock), 0.85F * std::max(wood, rock));
            // Single crystals flash.
            const Cell flash = cells(p.x * 34, p.z * 34, 1);
            const float glint = p.z < 9 && flash.id > 0.955F ? smoothStep(0.22F, 0.05F, flash.distance) : 0.0F;
            return {.colour = snow, .shine = 0.08F, .sharpness = 12, .glow = colour(0xCDE8FF) * (0.5F * glint)};
        }
        }
    }

    /// Smoke from the chimney, drifting.
    Vec3 smoke(Vec3 light, Vec3 from, Vec3 d, float distance) const {
        const Vec3 mouth = Cabins[0].foot + turnY(Vec3{0.85F, 4.45F, 0.5F}, -Cabins[0].turn);
        const float middle = (mouth.z - from.z) / d.z;
        const Vec3 at = from + d * middle;
        if (d.z < 0.1F || distance < middle || at.y < mouth.y - 0.1F) {
            return light;
        }
        const float h = at.y - mouth.y;
        const float x = at.x - mouth.x + 0.32F * h + 0.12F * std::sin(h * 2.6F) +
                        0.35F * (fbm(at.x * 1.3F, at.y * 1.3F, 3) - 0.45F) * h;
        const float wide = 0.14F + 0.2F * h;
        const float thick =
            smoothStep(wide, 0.1F * wide, std::fabs(x)) * smoothStep(-0.1F, 0.15F, h) * std::exp(-0.42F * h);
        const float puffs = 0.35F + 0.9F * fbm(at.x * 2.4F + 3, at.y * 2.0F - 0.7F * at.x, 4);
        return mix(light, mix(colour(0xD0A890) * 0.55F, colour(0x8FC0C8) * 0.5F, smoothStep(0, 1.6F, h)),
                   clamp01(0.9F * thick * puffs * 1.4F));
    }
};

} // namespace

std::unique_ptr<Scene> winterNight() {
    return std::make_unique<WinterNight>();
}

} // namespace lumora::samples
