#include "effects/FrameDrawing.h"

#include "imaging/EffectEngine.h"
#include "imaging/Picture.h"
#include "imaging/effects/Blur.h"

#include <QPainter>
#include <algorithm>
#include <utility>

namespace lumora {

namespace {

// The light comes from above and a little from the left. Lengths in units of the drawing.
constexpr double shadowSoftness = 9; // standard deviation of the blur
constexpr QPointF shadowOffset(3, 6);
const QColor shadowColour(33, 24, 40, 128);

// Soft shadows need no detail: they are kept at low resolution, with a margin beyond the edges.
constexpr int shadowBlur = 3; // pixels
constexpr double shadowScale = shadowBlur / shadowSoftness;
constexpr double beyond = 3 * shadowSoftness;
const QRectF shadowed(-beyond, -beyond, FrameDrawing::side + 2 * beyond, FrameDrawing::side + 2 * beyond);

/// The position of `area` in `target` when `shown` fills `target`.
QRectF placeOf(const QRectF &area, const QRectF &shown, const QRectF &target) {
    const double x = target.width() / shown.width();
    const double y = target.height() / shown.height();
    return {target.x() + (area.x() - shown.x()) * x, target.y() + (area.y() - shown.y()) * y, area.width() * x,
            area.height() * y};
}

void drawLayer(QSvgRenderer &drawing, const QString &name, QPainter &painter, const QRectF &shown,
               const QRectF &target) {
    drawing.render(&painter, name, placeOf(drawing.boundsOnElement(name), shown, target));
}

QImage shadowOf(QSvgRenderer &drawing, const QString &name) {
    QImage shadow((shadowed.size() * shadowScale).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (shadow.isNull()) {
        return {};
    }
    shadow.fill(Qt::transparent);
    {
        QPainter painter(&shadow);
        painter.setRenderHint(QPainter::Antialiasing);
        drawLayer(drawing, name, painter, shadowed, shadow.rect());
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(shadow.rect(), shadowColour);
    }
    EffectEngine engine;
    engine.setPicture(std::move(shadow).convertToFormat(QImage::Format_ARGB32));
    engine.apply({applyBlur, {shadowBlur}}, false); // without memory the shadow is hard
    return engine.picture().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

FrameDrawing::FrameDrawing(const QString &file) : m_file(file) {
    auto drawing = takeRenderer();
    for (int number = 1;; ++number) {
        const QString name = QStringLiteral("layer%1").arg(number);
        if (!drawing->elementExists(name)) {
            break;
        }
        m_layers.push_back({name, shadowOf(*drawing, name)});
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
            drawLayer(*drawing, layer.name, painter, shown, part.rect());
        }
    }
    giveBack(std::move(drawing));
    return std::move(part).convertToFormat(QImage::Format_ARGB32);
}

} // namespace lumora
