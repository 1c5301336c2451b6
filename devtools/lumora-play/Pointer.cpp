#include "Pointer.h"

#include <QPainter>
#include <QPainterPath>

namespace lumora::play {

namespace {

constexpr QColor sun(255, 197, 61);
constexpr QColor ink(43, 40, 64);
constexpr QColor coral(255, 107, 87);
constexpr qreal ringRadius = 24; // pixels

/// An arrow of 40 pixels' height with its tip at 0, 0.
QPainterPath arrow() {
    QPainterPath path;
    path.addPolygon(QPolygonF({{0, 0}, {0, 33}, {8, 26}, {14, 39}, {21, 36}, {15, 23}, {26, 22}}));
    path.closeSubpath();
    return path;
}

} // namespace

void paintPointer(QPainter &painter, QPoint tip, bool pressed) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(tip);
    if (pressed) {
        painter.setBrush(QColor(coral.red(), coral.green(), coral.blue(), 60));
        painter.setPen(QPen(Qt::white, 9));
        painter.drawEllipse(QPointF(0, 0), ringRadius, ringRadius);
        painter.setPen(QPen(coral, 5));
        painter.drawEllipse(QPointF(0, 0), ringRadius, ringRadius);
    }
    // White around the ink: visible on a dark photo too.
    painter.setPen(QPen(Qt::white, 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(arrow());
    painter.setPen(QPen(ink, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(sun);
    painter.drawPath(arrow());
    painter.restore();
}

} // namespace lumora::play
