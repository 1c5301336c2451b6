#include "tools/crop/CropFrame.h"

#include "tools/canvas/Dimming.h"
#include "widgets/Theme.h"

#include <QPaintDevice>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

namespace lumora {

namespace {

constexpr double reach = 24;         // pixels: half of what a finger needs
constexpr double smallestGrip = 54;  // pixels: room for three separate touch zones
constexpr double handle = 20;        // pixels across
constexpr double roomForMiddle = 72; // pixels of an edge: minimum for a handle in its middle
constexpr double labelGap = 16;      // pixels between the frame and its size

/// The frame for hit tests: a tiny one is enlarged.
QRectF gripArea(const QRectF &frame) {
    const double x = std::max(0.0, smallestGrip - frame.width()) / 2;
    const double y = std::max(0.0, smallestGrip - frame.height()) / 2;
    return frame.adjusted(-x, -y, x, y);
}

/// -1 near `first`, 1 near `last`, 0 between them.
int zone(double at, double first, double last) {
    const double inward = std::min(reach, (last - first) / 3);
    if (at < first + inward) {
        return -1;
    }
    return at > last - inward ? 1 : 0;
}

void paintThirds(QPainter &painter, const QRectF &frame) {
    painter.setPen(QPen(QColor(255, 255, 255, 150), 1));
    for (const double part : {1 / 3.0, 2 / 3.0}) {
        const double x = frame.left() + frame.width() * part;
        const double y = frame.top() + frame.height() * part;
        painter.drawLine(QPointF(x, frame.top()), QPointF(x, frame.bottom()));
        painter.drawLine(QPointF(frame.left(), y), QPointF(frame.right(), y));
    }
}

void paintHandles(QPainter &painter, const QRectF &frame) {
    const QRectF area = gripArea(frame);
    const bool middleX = area.width() >= roomForMiddle;
    const bool middleY = area.height() >= roomForMiddle;
    if (area.size() != frame.size()) { // what belongs together
        painter.setPen(QPen(Qt::white, 1, Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(area);
    }
    painter.setPen(QPen(colours::ink, 2));
    painter.setBrush(colours::sun);
    for (const double x : {area.left(), area.center().x(), area.right()}) {
        for (const double y : {area.top(), area.center().y(), area.bottom()}) {
            const bool atMiddleX = x == area.center().x();
            const bool atMiddleY = y == area.center().y();
            if ((!atMiddleX || middleX) && (!atMiddleY || middleY) && (!atMiddleX || !atMiddleY)) {
                painter.drawEllipse(QPointF(x, y), handle / 2 - 1, handle / 2 - 1);
            }
        }
    }
}

/// Below the frame, above it when there is no space, else inside; always in view.
QRectF labelPlace(const QRectF &frame, const QRectF &view, QSizeF size) {
    const QRectF area = gripArea(frame);
    double top = area.bottom() + labelGap;
    if (top + size.height() > view.bottom()) {
        top = area.top() - labelGap - size.height();
    }
    if (top < view.top()) {
        top = std::min(area.bottom(), view.bottom()) - labelGap - size.height();
    }
    const QRectF shown = area.intersected(view);
    const double middle = (shown.isEmpty() ? area : shown).center().x();
    const double left =
        std::clamp(middle - size.width() / 2, view.left(), std::max(view.left(), view.right() - size.width()));
    top = std::clamp(top, view.top(), std::max(view.top(), view.bottom() - size.height()));
    return {QPointF(left, top), size};
}

void paintSize(QPainter &painter, const QRectF &frame, const QRectF &view, const QString &text) {
    const QSizeF size = painter.fontMetrics().size(Qt::TextSingleLine, text) + QSize(24, 8);
    const QRectF place = labelPlace(frame, view.adjusted(4, 4, -4, -4), size);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours::ink);
    painter.drawRoundedRect(place, place.height() / 2, place.height() / 2);
    painter.setPen(colours::paper);
    painter.drawText(place, Qt::AlignCenter, text);
}

} // namespace

CropGrip cropGripAt(QPointF point, const QRectF &frame) {
    const QRectF area = gripArea(frame);
    if (!area.adjusted(-reach, -reach, reach, reach).contains(point)) {
        return {};
    }
    const int across = zone(point.x(), area.left(), area.right());
    const int down = zone(point.y(), area.top(), area.bottom());
    CropGrip grip{.inside = across == 0 && down == 0, .edges = {}};
    grip.edges.setFlag(Qt::LeftEdge, across < 0);
    grip.edges.setFlag(Qt::RightEdge, across > 0);
    grip.edges.setFlag(Qt::TopEdge, down < 0);
    grip.edges.setFlag(Qt::BottomEdge, down > 0);
    return grip;
}

QRect draggedCropFrame(const QRect &frame, CropGrip grip, QPoint by, QSize picture) {
    if (grip.inside) {
        const auto kept = [](int from, int step, int length, int side) {
            return std::clamp(from + step, std::min(from, 1 - length), std::max(from, side - 1));
        };
        return {QPoint(kept(frame.x(), by.x(), frame.width(), picture.width()),
                       kept(frame.y(), by.y(), frame.height(), picture.height())),
                frame.size()};
    }
    const auto sized = [](int first, int length, int step, bool holdsFirst, bool holdsLast) {
        const int begin = first + (holdsFirst ? step : 0);
        const int end = first + length + (holdsLast ? step : 0);
        return std::pair(std::min(begin, end), std::max(1, std::abs(end - begin)));
    };
    const auto [left, width] =
        sized(frame.x(), frame.width(), by.x(), grip.edges.testFlag(Qt::LeftEdge), grip.edges.testFlag(Qt::RightEdge));
    const auto [top, height] =
        sized(frame.y(), frame.height(), by.y(), grip.edges.testFlag(Qt::TopEdge), grip.edges.testFlag(Qt::BottomEdge));
    return {left, top, width, height};
}

void paintCropFrame(QPainter &painter, const QRectF &frame, const QRectF &photo, const QRectF &view,
                    const QString &size, bool held) {
    painter.save();
    const double devicePixels = painter.device()->devicePixelRatioF();
    const QRectF line = onDevicePixels(frame, devicePixels);
    paintDimming(painter, line, onDevicePixels(photo, devicePixels));
    if (held) {
        paintThirds(painter, line);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colours::ink, 1, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(line.adjusted(-2.5, -2.5, 2.5, 2.5));
    painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(line.adjusted(-1, -1, 1, 1));
    painter.setRenderHint(QPainter::Antialiasing);
    paintHandles(painter, line);
    paintSize(painter, line, view, size);
    painter.restore();
}

} // namespace lumora
