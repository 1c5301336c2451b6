// lumora-devices scanners|printers
// lumora-devices options|scan DEVICE ...: see ScanCommands.h
// The first two print one line for each device, fields separated by tabs: the word "device", the name by which the
// system knows it and the name to show; for the default printer "default" and its name; then "done". Looking can take
// many seconds and drivers may hang or crash, so Lumora has this program do it (see src/devices/DeviceSearch.h).
#include "devices/helper/ScanCommands.h"

#include <QGuiApplication>
#include <QPrinterInfo>
#include <csignal>
#include <cstdio>
#include <sane/sane.h>
#include <string>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

/// A text on one line and in one field.
QByteArray field(const QString &text) {
    return text.simplified().toUtf8();
}

void printLine(const char *what, const QString &name, const QString &shown) {
    std::printf("%s\t%s\t%s\n", what, field(name).constData(), field(shown).constData());
}

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

void printPrinters() {
    const QStringList names = QPrinterInfo::availablePrinterNames();
    for (const QString &name : names) {
        printLine("device", name, name);
    }
    const QString defaultName = QPrinterInfo::defaultPrinterName();
    if (!defaultName.isEmpty()) {
        printLine("default", defaultName, defaultName);
    }
}

} // namespace

int main(int argc, char **argv) {
    prctl(PR_SET_PDEATHSIG, SIGKILL); // the answer is of no use when Lumora has ended
    const std::string kind = argc >= 2 ? argv[1] : "";
    if (argc >= 3 && (kind == "options" || kind == "scan")) {
        QStringList values;
        for (int i = 3; i < argc; ++i) {
            values.append(QString::fromUtf8(argv[i]));
        }
        const QString device = QString::fromUtf8(argv[2]);
        _exit(kind == "scan" ? lumora::runScan(device, values) : lumora::runOptions(device, values));
    }
    bool found = false;
    if (kind == "scanners") {
        found = printScanners();
    } else if (kind == "printers") {
        qputenv("QT_QPA_PLATFORM", "minimal"); // no window will be shown, so no display is needed
        const QGuiApplication application(argc, argv);
        printPrinters();
        found = true;
    } else {
        std::fputs("usage: lumora-devices scanners|printers|options DEVICE ...|scan DEVICE ...\n", stderr);
        return 2;
    }
    if (found) {
        std::puts("done");
    }
    std::fflush(stdout);
    _exit(found ? 0 : 1); // a driver that hangs or crashes while it is closed cannot change the answer
}
