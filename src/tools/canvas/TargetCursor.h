// The pointers of the tools on the photo: the pictures of picTarget as cursors.
#pragma once

#include <QCursor>

namespace lumora {

/// Picture `image` of picTarget as a cursor: 1 arrow, 2 colour-picking, 3 cross for marking, 4 lasso, 5 ready, 6
/// red-eye. Sharp at that device pixel ratio; the same object each time. The system's arrow for another number.
QCursor targetCursor(int image, qreal devicePixelRatio);

} // namespace lumora
