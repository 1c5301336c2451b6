// Old windmills beside a canal, tulip fields in front, in the evening sun.
#include "Scenes.h"

#include "Noise.h"
#include "Shapes.h"
#include "Skies.h"

namespace lumora::samples {

namespace {

enum Material { Ground, Tulip, Brick, Thatch, Wood, White, Sailcloth, Pane, Door, Doorstep, Brass };

struct Place {
    Vec3 foot;
    float size;
    float turn; ///< of the sails, radians
};
constexpr Place Mills[] = {
    {{2.3F, 0.35F, 6.0F}, 1, 0.42F}, {{-9.4F, 0.3F, 24}, 1, 0.2F}, {{-11.8F, 0.3F, 46}, 1, 0.75F}};

class Windmill : public Scene {
  public:
    Windmill() {
        camera = {{-0.9F, 1.55F, -9.6F}, {0.2F, 3.0F, 4}, 1.42F};
        sunDirection = normalise({-0.82F, 0.36F, -0.32F});
        sunColour = {3.7F, 2.65F, 1.6F};
        skyLight = {0.38F, 0.42F, 0.66F};
        groundLight = {0.16F, 0.13F, 0.09F};
        farthest = 160;
        caution = 0.85F;
        steps = 480;
        shadowReach = 12;
        creviceSize = 0.3F;
        ceiling = 12;
        waterLevel = 0;
        waterColour = {0.015F, 0.05F, 0.05F};
        exposure = 0.95F;
        strands = 900000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        const float ground = groundHeight(p);
        hit.join((p.y - ground) * (p.z > 30 ? 0.6F : 0.9F), Ground);
        if (p.y < 1.2F && p.z < 14) {
            hit.join(tulips(p, ground), Tulip);
        }
        for (const Place &mill : Mills) {
            windmill(p - mill.foot, mill.turn, hit);
        }
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        const float grain = fbm(p * 4, 4);
        switch (material) {
        case Brick: {
            const float row = std::floor(p.y * 9);
            const float across =
                (std::fabs(n.x) > std::fabs(n.z) ? p.z : p.x) * 4 + (static_cast<int>(row) % 2 == 0 ? 0.5F : 0.0F);
            const bool joint = fraction(p.y * 9) < 0.14F || fraction(across) < 0.07F;
            const float one = hash(static_cast<int>(row), static_cast<int>(std::floor(across)));
            return {.colour = joint ? colour(0xC9B79C)
                                    : mix(colour(0x8C3B22), colour(0xBC6238), one) * mix(0.75F, 1.1F, grain)};
        }
        case Thatch:
            return {.colour = mix(colour(0x5B4630), colour(0xA5875A), noise(Vec3{p.x * 22, p.y * 2.5F, p.z * 22})) *
                              mix(0.7F, 1.15F, grain)};
        case Wood:
            return {.colour = mix(colour(0x3B2A1C), colour(0x6B4A30), grain), .shine = 0.1F};
        case White:
            return {.colour = mix(colour(0xE9E2D0), colour(0xFFFDF4), grain), .shine = 0.1F};
        case Sailcloth:
            return {.colour = mix(colour(0xC9432B), colour(0xE2603A), grain), .sheer = 0.5F};
        case Pane:
            return {.colour = colour(0x243044), .shine = 1, .sharpness = 150, .mirror = 0.4F};
        case Door: {
            const float board = fraction(p.x * 7.5F + 0.3F);
            return {.colour = mix(colour(0x1F5A3C), colour(0x2E7650), fbm(Vec3{p.x * 20, p.y * 3, p.z * 20}, 3)) *
                              mix(0.45F, 1.0F, smoothStep(0, 0.12F, std::min(board, 1 - board))),
                    .shine = 0.3F};
        }
        case Doorstep:
            return {.colour = colour(0xA8A094) * mix(0.7F, 1.1F, fbm(p * 9, 3))};
        case Brass:
            return {.colour = colour(0xC8952E), .shine = 1, .sharpness = 40};
        case Tulip:
            return tulipLook(p, n);
        default:
            return land(p);
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.5F);
        const float west = 0.5F + 0.5F * dot(normalise({d.x, 0, d.z}), normalise({sunDirection.x, 0, sunDirection.z}));
        Vec3 light = mix(mix(colour(0xF7C9B4), colour(0xFFD98E), west) * 1.1F,
                         mix(colour(0x86A9DC), colour(0x3A63B4), smoothStep(0.35F, 1, up)), smoothStep(0, 0.5F, up));
        const Cloud cloud = clouds(d, sunDirection, 0.78F, 0.75F, 2.2F);
        light = mix(light, mix(colour(0x8F8BB4), mix(colour(0xFFC5A0), colour(0xFFF1D6), up) * 1.35F, cloud.lit),
                    cloud.amount * 0.95F);
        return light + sunGlow(d, sunDirection, sunColour) * 0.5F;
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Ground:
            return p.z < 16 ? 0.02F * fbm(p.x * 14, p.z * 14, 3) : 0;
        case Thatch:
            return 0.03F * noise(Vec3{p.x * 26, p.y * 3, p.z * 26});
        case Brick:
            return fraction(p.y * 9) < 0.14F ? -0.008F : 0.0F;
        default:
            return 0;
        }
    }

    Vec3 waterNormal(Vec3 p, float distance) const override {
        // A breath of wind: long, low ripples that let the reflection stand.
        const float ripple = 0.016F / (1 + 0.06F * distance);
        const float a = noise(p.x * 0.9F, p.z * 2.6F) + 0.35F * noise(p.x * 2.3F + 5, p.z * 7);
        const float b = noise(p.x * 0.9F + 9, p.z * 2.6F) + 0.35F * noise(p.x * 2.3F + 3, p.z * 7 + 8);
        return normalise({ripple * (a - 0.67F) * 0.4F, 1, ripple * (b - 0.67F)});
    }

    /// Grass, reeds along the water, foliage on the woods far away.
    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        if (material != Ground || inField(p) || p.y < 0.08F) {
            return {};
        }
        const float far = length(p - camera.eye);
        const float other = fraction(chance * 733);
        const float turn = 2 * Pi * fraction(chance * 331);
        const float light = 0.6F + 0.9F * fraction(chance * 4001);
        const Vec3 around{std::cos(turn), 0, std::sin(turn)};
        if (wood(p) > 0.1F) {
            return {.tip = normalise(n + around + Vec3{0, other - 0.2F, 0}) * (0.35F + 0.4F * other),
                    .width = 0.3F,
                    .blunt = 0.7F,
                    .order = -far,
                    .tint = {light, light, light * 0.8F}};
        }
        if (far > 40) {
            return {};
        }
        const bool reed = canalSide(p) < 0.16F && other > 0.55F;
        const float tuft = reed ? 2.4F : 0.4F + noise(p.x * 1.6F, p.z * 1.6F);
        const Vec3 lean = around * (reed ? 0.22F : 0.5F) + Vec3{0.12F, 0, 0};
        return {.tip = (Vec3{0, 1, 0} + lean) * (tuft * (0.07F + 0.1F * other)),
                .sag = lean * (-0.04F * tuft),
                .width = 0.012F,
                .order = -far,
                .tint = {light * 1.15F, light, light * 0.65F}};
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return haze(light, *this, d, distance < farthest - 1 ? distance : 4.0F, 95, colour(0xCFC3C4),
                    colour(0xFFD9A0) * 1.2F);
    }

  private:
    static float canalSide(Vec3 p) {
        return std::fabs(p.x + 2.9F + 0.07F * p.z + 0.25F * std::sin(p.z * 0.35F)) - 1.75F;
    }
    static bool inField(Vec3 p) { return p.x > 0.15F - 0.07F * p.z && p.z < 3.2F; }

    static float groundHeight(Vec3 p) {
        const float side = canalSide(p);
        float height = -0.5F + 0.85F * smoothStep(-0.25F, 0.35F, side) + 0.05F * fbm(p.x, p.z, 2);
        const float trees = wood(p);
        if (trees > 0) {
            const Cell tree = cells(p.x * 0.4F, p.z * 0.4F);
            height += trees * std::sqrt(std::max(0.0F, 1 - tree.distance * tree.distance * 2.4F)) *
                      (1.6F + 2.2F * tree.id + 1.2F * fbm(p * 1.2F, 3));
        }
        return height;
    }

    /// Share of wood at a place behind the meadows.
    static float wood(Vec3 p) {
        return p.z < 26 ? 0
                        : smoothStep(0.48F, 0.56F, fbm(p.x * 0.045F + 1.7F, p.z * 0.06F, 3)) * smoothStep(26, 34, p.z) *
                              smoothStep(0.5F, 3, canalSide(p));
    }

    static Surface land(Vec3 p) {
        const float big = fbm(p.x * 0.4F, p.z * 0.4F, 4);
        if (inField(p)) {
            return {.colour = mix(colour(0x3A5A22), colour(0x5F7F35), noise(p.x * 12, p.z * 12)) * 0.7F};
        }
        Vec3 grass = mix(colour(0x3F6B1E), colour(0x84983C), big) * (0.6F + 0.5F * noise(p.x * 10, p.z * 10));
        if (p.z > 24 && p.y > 1) {
            grass = mix(colour(0x2A4A20), colour(0x6E8030), noise(p * 2));
        }
        if (p.y < 0.07F) {
            grass = colour(0x5A4A34) * (0.25F + 0.6F * fbm(p * 9, 3));
        }
        return {.colour = grass, .sheer = 0.15F};
    }

    /// One flower in each tile of the field; a row is one colour.
    static float tulips(Vec3 p, float ground) {
        const float outside = 0.15F - 0.07F * p.z - p.x;
        if (outside > 0.2F || p.z > 3.4F || p.y > ground + 0.6F) {
            return std::max({outside - 0.15F, p.z - 3.35F, p.y - ground - 0.55F});
        }
        constexpr float Row = 0.4F;
        constexpr float Along = 0.17F;
        const int row = static_cast<int>(std::round(p.x / Row));
        const int along = static_cast<int>(std::round(p.z / Along));
        const Vec3 q{repeat(p.x, Row) + 0.1F * (hash(row, along) - 0.5F),
                     p.y - ground - 0.32F - 0.1F * hash(row, along, 1),
                     repeat(p.z, Along) + 0.05F * (hash(row, along, 2) - 0.5F)};
        const float wall =
            std::min(0.52F * Row - std::fabs(repeat(p.x, Row)), 0.54F * Along - std::fabs(repeat(p.z, Along)));
        if (!inField({static_cast<float>(row) * Row - 0.25F, 0, static_cast<float>(along) * Along})) {
            return std::max(wall, 0.022F);
        }
        float flower = bud(q);
        const Vec3 leaf{std::fabs(q.x), q.y + 0.2F, q.z};
        flower = std::min(flower, ellipsoid(turnZ(leaf - Vec3{0.06F, 0, 0}, -0.35F), {0.018F, 0.18F, 0.04F}));
        flower = std::min(flower, std::max(length(q.x, q.z) - 0.012F, std::fabs(q.y + 0.2F) - 0.2F));
        // No step leaps over the flower of the next tile.
        return std::min(flower, std::max(wall, 0.022F)) * 0.75F;
    }

    /// A cup of three outer and three inner petals with pointed tips.
    static float bud(Vec3 q) {
        const float around = std::fabs(std::cos(1.5F * std::atan2(q.z, q.x)));
        const float wide = 0.056F + 0.008F * around;
        const float cup = ellipsoid(q, {wide, 0.092F, wide});
        return std::max(cup, q.y - 0.045F - 0.034F * around);
    }

    static Surface tulipLook(Vec3 p, Vec3) {
        const int row = static_cast<int>(std::round(p.x / 0.4F));
        const int along = static_cast<int>(std::round(p.z / 0.17F));
        const Vec3 q{repeat(p.x, 0.4F) + 0.1F * (hash(row, along) - 0.5F),
                     p.y - groundHeight({p.x, 2, p.z}) - 0.32F - 0.1F * hash(row, along, 1),
                     repeat(p.z, 0.17F) + 0.05F * (hash(row, along, 2) - 0.5F)};
        if (bud(q) > 0.006F) {
            return {.colour = mix(colour(0x3E7A2E), colour(0x7FA84E), hash(row, along, 5)) *
                              (0.85F + 0.3F * noise(p.x * 90, p.z * 90)),
                    .shine = 0.08F,
                    .sheer = 0.4F};
        }
        const Vec3 petals[] = {colour(0xE3182A), colour(0xFFC21A), colour(0xF45A9C),
                               colour(0xFFF2E0), colour(0x8B2FC9), colour(0xFF7A1A)};
        const Vec3 petal = petals[((row / 2) % 6 + 6) % 6];
        const float around = std::fabs(std::cos(1.5F * std::atan2(q.z, q.x)));
        // Greenish at the foot, darker where the petals overlap.
        Vec3 look = mix(petal * mix(colour(0xD8E08A), Vec3{1, 1, 1}, 0.5F), petal, smoothStep(-0.08F, -0.02F, q.y));
        look = look * mix(0.6F, 1.0F, smoothStep(0.05F, 0.4F, around)) * mix(0.8F, 1.1F, hash(row, along, 4));
        return {.colour = look, .shine = 0.1F, .sharpness = 20, .sheer = 0.6F};
    }

    static void windmill(Vec3 p, float turn, Hit &hit) {
        const float near = box(p - Vec3{0, 5.1F, -0.6F}, {4.6F, 6.0F, 2.6F});
        if (near > 0.5F) {
            hit.join(near, Wood);
            return;
        }
        // Eight sides: in a folded slice the wall is a plane.
        const Vec3 folded = slices({p.x, p.z, p.y}, 8);
        const float wall = folded.x;
        const float brickRadius = mix(2.0F, 1.75F, clamp01(p.y / 2.4F));
        hit.join(std::max({wall - brickRadius, p.y - 2.4F, -p.y - 0.5F}), Brick);
        const float t = clamp01((p.y - 2.4F) / 3.6F);
        const float thatchRadius = mix(1.75F, 1.08F, t) - 0.12F * std::sin(t * Pi);
        hit.join(std::max({(wall - thatchRadius) * 0.95F, 2.4F - p.y, p.y - 6.0F}), Thatch);
        hit.join(std::max({std::fabs(wall - 1.1F) - 0.08F, std::fabs(p.y - 6.0F) - 0.08F}), White);
        // Gallery with its railing.
        float wood = std::max(std::fabs(p.y - 2.45F) - 0.06F, wall - 2.75F);
        const float railing =
            std::max(std::fabs(wall - 2.68F) - 0.03F, std::min(std::fabs(p.y - 3.05F), std::fabs(p.y - 2.8F)) - 0.025F);
        const float posts = std::max({std::fabs(wall - 2.68F) - 0.03F, std::fabs(repeat(folded.y, 0.36F)) - 0.025F,
                                      std::fabs(p.y - 2.75F) - 0.32F});
        const float struts =
            stick({folded.x, p.y, std::fabs(std::fabs(folded.y) - 0.55F)}, {1.8F, 1.6F, 0}, {2.6F, 2.4F, 0}, 0.05F);
        wood = std::min({wood, struts});
        hit.join(std::min(railing, posts), White);
        // Cap: an upturned boat.
        const Vec3 cap = p - Vec3{0, 6.1F, 0.1F};
        hit.join(std::max(ellipsoid(cap, {1.12F, 1.05F, 1.5F}), -cap.y), Thatch);
        hit.join(std::max(std::fabs(ellipsoid(cap, {1.14F, 1.07F, 1.52F})) - 0.03F, std::fabs(cap.y - 0.05F) - 0.06F),
                 White);
        const Vec3 hub = p - Vec3{0, 6.55F, -1.75F};
        wood = std::min(wood, rodZ(hub - Vec3{0, 0, 0.4F}, 0.14F, 0.7F, 0.03F));
        sails(hub, turn, wood, hit);
        // Door and windows.
        const Vec3 door = p - Vec3{0, 0.75F, -1.95F};
        hit.join(box(door, {0.36F, 0.75F, 0.06F}, 0.03F), White);
        hit.join(box(door - Vec3{0, -0.05F, -0.03F}, {0.28F, 0.68F, 0.06F}, 0.02F), Door);
        hit.join(std::min(box(door - Vec3{0, -0.72F, -0.3F}, {0.5F, 0.09F, 0.3F}, 0.02F),
                          box(door - Vec3{0, -0.84F, -0.5F}, {0.62F, 0.09F, 0.4F}, 0.02F)),
                 Doorstep);
        hit.join(std::min(sphere(door - Vec3{0.2F, -0.02F, -0.13F}, 0.035F),
                          box(door - Vec3{0.2F, -0.06F, -0.09F}, {0.025F, 0.09F, 0.01F})),
                 Brass);
        for (const float y : {-0.45F, 0.38F}) { // hinges
            wood = std::min(wood, box(door - Vec3{-0.09F, y, -0.09F}, {0.19F, 0.025F, 0.01F}));
        }
        for (const Vec3 at : {Vec3{0, 1.75F, -1.78F}, Vec3{0, 3.75F, -1.5F}, Vec3{0, 5.0F, -1.24F}}) {
            const Vec3 window = p - at;
            hit.join(std::max(box(window, {0.24F, 0.27F, 0.1F}, 0.02F),
                              -box(window - Vec3{0, 0, -0.1F}, {0.18F, 0.21F, 0.06F})),
                     White);
            hit.join(box(window, {0.19F, 0.22F, 0.06F}), Pane);
            hit.join(std::min(box(window, {0.015F, 0.22F, 0.08F}), box(window, {0.19F, 0.015F, 0.08F})), White);
        }
        hit.join(wood, Wood);
    }

    static void sails(Vec3 hub, float turn, float &wood, Hit &hit) {
        if (std::fabs(hub.z) > 0.8F) {
            hit.join(std::fabs(hub.z) - 0.3F, Wood);
            return;
        }
        const Vec3 arm = slices(turnZ(hub, turn), 4); // along x from the hub
        sail(arm, wood, hit);
        sail({arm.y, -arm.x, arm.z}, wood, hit); // the neighbour may be nearer: a sail lies on one side of its arm
    }

    static void sail(Vec3 arm, float &wood, Hit &hit) {
        const float twist = arm.z - 0.06F * arm.y;
        wood = std::min(wood, box({arm.x - 2.1F, arm.y, arm.z}, {2.1F, 0.07F, 0.06F}, 0.02F));
        const float inside = std::max(std::fabs(arm.x - 2.64F) - 1.43F, std::fabs(arm.y - 0.42F) - 0.42F);
        const float bars = std::min(std::fabs(repeat(arm.x, 0.31F)), std::fabs(repeat(arm.y - 0.02F, 0.4F))) - 0.018F;
        wood = std::min(wood, std::max({inside, bars, std::fabs(twist) - 0.018F}));
        const float cloth = std::max(
            {std::fabs(arm.x - 2.64F) - 1.4F, std::fabs(arm.y - 0.24F) - 0.18F, std::fabs(twist - 0.04F) - 0.012F});
        hit.join(cloth, Sailcloth);
    }
};

} // namespace

std::unique_ptr<Scene> windmill() {
    return std::make_unique<Windmill>();
}

} // namespace lumora::samples
