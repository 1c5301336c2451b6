// A launch site beside a lagoon at sunrise: tanks, lamps, the assembly hall, reeds, vapour about the pad.
#pragma once

#include "Machinery.h"

namespace lumora::samples {

/// A scene at this site adds what stands on the pad about x = z = 0, with materials from SiteEnd on.
class LaunchSite : public Scene {
  public:
    /// Morning in the west: the rose belt over the blue shadow of the earth, a late moon.
    Vec3 sky(Vec3 d) const override {
        const float up = std::max(d.y, 0.0F);
        const float east =
            std::pow(0.5F + 0.5F * dot(normalise({d.x, 0, d.z}), normalise({sunDirection.x, 0, sunDirection.z})), 2.0F);
        Vec3 light = mix(mix(colour(0xA79AC8), colour(0xFFC27E), east), mix(colour(0xF3B2B4), colour(0xFFD9A0), east),
                         smoothStep(0, 0.16F, up));
        light = mix(light, mix(colour(0x8FA2DA), colour(0x9CB4E0), east), smoothStep(0.12F, 0.42F, up));
        light = mix(light, colour(0x38559F), smoothStep(0.35F, 0.95F, up));
        const Vec3 moon = normalise({-0.3F, 0.5F, 0.86F});
        const float off = length(d - moon);
        const float face = 0.75F + 0.5F * fbm(d * 60, 3);
        const float phase = smoothStep(-0.012F, 0.012F, dot(d - moon, normalise({0.9F, -0.3F, 0})) + 0.006F);
        light += colour(0xFFF6E4) * (0.55F * face * phase * smoothStep(0.0268F, 0.0252F, off));
        light = cumulus(light, d, Heaps, mix(colour(0xFFC3A8), colour(0xFFE0B4), east) * 1.3F, colour(0x9C8FC0));
        return light + sunGlow(d);
    }

    Vec3 waterNormal(Vec3 p, float distance) const override {
        const float ripple = 0.06F / (1 + 0.05F * distance);
        const float a = fbm(p.x * 0.7F, p.z * 1.8F, 3);
        const float b = fbm(p.x * 0.7F + 9, p.z * 1.8F, 3);
        return normalise({ripple * (a - 0.45F) * 0.5F, 1, ripple * (b - 0.45F)});
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        light =
            haze(light, *this, d, distance < farthest - 1 ? distance : 6.0F, 420, colour(0xC4ACC8), colour(0xFFCB96));
        for (const Vapour &one : Vents) {
            light = vapour(light, one, from, d, distance);
        }
        for (const Vec3 &lamp : Lamps) {
            const Vec3 to = lamp - from;
            const float along = dot(to, d);
            if (along > 0 && along < distance + 0.5F) {
                const float off = dot(to, to) - along * along;
                light += colour(0xFFE3A6) * (0.035F / (off + 0.05F) + 0.02F / (0.4F * off + 0.6F));
            }
        }
        return light;
    }

  protected:
    enum SiteMaterial { Land, Reeds, Tank, Lamp, Hall, Iron, SiteEnd };

    LaunchSite() {
        sunDirection = normalise({0.78F, 0.22F, -0.56F});
        sunColour = {3.9F, 2.35F, 1.3F};
        skyLight = {0.4F, 0.4F, 0.62F};
        groundLight = {0.2F, 0.15F, 0.15F};
        farthest = 320;
        ceiling = 36;
        waterLevel = 0;
        waterColour = {0.02F, 0.035F, 0.06F};
    }

    static void site(Vec3 p, Hit &hit) {
        hit.join(p.y > 9 ? p.y - 7 : (p.y - landHeight(p.x, p.z)) * 0.6F, Land);
        if (p.z < -24 && p.y < 3.4F) {
            hit.join(reeds(p), Reeds);
        }
        grounds(p, hit);
        birds(p, hit);
    }

    /// `rough` is noise from 0 to 1 about the place.
    static Surface siteLook(int material, Vec3 p, Vec3 n, float rough) {
        switch (material) {
        case Tank:
            return {.colour = mix(colour(0xDDDCD8), colour(0xF6F4EE), rough),
                    .shine = 0.8F,
                    .sharpness = 60,
                    .mirror = 0.05F};
        case Lamp:
            return {.colour = colour(0xFFFFFF), .glow = colour(0xFFF2CF) * 5};
        case Hall: {
            const float x = std::fabs(n.x) > 0.7F ? p.z : p.x;
            const bool windows = fraction(p.y / 2.1F) < 0.4F && fraction(x / 1.7F) < 0.62F && p.y < 7.5F &&
                                 p.y > 1.5F && std::fabs(n.y) < 0.5F;
            const bool lit = windows && hash(static_cast<int>(std::floor(p.y / 2.1F)),
                                             static_cast<int>(std::floor(x / 1.7F))) > 0.45F;
            return {.colour = windows ? colour(0x26303C)
                                      : mix(colour(0x9AA3B4), colour(0xC9CCD4), rough) *
                                            (fraction(x / 1.1F) < 0.06F ? 0.75F : 1.0F),
                    .glow = lit ? colour(0xFFC46A) * 1.2F : Vec3{}};
        }
        case Reeds:
            return {.colour = mix(colour(0x3E4A22), colour(0x86803C), noise(Vec3{p.x * 3, p.y * 0.8F, p.z * 3})),
                    .sheer = 0.4F};
        case Iron:
            return {.colour = mix(colour(0x24262C), colour(0x3A3B40), rough), .shine = 0.5F, .sharpness = 30};
        default:
            return land(p, n);
        }
    }

    static float siteGrain(int material, Vec3 p) {
        if (material != Land) {
            return 0;
        }
        return p.z < 10 ? 0.06F * fbm(p.x * 5, p.z * 5, 3) : 0.5F * fbm(p * 2.4F, 3);
    }

  private:
    static constexpr Vec3 Lamps[] = {
        {-11, 7.5F, -3.5F}, {-9.5F, 7.2F, 7}, {12.5F, 7.5F, -4}, {6.2F, 13.2F, -2}, {6.2F, 22.2F, -2}};

    /// Vapour of the cold tanks that drifts off: middle and radius.
    struct Vapour {
        Vec3 at;
        float radius;
    };
    static constexpr Vapour Vents[] = {
        {{-3.2F, 4.6F, -1.6F}, 1.5F},  {{-5.0F, 4.3F, -2}, 1.9F},     {{-7.3F, 4.6F, -1.5F}, 2.4F},
        {{-10.2F, 4.9F, -1}, 2.7F},    {{-1.6F, 4.0F, -2.6F}, 1.2F},  {{0.6F, 3.8F, -2.9F}, 1.1F},
        {{-13.4F, 5.4F, 0}, 2.8F},     {{-2.6F, 15.9F, -1.2F}, 0.8F}, {{-3.7F, 16.2F, -1.3F}, 1.1F},
        {{-5.1F, 16.3F, -1.2F}, 1.4F}, {{-6.9F, 16.8F, -1}, 1.6F},    {{2.6F, 3.9F, -2.6F}, 1.0F}};

    static constexpr Heap Heaps[] = {{-0.38F, 0.13F, 0.26F, 0.04F}, {0.36F, 0.2F, 0.3F, 0.06F},
                                     {-0.1F, 0.33F, 0.26F, 0.05F},  {0.2F, 0.07F, 0.24F, 0.025F},
                                     {-0.42F, 0.47F, 0.24F, 0.06F}, {0.45F, 0.45F, 0.22F, 0.05F}};

    Vec3 sunGlow(Vec3 d) const { return sunColour * (0.12F * std::pow(std::max(dot(d, sunDirection), 0.0F), 8.0F)); }

    /// A soft ball of mist: as thick as the ray's way through it is long, frayed by noise.
    Vec3 vapour(Vec3 light, const Vapour &one, Vec3 from, Vec3 d, float distance) const {
        const Vec3 to = one.at - from;
        const float along = dot(to, d);
        const float off = (dot(to, to) - along * along) / (one.radius * one.radius);
        if (off > 1 || along < 0) {
            return light;
        }
        const Vec3 p = from + d * along - one.at;
        const float frayed = fbm((p + one.at) * (1.1F / std::sqrt(one.radius)) + Vec3{one.radius, 0, 3}, 5);
        const float before = smoothStep(-0.6F, 0.6F, (distance - along) / one.radius);
        const float amount = clamp01((1 - off) * 1.5F * smoothStep(0.28F, 0.66F, frayed + 0.16F * (1 - off))) * before *
                             mix(0.85F, 0.4F, clamp01((-one.at.x - 3) / 11));
        const float lit = clamp01(0.55F + 0.45F * dot(p, sunDirection) / one.radius + 1.4F * (frayed - 0.5F));
        return mix(light, mix(colour(0x9D97BE), colour(0xFFE6CC) * 1.35F, lit), amount);
    }

    static void grounds(Vec3 p, Hit &hit) {
        for (const Vec3 &lamp : Lamps) {
            hit.join(sphere(p - lamp, 0.22F), Lamp);
            if (lamp.y < 10) {
                hit.join(std::min(cone(p - Vec3{lamp.x, 0, lamp.z}, 0.2F, 0.1F, lamp.y - 0.15F),
                                  box(p - lamp - Vec3{0, 0.05F, 0.25F}, {0.45F, 0.35F, 0.08F})),
                         Iron);
            }
        }
        // Ball tanks on legs, the assembly hall, a water tower.
        for (const Vec3 at : {Vec3{-14.5F, 4.4F, 6}, Vec3{16.5F, 3.6F, 10}}) {
            const Vec3 q = p - at;
            const float radius = at.y - 1.6F;
            hit.join(std::min(sphere(q, radius),
                              std::max(std::fabs(length(q.x, q.z) - radius) - 0.1F, std::fabs(q.y) - 0.12F)),
                     Tank);
            const Vec3 leg = slices({q.x, q.z, q.y}, 8);
            hit.join(std::max(length(leg.x - radius * 0.86F, leg.y) - 0.14F, std::fabs(q.y + at.y / 2) - at.y / 2),
                     Tank);
        }
        const Vec3 hall = turnY(p - Vec3{-31, 0, 62}, 0.3F);
        hit.join(std::min(box(hall - Vec3{0, 6, 0}, {7, 7.5F, 6}), box(hall - Vec3{11, 2.5F, 0}, {6, 2.6F, 4})), Hall);
        hit.join(box(hall - Vec3{0.6F, 5, -6}, {2.2F, 6, 0.15F}), Iron);
        const Vec3 water = p - Vec3{27, 0, 48};
        hit.join(std::min(ellipsoid(water - Vec3{0, 11, 0}, {3, 2.2F, 3}), cone(water, 1.1F, 0.6F, 10)), Tank);
    }

    static float landHeight(float x, float z) {
        const float shore = z + 14 + 3 * std::sin(x * 0.16F) + 5 * (fbm(x * 0.12F, z * 0.12F, 3) - 0.45F);
        float height = mix(-1.2F, 0.45F, smoothStep(-2.5F, 1.2F, shore)) + 0.25F * fbm(x * 0.4F, z * 0.4F, 3);
        const float out =
            std::max(length(std::max(std::fabs(x - 1.5F) - 6, 0.0F), std::max(std::fabs(z) - 3, 0.0F)), 0.0F);
        height = std::max(height, mix(1.5F, 0.2F, clamp01((out - 2) / 6)) - (out > 8 ? 9.0F : 0.0F));
        if (z > 14 || std::fabs(x) > 18) {
            const Cell bush = cells(x * 0.42F, z * 0.42F);
            const float scrub = smoothStep(0.43F, 0.52F, fbm(x * 0.05F + 2, z * 0.06F, 3)) * smoothStep(0.5F, 3, shore);
            height += scrub * std::sqrt(std::max(0.0F, 1 - bush.distance * bush.distance * 2.4F)) *
                      (0.8F + 1.8F * bush.id) * (1 + 0.6F * smoothStep(20, 90, z));
        } else if (z < -8 && shore > -1 && out > 8) {
            const Cell tuft = cells(x * 7.5F, z * 7.5F);
            height += smoothStep(0, 1.5F, shore) * (0.1F + 0.4F * noise(x * 0.5F, z * 0.5F)) * tuft.id *
                      std::max(0.0F, 1 - 1.6F * tuft.distance);
        }
        return height;
    }

    static Surface land(Vec3 p, Vec3 n) {
        const float out = length(std::max(std::fabs(p.x - 1.5F) - 6, 0.0F), std::max(std::fabs(p.z) - 3, 0.0F));
        if (out < 8 && p.z > -11.5F) {
            const bool joint = std::fabs(repeat(p.x, 2.2F)) < 0.04F || std::fabs(repeat(p.z, 2.2F)) < 0.04F;
            return {.colour = mix(colour(0x8C8780), colour(0xB9B2A8), fbm(p * 1.4F, 4)) * (joint ? 0.65F : 1.0F)};
        }
        const Vec3 grass = mix(colour(0x3C5A26), colour(0x8F9A44), fbm(p.x * 0.5F, p.z * 0.5F, 4)) *
                           (0.7F + 0.5F * noise(p.x * 4, p.z * 4));
        const Vec3 bush =
            mix(colour(0x22401F), colour(0x5C7A34), 1.3F * fbm(p * 1.4F, 3) * smoothStep(-0.2F, 0.9F, n.y));
        return {.colour =
                    mix(mix(colour(0x6A5A44), grass, smoothStep(0.12F, 0.4F, p.y)), bush, smoothStep(0.95F, 1.3F, p.y)),
                .sheer = 0.1F};
    }

    /// Reeds at the near bank, one stalk in each tile, some with a brown head.
    static float reeds(Vec3 p) {
        const float edge = std::max({p.x + 7.6F + 0.25F * (p.z + 34), p.z + 28, -36.2F - p.z});
        if (edge > 0) {
            return std::max(0.1F, edge);
        }
        constexpr float Tile = 0.22F;
        const int i = static_cast<int>(std::round(p.x / Tile));
        const int k = static_cast<int>(std::round(p.z / Tile));
        const float high = 0.9F + 1.5F * hash(i, k);
        const float bend = 0.1F * (hash(i, k, 1) - 0.35F) * p.y;
        const Vec3 q{repeat(p.x, Tile) - bend, p.y, repeat(p.z, Tile)};
        float reed = std::max(length(q.x, q.z) - 0.016F * clamp01((high - p.y) * 1.5F), p.y - high);
        if (hash(i, k, 2) > 0.6F) {
            reed = std::min(reed, rodY(q - Vec3{0, high - 0.2F, 0}, 0.03F, 0.13F, 0.03F));
        }
        return std::min(reed, 0.12F) * 0.8F;
    }

    static void birds(Vec3 p, Hit &hit) {
        const float near = box(p - Vec3{-13, 19, 0}, {5, 3.5F, 4});
        if (near > 1) {
            hit.join(near, Iron);
            return;
        }
        for (int i = 0; i < 6; ++i) {
            const auto k = static_cast<float>(i);
            const Vec3 q =
                p - Vec3{-15.5F + 1.15F * k, 17.2F + 0.75F * k - 0.12F * k * k + 0.3F * hash(i, 1), 0.5F * k};
            const Vec3 wing{std::fabs(q.x), q.y, q.z};
            const float lift = 0.12F + 0.12F * hash(i, 2);
            hit.join(std::min(stick(wing, {}, {0.32F, lift, 0}, 0.045F, 0.03F),
                              stick(wing, {0.32F, lift, 0}, {0.7F, lift - 0.08F, 0}, 0.03F, 0.006F)),
                     Iron);
        }
    }
};

} // namespace lumora::samples
