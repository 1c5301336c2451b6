#include "session/OptionsSettings.h"

#include "session/AppContext.h"
#include "session/LoadSettings.h"

#include <QRegularExpression>
#include <algorithm>

namespace lumora {

namespace {

bool isPlaceholder(const QString &address) {
    return address.compare(QLatin1StringView(placeholderAddress), Qt::CaseInsensitive) == 0;
}

} // namespace

OptionsSettings readOptions(AppContext &context) {
    const auto yes = [&](const char *section, const char *key, const char *defaultValue) {
        return context.setting(section, key, defaultValue) == "1";
    };
    const auto number = [&](const char *section, const char *key, int defaultValue) {
        return settingNumber(context.setting(section, key, QString::number(defaultValue)), defaultValue);
    };
    OptionsSettings options;
    options.advancedEffects = yes("SFX", "Advanced", "0");
    options.slideshowDelay = std::clamp(number("Slideshow", "Delay", 2000), shortestSlide, longestSlide);
    options.advancedResize = yes("Resize", "Advanced", "0");
    options.advancedScan = yes("Scan", "Autoscan", "0");
    options.scanner = std::max(number("Scanner", "Device", -1), -1);
    options.grid = yes("Grid", "Value", "1");
    options.email = yes("E-mail", "Value", "0");
    options.advancedPopart = yes("Popart", "Level", "1");
    options.systemDialogs = yes("Dialogs", "Style", "1");
    options.sender = context.setting("Sender", "Address", placeholderAddress).trimmed();
    if (isPlaceholder(options.sender)) {
        options.sender.clear();
    }
    options.printer = context.setting("Printer", "Device", {});
    options.printLockMinutes = std::clamp(number("Printer", "Timer", 1), 1, longestPrintLock);
    options.printLock = yes("Printer", "Timed", "1");
    options.workingDirectory = workingDirectory(context);
    options.myDocs = context.setting("MyDocs", "Value", "1") != "0"; // as the photo dialogs read it
    options.printButtonOff = yes("Print Button", "Value", "0");
    options.scannerButtonOff = yes("Scanner Button", "Value", "0");
    options.welcome = yes("Welcome", "Show", "1");
    return options;
}

void writeOptions(AppContext &context, const OptionsSettings &options) {
    const auto write = [&](const char *section, const char *key, const QString &value) {
        context.writeSetting(section, key, value);
    };
    const auto yes = [](bool value) { return QString(value ? "1" : "0"); };
    write("SFX", "Advanced", yes(options.advancedEffects));
    write("Slideshow", "Delay", QString::number(options.slideshowDelay));
    write("Resize", "Advanced", yes(options.advancedResize));
    write("Scan", "Autoscan", yes(options.advancedScan));
    write("Scanner", "Device", QString::number(options.scanner));
    write("Grid", "Value", yes(options.grid));
    write("E-mail", "Value", yes(options.email));
    write("Popart", "Level", yes(options.advancedPopart));
    write("Dialogs", "Style", yes(options.systemDialogs));
    write("Sender", "Address", options.sender.isEmpty() ? QString(placeholderAddress) : options.sender);
    write("Printer", "Device", options.printer);
    write("Printer", "Timer", QString::number(options.printLockMinutes));
    write("Printer", "Timed", yes(options.printLock));
    write("Tips", "Crop", "1");
    write("Working Directory", "Path", options.workingDirectory);
    write("MyDocs", "Value", yes(options.myDocs));
    write("Print Button", "Value", yes(options.printButtonOff));
    write("Scanner Button", "Value", yes(options.scannerButtonOff));
}

void resetWarnings(AppContext &context) {
    context.writeSetting("Tips", "Crop", "1");
    context.writeSetting("Welcome", "Show", "1");
}

bool isMailAddress(const QString &text) {
    static const QRegularExpression shape(R"(\A[^\s@,;<>]+@[^\s@,;<>.]+(\.[^\s@,;<>.]+)+\z)");
    const QString address = text.trimmed();
    return shape.match(address).hasMatch() && !isPlaceholder(address);
}

} // namespace lumora
