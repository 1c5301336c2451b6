// Whether everything that the open windows show is in view: for windows on small screens and texts of any length.
#pragma once

#include <QStringList>

namespace lumora::play {

struct Fits {
    QStringList problems;  ///< a control leaves its window, a window the screen, a text is cut without a sign
    QStringList shortened; ///< texts that end in an ellipsis and have a tool tip
};

/// Looks at each control of the open windows. What can be scrolled to is in view.
Fits lookWhatFits();

} // namespace lumora::play
