// Which pixels an operation may change: made once from a shape by scan conversion, then only queried.
#pragma once

#include "imaging/PixelView.h"

#include <span>
#include <vector>

namespace lumora {

/// Pixels from left to right - 1 and top to bottom - 1.
struct PixelRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int width() const { return right - left; }
    int height() const { return bottom - top; }
    bool isEmpty() const { return right <= left || bottom <= top; }
};

/// A place on a picture, in pixels from its upper left corner; the centre of the first pixel is (0.5, 0.5).
struct PicturePoint {
    double x = 0;
    double y = 0;
};

/// The whole of a picture.
template <typename Byte> PixelRect wholeOf(const BasicPixelView<Byte> &picture) {
    return {0, 0, picture.width, picture.height};
}

/// A set of pixels of a picture of fixed size. A pixel belongs to a shape when its centre is inside.
class Region {
  public:
    /// Pixels begin to end - 1 of a row.
    struct Span {
        int begin;
        int end;
    };

    /// The rectangle clipped to the picture. `right` and `bottom` are exclusive. Corners may be in any order; any
    /// integers are valid.
    static Region rectangle(int pictureWidth, int pictureHeight, int left, int top, int right, int bottom);
    /// The ellipse that fills the box between two opposite corners, clipped to the picture.
    static Region ellipse(int pictureWidth, int pictureHeight, int x1, int y1, int x2, int y2);

    /// The area enclosed by the closed line through the points (the last point is joined to the first), clipped to the
    /// picture. Where the line crosses itself, everything enclosed belongs to the region, however often (the non-zero
    /// winding rule): what a child circles twice is included. Designed for tens of thousands of points; fewer than
    /// three points enclose nothing, and points that are not finite are ignored.
    static Region lasso(int pictureWidth, int pictureHeight, std::span<const PicturePoint> points);

    /// The bounding rectangle of the region; empty when the region is.
    PixelRect bounds() const { return m_bounds; }
    bool isEmpty() const { return m_bounds.isEmpty(); }
    /// The region's pixels in a row of the picture, from left to right. Any row is valid; most have none.
    std::span<const Span> row(int y) const;
    /// Whether the pixel belongs to the region. Any integers are valid.
    bool contains(int x, int y) const;

  private:
    /// Rows come from top to bottom, the spans of a row from left to right; rows in between stay empty.
    void addSpan(int y, Span span);

    PixelRect m_bounds;
    std::vector<Span> m_spans;
    std::vector<std::size_t> m_rowStarts; ///< for each row of the bounds where it begins, and one more for the end
};

} // namespace lumora
