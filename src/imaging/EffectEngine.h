// The pixel component that the tools drive: give it a picture, run an operation, take the picture back.
#pragma once

#include "imaging/Operation.h"
#include "imaging/Region.h"

#include <QImage>
#include <vector>

namespace lumora {

/// Holds one picture and a working region. The given picture itself is never written to.
class EffectEngine {
  public:
    /// A picture as Picture.h describes it. The region stays; it is cut to each picture anew.
    void setPicture(const QImage &picture) { m_picture = picture; }
    const QImage &picture() const { return m_picture; }

    void clearRegion() { m_shape = Shape::None; }
    /// Picture pixels; right and bottom are the first outside. Any integers; what lies off the picture is ignored.
    bool setRectangularRegion(int left, int top, int right, int bottom);
    /// The ellipse that fills the box between two opposite corners in picture pixels.
    bool setEllipticalRegion(int x1, int y1, int x2, int y2);
    /// What the closed line through these picture points goes round, see Region::lasso.
    bool setLassoRegion(std::vector<PicturePoint> points);

    /// Changes the picture: engine.apply({applyBlur, {6}}, true). True when it has been done, false when it was refused
    /// (no picture, what the operation refuses, no memory); the picture then is as before. With `limitToRegion` nothing
    /// outside the working region changes, and an operation that changes the sides is refused; while no region is set,
    /// that is the whole picture.
    bool apply(const Operation &operation, bool limitToRegion);

  private:
    enum class Shape { None, Rectangle, Ellipse, Lasso };

    Region currentRegion() const;
    QImage changed(const Operation &operation) const;
    QImage changedInRegion(const Operation &operation) const;

    QImage m_picture;
    Shape m_shape = Shape::None;
    PixelRect m_box; ///< of a rectangle or an ellipse, as it was given
    std::vector<PicturePoint> m_lasso;
};

} // namespace lumora
