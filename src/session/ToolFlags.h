// The flags that the tools share. Each line says who writes the flag and who reads it.
#pragma once

#include <QRect>

namespace lumora {

struct ToolFlags {
    bool SimpleModeOn = false;     ///< start-up and launcher write; everything that differs between the modes reads
    bool SelectionActive = false;  ///< the selection tools set it, every other tool clears it; effects read
    int SelectionKind = 0;         ///< 1 rectangle, 2 ellipse, 3 lasso; the selection tools write, effects read
    bool FreeResizeActive = false; ///< the resize tool sets it, other tools clear it; undo and redo read
    bool FreeRotateActive = false; ///< free rotation sets and clears it; checks of the tools read
    QRect ResizeFrame;            ///< picture pixels; the resize tool writes it, undo and redo give it back to the view
    bool CropToolActive = false;  ///< the crop and cut-out tools set it, other tools clear it; the mouse dispatch reads
    bool ColorPickerMode = false; ///< colour focus sets it, every tool's start clears it; the mouse dispatch reads
    bool RDMode = false;          ///< the red-eye tool sets it, every other tool clears it; the mouse dispatch reads
    int canvasToolMode = 0;       ///< 2 while the photo is resized freely, else 0; the mouse dispatch reads
    bool ToolPanelShown = false;  ///< a tool panel is up; its animation sets it, HideBoxes clears it
    bool ExitPending = false;     ///< ExitApp sets it before it asks; the save route reads it
    bool SaveThenLeave = false;   ///< the save prompt's Yes sets it; the save dialogs read it
    bool ScanNow = false;         ///< a scan sets it, the start of either mode clears it
};

} // namespace lumora
