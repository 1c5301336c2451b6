// Words as outlines that can be drawn at any size. Qt shapes them, so letters that join, scripts from the right and
// letters of other fonts come out right; a line is bent as one outline, never letter by letter.
#pragma once

#include "imaging/decorations/LetteringTable.h"

#include <QPainterPath>
#include <QRectF>
#include <QString>

namespace lumora {

/// Lines one below the other, each centred.
struct WordPath {
    QPainterPath path; ///< winding fill
    QRectF box;        ///< of the lines with their whole height; its centre is at (0, 0)
};

/// The words in bold letters, with lines of that height, broken where they are wider than `mostWidth` (in line heights;
/// words are never cut) and at each line feed. All lengths in the unit of `lineHeight`. Empty words give one empty line
/// of three line heights.
WordPath wordPath(const QString &text, double lineHeight, double mostWidth);

/// The same outlines on an arch that rises in the middle, or on a wave; its box is again centred.
WordPath bentWords(const WordPath &words, double lineHeight, LetteringRow::Course course);

/// The line length at which the words become a compact block, half as wide again as high; in line heights.
double compactWidth(const QString &text);

} // namespace lumora
