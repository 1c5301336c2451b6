// The open movement of a pocket watch on the watchmaker's bench, in the light of a window.
#include "Scenes.h"

#include "WatchBench.h"

#include <array>

namespace lumora::samples {

namespace {

constexpr Vec3 Balance{0.5F, 0.72F, -2.25F};
constexpr float BalanceRadius = 1.15F;

class Clockwork : public WatchBench {
    enum Material { MainPlate = BenchEnd, Bridge, Ruby, Case };

    static constexpr std::array<Gear, 5> Train{{{{-1.62F, 0.42F, -0.35F}, 64, -1, 0, Gold, 0.11F},
                                                {{0.82F, 0.42F, 0.42F}, 48, 0, 5, Rose, 0.06F},
                                                {{2.3F, 0.42F, -0.71F}, 32, 1, 4, Gold, 0.06F},
                                                {{-0.55F, 0.42F, 2.31F}, 52, 1, 6, Gold, 0.06F},
                                                {{1.5F, 0.42F, 2.25F}, 36, 3, 5, Rose, 0.06F}}};

  public:
    Clockwork() {
        camera = {{0.5F, 6.6F, -8.3F}, {0.12F, 0.1F, -0.15F}, 1.95F};
        caution = 0.85F;
        steps = 200;
        shadowReach = 4;
        shadowSoftness = 12;
        creviceSize = 0.4F;
        bloom = 0.16F;
        vignette = 0.5F;
        exposure = 0.95F;
        float phase[Train.size()] = {};
        for (size_t i = 0; i < Train.size(); ++i) {
            if (Train[i].partner >= 0) {
                const Gear &other = Train[static_cast<size_t>(Train[i].partner)];
                const float towards = std::atan2(Train[i].at.z - other.at.z, Train[i].at.x - other.at.x);
                const float turned = (towards - phase[Train[i].partner]) * static_cast<float>(other.teeth);
                phase[i] = towards + Pi + (turned + Pi) / static_cast<float>(Train[i].teeth);
            }
            m_phase[i] = phase[i];
        }
    }

    Hit map(Vec3 p) const override {
        Hit hit;
        bench(p, hit);
        const float near = std::max(length(p.x, p.z) - 4.75F, p.y - 1.6F);
        if (near > 0.4F) {
            hit.join(near, Case);
            crown(p, hit);
            return hit;
        }
        frame(p, hit);
        crown(p, hit);
        for (size_t i = 0; i < Train.size(); ++i) {
            gear(p - Train[i].at, Train[i], m_phase[i], hit);
        }
        barrel(p - Train[0].at, hit);
        escapement(p, hit);
        balance(p - Balance, hit);
        bridges(p, hit);
        return hit;
    }

    Surface surface(int material, Vec3 p, Vec3 n, Vec3) const override {
        const float rough = fbm(p * 3, 4);
        switch (material) {
        case MainPlate:
            return metal(colour(0xC79A48), colour(0xF3D08A), rough, 0.42F);
        case Bridge:
            // A polished bevel around the striped top.
            return n.y > 0.9F ? metal(colour(0xC9B387), colour(0xF2DEB2), rough, 0.4F)
                              : metal(colour(0xD8B060), colour(0xFFE09A), rough, 0.7F);
        case Gold:
            return brushed(p, n, colour(0xC98A22), colour(0xFFC955));
        case Rose:
            return brushed(p, n, colour(0xC06A3C), colour(0xFFAE7C));
        case Case:
            return metal(colour(0xD39A2E), colour(0xFFD270), 0.6F, 0.72F);
        case Ruby:
            return {.colour = colour(0xC90A2E),
                    .shine = 2.5F,
                    .sharpness = 200,
                    .mirror = 0.12F,
                    .glow = colour(0xE0103C) * 0.45F};
        default:
            return benchLook(material, p, rough);
        }
    }

    float grain(int material, Vec3 p) const override {
        switch (material) {
        case MainPlate: {
            // Rows of ground circles.
            const float r = length(repeat(p.x, 0.24F), repeat(p.z + 0.12F * std::round(p.x / 0.24F), 0.24F));
            return 0.0028F * std::cos(r * 70);
        }
        case Bridge: {
            // Broad polished stripes across the upper faces.
            const float across = p.x * 0.8F + p.z * 0.6F;
            const bool top = std::fabs(p.y - 1.0F) < 0.035F || std::fabs(p.y - 1.26F) < 0.035F;
            return top ? 0.0032F * std::cos(across * 2 * Pi / 0.34F) + 0.0008F * std::cos(across * 110) : 0.0F;
        }
        default:
            return benchGrain(material, p);
        }
    }

  private:
    float m_phase[Train.size()] = {};

    /// Turned on the lathe: fine rings about the nearest wheel's middle spread the light.
    static Surface brushed(Vec3 p, Vec3 n, Vec3 base, Vec3 tint) {
        float nearest = 9;
        float ring = 0;
        for (const Gear &one : Train) {
            const float r = length(p.x - one.at.x, p.z - one.at.z);
            if (r - Pitch * static_cast<float>(one.teeth) < nearest) {
                nearest = r - Pitch * static_cast<float>(one.teeth);
                ring = r;
            }
        }
        Surface look = metal(base, tint, 0.4F + 0.5F * noise(ring * 60, 1.5F), n.y > 0.8F ? 0.5F : 0.6F);
        look.sharpness = 35;
        return look;
    }

    static void jewel(Vec3 p, float radius, Hit &hit) {
        const float out = length(p.x, p.z);
        hit.join(length(out - radius * 1.35F, p.y) - radius * 0.32F, Case);
        hit.join(std::max(ellipsoid(p, {radius * 1.2F, radius * 0.55F, radius * 1.2F}), radius * 0.2F - out), Ruby);
        hit.join(sphere(p - Vec3{0, 0.02F, 0}, radius * 0.22F), Steel);
    }

    static void frame(Vec3 p, Hit &hit) {
        const float out = length(p.x, p.z);
        hit.join(rodY(p - Vec3{0, -0.15F, 0}, 4.05F, 0.15F, 0.03F), MainPlate);
        // The case: a polished ring with a stepped inner edge.
        hit.join(length(out - 4.45F, (p.y - 0.1F) * 0.75F) - 0.33F, Case);
        hit.join(std::max(std::fabs(out - 4.14F) - 0.06F, std::fabs(p.y - 0.05F) - 0.22F), Case);
        for (int i = 0; i < 5; ++i) {
            const float a = 0.5F + 1.256F * static_cast<float>(i);
            screw(p - Vec3{3.72F * std::cos(a), 0.04F, 3.72F * std::sin(a)}, 0.17F, 1.9F * a, hit);
        }
        for (const Vec3 at : {Vec3{-2.9F, 0.03F, -2.0F}, Vec3{-1.5F, 0.03F, -2.9F}, Vec3{-3.1F, 0.03F, 1.6F}}) {
            jewel(p - at, 0.13F, hit);
        }
    }

    static void crown(Vec3 p, Hit &hit) {
        const Vec3 q = turnY(p, -0.55F) - Vec3{0, 0.05F, 5.15F};
        if (length(q) > 2.2F) {
            hit.join(length(q) - 1.9F, Case);
            return;
        }
        const Vec3 knurl = slices(q, 26);
        hit.join(
            std::min(plate(std::min(length(q.x, q.y) - 0.36F, std::max(std::fabs(knurl.y) - 0.025F, knurl.x - 0.4F)),
                           q.z, 0.22F, 0.04F),
                     rodZ(q - Vec3{0, 0, -0.3F}, 0.22F, 0.3F)) *
                0.9F,
            Case);
        const Vec3 bow = q - Vec3{0, 0, 0.55F};
        hit.join(length(length(bow.x, bow.z * 0.9F) - 0.85F, bow.y) - 0.1F, Case);
    }

    /// The mainspring's drum, the ratchet wheel on it and its click.
    static void barrel(Vec3 at, Hit &hit) {
        const Vec3 p = flat(at);
        const float r = length(p.x, p.y);
        if (r > 1.9F) {
            return;
        }
        hit.join(rodZ(p - Vec3{0, 0, 0.2F}, 1.22F, 0.16F, 0.04F), Gold);
        hit.join(length(r - 1.05F, p.z - 0.365F) - 0.025F, Case);
        const float step = 2 * Pi / 30;
        const float saw = fraction((std::atan2(p.y, p.x) + 0.4F * (r - 0.9F)) / step);
        const float ratchet = r - 0.82F - 0.1F * saw;
        const float rounds = 0.1F - length(slices(p, 6).x - 0.5F, slices(p, 6).y);
        hit.join(plate(std::max(ratchet * 0.6F, rounds), p.z - 0.45F, 0.06F, 0.015F), Steel);
        screw(at - Vec3{0, 0.56F, 0}, 0.28F, 0.7F, hit);
        const Vec3 click = at - Vec3{-0.85F, 0.45F, 0.75F};
        hit.join(plate(std::min(length(click.x, click.z) - 0.2F,
                                stick({click.x, 0, click.z}, {}, {0.28F, 0, -0.34F}, 0.1F, 0.02F)),
                       click.y, 0.06F, 0.015F),
                 Steel);
        screw(click - Vec3{0, 0.09F, 0}, 0.12F, 2.2F, hit);
    }

    /// Escape wheel and its lever.
    static void escapement(Vec3 at, Hit &hit) {
        const Vec3 p = at - Vec3{2.05F, 0.4F, -2.05F};
        if (length(p) > 1.6F) {
            hit.join(length(p) - 1.4F, Steel);
            return;
        }
        const float r = length(p.x, p.z);
        const float tooth = fraction((std::atan2(p.z, p.x) + 0.9F * r) / (2 * Pi / 15));
        const float outer = r - 0.42F - 0.2F * smoothStep(0.45F, 0.1F, std::fabs(tooth - 0.4F));
        const Vec3 s = slices(flat(p), 4);
        const float open = std::max({r - 0.34F, 0.12F - r, 0.045F - std::fabs(s.y)});
        hit.join(plate(std::max(outer * 0.55F, -open), p.y, 0.04F, 0.01F), Steel);
        hit.join(rodY(p, 0.05F, 0.4F), Steel);
        const Vec3 lever = p - Vec3{-0.75F, -0.05F, 0.12F};
        hit.join(plate(std::min(stick({lever.x, 0, lever.z}, {-0.3F, 0, -0.2F}, {0.25F, 0, 0.4F}, 0.06F),
                                stick({lever.x, 0, lever.z}, {0.05F, 0, 0.1F}, {0.32F, 0, -0.25F}, 0.06F)),
                       lever.y, 0.05F, 0.01F),
                 Steel);
        hit.join(std::min(box(lever - Vec3{0.27F, 0.03F, 0.42F}, {0.05F, 0.05F, 0.09F}),
                          box(lever - Vec3{0.34F, 0.03F, -0.28F}, {0.05F, 0.05F, 0.09F})),
                 Ruby);
    }

    /// Balance wheel with its timing screws, and the blued hairspring.
    static void balance(Vec3 at, Hit &hit) {
        const Vec3 p = flat(at);
        const float r = length(p.x, p.y);
        const float near = std::max(r - BalanceRadius - 0.2F, std::fabs(p.z) - 0.5F);
        if (near > 0.15F) {
            hit.join(near, Gold);
            return;
        }
        const Vec3 turned = turnZ(p, 0.5F);
        float wheel = plate(std::fabs(r - BalanceRadius + 0.06F) - 0.075F, p.z, 0.085F, 0.02F);
        wheel = std::min(wheel,
                         plate(std::max(std::fabs(turned.y) - mix(0.12F, 0.07F, clamp01(r)), r - BalanceRadius + 0.05F),
                               p.z, 0.05F, 0.015F));
        wheel = std::min(wheel, rodZ(p, 0.17F, 0.07F, 0.02F));
        hit.join(wheel, Gold);
        const Vec3 s = slices(turned, 16);
        hit.join(rodX(s - Vec3{BalanceRadius + 0.07F, 0, 0}, 0.055F, 0.06F, 0.015F), Case);
        const float turn = std::atan2(p.y, p.x) / (2 * Pi);
        constexpr float Coil = 0.085F;
        const float coil = std::fabs(repeat(r - Coil * turn, Coil)) - 0.013F;
        hit.join(std::max({coil, std::fabs(p.z - 0.17F) - 0.05F, r - 0.8F, 0.16F - r}) * 0.8F, Blued);
        hit.join(rodZ(p, 0.06F, 0.45F), Steel);
    }

    /// A bridge whose outline, seen from above, is `flat`; with a bevelled edge.
    static float slab(Vec3 p, float flat, float middle, float half) {
        const float b = std::fabs(p.y - middle) - half;
        return std::max({flat, b, (flat + b + 0.06F) * 0.707F});
    }

    static void bridges(Vec3 p, Hit &hit) {
        const float feet =
            std::min({rodY(p - Vec3{-2.7F, 0.4F, 1.9F}, 0.45F, 0.45F), rodY(p - Vec3{3.0F, 0.4F, 1.35F}, 0.4F, 0.45F),
                      rodY(p - Vec3{1.5F, 0.5F, -3.4F}, 0.42F, 0.55F)});
        hit.join(feet, Bridge);
        if (p.y > 0.35F) {
            const Vec3 q{p.x, 0, p.z};
            const auto above = [](Vec3 at) { return Vec3{at.x, 0, at.z}; };
            const Vec3 foot{3.0F, 0, 1.3F};
            float fingers = blend(stick(q, foot, above(Train[1].at), 0.4F, 0.3F),
                                  stick(q, foot, above(Train[4].at), 0.42F, 0.3F), 0.5F);
            fingers = blend(fingers, stick(q, foot, above(Train[2].at), 0.4F, 0.24F), 0.5F);
            const Vec3 end{-2.75F, 0, 1.8F};
            const float arch =
                blend(stick(q, end, above(Train[3].at), 0.46F, 0.32F), stick(q, end, {-1.4F, 0, 3.1F}, 0.44F), 0.6F);
            const float train = slab(p, fingers, 0.88F, 0.12F);
            const float drum = slab(p, arch, 0.88F, 0.12F);
            const float cock = slab(p, stick(q, {1.55F, 0, -3.4F}, above(Balance), 0.56F, 0.26F), 1.14F, 0.12F);
            hit.join(std::min({train, drum, cock}), Bridge);
            jewel(p - Vec3{Train[1].at.x, 1.0F, Train[1].at.z}, 0.17F, hit);
            jewel(p - Vec3{Train[3].at.x, 1.0F, Train[3].at.z}, 0.17F, hit);
            jewel(p - Vec3{Train[4].at.x, 1.0F, Train[4].at.z}, 0.15F, hit);
            jewel(p - Vec3{Train[2].at.x, 1.0F, Train[2].at.z}, 0.13F, hit);
            jewel(p - Vec3{Balance.x, 1.26F, Balance.z}, 0.17F, hit);
            for (const Vec3 at : {Vec3{3.05F, 1.03F, 1.45F}, Vec3{-2.75F, 1.03F, 1.8F}, Vec3{-1.4F, 1.03F, 3.1F},
                                  Vec3{1.6F, 1.29F, -3.45F}}) {
                screw(p - at, 0.17F, at.x * 3, hit);
            }
        }
    }
};

} // namespace

std::unique_ptr<Scene> clockwork() {
    return std::make_unique<Clockwork>();
}

} // namespace lumora::samples
