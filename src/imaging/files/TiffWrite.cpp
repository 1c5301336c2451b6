// Writing TIFF with libtiff: Deflate with horizontal differences, the strips compressed on all cores. libtiff itself
// compresses on one core and takes more than twice as long (bench: TiffEncode beside TiffEncodeByQt, which uses LZW).
#include "imaging/Picture.h"
#include "imaging/files/Deflate.h"
#include "imaging/files/Format.h"
#include "imaging/files/Strips.h"
#include "imaging/files/TiffFile.h"

namespace lumora {

namespace {

// Red, green, blue (and alpha), each less the pixel to the left: predictor 2 of TIFF 6.0, section 14.
std::vector<std::uint8_t> differences(const ConstPixelView &view, int channels, int firstRow, int endRow) {
    std::vector<std::uint8_t> raw(static_cast<std::size_t>(view.width) * channels * (endRow - firstRow));
    constexpr int order[4] = {2, 1, 0, 3};
    std::uint8_t *to = raw.data();
    for (int y = firstRow; y < endRow; ++y) {
        const std::uint8_t nothing[4] = {};
        const std::uint8_t *left = nothing;
        const std::uint8_t *pixel = view.row(y);
        for (int x = 0; x < view.width; ++x, left = pixel, pixel += 4) {
            for (int channel = 0; channel < channels; ++channel) {
                *to++ = static_cast<std::uint8_t>(pixel[order[channel]] - left[order[channel]]);
            }
        }
    }
    return raw;
}

bool describe(TIFF *tiff, const ConstPixelView &view, int channels, int stripRows) {
    bool good = TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, view.width) &&
                TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, view.height) && TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8) &&
                TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, channels) &&
                TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB) &&
                TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) &&
                TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE) &&
                TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL) &&
                TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, stripRows);
    if (good && channels == 4) {
        const uint16_t straight = EXTRASAMPLE_UNASSALPHA;
        good = TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &straight);
    }
    return good;
}

} // namespace

QString writeTiff(const QImage &picture, QIODevice &target) {
    const ConstPixelView view = readView(picture);
    const int channels = picture.hasAlphaChannel() ? 4 : 3;
    const int stripRows = rowsInStrip(view.width, view.height, channels);
    const TiffFile file(target, "w");
    bool good = file.handle() && describe(file.handle(), view, channels, stripRows);
    uint32_t strip = 0;
    packStrips<QByteArray>(
        good ? view.height : 0, stripRows,
        [&](int firstRow, int endRow) {
            return deflated(differences(view, channels, firstRow, endRow), DeflateWrap::Zlib);
        },
        [&](QByteArray data) {
            good = good && !data.isEmpty() &&
                   TIFFWriteRawStrip(file.handle(), strip, data.data(), data.size()) == data.size();
            ++strip;
            return good;
        });
    good = good && TIFFWriteDirectory(file.handle()) == 1 && TIFFFlush(file.handle()) == 1;
    return good ? QString() : QStringLiteral("cannot write: %1").arg(file.text());
}

} // namespace lumora
