#include "effects/FrameDrawing.h"

#include "imaging/EffectEngine.h"
#include "imaging/Picture.h"

#include <QPainter>
#include <utility>

namespace lumora {

namespace {

// The light comes from above and a little from the left. Lengths in units of the drawing.
constexpr double shadowSoftness = 9; // standard deviation of the blur
constexpr QPointF shadowOffset(3, 6);
constexpr double shadowOpacity = 0.5;
const QColor shadowColour(33, 24, 40);

// What is soft needs no detail: shadows are kept small, with some of what lies beyond the edges.
constexpr int shadowBlur = 3; // pixels
constexpr double shadowScale = shadowBlur / shadowSoftness;
constexpr double beyond = 3 * shadowSoftness;
const QRectF shadowed(-beyond, -beyond, FrameDrawing::side + 2 * beyond, FrameDrawing::side + 2 * beyond);

/// Where `shown` fills `target`, this is where `area` lies.
QRectF placeOf(const QRectF &area, const QRectF &shown, const QRectF &target) {
    const double x = target.width() / shown.width();
    const double y = target.height() / shown.height();
    return {target.x() + (area.x() - shown.x()) * x, target.y() + (area.y() - shown.y()) * y, area.width() * x,
            area.height() * y};
}

} // namespace

FrameDrawing::FrameDrawing(const QString &file) : m_renderer(file) {
    for (int number = 1;; ++number) {
        const QString name = QStringLiteral("layer%1").arg(number);
        if (!m_renderer.elementExists(name)) {
            break;
        }
        m_layers.push_back({name, shadowOf(name)});
    }
}

void FrameDrawing::drawLayer(const QString &name, QPainter &painter, const QRectF &shown, const QRectF &target) {
    m_renderer.render(&painter, name, placeOf(m_renderer.boundsOnElement(name), shown, target));
}

QImage FrameDrawing::shadowOf(const QString &name) {
    QImage shadow((shadowed.size() * shadowScale).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (shadow.isNull()) {
        return {};
    }
    shadow.fill(Qt::transparent);
    {
        QPainter painter(&shadow);
        painter.setRenderHint(QPainter::Antialiasing);
        drawLayer(name, painter, shadowed, shadow.rect());
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(shadow.rect(), shadowColour);
    }
    EffectEngine engine;
    engine.setPicture(std::move(shadow).convertToFormat(QImage::Format_ARGB32));
    engine.blur(shadowBlur, false); // refused, it is a hard shadow
    return engine.picture().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage FrameDrawing::part(const QRectF &shown, QSize size) {
    QImage part = newPicture(size.width(), size.height(), false);
    if (part.isNull() || !part.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied)) {
        return {};
    }
    part.fill(Qt::transparent);
    {
        QPainter painter(&part);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        for (const Layer &layer : m_layers) {
            painter.setOpacity(shadowOpacity);
            painter.drawImage(placeOf(shadowed.translated(shadowOffset), shown, part.rect()), layer.shadow);
            painter.setOpacity(1);
            drawLayer(layer.name, painter, shown, part.rect());
        }
    }
    return std::move(part).convertToFormat(QImage::Format_ARGB32);
}

} // namespace lumora
