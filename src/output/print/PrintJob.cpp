#include "output/print/PrintJob.h"

#include "base/ReplaceFile.h"
#include "base/TaskControl.h"
#include "base/basMisc.h"
#include "output/print/PageDrawing.h"

#include <QStringList>
#include <QTemporaryFile>
#include <algorithm>
#include <new>

namespace lumora {

namespace {

constexpr int paperPatience = 10'000; // milliseconds; the window has asked for the paper before
constexpr int finestPrint = 600;      // dots an inch: more than an eye sees in a photo

PrintResult resultOf(PrintAnswer answer) {
    switch (answer) {
    case PrintAnswer::Sent:
        return PrintResult::Printed;
    case PrintAnswer::Waiting:
        return PrintResult::Waiting;
    case PrintAnswer::NoPrinter:
        return PrintResult::NoPrinter;
    case PrintAnswer::Refused:
        return PrintResult::Refused;
    case PrintAnswer::Cancelled:
        return PrintResult::Cancelled;
    case PrintAnswer::NoAnswer:
        break;
    }
    return PrintResult::NoAnswer;
}

/// The paper of the job; where the printer does not tell it in time, the standard one.
PrinterPaper paperOf(const PrintJob &job, const QString &helper, int timeLimit) {
    if (job.paper || !job.pdfFile.isEmpty()) {
        return job.paper.value_or(standardPaper());
    }
    return askForPaper(job.printer, helper, std::min(timeLimit, paperPatience)).value_or(standardPaper());
}

PrintResult writeFile(const PrintJob &job, const PrintPages &pages, const QImage &picture) {
    const auto fault = replaceFile(
        job.pdfFile, [&](QIODevice &device) { return writePages(device, pages, picture, job.copies, job.title); });
    return TaskControl::isCurrentCancelled()               ? PrintResult::Cancelled
           : !fault                                        ? PrintResult::Saved
           : fault->kind == ReplaceFailure::Kind::DiskFull ? PrintResult::NoRoom
                                                           : PrintResult::NotWritable;
}

PrintResult print(const PrintJob &job, const PrinterPaper &paper, const PrintPages &pages, const QImage &picture,
                  const QString &helper, int timeLimit) {
    for (const QString &place : foldersForAMoment()) {
        QTemporaryFile file(place + "/lumora-XXXXXX.pdf"); // readable by its owner only
        if (file.open() && writePages(file, pages, picture, job.copies, job.title) && file.flush() &&
            file.error() == QFileDevice::NoError) {
            return resultOf(
                sendToPrinter({job.printer, job.title, file.fileName(), paper.size, job.options}, helper, timeLimit));
        }
        if (TaskControl::isCurrentCancelled()) {
            return PrintResult::Cancelled;
        }
    }
    return PrintResult::NoRoom;
}

} // namespace

PrintResult doPrintJob(const PrintJob &job, const QString &helper, int timeLimit) {
    try {
        PrintJob one = job;
        one.copies = std::clamp(job.copies, 1, mostCopies);
        const PrinterPaper paper = paperOf(one, helper, timeLimit);
        const PrintPages pages = layOutPages(paper, one.photo.size(), one.layout);
        const QImage picture = pictureForPages(one.photo, pages, std::min(paper.dotsPerInch, finestPrint));
        if (TaskControl::isCurrentCancelled()) {
            return PrintResult::Cancelled;
        }
        if (picture.isNull()) {
            return PrintResult::NoMemory;
        }
        return one.pdfFile.isEmpty() ? print(one, paper, pages, picture, helper, timeLimit)
                                     : writeFile(one, pages, picture);
    } catch (const std::bad_alloc &) {
        return PrintResult::NoMemory;
    }
}

} // namespace lumora
