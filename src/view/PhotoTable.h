// What is under and round the photo: the hatched table, the photo's shadow and border, the checkerboard under its
// transparent parts.
#pragma once

#include <QImage>
#include <QPixmap>
#include <QRectF>

class QPainter;

namespace lumora {

class PhotoTable {
  public:
    /// Paints everything outside the photo, as far as the painter's clip lets it. `photo` in the painter's coordinates,
    /// empty without one; the hatching moves with `origin`, `devicePixels` are those to a painter's unit.
    void paintTable(QPainter &painter, const QRectF &area, const QRectF &photo, QPointF origin, qreal devicePixels);
    /// Paints the checkerboard for transparent pixels into the area; it moves with `origin`.
    void paintChecks(QPainter &painter, const QRectF &area, QPointF origin, qreal devicePixels);

  private:
    void makeTiles(qreal devicePixels);

    QPixmap m_hatching, m_checks;
    QColor m_paper; ///< below the hatching
};

/// What is seen through the transparent parts of a small picture of the photo.
enum class Beneath { Checks, White };

/// The photo as a small picture in a window, no larger than `room` (pixels of the window); null for a null photo.
QPixmap smallPhoto(const QImage &photo, QSize room, qreal devicePixels, Beneath beneath);

} // namespace lumora
