#include "imaging/transforms/Transform.h"

#include "imaging/Picture.h"
#include "imaging/kernels/Premultiply.h"
#include "imaging/kernels/ScratchPicture.h"
#include "imaging/transforms/Rotate.h"
#include "imaging/transforms/RotatedExtent.h"

#include <algorithm>
#include <cmath>
#include <numbers>

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
        flipAndRotate(source, target, turn);
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

QImage rotated(const QImage &picture, double degrees) {
    const ConstPixelView source = readView(picture);
    if (source.isEmpty() || !std::isfinite(degrees)) {
        return {};
    }
    const double angle = std::remainder(degrees, 360.0);
    if (std::remainder(angle, 90.0) == 0) {
        const QImage half = std::abs(angle) == 180 ? halfTurned(picture) : picture;
        return angle == 90    ? quarterTurnedClockwise(picture)
               : angle == -90 ? quarterTurnedAnticlockwise(picture)
                              : half;
    }
    const double sine = std::sin(angle * std::numbers::pi / 180);
    const double cosine = std::cos(angle * std::numbers::pi / 180);
    const QSize extent = rotatedExtent(picture.size(), angle);
    const bool opaque = picture.format() == QImage::Format_RGB32;
    const bool tooLarge = double(extent.width()) * extent.height() > double(maxPicturePixels);
    QImage result = tooLarge ? QImage() : newPicture(extent.width(), extent.height(), opaque);
    const PixelView target = writeView(result);
    if (target.isEmpty()) {
        return {};
    }
    if (opaque) {
        rotatePixels(source, target, sine, cosine);
        return result;
    }
    const ScratchPicture scratch(source.width, source.height);
    const PixelView weighted = scratch.view();
    if (weighted.isEmpty()) {
        return {};
    }
    premultiply(source, weighted);
    rotatePixels({weighted.data, weighted.width, weighted.height, weighted.stride}, target, sine, cosine);
    unpremultiply(target);
    return result;
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
        flipAndRotate(
            {source.row(part.top) + std::ptrdiff_t(4) * part.left, part.width(), part.height(), source.stride}, target,
            {});
    }
    return result;
}

} // namespace lumora
