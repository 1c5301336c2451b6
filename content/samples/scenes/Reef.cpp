// Clownfish over a coral reef: sea anemones, corals, ripples of light on the sand.
#include "Scenes.h"

#include "Noise.h"
#include "Shapes.h"

namespace lumora::samples {

namespace {

enum Material { Sand, Tentacle, Brain, Tube, Fan, Bubble, Fish }; // Fish + its number

struct Swimmer {
    Vec3 at;
    float size;
    float heading; ///< radians; 0 looks to the right
    float pitch;
};
constexpr Swimmer Swimmers[] = {{{-0.55F, 1.75F, 0.4F}, 0.82F, 0.25F, 0.08F},
                                {{1.55F, 1.12F, 1.5F}, 0.6F, 2.75F, -0.05F},
                                {{1.35F, 2.35F, 3.2F}, 0.55F, 0.5F, 0.1F},
                                {{-2.7F, 2.55F, 4.5F}, 0.6F, -0.2F, 0.05F},
                                {{3.4F, 2.0F, 5.5F}, 0.55F, 2.9F, 0}};

struct Mound {
    Vec3 at;
    float size;
    unsigned tip;
    unsigned root;
};
constexpr Mound Anemones[] = {{{-1.5F, -0.25F, 1.5F}, 1.05F, 0xFFB3E6, 0x8A3FB8},
                              {{1.9F, -0.3F, 2.2F}, 0.95F, 0xC8FF9A, 0x1F8A6B}};

class Reef : public Scene {
  public:
    Reef() {
        camera = {{0, 1.35F, -3.8F}, {0.05F, 1.4F, 2}, 1.5F};
        sunDirection = normalise({-0.35F, 0.85F, -0.35F});
        sunColour = {2.3F, 2.4F, 2.2F};
        skyLight = {0.38F, 0.5F, 0.6F};
        groundLight = {0.2F, 0.2F, 0.18F};
        farthest = 30;
        caution = 0.7F;
        steps = 130;
        shadowReach = 4;
        shadowSoftness = 8;
        creviceSize = 0.3F;
        ceiling = 4.5F;
        bloom = 0.2F;
        exposure = 0.9F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join(p.y - seabed(p.x, p.z), Sand);
        for (const Mound &one : Anemones) {
            anemone(p - one.at, one.size, hit);
        }
        corals(p, hit);
        for (int i = 0; i < static_cast<int>(std::size(Swimmers)); ++i) {
            fish(local(p, Swimmers[i]), i, hit);
        }
        bubbles(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        Surface look = bare(material, p, n);
        // Light gathered by the waves above: a bright net that wanders over everything that looks up.
        const Cell a = cells(p.x * 1.7F + 0.6F * noise(p * 1.3F), p.z * 1.7F + 0.4F * p.y, 0.9F);
        const Cell b = cells(p.x * 1.3F + 3.3F, p.z * 1.3F + 0.5F * noise(p * 1.7F) - 0.4F * p.y, 0.9F);
        const float net = smoothStep(0.35F, 0.75F, a.distance) * smoothStep(0.3F, 0.7F, b.distance) +
                          0.35F * smoothStep(0.5F, 0.8F, a.distance);
        look.glow += look.colour * (sunColour * (0.55F * net * std::max(0.0F, n.y + 0.2F)));
        return look;
    }

    Vec3 sky(Vec3 d) const override {
        return mix(colour(0x063A78), colour(0x37B6E6), smoothStep(-0.2F, 0.75F, d.y + 0.08F * noise(d.x * 5, d.y * 5)));
    }

    float grain(int material, Vec3 p) const override {
        if (material == Sand) {
            return 0.015F * std::sin((p.z + 0.35F * fbm(p.x * 1.2F, p.z, 2)) * 14) + 0.01F * noise(p.x * 40, p.z * 40);
        }
        return material == Brain ? 0.035F * smoothStep(0.35F, 0.65F, fraction(5 * fbm(p * 3.2F, 2))) : 0;
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        const float far = std::max(0.0F, distance - 3.6F);
        const Vec3 blue = sky(d);
        light = {mix(blue.x, light.x, std::exp(-far * 0.20F)), mix(blue.y, light.y, std::exp(-far * 0.10F)),
                 mix(blue.z, light.z, std::exp(-far * 0.085F))};
        const Vec3 above = normalise({-0.25F, 0.9F, 0.35F});
        const Vec3 right = normalise(cross(Vec3{0, 0, 1}, above));
        const float angle = std::atan2(dot(d, right), dot(d, above) + 0.7F);
        const float streak = smoothStep(0.4F, 0.95F, 0.6F * noise(angle * 11 + 3, 2) + 0.45F * noise(angle * 27, 8));
        return light +
               colour(0x9CEBFF) * (0.2F * streak * smoothStep(-0.25F, 0.5F, d.y) * (1 - std::exp(-distance * 0.12F)));
    }

  private:
    static float seabed(float x, float z) {
        return -0.35F + 0.35F * fbm(x * 0.5F, z * 0.5F, 3) +
               0.9F * smoothStep(4, 12, z) * fbm(x * 0.3F + 3, z * 0.3F, 3);
    }

    static void anemone(Vec3 p, float size, Hit &hit) {
        const float near = length(p - Vec3{0, 0.35F * size, 0}) - 1.25F * size;
        if (near > 0.3F) {
            hit.join(near, Tentacle);
            return;
        }
        // One waving finger in each tile, longest in the middle.
        constexpr float Tile = 0.135F;
        const float sway = 0.16F * std::sin(p.y * 3 + p.x * 2.3F) * std::max(p.y, 0.0F) / size;
        const float x = p.x + sway;
        const float z = p.z + 0.12F * std::sin(p.y * 2.6F + p.z * 3) * std::max(p.y, 0.0F);
        const float spread = 1 + 0.35F * clamp01(p.y); // fingers lean outwards
        const int i = static_cast<int>(std::round(x / spread / Tile));
        const int j = static_cast<int>(std::round(z / spread / Tile));
        const float cx = static_cast<float>(i) * Tile + 0.03F * (hash(i, j) - 0.5F);
        const float cz = static_cast<float>(j) * Tile + 0.03F * (hash(i, j, 1) - 0.5F);
        const float out = length(cx, cz) / size;
        const float tall = size * (0.95F - 0.55F * out * out + 0.25F * (hash(i, j, 2) - 0.5F));
        const float dx = (x / spread - cx) * spread;
        const float dz = (z / spread - cz) * spread;
        const float above = std::max(p.y - tall, 0.0F);
        const float finger = length({dx, above, dz}) - 0.042F - 0.018F * smoothStep(0.12F, 0.0F, tall - p.y);
        hit.join(out < 0.85F ? std::min(finger, 0.16F) * 0.8F : std::max(finger, 0.1F), Tentacle);
    }

    static void bubbles(Vec3 p, Hit &hit) {
        const float near = box(p - Vec3{0.55F, 2.4F, 2.68F}, {0.25F, 2.1F, 0.15F});
        if (near > 0.2F) {
            hit.join(near, Bubble);
            return;
        }
        for (int i = 0; i < 14; ++i) {
            const auto k = static_cast<float>(i);
            const Vec3 at{0.55F + 0.16F * std::sin(k * 2.1F), 0.6F + 0.27F * k, 2.6F + 0.15F * hash(i, 2)};
            hit.join(sphere(p - at, 0.025F + 0.05F * hash(i, 1)), Bubble);
        }
    }

    static void corals(Vec3 p, Hit &hit) {
        float brain = sphere(p - Vec3{-3.0F, 0.15F, 3.2F}, 0.85F);
        brain = std::min(brain, sphere(p - Vec3{0.35F, -0.15F, 3.6F}, 0.6F));
        brain = std::min(brain, sphere(p - Vec3{3.1F, -0.1F, 0.9F}, 0.42F));
        hit.join(brain, Brain);
        const float nearTubes = box(p - Vec3{3.0F, 0.7F, 4.35F}, {1.7F, 1.1F, 0.5F});
        nearTubes > 0.3F ? hit.join(nearTubes, Tube) : tubes(p, hit);
        const float nearFans = box(p - Vec3{0, 0.6F, 5.6F}, {6.0F, 1.0F, 1.0F});
        nearFans > 0.3F ? hit.join(nearFans, Fan) : fans(p, hit);
    }

    static void tubes(Vec3 p, Hit &hit) {
        for (int i = 0; i < 9; ++i) {
            const auto k = static_cast<float>(i);
            const Vec3 foot{2.3F + 0.23F * k * (i % 2 == 0 ? 1.0F : -0.45F), -0.2F, 4.2F + 0.3F * hash(i, 5)};
            const Vec3 q = turnZ(p - foot, 0.3F * (hash(i, 6) - 0.5F));
            const float tall = 0.7F + 0.9F * hash(i, 7);
            hit.join(0.9F * std::max(cone(q, 0.12F, 0.18F, tall), -rodY(q - Vec3{0, tall, 0}, 0.12F, 0.25F)), Tube);
        }
    }

    /// Thin sheets, their ribs with holes between.
    static void fans(Vec3 p, Hit &hit) {
        for (const Vec3 at : {Vec3{-2.45F, -0.2F, 4.8F}, Vec3{-4.3F, -0.2F, 5.6F}, Vec3{2.6F, -0.1F, 6.4F}}) {
            const Vec3 q = p - at;
            const float r = length(q.x, q.y);
            if (r > 2) {
                hit.join(r - 1.6F, Fan);
                continue;
            }
            const float angle = std::atan2(q.x, q.y);
            const float outline = r - 1.35F + 0.12F * std::sin(angle * 11);
            const float ribs = std::fabs(repeat(angle * 9 + 1.6F * noise(q.x * 3, q.y * 3), 1)) * r * 0.11F - 0.022F -
                               0.01F * noise(q.x * 20, q.y * 20);
            const float sheet = std::max({std::fabs(q.z - 0.12F * std::sin(q.x * 3)) - 0.02F, outline, ribs, -q.y});
            hit.join(sheet * 0.7F, Fan);
        }
    }

    /// The fish's own space: x towards its mouth.
    static Vec3 local(Vec3 p, const Swimmer &one) {
        Vec3 q = turnZ(turnY(p - one.at, -one.heading), one.pitch) * (1 / one.size);
        q.z += 0.07F * std::sin(q.x * 2.2F + one.heading) * smoothStep(0.4F, -1.2F, q.x); // the tail beats
        return q;
    }

    static void fish(Vec3 q, int number, Hit &hit) {
        const float size = Swimmers[number].size;
        const float near = length(q) - 1.7F;
        if (near > 0.3F) {
            hit.join(near * size, Fish);
            return;
        }
        float body = ellipsoid(q, {1.0F, 0.52F, 0.3F});
        body = blend(body, ellipsoid(q - Vec3{-0.85F, 0, 0}, {0.35F, 0.2F, 0.11F}), 0.2F);
        const float mouth = ellipsoid(q - Vec3{1.0F, -0.07F, 0}, {0.12F, 0.025F, 0.12F});
        body = std::max(body, -mouth);
        hit.join(body * size * 0.8F, Fish + number);
        const float rays = 0.012F * std::sin(std::atan2(q.y, q.x + 0.7F) * 42);
        const float tail = std::max({std::fabs(q.z) - 0.03F - rays,
                                     length((q.x + 1.3F) * 1.1F, q.y) - 0.4F - 0.05F * std::cos(q.y * 9), q.x + 1.02F});
        const float dorsalTop = 0.62F + 0.16F * std::sin((q.x + 0.75F) * 4.2F) * smoothStep(-0.9F, -0.3F, q.x);
        const float dorsal = std::max({std::fabs(q.z) - 0.025F - 0.01F * std::sin(q.x * 40), q.y - dorsalTop,
                                       0.2F - q.y, std::fabs(q.x + 0.12F) - 0.68F});
        const float belly = std::max({std::fabs(q.z) - 0.025F, -0.68F + 0.25F * std::fabs(q.x + 0.35F) - q.y,
                                      q.y + 0.2F, std::fabs(q.x + 0.38F) - 0.3F});
        const Vec3 side{q.x, q.y, std::fabs(q.z)};
        const Vec3 flap = turnY(side - Vec3{0.28F, -0.14F, 0.3F}, 0.6F);
        const float pectoral =
            std::max(std::fabs(flap.z) - 0.02F - 0.008F * std::sin(flap.y * 55), length(flap.x + 0.2F, flap.y) - 0.22F);
        hit.join(std::min({tail, dorsal, belly, pectoral}) * size * 0.7F, Fish + number);
        hit.join(sphere(side - Vec3{0.7F, 0.12F, 0.185F}, 0.1F) * size, Fish + number);
    }

    static Surface fishLook(int number, Vec3 p) {
        const Vec3 q = local(p, Swimmers[number]);
        const Vec3 eye = Vec3{q.x, q.y, std::fabs(q.z)} - Vec3{0.7F, 0.12F, 0.185F};
        if (length(eye) < 0.104F) {
            const float r = length(eye.x - 0.01F, eye.y);
            const Vec3 iris = r < 0.055F ? colour(0x0A0A10) : r < 0.085F ? colour(0xE07A1E) : colour(0x1A1418);
            return {.colour = iris, .shine = 2, .sharpness = 250, .mirror = 0.08F};
        }
        const float wave = 0.05F * std::sin(q.y * 6);
        constexpr float bands[][2] = {{0.42F, 0.13F}, {-0.18F, 0.15F}, {-0.9F, 0.085F}};
        Vec3 skin = mix(colour(0xE03C02), colour(0xFF7A0A), smoothStep(-0.45F, 0.4F, q.y + 0.4F * noise(q * 4)));
        for (const auto &[x, half] : bands) {
            const float off =
                std::fabs(q.x - x - wave - (x < 0 && x > -0.5F ? 0.18F * std::exp(-q.y * q.y * 14) : 0.0F)) - half;
            skin = off < 0 ? colour(0xFDFBF4) : off < 0.045F ? colour(0x15121A) : skin;
        }
        const bool fin = std::fabs(q.y) > 0.5F * std::sqrt(std::max(0.0F, 1 - q.x * q.x)) + 0.1F || q.x < -1.1F;
        const bool edge = q.x < -1.58F || q.y > 0.66F || q.y < -0.58F;
        if (fin && edge) {
            skin = colour(0x1A1418);
        }
        const Cell scale = cells(q.x * 17, q.y * 17, 0.3F);
        return {.colour = skin * mix(1.05F, 0.85F, smoothStep(0.25F, 0.6F, scale.distance)),
                .shine = 0.5F,
                .sharpness = 40,
                .mirror = 0.02F,
                .sheer = fin ? 0.5F : 0.0F};
    }

    static Surface bare(int material, Vec3 p, Vec3 n) {
        if (material >= Fish) {
            return fishLook(material - Fish, p);
        }
        switch (material) {
        case Tentacle: {
            const Mound &one = p.x < 0.3F ? Anemones[0] : Anemones[1];
            const float height = (p.y - one.at.y) / one.size;
            return {.colour = mix(colour(one.root), colour(one.tip), smoothStep(0.1F, 0.95F, height)),
                    .shine = 0.3F,
                    .sharpness = 30,
                    .sheer = 0.5F};
        }
        case Brain: {
            const float groove = smoothStep(0.35F, 0.65F, fraction(5 * fbm(p * 3.2F, 2)));
            const Vec3 one = p.x < -1 ? colour(0xE8B83A) : p.x < 2 ? colour(0xE0607A) : colour(0x7FB0E8);
            return {.colour = one * mix(0.45F, 1.0F, groove), .shine = 0.1F};
        }
        case Tube:
            return {.colour = mix(colour(0x8A3FD0), colour(0xFF8FD0), smoothStep(0, 1.3F, p.y) + 0.25F * noise(p * 9)),
                    .sheer = 0.2F};
        case Fan:
            return {.colour = mix(p.x < 0 ? colour(0xE0352F) : colour(0xF29A1F), colour(0xFFC9A0), 0.4F * noise(p * 6)),
                    .sheer = 0.6F};
        case Bubble: {
            const float rim = 1 - std::fabs(n.z);
            return {.colour = {},
                    .shine = 3,
                    .sharpness = 300,
                    .mirror = 0.25F,
                    .glow = mix(colour(0x2E8CC8) * 0.5F, colour(0xDFFBFF), rim * rim)};
        }
        default: {
            const float grain = fbm(p.x * 6, p.z * 6, 4);
            return {.colour = mix(colour(0xC9B48A), colour(0xF6EACB), grain)};
        }
        }
    }
};

} // namespace

std::unique_ptr<Scene> reef() {
    return std::make_unique<Reef>();
}

} // namespace lumora::samples
