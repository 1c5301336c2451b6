// A young retriever on the sofa that looks into the flash: its eyes shine red.
#include "Scenes.h"

#include "Pets.h"

namespace lumora::samples {

namespace {

constexpr Vec3 HeadAt{0, 1.2F, 0};
constexpr Vec3 NoseAt{0, 1.0F, -1.16F};
constexpr Vec3 EyeAt{0.275F, 1.28F, -0.56F};
constexpr float EyeSize = 0.165F;

class Dog : public FlashRoom {
  public:
    Dog() : FlashRoom(0x4A5A8A) {}

    Hit map(Vec3 p) const override {
        Hit hit;
        room(p, hit);
        const float far = box(p - Vec3{0, 0.5F, 0.3F}, {1.5F, 1.7F, 1.7F});
        if (far > 0.3F) {
            hit.join(far, Coat);
            return hit;
        }
        const Vec3 h{std::fabs(p.x), p.y, p.z};
        hit.join(coat(p, h) * 0.85F, Coat);
        hit.join(sphere(h - EyeAt, EyeSize), Eye);
        float nose = ellipsoid(p - NoseAt, {0.185F, 0.125F, 0.12F});
        nose = carve(nose, ellipsoid(turnZ(h - NoseAt - Vec3{0.085F, -0.015F, -0.11F}, 0.5F), {0.045F, 0.028F, 0.06F}),
                     0.02F);
        nose = blend(nose, stick(p, NoseAt + Vec3{0, -0.08F, -0.02F}, NoseAt + Vec3{0, -0.22F, 0.06F}, 0.03F, 0.02F),
                     0.03F);
        hit.join(nose, Nose);
        hit.join(ellipsoid(p - Vec3{0, 0.645F, -0.90F}, {0.115F, 0.17F, 0.07F}), Tongue);
        const Vec3 c{p.x, p.y - 0.34F + 0.28F * (p.z - 0.1F), p.z - 0.32F};
        hit.join(length(length(c.x, c.z) - 0.78F, c.y * 0.75F) - 0.075F, Collar);
        hit.join(rodZ(p - Vec3{0, 0.24F, -0.58F}, 0.12F, 0.02F, 0.01F), Tag);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3, Vec3) const override {
        switch (material) {
        case Coat:
            return {.colour = golden(p)};
        case Eye: {
            const Vec3 at{p.x > 0 ? EyeAt.x : -EyeAt.x, EyeAt.y, EyeAt.z};
            return flashedEye((p - at) * (1 / EyeSize), normalise(camera.eye - at), colour(0x5A2E14),
                              Vec3{1.1F, 0.05F, 0.03F}, 0.58F);
        }
        case Nose:
            return {.colour = colour(0x1C1716) * (0.7F + 0.6F * noise(p * 60)), .shine = 0.16F, .sharpness = 12};
        case Tongue:
            return {.colour = mix(colour(0xD86A72), colour(0xA84452), smoothStep(0.02F, 0.0F, std::fabs(p.x))),
                    .shine = 0.35F,
                    .sharpness = 30};
        case Collar:
            return {.colour = colour(0xC4202A) * (0.8F + 0.2F * std::sin(p.x * 160) * std::sin(p.y * 160))};
        case Tag:
            return {.colour = colour(0xD8B85A), .shine = 1.2F, .sharpness = 60};
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
        if (eye < EyeSize + 0.03F || nose < 0.2F) {
            return {};
        }
        if (onEar(h)) { // long and wavy
            return fur(n, {0.15F * p.x + 0.25F * std::sin(p.y * 9), -1, 0}, 0.30F, 0.012F, 0.12F, chance, 6 + p.y);
        }
        const float face = smoothStep(0.30F, 0.6F, p.y);
        const Vec3 outwards = p - NoseAt - Vec3{0, 0.1F, -0.35F};
        const Vec3 way = mix(Vec3{0.3F * p.x + 0.2F * std::sin(p.y * 6 + 5 * p.x), -1, -0.1F}, outwards, face);
        float reach = mix(0.035F, 0.14F, smoothStep(0.25F, 0.9F, nose)) * smoothStep(0.12F, 0.4F, eye);
        reach = mix(0.36F, reach, face);
        return fur(n, way, reach, 0.011F, 0.25F, chance, mix(p.y, 4 - nose, face));
    }

  private:
    enum Material { Coat = RoomEnd, Eye, Nose, Tongue, Collar, Tag };

    static float ear(Vec3 h) {
        const Vec3 q = turnX(turnZ(h - Vec3{0.84F, 1.02F, 0.02F}, -0.16F), 0.12F);
        const float wide = 0.30F - 0.10F * q.y;
        return ellipsoid({q.x, q.y, q.z}, {0.17F, 0.56F, wide});
    }
    static bool onEar(Vec3 h) { return ear(h) < 0.02F; }

    static float coat(Vec3 p, Vec3 h) {
        float head = ellipsoid(p - HeadAt, {0.74F, 0.68F, 0.70F});
        head = blend(head, ellipsoid(h - Vec3{0.32F, 1.0F, -0.25F}, {0.38F, 0.38F, 0.42F}), 0.2F); // cheeks
        head = blend(head, stick(p, {0, 1.05F, -0.5F}, {0, 0.98F, -0.98F}, 0.30F, 0.215F), 0.16F);
        head = blend(head, ellipsoid(h - Vec3{0.13F, 0.84F, -0.90F}, {0.19F, 0.18F, 0.25F}), 0.08F); // lips
        head = blend(head, ellipsoid(p - Vec3{0, 0.70F, -0.72F}, {0.19F, 0.13F, 0.24F}), 0.06F);
        head = blend(head, ellipsoid(h - Vec3{0.25F, 1.46F, -0.50F}, {0.19F, 0.10F, 0.12F}), 0.16F); // brows
        head = carve(head, stick(p, {0, 1.42F, -0.86F}, {0, 2.0F, -0.80F}, 0.12F, 0.10F), 0.22F);    // the furrow
        head = blend(head, sphere(h - EyeAt, 0.185F), 0.06F);
        const Vec3 e = turnZ(h - EyeAt, -0.10F);
        head = carve(head, ellipsoid(e - Vec3{0, 0, -0.15F}, {0.145F, 0.12F, 0.2F}), 0.02F);
        head = blend(head, ear(h), 0.05F);
        float body = ellipsoid(p - Vec3{0, -0.3F, 0.4F}, {0.95F, 1.05F, 0.85F});
        body = blend(body, stick(p, {0, 0.2F, 0.25F}, {0, 0.8F, 0.15F}, 0.70F, 0.58F), 0.2F);
        body = blend(body, ellipsoid(h - Vec3{0.34F, -0.5F, -0.1F}, {0.38F, 0.75F, 0.42F}), 0.2F);
        return blend(head, body, 0.15F);
    }

    static Vec3 golden(Vec3 p) {
        const Vec3 h{std::fabs(p.x), p.y, p.z};
        const float uneven = fbm(p * 3.5F, 3);
        Vec3 look = mix(colour(0xB07A3A), colour(0xD8AC68), uneven);
        look = mix(look, colour(0xEBD2A0),
                   0.7F * smoothStep(0.5F, 0.1F, h.x + 0.2F * uneven) * smoothStep(0.7F, 0.2F, p.y));
        look = mix(look, colour(0xEBD2A0), 0.6F * smoothStep(-0.55F, -0.85F, p.z));
        if (onEar(h)) {
            look = mix(colour(0x8A5424), colour(0xB07A3A), uneven);
        }
        look = mix(look, colour(0x2A1A12), smoothStep(EyeSize + 0.045F, EyeSize + 0.015F, length(h - EyeAt)));
        // The dark seam of the mouth.
        const float lip = p.y - 0.745F - 0.35F * h.x * h.x + 0.12F * smoothStep(-0.6F, -0.3F, p.z);
        return mix(look, colour(0x20130F),
                   p.z < -0.5F ? smoothStep(0.03F, 0.012F, std::fabs(lip)) * smoothStep(0.40F, 0.30F, h.x) : 0.0F);
    }
};

} // namespace

std::unique_ptr<Scene> dog() {
    return std::make_unique<Dog>();
}

} // namespace lumora::samples
