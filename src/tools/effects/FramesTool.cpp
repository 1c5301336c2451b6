#include "tools/effects/FramesTool.h"

namespace lumora {

FramesTool::FramesTool(AppContext &ctx, FloatingToolbar *FT5, QObject *parent)
    : EffectTool(ctx, parent), m_frames(ctx, FT5) {}

bool FramesTool::open(const QString &key) {
    tell(m_frames.pick(key) ? EffectOutcome::Done : EffectOutcome::Refused);
    return false;
}

} // namespace lumora
