#include "devices/PrintSystem.h"

#include "base/TaskControl.h"

#include <QLocale>
#include <algorithm>

namespace lumora {

namespace {

constexpr qreal widestMargin = 28; // points; a centimetre, which every printer can keep

/// The line of lumora-devices; nothing where it is missing or makes no sense.
std::optional<PrinterPaper> parsedPaper(const QByteArray &output) {
    for (const QByteArray &line : output.split('\n')) {
        const QList<QByteArray> fields = line.split('\t');
        if (fields.size() != 8 || fields[0] != "paper") {
            continue;
        }
        const auto number = [&fields](int i) { return fields[i].toDouble(); };
        const PrinterPaper paper{{number(1), number(2)},
                                 {number(3), number(4), number(5), number(6)},
                                 std::clamp(fields[7].toInt(), 72, 2400)};
        const QMarginsF &margins = paper.margins;
        const bool positive = std::min({margins.left(), margins.top(), margins.right(), margins.bottom()}) >= 0;
        if (positive && paper.size.width() > margins.left() + margins.right() &&
            paper.size.height() > margins.top() + margins.bottom()) {
            return paper;
        }
    }
    return std::nullopt;
}

PrintAnswer parsedAnswer(const QByteArray &output) {
    const struct {
        const char *line;
        PrintAnswer answer;
    } rows[] = {{"sent", PrintAnswer::Sent},
                {"waiting", PrintAnswer::Waiting},
                {"missing", PrintAnswer::NoPrinter},
                {"refused", PrintAnswer::Refused}};
    const QList<QByteArray> lines = output.split('\n');
    for (const auto &[line, answer] : rows) {
        if (lines.contains(line)) {
            return answer;
        }
    }
    return PrintAnswer::NoAnswer;
}

} // namespace

PrinterPaper standardPaper() {
    const bool inches = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
    const QMarginsF margins(widestMargin, widestMargin, widestMargin, widestMargin);
    return {inches ? QSizeF(612, 792) : QSizeF(595.28, 841.89), margins, 300};
}

std::optional<PrinterPaper> askForPaper(const QString &printer, const QString &helper, int timeLimit) {
    return parsedPaper(outputOfHelper(helper, {"paper", printer}, timeLimit));
}

PaperSearch::PaperSearch(const QString &helper, QObject *parent) : QObject(parent), m_helper(helper) {}

void PaperSearch::start(const QString &printer) {
    m_run = std::make_unique<HelperRun>(m_helper);
    connect(m_run.get(), &HelperRun::finished, this, [this](const QByteArray &output) {
        if (const auto paper = parsedPaper(output)) {
            Q_EMIT found(*paper);
        }
    });
    m_run->start({"paper", printer}, paperLimit);
}

PrintAnswer sendToPrinter(const PrintDocument &document, const QString &helper, int timeLimit) {
    const QStringList arguments = QStringList{"print",
                                              document.printer,
                                              document.title,
                                              document.file,
                                              QString::number(document.paper.width()),
                                              QString::number(document.paper.height())} +
                                  document.options;
    const PrintAnswer answer = parsedAnswer(outputOfHelper(helper, arguments, timeLimit));
    return answer == PrintAnswer::NoAnswer && TaskControl::isCurrentCancelled() ? PrintAnswer::Cancelled : answer;
}

} // namespace lumora
