#include "imaging/files/Metadata.h"

#include "imaging/files/ExifBlock.h"
#include "imaging/files/Format.h"
#include "imaging/files/JpegMarkers.h"

#include <QtEndian>
#include <zlib.h>

namespace lumora {

namespace {

constexpr qint64 mostBytesOfPart = 256 << 10; // of a packet, before and after it is unpacked
constexpr char resourceSignature[] = "8BIM";
constexpr int iptcResource = 0x0404;

PictureMetadata ofJpeg(Source &source) {
    const JpegMarkers markers = readJpegMarkers(source);
    PictureMetadata result;
    result.exif = exifBlock(markers.exif);
    result.xmp = markers.xmp;
    result.iptc = iptcInResources(markers.resources);
    if (!markers.comment.isEmpty()) {
        result.texts["Comment"] = QString::fromUtf8(markers.comment);
    }
    result.dotsPerInchX = markers.dotsPerInchX;
    result.dotsPerInchY = markers.dotsPerInchY;
    return result;
}

/// Empty when the data are damaged or too large.
QByteArray inflated(const QByteArray &packed) {
    QByteArray plain(mostBytesOfPart, Qt::Uninitialized);
    auto size = static_cast<uLongf>(plain.size());
    const int status = uncompress(reinterpret_cast<Bytef *>(plain.data()), &size,
                                  reinterpret_cast<const Bytef *>(packed.constData()), packed.size());
    return status == Z_OK ? plain.left(static_cast<qsizetype>(size)) : QByteArray();
}

struct PngText {
    QByteArray keyword;
    QByteArray bytes;
    bool utf8 = false;
};

// PNG standard (W3C), 11.3.3: tEXt, zTXt and iTXt begin with a keyword that ends with a zero.
PngText textOf(const QByteArray &type, const QByteArray &data) {
    PngText text;
    const qsizetype end = data.indexOf('\0');
    if (end < 1) {
        return text;
    }
    text.keyword = data.left(end);
    if (type == "tEXt") {
        text.bytes = data.mid(end + 1);
    } else if (type == "zTXt") {
        text.bytes = inflated(data.mid(end + 2));
    } else {
        const bool packed = data.size() > end + 1 && data[end + 1] != 0;
        const qsizetype language = data.indexOf('\0', end + 3);
        const qsizetype translated = language < 0 ? -1 : data.indexOf('\0', language + 1);
        if (translated >= 0) {
            text.bytes = packed ? inflated(data.mid(translated + 1)) : data.mid(translated + 1);
        }
        text.utf8 = true;
    }
    return text;
}

/// ImageMagick's way to store EXIF and IPTC data: a name, a length and hexadecimal digits.
QByteArray rawProfile(const QByteArray &text) {
    const QList<QByteArray> lines = text.trimmed().split('\n');
    return lines.size() < 3 ? QByteArray() : QByteArray::fromHex(text.mid(text.indexOf(lines[1]) + lines[1].size()));
}

void take(const PngText &text, PictureMetadata &result) {
    static const QByteArrayList kept = {"Title",   "Author",        "Description", "Copyright",
                                        "Comment", "Creation Time", "Source",      "Disclaimer"};
    if (text.keyword == "XML:com.adobe.xmp") {
        result.xmp = text.bytes;
    } else if (text.keyword == "Raw profile type exif" || text.keyword == "Raw profile type APP1") {
        const QByteArray profile = rawProfile(text.bytes);
        if (profile.startsWith("Exif") && result.exif.isEmpty()) {
            result.exif = exifBlock(profile);
        }
    } else if (text.keyword == "Raw profile type iptc") {
        result.iptc = iptcInResources(rawProfile(text.bytes));
    } else if (kept.contains(text.keyword)) {
        result.texts[text.keyword] = text.utf8 ? QString::fromUtf8(text.bytes) : QString::fromLatin1(text.bytes);
    }
}

PictureMetadata ofPng(Source &source) {
    constexpr int mostChunks = 100'000;
    constexpr int mostTexts = 200; // each may have to be unpacked
    PictureMetadata result;
    int texts = 0;
    qint64 at = 8;
    for (int i = 0; i < mostChunks; ++i) {
        const QByteArray lead = source.bytes(at, 8);
        if (lead.size() < 8 || lead.endsWith("IEND")) {
            break;
        }
        const qint64 length = qFromBigEndian<quint32>(lead.constData());
        const QByteArray type = lead.mid(4);
        if (type == "eXIf" && length <= mostBytesOfPart) {
            result.exif = exifBlock(source.bytes(at + 8, length));
        } else if (type.endsWith("Xt") && length <= mostBytesOfPart && ++texts <= mostTexts) {
            take(textOf(type, source.bytes(at + 8, length)), result);
        } else if (const QByteArray data = source.bytes(at + 8, 9);
                   type == "pHYs" && data.size() == 9 && data[8] == 1) {
            result.dotsPerInchX = qFromBigEndian<quint32>(data.constData()) / inchesPerMetre;
            result.dotsPerInchY = qFromBigEndian<quint32>(data.constData() + 4) / inchesPerMetre;
        }
        at += 12 + length;
    }
    return result;
}

PictureMetadata ofTiff(Source &source) {
    const TiffMetadata blocks = readTiffMetadata(source);
    PictureMetadata result;
    result.exif = blocks.exif;
    result.xmp = blocks.xmp;
    result.iptc = blocks.iptc;
    return result;
}

PictureMetadata ofWebP(Source &source) {
    constexpr int mostChunks = 1000;
    PictureMetadata result;
    qint64 at = 12;
    for (int i = 0; i < mostChunks; ++i) {
        const QByteArray lead = source.bytes(at, 8);
        if (lead.size() < 8) {
            break;
        }
        const qint64 length = qFromLittleEndian<quint32>(lead.constData() + 4);
        if (lead.startsWith("EXIF") && length <= mostBytesOfPart) {
            result.exif = exifBlock(source.bytes(at + 8, length));
        } else if (lead.startsWith("XMP ") && length <= mostBytesOfPart) {
            result.xmp = source.bytes(at + 8, length);
        }
        at += 8 + length + length % 2;
    }
    return result;
}

PictureMetadata ofBmp(Source &source) {
    const QByteArray head = source.bytes(0, 46); // the pixels per metre are in every header of 40 bytes and more
    PictureMetadata result;
    if (head.size() == 46 && qFromLittleEndian<quint32>(head.constData() + 14) >= 40) {
        result.dotsPerInchX = std::max(0, qFromLittleEndian<qint32>(head.constData() + 38)) / inchesPerMetre;
        result.dotsPerInchY = std::max(0, qFromLittleEndian<qint32>(head.constData() + 42)) / inchesPerMetre;
    }
    return result;
}

constexpr struct {
    bool (*matches)(const QByteArray &head);
    PictureMetadata (*read)(Source &source);
} formats[] = {
    {isJpeg, ofJpeg}, {isPng, ofPng}, {isTiff, ofTiff}, {isWebP, ofWebP}, {isHeif, readHeifMetadata}, {isBmp, ofBmp},
};

} // namespace

PictureMetadata readMetadata(Source &source) {
    const QByteArray head = source.bytes(0, 4096);
    for (const auto &format : formats) {
        if (format.matches(head)) {
            PictureMetadata result = format.read(source);
            // One of both alone says nothing about a print.
            if (result.dotsPerInchX <= 0 || result.dotsPerInchY <= 0) {
                result.dotsPerInchX = result.dotsPerInchY = 0;
            }
            return result;
        }
    }
    return {};
}

// Adobe, "Photoshop File Formats", "Image Resource Blocks": signature, number, name of even length with its
// length in front, size, data of even length.
QByteArray iptcInResources(const QByteArray &resources) {
    qsizetype at = 0;
    while (at + 12 <= resources.size() && resources.mid(at, 4) == resourceSignature) {
        const int number = qFromBigEndian<quint16>(resources.constData() + at + 4);
        const int nameBytes = (static_cast<uchar>(resources[at + 6]) + 2) / 2 * 2;
        at += 6 + nameBytes;
        if (at + 4 > resources.size()) {
            break;
        }
        const qint64 size = qFromBigEndian<quint32>(resources.constData() + at);
        at += 4;
        if (number == iptcResource && size <= resources.size() - at) {
            return resources.mid(at, size);
        }
        if (size > resources.size() - at) {
            break;
        }
        at += size + size % 2;
    }
    return {};
}

QByteArray resourcesWithIptc(const QByteArray &iptc) {
    QByteArray head(12, '\0');
    head.replace(0, 4, resourceSignature);
    qToBigEndian<quint16>(iptcResource, head.data() + 4);
    qToBigEndian(static_cast<quint32>(iptc.size()), head.data() + 8);
    return head + iptc + QByteArray(iptc.size() % 2, '\0');
}

} // namespace lumora
