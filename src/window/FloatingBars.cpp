#include "window/FloatingBars.h"

namespace lumora {

namespace {

const FloatingBarRow bars[] = {
    {"FT1", "cmdTool2", 64, 8130, true},
    {"FT2", "cmdTool5", 96, 11400, false},
    {"FT3", "cmdTool8", 120, 0, false, EffectGroup::Basic},
    {"FT4", "cmdTool10", 96, 18300, false, EffectGroup::Special},
    {"FT5", "cmdTool7", 120, 0, false},
    {"FT6", "cmdTool9", 120, 0, false, EffectGroup::Adjustment},
};

const FloatingItemRow ownItems[] = {
    {"FT1", "keySqr", "tool2-rectangle"}, {"FT1", "keyCircle", "tool2-ellipse"}, {"FT1", "keyLasso", "tool2-lasso"},
    {"FT2", "keyRotate1", "rotate1"},     {"FT2", "keyRotate2", "rotate2"},      {"FT2", "keyRotate5", "rotate5"},
    {"FT2", "keyRotate3", "rotate3"},     {"FT2", "keyRotate4", "rotate4"},      {"FT5", "keyFrame1", "tool7"},
    {"FT5", "keyFrame2", "tool7"},        {"FT5", "keyFrame3", "tool7"},         {"FT5", "keyFrame4", "tool7"},
    {"FT5", "keyFrame5", "tool7"},        {"FT5", "keyFrame6", "tool7"},         {"FT5", "keyFrame7", "tool7"},
    {"FT5", "keyFrame8", "tool7"},
};

std::vector<FloatingItemRow> allItems() {
    std::vector<FloatingItemRow> items(std::begin(ownItems), std::end(ownItems));
    for (const FloatingBarRow &row : bars) {
        if (row.effects) {
            for (const Effect &effect : effects(*row.effects)) {
                items.push_back({row.bar, effect.key(), effect.icon});
            }
        }
    }
    return items;
}

} // namespace

std::span<const FloatingBarRow> floatingBars() {
    return bars;
}

std::span<const FloatingItemRow> floatingItems() {
    static const std::vector<FloatingItemRow> items = allItems();
    return items;
}

} // namespace lumora
