#include "effects/ColourAdjustments.h"

namespace lumora {

namespace {

const ColourAdjustment rows[] = {
    {"keyBrightness", &EffectEngine::brightness},
    {"keyContrast", &EffectEngine::contrast},
    {"keySaturation", &EffectEngine::saturation},
};

} // namespace

std::span<const ColourAdjustment> colourAdjustments() {
    return rows;
}

} // namespace lumora
