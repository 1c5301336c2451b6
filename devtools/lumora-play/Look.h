// What a picture looks like, small enough to keep beside a script: the whole of it, reduced, and a detail as it is.
#pragma once

#include <QImage>

namespace lumora::play {

/// The whole picture in at most 48 x 48 pixels, beside it 48 x 48 pixels from left of its middle and below, where
/// photos have more to show than in their sky. Remembers the picture's size.
QImage lookOf(const QImage &picture);

/// How the two looks differ, in words; nothing when they show the same: the same size, a mean difference of at most
/// half a step of 255, no pixel of the whole and few of the detail (one in 50 of all) off by more than 12. So much is
/// left to processors, which round differently, and to libraries that draw edges in their own way.
QString difference(const QImage &look, const QImage &expected);

} // namespace lumora::play
