// A canyon in the late afternoon: a green river bends around a stepped butte of red rock; a hiker stands on the rim.
#include "Scenes.h"

#include "Landforms.h"
#include "Noise.h"
#include "Shapes.h"

namespace lumora::samples {

namespace {

enum Material { Rock, Raft, Hiker }; // the hiker has five materials

constexpr float River = -2.05F;
constexpr Vec3 Rafts[] = {{-1.65F, River, 3.08F}, {-1.24F, River, 2.3F}};
constexpr Vec3 Stand{0.62F, 0.05F, 0.75F}; ///< where the hiker stands

class Canyon : public Scene {
  public:
    Canyon() {
        camera = {{0, 0.72F, 0}, {0.1F, -0.7F, 3.4F}, 1.0F};
        sunDirection = normalise({-0.8F, 0.42F, 0.05F});
        sunColour = {3.9F, 2.85F, 1.85F};
        skyLight = {0.20F, 0.27F, 0.44F};
        groundLight = {0.17F, 0.09F, 0.05F};
        farthest = 70;
        ceiling = 2.6F;
        caution = 0.6F;
        steps = 330;
        shadowReach = 6;
        shadowSoftness = 24;
        creviceSize = 0.16F;
        waterLevel = River;
        while (rock({Stand.x, m_stand, Stand.z}) > 0.001F) {
            m_stand -= 0.3F * rock({Stand.x, m_stand, Stand.z});
        }
        waterColour = {0.022F, 0.13F, 0.095F};
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join(rock(p), Rock);
        walker(turnY(p - Vec3{Stand.x, m_stand, Stand.z}, 0.5F) * (1 / 0.085F), Hiker, 0.085F, hit);
        rafts(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        if (material >= Hiker) {
            constexpr unsigned clothes[] = {0x2C3A55, 0xE0241C, 0xC98A62, 0xF2E2B8, 0xF5B81E};
            return {.colour = colour(clothes[material - Hiker])};
        }
        if (material == Raft) {
            return {.colour = p.y > River + 0.045F ? colour(0xE8402A) : colour(0xFFC81E), .shine = 0.3F};
        }
        return strata(p, n);
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 2.2F);
        Vec3 light = mix(mix(colour(0xF6E2C6), colour(0x9CC7EC), smoothStep(0, 0.3F, up)), colour(0x2A66B8),
                         smoothStep(0.15F, 1, up));
        const float birds = std::max(bird(d, {-0.52F, 0.05F, 1}, 0.021F, 0.35F, 0.3F),
                                     bird(d, {-0.42F, 0.12F, 1}, 0.014F, 0.3F, -0.25F));
        light = mix(light, colour(0x2B2530), birds);
        return throughHeaps(light, d, sunDirection, {.cover = 0.42F, .shift = 8.0F});
    }

    float grain(int material, Vec3 p) const override {
        if (material != Rock) {
            return 0;
        }
        return 0.016F * fbm(Vec3{p.x * 9, p.y * 30, p.z * 9}, 4) + 0.007F * fbm(Vec3{p.x * 60, p.y * 90, p.z * 60}, 3);
    }

    Vec3 waterNormal(Vec3 p, float) const override {
        const float a = noise(p.x * 9, p.z * 9) - 0.5F;
        const float b = noise(p.x * 9 + 7, p.z * 9 + 3) - 0.5F;
        return normalise({0.05F * a, 1, 0.05F * b});
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return haze(light, *this, d, distance < farthest - 1 ? distance : 2.0F, 38, colour(0x9FB6DC) * 0.9F,
                    colour(0xFFD9A8));
    }

  private:
    float m_stand = 0.6F; ///< height of the rock under the hiker

    struct Reach {
        float away;   ///< from the middle of the river
        float within; ///< 0 outside the bend to 1 deep inside it
    };
    /// The river runs in a horseshoe about (0.25, 5.2), open at the back.
    static Reach fromRiver(float x, float z) {
        const float bend = 1.1F * (noise(x * 0.45F + 4, z * 0.45F) - 0.5F);
        x += bend - 0.25F;
        z += 0.9F * (noise(x * 0.45F + 9, z * 0.45F + 5) - 0.5F) - 5.2F;
        const float out = z < 0 ? length(x, z) : std::fabs(x) - 0.06F * z * z;
        return {std::fabs(out - 3.3F), smoothStep(3.3F, 2.2F, out)};
    }

    /// Half the canyon's width at a height: cliffs where the rock is hard, slopes and ledges where it is soft.
    static float opening(float y) {
        constexpr float layers[][2] = {{-2.6F, 4},      {-2.1F, 2},     {-2.06F, 0.62F}, {-1.9F, 0.8F},
                                       {-1.52F, 0.86F}, {-1.4F, 1.06F}, {-1.1F, 1.1F},   {-0.98F, 1.32F},
                                       {-0.7F, 1.36F},  {-0.6F, 1.55F}, {-0.34F, 1.59F}, {-0.26F, 1.8F},
                                       {0.0F, 1.84F},   {0.1F, 2.1F},   {0.5F, 3},       {4.0F, 14}};
        for (size_t i = 1; i < std::size(layers); ++i) {
            if (y < layers[i][0]) {
                const float t = (y - layers[i - 1][0]) / (layers[i][0] - layers[i - 1][0]);
                return mix(layers[i - 1][1], layers[i][1], std::max(t, 0.0F));
            }
        }
        return 14;
    }

    /// Height of the plateau; the spur inside the bend is worn lower towards its tip.
    static float plateau(Vec3 p, float within) {
        const float tip = within * smoothStep(8.2F, 3.6F, p.z);
        return 0.16F * fbm(p.x * 1.1F, p.z * 1.1F, 3) + 0.06F * worn(p.x * 5, p.z * 5, 4) - 0.62F * tip;
    }

    /// Blown-up boats with two people in each.
    static void rafts(Vec3 p, Hit &hit) {
        for (const Vec3 &at : Rafts) {
            const Vec3 q = turnY(p - at, 0.9F);
            const float along = std::max(std::fabs(q.x) - 0.06F, 0.0F);
            const float hull = length(length(along, q.z) - 0.045F, q.y - 0.012F) - 0.02F;
            hit.join(std::min(hull, box(q, {0.06F, 0.012F, 0.035F}, 0.01F)), Raft);
            const Vec3 rider{std::fabs(q.x) - 0.04F, q.y - 0.05F, q.z};
            hit.join(ellipsoid(rider, {0.018F, 0.035F, 0.02F}), Raft);
        }
    }

    /// A spur of the near rim, from the right into the picture, 1 on its back; the hiker stands at its end.
    static float spur(Vec3 p) {
        const float off = stick({p.x, 0, p.z}, {Stand.x, 0, Stand.z}, {2.6F, 0, 0.1F}, 0);
        return std::exp(-13 * off * off);
    }

    static float rock(Vec3 p) {
        const Reach reach = fromRiver(p.x, p.z);
        const float knob = spur(p);
        const float gullies = ridged(p.x * 0.75F + 2, p.z * 0.75F, 4);
        float s =
            reach.away + 0.6F * (0.5F - gullies) + 0.24F * (ridged(p.x * 2.7F, p.z * 2.7F, 3) - 0.5F) + 1.1F * knob;
        if (p.z < 2) {
            s += (0.16F * (fbm(p * 7, 4) - 0.5F) + 0.05F * (noise(p.y * 42, 3) - 0.5F)) * smoothStep(2, 1.4F, p.z);
        }
        const float ledges = 0.05F * (noise(p.y * 13, 3.0F) + noise(p.y * 29, 8) - 1);
        const float wall = (opening(p.y + 0.08F * noise(p.x * 0.5F, p.z * 0.5F)) + ledges - s) * 0.7F;
        float d = std::max(wall, p.y - plateau(p, reach.within) - 0.1F * knob);
        if (p.z > 9) {
            d = std::min(d, mesas(p));
        }
        return d;
    }

    /// Table mountains far behind: a cliff around the top, a skirt of rubble below.
    static float mesas(Vec3 p) {
        constexpr Vec3 places[] = {{-15, 1.8F, 34}, {-9.5F, 2.3F, 44}, {5, 1.5F, 38}, {16, 2.4F, 36}, {25, 2.1F, 44}};
        constexpr float sizes[] = {2.4F, 1.2F, 3.4F, 1.7F, 3.5F};
        const float rough = 0.9F * (fbm(p.x * 0.9F, p.z * 0.9F, 4) - 0.5F) + 0.08F * noise(p.y * 9, 2);
        float d = 1e3F;
        for (int i = 0; i < 5; ++i) {
            const float skirt = 1.1F * std::max(0.0F, places[i].y * 0.62F - p.y);
            const float out = length(p.x - places[i].x, (p.z - places[i].z) * 0.7F) - sizes[i] - skirt + rough;
            d = std::min(d, std::max(out * 0.6F, p.y - places[i].y - 0.2F * rough));
        }
        return d;
    }

    static Surface strata(Vec3 p, Vec3 n) {
        const float y = p.y + 0.05F * fbm(p.x * 1.4F, p.z * 1.4F, 3);
        const float thick = noise(y * 5, 1);
        const float thin = 0.6F * noise(y * 31, 5) + 0.4F * noise(y * 140, 15);
        Vec3 look = mix(colour(0x85351C), colour(0xC05F33), 0.65F * thick + 0.35F * thin);
        look = mix(look, colour(0xD9A074), smoothStep(0.66F, 0.78F, noise(y * 9 + 4, 9)) * 0.8F);
        look = mix(look, colour(0x5C2018), smoothStep(0.6F, 0.8F, noise(y * 8 + 14, 19)) * 0.75F);
        // Water running down has left dark varnish on the cliffs; flat ground is dusted with sand and dry bushes.
        const float steep = smoothStep(0.6F, 0.25F, n.y);
        const float streak = fbm(Vec3{p.x * 14, p.y * 1.2F, p.z * 14}, 3);
        look = look * mix(1.0F, 0.5F, steep * smoothStep(0.48F, 0.68F, streak));
        const Vec3 sand = mix(colour(0xB4663C), colour(0xD0966A), fbm(p.x * 5, p.z * 5, 4));
        look = mix(look, sand, 0.75F * smoothStep(0.72F, 0.93F, n.y));
        const float green = smoothStep(0.0F, 0.1F, p.y - River) * smoothStep(0.3F, 0.12F, p.y - River);
        look = mix(look, mix(colour(0x3E5A1E), colour(0x7F9440), noise(p * 30)),
                   0.85F * green * smoothStep(0.35F, 0.5F, fbm(p.x * 4, p.z * 4, 3)));
        const float scrub = smoothStep(0.78F, 0.9F, n.y) * smoothStep(0.5F, 0.62F, fbm(p.x * 2, p.z * 2, 3));
        look = mix(look, mix(colour(0x4A4E2C), colour(0x7E8048), noise(p * 60)),
                   scrub * smoothStep(0.52F, 0.6F, fbm(p.x * 26, p.z * 26, 4)));
        return {.colour = look * (0.42F + 0.5F * fbm(p * 8, 4) + 0.55F * fbm(p * 55, 3))};
    }
};

} // namespace

std::unique_ptr<Scene> canyon() {
    return std::make_unique<Canyon>();
}

} // namespace lumora::samples
