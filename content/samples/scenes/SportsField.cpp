// A football on the grass before an empty goal, on a school's field in the late afternoon.
#include "Scenes.h"

#include "Bodies.h"
#include "Landforms.h"

#include <array>

namespace lumora::samples {

namespace {

enum Material { Lawn, Ball, Post, Net, Flag, Pole };

constexpr Vec3 BallAt{-0.75F, 0.42F, 0.3F};
constexpr float BallSize = 0.44F;
constexpr float GoalAt = 9.0F; ///< z of the goal line

/// The middles of the ball's 12 black and 20 white patches.
std::array<Vec3, 32> patches() {
    std::array<Vec3, 32> all;
    size_t n = 0;
    const float g = 1.618034F;
    for (const float s : {-1.0F, 1.0F}) {
        for (const float t : {-g, g}) {
            all[n++] = normalise({0, s, t});
            all[n++] = normalise({s, t, 0});
            all[n++] = normalise({t, 0, s});
        }
    }
    for (const float x : {-1.0F, 1.0F}) {
        for (const float y : {-1.0F, 1.0F}) {
            for (const float z : {-1.0F, 1.0F}) {
                all[n++] = normalise({x, y, z});
            }
            all[n++] = normalise({0, y / g, x * g});
            all[n++] = normalise({y / g, x * g, 0});
            all[n++] = normalise({x * g, 0, y / g});
        }
    }
    return all;
}

class SportsField : public Scene {
  public:
    SportsField() : m_patches(patches()) {
        camera = {{-0.2F, 1.05F, -4.2F}, {0.25F, 0.95F, 4}, 1.75F};
        sunDirection = normalise({-0.72F, 0.42F, -0.35F});
        sunColour = {2.7F, 2.35F, 1.75F};
        skyLight = {0.36F, 0.46F, 0.62F};
        groundLight = {0.12F, 0.2F, 0.06F};
        farthest = 60;
        ceiling = 3.4F;
        caution = 0.85F;
        steps = 200;
        shadowReach = 5;
        shadowSoftness = 12;
        creviceSize = 0.2F;
        focus = 4.6F;
        aperture = 0.007F;
        strands = 1300000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join(p.y - 0.02F * fbm(p.x, p.z, 2), Lawn);
        hit.join(ball(p), Ball);
        goal(p, hit);
        const Vec3 f = p - Vec3{6.3F, 0, GoalAt};
        hit.join(stick(f, {0, 0, 0}, {0, 1.6F, 0}, 0.03F), Pole);
        const float wave = 0.05F * std::sin(f.x * 9);
        hit.join(box(f - Vec3{-0.28F, 1.4F, wave}, {0.27F, 0.19F, 0.012F}) * 0.8F, Flag);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3, Vec3) const override {
        switch (material) {
        case Ball:
            return leather(p);
        case Post:
            return {.colour = colour(0xF2F2EE), .shine = 0.4F, .sharpness = 40};
        case Net:
            return {.colour = colour(0xE4E6E4)};
        case Flag:
            return {.colour = colour(0xE0401E), .sheer = 0.4F};
        case Pole:
            return {.colour = colour(0xF0D020)};
        default: {
            // Mown in stripes, worn before the goal, chalk lines.
            const float stripe = smoothStep(-0.1F, 0.1F, std::sin((p.z + 0.4F) * Pi / 1.6F));
            Vec3 grass =
                mix(colour(0x36581F), colour(0x5A7E36), stripe) * (0.7F + 0.6F * fbm(p.x * 2.2F, p.z * 2.2F, 4));
            grass = mix(grass, colour(0x8A7A4A),
                        0.55F * smoothStep(2.2F, 0.3F, length((p.x - 0.6F) * 0.5F, p.z - GoalAt + 0.8F)) *
                            smoothStep(0.35F, 0.6F, fbm(p.x * 2, p.z * 2, 4)));
            return {.colour = mix(grass, colour(0xF0F2EA), 0.95F * chalk(p)), .sheer = 0.1F};
        }
        }
    }

    Strand strand(int material, Vec3 p, Vec3, float chance) const override {
        if (material != Lawn) {
            return {};
        }
        const float far = length(p - camera.eye);
        if (far > 26) {
            return {};
        }
        const float other = fraction(chance * 733);
        const float turn = 2 * Pi * other;
        const float tall = (0.055F + 0.055F * fraction(chance * 97)) * (0.8F + 0.035F * far);
        const float light = 0.75F + 0.9F * fraction(chance * 4001);
        return {.tip = Vec3{0.45F * std::cos(turn), 1, 0.45F * std::sin(turn)} * tall,
                .sag = Vec3{-0.15F * std::cos(turn), 0.1F, 0} * tall,
                .width = 0.008F * (0.7F + 0.08F * far),
                .order = -far,
                .solid = 0.85F,
                .tint = Vec3{light * 1.05F, light * 1.02F, light * 0.8F}};
    }

    Vec3 sky(Vec3 d) const override {
        const float side = std::atan2(d.x, std::max(d.z, 0.05F));
        Vec3 light = mix(colour(0xCFE6F6), colour(0x3A84D6), smoothStep(0.0F, 0.45F, d.y));
        light = throughHeaps(light, d, sunDirection, {.cover = 0.42F, .size = 1.1F, .shift = 3.0F});
        // The school behind the trees.
        const float wall = std::max(std::fabs(side + 0.16F) - 0.12F, std::max(d.y - 0.085F, -d.y));
        const bool window =
            std::fabs(repeat(side, 0.034F)) < 0.010F && std::fabs(repeat(d.y - 0.021F, 0.042F)) < 0.012F;
        light = mix(light, window ? colour(0x4A6478) : colour(0xC08A68), smoothStep(0.003F, -0.003F, wall));
        const float roof =
            std::max(std::fabs(side + 0.16F) - 0.13F + 0.8F * (d.y - 0.085F), std::max(d.y - 0.125F, 0.085F - d.y));
        light = mix(light, colour(0x7A3A2C), smoothStep(0.003F, -0.003F, roof));
        const float crowns = 0.035F +
                             0.085F * fbm(side * 5 + 3, 2, 2) * smoothStep(0.02F, 0.24F, std::fabs(side + 0.16F)) +
                             0.03F * fbm(side * 22, 5, 4);
        const Vec3 leaf = mix(colour(0x1E4A1E), colour(0x7AA03A), smoothStep(0.3F, 0.7F, fbm(side * 40, d.y * 46, 4)));
        return mix(light, mix(leaf, colour(0xA8C4D0), 0.15F), smoothStep(0.003F, -0.003F, d.y - crowns));
    }

    float grain(int material, Vec3 p) const override { return material == Ball ? 0.002F * noise(p * 90) : 0.0F; }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return distance < farthest - 1 ? haze(light, *this, d, distance, 150, colour(0xBCD4E4), colour(0xF4E8C8))
                                       : light;
    }

  private:
    std::array<Vec3, 32> m_patches;

    /// The patch at a place of the ball and how far the next one is, as an angle.
    struct Patch {
        bool black;
        float seam;
    };
    Patch patch(Vec3 p) const {
        const Vec3 n = turnX(turnZ(normalise(p - BallAt), 0.5F), 0.35F);
        float best = 9;
        float next = 9;
        size_t which = 0;
        for (size_t i = 0; i < m_patches.size(); ++i) {
            const float angle = std::acos(std::clamp(dot(n, m_patches[i]), -1.0F, 1.0F)) +
                                (i < 12 ? 0.045F : 0.0F); // pentagons are smaller
            if (angle < best) {
                next = best;
                best = angle;
                which = i;
            } else {
                next = std::min(next, angle);
            }
        }
        return {which < 12, next - best};
    }

    float ball(Vec3 p) const {
        const float d = sphere(p - BallAt, BallSize);
        return d > 0.1F ? d : d + 0.010F * smoothStep(0.035F, 0.0F, patch(p).seam);
    }

    Surface leather(Vec3 p) const {
        const Patch one = patch(p);
        Vec3 look = one.black ? colour(0x1E2024) : colour(0xEDEBE4);
        look = mix(look, colour(0x5A4A34), 0.35F * smoothStep(0.5F, 0.68F, fbm(p * 6, 4))); // it has been played with
        look = mix(look, colour(0x3A342C), 0.7F * smoothStep(0.025F, 0.008F, one.seam));
        look = mix(look, look * Vec3{0.55F, 0.75F, 0.35F},
                   0.5F * smoothStep(0.25F, 0.0F, p.y)); // green light from the lawn
        return {.colour = look, .shine = 0.3F, .sharpness = 25, .mirror = 0.01F};
    }

    static float chalk(Vec3 p) {
        const float worn = 0.02F * (noise(p.x * 14, p.z * 14) - 0.5F);
        float d = std::fabs(p.z - GoalAt) - 0.06F; // the goal line
        const float area = std::max(std::fabs(p.x - 0.6F) - 4.6F, 5.0F - p.z);
        d = std::min(d, p.z < GoalAt ? std::fabs(area) - 0.06F : 9.0F);
        const float spot = length(p.x - 0.6F, p.z - 2.6F);
        d = std::min({d, spot - 0.12F});
        return smoothStep(0.012F, -0.012F, d + worn);
    }

    static void goal(Vec3 p, Hit &hit) {
        const Vec3 q = p - Vec3{0.6F, 0, GoalAt};
        const float far = box(q - Vec3{0, 1.2F, 0.7F}, {2.8F, 1.4F, 1.1F});
        if (far > 0.4F) {
            hit.join(far, Post);
            return;
        }
        const Vec3 h{std::fabs(q.x), q.y, q.z};
        float post = stick(h, {2.5F, 0, 0}, {2.5F, 2.3F, 0}, 0.07F);
        post = std::min(post, stick(h, {0, 2.3F, 0}, {2.5F, 2.3F, 0}, 0.07F));
        post = std::min(post, stick(h, {2.5F, 2.3F, 0}, {2.5F, 2.1F, 0.8F}, 0.03F));
        post = std::min(post, stick(h, {2.5F, 2.1F, 0.8F}, {2.5F, 0, 1.5F}, 0.03F));
        hit.join(post, Post);
        // Threads of the net: on the slanting back and on both sides.
        constexpr float Mesh = 0.22F;
        constexpr float Thread = 0.009F;
        const float back = q.z - 0.8F - (2.1F - q.y) / 3 + 0.05F * std::sin(q.x * 2.2F) * std::sin(q.y * 1.5F);
        float net = std::min(length(repeat(q.x, Mesh), back), length(repeat(q.y, Mesh), back));
        net = std::max({net - Thread, h.x - 2.5F, q.y - 2.1F});
        const float side = h.x - 2.5F;
        float wing = std::min(length(repeat(q.y, Mesh), side), length(repeat(q.z, Mesh), side)) - Thread;
        wing = std::max({wing, back, -q.z, q.y - 2.3F});
        hit.join(std::min(net, wing) * 0.85F, Net);
    }
};

} // namespace

std::unique_ptr<Scene> sportsField() {
    return std::make_unique<SportsField>();
}

} // namespace lumora::samples
