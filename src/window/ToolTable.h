// The tool column: one row a button, in the order in which they stand.
#pragma once

#include <span>

namespace lumora {

/// One button of the tool column.
struct ToolRow {
    const char *control;     ///< object name of the button
    const char *iconName;    ///< its picture, see resources/icons
    int simpleTop;           ///< top edge in twips in Simple mode; hiddenInSimple where the mode has no such tool
    bool built;              ///< a tool without behaviour stands disabled
    bool hiddenFromLauncher; ///< hidden too when Simple mode is chosen in the launcher
};

inline constexpr int hiddenInSimple = -1;

/// All twelve: cmdTool1 to cmdTool11 and cmdCropCut.
std::span<const ToolRow> toolTable();

/// Top edge of row `index` (from 0) in Advanced mode, in twips: twelve rows fill the column of a 768-pixel screen.
int advancedTop(int index);

} // namespace lumora
