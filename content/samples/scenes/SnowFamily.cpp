// A family of snow people in a garden on a bright winter morning: father, mother and child.
#include "Scenes.h"

#include "Bodies.h"

namespace lumora::samples {

namespace {

enum Material { Snow, Coal, Carrot, TopHat, Band, Scarf, Bobble, Twig, Kerchief = Twig + 1 };

struct Person {
    Vec3 at;
    float size;
    float turn;
    unsigned scarf;
    unsigned second; ///< the scarf's stripes
};
constexpr Person People[] = {{{-0.72F, -0.75F, 0.25F}, 1.0F, 0.14F, 0xB82A2A, 0xE8DCC0},
                             {{0.86F, -0.75F, 0.1F}, 0.88F, -0.16F, 0x2A6A9A, 0xD8E4EA},
                             {{0.12F, -0.75F, -1.25F}, 0.52F, 0.02F, 0xE0A020, 0x3A8A4A}};

class SnowFamily : public Scene {
  public:
    SnowFamily() {
        camera = {{0.05F, 1.2F, -6.2F}, {0.05F, 0.74F, 0}, 2.55F};
        sunDirection = normalise({-0.62F, 0.42F, -0.62F});
        sunColour = {2.35F, 2.1F, 1.75F};
        skyLight = {0.42F, 0.52F, 0.70F};
        groundLight = {0.34F, 0.38F, 0.46F};
        farthest = 40;
        caution = 0.8F;
        steps = 170;
        shadowReach = 5;
        shadowSoftness = 10;
        creviceSize = 0.18F;
        focus = 6.0F;
        aperture = 0.005F;
        bloom = 0.14F;
        exposure = 0.86F;
        strands = 240000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join((p.y + 0.72F - 0.18F * fbm(p.x * 0.7F, p.z * 0.7F, 3) + 0.06F - 0.05F * std::max(p.z - 2, 0.0F)) *
                     0.85F,
                 Snow);
        for (int i = 0; i < 3; ++i) {
            person(local(p, i), i, hit);
        }
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        int who = 0;
        for (int i = 1; i < 3; ++i) {
            if (length(p - People[i].at - Vec3{0, People[i].size, 0}) / People[i].size <
                length(p - People[who].at - Vec3{0, People[who].size, 0}) / People[who].size) {
                who = i;
            }
        }
        const Vec3 q = local(p, who);
        switch (material) {
        case Coal:
            return {.colour = colour(0x1A1A1E) * (0.6F + 0.8F * noise(p * 40)), .shine = 0.4F, .sharpness = 25};
        case Carrot:
            return {.colour = mix(colour(0xD86A14), colour(0xF0902A), noise(q.x * 9, q.z * 40)) *
                              (0.85F + 0.2F * noise(p * 30)),
                    .shine = 0.12F};
        case TopHat:
            return {.colour = colour(0x24242A) * (0.8F + 0.4F * noise(p * 30)), .shine = 0.1F, .sharpness = 8};
        case Band:
            return {.colour = colour(0xB82A2A)};
        case Kerchief: {
            const Cell dot = cells(std::atan2(q.x, q.z) * 5, q.y * 7, 0.2F);
            return {.colour = mix(colour(0xC23A5A), colour(0xF4ECE4), smoothStep(0.24F, 0.19F, dot.distance))};
        }
        case Twig:
            return {.colour = mix(colour(0x3A281C), colour(0x7A5A40), noise(p * 30))};
        case Bobble:
        case Scarf: {
            const float rows = 0.8F + 0.2F * std::sin(q.y * 90 + 2 * std::sin(std::atan2(q.x, q.z) * 40));
            const bool stripe = std::fabs(repeat(q.y < 1.22F          ? q.y
                                                 : material == Bobble ? q.y * 0.8F
                                                                      : std::atan2(q.x, q.z) * 0.4F,
                                                 0.22F)) < 0.055F;
            return {.colour = colour(stripe ? People[who].second : People[who].scarf) * rows};
        }
        default: {
            // Fresh snow: a little blue in the hollows, a grain that glitters.
            const float hollow = fbm(p * 6, 4);
            const float spark = noise(p * 190) > 0.93F && n.y + n.z < 1.2F ? 0.5F : 0.0F;
            return {.colour = mix(colour(0xD4E0EE), colour(0xF4F6F8), hollow) * 0.92F,
                    .shine = 0.05F,
                    .sheer = 0.1F,
                    .glow = Vec3{1, 1, 1} * (0.25F * spark)};
        }
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float side = std::atan2(d.x, std::max(d.z, 0.05F));
        Vec3 light = mix(colour(0xE4F0F8), colour(0x3A86D4), smoothStep(-0.03F, 0.22F, d.y));
        // Snowy firs, three rows, the nearer ones darker.
        for (int row = 0; row < 3; ++row) {
            const auto k = static_cast<float>(row);
            const float gap = 0.10F + 0.05F * k;
            const float x = side + 0.037F * k;
            const int tree = static_cast<int>(std::round(x / gap));
            const float tall = (0.10F + 0.035F * k) * (0.7F + 0.6F * hash(tree, row)) + 0.02F;
            const float up = (d.y + 0.035F - 0.012F * k + 0.01F) / tall;
            const float off = std::fabs(repeat(x, gap)) / (0.36F * gap);
            const float saw = 0.22F * fraction(up * 6 + hash(tree, 7));
            const float inside = smoothStep(0.05F, -0.05F, off - (1 - up) * (1 - saw) - 0.03F);
            const Vec3 needles = mix(colour(0x5A7A8A), colour(0x2A4A46), 0.3F * k + 0.2F);
            const float white =
                smoothStep(0.62F, 0.85F, fraction(up * 6 + hash(tree, 7)) + 0.4F * (noise(x * 160, d.y * 160) - 0.5F));
            if (up > 0 && up < 1) {
                light = mix(light, mix(colour(0xE8EEF4), needles, white), inside);
            }
        }
        return light;
    }

    float grain(int material, Vec3 p) const override {
        return material == Snow                          ? 0.02F * fbm(p * 7, 4) + 0.003F * noise(p * 70)
               : material == Scarf || material == Bobble ? 0.008F * noise(p * 45)
                                                         : 0.0F;
    }

    Strand strand(int material, Vec3, Vec3 n, float chance) const override {
        if ((material != Scarf && material != Bobble) || chance > 0.7F) {
            return {};
        }
        const float other = fraction(chance * 733);
        const float light = 0.8F + 0.6F * fraction(chance * 97);
        return {.tip = normalise(n + Vec3{other - 0.5F, fraction(chance * 331) - 0.5F, fraction(chance * 77) - 0.5F} *
                                         1.6F) *
                       0.035F,
                .width = 0.006F,
                .solid = 0.6F,
                .tint = {light, light, light}};
    }

    Vec3 air(Vec3 light, Vec3, Vec3, float distance) const override {
        return distance < farthest - 1
                   ? mix(light, colour(0xD4E6F4), 1 - std::exp(-0.02F * std::max(0.0F, distance - 7)))
                   : light;
    }

  private:
    static Vec3 local(Vec3 p, int i) { return turnY(p - People[i].at, People[i].turn) * (1 / People[i].size); }

    static void person(Vec3 q, int number, Hit &hit) {
        const float size = People[number].size;
        const float far = box(q - Vec3{0, 1.1F, 0}, {1.45F, 1.55F, 0.95F});
        if (far > 0.3F) {
            hit.join(far * size, Snow);
            return;
        }
        const Vec3 h{std::fabs(q.x), q.y, q.z};
        float body = ellipsoid(q - Vec3{0, 0.45F, 0}, {0.78F, 0.72F, 0.74F});
        body = blend(body, ellipsoid(q - Vec3{0, 1.58F, 0}, {0.56F, 0.53F, 0.54F}), 0.10F);
        body += 0.06F * (fbm(q * 3.1F, 3) - 0.5F) + 0.015F * (fbm(q * 12, 2) - 0.5F);
        hit.join(body * size * 0.85F, Snow);
        // The face of coal: eyes, a smile, buttons.
        float coal = ellipsoid(h - Vec3{0.19F, 1.70F, -0.495F}, {0.065F, 0.075F, 0.05F});
        for (int i = 0; i < 7; ++i) {
            const float a = 0.24F * (static_cast<float>(i) - 3);
            const float x = 0.33F * std::sin(a);
            const float y = 1.68F - 0.33F * std::cos(a);
            coal = std::min(
                coal,
                sphere(q - Vec3{x, y, -std::sqrt(std::max(0.0F, 0.275F - x * x - (y - 1.58F) * (y - 1.58F)))}, 0.034F));
        }
        for (int i = 0; i < 3; ++i) {
            const float y = 0.98F - 0.25F * static_cast<float>(i);
            coal = std::min(coal,
                            sphere(q - Vec3{0, y, -0.74F * std::sqrt(1 - (y - 0.45F) * (y - 0.45F) / 0.52F)}, 0.062F));
        }
        hit.join((coal < 0.1F ? coal + 0.02F * (noise(q * 26) - 0.5F) : coal) * size * 0.85F, Coal);
        const float ring = 0.008F * std::sin(q.z * 60 + 2 * q.x);
        hit.join((stick(q, {0, 1.56F, -0.46F}, {0.03F, 1.52F, -0.98F}, 0.085F, 0.012F) + ring) * size * 0.85F, Carrot);
        // A scarf round the neck with its end in front.
        const Vec3 s{q.x, q.y - 1.14F + 0.05F * q.z, q.z};
        float scarf = length(length(s.x, s.z) - 0.46F, s.y * 0.85F) - 0.125F;
        scarf = std::min(scarf, box(turnZ(q - Vec3{0.26F, 0.80F, -0.70F + 0.16F * (1.1F - q.y)}, -0.14F),
                                    {0.125F, 0.36F, 0.045F}, 0.04F));
        hit.join(scarf * size * 0.8F, Scarf);
        // Arms of twigs.
        float twig = stick(h, {0.62F, 0.82F, -0.05F}, {1.22F, 1.22F, -0.12F}, 0.035F, 0.022F);
        twig = std::min(twig, stick(h, {1.0F, 1.07F, -0.1F}, {1.30F, 1.05F, -0.2F}, 0.02F, 0.012F));
        twig = std::min(twig, stick(h, {1.1F, 1.14F, -0.1F}, {1.14F, 1.42F, -0.15F}, 0.02F, 0.010F));
        hit.join((twig + 0.006F * noise(q * 30)) * size * 0.85F, Twig);
        if (number == 0) {
            const Vec3 t = turnZ(q - Vec3{0.03F, 2.02F, 0.03F}, 0.08F);
            hit.join(std::min(rodY(t, 0.62F, 0.03F, 0.03F), cone(t, 0.38F, 0.41F, 0.52F)) * size * 0.9F, TopHat);
            hit.join(rodY(t - Vec3{0, 0.1F, 0}, 0.40F, 0.06F) * size, Band);
        } else if (number == 1) {
            float scarfOver = std::max(ellipsoid(q - Vec3{0, 1.62F, 0.07F}, {0.62F, 0.57F, 0.58F}),
                                       q.z + 0.24F - 0.5F * (q.y - 1.62F));
            scarfOver = blend(scarfOver, sphere(q - Vec3{0, 1.10F, -0.5F}, 0.07F), 0.05F);
            hit.join(scarfOver * size * 0.8F, Kerchief);
        } else {
            const float cap = std::max(ellipsoid(q - Vec3{0, 1.72F, 0.04F}, {0.57F, 0.50F, 0.55F}), 1.88F - q.y);
            const float brim = length(length(q.x, q.z - 0.03F) - 0.50F, (q.y - 1.90F) * 0.8F) - 0.075F;
            hit.join(std::min({cap, brim, sphere(q - Vec3{0, 2.28F, 0.04F}, 0.15F)}) * size * 0.8F, Bobble);
        }
    }
};

} // namespace

std::unique_ptr<Scene> snowFamily() {
    return std::make_unique<SnowFamily>();
}

} // namespace lumora::samples
