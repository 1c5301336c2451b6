#include "tools/canvas/Dimming.h"

#include "widgets/Theme.h"

#include <QPainter>
#include <cmath>

namespace lumora {

namespace {
constexpr int dimming = 150; // of 255
}

QRectF onDevicePixels(const QRectF &rect, double devicePixels) {
    const auto whole = [devicePixels](double value) { return std::round(value * devicePixels) / devicePixels; };
    return {QPointF(whole(rect.left()), whole(rect.top())), QPointF(whole(rect.right()), whole(rect.bottom()))};
}

void paintDimming(QPainter &painter, const QRectF &kept, const QRectF &photo) {
    QColor shade = colours::ink;
    shade.setAlpha(dimming);
    const QRectF clear = kept.intersected(photo);
    if (clear.isEmpty()) {
        painter.fillRect(photo, shade);
        return;
    }
    painter.fillRect(QRectF(photo.topLeft(), QPointF(photo.right(), clear.top())), shade);
    painter.fillRect(QRectF(QPointF(photo.left(), clear.bottom()), photo.bottomRight()), shade);
    painter.fillRect(QRectF(QPointF(photo.left(), clear.top()), clear.bottomLeft()), shade);
    painter.fillRect(QRectF(clear.topRight(), QPointF(photo.right(), clear.bottom())), shade);
}

} // namespace lumora
