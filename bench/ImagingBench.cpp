// Rows for what EffectEngine and Scale.h offer.
#include "BenchPicture.h"
#include "BenchRows.h"

#include "imaging/EffectEngine.h"
#include "imaging/Picture.h"
#include "imaging/Scale.h"
#include "imaging/effects/BlackAndWhite.h"
#include "imaging/effects/Blur.h"
#include "imaging/effects/Brightness.h"
#include "imaging/effects/ColourEmboss.h"
#include "imaging/effects/Colourise.h"
#include "imaging/effects/Contrast.h"
#include "imaging/effects/Enhance.h"
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
#include "imaging/transforms/PopArtRow.h"

#include <cstdlib>
#include <string>

namespace lumora {

namespace {

void addEffect(const char *name, const Operation &effect) {
    addRows(name, [effect](const QImage &picture) {
        EffectEngine engine;
        engine.setPicture(picture);
        if (!engine.apply(effect, false)) {
            std::abort();
        }
        benchmark::DoNotOptimize(engine.picture().constBits());
    });
}

} // namespace

void addImagingRows() {
    addEffect("BlackAndWhite", {applyBlackAndWhite, {127}});
    addEffect("Greyscale", {applyGreyscale, {}});
    addEffect("Sepia", {applySepia, {}});
    addEffect("Invert", {applyInvert, {true, true, true}});
    addEffect("Solarise", {applySolarise, {180, 180, 180, true}});
    addEffect("Colourise", {applyColourise, {255, 0, 0}});
    addEffect("Brightness", {applyBrightness, {50}});
    addEffect("Contrast", {applyContrast, {50}});
    addEffect("Saturation", {applySaturation, {50}});
    addEffect("Enhance", {applyEnhance, {50}});
    addEffect("Convolution", {applyConvolution, {{1, 1, 1, 1, -7, 1, 1, 1, 1}}});
    addEffect("ColourEmboss", {applyColourEmboss, {1}});
    addEffect("HighPassSharpen", {applyHighPassSharpen, {0}});
    addEffect("Sharpen", {applySharpen, {}});
    addEffect("Texture", {applyTexture, {6, 0}});
    addEffect("Tile", {applyTile, {5, 5}});
    addEffect("ReflectionTable", {applyReflection, {1}});
    addEffect("ReflectionWater", {applyReflection, {2}});
    addEffect("ReflectionBeside", {applyReflection, {3}});
    addEffect("ReflectionFourWays", {applyReflection, {4}});
    addEffect("PopArtRow", {popArtRow, {}});
    addEffect("Perspective", {applyPerspective, {-30, 255, 255, 255}});
    addEffect("OilPaintingRadius6", {applyOilPainting, {6}});
    addEffect("OilPaintingRadius12", {applyOilPainting, {12, 12}}); // the finest of the slider at 24 megapixels
    addEffect("OilPaintingRadius180", {applyOilPainting, {180}});
    addEffect("Mosaic", {applyMosaic, {10, 10}});
    addEffect("BlurRadius3", {applyBlur, {3}});
    addEffect("BlurRadius30", {applyBlur, {30}});
    // Effects that work in units of several pixels; a row's aim is at most twice that of the one without the number.
    for (const int unit : {4, 6}) {
        const double u = unit;
        const auto add = [&](const std::string &name, const Operation &effect) {
            addEffect((name + "Unit" + std::to_string(unit)).c_str(), effect);
        };
        add("Convolution", {applyConvolution, {{1, 1, 1, 1, -7, 1, 1, 1, 1}, 0, u}});
        add("ColourEmboss", {applyColourEmboss, {1, u}});
        add("HighPassSharpen", {applyHighPassSharpen, {0, u}});
        add("Sharpen", {applySharpen, {u}});
        add("Texture", {applyTexture, {u, 0}});
        add("Tile", {applyTile, {5, 5, u}});
        add("OilPainting", {applyOilPainting, {6 * u, u}});
        add("Mosaic", {applyMosaic, {10 * u, 10 * u}});
        add("Blur", {applyBlur, {6 * u}});
    }
    addRows("ScaleTo480", [](const QImage &picture) {
        const QSize size = picture.size().scaled(480, 480, Qt::KeepAspectRatio);
        benchmark::DoNotOptimize(scaleByAveraging(picture, size.width(), size.height()).constBits());
    });
    addRows("HalfSize", [](const QImage &picture) { benchmark::DoNotOptimize(boxReduced(picture, 2).constBits()); });
    addRows("SixteenthSize",
            [](const QImage &picture) { benchmark::DoNotOptimize(boxReduced(picture, 16).constBits()); });
}

} // namespace lumora
