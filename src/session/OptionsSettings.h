// What the options window edits: every setting of the settings file that it shows, read and written together.
#pragma once

#include "session/Settings.h"

#include <QString>

namespace lumora {

struct AppContext;

inline constexpr int shortestSlide = 1;     ///< seconds between two slides, the minimum in the options
inline constexpr int longestSlide = 30;     ///< seconds, the maximum
inline constexpr int longestPrintLock = 60; ///< minutes, the maximum lock of the print button

struct OptionsSettings {
    bool advancedEffects = false;
    int slideshowDelay = 0; ///< seconds, shortestSlide to longestSlide
    bool advancedResize = false;
    bool advancedScan = false;
    int scanner = -1; ///< index in the list of scanners, -1 none
    bool grid = false;
    bool email = false;
    bool advancedPopart = false;
    bool systemDialogs = false;
    QString sender;           ///< empty until one is entered
    QString printer;          ///< a name; empty is the system default
    int printLockMinutes = 1; ///< 1 to longestPrintLock
    bool printLock = false;
    QString language; ///< a file of installedLanguages(); empty: that of the desktop
    QString workingDirectory;
    bool myDocs = false;
    bool printButtonOff = false;
    bool scannerButtonOff = false;
    bool welcome = false;        ///< never written
    bool privateDetails = false; ///< saved files tell the place and the serial numbers
    bool keepThrownAway = true;  ///< photos whose changes were thrown away, for a week
    MailServer mailServer;
    QString mailPassword; ///< newly typed, empty if not; for the keyring, never for the file
    MailSize mailSize = MailSize::Medium;
};

/// Reads them with the options window's own defaults, which differ from the main window's: the system's dialogs,
/// advanced pop-art and the print lock are selected unless the file says otherwise. A value that is not a number
/// becomes the default; a number out of range is clamped.
OptionsSettings readOptions(AppContext &context);

/// Writes them, each at once, and switches the crop tip on again; never the welcome bubble's setting.
void writeOptions(AppContext &context, const OptionsSettings &options);

/// Shows the tips and the welcome bubble again; takes effect at once.
void resetWarnings(AppContext &context);

/// Whether `text` can be an e-mail address: a name, one @, a domain with a dot in it, no blanks; and not the
/// placeholder in the settings. Surrounding blanks are ignored.
bool isMailAddress(const QString &text);

} // namespace lumora
