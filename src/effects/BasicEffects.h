// The four basic effects: black and white, greyscale, sepia, invert. The main window's list FT3 calls them.
#pragma once

#include "effects/SelectionFlow.h"

#include <QString>
#include <span>

namespace lumora {

struct AppContext;

/// One basic effect. Adding one is adding a row in BasicEffects.cpp.
struct BasicEffect {
    const char *key;      ///< its item in FT3
    const char *iconName; ///< shown while no photo is loaded
    bool (*apply)(EffectEngine &engine, bool limitToRegion);
};

std::span<const BasicEffect> basicEffects();

class BasicEffects {
  public:
    explicit BasicEffects(AppContext &ctx) : m_ctx(ctx), m_flow(ctx) {}

    const SelectionFlow &flow() const { return m_flow; }

    void ApplyBW() { apply("keyBW"); }
    void ApplyGS() { apply("keyGS"); }
    void ApplySepia() { apply("keySepia"); }
    void ApplyInvert() { apply("keyInvert"); }

    /// Applies the effect of that FT3 key to what is marked, or to the whole photo, as one undo step. Nothing happens
    /// without a photo or for an unknown key. Where the engine refuses (no memory) the photo keeps its pixels.
    EffectOutcome apply(const QString &key);

  private:
    AppContext &m_ctx;
    SelectionFlow m_flow;
};

} // namespace lumora
