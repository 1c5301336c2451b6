// What the options window edits: every setting of the settings file that it shows, read and written together.
#pragma once

#include <QString>

namespace lumora {

struct AppContext;

inline constexpr int shortestSlide = 1;     ///< seconds between two slides, the least that the options offer
inline constexpr int longestSlide = 30;     ///< seconds, the most
inline constexpr int longestPrintLock = 60; ///< minutes, the most that the print button can be locked

struct OptionsSettings {
    bool advancedEffects = false;  ///< "SFX"/"Advanced"
    int slideshowDelay = 0;        ///< "Slideshow"/"Delay", shortestSlide to longestSlide
    bool advancedResize = false;   ///< "Resize"/"Advanced"
    bool advancedScan = false;     ///< "Scan"/"Autoscan"
    int scanner = -1;              ///< "Scanner"/"Device": place in the list of scanners, -1 none
    bool grid = false;             ///< "Grid"/"Value"
    bool email = false;            ///< "E-mail"/"Value"
    bool advancedPopart = false;   ///< "Popart"/"Level"
    bool systemDialogs = false;    ///< "Dialogs"/"Style"
    QString sender;                ///< "Sender"/"Address"; empty while nobody has entered one
    QString printer;               ///< "Printer"/"Device": a name; empty is the computer's own choice
    int printLockMinutes = 1;      ///< "Printer"/"Timer", 1 to longestPrintLock
    bool printLock = false;        ///< "Printer"/"Timed"
    QString workingDirectory;      ///< "Working Directory"/"Path"
    bool myDocs = false;           ///< "MyDocs"/"Value"
    bool printButtonOff = false;   ///< "Print Button"/"Value"
    bool scannerButtonOff = false; ///< "Scanner Button"/"Value"
    bool welcome = false;          ///< "Welcome"/"Show"; never written
};

/// Reads them with the options window's own defaults, which differ from the main window's: the system's dialogs,
/// advanced pop-art and the print lock count as chosen until the file says otherwise. What is no number becomes the
/// default; a number out of range the nearest one that can be chosen.
OptionsSettings readOptions(AppContext &context);

/// Writes them, always in the same order, and switches the crop tip on again, but never
/// touches "Welcome"/"Show".
void writeOptions(AppContext &context, const OptionsSettings &options);

/// Has the tips and the welcome bubble shown again, at once.
void resetWarnings(AppContext &context);

/// Whether `text` can be somebody's e-mail address: a name, one @, a domain with a dot in it, no blanks; and not the
/// placeholder that stands in the settings until there is one. Blanks around it do not count.
bool isMailAddress(const QString &text);

} // namespace lumora
