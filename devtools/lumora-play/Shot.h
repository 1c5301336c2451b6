// A picture of the screen as the program fills it.
#pragma once

#include <QImage>
#include <QRect>

namespace lumora::play {

class Hand;

/// All open windows in their places, the oldest at the bottom, on a picture of the screen's size. Only the program's
/// own windows are in it, on every platform alike, and the pointer of the hand where there is one.
QImage takeShot(const Hand *hand = nullptr);

/// The part of such a picture that shows this place of the screen (logical pixels).
QImage partOf(const QImage &shot, QRect place);

} // namespace lumora::play
