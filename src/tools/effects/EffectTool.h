// What the tools of effects and frames have in common: what follows when one has been run.
#pragma once

#include "effects/SelectionFlow.h"
#include "tools/EditorTool.h"

namespace lumora {

class EffectTool : public EditorTool {
    Q_OBJECT

  protected:
    EffectTool(AppContext &ctx, QObject *parent) : EditorTool(parent), m_ctx(ctx) {}

    /// Says that memory was refused, and lets the Arrow tool follow unless a selection tool waits for a part of the
    /// photo to be marked or the tool's panel is up.
    void tell(EffectOutcome outcome);

    AppContext &m_ctx;
};

} // namespace lumora
