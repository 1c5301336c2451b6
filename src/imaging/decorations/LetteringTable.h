// The lettering styles: one row each. All letters are the program's own font, bold.
#pragma once

#include <QColor>
#include <span>

namespace lumora {

struct LetteringRow {
    const char *name; ///< of its button
    const char *text; ///< identifier of what it is called
    enum class Course { Straight, Arch, Wave } course = Course::Straight;
    QColor fill;
    QColor line;                    ///< around each letter
    double lineWidth = 0;           ///< outside the letter, in parts of a line's height
    QColor block = Qt::transparent; ///< what stands behind the letters, a little lower
    double blockDepth = 0;          ///< in parts of a line's height
};

std::span<const LetteringRow> letterings();

} // namespace lumora
