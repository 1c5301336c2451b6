// lumora-fuzz-seeds FOLDER: makes what the fuzz targets begin with, a folder for each target.
#include "devices/ScanOption.h"
#include "devices/ScanProtocol.h"
#include "document/RecoveryCopy.h"
#include "imaging/Picture.h"
#include "imaging/PictureFile.h"
#include "imaging/files/Metadata.h"
#include "imaging/files/MetadataBlocks.h"
#include "imaging/filesMakers.h"
#include "session/Settings.h"
#include "support/TestPictures.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>
#include <climits>
#include <cstdio>
#include <exiv2/exiv2.hpp>
#include <lcms2.h>
#include <png.h>
#include <sys/mman.h>
#include <tiffio.h>
#include <unistd.h>

using namespace lumora;
using namespace lumora::test;

namespace {

constexpr int width = 19; // no multiple of what any format packs together
constexpr int height = 13;

Sampler noise(int bits) {
    return [bits](int x, int y, int channel) {
        const unsigned value = static_cast<unsigned>(x / 3 * 1709 + y * 5711 + channel * 9973) * 2654435761U;
        return static_cast<int>(value >> (32 - bits));
    };
}

QString folder;
int count = 0;

void add(const char *target, const QByteArray &bytes) {
    QDir().mkpath(folder + '/' + target);
    QFile file(QStringLiteral("%1/%2/%3").arg(folder, QLatin1String(target)).arg(++count));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        std::perror(qPrintable(file.fileName()));
        std::exit(2);
    }
}

/// And one that is cut off.
void addCut(const char *target, const QByteArray &bytes) {
    add(target, bytes);
    add(target, bytes.left(bytes.size() * 2 / 3));
}

QByteArray greyProfile() {
    cmsToneCurve *curve = cmsBuildGamma(nullptr, 1.8);
    cmsHPROFILE profile = cmsCreateGrayProfile(cmsD50_xyY(), curve);
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    QByteArray bytes(size, '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    cmsFreeToneCurve(curve);
    return bytes;
}

PictureMetadata someMetadata() {
    PictureMetadata metadata;
    metadata.texts = {{"Title", "The boat"}, {"Author", "Ada"}, {"Creation Time", "2021-03-04T05:06:07"}};
    metadata.dotsPerInchX = metadata.dotsPerInchY = 300;
    return metadata;
}

QByteArray cameraExif() {
    Exiv2::ExifData exif;
    exif["Exif.Image.Make"] = std::string("Canon");
    exif["Exif.Image.Model"] = std::string("Canon EOS 80D");
    exif["Exif.Image.Orientation"] = std::uint16_t{6};
    exif["Exif.Image.XResolution"] = Exiv2::URational(300, 1);
    exif["Exif.Photo.ExposureTime"] = Exiv2::URational(1, 60);
    exif["Exif.Photo.UserComment"] = std::string("charset=Unicode boat");
    exif["Exif.Canon.OwnerName"] = std::string("Ada");
    exif["Exif.CanonCs.Macro"] = std::uint16_t{1};
    exif["Exif.GPSInfo.GPSLatitudeRef"] = std::string("N");
    exif["Exif.GPSInfo.GPSLatitude"] = Exiv2::Rational(54, 1);
    Exiv2::Blob blob;
    Exiv2::ExifParser::encode(blob, Exiv2::littleEndian, exif);
    return {reinterpret_cast<const char *>(blob.data()), static_cast<qsizetype>(blob.size())};
}

/// As Lumora writes it, with metadata.
QByteArray saved(const char *name, const QImage &picture) {
    const QTemporaryDir place;
    const QString path = place.filePath(QLatin1String(name));
    PictureMetadata metadata = someMetadata();
    metadata.exif = cameraExif();
    writePicture(picture, path, metadata, PrivateDetails::Kept);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void addJpegs() {
    const QByteArray small = makeJpeg(16, 11, {}, noise(8));
    const QByteArray exif = QByteArray("Exif\0\0", 6);
    for (const bool progressive : {false, true}) {
        for (const int components : {1, 3, 4}) {
            for (const bool mixed : {false, true}) {
                addCut("jpeg", makeJpeg(width, height,
                                        {.components = components,
                                         .progressive = progressive,
                                         .mixed = mixed && components == 4,
                                         .restartRows = mixed ? 1 : 0},
                                        noise(8)));
            }
        }
    }
    add("jpeg", makeJpeg(40, 30, {.exif = exif + exifWithThumbnail(small)}, noise(8)));
    add("jpeg", makeJpeg(width, height, {.exif = exif + exifWithOrientation(6)}, noise(8)));
    add("jpeg", makeJpeg(width, height, {.components = 1, .profile = greyProfile()}, noise(8)));
    add("jpeg", saved("a.jpg", photoLike(width, height)));
}

void addPngs() {
    for (const int colourType : {PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_RGB, PNG_COLOR_TYPE_PALETTE,
                                 PNG_COLOR_TYPE_GRAY_ALPHA, PNG_COLOR_TYPE_RGB_ALPHA}) {
        for (const int bits : {1, 2, 4, 8, 16}) {
            const bool isPalette = colourType == PNG_COLOR_TYPE_PALETTE;
            if ((bits < 8 && !isPalette && colourType != PNG_COLOR_TYPE_GRAY) || (bits == 16 && isPalette)) {
                continue;
            }
            for (const bool interlaced : {false, true}) {
                add("png", makePng(width, height, bits, colourType, interlaced, noise(bits)));
            }
        }
    }
    addCut("png",
           makePng(width, height, 8, PNG_COLOR_TYPE_GRAY, false, noise(8), exifWithOrientation(5), greyProfile()));
    addCut("png", saved("a.png", photoLike(width, height, true)));
}

void addBmps() {
    std::vector<QRgb> palette(256);
    for (int i = 0; i < 256; ++i) {
        palette[static_cast<std::size_t>(i)] = qRgb(i, 255 - i, i ^ 85);
    }
    for (const int bits : {1, 4, 8, 24}) {
        for (const bool fromTop : {false, true}) {
            addCut("bmp", makeBmp(width, height, bits, fromTop, noise(bits), bits > 8 ? std::vector<QRgb>() : palette));
        }
    }
    // Run lengths: a run, a literal, a move, an end of line, an end.
    const QByteArray runs("\x05\x11\0\x04\x12\x34\x56\x78\0\x02\x03\x01\x04\x22\0\0\x13\x33\0\1", 20);
    for (const int bits : {4, 8}) {
        palette.resize(std::size_t{1} << bits);
        QByteArray bytes = makeBmp(width, height, bits, false, noise(bits), palette).left(54 + (4 << bits));
        bytes[30] = bits == 8 ? 1 : 2;
        add("bmp", bytes + runs);
    }
    // Masks, with alpha, of 16 and 32 bits.
    QByteArray masked = makeBmp(width, height, 24, true, noise(8));
    for (const int bits : {16, 32}) {
        masked[28] = static_cast<char>(bits);
        masked[30] = 3;
        const QByteArray masks = bits == 16 ? QByteArray("\0\xF8\0\0\xE0\7\0\0\x1F\0\0\0", 12)
                                            : QByteArray("\0\0\xFF\0\0\xFF\0\0\xFF\0\0\0", 12);
        add("bmp", masked.left(54) + masks + QByteArray(width * height * bits / 8 + 64, '\x5A'));
    }
    add("bmp", saved("a.bmp", photoLike(width, height)));
}

void addTiffs() {
    for (const int compression : {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE, COMPRESSION_PACKBITS,
                                  COMPRESSION_JPEG, COMPRESSION_ZSTD, COMPRESSION_LZMA, COMPRESSION_WEBP}) {
        for (const bool tiled : {false, true}) {
            add("tiff", makeTiff(width, height, {.compression = compression, .tiled = tiled}, noise(8)));
        }
    }
    for (const int bits : {1, 2, 4, 8, 12, 16, 24, 32, 64}) {
        for (const bool separate : {false, true}) {
            add("tiff", makeTiff(width, height, {.bits = bits, .separate = separate}, noise(std::min(bits, 16))));
        }
        add("tiff", makeTiff(width, height, {.bits = bits, .samples = 1, .photometric = PHOTOMETRIC_MINISWHITE},
                             noise(std::min(bits, 16))));
    }
    const TiffKind others[] = {
        {.bits = 4, .samples = 1, .photometric = PHOTOMETRIC_PALETTE},
        {.samples = 1, .photometric = PHOTOMETRIC_PALETTE},
        {.samples = 4, .photometric = PHOTOMETRIC_SEPARATED},
        {.photometric = PHOTOMETRIC_YCBCR, .compression = COMPRESSION_JPEG},
        {.photometric = PHOTOMETRIC_YCBCR},
        {.photometric = PHOTOMETRIC_CIELAB},
        {.bits = 16, .photometric = PHOTOMETRIC_CIELAB},
        {.samples = 4, .alphaKind = EXTRASAMPLE_ASSOCALPHA, .orientation = 6},
        {.bits = 16, .samples = 4, .alphaKind = EXTRASAMPLE_UNASSALPHA, .pages = 2},
        {.bits = 16, .samples = 4, .compression = COMPRESSION_LZW, .predictor = 2, .mode = "wb"},
        {.bits = 32, .predictor = 3, .format = SAMPLEFORMAT_IEEEFP},
        {.bits = 16, .format = SAMPLEFORMAT_IEEEFP},
        {.bits = 16, .format = SAMPLEFORMAT_INT},
        {.bits = 1, .samples = 1, .photometric = 0, .compression = COMPRESSION_CCITTFAX4},
        {.bits = 1, .samples = 1, .photometric = 0, .compression = COMPRESSION_CCITTFAX3},
        {.samples = 1, .photometric = 1, .mode = "w8", .profile = greyProfile()},
        {.mode = "wb"},
    };
    for (const TiffKind &kind : others) {
        addCut("tiff", makeTiff(width, height, kind, noise(std::min(kind.bits, 16))));
    }
    add("tiff", saved("a.tif", photoLike(width, height, true)));
}

void addGifs() {
    const std::vector<QRgb> palette(4, qRgb(10, 200, 90));
    std::vector<std::uint8_t> indices(static_cast<std::size_t>(width) * height);
    for (std::size_t i = 0; i < indices.size(); ++i) {
        indices[i] = static_cast<std::uint8_t>(noise(2)(static_cast<int>(i), 0, 0));
    }
    for (const bool interlaced : {false, true}) {
        for (const int transparent : {-1, 1}) {
            addCut("gif", makeGif(width, height, palette, transparent, interlaced, {indices}));
            add("gif", makeGif(width, height, palette, transparent, interlaced, {indices, indices}));
        }
    }
    add("gif", saved("a.gif", photoLike(width, height, true)));
}

void addTgas() {
    for (const bool packed : {false, true}) {
        for (const int corner : {0, 1, 2, 3}) {
            addCut("tga", makeTga(width, height, 1, 8, corner, packed, noise(8)));
            add("tga", makeTga(width, height, 3, 8, corner, packed, noise(8)));
            for (const int bits : {16, 24, 32}) {
                add("tga", makeTga(width, height, 2, bits, corner, packed, noise(8)));
            }
        }
    }
}

void addModern() {
    for (const bool transparent : {false, true}) {
        const QImage photo = photoLike(width, height, transparent);
        addCut("webp", makeWebP(photo));
        addCut("webp", makeWebP(photo, exifWithOrientation(3)));
    }
    for (const int orientation : {1, 6}) {
        const QByteArray heif = makeHeif(photoLike(64, 48), orientation, exifWithOrientation(1));
        if (!heif.isEmpty()) {
            addCut("heif", heif);
        }
    }
    const auto grey = [](int x) { return x * 20; };
    if (const QByteArray heif = makeDeepHeif(64, 64, grey, greyProfile()); !heif.isEmpty()) {
        add("heif", heif);
    }
}

void addMetadata() {
    const MetadataBlocks blocks = metadataBlocks(someMetadata(), QSize(width, height), PrivateDetails::Kept);
    const QByteArray iptc = QByteArray("\x1C\x02\x5A\0\x0D", 5) + "Quiet Harbour" + // IPTC-IIM 4: the city
                            QByteArray("\x1C\x02\x78\0\x08", 5) + "The boat";       // and the caption
    add("metadata", '\0' + blocks.exif);
    add("metadata", '\0' + cameraExif());
    add("metadata", '\0' + exifWithThumbnail(makeJpeg(16, 11, {}, noise(8))));
    add("metadata", '\0' + exifWithOrientation(6));
    add("metadata", '\1' + blocks.xmp);
    add("metadata",
        "\1<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
        "<rdf:Description xmlns:dc='http://purl.org/dc/elements/1.1/' xmlns:tiff='http://ns.adobe.com/tiff/1.0/' "
        "tiff:Orientation='6'><dc:subject><rdf:Bag><rdf:li>boat</rdf:li></rdf:Bag></dc:subject>"
        "</rdf:Description></rdf:RDF></x:xmpmeta>");
    add("metadata", '\2' + resourcesWithIptc(iptc));
    add("metadata", "\3The boat\n2021:03:04 05:06:07\nAda\n300");
    add("metadata", "\3The boat\nThu, 04 Mar 2021 05:06:07 +0100\nAda\n72.5");
}

void addInis() {
    QByteArray all = "SFX,Advanced\n";
    for (const SettingRow &row : settingRows) {
        const QByteArray text = QByteArray("[") + row.section + "]\n" + row.key + '=' + row.standard + '\n';
        all += QByteArray(row.section) != "Mail Server" && text.size() < 40 ? text : QByteArray();
    }
    const QByteArray small = ";,x\r\n[Grid]\r\nValue=1\r\n\r\n; a remark\r\n[SFX]\r\n Advanced = 0 \r\nother\r\n";
    add("ini", all);
    add("ini", small);
    add("ini", "\xEF\xBB\xBF" + small);
    add("ini", QByteArray(small).replace("\r\n", "\r"));
    add("ini", QByteArray(small).replace("other", "\xE4\x80=\x93"));
    add("ini", QByteArray(small).replace("other", QByteArray("k=a\0b", 5)));
    const QString text = QString::fromLatin1(small);
    add("ini", "\xFF\xFE" + QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2));
}

QByteArray contentsOf(int file) {
    QByteArray bytes(::lseek(file, 0, SEEK_END), '\0');
    ::pread(file, bytes.data(), bytes.size(), 0);
    ::close(file);
    return bytes;
}

void addCopies() {
    for (const bool transparent : {false, true}) {
        for (const QSize size : {QSize(width, height), QSize(3, 4500)}) { // the second has two strips
            const int file = ::memfd_create("copy", MFD_CLOEXEC);
            const QImage photo = size.width() == 3 ? newPicture(3, 4500, !transparent)
                                                   : toPicture(photoLike(width, height, transparent));
            QImage flat = photo;
            if (size.width() == 3) {
                flat.fill(transparent ? qRgba(1, 2, 3, 4) : qRgb(1, 2, 3));
            }
            writeRecoveryCopy(file, {flat, transparent ? someMetadata() : PictureMetadata()}, LLONG_MAX, {});
            const QByteArray copy = contentsOf(file);
            add("recovery", copy);
            if (size.width() != 3 && !transparent) { // the strip as it is
                const quint32 head[] = {0, width * height * 3, 0};
                constexpr qsizetype stripAt = 56;
                const qsizetype metadataBytes = qFromLittleEndian<qint32>(copy.constData() + 20);
                add("recovery", copy.left(stripAt + metadataBytes) +
                                    QByteArray(reinterpret_cast<const char *>(head), sizeof head) +
                                    QByteArray(width * height * 3, '\x7F'));
            }
        }
    }
}

void addScans() {
    using Kind = ScanMessage::Kind;
    using Samples = ScanFrame::Samples;
    const auto message = [](Kind kind, const QByteArray &content) {
        return scanMessageHead(kind, static_cast<int>(content.size())) + content;
    };
    const QList<ScanOption> options{
        {.name = "mode", .kind = ScanOption::Kind::Word, .value = "Color", .choices = {"Gray", "Color"}},
        {.name = "resolution",
         .unit = ScanOption::Unit::DotsPerInch,
         .value = "75",
         .hasRange = true,
         .least = 75,
         .most = 600}};
    add("scan", '\x20' + message(Kind::Options, toJson(options)) + message(Kind::Status, "good"));
    for (const int depth : {1, 8, 16}) {
        for (const int lines : {4, -1}) {
            for (const Samples samples : {Samples::Grey, Samples::Colour}) {
                const int bytesPerLine = (width * depth + 7) / 8 * (samples == Samples::Colour ? 3 : 1);
                const ScanFrame frame{samples, true, depth, width, lines, bytesPerLine};
                add("scan", '\x40' + message(Kind::Frame, frame.toText()) +
                                message(Kind::Data, QByteArray(bytesPerLine * 4, '\x35')) +
                                message(Kind::Status, "good"));
            }
        }
    }
    QByteArray passes("\x10");
    for (const Samples samples : {Samples::Red, Samples::Green, Samples::Blue}) {
        const ScanFrame frame{samples, samples == Samples::Blue, 8, width, 3, width};
        passes += message(Kind::Frame, frame.toText()) + message(Kind::Data, QByteArray(width * 3, '\x35'));
    }
    add("scan", passes + message(Kind::Status, "no-paper"));
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 2) {
        std::fputs("Usage: lumora-fuzz-seeds FOLDER\n", stderr);
        return 2;
    }
    folder = QString::fromLocal8Bit(argv[1]);
    TIFFSetWarningHandler(nullptr);
    TIFFSetErrorHandler(nullptr); // what this library was built without
    for (const auto addAll : {addJpegs, addPngs, addBmps, addTiffs, addGifs, addTgas, addModern, addMetadata, addInis,
                              addCopies, addScans}) {
        addAll();
    }
    std::printf("%d seeds\n", count);
    return 0;
}
