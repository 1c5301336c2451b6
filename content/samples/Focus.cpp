#include "Focus.h"

namespace lumora::samples {

float blurOf(const Scene &scene, const Place &place) {
    constexpr float Largest = 0.02F;
    return std::min(scene.aperture * std::fabs(1 - scene.focus / std::max(place.distance, 0.01F)), Largest);
}

/// Every point gathers the light of the discs that reach it, on a spiral outwards (after Dennis Gustafsson, "Bokeh
/// depth of field in a single pass", 2018).
Film focused(const Scene &scene, const Film &film) {
    if (scene.aperture <= 0) {
        return film;
    }
    const float width = static_cast<float>(film.width);
    const auto blur = [&](const Place &place) { return blurOf(scene, place) * width; };
    const float largest = blurOf(scene, {0, 0}) * width;
    Film out = film;
    forRows(film.height, [&](int y) {
        for (int x = 0; x < film.width; ++x) {
            const Place here = film.place(x, y);
            const float mine = blur(here);
            Vec3 sum = film.at(x, y);
            float weight = 1;
            float radius = 0.7F;
            for (float angle = 0; radius < largest; angle += 2.39996323F, radius += 0.7F / radius) {
                const int i = static_cast<int>(std::lround(static_cast<float>(x) + radius * std::cos(angle)));
                const int j = static_cast<int>(std::lround(static_cast<float>(y) + radius * std::sin(angle)));
                if (i < 0 || j < 0 || i >= film.width || j >= film.height) {
                    continue;
                }
                const Place there = film.place(i, j);
                float size = blur(there);
                if (there.distance > here.distance) { // what is behind does not spread over what is sharp before it
                    size = std::min(size, 2 * mine);
                }
                const float reached = smoothStep(radius - 0.5F, radius + 0.5F, size);
                sum += mix(sum * (1 / weight), film.at(i, j), reached);
                weight += 1;
            }
            out.at(x, y) = sum * (1 / weight);
        }
    });
    return out;
}

} // namespace lumora::samples
