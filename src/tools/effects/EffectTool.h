// What the tools of effects and frames have in common: the steps after one has been run.
#pragma once

#include "effects/SelectionFlow.h"
#include "tools/EditorTool.h"

namespace lumora {

class EffectTool : public EditorTool {
    Q_OBJECT

  protected:
    EffectTool(AppContext &ctx, QObject *parent) : EditorTool(parent), m_ctx(ctx) {}

    /// Reports a failed memory allocation, and activates the Arrow tool unless a selection tool is waiting for a
    /// selection or the tool's panel is open.
    void tell(EffectOutcome outcome);

    AppContext &m_ctx;
};

} // namespace lumora
