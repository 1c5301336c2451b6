#include "imaging/Scale.h"

#include "imaging/Picture.h"
#include "imaging/kernels/AreaAverage.h"
#include "imaging/kernels/BoxReduce.h"
#include "imaging/kernels/Premultiply.h"
#include "imaging/kernels/ScratchPicture.h"
#include "imaging/transforms/Resample.h"

#include <new>

namespace lumora {

namespace {

/// By cubic convolution alone. May throw std::bad_alloc.
QImage convolved(const QImage &picture, int width, int height) {
    const ConstPixelView source = readView(picture);
    const bool opaque = picture.format() == QImage::Format_RGB32;
    QImage result = newPicture(width, height, opaque);
    const PixelView target = writeView(result);
    if (target.isEmpty()) {
        return {};
    }
    if (opaque) {
        resample(source, target);
        return result;
    }
    const ScratchPicture scratch(source.width, source.height);
    const PixelView weighted = scratch.view();
    if (weighted.isEmpty()) {
        return {};
    }
    premultiply(source, weighted);
    resample({weighted.data, weighted.width, weighted.height, weighted.stride}, target);
    unpremultiply(target);
    return result;
}

} // namespace

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

QImage scaled(const QImage &picture, int width, int height) {
    if (readView(picture).isEmpty() || width < 1 || height < 1) {
        return {};
    }
    const auto averaged = [](int from, int to) { return to <= from / 2 ? to : from; };
    const QSize between(averaged(picture.width(), width), averaged(picture.height(), height));
    QImage reduced = between == picture.size() ? picture : scaleByAveraging(picture, between.width(), between.height());
    if (reduced.isNull() || reduced.size() == QSize(width, height)) {
        return reduced;
    }
    try {
        return convolved(reduced, width, height);
    } catch (const std::bad_alloc &) { // also from a worker: the loop rethrows it
        return {};
    }
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
