// The magnifier beside the pointer while a colour is picked: the photo's pixels around the pointer, enlarged, with the
// one under it marked, in a ring of its colour. Used by the colour focus.
#pragma once

#include <QImage>
#include <QRect>

class QPainter;

namespace lumora {

/// The place of the magnifier, all in the view's pixels: above and to the right of the pointer, moved to stay inside
/// `room`.
QRect magnifierPlace(QPointF pointer, const QRect &room);

/// Paints it there. The pixel must be inside the photo.
void paintMagnifier(QPainter &painter, const QImage &photo, QPoint pixel, const QRect &place);

} // namespace lumora
