// Writing PNG. Strips of rows are filtered and deflated on all cores; their deflate streams, each ended on a byte
// boundary, make one stream when joined (RFC 1951, as pigz does it). libpng packs on one core with zlib: this takes a
// quarter of its time on two cores (bench: PngEncode beside PngEncodeByQt).
#include "imaging/Picture.h"
#include "imaging/files/Deflate.h"
#include "imaging/files/Format.h"
#include "imaging/files/Metadata.h"
#include "imaging/files/MetadataBlocks.h"
#include "imaging/files/Strips.h"

#include <QtEndian>
#include <cmath>
#include <vector>
#include <zlib.h>

namespace lumora {

namespace {

constexpr char upFilter = 2;

// The rows as PNG stores them: a byte for the filter, then red, green, blue (and alpha), each minus the byte above.
std::vector<std::uint8_t> filtered(const ConstPixelView &view, int channels, int firstRow, int endRow) {
    std::vector<std::uint8_t> raw((static_cast<std::size_t>(view.width) * channels + 1) * (endRow - firstRow));
    const std::vector<std::uint8_t> nothing(static_cast<std::size_t>(view.width) * 4);
    std::uint8_t *to = raw.data();
    for (int y = firstRow; y < endRow; ++y) {
        const std::uint8_t *pixel = view.row(y);
        const std::uint8_t *above = y > 0 ? view.row(y - 1) : nothing.data();
        *to++ = upFilter;
        for (int x = 0; x < view.width; ++x, pixel += 4, above += 4, to += channels) {
            to[0] = static_cast<std::uint8_t>(pixel[2] - above[2]);
            to[1] = static_cast<std::uint8_t>(pixel[1] - above[1]);
            to[2] = static_cast<std::uint8_t>(pixel[0] - above[0]);
            if (channels == 4) {
                to[3] = static_cast<std::uint8_t>(pixel[3] - above[3]);
            }
        }
    }
    return raw;
}

QByteArray chunk(const char *type, const QByteArray &data) {
    QByteArray result(4, '\0');
    qToBigEndian(static_cast<quint32>(data.size()), result.data());
    result += type + data;
    const uLong check = crc32(0, reinterpret_cast<const Bytef *>(result.constData()) + 4, result.size() - 4);
    result.resize(result.size() + 4);
    qToBigEndian(static_cast<quint32>(check), result.data() + result.size() - 4);
    return result;
}

struct Strip {
    QByteArray chunk; ///< empty when memory was refused
    uLong check = 0;
    std::size_t rawBytes = 0;
};

Strip packed(const ConstPixelView &view, int channels, int firstRow, int endRow) {
    static const QByteArray zlibHeader("\x78\x01", 2);
    const std::vector<std::uint8_t> raw = filtered(view, channels, firstRow, endRow);
    const QByteArray data = deflated(raw, endRow == view.height ? DeflateWrap::LastPart : DeflateWrap::Part);
    Strip strip;
    strip.rawBytes = raw.size();
    strip.check = adler32(1, raw.data(), static_cast<uInt>(raw.size()));
    if (!data.isEmpty()) {
        strip.chunk = chunk("IDAT", firstRow == 0 ? zlibHeader + data : data);
    }
    return strip;
}

QByteArray imageHeader(const QImage &picture) {
    QByteArray data(13, '\0');
    qToBigEndian(static_cast<quint32>(picture.width()), data.data());
    qToBigEndian(static_cast<quint32>(picture.height()), data.data() + 4);
    data[8] = 8;                                 // bits a channel
    data[9] = picture.hasAlphaChannel() ? 6 : 2; // RGB with or without alpha
    return chunk("IHDR", data);
}

QByteArray internationalText(const QByteArray &keyword, const QByteArray &utf8) {
    return chunk("iTXt", keyword + QByteArray(5, '\0') + utf8); // not packed, no language, keyword not translated
}

/// IPTC records have no chunk of their own: ImageMagick's way, which other programs read.
QByteArray rawProfile(const QByteArray &name, const QByteArray &data) {
    const QByteArray digits = data.toHex();
    QByteArray text = '\n' + name + '\n' + QByteArray::number(data.size()).rightJustified(8) + '\n';
    constexpr qsizetype line = 72;
    for (qsizetype at = 0; at < digits.size(); at += line) {
        text += digits.mid(at, line) + '\n';
    }
    return chunk("tEXt", "Raw profile type " + name + '\0' + text);
}

QByteArray metadataChunks(const MetadataBlocks &blocks) {
    QByteArray result;
    if (blocks.dotsPerInchX > 0) {
        QByteArray density(9, '\1'); // the last byte: per metre
        qToBigEndian(static_cast<quint32>(std::lround(blocks.dotsPerInchX * inchesPerMetre)), density.data());
        qToBigEndian(static_cast<quint32>(std::lround(blocks.dotsPerInchY * inchesPerMetre)), density.data() + 4);
        result += chunk("pHYs", density);
    }
    if (!blocks.exif.isEmpty()) {
        result += chunk("eXIf", blocks.exif);
    }
    if (!blocks.xmp.isEmpty()) {
        result += internationalText("XML:com.adobe.xmp", blocks.xmp);
    }
    if (!blocks.iptc.isEmpty()) {
        result += rawProfile("iptc", resourcesWithIptc(blocks.iptc));
    }
    for (auto text = blocks.texts.begin(); text != blocks.texts.end(); ++text) {
        result += internationalText(text.key(), text.value().toUtf8());
    }
    return result;
}

} // namespace

QString writePng(const QImage &picture, QIODevice &target) {
    return writePng(picture, target, {});
}

QString writePng(const QImage &picture, QIODevice &target, const MetadataBlocks &blocks) {
    const ConstPixelView view = readView(picture);
    const int channels = picture.hasAlphaChannel() ? 4 : 3;
    bool good = target.write("\x89PNG\r\n\x1A\n" + imageHeader(picture) + chunk("sRGB", QByteArray(1, '\0')) +
                             metadataChunks(blocks)) > 0;
    uLong check = adler32(0, nullptr, 0);
    packStrips<Strip>(
        view.height, rowsInStrip(view.width, view.height, channels),
        [&](int firstRow, int endRow) { return packed(view, channels, firstRow, endRow); },
        [&](const Strip &strip) {
            check = adler32_combine(check, strip.check, static_cast<z_off_t>(strip.rawBytes));
            good = good && !strip.chunk.isEmpty() && target.write(strip.chunk) == strip.chunk.size();
            return good;
        });
    QByteArray end(4, '\0');
    qToBigEndian(static_cast<quint32>(check), end.data());
    good = good && target.write(chunk("IDAT", end) + chunk("IEND", {})) > 0;
    return good ? QString() : QStringLiteral("cannot write: %1").arg(target.errorString());
}

} // namespace lumora
