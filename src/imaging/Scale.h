// Making pictures smaller and larger.
#pragma once

#include <QImage>

namespace lumora {

/// The picture reduced to width x height pixels, each result pixel the average of all source pixels that it covers
/// (alpha-weighted where the picture is not opaque). Sizes from 1 to the picture's own size; a null picture otherwise.
QImage scaleByAveraging(const QImage &picture, int width, int height);

/// The picture at 1/factor of its size (factor 2, 4, 8, 16; rounded up, the last blocks cut short): the levels that
/// the view paints from. A null picture for another factor.
QImage boxReduced(const QImage &picture, int factor);

} // namespace lumora
