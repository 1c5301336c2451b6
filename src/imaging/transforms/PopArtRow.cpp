#include "imaging/transforms/PopArtRow.h"

#include "imaging/Picture.h"
#include "imaging/Scale.h"
#include "imaging/effects/Blur.h"
#include "imaging/kernels/PartOf.h"

#include <algorithm>
#include <cmath>

namespace lumora {

namespace {

constexpr int finest = 480;       // parts of a print's longer side
constexpr int measuredSide = 256; // pixels of the copy that the levels are taken from

/// The photo at the size of a print.
QImage reduced(const QImage &photo, QSize size) {
    const bool halved = size == QSize((photo.width() + 1) / 2, (photo.height() + 1) / 2);
    return halved ? boxReduced(photo, 2) : scaled(photo, size.width(), size.height());
}

QImage smoothed(const QImage &picture) {
    const int amount = std::max(picture.width(), picture.height()) / finest;
    const bool opaque = picture.format() == QImage::Format_RGB32;
    if (picture.isNull() || amount == 0) {
        return picture;
    }
    QImage result = newPicture(picture.width(), picture.height(), opaque);
    const PixelView target = writeView(result);
    const ConstPixelView source = readView(picture);
    const bool done = !target.isEmpty() && applyBlur({double(amount)}, source, target, wholeOf(source), opaque);
    return done ? result : QImage();
}

PopArtLevels levelsOf(const QImage &picture) {
    const QSize size = picture.size().scaled(measuredSide, measuredSide, Qt::KeepAspectRatio).expandedTo({1, 1});
    const bool small = picture.width() <= measuredSide && picture.height() <= measuredSide;
    return popArtLevels(readView(small ? picture : scaled(picture, size.width(), size.height())));
}

} // namespace

QSize popArtPrintSize(QSize photo) {
    if (photo.isEmpty()) {
        return {};
    }
    const QSize half((photo.width() + 1) / 2, (photo.height() + 1) / 2);
    const double width = half.width();
    const double height = half.height();
    const double scale =
        std::min({1.0, longestPopArtRow / (4 * width), std::sqrt(double(maxPicturePixels) / (4 * width * height))});
    const int fitted = std::max(1, int(width * scale));
    return {fitted, std::clamp(int(height * scale), 1, int(maxPicturePixels / 4 / fitted))};
}

QImage popArtRow(const QImage &photo, const PopArtPairs &pairs) {
    const QSize size = popArtPrintSize(photo.size());
    const QImage print = size.isEmpty() ? QImage() : smoothed(reduced(photo, size));
    const ConstPixelView source = readView(print);
    if (source.isEmpty()) {
        return {};
    }
    const int prints = static_cast<int>(pairs.size());
    QImage row = newPicture(prints * size.width(), size.height(), photo.format() == QImage::Format_RGB32);
    const PixelView target = writeView(row);
    if (target.isEmpty()) {
        return {};
    }
    const PopArtLevels levels = levelsOf(print);
    for (int i = 0; i < prints; ++i) {
        const PixelRect place{i * size.width(), 0, (i + 1) * size.width(), size.height()};
        applyPopArt({pairs.at(std::size_t(i)), levels}, source, partOf(target, place), wholeOf(source));
    }
    return row;
}

} // namespace lumora
