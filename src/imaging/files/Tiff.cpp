// Reading TIFF with libtiff: the first page, in any of its many arrangements. What is stored as plain samples is read
// here, so that alpha stays straight and inks are converted by their profile; the rest goes through libtiff's own
// conversion.
#include "imaging/Picture.h"
#include "imaging/files/Format.h"
#include "imaging/files/TiffFile.h"
#include "imaging/files/TiffSamples.h"

#include <cmath>

namespace lumora {

namespace {

Packing packingOf(int compression) {
    switch (compression) {
    case COMPRESSION_NONE:
        return Packing::Stored;
    case COMPRESSION_LZW:
        return Packing::Lzw;
    case COMPRESSION_ADOBE_DEFLATE:
    case COMPRESSION_DEFLATE:
        return Packing::Deflate;
    case COMPRESSION_CCITTRLE:
    case COMPRESSION_CCITTRLEW:
    case COMPRESSION_CCITTFAX3:
    case COMPRESSION_CCITTFAX4:
        return Packing::FaxRows;
    case COMPRESSION_JPEG:
    case COMPRESSION_OJPEG:
        return Packing::JpegBlocks;
    case COMPRESSION_LZMA:
    case COMPRESSION_ZSTD:
        return Packing::Dictionary;
    case COMPRESSION_PACKBITS:
    case COMPRESSION_THUNDERSCAN:
    case COMPRESSION_NEXT:
        return Packing::RunLength;
    default:
        return Packing::Modern;
    }
}

double unpackedBytes(const TiffFile &file, const FileHeader &header) {
    const double pixels = static_cast<double>(header.width) * header.height;
    if (header.packing == Packing::FaxRows) {
        return header.height;
    }
    if (header.packing == Packing::JpegBlocks || header.packing == Packing::Modern) {
        return pixels;
    }
    const bool subsampled = file.field<uint16_t>(TIFFTAG_PHOTOMETRIC, 0) == PHOTOMETRIC_YCBCR;
    const int samples = subsampled ? 1 : file.field<uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1);
    return pixels * samples * file.field<uint16_t>(TIFFTAG_BITSPERSAMPLE, 1) / 8;
}

FileHeader headerOf(Source &source, const TiffFile &file) {
    FileHeader header;
    header.width = static_cast<int>(std::min<uint32_t>(file.field<uint32_t>(TIFFTAG_IMAGEWIDTH, 0), INT_MAX));
    header.height = static_cast<int>(std::min<uint32_t>(file.field<uint32_t>(TIFFTAG_IMAGELENGTH, 0), INT_MAX));
    header.orientation = file.field<uint16_t>(TIFFTAG_ORIENTATION, 1);
    const int compression = file.field<uint16_t>(TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    if (!TIFFIsCODECConfigured(static_cast<uint16_t>(compression))) {
        return refusedHeader(PictureError::NotAPicture, QStringLiteral("TIFF compression %1").arg(compression));
    }
    header.packing = packingOf(compression);
    header.unpackedBytes = unpackedBytes(file, header);
    header.packedBytes = static_cast<double>(source.size() - 8);
    return header;
}

// Reads the strips row by row, so that the rows before a fault count. Returns how many rows were read.
int readStrips(const TiffFile &file, const TiffSamples &samples, const PixelView &view) {
    std::vector<uint8_t> raw(static_cast<std::size_t>(TIFFScanlineSize64(file.handle())));
    const int rowsPerStrip = static_cast<int>(
        std::min<uint32_t>(file.field<uint32_t>(TIFFTAG_ROWSPERSTRIP, INT_MAX), static_cast<uint32_t>(view.height)));
    int rowsRead = 0;
    for (int plane = 0; plane < samples.planes(); ++plane) {
        for (int y = 0; y < view.height && rowsPerStrip > 0; ++y) {
            if (TIFFReadScanline(file.handle(), raw.data(), static_cast<uint32_t>(y), static_cast<uint16_t>(plane)) ==
                1) {
                samples.place(raw.data(), view.width, plane, view.row(y));
                ++rowsRead;
            } else {
                y += rowsPerStrip - 1 - y % rowsPerStrip; // the next strip may be whole
            }
        }
    }
    return rowsRead;
}

int readTiles(const TiffFile &file, const TiffSamples &samples, const PixelView &view) {
    const auto width = static_cast<int>(std::min<uint32_t>(file.field<uint32_t>(TIFFTAG_TILEWIDTH, 0), INT_MAX));
    const auto height = static_cast<int>(std::min<uint32_t>(file.field<uint32_t>(TIFFTAG_TILELENGTH, 0), INT_MAX));
    const auto tileBytes = static_cast<qint64>(TIFFTileSize64(file.handle()));
    const auto rowBytes = static_cast<std::ptrdiff_t>(TIFFTileRowSize64(file.handle()));
    constexpr qint64 mostTileBytes = 256 << 20;
    if (width <= 0 || height <= 0 || tileBytes <= 0 || tileBytes > mostTileBytes) {
        return 0;
    }
    std::vector<uint8_t> raw(static_cast<std::size_t>(tileBytes));
    int tilesRead = 0;
    for (int plane = 0; plane < samples.planes(); ++plane) {
        for (qint64 y = 0; y < view.height; y += height) {
            for (qint64 x = 0; x < view.width; x += width) {
                if (TIFFReadTile(file.handle(), raw.data(), static_cast<uint32_t>(x), static_cast<uint32_t>(y), 0,
                                 static_cast<uint16_t>(plane)) < 0) {
                    continue;
                }
                ++tilesRead;
                const int columns = static_cast<int>(std::min<qint64>(width, view.width - x));
                for (qint64 row = y; row < std::min<qint64>(y + height, view.height); ++row) {
                    samples.place(raw.data() + (row - y) * rowBytes, columns, plane,
                                  view.row(static_cast<int>(row)) + x * 4);
                }
            }
        }
    }
    return tilesRead;
}

// libtiff's conversion gives red, green, blue, alpha, multiplied by alpha.
bool readConverted(const TiffFile &file, const PixelView &view) {
    TIFFRGBAImage image{};
    char text[1024] = "";
    if (TIFFRGBAImageOK(file.handle(), text) != 1 || TIFFRGBAImageBegin(&image, file.handle(), 0, text) != 1) {
        return false;
    }
    image.req_orientation = image.orientation; // turning is done later, for all formats alike
    const bool good = TIFFRGBAImageGet(&image, reinterpret_cast<uint32_t *>(view.data),
                                       static_cast<uint32_t>(view.width), static_cast<uint32_t>(view.height)) == 1;
    TIFFRGBAImageEnd(&image);
    for (int y = 0; good && y < view.height; ++y) {
        std::uint8_t *pixel = view.row(y);
        for (int x = 0; x < view.width; ++x, pixel += 4) {
            std::swap(pixel[0], pixel[2]);
            divideByAlpha(pixel);
        }
    }
    return good;
}

} // namespace

bool isTiff(const QByteArray &head) {
    return head.startsWith(QByteArray("II*\0", 4)) || head.startsWith(QByteArray("MM\0*", 4)) ||
           head.startsWith(QByteArray("II+\0\x8\0", 6)) || head.startsWith(QByteArray("MM\0+\0\x8", 6));
}

FileHeader readTiffHeader(Source &source) {
    source.device().seek(0);
    const TiffFile file(source.device(), "rm");
    return file.handle() ? headerOf(source, file) : refusedHeader(PictureError::Damaged, file.text());
}

Decoded decodeTiff(Source &source, const FileHeader &header) {
    source.device().seek(0);
    const TiffFile file(source.device(), "rm");
    if (!file.handle()) {
        return refused(PictureError::Damaged, file.text());
    }
    const TiffSamples samples(file);
    Decoded result;
    result.picture = newPicture(header.width, header.height, !samples.hasAlpha() && samples.isPlain());
    if (result.picture.isNull()) {
        return refused(PictureError::NoMemory, QStringLiteral("no memory for the pixels"));
    }
    greyFrom(result.picture, 0);
    const PixelView view = writeView(result.picture);
    bool found = false;
    if (!samples.isPlain()) {
        found = readConverted(file, view);
    } else if (TIFFIsTiled(file.handle())) {
        found = readTiles(file, samples, view) > 0;
    } else {
        found = readStrips(file, samples, view) > 0;
    }
    if (!found) {
        return refused(PictureError::Damaged, file.text());
    }
    result.reason = file.text();
    result.channels = samples.channels();
    uint32_t size = 0;
    void *profile = nullptr;
    if (TIFFGetField(file.handle(), TIFFTAG_ICCPROFILE, &size, &profile) == 1) {
        result.profile = QByteArray(static_cast<const char *>(profile), size);
    }
    return result;
}

} // namespace lumora
