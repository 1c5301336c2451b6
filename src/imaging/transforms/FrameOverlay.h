// Lays a frame over a photo, which may be made smaller for it before.
#pragma once

#include <QImage>
#include <QRect>

namespace lumora {

/// The photo with the frame stretched over the whole of it, whatever the proportions of both; where the frame is
/// transparent the photo shows through ("source over", Porter and Duff, Computer Graphics 18, 1984). The frame is
/// scaled as `scaled` in Scale.h does it, of which only what is around its transparent middle is computed; one of the
/// photo's size goes over it in one pass. A null picture without a photo or a frame and when memory is refused; both
/// are left unchanged.
QImage framed(const QImage &photo, const QImage &frame);

/// The photo scaled (as `scaled` in Scale.h does it) to a part of a picture of its own size, black and transparent
/// around it, or only black when the photo is opaque. `place` must be inside the picture. A null picture without a
/// photo, for an empty place and when memory is refused; the photo itself where the place is the whole picture.
QImage placedPhoto(const QImage &photo, const QRect &place);

} // namespace lumora
