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

} // namespace

double millimetreOn(const PrinterPaper &paper) {
    const double side = std::min(paper.size.width(), paper.size.height());
    return std::min(pointsPerMillimetre, side / leastSide);
}

LargestPhoto largestPhoto(const PrinterPaper &paper, QSize photo,
                          const std::function<QSizeF(const LyingSheet &)> &roomOn) {
    LargestPhoto best;
    for (const LyingSheet &sheet : waysToLie(paper, photo)) {
        const QSizeF size = QSizeF(photo).scaled(roomOn(sheet), Qt::KeepAspectRatio);
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
    Decoration words{.kind = Decoration::Kind::Words,
                     .row = letteringRow(QLatin1StringView(style)),
                     .text = text,
                     .centre = box.center(),
                     .size = lineHeight,
                     .angle = angle,
                     .speaker = {}};
    const QRectF extent = shapeOf(words).box;
    words.size *= std::min({1.0, box.width() / extent.width(), box.height() / extent.height()});
    page.decorations.push_back(words);
}

void addLine(QPainterPath &path, QPointF from, QPointF to) {
    path.moveTo(from);
    path.lineTo(to);
}

} // namespace lumora
