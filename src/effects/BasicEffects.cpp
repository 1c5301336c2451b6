#include "effects/BasicEffects.h"

#include "session/AppContext.h"

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

EffectOutcome BasicEffects::apply(const QString &key) {
    const auto effect = std::ranges::find_if(rows, [&](const BasicEffect &row) { return key == row.key; });
    if (effect == std::end(rows) || m_ctx.photo.picCanvas().isNull()) {
        return EffectOutcome::Nothing;
    }
    return m_flow.apply(effect->apply);
}

} // namespace lumora
