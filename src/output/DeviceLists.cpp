#include "output/DeviceLists.h"

#include "session/AppContext.h"

namespace lumora {

DeviceLists::DeviceLists(AppContext &context, const QString &helper, QObject *parent)
    : QObject(parent), m_context(context), m_search(helper) {
    connect(&m_search, &DeviceSearch::answered, this, &DeviceLists::showAnswer);
}

void DeviceLists::LoadScanners() {
    m_search.start(DeviceKind::Scanners);
}

void DeviceLists::GetPrinters() {
    m_search.start(DeviceKind::Printers);
}

void DeviceLists::showAnswer(DeviceKind kind, const DeviceAnswer &answer) {
    if (kind == DeviceKind::Scanners) {
        fillScanners(answer);
    } else {
        fillPrinters(answer);
    }
}

void DeviceLists::fillScanners(const DeviceAnswer &answer) {
    MainFields &fields = m_context.fields;
    m_scanners = answer.devices;
    fields.cboSelect.clear();
    for (const FoundDevice &scanner : answer.devices) {
        fields.cboSelect.append(scanner.shown);
    }
    fields.cboSelectIndex = -1;
    if (!m_scanners.isEmpty()) {
        const std::optional<int> saved = m_context.settings.read<Setting::Scanner>();
        // A list that has become shorter still offers its first scanner rather than none.
        fields.cboSelectIndex = saved && *saved < m_scanners.size() ? std::max(*saved, -1) : 0;
    }
    Q_EMIT scannersLoaded(!m_scanners.isEmpty());
}

void DeviceLists::fillPrinters(const DeviceAnswer &answer) {
    MainFields &fields = m_context.fields;
    m_printersAnswered = answer.complete;
    m_defaultPrinter = answer.defaultName;
    fields.cboPrinter.clear();
    for (const FoundDevice &printer : answer.devices) {
        fields.cboPrinter.append(printer.name);
    }
    const QString saved = m_context.settings.read<Setting::Printer>();
    fields.cboPrinterIndex = static_cast<int>(fields.cboPrinter.indexOf(saved.isEmpty() ? answer.defaultName : saved));
    Q_EMIT printersLoaded();
}

} // namespace lumora
