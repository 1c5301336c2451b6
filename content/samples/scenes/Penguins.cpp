// Emperor penguins with their chick on the ice of the Antarctic, early in the morning.
#include "Scenes.h"

#include "Bodies.h"
#include "Skies.h"

namespace lumora::samples {

namespace {

enum Material { Snow, Ice, Feet, Eye, Down, Grown }; // Grown + number of the bird

struct Bird {
    Vec3 at;
    float size;
    float heading; ///< radians; 0 looks to the right
    float bow;     ///< radians that the head is lowered
};
constexpr Bird Birds[] = {{{-0.88F, 0.02F, 0.25F}, 1.0F, -0.78F, 0.55F}, {{0.92F, 0.02F, 0.45F}, 1.06F, -2.3F, 0.5F},
                          {{-3.05F, 0.05F, 5.2F}, 0.94F, -0.2F, 0.9F},   {{-4.25F, 0.05F, 7.2F}, 1.06F, -1.9F, 0},
                          {{2.7F, 0.05F, 5.2F}, 0.92F, -2.6F, 0.8F},     {{3.5F, 0.05F, 7.0F}, 1.05F, 0.4F, 0.1F},
                          {{0.35F, 0.05F, 6.6F}, 1.0F, -2.8F, 0}};
constexpr Vec3 Chick{0.02F, 0.02F, -0.5F};
constexpr float ChickHeading = -1.3F;

struct Block {
    Vec3 at;
    Vec3 half;
    float turn;
    float tilt;
};
constexpr Block Blocks[] = {
    {{-3.3F, 0.1F, 2.7F}, {0.95F, 0.8F, 0.75F}, 0.5F, 0.35F}, {{-4.5F, 0.1F, 3.4F}, {0.8F, 1.5F, 0.7F}, -0.3F, -0.2F},
    {{-2.45F, 0, 1.9F}, {0.42F, 0.36F, 0.4F}, 1.1F, -0.4F},   {{3.6F, 0, 2.6F}, {0.9F, 0.75F, 0.8F}, 0.9F, -0.4F},
    {{4.7F, 0.2F, 3.6F}, {0.9F, 1.2F, 0.8F}, 0.2F, 0.25F},    {{2.6F, -0.05F, 1.7F}, {0.36F, 0.3F, 0.34F}, 0.4F, 0.5F}};

class Penguins : public Scene {
  public:
    Penguins() {
        camera = {{0.25F, 1.45F, -5.9F}, {0.03F, 1.1F, 0.3F}, 2.3F};
        sunDirection = normalise({0.8F, 0.36F, -0.5F});
        sunColour = {3.1F, 2.3F, 1.6F};
        skyLight = {0.40F, 0.55F, 0.82F};
        groundLight = {0.3F, 0.34F, 0.42F};
        farthest = 90;
        ceiling = 7;
        caution = 0.8F;
        steps = 170;
        shadowReach = 6;
        shadowSoftness = 5;
        creviceSize = 0.3F;
        waterLevel = -0.55F;
        waterColour = {0.01F, 0.06F, 0.10F};
        bloom = 0.2F;
        exposure = 0.82F;
        strands = 420000;
        focus = 6.0F;
        aperture = 0.008F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join((p.y - snowHeight(p.x, p.z)) * 0.85F, Snow);
        for (int i = 0; i < static_cast<int>(std::size(Birds)); ++i) {
            penguin(local(p, Birds[i]), i, hit);
        }
        chick(turnY(p - Chick, ChickHeading), hit);
        blocks(p, hit);
        bergs(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3 d) const override {
        switch (material) {
        case Snow:
            return snow(p);
        case Ice:
            return ice(p, n, d);
        case Feet:
            return {.colour = colour(0x24211F) * (0.7F + 0.8F * noise(p * 30)), .shine = 0.3F, .sharpness = 20};
        case Eye:
            return {.colour = colour(0x0C0705), .shine = 4, .sharpness = 160, .mirror = 0.015F};
        case Down:
            return down(turnY(p - Chick, ChickHeading), n);
        default:
            return plumage(local(p, Birds[material - Grown]), Birds[material - Grown].bow);
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float up = std::max(d.y, 0.0F);
        Vec3 light = mix(colour(0xFFC9A8), colour(0xF0A8C0), smoothStep(0, 0.12F, up));
        light = mix(light, colour(0x8FB4E8), smoothStep(0.08F, 0.36F, up));
        light = mix(light, colour(0x2E6CC0), smoothStep(0.3F, 0.85F, up));
        const Cloud cloud = clouds({d.x * 0.7F, up, d.z}, sunDirection, 0.5F, 2.2F, 3.4F);
        light = mix(light, mix(colour(0xC08AB8), colour(0xFFE3CE) * 1.15F, cloud.lit), 0.8F * cloud.amount);
        return light + sunGlow(d, sunDirection, colour(0xFFC890) * 0.6F);
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Snow:
            return 0.006F * fbm(p.x * 14, p.z * 14, 4) + 0.002F * noise(p * 60);
        case Ice:
            return 0.05F * fbm(p * 3.5F, 4);
        case Down: {
            const Vec3 q = turnY(p - Chick, ChickHeading);
            return 0.006F * fbm(Vec3{q.x * 60, q.y * 22, q.z * 60}, 3);
        }
        default:
            return 0;
        }
    }

    Vec3 waterNormal(Vec3 p, float distance) const override {
        const float rough = 0.05F / (1 + 0.03F * distance);
        return normalise({rough * (fbm(p.x * 1.1F, p.z * 3.0F, 3) - 0.44F), 1,
                          2 * rough * (fbm(p.x * 1.4F + 7, p.z * 3.6F, 3) - 0.44F)});
    }

    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        if (material < Down) {
            return {};
        }
        const float other = fraction(chance * 733);
        const float light = 0.78F + 0.45F * fraction(chance * 4001);
        if (material == Down) { // fluff, short on the face
            const Vec3 q = turnY(p - Chick, ChickHeading);
            const float reach =
                mix(0.085F, 0.022F, smoothStep(0.62F, 0.78F, q.y)) * (0.6F + 0.7F * fraction(chance * 97));
            const Vec3 way =
                normalise(Vec3{0.8F * (other - 0.5F), -0.7F, 0.8F * (fraction(chance * 331) - 0.5F)} + n * 0.6F);
            return {.tip = way * reach,
                    .sag = n * (0.2F * reach),
                    .width = 0.008F,
                    .order = p.y,
                    .solid = 0.65F,
                    .tint = {light, light, light}};
        }
        // Feathers like a short dense pelt, from the bill down.
        const Bird &bird = Birds[material - Grown];
        const Vec3 q = local(p, bird);
        const Vec3 u = upright(q, bird.bow);
        if (u.x > 0.24F && u.y > 1.6F) {
            return {};
        }
        const Vec3 way = turnY(u.y > 1.6F ? Vec3{-1, -0.4F, 0} : Vec3{-0.1F, -1, 0}, -bird.heading);
        const Vec3 along =
            normalise(normalise(way - n * dot(way, n)) + Vec3{0.3F, 0, 0.3F} * (other - 0.5F) + n * 0.10F);
        const float reach =
            mix(0.075F, 0.03F, smoothStep(1.2F, 1.6F, u.y)) * bird.size * (0.6F + 0.7F * fraction(chance * 97));
        return {.tip = along * reach, .width = 0.009F, .order = p.y, .solid = 0.5F, .tint = {light, light, light}};
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        if (distance < farthest) {
            light = haze(light, *this, d, std::max(0.0F, distance - 7), 70, colour(0xE8B8C4) * 0.9F, colour(0xFFD8B8));
        }
        // Crystals of ice that glitter in the air, in three depths.
        for (int layer = 0; layer < 3; ++layer) {
            const float near = 2.5F + 1.7F * static_cast<float>(layer);
            const float size = 5.5F + 3.5F * static_cast<float>(layer);
            const Cell one = cells(d.x / d.z * size + 3.1F * near, d.y / d.z * size + near, 0.9F);
            const float radius = 0.02F + 0.04F * fraction(one.id * 31);
            if (distance > near && one.id > 0.45F) {
                light += Vec3{1, 0.97F, 0.95F} * (0.7F * smoothStep(radius, 0.2F * radius, one.distance));
            }
        }
        return light;
    }

  private:
    static float snowHeight(float x, float z) {
        // Wind ridges; beyond the edge of the floe lies the sea.
        const float drift = 0.16F * (fbm(x * 0.45F + 2, z * 0.8F, 3) - 0.45F) +
                            0.05F * std::sin(2.6F * z + 1.2F * x + 2.5F * noise(x * 0.9F, z * 0.9F));
        const float floe = smoothStep(8.7F, 8.2F, z + 0.9F * std::sin(x * 0.7F) + 0.5F * noise(x * 2.5F, 1));
        return mix(-1.5F, drift * smoothStep(0.2F, 1.8F, length(x, z + 0.1F)), floe);
    }

    static Vec3 local(Vec3 p, const Bird &bird) { return turnY(p - bird.at, bird.heading) * (1 / bird.size); }

    /// Undoes the bow: from the neck up the bird leans towards what it looks at.
    static Vec3 upright(Vec3 q, float bow) {
        constexpr Vec3 Pivot{0.0F, 1.18F, 0};
        return turnZ(q - Pivot, -bow * smoothStep(1.0F, 1.75F, q.y + 0.25F * q.x)) + Pivot;
    }

    static void penguin(Vec3 q, int number, Hit &hit) {
        const Bird &bird = Birds[number];
        const float far = box(q - Vec3{0.12F, 1.0F, 0}, {0.66F, 1.05F, 0.62F}, 0.2F);
        if (far > 0.25F) {
            hit.join(far * bird.size, Grown + number);
            return;
        }
        const float size = bird.size * 0.85F;
        const Vec3 u = upright(q, bird.bow);
        const Vec3 h{q.x, q.y, std::fabs(q.z)};
        const Vec3 uh{u.x, u.y, std::fabs(u.z)};
        float body = ellipsoid(q - Vec3{0.02F, 0.74F, 0}, {0.43F, 0.68F, 0.41F});
        body = blend(body, ellipsoid(u - Vec3{0.03F, 1.12F, 0}, {0.34F, 0.46F, 0.335F}), 0.2F);
        body = blend(body, stick(u, {0.02F, 1.4F, 0}, {0.07F, 1.75F, 0}, 0.22F, 0.15F), 0.2F);
        body = blend(body, ellipsoid(u - Vec3{0.12F, 1.83F, 0}, {0.2F, 0.165F, 0.155F}), 0.1F);
        body = blend(body, stick(q, {-0.3F, 0.22F, 0}, {-0.52F, 0.03F, 0}, 0.16F, 0.04F), 0.15F);
        body = blend(body, ellipsoid(h - Vec3{0.08F, 0.14F, 0.16F}, {0.2F, 0.15F, 0.17F}), 0.12F);
        const OnCurve bill = curve(u, {0.24F, 1.83F, 0}, {0.46F, 1.86F, 0}, {0.62F, 1.755F, 0});
        body = blend(body, bill.distance - mix(0.058F, 0.014F, bill.along), 0.05F);
        const Vec3 wing = turnX(uh - Vec3{0.0F, 1.32F, 0.3F}, -0.13F) + Vec3{0, 0.42F, 0};
        const float bent = wing.z - 0.22F * (wing.y + 0.1F) * (wing.y + 0.1F);
        body = blend(body, ellipsoid({wing.x + 0.12F * wing.y, wing.y, bent}, {0.125F, 0.5F, 0.05F}), 0.05F);
        hit.join(body * size, Grown + number);
        hit.join(sphere(uh - Vec3{0.215F, 1.865F, 0.121F}, 0.031F) * size, Eye);
        float feet = 9;
        for (int toe = -1; toe <= 1; ++toe) {
            const auto t = static_cast<float>(toe);
            const Vec3 tip{0.44F - 0.04F * t * t, 0.03F, 0.17F + 0.1F * t};
            feet = blend(feet, stick(h, {0.16F, 0.06F, 0.17F}, tip, 0.06F, 0.035F), 0.04F);
        }
        hit.join(feet * size, Feet);
    }

    static void chick(Vec3 q, Hit &hit) {
        const float far = sphere(q - Vec3{0, 0.55F, 0}, 0.75F);
        if (far > 0.25F) {
            hit.join(far, Down);
            return;
        }
        const Vec3 h{q.x, q.y, std::fabs(q.z)};
        float body = ellipsoid(q - Vec3{0, 0.42F, 0}, {0.35F, 0.42F, 0.35F});
        const Vec3 head = turnZ(q - Vec3{0.05F, 0.9F, 0}, 0.18F);
        const Vec3 headHalf{head.x, head.y, std::fabs(head.z)};
        body = blend(body, ellipsoid(head, {0.215F, 0.205F, 0.21F}), 0.1F);
        const Vec3 wing = turnX(h - Vec3{0.04F, 0.63F, 0.3F}, -0.55F) + Vec3{0, 0.2F, 0};
        body = blend(body, ellipsoid(wing, {0.1F, 0.25F, 0.055F}), 0.05F);
        const float beak = stick(head, {0.18F, 0.0F, 0}, {0.315F, -0.035F, 0}, 0.048F, 0.014F);
        hit.join(body * 0.8F, Down);
        hit.join(std::min(beak, stick(h, {0.1F, 0.05F, 0.13F}, {0.36F, 0.03F, 0.17F}, 0.07F, 0.045F)) * 0.9F, Feet);
        hit.join(sphere(headHalf - Vec3{0.172F, 0.045F, 0.1F}, 0.041F), Eye);
    }

    static void blocks(Vec3 p, Hit &hit) {
        if (p.z < 0.8F || p.z > 5.2F) {
            hit.join(std::max(0.8F - p.z, p.z - 5.2F) + 0.3F, Ice);
            return;
        }
        for (const Block &block : Blocks) {
            const Vec3 q = turnX(turnZ(turnY(p - block.at, block.turn), block.tilt), block.tilt * 0.6F);
            float d = box(q, block.half, 0.06F);
            if (d < 0.5F) {
                d += 0.16F * (fbm(q * 1.7F, 3) - 0.4F);
            }
            hit.join(d * 0.8F, Ice);
        }
    }

    /// Table bergs and one with peaks, far out in the sea.
    static void bergs(Vec3 p, Hit &hit) {
        if (p.z < 18) {
            hit.join(19.5F - p.z, Ice);
            return;
        }
        constexpr float Bergs[][4] = {{-15, 31, 6, 3.3F}, {13, 38, 7, 4.6F}, {-2.5F, 55, 7, 3.6F}, {30, 60, 9, 4.2F}};
        for (const auto &[x, z, half, top] : Bergs) {
            const Vec3 q{p.x - x, p.y, p.z - z};
            const float rough = fbm(q * 0.55F, 4) - 0.45F;
            const float high = top + 0.22F * q.x * (x < 0 ? 1.0F : -0.6F) * 0.5F + 2.2F * rough;
            hit.join(std::max(box(q, {half, 9, 4}, 1.2F) + 1.6F * rough, p.y - high) * 0.7F, Ice);
        }
    }

    static Surface plumage(Vec3 q, float bow) {
        const Vec3 u = upright(q, bow);
        const float side = std::fabs(u.z);
        const float soft = 0.02F * (noise(u * 9) - 0.5F);
        // White in front, slate on the back; the border runs down the flank in a wave.
        const float border = u.x + 0.05F - 0.12F * smoothStep(0.9F, 1.3F, u.y) + 0.1F * smoothStep(0.6F, 0.1F, u.y);
        const Vec3 slate = mix(colour(0x1B2530), colour(0x4A5C6E), noise(u * 5));
        Vec3 front = mix(colour(0xFFFDF6), colour(0xFFE9A8), smoothStep(0.95F, 1.4F, u.y));
        front = mix(front, colour(0xFFC23A), smoothStep(1.34F, 1.56F, u.y));
        const bool wing = side > 0.345F + 0.03F * u.x && u.y < 1.36F && u.y > 0.3F;
        Vec3 look = mix(slate, front, wing ? 0.0F : smoothStep(-0.012F, 0.012F, border + soft));
        if (!wing && side > 0.1F) { // a dark seam where slate meets white
            look = mix(look, colour(0x0E1216), 0.9F * smoothStep(0.035F, 0.015F, std::fabs(border + soft + 0.02F)));
        }
        const float hood = smoothStep(1.5F, 1.56F, u.y + soft + 0.25F * std::max(0.0F, -u.x) - 0.12F * side);
        look = mix(look, colour(0x15171B), hood);
        // The ear patch: a comma that fades into the breast.
        const float ex = u.x + 0.1F * (u.y - 1.7F);
        const float patch = length(ex / 0.085F, (u.y - 1.665F) / 0.17F) + 6 * soft;
        const float ear = smoothStep(1.06F, 0.9F, patch) * smoothStep(0.06F, 0.1F, side);
        look = mix(look, mix(colour(0xFFD23A), colour(0xFF8A12), smoothStep(1.56F, 1.76F, u.y)), ear);
        float gloss = 0.25F;
        if (u.x > 0.3F && u.y > 1.6F) {
            const OnCurve bill = curve(u, {0.24F, 1.83F, 0}, {0.46F, 1.86F, 0}, {0.62F, 1.755F, 0});
            const float middle = 1.837F + 0.02F * bill.along - 0.085F * bill.along * bill.along;
            const bool stripe = u.y < middle - 0.004F && bill.along > 0.2F && bill.along < 0.86F;
            look = stripe ? colour(0xF2703A) : colour(0x17181C);
            gloss = 0.8F;
        }
        return {.colour = look, .shine = gloss, .sharpness = 24};
    }

    static Surface down(Vec3 q, Vec3 n) {
        const float fluff = 0.5F * fbm(Vec3{q.x * 60, q.y * 22, q.z * 60}, 3) + 0.5F * fbm(q * 8, 2);
        Vec3 look = mix(colour(0x70757E), colour(0xCDCFD3), 0.7F * fluff + 0.3F * smoothStep(0.1F, 0.7F, q.x + 0.4F));
        const Vec3 head = turnZ(q - Vec3{0.05F, 0.9F, 0}, 0.18F);
        const float soft = 0.02F * (noise(q * 9) - 0.5F);
        if (q.y > 0.66F) {
            // Black hood, white face: the mask comes down around the eyes to the chin.
            const float away = length((head.y - 0.025F) * 0.8F, std::fabs(head.z) - 0.105F);
            const float face = smoothStep(0.125F, 0.105F, away) * smoothStep(-0.02F, 0.04F, head.x);
            const float hood = smoothStep(0.68F, 0.74F, q.y + soft);
            look = mix(look, mix(colour(0x16171B), colour(0xFDFBF6), face), hood);
        }
        return {.colour = look, .sheer = 0.15F, .glow = look * (0.06F * std::max(n.y, 0.0F))};
    }

    static Surface snow(Vec3 p) {
        const float grit = hash(static_cast<int>(std::floor(p.x * 130)), static_cast<int>(std::floor(p.z * 130)));
        const Vec3 white = mix(colour(0xDCE8F6), colour(0xFFFFFF), fbm(p.x * 3, p.z * 3, 4));
        const float glitter = p.z < 6 && grit > 0.994F ? 0.4F * grit : 0.0F;
        return {.colour = white * 0.9F,
                .shine = 0.12F,
                .sharpness = 18,
                .sheer = 0.1F,
                .glow = Vec3{1, 0.95F, 0.9F} * glitter};
    }

    static Surface ice(Vec3 p, Vec3 n, Vec3 d) {
        const float grainy = fbm(p * 1.3F, 4);
        const float layers = 0.5F + 0.5F * std::sin(p.y * 9 + 5 * grainy);
        Vec3 blue = mix(colour(0x2FA4D8), colour(0xA8E4F8), 0.6F * grainy + 0.4F * layers);
        const float dusted = smoothStep(0.35F, 0.65F, n.y + 0.4F * (grainy - 0.45F));
        blue = mix(blue, colour(0xF6FBFF), dusted);
        // Light that wanders through the ice comes out turquoise.
        const float inside = std::pow(1 - std::fabs(dot(n, d)), 2.0F);
        return {.colour = blue,
                .shine = 0.5F,
                .sharpness = 60,
                .mirror = 0.03F * (1 - dusted),
                .sheer = 0.3F,
                .glow = colour(0x2ED0E8) * ((1 - dusted) * (0.10F + 0.2F * inside))};
    }
};

} // namespace

std::unique_ptr<Scene> penguins() {
    return std::make_unique<Penguins>();
}

} // namespace lumora::samples
