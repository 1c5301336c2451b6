// A yellow excavator at work on a building site after a shower, with a rainbow.
#include "Scenes.h"

#include "BuildingSite.h"

#include <array>

namespace lumora::samples {

namespace {

constexpr Corner BoomFoot{0.75F, 1.45F};
constexpr Corner BoomTip{4.45F, 3.5F};
constexpr Corner ArmEnd{4.95F, 1.2F};

/// Side views.
constexpr std::array<Corner, 10> Boom{{{0.62F, 1.3F},
                                       {0.58F, 1.58F},
                                       {1.75F, 3.55F},
                                       {2.3F, 4.05F},
                                       {2.75F, 4.08F},
                                       {4.5F, 3.64F},
                                       {4.55F, 3.36F},
                                       {2.85F, 3.5F},
                                       {2.35F, 3.28F},
                                       {0.95F, 1.35F}}};
constexpr std::array<Corner, 7> Arm{
    {{4.08F, 4.05F}, {4.3F, 4.1F}, {4.78F, 3.55F}, {5.05F, 1.25F}, {4.9F, 1.1F}, {4.78F, 1.2F}, {4.28F, 3.35F}}};
constexpr std::array<Corner, 6> Cab{
    {{-0.55F, 1.2F}, {-0.55F, 2.82F}, {0.42F, 2.82F}, {0.86F, 2.0F}, {0.86F, 1.45F}, {0.7F, 1.2F}}};
constexpr std::array<Corner, 8> Scoop{{{0.12F, 0.12F},
                                       {0.2F, -0.3F},
                                       {0.05F, -0.72F},
                                       {-0.3F, -0.98F},
                                       {-0.72F, -0.95F},
                                       {-0.95F, -0.7F},
                                       {-0.88F, -0.62F},
                                       {-0.12F, 0.08F}}};

class Excavator : public BuildingSite {
    enum Material { Soil = SiteEnd, Yellow, Dark, Steel, Shiny, Glass };

  public:
    Excavator() {
        camera = {{0.7F, 1.55F, -8.7F}, {-0.35F, 2.0F, 0}, 1.5F};
        caution = 0.85F;
        steps = 600;
        shadowReach = 10;
        shadowSoftness = 22;
        creviceSize = 0.3F;
        exposure = 0.92F;
        strands = 500000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        site(p, hit);
        const Vec3 q = toMachine(p);
        const float near = box(q - Vec3{1.6F, 2.0F, 0}, {4.1F, 2.5F, 1.5F});
        if (near > 0.6F) {
            hit.join(near, Yellow);
            return hit;
        }
        tracks(q, hit);
        const Vec3 s = turnY(q, 0.16F); // the upper part is swung a little
        upper(s, hit);
        cab(s - Vec3{0, 0, 0.72F}, hit);
        boom(s - Vec3{0, 0, -0.12F}, hit);
        bucket(s - Vec3{ArmEnd.x, ArmEnd.y, -0.12F}, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        const Vec3 q = toMachine(p);
        const float rough = fbm(q * 3.5F, 4);
        const Vec3 mud = mix(colour(0x6B4A2E), colour(0x8F6B46), rough);
        switch (material) {
        case Soil:
            return {.colour = mix(colour(0x4E321D), colour(0x8C6238), fbm(p * 6, 4)), .shine = 0.15F, .sharpness = 12};
        case Yellow: {
            Surface look = lacquer(colour(0xF2A400), q);
            const Vec3 s = turnY(q, 0.16F);
            // Scratches and mud low down, a black band along the engine housing, seams and louvres.
            if (s.x < -0.62F && s.y < 1.42F && s.y > 1.3F) {
                look.colour = colour(0x222226);
            }
            const bool louvre = s.x > -1.75F && s.x < -1.2F && s.y > 1.62F && s.y < 1.95F && std::fabs(s.z) > 1;
            if ((louvre && fraction(s.y * 13) < 0.4F) ||
                (std::fabs(s.x + 1.0F) < 0.012F && s.y > 1.42F && s.y < 2.2F)) {
                look.colour = look.colour * 0.15F;
            }
            const float dirt =
                smoothStep(0.62F, 0.95F, fbm(q * 5, 4) + 0.35F * (1.6F - q.y) + (q.x > 4.2F ? 0.3F * (2 - q.y) : 0.0F));
            look.colour = mix(look.colour, mud, 0.8F * dirt);
            look.mirror *= 1 - dirt;
            return look;
        }
        case Dark: {
            const float dirt = smoothStep(0.5F, 0.75F, rough + 0.25F * (0.9F - q.y));
            return {.colour = mix(colour(0x26272B), mud, dirt), .shine = 0.5F * (1 - dirt), .sharpness = 35};
        }
        case Steel: {
            Surface look = steel(q);
            look.colour = mix(look.colour, mud, 0.5F * smoothStep(0.45F, 0.7F, rough));
            return look;
        }
        case Shiny:
            return chrome();
        case Glass:
            return pane();
        default:
            return siteLook(material, p, n);
        }
    }

    float grain(int material, Vec3 p) const override {
        return material == Soil ? 0.06F * fbm(p * 7, 4) : siteGrain(material, p);
    }

    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        return material == Ground ? growth(p, n, chance) : Strand{};
    }

  private:
    static Vec3 toMachine(Vec3 p) { return turnY(p - Vec3{1.5F, 0.02F, 0.6F}, -2.72F); }

    static void tracks(Vec3 p, Hit &hit) {
        if (p.y > 1.3F) {
            hit.join(p.y - 1.1F, Dark);
            return;
        }
        constexpr float Radius = 0.42F;
        constexpr float Half = 1.45F;
        const Vec3 half = bothSides(p) - Vec3{0, 0.47F, 1.08F};
        const float beyond = std::max(std::fabs(half.x) - Half, 0.0F);
        const float out = length(beyond, half.y) - Radius;
        // Along the chain: straight runs, then around the ends.
        const float bend = std::atan2(std::fabs(half.y), beyond);
        const float along =
            half.x + (half.x > 0 ? 1.0F : -1.0F) * (beyond > 0 ? Radius * (Pi / 2 - bend) - beyond : 0.0F);
        const float shoe = std::fabs(repeat(along, 0.19F));
        const float chain = std::max(std::fabs(out) - 0.045F, std::fabs(half.z) - 0.3F);
        const float gap = 0.012F - std::fabs(std::fabs(repeat(along, 0.19F)) - 0.095F);
        const float grouser = std::max({out - 0.085F, -out, shoe - 0.02F, std::fabs(half.z) - 0.3F});
        hit.join(0.8F * std::min(std::max(chain, gap), grouser), Dark);
        float frame = box(half - Vec3{0, 0.02F, -0.02F}, {1.35F, 0.17F, 0.16F}, 0.03F);
        frame = std::min(frame, box(p - Vec3{0, 0.62F, 0}, {0.8F, 0.16F, 1.0F}, 0.05F));
        hit.join(frame, Dark);
        const float ends = std::fabs(std::fabs(half.x) - Half);
        const Vec3 wheel{std::fabs(half.x) - Half, half.y, half.z};
        float steelParts = std::max(length(ends, half.y) - 0.34F, std::fabs(half.z) - 0.12F);
        steelParts = std::max(steelParts, -std::max(length(ends, half.y) - 0.26F, 0.07F - half.z));
        steelParts = std::min(steelParts, rodZ(wheel, 0.12F, 0.17F, 0.03F));
        const Vec3 roller{repeat(half.x, 0.42F), half.y + 0.26F, half.z};
        steelParts = std::min(steelParts, std::max(rodZ(roller, 0.12F, 0.2F, 0.03F), std::fabs(half.x) - 1.2F));
        steelParts = std::min(steelParts, bolts(wheel - Vec3{0, 0, 0.17F}, 6, 0.075F, 0.02F));
        hit.join(steelParts, Steel);
    }

    static void upper(Vec3 p, Hit &hit) {
        hit.join(rodY(p - Vec3{0, 0.92F, 0}, 0.72F, 0.14F), Steel);
        const Vec3 half = bothSides(p);
        float yellow = box(p - Vec3{-0.4F, 1.16F, 0}, {1.45F, 0.09F, 1.2F}, 0.04F);
        const Vec3 housing = p - Vec3{-1.15F, 1.72F, 0};
        yellow = std::min(yellow, box(housing, {0.62F, 0.48F, 1.2F}, 0.12F));
        yellow = std::min(yellow, box(p - Vec3{0.2F, 1.45F, -0.82F}, {0.55F, 0.28F, 0.36F}, 0.07F));
        hit.join(yellow, Yellow);
        // The counterweight, rounded at the back.
        const float round = length(std::max(std::fabs(p.z) - 0.75F, 0.0F), std::max(-1.5F - p.x, 0.0F)) - 0.5F;
        hit.join(std::max({plate(round, p.y - 1.6F, 0.52F, 0.09F), p.x + 1.62F}), Dark);
        // Exhaust, handrails, warning light.
        hit.join(std::max(rodY(p - Vec3{-1.35F, 2.42F, -0.55F}, 0.07F, 0.28F, 0.02F),
                          -rodY(p - Vec3{-1.35F, 2.7F, -0.55F}, 0.05F, 0.2F)),
                 Steel);
        const Vec3 rail = half - Vec3{-1.15F, 2.2F, 1.1F};
        const float bow = std::min({stick(rail, {-0.45F, 0, 0}, {-0.45F, 0.4F, 0}, 0.02F),
                                    stick(rail, {0.4F, 0, 0}, {0.4F, 0.4F, 0}, 0.02F),
                                    stick(rail, {-0.45F, 0.4F, 0}, {0.4F, 0.4F, 0}, 0.02F)});
        hit.join(bow, Black);
        hit.join(rodY(p - Vec3{-0.15F, 2.98F, 0.72F}, 0.09F, 0.09F, 0.04F), Lamp);
        hit.join(stick(half, {0.95F, 1.2F, 1.1F}, {0.95F, 1.75F, 1.1F}, 0.018F), Black);
    }

    static void cab(Vec3 p, Hit &hit) {
        const float side = outline(p.x, p.y, Cab);
        const float shell = plate(side, p.z, 0.46F, 0.07F);
        if (shell > 0.4F) {
            hit.join(shell, Yellow);
            return;
        }
        // Window openings through the sides, front and back; glass inside them.
        const float sideWindow = std::max({side + 0.1F, 1.75F - p.y});
        const float pillar = std::fabs(p.x + 0.08F) - 0.035F;
        float holes = std::max({sideWindow, -pillar, 0.36F - std::fabs(p.z)});
        holes = std::min(holes, std::max({std::fabs(p.z) - 0.37F, std::fabs(p.y - 2.1F) - 0.58F, side - 0.1F}));
        hit.join(std::max(shell, -holes), Yellow);
        hit.join(std::max(shell - 0.004F, 2.78F - p.y), Black);
        hit.join(shell + 0.05F, Glass);
        // Door handle, lamps, step, wiper.
        hit.join(stick(p, {0.1F, 1.65F, 0.49F}, {0.28F, 1.65F, 0.49F}, 0.02F), Black);
        hit.join(std::max(std::fabs(std::fabs(p.x - 0.1F) - 0.42F) - 0.006F, shell - 0.004F) +
                     std::max(0.0F, 1.25F - p.y),
                 Black);
        const Vec3 lamp = bothSides(p) - Vec3{0.38F, 2.92F, 0.32F};
        hit.join(box(lamp, {0.05F, 0.06F, 0.08F}, 0.02F), Black);
        hit.join(box(lamp - Vec3{0.05F, 0, 0}, {0.012F, 0.045F, 0.065F}), Shiny);
        hit.join(box(p - Vec3{0.25F, 1.0F, 0.62F}, {0.3F, 0.03F, 0.16F}, 0.02F), Black);
        const Vec3 mirror = p - Vec3{0.85F, 2.35F, 0.55F};
        hit.join(std::min(box(mirror, {0.02F, 0.17F, 0.09F}, 0.02F),
                          stick(p, {0.7F, 1.9F, 0.48F}, {0.85F, 2.25F, 0.55F}, 0.015F)),
                 Black);
    }

    /// A hydraulic cylinder: barrel from a to the middle, polished rod to b.
    static void ram(Vec3 p, Vec3 a, Vec3 b, float radius, float drawnOut, Hit &hit) {
        const Vec3 end = mix(a, b, drawnOut);
        hit.join(std::min(stick(p, a, end, radius), stick(p, end, end + normalise(b - a) * 0.05F, radius * 1.2F)),
                 Black);
        hit.join(stick(p, end, b, radius * 0.55F), Shiny);
        hit.join(std::min(rodZ(p - a, radius * 1.5F, radius * 1.3F, 0.01F),
                          rodZ(p - b, radius * 1.5F, radius * 1.3F, 0.01F)),
                 Dark);
    }

    static void boom(Vec3 p, Hit &hit) {
        hit.join(plate(outline(p.x, p.y, Boom), p.z, 0.2F, 0.03F), Yellow);
        hit.join(plate(outline(p.x, p.y, Arm), p.z, 0.15F, 0.03F), Yellow);
        const Vec3 half = bothSides(p);
        // Pins and their bosses.
        hit.join(std::min({rodZ(p - Vec3{BoomFoot.x, BoomFoot.y, 0}, 0.17F, 0.27F, 0.02F),
                           rodZ(p - Vec3{BoomTip.x, BoomTip.y, 0}, 0.14F, 0.25F, 0.02F),
                           rodZ(p - Vec3{ArmEnd.x, ArmEnd.y, 0}, 0.1F, 0.3F, 0.02F),
                           rodZ(p - Vec3{2.2F, 3.2F, 0}, 0.1F, 0.3F, 0.02F)}),
                 Dark);
        hit.join(plate(std::max(length(p.x - 0.75F, p.y - 1.35F) - 0.36F, 0.9F - p.y), half.z - 0.26F, 0.04F, 0.01F),
                 Yellow);
        ram(half - Vec3{0, 0, 0.3F}, {1.05F, 1.2F, 0}, {2.2F, 3.2F, 0}, 0.085F, 0.58F, hit);
        ram(p, {2.3F, 4.2F, 0}, {4.18F, 4.02F, 0}, 0.095F, 0.62F, hit);
        ram(p, {4.72F, 3.62F, 0}, {5.28F, 1.72F, 0}, 0.075F, 0.6F, hit);
        hit.join(std::max(length(p.x - 2.32F, p.y - 4.1F) - 0.17F, std::fabs(half.z - 0.13F) - 0.03F), Yellow);
        // Links from the ram to arm and bucket.
        hit.join(std::min(stick(half - Vec3{0, 0, 0.2F}, {4.93F, 1.6F, 0}, {5.28F, 1.72F, 0}, 0.05F),
                          stick(half - Vec3{0, 0, 0.12F}, {5.28F, 1.72F, 0}, {5.13F, 1.08F, 0}, 0.055F)),
                 Dark);
        // Hoses over the boom.
        hit.join(std::min(stick(half - Vec3{0, 0, 0.1F}, {0.8F, 1.95F, 0}, {1.95F, 3.74F, 0}, 0.03F),
                          stick(half - Vec3{0, 0, 0.16F}, {2.8F, 4.07F, 0}, {4.45F, 3.66F, 0}, 0.028F)),
                 Black);
    }

    static void bucket(Vec3 p, Hit &hit) {
        if (length(p - Vec3{-0.4F, -0.4F, 0}) > 1.6F) {
            return;
        }
        const Vec3 q = turnZ(p, 0.05F);
        const float side = outline(q.x, q.y, Scoop);
        float scoop = plate(side, q.z, 0.55F, 0.03F);
        // Hollow, open along the line from hinge to teeth.
        const float mouth = 0.75F * q.y - 0.66F * q.x + 0.02F;
        scoop = std::max(scoop, -plate(side + 0.05F, q.z, 0.5F));
        scoop = std::max(scoop, mouth - 0.06F);
        scoop = std::min(scoop,
                         plate(std::max(side - 0.02F, std::fabs(side) - 0.04F), std::fabs(q.z) - 0.3F, 0.03F) + 0.02F);
        hit.join(scoop * 0.9F, Dark);
        const Vec3 tooth{q.x + 0.93F, q.y + 0.6F, repeat(q.z, 0.24F)};
        const Vec3 along = turnZ(tooth, 3.85F);
        hit.join(
            std::max(box(along - Vec3{0.06F, 0, 0}, {0.14F, 0.05F - 0.16F * (along.x - 0.02F) * 0.5F, 0.06F}, 0.01F),
                     std::fabs(q.z) - 0.56F) *
                0.8F,
            Steel);
        const Vec3 heaped = turnZ(q - Vec3{-0.5F, -0.36F, 0}, 0.75F);
        hit.join(0.7F * (ellipsoid(heaped, {0.5F, 0.3F, 0.52F}) - 0.09F * (fbm(p * 5, 3) - 0.4F)), Soil);
        // Crumbs that fall.
        for (int i = 0; i < 9; ++i) {
            const float size = 0.025F + 0.05F * hash(i, 3);
            const Vec3 at{-0.75F - 0.3F * hash(i, 1), -0.75F - 0.75F * hash(i, 2), 0.9F * (hash(i, 4) - 0.5F)};
            hit.join(ellipsoid(q - at, {size, size * 0.8F, size}), Soil);
        }
    }
};

} // namespace

std::unique_ptr<Scene> excavator() {
    return std::make_unique<Excavator>();
}

} // namespace lumora::samples
