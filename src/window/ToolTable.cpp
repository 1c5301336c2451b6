#include "window/ToolTable.h"

namespace lumora {

namespace {

constexpr int firstTop = 60;
constexpr int pitch = 790;

const ToolRow rows[] = {
    {"cmdTool1", "tool1", firstTop, true, false},
    {"cmdTool2", "tool2", firstTop + pitch, true, false},
    {"cmdTool3", "tool3", hiddenInSimple, true, false},
    {"cmdTool4", "tool4", 1650, true, false},
    {"cmdTool5", "tool5", 2440, true, false},
    {"cmdTool6", "tool6", hiddenInSimple, true, false},
    {"cmdTool7", "tool7", 3240, true, false},
    {"cmdTool8", "tool8", 3240, true, false},
    {"cmdTool9", "tool9", hiddenInSimple, true, false},
    {"cmdTool10", "tool10", 4040, true, false},
    {"cmdTool11", "tool11", hiddenInSimple, true, false},
    {"cmdCropCut", "cropcut", 4840, true, true},
};

} // namespace

std::span<const ToolRow> toolTable() {
    return rows;
}

int advancedTop(int index) {
    return firstTop + index * pitch;
}

} // namespace lumora
