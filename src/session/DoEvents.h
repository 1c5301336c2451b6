// The one place where a long command lets the window breathe.
#pragma once

namespace lumora {

/// Repaints and runs timers, but lets no click, key or close request in, so that no command starts inside another.
void DoEvents();

/// True while DoEvents is running: whoever drives the program from a timer (the script player) waits until it is over.
bool isInDoEvents();

} // namespace lumora
