#include "imaging/filesMakers.h"

#include <QBuffer>
#include <QtEndian>
#include <algorithm>
#include <cgif.h>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <jpeglib.h>
#include <libheif/heif.h>
#include <png.h>
#include <tiffio.h>
#include <webp/encode.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace lumora::test {

namespace {

tsize_t tiffRead(thandle_t device, void *to, tsize_t count) {
    return static_cast<QBuffer *>(device)->read(static_cast<char *>(to), count);
}
tsize_t tiffWrite(thandle_t device, void *from, tsize_t count) {
    return static_cast<QBuffer *>(device)->write(static_cast<const char *>(from), count);
}
toff_t tiffSeek(thandle_t device, toff_t offset, int from) {
    auto *buffer = static_cast<QBuffer *>(device);
    const qint64 base = from == SEEK_CUR ? buffer->pos() : from == SEEK_END ? buffer->size() : 0;
    buffer->seek(base + static_cast<qint64>(offset));
    return static_cast<toff_t>(buffer->pos());
}

template <typename Value> void append(std::vector<std::uint8_t> &row, Value value, std::size_t count = sizeof(Value)) {
    std::uint8_t bytes[sizeof(Value)];
    std::memcpy(bytes, &value, sizeof(Value));
    row.insert(row.end(), bytes, bytes + count);
}

// Numbers of 0 to 65535 as 0 to 1, of 16, 24, 32 or 64 bits.
std::vector<std::uint8_t> packFloats(const std::vector<int> &values, int bits) {
    std::vector<std::uint8_t> row;
    for (const int value : values) {
        const double unit = value / 65535.0;
        if (bits == 64) {
            append(row, unit);
        } else if (bits == 32) {
            append(row, static_cast<float>(unit));
        } else {
            // Sign, exponent and mantissa; below the smallest normal number 0 is near enough.
            const int exponentBits = bits == 16 ? 5 : 7;
            const int mantissaBits = bits == 16 ? 10 : 16;
            int exponent = 0;
            const double fraction = std::max(0.0, std::frexp(unit, &exponent) * 2 - 1);
            const int biased = exponent - 1 + (1 << (exponentBits - 1)) - 1;
            const auto mantissa = static_cast<std::uint32_t>(fraction * (1 << mantissaBits));
            const std::uint32_t number = unit == 0 || biased < 1 ? 0 : std::uint32_t(biased) << mantissaBits | mantissa;
            append(row, number, static_cast<std::size_t>(bits / 8));
        }
    }
    return row;
}

// Integers of 24 or 64 bits from numbers of 16.
std::vector<std::uint8_t> packLong(const std::vector<int> &values, int bits) {
    std::vector<std::uint8_t> row;
    for (const int value : values) {
        const std::uint64_t whole = std::uint64_t(value) * 0x0001000100010001U;
        append(row, whole >> (64 - bits), static_cast<std::size_t>(bits / 8));
    }
    return row;
}

// Joins samples of any depth into bytes; 16 bits and more in this machine's order.
std::vector<std::uint8_t> packRow(std::vector<int> values, int bits, int format = SAMPLEFORMAT_UINT) {
    if (format == SAMPLEFORMAT_IEEEFP) {
        return packFloats(values, bits);
    }
    if (format == SAMPLEFORMAT_INT) { // of 8 or 16 bits
        for (int &value : values) {
            value = (value >> (16 - bits)) ^ 1 << (bits - 1);
        }
    }
    if (bits == 24 || bits == 64) {
        return packLong(values, bits);
    }
    std::vector<std::uint8_t> row((values.size() * bits + 7) / 8);
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (bits == 32) {
            const auto value = static_cast<std::uint32_t>(values[i]) * 0x01010101U;
            std::memcpy(&row[i * 4], &value, 4);
        } else if (bits == 16) {
            const auto value = static_cast<std::uint16_t>(values[i]);
            std::memcpy(&row[i * 2], &value, 2);
        } else {
            for (int bit = 0; bit < bits; ++bit) {
                const std::size_t at = i * bits + bit;
                row[at / 8] |= static_cast<std::uint8_t>((values[i] >> (bits - 1 - bit) & 1) << (7 - at % 8));
            }
        }
    }
    return row;
}

std::vector<int> samplesOf(const Sampler &sample, int x0, int width, int y, int firstChannel, int channels) {
    std::vector<int> values;
    for (int x = x0; x < x0 + width; ++x) {
        for (int channel = firstChannel; channel < firstChannel + channels; ++channel) {
            values.push_back(sample(x, y, channel));
        }
    }
    return values;
}

void describePage(TIFF *tiff, int width, int height, const TiffKind &kind) {
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, kind.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, kind.samples);
    if (kind.photometric >= 0) {
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, kind.photometric);
    }
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, kind.format);
    if (!kind.profile.isEmpty()) {
        TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<uint32_t>(kind.profile.size()), kind.profile.constData());
    }
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, kind.compression);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, kind.separate ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    if (kind.predictor > 1) {
        TIFFSetField(tiff, TIFFTAG_PREDICTOR, kind.predictor);
    }
    if (kind.alphaKind != 0) {
        const auto extra = static_cast<uint16_t>(kind.alphaKind);
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &extra);
    }
    if (kind.orientation != 0) {
        TIFFSetField(tiff, TIFFTAG_ORIENTATION, kind.orientation);
    }
    if (kind.photometric == PHOTOMETRIC_PALETTE) {
        std::vector<uint16_t> columns[3];
        for (int i = 0; kind.bits > 8 && i < 1 << kind.bits; ++i) { // the indices themselves, and their opposite
            columns[0].push_back(static_cast<uint16_t>(i << (16 - kind.bits)));
            columns[1].push_back(static_cast<uint16_t>(0xFFFF - columns[0].back()));
            columns[2].push_back(0);
        }
        for (int i = 0; kind.bits <= 8 && i < 1 << kind.bits; ++i) {
            columns[0].push_back(static_cast<uint16_t>(i * 257));
            columns[1].push_back(static_cast<uint16_t>((255 - i) * 257));
            columns[2].push_back(static_cast<uint16_t>((i ^ 85) * 257));
        }
        TIFFSetField(tiff, TIFFTAG_COLORMAP, columns[0].data(), columns[1].data(), columns[2].data());
    }
    if (kind.tiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 16);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, 16);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 8);
    }
}

void writePage(TIFF *tiff, int width, int height, const TiffKind &kind, const Sampler &sample) {
    const int planes = kind.separate ? kind.samples : 1;
    const int channels = kind.separate ? 1 : kind.samples;
    const auto bounded = [&](int x, int y, int channel) {
        return sample(std::min(x, width - 1), std::min(y, height - 1), channel);
    };
    for (int plane = 0; plane < planes; ++plane) {
        for (int y = 0; !kind.tiled && y < height; ++y) {
            auto row = packRow(samplesOf(sample, 0, width, y, plane, channels), kind.bits, kind.format);
            TIFFWriteScanline(tiff, row.data(), static_cast<uint32_t>(y), static_cast<uint16_t>(plane));
        }
        for (int y = 0; kind.tiled && y < height; y += 16) {
            for (int x = 0; x < width; x += 16) {
                std::vector<std::uint8_t> tile;
                for (int row = y; row < y + 16; ++row) {
                    const auto packed =
                        packRow(samplesOf(bounded, x, 16, row, plane, channels), kind.bits, kind.format);
                    tile.insert(tile.end(), packed.begin(), packed.end());
                }
                TIFFWriteTile(tiff, tile.data(), static_cast<uint32_t>(x), static_cast<uint32_t>(y), 0,
                              static_cast<uint16_t>(plane));
            }
        }
    }
}

} // namespace

QByteArray makeTiff(int width, int height, const TiffKind &kind, const Sampler &sample) {
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    TIFF *tiff = TIFFClientOpen(
        "made", kind.mode, &buffer, tiffRead, tiffWrite, tiffSeek, [](thandle_t) { return 0; },
        [](thandle_t device) { return static_cast<toff_t>(static_cast<QBuffer *>(device)->size()); },
        [](thandle_t, void **, toff_t *) { return 0; }, [](thandle_t, void *, toff_t) {});
    for (int page = 0; page < kind.pages; ++page) {
        describePage(tiff, width, height, kind);
        writePage(tiff, width, height, kind,
                  [&](int x, int y, int channel) { return page == 0 ? sample(x, y, channel) : 0; });
        TIFFWriteDirectory(tiff);
    }
    TIFFClose(tiff);
    return buffer.data();
}

QByteArray makePng(int width, int height, int bits, int colourType, bool interlaced, const Sampler &sample,
                   const QByteArray &exif, const QByteArray &profile) {
    QByteArray bytes;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &bytes,
        [](png_structp writer, png_bytep data, std::size_t count) {
            static_cast<QByteArray *>(png_get_io_ptr(writer))
                ->append(reinterpret_cast<const char *>(data), static_cast<qsizetype>(count));
        },
        nullptr);
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), bits, colourType,
                 interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    if (colourType == PNG_COLOR_TYPE_PALETTE) {
        std::vector<png_color> colours;
        colours.reserve(std::size_t{1} << bits);
        for (int i = 0; i < 1 << bits; ++i) {
            colours.push_back(
                {static_cast<png_byte>(i), static_cast<png_byte>(255 - i), static_cast<png_byte>(i ^ 85)});
        }
        png_set_PLTE(png, info, colours.data(), static_cast<int>(colours.size()));
        png_byte alpha[2] = {0, 128}; // the first two colours are see-through
        png_set_tRNS(png, info, alpha, 2, nullptr);
    }
    QByteArray exifBytes = exif;
    if (!exif.isEmpty()) {
        png_set_eXIf_1(png, info, static_cast<png_uint_32>(exif.size()), reinterpret_cast<png_bytep>(exifBytes.data()));
    }
    if (!profile.isEmpty()) {
        png_set_iCCP(png, info, "made", PNG_COMPRESSION_TYPE_BASE, reinterpret_cast<png_const_bytep>(profile.data()),
                     static_cast<png_uint_32>(profile.size()));
    }
    png_write_info(png, info);
    png_set_swap(png);
    constexpr int channels[7] = {1, 0, 3, 1, 2, 0, 4};
    const int passes = png_set_interlace_handling(png);
    for (int pass = 0; pass < passes; ++pass) {
        for (int y = 0; y < height; ++y) {
            const auto row = packRow(samplesOf(sample, 0, width, y, 0, channels[colourType]), bits);
            png_write_row(png, row.data());
        }
    }
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return bytes;
}

QByteArray makeJpeg(int width, int height, const JpegKind &kind, const Sampler &sample) {
    jpeg_compress_struct codec{};
    jpeg_error_mgr errors{};
    codec.err = jpeg_std_error(&errors);
    jpeg_create_compress(&codec);
    unsigned char *memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&codec, &memory, &size);
    codec.image_width = static_cast<JDIMENSION>(width);
    codec.image_height = static_cast<JDIMENSION>(height);
    codec.input_components = kind.components;
    codec.in_color_space = kind.components == 1 ? JCS_GRAYSCALE : kind.components == 3 ? JCS_RGB : JCS_CMYK;
    jpeg_set_defaults(&codec);
    if (kind.mixed) {
        jpeg_set_colorspace(&codec, JCS_YCCK);
    }
    jpeg_set_quality(&codec, 98, TRUE);
    codec.restart_in_rows = kind.restartRows;
    if (kind.progressive) {
        jpeg_simple_progression(&codec);
    }
    jpeg_start_compress(&codec, TRUE);
    if (!kind.exif.isEmpty()) {
        jpeg_write_marker(&codec, JPEG_APP0 + 1, reinterpret_cast<const JOCTET *>(kind.exif.constData()),
                          static_cast<unsigned>(kind.exif.size()));
    }
    if (!kind.profile.isEmpty()) {
        jpeg_write_icc_profile(&codec, reinterpret_cast<const JOCTET *>(kind.profile.constData()),
                               static_cast<unsigned>(kind.profile.size()));
    }
    for (int y = 0; y < height; ++y) {
        auto row = packRow(samplesOf(sample, 0, width, y, 0, kind.components), 8);
        JSAMPROW rows = row.data();
        jpeg_write_scanlines(&codec, &rows, 1);
    }
    jpeg_finish_compress(&codec);
    QByteArray bytes(reinterpret_cast<const char *>(memory), static_cast<qsizetype>(size));
    jpeg_destroy_compress(&codec);
    std::free(memory);
    return bytes;
}

QByteArray makeBmp(int width, int height, int bits, bool fromTop, const Sampler &sample,
                   const std::vector<QRgb> &palette) {
    constexpr int headerBytes = 40;
    const int rowBytes = (width * bits + 31) / 32 * 4;
    const auto pixelsAt = static_cast<quint32>(14 + headerBytes + palette.size() * 4);
    QByteArray bytes(pixelsAt, '\0');
    const auto put16 = [&](int at, int value) { qToLittleEndian(static_cast<quint16>(value), bytes.data() + at); };
    const auto put32 = [&](int at, quint32 value) { qToLittleEndian(value, bytes.data() + at); };
    bytes.replace(0, 2, "BM");
    put32(2, pixelsAt + static_cast<quint32>(rowBytes * height));
    put32(10, pixelsAt);
    put32(14, headerBytes);
    put32(18, static_cast<quint32>(width));
    put32(22, static_cast<quint32>(fromTop ? -height : height));
    put16(26, 1);
    put16(28, bits);
    put32(46, static_cast<quint32>(palette.size()));
    for (std::size_t i = 0; i < palette.size(); ++i) {
        put32(static_cast<int>(14 + headerBytes + i * 4), palette[i] & 0xFFFFFF);
    }
    for (int row = 0; row < height; ++row) {
        const int y = fromTop ? row : height - 1 - row;
        QByteArray packed;
        for (int x = 0; bits == 24 && x < width; ++x) {
            for (const int channel : {2, 1, 0}) {
                packed += static_cast<char>(sample(x, y, channel));
            }
        }
        if (bits <= 8) {
            const auto indices = packRow(samplesOf(sample, 0, width, y, 0, 1), bits);
            packed = QByteArray(reinterpret_cast<const char *>(indices.data()), static_cast<qsizetype>(indices.size()));
        }
        bytes += packed.leftJustified(rowBytes, '\0');
    }
    return bytes;
}

QByteArray makeTga(int width, int height, int kind, int bits, int corner, bool packed, const Sampler &sample) {
    const int channels = bits == 16 ? 2 : bits / 8;
    QByteArray file(18, '\0');
    file[0] = 3; // of a comment
    file[2] = static_cast<char>(kind | (packed ? 8 : 0));
    file[12] = static_cast<char>(width);
    file[14] = static_cast<char>(height);
    file[16] = static_cast<char>(bits);
    file[17] = static_cast<char>(corner << 4 | (bits == 32 ? 8 : 0));
    file += "abc";
    if (kind == 1) {
        file[1] = 1;
        file[6] = 1; // 256 entries
        file[7] = 24;
        for (int i = 0; i < 256; ++i) {
            for (const int channel : {i ^ 85, 255 - i, i}) {
                file += static_cast<char>(channel);
            }
        }
    }
    QList<QByteArray> pixels;
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            const int x = (corner & 1) != 0 ? width - 1 - column : column;
            const int y = (corner & 2) != 0 ? row : height - 1 - row;
            QByteArray pixel;
            for (int channel = 0; channel < channels; ++channel) {
                pixel += static_cast<char>(sample(x, y, channel));
            }
            pixels << pixel;
        }
    }
    for (qsizetype at = 0; at < pixels.size(); ++at) {
        qsizetype count = 1;
        while (packed && count < 128 && at + count < pixels.size() && pixels[at + count] == pixels[at]) {
            ++count;
        }
        if (packed) {
            file += static_cast<char>(count > 1 ? 128 | (count - 1) : 0);
        }
        file += pixels[at];
        at += count - 1;
    }
    return file;
}

QByteArray makeGif(int width, int height, const std::vector<QRgb> &palette, int transparent, bool interlaced,
                   const std::vector<std::vector<std::uint8_t>> &frames) {
    std::vector<std::uint8_t> colours;
    for (const QRgb colour : palette) {
        colours.insert(colours.end(),
                       {static_cast<std::uint8_t>(qRed(colour)), static_cast<std::uint8_t>(qGreen(colour)),
                        static_cast<std::uint8_t>(qBlue(colour))});
    }
    QByteArray bytes;
    CGIF_Config config{};
    config.attrFlags = frames.size() > 1 || transparent >= 0 ? CGIF_ATTR_IS_ANIMATED : 0;
    config.width = static_cast<uint16_t>(width);
    config.height = static_cast<uint16_t>(height);
    config.pGlobalPalette = colours.data();
    config.numGlobalPaletteEntries = static_cast<uint16_t>(palette.size());
    config.pContext = &bytes;
    config.pWriteFn = [](void *to, const uint8_t *data, const std::size_t count) {
        static_cast<QByteArray *>(to)->append(reinterpret_cast<const char *>(data), static_cast<qsizetype>(count));
        return 0;
    };
    CGIF *gif = cgif_newgif(&config);
    for (const auto &indices : frames) {
        CGIF_FrameConfig frame{};
        auto copy = indices;
        frame.pImageData = copy.data();
        frame.attrFlags =
            (transparent >= 0 ? CGIF_FRAME_ATTR_HAS_ALPHA : 0) | (interlaced ? CGIF_FRAME_ATTR_INTERLACED : 0);
        frame.transIndex = static_cast<uint8_t>(std::max(0, transparent));
        cgif_addframe(gif, &frame);
    }
    cgif_close(gif);
    return bytes;
}

QByteArray makeWebP(const QImage &picture, const QByteArray &exif) {
    uint8_t *memory = nullptr;
    const std::size_t size = WebPEncodeLosslessBGRA(picture.constBits(), picture.width(), picture.height(),
                                                    static_cast<int>(picture.bytesPerLine()), &memory);
    QByteArray bytes(reinterpret_cast<const char *>(memory), static_cast<qsizetype>(size));
    WebPFree(memory);
    if (exif.isEmpty()) {
        return bytes;
    }
    // Into the extended form: RIFF, VP8X with the EXIF flag and the canvas less one, the pixels, EXIF.
    const auto number = [](quint32 value, int count) {
        value = qToLittleEndian(value);
        return QByteArray(reinterpret_cast<const char *>(&value), count);
    };
    const char flags = static_cast<char>(0x08 | (picture.hasAlphaChannel() ? 0x10 : 0));
    const QByteArray padded = exif.size() % 2 ? exif + '\0' : exif;
    const QByteArray body = QByteArray("WEBPVP8X") + number(10, 4) + flags + QByteArray(3, '\0') +
                            number(static_cast<quint32>(picture.width() - 1), 3) +
                            number(static_cast<quint32>(picture.height() - 1), 3) + bytes.mid(12) + "EXIF" +
                            number(static_cast<quint32>(exif.size()), 4) + padded;
    return "RIFF" + number(static_cast<quint32>(body.size()), 4) + body;
}

namespace {

/// Encodes what `draw` has made: an interleaved image without alpha. Empty where the library cannot.
QByteArray encodeHeif(int orientation, const QByteArray &exif, const std::function<heif_image *()> &draw) {
#ifdef __SANITIZE_ADDRESS__
    const __lsan::ScopedDisabler encoderKeepsMemory; // which only the tests use
#endif
    heif_context *context = heif_context_alloc();
    heif_encoder *encoder = nullptr;
    QByteArray bytes;
    if (heif_context_get_encoder_for_format(context, heif_compression_HEVC, &encoder).code == heif_error_Ok) {
        heif_encoder_set_lossy_quality(encoder, 95);
        heif_image *image = draw();
        heif_encoding_options *options = heif_encoding_options_alloc();
        options->image_orientation = static_cast<heif_orientation>(orientation);
        heif_image_handle *handle = nullptr;
        heif_context_encode_image(context, image, encoder, options, &handle);
        if (!exif.isEmpty()) {
            heif_context_add_exif_metadata(context, handle, exif.constData(), static_cast<int>(exif.size()));
        }
        heif_writer writer{1, [](heif_context *, const void *data, std::size_t count, void *to) {
                               static_cast<QByteArray *>(to)->append(static_cast<const char *>(data),
                                                                     static_cast<qsizetype>(count));
                               return heif_error{heif_error_Ok, heif_suberror_Unspecified, ""};
                           }};
        if (handle != nullptr) {
            heif_context_write(context, &writer, &bytes);
        }
        heif_image_handle_release(handle);
        heif_encoding_options_free(options);
        heif_image_release(image);
        heif_encoder_release(encoder);
    }
    heif_context_free(context);
    return bytes;
}

} // namespace

QByteArray makeHeif(const QImage &picture, int orientation, const QByteArray &exif) {
    return encodeHeif(orientation, exif, [&] {
        heif_image *image = nullptr;
        heif_image_create(picture.width(), picture.height(), heif_colorspace_RGB, heif_chroma_interleaved_RGB, &image);
        heif_image_add_plane(image, heif_channel_interleaved, picture.width(), picture.height(), 8);
        int stride = 0;
        uint8_t *plane = heif_image_get_plane(image, heif_channel_interleaved, &stride);
        const QImage rgb = picture.convertToFormat(QImage::Format_RGB888);
        for (int y = 0; y < rgb.height(); ++y) {
            std::memcpy(plane + y * stride, rgb.constScanLine(y), static_cast<std::size_t>(rgb.width()) * 3);
        }
        return image;
    });
}

QByteArray makeDeepHeif(int width, int height, const std::function<int(int x)> &grey, const QByteArray &profile) {
    return encodeHeif(1, {}, [&] {
        heif_image *image = nullptr;
        heif_image_create(width, height, heif_colorspace_RGB, heif_chroma_interleaved_RRGGBB_LE, &image);
        heif_image_add_plane(image, heif_channel_interleaved, width, height, 10);
        heif_image_set_raw_color_profile(image, "prof", profile.constData(), static_cast<std::size_t>(profile.size()));
        int stride = 0;
        uint8_t *plane = heif_image_get_plane(image, heif_channel_interleaved, &stride);
        for (int y = 0; y < height; ++y) {
            for (int i = 0; i < 3 * width; ++i) {
                qToLittleEndian<quint16>(static_cast<quint16>(grey(i / 3)), plane + y * stride + 2 * i);
            }
        }
        return image;
    });
}

QByteArray exifWithOrientation(int orientation) {
    QByteArray bytes("MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\0\0\0\0\0\0\0", 26);
    bytes[19] = static_cast<char>(orientation);
    return bytes;
}

QByteArray exifWithThumbnail(const QByteArray &jpeg) {
    // An empty first directory, then that of the thumbnail: its place from the TIFF header on, and its length.
    QByteArray bytes("MM\0*\0\0\0\x08\0\0\0\0\0\x0E\0\x02\x02\x01\0\x04\0\0\0\x01\0\0\0\x2C\x02\x02\0\x04\0\0\0\x01",
                     36);
    const quint32 length = qToBigEndian(static_cast<quint32>(jpeg.size()));
    return bytes + QByteArray(reinterpret_cast<const char *>(&length), 4) + QByteArray(4, '\0') + jpeg;
}

} // namespace lumora::test
