// A coral atoll from the air at noon: palm islets around a lagoon, surf on the reef, the deep sea outside; a seaplane.
#include "Scenes.h"

#include "Landforms.h"
#include "Noise.h"
#include "Shapes.h"

namespace lumora::samples {

namespace {

enum Material { Sea, Island, Plane, Floats, Glass, Yacht };

constexpr Vec3 PlaneAt{-1.7F, 4.5F, 0.6F};
constexpr Vec3 Yachts[] = {{1.4F, 0, 8.0F}, {2.5F, 0, 9.4F}, {-1.2F, 0, 11.0F}};

class Atoll : public Scene {
  public:
    Atoll() {
        camera = {{0, 6.1F, -3.2F}, {0.15F, 2.1F, 6}, 1.3F};
        sunDirection = normalise({-0.5F, 0.72F, 0.28F});
        sunColour = {3.0F, 2.85F, 2.55F};
        skyLight = {0.34F, 0.46F, 0.66F};
        groundLight = {0.16F, 0.24F, 0.24F};
        farthest = 140;
        caution = 0.8F;
        steps = 200;
        ceiling = 5.6F;
        shadowReach = 7;
        shadowSoftness = 20;
        creviceSize = 0.14F;
        exposure = 0.92F;
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        hit.join(p.y, Sea);
        if (p.y < 0.9F) {
            hit.join((p.y - land(p.x, p.z)) * 0.75F, Island);
            yachts(p, hit);
        } else {
            hit.join(p.y - 0.6F, Island);
        }
        plane(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3 d) const override {
        switch (material) {
        case Sea:
            return sea(p, n, d);
        case Island:
            return island(p, n);
        case Plane:
            return paint(p);
        case Glass:
            return {.colour = colour(0x12202E), .shine = 0.8F, .sharpness = 120, .mirror = 0.1F};
        case Floats:
            return {.colour = colour(0xF4F4F0), .shine = 0.4F, .sharpness = 60};
        default:
            return {.colour = colour(0xFFFFFF), .shine = 0.2F, .sheer = 0.2F};
        }
    }

    Vec3 sky(Vec3 d) const override {
        const Vec3 light = mix(mix(colour(0xC2E2F6), colour(0x5FA8EA), smoothStep(0, 0.1F, d.y)), colour(0x1C62C4),
                               smoothStep(0.06F, 0.4F, d.y));
        return throughHeaps(light, d, sunDirection, {.cover = 0.5F, .size = 1.6F, .shift = 14});
    }

    float grain(int material, Vec3 p) const override {
        if (material == Sea) {
            return 0.012F * fbm(p.x * 3.2F + 0.6F * p.z, p.z * 5, 4) + 0.0022F * noise(p.x * 31, p.z * 37);
        }
        return material == Island ? 0.02F * fbm(p * 17, 2) : 0;
    }

    Vec3 air(Vec3 light, Vec3, Vec3 d, float distance) const override {
        return haze(light, *this, d, distance < farthest - 1 ? distance : 0.0F, 110, colour(0x9CCCF4),
                    colour(0xE6F0F6));
    }

  private:
    /// How far outside the crown of the reef: a ragged ring about (0.9, 9.4).
    static float fromReef(float x, float z) {
        const float dx = (x - 0.9F) / 6.6F;
        const float dz = (z - 9.4F) / 5.4F;
        const float bend = 2.7F * (fbm(x * 0.24F + 5, z * 0.24F, 4) - 0.5F);
        return (length(dx, dz) - 1) * 5.6F + bend;
    }

    static float depth(float x, float z, float s) {
        const float coral = fbm(x * 1.6F, z * 1.6F, 5);
        if (s > 0) {
            return 0.13F + 0.16F * coral + 0.25F * smoothStep(0.5F, 1.2F, s) + 2.2F * smoothStep(1.0F, 3.0F, s);
        }
        const float heads = smoothStep(0.56F, 0.66F, fbm(x * 0.9F + 4, z * 0.9F, 4)) * 0.3F;
        return std::max(0.08F, 0.15F + 0.85F * smoothStep(-0.5F, -2.6F, s) + 0.3F * (coral - 0.5F) - heads);
    }

    /// Height of sand and palms.
    static float land(float x, float z) {
        const float s = fromReef(x, z);
        if (s < -1.3F || s > 1.2F) {
            return -0.3F;
        }
        const float along = fbm(x * 0.33F + 2, z * 0.33F + 8, 3);
        const float ground =
            0.85F * (along - 0.32F) - 0.33F * s * s - 0.03F + 0.06F * (fbm(x * 2.2F, z * 2.2F, 3) - 0.5F);
        return ground + palms(x, z, ground);
    }

    /// Crowns of palms: stars as one sees them from above.
    static float palms(float x, float z, float ground) {
        const float wood = smoothStep(0.03F, 0.06F, ground - 0.03F * noise(x * 3, z * 3));
        if (wood <= 0) {
            return 0;
        }
        const Cell tree = cells(x * 4.6F, z * 4.6F, 0.9F);
        const float reach =
            1.3F * tree.distance / (0.66F + 0.34F * std::cos(7 * std::atan2(tree.dy, tree.dx) + 40 * tree.id));
        return wood * (0.05F + (0.07F + 0.13F * tree.id) * std::max(0.0F, 1 - reach * reach));
    }

    static Surface sea(Vec3 p, Vec3 n, Vec3 d) {
        const float s = fromReef(p.x, p.z);
        const float deep = depth(p.x, p.z, s);
        const float coral = fbm(p.x * 2.4F + 7, p.z * 2.4F, 5);
        Vec3 bed = mix(colour(0xF4E8C8), colour(0xFFFBEA), coral);
        const float reef =
            smoothStep(0.5F, 0.62F, coral + 0.25F * smoothStep(0.2F, 1.0F, s) - 0.15F * smoothStep(-0.4F, -1.6F, s));
        bed = mix(bed, mix(colour(0x5A5030), colour(0x9A7A48), noise(p.x * 9, p.z * 9)), 0.75F * reef);
        // Water swallows red first, then green.
        const Vec3 kept{std::exp(-4.6F * deep), std::exp(-1.05F * deep), std::exp(-0.72F * deep)};
        Vec3 look = bed * kept * 0.85F + Vec3{0.002F, 0.035F, 0.12F} * (1 - kept.y);
        // Surf: long swells break on the outer edge.
        const float lace = fbm(p.x * 3.4F, p.z * 3.4F, 4);
        const float line = s - 1.25F - 0.35F * (noise(p.x * 0.9F, p.z * 0.9F) - 0.5F);
        float foam =
            smoothStep(0.16F, 0.02F, std::fabs(line)) + 0.75F * smoothStep(0.07F, 0.01F, std::fabs(line - 0.42F)) *
                                                            smoothStep(0.45F, 0.6F, noise(p.x * 0.6F + 3, p.z * 0.6F));
        foam = std::max(foam, 0.8F * smoothStep(0.6F, 0.0F, -line) * smoothStep(0.0F, -0.05F, line) *
                                  smoothStep(0.42F, 0.6F, lace));
        foam = std::max(foam, 0.9F * smoothStep(0.035F, 0.0F, -land(p.x, p.z)) * smoothStep(0.3F, 0.5F, lace));
        foam = smoothStep(0.42F, 0.72F, 0.62F * foam + (lace - 0.4F) * smoothStep(0, 0.3F, foam));
        look = mix(look, Vec3{0.85F, 0.9F, 0.92F}, foam);
        const float cloud = smoothStep(0.5F, 0.62F, fbm(p.x * 0.16F + 11, p.z * 0.16F + 4, 4)) * smoothStep(2, 5, s);
        // Waves blur what the sea mirrors into one blue, stronger at a grazing angle.
        const float fresnel = 0.02F + 0.55F * std::pow(1 - clamp01(-dot(n, d)), 5.0F);
        return {.colour = look * ((1 - 0.45F * cloud) * (1 - fresnel)),
                .shine = 0.5F * (1 - cloud),
                .sharpness = 130,
                .glow = colour(0x7FBCF0) * (fresnel * (1 - foam))};
    }

    static Surface island(Vec3 p, Vec3 n) {
        const float s = fromReef(p.x, p.z);
        const float ground = 0.85F * (fbm(p.x * 0.33F + 2, p.z * 0.33F + 8, 3) - 0.32F) - 0.33F * s * s - 0.03F;
        const Cell tree = cells(p.x * 4.6F, p.z * 4.6F, 0.9F);
        Vec3 green =
            mix(colour(0x1F5A1C), colour(0x8CB83A), fraction(tree.id * 13) * 0.6F + 0.4F * noise(p.x * 2, p.z * 2));
        green = green * (0.45F + 0.8F * smoothStep(0.05F, 0.24F, p.y - ground)) * (0.8F + 0.4F * noise(p * 30));
        const Vec3 sand = mix(colour(0xEBDAB0), colour(0xFFF6DE), fbm(p.x * 6, p.z * 6, 3)) *
                          mix(0.7F, 0.95F, smoothStep(0, 0.03F, p.y));
        const bool leafy = p.y > 0.075F && (p.y - ground > 0.045F || n.y < 0.75F);
        return {.colour = leafy ? green : sand, .sheer = leafy ? 0.2F : 0.0F};
    }

    static Vec3 inPlane(Vec3 p) { return turnZ(turnY(p - PlaneAt, -0.75F), 0.12F) * (1 / 0.75F); }

    /// A small seaplane; x towards its nose.
    static void plane(Vec3 p, Hit &hit) {
        const float near = length(p - PlaneAt) - 0.95F;
        if (near > 0.3F) {
            hit.join(near, Plane);
            return;
        }
        const Vec3 q = inPlane(p);
        const float side = std::fabs(q.z);
        float body = stick(q, {0.4F, 0, 0}, {-0.1F, 0.02F, 0}, 0.11F, 0.125F);
        body = blend(body, stick(q, {-0.1F, 0.02F, 0}, {-0.75F, 0.09F, 0}, 0.115F, 0.03F), 0.08F);
        const float wing =
            box(Vec3{q.x - 0.12F + 0.03F * side, q.y - 0.15F - 0.03F * side, side}, {0.13F, 0.018F, 0.98F}, 0.015F);
        const float fin = std::max(box(q - Vec3{-0.72F, 0.22F, 0}, {0.1F, 0.13F, 0.012F}, 0.01F),
                                   0.5F * (q.x + 0.62F + 0.6F * (q.y - 0.2F)));
        const float tail = box(Vec3{q.x + 0.72F, q.y - 0.1F, side}, {0.075F, 0.012F, 0.27F}, 0.01F);
        const float strut = stick({q.x, q.y, side}, {0.1F, -0.05F, 0.08F}, {0.12F, 0.16F, 0.5F}, 0.012F);
        hit.join(0.75F * std::min({body, wing, fin, tail, strut}), Plane);
        const Vec3 f{q.x - 0.08F, q.y + 0.27F, side - 0.2F};
        float floats = ellipsoid(f, {0.46F, 0.055F, 0.06F});
        floats = std::min(floats, stick({q.x, q.y, side}, {0.25F, -0.08F, 0.05F}, {0.25F, -0.27F, 0.2F}, 0.013F));
        floats = std::min(floats, stick({q.x, q.y, side}, {-0.08F, -0.08F, 0.05F}, {-0.08F, -0.27F, 0.2F}, 0.013F));
        hit.join(0.75F * floats, Floats);
        hit.join(0.75F * ellipsoid(q - Vec3{0.2F, 0.09F, 0}, {0.16F, 0.085F, 0.09F}), Glass);
        // The turning propeller is a faint thin disc's rim and its spinner.
        hit.join(0.75F * std::min(ellipsoid(q - Vec3{0.52F, 0, 0}, {0.05F, 0.035F, 0.035F}),
                                  box(q - Vec3{0.54F, 0, 0}, {0.008F, 0.19F, 0.022F}, 0.008F)),
                 Glass);
    }

    static Surface paint(Vec3 p) {
        const Vec3 q = inPlane(p);
        const float side = std::fabs(q.z);
        const bool red = side > 0.82F || q.y > 0.25F || std::fabs(q.y - 0.02F - 0.08F * (0.2F - q.x)) < 0.022F ||
                         q.x > 0.42F || (side < 0.3F && q.x < -0.6F && side > 0.2F);
        return {.colour = red ? colour(0xE0281E) : colour(0xFFC414), .shine = 0.5F, .sharpness = 70, .mirror = 0.03F};
    }

    static void yachts(Vec3 p, Hit &hit) {
        for (const Vec3 &at : Yachts) {
            const Vec3 q = turnY(p - at, at.x);
            const float near = length(q) - 0.4F;
            if (near > 0.1F) {
                hit.join(near, Yacht);
                continue;
            }
            const float hull = ellipsoid(q, {0.2F, 0.05F, 0.06F});
            const float sail =
                std::max({std::fabs(q.z) - 0.01F, 0.06F - q.y, (q.y - 0.42F) * 0.4F + std::fabs(q.x - 0.02F) * 0.9F});
            hit.join(std::min(hull, sail) * 0.8F, Yacht);
        }
    }
};

} // namespace

std::unique_ptr<Scene> atoll() {
    return std::make_unique<Atoll>();
}

} // namespace lumora::samples
