// Scales pictures down and up.
#pragma once

#include <QImage>

namespace lumora {

/// The picture reduced to width x height pixels, each result pixel the average of all source pixels that it covers
/// (alpha-weighted where the picture is not opaque). Sizes from 1 to the picture's own size; a null picture otherwise.
QImage scaleByAveraging(const QImage &picture, int width, int height);

/// The picture at any size from 1 x 1 to maxPicturePixels, proportions as asked for. A side that gets half as long or
/// shorter is averaged as above; else it is scaled by cubic convolution (see transforms/Resample.h), which keeps detail
/// sharp in pictures that grow or shrink a little. Colours are weighted with alpha. For the picture's own size the
/// picture itself is returned, shared; a null picture for sizes below 1, for a null picture and when memory allocation
/// fails.
QImage scaled(const QImage &picture, int width, int height);

/// The picture at 1/factor of its size (factor 2, 4, 8, 16; rounded up, the last blocks cut short): the mip levels that
/// the view paints from. A null picture for another factor.
QImage boxReduced(const QImage &picture, int factor);

} // namespace lumora
