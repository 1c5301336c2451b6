#include "view/PictureSampling.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace lumora {

namespace {

/// Where a result pixel's centre falls on one axis of the source: between `first` and `second`, `weight` 256ths of the
/// way (always 0 for nearest).
struct Tap {
    int first = 0;
    int second = 0;
    quint32 weight = 0;
};

std::vector<Tap> tapsAlong(int from, int count, int length, double scale, double origin, Sampling sampling) {
    std::vector<Tap> taps(static_cast<size_t>(count));
    const auto inside = [length](double at) { return static_cast<int>(std::clamp<double>(at, 0, length - 1)); };
    for (int i = 0; i < count; ++i) {
        const double at = (from + i + 0.5) / scale - origin;
        if (sampling == Sampling::Nearest) {
            taps[static_cast<size_t>(i)] = {inside(std::floor(at)), inside(std::floor(at)), 0};
            continue;
        }
        const double steps = std::round((at - 0.5) * 256);
        const double first = std::floor(steps / 256);
        taps[static_cast<size_t>(i)] = {inside(first), inside(first + 1), static_cast<quint32>(steps - first * 256)};
    }
    return taps;
}

const QRgb *row(const QImage &picture, int y) {
    return reinterpret_cast<const QRgb *>(picture.constScanLine(y));
}

/// Two bytes of every pixel at a time; the blend of equal pixels is that pixel.
QRgb blend(QRgb a, QRgb b, quint32 weight) {
    constexpr quint32 mask = 0x00ff00ff;
    constexpr quint32 half = 0x00800080;
    const quint32 low = ((a & mask) * (256 - weight) + (b & mask) * weight + half) >> 8;
    const quint32 high = ((a >> 8) & mask) * (256 - weight) + ((b >> 8) & mask) * weight + half;
    return (low & mask) | (high & ~mask);
}

void blendRows(const QRgb *a, const QRgb *b, quint32 weight, QRgb *out, int count) {
    for (int x = 0; x < count; ++x) {
        out[x] = blend(a[x], b[x], weight);
    }
}

} // namespace

QImage sampled(const QImage &picture, double scale, const QRect &part, Sampling sampling) {
    return sampled(picture, {scale, scale}, {}, part, sampling);
}

QImage sampled(const QImage &picture, QSizeF scale, QPointF origin, const QRect &part, Sampling sampling) {
    const bool opaque = picture.format() == QImage::Format_RGB32;
    QImage result(part.size(), opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    if (result.isNull()) {
        return {};
    }
    std::vector<Tap> across = tapsAlong(part.x(), part.width(), picture.width(), scale.width(), origin.x(), sampling);
    std::vector<Tap> down = tapsAlong(part.y(), part.height(), picture.height(), scale.height(), origin.y(), sampling);
    // Only this part of the source is looked at; colours of transparent pixels must not bleed, so they are
    // premultiplied first.
    const QRect needed(QPoint(across.front().first, down.front().first),
                       QPoint(across.back().second, down.back().second));
    const QImage source = opaque ? picture : picture.copy(needed).convertToFormat(result.format());
    if (source.isNull()) {
        return {};
    }
    const int left = needed.left();
    const int offset = opaque ? left : 0;
    const int above = opaque ? 0 : needed.top();
    std::vector<QRgb> blended(static_cast<size_t>(needed.width()));
    for (int y = 0; y < part.height(); ++y) {
        const Tap &tap = down[static_cast<size_t>(y)];
        const QRgb *line = row(source, tap.first - above) + offset;
        auto *const out = reinterpret_cast<QRgb *>(result.scanLine(y));
        if (tap.weight > 0) {
            blendRows(line, row(source, tap.second - above) + offset, tap.weight, blended.data(), needed.width());
            line = blended.data();
        }
        if (sampling == Sampling::Nearest) {
            for (int x = 0; x < part.width(); ++x) {
                out[x] = line[across[static_cast<size_t>(x)].first - left];
            }
        } else {
            for (int x = 0; x < part.width(); ++x) {
                const Tap &column = across[static_cast<size_t>(x)];
                out[x] = blend(line[column.first - left], line[column.second - left], column.weight);
            }
        }
    }
    return result;
}

} // namespace lumora
