#include "imaging/Operation.h"

#include "imaging/Picture.h"

namespace lumora {

QImage Operation::filled(const QImage &picture, const Fill &fill) {
    const ConstPixelView source = readView(picture);
    const bool opaque = picture.format() == QImage::Format_RGB32;
    QImage result = newPicture(source.width, source.height, opaque);
    const PixelView target = writeView(result);
    return !source.isEmpty() && !target.isEmpty() && fill(source, target, opaque) ? result : QImage();
}

} // namespace lumora
