// A tabby cat on the sofa that looks into the flash: its eyes shine green.
#include "Scenes.h"

#include "Pets.h"

namespace lumora::samples {

namespace {

constexpr Vec3 HeadAt{0, 1.12F, 0};
constexpr Vec3 NoseAt{0, 0.93F, -0.90F};
constexpr Vec3 EyeAt{0.335F, 1.16F, -0.500F};
constexpr float EyeSize = 0.225F;

class Cat : public FlashRoom {
  public:
    Cat() : FlashRoom(0x2A6A72) {}

    Hit map(Vec3 p) const override {
        Hit hit;
        room(p, hit);
        const float far = box(p - Vec3{0, 0.5F, 0.4F}, {1.5F, 1.75F, 1.5F});
        if (far > 0.3F) {
            hit.join(far, Coat);
            return hit;
        }
        const Vec3 h{std::fabs(p.x), p.y, p.z};
        hit.join(coat(p, h) * 0.85F, Coat);
        hit.join(sphere(h - EyeAt, EyeSize), Eye);
        float nose = ellipsoid(p - NoseAt, {0.105F, 0.07F, 0.07F});
        nose = blend(nose, ellipsoid(p - NoseAt - Vec3{0, -0.06F, 0.02F}, {0.035F, 0.07F, 0.05F}), 0.05F);
        hit.join(nose, Nose);
        hit.join(whiskers(h), Whisker);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        switch (material) {
        case Coat:
            return {.colour = tabby(p, n)};
        case Eye: {
            const Vec3 at{p.x > 0 ? EyeAt.x : -EyeAt.x, EyeAt.y, EyeAt.z};
            const Vec3 e = (p - at) * (1 / EyeSize);
            return flashedEye(e, normalise(camera.eye - at), colour(0x9AA83A), Vec3{0.22F, 1.1F, 0.34F}, 0.52F);
        }
        case Nose:
            return {.colour =
                        mix(colour(0xC87A70), colour(0xE8A89A), noise(p * 40)) *
                        (length((std::fabs(p.x) - 0.055F) * 1.2F, p.y - NoseAt.y + 0.03F) < 0.022F ? 0.25F : 1.0F),
                    .shine = 0.25F,
                    .sharpness = 40};
        case Whisker:
            return {.colour = colour(0xFFFFFF), .glow = Vec3{0.25F, 0.25F, 0.25F}};
        default:
            return roomLook(material, p);
        }
    }

    Strand strand(int material, Vec3 p, Vec3 n, float chance) const override {
        if (material != Coat) {
            return {};
        }
        const Vec3 h{std::fabs(p.x), p.y, p.z};
        const float eye = length(h - EyeAt);
        const float nose = length(p - NoseAt);
        const Vec3 e = turnZ(h - EyeAt, 0.28F);
        const float lid = length((e.x + 0.01F) / 0.185F, e.y / 0.135F);
        if ((lid < 1.22F && p.z < -0.3F) || nose < 0.13F || insideEar(h) > 0.6F) {
            return insideEar(h) > 0.6F && chance < 0.06F
                       ? fur(n, {h.x < 0.6F ? 0.4F : -0.5F, 0.6F, -0.5F}, 0.26F, 0.010F, 0.4F, chance, p.y)
                       : Strand{};
        }
        // From the nose outwards over the face, then down the throat and the chest.
        const float face = smoothStep(0.25F, 0.65F, p.y);
        const Vec3 outwards = p - NoseAt - Vec3{0, 0, -0.3F};
        const Vec3 way = mix(Vec3{0.25F * p.x, -1, -0.1F}, outwards, face);
        float reach = mix(0.05F, 0.17F, smoothStep(0.15F, 0.75F, nose)) *
                      mix(0.3F, 1.0F, smoothStep(0.25F, 0.5F, eye)) * mix(1.0F, 0.4F, smoothStep(1.45F, 1.7F, p.y));
        reach += 0.12F * smoothStep(0.62F, 0.9F, h.x) * face * smoothStep(1.35F, 0.9F, p.y); // the ruff
        reach = mix(0.30F, reach, face);
        return fur(n, way, reach, 0.011F, 0.30F, chance, mix(p.y, 4 - nose, face));
    }

  private:
    enum Material { Coat = RoomEnd, Eye, Nose, Whisker };

    static float coat(Vec3 p, Vec3 h) {
        float head = ellipsoid(p - HeadAt, {0.84F, 0.68F, 0.68F});
        head = blend(head, ellipsoid(h - Vec3{0.46F, 0.90F, -0.12F}, {0.46F, 0.36F, 0.44F}), 0.25F); // cheeks
        head = blend(head, stick(p, {0, 1.38F, -0.50F}, {0, 1.0F, -0.74F}, 0.19F, 0.125F), 0.22F);
        head = blend(head, ellipsoid(h - Vec3{0.135F, 0.79F, -0.74F}, {0.19F, 0.145F, 0.19F}), 0.09F);
        head = blend(head, ellipsoid(p - Vec3{0, 0.66F, -0.66F}, {0.15F, 0.12F, 0.14F}), 0.10F); // chin
        // Almond eyes: what the lids leave open, a little higher at the outside.
        const Vec3 e = turnZ(h - EyeAt, 0.28F);
        head = blend(head, sphere(h - EyeAt, 0.245F), 0.06F);
        head = carve(head, ellipsoid(e - Vec3{-0.01F, 0, -0.2F}, {0.185F, 0.135F, 0.26F}), 0.02F);
        const Vec3 ear = inEar(h);
        const float taper = 1 + 1.3F * clamp01((ear.y + 0.15F) / 0.65F); // to a point
        const Vec3 tip{ear.x * taper, ear.y, ear.z};
        const float cone = std::max(ellipsoid(tip, {0.36F, 0.56F, 0.15F}) * 0.7F, -0.3F - ear.y);
        head = blend(head, carve(cone, 0.7F * ellipsoid(tip - Vec3{0, -0.04F, -0.13F}, {0.26F, 0.46F, 0.14F}), 0.03F),
                     0.1F);
        float body = ellipsoid(p - Vec3{0, -0.3F, 0.45F}, {0.92F, 1.1F, 0.85F});
        body = blend(body, ellipsoid(h - Vec3{0.3F, -0.45F, -0.1F}, {0.36F, 0.75F, 0.4F}), 0.25F);
        return blend(head, body, 0.22F);
    }

    static Vec3 inEar(Vec3 h) { return turnY(turnZ(h - Vec3{0.53F, 1.66F, 0.06F}, -0.36F), 0.25F); }

    /// The bare pink inside of the ear, 0 to 1.
    static float insideEar(Vec3 h) {
        const Vec3 ear = inEar(h);
        return ear.z < 0.02F && h.y > 1.45F
                   ? smoothStep(
                         1.0F, 0.75F,
                         length(ear.x * (1 + 1.3F * clamp01((ear.y + 0.15F) / 0.65F)) / 0.26F, (ear.y + 0.03F) / 0.42F))
                   : 0.0F;
    }

    static float whiskers(Vec3 h) {
        float d = 9;
        for (int i = 0; i < 5; ++i) {
            const auto k = static_cast<float>(i);
            const Vec3 root{0.2F + 0.02F * k, 0.84F - 0.045F * k, -0.90F + 0.02F * k};
            const Vec3 tip{1.15F - 0.04F * k, 1.02F - 0.20F * k, -0.75F};
            const OnCurve on = curve(h, root, (root + tip) * 0.5F + Vec3{0, 0.12F, -0.12F}, tip);
            d = std::min(d, on.distance - mix(0.007F, 0.002F, on.along));
        }
        return d;
    }

    static Vec3 tabby(Vec3 p, Vec3 n) {
        const Vec3 h{std::fabs(p.x), p.y, p.z};
        const float uneven = fbm(p * 4, 3);
        Vec3 look = mix(colour(0x8A7358), colour(0xB49A78), uneven);
        // The M on the forehead, lines from the eyes' corners, bars over the chest.
        float dark = 0;
        if (p.y > 1.3F) {
            dark =
                smoothStep(0.35F, 0.7F, std::sin(h.x * 26 - 1.3F + 2 * smoothStep(1.7F, 1.3F, p.y)) + 0.5F * uneven) *
                smoothStep(0.62F, 0.45F, h.x) * smoothStep(1.30F, 1.42F, p.y);
        } else if (p.y > 0.35F) {
            const float line = p.y - 1.02F + 0.28F * (h.x - 0.5F) + 0.04F * std::sin(h.x * 9);
            dark = smoothStep(0.05F, 0.02F, std::fabs(repeat(line, 0.23F))) * smoothStep(0.52F, 0.62F, h.x) *
                   smoothStep(1.25F, 1.1F, p.y);
        } else {
            const float bar = repeat(p.y + 0.3F * h.x * h.x + 0.12F * uneven, 0.36F);
            dark = smoothStep(0.10F, 0.04F, std::fabs(bar)) * smoothStep(0.28F, 0.55F, h.x);
        }
        look = mix(look, colour(0x2E241C), 0.85F * dark);
        // White muzzle, chin, bib and round the eyes.
        const float muzzle = length(h.x / 0.36F, (p.y - 0.72F) / 0.26F);
        float white = p.z < -0.35F ? smoothStep(1.15F, 0.8F, muzzle + 0.2F * (uneven - 0.5F)) : 0.0F;
        white = std::max(white, smoothStep(0.42F, 0.2F, h.x + 0.15F * (uneven - 0.5F)) * smoothStep(0.62F, 0.4F, p.y));
        white = std::max(white, 0.45F * smoothStep(0.30F, 0.25F, length(h - EyeAt)));
        look = mix(look, colour(0xEFE8DE), white);
        const Vec3 e = turnZ(h - EyeAt, 0.28F);
        look = mix(look, colour(0x17110E),
                   p.z < -0.3F ? smoothStep(1.28F, 1.12F, length((e.x + 0.01F) / 0.185F, e.y / 0.135F)) : 0.0F);
        look = mix(look, colour(0x3A1E18), p.z < -0.7F && p.y < 0.86F ? smoothStep(0.016F, 0.006F, h.x) : 0.0F);
        return mix(look, colour(0xC88A7C), insideEar(h) * (n.z < 0.2F ? 1.0F : 0.0F));
    }
};

} // namespace

std::unique_ptr<Scene> cat() {
    return std::make_unique<Cat>();
}

} // namespace lumora::samples
