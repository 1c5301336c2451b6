// Where two pictures differ: what an undo step has to keep.
#pragma once

#include <QImage>
#include <QRect>

namespace lumora {

/// The smallest rectangle that holds every pixel in which the two pictures differ; empty when they are equal. Both are
/// pictures of the same size and format. Quick when they share their pixels, when all of them differ and when few do.
QRect differingRect(const QImage &a, const QImage &b);

} // namespace lumora
