// The files that are packed in strips on all cores, judged by strict decoders: one that counts libjpeg's warnings, and
// one that checks every chunk of a PNG file and every byte of its stream.
#include "imaging/Picture.h"
#include "imaging/PictureFile.h"

#include "support/TestPictures.h"

#include <QFile>
#include <QPainter>
#include <QTemporaryDir>
#include <QtEndian>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <jpeglib.h>
#include <png.h>
#include <vector>
#include <zlib.h>

using namespace lumora;
using test::photoLike;

namespace {

struct JpegErrors {
    jpeg_error_mgr manager{};
    std::jmp_buf back{};
    std::array<char, JMSG_LENGTH_MAX> text{};
};

void keepText(j_common_ptr codec) {
    codec->err->format_message(codec, reinterpret_cast<JpegErrors *>(codec->err)->text.data());
}

/// What libjpeg has to say about the file: its last warning, or the error that stopped it; nothing about a sound one.
QString complaintAboutJpeg(const QByteArray &file, QSize size) {
    JpegErrors errors;
    jpeg_decompress_struct codec{};
    codec.err = jpeg_std_error(&errors.manager);
    errors.manager.output_message = keepText;
    errors.manager.error_exit = [](j_common_ptr failed) {
        keepText(failed);
        std::longjmp(reinterpret_cast<JpegErrors *>(failed->err)->back, 1); // NOLINT(cert-err52-cpp)
    };
    std::vector<JSAMPLE> row;
    if (setjmp(errors.back) == 0) { // NOLINT(cert-err52-cpp)
        jpeg_create_decompress(&codec);
        jpeg_mem_src(&codec, reinterpret_cast<const unsigned char *>(file.constData()),
                     static_cast<unsigned long>(file.size()));
        jpeg_read_header(&codec, TRUE);
        codec.scale_denom = 8; // every coefficient is decoded all the same
        jpeg_start_decompress(&codec);
        row.resize(std::size_t{codec.output_width} * codec.output_components);
        while (codec.output_scanline < codec.output_height) {
            JSAMPROW rows = row.data();
            jpeg_read_scanlines(&codec, &rows, 1);
        }
        jpeg_finish_decompress(&codec);
    }
    const bool rightSize = QSize(static_cast<int>(codec.image_width), static_cast<int>(codec.image_height)) == size;
    const auto unread = codec.src == nullptr ? std::size_t{0} : codec.src->bytes_in_buffer;
    jpeg_destroy_decompress(&codec);
    return errors.text[0] != 0 ? QString::fromLatin1(errors.text.data())
           : !rightSize        ? QStringLiteral("another size")
           : unread > 0        ? QStringLiteral("bytes behind the end")
                               : QString();
}

quint32 number(const QByteArray &file, qsizetype at) {
    return at + 4 <= file.size() ? qFromBigEndian<quint32>(file.constData() + at) : 0;
}

/// What is wrong with the file by the chunks it is made of; nothing about a sound one. `rawBytes` is what its pixels
/// and filters take unpacked.
QString complaintAboutPng(const QByteArray &file, qsizetype rawBytes) {
    if (!file.startsWith("\x89PNG\r\n\x1A\n")) {
        return "no signature";
    }
    QByteArray types;
    QByteArray stream;
    for (qsizetype at = 8; at < file.size();) {
        const qsizetype length = number(file, at);
        if (at + 12 + length > file.size()) {
            return "a chunk ends behind the file";
        }
        const QByteArray body = file.mid(at + 4, 4 + length);
        const uLong check = crc32(0, reinterpret_cast<const Bytef *>(body.constData()), static_cast<uInt>(body.size()));
        if (check != number(file, at + 8 + length)) {
            return QStringLiteral("wrong check in chunk %1").arg(types.size() / 5);
        }
        types += body.left(4) + ' ';
        stream += body.startsWith("IDAT") ? body.mid(4) : QByteArray();
        at += 12 + length;
    }
    if (!types.startsWith("IHDR ") || !types.endsWith("IDAT IEND ") || types.count("IHDR") + types.count("IEND") != 2) {
        return "chunks out of order: " + types;
    }
    QByteArray raw(rawBytes + 1, Qt::Uninitialized);
    auto size = static_cast<uLongf>(raw.size());
    auto packed = static_cast<uLong>(stream.size());
    const int answer = uncompress2(reinterpret_cast<Bytef *>(raw.data()), &size,
                                   reinterpret_cast<const Bytef *>(stream.constData()), &packed);
    return answer != Z_OK                                ? QStringLiteral("zlib says %1").arg(answer)
           : size != static_cast<uLongf>(rawBytes)       ? QStringLiteral("unpacks to another size")
           : packed != static_cast<uLong>(stream.size()) ? QStringLiteral("bytes behind the stream")
                                                         : QString();
}

struct PngReading {
    QByteArray file;
    qsizetype at = 0;
    QString text;
};

[[noreturn]] void stopPng(png_structp png, png_const_charp text) {
    static_cast<PngReading *>(png_get_error_ptr(png))->text = text;
    png_longjmp(png, 1);
}

/// What libpng has to say, warnings included.
QString complaintOfLibpng(const QByteArray &file) {
    PngReading reading;
    reading.file = file;
    png_structp png =
        png_create_read_struct(PNG_LIBPNG_VER_STRING, &reading, stopPng, [](png_structp reader, png_const_charp text) {
            static_cast<PngReading *>(png_get_error_ptr(reader))->text = text;
        });
    png_infop info = png_create_info_struct(png);
    std::vector<png_byte> row;
    if (setjmp(png_jmpbuf(png)) == 0) { // NOLINT(cert-err52-cpp)
        png_set_read_fn(png, &reading, [](png_structp reader, png_bytep to, std::size_t count) {
            auto *source = static_cast<PngReading *>(png_get_io_ptr(reader));
            if (source->at + static_cast<qsizetype>(count) > source->file.size()) {
                png_error(reader, "read behind the end");
            }
            std::memcpy(to, source->file.constData() + source->at, count);
            source->at += static_cast<qsizetype>(count);
        });
        png_read_info(png, info);
        row.resize(png_get_rowbytes(png, info));
        for (png_uint_32 y = 0; y < png_get_image_height(png, info); ++y) {
            png_read_row(png, row.data(), nullptr);
        }
        png_read_end(png, nullptr);
    }
    png_destroy_read_struct(&png, &info, nullptr);
    return reading.text;
}

/// As wide as the files have to be, made of one narrow picture.
QImage tiled(int width, int height) {
    const QImage tile = photoLike(1000, height);
    QImage picture(width, height, QImage::Format_RGB32);
    QPainter(&picture).fillRect(picture.rect(), QBrush(tile));
    return picture;
}

} // namespace

// A million pixels make a strip, in whole rows of blocks: 16 rows at the widest, 48 at a third of it. Eight numbers of
// restart markers go round.
TEST(FilesStrips, JpegDecodesWithoutAnyWarning) {
    for (const int width : {65489, 65500, 21800}) {
        const int strip = (1 << 20) / width / 16 * 16;
        const QImage picture = tiled(width, width == 65500 ? 10 * 16 + 1 : 3 * strip + 1);
        for (const int height : {1, strip, 2 * strip, 2 * strip + 1, 3 * strip - 1, 3 * strip, 3 * strip + 1, 8 * 16,
                                 8 * 16 + 1, 9 * 16, 9 * 16 + 1, 10 * 16 + 1}) {
            if (height > picture.height()) {
                continue;
            }
            SCOPED_TRACE(testing::Message() << width << " x " << height);
            const QByteArray file = encodeJpeg(toPicture(picture.copy(0, 0, width, height)), 60);
            EXPECT_EQ(complaintAboutJpeg(file, {width, height}).toStdString(), "");
            // The judge itself is strict: it hears of the first marker with a wrong number.
            if (const qsizetype marker = file.indexOf("\xFF\xD0"); marker > 0 && height == 3 * strip) {
                QByteArray wrong = file;
                wrong[marker + 1] = '\xD3';
                EXPECT_NE(complaintAboutJpeg(wrong, {width, height}), QString());
            }
        }
    }
}

// A megabyte of rows makes a strip.
TEST(FilesStrips, PngChunksAndStreamAreSound) {
    QTemporaryDir folder;
    const QString path = folder.filePath("a.png");
    for (const bool transparent : {false, true}) {
        const int channels = transparent ? 4 : 3;
        const int width = 30'011;
        const int strip = (1 << 20) / (width * channels);
        const QImage picture = toPicture(photoLike(width, 3 * strip + 1, transparent));
        for (const int height : {1, strip - 1, strip, strip + 1, 2 * strip, 2 * strip + 1, 3 * strip, 3 * strip + 1}) {
            SCOPED_TRACE(testing::Message() << width << " x " << height << ", transparent " << transparent);
            ASSERT_TRUE(writePicture(picture.copy(0, 0, width, height), path).ok());
            QFile written(path);
            ASSERT_TRUE(written.open(QIODevice::ReadOnly));
            const QByteArray file = written.readAll();
            const qsizetype rawBytes = (qsizetype{width} * channels + 1) * height;
            EXPECT_EQ(complaintAboutPng(file, rawBytes).toStdString(), "");
            EXPECT_EQ(complaintOfLibpng(file).toStdString(), "");
            // The judge itself is strict, to the last byte of the stream and of its check.
            for (const int fromEnd : {17, 18, 19, 20, 13, 16, 28, 29}) {
                QByteArray wrong = file;
                wrong[wrong.size() - fromEnd] = static_cast<char>(~wrong[wrong.size() - fromEnd]);
                EXPECT_NE(complaintAboutPng(wrong, rawBytes), QString()) << fromEnd;
            }
        }
    }
}
