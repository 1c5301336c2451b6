// Pictures for tests: made, not stored.
#pragma once

#include <QImage>

namespace lumora::test {

/// A picture that looks a little like a photo: gradients, an edge, some seeded noise. Transparent in part on request.
QImage photoLike(int width, int height, bool transparent = false);

/// The first pixel in which two pictures differ, or (-1, -1); sizes must match, else (0, 0).
QPoint firstDifference(const QImage &a, const QImage &b);

/// The pixels of a row of a picture with 32 bits a pixel; QImage::pixel() takes ten times as long.
inline const QRgb *row(const QImage &picture, int y) {
    return reinterpret_cast<const QRgb *>(picture.constScanLine(y));
}

/// What firstDifference() gives for equal pictures.
inline constexpr QPoint nowhere(-1, -1);

} // namespace lumora::test
