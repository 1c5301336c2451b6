#include "output/print/DesktopPrintDialog.h"

#include <QPrintDialog>
#include <QPrintEngine>
#include <QPrinter>

namespace lumora {

namespace {

/// The property under which Qt's CUPS engine keeps the options of the dialog: names and values by turns.
constexpr auto cupsOptions = static_cast<QPrintEngine::PrintEnginePropertyKey>(0xfe00);

QStringList optionsOf(const QPrinter &printer) {
    const QStringList words = printer.printEngine()->property(cupsOptions).toStringList();
    QStringList options;
    for (qsizetype i = 0; i + 1 < words.size(); i += 2) {
        options << words[i] + '=' + words[i + 1];
    }
    return options;
}

PrinterPaper paperOf(const QPrinter &printer) {
    QPageLayout layout = printer.pageLayout();
    layout.setOrientation(QPageLayout::Portrait);
    layout.setUnits(QPageLayout::Point);
    return {layout.pageSize().size(QPageSize::Point), layout.minimumMargins(), printer.resolution()};
}

} // namespace

std::optional<PrintJob> askDesktopToPrint(const PrintJob &job, QWidget *owner) {
    QPrinter printer(QPrinter::HighResolution);
    if (!job.printer.isEmpty()) {
        printer.setPrinterName(job.printer);
    }
    printer.setDocName(job.title);
    printer.setCopyCount(job.copies);
    if (!job.pdfFile.isEmpty()) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(job.pdfFile);
    }
    QPrintDialog dialog(&printer, owner);
    dialog.setObjectName("QPrintDialog");
    // All pages are printed, copy by copy.
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
    dialog.setOption(QAbstractPrintDialog::PrintCollateCopies, false);
    if (dialog.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    PrintJob chosen = job;
    chosen.copies = printer.copyCount();
    chosen.paper = paperOf(printer);
    chosen.pdfFile = printer.outputFormat() == QPrinter::PdfFormat ? printer.outputFileName() : QString();
    if (chosen.pdfFile.isEmpty()) {
        chosen.printer = printer.printerName();
        chosen.options = optionsOf(printer);
    }
    return chosen;
}

} // namespace lumora
