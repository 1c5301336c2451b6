// The pages of the paper crafts: one function each, and what they share. Pure computation; all lengths are in points.
#pragma once

#include "output/print/PageLayout.h"

#include <functional>

namespace lumora {

/// One sheet that is folded twice and is then a card: first the upper half to the back, then the left half to the back.
/// The lower right quarter is its front with the whole photo, the upper two are the inside and stand on their heads.
/// Where people read from the right, left and right are changed over.
/// Words: the greeting inside, and what stands above the line for the maker's name on the back.
PrintPages layOutCard(const PrinterPaper &paper, QSize photo, const CraftContent &content);

/// The whole photo as large as it gets over four sheets, two by two, or four in a row where it is long. Each shows an
/// equal part that repeats 10 mm of the next one's, marks to cut at, and outside of them its number. A later sheet is
/// glued on an earlier one; a dashed line, which it covers, shows where. Words: "%1 of %2".
PrintPages layOutPoster(const PrinterPaper &paper, QSize photo, const CraftContent &content);

/// Twelve equal square cards, each detail on two of them.
PrintPages layOutMemory(const PrinterPaper &paper, QSize photo, const CraftContent &content);

/// The whole photo, with lines that cut it into twelve pieces that hold each other.
PrintPages layOutPuzzle(const PrinterPaper &paper, QSize photo, const CraftContent &content);

/// A millimetre; less on paper whose shorter side has no 100 of them, so that all that is measured in it has room.
double millimetreOn(const PrinterPaper &paper);

/// The way to lie in which the photo gets largest in the room that `roomOn` says there is on the sheet.
struct LargestPhoto {
    LyingSheet sheet;
    QSizeF photo;
};
LargestPhoto largestPhoto(const PrinterPaper &paper, QSize photo,
                          const std::function<QSizeF(const LyingSheet &)> &roomOn);

/// Adds words in the middle of the box, in one line or two, as large as it has room for but no line higher than
/// `lineHeight`. `style` is
/// the name of a row of letterings(). Nothing for an empty text.
void addWords(PrintPage &page, const QString &text, const char *style, const QRectF &box, double lineHeight,
              double angle = 0);

/// Adds a straight line.
void addLine(QPainterPath &path, QPointF from, QPointF to);

/// The lines between the pieces of a jigsaw puzzle of that area, without its edge: each piece has one knob or one
/// hollow at each of its inner sides, always in the same places.
QPainterPath jigsawLines(const QRectF &area, int columns, int rows);

} // namespace lumora
