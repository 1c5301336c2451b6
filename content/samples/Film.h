// The picture while it is being made, and the lens that throws it.
#pragma once

#include "Scene.h"

#include <atomic>
#include <thread>
#include <vector>

namespace lumora::samples {

/// What a picture point shows: how far away, and the scene's material; below 0 for the sky and for water.
struct Place {
    float distance = 0;
    int material = -1;
};

/// A picture of linear light, before it is developed.
struct Film {
    int width;
    int height;
    std::vector<Vec3> light;
    std::vector<Place> places; ///< what the middle of each picture point shows

    Film(int w, int h)
        : width(w), height(h), light(static_cast<size_t>(w) * static_cast<size_t>(h)), places(light.size()) {}
    Vec3 &at(int x, int y) { return light[index(x, y)]; }
    const Vec3 &at(int x, int y) const { return light[index(x, y)]; }
    Place &place(int x, int y) { return places[index(x, y)]; }
    const Place &place(int x, int y) const { return places[index(x, y)]; }

  private:
    size_t index(int x, int y) const {
        return static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x);
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

    /// The way a ray leaves the eye for the place (x, y), in pixels; length 1.
    Vec3 direction(float x, float y) const {
        return normalise(m_ahead * m_camera.zoom + m_right * ((x - m_x) * m_scale) + m_up * ((m_y - y) * m_scale));
    }

    /// Where a point of the scene appears, in pixels.
    Vec3 pixelOf(Vec3 p) const {
        const Vec3 v = p - m_camera.eye;
        const float depth = std::max(dot(v, m_ahead), 1e-3F);
        const float scale = m_camera.zoom / (depth * m_scale);
        return {m_x + dot(v, m_right) * scale, m_y - dot(v, m_up) * scale, depth};
    }
    /// Pixels to a unit of the scene, `depth` in front of the eye.
    float pixelsPerUnit(float depth) const { return m_camera.zoom / (depth * m_scale); }

  private:
    Camera m_camera;
    float m_scale;
    float m_x;
    float m_y;
    Vec3 m_ahead;
    Vec3 m_right;
    Vec3 m_up;
};

} // namespace lumora::samples
