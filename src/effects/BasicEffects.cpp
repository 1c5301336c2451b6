#include "effects/BasicEffects.h"

#include "effects/EffectTable.h"
#include "session/AppContext.h"

namespace lumora {

EffectOutcome BasicEffects::apply(const QString &key) {
    const Effect *effect = findEffect(EffectGroup::Basic, key);
    if (effect == nullptr || m_ctx.photo.picCanvas().isNull()) {
        return EffectOutcome::Nothing;
    }
    return m_flow.apply(operationOf(*effect, false, effect->basic, effectUnit(m_ctx.photo.picCanvas().size())));
}

} // namespace lumora
