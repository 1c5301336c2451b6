#include "devices/helper/Printers.h"

#include "devices/helper/Lines.h"

#include <QPageLayout>
#include <QPrinter>
#include <QPrinterInfo>
#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <cups/cups.h>
#include <cups/pwg.h>
#include <memory>
#include <string>

namespace {

struct DestinationEnd {
    void operator()(cups_dest_t *destination) const { cupsFreeDests(1, destination); }
};
using Destination = std::unique_ptr<cups_dest_t, DestinationEnd>;

struct InfoEnd {
    void operator()(cups_dinfo_t *info) const { cupsFreeDestInfo(info); }
};
using Info = std::unique_ptr<cups_dinfo_t, InfoEnd>;

struct FileEnd {
    void operator()(FILE *file) const { std::fclose(file); }
};

/// "NAME" or "NAME/INSTANCE"; an empty name is the default printer.
Destination destinationOf(const std::string &printer) {
    const std::size_t slash = printer.find('/');
    const std::string name = printer.substr(0, slash);
    const std::string instance = slash == std::string::npos ? "" : printer.substr(slash + 1);
    return Destination(cupsGetNamedDest(CUPS_HTTP_DEFAULT, name.empty() ? nullptr : name.c_str(),
                                        instance.empty() ? nullptr : instance.c_str()));
}

/// Without one there is no printer either, but for another reason.
bool isPrintSystemThere() {
    constexpr int patience = 10'000; // milliseconds
    http_t *connection =
        httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, patience, nullptr);
    httpClose(connection);
    return connection != nullptr;
}

bool attributeIs(const Destination &printer, const char *name, const char *value) {
    const char *found = cupsGetOption(name, printer->num_options, printer->options);
    return found != nullptr && std::strcmp(found, value) == 0;
}

/// Whether somebody has to go to the printer before it can print.
bool isNotReady(const Destination &printer) {
    constexpr const char *stopped = "5"; // IPP_PSTATE_STOPPED
    if (attributeIs(printer, "printer-state", stopped)) {
        return true;
    }
    const char *reasons = cupsGetOption("printer-state-reasons", printer->num_options, printer->options);
    constexpr std::array notReady = {"offline",      "connecting-to-device", "timed-out", "media-empty", "media-jam",
                                     "media-needed", "marker-supply-empty",  "door-open", "cover-open",  "toner-empty"};
    return reasons != nullptr && std::any_of(notReady.begin(), notReady.end(), [reasons](const char *one) {
               return std::strstr(reasons, one) != nullptr;
           });
}

int dotsPerInch(const Destination &printer) {
    constexpr int usual = 300;
    const Info info(cupsCopyDestInfo(CUPS_HTTP_DEFAULT, printer.get()));
    ipp_attribute_t *resolution =
        info ? cupsFindDestDefault(CUPS_HTTP_DEFAULT, printer.get(), info.get(), "printer-resolution") : nullptr;
    if (resolution == nullptr || ippGetValueTag(resolution) != IPP_TAG_RESOLUTION) {
        return usual;
    }
    int down = 0;
    ipp_res_t units = IPP_RES_PER_INCH;
    const int across = ippGetResolution(resolution, 0, &down, &units);
    const int dots = std::min(across, down) * (units == IPP_RES_PER_CM ? 254 : 100) / 100;
    return dots > 0 ? dots : usual;
}

volatile std::sig_atomic_t stopWanted = 0;

extern "C" void wantStop(int) {
    stopWanted = 1;
}

/// False when the print system does not take it, or SIGTERM came before it had all of it.
bool sendFile(cups_dest_t *printer, cups_dinfo_t *info, int job, const char *title, FILE *file) {
    if (cupsStartDestDocument(CUPS_HTTP_DEFAULT, printer, info, job, title, CUPS_FORMAT_PDF, 0, nullptr, 1) !=
        HTTP_STATUS_CONTINUE) {
        return false;
    }
    std::array<char, 65536> part{};
    std::size_t length = 0;
    while ((length = std::fread(part.data(), 1, part.size(), file)) > 0) {
        if (stopWanted != 0 || cupsWriteRequestData(CUPS_HTTP_DEFAULT, part.data(), length) != HTTP_STATUS_CONTINUE) {
            return false;
        }
    }
    return std::ferror(file) == 0 && cupsFinishDestDocument(CUPS_HTTP_DEFAULT, printer, info) == IPP_STATUS_OK;
}

} // namespace

bool printPrinters() {
    const QStringList names = QPrinterInfo::availablePrinterNames();
    for (const QString &name : names) {
        printLine("device", name, name);
    }
    const QString defaultName = QPrinterInfo::defaultPrinterName();
    if (!defaultName.isEmpty()) {
        printLine("default", defaultName, defaultName);
    }
    return true;
}

bool printPaper(const char *printer) {
    const Destination destination = destinationOf(printer);
    if (!destination) {
        return false;
    }
    const QPrinterInfo info =
        QPrinterInfo::printerInfo(*printer == '\0' ? QPrinterInfo::defaultPrinterName() : QString::fromUtf8(printer));
    if (info.isNull()) {
        return false;
    }
    QPrinter device(info);
    const QPageSize sheet = info.defaultPageSize();
    if (sheet.isValid()) {
        device.setPageSize(sheet); // it starts with a size that is not the printer's
    }
    QPageLayout layout = device.pageLayout();
    layout.setUnits(QPageLayout::Point);
    const QSizeF size = layout.pageSize().size(QPageSize::Point);
    const QMarginsF margins = layout.minimumMargins();
    std::printf("paper\t%.2f\t%.2f\t%.2f\t%.2f\t%.2f\t%.2f\t%d\n", size.width(), size.height(), margins.left(),
                margins.top(), margins.right(), margins.bottom(), dotsPerInch(destination));
    return true;
}

bool printDocument(const char *printer, const char *title, const char *file, double width, double height,
                   int optionCount, char **options) {
    const Destination destination = destinationOf(printer);
    if (!destination) {
        if (!isPrintSystemThere()) {
            return false;
        }
        std::puts("missing");
        return true;
    }
    if (attributeIs(destination, "printer-is-accepting-jobs", "false")) {
        std::puts("refused");
        return true;
    }
    const Info info(cupsCopyDestInfo(CUPS_HTTP_DEFAULT, destination.get()));
    const std::unique_ptr<FILE, FileEnd> in(std::fopen(file, "rb"));
    if (!info || !in) {
        return false;
    }
    std::signal(SIGTERM, wantStop); // a job that was begun has to be taken back
    int count = 0;
    cups_option_t *list = nullptr;
    // The page is laid out for this paper already, each on a sheet of its own.
    count = cupsAddOption("print-scaling", "none", count, &list);
    count = cupsAddOption("sides", "one-sided", count, &list);
    constexpr double pwgUnits = 2540 / 72.0; // hundredths of a millimetre in a point
    if (const pwg_media_t *media = pwgMediaForSize(qRound(width * pwgUnits), qRound(height * pwgUnits))) {
        count = cupsAddOption("media", media->pwg, count, &list);
    }
    for (int i = 0; i < optionCount; ++i) {
        count = cupsParseOptions(options[i], count, &list);
    }
    int job = 0;
    const ipp_status_t created =
        cupsCreateDestJob(CUPS_HTTP_DEFAULT, destination.get(), info.get(), &job, title, count, list);
    cupsFreeOptions(count, list);
    if (created > IPP_STATUS_OK_CONFLICTING) {
        std::puts("refused");
        return true;
    }
    if (!sendFile(destination.get(), info.get(), job, title, in.get())) {
        cupsCancelDestJob(CUPS_HTTP_DEFAULT, destination.get(), job);
        return false;
    }
    std::puts(isNotReady(destination) ? "waiting" : "sent");
    return true;
}
