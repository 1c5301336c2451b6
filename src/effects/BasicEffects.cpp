#include "effects/BasicEffects.h"

#include "app/settings/AppContext.h"
#include "imaging/Scale.h"

#include <algorithm>

namespace lumora {

namespace {

constexpr int blackAndWhiteThreshold = 127; // the middle of 0 to 255
constexpr int greyscaleByLuma = 0;

const BasicEffect rows[] = {
    {"keyBW", "tool8",
     [](EffectEngine &engine, bool region) { return engine.blackAndWhite(blackAndWhiteThreshold, region); }},
    {"keyGS", "tool8", [](EffectEngine &engine, bool region) { return engine.greyscale(greyscaleByLuma, region); }},
    {"keySepia", "tool8", [](EffectEngine &engine, bool region) { return engine.sepia(region); }},
    {"keyInvert", "tool8", [](EffectEngine &engine, bool region) { return engine.invert(true, true, true, region); }},
};

} // namespace

std::span<const BasicEffect> basicEffects() {
    return rows;
}

bool BasicEffects::apply(const QString &key) {
    const auto effect = std::ranges::find_if(rows, [&](const BasicEffect &row) { return key == row.key; });
    if (effect == std::end(rows) || m_ctx.photo.picCanvas().isNull()) {
        return true;
    }
    m_ctx.flags.EffectChosen = true;
    m_ctx.flags.RDMode = false;
    return m_flow.apply(effect->apply) != EffectOutcome::Refused;
}

QImage BasicEffects::preview(const BasicEffect &effect, int longerSide) const {
    const QImage &source = m_ctx.photo.pic2nd();
    if (source.isNull()) {
        return {};
    }
    const QSize size = source.size().scaled(longerSide, longerSide, Qt::KeepAspectRatio).expandedTo({1, 1});
    EffectEngine engine;
    engine.setPicture(
        scaleByAveraging(source, std::min(size.width(), source.width()), std::min(size.height(), source.height())));
    return effect.apply(engine, false) ? engine.picture() : QImage();
}

} // namespace lumora
