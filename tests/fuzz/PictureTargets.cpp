#include "fuzz/Targets.h"
#include "imaging/Picture.h"
#include "imaging/PictureFile.h"
#include "imaging/files/Exif.h"
#include "imaging/files/ExifBlock.h"
#include "imaging/files/Metadata.h"
#include "imaging/files/MetadataBlocks.h"

#include <QtEndian>
#include <algorithm>
#include <zlib.h>

namespace lumora::fuzz {

namespace {

constexpr qint64 mostPixels = 4 << 20; // more only takes long: a few bytes can be a picture of 200 megapixels

void requireAnswer(const PictureRead &read) {
    require(read.picture.isNull() == (read.error != PictureError::None), "a picture or an error");
    require(read.error == PictureError::None || !read.reason.isEmpty(), "an error has a reason");
    require(read.error != PictureError::NoMemory, "memory for a small picture");
    require(read.picture.isNull() || read.picture.format() == QImage::Format_RGB32 ||
                read.picture.format() == QImage::Format_ARGB32,
            "32 bits a pixel");
}

/// As they are prepared when the photo is saved.
void saveMetadata(const PictureMetadata &metadata, QSize size) {
    require(metadata.exif.size() <= 64 << 10, "EXIF data of at most 64 KB");
    for (const PrivateDetails details : {PrivateDetails::Kept, PrivateDetails::Removed}) {
        const MetadataBlocks blocks = metadataBlocks(metadata, size, details);
        require(blocks.exif.size() <= 65527 && blocks.xmp.size() <= 65000 && blocks.iptc.size() <= 65000,
                "blocks that fit into a JPEG file");
        require(blocks.exif.isEmpty() || readExif(blocks.exif).orientation == 1, "saved upright");
    }
}

} // namespace

void readAsPicture(const QByteArray &bytes, const char *extension) {
    const QString path = fileWith(bytes, extension);
    const PictureHeader header = readPictureHeader(path);
    require(header.error == PictureError::None || !header.reason.isEmpty(), "a refusal has a reason");
    require(header.error != PictureError::NoMemory, "no memory for a header");
    if (header.error != PictureError::None || qint64{header.width} * header.height > mostPixels) {
        return;
    }
    const PictureRead read = readPicture(path);
    requireAnswer(read);
    if (!read.picture.isNull()) {
        require(read.picture.size() == QSize(header.width, header.height), "the size that the header says");
        saveMetadata(read.metadata, read.picture.size());
    }
    constexpr int thumbnailSide = 20;
    const PictureRead small = readThumbnail(path, thumbnailSide);
    requireAnswer(small);
    require(std::max(small.picture.width(), small.picture.height()) <= thumbnailSide, "a small thumbnail");
}

void readAsPng(const QByteArray &bytes, const char *extension) {
    QByteArray mended = bytes;
    auto *const data = reinterpret_cast<uchar *>(mended.data());
    for (qint64 at = 8; at + 12 <= mended.size();) {
        const qint64 length = qFromBigEndian<quint32>(data + at);
        if (at + 12 + length > mended.size()) {
            break;
        }
        qToBigEndian(static_cast<quint32>(crc32(0, data + at + 4, static_cast<uInt>(length + 4))),
                     data + at + 8 + length);
        at += 12 + length;
    }
    readAsPicture(mended, extension);
}

void readAsMetadata(const QByteArray &bytes, const char *) {
    const QByteArray content = bytes.mid(1);
    PictureMetadata metadata;
    switch (bytes.isEmpty() ? 0 : bytes[0] & 3) {
    case 0:
        readExif(content);
        metadata.exif = exifBlock(content);
        break;
    case 1:
        metadata.xmp = content;
        break;
    case 2:
        metadata.iptc = iptcInResources(content);
        break;
    default: {
        const QList<QByteArray> lines = content.split('\n');
        metadata.texts["Title"] = QString::fromUtf8(lines.value(0));
        metadata.texts["Creation Time"] = QString::fromLatin1(lines.value(1));
        metadata.texts["Author"] = QString::fromLatin1(lines.value(2));
        metadata.dotsPerInchX = metadata.dotsPerInchY = lines.value(3).toDouble();
    }
    }
    saveMetadata(metadata, QSize(40, 30));
}

} // namespace lumora::fuzz
