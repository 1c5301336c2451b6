#include "Painter.h"

#include "Light.h"

#include <array>
#include <atomic>
#include <thread>
#include <vector>

namespace lumora::samples {

namespace {

/// A picture of linear light, before it is developed.
struct Film {
    int width;
    int height;
    std::vector<Vec3> light;

    Film(int w, int h) : width(w), height(h), light(static_cast<size_t>(w) * static_cast<size_t>(h)) {}
    Vec3 &at(int x, int y) {
        return light[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
    }
    const Vec3 &at(int x, int y) const {
        return light[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
    }
};

/// Calls work(row) for every row, spread over the processors.
template <typename Work> void forRows(int rows, Work work) {
    std::atomic<int> next{0};
    std::vector<std::jthread> threads;
    for (unsigned i = 0; i < std::max(1U, std::thread::hardware_concurrency()); ++i) {
        threads.emplace_back([&] {
            for (int row = next++; row < rows; row = next++) {
                work(row);
            }
        });
    }
}

/// Rays through the places of the picture.
class Lens {
  public:
    Lens(const Camera &camera, int width, int height)
        : m_camera(camera), m_scale(2.0F / static_cast<float>(width)), m_x(static_cast<float>(width) / 2),
          m_y(static_cast<float>(height) / 2), m_ahead(normalise(camera.target - camera.eye)),
          m_right(normalise(cross(Vec3{std::sin(camera.roll), std::cos(camera.roll), 0}, m_ahead))),
          m_up(cross(m_ahead, m_right)) {}

    Vec3 direction(float x, float y) const {
        return normalise(m_ahead * m_camera.zoom + m_right * ((x - m_x) * m_scale) + m_up * ((m_y - y) * m_scale));
    }

  private:
    Camera m_camera;
    float m_scale;
    float m_x;
    float m_y;
    Vec3 m_ahead;
    Vec3 m_right;
    Vec3 m_up;
};

/// How bright a place will look, 0 to 1: what the eye compares at an edge.
Vec3 seen(Vec3 light) {
    return {light.x / (0.4F + light.x), light.y / (0.4F + light.y), light.z / (0.4F + light.z)};
}

bool differs(Vec3 a, Vec3 b) {
    const Vec3 d = absolute(seen(a) - seen(b));
    return std::max({d.x, d.y, d.z}) > 0.035F;
}

/// One ray for each picture point, then four more (a turned square) where a neighbour looks different.
Film expose(const Scene &scene, int width, int height) {
    const Lens lens(scene.camera, width, height);
    const auto look = [&](float x, float y) { return lightAlong(scene, scene.camera.eye, lens.direction(x, y)); };
    Film first(width, height);
    forRows(height, [&](int y) {
        for (int x = 0; x < width; ++x) {
            first.at(x, y) = look(static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F);
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
            Vec3 sum;
            for (const auto &[dx, dy] : places) {
                // A glint far brighter than the rest of its point would stay a stair however many rays are averaged.
                const Vec3 light = look(static_cast<float>(x) + dx, static_cast<float>(y) + dy);
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
    const Film film = expose(scene, width, height);
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
