// The one place where a long command lets the window breathe.
#pragma once

class QObject;

namespace lumora {

/// Repaints and runs timers, but lets no click, key, drop or request to close in, so that no command starts inside
/// another: keys and clicks wait until it is over, and what is dragged over a window is refused.
/// With a panel (a widget that offers to stop the command) the panel and what is in it take clicks and keys; those for
/// anything else are dropped.
void DoEvents(const QObject *panel = nullptr);

/// True while DoEvents is running: whoever drives the program from a timer (the script player) waits until it is over.
bool isInDoEvents();

} // namespace lumora
