// The crop frame: hit testing for finger and mouse, the frame after a drag, and how it is drawn. Used by the crop tool.
#pragma once

#include <QRectF>
#include <QString>
#include <Qt>

class QPainter;

namespace lumora {

/// The grabbed part of the frame: its inside, or one or two edges. Nothing outside it.
struct CropGrip {
    bool inside = false;
    Qt::Edges edges;

    bool isNothing() const { return !inside && !edges; }
    bool operator==(const CropGrip &) const = default;
};

/// The part that a press at that point grabs; all in the view's pixels. The zones reach 24 pixels beyond the edges and
/// up to as far inside, and a third of a small frame always moves it.
CropGrip cropGripAt(QPointF point, const QRectF &frame);

/// The frame after the grabbed part was dragged by that distance, in picture pixels. An edge that passes the opposite
/// one swaps with it; the frame is never smaller than 1 x 1. A frame moved as a whole keeps at least a pixel on a
/// picture of that size, or does not move farther away from it.
QRect draggedCropFrame(const QRect &frame, CropGrip grip, QPoint by, QSize picture);

/// Dims the photo outside the frame and draws the frame, its eight handles and its size in words, which keeps inside
/// `view`. All in the view's pixels; `held` while it is being dragged, which shows the lines of the thirds.
void paintCropFrame(QPainter &painter, const QRectF &frame, const QRectF &photo, const QRectF &view,
                    const QString &size, bool held);

} // namespace lumora
