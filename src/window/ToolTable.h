// The tools: one row each, in the order of their buttons in the column.
#pragma once

#include <span>

namespace lumora {

class EditorTool;
struct ToolPlace;

struct ToolRow {
    const char *control;                         ///< object name of its button, or what starts a tool without one
    const char *iconName;                        ///< the button's picture, see resources/icons; null without a button
    int simpleTop;                               ///< top edge in twips in Simple mode, or hiddenInSimple
    EditorTool *(*make)(const ToolPlace &place); ///< null for the Arrow tool, which is the absence of any other

    bool hiddenFromLauncher = false; ///< hidden too when Simple mode is chosen in the launcher
    bool whiteWhenHovered = false;   ///< the button's hover colour is white
    bool marks = false;              ///< the tip for a missing selection points at its button
    const char *aloneIcon = nullptr; ///< of a tool without a button that has the screen to itself: its picture
    const char *aloneName = nullptr; ///< and the identifier of its name
    int picturesTurn = 0;            ///< order in which its previews are made, after those of the effects; 0: never
};

inline constexpr int hiddenInSimple = -1;
inline constexpr int toolPitch = 790; ///< twips from one top edge to the next

/// cmdTool1, the Arrow tool, to cmdTool11, cmdCropCut, and the tools without a button.
std::span<const ToolRow> toolTable();

/// Top edge of row `index` (from 0) in Advanced mode, in twips: twelve rows fill the column of a 768-pixel screen.
int advancedTop(int index);

} // namespace lumora
