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
    const Settings &settings = context.settings;
    OptionsSettings options;
    options.advancedEffects = settings.readForOptions<Setting::AdvancedEffects>() == Switch::On;
    options.slideshowDelay =
        std::clamp(settings.readForOptions<Setting::SlideshowDelay>(), shortestSlide, longestSlide);
    options.advancedResize = settings.readForOptions<Setting::AdvancedResize>();
    options.advancedScan = settings.readForOptions<Setting::AdvancedScan>();
    options.scanner = std::max(settings.readForOptions<Setting::Scanner>().value_or(-1), -1);
    options.grid = settings.readForOptions<Setting::Grid>();
    options.email = settings.readForOptions<Setting::Email>() == Switch::On;
    options.advancedPopart = settings.readForOptions<Setting::AdvancedPopart>() == Switch::On;
    options.systemDialogs = settings.readForOptions<Setting::DialogStyle>() == DialogStyle::System;
    options.sender = settings.readForOptions<Setting::SenderAddress>().trimmed();
    if (isPlaceholder(options.sender)) {
        options.sender.clear();
    }
    options.printer = settings.readForOptions<Setting::Printer>();
    options.printLockMinutes = std::clamp(settings.readForOptions<Setting::PrintLockMinutes>(), 1, longestPrintLock);
    options.printLock = settings.readForOptions<Setting::PrintLock>();
    options.language = settings.readForOptions<Setting::Language>().trimmed();
    options.workingDirectory = workingDirectory(context);
    options.myDocs = settings.readForOptions<Setting::MyDocs>();
    options.printButtonOff = settings.readForOptions<Setting::PrintButtonOff>();
    options.scannerButtonOff = settings.readForOptions<Setting::ScannerButtonOff>();
    options.mailServer = readMailServer(settings);
    options.mailSize = settings.readForOptions<Setting::MailPhotoSize>();
    options.welcome = settings.readForOptions<Setting::Welcome>();
    options.privateDetails = settings.readForOptions<Setting::PrivateDetails>();
    options.keepThrownAway = settings.readForOptions<Setting::KeepThrownAway>();
    return options;
}

void writeOptions(AppContext &context, const OptionsSettings &options) {
    Settings &settings = context.settings;
    constexpr Writer by = Writer::Options;
    const auto on = [](bool value) { return value ? Switch::On : Switch::Off; };
    settings.write<Setting::AdvancedEffects, by>(on(options.advancedEffects));
    settings.write<Setting::SlideshowDelay, by>(options.slideshowDelay);
    settings.write<Setting::AdvancedResize, by>(options.advancedResize);
    settings.write<Setting::AdvancedScan, by>(options.advancedScan);
    settings.write<Setting::Scanner, by>(options.scanner);
    settings.write<Setting::Grid, by>(options.grid);
    settings.write<Setting::Email, by>(on(options.email));
    settings.write<Setting::AdvancedPopart, by>(on(options.advancedPopart));
    settings.write<Setting::DialogStyle, by>(options.systemDialogs ? DialogStyle::System : DialogStyle::Own);
    settings.write<Setting::SenderAddress, by>(options.sender.isEmpty() ? QString(placeholderAddress) : options.sender);
    settings.write<Setting::Printer, by>(options.printer);
    settings.write<Setting::PrintLockMinutes, by>(options.printLockMinutes);
    settings.write<Setting::PrintLock, by>(options.printLock);
    settings.write<Setting::CropTip, by>(Switch::On);
    settings.write<Setting::Language, by>(options.language);
    // An empty path in the file stays one: it means each user's own documents folder.
    if (options.workingDirectory != workingDirectory(context) || !settings.isInFile<Setting::WorkingDirectory>()) {
        settings.write<Setting::WorkingDirectory, by>(options.workingDirectory);
    }
    settings.write<Setting::MyDocs, by>(options.myDocs);
    settings.write<Setting::PrintButtonOff, by>(options.printButtonOff);
    settings.write<Setting::ScannerButtonOff, by>(options.scannerButtonOff);
    settings.write<Setting::MailHost, by>(options.mailServer.host);
    settings.write<Setting::MailPort, by>(options.mailServer.port);
    settings.write<Setting::MailSecurityKind, by>(options.mailServer.security);
    settings.write<Setting::MailUser, by>(options.mailServer.user);
    settings.write<Setting::MailPhotoSize, by>(options.mailSize);
    settings.write<Setting::PrivateDetails, by>(options.privateDetails);
    settings.write<Setting::KeepThrownAway, by>(options.keepThrownAway);
}

void resetWarnings(AppContext &context) {
    context.settings.write<Setting::CropTip, Writer::Reset>(Switch::On);
    context.settings.write<Setting::Welcome, Writer::Reset>(true);
}

bool isMailAddress(const QString &text) {
    static const QRegularExpression shape(R"(\A[^\s@,;<>]+@[^\s@,;<>.]+(\.[^\s@,;<>.]+)+\z)");
    const QString address = text.trimmed();
    return shape.match(address).hasMatch() && !isPlaceholder(address);
}

} // namespace lumora
