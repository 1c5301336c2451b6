// Runs the basic effects: black and white, greyscale, sepia, invert. The main window's list FT3 calls them.
#pragma once

#include "effects/SelectionFlow.h"

#include <QString>

namespace lumora {

struct AppContext;

class BasicEffects {
  public:
    explicit BasicEffects(AppContext &ctx) : m_ctx(ctx), m_flow(ctx) {}

    const SelectionFlow &flow() const { return m_flow; }

    /// Applies the effect of that FT3 key to what is marked, or to the whole photo, as one undo step. Nothing happens
    /// without a photo or for an unknown key. When the engine fails (no memory) the photo keeps its pixels.
    EffectOutcome apply(const QString &key);

  private:
    AppContext &m_ctx;
    SelectionFlow m_flow;
};

} // namespace lumora
