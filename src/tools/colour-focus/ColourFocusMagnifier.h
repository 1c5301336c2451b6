// The magnifier beside the pointer while a colour is picked: the photo's pixels round the one under the pointer, large,
// with that one marked, in a ring of its colour. Called by the colour focus.
#pragma once

#include <QImage>
#include <QRect>

class QPainter;

namespace lumora {

/// Where the magnifier of a pointer lies, all in the view's pixels: above and to the right, elsewhere at the room's
/// edges.
QRect magnifierPlace(QPointF pointer, const QRect &room);

/// Paints it there. The pixel lies in the photo.
void paintMagnifier(QPainter &painter, const QImage &photo, QPoint pixel, const QRect &place);

} // namespace lumora
