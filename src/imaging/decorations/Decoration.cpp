#include "imaging/decorations/Decoration.h"
#include "imaging/decorations/LetteringTable.h"
#include "imaging/decorations/WordPath.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lumora {

namespace {

constexpr QColor ink(0x2B, 0x28, 0x40);
constexpr QColor paper(0xFF, 0xFF, 0xFF);

// Lengths in line heights.
constexpr double widestWords = 9;
constexpr double bubbleLine = 0.1;
constexpr double bubblePadding = 0.25;
constexpr double tailRoot = 0.45;  // half of the tail's width in the bubble's middle, of the bubble's shorter radius
constexpr double tailLength = 1.3; // below the bubble, while nobody has dragged it
constexpr double cloudBump = 0.62; // radius
constexpr double trailCircles[] = {0.42, 0.3, 0.2};

// A superellipse-like body of four Bézier curves; its corners reach (4 + 3 roundness) / 8 of its radii.
constexpr double roundness = 0.74;
constexpr double cornerReach = (4 + 3 * roundness) / 8;

void addLayer(DecorationShape &shape, const QPainterPath &path, const QColor &fill,
              const QColor &line = Qt::transparent, double lineWidth = 0) {
    shape.layers.push_back({path, fill, line, lineWidth});
    const double beyond = lineWidth / 2;
    shape.bounds |= path.boundingRect().adjusted(-beyond, -beyond, beyond, beyond);
}

QPainterPath bodyOf(QSizeF radii) {
    const double x = radii.width();
    const double y = radii.height();
    const double k = roundness;
    QPainterPath path;
    path.moveTo(x, 0);
    path.cubicTo(x, k * y, k * x, y, 0, y);
    path.cubicTo(-k * x, y, -x, k * y, -x, 0);
    path.cubicTo(-x, -k * y, -k * x, -y, 0, -y);
    path.cubicTo(k * x, -y, x, -k * y, x, 0);
    return path;
}

/// The body with bumps along its edge.
QPainterPath cloudOf(QSizeF radii, double bump) {
    const QPainterPath body = bodyOf(radii);
    const int bumps = std::max(8, qRound(body.length() / (1.35 * bump)));
    QPainterPath path = body;
    path.setFillRule(Qt::WindingFill);
    for (int i = 0; i < bumps; ++i) {
        const double radius = bump * (i % 2 == 0 ? 1 : 0.84);
        path.addEllipse(body.pointAtPercent(double(i) / bumps), radius, radius);
    }
    return path;
}

/// A wedge from the bubble's middle, a little curved.
QPainterPath tailTo(QPointF tip, QSizeF radii) {
    const double length = std::hypot(tip.x(), tip.y());
    QPainterPath path;
    if (length <= 0) {
        return path;
    }
    const QPointF along = tip / length;
    const QPointF across = QPointF(-along.y(), along.x()) * tailRoot * std::min(radii.width(), radii.height());
    path.moveTo(across);
    path.quadTo(tip * 0.6 + across * 0.5, tip);
    path.quadTo(tip * 0.6 - across * 0.15, -across);
    path.closeSubpath();
    return path;
}

/// Smaller and smaller circles; the last is at the tip.
QPainterPath trailTo(QPointF tip, QSizeF radii, double lineHeight) {
    const double length = std::hypot(tip.x(), tip.y());
    QPainterPath path;
    if (length <= 0) {
        return path;
    }
    // Where the way to the tip leaves the bubble, as if that were an ellipse.
    const double edge = 1 / std::hypot(tip.x() / radii.width(), tip.y() / radii.height()) +
                        (cloudBump + trailCircles[0]) * lineHeight / length;
    const int count = static_cast<int>(std::size(trailCircles));
    for (int i = 0; i < count; ++i) {
        const double part = edge + (1 - edge) * i / (count - 1);
        const double radius = trailCircles[i] * lineHeight;
        if (edge < 1) {
            path.addEllipse(tip * part, radius, radius);
        }
    }
    return path;
}

DecorationShape stickerShape(const Decoration &decoration) {
    const double side = decoration.size;
    DecorationShape shape;
    shape.sticker = decoration.row;
    shape.box = shape.bounds = QRectF(-side / 2, -side / 2, side, side);
    return shape;
}

DecorationShape wordsShape(const Decoration &decoration) {
    const LetteringRow &style = letterings()[static_cast<std::size_t>(decoration.row)];
    const double unit = decoration.size;
    const WordPath words = bentWords(wordPath(decoration.text, unit, widestWords), unit, style.course);
    const double line = 2 * style.lineWidth * unit; // half of it is behind the letter
    DecorationShape shape;
    shape.box = words.box;
    shape.bounds = words.box;
    if (style.blockDepth > 0) {
        const QPointF depth(style.blockDepth * unit / 2, style.blockDepth * unit);
        addLayer(shape, words.path.translated(depth), style.block, style.block, line);
        addLayer(shape, words.path.translated(depth / 2), style.block, style.block, line);
    }
    addLayer(shape, words.path, style.line, style.line, line);
    addLayer(shape, words.path, style.fill);
    return shape;
}

DecorationShape bubbleShape(const Decoration &decoration) {
    const bool speech = decoration.kind == Decoration::Kind::SpeechBubble;
    const double unit = decoration.size;
    const WordPath words = wordPath(decoration.text, unit, compactWidth(decoration.text));
    const double padding = bubblePadding * unit;
    const QSizeF radii((words.box.width() / 2 + padding) / cornerReach,
                       (words.box.height() / 2 + padding) / cornerReach);
    const double around = speech ? 0 : cloudBump * unit;
    DecorationShape shape;
    shape.box = QRectF(-radii.width() - around, -radii.height() - around, 2 * (radii.width() + around),
                       2 * (radii.height() + around));
    shape.tail = QPointF(-0.55 * radii.width(), radii.height() + around + tailLength * unit);
    if (decoration.speaker) {
        shape.tail = QTransform().rotate(-decoration.angle).map(*decoration.speaker - decoration.centre);
    }
    const QPainterPath body = speech ? bodyOf(radii) : cloudOf(radii, cloudBump * unit);
    const QPainterPath tail = speech ? tailTo(shape.tail, radii) : trailTo(shape.tail, radii, unit);
    // The line of all parts first, then their inside: they become one outline.
    for (const QPainterPath &part : {body, tail}) {
        addLayer(shape, part, ink, ink, 2 * bubbleLine * unit);
    }
    for (const QPainterPath &part : {body, tail}) {
        addLayer(shape, part, paper);
    }
    addLayer(shape, words.path, ink);
    return shape;
}

} // namespace

DecorationShape shapeOf(const Decoration &decoration) {
    switch (decoration.kind) {
    case Decoration::Kind::Sticker:
        return stickerShape(decoration);
    case Decoration::Kind::Words:
        return wordsShape(decoration);
    default:
        return bubbleShape(decoration);
    }
}

QTransform placeOf(const Decoration &decoration) {
    return QTransform().translate(decoration.centre.x(), decoration.centre.y()).rotate(decoration.angle);
}

} // namespace lumora
