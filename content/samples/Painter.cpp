#include "Painter.h"

#include "Film.h"
#include "Focus.h"
#include "Light.h"
#include "Strands.h"

#include <array>

namespace lumora::samples {

namespace {

/// How bright a place will look, 0 to 1: what the eye compares at an edge.
Vec3 seen(Vec3 light) {
    return {light.x / (0.4F + light.x), light.y / (0.4F + light.y), light.z / (0.4F + light.z)};
}

bool differs(Vec3 a, Vec3 b) {
    const Vec3 d = absolute(seen(a) - seen(b));
    return std::max({d.x, d.y, d.z}) > 0.035F;
}

/// Whether strands or the blur of the lens will hide how exactly a point was looked at.
bool coarse(const Scene &scene, const Lens &lens, const Film &film, int x, int y) {
    const Place here = film.place(x, y);
    if (blurOf(scene, here) * static_cast<float>(film.width) > 2.5F) {
        return true;
    }
    if (scene.strands == 0 || here.material < 0) {
        return false;
    }
    const Vec3 d = lens.direction(static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F);
    const Vec3 tip = scene.strand(here.material, scene.camera.eye + d * here.distance, -d, 0.01F).tip;
    return dot(tip, tip) > 0;
}

/// One ray for each picture point, then four more (a turned square) where a neighbour looks different.
Film expose(const Scene &scene, int width, int height) {
    const Lens lens(scene.camera, width, height);
    const auto look = [&](float x, float y) { return sightAlong(scene, scene.camera.eye, lens.direction(x, y)); };
    Film first(width, height);
    forRows(height, [&](int y) {
        for (int x = 0; x < width; ++x) {
            const Sight sight = look(static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F);
            first.at(x, y) = sight.light;
            first.place(x, y) = {sight.distance, sight.material};
        }
    });
    Film film = first;
    constexpr std::array<std::array<float, 2>, 4> places{
        {{0.375F, 0.125F}, {0.875F, 0.375F}, {0.625F, 0.875F}, {0.125F, 0.625F}}};
    forRows(height, [&](int y) {
        for (int x = 0; x < width; ++x) {
            const Vec3 here = first.at(x, y);
            if (!differs(here, first.at(std::max(x - 1, 0), y)) &&
                !differs(here, first.at(std::min(x + 1, width - 1), y)) &&
                !differs(here, first.at(x, std::max(y - 1, 0))) &&
                !differs(here, first.at(x, std::min(y + 1, height - 1)))) {
                continue;
            }
            if (coarse(scene, lens, first, x, y) && coarse(scene, lens, first, std::max(x - 1, 0), y) &&
                coarse(scene, lens, first, std::min(x + 1, width - 1), y) &&
                coarse(scene, lens, first, x, std::max(y - 1, 0)) &&
                coarse(scene, lens, first, x, std::min(y + 1, height - 1))) {
                continue;
            }
            Vec3 sum;
            for (const auto &[dx, dy] : places) {
                // A glint far brighter than the rest of its point would stay a stair however many rays are averaged.
                const Vec3 light = look(static_cast<float>(x) + dx, static_cast<float>(y) + dy).light;
                sum += Vec3{std::min(light.x, 8.0F), std::min(light.y, 8.0F), std::min(light.z, 8.0F)};
            }
            film.at(x, y) = sum * 0.25F;
        }
    });
    return film;
}

/// A sixth of the film's size, only what is brighter than paper white, spread by three box blurs.
Film brightPlaces(const Film &film, float exposure) {
    constexpr int Step = 6;
    Film small(std::max(1, film.width / Step), std::max(1, film.height / Step));
    for (int y = 0; y < small.height; ++y) {
        for (int x = 0; x < small.width; ++x) {
            Vec3 sum;
            for (int i = 0; i < Step * Step; ++i) {
                const Vec3 light = film.at(std::min(x * Step + i % Step, film.width - 1),
                                           std::min(y * Step + i / Step, film.height - 1)) *
                                   exposure;
                sum += light * smoothStep(0.7F, 1.6F, std::max({light.x, light.y, light.z}));
            }
            small.at(x, y) = sum * (1.0F / (Step * Step));
        }
    }
    const int reach = std::max(1, small.width / 55);
    for (int pass = 0; pass < 6; ++pass) {
        const Film before = small;
        forRows(small.height, [&](int y) {
            for (int x = 0; x < small.width; ++x) {
                Vec3 sum;
                for (int i = -reach; i <= reach; ++i) {
                    sum += pass % 2 == 0 ? before.at(std::clamp(x + i, 0, small.width - 1), y)
                                         : before.at(x, std::clamp(y + i, 0, small.height - 1));
                }
                small.at(x, y) = sum * (1.0F / static_cast<float>(2 * reach + 1));
            }
        });
    }
    return small;
}

Vec3 between(const Film &film, float x, float y) {
    x = std::clamp(x, 0.0F, static_cast<float>(film.width - 1));
    y = std::clamp(y, 0.0F, static_cast<float>(film.height - 1));
    const int i = std::min(static_cast<int>(x), std::max(0, film.width - 2));
    const int j = std::min(static_cast<int>(y), std::max(0, film.height - 2));
    const int right = std::min(i + 1, film.width - 1);
    const int below = std::min(j + 1, film.height - 1);
    const float u = x - static_cast<float>(i);
    const float v = y - static_cast<float>(j);
    return mix(mix(film.at(i, j), film.at(right, j), u), mix(film.at(i, below), film.at(right, below), u), v);
}

/// Film curve after Krzysztof Narkowicz, "ACES filmic tone mapping curve" (2016), then the sRGB transfer curve.
int developed(float light) {
    const float v = std::max(light, 0.0F) * 0.8F;
    const float curve = clamp01(v * (2.51F * v + 0.03F) / (v * (2.43F * v + 0.59F) + 0.14F));
    const float coded = curve <= 0.0031308F ? 12.92F * curve : 1.055F * std::pow(curve, 1 / 2.4F) - 0.055F;
    return static_cast<int>(std::lround(coded * 255));
}

} // namespace

QImage paint(const Scene &scene, int width, int height) {
    Film film = expose(scene, width, height);
    growStrands(scene, film);
    film = focused(scene, film);
    const Film glow = brightPlaces(film, scene.exposure);
    const float scale = static_cast<float>(glow.width) / static_cast<float>(width);
    QImage picture(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        auto *row = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const float dx = static_cast<float>(2 * x - width) / static_cast<float>(width);
            const float dy = static_cast<float>(2 * y - height) / static_cast<float>(height);
            const float edge = 1 - scene.vignette * smoothStep(0.5F, 2.0F, dx * dx + dy * dy);
            const Vec3 soft = between(glow, static_cast<float>(x) * scale - 0.5F, static_cast<float>(y) * scale - 0.5F);
            const Vec3 light = (film.at(x, y) * scene.exposure + soft * scene.bloom) * edge;
            row[x] = qRgb(developed(light.x), developed(light.y), developed(light.z));
        }
    }
    return picture;
}

} // namespace lumora::samples
