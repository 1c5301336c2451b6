// Writing TGA: an 18-byte header and the rows, from the top. By hand, as Qt does not write the format.
#include "imaging/Picture.h"
#include "imaging/files/Format.h"

#include <QtEndian>
#include <vector>

namespace lumora {

QString writeTga(const QImage &picture, QIODevice &target) {
    const ConstPixelView view = readView(picture);
    // Truevision TGA File Format 2.0, fields 3 to 5: true colour, not compressed.
    const int channels = picture.hasAlphaChannel() ? 4 : 3;
    QByteArray header(18, '\0');
    header[2] = 2;
    qToLittleEndian(static_cast<quint16>(view.width), header.data() + 12);
    qToLittleEndian(static_cast<quint16>(view.height), header.data() + 14);
    header[16] = static_cast<char>(channels * 8);
    header[17] = static_cast<char>(0x20 | (channels == 4 ? 8 : 0)); // from the top; bits of alpha
    bool good = target.write(header) == header.size();
    std::vector<char> row(static_cast<std::size_t>(view.width) * channels);
    for (int y = 0; good && y < view.height; ++y) {
        const std::uint8_t *pixel = view.row(y);
        for (int x = 0; x < view.width; ++x, pixel += 4) {
            std::copy_n(pixel, channels, row.data() + static_cast<std::size_t>(x) * channels);
        }
        good = target.write(row.data(), static_cast<qint64>(row.size())) == static_cast<qint64>(row.size());
    }
    return good ? QString() : QStringLiteral("cannot write: %1").arg(target.errorString());
}

} // namespace lumora
