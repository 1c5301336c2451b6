// The poster over four sheets.
#include "output/print/crafts/CraftPages.h"

#include <algorithm>

namespace lumora {

namespace {

constexpr int posterSheets = 4;
constexpr double overlap = 10;     // millimetres that two sheets both show: for the glue
constexpr double markBand = 6;     // millimetres round a part, for its marks and its number
constexpr double markGap = 1;      // millimetres between a part and its marks
constexpr double markLength = 4;   // millimetres
constexpr double glueLine = 0.3;   // millimetres: just so far beyond the dashed line that the next sheet covers it
constexpr double dash = 2;         // millimetres
constexpr double numberLine = 4.5; // millimetres

struct Poster {
    LyingSheet sheet;
    int columns = 2, rows = 2;
    QSizeF photo; ///< over all sheets
};

/// Two by two, or four in a row where that makes the photo larger.
Poster largestPoster(const PrinterPaper &paper, QSize photo, double millimetre) {
    Poster best;
    const double band = 2 * markBand * millimetre;
    for (const int columns : {2, 4, 1}) {
        const int rows = posterSheets / columns;
        const auto room = [&](const LyingSheet &sheet) {
            const QSizeF part = sheet.inside.size() - QSizeF(band, band);
            return QSizeF(columns * part.width() - (columns - 1) * overlap * millimetre,
                          rows * part.height() - (rows - 1) * overlap * millimetre);
        };
        const LargestPhoto one = largestPhoto(paper, photo, room);
        if (one.photo.width() > best.photo.width() * 1.000001) {
            best = {one.sheet, columns, rows, one.photo};
        }
    }
    return best;
}

/// Two short lines outside each corner.
void addMarks(QPainterPath &path, const QRectF &part, double millimetre) {
    const double from = markGap * millimetre;
    const double to = from + markLength * millimetre;
    for (const double x : {part.left(), part.right()}) {
        for (const double y : {part.top(), part.bottom()}) {
            const double left = x == part.left() ? -1 : 1;
            const double up = y == part.top() ? -1 : 1;
            addLine(path, {x + left * from, y}, {x + left * to, y});
            addLine(path, {x, y + up * from}, {x, y + up * to});
        }
    }
}

void addDashes(QPainterPath &path, QPointF from, QPointF to, double length) {
    const QLineF line(from, to);
    for (double at = 0; at + length <= line.length(); at += 2 * length) {
        addLine(path, line.pointAt(at / line.length()), line.pointAt((at + length) / line.length()));
    }
}

} // namespace

PrintPages layOutPoster(const PrinterPaper &paper, QSize photo, const CraftContent &content) {
    const double millimetre = millimetreOn(paper);
    const Poster poster = largestPoster(paper, photo, millimetre);
    const double shared = overlap * millimetre;
    const QSizeF part((poster.photo.width() + (poster.columns - 1) * shared) / poster.columns,
                      (poster.photo.height() + (poster.rows - 1) * shared) / poster.rows);
    QRectF place({}, part);
    place.moveCenter(poster.sheet.inside.center());
    PrintPages pages;
    pages.columns = poster.columns;
    for (int i = 0; i < posterSheets; ++i) {
        const int column = i % poster.columns;
        const int row = i / poster.columns;
        PrintPage page{.size = poster.sheet.size};
        page.pieces << PrintPiece{place,
                                  {column * (part.width() - shared) / poster.photo.width(),
                                   row * (part.height() - shared) / poster.photo.height(),
                                   part.width() / poster.photo.width(), part.height() / poster.photo.height()}};
        addMarks(page.marks, place, millimetre);
        const double glue = shared - glueLine * millimetre;
        if (column + 1 < poster.columns) {
            const double x = place.right() - glue;
            addDashes(page.cuts, {x, place.top()}, {x, place.bottom()}, dash * millimetre);
        }
        if (row + 1 < poster.rows) {
            const double y = place.bottom() - glue;
            addDashes(page.cuts, {place.left(), y}, {place.right(), y}, dash * millimetre);
        }
        const double below = place.bottom() + (markBand - numberLine) / 2 * millimetre;
        const double beside = (markGap + markLength) * millimetre;
        addWords(page, content.words.value(0).arg(i + 1).arg(posterSheets), "plain",
                 {place.left() - beside, below, place.width() + 2 * beside, numberLine * millimetre},
                 numberLine * millimetre);
        pages.sheets << page;
    }
    return pages;
}

} // namespace lumora
