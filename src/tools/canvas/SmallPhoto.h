// A small copy of the photo for the previews in the tools' panels.
#pragma once

#include <QImage>

namespace lumora {

class PhotoView;

/// The photo fitted into a size in the view's pixels, sharp on its screen; made from the mip level that the view paints
/// from, so that a large photo costs no more than a small one. Null without a photo.
QImage smallPhoto(PhotoView &view, QSize room);
/// The same of another picture.
QImage scaledInto(const QImage &picture, const PhotoView &view, QSize room);

} // namespace lumora
