// The marked region of the photo: what the selection tools mark and what effects, crop and adjustments ask for. Owned
// by PhotoDocument; a plain value.
#pragma once

#include "imaging/Region.h"

#include <QRect>
#include <QSize>
#include <memory>
#include <vector>

namespace lumora {

class PhotoSelection {
  public:
    enum class Shape { None, Rectangle, Ellipse, Lasso };

    /// Marks a shape by its box in picture pixels (left, top, width, height; none of the sizes below 0) and shows it.
    /// An empty box marks nothing.
    void markRectangle(const QRect &box) { mark(Shape::Rectangle, box); }
    void markEllipse(const QRect &box) { mark(Shape::Ellipse, box); }
    /// Marks what the closed line through these points surrounds, in picture pixels. Points that are not numbers are
    /// left out; fewer than three mark nothing.
    void markLasso(std::vector<PicturePoint> points);
    /// Marks nothing any more: the box 0, 0, 0, 0. Drawn value and visible flag stay as they are.
    void clear() { mark(Shape::None, {}); }

    Shape shape() const { return m_shape; }
    /// Left, top, width and height in picture pixels; all 0 when nothing is marked. Of a lasso the box around its line.
    const QRect &box() const { return m_box; }
    const std::vector<PicturePoint> &lassoPoints() const { return m_points; }
    bool isEmpty() const { return m_box.isEmpty(); }

    /// Both have to be set for the outline to be drawn; marking sets them.
    void setDrawn(int value) { m_drawn = value; }
    void setVisible(bool visible) { m_visible = visible; }
    bool isShown() const { return m_drawn != 0 && m_visible && !isEmpty(); }
    /// Drawn value 0, nothing marked, not visible.
    void hide();

    /// The pixels of a picture of that size that are marked, made by scan conversion once for each mark and size.
    const Region &region(QSize picture) const;

  private:
    void mark(Shape shape, const QRect &box);

    Shape m_shape = Shape::None;
    QRect m_box = QRect(0, 0, 0, 0);
    std::vector<PicturePoint> m_points;
    int m_drawn = 0;
    bool m_visible = false;
    mutable std::shared_ptr<const Region> m_region; ///< shared by copies
    mutable QSize m_regionFor;
};

} // namespace lumora
