#include "imaging/kernels/LocalBase.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace lumora {

namespace {

constexpr double textureVariance = 0.04; // of levels 0 to 1; what varies less is smoothed

using Plane = std::vector<double>;

/// The means of `count` numbers, `step` apart, over their neighbourhoods along the line.
void smoothLine(double *line, std::ptrdiff_t step, int count, int reach, Plane &sums) {
    sums.resize(std::size_t(count) + 1);
    sums[0] = 0;
    for (int i = 0; i < count; ++i) {
        sums[std::size_t(i) + 1] = sums[std::size_t(i)] + line[i * step];
    }
    for (int i = 0; i < count; ++i) {
        const int first = std::max(0, i - reach);
        const int end = std::min(count, i + reach + 1);
        line[i * step] = (sums[std::size_t(end)] - sums[std::size_t(first)]) / (end - first);
    }
}

void smooth(Plane &plane, int width, int height, int reach) {
    Plane sums;
    for (int y = 0; y < height; ++y) {
        smoothLine(plane.data() + std::ptrdiff_t(y) * width, 1, width, reach, sums);
    }
    for (int x = 0; x < width; ++x) {
        smoothLine(plane.data() + x, width, height, reach, sums);
    }
}

std::uint8_t roundedByte(double value) {
    return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 255L));
}

} // namespace

void findLocalBase(PixelView small, int reach) {
    const int width = small.width;
    const int height = small.height;
    Plane factor(std::size_t(width) * std::size_t(height)); // first the mean of the squares
    Plane added(factor.size());                             // first the mean
    std::size_t i = 0;
    for (int y = 0; y < height; ++y) {
        const std::uint8_t *pixel = small.row(y);
        for (int x = 0; x < width; ++x, ++i, pixel += 4) {
            const double luma = (0.114 * pixel[0] + 0.587 * pixel[1] + 0.299 * pixel[2]) / 255;
            added[i] = luma;
            factor[i] = luma * luma;
        }
    }
    smooth(added, width, height, reach);
    smooth(factor, width, height, reach);
    for (i = 0; i < factor.size(); ++i) {
        const double variance = std::max(0.0, factor[i] - added[i] * added[i]);
        factor[i] = variance / (variance + textureVariance);
        added[i] *= 1 - factor[i];
    }
    smooth(added, width, height, reach);
    smooth(factor, width, height, reach);
    i = 0;
    for (int y = 0; y < height; ++y) {
        std::uint8_t *pixel = small.row(y);
        for (int x = 0; x < width; ++x, ++i, pixel += 4) {
            pixel[0] = roundedByte(factor[i] * 256);
            pixel[1] = roundedByte(added[i] * 255);
            pixel[2] = 0;
            pixel[3] = 255;
        }
    }
}

} // namespace lumora
