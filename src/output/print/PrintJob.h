// One print job: the photo, laid out, on its way to a printer or into a PDF file.
#pragma once

#include "output/print/PageLayout.h"

#include <QImage>
#include <optional>

namespace lumora {

struct PrintJob {
    QImage photo;
    PrintLayout layout;
    int copies = 1;                    ///< each on sheets of its own; 1 to mostCopies
    QString title;                     ///< what the document is called
    QString printer;                   ///< empty: the system's default printer
    QString pdfFile;                   ///< the file to write instead of printing; empty: print
    std::optional<PrinterPaper> paper; ///< the printer's; asked for when it is not known yet
    QStringList options;               ///< of the print system, as PrintDocument has them
};

inline constexpr int mostCopies = 999;

enum class PrintResult {
    Printed,     ///< the print system has it
    Waiting,     ///< the same, but somebody must go to the printer first
    Saved,       ///< the PDF file is written
    NoPrinter,   ///< there is none, or none of that name
    Refused,     ///< the printer takes nothing now
    NoAnswer,    ///< the print system does not answer
    NotWritable, ///< the file could not be written; what had that name before is unchanged
    NoRoom,      ///< the same, since the disk is full: that of the PDF file, or of what goes to the printer
    NoMemory,
    Cancelled, ///< nothing was printed or written
};

/// Does the job and returns when it is done: for a background task, which may be cancelled. At most one page is in
/// memory at a time. `helper` as HelperRun takes it, `timeLimit` for each answer of the print system, milliseconds.
PrintResult doPrintJob(const PrintJob &job, const QString &helper = {}, int timeLimit = 30'000);

} // namespace lumora
