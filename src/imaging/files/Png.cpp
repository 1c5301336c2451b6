// Reading PNG with libpng.
#include "imaging/Picture.h"
#include "imaging/files/DeepColour.h"
#include "imaging/files/Exif.h"
#include "imaging/files/Format.h"
#include "imaging/files/Metadata.h"

#include <QtEndian>
#include <array>
#include <cmath>
#include <csetjmp>
#include <png.h>
#include <vector>

namespace lumora {

namespace {

// What a PNG file holds besides its pixels, read from its chunks.
struct Chunks {
    QByteArray header; ///< the thirteen bytes of IHDR, or empty
    QByteArray exif;
    qint64 dataBytes = 0;
    bool whole = false; ///< the end chunk is there
};

Chunks readChunks(Source &source) {
    constexpr int mostChunks = 100'000; // of 8 KiB, as many programs write them, a gigabyte
    Chunks chunks;
    qint64 at = 8;
    for (int i = 0; i < mostChunks; ++i) {
        const QByteArray lead = source.bytes(at, 8);
        if (lead.size() < 8) {
            break;
        }
        const qint64 length = qFromBigEndian<quint32>(lead.constData());
        if (lead.endsWith("IHDR")) {
            chunks.header = source.bytes(at + 8, 13);
        } else if (lead.endsWith("eXIf") && length < 1 << 20) {
            chunks.exif = source.bytes(at + 8, length);
        } else if (lead.endsWith("IDAT")) {
            chunks.dataBytes += std::min(length, source.size() - at - 8);
        } else if (lead.endsWith("IEND")) {
            chunks.whole = true;
            break;
        }
        at += 12 + length;
    }
    return chunks;
}

// The bytes that the rows unpack to, one for the filter included. 0 for a colour type that does not exist.
double unpackedBytes(int width, int height, int depth, int colourType) {
    constexpr int channels[7] = {1, 0, 3, 1, 2, 0, 4};
    if (colourType < 0 || colourType > 6) {
        return 0;
    }
    return (std::ceil(static_cast<double>(width) * depth * channels[colourType] / 8) + 1) * height;
}

class PngDecoder {
  public:
    explicit PngDecoder(Source &source) : m_source(source) {
        m_png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, fail, [](png_structp, png_const_charp) {});
        m_info = m_png ? png_create_info_struct(m_png) : nullptr;
    }
    PngDecoder(const PngDecoder &) = delete;
    PngDecoder &operator=(const PngDecoder &) = delete;
    ~PngDecoder() { png_destroy_read_struct(&m_png, &m_info, nullptr); }

    // Of a file that is not whole the last portion is lost, so that those are taken small.
    bool start(bool whole) {
        return m_info && guarded([this, whole] {
                   png_set_read_fn(m_png, this, feed);
                   constexpr int smallPortion = 64;
                   if (!whole) {
                       png_set_compression_buffer_size(m_png, smallPortion);
                   }
                   png_set_user_limits(m_png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
                   // A flipped bit in a check sum must not cost the picture.
                   png_set_crc_action(m_png, PNG_CRC_WARN_USE, PNG_CRC_WARN_DISCARD);
                   png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_NEVER, nullptr, 0);
                   png_read_info(m_png, m_info);
                   m_grey = (png_get_color_type(m_png, m_info) & PNG_COLOR_MASK_COLOR) == 0;
                   m_deep = png_get_bit_depth(m_png, m_info) == 16 && hasProfile();
                   png_set_expand(m_png); // palettes, less than 8 bits, a transparent colour
                   png_set_gray_to_rgb(m_png);
                   if (m_deep) {
                       png_set_swap(m_png); // all machines that Lumora runs on have the low byte first
                   } else {
                       png_set_scale_16(m_png);
                       png_set_bgr(m_png);
                   }
                   png_set_filler(m_png, 0xFFFF, PNG_FILLER_AFTER);
                   m_passes = png_set_interlace_handling(m_png);
                   png_read_update_info(m_png, m_info);
               });
    }

    // Counts the rows of all passes in rowsRead().
    bool rows(const PixelView &view) {
        return guarded([this, &view] {
            for (int pass = 0; pass < m_passes; ++pass) {
                for (int y = 0; y < view.height; ++y) {
                    // Later passes shine through to what earlier ones have painted coarsely.
                    png_read_row(m_png, m_passes > 1 ? nullptr : view.row(y), m_passes > 1 ? view.row(y) : nullptr);
                    ++m_rowsRead;
                }
            }
            png_read_end(m_png, nullptr);
        });
    }

    // Rows of 16 bits, whose colours are converted before they are cut. `room` has one of them, or all of an interlaced
    // picture, whose passes complete each other.
    bool deepRows(const PixelView &view, const DeepColour &colour, std::vector<std::uint16_t> &room) {
        const auto rowAt = [&](int y) {
            return room.data() + (m_passes > 1 ? static_cast<std::size_t>(y) * view.width * 4 : 0);
        };
        const bool good = guarded([&] {
            for (int pass = 0; pass < m_passes; ++pass) {
                for (int y = 0; y < view.height; ++y) {
                    auto *row = reinterpret_cast<png_bytep>(rowAt(y));
                    png_read_row(m_png, m_passes > 1 ? nullptr : row, m_passes > 1 ? row : nullptr);
                    if (m_passes == 1) {
                        colour.convert(rowAt(y), view.width, view.row(y));
                    }
                    ++m_rowsRead;
                }
            }
            png_read_end(m_png, nullptr);
        });
        for (int y = 0; m_passes > 1 && y < view.height; ++y) {
            colour.convert(rowAt(y), view.width, view.row(y));
        }
        return good;
    }

    bool isDeep() const { return m_deep; }
    bool isInterlaced() const { return m_passes > 1; }
    bool isGrey() const { return m_grey; }
    int width() const { return static_cast<int>(png_get_image_width(m_png, m_info)); }
    int height() const { return static_cast<int>(png_get_image_height(m_png, m_info)); }
    bool fits() const {
        return png_get_rowbytes(m_png, m_info) == static_cast<std::size_t>(width()) * (m_deep ? 8 : 4);
    }
    qint64 rowsRead() const { return m_rowsRead; }
    QString text() const { return QString::fromLatin1(m_text.data()); }

    QByteArray profile() {
        png_charp name = nullptr;
        png_bytep data = nullptr;
        png_uint_32 size = 0;
        int packing = 0;
        if (png_get_iCCP(m_png, m_info, &name, &packing, &data, &size) != 0) {
            return QByteArray(reinterpret_cast<const char *>(data), size);
        }
        double gamma = 0;
        if (png_get_valid(m_png, m_info, PNG_INFO_sRGB) || png_get_gAMA(m_png, m_info, &gamma) == 0) {
            return {};
        }
        std::array<double, 8> c{};
        const bool named = png_get_cHRM(m_png, m_info, &c[0], &c[1], &c[2], &c[3], &c[4], &c[5], &c[6], &c[7]) != 0;
        return profileFromGamma(gamma, named ? c.data() : nullptr);
    }

  private:
    bool hasProfile() const {
        double gamma = 0;
        return png_get_valid(m_png, m_info, PNG_INFO_iCCP) != 0 ||
               (png_get_valid(m_png, m_info, PNG_INFO_sRGB) == 0 && png_get_gAMA(m_png, m_info, &gamma) != 0);
    }
    [[noreturn]] static void fail(png_structp png, png_const_charp text) {
        auto *decoder = static_cast<PngDecoder *>(png_get_error_ptr(png));
        qstrncpy(decoder->m_text.data(), text, decoder->m_text.size());
        std::longjmp(decoder->m_back, 1); // NOLINT(cert-err52-cpp) the library has no other way
    }
    static void feed(png_structp png, png_bytep to, std::size_t count) {
        auto *decoder = static_cast<PngDecoder *>(png_get_io_ptr(png));
        if (!decoder->take(to, static_cast<qint64>(count))) {
            png_error(png, "cut off: the end of the data is missing");
        }
    }
    bool take(void *to, qint64 count) {
        const qint64 taken = m_source.read(m_offset, to, count);
        m_offset += taken;
        return taken == count;
    }
    // The step must own nothing: an error leaves it without unwinding.
    template <typename Step> bool guarded(Step step) {
        if (setjmp(m_back) != 0) { // NOLINT(cert-err52-cpp)
            return false;
        }
        step();
        return true;
    }

    Source &m_source;
    qint64 m_offset = 0;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
    std::jmp_buf m_back{};
    std::array<char, 200> m_text{};
    int m_passes = 1;
    qint64 m_rowsRead = 0;
    bool m_grey = false;
    bool m_deep = false;
};

bool readInto(PngDecoder &decoder, Decoded &result) {
    const PixelView view = writeView(result.picture);
    if (!decoder.isDeep()) {
        return decoder.rows(view);
    }
    const DeepColour colour(decoder.isGrey() ? DeepChannels::Grey : DeepChannels::Rgb, result.profile);
    const std::size_t rows = decoder.isInterlaced() ? static_cast<std::size_t>(view.height) : 1;
    std::vector<std::uint16_t> room(rows * view.width * 4);
    result.profile.clear(); // the rows are converted with it
    result.channels = Channels::Bgra;
    return decoder.deepRows(view, colour, room);
}

} // namespace

bool isPng(const QByteArray &head) {
    return head.startsWith("\x89PNG\r\n\x1A\n");
}

FileHeader readPngHeader(Source &source) {
    const Chunks chunks = readChunks(source);
    if (chunks.header.size() < 13) {
        return refusedHeader(PictureError::Damaged, QStringLiteral("no IHDR chunk"));
    }
    const auto width = qFromBigEndian<quint32>(chunks.header.constData());
    const auto height = qFromBigEndian<quint32>(chunks.header.constData() + 4);
    if (width > INT_MAX || height > INT_MAX) {
        return refusedHeader(PictureError::Damaged, QStringLiteral("a size beyond what PNG allows"));
    }
    FileHeader header;
    header.width = static_cast<int>(width);
    header.height = static_cast<int>(height);
    const QByteArray exif = chunks.exif.isEmpty() ? readMetadata(source).exif : chunks.exif;
    header.orientation = exif.isEmpty() ? 1 : readExif(exif).orientation;
    header.packing = Packing::Deflate;
    header.unpackedBytes = unpackedBytes(header.width, header.height, chunks.header[8], chunks.header[9]);
    header.packedBytes = static_cast<double>(chunks.dataBytes);
    return header;
}

Decoded decodePng(Source &source, const FileHeader &header) {
    PngDecoder decoder(source);
    if (!decoder.start(readChunks(source).whole)) {
        return refused(PictureError::Damaged, decoder.text());
    }
    if (decoder.width() != header.width || decoder.height() != header.height || !decoder.fits()) {
        return refused(PictureError::Damaged, QStringLiteral("two headers that differ"));
    }
    Decoded result;
    result.picture = newPicture(header.width, header.height, false);
    if (result.picture.isNull()) {
        return refused(PictureError::NoMemory, QStringLiteral("no memory for the pixels"));
    }
    result.channels = decoder.isGrey() ? Channels::Grey : Channels::Bgra;
    result.profile = decoder.profile();
    if (!readInto(decoder, result)) {
        if (decoder.rowsRead() == 0) {
            return refused(PictureError::Damaged, decoder.text());
        }
        if (decoder.rowsRead() < header.height) {
            greyFrom(result.picture, static_cast<int>(decoder.rowsRead()));
        }
        result.reason = decoder.text();
    }
    return result;
}

} // namespace lumora
