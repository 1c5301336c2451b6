#include "tools/canvas/SmallPhoto.h"

#include "imaging/Scale.h"
#include "view/PhotoView.h"

namespace lumora {

QImage smallPhoto(PhotoView &view, QSize room) {
    return scaledInto(view.visibleLevel().picture, view, room);
}

QImage scaledInto(const QImage &picture, const PhotoView &view, QSize room) {
    if (picture.isNull()) {
        return {};
    }
    const QSize device = (QSizeF(room) * view.devicePixelRatioF()).toSize();
    const QSize size = picture.size().scaled(device, Qt::KeepAspectRatio).expandedTo({1, 1});
    return scaled(picture, size.width(), size.height());
}

} // namespace lumora
