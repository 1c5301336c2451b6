#include "imaging/files/Format.h"

#include "imaging/Picture.h"

#include <algorithm>
#include <cmath>

namespace lumora {

FileHeader refusedHeader(PictureError error, const QString &reason) {
    FileHeader header;
    header.error = error;
    header.reason = reason.isEmpty() ? QStringLiteral("the decoder gives no reason") : reason;
    return header;
}

Decoded refused(PictureError error, const QString &reason) {
    Decoded decoded;
    decoded.error = error;
    decoded.reason = reason.isEmpty() ? QStringLiteral("the decoder gives no reason") : reason;
    return decoded;
}

bool hasShapeOf(const FileHeader &picture, int width, int height) {
    if (width <= 0 || height <= 0 || picture.width <= 0 || picture.height <= 0) {
        return false;
    }
    return std::abs(static_cast<double>(width) / height * picture.height / picture.width - 1) <= 0.02;
}

void paintGrey(const PixelView &view) {
    constexpr std::uint32_t grey = 0xFF808080;
    for (int y = 0; y < view.height; ++y) {
        std::fill_n(reinterpret_cast<std::uint32_t *>(view.row(y)), view.width, grey);
    }
}

bool hasOnlyZeroAlpha(const PixelView &view) {
    for (int y = 0; y < view.height; ++y) {
        const std::uint8_t *row = view.row(y);
        for (int x = 0; x < view.width; ++x) {
            if (row[x * 4 + 3] != 0) {
                return false;
            }
        }
    }
    return true;
}

void greyFrom(QImage &picture, int firstMissing) {
    const PixelView view = writeView(picture);
    const int first = std::clamp(firstMissing, 0, view.height);
    paintGrey({view.row(first), view.width, view.height - first, view.stride});
}

} // namespace lumora
