#include "window/PointedEffect.h"

#include "effects/EffectTable.h"
#include "session/AppContext.h"
#include "window/FloatingBars.h"

#include <algorithm>

namespace lumora {

PointedEffect::PointedEffect(AppContext &ctx, PhotoView &view, QObject *parent)
    : QObject(parent), m_ctx(ctx), m_live(ctx, view) {}

void PointedEffect::show(const QString &control, const QString &key) {
    const auto bars = floatingBars();
    const auto bar = std::ranges::find_if(bars, [&](const FloatingBarRow &row) { return control == row.tool; });
    const Effect *effect = bar != bars.end() && bar->effects ? findEffect(*bar->effects, key) : nullptr;
    if (effect == nullptr || !m_ctx.photo.PhotoLoaded()) {
        clear();
        return;
    }
    const double unit = effectUnit(m_ctx.photo.picCanvas().size());
    m_live.show(
        {.operation = [effect, unit](int factor) { return operationOf(*effect, false, effect->basic, unit / factor); },
         .wholePhoto = effect->wholePhoto,
         .coarsest = effect->coarsestLive > 0 ? effect->coarsestLive * unit : 16});
}

void PointedEffect::clear() {
    if (m_live.isShown()) { // else the preview on the photo is a panel's
        m_live.clear();
    }
}

} // namespace lumora
