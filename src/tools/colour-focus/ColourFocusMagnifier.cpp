#include "tools/colour-focus/ColourFocusMagnifier.h"

#include "widgets/Theme.h"

#include <QPainter>
#include <QPainterPath>

namespace lumora {

namespace {

constexpr int reach = 5;      // pixels of the photo on each side of the one in the middle
constexpr int pixelSide = 11; // pixels of the view per pixel of the photo
constexpr int ring = 9;       // wide
constexpr int edge = 2;       // of dark and white round the ring
constexpr int lens = (2 * reach + 1) * pixelSide;
constexpr int magnifierSide = lens + 2 * (ring + edge);
constexpr QColor gridLine(43, 40, 64, 40);
constexpr int distance = 26; // from the pointer's tip, past its drawing

} // namespace

QRect magnifierPlace(QPointF pointer, const QRect &room) {
    const QPoint at = pointer.toPoint();
    int left = at.x() + distance;
    int top = at.y() - distance - magnifierSide;
    if (left + magnifierSide > room.right()) {
        left = at.x() - distance - magnifierSide;
    }
    if (top < room.top()) {
        top = at.y() + distance;
    }
    return {left, top, magnifierSide, magnifierSide};
}

void paintMagnifier(QPainter &painter, const QImage &photo, QPoint pixel, const QRect &place) {
    const QRectF glass = QRectF(place).adjusted(ring + edge, ring + edge, -ring - edge, -ring - edge);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours::ink, 1.5));
    painter.setBrush(Qt::white);
    painter.drawEllipse(QRectF(place).adjusted(1, 1, -1, -1));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(photo.pixel(pixel)));
    painter.drawEllipse(glass.adjusted(-ring, -ring, ring, ring));
    painter.setBrush(colours::parchment); // beyond the photo
    painter.drawEllipse(glass.adjusted(-edge, -edge, edge, edge));
    QPainterPath round;
    round.addEllipse(glass);
    painter.setClipPath(round, Qt::IntersectClip);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QPoint first = pixel - QPoint(reach, reach);
    const QRect shown = QRect(first, QSize(2 * reach + 1, 2 * reach + 1)) & photo.rect();
    const QRectF target(glass.topLeft() + QPointF(shown.topLeft() - first) * pixelSide,
                        QSizeF(shown.size()) * pixelSide);
    painter.drawImage(target, photo, shown); // without smoothing: squares
    painter.setPen(QPen(gridLine, 1));
    for (int i = 1; i < 2 * reach + 1; ++i) {
        const QPointF at = glass.topLeft() + QPointF(i, i) * pixelSide;
        painter.drawLine(QPointF(at.x(), glass.top()), QPointF(at.x(), glass.bottom()));
        painter.drawLine(QPointF(glass.left(), at.y()), QPointF(glass.right(), at.y()));
    }
    const QRectF middle(glass.topLeft() + QPointF(reach, reach) * pixelSide, QSizeF(pixelSide, pixelSide));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 3));
    painter.drawRect(middle.adjusted(-1, -1, 1, 1));
    painter.setPen(QPen(colours::ink, 1));
    painter.drawRect(middle.adjusted(-1, -1, 1, 1));
    painter.restore();
}

} // namespace lumora
