// An empty theatre: red velvet drawn aside, gold, crossing spotlights on the boards, a moon and stars on strings.
#include "Scenes.h"

#include "Lamps.h"
#include "Noise.h"
#include "Shapes.h"

namespace lumora::samples {

namespace {

enum Material { Boards, Velvet, Night, Gold, Wall, Iron, Glass, Cord, Wood, Bulb, Card };

constexpr float Half = 4.75F; ///< of the opening's width
constexpr float Top = 6.2F;   ///< of the opening
constexpr float Tie = 2.3F;   ///< height at which the curtains are tied
constexpr float Front = -3.1F;

const Spot Spots[] = {{{-2.9F, 5.35F, 2.2F}, {0.9F, 0, 0.9F}, 0.17F, {7.8F, 4.5F, 2.2F}},
                      {{2.9F, 5.35F, 2.2F}, {-0.9F, 0, 0.9F}, 0.17F, {2.8F, 4.0F, 8.4F}},
                      {{0, 5.35F, 2.2F}, {0, 0, 0.5F}, 0.24F, {8.2F, 7.0F, 5.2F}},
                      {{-1.45F, 5.35F, 2.2F}, {-3.1F, 0, 2.6F}, 0.14F, {7.2F, 1.6F, 3.8F}},
                      {{1.45F, 5.35F, 2.2F}, {3.1F, 0, 2.6F}, 0.14F, {7.2F, 1.6F, 3.8F}}};

class TheatreStage : public Scene {
  public:
    TheatreStage() {
        camera = {{-0.7F, 3.3F, -10.2F}, {0.05F, 2.62F, 0}, 1.62F};
        sunDirection = normalise({-0.42F, 0.5F, -0.75F});
        sunColour = {1.6F, 1.25F, 0.95F};
        skyLight = {0.11F, 0.09F, 0.12F};
        groundLight = {0.12F, 0.07F, 0.05F};
        farthest = 30;
        caution = 0.7F;
        steps = 200;
        shadowReach = 4;
        shadowSoftness = 9;
        creviceSize = 0.35F;
        exposure = 1.15F;
        bloom = 0.3F;
        vignette = 0.45F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join(box(p - Vec3{0, -0.1F, Front + 10}, {12, 0.1F, 10}, 0.04F), Boards);
        apron(p - Vec3{0, 0, Front}, hit);
        if (p.z > -1.6F) {
            hit.join(drape(p), Velvet);
            swags(p, hit);
            hit.join(drop(p), Night);
            wings(p, hit);
            bar(p, hit);
            mobile(p, hit);
            trunk(p - Vec3{-2.7F, 0, 2.4F}, hit);
        } else {
            hit.join(-1.1F - p.z, Velvet);
        }
        proscenium(p, hit);
        footlights(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3 d) const override {
        Surface look = bare(material, p, n, d);
        for (const Spot &spot : Spots) {
            const Vec3 to = normalise(spot.at - p);
            const float facing = dot(n, to);
            const float bright = facing > 0 ? spot.brightness(p) : 0;
            if (bright > 0.001F) {
                look.glow +=
                    look.colour * spot.light * (bright * facing * lampReaching(*this, p + n * 0.02F, spot.at, 10));
            }
        }
        // The footlights: a pool of light before each, and a warm wash that fades with the height and the depth.
        const Vec3 bulb = Vec3{p.x - repeat(p.x, 0.8F), 0.14F, Front + 0.42F} - p;
        const float pool = 0.1F * std::max(0.0F, dot(n, normalise(bulb))) / (0.06F + dot(bulb, bulb));
        const float rising = std::max(0.0F, dot(n, normalise(Vec3{0, -0.6F, -1})) + 0.25F);
        const float wash = 0.75F * rising * std::exp(-0.45F * p.y - 0.16F * (p.z - Front));
        look.glow += look.colour * colour(0xFFB45A) * (p.z > Front ? wash + pool : 0.2F * wash);
        return look;
    }

    Vec3 sky(Vec3) const override { return {0.01F, 0.008F, 0.012F}; }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Boards:
            return 0.004F * noise(p.x * 40, p.z * 1.6F) - 0.02F * smoothStep(0.035F, 0, std::fabs(repeat(p.x, 0.34F)));
        case Velvet:
        case Night:
            return 0.003F * fbm(p * 30, 2);
        case Gold:
            return 0.005F * noise(p * 16);
        default:
            return 0;
        }
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        // Dust in the beams: only the slab of air behind the arch is lit.
        const float enter = std::max(0.0F, (-1 - from.z) / std::max(d.z, 0.01F));
        const float leave = std::min(distance, (6 - from.z) / std::max(d.z, 0.01F));
        if (d.z <= 0.01F || leave <= enter) {
            return light;
        }
        constexpr int Steps = 40;
        const float step = (leave - enter) / Steps;
        for (int i = 0; i < Steps; ++i) {
            const Vec3 p = from + d * (enter + step * (static_cast<float>(i) + 0.5F));
            const float dust = 0.6F + 0.8F * noise(p * 1.3F);
            for (const Spot &spot : Spots) {
                light += spot.light * (0.015F * step * dust * spot.brightness(p));
            }
        }
        return light;
    }

  private:
    /// The stage curtain, both halves drawn aside and tied. Folds run from the rail down through the tie.
    static float drape(Vec3 p) {
        const float up = clamp01((p.y - Tie) / (Top - Tie));
        const float down = clamp01((Tie - p.y) / Tie);
        const float edge = p.y > Tie ? mix(3.35F, 1.15F, std::pow(up, 1.7F)) : 3.35F - 0.5F * std::pow(down, 0.7F);
        const float width = Half + 0.5F - edge;
        const float u = (std::fabs(p.x) - edge) / width;
        const float phase = 2 * Pi * 8 * u + 0.9F * std::sin(u * 9 + (p.x < 0 ? 1.0F : 2.4F)) + 0.5F * noise(p.y, 3);
        const float deep = 0.055F + 0.05F * width;
        const float bulge = 0.25F * smoothStep(0.5F, 0, std::fabs(p.y - Tie)) * std::sin(Pi * clamp01(u));
        const float fold = deep * (std::sin(phase) + 0.3F * std::sin(2 * phase + 1)) + bulge;
        const float cloth = std::fabs(p.z + 0.15F + fold) - 0.05F;
        return std::max({cloth * 0.37F, -u * width * 0.8F, p.y - Top - 0.4F});
    }

    /// Five swags with gold fringes and the tails between them, in front of the curtain; and the ropes of the ties.
    static void swags(Vec3 p, Hit &hit) {
        constexpr float Width = 1.9F;
        if (p.y > 4.0F) {
            const float q = repeat(p.x, Width) / (Width / 2);
            const float hang = 0.45F + 0.95F * (1 - q * q);
            const float v = (Top + 0.25F - p.y) / hang;
            const float swell = 0.22F * (1 - q * q) * std::sin(Pi * clamp01(v * 0.9F));
            const float fold = 0.05F * std::sin(v * 2 * Pi * 4.5F) * (1 - 0.5F * q * q);
            const float cloth = std::fabs(p.z + 0.62F + swell + fold) - 0.05F;
            hit.join(std::max(cloth * 0.45F, (v - 1) * hang * 0.55F), Velvet);
            const float fringe = std::fabs(p.z + 0.64F + 0.22F * (1 - q * q) * 0.3F) - 0.045F -
                                 0.015F * std::sin(p.x * 70) * smoothStep(1.0F, 1.1F, v);
            hit.join(std::max(fringe * 0.6F, (std::fabs(v - 1.04F) * hang - 0.11F) * 0.55F), Gold);
            // Tails hang where two swags meet.
            const Vec3 t{repeat(p.x - Width / 2, Width), p.y - Top + 1.15F, p.z + 0.78F};
            const float slim = mix(0.26F, 0.14F, clamp01((t.y + 0.2F) / 1.2F));
            const float ripple = 0.05F * std::sin(t.x * 38);
            hit.join(std::max({(std::fabs(t.z + ripple) - 0.06F) * 0.4F, std::fabs(t.x) - slim,
                               -t.y - 0.25F - 0.3F * std::fabs(t.x), t.y - 1.3F}),
                     Velvet);
            hit.join(std::min(sphere(t - Vec3{0, -0.36F, -0.02F}, 0.09F),
                              cone({t.x, t.y + 0.75F, t.z + 0.02F}, 0.1F, 0.05F, 0.34F)),
                     Gold);
        } else {
            hit.join(4.25F - p.y, Velvet);
        }
        const float side = std::fabs(p.x);
        const Vec3 knot = Vec3{side, p.y, p.z} - Vec3{3.95F, Tie + 0.12F, -0.25F};
        const float loop = length(length(knot.x * 0.62F, knot.z * 1.6F) - 0.5F, knot.y + 0.1F * knot.x);
        hit.join((loop - 0.07F - 0.012F * std::sin(24 * std::atan2(knot.z, knot.x) + 40 * knot.y)) * 0.55F, Cord);
        const Vec3 tassel = knot - Vec3{-0.35F, -0.25F, -0.3F};
        hit.join(
            std::min(sphere(tassel - Vec3{0, 0.1F, 0}, 0.1F), cone(tassel + Vec3{0, 0.42F, 0}, 0.13F, 0.07F, 0.5F)),
            Gold);
    }

    /// The blue cloth at the back.
    static float drop(Vec3 p) {
        const float phase = p.x * 9 + 1.2F * std::sin(p.x * 1.3F) + 0.5F * noise(p.x, p.y * 0.4F);
        return (5.6F - p.z + 0.12F * std::sin(phase) + 0.04F * std::sin(2 * phase + 1)) * 0.6F;
    }

    /// Narrow side curtains that hide the wings.
    static void wings(Vec3 p, Hit &hit) {
        for (const float z : {1.6F, 3.6F}) {
            const float edge = z < 2 ? 3.7F : 4.2F;
            const float x = std::fabs(p.x);
            const float fold = 0.1F * std::sin(x * 13 + z * 4 + (p.x < 0 ? 1.0F : 0.0F));
            hit.join(std::max((std::fabs(p.z - z + fold) - 0.05F) * 0.55F, edge - x), Velvet);
        }
    }

    /// The lamps' bar, with a stage lamp for each spot.
    static void bar(Vec3 p, Hit &hit) {
        if (p.y < 4.6F) {
            hit.join(4.9F - p.y, Iron);
            return;
        }
        hit.join(rodX(p - Vec3{0, 5.75F, 2.2F}, 0.05F, 6), Iron);
        for (const Spot &spot : Spots) {
            const Vec3 axis = normalise(spot.aim - spot.at);
            const Vec3 q = p - spot.at;
            const float along = dot(q, axis);
            const float out = length(q - axis * along);
            const float tube = rod(out, along + 0.12F, 0.17F + 0.05F * smoothStep(-0.1F, 0.15F, along), 0.26F, 0.03F);
            hit.join(std::max(tube, -rod(out, along - 0.14F, 0.17F, 0.08F, 0)), Iron);
            hit.join(rod(out, along - 0.05F, 0.17F, 0.02F, 0), Glass);
            hit.join(stick(q, {0, 0.4F, 0}, {0, 0.1F, 0}, 0.03F), Iron);
        }
    }

    /// A crescent and stars of gilded card, hung from above.
    static void mobile(Vec3 p, Hit &hit) {
        if (std::fabs(p.z - 4.3F) > 0.6F) {
            hit.join(std::fabs(p.z - 4.3F) - 0.35F, Card);
            return;
        }
        const Vec3 moon = p - Vec3{0.15F, 3.75F, 4.3F};
        const float crescent = std::max(length(moon.x, moon.y) - 0.72F, 0.6F - length(moon.x - 0.3F, moon.y - 0.12F));
        hit.join(std::max(crescent, std::fabs(moon.z) - 0.07F), Card);
        float threads = length(moon.x + 0.25F, moon.z) - (moon.y > 0.6F ? 0.008F : -1.0F);
        threads = moon.y > 0.6F ? threads : 1.0F;
        constexpr Vec3 stars[] = {{-2.75F, 3.85F, 0.3F}, {-1.75F, 4.45F, 0.22F}, {-1.35F, 3.2F, 0.2F},
                                  {1.5F, 4.4F, 0.28F},   {2.25F, 3.4F, 0.24F},   {3.0F, 4.3F, 0.2F},
                                  {-3.35F, 3.0F, 0.18F}, {1.2F, 2.75F, 0.16F}};
        for (const Vec3 &star : stars) {
            const Vec3 q = p - Vec3{star.x, star.y, 4.3F};
            if (q.y > 0) {
                threads = std::min(threads, length(q.x, q.z) - 0.008F);
            }
            const Vec3 s = slices(turnZ(q, Pi / 2 + 0.2F * star.x), 5);
            const float flat = (s.x * 0.588F + std::fabs(s.y) * 0.809F - 0.42F * star.z);
            hit.join(std::max(flat, std::fabs(q.z) - 0.05F), Card);
        }
        hit.join(threads, Cord);
    }

    static void trunk(Vec3 p, Hit &hit) {
        const Vec3 q = turnY(p, 0.45F);
        if (sphere(q, 1.1F) > 0.5F) {
            hit.join(sphere(q, 1.1F), Wood);
            return;
        }
        const float lid = std::max(rodX(q - Vec3{0, 0.5F, 0}, 0.36F, 0.62F, 0.02F), 0.5F - q.y);
        hit.join(std::min(box(q - Vec3{0, 0.25F, 0}, {0.62F, 0.25F, 0.36F}, 0.03F), lid), Wood);
        const float bands = std::fabs(std::fabs(q.x) - 0.42F) - 0.05F;
        const float shell = std::min(box(q - Vec3{0, 0.25F, 0}, {0.64F, 0.27F, 0.38F}, 0.03F),
                                     std::max(rodX(q - Vec3{0, 0.5F, 0}, 0.38F, 0.64F, 0.02F), 0.5F - q.y));
        hit.join(std::max(shell, bands), Gold);
        hit.join(box(q - Vec3{0, 0.5F, -0.38F}, {0.09F, 0.1F, 0.03F}, 0.02F), Gold);
    }

    /// The gilded arch with beads and rosettes, and the wall it stands in.
    static void proscenium(Vec3 p, Hit &hit) {
        const float side = std::fabs(p.x) - Half;
        const float above = p.y - Top;
        constexpr float Round = 0.6F;
        const float a = side + Round;
        const float b = above + Round;
        const float out = std::min(std::max(a, b), 0.0F) + length(std::max(a, 0.0F), std::max(b, 0.0F)) - Round;
        const float z = p.z + 1.0F;
        hit.join(std::max(-out + 0.1F, std::fabs(z - 0.5F) - 0.3F), Wall);
        const float profile = 0.3F + 0.05F * std::sin(out * 19) + 0.08F * smoothStep(0.5F, 0.85F, out);
        hit.join(std::max(std::fabs(out - 0.43F) - 0.43F, std::fabs(z) - profile) * 0.8F, Gold);
        if (z < 0.1F && out > -0.1F && out < 1) {
            const float along = side > above ? p.y : p.x;
            hit.join(sphere({out - 0.12F, repeat(along, 0.2F), z + 0.33F}, 0.075F), Gold);
            const Vec3 rose{out - 0.46F, repeat(along - 0.35F, 0.95F), z + 0.27F};
            if (std::fabs(along - rose.y) < (side > above ? Top : Half) - 0.3F) { // none in the rounded corners
                const float petals = 0.22F + 0.045F * std::cos(8 * std::atan2(rose.y, rose.x));
                hit.join(std::max((length(rose.x, rose.y) - petals) * 0.7F, std::fabs(rose.z) - 0.13F), Gold);
                hit.join(sphere(rose - Vec3{0, 0, -0.14F}, 0.1F), Gold);
            }
        }
    }

    /// The stage's front: a wooden wall with gilded panels below the boards' edge.
    static void apron(Vec3 p, Hit &hit) {
        hit.join(box(p - Vec3{0, -1.6F, 0.4F}, {12, 1.5F, 0.3F}), Wall);
        hit.join(rodX(p - Vec3{0, -0.24F, 0.1F}, 0.06F, 12), Gold);
        const Vec3 panel{repeat(p.x, 1.6F), p.y + 0.85F, p.z - 0.1F};
        const float outline = std::max(std::fabs(panel.x) - 0.66F, std::fabs(panel.y) - 0.42F);
        hit.join(length(outline, panel.z) - 0.035F, Gold);
    }

    /// Shell lamps along the front edge, seen from behind, each with a bulb that looks at the stage.
    static void footlights(Vec3 p, Hit &hit) {
        const Vec3 q{repeat(p.x, 0.8F), p.y, p.z - Front - 0.28F};
        if (std::fabs(p.x) > 5.3F || p.y > 0.8F) {
            hit.join(std::max(p.y - 0.5F, 0.3F), Gold);
            return;
        }
        const float ribs = 0.012F * std::cos(14 * std::atan2(q.x, q.y));
        const float shell = sphere({q.x, q.y, q.z - 0.1F}, 0.24F) + ribs;
        hit.join(std::max({shell, -q.y, q.z - 0.06F}) * 0.8F, Gold);
        hit.join(sphere(q - Vec3{0, 0.1F, 0.06F}, 0.07F), Bulb);
    }

    static Surface bare(int material, Vec3 p, Vec3 n, Vec3 d) {
        const float rim = 1 - std::fabs(dot(n, d));
        const float sheen = 0.55F + 1.5F * rim * rim; // velvet is brightest where one looks along it
        switch (material) {
        case Boards: {
            const int board = static_cast<int>(std::floor(p.x / 0.34F + 0.5F));
            const float shift = 5 * hash(board, 4);
            const float length = fraction((p.z + shift) / 3.4F);
            const int plank = board * 31 + static_cast<int>(std::floor((p.z + shift) / 3.4F));
            const float rings = fbm(p.x * 14 + 9 * hash(plank, 1), p.z * 0.7F + 7 * hash(plank, 2), 4);
            const float line = 0.5F + 0.5F * std::sin(rings * 44);
            Vec3 wood = mix(colour(0x5A2F14), colour(0xA8672F), 0.35F * line + 0.65F * hash(plank, 3));
            wood = wood * mix(0.75F, 1.15F, noise(p.x * 50, p.z * 3));
            if (std::fabs(repeat(p.x - 0.17F, 0.34F)) < 0.008F || length < 0.004F) {
                wood = wood * 0.25F;
            }
            return {.colour = wood, .shine = 0.08F, .sharpness = 40, .mirror = 0.05F};
        }
        case Velvet:
            return {.colour = mix(colour(0x8E0A16), colour(0xC8142A), noise(p * 3)) * sheen};
        case Night:
            // Lit from a row of blue lamps on the floor.
            return {.colour = mix(colour(0x152468), colour(0x2A49B0), noise(p * 2)) * sheen,
                    .glow = mix(colour(0x2A2F9A), colour(0x2E8FD8), smoothStep(3.2F, 0, p.y)) *
                            (0.75F * smoothStep(5.5F, 0, p.y) * clamp01(0.45F + 0.9F * n.x - 0.25F * n.z))};
        case Gold:
            return {.colour = colour(0xC98A22) * mix(0.75F, 1.1F, fbm(p * 9, 3)),
                    .shine = 1.1F,
                    .sharpness = 28,
                    .mirror = 0.18F,
                    .tint = colour(0xFFD27A)};
        case Card:
            return {.colour = colour(0xF4C04A), .shine = 0.8F, .sharpness = 20, .glow = colour(0xF2B53A) * 0.45F};
        case Cord:
            return {.colour = colour(0xE0A83C), .shine = 0.4F};
        case Iron:
            return {.colour = colour(0x1B1B20), .shine = 0.5F, .sharpness = 30};
        case Glass:
            return {.colour = {0, 0, 0}, .glow = Vec3{1, 0.9F, 0.75F} * 6};
        case Bulb:
            return {.colour = {0, 0, 0}, .glow = colour(0xFFD08A) * 5};
        case Wood:
            return {.colour = mix(colour(0x6A3A1B), colour(0x9C6434), noise(p.x * 6, p.y * 40)), .shine = 0.2F};
        default: {
            // Damask wallpaper.
            const float lattice = std::sin(p.x * 15 + 0.7F * std::sin(p.y * 11)) * std::sin(p.y * 11);
            return {.colour = mix(colour(0x4C0C18), colour(0x661420), smoothStep(0.1F, 0.4F, lattice))};
        }
        }
    }
};

} // namespace

std::unique_ptr<Scene> theatreStage() {
    return std::make_unique<TheatreStage>();
}

} // namespace lumora::samples
