// Pictures open upright, once, and in the right colours.
#include "imaging/PictureFile.h"
#include "imaging/filesMakers.h"

#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>
#include <lcms2.h>
#include <png.h>
#include <tiffio.h>

using namespace lumora;
using namespace lumora::test;

namespace {

constexpr int block = 16; // so that JPEG keeps the colours of the middle apart
constexpr int blockColumns = 4;
constexpr int blockRows = 3;

QRgb colourOf(int column, int row) {
    return qRgb(40 + column * 60, 40 + row * 80, (column + row) % 2 ? 200 : 60);
}

// Where the stored row 0 and column 0 are in the upright picture, from the definition of EXIF tag 0x0112.
struct Sides {
    char row;
    char column;
};
constexpr Sides sides[9] = {{},         {'t', 'l'}, {'t', 'r'}, {'b', 'r'}, {'b', 'l'},
                            {'l', 't'}, {'r', 't'}, {'r', 'b'}, {'l', 'b'}};

// The colour of a stored pixel, for an orientation.
QRgb storedPixel(int orientation, int x, int y) {
    const Sides side = sides[orientation];
    const int across = blockColumns * block;
    const int down = blockRows * block;
    int uprightX = 0;
    int uprightY = 0;
    if (orientation <= 4) {
        uprightX = side.column == 'l' ? x : across - 1 - x;
        uprightY = side.row == 't' ? y : down - 1 - y;
    } else {
        uprightX = side.row == 'l' ? y : across - 1 - y;
        uprightY = side.column == 't' ? x : down - 1 - x;
    }
    return colourOf(uprightX / block, uprightY / block);
}

Sampler stored(int orientation) {
    return [orientation](int x, int y, int channel) {
        const QRgb colour = storedPixel(orientation, x, y);
        return channel == 0 ? qRed(colour) : channel == 1 ? qGreen(colour) : qBlue(colour);
    };
}

void expectUpright(const QImage &picture) {
    ASSERT_EQ(picture.size(), QSize(blockColumns * block, blockRows * block));
    for (int row = 0; row < blockRows; ++row) {
        for (int column = 0; column < blockColumns; ++column) {
            const QRgb is = picture.pixel(column * block + block / 2, row * block + block / 2);
            const QRgb should = colourOf(column, row);
            const int worst = std::max({std::abs(qRed(is) - qRed(should)), std::abs(qGreen(is) - qGreen(should)),
                                        std::abs(qBlue(is) - qBlue(should))});
            EXPECT_LE(worst, 12) << "column " << column << ", row " << row;
        }
    }
}

QByteArray savedProfile(cmsHPROFILE profile) {
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    QByteArray bytes(size, '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

QByteArray rgbProfile(double gamma) {
    const cmsCIExyY white{0.3127, 0.3290, 1};
    const cmsCIExyYTRIPLE primaries{{0.64, 0.33, 1}, {0.30, 0.60, 1}, {0.15, 0.06, 1}};
    cmsToneCurve *curve = cmsBuildGamma(nullptr, gamma);
    cmsToneCurve *curves[3] = {curve, curve, curve};
    QByteArray bytes = savedProfile(cmsCreateRGBProfile(&white, &primaries, curves));
    cmsFreeToneCurve(curve);
    return bytes;
}

// Inks of a made-up press that prints nothing but its black.
QByteArray inkProfile() {
    cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetDeviceClass(profile, cmsSigOutputClass);
    cmsSetColorSpace(profile, cmsSigCmykData);
    cmsSetPCS(profile, cmsSigLabData);
    cmsPipeline *pipeline = cmsPipelineAlloc(nullptr, 4, 3);
    cmsStage *table = cmsStageAllocCLut16bit(nullptr, 5, 4, 3, nullptr);
    cmsStageSampleCLut16bit(
        table,
        [](const cmsUInt16Number in[], cmsUInt16Number out[], void *) {
            out[0] = static_cast<cmsUInt16Number>(0xFFFF - in[3]);
            out[1] = out[2] = 0x8080;
            return 1;
        },
        nullptr, 0);
    cmsPipelineInsertStage(pipeline, cmsAT_END, table);
    cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
    cmsPipelineFree(pipeline);
    return savedProfile(profile);
}

// The sRGB byte of a linear light of 0 to 1: IEC 61966-2-1.
int srgbByte(double light) {
    const double value = light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
    return static_cast<int>(std::lround(value * 255));
}

} // namespace

TEST(FilesUpright, EveryOrientationOfEveryFormat) {
    QTemporaryDir folder;
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const int width = (orientation >= 5 ? blockRows : blockColumns) * block;
        const int height = (orientation >= 5 ? blockColumns : blockRows) * block;
        const QByteArray exif = exifWithOrientation(orientation);
        QImage picture(width, height, QImage::Format_RGB32);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                picture.setPixel(x, y, storedPixel(orientation, x, y));
            }
        }
        const JpegKind jpeg{.exif = QByteArray("Exif\0\0", 6) + exif};
        const struct {
            const char *name;
            QByteArray file;
        } files[] = {
            {"JPEG", makeJpeg(width, height, jpeg, stored(orientation))},
            {"PNG", makePng(width, height, 8, PNG_COLOR_TYPE_RGB, false, stored(orientation), exif)},
            {"TIFF", makeTiff(width, height, {.orientation = orientation}, stored(orientation))},
            {"WebP", makeWebP(picture, exif)},
            {"HEIF", makeHeif(picture, orientation, exif)}, // has it twice and is turned once
        };
        for (const auto &file : files) {
            SCOPED_TRACE(testing::Message() << file.name << ", orientation " << orientation);
            if (file.file.isEmpty()) {
                continue; // no encoder for it on this machine
            }
            const QString path = folder.filePath(QStringLiteral("stored"));
            QFile target(path);
            ASSERT_TRUE(target.open(QIODevice::WriteOnly));
            target.write(file.file);
            target.close();
            const PictureRead read = readPicture(path);
            ASSERT_EQ(read.error, PictureError::None) << read.reason.toStdString();
            expectUpright(read.picture);
            const PictureHeader header = readPictureHeader(path);
            EXPECT_EQ(QSize(header.width, header.height), read.picture.size());
            EXPECT_EQ(header.format, QLatin1String(file.name));
            EXPECT_EQ(readThumbnail(path, blockColumns * block / 2).picture.size(), read.picture.size() / 2);
            EXPECT_EQ(readFitted(path, {blockColumns * block * 2, blockRows * block * 2}).picture.size(),
                      read.picture.size() * 2);
            // What is written holds no orientation that would turn it again.
            for (const char *extension : {"jpg", "png", "tif"}) {
                const QString again = folder.filePath(QStringLiteral("again.") + QLatin1String(extension));
                ASSERT_TRUE(writePicture(read.picture, again).ok());
                expectUpright(readPicture(again).picture);
            }
        }
    }
}

TEST(FilesUpright, ProfilesBecomeSrgb) {
    // A linear profile: the middle value is half the light.
    const auto grey = [](int, int, int) { return 128; };
    const int expected = srgbByte(128 / 255.0);
    const QByteArray linear = rgbProfile(1);
    const QByteArray png = makePng(8, 8, 8, PNG_COLOR_TYPE_RGB, false, grey, {}, linear);
    EXPECT_NEAR(qGreen(readPictureFromData(png).picture.pixel(3, 3)), expected, 1);
    const JpegKind kind{.profile = linear};
    EXPECT_NEAR(qGreen(readPictureFromData(makeJpeg(8, 8, kind, grey)).picture.pixel(3, 3)), expected, 2);

    cmsToneCurve *curve = cmsBuildGamma(nullptr, 1);
    const QByteArray greyProfile = savedProfile(cmsCreateGrayProfile(cmsD50_xyY(), curve));
    cmsFreeToneCurve(curve);
    const QByteArray greyPng = makePng(8, 8, 8, PNG_COLOR_TYPE_GRAY, false, grey, {}, greyProfile);
    const QRgb pixel = readPictureFromData(greyPng).picture.pixel(3, 3);
    EXPECT_NEAR(qRed(pixel), expected, 2);
    EXPECT_EQ(qRed(pixel), qGreen(pixel));
    EXPECT_EQ(qRed(pixel), qBlue(pixel));
}

TEST(FilesUpright, DeepColoursAreConvertedBeforeTheyAreCut) {
    // Shadows of a linear picture: 16 levels of 8 bits, which are 64 of sRGB.
    const auto shadows = [](int x, int, int) { return x * 16; };
    constexpr int width = 256;
    const QByteArray linear = rgbProfile(1);
    cmsToneCurve *curve = cmsBuildGamma(nullptr, 1);
    const QByteArray linearGrey = savedProfile(cmsCreateGrayProfile(cmsD50_xyY(), curve));
    cmsFreeToneCurve(curve);
    const struct {
        const char *name;
        QByteArray file;
    } files[] = {
        {"PNG", makePng(width, 9, 16, PNG_COLOR_TYPE_RGB, false, shadows, {}, linear)},
        {"interlaced PNG", makePng(width, 9, 16, PNG_COLOR_TYPE_RGB, true, shadows, {}, linear)},
        {"grey PNG", makePng(width, 9, 16, PNG_COLOR_TYPE_GRAY, false, shadows, {}, linearGrey)},
        {"TIFF", makeTiff(width, 9, {.bits = 16, .profile = linear}, shadows)},
        {"TIFF in planes", makeTiff(width, 9, {.bits = 16, .separate = true, .profile = linear}, shadows)},
        {"tiled float TIFF", makeTiff(width, 9, {.bits = 32, .tiled = true, .format = 3, .profile = linear}, shadows)},
    };
    for (const auto &file : files) {
        SCOPED_TRACE(file.name);
        const PictureRead read = readPictureFromData(file.file);
        ASSERT_EQ(read.picture.size(), QSize(width, 9)) << read.reason.toStdString();
        for (int x = 0; x < width; ++x) {
            const QRgb pixel = read.picture.pixel(x, 8);
            const int expected = srgbByte(x * 16 / 65535.0);
            ASSERT_NEAR(qRed(pixel), expected, 1) << x;
            ASSERT_NEAR(qGreen(pixel), expected, 1) << x;
            ASSERT_NEAR(qBlue(pixel), expected, 1) << x;
        }
    }
    // sRGB itself stays as it is.
    const auto ramp = [](int x, int y, int channel) { return (x * 251 + y * 4001 + channel * 12345) % 65536; };
    const QImage plain = readPictureFromData(makePng(width, 9, 16, PNG_COLOR_TYPE_RGB, false, ramp)).picture;
    const QByteArray srgb = savedProfile(cmsCreate_sRGBProfile());
    const QImage named = readPictureFromData(makePng(width, 9, 16, PNG_COLOR_TYPE_RGB, false, ramp, {}, srgb)).picture;
    for (int x = 0; x < width; ++x) {
        EXPECT_NEAR(qRed(named.pixel(x, 4)), qRed(plain.pixel(x, 4)), 1);
        EXPECT_NEAR(qBlue(named.pixel(x, 4)), qBlue(plain.pixel(x, 4)), 1);
    }
}

TEST(FilesUpright, TenBitsOfAPhonesPictureAreConvertedBeforeTheyAreCut) {
    // Bars in the shadows of a linear picture, each halfway between two levels of 8 bits.
    constexpr int bar = 16;
    constexpr int bars = 8;
    const auto shadows = [](int x) { return 4 * (x / bar) + 2; };
    const QByteArray file = makeDeepHeif(bars * bar, 64, shadows, rgbProfile(1));
    if (file.isEmpty()) {
        GTEST_SKIP() << "this machine's libheif cannot encode HEVC of 10 bits";
    }
    const PictureRead read = readPictureFromData(file);
    ASSERT_EQ(read.picture.size(), QSize(bars * bar, 64)) << read.reason.toStdString();
    for (int i = 0; i < bars; ++i) {
        const QRgb pixel = read.picture.pixel(i * bar + bar / 2, 32);
        EXPECT_NEAR(qGreen(pixel), srgbByte(shadows(i * bar) / 1023.0), 2) << i;
    }
}

TEST(FilesUpright, LabIsSeenFromTheWhiteOfTheScreen) {
    struct Colour {
        double l, a, b;
    };
    const Colour colours[] = {{0, 0, 0}, {50, 0, 0}, {100, 0, 0}, {60, 30, -25}, {70, -20, 35}};
    cmsHPROFILE lab = cmsCreateLab4Profile(nullptr);
    cmsHPROFILE srgb = cmsCreate_sRGBProfile();
    cmsHTRANSFORM exact =
        cmsCreateTransform(lab, TYPE_Lab_DBL, srgb, TYPE_RGB_8, INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOOPTIMIZE);
    for (const int bits : {8, 16}) {
        for (const bool icc : {false, true}) {
            const auto stored = [&](int x, int, int channel) {
                const Colour &colour = colours[x / 4];
                if (channel == 0) {
                    const double most = bits == 8 ? 255 : icc ? 0xFF00 : 0xFFFF;
                    return static_cast<int>(std::lround(colour.l / 100 * most));
                }
                const double value = channel == 1 ? colour.a : colour.b;
                return static_cast<int>(value + (icc ? 128 : 0)) * (bits == 8 ? 1 : 256) & ((1 << bits) - 1);
            };
            const TiffKind kind{.bits = bits, .photometric = icc ? PHOTOMETRIC_ICCLAB : PHOTOMETRIC_CIELAB};
            const PictureRead read = readPictureFromData(makeTiff(20, 2, kind, stored));
            ASSERT_EQ(read.error, PictureError::None) << read.reason.toStdString();
            for (int i = 0; i < 5; ++i) {
                std::uint8_t expected[3];
                const double value[3] = {colours[i].l, colours[i].a, colours[i].b};
                cmsDoTransform(exact, value, expected, 1);
                const QRgb pixel = read.picture.pixel(i * 4 + 1, 1);
                EXPECT_NEAR(qRed(pixel), expected[0], 1) << bits << ' ' << icc << ' ' << i;
                EXPECT_NEAR(qGreen(pixel), expected[1], 1) << bits << ' ' << icc << ' ' << i;
                EXPECT_NEAR(qBlue(pixel), expected[2], 1) << bits << ' ' << icc << ' ' << i;
            }
        }
    }
    cmsDeleteTransform(exact);
    cmsCloseProfile(lab);
    cmsCloseProfile(srgb);
}

TEST(FilesUpright, AThumbnailIsBelievedIfItHasThePhotosShape) {
    QTemporaryDir folder;
    const auto red = [](int, int, int channel) { return channel == 0 ? 250 : 10; };
    const auto blue = [](int, int, int channel) { return channel == 2 ? 250 : 10; };
    const struct {
        int width, height;
        bool believed;
    } cases[] = {{160, 120, true}, {160, 119, true}, {160, 107, false}, {120, 160, false}, {160, 90, false}};
    for (const auto &c : cases) {
        const QByteArray thumbnail = makeJpeg(c.width, c.height, {}, blue);
        const JpegKind kind{.exif = QByteArray("Exif\0\0", 6) + exifWithThumbnail(thumbnail)};
        QFile file(folder.filePath("photo.jpg"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(makeJpeg(640, 480, kind, red));
        file.close();
        const QRgb pixel = readThumbnail(file.fileName(), 100).picture.pixel(50, 30);
        EXPECT_EQ(qBlue(pixel) > 200, c.believed) << c.width << " x " << c.height;
        EXPECT_EQ(qRed(pixel) > 200, !c.believed) << c.width << " x " << c.height;
    }
}

TEST(FilesUpright, InksMeetTheirProfile) {
    // Inverted, as Adobe stores it: black is 255 - 153 of 255; the colours are ignored by this profile.
    const JpegKind kind{.components = 4, .profile = inkProfile()};
    const auto inks = [](int, int, int channel) { return channel == 3 ? 153 : 10; };
    const QRgb pixel = readPictureFromData(makeJpeg(16, 16, kind, inks)).picture.pixel(8, 8);
    // L* of 60 is a light of 0.2812 (CIE 1976).
    EXPECT_NEAR(qRed(pixel), srgbByte(std::pow((60.0 + 16) / 116, 3)), 4);
    EXPECT_NEAR(qBlue(pixel), qRed(pixel), 4);
    EXPECT_EQ(qAlpha(pixel), 255);
}

TEST(FilesUpright, SrgbIsLeftAlone) {
    const auto ramp = [](int x, int y, int channel) {
        return channel == 0 ? x * 16 : channel == 1 ? y * 16 : 255 - x * 16;
    };
    const QByteArray plain = makePng(16, 16, 8, PNG_COLOR_TYPE_RGB, false, ramp);
    const QByteArray named =
        makePng(16, 16, 8, PNG_COLOR_TYPE_RGB, false, ramp, {}, savedProfile(cmsCreate_sRGBProfile()));
    EXPECT_EQ(readPictureFromData(named).picture, readPictureFromData(plain).picture);
    QByteArray strange = rgbProfile(1.8);
    strange.replace(16, 4, "????"); // what it converts from
    for (const QByteArray &broken : {rgbProfile(1.8).replace("mntr", "????").left(300), strange}) {
        EXPECT_EQ(readPictureFromData(makeJpeg(16, 16, {.profile = broken}, ramp)).picture,
                  readPictureFromData(makeJpeg(16, 16, {}, ramp)).picture);
        const auto deep = [](const QByteArray &profile) {
            return readPictureFromData(makeDeepHeif(
                                           64, 64, [](int x) { return 16 * x; }, profile))
                .picture;
        };
        EXPECT_EQ(deep(broken), deep("no profile"));
    }
}
