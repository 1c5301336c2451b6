// Half-timbered houses on a market square after the rain: wet cobbles, flower boxes, a fountain, a fruit stall.
#include "Scenes.h"

#include "Skies.h"
#include "TimberHouses.h"

namespace lumora::samples {

namespace {

using namespace market;

constexpr Vec3 Fountain{-3.9F, 0, -1.6F};
constexpr Vec3 Stall{5.1F, 0, 0.2F};
constexpr Vec3 Church{8.2F, 0, 24};

class MarketSquare : public Scene {
  public:
    MarketSquare() {
        camera = {{-1.6F, 1.95F, -10.2F}, {1.7F, 4.35F, 6}, 1.22F};
        sunDirection = normalise({-0.62F, 0.46F, -0.62F});
        sunColour = {3.1F, 2.35F, 1.55F};
        skyLight = {0.36F, 0.42F, 0.56F};
        groundLight = {0.17F, 0.14F, 0.11F};
        farthest = 70;
        ceiling = 27;
        caution = 0.9F;
        steps = 240;
        shadowReach = 12;
        shadowSoftness = 20;
        creviceSize = 0.4F;
        exposure = 0.82F;
        bloom = 0.16F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join(p.y, Cobbles);
        for (int i = 0; i < 6; ++i) {
            house(p - Vec3{Houses[i].x, 0, Front}, Houses[i], i, hit);
        }
        church(p - Church, hit);
        fountain(p - Fountain, hit);
        stall(turnY(p - Stall, 0.35F), hit);
        tubs(p, hit);
        bunting(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        const float dirt = fbm(p * 2.9F, 4);
        const House &one = houseAt(p.x);
        switch (material) {
        case Plaster: {
            Vec3 wall = colour(one.plaster) * mix(0.72F, 1.12F, fbm(p * 1.7F, 4) * 1.2F);
            wall = mix(wall, colour(0x9A8A72),
                       0.5F * smoothStep(0.5F, 0.68F, noise(Vec3{p.x * 4, p.y * 0.5F, 3}) * (0.6F + dirt)));
            return {.colour = wall};
        }
        case Beam:
            return {.colour = mix(colour(0x2A1A10), colour(0x6B4629), fbm(Vec3{p.x * 9, p.y * 9, p.z * 3}, 4) * 1.2F),
                    .shine = 0.05F};
        case Masonry: {
            const Stone stone = block(p);
            Vec3 grey = mix(colour(0x8C8070), colour(0xC9BCA2), stone.id) * mix(0.7F, 1.15F, fbm(p * 9, 3) * 1.2F) *
                        mix(1.0F, 0.5F, jointDepth(stone, 0.025F));
            grey = mix(grey, colour(0x6A7A3A),
                       0.7F * smoothStep(0.5F, 0.1F, p.y + 0.4F * (dirt - 0.4F)) * smoothStep(0.4F, 0.6F, dirt));
            return {.colour = grey * (p.y < 0.25F ? 0.7F : 1.0F), .shine = 0.1F};
        }
        case RoofTiles: {
            const Tile tile = roofTile(p);
            Vec3 clay =
                colour(one.roof) * mix(0.6F, 1.35F, tile.id) * mix(0.5F, 1.0F, tile.lift) * mix(1.0F, 0.5F, tile.gap);
            return {.colour = mix(clay, colour(0x7F8240), 0.6F * smoothStep(0.54F, 0.66F, fbm(p * 1.8F, 4))),
                    .shine = 0.15F};
        }
        case Frame:
            return {.colour = mix(colour(0xD8D2C4), colour(0xFAF6EC), dirt * 1.3F), .shine = 0.1F};
        case Pane:
            return {.colour = mix(colour(0x141A22), colour(0x5A4A34), noise(p.x * 3, p.y * 2)) * 0.7F,
                    .shine = 0.8F,
                    .sharpness = 150,
                    .mirror = 0.16F};
        case Shutter: {
            const float slat = fraction(p.y * 14);
            return {.colour = colour(one.shutter) * (slat < 0.25F ? 0.5F : 1.0F) * mix(0.8F, 1.1F, dirt),
                    .shine = 0.15F};
        }
        case Door: {
            const float plank = fraction(p.x * 5.5F);
            return {.colour = mix(colour(one.shutter), colour(0x6B4629), 0.35F) * (plank < 0.08F ? 0.45F : 1.0F) *
                              mix(0.75F, 1.1F, dirt),
                    .shine = 0.2F};
        }
        default:
            return squareLook(material, p, n, dirt);
        }
    }

    Vec3 sky(Vec3 d) const override {
        const float up = clamp01(d.y * 1.35F);
        Vec3 light = mix(colour(0xE9E4DA), mix(colour(0x8CB8DE), colour(0x3C74B8), smoothStep(0.3F, 1, up)),
                         smoothStep(0, 0.4F, up));
        const Cloud cloud = clouds(d, sunDirection, 0.74F, 0.75F, 22.4F);
        light = mix(light, mix(colour(0x66728C), colour(0xFFF4E0) * 1.2F, smoothStep(0.1F, 1, cloud.lit)),
                    cloud.amount * 0.96F);
        // A rainbow: red outside, violet inside.
        const float angle = std::acos(std::clamp(dot(d, normalise({0.42F, -0.2F, 0.88F})), -1.0F, 1.0F)) * 180 / Pi;
        const float band = (angle - 45.0F) / 3.2F;
        if (band > 0 && band < 1) {
            const Vec3 hue{smoothStep(0.45F, 0.8F, band) + 0.4F * smoothStep(0.2F, 0.02F, band),
                           smoothStep(0.2F, 0.45F, band) * smoothStep(0.95F, 0.6F, band),
                           smoothStep(0.55F, 0.3F, band)};
            light += hue * (0.34F * smoothStep(0, 0.15F, band) * smoothStep(1, 0.85F, band));
        }
        return light;
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case Cobbles:
            return 0.028F * smoothStep(0, 0.1F, sett(p).joint) * dryness(p) +
                   0.006F * noise(p.x * 19, p.z * 19) * dryness(p);
        case Masonry:
            return -0.02F * jointDepth(block(p), 0.03F) + 0.012F * noise(p * 15);
        case RoofTiles: {
            const Tile tile = roofTile(p);
            return 0.045F * tile.lift - 0.02F * tile.gap;
        }
        case Plaster:
            return 0.012F * fbm(p * 6, 3);
        case Beam:
            return 0.012F * noise(Vec3{p.x * 12, p.y * 12, p.z * 4});
        case Water:
            return 0.01F * noise(p.x * 9, p.z * 9);
        default:
            return 0;
        }
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return distance < farthest - 1
                   ? haze(light, *this, d, std::max(0.0F, distance - 6), 120, colour(0xC4CEDC), colour(0xFFE4C4))
                   : light;
    }

  private:
    /// What stands on the square, and the church.
    static Surface squareLook(int material, Vec3 p, Vec3 n, float dirt) {
        switch (material) {
        case Geranium: {
            const float id = leafId(p, 0.105F);
            const float kind = hash(static_cast<int>(std::floor(p.x * 0.9F)), static_cast<int>(std::floor(p.y * 0.5F)));
            const Vec3 bloomColour = kind < 0.5F    ? colour(0xE8141E)
                                     : kind < 0.75F ? colour(0xFF5C9A)
                                                    : colour(0xFF7A1E);
            return {.colour =
                        id < 0.6F ? bloomColour * mix(0.75F, 1.1F, id) : mix(colour(0x2C5A1E), colour(0x6FA038), id),
                    .sheer = 0.4F};
        }
        case Awning: {
            const bool red = fraction(turnY(p - Stall, 0.35F).x * 1.6F) < 0.5F;
            return {.colour = (red ? colour(0xD81E1E) : colour(0xFFF6E6)) * mix(0.85F, 1.0F, dirt), .sheer = 0.5F};
        }
        case Fruit: {
            const Vec3 q = turnY(p - Stall, 0.35F);
            const Vec3 sorts[] = {colour(0xE02418), colour(0xFF8A14), colour(0x8CC63A), colour(0xFFD22E)};
            const Vec3 skin = sorts[static_cast<int>(std::floor((q.x + 8) / 0.62F)) % 4];
            return {.colour = skin * mix(0.7F, 1.1F,
                                         hash(static_cast<int>(std::round(q.x / 0.15F)),
                                              static_cast<int>(std::round(q.z / 0.15F)))),
                    .shine = 0.5F,
                    .sharpness = 40};
        }
        case Crate:
            return {.colour = mix(colour(0x7A5632), colour(0xC29A62), fbm(Vec3{p.x * 4, p.y * 22, p.z * 4}, 3) * 1.2F)};
        case Copper:
            return {.colour = mix(colour(0x3E8C7A), colour(0x7FC4AE), dirt * 1.3F) *
                              (fraction(p.x * 1.5F) < 0.08F ? 0.7F : 1.0F),
                    .shine = 0.15F};
        case Dial: {
            const float a = std::atan2(p.x - Church.x, p.y - 15.2F) / (2 * Pi) * 12;
            const float r = length(p.x - Church.x, p.y - 15.2F);
            const bool mark = r > 0.72F && r < 0.95F && std::fabs(repeat(a, 1)) < 0.12F;
            return {.colour = mark ? colour(0xF2C84A) : colour(0x16264A)};
        }
        case Gold:
            return {
                .colour = colour(0xC48A20), .shine = 1.2F, .sharpness = 50, .mirror = 0.2F, .tint = colour(0xFFD070)};
        case Iron:
            return {.colour = colour(0x1C1D20), .shine = 0.4F};
        case Pennant: {
            const Vec3 cloths[] = {colour(0xE5261C), colour(0xFFC928), colour(0x2C6BD0), colour(0x2F9A4A),
                                   colour(0xFFF4E6)};
            return {.colour = cloths[(static_cast<int>(std::round(p.x / 0.46F)) % 5 + 5) % 5], .sheer = 0.7F};
        }
        case Water: {
            const bool jet = p.y > 0.7F;
            return {.colour = jet ? colour(0xD6ECF2) : colour(0x1E4A4E),
                    .shine = 1,
                    .sharpness = 200,
                    .mirror = 0.06F,
                    .sheer = jet ? 0.6F : 0.0F};
        }
        default:
            return cobbles(p, n, dirt);
        }
    }

    static const House &houseAt(float x) {
        const House *nearest = Houses;
        for (const House &one : Houses) {
            if (std::fabs(x - one.x) - one.half < std::fabs(x - nearest->x) - nearest->half) {
                nearest = &one;
            }
        }
        return *nearest;
    }

    static Stone sett(Vec3 p) {
        const float bow = 0.12F * std::sin(p.x * 0.8F); // laid in shallow bows
        return courses(p.x, p.z + bow, 0.3F, 0.24F);
    }
    /// 0 in a puddle, 1 on stones that the sun has reached.
    static float dryness(Vec3 p) { return smoothStep(0.40F, 0.47F, fbm(p.x * 0.55F + 2.2F, p.z * 0.8F + 4.1F, 3)); }
    static Surface cobbles(Vec3 p, Vec3, float dirt) {
        const Stone stone = sett(p);
        const float dry = dryness(p);
        Vec3 grey = mix(mix(colour(0x6C625A), colour(0xB5A796), stone.id), colour(0x9A7A66),
                        0.4F * hash(static_cast<int>(stone.id * 9999)));
        grey = grey * mix(0.6F, 1.1F, fbm(p * 8, 3) * 1.3F);
        const float joint = jointDepth(stone, 0.035F);
        grey = mix(grey, mix(colour(0x3E372E), colour(0x55702C), smoothStep(0.45F, 0.6F, dirt)), joint * 0.85F);
        const float damp = smoothStep(1, 0.0F, dry);
        return {.colour = grey * mix(0.85F, 0.35F, damp),
                .shine = mix(0.35F, 0.9F, damp),
                .sharpness = mix(25.0F, 160.0F, damp),
                .mirror = damp > 0.3F ? 0.05F + 0.10F * damp : 0.0F};
    }

    static Stone block(Vec3 p) {
        if (p.z > 12) {
            return courses(alongWall(p), p.y, 0.8F, 0.42F);
        }
        const Vec3 q = p - Fountain;
        if (length(q.x, q.z) < 2) {
            return courses(std::atan2(q.x, q.z) * 1.4F, q.y, 0.75F, 0.32F);
        }
        return courses(alongWall(p), p.y, 0.62F, 0.3F);
    }
    static Tile roofTile(Vec3 p) {
        const House &one = houseAt(p.x);
        return one.gable ? tiles(p.z, (14 - p.y) * 1.3F, 0.22F, 0.26F) : tiles(p.x, (14 - p.y) * 1.4F, 0.22F, 0.26F);
    }

    static void church(Vec3 p, Hit &hit) {
        const float near = std::max({std::fabs(p.x) - 3.2F, std::fabs(p.z) - 3.2F, p.y - 26.5F});
        if (near > 0.8F) {
            hit.join(near, Masonry);
            return;
        }
        const float side = std::max(std::fabs(p.x), std::fabs(p.z));
        const float along = std::min(std::fabs(p.x), std::fabs(p.z));
        float stone = std::max(side - 1.9F, p.y - 17);
        stone = std::min(stone, std::max(side - 2.05F, std::min(std::fabs(p.y - 13.2F), std::fabs(p.y - 17)) - 0.16F));
        const float arch = archway(along, p.y, 0.45F, 12);
        stone = std::max(stone, -std::max({arch, 9.9F - p.y, std::fabs(side - 1.9F) - 0.35F}));
        hit.join(std::max({arch, 9.9F - p.y, std::fabs(side - 1.6F) - 0.05F, std::fabs(repeat(p.y, 0.3F)) - 0.1F}),
                 Beam);
        hit.join(stone, Masonry);
        const Vec3 dial = p - Vec3{0, 15.2F, -1.95F};
        hit.join(rodZ(dial, 1.05F, 0.08F, 0.02F), Dial);
        float gold = ringZ(dial - Vec3{0, 0, -0.08F}, 1.05F, 0.06F);
        gold = std::min({gold, stick(dial, {0, 0, -0.14F}, {0.42F, 0.25F, -0.14F}, 0.045F),
                         stick(dial, {0, 0, -0.14F}, {-0.1F, 0.8F, -0.14F}, 0.035F)});
        // Onion dome, lantern, small spire.
        const float r = length(p.x, p.z);
        const float t = clamp01((p.y - 17) / 4.2F);
        const float bulb = 1.75F + 0.55F * std::sin(t * 4.2F) - 1.55F * t * t;
        float copper = std::max({(r - bulb) * 0.62F, 17 - p.y, p.y - 21.2F});
        copper = std::min(copper, cone(p - Vec3{0, 22.6F, 0}, 0.62F, 0.04F, 2.4F));
        copper = std::min(copper, rodY(p - Vec3{0, 21.3F, 0}, 0.6F, 0.15F, 0.05F));
        hit.join(copper, Copper);
        hit.join(std::max(std::fabs(r - 0.42F) - 0.08F, std::fabs(p.y - 22) - 0.7F), Frame);
        gold = std::min({gold, sphere(p - Vec3{0, 25.1F, 0}, 0.17F), stick(p, {0, 25, 0}, {0, 26, 0}, 0.05F)});
        hit.join(gold, Gold);
    }

    static void fountain(Vec3 p, Hit &hit) {
        const float near = std::max(length(p.x, p.z) - 1.9F, p.y - 3.6F);
        if (near > 0.5F) {
            hit.join(near, Masonry);
            return;
        }
        const Vec3 eight = slices({p.x, p.z, p.y}, 8);
        float stone = std::max(eight.x - 1.75F, std::fabs(p.y) - 0.16F);
        const float rim = std::max({std::fabs(eight.x - 1.38F) - 0.12F, p.y - 0.85F, -p.y});
        stone = std::min({stone, rim, std::max(std::fabs(eight.x - 1.38F) - 0.18F, std::fabs(p.y - 0.86F) - 0.07F)});
        stone = std::min({stone, cone(p, 0.3F, 0.2F, 2.0F), rodY(p - Vec3{0, 1.0F, 0}, 0.34F, 0.1F, 0.05F),
                          rodY(p - Vec3{0, 2.02F, 0}, 0.36F, 0.12F, 0.06F)});
        stone = std::min(stone, std::max(ellipsoid(p - Vec3{0, 1.6F, 0}, {0.62F, 0.3F, 0.62F}), p.y - 1.62F));
        stone = blend(stone, ellipsoid(p - Vec3{0, 2.5F, 0}, {0.22F, 0.42F, 0.22F}), 0.1F);
        stone = std::min(stone, sphere(p - Vec3{0, 3.02F, 0}, 0.17F));
        hit.join(stone, Masonry);
        hit.join(std::max(eight.x - 1.3F, p.y - 0.68F), Water);
        const Vec3 four = slices({p.x, p.z, p.y}, 4);
        const float fall = four.x - 0.35F;
        hit.join(std::max({length(four.y, p.y - 1.42F + 1.5F * fall * fall) - 0.03F, 0.68F - p.y, -fall}) * 0.6F,
                 Water);
        hit.join(leaves(p, std::max(length(length(p.x, p.z) - 1.42F, p.y - 1.0F) - 0.17F, std::fabs(four.y) - 0.55F),
                        0.105F, 2.2F),
                 Geranium);
    }

    static void stall(Vec3 p, Hit &hit) {
        const float near = box(p - Vec3{0, 1.5F, 0}, {2.3F, 1.7F, 1.5F});
        if (near > 0.5F) {
            hit.join(near, Crate);
            return;
        }
        const Vec3 leg{std::fabs(p.x) - 1.75F, p.y, std::fabs(p.z) - 0.9F};
        float wood = box(leg - Vec3{0, 1.2F, 0}, {0.05F, 1.3F, 0.05F}, 0.01F);
        // The counter leans towards the customers.
        const Vec3 top{p.x, p.y - 0.85F - 0.28F * p.z, p.z};
        wood = std::min(wood, box(top, {1.9F, 0.04F, 0.95F}, 0.01F));
        const float crateX = repeat(p.x - 0.31F, 0.62F);
        const float rims =
            std::max({std::min(std::fabs(crateX) - 0.29F, 1.0F), std::fabs(p.x) - 1.85F, std::fabs(top.y - 0.1F) - 0.1F,
                      std::fabs(repeat(p.z - 0.42F, 0.84F)) - 0.4F, std::fabs(p.z) - 0.85F});
        const float hollow =
            std::max({std::fabs(crateX) - 0.26F, std::fabs(repeat(p.z - 0.42F, 0.84F)) - 0.37F, 0.06F - top.y});
        wood = std::min(wood, std::max(rims, -hollow));
        wood = std::min(wood, std::max({std::fabs(p.x) - 1.85F, std::fabs(p.z + 0.93F) - 0.03F,
                                        std::fabs(p.y - 0.35F) - 0.25F, 0.02F - std::fabs(repeat(p.y, 0.17F))}));
        hit.join(wood, Crate);
        const Vec3 ball{repeat(p.x, 0.15F), top.y - 0.15F, repeat(p.z, 0.15F)};
        hit.join(std::max({sphere(ball, 0.078F), std::fabs(crateX) - 0.26F, std::fabs(p.x) - 1.84F,
                           std::fabs(repeat(p.z - 0.42F, 0.84F)) - 0.37F, std::fabs(p.z) - 0.82F}),
                 Fruit);
        const float slope = p.y - 2.55F - 0.32F * p.z - 0.01F * std::cos(p.x * 1.6F * 4 * Pi);
        float cloth = std::max({std::fabs(slope) - 0.02F, std::fabs(p.x) - 2.05F, std::fabs(p.z) - 1.25F});
        const float scallop = 0.16F + 0.07F * std::fabs(std::cos(p.x * 1.6F * Pi * 2));
        cloth = std::min(cloth, std::max({std::fabs(p.z + 1.25F) - 0.02F, std::fabs(p.x) - 2.05F, p.y - 2.18F,
                                          2.18F - scallop - p.y}));
        hit.join(cloth * 0.8F, Awning);
    }

    static void tubs(Vec3 p, Hit &hit) {
        if (p.y > 1.9F || p.z < -8) {
            hit.join(std::max(p.y - 1.4F, -7.5F - p.z), Crate);
            return;
        }
        for (const Vec3 at : {Vec3{2.0F, 0, -4.6F}, Vec3{-1.0F, 0, 4.9F}, Vec3{3.2F, 0, 5.0F}, Vec3{8.6F, 0, 4.9F}}) {
            const Vec3 q = p - at;
            const float r = length(q.x, q.z);
            if (r > 1.2F) {
                hit.join(r - 0.8F, Crate);
                continue;
            }
            const float stave = 0.012F * std::fabs(std::cos(std::atan2(q.z, q.x) * 9));
            hit.join(std::max({r - 0.36F - 0.12F * q.y - stave, q.y - 0.5F, -q.y}) * 0.9F, Crate);
            hit.join(std::max(r - 0.385F - 0.12F * q.y, std::fabs(std::fabs(q.y - 0.26F) - 0.13F) - 0.03F), Iron);
            hit.join(leaves(p, ellipsoid(q - Vec3{0, 0.68F, 0}, {0.56F, 0.36F, 0.56F}) + 0.12F * (noise(p * 5) - 0.5F),
                            0.105F, 2.2F),
                     Geranium);
        }
    }

    static void bunting(Vec3 p, Hit &hit) {
        const float sag = 0.022F * (p.x - 2) * (p.x - 2);
        const float y = p.y - 7.0F - sag - 0.12F * p.x;
        const float z = p.z - 2.5F;
        const float near = std::max(std::fabs(y) - 0.6F, std::fabs(z) - 0.3F);
        if (near > 0.4F) {
            hit.join(near * 0.8F, Pennant);
            return;
        }
        hit.join((length(y, z) - 0.015F) * 0.8F, Iron);
        const float u = std::fabs(repeat(p.x, 0.46F));
        hit.join(
            std::max({u - 0.19F - 0.36F * y, y, -y - 0.52F, std::fabs(z - 0.12F * y * std::sin(p.x * 2)) - 0.012F}) *
                0.75F,
            Pennant);
    }
};

} // namespace

std::unique_ptr<Scene> marketSquare() {
    return std::make_unique<MarketSquare>();
}

} // namespace lumora::samples
