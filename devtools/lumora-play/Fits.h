// Whether everything that the open windows show is in view: for windows on small screens and texts of any length.
#pragma once

#include <QStringList>

namespace lumora::play {

struct Fits {
    QStringList problems;  ///< a control leaves its window, a window the screen, a text is cut without a
                           ///< sign, something to press is too small for a finger
    QStringList shortened; ///< texts that end in an ellipsis and have a tool tip
};

inline constexpr int smallestTarget = 44; ///< pixels a side that take a finger
inline constexpr int simpleTarget = 64;   ///< the same in Simple mode

/// Looks at each control of the open windows. What can be scrolled to is in view. What is to be pressed is a problem
/// when it is smaller than `target`, but for what Fits.cpp lists, on a screen of 800 x 600 or more.
Fits lookWhatFits(int target = smallestTarget);

} // namespace lumora::play
