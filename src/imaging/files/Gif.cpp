// Reading the first frame of a GIF with Qt's decoder.
#include "imaging/Picture.h"
#include "imaging/files/Format.h"

#include <QImageReader>
#include <QtEndian>

namespace lumora {

bool isGif(const QByteArray &head) {
    return head.startsWith("GIF87a") || head.startsWith("GIF89a");
}

FileHeader readGifHeader(Source &source) {
    // GIF89a, section 18: the size of the canvas that all frames are drawn on.
    constexpr int headerBytes = 13;
    const QByteArray head = source.bytes(0, headerBytes);
    if (head.size() < headerBytes) {
        return refusedHeader(PictureError::Damaged, QStringLiteral("no screen descriptor"));
    }
    FileHeader header;
    header.width = qFromLittleEndian<quint16>(head.constData() + 6);
    header.height = qFromLittleEndian<quint16>(head.constData() + 8);
    header.packing = Packing::Lzw;
    header.unpackedBytes = static_cast<double>(header.width) * header.height;
    header.packedBytes = static_cast<double>(source.size() - headerBytes);
    return header;
}

Decoded decodeGif(Source &source, const FileHeader &header) {
    // Qt's own limit is 256 MB; the size has been checked already.
    QImageReader::setAllocationLimit(0);
    source.device().seek(0);
    QImageReader reader(&source.device(), "gif");
    const QImage image = reader.read();
    Decoded result;
    result.picture = toPicture(image);
    if (result.picture.width() != header.width || result.picture.height() != header.height) {
        return refused(PictureError::Damaged, reader.errorString());
    }
    return result;
}

} // namespace lumora
