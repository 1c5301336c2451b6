// The one place where a long command processes events.
#pragma once

class QObject;

namespace lumora {

/// Repaints and runs timers, but delivers no click, key, drop or close request, so that no command starts inside
/// another: keys and clicks are queued until it is over, and drags over a window are refused.
/// With a panel (a widget that offers to stop the command) the panel and its children accept clicks and keys; all
/// others are dropped.
void DoEvents(const QObject *panel = nullptr);

/// True while DoEvents is running: code that drives the program from a timer (the script player) waits until it is
/// over.
bool isInDoEvents();

} // namespace lumora
