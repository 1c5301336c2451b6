// Makes picture files for the tests of reading, with the codecs' own libraries or byte by byte: in every arrangement
// that the program itself never writes.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <functional>
#include <vector>

namespace lumora::test {

/// A value for each pixel and channel, from 0 to `most`.
using Sampler = std::function<int(int x, int y, int channel)>;

struct TiffKind {
    int bits = 8; ///< any number to 32, or 64
    int samples = 3;
    int photometric = 2; ///< -1: the file does not say
    int compression = 1;
    int predictor = 1;
    bool tiled = false;
    bool separate = false;
    int alphaKind = 0; ///< EXTRASAMPLE_..., with one sample more than the colours
    int orientation = 0;
    int pages = 1;
    const char *mode = "w";
    int format = 1; ///< SAMPLEFORMAT_...
    QByteArray profile = {};
};

struct JpegKind {
    int components = 3; ///< 1 grey, 3 YCbCr, 4 inks
    bool progressive = false;
    bool mixed = false;   ///< four components as YCCK
    QByteArray exif = {}; ///< with its "Exif\0\0"
    QByteArray profile = {};
    int restartRows = 0; ///< rows of blocks from one restart marker to the next
};

/// Samples have as many bits as the file, but 16 (from 0 to 65535) for more than 16 bits other than 32, and for signed
/// and floating-point numbers, which begin at the smallest and go from 0 to 1.
QByteArray makeTiff(int width, int height, const TiffKind &kind, const Sampler &sample);
QByteArray makePng(int width, int height, int bits, int colourType, bool interlaced, const Sampler &sample,
                   const QByteArray &exif = {}, const QByteArray &profile = {});
QByteArray makeJpeg(int width, int height, const JpegKind &kind, const Sampler &sample);
/// `bits` 1, 4 or 8 with `palette`, or 24. filesBmp_test makes all the other kinds.
QByteArray makeBmp(int width, int height, int bits, bool fromTop, const Sampler &sample,
                   const std::vector<QRgb> &palette = {});
/// By the format's description, sides below 128: `kind` 1 with a palette (red i, green 255 - i, blue i ^ 85), 2 or 3;
/// rows from any corner (0 to 3), `packed` as run lengths that cross rows.
QByteArray makeTga(int width, int height, int kind, int bits, int corner, bool packed, const Sampler &sample);
/// Frames of indices into the palette.
QByteArray makeGif(int width, int height, const std::vector<QRgb> &palette, int transparent, bool interlaced,
                   const std::vector<std::vector<std::uint8_t>> &frames);
QByteArray makeWebP(const QImage &picture, const QByteArray &exif = {});
/// Empty where the library cannot encode HEVC.
QByteArray makeHeif(const QImage &picture, int orientation, const QByteArray &exif);

/// A HEIC file of 10 bits a sample, grey, with a colour profile: `grey` gives the samples of a column.
QByteArray makeDeepHeif(int width, int height, const std::function<int(int x)> &grey, const QByteArray &profile);

/// EXIF data with a thumbnail, which is a whole JPEG file.
QByteArray exifWithThumbnail(const QByteArray &jpeg);

/// EXIF data that hold an orientation and nothing else, from the TIFF header on.
QByteArray exifWithOrientation(int orientation);

} // namespace lumora::test
