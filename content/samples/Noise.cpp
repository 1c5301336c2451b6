#include "Noise.h"

namespace lumora::samples {

namespace {

struct Place {
    int whole;
    float part; ///< eased, so that the noise has no visible grid
};

Place place(float v) {
    const float whole = std::floor(v);
    const float t = v - whole;
    return {static_cast<int>(whole), t * t * t * (t * (t * 6 - 15) + 10)};
}

} // namespace

float noise(float x, float y) {
    const auto [i, u] = place(x);
    const auto [j, v] = place(y);
    return mix(mix(hash(i, j), hash(i + 1, j), u), mix(hash(i, j + 1), hash(i + 1, j + 1), u), v);
}

float noise(Vec3 p) {
    const auto [i, u] = place(p.x);
    const auto [j, v] = place(p.y);
    const auto [k, w] = place(p.z);
    const float low =
        mix(mix(hash(i, j, k), hash(i + 1, j, k), u), mix(hash(i, j + 1, k), hash(i + 1, j + 1, k), u), v);
    const float high = mix(mix(hash(i, j, k + 1), hash(i + 1, j, k + 1), u),
                           mix(hash(i, j + 1, k + 1), hash(i + 1, j + 1, k + 1), u), v);
    return mix(low, high, w);
}

// Each octave is turned by the 3-4-5 triangle, which hides the grid that all octaves would share.
float fbm(float x, float y, int octaves) {
    float sum = 0;
    float height = 0.5F;
    for (int i = 0; i < octaves; ++i, height *= 0.5F) {
        sum += height * noise(x, y);
        const float turned = 1.6F * x + 1.2F * y + 17.3F;
        y = 1.6F * y - 1.2F * x + 9.1F;
        x = turned;
    }
    return sum;
}

float fbm(Vec3 p, int octaves) {
    float sum = 0;
    float height = 0.5F;
    for (int i = 0; i < octaves; ++i, height *= 0.5F) {
        sum += height * noise(p);
        p = {1.6F * p.x + 1.2F * p.z + 17.3F, 2.02F * p.y + 3.7F, 1.6F * p.z - 1.2F * p.x + 9.1F};
    }
    return sum;
}

float ridged(float x, float y, int octaves) {
    float sum = 0;
    float height = 0.5F;
    float before = 1;
    for (int i = 0; i < octaves; ++i, height *= 0.5F) {
        const float crest = 1 - std::fabs(2 * noise(x, y) - 1);
        before = crest * crest * mix(0.35F, 1.0F, before); // fine ridges grow on coarse ones, valleys stay smooth
        sum += height * before;
        const float turned = 1.6F * x + 1.2F * y + 17.3F;
        y = 1.6F * y - 1.2F * x + 9.1F;
        x = turned;
    }
    return sum;
}

Cell cells(float x, float y, float jitter) {
    const int i = static_cast<int>(std::floor(x));
    const int j = static_cast<int>(std::floor(y));
    Cell nearest{9, 0, 0, 0};
    for (int b = j - 1; b <= j + 1; ++b) {
        for (int a = i - 1; a <= i + 1; ++a) {
            const float dx = x - (static_cast<float>(a) + 0.5F + jitter * (hash(a, b, 1) - 0.5F));
            const float dy = y - (static_cast<float>(b) + 0.5F + jitter * (hash(a, b, 2) - 0.5F));
            const float d = dx * dx + dy * dy;
            if (d < nearest.distance) {
                nearest = {d, hash(a, b, 3), dx, dy};
            }
        }
    }
    nearest.distance = std::sqrt(nearest.distance);
    return nearest;
}

} // namespace lumora::samples
