#include "support/TestPictures.h"

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

namespace lumora::test {

QImage photoLike(int width, int height, bool transparent) {
    QImage picture(width, height, transparent ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    std::minstd_rand random(12345);
    std::vector<int> wave(static_cast<size_t>(width));
    for (int x = 0; x < width; ++x) {
        wave[static_cast<size_t>(x)] = static_cast<int>(height * 0.2 * std::sin(x * 6.3 / width));
    }
    for (int y = 0; y < height; ++y) {
        auto *row = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const int noise = static_cast<int>(random() % 17) - 8;
            const bool sky = y * 3 < height + wave[static_cast<size_t>(x)];
            const int red = sky ? 120 + 60 * y / height : 60 + 150 * x / width;
            const int green = sky ? 170 : 140 - 80 * y / height;
            const int blue = sky ? 230 : 40 + 60 * x / width;
            const auto byte = [&](int value) { return std::clamp(value + noise, 0, 255); };
            const int alpha = transparent ? std::min(255, 510 * x / width) : 255;
            row[x] = qRgba(byte(red), byte(green), byte(blue), alpha);
        }
    }
    return picture;
}

QPoint firstDifference(const QImage &a, const QImage &b) {
    if (a.size() != b.size()) {
        return {0, 0};
    }
    for (int y = 0; y < a.height(); ++y) {
        if (a.format() == b.format() && a.colorCount() == 0 &&
            std::memcmp(a.constScanLine(y), b.constScanLine(y), (size_t(a.width()) * size_t(a.depth()) + 7) / 8) == 0) {
            continue;
        }
        for (int x = 0; x < a.width(); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y)) {
                return {x, y};
            }
        }
    }
    return {-1, -1};
}

} // namespace lumora::test
