#include "tools/effects/EffectTool.h"

#include "session/AppContext.h"
#include "widgets/SlidingPanel.h"

namespace lumora {

void EffectTool::tell(EffectOutcome outcome) {
    if (isFailure(outcome)) {
        Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false);
    }
    if (!m_ctx.flags.SelectionActive() && (panel() == nullptr || !panel()->isOpen())) {
        Q_EMIT finished();
    }
}

} // namespace lumora
