// A watchmaker's bench by a window: a cloth with tools, spare wheels and screws on it.
#pragma once

#include "Machinery.h"

namespace lumora::samples {

/// A toothed wheel; its phase follows from the wheel that it meshes with.
struct Gear {
    Vec3 at;
    int teeth;
    int partner; ///< an earlier wheel, or -1
    int spokes;
    int material;
    float half; ///< half its thickness
};
constexpr float Pitch = 0.0232F; ///< radius for each tooth

/// A scene on this bench adds what is being mended, with materials from BenchEnd on.
class WatchBench : public Scene {
  public:
    /// The room: dim and warm, a window with six panes, a lamp on the other side.
    Vec3 sky(Vec3 d) const override {
        Vec3 light = mix(colour(0x2A2018), colour(0x6B5A48), clamp01(0.4F + 0.6F * d.y)) * 0.8F;
        if (d.y > 0.05F) {
            const float x = d.x / d.y + 0.55F;
            const float z = d.z / d.y - 0.95F;
            const float pane = std::min(std::fabs(std::fabs(x) - 0.3F), std::fabs(repeat(z, 0.5F)));
            const float inside = smoothStep(0.68F, 0.58F, std::fabs(x)) * smoothStep(0.78F, 0.68F, std::fabs(z));
            light += colour(0xDDEBFF) * (2.6F * inside * (std::fabs(x) < 0.04F ? 0.15F : 1.0F) *
                                         mix(0.75F, 1.0F, smoothStep(0, 0.1F, pane)));
        }
        const float lamp = std::max(dot(d, normalise({0.75F, 0.5F, -0.1F})), 0.0F);
        return light + colour(0xFFC274) * (2.2F * std::pow(lamp, 14.0F));
    }

  protected:
    enum BenchMaterial { Mat, Wood, Black, Handle, Lens, Gold, Rose, Steel, Blued, BenchEnd };

    WatchBench() {
        sunDirection = normalise({-0.62F, 0.66F, 0.34F});
        sunColour = {3.4F, 2.8F, 2.0F};
        skyLight = {0.4F, 0.4F, 0.42F};
        groundLight = {0.14F, 0.1F, 0.06F};
        farthest = 60;
        ceiling = 4;
    }

    static void bench(Vec3 p, Hit &hit) {
        const float mat = box(p - Vec3{0, -0.62F, 0.4F}, {9.5F, 0.08F, 6.2F}, 0.05F);
        hit.join(mat, Mat);
        hit.join(p.y + 0.68F, Wood);
        if (p.y > 1.2F) {
            hit.join(p.y - 0.9F, Black);
            return;
        }
        // A screwdriver, tweezers, spare wheels and screws.
        const Vec3 driver = turnY(p - Vec3{5.6F, -0.2F, 2.4F}, 0.95F);
        const float grip = std::min(rodX(driver - Vec3{1.1F, 0, 0}, 0.3F, 1.0F, 0.12F),
                                    rodX(driver - Vec3{2.25F, 0, 0}, 0.26F, 0.14F, 0.08F));
        hit.join(std::max(grip, 0.03F - length(slices({driver.y, driver.z, 0}, 8).x - 0.32F,
                                               slices({driver.y, driver.z, 0}, 8).y)),
                 Handle);
        hit.join(std::min({rodX(driver - Vec3{-0.8F, 0, 0}, 0.08F, 1.0F),
                           rodX(driver - Vec3{0.05F, 0, 0}, 0.2F, 0.12F, 0.03F),
                           box(driver - Vec3{-1.85F, 0, 0}, {0.16F, 0.025F, 0.1F})}),
                 Steel);
        const Vec3 tweezers = turnY(p - Vec3{-5.4F, -0.42F, 1.6F}, -1.15F);
        const Vec3 arm{tweezers.x, tweezers.y, std::fabs(tweezers.z)};
        hit.join(std::max(stick({arm.x, 0, arm.z}, {2.2F, 0, 0.05F}, {-1.4F, 0, 0.34F}, 0.03F, 0.1F),
                          std::fabs(arm.y) - 0.09F),
                 Steel);
        hit.join(
            std::max(stick({arm.x, 0, arm.z}, {-1.4F, 0, 0.34F}, {-2.1F, 0, 0.02F}, 0.1F), std::fabs(arm.y) - 0.09F),
            Steel);
        const Vec3 spare = p - Vec3{4.6F, -0.49F, -2.9F};
        gear(turnZ(spare, 0.02F), {{}, 34, -1, 5, Gold, 0.05F}, 0.3F, hit);
        gear(p - Vec3{-4.9F, -0.49F, -2.2F}, {{}, 26, -1, 4, Rose, 0.05F}, 0.1F, hit);
        gear(p - Vec3{-4.15F, -0.49F, 4.6F}, {{}, 40, -1, 6, Gold, 0.05F}, 0.2F, hit);
        for (const Vec3 at : {Vec3{5.5F, -0.47F, -1.3F}, Vec3{5.2F, -0.47F, -0.7F}, Vec3{-5.3F, -0.47F, -0.9F},
                              Vec3{3.9F, -0.47F, -4.1F}}) {
            screw(p - at, 0.17F, at.z * 2, hit);
        }
        // The watchmaker's loupe.
        const Vec3 loupe = p - Vec3{5.7F, -0.54F, 5.3F};
        hit.join(
            std::min(cone(loupe, 0.95F, 0.72F, 1.2F), length(length(loupe.x, loupe.z) - 0.7F, loupe.y - 1.2F) - 0.07F),
            Black);
        hit.join(ellipsoid(loupe - Vec3{0, 1.2F, 0}, {0.66F, 0.16F, 0.66F}), Lens);
    }
    /// All but the wheels of Gold and Rose, which the scene turns. `rough` is noise from 0 to 1 about the place.
    static Surface benchLook(int material, Vec3 p, float rough) {
        switch (material) {
        case Mat: {
            const float thread = std::max(std::fabs(std::sin(p.x * 34)), std::fabs(std::sin(p.z * 34)));
            const bool stitched = std::fabs(std::fabs(p.z - 0.4F) - 5.6F) < 0.05F && fraction(p.x * 2.6F) < 0.66F;
            return {.colour = stitched ? colour(0xD9B77A)
                                       : mix(colour(0x0A3534), colour(0x14524E), rough) * mix(0.8F, 1.0F, thread),
                    .shine = 0.12F,
                    .sharpness = 12};
        }
        case Wood: {
            const float ring = fbm(Vec3{p.x * 0.5F, p.y, p.z * 5}, 4);
            return {.colour = mix(colour(0x4A2814), colour(0x8C532A), 0.5F + 0.35F * std::sin(ring * 26)) * 0.8F,
                    .shine = 0.5F,
                    .sharpness = 40,
                    .mirror = 0.03F};
        }
        case Steel:
            return metal(colour(0x8C929C), colour(0xCDD2DC), rough, 0.5F);
        case Blued:
            return {.colour = colour(0x1233B8) * 0.7F,
                    .shine = 1.8F,
                    .sharpness = 80,
                    .mirror = 0.4F,
                    .tint = colour(0x4F7BFF)};
        case Handle:
            return lacquer(colour(0xB3201C), p);
        case Lens:
            return {.colour = colour(0x101C22), .shine = 2, .sharpness = 300, .mirror = 0.5F};
        default:
            return {.colour = colour(0x17181B), .shine = 0.6F, .sharpness = 40, .mirror = 0.05F};
        }
    }

    static float benchGrain(int material, Vec3 p) {
        if (material != Mat) {
            return 0;
        }
        return 0.006F * (std::fabs(std::sin(p.x * 34)) + std::fabs(std::sin(p.z * 34))) + 0.01F * fbm(p * 8, 2);
    }

    static Surface metal(Vec3 base, Vec3 tint, float rough, float mirror) {
        return {
            .colour = base * mix(0.35F, 0.6F, rough), .shine = 1.4F, .sharpness = 70, .mirror = mirror, .tint = tint};
    }

    static float toothed(Vec3 p, float radius, int teeth, float phase) {
        const float step = 2 * Pi / static_cast<float>(teeth);
        const Vec3 s = slices(turnZ(p, phase), teeth);
        const float high = radius * step * 0.36F;
        const float wide = radius * step * (0.27F - 0.16F * clamp01((s.x - radius + high) / (2 * high)));
        return std::min(length(p.x, p.y) - radius + high, std::max(std::fabs(s.y) - wide, s.x - radius - high) * 0.9F);
    }

    static void gear(Vec3 at, const Gear &one, float phase, Hit &hit) {
        const float radius = Pitch * static_cast<float>(one.teeth);
        const Vec3 p = flat(at);
        const float r = length(p.x, p.y);
        const float near = std::max(r - radius - 0.1F, std::fabs(p.z) - 0.35F);
        if (near > 0.15F) {
            hit.join(near, one.material);
            return;
        }
        float shape = toothed(p, radius, one.teeth, phase);
        if (one.spokes > 0) {
            const Vec3 s = slices(turnZ(p, phase), one.spokes);
            const float spoke = std::fabs(s.y) - mix(0.11F, 0.06F, clamp01(r / radius));
            shape = std::max(shape, -std::max({r - radius * 0.8F, radius * 0.24F - r, -spoke}));
        }
        hit.join(plate(shape, p.z, one.half, 0.018F) * 0.9F, one.material);
        if (one.spokes > 0) {
            // Pinion and arbor.
            hit.join(std::min(plate(toothed(p, 0.2F, 10, phase), p.z - 0.14F, 0.12F), rodZ(p, 0.07F, 0.42F)), Steel);
        }
    }

    static void screw(Vec3 p, float radius, float turn, Hit &hit) {
        const float head = std::max(rodY(p, radius, 0.05F, 0.02F),
                                    -box(turnY(p - Vec3{0, 0.05F, 0}, turn), {radius * 1.5F, 0.035F, radius * 0.17F}));
        hit.join(head, Blued);
    }

    static Vec3 flat(Vec3 p) { return {p.x, p.z, p.y}; }
};

} // namespace lumora::samples
