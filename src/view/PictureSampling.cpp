#include "view/PictureSampling.h"

#include "imaging/kernels/BlendPixels.h"

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

/// The taps of the columns as the kernel takes them, counted from the column `left`.
class Columns {
  public:
    Columns(const std::vector<Tap> &taps, int left) {
        for (const Tap &tap : taps) {
            m_first.push_back(tap.first - left);
            m_second.push_back(tap.second - left);
            m_weight.push_back(tap.weight * 0x00010001U);
        }
    }
    PixelPairs pairs() const { return {m_first, m_second, m_weight}; }

  private:
    std::vector<qint32> m_first;
    std::vector<qint32> m_second;
    std::vector<quint32> m_weight;
};

const QRgb *row(const QImage &picture, int y) {
    return reinterpret_cast<const QRgb *>(picture.constScanLine(y));
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
    const std::vector<Tap> across =
        tapsAlong(part.x(), part.width(), picture.width(), scale.width(), origin.x(), sampling);
    const std::vector<Tap> down =
        tapsAlong(part.y(), part.height(), picture.height(), scale.height(), origin.y(), sampling);
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
    const auto width = static_cast<size_t>(needed.width());
    std::vector<QRgb> blended(width);
    const Columns columns(across, left);
    for (int y = 0; y < part.height(); ++y) {
        const Tap &tap = down[static_cast<size_t>(y)];
        const QRgb *line = row(source, tap.first - above) + offset;
        const std::span<QRgb> out(reinterpret_cast<QRgb *>(result.scanLine(y)), across.size());
        if (tap.weight > 0) {
            const QRgb *below = row(source, tap.second - above) + offset;
            blendRows({line, width}, {below, width}, tap.weight, blended);
            line = blended.data();
        }
        if (sampling == Sampling::Bilinear) {
            blendPairs(line, columns.pairs(), out);
            continue;
        }
        std::ranges::transform(columns.pairs().first, out.begin(), [line](qint32 column) { return line[column]; });
    }
    return result;
}

} // namespace lumora
