// Reading TIFF with libtiff: the first page, in any of its many arrangements. What is stored as plain samples is read
// here, so that alpha stays straight and inks are converted by their profile; the rest goes through libtiff's own
// conversion.
#include "imaging/Picture.h"
#include "imaging/files/Format.h"
#include "imaging/files/TiffFile.h"
#include "imaging/files/TiffSamples.h"
#include "imaging/kernels/AlphaBytes.h"

#include <cmath>
#include <optional>

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

// Whether libtiff's own conversion knows this arrangement: the reason when it does not.
std::optional<QString> whyNotConverted(const TiffFile &file) {
    TIFFRGBAImage image{};
    char text[1024] = "";
    if (TIFFRGBAImageOK(file.handle(), text) != 1 || TIFFRGBAImageBegin(&image, file.handle(), 0, text) != 1) {
        return QString::fromLatin1(text);
    }
    TIFFRGBAImageEnd(&image);
    return std::nullopt;
}

FileHeader headerOf(Source &source, const TiffFile &file) {
    constexpr int mostSamples = 64; // a pixel; cameras for science have some tens
    FileHeader header;
    header.width = static_cast<int>(std::min<uint32_t>(file.field<uint32_t>(TIFFTAG_IMAGEWIDTH, 0), INT_MAX));
    header.height = static_cast<int>(std::min<uint32_t>(file.field<uint32_t>(TIFFTAG_IMAGELENGTH, 0), INT_MAX));
    header.orientation = file.field<uint16_t>(TIFFTAG_ORIENTATION, 1);
    const int compression = file.field<uint16_t>(TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    if (!TIFFIsCODECConfigured(static_cast<uint16_t>(compression))) {
        return refusedHeader(PictureError::TooRare, QStringLiteral("TIFF compression %1").arg(compression));
    }
    header.packing = packingOf(compression);
    const int samples = file.field<uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1);
    const int bits = file.field<uint16_t>(TIFFTAG_BITSPERSAMPLE, 1);
    const bool isFax = header.packing == Packing::FaxRows;
    if (samples > mostSamples || (isFax && samples * bits != 1) || (compression == COMPRESSION_JPEG && bits != 8)) {
        return refusedHeader(PictureError::TooRare, QStringLiteral("%1 samples of %2 bits").arg(samples).arg(bits));
    }
    if (!TiffSamples(file).isPlain()) {
        if (const auto reason = whyNotConverted(file)) {
            return refusedHeader(PictureError::TooRare, *reason);
        }
    }
    header.unpackedBytes = unpackedBytes(file, header);
    header.packedBytes = static_cast<double>(source.size() - 8);
    return header;
}

// Takes the samples of rows, in any order and plane by plane, and makes pixels of them.
class Rows {
  public:
    Rows(const TiffSamples &samples, const PixelView &view, const QByteArray &profile)
        : m_samples(samples), m_view(view), m_colour(samples.deepChannels(), profile) {
        if (samples.isDeep() && samples.planes() > 1) {
            // What is missing becomes grey, like everywhere.
            m_planes.assign(std::size_t(view.width) * view.height * 4, 0x8080);
            for (std::size_t alpha = 3; alpha < m_planes.size(); alpha += 4) {
                m_planes[alpha] = 0xFFFF;
            }
        }
    }

    /// `raw` holds the samples of `width` pixels of that plane, which begin at x.
    void take(const std::uint8_t *raw, qint64 x, int y, int width, int plane) {
        std::uint8_t *pixels = m_view.row(y) + x * 4;
        if (!m_samples.isDeep()) {
            m_samples.place(raw, width, plane, pixels);
            if (m_samples.planes() == 1) {
                divide(pixels, width);
            }
        } else if (!m_planes.empty()) {
            m_samples.placeDeep(raw, width, plane, &m_planes[(std::size_t(y) * m_view.width + x) * 4]);
        } else {
            m_row.assign(std::size_t(width) * 4, 0xFFFF);
            m_samples.placeDeep(raw, width, plane, m_row.data());
            finishDeep(m_row.data(), width, pixels);
        }
    }

    /// After the last of them.
    void finish() {
        for (int y = 0; y < m_view.height; ++y) {
            if (!m_planes.empty()) {
                finishDeep(&m_planes[std::size_t(y) * m_view.width * 4], m_view.width, m_view.row(y));
            } else if (!m_samples.isDeep() && m_samples.planes() > 1) {
                divide(m_view.row(y), m_view.width);
            }
        }
    }

  private:
    template <typename Value> void divide(Value *pixels, int width) const {
        for (int x = 0; m_samples.isMultiplied() && x < width; ++x) {
            divideByAlpha(pixels + x * 4);
        }
    }
    void finishDeep(std::uint16_t *from, int width, std::uint8_t *to) const {
        if (m_samples.channels() == Channels::Cmyk) {
            for (int i = 0; i < width * 4; ++i) {
                to[i] = static_cast<std::uint8_t>((from[i] + 128) / 257);
            }
            return;
        }
        divide(from, width);
        m_colour.convert(from, width, to);
    }

    const TiffSamples &m_samples;
    PixelView m_view;
    DeepColour m_colour;
    std::vector<std::uint16_t> m_row;
    std::vector<std::uint16_t> m_planes; ///< of deep planes, until all are there
};

// Reads the strips row by row, so that the rows before a fault count. Returns how many rows were read.
int readStrips(const TiffFile &file, const TiffSamples &samples, const PixelView &view, Rows &rows) {
    std::vector<uint8_t> raw(static_cast<std::size_t>(TIFFScanlineSize64(file.handle())));
    const int rowsPerStrip = static_cast<int>(
        std::min<uint32_t>(file.field<uint32_t>(TIFFTAG_ROWSPERSTRIP, INT_MAX), static_cast<uint32_t>(view.height)));
    int rowsRead = 0;
    for (int plane = 0; plane < samples.planes(); ++plane) {
        for (int y = 0; y < view.height && rowsPerStrip > 0; ++y) {
            if (TIFFReadScanline(file.handle(), raw.data(), static_cast<uint32_t>(y), static_cast<uint16_t>(plane)) ==
                1) {
                rows.take(raw.data(), 0, y, view.width, plane);
                ++rowsRead;
            } else {
                y += rowsPerStrip - 1 - y % rowsPerStrip; // the next strip may be whole
            }
        }
    }
    return rowsRead;
}

int readTiles(const TiffFile &file, const TiffSamples &samples, const PixelView &view, Rows &rows) {
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
                    rows.take(raw.data() + (row - y) * rowBytes, x, static_cast<int>(row), columns, plane);
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

QByteArray profileOf(const TiffFile &file) {
    uint32_t size = 0;
    void *profile = nullptr;
    return TIFFGetField(file.handle(), TIFFTAG_ICCPROFILE, &size, &profile) == 1
               ? QByteArray(static_cast<const char *>(profile), size)
               : QByteArray();
}

} // namespace

bool isTiff(const QByteArray &head) {
    return head.startsWith(QByteArray("II*\0", 4)) || head.startsWith(QByteArray("MM\0*", 4)) ||
           head.startsWith(QByteArray("II+\0\x8\0", 6)) || head.startsWith(QByteArray("MM\0+\0\x8", 6));
}

FileHeader readTiffHeader(Source &source) {
    source.device().seek(0);
    const TiffFile file(source.device(), "rm");
    if (!file.handle()) {
        // libtiff opens no file whose samples differ in depth.
        const bool differ = file.text().contains(QLatin1String("different values per sample"));
        return refusedHeader(differ ? PictureError::TooRare : PictureError::Damaged, file.text());
    }
    return headerOf(source, file);
}

Decoded decodeTiff(Source &source, const FileHeader &header) {
    source.device().seek(0);
    TiffFile file(source.device(), "rm");
    if (!file.handle()) {
        return refused(PictureError::Damaged, file.text());
    }
    const TiffSamples samples(file);
    file.forgetText();
    Decoded result;
    result.picture = newPicture(header.width, header.height, !samples.hasAlpha() && samples.isPlain());
    if (result.picture.isNull()) {
        return refused(PictureError::NoMemory, QStringLiteral("no memory for the pixels"));
    }
    greyFrom(result.picture, 0);
    result.channels = samples.channels();
    result.profile = profileOf(file);
    const PixelView view = writeView(result.picture);
    bool found = false;
    if (samples.isPlain()) {
        Rows rows(samples, view, result.profile);
        found = (TIFFIsTiled(file.handle()) ? readTiles(file, samples, view, rows)
                                            : readStrips(file, samples, view, rows)) > 0;
        rows.finish();
        if (samples.isDeep() && samples.channels() != Channels::Cmyk) {
            result.channels = Channels::Bgra; // converted with their profile
            result.profile.clear();
        }
        if (samples.isAlphaGuessed() && hasOnlyZeroAlpha(view)) {
            result.picture.reinterpretAsFormat(QImage::Format_RGB32);
            makeOpaque(writeView(result.picture));
        }
    } else {
        found = readConverted(file, view);
    }
    if (!found) {
        return refused(PictureError::Damaged, file.text());
    }
    result.reason = file.text();
    return result;
}

} // namespace lumora
