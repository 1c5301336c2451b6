#include "output/print/crafts/CraftPages.h"

#include "imaging/decorations/Decoration.h"
#include "imaging/decorations/LetteringTable.h"

#include <algorithm>

namespace lumora {

namespace {

constexpr double leastSide = 100; // millimetres

int letteringRow(QLatin1StringView style) {
    const auto rows = letterings();
    const auto found =
        std::ranges::find(rows, style, [](const LetteringRow &row) { return QLatin1StringView(row.name); });
    return found != rows.end() ? static_cast<int>(found - rows.begin()) : 0;
}

/// How far the letters with all that stands behind them reach from their centre.
QSizeF reachOf(const DecorationShape &shape) {
    QRectF extent = shape.box;
    for (const DecorationLayer &layer : shape.layers) {
        const double line = layer.lineWidth / 2;
        extent |= layer.path.boundingRect().adjusted(-line, -line, line, line);
    }
    return {std::max(-extent.left(), extent.right()), std::max(-extent.top(), extent.bottom())};
}

/// The words in one line, and in two wherever there is a blank.
QStringList lineBreaks(const QString &text) {
    QStringList ways{text};
    for (qsizetype i = text.indexOf(' '); i >= 0; i = text.indexOf(' ', i + 1)) {
        ways << QString(text).replace(i, 1, '\n');
    }
    return ways;
}

} // namespace

double millimetreOn(const PrinterPaper &paper) {
    const double side = std::min(paper.size.width(), paper.size.height());
    return std::min(pointsPerMillimetre, side / leastSide);
}

LargestPhoto largestPhoto(const PrinterPaper &paper, QSize photo,
                          const std::function<QSizeF(const LyingSheet &)> &roomOn) {
    LargestPhoto best;
    for (const LyingSheet &sheet : waysToLie(paper, photo)) {
        const QSizeF room = roomOn(sheet).expandedTo({1, 1}); // whatever margins a printer tells
        const QSizeF size = QSizeF(photo).scaled(room, Qt::KeepAspectRatio);
        if (size.width() > best.photo.width() * 1.000001) {
            best = {sheet, size};
        }
    }
    return best;
}

void addWords(PrintPage &page, const QString &text, const char *style, const QRectF &box, double lineHeight,
              double angle) {
    if (text.isEmpty()) {
        return;
    }
    Decoration best;
    for (const QString &lines : lineBreaks(text)) {
        Decoration words{.kind = Decoration::Kind::Words,
                         .row = letteringRow(QLatin1StringView(style)),
                         .text = lines,
                         .centre = box.center(),
                         .size = lineHeight,
                         .angle = angle,
                         .speaker = {}};
        const QSizeF reach = 2 * reachOf(shapeOf(words));
        words.size *= std::min({1.0, box.width() / reach.width(), box.height() / reach.height()});
        if (words.size > best.size * 1.1) { // one line where that is not much smaller
            best = words;
        }
    }
    page.decorations.push_back(best);
}

void addLine(QPainterPath &path, QPointF from, QPointF to) {
    path.moveTo(from);
    path.lineTo(to);
}

} // namespace lumora
