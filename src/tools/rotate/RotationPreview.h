// Fast painting of a photo at any angle: from a copy of the part that can become visible, at screen resolution.
// Free rotation shows it while the photo is dragged.
#pragma once

#include "view/PhotoTable.h"

#include <QImage>

namespace lumora {

class PhotoView;

class RotationPreview {
  public:
    explicit RotationPreview(const PhotoView &view) : m_view(view) {}

    void setPhoto(const QImage &photo);
    /// The view shows another part, or at another size.
    void forgetCopy() { m_copy = QImage(); }
    /// Paints the photo turned clockwise by that many degrees, with its white corners, over the whole view. Its middle
    /// is at `centre` (view's pixels); `scale` is the number of view pixels per photo pixel.
    void paint(QPainter &painter, QPointF centre, double scale, double degrees);

  private:
    void makeCopy(QPointF centre, double scale);
    QImage turnedCopy(double angle, QSize size) const;

    const PhotoView &m_view;
    PhotoTable m_table;
    QImage m_photo;
    QImage m_copy;          ///< of the photo's middle, the part that can become visible
    double m_copyScale = 1; ///< pixels of the copy per pixel of the photo
};

} // namespace lumora
