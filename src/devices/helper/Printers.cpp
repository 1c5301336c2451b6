#include "devices/helper/Printers.h"

#include "devices/helper/Lines.h"

#include <QString>
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

constexpr double pwgUnits = 2540 / 72.0; // hundredths of a millimetre in a point

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

/// All that the system knows, in its order.
class Destinations {
  public:
    Destinations() : m_count(cupsGetDests2(CUPS_HTTP_DEFAULT, &m_first)) {}
    ~Destinations() { cupsFreeDests(m_count, m_first); }
    Destinations(const Destinations &) = delete;
    Destinations &operator=(const Destinations &) = delete;

    const cups_dest_t *begin() const { return m_first; }
    const cups_dest_t *end() const { return m_first + m_count; }

  private:
    cups_dest_t *m_first = nullptr;
    int m_count;
};

/// "NAME" or "NAME/INSTANCE".
QString nameOf(const cups_dest_t &printer) {
    const QString name = QString::fromUtf8(printer.name);
    return printer.instance == nullptr ? name : name + "/" + QString::fromUtf8(printer.instance);
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

int dotsPerInch(const Destination &printer, const Info &info) {
    constexpr int usual = 300;
    ipp_attribute_t *resolution =
        cupsFindDestDefault(CUPS_HTTP_DEFAULT, printer.get(), info.get(), "printer-resolution");
    if (resolution == nullptr || ippGetValueTag(resolution) != IPP_TAG_RESOLUTION) {
        return usual;
    }
    int down = 0;
    ipp_res_t units = IPP_RES_PER_INCH;
    const int across = ippGetResolution(resolution, 0, &down, &units);
    const int dots = std::min(across, down) * (units == IPP_RES_PER_CM ? 254 : 100) / 100;
    return dots > 0 ? dots : usual;
}

/// The paper that the user chose for this printer, else the printer's own. CUPS has a function for it, but that one
/// takes Letter where the user chose nothing. False for a printer that does not say.
bool usualSheet(const Destination &printer, const Info &info, cups_size_t &sheet) {
    const char *name = cupsGetOption(CUPS_MEDIA, printer->num_options, printer->options);
    if (name == nullptr) {
        name = ippGetString(cupsFindDestDefault(CUPS_HTTP_DEFAULT, printer.get(), info.get(), CUPS_MEDIA), 0, nullptr);
    }
    return name != nullptr && cupsGetDestMediaByName(CUPS_HTTP_DEFAULT, printer.get(), info.get(), name,
                                                     CUPS_MEDIA_FLAGS_DEFAULT, &sheet) != 0;
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
    const Destinations printers;
    for (const cups_dest_t &printer : printers) {
        const QString name = nameOf(printer);
        printLine("device", name, name);
    }
    if (const Destination usual = destinationOf("")) {
        const QString name = nameOf(*usual);
        printLine("default", name, name);
    }
    return true;
}

bool printPaper(const char *printer) {
    const Destination destination = destinationOf(printer);
    if (!destination) {
        return false;
    }
    const Info info(cupsCopyDestInfo(CUPS_HTTP_DEFAULT, destination.get()));
    cups_size_t sheet{};
    if (!info || !usualSheet(destination, info, sheet)) {
        return false;
    }
    const auto points = [](int hundredths) { return qRound(hundredths / pwgUnits); };
    std::printf("paper\t%d\t%d\t%d\t%d\t%d\t%d\t%d\n", points(sheet.width), points(sheet.length), points(sheet.left),
                points(sheet.top), points(sheet.right), points(sheet.bottom), dotsPerInch(destination, info));
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
