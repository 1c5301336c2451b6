// A space rocket on its pad beside a lagoon, at sunrise.
#include "Scenes.h"

#include "LaunchSite.h"

namespace lumora::samples {

namespace {

constexpr float Deck = 3.4F; ///< height of the launch table
constexpr float CoreTop = 22;
class Rocket : public LaunchSite {
    enum Material { Orange = SiteEnd, White, Dark, Nozzle, Truss, Concrete };

  public:
    Rocket() {
        camera = {{-4.8F, 2.1F, -41}, {0.7F, 12.4F, 0}, 1.55F};
        caution = 0.85F;
        steps = 240;
        shadowReach = 24;
        shadowSoftness = 26;
        creviceSize = 0.7F;
        exposure = 0.85F;
        bloom = 0.2F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        site(p, hit);
        pad(p, hit);
        const float near = box(p - Vec3{0, 17.5F, 0}, {4.2F, 15.5F, 4.2F});
        if (near > 1) {
            hit.join(near, White);
        } else {
            rocket(turnY(p, 0.42F), hit);
        }
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        const float rough = fbm(p * 1.6F, 4);
        switch (material) {
        case Orange: {
            // Sprayed foam: streaky, with ribs between the tanks and hoar frost over the coldest part.
            const float streak = fbm(Vec3{p.x * 3, p.y * 0.35F, p.z * 3}, 4);
            Vec3 foam = mix(colour(0xA82802), colour(0xF25808), 0.5F * streak + 0.5F * rough);
            const float frost =
                smoothStep(5.2F, 6.6F, p.y) * smoothStep(13.6F, 11.5F, p.y) * smoothStep(0.48F, 0.72F, streak);
            foam = mix(foam, colour(0xFFF1E4), 0.75F * frost);
            const float seam = std::min(std::fabs(p.y - 14.6F), std::fabs(p.y - 17.1F));
            return {.colour = foam * mix(0.45F, 1.0F, smoothStep(0.02F, 0.07F, seam)), .shine = 0.25F, .sharpness = 18};
        }
        case White:
            return paint(p, rough);
        case Nozzle:
            return {.colour = colour(0x7A6A62) * 0.5F,
                    .shine = 1.2F,
                    .sharpness = 40,
                    .mirror = 0.3F,
                    .tint = colour(0xFFD8B8)};
        case Truss:
            return {.colour = mix(colour(0x8C2A1E), colour(0xB8402C), rough), .shine = 0.4F, .sharpness = 30};
        case Concrete: {
            const bool joint = std::fabs(repeat(p.x, 2.4F)) < 0.03F || std::fabs(repeat(p.z, 2.4F)) < 0.03F;
            return {.colour = mix(colour(0x77736E), colour(0xADA79E), rough) * (joint && n.y > 0.8F ? 0.6F : 1.0F),
                    .shine = 0.1F};
        }
        case Dark:
            return {.colour = mix(colour(0x24262C), colour(0x3A3B40), rough), .shine = 0.5F, .sharpness = 30};
        default:
            return siteLook(material, p, n, rough);
        }
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Orange: {
            const Vec3 q = turnY(p, 0.42F);
            const bool ribs = p.y > 14.7F && p.y < 17;
            return ribs ? 0.05F * std::fabs(std::sin(22 * std::atan2(q.z, q.x))) : 0.015F * fbm(p * 9, 3);
        }
        case Concrete:
            return 0.02F * fbm(p * 6, 3);
        default:
            return siteGrain(material, p);
        }
    }

  private:
    static void rocket(Vec3 p, Hit &hit) {
        const float out = length(p.x, p.z);
        hit.join(std::max(out - 1.75F, std::fabs(p.y - 13.6F) - 8.4F), Orange);
        // Upper stage, capsule and escape tower.
        float white = cone(p - Vec3{0, CoreTop, 0}, 1.77F, 1.35F, 1.4F);
        white = std::min(white, std::max(out - 1.35F, std::fabs(p.y - 25.2F) - 1.9F));
        white = std::min(white, cone(p - Vec3{0, 27.1F, 0}, 1.42F, 0.5F, 1.7F));
        white = std::min(
            {white, cone(p - Vec3{0, 28.8F, 0}, 0.34F, 0.2F, 2.2F), cone(p - Vec3{0, 31, 0}, 0.2F, 0.02F, 0.8F)});
        const Vec3 half{std::fabs(p.x) - 2.72F, p.y, p.z};
        // Boosters with rounded noses.
        const float side = length(half.x, half.z);
        white = std::min(white, std::max(side - 0.86F, std::fabs(p.y - 11.6F) - 6.8F));
        white = std::min(white, std::max(ellipsoid(half - Vec3{0, 18.4F, 0}, {0.86F, 2.4F, 0.86F}), 18.3F - p.y));
        white = std::min(white, cone(half - Vec3{0, 4.5F, 0}, 1.05F, 0.86F, 1.2F));
        hit.join(white, White);
        // Rings, cable ducts and the struts that hold the boosters.
        float dark =
            std::max(std::fabs(out - 1.75F) - 0.07F, std::min(std::fabs(p.y - 5.3F), std::fabs(p.y - CoreTop)) - 0.16F);
        dark = std::min(dark, std::max(std::fabs(out - 1.36F) - 0.05F,
                                       std::min(std::fabs(p.y - 23.45F), std::fabs(p.y - 27.05F)) - 0.1F));
        dark = std::min(dark, std::max(std::fabs(side - 0.86F) - 0.05F,
                                       std::fabs(repeat(p.y - 4.9F, 3.4F)) - 0.07F + (p.y > 18.8F ? 1.0F : 0.0F)));
        for (const float y : {6.6F, 17.8F}) {
            dark = std::min(dark, stick({std::fabs(p.x), p.y, std::fabs(p.z)}, {1.3F, y, 0.9F}, {2.3F, y, 0.6F}, 0.1F));
        }
        dark = std::min(dark, box(p - Vec3{0.75F, 13.6F, -1.6F}, {0.13F, 7.6F, 0.2F}, 0.08F));
        const Vec3 leg = slices({p.x, p.z, p.y - 29.4F}, 3);
        dark = std::min(dark, stick({leg.x, leg.z, leg.y}, {0.22F, 0.2F, 0}, {0.52F, -0.7F, 0}, 0.05F));
        hit.join(dark, Dark);
        // Bells of the engines.
        const Vec3 four{std::fabs(p.x) - 0.75F, p.y - 3.7F, std::fabs(p.z) - 0.75F};
        const auto bell = [](Vec3 q, float wide, float high) {
            const float radius = mix(wide, 0.3F * wide, std::pow(clamp01(q.y / high), 0.6F));
            return std::max(std::fabs(length(q.x, q.z) - radius) - 0.05F, std::fabs(q.y - high / 2) - high / 2) * 0.8F;
        };
        hit.join(std::min(bell(four, 0.6F, 1.5F), bell(half - Vec3{0, 3.6F, 0}, 0.75F, 1.0F)), Nozzle);
    }

    static Surface paint(Vec3 world, float rough) {
        const Vec3 p = turnY(world, 0.42F);
        Vec3 tone = mix(colour(0xE4E2DC), colour(0xFBF9F4), rough);
        const float angle = std::atan2(p.z, p.x);
        if (p.y > 23.6F && p.y < 25.0F) {
            // Measuring pattern: black and white fields.
            const bool upper = p.y > 24.3F;
            tone = (std::fmod(std::floor((angle + Pi) / (Pi / 4)), 2.0F) < 1) == upper ? colour(0x1B1C22) : tone;
        } else if (std::fabs(p.y - 26.1F) < 0.22F || std::fabs(p.y - 28.75F) < 0.14F || p.y > 31) {
            tone = colour(0xE2491B);
        } else if (std::fabs(p.x) > 1.8F && std::fabs(p.y - 17.4F) < 0.45F) {
            tone = colour(0x1D3F9E);
        } else if (std::fabs(p.x) > 1.8F && p.y < 6.4F) {
            tone = std::fmod(std::floor((std::atan2(p.z, std::fabs(p.x) - 2.72F) + Pi) / (Pi / 4)), 2.0F) < 1
                       ? colour(0x1B1C22)
                       : tone;
        }
        const Vec3 hatch{p.x, p.y - 27.8F, p.z + 1.05F};
        tone = length(hatch.x, hatch.y) < 0.28F && p.z < 0 && p.y > 27.2F ? colour(0x202A3A) : tone;
        return {.colour = tone * 0.95F, .shine = 0.9F, .sharpness = 70, .mirror = 0.05F};
    }

    /// Four posts with floors and slanting braces, `half` wide, from y = 0 upwards.
    static float tower(Vec3 p, float half, float high, float storey) {
        const Vec3 c{std::fabs(p.x), p.y, std::fabs(p.z)};
        const float posts =
            std::max(box({c.x - half, 0, c.z - half}, {0.15F, 1, 0.15F}), std::fabs(p.y - high / 2) - high / 2);
        const float y = repeat(p.y, storey);
        const float slant = half - 2 * half * std::fabs(2 * fraction(p.y / (2 * storey)) - 1);
        float bars = std::min(length(std::fabs(p.x + slant) * 0.8F, c.z - half) - 0.08F,
                              length(std::fabs(p.z + slant) * 0.8F, c.x - half) - 0.08F);
        bars = std::min({bars, length(y, c.z - half) - 0.11F, length(y, c.x - half) - 0.11F});
        bars = std::max({bars, c.x - half - 0.1F, c.z - half - 0.1F, std::fabs(p.y - high / 2) - high / 2});
        const float floor =
            std::max({std::fabs(y) - 0.05F, c.x - half, c.z - half, std::fabs(p.y - high / 2) - high / 2});
        return std::min({posts, bars, floor}) * 0.85F;
    }

    static void pad(Vec3 p, Hit &hit) {
        const float near = box(p - Vec3{2, 17, 0}, {9.5F, 19, 5});
        if (near > 1.5F) {
            hit.join(near, Truss);
            return;
        }
        // The table on its piers, a hole for the flames, railings.
        float table = std::max(box(p - Vec3{1.2F, Deck - 0.75F, 0}, {6.4F, 0.65F, 4}, 0.05F),
                               -box(p - Vec3{0, Deck, 0}, {3.3F, 3, 1.6F}));
        table = std::min(
            table, box(Vec3{std::fabs(p.x - 1.2F) - 5, p.y - 1.5F, std::fabs(p.z) - 3}, {0.8F, 1.2F, 0.7F}, 0.08F));
        table = std::min(table, box(Vec3{std::fabs(p.x) - 3.4F, p.y - Deck - 0.4F, std::fabs(p.z) - 1.2F},
                                    {0.3F, 0.5F, 0.3F}, 0.04F));
        hit.join(table, Concrete);
        const float fence = std::max(
            std::fabs(box({p.x - 1.2F, p.z, 0}, {6.3F, 3.9F, 1})) - 0.04F,
            std::min(std::fabs(repeat(p.y - Deck - 0.2F, 0.4F)) - 0.03F, std::fabs(repeat(p.x + p.z, 1.2F)) - 0.04F));
        hit.join(std::max(fence, std::fabs(p.y - Deck - 0.4F) - 0.45F) * 0.7F, Dark);
        const Vec3 t = p - Vec3{6, Deck, 0.8F};
        float truss = tower(t, 1.5F, 24, 2.4F);
        truss = std::min(
            {truss, tower(t - Vec3{0, 24, 0}, 0.5F, 4.8F, 1.2F), stick(t, {0, 28, 0}, {0, 32, 0}, 0.12F, 0.04F)});
        // Swing arms to the rocket.
        for (const float y : {9.4F, 19.0F, 23.2F}) {
            const float reach = y > 20 ? 1.25F : 1.6F;
            const Vec3 arm = t - Vec3{-3.0F + reach * 0.35F, y, -0.8F};
            const Vec3 across{arm.x, std::fabs(arm.y), std::fabs(arm.z)};
            const float rails = length(across.y - 0.45F, across.z - 0.4F) - 0.08F;
            const float brace = std::min(
                length(arm.y - 0.45F + 0.9F * std::fabs(2 * fraction(arm.x / 1.3F) - 1), across.z - 0.4F) - 0.06F,
                std::max(std::fabs(arm.y + 0.45F) - 0.05F, across.z - 0.4F));
            truss = std::min(truss, std::max(std::min(rails, brace * 0.7F), std::fabs(arm.x) - (3.2F - reach * 0.65F)));
        }
        hit.join(truss, Truss);
        hit.join(box(t - Vec3{-4.15F, 23.3F, -0.8F}, {0.5F, 0.75F, 0.65F}, 0.05F), Tank);
        hit.join(box(t - Vec3{0.4F, 11, 0.3F}, {0.55F, 11, 0.55F}), Dark);
    }
};

} // namespace

std::unique_ptr<Scene> rocket() {
    return std::make_unique<Rocket>();
}

} // namespace lumora::samples
