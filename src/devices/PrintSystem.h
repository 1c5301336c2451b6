// Printers as Lumora sees them: the paper that one holds, and handing it a document. Both are done by the helper
// program lumora-devices, because a print system may take long to answer or not answer at all.
#pragma once

#include "devices/HelperRun.h"

#include <QMarginsF>
#include <QSizeF>
#include <QStringList>
#include <memory>
#include <optional>

namespace lumora {

/// The sheets of a printer, in points (72 to the inch), as they lie in the printer: nearly always upright.
struct PrinterPaper {
    QSizeF size;
    QMarginsF margins; ///< what the printer leaves white
    int dotsPerInch = 300;

    bool operator==(const PrinterPaper &) const = default;
};

inline constexpr int paperLimit = 20'000; ///< milliseconds that a printer may take to tell its paper

/// A sheet that needs no printer: A4, or Letter where people measure in inches, with margins that every printer can
/// keep.
PrinterPaper standardPaper();

/// Asks for the paper of that printer (an empty name: the system's default printer) and waits: for threads without
/// windows. Nothing when the printer does not say so within `timeLimit` milliseconds.
std::optional<PrinterPaper> askForPaper(const QString &printer, const QString &helper = {}, int timeLimit = paperLimit);

/// Looks for the paper of a printer in the background.
class PaperSearch : public QObject {
    Q_OBJECT

  public:
    /// `helper` as HelperRun takes it.
    explicit PaperSearch(const QString &helper = {}, QObject *parent = nullptr);

    /// Starts looking for the paper of that printer, as askForPaper(), and returns at once; drops what was looked for
    /// before.
    void start(const QString &printer);
    /// Drops it without an answer.
    void stop() { m_run.reset(); }

  Q_SIGNALS:
    /// Never before start() returns, and not when the printer does not say.
    void found(const lumora::PrinterPaper &paper);

  private:
    QString m_helper;
    std::unique_ptr<HelperRun> m_run;
};

enum class PrintAnswer {
    Sent,      ///< the print system has taken the document
    Waiting,   ///< the same, but the printer is stopped, not reachable, or needs paper or ink
    NoPrinter, ///< there is no printer of that name, or none at all
    Refused,   ///< it takes no documents now
    NoAnswer,  ///< no print system, or one that does not answer in time
    Cancelled, ///< the current task was cancelled meanwhile; nothing is printed
};

struct PrintDocument {
    QString printer; ///< empty: the system's default printer
    QString title;
    QString file;          ///< a PDF file whose pages have the paper's size
    QSizeF paper;          ///< in points
    QStringList options{}; ///< further options of the print system, NAME=VALUE
};

/// Hands a document to a printer and waits for the answer: for threads without windows. `timeLimit` in milliseconds.
PrintAnswer sendToPrinter(const PrintDocument &document, const QString &helper = {}, int timeLimit = 30'000);

} // namespace lumora
