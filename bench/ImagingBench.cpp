// Rows for what EffectEngine and Scale.h offer.
#include "BenchPicture.h"
#include "BenchRows.h"

#include "imaging/EffectEngine.h"
#include "imaging/Scale.h"

#include <cstdlib>

namespace lumora {

namespace {

void addEffect(const char *name, bool (*effect)(EffectEngine &engine)) {
    addRows(name, [effect](const QImage &picture) {
        EffectEngine engine;
        engine.setPicture(picture);
        if (!effect(engine)) {
            std::abort();
        }
        benchmark::DoNotOptimize(engine.picture().constBits());
    });
}

} // namespace

void addImagingRows() {
    addEffect("BlackAndWhite", [](EffectEngine &engine) { return engine.blackAndWhite(127, false); });
    addEffect("Greyscale", [](EffectEngine &engine) { return engine.greyscale(0, false); });
    addEffect("Sepia", [](EffectEngine &engine) { return engine.sepia(false); });
    addEffect("Invert", [](EffectEngine &engine) { return engine.invert(true, true, true, false); });
    addEffect("Solarise", [](EffectEngine &engine) { return engine.solarise(180, 180, 180, true, false); });
    addEffect("Colourise", [](EffectEngine &engine) { return engine.colourise(255, 0, 0, false); });
    addEffect("Brightness", [](EffectEngine &engine) { return engine.brightness(false, 50); });
    addEffect("Contrast", [](EffectEngine &engine) { return engine.contrast(false, 50); });
    addEffect("Saturation", [](EffectEngine &engine) { return engine.saturation(false, 50); });
    addEffect("Convolution", [](EffectEngine &engine) {
        return engine.convolve({1, 1, 1, 1, -7, 1, 1, 1, 1}, 0, false);
    });
    addEffect("ColourEmboss", [](EffectEngine &engine) { return engine.colourEmboss(1, false); });
    addEffect("HighPassSharpen", [](EffectEngine &engine) { return engine.highPassSharpen(0, false); });
    addEffect("Sharpen", [](EffectEngine &engine) { return engine.sharpen(false); });
    addEffect("Texture", [](EffectEngine &engine) {
        engine.setTexture(benchPicture(1).copy(0, 0, 256, 256));
        return engine.texture(0, 0, false);
    });
    addEffect("Tile", [](EffectEngine &engine) {
        return engine.tile(engine.picture().width() / 5, engine.picture().height() / 5);
    });
    addEffect("ReflectionTable", [](EffectEngine &engine) { return engine.reflection(1); });
    addEffect("ReflectionWater", [](EffectEngine &engine) { return engine.reflection(2); });
    addEffect("ReflectionBeside", [](EffectEngine &engine) { return engine.reflection(3); });
    addEffect("ReflectionFourWays", [](EffectEngine &engine) { return engine.reflection(4); });
    addEffect("PopArtRow", [](EffectEngine &engine) { return engine.popArtRow({}); });
    addEffect("Perspective", [](EffectEngine &engine) { return engine.perspective(-30, 255, 255, 255); });
    addEffect("OilPaintingRadius3", [](EffectEngine &engine) { return engine.oilPainting(3, false); });
    addEffect("OilPaintingRadius30", [](EffectEngine &engine) { return engine.oilPainting(30, false); });
    addEffect("Mosaic", [](EffectEngine &engine) { return engine.mosaic(10, 10, false); });
    addEffect("BlurRadius3", [](EffectEngine &engine) { return engine.blur(3, false); });
    addEffect("BlurRadius30", [](EffectEngine &engine) { return engine.blur(30, false); });
    addRows("ScaleTo480", [](const QImage &picture) {
        const QSize size = picture.size().scaled(480, 480, Qt::KeepAspectRatio);
        benchmark::DoNotOptimize(scaleByAveraging(picture, size.width(), size.height()).constBits());
    });
    addRows("HalfSize", [](const QImage &picture) { benchmark::DoNotOptimize(boxReduced(picture, 2).constBits()); });
    addRows("SixteenthSize",
            [](const QImage &picture) { benchmark::DoNotOptimize(boxReduced(picture, 16).constBits()); });
}

} // namespace lumora
