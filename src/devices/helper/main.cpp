// lumora-devices scanners|printers
// lumora-devices options|scan DEVICE [NAME=VALUE...]: see ScanCommands.h
// lumora-devices paper PRINTER
// lumora-devices print PRINTER TITLE FILE WIDTH HEIGHT [OPTION=VALUE...]
// lumora-devices speak
// lumora-devices voice LOCALE
// The first form prints one line for each device, fields separated by tabs: the word "device", the name by which the
// system knows it and the name to show; for the default printer "default" and its name. Printers.h has the answers of
// "paper" and "print", Speech.h that of "voice" and what "speak" reads. The last line is "done". Devices, drivers and
// services may take many seconds, hang or crash, so Lumora has this program talk to them (see src/devices/HelperRun.h).
#include "devices/helper/Lines.h"
#include "devices/helper/Printers.h"
#include "devices/helper/ScanCommands.h"
#include "devices/helper/Speech.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sane/sane.h>
#include <string>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

/// False when the scanner system itself does not start.
bool printScanners() {
    if (sane_init(nullptr, nullptr) != SANE_STATUS_GOOD) {
        return false;
    }
    const SANE_Device **devices = nullptr;
    if (sane_get_devices(&devices, SANE_FALSE) != SANE_STATUS_GOOD || devices == nullptr) {
        return false;
    }
    for (; *devices != nullptr; ++devices) {
        const SANE_Device &device = **devices;
        printLine("device", QString::fromUtf8(device.name),
                  QString::fromUtf8(device.vendor) + " " + QString::fromUtf8(device.model));
    }
    return true;
}

/// Does what the arguments say; false when there is no complete answer.
bool answered(const std::string &kind, int argc, char **argv) {
    if (kind == "scanners") {
        return printScanners();
    }
    if (kind == "voice") {
        return printVoice(argv[2]);
    }
    if (kind == "printers") {
        return printPrinters();
    }
    if (kind == "paper") {
        return printPaper(argv[2]);
    }
    constexpr int firstOption = 7;
    return printDocument(argv[2], argv[3], argv[4], std::strtod(argv[5], nullptr), std::strtod(argv[6], nullptr),
                         argc - firstOption, argv + firstOption);
}

} // namespace

int main(int argc, char **argv) {
    prctl(PR_SET_PDEATHSIG, SIGKILL); // the answer is of no use when Lumora has ended
    const std::string kind = argc > 1 ? argv[1] : "";
    if (argc >= 3 && (kind == "options" || kind == "scan")) {
        QStringList values;
        for (int i = 3; i < argc; ++i) {
            values.append(QString::fromUtf8(argv[i]));
        }
        const QString device = QString::fromUtf8(argv[2]);
        _exit(kind == "scan" ? lumora::runScan(device, values) : lumora::runOptions(device, values));
    }
    if (argc == 2 && kind == "speak") {
        speakLines();
        return 0;
    }
    const bool isSearch = argc == 2 && (kind == "scanners" || kind == "printers");
    if (!isSearch && !(argc == 3 && (kind == "paper" || kind == "voice")) && !(argc >= 7 && kind == "print")) {
        std::fputs("usage: lumora-devices scanners|printers\n"
                   "       lumora-devices options|scan DEVICE [NAME=VALUE...]\n"
                   "       lumora-devices paper PRINTER\n"
                   "       lumora-devices print PRINTER TITLE FILE WIDTH HEIGHT [OPTION=VALUE...]\n"
                   "       lumora-devices speak\n"
                   "       lumora-devices voice LOCALE\n",
                   stderr);
        return 2;
    }
    const bool found = answered(kind, argc, argv);
    if (found) {
        std::puts("done");
    }
    std::fflush(stdout);
    _exit(found ? 0 : 1); // a driver that hangs or crashes while it is closed cannot change the answer
}
