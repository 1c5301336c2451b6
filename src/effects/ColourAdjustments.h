// Brightness, contrast and saturation as operations of the engine: what the adjusting tool hands to SelectionFlow.
#pragma once

#include "imaging/EffectEngine.h"

#include <span>

namespace lumora {

/// What the adjustments add through a lasso in Simple mode, whatever their slider says.
inline constexpr int simpleLassoAmount = 50;

/// One adjustment.
struct ColourAdjustment {
    const char *key; ///< its item in FT6
    bool (EffectEngine::*apply)(bool limitToRegion, int amount);
};

std::span<const ColourAdjustment> colourAdjustments();

} // namespace lumora
