#include "imaging/EffectEngine.h"

#include "imaging/Picture.h"
#include "imaging/effects/BlackAndWhite.h"
#include "imaging/effects/Blur.h"
#include "imaging/effects/Brightness.h"
#include "imaging/effects/ColourEmboss.h"
#include "imaging/effects/ColourFocus.h"
#include "imaging/effects/Colourise.h"
#include "imaging/effects/Contrast.h"
#include "imaging/effects/Greyscale.h"
#include "imaging/effects/HighPassSharpen.h"
#include "imaging/effects/Invert.h"
#include "imaging/effects/Mosaic.h"
#include "imaging/effects/OilPainting.h"
#include "imaging/effects/Perspective.h"
#include "imaging/effects/Reflection.h"
#include "imaging/effects/Saturation.h"
#include "imaging/effects/Sepia.h"
#include "imaging/effects/Sharpen.h"
#include "imaging/effects/Solarise.h"
#include "imaging/effects/Texture.h"
#include "imaging/effects/Tile.h"
#include "imaging/kernels/Convolution.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/transforms/FrameOverlay.h"
#include "imaging/transforms/Transform.h"

#include <cstring>
#include <new>
#include <type_traits>

namespace lumora {

namespace {

void copyPixels(ConstPixelView source, PixelView target, int y, int begin, int end) {
    if (begin < end) {
        std::memcpy(target.row(y) + begin * 4, source.row(y) + begin * 4, std::size_t(end - begin) * 4);
    }
}

/// Whether an operation got through; those without an answer always do unless memory is refused.
template <typename Operation>
bool done(const Operation &operation, ConstPixelView source, PixelView target, PixelRect area) {
    try {
        if constexpr (std::is_same_v<decltype(operation(source, target, area)), bool>) {
            return operation(source, target, area);
        } else {
            operation(source, target, area);
            return true;
        }
    } catch (const std::bad_alloc &) {
        return false;
    }
}

/// Copies every pixel outside the region.
void copyOutside(ConstPixelView source, PixelView target, const Region &region) {
    forRowBands(source.height, source.width, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            int done = 0;
            for (const Region::Span span : region.row(y)) {
                copyPixels(source, target, y, done, span.begin);
                done = span.end;
            }
            copyPixels(source, target, y, done, source.width);
        }
    });
}

} // namespace

bool EffectEngine::setRectangularRegion(int left, int top, int right, int bottom) {
    m_shape = Shape::Rectangle;
    m_box = {left, top, right, bottom};
    return true;
}

bool EffectEngine::setEllipticalRegion(int x1, int y1, int x2, int y2) {
    m_shape = Shape::Ellipse;
    m_box = {x1, y1, x2, y2};
    return true;
}

bool EffectEngine::setLassoRegion(std::vector<PicturePoint> points) {
    m_shape = Shape::Lasso;
    m_lasso = std::move(points);
    return true;
}

/// The picture that an operation on all of it has given; null where it refused.
bool EffectEngine::take(const QImage &result) {
    if (!result.isNull()) {
        m_picture = result;
    }
    return !result.isNull();
}

Region EffectEngine::currentRegion() const {
    if (m_shape == Shape::Lasso) {
        return Region::lasso(m_picture.width(), m_picture.height(), m_lasso);
    }
    const auto make = m_shape == Shape::Ellipse ? &Region::ellipse : &Region::rectangle;
    return make(m_picture.width(), m_picture.height(), m_box.left, m_box.top, m_box.right, m_box.bottom);
}

/// operation(source, target, area) fills the area of the target; the rest is copied around it. An operation that
/// looks at neighbours may thus read beyond the region and still changes nothing there.
template <typename Operation> bool EffectEngine::run(const Operation &operation, bool limitToRegion) {
    const ConstPixelView source = readView(m_picture);
    if (source.isEmpty()) {
        return false;
    }
    QImage result = newPicture(source.width, source.height, isOpaque());
    const PixelView target = writeView(result);
    if (target.isEmpty()) {
        return false;
    }
    if (limitToRegion && m_shape != Shape::None) {
        const Region region = currentRegion();
        if (!region.isEmpty() && !done(operation, source, target, region.bounds())) {
            return false;
        }
        copyOutside(source, target, region);
    } else if (!done(operation, source, target, wholeOf(source))) {
        return false;
    }
    m_picture = result;
    return true;
}

bool EffectEngine::blackAndWhite(int threshold, bool limitToRegion) {
    return run([&](auto... pixels) { applyBlackAndWhite({threshold}, pixels...); }, limitToRegion);
}

bool EffectEngine::greyscale(int mode, bool limitToRegion) {
    return mode == 0 && run([](auto... pixels) { applyGreyscale({}, pixels...); }, limitToRegion);
}

bool EffectEngine::sepia(bool limitToRegion) {
    return run([](auto... pixels) { applySepia({}, pixels...); }, limitToRegion);
}

bool EffectEngine::invert(bool red, bool green, bool blue, bool limitToRegion) {
    return run([&](auto... pixels) { applyInvert({red, green, blue}, pixels...); }, limitToRegion);
}

bool EffectEngine::solarise(int red, int green, int blue, bool above, bool limitToRegion) {
    return run([&](auto... pixels) { applySolarise({red, green, blue, above}, pixels...); }, limitToRegion);
}

bool EffectEngine::colourise(int red, int green, int blue, bool limitToRegion) {
    return run([&](auto... pixels) { applyColourise({red, green, blue}, pixels...); }, limitToRegion);
}

bool EffectEngine::brightness(bool limitToRegion, int amount) {
    return run([&](auto... pixels) { applyBrightness({amount}, pixels...); }, limitToRegion);
}

bool EffectEngine::contrast(bool limitToRegion, int amount) {
    return run([&](auto... pixels) { applyContrast({amount}, pixels...); }, limitToRegion);
}

bool EffectEngine::saturation(bool limitToRegion, int amount) {
    return run([&](auto... pixels) { applySaturation({amount}, pixels...); }, limitToRegion);
}

bool EffectEngine::mosaic(int tileWidth, int tileHeight, bool limitToRegion) {
    return run([&](auto... pixels) { applyMosaic({tileWidth, tileHeight}, pixels..., isOpaque()); }, limitToRegion);
}

bool EffectEngine::highPassSharpen(int strength, bool limitToRegion) {
    return run([&](auto... pixels) { return applyHighPassSharpen({strength}, pixels..., isOpaque()); }, limitToRegion);
}

bool EffectEngine::sharpen(bool limitToRegion) {
    return run([&](auto... pixels) { return applySharpen(pixels..., isOpaque()); }, limitToRegion);
}

bool EffectEngine::colourEmboss(int depth, bool limitToRegion) {
    return run([&](auto... pixels) { return applyColourEmboss({depth}, pixels..., isOpaque()); }, limitToRegion);
}

bool EffectEngine::convolve(const std::array<float, 9> &coefficients, int offset, bool limitToRegion) {
    return run(
        [&](auto... pixels) {
            return applyConvolution({coefficients, offset}, pixels..., isOpaque());
        },
        limitToRegion);
}

bool EffectEngine::texture(int fade, int layout, bool limitToRegion) {
    const ConstPixelView texture = readView(m_texture);
    return layout == 0 && !texture.isEmpty() &&
           run(
               [&](auto... pixels) {
                   applyTexture({texture, fade}, pixels...);
               },
               limitToRegion);
}

bool EffectEngine::tile(int tileWidth, int tileHeight) {
    return run([&](auto... pixels) { applyTile({tileWidth, tileHeight}, pixels...); }, false);
}

bool EffectEngine::reflection(int style) {
    return run([&](auto... pixels) { return applyReflection(style, pixels...); }, false);
}

bool EffectEngine::perspective(int angle, int red, int green, int blue) {
    return run(
        [&](auto... pixels) {
            return applyPerspective({angle, red, green, blue}, pixels..., isOpaque());
        },
        false);
}

bool EffectEngine::oilPainting(int brush, bool limitToRegion) {
    return run([&](auto... pixels) { return applyOilPainting({brush}, pixels..., isOpaque()); }, limitToRegion);
}

bool EffectEngine::blur(int amount, bool limitToRegion) {
    return run([&](auto... pixels) { return applyBlur({amount}, pixels..., isOpaque()); }, limitToRegion);
}

bool EffectEngine::colourFocus(int red, int green, int blue, int tolerance, bool limitToRegion) {
    return run([&](auto... pixels) { applyColourFocus({red, green, blue, tolerance}, pixels...); }, limitToRegion);
}

bool EffectEngine::quarterTurn(bool clockwise) {
    return take(clockwise ? quarterTurnedClockwise(m_picture) : quarterTurnedAnticlockwise(m_picture));
}

bool EffectEngine::flip() {
    return take(flippedVertically(m_picture));
}

bool EffectEngine::frameOverlay(bool limitToRegion) {
    QImage result = framed(m_picture, m_overlay);
    if (!result.isNull() && limitToRegion && m_shape != Shape::None) {
        copyOutside(readView(m_picture), writeView(result), currentRegion());
    }
    return take(result);
}

bool EffectEngine::popArtRow(const PopArtPairs &pairs) {
    return take(lumora::popArtRow(m_picture, pairs));
}

} // namespace lumora
