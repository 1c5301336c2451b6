// Clownfish over a coral reef: sea anemones, corals, ripples of light on the sand.
#include "Scenes.h"

#include "Bodies.h"

namespace lumora::samples {

namespace {

enum Material { Sand, Rock, Tentacle, Brain, Tube, Fan, Bubble, Eye, Fin, Fish }; // Fish + its number

struct Swimmer {
    Vec3 at;
    float size;
    float heading; ///< radians; 0 looks to the right
    float pitch;
};
constexpr Swimmer Swimmers[] = {{{-0.42F, 1.62F, 0.2F}, 0.92F, 0.32F, 0.10F},
                                {{1.62F, 1.30F, 1.5F}, 0.62F, 2.65F, -0.08F},
                                {{1.35F, 2.35F, 3.2F}, 0.55F, 0.5F, 0.1F},
                                {{-2.7F, 2.55F, 4.5F}, 0.6F, -0.2F, 0.05F},
                                {{3.4F, 2.0F, 5.5F}, 0.55F, 2.9F, 0}};

constexpr Vec3 EyeAt{0.665F, 0.125F, 0.190F}; ///< in a fish of size 1
constexpr float EyeSize = 0.080F;

struct Mound {
    Vec3 at;
    float size;
    unsigned tip;
    unsigned root;
};
constexpr Mound Anemones[] = {{{-1.45F, 0.02F, 1.5F}, 1.0F, 0xE9C7D8, 0x8A6248},
                              {{1.95F, 0.0F, 2.2F}, 0.95F, 0xD9E0A8, 0x5E7048}};

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
        bloom = 0.1F;
        exposure = 0.9F;
        focus = 3.9F;
        aperture = 0.008F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join(p.y - seabed(p.x, p.z), Sand);
        rocks(p, hit);
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
        if (material == Rock) {
            return 0.05F * fbm(p * 9, 4);
        }
        if (material == Fin) {
            return 0;
        }
        return material == Brain ? 0.022F * maze(p) : material == Tube ? 0.012F * noise(p * 22) : 0;
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

    /// Winding ridges, 0 to 1.
    static float maze(Vec3 p) { return 0.5F + 0.5F * std::sin(26 * fbm(p * 3.1F, 2)); }

    /// Boulders with a crust of corals, on which the anemones sit.
    static void rocks(Vec3 p, Hit &hit) {
        constexpr Vec3 places[] = {{-1.5F, -0.3F, 1.65F}, {-2.35F, -0.3F, 2.5F}, {1.95F, -0.35F, 2.35F},
                                   {2.75F, -0.35F, 3.1F}, {3.3F, -0.35F, 1.1F},  {-3.3F, -0.4F, 1.5F}};
        constexpr Vec3 halves[] = {{1.05F, 0.52F, 0.85F}, {0.9F, 0.75F, 0.7F}, {1.0F, 0.5F, 0.8F},
                                   {0.85F, 0.8F, 0.7F},   {0.6F, 0.45F, 0.5F}, {0.7F, 0.5F, 0.6F}};
        float d = 9;
        for (int i = 0; i < 6; ++i) {
            d = blend(d, ellipsoid(p - places[i], halves[i]), 0.2F);
        }
        hit.join(d < 0.4F ? d + 0.22F * (fbm(p * 2.6F, 4) - 0.5F) : d - 0.12F, Rock);
    }

    static void anemone(Vec3 p, float size, Hit &hit) {
        const float near = length(p - Vec3{0, 0.45F * size, 0}) - 1.25F * size;
        if (near > 0.3F) {
            hit.join(near, Tentacle);
            return;
        }
        // Waving fingers, one in each tile of three turned grids; long in the middle, leaning outwards at the rim.
        float d = 0.2F;
        const float up = std::max(p.y, 0.0F);
        const float out = length(p.x, p.z);
        const float lean = 1 + 0.75F * up / size * smoothStep(0, 0.6F, out / size);
        for (int layer = 0; layer < 3; ++layer) {
            constexpr float Tile = 0.15F;
            const auto k = static_cast<float>(layer);
            const float sway = 0.13F * std::sin(up * 3.4F + p.x * 2.3F + 2 * k) * up;
            const Vec3 q = turnY(
                {(p.x + sway) / lean, p.y, p.z / lean + 0.12F * std::sin(up * 2.9F + p.z * 3 + k) * up}, 0.7F * k);
            const int i = static_cast<int>(std::round(q.x / Tile));
            const int j = static_cast<int>(std::round(q.z / Tile));
            const float cx = static_cast<float>(i) * Tile + 0.05F * (hash(i, j, layer) - 0.5F);
            const float cz = static_cast<float>(j) * Tile + 0.05F * (hash(i, j, layer + 9) - 0.5F);
            const float rim = length(cx, cz) / size;
            const float tall = size * (0.82F - 0.38F * rim * rim + 0.3F * (hash(i, j, layer + 4) - 0.5F));
            const float above = std::max(p.y - tall, 0.0F);
            const float thick = 0.040F - 0.010F * up / size + 0.014F * smoothStep(0.1F, 0.0F, tall - p.y);
            const float finger = length({(q.x - cx) * lean, above, (q.z - cz) * lean}) - thick;
            d = std::min(d, rim < 0.72F ? finger : 0.1F);
        }
        d = std::min(d, ellipsoid(p + Vec3{0, 0.12F, 0}, Vec3{0.66F, 0.24F, 0.66F} * size));
        hit.join(std::min(d, 0.14F) * 0.7F, Tentacle);
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
        hit.join(brain < 0.3F ? brain + 0.16F * (fbm(p * 1.9F, 3) - 0.5F) : brain - 0.08F, Brain);
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

    /// Half the body's height and width, `x` from the root of the tail (-1.05) to the snout (1).
    static float bodyHeight(float x) {
        if (x > 0.05F) {
            return 0.5F * std::pow(std::max(0.0F, 1 - std::pow((x - 0.05F) / 0.97F, 2.15F)), 0.56F);
        }
        return mix(0.125F, 0.5F, std::pow(0.5F + 0.5F * std::cos(Pi * clamp01((0.05F - x) / 1.12F)), 0.85F));
    }
    static float backLine(float x) { return bodyHeight(x) * 1.02F; }

    static void fish(Vec3 q, int number, Hit &hit) {
        const float size = Swimmers[number].size;
        const float near = length(q) - 1.75F;
        if (near > 0.3F) {
            hit.join(near * size, Fish);
            return;
        }
        const Vec3 side{q.x, q.y, std::fabs(q.z)};
        const float x = std::clamp(q.x, -1.08F, 1.0F);
        const float high = std::max(bodyHeight(x), 0.015F);
        const float wide = high * mix(0.42F, 0.64F, smoothStep(-0.7F, 0.6F, x));
        const float r = length(q.y / high, q.z / wide);
        float body = std::max((r - 1) * std::min(high, wide) * 0.8F, -1.08F - q.x);
        body = -blend(-body, 0.975F - q.x, 0.2F); // the profile is too steep at the snout
        body = blend(body, ellipsoid(q - Vec3{0.86F, -0.03F, 0}, {0.165F, 0.155F, 0.115F}), 0.16F);    // snout
        body = blend(body, ellipsoid(side - Vec3{0.36F, -0.02F, 0.16F}, {0.26F, 0.34F, 0.17F}), 0.2F); // gill cover
        const float smile = q.y + 0.085F - 0.9F * (q.x - 0.98F) * (q.x - 0.98F) + 0.22F * (q.x - 0.98F);
        body = carve(body, std::max(std::fabs(smile) - 0.008F, 0.94F - q.x), 0.025F);
        body = blend(body, sphere(side - EyeAt - Vec3{0, 0, -0.03F}, 0.118F), 0.06F);
        body = carve(body, sphere(side - EyeAt - Vec3{0, 0, 0.045F}, 0.092F), 0.02F);
        hit.join(body * size * 0.7F, Fish + number);
        hit.join(sphere(side - EyeAt, EyeSize) * size, Eye);
        hit.join(fins(q, side) * size * 0.55F, Fin);
    }

    /// All fins: thin sheets over slender rays, thickest at their roots.
    static float fins(Vec3 q, Vec3 side) {
        // On the back: a low front part on spines, a dip, a round rear part; the rays lean backwards.
        const float above = q.y - backLine(std::clamp(q.x, -1.0F, 0.9F));
        const float s = q.x + 0.55F * std::max(above, 0.0F);
        const float front = 0.19F * std::sqrt(std::max(0.0F, 1 - std::pow((s - 0.16F) / 0.36F, 2.0F)));
        const float rear = 0.27F * std::sqrt(std::max(0.0F, 1 - std::pow((s + 0.42F) / 0.33F, 2.0F)));
        const float crest = std::max(front - 0.018F * std::fabs(std::sin(s * 34)), rear);
        const float back = std::max({std::fabs(q.z + 0.02F * std::sin(s * 9)) - web(above, s * 44), above - crest,
                                     -above - 0.12F, s - 0.52F, -s - 0.76F});
        const float below = -q.y - backLine(std::clamp(q.x, -1.0F, 0.9F));
        const float b = q.x + 0.6F * std::max(below, 0.0F);
        const float keel = 0.24F * std::sqrt(std::max(0.0F, 1 - std::pow((b + 0.42F) / 0.28F, 2.0F)));
        const float anal =
            std::max({std::fabs(q.z) - web(below, b * 44), below - keel, -below - 0.12F, std::fabs(b + 0.42F) - 0.28F});
        // The tail fan, gently curled.
        const Vec3 t{q.x + 0.88F, q.y, q.z + 0.06F * std::sin(q.y * 5) * smoothStep(-1.0F, -1.5F, q.x)};
        const float angle = std::atan2(t.y, -t.x);
        const float fan =
            length(t.x, t.y * 0.94F) - 0.64F + 0.02F * std::cos(angle * 7) + 0.05F * std::cos(angle * 2.4F);
        const float tail = std::max({std::fabs(t.z) - web(-t.x - 0.12F, angle * 30), fan,
                                     std::fabs(angle) - 0.66F + 0.4F * smoothStep(0.4F, 0.1F, -t.x), t.x + 0.1F});
        // Paired fins: round paddles behind the gills, pointed ones below.
        const Vec3 f = paddle(side);
        const float round = std::atan2(f.y, -f.x);
        const float pectoral = std::max({std::fabs(f.z - 0.3F * f.y * f.y) - web(-f.x, round * 24),
                                         length(f.x + 0.19F, f.y * 0.9F) - 0.21F + 0.008F * std::cos(round * 24)});
        const Vec3 v = turnX(turnZ(side - Vec3{0.12F, -0.44F, 0.08F}, 0.75F), -0.35F);
        const float pelvic = std::max(std::fabs(v.z) - web(-v.x, v.y * 60), length((v.x + 0.16F) / 2.2F, v.y) - 0.085F);
        return std::min({back, anal, tail, pectoral, pelvic});
    }
    static Vec3 paddle(Vec3 side) { return turnZ(turnY(side - Vec3{0.27F, -0.14F, 0.275F}, -0.5F), 0.25F); }
    static float web(float out, float ray) {
        return 0.008F + 0.022F * smoothStep(0.3F, 0.0F, out) + 0.005F * std::cos(ray);
    }

    /// White with a dark rim, or the orange between; `dark` is the width of the rim.
    static Vec3 banded(Vec3 q, Vec3 skin, float dark) {
        constexpr float bands[][2] = {{0.47F, 0.115F}, {-0.17F, 0.125F}, {-0.88F, 0.07F}};
        for (const auto &[x, half] : bands) {
            const float bend = x > 0.3F    ? -0.55F * q.y * q.y + 0.05F * q.y
                               : x > -0.5F ? 0.17F * std::exp(-q.y * q.y * 22) - 0.10F * q.y * q.y
                                           : 0.05F * q.y;
            const float off = std::fabs(q.x - x - bend) - half - 0.02F * (noise(q.y * 5, x * 9) - 0.5F) -
                              0.006F * (noise(q * 26) - 0.5F);
            skin = mix(skin, colour(0x17120F), smoothStep(dark + 0.012F, dark - 0.006F, off));
            skin = mix(skin, mix(colour(0xF2F1EC), colour(0xC9D9EA), 0.5F * smoothStep(0.1F, -0.45F, q.y)),
                       smoothStep(0.006F, -0.012F, off));
        }
        return skin;
    }

    static Surface fishLook(int number, Vec3 p) {
        const Vec3 q = local(p, Swimmers[number]);
        Vec3 skin = mix(colour(0xD84A0A), colour(0xF47A12), smoothStep(-0.4F, 0.3F, q.y + 0.3F * noise(q * 4)));
        skin = mix(skin, colour(0xC8400C), 0.6F * smoothStep(0.3F, 0.55F, q.y));
        skin = mix(skin, colour(0xF7A040), 0.5F * smoothStep(0.62F, 0.9F, q.x));
        skin = banded(q, skin, 0.032F);
        // Small scales, no more than a hint of light and dark, none on the head.
        const Feather scale = feathers(-q.y * 30 + 0.4F * noise(q * 9), q.x * 26);
        skin = skin * (1 - 0.10F * smoothStep(0.30F, 0.0F, scale.along) * smoothStep(0.66F, 0.5F, q.x)) *
               (0.92F + 0.14F * fbm(q * 11, 3));
        // The edge of the gill cover and the corner of the mouth lie in the shade.
        const float gill = length((q.x - 0.42F) / 0.86F, q.y + 0.02F) - 0.28F;
        skin = skin * (1 - 0.35F * smoothStep(0.02F, 0.0F, std::fabs(gill)) * smoothStep(0.3F, 0.2F, q.x));
        const float smile = q.y + 0.085F - 0.9F * (q.x - 0.98F) * (q.x - 0.98F) + 0.22F * (q.x - 0.98F);
        skin = mix(skin, colour(0x3A1206),
                   0.8F * smoothStep(0.016F, 0.004F, std::fabs(smile)) * smoothStep(0.915F, 0.935F, q.x));
        return {.colour = skin, .shine = 0.22F, .sharpness = 22, .sheer = 0.06F};
    }

    static Surface finLook(Vec3 p) {
        int number = 0;
        for (int i = 1; i < static_cast<int>(std::size(Swimmers)); ++i) {
            if (length(p - Swimmers[i].at) < length(p - Swimmers[number].at)) {
                number = i;
            }
        }
        const Vec3 q = local(p, Swimmers[number]);
        const Vec3 side{q.x, q.y, std::fabs(q.z)};
        const float above = std::fabs(q.y) - backLine(std::clamp(q.x, -1.0F, 0.9F));
        const float s = q.x + (q.y > 0 ? 0.55F : 0.6F) * std::max(above, 0.0F);
        // How far inside the rim, 0 at it.
        const Vec3 f = paddle(side);
        const bool wing = side.z > 0.12F && length(f.x + 0.19F, f.y * 0.9F) < 0.26F;
        const float angle = std::atan2(q.y, -(q.x + 0.88F));
        const bool tail = q.x < -1.0F;
        float rim = 0;
        float ray = 0;
        if (wing) {
            rim = 0.21F - length(f.x + 0.19F, f.y * 0.9F);
            ray = std::atan2(f.y, -f.x) * 24;
        } else if (tail) {
            rim = 0.62F - length(q.x + 0.88F, q.y * 0.94F) - 0.05F * std::cos(angle * 2.4F);
            ray = angle * 30;
        } else if (q.y > 0) {
            const float front = 0.19F * std::sqrt(std::max(0.0F, 1 - std::pow((s - 0.16F) / 0.36F, 2.0F)));
            const float rear = 0.27F * std::sqrt(std::max(0.0F, 1 - std::pow((s + 0.42F) / 0.33F, 2.0F)));
            rim = std::max(front, rear) - above;
            ray = s * 44;
        } else if (q.x < -0.12F) {
            rim = 0.24F * std::sqrt(std::max(0.0F, 1 - std::pow((s + 0.42F) / 0.28F, 2.0F))) - above;
            ray = s * 44;
        } else {
            const Vec3 v = turnX(turnZ(side - Vec3{0.12F, -0.44F, 0.08F}, 0.75F), -0.35F);
            rim = 0.085F - length((v.x + 0.16F) / 2.2F, v.y);
            ray = v.y * 60;
        }
        Vec3 skin = mix(colour(0xE85A0C), colour(0xFFA040), smoothStep(0.05F, 0.3F, rim + 0.05F * std::cos(ray)));
        if (!wing && !tail && q.y > 0) { // the white bands go on into the fin on the back
            skin = banded({q.x + 0.18F * above, 0.35F, q.z}, skin, 0.028F);
        }
        skin = mix(skin, colour(0x17120F), smoothStep(0.085F, 0.055F, rim + 0.008F * std::cos(ray)));
        skin = skin * (0.86F + 0.16F * std::cos(ray));
        return {.colour = skin, .shine = 0.15F, .sharpness = 20, .sheer = 0.6F, .glow = skin * 0.10F};
    }

    static Surface eyeLook(Vec3 p) {
        for (const Swimmer &one : Swimmers) {
            const Vec3 q = local(p, one);
            const Vec3 e = (Vec3{q.x, q.y, std::fabs(q.z)} - EyeAt) * (1 / EyeSize);
            if (length(e) < 1.3F) {
                const float r = length(e.x, e.y);
                Vec3 look = mix(colour(0xE88A2A), colour(0x6A2A08), smoothStep(0.5F, 0.85F, r)) *
                            (0.75F + 0.5F * noise(std::atan2(e.y, e.x) * 5, r * 5));
                look = mix(look, colour(0x050507), std::max(smoothStep(0.56F, 0.50F, r), smoothStep(0.80F, 0.92F, r)));
                return {.colour = look, .shine = 2.2F, .sharpness = 260, .mirror = 0.05F};
            }
        }
        return {};
    }

    static Surface bare(int material, Vec3 p, Vec3 n) {
        if (material >= Fish) {
            return fishLook(material - Fish, p);
        }
        if (material == Fin) {
            return finLook(p);
        }
        if (material == Eye) {
            return eyeLook(p);
        }
        switch (material) {
        case Rock: {
            const float crust = fbm(p * 4.3F, 4);
            Vec3 stone = mix(colour(0x4A3A38), colour(0xA08A78), fbm(p * 9, 4));
            stone = mix(stone, colour(0x9A4A78), 0.8F * smoothStep(0.5F, 0.6F, crust));
            stone = mix(stone, colour(0xB88A3A), 0.7F * smoothStep(0.44F, 0.36F, crust));
            return {.colour = stone * (0.7F + 0.5F * noise(p * 34))};
        }
        case Tentacle: {
            const Mound &one = p.x < 0.3F ? Anemones[0] : Anemones[1];
            const float height = (p.y - one.at.y) / one.size;
            Vec3 skin = mix(colour(one.root), colour(one.tip), smoothStep(0.05F, 0.75F, height + 0.25F * noise(p * 3)));
            skin = mix(skin, p.x < 0.3F ? colour(0xC86AC0) : colour(0x8AC86A),
                       0.75F * smoothStep(0.62F, 0.95F, height + 0.3F * noise(p * 5)));
            return {.colour = skin * 0.9F, .shine = 0.12F, .sharpness = 20, .sheer = 0.55F};
        }
        case Brain: {
            const Vec3 one = p.x < -1 ? colour(0xB8923A) : p.x < 2 ? colour(0xB86A72) : colour(0x6A8AA8);
            return {.colour = one * mix(0.45F, 1.0F, maze(p)) * (0.8F + 0.4F * noise(p * 40)), .sheer = 0.05F};
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
