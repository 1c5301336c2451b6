#include "effects/EffectTable.h"

#include "effects/PerspectiveBox.h"
#include "effects/ReflectionBox.h"
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

#include <algorithm>

namespace lumora {

namespace {

using Values = EffectValues;
using enum EffectGroup;

Operation tile(const Values &count, double unit) {
    return {applyTile, {count[0], count[1], unit}};
}

Operation tracing(const Values & /*none*/, double unit) {
    return {applyConvolution, {{1, 1, 1, 1, -7, 1, 1, 1, 1}, 0, unit}};
}

/// White is the table below the photo as long as no other colour was chosen: beside holes nothing is drawn then.
Operation perspective(const Values &v, double /*unit*/) {
    const bool isWhite = std::min({v[1], v[2], v[3]}) == 255;
    return {applyPerspective, {v[0], v[1], v[2], v[3], isWhite}};
}

template <typename Box> EffectBox *makeBox(const Effect &effect, QWidget *parent) {
    return new Box(effect, parent);
}

/// Groups one after the other, each from number 1.
const std::vector<Effect> &rows() {
    // clang-format off
    static const std::vector<Effect> table = {
        {.group = Basic, .number = 1, .name = "BW", .icon = "tool8",
         .operation = [](const Values &v, double) -> Operation { return {applyBlackAndWhite, {v[0]}}; },
         .basic = {127}},
        {.group = Basic, .number = 2, .name = "GS", .icon = "tool8",
         .operation = [](const Values &, double) -> Operation { return {applyGreyscale, {}}; }},
        {.group = Basic, .number = 3, .name = "Sepia", .icon = "tool8",
         .operation = [](const Values &, double) -> Operation { return {applySepia, {}}; }},
        {.group = Basic, .number = 4, .name = "Invert", .icon = "tool8",
         .operation = [](const Values &, double) -> Operation { return {applyInvert, {}}; }},
        {.group = Special, .number = 1, .name = "SFX1", .icon = "tool10",
         .operation = [](const Values &v, double) -> Operation { return {applySolarise, {v[0], v[1], v[2]}}; },
         .basic = {180, 180, 180},
         .advanced = {127, 127, 127},
         .sliders = {{"sldSFX1_1", "lblSolarR", 0, 255},
                     {"sldSFX1_2", "lblSolarG", 0, 255},
                     {"sldSFX1_3", "lblSolarB", 0, 255}}},
        {.group = Special, .number = 2, .name = "SFX2", .icon = "tool10",
         .operation = [](const Values &v, double) -> Operation { return {applyColourise, {v[0], v[1], v[2]}}; },
         .basic = {255, 0, 0},
         .advanced = {127, 127, 127},
         .sliders = {{"sldSFX2_1", "lblColouriseRed", 0, 255},
                     {"sldSFX2_2", "lblColouriseGreen", 0, 255},
                     {"sldSFX2_3", "lblColouriseBlue", 0, 255}}},
        {.group = Special, .number = 3, .name = "SFX3", .icon = "tool10",
         .operation = [](const Values &, double unit) -> Operation { return {applyHighPassSharpen, {0, unit}}; },
         .sentence = "lblSharpen",
         .advancedOperation = [](const Values &, double unit) -> Operation { return {applySharpen, {unit}}; },
         .iconCopy = 155,
         .coarsestLive = 1},
        {.group = Special, .number = 4, .name = "SFX4", .icon = "tool10",
         .operation = [](const Values &v, double unit) -> Operation { return {applyMosaic, {v[0] * unit, v[1] * unit}}; },
         .basic = {10, 10},
         .advanced = {15, 15},
         .sliders = {{"sldSFX4_1", "lblMosaicWidth", 1, 100}, {"sldSFX4_2", "lblMosaicHeight", 1, 100}}},
        {.group = Special, .number = 5, .name = "SFX5", .icon = "tool10",
         .operation = [](const Values &v, double unit) -> Operation { return {applyOilPainting, {v[0] * unit, unit}}; },
         .basic = {6},
         .advanced = {3},
         .sliders = {{"sldSFX5", "lblOil", 1, 30}}},
        {.group = Special, .number = 6, .name = "SFX6", .icon = "tool10",
         .operation = [](const Values &v, double unit) -> Operation { return {applyBlur, {v[0] * unit}}; },
         .basic = {6},
         .advanced = {5},
         .sliders = {{"sldSFX6_1", "lblBlur", 1, 100}}},
        {.group = Special, .number = 7, .name = "SFX7", .icon = "tool10",
         .operation = [](const Values &v, double unit) -> Operation { return {applyTexture, {unit, v[0]}}; },
         .basic = {0},
         .advanced = {50},
         .sliders = {{"sldSFX7", "lblTexture", 0, 100, true}}, // its value is how far the texture is faded
         .iconCopy = 96},
        {.group = Special, .number = 8, .name = "SFX8", .icon = "tool10",
         .operation = tile,
         .basic = {5, 5},
         .advanced = {10, 10},
         .sliders = {{"sldSFX8_1", "lblTilesAcross", 1, 50}, {"sldSFX8_2", "lblTilesDown", 1, 50}},
         .coarsestLive = .25, // joints are whole pixels
         .noZeros = true,
         .wholePhoto = true,
         .basicOutline = OutlineHidden::OnlyInvisibleAfter,
         .advancedOutline = OutlineHidden::Before},
        {.group = Special, .number = 9, .name = "SFX9", .icon = "tool10",
         .operation = [](const Values &, double unit) -> Operation { return {applyColourEmboss, {1, unit}}; },
         .sentence = "lbl3x3", // "No settings" is shown here, not in the box of the 3 x 3 kernel
         .iconCopy = 155,
         .coarsestLive = 1},
        {.group = Special, .number = 10, .name = "SFX10", .icon = "tool10",
         .operation = tracing,
         .sentence = "lblColourEmboss",
         .iconCopy = 155,
         .coarsestLive = 1},
        {.group = Special, .number = 11, .name = "SFX11", .icon = "tool10",
         .operation = perspective,
         .basic = {-30, 255, 255, 255},
         .advanced = {-30, 255, 255, 255},
         .makeBox = makeBox<PerspectiveBox>,
         .panelCaption = "Prespective",
         .wholePhoto = true,
         .basicOutline = OutlineHidden::After,
         .advancedOutline = OutlineHidden::Before},
        {.group = Special, .number = 12, .name = "SFX12", .icon = "tool10",
         .operation = [](const Values &v, double) -> Operation { return {applyReflection, {v[0]}}; },
         .basic = {1},
         .advanced = {1},
         .makeBox = makeBox<ReflectionBox>,
         .wholePhoto = true,
         .basicOutline = OutlineHidden::After,
         .advancedOutline = OutlineHidden::After},
        {.group = Adjustment, .number = 1, .name = "Brightness", .icon = "brightness",
         .operation = [](const Values &v, double) -> Operation { return {applyBrightness, {v[0]}}; },
         .basic = {50},
         .advanced = {0},
         .sliders = {{"sldSFX9_1", "", -100, 100}}},
        {.group = Adjustment, .number = 2, .name = "Contrast", .icon = "contrast",
         .operation = [](const Values &v, double) -> Operation { return {applyContrast, {v[0]}}; },
         .basic = {50},
         .advanced = {0},
         .sliders = {{"sldSFX9_2", "", -100, 100}}},
        {.group = Adjustment, .number = 3, .name = "Saturation", .icon = "saturation",
         .operation = [](const Values &v, double) -> Operation { return {applySaturation, {v[0]}}; },
         .basic = {50},
         .advanced = {0},
         .sliders = {{"sldSFX9_3", "", -100, 100}}},
        {.group = Adjustment, .number = 4, .name = "Enhance", .icon = "enhance",
         .operation = [](const Values &v, double) -> Operation { return {applyEnhance, {v[0]}}; },
         .basic = {50},
         .advanced = {50},
         .sliders = {{"sldSFX9_4", "", 0, 100}},
         .showsIcon = true},
    };
    // clang-format on
    return table;
}

} // namespace

std::span<const Effect> effects(EffectGroup group) {
    return {std::ranges::lower_bound(rows(), group, {}, &Effect::group),
            std::ranges::upper_bound(rows(), group, {}, &Effect::group)};
}

const Effect *findEffect(EffectGroup group, int number) {
    const auto all = effects(group);
    const auto row = std::ranges::find(all, number, &Effect::number);
    return row == all.end() ? nullptr : &*row;
}

const Effect *findEffect(EffectGroup group, const QString &key) {
    const auto all = effects(group);
    const auto row = std::ranges::find(all, key, &Effect::key);
    return row == all.end() ? nullptr : &*row;
}

double effectUnit(const QSize &photo) {
    constexpr double reference = 500; // pixels
    return std::max(1.0, std::max(photo.width(), photo.height()) / reference);
}

Operation operationOf(const Effect &effect, bool advanced, const EffectValues &values, double unit) {
    const bool other = advanced && effect.advancedOperation != nullptr;
    return (other ? effect.advancedOperation : effect.operation)(values, unit);
}

bool canRun(const Effect &effect, const EffectValues &values) {
    return !effect.noZeros || std::ranges::find(values, 0) == values.end();
}

} // namespace lumora
