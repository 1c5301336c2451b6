#include "tools/stickers/ItemHandles.h"

#include "widgets/Theme.h"

#include <QPaintDevice>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace lumora {

namespace {

constexpr double frameGap = 8;       // pixels between the decoration and its frame
constexpr double smallestFrame = 48; // pixels
constexpr int handlePicture = 28;
constexpr double handleInset = handleSize / 2 + 4; // pixels from the view's edge

/// The box in the decoration's own directions, in the view's pixels round its centre.
QRectF frameBox(const DecorationShape &shape, double scale, double least, double gap) {
    QRectF box(shape.box.topLeft() * scale, shape.box.size() * scale);
    box.adjust(-gap, -gap, gap, gap);
    const double x = std::max(0.0, least - box.width()) / 2;
    const double y = std::max(0.0, least - box.height()) / 2;
    return box.adjusted(-x, -y, x, y);
}

double scaleOf(const QTransform &toView) {
    return std::sqrt(std::abs(toView.determinant()));
}

/// From the decoration's own directions to the view.
QTransform turned(const Decoration &item, const QTransform &toView) {
    const QPointF centre = toView.map(item.centre);
    return QTransform().translate(centre.x(), centre.y()).rotate(item.angle);
}

QPointF keptIn(const QRectF &view, QPointF point) {
    const QRectF room = view.adjusted(handleInset, handleInset, -handleInset, -handleInset);
    return {std::clamp(point.x(), room.left(), std::max(room.left(), room.right())),
            std::clamp(point.y(), room.top(), std::max(room.top(), room.bottom()))};
}

void paintHandle(QPainter &painter, QPointF centre, const char *icon) {
    painter.setPen(QPen(colours::ink, 2));
    painter.setBrush(colours::sun);
    painter.drawEllipse(centre, handleSize / 2 - 1, handleSize / 2 - 1);
    const QPixmap picture = iconPixmap(icon, handlePicture, painter.device()->devicePixelRatioF());
    painter.drawPixmap(centre - QPointF(handlePicture, handlePicture) / 2, picture);
}

} // namespace

QRectF ItemHandles::bounds() const {
    QRectF all = frame.boundingRect();
    const double reach = handleSize / 2;
    for (const QPointF point : {size, turn, tail.value_or(size)}) {
        all |= QRectF(point, point).adjusted(-reach, -reach, reach, reach);
    }
    return all;
}

ItemHandles handlesOf(const Decoration &item, const DecorationShape &shape, const QTransform &toView,
                      const QRectF &view) {
    const QTransform place = turned(item, toView);
    const double scale = scaleOf(toView);
    const QRectF box = frameBox(shape, scale, smallestFrame, frameGap);
    ItemHandles handles;
    handles.frame = place.map(QPolygonF({box.topLeft(), box.topRight(), box.bottomRight(), box.bottomLeft()}));
    const auto kept = [&](QPointF handle) { return handles.isIn(view) ? keptIn(view, handle) : handle; };
    handles.turn = kept(handles.frame.at(1));
    handles.size = kept(handles.frame.at(2));
    if (item.isBubble()) {
        handles.tail = kept(place.map(shape.tail * scale));
    }
    return handles;
}

ItemHandle handleAt(const ItemHandles &handles, QPointF point) {
    const auto at = [point](QPointF handle) {
        return std::hypot(point.x() - handle.x(), point.y() - handle.y()) <= handleSize / 2;
    };
    if (handles.tail && at(*handles.tail)) {
        return ItemHandle::Tail;
    }
    if (at(handles.size)) {
        return ItemHandle::Size;
    }
    if (at(handles.turn)) {
        return ItemHandle::Turn;
    }
    return handles.frame.containsPoint(point, Qt::WindingFill) ? ItemHandle::Inside : ItemHandle::None;
}

bool meets(const Decoration &item, const DecorationShape &shape, const QTransform &toView, QPointF point) {
    const QRectF box = frameBox(shape, scaleOf(toView), handleSize, 0);
    return box.contains(turned(item, toView).inverted().map(point));
}

void paintItemHandles(QPainter &painter, const ItemHandles &handles) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colours::ink, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolygon(handles.frame);
    painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolygon(handles.frame);
    paintHandle(painter, handles.turn, "handle-turn");
    paintHandle(painter, handles.size, "handle-size");
    if (handles.tail) {
        paintHandle(painter, *handles.tail, "handle-tail");
    }
    painter.restore();
}

} // namespace lumora
