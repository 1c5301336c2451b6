#include "effects/SpecialEffects.h"

#include "imaging/PictureFile.h"
#include "imaging/Scale.h"
#include "session/AppContext.h"

#include <QFile>
#include <algorithm>
#include <mutex>

namespace lumora {

namespace {

using Engine = EffectEngine;
using Values = EffectValues;

constexpr std::array<float, 9> tracingKernel{1, 1, 1, 1, -7, 1, 1, 1, 1};
constexpr int tiledTexture = 0;

bool solarise(Engine &engine, const Values &thresholds, bool region) {
    return engine.solarise(thresholds[0], thresholds[1], thresholds[2], true, region);
}

bool colourise(Engine &engine, const Values &colour, bool region) {
    return engine.colourise(colour[0], colour[1], colour[2], region);
}

bool highPass(Engine &engine, const Values &strength, bool region) {
    return engine.highPassSharpen(strength[0], region);
}

bool sharpen(Engine &engine, const Values &, bool region) {
    return engine.sharpen(region);
}

bool mosaic(Engine &engine, const Values &sides, bool region) {
    return engine.mosaic(sides[0], sides[1], region);
}

bool oilPainting(Engine &engine, const Values &brush, bool region) {
    return engine.oilPainting(brush[0], region);
}

bool blur(Engine &engine, const Values &amount, bool region) {
    return engine.blur(amount[0], region);
}

bool texture(Engine &engine, const Values &fade, bool region) {
    return engine.texture(fade[0], tiledTexture, region);
}

bool tile(Engine &engine, const Values &count, bool) {
    const QSize photo = engine.picture().size();
    return engine.tile(photo.width() / count[0], photo.height() / count[1]);
}

bool colourEmboss(Engine &engine, const Values &depth, bool region) {
    return engine.colourEmboss(depth[0], region);
}

bool tracing(Engine &engine, const Values &, bool region) {
    return engine.convolve(tracingKernel, 0, region);
}

bool perspective(Engine &engine, const Values &angleAndColour, bool) {
    return engine.perspective(angleAndColour[0], angleAndColour[1], angleAndColour[2], angleAndColour[3]);
}

bool reflection(Engine &engine, const Values &style, bool) {
    return engine.reflection(style[0]);
}

constexpr WholePhotoSteps hiddenAfter{OutlineHidden::After};

const SpecialEffect rows[] = {
    {1, "SFX1", {180, 180, 180}, {127, 127, 127}, solarise},
    {2, "SFX2", {255, 0, 0}, {127, 127, 127}, colourise},
    {.number = 3,
     .text = "SFX3",
     .basic = {0},
     .advanced = {0},
     .apply = highPass,
     .applyAdvanced = sharpen,
     .looksAtNeighbours = true},
    {.number = 4, .text = "SFX4", .basic = {10, 10}, .advanced = {15, 15}, .apply = mosaic, .valuesAreLengths = true},
    {.number = 5, .text = "SFX5", .basic = {6}, .advanced = {3}, .apply = oilPainting, .valuesAreLengths = true},
    {.number = 6, .text = "SFX6", .basic = {6}, .advanced = {5}, .apply = blur, .valuesAreLengths = true},
    {7, "SFX7", {0}, {50}, texture},
    {.number = 8,
     .text = "SFX8",
     .basic = {5, 5},
     .advanced = {10, 10},
     .apply = tile,
     .wholePhoto = true,
     .basicSteps = {OutlineHidden::OnlyInvisibleAfter},
     .advancedSteps = {OutlineHidden::Before, true}},
    {.number = 9, .text = "SFX9", .basic = {1}, .advanced = {1}, .apply = colourEmboss, .looksAtNeighbours = true},
    {.number = 10, .text = "SFX10", .basic = {}, .advanced = {}, .apply = tracing, .looksAtNeighbours = true},
    {.number = 11,
     .text = "SFX11",
     .basic = {-30, 255, 255, 255},
     .advanced = {-30, 255, 255, 255},
     .apply = perspective,
     .wholePhoto = true,
     .basicSteps = hiddenAfter,
     .advancedSteps = {OutlineHidden::Before}},
    {.number = 12,
     .text = "SFX12",
     .basic = {1},
     .advanced = {1},
     .apply = reflection,
     .wholePhoto = true,
     .basicSteps = hiddenAfter,
     .advancedSteps = hiddenAfter},
};

/// The texture for a photo at 1/factor of its size; null while memory for it is refused.
QImage picTexture(int factor) {
    static std::mutex one; // several threads paint previews
    static QImage picture;
    const std::scoped_lock lock(one);
    QFile file(":/textures/canvas.png");
    if (picture.isNull() && file.open(QIODevice::ReadOnly)) {
        picture = readPictureFromData(file.readAll()).picture;
    }
    return factor > 1 ? boxReduced(picture, factor) : picture;
}

/// cmdTool2 can be used again after these.
bool endsWithSelectionTool(int number) {
    return number == 6 || number == 10;
}

} // namespace

std::span<const SpecialEffect> specialEffects() {
    return rows;
}

const SpecialEffect *specialEffect(int number) {
    const auto row = std::ranges::find(rows, number, &SpecialEffect::number);
    return row == std::end(rows) ? nullptr : row;
}

bool runEffect(const SpecialEffect &effect, bool applyAdvanced, const EffectValues &values, EffectEngine &engine,
               bool limitToRegion, int factor) {
    if (effect.apply == texture) {
        engine.setTexture(picTexture(factor));
    }
    const bool other = applyAdvanced && effect.applyAdvanced != nullptr;
    const SpecialEffect::Operation apply = other ? effect.applyAdvanced : effect.apply;
    return apply(engine, valuesAtScale(effect, values, factor), limitToRegion);
}

EffectValues valuesAtScale(const SpecialEffect &effect, const EffectValues &values, int factor) {
    EffectValues scaled = values;
    if (effect.valuesAreLengths) {
        std::ranges::for_each(scaled, [factor](int &value) { value = qRound(double(value) / factor); });
    }
    return scaled;
}

bool canRun(const SpecialEffect &effect, const EffectValues &values) {
    return effect.apply != tile || (values[0] != 0 && values[1] != 0);
}

SpecialEffects::SpecialEffects(AppContext &ctx, QObject *parent) : QObject(parent), m_ctx(ctx), m_flow(ctx) {
    restoreAdvancedValues();
}

void SpecialEffects::setAdvancedValue(int n, int index, int value) {
    m_advanced.at(static_cast<size_t>(n - 1)).at(static_cast<size_t>(index)) = value;
}

void SpecialEffects::restoreAdvancedValues() {
    std::ranges::transform(rows, m_advanced.begin(), &SpecialEffect::advanced);
}

EffectOutcome SpecialEffects::ApplyBasicSFX(int n) {
    const SpecialEffect *effect = specialEffect(n);
    return effect == nullptr ? EffectOutcome::Nothing : run(*effect, false);
}

EffectOutcome SpecialEffects::ApplyAdvancedSFX(int n) {
    const SpecialEffect *effect = specialEffect(n);
    return effect == nullptr ? EffectOutcome::Nothing : run(*effect, true);
}

EffectOutcome SpecialEffects::run(const SpecialEffect &effect, bool advanced) {
    const EffectValues values = advanced ? advancedValues(effect.number) : effect.basic;
    const auto operation = [&effect, &values](bool applyAdvanced) -> EffectOperation {
        return [&effect, values, applyAdvanced](EffectEngine &engine, bool region) {
            return runEffect(effect, applyAdvanced, values, engine, region);
        };
    };
    if (effect.wholePhoto) {
        return runOnWholePhoto(effect, advanced, operation(advanced));
    }
    const EffectOutcome outcome = m_flow.apply(operation(advanced), operation(false));
    if (endsWithSelectionTool(effect.number) && outcome != EffectOutcome::NoRegion &&
        outcome != EffectOutcome::Stopped) {
        Q_EMIT selectionToolWanted();
    }
    return outcome;
}

EffectOutcome SpecialEffects::runOnWholePhoto(const SpecialEffect &effect, bool advanced,
                                              const EffectOperation &operation) {
    m_ctx.flags.SFXPanelOpening = m_ctx.flags.SFXPanelOpening || advanced;
    if (m_ctx.photo.picCanvas().isNull()) {
        return EffectOutcome::Nothing;
    }
    const WholePhotoSteps &steps = advanced ? effect.advancedSteps : effect.basicSteps;
    if (steps.outline == OutlineHidden::Before) {
        m_flow.hideSelection();
    }
    if (!canRun(effect, advanced ? advancedValues(effect.number) : effect.basic)) {
        return EffectOutcome::Nothing;
    }
    const EffectOutcome outcome = m_flow.applyToWholePhoto(operation, steps.dummyPicture);
    if (steps.outline == OutlineHidden::After) {
        m_flow.hideSelection();
    } else if (steps.outline == OutlineHidden::OnlyInvisibleAfter) {
        PhotoSelection selection = m_ctx.photo.selection();
        selection.setVisible(false);
        m_ctx.photo.setSelection(selection);
    }
    return outcome;
}

} // namespace lumora
