// The desktop's own print dialog, behind "Advanced..." of Simple mode's print window.
#pragma once

#include "output/print/PrintJob.h"

class QWidget;

namespace lumora {

/// Shows it, modal over `owner`, with that printer or PDF file and that number of copies to begin with. Returns the job
/// with what was chosen: printer, copies, paper and the printer's own options, or the PDF file to write; nothing when
/// it was cancelled. Asks the print system while it is made, so call it only when that has just answered.
std::optional<PrintJob> askDesktopToPrint(const PrintJob &job, QWidget *owner);

} // namespace lumora
