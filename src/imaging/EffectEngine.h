// The pixel engine behind the tools: set a picture, apply an operation, read the result.
#pragma once

#include "imaging/Operation.h"
#include "imaging/Region.h"

#include <QImage>
#include <vector>

namespace lumora {

/// Holds one picture and a working region. The given picture itself is never modified.
class EffectEngine {
  public:
    /// A picture as Picture.h describes it. The region stays; it is clipped to each new picture.
    void setPicture(const QImage &picture) { m_picture = picture; }
    const QImage &picture() const { return m_picture; }

    void clearRegion() { m_shape = Shape::None; }
    /// Picture pixels; right and bottom are exclusive. Any integers; parts outside the picture are ignored.
    bool setRectangularRegion(int left, int top, int right, int bottom);
    /// The ellipse that fills the box between two opposite corners in picture pixels.
    bool setEllipticalRegion(int x1, int y1, int x2, int y2);
    /// The area enclosed by the closed line through these picture points, see Region::lasso.
    bool setLassoRegion(std::vector<PicturePoint> points);

    /// Changes the picture: engine.apply({applyBlur, {6}}, true). Returns true on success, false on failure (no
    /// picture, an operation that fails, no memory); the picture is then unchanged. With `limitToRegion` nothing
    /// outside the working region changes, and an operation that changes the picture's size fails; without a region
    /// that is the whole picture.
    bool apply(const Operation &operation, bool limitToRegion);
    /// Whether the latest apply() failed because memory was refused.
    bool isOutOfMemory() const { return m_outOfMemory; }

  private:
    enum class Shape { None, Rectangle, Ellipse, Lasso };

    Region currentRegion() const;
    QImage changed(const Operation &operation) const;
    QImage changedInRegion(const Operation &operation) const;

    QImage m_picture;
    bool m_outOfMemory = false;
    Shape m_shape = Shape::None;
    PixelRect m_box; ///< of a rectangle or an ellipse, as given
    std::vector<PicturePoint> m_lasso;
};

} // namespace lumora
