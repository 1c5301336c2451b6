// Every arrangement of every format comes out as the pixels that went in.
#include "base/TaskControl.h"
#include "imaging/Picture.h"
#include "imaging/PictureFile.h"
#include "imaging/Scale.h"
#include "imaging/filesMakers.h"
#include "support/TestPictures.h"

#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>
#include <jpeglib.h>
#include <png.h>
#include <tiffio.h>

using namespace lumora;
using namespace lumora::test;

namespace {

constexpr int width = 37;
constexpr int height = 21;

// A pattern of full range for samples of any depth.
int pattern(int x, int y, int channel, int bits) {
    const unsigned value = static_cast<unsigned>(x * 1709 + y * 5711 + channel * 9973) * 2654435761U;
    return static_cast<int>(value >> (32 - bits));
}

Sampler patternOf(int bits) {
    return [bits](int x, int y, int channel) { return pattern(x, y, channel, bits); };
}

int toByte(int value, int bits) {
    const int most = (1 << bits) - 1;
    return (value * 255 * 2 + most) / (most * 2);
}

// Compares every pixel; tolerance is for a channel.
testing::AssertionResult shows(const PictureRead &read, const std::function<QRgb(int, int)> &expected,
                               int tolerance = 0) {
    if (read.error != PictureError::None) {
        return testing::AssertionFailure() << "refused: " << read.reason.toStdString();
    }
    if (read.picture.width() != width || read.picture.height() != height) {
        return testing::AssertionFailure() << read.picture.width() << " x " << read.picture.height();
    }
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const QRgb is = read.picture.pixel(x, y);
            const QRgb should = expected(x, y);
            const int worst = std::max({std::abs(qRed(is) - qRed(should)), std::abs(qGreen(is) - qGreen(should)),
                                        std::abs(qBlue(is) - qBlue(should)), std::abs(qAlpha(is) - qAlpha(should))});
            if (worst > tolerance) {
                return testing::AssertionFailure()
                       << "at " << x << ", " << y << ": " << std::hex << is << ", not " << should;
            }
        }
    }
    return testing::AssertionSuccess();
}

// What a pixel of `colours` (1 or 3) channels and perhaps alpha, of a depth, looks like.
std::function<QRgb(int, int)> looksOf(int bits, int colours, bool alpha) {
    return [=](int x, int y) {
        const auto channel = [&](int index) { return toByte(pattern(x, y, index, bits), bits); };
        const int a = alpha ? channel(colours) : 255;
        return colours == 1 ? qRgba(channel(0), channel(0), channel(0), a)
                            : qRgba(channel(0), channel(1), channel(2), a);
    };
}

QRgb paletteColour(int index) {
    return qRgb(index, 255 - index, index ^ 85);
}

std::vector<QRgb> paletteOf(int count) {
    std::vector<QRgb> palette(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        palette[static_cast<std::size_t>(i)] = paletteColour(i);
    }
    return palette;
}

PictureRead readAs(const QString &name, const QByteArray &bytes) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(name));
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
    file.close();
    return readPicture(file.fileName());
}

} // namespace

TEST(FilesRead, Png) {
    struct Row {
        int bits;
        int type;
        int colours;
        bool alpha;
    };
    const Row rows[] = {{1, PNG_COLOR_TYPE_GRAY, 1, false},       {2, PNG_COLOR_TYPE_GRAY, 1, false},
                        {4, PNG_COLOR_TYPE_GRAY, 1, false},       {8, PNG_COLOR_TYPE_GRAY, 1, false},
                        {16, PNG_COLOR_TYPE_GRAY, 1, false},      {8, PNG_COLOR_TYPE_GRAY_ALPHA, 1, true},
                        {16, PNG_COLOR_TYPE_GRAY_ALPHA, 1, true}, {8, PNG_COLOR_TYPE_RGB, 3, false},
                        {16, PNG_COLOR_TYPE_RGB, 3, false},       {8, PNG_COLOR_TYPE_RGB_ALPHA, 3, true},
                        {16, PNG_COLOR_TYPE_RGB_ALPHA, 3, true}};
    for (const Row &row : rows) {
        for (const bool interlaced : {false, true}) {
            SCOPED_TRACE(testing::Message() << row.bits << " bits, type " << row.type << ", interlaced " << interlaced);
            const QByteArray file = makePng(width, height, row.bits, row.type, interlaced, patternOf(row.bits));
            const PictureRead read = readPictureFromData(file);
            EXPECT_TRUE(shows(read, looksOf(row.bits, row.colours, row.alpha)));
            EXPECT_EQ(read.picture.format(), row.alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
            EXPECT_EQ(read.reason, QString());
        }
    }
    for (const int bits : {1, 2, 4, 8}) {
        SCOPED_TRACE(testing::Message() << "palette of " << bits << " bits");
        const QByteArray file = makePng(width, height, bits, PNG_COLOR_TYPE_PALETTE, bits == 4, patternOf(bits));
        EXPECT_TRUE(shows(readPictureFromData(file), [&](int x, int y) {
            const int index = pattern(x, y, 0, bits);
            const int alpha = index == 0 ? 0 : index == 1 ? 128 : 255;
            return (paletteColour(index) & 0xFFFFFFU) | static_cast<QRgb>(alpha) << 24;
        }));
    }
}

TEST(FilesRead, Tga) {
    // Half of the pixels in runs.
    const Sampler sample = [](int x, int y, int channel) { return pattern(y % 2 == 0 ? 0 : x, y, channel, 8); };
    struct Row {
        int kind, bits;
        std::function<QRgb(int, int)> look;
    };
    const auto five = [](int packed, int shift) { return ((packed >> shift & 31) * 255 + 15) / 31; };
    const Row rows[] = {
        {1, 8, [&](int x, int y) { return paletteColour(sample(x, y, 0)); }},
        {2, 16,
         [&](int x, int y) {
             const int packed = sample(x, y, 0) | sample(x, y, 1) << 8;
             return qRgb(five(packed, 10), five(packed, 5), five(packed, 0));
         }},
        {2, 24, [&](int x, int y) { return qRgb(sample(x, y, 2), sample(x, y, 1), sample(x, y, 0)); }},
        {2, 32,
         [&](int x, int y) { return qRgba(sample(x, y, 2), sample(x, y, 1), sample(x, y, 0), sample(x, y, 3)); }},
        {3, 8, [&](int x, int y) { return qRgb(sample(x, y, 0), sample(x, y, 0), sample(x, y, 0)); }},
    };
    for (const Row &row : rows) {
        for (int corner = 0; corner < 4; ++corner) {
            for (const bool packed : {false, true}) {
                SCOPED_TRACE(testing::Message() << "kind " << row.kind << ", " << row.bits << " bits, corner " << corner
                                                << ", packed " << packed);
                const QByteArray file = makeTga(width, height, row.kind, row.bits, corner, packed, sample);
                const PictureRead read = readAs("a.TGA", file);
                EXPECT_TRUE(shows(read, row.look));
                EXPECT_EQ(read.reason, QString());
                // What is missing is grey, and every shorter file has an answer.
                for (const qsizetype bytes : {file.size() - 1, file.size() * 3 / 4, qsizetype{19}, qsizetype{5}}) {
                    const PictureRead cut = readAs("cut.tga", file.left(bytes));
                    EXPECT_EQ(cut.picture.isNull(), bytes < 20);
                    EXPECT_FALSE(cut.reason.isEmpty());
                }
            }
        }
    }
    const QByteArray file = makeTga(width, height, 2, 24, 2, false, sample);
    EXPECT_EQ(readAs("a.txt", file).error, PictureError::NotAPicture) << "nothing marks the format but its name";
    EXPECT_EQ(readAs("a.tga", "Dear diary, no picture").error, PictureError::NotAPicture);
    const Sampler unseen = [&](int x, int y, int channel) { return channel == 3 ? 0 : sample(x, y, channel); };
    EXPECT_TRUE(shows(readAs("a.tga", makeTga(width, height, 2, 32, 2, true, unseen)), rows[2].look))
        << "alpha that nobody set";
}

TEST(FilesRead, Tiff) {
    const TiffKind kinds[] = {
        {.bits = 1, .samples = 1, .photometric = PHOTOMETRIC_MINISBLACK},
        {.bits = 2, .samples = 1, .photometric = PHOTOMETRIC_MINISBLACK},
        {.bits = 4, .samples = 1, .photometric = PHOTOMETRIC_MINISBLACK, .compression = COMPRESSION_PACKBITS},
        {.bits = 8, .samples = 1, .photometric = PHOTOMETRIC_MINISBLACK},
        {.bits = 16, .samples = 1, .photometric = PHOTOMETRIC_MINISBLACK},
        {.bits = 1, .samples = 1, .photometric = PHOTOMETRIC_MINISBLACK, .compression = COMPRESSION_CCITTFAX4},
        {.bits = 8, .samples = 3, .compression = COMPRESSION_LZW, .predictor = 2},
        {.bits = 8, .samples = 3, .compression = COMPRESSION_ADOBE_DEFLATE, .tiled = true},
        {.bits = 8, .samples = 3, .separate = true},
        {.bits = 8, .samples = 3, .tiled = true, .separate = true},
        {.bits = 8, .samples = 3, .pages = 3},
        {.bits = 8, .samples = 3, .mode = "wb"},
        {.bits = 8, .samples = 3, .mode = "w8"},
        {.bits = 16, .samples = 3},
        {.bits = 16, .samples = 3, .compression = COMPRESSION_ADOBE_DEFLATE, .predictor = 2, .mode = "wb"},
        {.bits = 16, .samples = 3, .compression = COMPRESSION_LZW, .tiled = true, .separate = true},
        {.bits = 8, .samples = 4, .alphaKind = EXTRASAMPLE_UNASSALPHA},
        {.bits = 16, .samples = 4, .separate = true, .alphaKind = EXTRASAMPLE_UNASSALPHA},
        {.bits = 8, .samples = 2, .photometric = PHOTOMETRIC_MINISBLACK, .alphaKind = EXTRASAMPLE_UNASSALPHA},
    };
    for (const TiffKind &kind : kinds) {
        SCOPED_TRACE(testing::Message() << kind.bits << " bits, " << kind.samples << " samples, compression "
                                        << kind.compression << ", tiled " << kind.tiled << ", apart " << kind.separate
                                        << ", mode " << kind.mode);
        const QByteArray file = makeTiff(width, height, kind, patternOf(kind.bits));
        const bool alpha = kind.alphaKind != 0;
        EXPECT_TRUE(shows(readPictureFromData(file), looksOf(kind.bits, kind.samples - (alpha ? 1 : 0), alpha)));
    }
}

TEST(FilesRead, TiffOddities) {
    const QByteArray inverted =
        makeTiff(width, height, {.bits = 4, .samples = 1, .photometric = PHOTOMETRIC_MINISWHITE}, patternOf(4));
    EXPECT_TRUE(shows(readPictureFromData(inverted), [](int x, int y) {
        const int grey = 255 - toByte(pattern(x, y, 0, 4), 4);
        return qRgb(grey, grey, grey);
    }));
    for (const int bits : {1, 4, 8}) {
        const TiffKind kind{.bits = bits, .samples = 1, .photometric = PHOTOMETRIC_PALETTE, .tiled = bits == 8};
        EXPECT_TRUE(shows(readPictureFromData(makeTiff(width, height, kind, patternOf(bits))),
                          [&](int x, int y) { return paletteColour(pattern(x, y, 0, bits)); }));
    }
    // Colours multiplied by alpha are divided again: 200 of 255 at half.
    for (const int bits : {8, 16}) {
        for (const bool separate : {false, true}) {
            const TiffKind kind{.bits = bits, .samples = 4, .separate = separate, .alphaKind = EXTRASAMPLE_ASSOCALPHA};
            const QByteArray multiplied = makeTiff(width, height, kind, [bits](int, int, int channel) {
                return (channel == 3 ? 128 : 100) * (bits == 8 ? 1 : 257);
            });
            EXPECT_TRUE(shows(readPictureFromData(multiplied), [](int, int) { return qRgba(199, 199, 199, 128); }))
                << bits << ' ' << separate;
        }
    }
    const QByteArray inks = makeTiff(width, height, {.samples = 4, .photometric = PHOTOMETRIC_SEPARATED}, patternOf(8));
    EXPECT_TRUE(shows(readPictureFromData(inks), [](int x, int y) {
        const auto channel = [&](int index) {
            return static_cast<int>(std::lround((255 - pattern(x, y, index, 8)) * (255 - pattern(x, y, 3, 8)) / 255.0));
        };
        return qRgb(channel(0), channel(1), channel(2));
    }));
    // Compressed as JPEG, and as YCbCr within it.
    const auto smooth = [](int x, int y, int channel) { return 40 + 3 * x + 2 * y + 20 * channel; };
    for (const int photometric : {PHOTOMETRIC_RGB, PHOTOMETRIC_MINISBLACK}) {
        const TiffKind kind{.samples = photometric == PHOTOMETRIC_RGB ? 3 : 1,
                            .photometric = photometric,
                            .compression = COMPRESSION_JPEG};
        EXPECT_TRUE(shows(
            readPictureFromData(makeTiff(width, height, kind, smooth)),
            [&](int x, int y) {
                const int grey = smooth(x, y, 0);
                return kind.samples == 1 ? qRgb(grey, grey, grey) : qRgb(grey, smooth(x, y, 1), smooth(x, y, 2));
            },
            12));
    }
}

TEST(FilesRead, TiffOfRareDepths) {
    struct Row {
        int bits;
        int format;
    };
    std::vector<Row> rows{{16, SAMPLEFORMAT_IEEEFP}, {24, SAMPLEFORMAT_IEEEFP}, {32, SAMPLEFORMAT_IEEEFP},
                          {64, SAMPLEFORMAT_IEEEFP}, {8, SAMPLEFORMAT_INT},     {16, SAMPLEFORMAT_INT}};
    for (const int bits : {3, 5, 6, 7, 10, 12, 14, 24, 64}) {
        rows.push_back({bits, SAMPLEFORMAT_UINT});
    }
    for (const Row &row : rows) {
        const bool wide = row.format != SAMPLEFORMAT_UINT || row.bits > 16;
        const int bits = wide ? 16 : row.bits;
        for (const bool separate : {false, true}) {
            for (const int alphaKind : {0, EXTRASAMPLE_UNASSALPHA}) {
                SCOPED_TRACE(testing::Message() << row.bits << " bits, format " << row.format << ", apart " << separate
                                                << ", alpha " << alphaKind);
                const TiffKind kind{.bits = row.bits,
                                    .samples = alphaKind == 0 ? 3 : 4,
                                    .tiled = separate && row.bits % 8 == 0,
                                    .separate = separate,
                                    .alphaKind = alphaKind,
                                    .format = row.format};
                const PictureRead read = readPictureFromData(makeTiff(width, height, kind, patternOf(bits)));
                // Signed and half numbers have fewer steps than the samples.
                EXPECT_TRUE(shows(read, looksOf(bits, 3, alphaKind != 0), wide ? 1 : 0));
            }
        }
    }
    for (const int bits : {12, 16}) {
        const TiffKind palette{.bits = bits, .samples = 1, .photometric = PHOTOMETRIC_PALETTE};
        EXPECT_TRUE(shows(readPictureFromData(makeTiff(width, height, palette, patternOf(bits))), [&](int x, int y) {
            const int value = pattern(x, y, 0, bits) << (16 - bits);
            return qRgb(toByte(value, 16), toByte(65535 - value, 16), 0);
        })) << bits;
    }
}

TEST(FilesRead, TiffThatSaysLittle) {
    // A sample after the colours that the file does not explain is alpha, unless it is nothing everywhere.
    for (const int bits : {8, 16}) {
        for (const int photometric : {int(PHOTOMETRIC_RGB), -1}) {
            const TiffKind kind{.bits = bits, .samples = 4, .photometric = photometric};
            EXPECT_TRUE(
                shows(readPictureFromData(makeTiff(width, height, kind, patternOf(bits))), looksOf(bits, 3, true)))
                << bits << ' ' << photometric;
            const auto empty = [bits](int x, int y, int channel) {
                return channel == 3 ? 0 : pattern(x, y, channel, bits);
            };
            EXPECT_TRUE(shows(readPictureFromData(makeTiff(width, height, kind, empty)), looksOf(bits, 3, false)));
        }
    }
    EXPECT_TRUE(
        shows(readPictureFromData(makeTiff(width, height, {.photometric = -1}, patternOf(8))), looksOf(8, 3, false)));
    EXPECT_TRUE(shows(readPictureFromData(makeTiff(width, height, {.samples = 1, .photometric = -1}, patternOf(8))),
                      looksOf(8, 1, false)));
}

TEST(FilesRead, BmpRunLengths) {
    // Runs, literals with and without padding, a jump, an end of line, the end; written out by hand.
    const auto file = [](int bits, const QByteArray &packed) {
        const std::vector<QRgb> palette = paletteOf(1 << bits);
        QByteArray bytes = makeBmp(
            6, 3, bits, false, [](int, int, int) { return 0; }, palette);
        bytes[30] = static_cast<char>(bits == 8 ? 1 : 2);
        return bytes.left(54 + (4 << bits)) + packed;
    };
    const auto rowOf = [](const PictureRead &read, int y) {
        std::vector<int> row;
        row.reserve(static_cast<std::size_t>(read.picture.width()));
        for (int x = 0; x < read.picture.width(); ++x) {
            row.push_back(qRed(read.picture.pixel(x, y)));
        }
        return row;
    };
    const PictureRead eight = readPictureFromData(file(8, QByteArray("\x03\x07\0\x03\x01\x02\x03\0"
                                                                     "\0\0"
                                                                     "\x06\x09"
                                                                     "\0\0"
                                                                     "\0\x02\x02\0"
                                                                     "\x02\x05"
                                                                     "\0\x01",
                                                                     22)));
    ASSERT_EQ(eight.error, PictureError::None) << eight.reason.toStdString();
    EXPECT_EQ(rowOf(eight, 2), (std::vector<int>{7, 7, 7, 1, 2, 3}));
    EXPECT_EQ(rowOf(eight, 1), (std::vector<int>{9, 9, 9, 9, 9, 9}));
    EXPECT_EQ(rowOf(eight, 0), (std::vector<int>{0, 0, 5, 5, 0, 0}));
    const PictureRead four = readPictureFromData(file(4, QByteArray("\x05\x12\0\0"
                                                                    "\0\x05\x34\x56\x70\0"
                                                                    "\0\0"
                                                                    "\x63\xAB"
                                                                    "\0\x01",
                                                                    16)));
    ASSERT_EQ(four.error, PictureError::None) << four.reason.toStdString();
    EXPECT_EQ(rowOf(four, 2), (std::vector<int>{1, 2, 1, 2, 1, 0}));
    EXPECT_EQ(rowOf(four, 1), (std::vector<int>{3, 4, 5, 6, 7, 0}));
    EXPECT_EQ(rowOf(four, 0), (std::vector<int>{10, 11, 10, 11, 10, 11})) << "a run beyond the edge is cut";
}

TEST(FilesRead, Gif) {
    const std::vector<QRgb> palette = paletteOf(64);
    std::vector<std::uint8_t> first;
    first.reserve(static_cast<std::size_t>(width) * height);
    for (int i = 0; i < width * height; ++i) {
        first.push_back(static_cast<std::uint8_t>(pattern(i % width, i / width, 0, 6)));
    }
    const std::vector<std::uint8_t> second(first.rbegin(), first.rend());
    for (const bool interlaced : {false, true}) {
        for (const bool animated : {false, true}) {
            for (const int transparent : {-1, 5}) {
                SCOPED_TRACE(testing::Message() << "interlaced " << interlaced << ", animated " << animated
                                                << ", transparent " << transparent);
                std::vector<std::vector<std::uint8_t>> frames{first};
                if (animated) {
                    frames.push_back(second);
                }
                const QByteArray file = makeGif(width, height, palette, transparent, interlaced, frames);
                EXPECT_TRUE(shows(readPictureFromData(file), [&](int x, int y) {
                    const int index = first[static_cast<std::size_t>(y * width + x)];
                    return index == transparent ? paletteColour(index) & 0xFFFFFFU : paletteColour(index);
                }));
            }
        }
    }
}

TEST(FilesRead, WebPAndHeif) {
    QImage picture(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            picture.setPixel(x, y, qRgba(x * 6, y * 12, 255 - x * 6, 20 + 11 * y));
        }
    }
    EXPECT_TRUE(shows(readPictureFromData(makeWebP(picture)), [&](int x, int y) { return picture.pixel(x, y); }));
    const QImage opaque = picture.convertToFormat(QImage::Format_RGB32);
    const QByteArray heif = makeHeif(opaque, 1, exifWithOrientation(1));
    if (heif.isEmpty()) {
        GTEST_SKIP() << "this machine's libheif cannot encode HEVC";
    }
    EXPECT_TRUE(shows(
        readPictureFromData(heif), [&](int x, int y) { return opaque.pixel(x, y) | 0xFF000000; }, 16));
}

TEST(FilesRead, JpegInEveryColourSpace) {
    const auto smooth = [](int x, int y, int channel) { return 40 + 3 * x + 2 * y + 15 * channel; };
    for (const bool progressive : {false, true}) {
        const JpegKind grey{.components = 1, .progressive = progressive};
        EXPECT_TRUE(shows(
            readPictureFromData(makeJpeg(width, height, grey, smooth)),
            [&](int x, int y) { return qRgb(smooth(x, y, 0), smooth(x, y, 0), smooth(x, y, 0)); }, 4));
        const JpegKind colour{.components = 3, .progressive = progressive};
        EXPECT_TRUE(shows(
            readPictureFromData(makeJpeg(width, height, colour, smooth)),
            [&](int x, int y) { return qRgb(smooth(x, y, 0), smooth(x, y, 1), smooth(x, y, 2)); }, 8));
        for (const bool mixed : {false, true}) {
            // The library marks these as Adobe does, so that they are read as Adobe stores them: 255 is no ink.
            const JpegKind inks{.components = 4, .progressive = progressive, .mixed = mixed};
            EXPECT_TRUE(shows(
                readPictureFromData(makeJpeg(width, height, inks, smooth)),
                [&](int x, int y) {
                    const auto channel = [&](int index) { return smooth(x, y, index) * smooth(x, y, 3) / 255; };
                    return qRgb(channel(0), channel(1), channel(2));
                },
                8))
                << "mixed " << mixed;
        }
    }
}

TEST(FilesRead, ContentDecidesNotTheName) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("really-a.jpg"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(makePng(width, height, 8, PNG_COLOR_TYPE_RGB, false, patternOf(8)));
    file.close();
    const PictureHeader header = readPictureHeader(path);
    EXPECT_EQ(header.format, QStringLiteral("PNG"));
    EXPECT_EQ(header.width, width);
    EXPECT_EQ(header.height, height);
    EXPECT_TRUE(shows(readPicture(path), looksOf(8, 3, false)));
}

TEST(FilesRead, ThumbnailsFitTheBox) {
    QTemporaryDir folder;
    const QImage photo = toPicture(photoLike(1203, 801));
    for (const char *name : {"a.jpg", "a.png", "a.bmp", "a.tif", "a.gif"}) {
        SCOPED_TRACE(name);
        const QString path = folder.filePath(QLatin1String(name));
        ASSERT_TRUE(writePicture(photo, path).ok());
        const PictureRead read = readThumbnail(path, 120);
        ASSERT_EQ(read.error, PictureError::None);
        EXPECT_EQ(read.picture.size(), QSize(120, 80));
        const QRgb sky = read.picture.pixel(60, 5);
        EXPECT_GT(qBlue(sky), qRed(sky)) << "the sky of the picture is blue";
        EXPECT_EQ(readThumbnail(path, 2000).picture.size(), photo.size()) << "small pictures are not enlarged";
    }
}

TEST(FilesRead, FittedPicturesTakeTheWholeRoom) {
    QTemporaryDir folder;
    const QImage photo = toPicture(photoLike(1203, 801));
    const struct {
        QSize room, fitted;
    } cases[] = {
        {{600, 900}, {600, 400}},     // in the room's width
        {{1920, 400}, {601, 400}},    // in its height
        {{1203, 801}, {1203, 801}},   // as it is
        {{2406, 5000}, {2406, 1602}}, // enlarged
        {{1, 1}, {1, 1}},
        {{0, -3}, {1, 1}},
    };
    for (const char *name : {"a.jpg", "a.png", "a.gif"}) {
        const QString path = folder.filePath(QLatin1String(name));
        ASSERT_TRUE(writePicture(photo, path).ok());
        const QImage whole = readPicture(path).picture;
        for (const auto &c : cases) {
            SCOPED_TRACE(testing::Message() << name << " in " << c.room.width() << " x " << c.room.height());
            const PictureRead read = readFitted(path, c.room);
            ASSERT_EQ(read.error, PictureError::None);
            ASSERT_EQ(read.picture.size(), c.fitted);
            // The reduced decode of JPEG differs by rounding only.
            const QImage expected = scaled(whole, c.fitted.width(), c.fitted.height());
            const QPoint middle(c.fitted.width() / 2, c.fitted.height() / 2);
            EXPECT_NEAR(qGreen(read.picture.pixel(middle)), qGreen(expected.pixel(middle)), 6);
        }
    }
    TaskControl control;
    control.cancel();
    const TaskControl::Scope scope(&control);
    EXPECT_EQ(readFitted(folder.filePath("a.jpg"), {100, 100}).error, PictureError::Cancelled);
}
