// A picture of the screen as the program fills it.
#pragma once

#include <QImage>

namespace lumora::play {

/// All open windows where they stand, the oldest at the bottom, on a picture of the screen's size. Only the program's
/// own windows are in it, on every platform alike.
QImage takeShot();

} // namespace lumora::play
