#include "window/FloatingBars.h"

namespace lumora {

namespace {

const FloatingBarRow bars[] = {
    {"FT1", "cmdTool2", 64, 8130, true},    {"FT2", "cmdTool5", 96, 11400, false}, {"FT3", "cmdTool8", 120, 0, false},
    {"FT4", "cmdTool10", 96, 18300, false}, {"FT5", "cmdTool7", 120, 0, false},    {"FT6", "cmdTool9", 120, 0, false},
};

const FloatingItemRow items[] = {
    {"FT1", "keySqr", "tool2-rectangle"},
    {"FT1", "keyCircle", "tool2-ellipse"},
    {"FT1", "keyLasso", "tool2-lasso"},
    {"FT2", "keyRotate1", "rotate1"},
    {"FT2", "keyRotate2", "rotate2"},
    {"FT2", "keyRotate3", "rotate3"},
    {"FT2", "keyRotate4", "rotate4"},
    {"FT3", "keyBW", "tool8"},
    {"FT3", "keyGS", "tool8"},
    {"FT3", "keySepia", "tool8"},
    {"FT3", "keyInvert", "tool8"},
    {"FT4", "keySFX1", "tool10"},
    {"FT4", "keySFX2", "tool10"},
    {"FT4", "keySFX3", "tool10"},
    {"FT4", "keySFX4", "tool10"},
    {"FT4", "keySFX5", "tool10"},
    {"FT4", "keySFX6", "tool10"},
    {"FT4", "keySFX7", "tool10"},
    {"FT4", "keySFX8", "tool10"},
    {"FT4", "keySFX9", "tool10"},
    {"FT4", "keySFX10", "tool10"},
    {"FT4", "keySFX11", "tool10"},
    {"FT4", "keySFX12", "tool10"},
    {"FT5", "keyFrame1", "tool7"},
    {"FT5", "keyFrame2", "tool7"},
    {"FT5", "keyFrame3", "tool7"},
    {"FT5", "keyFrame4", "tool7"},
    {"FT5", "keyFrame5", "tool7"},
    {"FT5", "keyFrame6", "tool7"},
    {"FT5", "keyFrame7", "tool7"},
    {"FT5", "keyFrame8", "tool7"},
    {"FT6", "keyBrightness", "brightness"},
    {"FT6", "keyContrast", "contrast"},
    {"FT6", "keySaturation", "saturation"},
};

} // namespace

std::span<const FloatingBarRow> floatingBars() {
    return bars;
}

std::span<const FloatingItemRow> floatingItems() {
    return items;
}

} // namespace lumora
