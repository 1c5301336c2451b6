// What the two animals that were caught by the flash share: the room, the light that fades behind them, their fur.
#pragma once

#include "Bodies.h"
#include "Scene.h"

namespace lumora::samples {

/// A living room in the evening, lit by the flash beside the lens. Whoever is in it has materials from RoomEnd on.
class FlashRoom : public Scene {
  public:
    Vec3 sky(Vec3) const override { return colour(0x0A0806); }

    /// The flash fades with the square of the distance.
    Vec3 air(Vec3 light, Vec3, Vec3, float distance) const override {
        return light * std::min(1.25F, std::pow(5.2F / std::max(distance, 1.0F), 2.2F));
    }

  protected:
    enum RoomMaterial { Wallpaper, Cushion, Blanket, Frame, Painting, RoomEnd };

    explicit FlashRoom(unsigned sofa) : m_sofa(colour(sofa)) {
        camera = {{0, 1.25F, -6}, {0, 0.92F, 0}, 2.25F};
        sunDirection = normalise({0.10F, 0.16F, -1});
        sunColour = {2.3F, 2.25F, 2.2F};
        skyLight = {0.16F, 0.14F, 0.12F};
        groundLight = {0.10F, 0.08F, 0.06F};
        farthest = 14;
        caution = 0.8F;
        steps = 140;
        shadowReach = 3;
        shadowSoftness = 22;
        creviceSize = 0.25F;
        bloom = 0.10F;
        vignette = 0.45F;
        focus = 5.3F;
        aperture = 0.012F;
        strands = 900000;
    }

    static void room(Vec3 p, Hit &hit) {
        hit.join(4.2F - p.z, Wallpaper);
        const float back = box(p - Vec3{0, -0.15F, 2.1F}, {4.2F, 1.55F, 0.45F}, 0.35F);
        const float seam = std::fabs(repeat(p.x - 0.95F, 1.9F));
        hit.join(back + 0.10F * smoothStep(0.25F, 0.0F, seam) * smoothStep(0.3F, 0.0F, back), Cushion);
        const float folds = 0.06F * fbm(Vec3{p.x * 1.2F, 0, p.z * 1.6F}, 3);
        hit.join((p.y + 0.85F - folds) * 0.9F, Blanket);
        hit.join(box(p - Vec3{1.75F, 2.75F, 4.15F}, {0.72F, 0.55F, 0.09F}, 0.03F), Frame);
        hit.join(box(p - Vec3{1.75F, 2.75F, 4.1F}, {0.58F, 0.42F, 0.09F}), Painting);
    }

    Surface roomLook(int material, Vec3 p) const {
        const float weave = 0.85F + 0.15F * std::sin(p.x * 90) * std::sin(p.y * 90 + p.z * 90);
        switch (material) {
        case Wallpaper: {
            const float stripe = smoothStep(0.10F, 0.16F, std::fabs(repeat(p.x, 0.62F)));
            return {.colour = mix(colour(0xC9A878), colour(0xB08A5A), stripe) * (0.9F + 0.2F * fbm(p * 4, 3))};
        }
        case Cushion:
            return {.colour = m_sofa * (weave * (0.8F + 0.35F * fbm(p * 6, 3)))};
        case Frame:
            return {.colour = colour(0x7A4A22), .shine = 0.3F};
        case Painting:
            return {.colour = mix(colour(0x4A7A3A), colour(0x9AC4E8),
                                  smoothStep(2.66F, 2.72F, p.y + 0.1F * std::sin(p.x * 5)))};
        default: {
            const bool line = std::fabs(repeat(p.x, 0.5F)) < 0.05F || std::fabs(repeat(p.z, 0.5F)) < 0.05F;
            return {.colour = (line ? colour(0xE8D8B8) : colour(0xA83A32)) * weave};
        }
        }
    }

    /// A hair that lies along `way` and stands off the skin by `off` (0 flat to 1 on end).
    static Strand fur(Vec3 n, Vec3 way, float reach, float width, float off, float chance, float order) {
        const float other = fraction(chance * 733);
        Vec3 along = normalise(way - n * dot(way, n));
        along = normalise(along + cross(n, along) * (0.7F * (other - 0.5F)) + n * off);
        const float light = 0.72F + 0.62F * fraction(chance * 4001);
        const float full = reach * (0.65F + 0.6F * fraction(chance * 97));
        return {.tip = along * full,
                .sag = n * (0.12F * full),
                .width = width,
                .order = order + 0.12F * fraction(chance * 59),
                .solid = 0.8F,
                .tint = {light, light, light}};
    }

    /// The shine at the back of an eye that looks into the flash, in a wide pupil; `e` is the place on the eyeball of
    /// size 1, `gaze` where it looks.
    static Surface flashedEye(Vec3 e, Vec3 gaze, Vec3 iris, Vec3 shine, float pupil) {
        const Vec3 right = normalise(cross(Vec3{0, 1, 0}, gaze));
        const float u = dot(e, right);
        const float v = dot(e, cross(gaze, right));
        const float r = length(u, v);
        Vec3 look = iris * (0.65F + 0.6F * noise(std::atan2(v, u) * 11, r * 4));
        look = mix(look, look * 0.25F, smoothStep(0.82F, 0.98F, r));
        const float inside = smoothStep(pupil + 0.03F, pupil - 0.03F, r);
        look = mix(look, colour(0x050404), inside);
        const Vec3 glow = shine * (inside * (0.75F + 0.45F * smoothStep(pupil, 0.1F, r)));
        return {.colour = look, .shine = 1.6F, .sharpness = 500, .mirror = 0.02F, .glow = glow};
    }

  private:
    Vec3 m_sofa;
};

} // namespace lumora::samples
