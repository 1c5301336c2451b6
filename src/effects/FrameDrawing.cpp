#include "effects/FrameDrawing.h"

#include "imaging/Picture.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

namespace lumora {

namespace {

// The light comes from above and a little from the left. Lengths in units of the drawing.
constexpr double shadowSoftness = 9; // standard deviation of the blur
constexpr QPointF shadowOffset(3, 6);
const QColor shadowColour(33, 24, 40, 128);

constexpr double beyond = 3 * shadowSoftness;
const QRectF shadowed(-beyond, -beyond, FrameDrawing::side + 2 * beyond, FrameDrawing::side + 2 * beyond);

/// Soft shadows need no detail: they are kept at low resolution, with a margin beyond the edges. Three means of each
/// pixel and so many neighbours on either side have a standard deviation of the square root of n (n + 1) pixels.
template <int neighbours> struct ShadowSize {
    static constexpr int across = neighbours == 1 ? 165 : 287; // shadowed.width() * deviation / shadowSoftness
    static constexpr int padded = (across + 15) / 16 * 16;     // whole vectors, for the compiler
};

/// The position of `area` in `target` when `shown` fills `target`.
QRectF placeOf(const QRectF &area, const QRectF &shown, const QRectF &target) {
    const double x = target.width() / shown.width();
    const double y = target.height() / shown.height();
    return {target.x() + (area.x() - shown.x()) * x, target.y() + (area.y() - shown.y()) * y, area.width() * x,
            area.height() * y};
}

void drawLayer(QSvgRenderer &drawing, const QString &name, const QRectF &bounds, QPainter &painter, const QRectF &shown,
               const QRectF &target) {
    drawing.render(&painter, name, placeOf(bounds, shown, target));
}

/// A shadow's opacity, in sixteenths of a byte, and its turned copy.
template <int neighbours> class Opacity {
  public:
    explicit Opacity(const QImage &layer) {
        for (int y = 0; y < side; ++y) {
            const auto *pixels = reinterpret_cast<const QRgb *>(layer.constScanLine(y));
            for (int x = 0; x < side; ++x) {
                at(y, x) = static_cast<std::uint16_t>(qAlpha(pixels[x]) * 16);
            }
        }
    }
    void soften() {
        for (int direction = 0; direction < 2; ++direction) {
            for (int pass = 0; pass < 3; ++pass) {
                average();
            }
            turn();
        }
    }
    /// Of a pixel: 0 to 255.
    int alpha(int y, int x) const { return m_values[std::size_t(y + neighbours) * row + std::size_t(x)] / 16; }

  private:
    static constexpr int side = ShadowSize<neighbours>::across;
    static constexpr std::size_t row = ShadowSize<neighbours>::padded;

    std::uint16_t &at(int y, int x) { return m_values[std::size_t(y + neighbours) * row + std::size_t(x)]; }

    /// Each becomes the mean of itself and its neighbours above and below. Beyond the edges there is nothing.
    void average() {
        constexpr int count = 2 * neighbours + 1;
        constexpr std::uint32_t share = (1 << 16) / count + 1;
        for (int y = 0; y < side; ++y) {
            const std::uint16_t *from = &at(y - neighbours, 0);
            std::uint16_t *to = m_means.data() + std::size_t(y + neighbours) * row;
            for (std::size_t x = 0; x < row; ++x) {
                std::uint16_t sum = 0;
                for (int i = 0; i < count; ++i) {
                    sum = static_cast<std::uint16_t>(sum + from[std::size_t(i) * row + x]);
                }
                to[x] = static_cast<std::uint16_t>((sum * share) >> 16);
            }
        }
        std::swap(m_values, m_means);
    }
    void turn() {
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < y; ++x) {
                std::swap(at(y, x), at(x, y));
            }
        }
    }

    static constexpr std::size_t size = (std::size_t(side) + 2 * neighbours) * row;
    std::vector<std::uint16_t> m_values = std::vector<std::uint16_t>(size), m_means = m_values;
};

template <int neighbours> QImage shadowOf(QSvgRenderer &drawing, const QString &name, const QRectF &bounds) {
    static const std::array<QRgb, 256> shades = [] {
        std::array<QRgb, 256> each{};
        for (int alpha = 0; alpha < 256; ++alpha) {
            each[std::size_t(alpha)] = qPremultiply(qRgba(shadowColour.red(), shadowColour.green(), shadowColour.blue(),
                                                          alpha * shadowColour.alpha() / 255));
        }
        return each;
    }();
    constexpr int across = ShadowSize<neighbours>::across;
    QImage shadow(across, across, QImage::Format_ARGB32_Premultiplied);
    if (shadow.isNull()) {
        return {};
    }
    shadow.fill(Qt::transparent);
    {
        QPainter painter(&shadow);
        painter.setRenderHint(QPainter::Antialiasing);
        drawLayer(drawing, name, bounds, painter, shadowed, shadow.rect());
    }
    Opacity<neighbours> opacity(shadow);
    opacity.soften();
    for (int y = 0; y < across; ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(shadow.scanLine(y));
        for (int x = 0; x < across; ++x) {
            pixels[x] = shades[std::size_t(opacity.alpha(y, x))];
        }
    }
    return shadow;
}

} // namespace

FrameDrawing::FrameDrawing(const QString &file, FrameShadows shadows) : m_file(file) {
    auto drawing = takeRenderer();
    for (int number = 1;; ++number) {
        const QString name = QStringLiteral("layer%1").arg(number);
        if (!drawing->elementExists(name)) {
            break;
        }
        const QRectF bounds = drawing->boundsOnElement(name);
        m_layers.push_back({name, bounds,
                            shadows == FrameShadows::Small ? shadowOf<1>(*drawing, name, bounds)
                                                           : shadowOf<2>(*drawing, name, bounds)});
    }
    giveBack(std::move(drawing));
}

std::unique_ptr<QSvgRenderer> FrameDrawing::takeRenderer() {
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_idle.empty()) {
            auto renderer = std::move(m_idle.back());
            m_idle.pop_back();
            return renderer;
        }
    }
    return std::make_unique<QSvgRenderer>(m_file);
}

void FrameDrawing::giveBack(std::unique_ptr<QSvgRenderer> renderer) {
    const std::scoped_lock lock(m_mutex);
    m_idle.push_back(std::move(renderer));
}

QImage FrameDrawing::part(FrameLayers layers, const QRectF &shown, QSize size) {
    QImage part = newPicture(size.width(), size.height(), false);
    if (part.isNull() || !part.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied)) {
        return {};
    }
    part.fill(Qt::transparent);
    auto drawing = takeRenderer();
    {
        QPainter painter(&part);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        const int count = static_cast<int>(m_layers.size());
        for (int number = layers.first; number < std::min(layers.end, count + 1); ++number) {
            const Layer &layer = m_layers[std::size_t(number - 1)];
            painter.drawImage(placeOf(shadowed.translated(shadowOffset), shown, part.rect()), layer.shadow);
            drawLayer(*drawing, layer.name, layer.bounds, painter, shown, part.rect());
        }
    }
    giveBack(std::move(drawing));
    return std::move(part).convertToFormat(QImage::Format_ARGB32);
}

} // namespace lumora
