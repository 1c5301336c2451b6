#include "imaging/Picture.h"

#include "imaging/PictureBuffers.h"
#include "imaging/kernels/AlphaBytes.h"

#include <cstring>

namespace lumora {

namespace {

// Below this malloc is as fast and does not round up to a huge page.
constexpr std::size_t smallestKeptBuffer = 1U << 20;

bool isPictureFormat(const QImage &image) {
    return image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32;
}

ConstPixelView constView(const QImage &image) {
    return {image.constBits(), image.width(), image.height(), image.bytesPerLine()};
}

} // namespace

QImage newPicture(int width, int height, bool opaque) {
    if (width <= 0 || height <= 0 || qint64(width) * height > maxPicturePixels) {
        return {};
    }
    const QImage::Format format = opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32;
    const std::size_t bytes = std::size_t(width) * std::size_t(height) * 4;
    if (bytes < smallestKeptBuffer) {
        return {width, height, format};
    }
    KeptBuffer *buffer = takeBuffer(bytes);
    if (buffer == nullptr) {
        return {};
    }
    QImage picture(
        buffer->memory, width, height, width * 4, format,
        [](void *kept) { giveBufferBack(static_cast<KeptBuffer *>(kept)); }, buffer);
    if (picture.isNull()) { // too wide for QImage, which then does not call the clean-up function
        giveBufferBack(buffer);
    }
    return picture;
}

OrdinaryPages::OrdinaryPages() noexcept {
    setHugePages(false);
}

OrdinaryPages::~OrdinaryPages() {
    setHugePages(true);
}

QImage toPicture(const QImage &image) {
    if (image.isNull()) {
        return {};
    }
    QImage picture = image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (picture.isNull()) {
        return {};
    }
    if (allOpaque(constView(picture))) {
        picture.reinterpretAsFormat(QImage::Format_RGB32);
        return picture;
    }
    if (picture.format() == QImage::Format_RGB32) { // painted or made elsewhere, with alpha bytes left undefined
        const PixelView pixels = writeView(picture);
        if (pixels.isEmpty()) {
            return {};
        }
        makeOpaque(pixels);
    }
    return picture;
}

PixelView writeView(QImage &picture) {
    if (picture.isNull() || !isPictureFormat(picture)) {
        return {};
    }
    if (!picture.isDetached()) {
        QImage own = newPicture(picture.width(), picture.height(), picture.format() == QImage::Format_RGB32);
        if (own.isNull()) {
            return {};
        }
        const ConstPixelView from = constView(picture);
        uchar *to = own.bits();
        for (int y = 0; y < from.height; ++y) {
            std::memcpy(to + y * own.bytesPerLine(), from.row(y), std::size_t(from.width) * 4);
        }
        picture = own;
    }
    return {picture.bits(), picture.width(), picture.height(), picture.bytesPerLine()};
}

ConstPixelView readView(const QImage &picture) {
    if (picture.isNull() || !isPictureFormat(picture)) {
        return {};
    }
    return constView(picture);
}

void releaseKeptBuffers() {
    releaseIdleBuffers();
}

} // namespace lumora
