#include "imaging/files/Format.h"

#include "imaging/Picture.h"

#include <algorithm>

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

void paintGrey(const PixelView &view) {
    constexpr std::uint32_t grey = 0xFF808080;
    for (int y = 0; y < view.height; ++y) {
        std::fill_n(reinterpret_cast<std::uint32_t *>(view.row(y)), view.width, grey);
    }
}

void greyFrom(QImage &picture, int firstMissing) {
    const PixelView view = writeView(picture);
    const int first = std::clamp(firstMissing, 0, view.height);
    paintGrey({view.row(first), view.width, view.height - first, view.stride});
}

} // namespace lumora
