// A mushroom house in a forest clearing: warm windows, sunbeams between the trunks, fireflies.
#include "Scenes.h"

#include "Noise.h"
#include "Plants.h"
#include "Shapes.h"

namespace lumora::samples {

namespace {

enum Material { Ground, Bark, Leaves, Cap, Dots, Stem, Gills, Door, Frame, Window, Stone, Brass };

struct Trunk {
    float x;
    float z;
    float radius;
    float lean;
};
constexpr Trunk Trunks[] = {{-3.9F, 1.2F, 0.52F, 0.03F},   {4.6F, 2.0F, 0.6F, -0.04F},
                            {-2.6F, 6.5F, 0.4F, -0.02F},   {3.6F, 7.0F, 0.42F, 0.03F},
                            {-5.6F, 7.5F, 0.5F, 0.02F},    {1.2F, 9.5F, 0.38F, 0.02F},
                            {-1.0F, 11.5F, 0.42F, -0.03F}, {5.8F, 10.5F, 0.5F, 0},
                            {-4.0F, 12.5F, 0.4F, 0.04F},   {3.2F, 13.5F, 0.45F, -0.02F},
                            {-7.2F, 13, 0.55F, 0},         {-2.4F, 16.5F, 0.45F, 0.02F},
                            {0.9F, 16, 0.42F, 0},          {6.6F, 16, 0.5F, 0.03F},
                            {-6.0F, 18, 0.5F, 0},          {4.4F, 19, 0.5F, 0}};

constexpr Vec3 House{0.55F, 0, 3.6F};

struct Small {
    Vec3 foot;
    float size;
};
constexpr Small SmallOnes[] = {{{-1.75F, 0, 1.7F}, 0.42F}, {{-2.15F, 0, 2.2F}, 0.62F}, {{-1.35F, 0, 2.3F}, 0.3F},
                               {{2.55F, 0, 1.3F}, 0.36F},  {{2.95F, 0, 1.75F}, 0.55F}, {{-0.95F, 0, -0.6F}, 0.2F},
                               {{-1.2F, 0, -0.35F}, 0.13F}};

class MushroomHouse : public Scene {
  public:
    MushroomHouse() {
        camera = {{-0.2F, 1.35F, -4.1F}, {0.2F, 1.75F, 3}, 1.45F};
        sunDirection = normalise({-0.62F, 0.62F, 0.16F});
        sunColour = {3.6F, 2.7F, 1.5F};
        skyLight = {0.42F, 0.56F, 0.5F};
        groundLight = {0.14F, 0.16F, 0.08F};
        farthest = 40;
        caution = 0.75F;
        steps = 170;
        shadowReach = 6;
        shadowSoftness = 8;
        creviceSize = 0.4F;
        exposure = 1.15F;
        bloom = 0.32F;
        vignette = 0.4F;
        strands = 500000;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join((p.y - groundHeight(p)) * 0.8F, Ground);
        trees(p, hit);
        house(p - House, hit);
        if (p.y < 1.1F && p.z < 3.5F) {
            for (const Small &one : SmallOnes) {
                mushroom((p - one.foot) * (1 / one.size), one.size, hit);
            }
            stones(p, hit);
        }
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        // Warm light from the house falls on what is near its door.
        const Vec3 lamp = House + Vec3{0.1F, 1.2F, -2.0F} - p;
        const float lampLight = 0.9F * std::max(0.0F, dot(n, normalise(lamp))) / (0.4F + dot(lamp, lamp));
        Surface look = bare(material, p, n);
        look.glow += look.colour * (colour(0xFFB347) * (lampLight * 3.0F));
        return look;
    }

    Vec3 sky(Vec3 d) const override {
        const Vec3 forest = mix(colour(0x16423C), colour(0x7FB58A), smoothStep(-0.1F, 0.75F, d.y));
        const float leaves = fbm(std::atan2(d.x, d.z) * 9, d.y * 9, 5);
        const float towards = std::pow(std::max(dot(d, sunDirection), 0.0F), 5.0F);
        return forest * (0.5F + 0.9F * leaves) +
               colour(0xFFE29A) * (1.1F * towards + 0.35F * smoothStep(0.52F, 0.75F, leaves));
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Ground:
            return 0.03F * fbm(p.x * 9, p.z * 9, 4);
        case Bark:
            return 0.05F * ridged(std::atan2(p.x - std::round(p.x), p.z) * 3 + p.x * 5, p.y * 1.3F, 3);
        case Door:
            return 0.01F * noise(p.x * 16, p.y * 1.5F);
        default:
            return 0;
        }
    }

    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        const float other = fraction(chance * 733);
        const float turn = 2 * Pi * fraction(chance * 331);
        const float light = 0.55F + 0.95F * fraction(chance * 4001);
        const float far = length(p - camera.eye);
        if (material == Leaves && chance < 0.75F) {
            const float reach = 0.12F + 0.022F * far;
            const Vec3 way = normalise(Vec3{std::cos(turn), 0.8F * (other - 0.7F), 0.6F * std::sin(turn)} + n * 0.4F);
            return {.tip = way * reach,
                    .sag = {0, 0.1F * reach, 0},
                    .width = 0.46F * reach,
                    .blunt = 0.9F,
                    .order = -far,
                    .solid = 0.95F,
                    .tint = {light, light * 1.02F, light * 0.85F}};
        }
        const float path = p.z < 2.6F ? std::fabs(p.x - pathMiddle(p.z)) : 1.0F;
        if (material == Ground && path > 0.7F && far < 14) {
            const float tall = (0.07F + 0.12F * other) * (0.7F + 0.05F * far);
            return {.tip = Vec3{0.45F * std::cos(turn), 1, 0.45F * std::sin(turn)} * tall,
                    .sag = Vec3{-0.15F * std::cos(turn), 0.1F, 0} * tall,
                    .width = 0.009F * (0.7F + 0.06F * far),
                    .order = -far,
                    .tint = {light, light * 1.02F, light * 0.8F}};
        }
        return {};
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        light =
            haze(light, *this, d, std::max(0.0F, distance - 4), 22, colour(0x5E9C8C) * 0.55F, colour(0xFFE7A0) * 0.95F);
        // Sunbeams: streaks that all point at the sun, stronger the deeper the air.
        const Vec3 right = normalise(cross(Vec3{0, 1, 0}, sunDirection));
        const Vec3 up = cross(sunDirection, right);
        const float angle = std::atan2(dot(d, right), dot(d, up));
        const float streak = smoothStep(0.35F, 1.0F, 0.65F * noise(angle * 8 + 20, 1) + 0.45F * noise(angle * 23, 5));
        const float reach = smoothStep(-0.15F, 0.95F, dot(d, sunDirection)) * (1 - std::exp(-distance * 0.11F));
        light += colour(0xFFE0A0) * (0.34F * streak * reach);
        for (int i = 0; i < 34; ++i) {
            const Vec3 firefly{7 * hash(i, 1) - 3.5F, 0.25F + 2.6F * hash(i, 2) * hash(i, 3), 5.5F * hash(i, 4) - 1.2F};
            const Vec3 to = firefly - from;
            const float along = dot(to, d);
            if (along > 0 && along < distance) {
                const float off = dot(to, to) - along * along;
                const float size = 0.00022F * (0.5F + hash(i, 5));
                light += colour(0xFFF08A) * (3.2F * size / (off + size) * smoothStep(0.06F, 0.0F, off));
            }
        }
        return light;
    }

  private:
    static float pathMiddle(float z) { return 0.55F + 0.5F * std::sin((z - 1.4F) * 0.8F) * smoothStep(1.6F, -1, z); }

    static float groundHeight(Vec3 p) {
        float height =
            0.22F * (fbm(p.x * 0.7F, p.z * 0.7F, 3) - 0.45F) + 0.02F * p.x * p.x * smoothStep(1, 4, std::fabs(p.x));
        const float path = p.z < 2.6F ? smoothStep(0.45F, 0.8F, std::fabs(p.x - pathMiddle(p.z))) : 1.0F;
        height -= 0.05F * (1 - path);
        if (p.y < height + 0.4F && p.z < 9) {
            const float tuft = 0.05F + 0.16F * smoothStep(0.3F, 0.7F, noise(p.x * 1.4F, p.z * 1.4F));
            height += path * tuft * blades(p.x, p.z, 36);
        }
        return height;
    }

    static void trees(Vec3 p, Hit &hit) {
        for (const Trunk &trunk : Trunks) {
            const float x = p.x - trunk.x - trunk.lean * p.y * 2;
            const float z = p.z - trunk.z;
            const float rough = length(x, z) - trunk.radius;
            if (rough > 1.4F) {
                hit.join(rough - 0.7F, Bark);
                continue;
            }
            const float angle = std::atan2(z, x);
            const float roots =
                0.55F * std::exp(-std::max(p.y, 0.0F) * 2.3F) * (0.55F + 0.45F * std::sin(angle * 5 + trunk.x * 3));
            const float furrow =
                0.07F * noise(angle * 5 + p.y * 0.6F, p.y * 1.1F + trunk.z) + 0.03F * noise(angle * 13, p.y * 3);
            hit.join((rough - roots - furrow) * 0.75F, Bark);
        }
        // The leaf roof, open over the clearing.
        if (p.y > 3.0F) {
            const float open = length(p.x - 0.3F, (p.z - 2) * 0.8F);
            const float lumps = fbm(p * 0.8F, 2);
            const float roof = 5.6F - 2.2F * smoothStep(2.2F, 5.5F, open) - 2.6F * (lumps - 0.4F) - p.y;
            float leaves = roof * 0.6F;
            if (leaves < 0.5F) {
                leaves += 0.5F * (noise(p * 5) - 0.3F);
            }
            hit.join(std::max(leaves * 0.7F, (2.2F - open) * 0.6F), Leaves);
        }
    }

    /// A mushroom of the size 1, drawn `size` large.
    static void mushroom(Vec3 p, float size, Hit &hit) {
        const float near = sphere(p - Vec3{0, 0.8F, 0}, 1.3F);
        if (near > 0.5F) {
            hit.join(near * size, Stem);
            return;
        }
        hit.join(
            size * 0.8F *
                std::max(length(p.x, p.z) - mix(0.34F, 0.2F, clamp01(p.y)) - 0.05F * std::sin(p.y * 5), p.y - 1.1F),
            Stem);
        capAt(p - Vec3{0, 0.9F, 0}, 0.85F, 11, size, hit);
    }

    /// The red hat with raised white dots; p = 0 is the middle of its rim.
    static void capAt(Vec3 p, float radius, int dots, float size, Hit &hit) {
        const Vec3 radii{radius, radius * 0.72F, radius};
        const float hollow =
            ellipsoid(p - Vec3{0, -0.02F * radius, 0}, {radius * 0.92F, radius * 0.22F, radius * 0.92F});
        const float cap = std::max({ellipsoid(p, radii), -p.y - 0.06F * radius, -hollow}) * 0.9F;
        hit.join(cap * size, hollow < 0.03F * radius && p.y < 0.16F * radius ? Gills : Cap);
        float dot = 10;
        for (int i = 0; i < dots; ++i) {
            // Evenly over the upper half of a ball, by the golden angle.
            const auto k = static_cast<float>(i);
            const float up = 0.97F - 0.82F * k / static_cast<float>(dots - 1);
            const float angle = 2.39996F * k + 0.9F;
            const float out = std::sqrt(1 - up * up);
            const Vec3 at = Vec3{out * std::cos(angle), up, out * std::sin(angle)} * radii;
            dot = std::min(dot, sphere(p - at, radius * (0.07F + 0.06F * hash(i, 7))));
        }
        // Warts: crumbs of the skin from which the cap has grown.
        if (dot < 0.1F * radius) {
            dot += 0.05F * radius * (fbm(p * (9 / radius), 3) - 0.5F);
        }
        hit.join(-blend(-dot, -ellipsoid(p, radii * 1.02F), 0.04F * radius) * size * 0.75F, Dots);
    }

    static void house(Vec3 p, Hit &hit) {
        const float near = sphere(p - Vec3{0, 2.0F, 0}, 2.9F);
        if (near > 0.6F) {
            hit.join(near, Stem);
            return;
        }
        const float bulge = 1.32F - 0.30F * smoothStep(0, 2.2F, p.y) + 0.10F * std::exp(-p.y * p.y * 4);
        const float wall = std::max((length(p.x, p.z) - bulge) * 0.9F, p.y - 2.6F);
        hit.join(wall, Stem);
        capAt(p - Vec3{0, 2.05F, 0}, 2.35F, 17, 1, hit);
        // Chimney, a little crooked.
        const Vec3 chimney = turnZ(p - Vec3{1.15F, 3.15F, 0.2F}, -0.12F);
        hit.join(std::min(rodY(chimney - Vec3{0, 0.3F, 0}, 0.2F, 0.5F, 0.03F),
                          rodY(chimney - Vec3{0, 0.78F, 0}, 0.27F, 0.08F, 0.04F)),
                 Stone);
        if (p.z > 0) {
            return;
        }
        // Door and windows sit on the round wall: measured along the wall and out of it.
        const auto onWall = [&](float angle, float height) {
            const Vec3 turned = turnY(p, angle);
            return Vec3{turned.x, p.y - height, -turned.z - bulge};
        };
        const auto arch = [](Vec3 q, float wide, float high) {
            return std::max(q.y > high ? length(q.x, q.y - high) - wide : std::fabs(q.x) - wide, -q.y);
        };
        const Vec3 door = onWall(0, 0.05F);
        const float opening = arch(door, 0.42F, 0.85F);
        hit.join(std::max(std::fabs(opening) - 0.07F, std::fabs(door.z) - 0.1F), Frame);
        hit.join(std::max(opening, std::fabs(door.z) - 0.04F), Door);
        hit.join(sphere(door - Vec3{0.27F, 0.62F, 0.07F}, 0.045F), Brass);
        const Vec3 peep = door - Vec3{0, 0.92F, 0.03F};
        hit.join(std::max(length(peep.x, peep.y) - 0.13F, std::fabs(peep.z) - 0.03F), Window);
        for (const float angle : {0.78F, -0.78F}) {
            const Vec3 window = onWall(angle, 1.12F);
            const float r = length(window.x, window.y);
            hit.join(std::max(r - 0.26F, std::fabs(window.z) - 0.03F), Window);
            const float cross = std::min(std::fabs(window.x), std::fabs(window.y)) - 0.02F;
            hit.join(std::max(std::min(std::fabs(r - 0.28F) - 0.05F, std::max(cross, r - 0.27F)),
                              std::fabs(window.z) - 0.08F),
                     Frame);
            const Vec3 flowers = window - Vec3{0, -0.38F, 0.12F};
            hit.join(box(flowers, {0.3F, 0.07F, 0.09F}, 0.02F), Frame);
        }
    }

    static void stones(Vec3 p, Hit &hit) {
        if (std::fabs(p.x - pathMiddle(p.z)) > 1 || p.z > 2.3F) {
            return;
        }
        const float tile = std::round(p.z / 0.62F);
        const float side = 0.24F * (hash(static_cast<int>(tile), 3) - 0.5F);
        const Vec3 q{p.x - pathMiddle(tile * 0.62F) - side, p.y + 0.06F, p.z - tile * 0.62F};
        const float size = 0.8F + 0.4F * hash(static_cast<int>(tile), 9);
        hit.join((ellipsoid(turnY(q, tile), Vec3{0.4F, 0.09F, 0.27F} * size) + 0.02F * (noise(p * 7) - 0.5F)) * 0.8F,
                 Stone);
    }

    static Surface bare(int material, Vec3 p, Vec3 n) {
        const float grainy = fbm(p * 3.5F, 4);
        switch (material) {
        case Bark: {
            const Vec3 bark = mix(colour(0x3A2A1E), colour(0x7A5C40), noise(Vec3{p.x * 9, p.y * 2, p.z * 9}));
            const float moss = smoothStep(0.45F, 0.62F, fbm(p * 2.1F, 4) + 0.22F * smoothStep(1.6F, 0, p.y));
            return {.colour = mix(bark, mix(colour(0x47702A), colour(0x83A53A), grainy), moss)};
        }
        case Leaves:
            return {.colour = mix(colour(0x1F5A1E), colour(0x93B93A), noise(p * 4)), .sheer = 0.7F};
        case Cap:
            return {.colour = mix(colour(0xB0120F), colour(0xE8301C), smoothStep(0.3F, 0.7F, grainy)),
                    .shine = 0.7F,
                    .sharpness = 60,
                    .mirror = 0.03F,
                    .sheer = 0.12F};
        case Dots:
            return {.colour = mix(colour(0xE8DCC2), colour(0xFFFBF0), grainy), .shine = 0.1F};
        case Stem:
            return {.colour = mix(colour(0xD9C49C), colour(0xFBF0D6), fbm(Vec3{p.x * 6, p.y * 1.4F, p.z * 6}, 4)),
                    .sheer = 0.2F};
        case Gills: {
            const float lamella = std::fabs(repeat(std::atan2(p.x - House.x, p.z - House.z) * 40, 2));
            return {.colour = mix(colour(0xB79A6E), colour(0xF6E6C2), lamella), .sheer = 0.2F};
        }
        case Door:
            return {.colour = mix(colour(0x7A3F1C), colour(0xB5713A), noise(p.x * 14, p.y * 1.2F)) *
                              (fraction(p.x * 5.5F) < 0.06F ? 0.5F : 1.0F),
                    .shine = 0.2F};
        case Frame:
            return {.colour = mix(colour(0x53351C), colour(0x8B5E34), grainy), .shine = 0.1F};
        case Window:
            return {.colour = colour(0x2A1A08),
                    .glow = mix(colour(0xFF9A2E), colour(0xFFE08A), 0.4F + 0.5F * noise(p.x * 4, p.y * 4)) * 2.3F};
        case Stone:
            return {.colour = mix(colour(0x6F6C68), colour(0xB3ABA0), grainy) *
                              mix(Vec3{1, 1, 1}, colour(0x9DB36A), 0.5F * smoothStep(0.5F, 0.7F, noise(p * 4)))};
        case Brass:
            return {.colour = colour(0xE0A63A), .shine = 1.5F, .sharpness = 60, .mirror = 0.3F};
        default:
            return forestFloor(p, n);
        }
    }

    static Surface forestFloor(Vec3 p, Vec3) {
        const float path =
            p.z < 2.6F
                ? smoothStep(0.4F, 0.75F, std::fabs(p.x - pathMiddle(p.z)) + 0.3F * (noise(p.x * 6, p.z * 6) - 0.5F))
                : 1.0F;
        Vec3 green = mix(colour(0x2E5A1C), colour(0x7FA032), fbm(p.x * 1.6F, p.z * 1.6F, 4)) *
                     (0.5F + 0.9F * noise(p.x * 13, p.z * 13));
        const Cell flower = cells(p.x * 4.4F, p.z * 4.4F);
        if (flower.id > 0.62F && flower.distance < 0.17F) {
            const Vec3 petals[] = {colour(0xFFFFFF), colour(0x9C6BFF), colour(0xFF8FC0), colour(0xFFE05A)};
            green = petals[static_cast<int>(flower.id * 97) % 4];
        }
        const Vec3 earth = mix(colour(0x5A4028), colour(0x94714A), noise(p.x * 9, p.z * 9));
        return {.colour = mix(earth, green, path), .sheer = 0.1F};
    }
};

} // namespace

std::unique_ptr<Scene> mushroomHouse() {
    return std::make_unique<MushroomHouse>();
}

} // namespace lumora::samples
