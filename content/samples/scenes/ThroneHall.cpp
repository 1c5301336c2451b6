// A king's hall: coloured light from tall windows falls across marble and a red carpet that leads to a golden throne.
#include "Scenes.h"

#include "Lamps.h"
#include "Noise.h"
#include "Shapes.h"
#include "StainedGlass.h"

namespace lumora::samples {

namespace {

enum Material { Floor, Carpet, Stone, Wall, EndWall, Gold, Velvet, Banner, Flame, Iron, Jewel };

constexpr float Bay = 3;     ///< from column to column
constexpr float Side = 5.2F; ///< the outer walls
constexpr float Row = 3.2F;  ///< the columns
constexpr float Spring = 4.2F;
constexpr float End = 9.2F;
const Vec3 Sun = normalise({0.74F, 0.62F, 0.2F});

class ThroneHall : public Scene {
  public:
    ThroneHall() {
        camera = {{-0.75F, 1.75F, -7.6F}, {0.1F, 2.75F, 5}, 1.3F};
        sunDirection = {0, 1, 0};
        sunColour = {0, 0, 0}; // the sun shines through the windows only
        skyLight = {0.2F, 0.17F, 0.2F};
        groundLight = {0.2F, 0.15F, 0.11F};
        farthest = 40;
        caution = 0.9F;
        steps = 150;
        creviceSize = 0.5F;
        exposure = 1.1F;
        bloom = 0.35F;
        vignette = 0.4F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        const float x = std::fabs(p.x);
        hit.join(p.y, Floor);
        hit.join(Side - x, Wall);
        hit.join(End - p.z, EndWall);
        hit.join(masonry({x, p.y, repeat(p.z - Bay / 2, Bay)}), Stone);
        hit.join(box(p - Vec3{0, 0, 1}, {1.05F, 0.025F, 12}, 0.01F), Carpet);
        for (int i = 0; i < 3; ++i) {
            const auto k = static_cast<float>(i);
            const Vec3 step = p - Vec3{0, 0.1F + 0.2F * k, 8.9F + 0.35F * k};
            hit.join(box(step, {2.9F - 0.4F * k, 0.1F, 3.0F}, 0.02F), Floor);
            hit.join(box(step, {1.05F, 0.115F, 3.015F}, 0.02F), Carpet);
        }
        throne(p - Vec3{0, 0.6F, 7.9F}, hit);
        furnishing({x, p.y, repeat(p.z - Bay / 2, Bay)}, hit);
        for (const float z : {3.3F, 0.3F}) {
            candles({x - 1.55F, p.y, p.z - z - 1.2F}, hit);
        }
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3 d) const override {
        Surface look = bare(material, p, n, d);
        if (look.glow.x > 1.5F) {
            return look;
        }
        const float facing = dot(n, Sun);
        if (facing > 0) {
            const Vec3 glass = throughWindow(p);
            if (glass.x + glass.y + glass.z > 0.01F) {
                const Vec3 pane = p + Sun * ((Side - p.x) / Sun.x);
                look.glow += look.colour * glass * (5.5F * facing * lampReaching(*this, p + n * 0.03F, pane, 26));
            }
        }
        // Torches on the columns, and a warm glow about the throne.
        for (const float side : {-1.0F, 1.0F}) {
            const float column = p.z - repeat(p.z - Bay / 2, Bay);
            const Vec3 to = Vec3{side * 2.55F, 2.55F, column} - p;
            look.glow += look.colour * colour(0xFF9A40) *
                         (0.85F * std::max(0.0F, 0.75F * dot(n, normalise(to)) + 0.25F) / (0.3F + dot(to, to)));
        }
        const Vec3 throneLamp = Vec3{0, 4.2F, 5.4F} - p;
        look.glow += look.colour * colour(0xFFD79A) *
                     (5.0F * std::max(0.0F, dot(n, normalise(throneLamp))) / (1.5F + dot(throneLamp, throneLamp)));
        return look;
    }

    Vec3 sky(Vec3) const override { return {0.02F, 0.018F, 0.025F}; }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Stone:
        case Wall:
        case EndWall: {
            const float row = std::floor(p.y * 2.2F);
            const float u = (p.x + p.z) * 1.1F + 0.5F * static_cast<float>(static_cast<int>(row) & 1);
            const float joint = std::min(std::fabs(repeat(p.y * 2.2F, 1)), std::fabs(repeat(u, 1)));
            return 0.012F * fbm(p * 9, 3) + 0.012F * smoothStep(0, 0.05F, joint);
        }
        case Carpet:
            return 0.004F * noise(p.x * 70, p.z * 70);
        case Gold:
            return 0.004F * noise(p * 18);
        default:
            return 0;
        }
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        // Dust in the shafts of light.
        constexpr int Steps = 44;
        const float reach = std::min(distance, 20.0F);
        const float step = reach / Steps;
        Vec3 sum;
        for (int i = 0; i < Steps; ++i) {
            const float jitter = hash(static_cast<int>(d.x * 20000), static_cast<int>(d.y * 20000), i);
            const Vec3 p = from + d * (step * (static_cast<float>(i) + jitter));
            if (p.x > -3.2F && p.x < Side) {
                // The arcade stands between: only what passes its arches gets through.
                const Vec3 q = p + Sun * std::max(0.0F, (Row - p.x) / Sun.x);
                if (p.x > Row || archway(repeat(q.z, Bay), q.y) < -0.1F) {
                    sum += throughWindow(p) * (0.7F + 0.6F * noise(p * 0.9F));
                }
            }
        }
        return light + sum * (0.075F * step);
    }

  private:
    /// How far outside a pointed arch of the arcade; z from the middle of its opening.
    static float archway(float z, float y) {
        z = std::fabs(z);
        return y > Spring ? length(z + 0.9F, y - Spring) - 1.98F : z - 1.08F;
    }

    /// How far outside a window of the outer wall; z from the window's middle.
    static float lancet(float z, float y) {
        z = std::fabs(z);
        const float arch = y > 3.9F ? length(z + 0.7F, y - 3.9F) - 1.5F : z - 0.8F;
        return std::max(arch, 1.5F - y);
    }

    /// Columns, arcade, vault and ribs; x outwards, z from the nearest column.
    static float masonry(Vec3 p) {
        const float between = Bay / 2 - std::fabs(p.z); // from the middle of the opening
        const float wall = std::max({std::fabs(p.x - Row) - 0.32F, -archway(between, p.y), Spring - 0.05F - p.y});
        const float moulding =
            std::max(length(archway(between, p.y) - 0.03F, std::fabs(p.x - Row) - 0.32F) - 0.09F, Spring - p.y);
        // A bundle of eight shafts.
        const Vec3 column{p.x - Row, p.y, p.z};
        const Vec3 shaft = slices({column.x, column.z, column.y}, 8);
        const float shafts = std::min(length(column.x, column.z) - 0.3F, length(shaft.x - 0.31F, shaft.y) - 0.1F);
        float d = std::min({wall, moulding, std::max(shafts, p.y - Spring)});
        d = std::min(d, rod(length(column.x, column.z), p.y - 0.16F, 0.56F, 0.16F, 0.05F));
        d = std::min(d, rod(length(column.x, column.z), p.y - 0.4F, 0.48F, 0.07F, 0.06F));
        const float capital = mix(0.4F, 0.6F, clamp01((p.y - Spring + 0.45F) / 0.4F)) +
                              0.02F * std::cos(12 * std::atan2(column.z, column.x));
        d = std::min(d, std::max(length(column.x, column.z) - capital, std::fabs(p.y - Spring + 0.2F) - 0.22F) * 0.9F);
        // Vault over the nave, and a flat roof over the aisles.
        const float barrel = 4.4F - length(p.x + 1.2F, std::max(p.y - 6.2F, 0.0F));
        d = std::min(d, std::max(barrel, 6.2F - p.y));
        d = std::min(d, std::max(barrel - 0.16F, std::max(std::fabs(p.z) - 0.14F, 6.1F - p.y)));
        return std::min(d, std::max(6.3F - p.y, Row - p.x));
    }

    /// Torches and banners, on every column.
    static void furnishing(Vec3 p, Hit &hit) {
        const Vec3 torch = p - Vec3{2.62F, 2.3F, 0};
        hit.join(std::min(stick(torch, {0.2F, -0.35F, 0}, {-0.07F, 0.08F, 0}, 0.03F, 0.05F),
                          rodY(torch - Vec3{-0.07F, 0.1F, 0}, 0.09F, 0.05F, 0.02F)),
                 Iron);
        // A tongue of flame, widest low down.
        const Vec3 fire = torch - Vec3{-0.07F + 0.02F * std::sin(torch.y * 14), 0.12F, 0};
        const float t = clamp01(fire.y / 0.52F);
        const float wide =
            0.1F * std::sin(Pi * std::pow(t, 0.5F)) * (1 - 0.3F * t) + 0.012F * std::sin(fire.y * 40) * t;
        hit.join(std::max({length(fire.x, fire.z) - wide, -fire.y, fire.y - 0.52F}) * 0.7F, Flame);
        const Vec3 cloth = p - Vec3{2.12F, 4.15F, 0.1F * std::sin(p.x * 9)};
        const float tail = 0.25F * (1 - std::fabs(cloth.x) / 0.42F);
        hit.join(std::max({(std::fabs(cloth.z) - 0.015F) * 0.7F, std::fabs(cloth.x) - 0.42F, cloth.y - 0.95F,
                           -cloth.y - 0.95F + tail}),
                 Banner);
        hit.join(std::min(rodX(p - Vec3{2.2F, 5.12F, 0}, 0.035F, 0.62F), sphere(p - Vec3{1.58F, 5.12F, 0}, 0.07F)),
                 Gold);
    }

    static void candles(Vec3 p, Hit &hit) {
        const float near = std::max(length(p.x, p.z) - 0.45F, p.y - 2.3F);
        if (near > 0.3F) {
            hit.join(near, Gold);
            return;
        }
        const float r = length(p.x, p.z);
        const Vec3 arm = slices({p.x, p.z, p.y}, 5);
        float gold = std::min({rod(r, p.y - 0.06F, 0.28F, 0.05F, 0.04F),
                               rod(r, p.y - 0.8F, 0.04F + 0.02F * std::cos(p.y * 14), 0.8F, 0.02F)});
        gold = std::min(gold, length(length(r - 0.18F, std::min(p.y - 1.65F, 0.0F)) - 0.12F, arm.y) - 0.025F +
                                  (p.y > 1.66F ? 0.3F : 0.0F));
        gold = std::min(gold, rod(length(arm.x - 0.3F, arm.y), p.y - 1.67F, 0.07F, 0.025F, 0.02F));
        hit.join(gold * 0.9F, Gold);
        hit.join(rod(length(arm.x - 0.3F, arm.y), p.y - 1.8F, 0.035F, 0.13F, 0.01F), Velvet);
        hit.join(ellipsoid({arm.x - 0.3F, arm.y, p.y - 2.01F}, {0.025F, 0.025F, 0.07F}), Flame);
    }

    static void throne(Vec3 p, Hit &hit) {
        if (box(p - Vec3{0, 1.5F, 0}, {1.1F, 1.7F, 0.9F}) > 0.4F) {
            hit.join(box(p - Vec3{0, 1.5F, 0}, {1.1F, 1.7F, 0.9F}), Gold);
            return;
        }
        const float x = std::fabs(p.x);
        const Vec3 back = p - Vec3{0, 1.5F, 0.5F};
        const float panel = std::max(back.y > 0.7F ? length(back.x, back.y - 0.7F) - 0.6F : x - 0.6F, -back.y - 1.0F);
        hit.join(std::max(panel - 0.16F, std::fabs(back.z) - 0.1F), Gold);
        hit.join(std::max(panel, std::fabs(back.z + 0.1F) - 0.06F +
                                     0.05F * std::exp(-200 * length(repeat(back.x, 0.3F), repeat(back.y, 0.3F)) *
                                                      length(repeat(back.x, 0.3F), repeat(back.y, 0.3F)))),
                 Velvet);
        hit.join(box(p - Vec3{0, 0.62F, 0}, {0.66F, 0.1F, 0.55F}, 0.08F), Velvet);
        hit.join(box(p - Vec3{0, 0.3F, 0}, {0.74F, 0.24F, 0.56F}, 0.04F), Gold);
        const Vec3 arm{x - 0.8F, p.y, p.z};
        hit.join(std::min(rodZ(arm - Vec3{0, 1.05F, -0.05F}, 0.1F, 0.56F, 0.05F),
                          rodY(arm - Vec3{0, 0.5F, -0.48F}, 0.09F, 0.52F, 0.04F)),
                 Gold);
        hit.join(sphere(arm - Vec3{0, 1.08F, -0.62F}, 0.15F), Gold);
        hit.join(
            std::min(rodY(arm - Vec3{0, 1.4F, 0.5F}, 0.1F, 1.35F, 0.04F), sphere(arm - Vec3{0, 2.9F, 0.5F}, 0.17F)),
            Gold);
        // A crown on top.
        const Vec3 crown = back - Vec3{0, 1.6F, 0};
        const float r = length(crown.x, crown.z);
        const float points = 0.16F + 0.12F * std::fabs(std::cos(4 * std::atan2(crown.z, crown.x)));
        hit.join(std::max({std::fabs(r - 0.3F - 0.25F * std::max(crown.y, 0.0F)) - 0.03F, crown.y - points,
                           -crown.y - 0.12F}) *
                     0.7F,
                 Gold);
        const Vec3 stone = slices({crown.x, crown.z, crown.y}, 8);
        hit.join(sphere(stone - Vec3{0.33F, 0, 0}, 0.05F), Jewel);
        hit.join(sphere(back - Vec3{0, 1.08F, -0.12F}, 0.1F), Jewel);
    }

    /// Sunlight that reaches the place through the right-hand windows, were nothing else in its way.
    static Vec3 throughWindow(Vec3 p) {
        const Vec3 at = p + Sun * ((Side - p.x) / Sun.x);
        const float z = repeat(at.z, Bay);
        const float inside = smoothStep(0.03F, -0.05F, lancet(z, at.y));
        if (inside <= 0 || at.z > End || std::fabs(at.z) > 12) {
            return {};
        }
        return mix(lancetGlass(z, at.y, static_cast<int>(std::round(at.z / Bay))), Vec3{1, 0.9F, 0.7F}, 0.06F) * inside;
    }

    Surface bare(int material, Vec3 p, Vec3 n, Vec3 d) const {
        const float rough = fbm(p * 3, 4);
        const Vec3 stone = mix(colour(0x8A7A6A), colour(0xC9B8A0), rough);
        switch (material) {
        case Floor: {
            const bool odd = (static_cast<int>(std::floor(p.x / 0.9F)) + static_cast<int>(std::floor(p.z / 0.9F))) & 1;
            const float vein =
                smoothStep(0.06F, 0.0F, std::fabs(fbm(p.x * 1.3F + (odd ? 9.0F : 0.0F), p.z * 1.3F, 5) - 0.48F));
            const float joint = std::min(std::fabs(repeat(p.x, 0.9F)), std::fabs(repeat(p.z, 0.9F)));
            Vec3 marble =
                odd ? mix(colour(0x3A4048), colour(0x8A9098), vein) : mix(colour(0xD8CCB8), colour(0x9A8A78), vein);
            marble = joint < 0.012F && n.y > 0.5F ? marble * 0.4F : marble;
            return {.colour = marble, .mirror = 0.1F};
        }
        case Carpet: {
            const float edge = std::fabs(std::fabs(p.x) - 0.9F);
            const float figure = std::sin(p.x * 9) * std::sin(p.z * 5 + 0.6F * p.y);
            const Vec3 red = mix(colour(0x8E0E1C), colour(0xC01A2C), smoothStep(0.2F, 0.4F, figure));
            return {.colour = (edge < 0.06F ? colour(0xE0A838) : red) * mix(0.8F, 1.1F, noise(p.x * 40, p.z * 40))};
        }
        case Wall: {
            const float z = repeat(p.z, Bay);
            const float open = lancet(z, p.y);
            if (open < 0) {
                const float mullion = std::min({std::fabs(z) - 0.035F, std::fabs(std::fabs(z) - 0.8F) - 0.03F,
                                                std::fabs(repeat(p.y - 1.7F, 1.25F)) - 0.02F});
                const Vec3 light =
                    lancetGlass(z, p.y, static_cast<int>(std::round(p.z / Bay))) * (p.x > 0 ? 2.6F : 0.9F);
                return {.colour = colour(0x2A2622), .glow = mullion < 0 ? Vec3{} : light};
            }
            return {.colour = stone * (open < 0.16F ? 1.25F : 0.85F)};
        }
        case EndWall:
            return rose(p, stone);
        case Gold:
            return {.colour = colour(0xD0942A),
                    .shine = 1,
                    .mirror = 0.25F,
                    .tint = colour(0xFFD27A),
                    .glow = colour(0xC88A20) * 0.07F};
        case Velvet: {
            const float rim = 1 - std::fabs(dot(n, d));
            return {.colour =
                        (p.y > 1.6F && p.z < 6 ? colour(0xF4E8D0) : colour(0xB01226)) * (0.7F + 1.2F * rim * rim)};
        }
        case Banner: {
            const int column = static_cast<int>(std::round((p.z - Bay / 2) / Bay)) + (p.x > 0 ? 1 : 0);
            const Vec3 ground = (column & 1) != 0 ? colour(0x2440B0) : colour(0xB4142A);
            const float u = std::fabs(p.x) - 2.12F;
            const float v = p.y - 4.3F;
            const Vec3 star = slices(turnZ({u, v, 0}, Pi / 2), 5);
            const bool gold = star.x * 0.588F + std::fabs(star.y) * 0.809F < 0.11F ||
                              std::fabs(std::fabs(u) - 0.36F) < 0.025F || std::fabs(length(u, v) - 0.3F) < 0.018F;
            return {.colour = gold ? colour(0xF2B83A) : ground, .sheer = 0.3F};
        }
        case Flame:
            return {.colour = {0, 0, 0},
                    .glow = mix(colour(0xFFC860), colour(0xFF5A0C), smoothStep(2.42F, 2.85F, p.y)) * 3.4F};
        case Iron:
            return {.colour = colour(0x1C1A1A)};
        case Jewel:
            return {.colour = colour(0xD01030), .shine = 1, .mirror = 0.2F, .glow = colour(0xD01030) * 0.4F};
        default:
            return {.colour = stone * mix(0.85F, 1.1F, noise(p * 12))};
        }
    }

    /// The round window over the throne, twelve petals about an eye.
    static Surface rose(Vec3 p, Vec3 stone) {
        const float x = p.x;
        const float y = p.y - 6.0F;
        const float r = length(x, y);
        if (r > 2.05F) {
            return {.colour = stone * (r < 2.25F ? 1.25F : 0.8F)};
        }
        const Vec3 pane = roseGlass(x, y);
        return pane.x < 0 ? Surface{.colour = colour(0x4A4038)}
                          : Surface{.colour = {0, 0, 0}, .glow = pane * (1.7F * (0.7F + 0.5F * noise(p * 6)))};
    }
};

} // namespace

std::unique_ptr<Scene> throneHall() {
    return std::make_unique<ThroneHall>();
}

} // namespace lumora::samples
