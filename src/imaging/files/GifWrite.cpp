// Writing GIF: a palette made by libimagequant from a sample of the picture; strips of rows dithered and packed on all
// cores. By hand from there on: the libraries for it dither and pack on one core and take fifteen times as long (bench:
// GifEncode).
#include "base/TaskControl.h"
#include "imaging/Picture.h"
#include "imaging/Scale.h"
#include "imaging/files/Format.h"
#include "imaging/files/Lzw.h"
#include "imaging/files/PaletteDither.h"
#include "imaging/files/Strips.h"

#include <QtEndian>
#include <libimagequant.h>
#include <memory>
#include <vector>

namespace lumora {

namespace {

using Attributes = std::unique_ptr<liq_attr, void (*)(liq_attr *)>;
using Pixels = std::unique_ptr<liq_image, void (*)(liq_image *)>;
using Result = std::unique_ptr<liq_result, void (*)(liq_result *)>;

constexpr int mostGifColours = 256;

bool isSeeThrough(const std::uint8_t *pixel) {
    return pixel[3] < PaletteDither::seeThroughBelow;
}

bool hasTransparency(const QImage &picture) {
    const ConstPixelView view = readView(picture);
    for (int y = 0; picture.hasAlphaChannel() && y < view.height; ++y) {
        const std::uint8_t *pixel = view.row(y);
        for (int x = 0; x < view.width; ++x, pixel += 4) {
            if (isSeeThrough(pixel)) {
                return true;
            }
        }
    }
    return false;
}

// Hands a row to the quantiser: red, green, blue, and alpha drawn to one of its two ends.
void giveRow(liq_color *to, int y, int width, void *view) {
    const std::uint8_t *pixel = static_cast<const ConstPixelView *>(view)->row(y);
    for (int x = 0; x < width; ++x, pixel += 4) {
        to[x] = isSeeThrough(pixel) ? liq_color{0, 0, 0, 0} : liq_color{pixel[2], pixel[1], pixel[0], 255};
    }
}

// The palette of a large picture is found on a reduced one, whose colours are the same.
QImage sampleOf(const QImage &picture) {
    constexpr qint64 enough = 1 << 18;
    int factor = 1;
    while (factor < 16 && static_cast<qint64>(picture.width()) * picture.height() / (4 * factor * factor) > enough) {
        factor *= 2;
    }
    return factor > 1 ? boxReduced(picture, factor) : picture;
}

int goesOn(float, void *control) {
    return static_cast<TaskControl *>(control)->isCancelled() ? 0 : 1;
}

/// Up to `most` colours; none when the library fails.
std::vector<PaletteColour> paletteOf(const QImage &picture, int most) {
    // Of 1 to 10: the slower ones gain nothing that dithering leaves visible, and from 8 on the colours lose a bit.
    constexpr int speed = 7;
    const Attributes attributes(liq_attr_create(), liq_attr_destroy);
    const QImage sample = sampleOf(picture);
    if (!attributes || sample.isNull() || liq_set_speed(attributes.get(), speed) != LIQ_OK ||
        liq_set_max_colors(attributes.get(), most) != LIQ_OK) {
        return {};
    }
    if (TaskControl *const control = TaskControl::current()) {
        liq_attr_set_progress_callback(attributes.get(), goesOn, control);
    }
    ConstPixelView view = readView(sample);
    const Pixels pixels(liq_image_create_custom(attributes.get(), giveRow, &view, view.width, view.height, 0),
                        liq_image_destroy);
    liq_result *raw = nullptr;
    if (!pixels || liq_image_quantize(pixels.get(), attributes.get(), &raw) != LIQ_OK) {
        return {};
    }
    const Result result(raw, liq_result_destroy);
    const liq_palette *palette = liq_get_palette(result.get());
    std::vector<PaletteColour> colours;
    for (unsigned i = 0; i < palette->count; ++i) {
        const liq_color &colour = palette->entries[i];
        if (colour.a >= PaletteDither::seeThroughBelow) {
            colours.push_back({colour.r, colour.g, colour.b});
        }
    }
    return colours.empty() ? std::vector<PaletteColour>(1) : colours; // nothing but transparent pixels
}

int bitsFor(std::size_t colours) {
    int bits = 2; // the least that the coding allows
    while (std::size_t{1} << bits < colours) {
        ++bits;
    }
    return bits;
}

// GIF89a, sections 17 to 23: signature, screen with its palette, the transparent colour, the frame.
QByteArray header(const QImage &picture, const std::vector<PaletteColour> &colours, int transparent, int bits) {
    const auto number = [](int value) {
        QByteArray bytes(2, '\0');
        qToLittleEndian(static_cast<quint16>(value), bytes.data());
        return bytes;
    };
    const QByteArray size = number(picture.width()) + number(picture.height());
    QByteArray palette(qsizetype{3} << bits, '\0');
    for (std::size_t i = 0; i < colours.size(); ++i) {
        char *to = palette.data() + 3 * i;
        to[0] = static_cast<char>(colours[i].red);
        to[1] = static_cast<char>(colours[i].green);
        to[2] = static_cast<char>(colours[i].blue);
    }
    const char tableOfThatSize = static_cast<char>(0xF0 | (bits - 1));
    QByteArray result = "GIF89a" + size + tableOfThatSize + QByteArray(2, '\0') + palette;
    if (transparent >= 0) {
        result += QByteArray("\x21\xF9\x04\x01\0\0", 6) + static_cast<char>(transparent) + '\0';
    }
    return result + ',' + QByteArray(4, '\0') + size + '\0' + static_cast<char>(bits);
}

} // namespace

QString writeGif(const QImage &picture, QIODevice &target) {
    const bool transparency = hasTransparency(picture);
    const std::vector<PaletteColour> colours = paletteOf(picture, transparency ? mostGifColours - 1 : mostGifColours);
    if (colours.empty()) {
        return QStringLiteral("no palette could be made");
    }
    const int transparent = transparency ? static_cast<int>(colours.size()) : -1;
    const int bits = bitsFor(colours.size() + (transparency ? 1 : 0));
    const ConstPixelView view = readView(picture);
    const PaletteDither dither(colours, transparent);
    LzwBlocks stream(bits);
    constexpr int stripPixels = 1 << 21; // many rows beside the few that each strip maps twice
    bool good = true;
    const auto write = [&](const std::vector<std::uint8_t> &bytes) {
        const auto count = static_cast<qint64>(bytes.size());
        good = good && target.write(reinterpret_cast<const char *>(bytes.data()), count) == count;
        return good;
    };
    const QByteArray head = header(picture, colours, transparent, bits);
    good = target.write(head) == head.size();
    packStrips<LzwPart>(
        view.height, std::clamp(stripPixels / view.width, 1, view.height),
        [&](int firstRow, int endRow) {
            return lzwPart(dither.rows(view, firstRow, endRow), bits, endRow == view.height);
        },
        [&](const LzwPart &part) { return write(stream.add(part)); });
    write(stream.finish());
    good = good && target.write(";") == 1;
    return good ? QString() : QStringLiteral("cannot write: %1").arg(target.errorString());
}

} // namespace lumora
