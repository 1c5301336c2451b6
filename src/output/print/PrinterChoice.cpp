#include "output/print/PrinterChoice.h"

#include "output/DeviceLists.h"
#include "session/AppContext.h"

namespace lumora {

PrinterChoice::PrinterChoice(AppContext &ctx, DeviceLists &devices, const QString &helper, QObject *parent)
    : QObject(parent), m_ctx(ctx), m_devices(devices), m_paperSearch(helper), m_printers(ctx.fields.cboPrinter) {
    connect(&m_devices, &DeviceLists::printersLoaded, this, &PrinterChoice::takePrinters);
    connect(&m_paperSearch, &PaperSearch::found, this, [this](const PrinterPaper &paper) {
        m_papers[m_printer] = paper;
        Q_EMIT changed();
    });
    chooseUsual();
    lookForPaper();
    m_devices.GetPrinters();
}

void PrinterChoice::searchAgain() {
    m_search = Search::Running;
    m_devices.GetPrinters();
    Q_EMIT changed();
}

void PrinterChoice::takePrinters() {
    m_search = m_devices.printersAnswered() ? Search::Answered : Search::NoAnswer;
    m_printers = m_ctx.fields.cboPrinter;
    const QString before = m_printer;
    if (!m_chosen || (!m_isPdf && !m_printers.contains(m_printer))) {
        chooseUsual();
    }
    if (m_printer != before) {
        lookForPaper();
    }
    Q_EMIT changed();
}

void PrinterChoice::chooseUsual() {
    const QString saved = m_ctx.settings.read<Setting::Printer>();
    const int index = m_ctx.fields.cboPrinterIndex;
    if (index >= 0 && index < m_printers.size()) {
        m_printer = m_printers[index];
    } else if (m_search != Search::Answered && !saved.isEmpty()) {
        m_printer = saved;
        m_printers = QStringList{saved};
    } else if (m_printers.contains(m_devices.defaultPrinter())) {
        m_printer = m_devices.defaultPrinter();
    } else {
        m_printer = m_printers.value(0);
    }
    m_isPdf = m_search != Search::Running && m_printers.isEmpty();
}

void PrinterChoice::choosePrinter(const QString &name) {
    m_chosen = true;
    m_isPdf = false;
    m_printer = name;
    lookForPaper();
    Q_EMIT changed();
}

void PrinterChoice::choosePdf() {
    m_chosen = true;
    m_isPdf = true;
    m_paperSearch.stop();
    Q_EMIT changed();
}

std::optional<PrinterPaper> PrinterChoice::paper() const {
    if (m_isPdf) {
        return standardPaper();
    }
    const auto found = m_papers.constFind(m_printer);
    return found == m_papers.constEnd() ? std::nullopt : std::optional(*found);
}

void PrinterChoice::lookForPaper() {
    if (!m_isPdf && !m_papers.contains(m_printer)) {
        m_paperSearch.start(m_printer);
    }
}

} // namespace lumora
