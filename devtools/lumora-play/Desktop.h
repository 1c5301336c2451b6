// The hand at what is not Qt's: dialogs of the desktop, which take their keys from the X server alone; files that come
// from the desktop.
#pragma once

#include <QString>

class QWidget;

namespace lumora::play {

/// Whether the modal window in front is one of the desktop's: the dialog that stands for it is never shown.
bool isDesktopDialogOpen();

/// Gives this program's visible window of that title the keyboard and presses keys there, through the X server's test
/// extension (by xdotool). The problem when there is no such window or no X server; else an empty text.
QString typeIntoDesktop(const QString &title, const QString &text);
/// The same with one chord in xdotool's words: "Return", "ctrl+a".
QString pressOnDesktop(const QString &title, const QString &keys);

/// Drags the file over the window and lets it go in its middle; false when the window does not want it.
bool dropOn(QWidget &window, const QString &file);
/// Copies the file as a file manager does.
void copyInDesktop(const QString &file);

} // namespace lumora::play
