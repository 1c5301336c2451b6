// Icebergs in a polar sea at sunrise: blue ice, a glacier behind, a red ship, penguins on a floe.
#include "Scenes.h"

#include "Landforms.h"
#include "Noise.h"
#include "Shapes.h"

#include <array>

namespace lumora::samples {

namespace {

enum Material { Ice, Floe, Coast, Coat, Bill, Hull, Deckhouse };

struct Berg {
    Vec3 at;
    float size;
    float tall; ///< height above the water as a share of the size
    int seed;
};
constexpr Berg Bergs[] = {{{2.7F, 0, 10.5F}, 2.6F, 1.4F, 3}, {{-3.4F, 0, 17.5F}, 2.3F, 0.62F, 12},
                          {{9.5F, 0, 21}, 3.2F, 0.8F, 8},    {{-9.5F, 0, 25}, 2.8F, 0.9F, 5},
                          {{0.2F, 0, 24}, 1.6F, 0.8F, 21},   {{-2.7F, 0, 7.6F}, 0.75F, 0.75F, 14},
                          {{4.6F, 0, 5.4F}, 0.7F, 0.5F, 31}};

struct Bird {
    float x;
    float z;
    float turn; ///< radians; 0 looks at the viewer
    float size;
};
constexpr Bird Birds[] = {{-1.25F, -0.5F, 0.5F, 0.46F},   {-0.9F, -0.15F, -0.4F, 0.44F}, {-1.62F, -0.2F, 0.2F, 0.45F},
                          {-0.42F, -0.72F, -0.9F, 0.43F}, {-1.5F, 0.5F, 1.2F, 0.44F},    {-0.62F, -0.62F, 0.3F, 0.24F}};
constexpr Vec3 Ship{-5.6F, 0, 14.5F};

class Icebergs : public Scene {
  public:
    Icebergs() {
        camera = {{0, 1.15F, -4.1F}, {0.25F, 1.38F, 6}, 1.45F};
        sunDirection = normalise({0.86F, 0.26F, -0.22F});
        sunColour = {3.7F, 2.35F, 1.55F};
        skyLight = {0.26F, 0.40F, 0.66F};
        groundLight = {0.08F, 0.17F, 0.22F};
        farthest = 85;
        ceiling = 12;
        caution = 0.7F;
        steps = 220;
        shadowReach = 9;
        shadowSoftness = 16;
        creviceSize = 0.25F;
        waterLevel = 0;
        waterColour = {0.003F, 0.046F, 0.066F};
        exposure = 0.93F;
        for (size_t b = 0; b < m_faces.size(); ++b) {
            carve(b);
        }
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        for (size_t b = 0; b < m_faces.size(); ++b) {
            hit.join(berg(p, b), Ice);
        }
        hit.join(floes(p), Floe);
        if (p.z > 24) {
            hit.join((p.y - coast(p.x, p.z)) * 0.7F, Coast);
        }
        penguins(p, hit);
        ship(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        switch (material) {
        case Ice:
            return ice(p, n);
        case Floe: {
            const float snow = fbm(p.x * 3, p.z * 3, 4);
            const float edge = smoothStep(0.75F, 0.4F, n.y);
            return {.colour = mix(mix(colour(0xC4D4EA), colour(0xF4F6FA), smoothStep(0.3F, 0.6F, snow)),
                                  colour(0x6FC6DE), edge),
                    .glow = colour(0x2FA6C8) * (0.10F * edge)};
        }
        case Coast: {
            const float rough = fbm(p.x * 1.2F, p.z * 1.2F, 5);
            const float snow = smoothStep(0.35F, 0.6F, n.y + 0.5F * (rough - 0.5F));
            const bool front = p.y < 2.6F && p.z < 42;
            return {.colour = mix(front ? colour(0x8CCBE6) : mix(colour(0x4A4650), colour(0x7E7270), rough),
                                  colour(0xF2F5FA), snow)};
        }
        case Coat:
            return plumage(p);
        case Bill:
            return {.colour = colour(0xFF8A12)};
        case Hull:
            return {.colour = p.y > 0.07F ? colour(0xE0241A) : colour(0x2A1A1E), .shine = 0.3F};
        default: {
            const bool windows = std::fabs(fraction(p.y * 5.2F) - 0.5F) < 0.17F && fraction(p.x * 11) < 0.6F;
            return {.colour = windows && p.y < 0.9F ? colour(0x24344A)
                              : p.y > 0.96F         ? colour(0xFFB31E)
                                                    : colour(0xFAF8F2)};
        }
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.9F);
        const float east = 0.5F + 0.5F * d.x;
        Vec3 light = mix(mix(colour(0xF2B8C0), colour(0xFFD39A), east), mix(colour(0xA8B8E4), colour(0xC6CCE8), east),
                         smoothStep(0, 0.3F, up));
        light = mix(light, colour(0x3F7CC6), smoothStep(0.18F, 1, up));
        const float reach = 1 / (d.y + 0.1F);
        const float veil = fbm(d.x * reach * 0.8F + 7, d.z * reach * 2.0F + 3 + d.x, 6);
        light =
            mix(light, colour(0xFFD2C2) * 1.05F, 0.8F * smoothStep(0.5F, 0.78F, veil) * smoothStep(0.01F, 0.12F, d.y));
        const float terns =
            std::max({bird(d, {0.13F, 0.26F, 1}, 0.022F, 0.5F, 0.3F), bird(d, {0.05F, 0.3F, 1}, 0.016F, 0.4F, -0.2F),
                      bird(d, {-0.18F, 0.17F, 1}, 0.013F, 0.4F, 0.1F)});
        light = mix(light, colour(0x3A4A66), terns);
        return light + sunGlow(d);
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Ice: // scallops melted by the waves, cracks, layers of old snow
            return 0.035F * fbm(Vec3{p.x * 5, p.y * 8, p.z * 5}, 5) +
                   0.012F * noise(Vec3{p.x * 2, p.y * 34 + 6 * p.x, p.z * 2});
        case Floe:
            return 0.035F * fbm(p.x * 4 + 1.5F * p.z, p.z * 11 - 2 * p.x, 5);
        case Coast:
            return 0.12F * ridged(p.x * 1.5F, p.z * 1.5F, 4);
        default:
            return 0;
        }
    }

    Vec3 waterNormal(Vec3 p, float distance) const override {
        const float calm = 1 / (1 + 0.08F * distance);
        const auto height = [](float x, float z) {
            return 0.035F * fbm(x * 1.3F + 0.2F * z, z * 3.1F, 3) + 0.004F * noise(x * 9 + z, z * 16);
        };
        const float e = 0.02F + 0.002F * distance;
        const float here = height(p.x, p.z);
        return normalise({calm * (here - height(p.x + e, p.z)) / e, 1,
                          calm * (here - height(p.x, p.z + e)) / e - 0.05F * smoothStep(3, 20, distance)});
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return haze(light, *this, d, distance < farthest - 1 ? distance : 0.0F, 95, colour(0xC2C2E2), colour(0xFFD0A8));
    }

  private:
    static constexpr size_t Sides = 8;
    static constexpr size_t Tops = 3;
    struct Face {
        Vec3 n;
        float out;
    };
    std::array<std::array<Face, Sides + Tops>, std::size(Bergs)> m_faces;

    Vec3 sunGlow(Vec3 d) const { return sunColour * (0.12F * std::pow(std::max(dot(d, sunDirection), 0.0F), 6.0F)); }

    /// Ice breaks in flat faces: steep ones around, a few sloping ones on top.
    void carve(size_t b) {
        const Berg &one = Bergs[b];
        for (size_t face = 0; face < Sides; ++face) {
            const int i = static_cast<int>(face);
            const float angle = 2 * Pi * (static_cast<float>(i) + 0.7F * hash(i, one.seed)) / Sides;
            const Vec3 n = normalise({std::cos(angle), 0.08F + 0.4F * hash(i, one.seed, 1), std::sin(angle)});
            m_faces[b][face] = {n, one.size * (0.72F + 0.38F * hash(i, one.seed, 2))};
        }
        for (size_t face = 0; face < Tops; ++face) {
            const int i = static_cast<int>(face);
            const float angle = 2 * Pi * (static_cast<float>(i) + hash(i, one.seed, 3)) / Tops;
            const float tilt = 0.18F + 0.6F * hash(i, one.seed, 4);
            const Vec3 n = normalise({tilt * std::cos(angle), 1, tilt * std::sin(angle)});
            m_faces[b][Sides + face] = {n, one.size * one.tall * (0.75F + 0.25F * hash(i, one.seed, 5))};
        }
    }

    float berg(Vec3 p, size_t b) const {
        const Berg &one = Bergs[b];
        const Vec3 q = p - one.at;
        const float near = length(q) - 1.6F * one.size;
        if (near > 0.5F) {
            return near;
        }
        float d = -1e3F;
        for (const Face &face : m_faces[b]) {
            d = std::max(d, dot(q, face.n) - face.out);
        }
        if (b == 0) { // the sea has cut an arch
            const Vec3 hole = turnY(q - Vec3{-0.9F, 0.3F, 0}, -0.22F);
            d = std::max(d, 0.8F - length(hole.x * 1.1F, std::max(hole.y, 0.0F) * 0.66F));
        }
        const float flutes =
            0.16F * (fbm(Vec3{p.x * 1.7F, p.y * 0.8F, p.z * 1.7F}, 4) - 0.5F) * std::min(one.size, 2.0F);
        const float notch = 0.10F * one.size * smoothStep(0.16F, 0.03F, std::fabs(p.y - 0.08F)); // where the waves lick
        return d + flutes * 0.8F + 0.4F * notch;
    }

    static Surface ice(Vec3 p, Vec3 n) {
        const float snow = smoothStep(0.35F, 0.65F, n.y + 0.25F * (fbm(p * 2, 3) - 0.5F)) * smoothStep(0.1F, 0.3F, p.y);
        const float layers = noise(p.y * 6 + 1.2F * p.x + 0.6F * fbm(p * 1.3F, 2), 3);
        Vec3 blue = mix(colour(0x8FD0EA), colour(0xDCEFF8), smoothStep(0.3F, 0.7F, layers));
        blue =
            mix(blue, colour(0x3C9CD0), 0.8F * smoothStep(0.68F, 0.8F, noise(p.y * 4 + 1.9F * p.x, 11 + p.z * 0.3F)));
        const float wet = smoothStep(0.34F, 0.05F, p.y + 0.1F * noise(p * 4));
        blue = mix(blue, colour(0x35A8C4), wet);
        const float depth = smoothStep(0.8F, 0.2F, n.y);
        return {.colour = mix(blue * 0.9F, colour(0xFAFBFF) * 0.92F, snow),
                .shine = 0.35F * (1 - snow),
                .sharpness = 40,
                .sheer = 0.22F,
                .glow = mix(colour(0x1E8CD0), colour(0x28C8D8), wet) * (0.085F * depth * (1 - snow) + 0.1F * wet)};
    }

    /// Plates of sea ice; the near one carries the penguins.
    static float floes(Vec3 p) {
        if (p.y > 0.5F) {
            return p.y - 0.2F;
        }
        const float ragged = 0.3F * (ridged(p.x * 1.1F, p.z * 1.1F, 4) - 0.5F) +
                             0.10F * (fbm(Vec3{p.x * 6, p.y * 13, p.z * 6}, 3) - 0.5F);
        const float top = 0.13F + 0.05F * fbm(p.x * 2, p.z * 2, 3);
        const float near = length((p.x + 1.35F) * 0.62F, p.z + 0.45F) - 1.18F + 1.3F * ragged;
        float d = std::max(near * 0.8F, p.y - top - 0.09F * smoothStep(-0.2F, -0.9F, near));
        const Cell plate = cells(p.x * 0.62F + 0.3F, p.z * 0.45F + 0.2F, 0.75F);
        const float where = smoothStep(0.4F, 0.6F, noise(p.x * 0.17F + 2, p.z * 0.13F));
        const float edge = (plate.distance - 0.46F * plate.id * where + 0.3F * ragged) * 1.2F;
        d = std::min(d, std::max(edge, p.y - 0.04F - 0.05F * plate.id) + (p.z < 1.2F ? 0.5F : 0.0F));
        return std::max(d, -p.y - 0.25F) * 0.8F;
    }

    /// A glacier's front on the left, snow mountains behind.
    static float coast(float x, float z) {
        const float front =
            smoothStep(37.2F, 38.0F, z + 1.1F * fbm(x * 0.6F, 3, 4)) * smoothStep(13, 7, x + 2 * noise(z * 0.2F, 5));
        const float crevasses = 0.45F * ridged(x * 0.9F, z * 0.9F, 3);
        const float glacier = front * (1.9F + crevasses + 0.10F * (z - 38)) - 0.4F;
        const float back = smoothStep(40, 62, z + 7 * std::fabs(noise(x * 0.09F, 4) - 0.5F));
        const float peaks = ridged(x * 0.06F + 1.3F, z * 0.06F + 2, 6);
        return std::max(glacier, back * (12.5F * peaks * std::sqrt(peaks) + 0.5F) - 0.5F);
    }

    static Vec3 local(Vec3 p, const Bird &one) {
        return turnY(p - Vec3{one.x, 0.21F, one.z}, one.turn) * (1 / one.size);
    }

    static void penguins(Vec3 p, Hit &hit) {
        const float near = box(p - Vec3{-1.05F, 0.4F, -0.15F}, {0.85F, 0.45F, 0.9F});
        if (near > 0.2F) {
            hit.join(near, Coat);
            return;
        }
        for (const Bird &one : Birds) {
            const Vec3 p1 = local(p, one);
            const Vec3 q{std::fabs(p1.x), p1.y, p1.z};
            float d = ellipsoid(q - Vec3{0, 0.4F, 0}, {0.18F, 0.36F, 0.17F});
            d = blend(d, ellipsoid(q - Vec3{0, 0.83F, -0.02F}, {0.095F, 0.115F, 0.105F}), 0.12F);
            d = std::min(d, stick(q, {0.16F, 0.62F, 0}, {0.25F, 0.3F, 0.02F}, 0.03F, 0.018F));
            d = blend(d, stick(q, {0, 0.12F, 0.12F}, {0, 0.03F, 0.22F}, 0.05F, 0.02F), 0.05F);
            hit.join(d * one.size * 0.9F, Coat);
            const float beak = stick(q, {0, 0.84F, -0.1F}, {0, 0.82F, -0.23F}, 0.026F, 0.008F);
            const float feet = ellipsoid(q - Vec3{0.075F, 0.02F, -0.09F}, {0.05F, 0.025F, 0.09F});
            hit.join(std::min(beak, feet) * one.size, Bill);
        }
    }

    static Surface plumage(Vec3 p) {
        const Bird *nearest = Birds;
        for (const Bird &one : Birds) {
            if (length(p.x - one.x, p.z - one.z) < length(p.x - nearest->x, p.z - nearest->z)) {
                nearest = &one;
            }
        }
        const Vec3 q = local(p, *nearest);
        const bool chick = nearest->size < 0.3F;
        const bool face = q.y > 0.72F;
        if (face) {
            const bool eye = length(Vec3{std::fabs(q.x) - 0.075F, q.y - 0.87F, q.z + 0.08F}) < 0.022F;
            const bool patch = length(Vec3{std::fabs(q.x) - 0.09F, q.y - 0.79F, q.z - 0.0F}) < 0.06F;
            return {.colour = eye     ? colour(0x050505)
                              : chick ? colour(0xE8EAEC)
                              : patch ? colour(0xFFB81E)
                                      : colour(0x16181F),
                    .shine = 0.2F};
        }
        const bool front = q.z < -0.03F - 0.5F * std::max(0.0F, std::fabs(q.x) - 0.1F) && std::fabs(q.x) < 0.165F;
        const Vec3 chest = mix(colour(0xF6F4EE), colour(0xFFC84A), smoothStep(0.58F, 0.74F, q.y));
        return {.colour = chick   ? colour(0x9AA2AC) * (0.8F + 0.4F * noise(q * 30))
                          : front ? chest
                                  : colour(0x262B38),
                .shine = 0.15F};
    }

    static void ship(Vec3 p, Hit &hit) {
        const Vec3 q = turnY(p - Ship, 0.35F);
        const float near = length(q) - 2.2F;
        if (near > 0.4F) {
            hit.join(near, Hull);
            return;
        }
        const float bow = clamp01((q.x - 0.5F) / 1.1F);
        const float wide = 0.34F * (1 - bow * bow) + 0.25F * std::min(0.0F, q.y - 0.35F);
        const float deck = 0.36F + 0.16F * bow;
        hit.join(0.7F * std::max({std::fabs(q.z) - wide, q.y - deck, -1.45F - q.x, q.x - 1.5F - 0.3F * q.y}), Hull);
        float house = box(q - Vec3{-0.45F, 0.55F, 0}, {0.75F, 0.2F, 0.26F}, 0.02F);
        house = std::min(house, box(q - Vec3{-0.1F, 0.82F, 0}, {0.34F, 0.14F, 0.24F}, 0.02F));
        house = std::min(house, rodY(q - Vec3{-0.75F, 0.95F, 0}, 0.11F, 0.22F, 0.02F));
        house = std::min(house, stick(q, {0.0F, 0.9F, 0}, {0.0F, 1.45F, 0}, 0.018F));
        house = std::min(house, stick(q, {0.95F, 0.4F, 0}, {0.75F, 1.0F, 0}, 0.016F));
        hit.join(house, Deckhouse);
    }
};

} // namespace

std::unique_ptr<Scene> icebergs() {
    return std::make_unique<Icebergs>();
}

} // namespace lumora::samples
