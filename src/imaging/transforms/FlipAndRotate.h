// Flips, rotations by 90 degrees and crops: operations that only move pixels.
#pragma once

#include "imaging/PixelView.h"

namespace lumora {

/// Three steps in this order: swap the axes, then mirror left to right, then top to bottom. All eight ways to place a
/// rectangle on itself.
struct Turn {
    bool swapAxes = false;
    bool mirrorX = false;
    bool mirrorY = false;
};

/// Fills the target with the turned source, byte for byte. The target has the source's size, with the sides swapped
/// where the axes are. Neither is empty; they do not overlap.
void flipAndRotate(ConstPixelView source, PixelView target, Turn turn);

} // namespace lumora
