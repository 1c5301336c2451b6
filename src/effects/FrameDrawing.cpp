#include "effects/FrameDrawing.h"

#include "imaging/Picture.h"

#include <QPainter>
#include <algorithm>
#include <utility>

namespace lumora {

namespace {

// The light comes from above and a little from the left. Lengths in units of the drawing.
constexpr double shadowSoftness = 9; // standard deviation of the blur
constexpr QPointF shadowOffset(3, 6);
const QColor shadowColour(33, 24, 40, 128);

// Soft shadows need no detail: they are kept at low resolution, with a margin beyond the edges. Three means of as many
// neighbours as this on either side have a standard deviation of the square root of six pixels.
constexpr int neighbours = 2;
constexpr double shadowScale = 2.449 / shadowSoftness;
constexpr double beyond = 3 * shadowSoftness;
const QRectF shadowed(-beyond, -beyond, FrameDrawing::side + 2 * beyond, FrameDrawing::side + 2 * beyond);

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

/// The mean of each value and its neighbours. Values lie `step` bytes apart; beyond the ends there is nothing.
void average(uchar *line, int count, std::ptrdiff_t step) {
    constexpr int width = 2 * neighbours + 1;
    uchar passed[width] = {}; // a ring of the values that the means replaced
    int sum = 0;
    for (int i = 0; i < count + neighbours; ++i) {
        uchar &oldest = passed[i % width];
        sum -= oldest;
        oldest = i < count ? line[i * step] : uchar(0);
        sum += oldest;
        if (i >= neighbours) {
            line[(i - neighbours) * step] = static_cast<uchar>((sum + width / 2) / width);
        }
    }
}

QImage shadowOf(QSvgRenderer &drawing, const QString &name, const QRectF &bounds) {
    QImage layer((shadowed.size() * shadowScale).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (layer.isNull()) {
        return {};
    }
    layer.fill(Qt::transparent);
    {
        QPainter painter(&layer);
        painter.setRenderHint(QPainter::Antialiasing);
        drawLayer(drawing, name, bounds, painter, shadowed, layer.rect());
    }
    QImage shadow = std::move(layer).convertToFormat(QImage::Format_Alpha8);
    uchar *alpha = shadow.bits(); // null without memory
    for (int pass = 0; alpha != nullptr && pass < 3; ++pass) {
        for (int y = 0; y < shadow.height(); ++y) {
            average(alpha + y * shadow.bytesPerLine(), shadow.width(), 1);
        }
        for (int x = 0; x < shadow.width(); ++x) {
            average(alpha + x, shadow.height(), shadow.bytesPerLine());
        }
    }
    shadow.convertTo(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&shadow);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shadow.rect(), shadowColour);
    painter.end();
    return shadow;
}

} // namespace

FrameDrawing::FrameDrawing(const QString &file) : m_file(file) {
    auto drawing = takeRenderer();
    for (int number = 1;; ++number) {
        const QString name = QStringLiteral("layer%1").arg(number);
        if (!drawing->elementExists(name)) {
            break;
        }
        const QRectF bounds = drawing->boundsOnElement(name);
        m_layers.push_back({name, bounds, shadowOf(*drawing, name, bounds)});
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
