#include "imaging/Scale.h"

#include "imaging/Picture.h"
#include "imaging/effects/AreaAverage.h"
#include "imaging/effects/BoxReduce.h"

namespace lumora {

QImage scaleByAveraging(const QImage &picture, int width, int height) {
    const ConstPixelView source = readView(picture);
    if (source.isEmpty() || width < 1 || height < 1 || width > source.width || height > source.height) {
        return {};
    }
    const bool opaque = picture.format() == QImage::Format_RGB32;
    QImage result = newPicture(width, height, opaque);
    const PixelView target = writeView(result);
    return !target.isEmpty() && averageArea(source, target, opaque) ? result : QImage();
}

QImage boxReduced(const QImage &picture, int factor) {
    const ConstPixelView source = readView(picture);
    if (source.isEmpty() || (factor != 2 && factor != 4 && factor != 8 && factor != 16)) {
        return {};
    }
    const bool opaque = picture.format() == QImage::Format_RGB32;
    QImage result = newPicture((source.width - 1) / factor + 1, (source.height - 1) / factor + 1, opaque);
    const PixelView target = writeView(result);
    if (target.isEmpty()) {
        return {};
    }
    boxReduce(source, target, factor, opaque);
    return result;
}

} // namespace lumora
