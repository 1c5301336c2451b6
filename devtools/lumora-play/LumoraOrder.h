// What a random walk over Lumora leaves alone, and what has to be in order after each of its actions.
#pragma once

#include "Program.h"

class QWidget;

namespace lumora {
struct AppContext;
class frmMain;
} // namespace lumora

namespace lumora::play {

/// Controls that leave the program, replace the photo or open windows of the system or of their own.
bool leavesOrReplaces(const QWidget &control);
/// Controls that leave the program, and windows of the system.
bool leavesTheProgram(const QWidget &control);

/// A panel is sliding in.
bool isPanelSliding(const frmMain &window);
/// No panel and no floating bar is open, and the Arrow tool is current.
bool hasArrowOnly(const frmMain &window);

/// Remembers which tools and commands can be used now. The check says what is out of order later: a window that does
/// not belong, two panels or two bars, a cursor that has stuck, a view that shows something else than the photo, or a
/// button that can no longer be used although nothing is open. Everywhere any window belongs, but none may be where
/// nobody can take hold of it.
std::function<QString()> orderOf(const frmMain &window, AppContext &context, Walk walk);

} // namespace lumora::play
