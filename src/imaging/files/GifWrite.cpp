// Writing GIF: a palette made for the picture and dithered by libimagequant, written by libcgif.
#include "base/TaskControl.h"
#include "imaging/Picture.h"
#include "imaging/Scale.h"
#include "imaging/files/Format.h"

#include <cgif.h>
#include <libimagequant.h>
#include <memory>
#include <vector>

namespace lumora {

namespace {

constexpr int longestSide = 65535;
constexpr int seeThroughBelow = 128; // GIF has only fully transparent and opaque pixels

using Attributes = std::unique_ptr<liq_attr, void (*)(liq_attr *)>;
using Pixels = std::unique_ptr<liq_image, void (*)(liq_image *)>;
using Result = std::unique_ptr<liq_result, void (*)(liq_result *)>;

struct Indexed {
    std::vector<std::uint8_t> indices;
    std::vector<std::uint8_t> palette; ///< red, green, blue
    int transparent = -1;
};

// Hands a row to the quantiser: red, green, blue, and alpha drawn to one of its two ends.
void giveRow(liq_color *to, int y, int width, void *view) {
    const std::uint8_t *pixel = static_cast<const ConstPixelView *>(view)->row(y);
    for (int x = 0; x < width; ++x, pixel += 4) {
        const bool seeThrough = pixel[3] < seeThroughBelow;
        to[x] = seeThrough ? liq_color{0, 0, 0, 0} : liq_color{pixel[2], pixel[1], pixel[0], 255};
    }
}

Pixels pixelsFor(const Attributes &attributes, ConstPixelView &view) {
    return {liq_image_create_custom(attributes.get(), giveRow, &view, view.width, view.height, 0), liq_image_destroy};
}

// The palette of a large picture is found on a reduced one: the same colours, in a third of the time.
QImage forPalette(const QImage &picture) {
    constexpr qint64 enough = 1 << 20;
    int factor = 1;
    while (factor < 16 && static_cast<qint64>(picture.width()) * picture.height() / (4 * factor * factor) > enough) {
        factor *= 2;
    }
    return factor > 1 ? boxReduced(picture, factor) : picture;
}

// The quantiser tells per cent of its two stages, of which mapping the pixels takes the longer; 0 ends it.
constexpr int percentUntilPalette = 20;

int tellPalette(float percent, void *control) {
    auto *task = static_cast<TaskControl *>(control);
    task->setProgress(static_cast<int>(percent) * percentUntilPalette, 10000);
    return task->isCancelled() ? 0 : 1;
}

int tellMapping(float percent, void *control) {
    auto *task = static_cast<TaskControl *>(control);
    task->setProgress(percentUntilPalette * 100 + static_cast<int>(percent) * (100 - percentUntilPalette), 10000);
    return task->isCancelled() ? 0 : 1;
}

bool quantise(const QImage &picture, Indexed &indexed) {
    // Of 1 to 10: the slower ones gain nothing that dithering leaves visible, and from 8 on the colours lose a bit.
    constexpr int speed = 7;
    const Attributes attributes(liq_attr_create(), liq_attr_destroy);
    const QImage reduced = forPalette(picture);
    if (!attributes || reduced.isNull() || liq_set_speed(attributes.get(), speed) != LIQ_OK) {
        return false;
    }
    TaskControl *const control = TaskControl::current();
    if (control != nullptr) {
        liq_attr_set_progress_callback(attributes.get(), tellPalette, control);
    }
    ConstPixelView view = readView(picture);
    ConstPixelView reducedView = readView(reduced);
    const Pixels pixels = pixelsFor(attributes, view);
    const Pixels reducedPixels = pixelsFor(attributes, reducedView);
    liq_result *raw = nullptr;
    if (!pixels || !reducedPixels || liq_image_quantize(reducedPixels.get(), attributes.get(), &raw) != LIQ_OK) {
        return false;
    }
    const Result result(raw, liq_result_destroy);
    liq_set_dithering_level(result.get(), 1);
    if (control != nullptr) {
        liq_result_set_progress_callback(result.get(), tellMapping, control);
    }
    indexed.indices.resize(static_cast<std::size_t>(view.width) * view.height);
    if (liq_write_remapped_image(result.get(), pixels.get(), indexed.indices.data(), indexed.indices.size()) !=
        LIQ_OK) {
        return false;
    }
    const liq_palette *palette = liq_get_palette(result.get());
    for (unsigned i = 0; i < palette->count; ++i) {
        const liq_color &colour = palette->entries[i];
        indexed.palette.insert(indexed.palette.end(), {colour.r, colour.g, colour.b});
        if (colour.a < seeThroughBelow) {
            indexed.transparent = static_cast<int>(i);
        }
    }
    return true;
}

QString encode(Indexed &indexed, int width, int height, QIODevice &target) {
    CGIF_Config config{};
    config.width = static_cast<uint16_t>(width);
    config.height = static_cast<uint16_t>(height);
    config.pGlobalPalette = indexed.palette.data();
    config.numGlobalPaletteEntries = static_cast<uint16_t>(indexed.palette.size() / 3);
    config.pContext = &target;
    config.pWriteFn = [](void *device, const uint8_t *data, const std::size_t count) {
        const auto size = static_cast<qint64>(count);
        return static_cast<QIODevice *>(device)->write(reinterpret_cast<const char *>(data), size) == size ? 0 : 1;
    };
    CGIF_FrameConfig frame{};
    frame.pImageData = indexed.indices.data();
    if (indexed.transparent >= 0) {
        // The library writes the block that holds the transparent colour for animations only; this one has one frame.
        config.attrFlags = CGIF_ATTR_IS_ANIMATED | CGIF_ATTR_NO_LOOP;
        frame.attrFlags = CGIF_FRAME_ATTR_HAS_ALPHA;
        frame.transIndex = static_cast<uint8_t>(indexed.transparent);
    }
    CGIF *gif = cgif_newgif(&config);
    const bool added = gif && cgif_addframe(gif, &frame) == CGIF_OK;
    const bool closed = gif && cgif_close(gif) == CGIF_OK;
    return added && closed ? QString() : QStringLiteral("cannot write: %1").arg(target.errorString());
}

} // namespace

QString writeGif(const QImage &picture, QIODevice &target) {
    if (picture.width() > longestSide || picture.height() > longestSide) {
        return QStringLiteral("GIF ends at 65535 pixels");
    }
    Indexed indexed;
    if (!quantise(picture, indexed)) {
        return QStringLiteral("no palette could be made");
    }
    return encode(indexed, picture.width(), picture.height(), target);
}

} // namespace lumora
