// A lighthouse on a stormy cliff at dusk: its beam over the sea, the keeper's cottage, surf below.
#include "Scenes.h"

#include "LighthouseTower.h"
#include "Skies.h"

namespace lumora::samples {

namespace {

using namespace beacon;

constexpr Vec3 Foot{3.5F, 4.15F, 8};
constexpr Vec3 Cottage{8.4F, 4.05F, 6.6F};
constexpr Vec3 Posts[] = {{-0.5F, 0, -11.6F}, {0.9F, 0, -9.8F}, {2.1F, 0, -7.9F}, {2.9F, 0, -5.9F}, {3.2F, 0, -3.9F},
                          {2.9F, 0, -1.9F},   {1.9F, 0, 0.0F},  {0.9F, 0, 1.8F},  {0.2F, 0, 3.8F}};

class Lighthouse : public Scene {
  public:
    Lighthouse() {
        camera = {{-0.9F, 6.3F, -17}, {1.4F, 8.2F, 4}, 1.32F};
        sunDirection = normalise({-0.93F, 0.21F, -0.22F});
        sunColour = {3.4F, 1.75F, 0.85F};
        skyLight = {0.36F, 0.42F, 0.66F};
        groundLight = {0.12F, 0.10F, 0.12F};
        farthest = 260;
        ceiling = 21;
        caution = 0.85F;
        steps = 260;
        shadowReach = 14;
        shadowSoftness = 12;
        creviceSize = 0.4F;
        exposure = 1.0F;
        bloom = 0.3F;
        vignette = 0.35F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        cliff(p, hit);
        hit.join(p.y > 1.3F ? p.y - 0.9F : (p.y - seaHeight(p.x, p.z)) * 0.75F, Sea);
        tower(p - Foot, hit);
        cottage(p - Cottage, hit);
        if (p.y > 3.5F && p.y < 6 && p.z < 6) {
            fence(p, hit);
        }
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        Surface look = bare(material, p, n);
        const Vec3 lamp = Cottage + Vec3{-0.2F, 1.5F, -3.2F} - p; // what falls out of the cottage's windows
        look.glow += look.colour * colour(0xFFA040) *
                     (1.3F * std::max(0.0F, dot(n, normalise(lamp)) + 0.2F) / (0.5F + dot(lamp, lamp)));
        return look;
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.5F);
        const float west = std::pow(0.5F + 0.5F * dot(normalise({d.x, 0, d.z}), normalise({-0.75F, 0, 0.65F})), 2.0F);
        Vec3 light = mix(mix(colour(0xB7A6B8), colour(0xFFB45A) * 1.25F, west),
                         mix(colour(0x4A5F96), colour(0x2A3F78), smoothStep(0.3F, 1, up)), smoothStep(0, 0.36F, up));
        light = mix(light, colour(0xE8745A), 0.5F * west * smoothStep(0.02F, 0.15F, up) * smoothStep(0.5F, 0.2F, up));
        for (int layer = 0; layer < 2; ++layer) {
            const Cloud cloud = clouds(d, normalise({-0.75F, 0.2F, 0.65F}), layer == 0 ? 0.93F : 0.7F,
                                       layer == 0 ? 0.62F : 1.3F, layer == 0 ? 3.1F : 9.4F);
            const Vec3 lit = mix(colour(0xA98AA8), colour(0xFF9A5E) * 1.2F, west * smoothStep(0.75F, 0.1F, up));
            light = mix(light, mix(colour(0x2C3556), lit, cloud.lit * cloud.lit), cloud.amount * 0.92F);
        }
        return light;
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Rock:
            return 0.05F * fbm(Vec3{p.x * 5, p.y * 9, p.z * 5}, 4);
        case Boulder:
            return 0.10F * ridged(p.x * 1.6F + p.y * 1.2F, p.z * 1.6F + p.y * 2.2F, 4);
        case Tower:
            return -0.012F * jointDepth(brick(p), 0.025F) + 0.004F * noise(p * 9);
        case Granite:
            return -0.03F * jointDepth(granite(p), 0.05F) + 0.012F * noise(p * 14);
        case Wall:
            return 0.03F * fbm(p * 3.5F, 3);
        case Roof: {
            const Tile tile = roofTile(p);
            return 0.05F * tile.lift - 0.03F * tile.gap;
        }
        case Sea:
            return 0.035F * fbm(p.x * 3.3F, p.z * 4.7F, 3) / (1 + 0.02F * std::max(0.0F, p.z));
        default:
            return 0;
        }
    }

    Vec3 air(Vec3 light, Vec3 from, Vec3 d, float distance) const override {
        light =
            haze(light, *this, d, distance < farthest - 1 ? distance : 3.0F, 150, colour(0x8C86A4), colour(0xFFB070));
        const Vec3 lens = Foot + Vec3{0, LampHeight, 0};
        light += beam(lens, normalise({-1, -0.045F, -0.28F}), from, d, distance);
        return light + beam(lens, normalise({1, 0.045F, 0.28F}), from, d, distance);
    }

  private:
    /// A cone of lit air: brightest where the ray passes its axis, thinner the further out.
    static Vec3 beam(Vec3 lens, Vec3 axis, Vec3 from, Vec3 d, float distance) {
        const Vec3 w = from - lens;
        const float b = dot(d, axis);
        const float across = std::max(1 - b * b, 1e-3F);
        const float out = (dot(axis, w) - b * dot(d, w)) / across;
        const float along = out * b - dot(d, w);
        if (out < 0.4F || along < 0 || along > distance) {
            return {};
        }
        const float miss = length(w + d * along - axis * out);
        const float radius = 0.30F + 0.045F * out;
        const float core = std::exp(-(miss * miss) / (radius * radius) * 1.6F);
        return colour(0xFFE2A8) * (core * 0.62F * smoothStep(0.4F, 1.6F, out) * std::exp(-out * 0.035F) /
                                   (std::sqrt(across) * (0.6F + 0.3F * radius)));
    }

    /// Positive inland, negative over the sea; about the distance to the edge of the cliff.
    static float inland(float x, float z) {
        const float bay = (z + 4.2F) / 4.2F;
        const float coast =
            -2.5F + 5.0F * std::exp(-bay * bay) + 0.5F * std::sin(z * 0.9F + 0.6F) + 1.1F * (noise(z * 0.8F, 3) - 0.5F);
        return std::min((x - coast) * 0.75F, (16.5F - z + 0.12F * x) * 0.9F);
    }

    static float topHeight(float x, float z) {
        return 3.95F + 0.55F * (fbm(x * 0.45F, z * 0.45F, 3) - 0.5F) +
               0.2F * smoothStep(3, 0, length(x - Foot.x, z - 8));
    }

    static float pathSide(float x, float z) {
        const float middle = mix(1.0F, 5.8F, smoothStep(-17, -5.5F, z)) - 2.3F * smoothStep(-4, 5.2F, z);
        return std::fabs(x - middle) - 0.62F;
    }

    static float seaHeight(float x, float z) {
        const float swell = noise(x * 0.16F + 0.09F * z, z * 0.3F - 0.05F * x);
        const float chop = 1 - std::fabs(2 * noise(x * 0.5F + 3, z * 0.8F) - 1);
        const float far = 1 + 0.0012F * z * std::max(z, 0.0F); // a straight horizon
        return (0.95F * swell * swell + 0.28F * chop + 0.1F * noise(x * 1.6F, z * 2.1F)) / far - 0.45F;
    }

    static void cliff(Vec3 p, Hit &hit) {
        if (p.y > 5.6F) {
            hit.join(p.y - 4.9F, Rock); // nothing of the land reaches higher
            return;
        }
        const float e = inland(p.x, p.z);
        const float rough = p.y - 4.9F > 0 || e < -3 ? 0.0F : 1.0F;
        float face = -e - 0.28F * (4 - p.y);
        if (rough > 0) {
            face -= 0.9F * (fbm(Vec3{p.x * 0.55F, p.y * 0.9F, p.z * 0.55F}, 3) - 0.5F) +
                    0.35F * (noise(p.y * 1.7F + 0.5F * noise(p.x, p.z), 7) - 0.5F);
        }
        const float top = topHeight(p.x, p.z);
        const float path = pathSide(p.x, p.z);
        const float ground = top - 0.06F * smoothStep(0.15F, -0.15F, path);
        const float rock = std::max(face * 0.8F, p.y - ground);
        hit.join((rock > 0.5F ? rock - 0.2F : rock) * 0.75F, Rock);
        if (p.y > 3 && p.y < 5 && p.z < 0 && face < -0.15F) {
            const float tuft = 0.10F + 0.3F * smoothStep(0.3F, 0.75F, noise(p.x * 0.9F, p.z * 0.9F));
            const float bare = smoothStep(-0.1F, 0.35F, path + 0.3F * (noise(p.x * 3, p.z * 3) - 0.5F));
            hit.join(bare < 0.1F ? p.y - ground + 0.05F : grassBlades(p, ground, 0.07F, tuft * bare), Grass);
            if (path > 0.2F && p.z < -4) {
                hit.join(thrift(p, ground).distance, Thrift);
            }
        }
        // Boulders in the surf and one stack further out.
        float stones = 1e3F;
        constexpr Vec3 places[] = {{-3.9F, 0.1F, -2.4F}, {-2.2F, 0.2F, -4.6F},  {-5.0F, 0, 3.2F},
                                   {-4.4F, 0.4F, 1.2F},  {-8.8F, 0.6F, 12},     {-9.9F, 0.2F, 10.8F},
                                   {-7.9F, 0, 9.6F},     {0.3F, 3.95F, -13.6F}, {-1.0F, 3.9F, -12.6F}};
        constexpr float sizes[] = {0.75F, 0.6F, 0.7F, 1.0F, 1.7F, 1.0F, 0.7F, 0.36F, 0.24F};
        for (int i = 0; i < 9; ++i) {
            const float reach = length(p - places[i]) - 1.7F * sizes[i];
            if (reach > 0.8F) {
                stones = std::min(stones, reach + 0.3F);
                continue;
            }
            const Vec3 q = turnY(p - places[i], static_cast<float>(i) * 1.3F);
            stones = std::min(stones, ellipsoid(q, Vec3{1.2F, i == 4 ? 1.6F : 0.85F, 0.9F} * sizes[i]));
        }
        hit.join(stones > 0.6F ? stones - 0.3F : (stones + 0.55F * (fbm(p * 1.3F, 3) - 0.45F)) * 0.7F, Boulder);
    }

    /// Pinks in cushions between the grass.
    static WildFlower thrift(Vec3 p, float ground) {
        return wildFlowers(p, ground, 0.17F, 0.42F,
                           0.95F * smoothStep(0.44F, 0.6F, noise(p.x * 1.1F + 40, p.z * 1.1F + 2)));
    }

    static void fence(Vec3 p, Hit &hit) {
        float wood = 1e3F;
        Vec3 before;
        for (int i = 0; i < 9; ++i) {
            const Vec3 foot = Posts[i] + Vec3{0, topHeight(Posts[i].x, Posts[i].z) - 0.1F, 0};
            const float lean = 0.12F * (hash(i, 3) - 0.5F);
            const Vec3 head = foot + Vec3{lean, 1.05F, lean};
            if (length(p.x - foot.x, p.z - foot.z) < 2.8F) {
                const Vec3 q = p - foot - Vec3{lean * 0.5F, 0.55F, lean * 0.5F};
                wood = std::min(wood, box(turnZ(q, -lean), {0.075F, 0.6F, 0.075F}, 0.02F));
                if (i > 0) {
                    for (const float down : {0.12F, 0.5F}) {
                        const Vec3 sag{0, down, 0};
                        wood = std::min(wood, stick(p, before - sag, head - sag, 0.045F));
                    }
                }
            } else {
                wood = std::min(wood, length(p.x - foot.x, p.z - foot.z) - 2.4F);
            }
            before = head;
        }
        hit.join(wood, Post);
    }

    static Stone brick(Vec3 p) {
        const Vec3 q = p - Foot;
        return courses(std::atan2(q.x, q.z) * 1.7F, q.y, 0.42F, 0.17F);
    }
    static Stone granite(Vec3 p) {
        const Vec3 q = p - Foot;
        return q.x > 3 ? courses(alongWall(p), p.y, 0.5F, 0.25F)
                       : courses(std::atan2(q.x, q.z) * 2.4F, q.y + 0.5F, 0.7F, 0.45F);
    }
    static Tile roofTile(Vec3 p) {
        const Vec3 q = turnY(p - Cottage, 0.22F);
        return tiles(q.x, (4.4F - q.y) * 1.43F, 0.24F, 0.3F);
    }

    static Surface bare(int material, Vec3 p, Vec3 n) {
        const float dirt = fbm(p * 3.1F, 4);
        switch (material) {
        case Sea:
            return seaLook(p, n);
        case Tower: {
            const Vec3 q = p - Foot;
            const bool red = q.y < 10.6F && static_cast<int>(std::floor((q.y - 0.8F) / 1.96F)) % 2 == 0;
            Vec3 paint = red ? mix(colour(0xA01812), colour(0xD2281A), dirt * 1.4F)
                             : mix(colour(0xD8D2C6), colour(0xFBF6EA), dirt * 1.5F);
            // Rain has washed rust and salt down the tower.
            const float angle = std::atan2(q.x, q.z) * 9;
            const float streak =
                smoothStep(0.55F, 0.8F, noise(angle * 2.2F, q.y * 0.28F)) * smoothStep(0.35F, 0.6F, dirt + 0.1F);
            paint = mix(paint, red ? colour(0x6E1A12) : colour(0xA98C6C), 0.6F * streak);
            paint =
                mix(paint, colour(0x8A8270), smoothStep(0.56F, 0.66F, fbm(p * 6, 3)) * 0.75F * smoothStep(7, 0, q.y));
            return {.colour = paint * mix(1.0F, 0.78F, jointDepth(brick(p), 0.02F)), .shine = 0.12F};
        }
        case Granite: {
            const Stone stone = granite(p);
            Vec3 grey = mix(colour(0x6B6763), colour(0xA9A197), stone.id) * mix(0.6F, 1.25F, fbm(p * 9, 3));
            grey = mix(grey, colour(0xB08A32), 0.55F * smoothStep(0.54F, 0.64F, fbm(p * 4.3F, 3)));
            return {.colour = grey * mix(1.0F, 0.5F, jointDepth(stone, 0.03F)), .shine = 0.05F};
        }
        case Iron:
            return {.colour = mix(colour(0x22262C), colour(0x5A3A2A), smoothStep(0.45F, 0.65F, dirt)), .shine = 0.4F};
        case Copper:
            return {.colour = mix(colour(0xA8201A), colour(0x6E2418), smoothStep(0.4F, 0.65F, dirt)),
                    .shine = 0.5F,
                    .sharpness = 40};
        case Lamp: {
            const bool lens = p.y > 12;
            return {.colour = colour(0x201408),
                    .glow =
                        lens ? colour(0xFFE6B0) * 5.5F : mix(colour(0xFF9A3A), colour(0xFFD887), noise(p * 3)) * 1.7F};
        }
        case White:
            return {.colour = mix(colour(0xC9C5BC), colour(0xF4F1E8), dirt * 1.3F)};
        case Door: {
            const bool plank = fraction((p.x + 0.1F) * 5.5F) < 0.1F;
            return {.colour = mix(colour(0x14553F), colour(0x23795A), dirt) * (plank ? 0.5F : 1.0F), .shine = 0.2F};
        }
        case Pane:
            return {.colour = colour(0x1A2030), .shine = 1, .sharpness = 150, .mirror = 0.35F};
        default:
            return landLook(material, p, n, dirt);
        }
    }

    /// The cottage and the land around it.
    static Surface landLook(int material, Vec3 p, Vec3 n, float dirt) {
        switch (material) {
        case Wall:
            return {.colour = mix(mix(colour(0xCFC6B8), colour(0xF7F0E2), dirt * 1.5F), colour(0x8F8A70),
                                  0.7F * smoothStep(1.2F, 0.1F, p.y - Cottage.y + dirt))};
        case Roof: {
            const Tile tile = roofTile(p);
            Vec3 clay = mix(colour(0x8A2E1A), colour(0xC85A34), tile.id) * mix(0.55F, 1.0F, tile.lift) *
                        mix(1.0F, 0.5F, tile.gap);
            return {.colour = mix(clay, colour(0x8C8B3C), 0.7F * smoothStep(0.54F, 0.64F, fbm(p * 2.6F, 4)))};
        }
        case Brick: {
            const Stone one = courses(alongWall(p), p.y, 0.24F, 0.1F);
            return {.colour = mix(mix(colour(0x7A3422), colour(0xA85A3A), one.id), colour(0xA89A88),
                                  jointDepth(one, 0.015F))};
        }
        case Post:
            return {.colour = mix(colour(0x8D8479), colour(0xE9E4D8),
                                  smoothStep(0.3F, 0.55F, dirt + 0.2F * noise(Vec3{p.x * 20, p.y * 3, p.z * 20})))};
        case Grass:
            return grassLook(p);
        case Thrift: {
            const WildFlower flower = thrift(p, topHeight(p.x, p.z));
            return {.colour = flower.petal < 0 ? colour(0x6C7F3A) : mix(colour(0xD8407E), colour(0xFF9CC8), flower.id),
                    .sheer = 0.5F};
        }
        default:
            return rockLook(material, p, n, dirt);
        }
    }

    static Surface seaLook(Vec3 p, Vec3 n) {
        const float e = inland(p.x, p.z);
        const float crest = seaHeight(p.x, p.z);
        const float lace = 1 - std::fabs(2 * fbm(p.x * 1.7F, p.z * 2.3F, 5) - 1);
        float foam = smoothStep(0.17F, 0.42F, crest) * smoothStep(0.72F, 0.9F, lace) * smoothStep(90, 20, p.z);
        foam += smoothStep(-3.4F, -0.2F, e + 0.8F * (noise(p.x, p.z) - 0.5F)) *
                smoothStep(0.62F, 0.9F, lace + 0.12F * smoothStep(-1.6F, -0.4F, e));
        const float stack = length(p.x + 8.9F, p.z - 11);
        foam += smoothStep(3.2F, 1.8F, stack) * smoothStep(0.65F, 0.9F, lace);
        foam = clamp01(foam);
        const Vec3 water = mix(colour(0x0B2B3A), colour(0x1F6A6A), smoothStep(-0.1F, 0.5F, crest) * 0.8F);
        return {.colour = mix(water, colour(0xE6EAF2), foam),
                .shine = 0.8F * (1 - foam),
                .sharpness = 90,
                .mirror = (1 - foam) * 0.03F * (n.y > 0 ? 1.0F : 0.0F)};
    }

    static Surface grassLook(Vec3 p) {
        const float top = topHeight(p.x, p.z);
        const float tip = smoothStep(0, 0.3F, p.y - top);
        Vec3 blade = mix(colour(0x2E4E1E), mix(colour(0x7F9438), colour(0xB8A860), noise(p.x * 0.9F + 7, p.z * 0.9F)),
                         0.25F + 0.75F * tip);
        blade = blade * mix(0.7F, 1.2F, noise(p.x * 15, p.z * 15));
        return {.colour = blade, .sheer = 0.3F};
    }

    static Surface rockLook(int material, Vec3 p, Vec3 n, float dirt) {
        if (material == Rock && n.y > 0.6F && p.y > 3.2F && pathSide(p.x, p.z) < 0.3F * noise(p.x * 3, p.z * 3)) {
            const Cell flag = cells(p.x * 1.5F, p.z * 1.5F, 0.6F);
            return {.colour = mix(colour(0x8A7B66), colour(0xB9AA90), flag.id) * mix(0.6F, 1.1F, fbm(p * 7, 3)) *
                              (flag.distance > 0.52F ? 0.6F : 1.0F)};
        }
        const float layer = noise(p.y * 3.2F + 1.5F * fbm(p * 0.5F, 2), 3);
        Vec3 stone = mix(colour(0x4A4448), colour(0x9B8878), mix(layer, dirt, 0.5F));
        stone = mix(stone, colour(0xC39A3A),
                    0.5F * smoothStep(0.55F, 0.63F, fbm(p * 2.7F, 4)) * smoothStep(0.8F, 2.4F, p.y));
        stone = mix(stone, colour(0x55702C) * mix(0.6F, 1.2F, dirt),
                    smoothStep(0.35F, 0.7F, n.y + 0.5F * (dirt - 0.5F)) * smoothStep(2.2F, 3.2F, p.y));
        const Cell pink = cells(p.x * 6, p.z * 6);
        if (material == Rock && p.y > 3.4F && n.y > 0.7F && pink.distance < 0.4F &&
            pink.id < smoothStep(0.44F, 0.6F, noise(p.x * 1.1F + 40, p.z * 1.1F + 2))) {
            stone = mix(colour(0xD8407E), colour(0xFF9CC8), pink.id);
        }
        const float wet = smoothStep(1.3F, 0.5F, p.y + 0.8F * (dirt - 0.5F));
        return {.colour = stone * mix(1.0F, 0.4F, wet), .shine = 0.05F + 0.6F * wet, .sharpness = 40};
    }
};

} // namespace

std::unique_ptr<Scene> lighthouse() {
    return std::make_unique<Lighthouse>();
}

} // namespace lumora::samples
