#include "imaging/transforms/Transform.h"

#include "imaging/Picture.h"

#include <algorithm>

namespace lumora {

QImage turned(const QImage &picture, Turn turn) {
    const ConstPixelView source = readView(picture);
    if (source.isEmpty()) {
        return {};
    }
    const bool opaque = picture.format() == QImage::Format_RGB32;
    QImage result = turn.swapAxes ? newPicture(source.height, source.width, opaque)
                                  : newPicture(source.width, source.height, opaque);
    const PixelView target = writeView(result);
    if (!target.isEmpty()) {
        movePixels(source, target, turn);
    }
    return result;
}

QImage quarterTurnedClockwise(const QImage &picture) {
    return turned(picture, {.swapAxes = true, .mirrorX = true});
}

QImage quarterTurnedAnticlockwise(const QImage &picture) {
    return turned(picture, {.swapAxes = true, .mirrorY = true});
}

QImage halfTurned(const QImage &picture) {
    return turned(picture, {.mirrorX = true, .mirrorY = true});
}

QImage flippedVertically(const QImage &picture) {
    return turned(picture, {.mirrorY = true});
}

QImage mirrored(const QImage &picture) {
    return turned(picture, {.mirrorX = true});
}

QImage cropped(const QImage &picture, PixelRect rectangle) {
    const ConstPixelView source = readView(picture);
    const PixelRect part{std::max(rectangle.left, 0), std::max(rectangle.top, 0),
                         std::min(rectangle.right, source.width), std::min(rectangle.bottom, source.height)};
    if (source.isEmpty() || part.right <= part.left || part.bottom <= part.top) {
        return {};
    }
    if (part.width() == source.width && part.height() == source.height) {
        return picture;
    }
    QImage result = newPicture(part.width(), part.height(), picture.format() == QImage::Format_RGB32);
    const PixelView target = writeView(result);
    if (!target.isEmpty()) {
        movePixels({source.row(part.top) + std::ptrdiff_t(4) * part.left, part.width(), part.height(), source.stride},
                   target, {});
    }
    return result;
}

} // namespace lumora
