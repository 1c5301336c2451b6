// Broken, cut-off and lying files: refused or shown as far as they go, never a crash, a hang or a flood of memory.
#include "imaging/Picture.h"
#include "imaging/PictureFile.h"
#include "imaging/filesMakers.h"
#include "support/TestPictures.h"

#include <QTemporaryDir>
#include <QtEndian>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <png.h>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
#include <tiffio.h>
#include <unistd.h>
#include <zlib.h>

using namespace lumora;
using namespace lumora::test;

namespace {

struct File {
    const char *name;
    QByteArray bytes;
};

int noise(int x, int y, int channel) {
    return static_cast<int>(static_cast<unsigned>(x * 1709 + y * 5711 + channel * 9973) * 2654435761U >> 24);
}

// A file of each format and of the arrangements that decode by ways of their own.
std::vector<File> everyKind() {
    constexpr int width = 48;
    constexpr int height = 40;
    std::vector<QRgb> palette;
    palette.reserve(256);
    for (int i = 0; i < 256; ++i) {
        palette.push_back(qRgb(i, 255 - i, 7 * i));
    }
    std::vector<std::uint8_t> indices;
    indices.reserve(static_cast<std::size_t>(width) * height);
    for (int i = 0; i < width * height; ++i) {
        indices.push_back(static_cast<std::uint8_t>(noise(i % width, i / width, 0)));
    }
    const QImage photo = photoLike(width, height);
    std::vector<File> files{
        {"JPEG", makeJpeg(width, height, {}, noise)},
        {"progressive JPEG", makeJpeg(width, height, {.progressive = true}, noise)},
        {"CMYK JPEG", makeJpeg(width, height, {.components = 4}, noise)},
        {"PNG", makePng(width, height, 8, PNG_COLOR_TYPE_RGB, false, noise, exifWithOrientation(6))},
        {"interlaced PNG", makePng(width, height, 8, PNG_COLOR_TYPE_RGB_ALPHA, true, noise)},
        {"TIFF", makeTiff(width, height, {}, noise)},
        {"LZW TIFF", makeTiff(width, height, {.compression = COMPRESSION_LZW, .predictor = 2}, noise)},
        {"tiled TIFF", makeTiff(width, height, {.compression = COMPRESSION_ADOBE_DEFLATE, .tiled = true}, noise)},
        {"JPEG TIFF", makeTiff(width, height, {.compression = COMPRESSION_JPEG}, noise)},
        {"GIF", makeGif(width, height, palette, 3, false, {indices})},
        {"interlaced GIF", makeGif(width, height, palette, -1, true, {indices, indices})},
        {"BMP", makeBmp(width, height, 24, false, noise)},
        {"palette BMP", makeBmp(width, height, 8, true, noise, palette)},
        {"WebP", makeWebP(photo, exifWithOrientation(3))},
    };
    if (const QByteArray heif = makeHeif(photoLike(64, 64), 1, exifWithOrientation(1)); !heif.isEmpty()) {
        files.push_back({"HEIF", heif});
    }
    return files;
}

// Whatever comes out is a whole answer: a picture, or an error with its reason.
void expectAnswer(const PictureRead &read) {
    EXPECT_EQ(read.picture.isNull(), read.error != PictureError::None);
    EXPECT_TRUE(read.error == PictureError::None || !read.reason.isEmpty());
}

qint64 peakKilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

void put(QByteArray &bytes, qsizetype at, const QByteArray &what) {
    ASSERT_GE(at, 0);
    bytes.replace(at, what.size(), what);
}

template <typename Value> QByteArray big(Value value) {
    value = qToBigEndian(value);
    return {reinterpret_cast<const char *>(&value), sizeof(value)};
}

template <typename Value> QByteArray little(Value value) {
    value = qToLittleEndian(value);
    return {reinterpret_cast<const char *>(&value), sizeof(value)};
}

// The TIFF file (low byte first) with another value of a tag of one number, and perhaps another type and tag.
QByteArray withTag(QByteArray bytes, int tag, int value, int type = TIFF_LONG, int newTag = 0) {
    const qsizetype directory = qFromLittleEndian<quint32>(bytes.constData() + 4);
    const int entries = qFromLittleEndian<quint16>(bytes.constData() + directory);
    for (int i = 0; i < entries; ++i) {
        const qsizetype entry = directory + 2 + i * 12;
        if (qFromLittleEndian<quint16>(bytes.constData() + entry) == tag) {
            put(bytes, entry,
                little<quint16>(newTag != 0 ? newTag : tag) + little<quint16>(type) + little<quint32>(1) +
                    little<quint32>(value));
        }
    }
    return bytes;
}

// Where the numbers of a tag are that do not fit beside it.
qsizetype placeOfTag(const QByteArray &bytes, int tag) {
    const qsizetype directory = qFromLittleEndian<quint32>(bytes.constData() + 4);
    qsizetype entry = directory + 2;
    while (qFromLittleEndian<quint16>(bytes.constData() + entry) != tag) {
        entry += 12;
    }
    return qFromLittleEndian<quint32>(bytes.constData() + entry + 8);
}

// The file with another size in its header, 16 bits a side.
QByteArray withSize(const File &file, int width, int height) {
    QByteArray bytes = file.bytes;
    const QByteArray name(file.name);
    if (name.endsWith("JPEG")) {
        const qsizetype frame = std::max(bytes.indexOf("\xFF\xC0"), bytes.indexOf("\xFF\xC2"));
        put(bytes, frame + 5, big<quint16>(height) + big<quint16>(width));
    } else if (name.endsWith("PNG")) {
        put(bytes, 16, big<quint32>(width) + big<quint32>(height));
        put(bytes, 29, big<quint32>(crc32(0, reinterpret_cast<const Bytef *>(bytes.constData()) + 12, 17)));
    } else if (name.endsWith("TIFF")) {
        bytes = withTag(withTag(bytes, TIFFTAG_IMAGEWIDTH, width), TIFFTAG_IMAGELENGTH, height);
    } else if (name.endsWith("GIF")) {
        put(bytes, 6, little<quint16>(width) + little<quint16>(height));
    } else if (name.endsWith("BMP")) {
        put(bytes, 18, little<qint32>(width) + little<qint32>(height));
    } else if (name == "WebP") {
        const QByteArray canvas = little<quint32>(width - 1).left(3) + little<quint32>(height - 1).left(3);
        put(bytes, bytes.indexOf("VP8X") + 12, canvas);
        put(bytes, bytes.indexOf("VP8L") + 9, little<quint32>((width - 1) | (height - 1) << 14 | 1 << 28));
    } else {
        put(bytes, bytes.indexOf("ispe") + 8, big<quint32>(width) + big<quint32>(height));
    }
    return bytes;
}

} // namespace

TEST(FilesDamage, HeadersThatLieCostNothing) {
    const std::vector<File> files = everyKind();
    readPictureFromData(files.front().bytes); // the libraries' own tables
    for (const File &file : files) {
        SCOPED_TRACE(file.name);
        const QByteArray lie = withSize(file, 13'000, 14'000); // 182 megapixels
        const qint64 before = peakKilobytes();
        const PictureRead read = readPictureFromData(lie);
        EXPECT_NE(read.error, PictureError::None);
        EXPECT_NE(read.error, PictureError::TooLarge);
        expectAnswer(read);
        EXPECT_LT(peakKilobytes() - before, 64 * 1024);
    }
}

TEST(FilesDamage, MoreThan200MegapixelsAreRefused) {
    for (const File &file : everyKind()) {
        SCOPED_TRACE(file.name);
        if (QByteArray(file.name) == "WebP") {
            continue; // ends at 16383 pixels a side
        }
        EXPECT_EQ(readPictureFromData(withSize(file, 20'000, 10'001)).error, PictureError::TooLarge);
        EXPECT_NE(readPictureFromData(withSize(file, 20'000, 10'000)).error, PictureError::TooLarge);
        EXPECT_EQ(readPictureFromData(withSize(file, 0, 40)).error, PictureError::Damaged);
    }
}

TEST(FilesDamage, MoreThan65535PixelsASideAreRefused) {
    for (const File &file : everyKind()) {
        const QByteArray name(file.name);
        if (name.endsWith("PNG") || name.endsWith("TIFF") || name.endsWith("BMP")) {
            SCOPED_TRACE(file.name);
            EXPECT_EQ(readPictureFromData(withSize(file, 65'536, 1)).error, PictureError::TooLarge);
            EXPECT_EQ(readPictureFromData(withSize(file, 1, 2'000'000)).error, PictureError::TooLarge);
            EXPECT_NE(readPictureFromData(withSize(file, 1, 65'535)).error, PictureError::TooLarge);
        } else if (name == "HEIF") { // the library calls this a lack of memory
            EXPECT_EQ(readPictureFromData(withSize(file, 65'536, 64)).error, PictureError::TooLarge);
            EXPECT_EQ(readPictureFromData(withSize(file, 64, -1)).error, PictureError::TooLarge);
        }
    }
}

// What no library here decodes is said to be rare, not damaged, before memory for pixels is taken.
TEST(FilesDamage, WhatIsTooRareIsSaidToBeRare) {
    const auto grey = [](int x, int y, int) { return x + y; };
    const QByteArray jpeg = makeJpeg(40, 30, {}, grey);
    const qsizetype frame = jpeg.indexOf("\xFF\xC0");
    const auto jpegWith = [&](qsizetype at, char byte) {
        QByteArray bytes = jpeg;
        bytes[frame + at] = byte;
        return bytes;
    };
    const File tiff{"TIFF", makeTiff(4000, 3000, {.bits = 8, .samples = 1, .photometric = 1}, grey)};
    const File fax{"fax TIFF", makeTiff(64, 64, {.bits = 1, .samples = 1, .photometric = 0, .compression = 4}, grey)};
    const QByteArray progressive = makeJpeg(40, 30, {.progressive = true}, grey);
    const qsizetype lastScan = progressive.lastIndexOf("\xFF\xDA");
    const QByteArray scan = progressive.mid(lastScan, progressive.size() - 2 - lastScan);
    QByteArray bmp = makeBmp(40, 30, 24, false, grey);
    bmp[30] = 4; // a JPEG file inside
    QByteArray differing = makeTiff(40, 30, {}, noise);
    put(differing, placeOfTag(differing, TIFFTAG_BITSPERSAMPLE), little<quint16>(5) + little<quint16>(6));
    // Planes of their own, the colours at half the size.
    const TiffKind planes{.photometric = PHOTOMETRIC_YCBCR, .separate = true};
    const File files[] = {
        {"TIFF of 5, 6 and 8 bits", differing},
        {"YCbCr TIFF in planes", makeTiff(40, 30, planes, noise)},
        {"lossless JPEG", jpegWith(1, '\xC3')},
        {"hierarchical JPEG", jpegWith(1, '\xC5')},
        {"JPEG of 12 bits", jpegWith(4, 12)},
        {"JPEG of 200 scans", progressive.left(lastScan) + scan.repeated(200) + progressive.right(2)},
        {"TIFF of 96 bits", withTag(tiff.bytes, TIFFTAG_BITSPERSAMPLE, 96)},
        {"TIFF of complex numbers", makeTiff(40, 30, {.bits = 32, .format = 6}, grey)},
        {"TIFF of JPEG 2000", withTag(tiff.bytes, TIFFTAG_COMPRESSION, 34712)},
        {"fax of 65,281 samples", withTag(fax.bytes, TIFFTAG_SAMPLESPERPIXEL, 65281)},
        {"BMP with a JPEG", bmp},
    };
    for (const File &file : files) {
        SCOPED_TRACE(file.name);
        const qint64 before = peakKilobytes();
        const PictureRead read = readPictureFromData(file.bytes);
        EXPECT_EQ(read.error, PictureError::TooRare) << read.reason.toStdString();
        expectAnswer(read);
        EXPECT_LT(peakKilobytes() - before, 30 * 1024);
    }
}

TEST(FilesDamage, WholePicturesAreNotSaidToLackAPart) {
    const TiffKind kind{.orientation = 1};
    const QByteArray tiff = makeTiff(40, 30, kind, noise);
    for (const int tag : {60000, 274 + 1}) { // a tag that nobody knows, with a value of a type that there is not
        QByteArray bytes = withTag(tiff, TIFFTAG_ORIENTATION, 1, 99, tag);
        const PictureRead read = readPictureFromData(bytes);
        EXPECT_EQ(read.error, PictureError::None) << read.reason.toStdString();
        EXPECT_EQ(read.reason, QString()) << tag;
    }
    for (const File &file : everyKind()) {
        EXPECT_EQ(readPictureFromData(file.bytes).reason, QString()) << file.name;
    }
}

TEST(FilesDamage, WhatIsMissingOfRunLengthsIsGrey) {
    const std::vector<QRgb> palette{qRgb(0, 0, 0), qRgb(255, 0, 0)};
    for (const bool fromTop : {false, true}) {
        QByteArray bytes = makeBmp(
            6, 3, 8, fromTop, [](int, int, int) { return 0; }, palette);
        bytes[30] = 1;
        bytes.truncate(54 + 8);
        const QByteArray first("\x06\x01\0\0", 4);
        const PictureRead whole = readPictureFromData(bytes + first + QByteArray("\0\x01", 2));
        EXPECT_EQ(whole.reason, QString()) << "it ends where it says so";
        constexpr int y = 1; // the second row of the file, either way
        EXPECT_EQ(whole.picture.pixel(2, y), qRgb(0, 0, 0));
        const PictureRead cut = readPictureFromData(bytes + first + QByteArray("\x02\x01", 2));
        EXPECT_NE(cut.reason, QString());
        EXPECT_EQ(cut.picture.pixel(1, y), qRgb(255, 0, 0));
        EXPECT_EQ(cut.picture.pixel(2, y), qRgb(128, 128, 128));
        EXPECT_EQ(cut.picture.pixel(5, fromTop ? 2 : 0), qRgb(128, 128, 128));
    }
}

TEST(FilesDamage, JpegOfNothingButSegmentsIsRefused) {
    const QByteArray whole = makeJpeg(40, 30, {}, [](int x, int y, int) { return x + y; });
    const QByteArray empty("\xFF\xE1\0\2", 4);
    const QByteArray padding = QByteArray("\xFF\xE5\xFF\xFF", 4) + QByteArray(0xFFFF - 2, 'x');
    EXPECT_EQ(readPictureFromData(whole.left(2) + empty.repeated(1000) + whole.mid(2)).error, PictureError::None);
    EXPECT_EQ(readPictureFromData(whole.left(2) + padding.repeated(300) + whole.mid(2)).error, PictureError::None);
    EXPECT_EQ(readPictureFromData(whole.left(2) + empty.repeated(1 << 20)).error, PictureError::Damaged);
}

TEST(FilesDamage, CutOffAnywhere) {
    for (const File &file : everyKind()) {
        SCOPED_TRACE(file.name);
        ASSERT_EQ(readPictureFromData(file.bytes).error, PictureError::None);
        for (qsizetype length = 0; length < file.bytes.size(); length += 1 + length / 40) {
            SCOPED_TRACE(length);
            const PictureRead read = readPictureFromData(file.bytes.left(length));
            expectAnswer(read);
            EXPECT_EQ(read.picture, readPictureFromData(file.bytes.left(length)).picture)
                << "the same bytes, the same pixels";
        }
        EXPECT_NE(readPictureFromData(file.bytes.left(16)).error, PictureError::None);
    }
}

TEST(FilesDamage, CutOffLateShowsTheRest) {
    QTemporaryDir folder;
    const QImage photo = toPicture(photoLike(640, 480));
    for (const char *name : {"a.jpg", "a.png", "a.bmp", "a.gif", "a.webp"}) {
        SCOPED_TRACE(name);
        QByteArray bytes;
        if (QByteArray(name) == "a.webp") {
            bytes = makeWebP(photo);
        } else {
            const QString path = folder.filePath(QLatin1String(name));
            ASSERT_TRUE(writePicture(photo, path).ok());
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            bytes = file.readAll();
        }
        const PictureRead whole = readPictureFromData(bytes);
        const PictureRead cut = readPictureFromData(bytes.left(bytes.size() * 4 / 5));
        ASSERT_EQ(cut.error, PictureError::None) << cut.reason.toStdString();
        ASSERT_EQ(cut.picture.size(), photo.size());
        const bool fromBottom = QByteArray(name) == "a.bmp";
        const QRect kept(0, fromBottom ? 240 : 0, 640, 240);
        EXPECT_EQ(cut.picture.copy(kept), whole.picture.copy(kept));
        EXPECT_NE(cut.reason, QString()) << "it says that a part is missing";
        EXPECT_EQ(cut.picture.pixel(639, fromBottom ? 0 : 479), qRgb(128, 128, 128));
    }
}

TEST(FilesDamage, GarbageInside) {
    std::minstd_rand random(4711);
    for (const File &file : everyKind()) {
        SCOPED_TRACE(file.name);
        for (int round = 0; round < 150; ++round) {
            QByteArray bytes = file.bytes;
            const int changes = 1 + static_cast<int>(random() % 8);
            for (int i = 0; i < changes; ++i) {
                // Most of them in the head, where the sizes and offsets are.
                const auto range =
                    static_cast<unsigned>(round % 3 == 0 ? bytes.size() : std::min<qsizetype>(200, bytes.size()));
                bytes[static_cast<qsizetype>(random() % range)] = static_cast<char>(random() % 256);
            }
            expectAnswer(readPictureFromData(bytes));
        }
    }
}

TEST(FilesDamage, NothingIsPrinted) {
    testing::internal::CaptureStderr();
    for (const File &file : everyKind()) {
        readPictureFromData(file.bytes.left(file.bytes.size() / 2));
        QByteArray bytes = file.bytes;
        for (qsizetype i = 40; i < bytes.size(); i += 37) {
            bytes[i] = static_cast<char>(bytes[i] ^ 0x55);
        }
        readPictureFromData(bytes);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(FilesDamage, AHeicGridLargerThanItsHeaderSaysTakesNoMemory) {
    const auto mostMemory = [] { // kilobytes
        rusage used{};
        getrusage(RUSAGE_SELF, &used);
        return used.ru_maxrss;
    };
    const long before = mostMemory();
    const QString file = qEnvironmentVariable("LUMORA_SOURCE") + "/tests/imaging/broken/grid-of-a-gigapixel.heic";
    const PictureError error = readPicture(file).error;
    EXPECT_TRUE(error == PictureError::TooLarge || error == PictureError::Damaged) << static_cast<int>(error);
    EXPECT_LT(mostMemory() - before, 500'000);
}

TEST(FilesDamage, WhatIsNoPicture) {
    QTemporaryDir folder;
    const QString text = folder.filePath(QStringLiteral("letter.jpg"));
    QFile file(text);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("BMW is what this text begins with, and it goes on for a while.");
    file.close();
    const QString pipe = folder.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    const struct {
        QString path;
        PictureError error;
    } rows[] = {
        {folder.filePath(QStringLiteral("missing.png")), PictureError::NotFound},
        {folder.path(), PictureError::NotFound},
        {pipe, PictureError::NotFound}, // opening it would wait for ever
        {QStringLiteral("/dev/zero"), PictureError::NotFound},
        {QString(), PictureError::NotFound},
        {text, PictureError::NotAPicture},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.path.toStdString());
        EXPECT_EQ(readPicture(row.path).error, row.error);
        EXPECT_EQ(readPictureHeader(row.path).error, row.error);
        EXPECT_EQ(readThumbnail(row.path, 100).error, row.error);
    }
    EXPECT_EQ(readPictureFromData({}).error, PictureError::NotAPicture);
}
