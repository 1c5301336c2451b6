#include "tools/canvas/SmallPhoto.h"

#include "imaging/Scale.h"
#include "view/PhotoView.h"

namespace lumora {

QImage smallPhoto(PhotoView &view, QSize room) {
    const QImage photo = view.visibleLevel().picture;
    if (photo.isNull()) {
        return {};
    }
    const QSize device = (QSizeF(room) * view.devicePixelRatioF()).toSize();
    const QSize size = photo.size().scaled(device, Qt::KeepAspectRatio).expandedTo({1, 1});
    return scaled(photo, size.width(), size.height());
}

} // namespace lumora
