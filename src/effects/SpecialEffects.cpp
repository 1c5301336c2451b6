#include "effects/SpecialEffects.h"

#include "session/AppContext.h"

namespace lumora {

SpecialEffects::SpecialEffects(AppContext &ctx, QObject *parent) : QObject(parent), m_ctx(ctx), m_flow(ctx) {
    restoreAdvancedValues();
}

void SpecialEffects::setAdvancedValue(int n, int index, int value) {
    m_advanced.at(n).at(static_cast<size_t>(index)) = value;
}

void SpecialEffects::restoreAdvancedValues() {
    for (const Effect &effect : effects(EffectGroup::Special)) {
        m_advanced[effect.number] = effect.advanced;
    }
}

EffectOutcome SpecialEffects::ApplyBasicSFX(int n) {
    return run(n, false);
}

EffectOutcome SpecialEffects::ApplyAdvancedSFX(int n) {
    return run(n, true);
}

EffectOutcome SpecialEffects::run(int n, bool advanced) {
    const Effect *effect = findEffect(EffectGroup::Special, n);
    if (effect == nullptr) {
        return EffectOutcome::Nothing;
    }
    const EffectValues values = advanced ? advancedValues(n) : effect->basic;
    if (effect->wholePhoto) {
        return runOnWholePhoto(*effect, advanced, values);
    }
    const double unit = effectUnit(m_ctx.photo.picCanvas().size());
    return m_flow.apply(operationOf(*effect, advanced, values, unit), operationOf(*effect, false, values, unit));
}

EffectOutcome SpecialEffects::runOnWholePhoto(const Effect &effect, bool advanced, const EffectValues &values) {
    if (m_ctx.photo.picCanvas().isNull()) {
        return EffectOutcome::Nothing;
    }
    const OutlineHidden outline = advanced ? effect.advancedOutline : effect.basicOutline;
    if (outline == OutlineHidden::Before) {
        m_flow.hideSelection();
    }
    if (!canRun(effect, values)) {
        return EffectOutcome::Nothing;
    }
    const double unit = effectUnit(m_ctx.photo.picCanvas().size());
    const EffectOutcome done = m_flow.applyToWholePhoto(operationOf(effect, advanced, values, unit));
    if (outline == OutlineHidden::After) {
        m_flow.hideSelection();
    } else if (outline == OutlineHidden::OnlyInvisibleAfter) {
        PhotoSelection selection = m_ctx.photo.selection();
        selection.setVisible(false);
        m_ctx.photo.setSelection(selection);
    }
    return done;
}

} // namespace lumora
