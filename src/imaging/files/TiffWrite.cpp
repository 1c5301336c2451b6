// Writing TIFF with libtiff: Deflate with horizontal differences, the strips compressed on all cores. libtiff itself
// compresses on one core and takes more than twice as long (bench: TiffEncode beside TiffEncodeByQt, which uses LZW).
#include "imaging/Picture.h"
#include "imaging/files/Deflate.h"
#include "imaging/files/Format.h"
#include "imaging/files/MetadataBlocks.h"
#include "imaging/files/Strips.h"
#include "imaging/files/TiffFile.h"

#include <QtEndian>
#include <algorithm>
#include <vector>

namespace lumora {

namespace {

// Red, green, blue (and alpha), each less the pixel to the left: predictor 2 of TIFF 6.0, section 14.
std::vector<std::uint8_t> differences(const ConstPixelView &view, int channels, int firstRow, int endRow) {
    std::vector<std::uint8_t> raw(static_cast<std::size_t>(view.width) * channels * (endRow - firstRow));
    constexpr int order[4] = {2, 1, 0, 3};
    std::uint8_t *to = raw.data();
    for (int y = firstRow; y < endRow; ++y) {
        const std::uint8_t nothing[4] = {};
        const std::uint8_t *left = nothing;
        const std::uint8_t *pixel = view.row(y);
        for (int x = 0; x < view.width; ++x, left = pixel, pixel += 4) {
            for (int channel = 0; channel < channels; ++channel) {
                *to++ = static_cast<std::uint8_t>(pixel[order[channel]] - left[order[channel]]);
            }
        }
    }
    return raw;
}

bool describe(TIFF *tiff, const ConstPixelView &view, int channels, int stripRows) {
    bool good = TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, view.width) &&
                TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, view.height) && TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8) &&
                TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, channels) &&
                TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB) &&
                TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) &&
                TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE) &&
                TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL) &&
                TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, stripRows);
    if (good && channels == 4) {
        const uint16_t straight = EXTRASAMPLE_UNASSALPHA;
        good = TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &straight);
    }
    return good;
}

// EXIF data have it as the exact fraction.
bool describeResolution(TIFF *tiff, const MetadataBlocks &blocks) {
    return blocks.dotsPerInchX <= 0 || !blocks.exif.isEmpty() ||
           (TIFFSetField(tiff, TIFFTAG_XRESOLUTION, blocks.dotsPerInchX) &&
            TIFFSetField(tiff, TIFFTAG_YRESOLUTION, blocks.dotsPerInchY) &&
            TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH));
}

// --- Metadata -------------------------------------------------------------------------------------------------------
// libtiff writes fields one by one and only those that it knows. The encoded EXIF data are TIFF themselves: they stand
// at the beginning of the file, so that their offsets hold, and their first directory is joined with libtiff's.

constexpr qint64 tiffHeaderBytes = 8;
constexpr qsizetype entryBytes = 12; // tag and type of two bytes, count and value of four, in the processor's order

struct DirectoryEntry {
    quint16 tag = 0;
    QByteArray bytes;
};

template <typename Number> Number numberAt(const QByteArray &bytes, qsizetype at) {
    return qFromUnaligned<Number>(bytes.constData() + at);
}

template <typename Number> QByteArray bytesOf(Number value) {
    return QByteArray(reinterpret_cast<const char *>(&value), sizeof value);
}

DirectoryEntry madeEntry(quint16 tag, quint16 type, quint32 count, quint32 offset) {
    return {tag, bytesOf(tag) + bytesOf(type) + bytesOf(count) + bytesOf(offset)};
}

/// Adds the entries of a directory, given from its count on, but for tags that are there already.
void addEntries(const QByteArray &directory, std::vector<DirectoryEntry> &entries) {
    const int count = directory.size() >= 2 ? numberAt<quint16>(directory, 0) : 0;
    for (qsizetype at = 2; at + entryBytes <= directory.size() && at < 2 + count * entryBytes; at += entryBytes) {
        const auto tag = numberAt<quint16>(directory, at);
        const bool known = std::any_of(entries.begin(), entries.end(),
                                       [tag](const DirectoryEntry &entry) { return entry.tag == tag; });
        if (!known) {
            entries.push_back({tag, directory.mid(at, entryBytes)});
        }
    }
}

QByteArray readAt(QIODevice &target, qint64 at, qint64 count) {
    return target.seek(at) ? target.read(count) : QByteArray();
}

/// Appends the data at an even offset and gives that; 0 when they cannot be written.
quint32 append(QIODevice &target, const QByteArray &data) {
    const qint64 at = (target.size() + 1) / 2 * 2;
    const QByteArray padded = QByteArray(at - target.size(), '\0') + data;
    return target.seek(target.size()) && target.write(padded) == padded.size() ? static_cast<quint32>(at) : 0;
}

bool joinDirectories(QIODevice &target, const MetadataBlocks &blocks) {
    std::vector<DirectoryEntry> entries;
    const QByteArray header = readAt(target, 0, tiffHeaderBytes);
    const qint64 first = header.size() == tiffHeaderBytes ? numberAt<quint32>(header, 4) : 0;
    constexpr qint64 most = 2 + 100 * entryBytes; // libtiff's own has some fifteen
    addEntries(readAt(target, first, most), entries);
    if (entries.empty()) {
        return false;
    }
    constexpr quint16 bytes = 1;
    if (!blocks.xmp.isEmpty()) {
        const quint32 at = append(target, blocks.xmp);
        entries.push_back(madeEntry(TIFFTAG_XMLPACKET, bytes, static_cast<quint32>(blocks.xmp.size()), at));
    }
    if (!blocks.iptc.isEmpty()) {
        constexpr quint16 undefined = 7;
        const quint32 at = append(target, blocks.iptc);
        entries.push_back(madeEntry(TIFFTAG_RICHTIFFIPTC, undefined, static_cast<quint32>(blocks.iptc.size()), at));
    }
    if (blocks.exif.size() > tiffHeaderBytes) {
        addEntries(blocks.exif.mid(numberAt<quint32>(blocks.exif, 4)), entries);
    }
    std::sort(entries.begin(), entries.end(), [](const auto &a, const auto &b) { return a.tag < b.tag; });
    QByteArray directory = bytesOf(static_cast<quint16>(entries.size()));
    for (const DirectoryEntry &entry : entries) {
        directory += entry.bytes;
    }
    const quint32 at = append(target, directory + QByteArray(4, '\0'));
    return at > 0 && target.seek(4) && target.write(bytesOf(at)) == 4;
}

QString writePixels(const QImage &picture, QIODevice &target, const MetadataBlocks &blocks) {
    const ConstPixelView view = readView(picture);
    const int channels = picture.hasAlphaChannel() ? 4 : 3;
    const int stripRows = rowsInStrip(view.width, view.height, channels);
    const TiffFile file(target, "w");
    bool good = file.handle() && describe(file.handle(), view, channels, stripRows) &&
                describeResolution(file.handle(), blocks);
    if (const QByteArray rest = blocks.exif.mid(tiffHeaderBytes); good && !rest.isEmpty()) {
        good = target.seek(tiffHeaderBytes) && target.write(rest) == rest.size();
    }
    uint32_t strip = 0;
    packStrips<QByteArray>(
        good ? view.height : 0, stripRows,
        [&](int firstRow, int endRow) {
            return deflated(differences(view, channels, firstRow, endRow), DeflateWrap::Zlib);
        },
        [&](QByteArray data) {
            good = good && !data.isEmpty() &&
                   TIFFWriteRawStrip(file.handle(), strip, data.data(), data.size()) == data.size();
            ++strip;
            return good;
        });
    good = good && TIFFWriteDirectory(file.handle()) == 1 && TIFFFlush(file.handle()) == 1;
    return good ? QString() : QStringLiteral("cannot write: %1").arg(file.text());
}

} // namespace

QString writeTiff(const QImage &picture, QIODevice &target, const MetadataBlocks &blocks) {
    QString error = writePixels(picture, target, blocks);
    const bool more = !blocks.exif.isEmpty() || !blocks.xmp.isEmpty() || !blocks.iptc.isEmpty();
    if (error.isEmpty() && more && !joinDirectories(target, blocks)) {
        return QStringLiteral("cannot write the metadata: %1").arg(target.errorString());
    }
    return error;
}

} // namespace lumora
