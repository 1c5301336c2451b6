#include "tools/effects/BasicEffectsTool.h"

namespace lumora {

BasicEffectsTool::BasicEffectsTool(AppContext &ctx, QObject *parent) : EffectTool(ctx, parent), m_effects(ctx) {
    connect(&m_effects.flow(), &SelectionFlow::tipWanted, this, &BasicEffectsTool::tipWanted);
}

bool BasicEffectsTool::open(const QString &key) {
    tell(m_effects.apply(key));
    return false;
}

} // namespace lumora
