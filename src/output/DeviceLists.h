// The lists of scanners and printers that the main window, the print windows and the options offer. The window asks
// once at its start and never waits: the lists fill when the answers come.
#pragma once

#include "devices/DeviceSearch.h"

namespace lumora {

struct AppContext;

class DeviceLists : public QObject {
    Q_OBJECT

  public:
    /// `helper` as DeviceSearch takes it.
    explicit DeviceLists(AppContext &context, const QString &helper = {}, QObject *parent = nullptr);

    /// Has the scanners looked for. With the answer cboSelect is filled with their names in the system's order and
    /// cboSelectIndex becomes the setting "Scanner"/"Device"; where that is no number, the first scanner, and where it
    /// names none of the list, no scanner (-1) for a negative number and the first for one too large.
    void LoadScanners();
    /// Has the printers looked for. With the answer cboPrinter is filled with their names in the system's order and
    /// cboPrinterIndex becomes the one whose name is the setting "Printer"/"Device", or the system's default printer's
    /// where the setting is empty; -1 where none has that name.
    void GetPrinters();

    /// Whether the print system answered when it was asked last; false before.
    bool printersAnswered() const { return m_printersAnswered; }
    /// The system's default printer as the last answer had it; may be empty.
    const QString &defaultPrinter() const { return m_defaultPrinter; }

    /// The scanners behind cboSelect, entry by entry.
    const QList<FoundDevice> &scanners() const { return m_scanners; }

  Q_SIGNALS:
    /// cboSelect is filled; `any` says whether there is a scanner, so whether cmdScan may be pressed.
    void scannersLoaded(bool any);
    /// cboPrinter is filled.
    void printersLoaded();

  private:
    void showAnswer(DeviceKind kind, const DeviceAnswer &answer);
    void fillScanners(const DeviceAnswer &answer);
    void fillPrinters(const DeviceAnswer &answer);

    AppContext &m_context;
    DeviceSearch m_search;
    QList<FoundDevice> m_scanners;
    QString m_defaultPrinter;
    bool m_printersAnswered = false;
};

} // namespace lumora
