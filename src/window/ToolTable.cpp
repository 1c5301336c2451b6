#include "window/ToolTable.h"

#include "tools/adjust/AdjustTool.h"
#include "tools/colour-focus/ColourFocusTool.h"
#include "tools/crop/CropTool.h"
#include "tools/cut-out/CutOutTool.h"
#include "tools/effects/BasicEffectsTool.h"
#include "tools/effects/FramesTool.h"
#include "tools/effects/SpecialEffectsTool.h"
#include "tools/pop-art/PopArtTool.h"
#include "tools/red-eye/RedEyeTool.h"
#include "tools/resize/ResizeTool.h"
#include "tools/rotate/RotateTool.h"
#include "tools/select/SelectionTool.h"
#include "tools/stickers/StickersTool.h"

namespace lumora {

namespace {

constexpr int firstTop = 60; // twips

using Place = ToolPlace;

/// Makes a tool that needs only the photo, the mouse and a window for its panel.
template <typename Tool> EditorTool *make(const Place &p) {
    return new Tool(p.ctx, p.view, p.mouse, p.window);
}

EditorTool *makeSelection(const Place &p) {
    return new SelectionTool(p.ctx, p.mouse, p.outline, p.window);
}

EditorTool *makeRotate(const Place &p) {
    return new RotateTool(p.ctx, p.view, p.mouse, p.bar, p.window);
}

EditorTool *makeFrames(const Place &p) {
    return new FramesTool(p.ctx, p.bar, p.window);
}

EditorTool *makeBasicEffects(const Place &p) {
    return new BasicEffectsTool(p.ctx, p.window);
}

EditorTool *makeAdjust(const Place &p) {
    return new AdjustTool(p.ctx, p.view, p.mouse, p.bar, p.window);
}

EditorTool *makeSpecialEffects(const Place &p) {
    return new SpecialEffectsTool(p.ctx, p.view, p.bar, p.window);
}

EditorTool *makeCutOut(const Place &p) {
    return new CutOutTool(p.ctx, p.view, p.mouse, p.outline, p.window);
}

const ToolRow rows[] = {
    {"cmdTool1", "tool1", firstTop, nullptr},
    {.control = "cmdTool2",
     .iconName = "tool2",
     .simpleTop = firstTop + toolPitch,
     .make = makeSelection,
     .marks = true},
    {"cmdTool3", "tool3", hiddenInSimple, make<CropTool>},
    {"cmdTool4", "tool4", 1650, make<ResizeTool>},
    {.control = "cmdTool5", .iconName = "tool5", .simpleTop = 2440, .make = makeRotate, .picturesTurn = 2},
    {"cmdTool6", "tool6", hiddenInSimple, make<RedEyeTool>},
    {.control = "cmdTool7", .iconName = "tool7", .simpleTop = 3240, .make = makeFrames, .picturesTurn = 4},
    {"cmdTool8", "tool8", 3240, makeBasicEffects},
    {.control = "cmdTool9", .iconName = "tool9", .simpleTop = hiddenInSimple, .make = makeAdjust, .picturesTurn = 3},
    {"cmdTool10", "tool10", 4040, makeSpecialEffects},
    {.control = "cmdTool11",
     .iconName = "tool11",
     .simpleTop = hiddenInSimple,
     .make = make<ColourFocusTool>,
     .picturesTurn = 1},
    {.control = "cmdCropCut",
     .iconName = "cropcut",
     .simpleTop = 4840,
     .make = makeCutOut,
     .hiddenFromLauncher = true,
     .whiteWhenHovered = true},
    {"popArt", nullptr, hiddenInSimple, make<PopArtTool>},
    {.control = "stickers",
     .iconName = nullptr,
     .simpleTop = hiddenInSimple,
     .make = make<StickersTool>,
     .aloneIcon = "stickers",
     .aloneName = "Stickers"},
};

} // namespace

std::span<const ToolRow> toolTable() {
    return rows;
}

int advancedTop(int index) {
    return firstTop + index * toolPitch;
}

} // namespace lumora
