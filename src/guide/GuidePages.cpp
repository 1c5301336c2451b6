#include "guide/GuidePages.h"

#include <QFile>
#include <algorithm>

namespace lumora {

namespace {

const GuidePage pages[] = {
    {"first-steps.html", "First steps", "hand", "Begin"},
    {"open.html", "Open", "open", ""},
    {"save.html", "Save", "save", ""},
    // Scanning and printing have their place here, as in the command row.
    {"zoom.html", "Zoom", "setzoom", ""},
    {"undo.html", "Undo and redo", "undo", ""},
    // E-mail.
    {"copy.html", "Copy and paste", "copy", ""},
    // The slideshow.
    {"ideas.html", "Ideas", "ideas", ""},
    {"pop-art.html", "Pop-art", "pop-art", ""},
    {"help.html", "Help", "help", ""},
    {"exit.html", "Exit", "exit", ""},

    {"arrow.html", "Arrow Tool", "tool1", "Tools"},
    {"selection.html", "Selection", "tool2", ""},
    {"crop.html", "Crop", "tool3", ""},
    {"resize.html", "Resize", "tool4", ""},
    {"rotate.html", "Rotate", "tool5", ""},
    {"red-eye.html", "Remove Red Eye", "tool6", ""},
    {"frames.html", "Frames", "tool7", ""},
    {"basic-effects.html", "Basic Effects", "tool8", ""},
    {"adjust.html", "Adjust Brightness/Contrast", "tool9", ""},
    {"special-effects.html", "Special Effects", "tool10", ""},
    {"colour-focus.html", "Colour Focus", "tool11", ""},
    {"cut-out.html", "Cut out", "cropcut", ""},

    {"grownups.html", "For grown-ups", "simple-mode", "For grown-ups"},
    {"options.html", "Options", "options", ""},
    {"settings.html", "Settings file", "options-general", ""},
    {"languages.html", "Languages", "options-miscellaneous", ""},
    {"keys.html", "Keys", "advanced-mode", ""},
};

} // namespace

std::span<const GuidePage> guidePages() {
    return pages;
}

const GuidePage *guidePage(const QString &file) {
    const auto *row = std::find_if(std::begin(pages), std::end(pages),
                                   [&](const GuidePage &page) { return file == QLatin1String(page.file); });
    return row == std::end(pages) ? nullptr : row;
}

QString guideHtml(const QString &file) {
    QFile in(":/guide/" + file);
    return in.open(QIODevice::ReadOnly) ? QString::fromUtf8(in.readAll()) : QString();
}

} // namespace lumora
