// What the options window edits: every setting of the settings file that it shows, read and written together.
#pragma once

#include <QString>

namespace lumora {

struct AppContext;

inline constexpr int shortestSlide = 1;     ///< seconds between two slides, the least that the options offer
inline constexpr int longestSlide = 30;     ///< seconds, the most
inline constexpr int longestPrintLock = 60; ///< minutes, the most that the print button can be locked

struct OptionsSettings {
    bool advancedEffects = false;
    int slideshowDelay = 0; ///< seconds, shortestSlide to longestSlide
    bool advancedResize = false;
    bool advancedScan = false;
    int scanner = -1; ///< place in the list of scanners, -1 none
    bool grid = false;
    bool email = false;
    bool advancedPopart = false;
    bool systemDialogs = false;
    QString sender;           ///< empty while nobody has entered one
    QString printer;          ///< a name; empty is the computer's own choice
    int printLockMinutes = 1; ///< 1 to longestPrintLock
    bool printLock = false;
    QString workingDirectory;
    bool myDocs = false;
    bool printButtonOff = false;
    bool scannerButtonOff = false;
    bool welcome = false; ///< never written
};

/// Reads them with the options window's own defaults, which differ from the main window's: the system's dialogs,
/// advanced pop-art and the print lock count as chosen until the file says otherwise. What is no number becomes the
/// default; a number out of range the nearest one that can be chosen.
OptionsSettings readOptions(AppContext &context);

/// Writes them, each at once, and switches the crop tip on again; never the welcome bubble's setting.
void writeOptions(AppContext &context, const OptionsSettings &options);

/// Has the tips and the welcome bubble shown again, at once.
void resetWarnings(AppContext &context);

/// Whether `text` can be somebody's e-mail address: a name, one @, a domain with a dot in it, no blanks; and not the
/// placeholder that stands in the settings until there is one. Blanks around it do not count.
bool isMailAddress(const QString &text);

} // namespace lumora
