// A line of black and white dashes made of whole pixels of the screen, whose dashes can move along it at no cost: its
// pixels store their position along the line, and the colours come from a palette. SelectionOutline draws with it.
#pragma once

#include <QImage>
#include <QRect>
#include <vector>

class QPainter;

namespace lumora {

class DashedLine {
  public:
    /// Clears the line; the next one is on a surface of that size in device pixels.
    void clear(QSize surface, qreal devicePixelRatio);
    /// Continues the line from a new position, in device pixels from the surface's top left corner; it may be outside
    /// the surface. Moving the whole line by whole pixels moves its pixels.
    void moveTo(QPointF devicePoint);
    /// Draws a segment to that position. Returns the part of the surface around it, in device pixels, which may be
    /// empty.
    QRect lineTo(QPointF devicePoint);

    /// The area of the line: non-overlapping rectangles of the surface in device pixels.
    std::vector<QRect> parts() const;
    bool isEmpty() const;
    /// Paints the line on a surface with that device pixel ratio whose top left corner is the painter's origin, the
    /// dashes moved by a number of steps.
    void paint(QPainter &painter, int steps);

  private:
    void stamp(int x, int y, int place);

    qreal m_devicePixels = 1;
    int m_thickness = 1; ///< device pixels
    int m_dash = 1;      ///< device pixels of a dash, and of a gap
    QImage m_pixels;     ///< 0, or 1 and more for the place along the line within a dash and its gap
    QSize m_grid;        ///< of tiles
    std::vector<bool> m_tiles;
    QPointF m_at;       ///< of the stroke's upper left corner
    double m_along = 0; ///< device pixels from the line's beginning, within a dash and its gap
};

} // namespace lumora
