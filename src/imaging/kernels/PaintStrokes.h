// The strokes of the oil painting: what each pixel becomes, from the picture and the directions in it.
#pragma once

#include "imaging/PixelView.h"

namespace lumora {

/// The pictures that strokes are painted from, all of one size. What follows their last pixel in memory is read as
/// well: 256 bytes.
struct PaintSource {
    ConstPixelView colours; ///< multiplied by alpha
    ConstPixelView flow;    ///< see StrokeFlow.h: directions, and in alpha the noise of the bristles
};

/// Pixels `left` to `right` - 1 of row y to `to`, the first of them first. A pixel becomes the mean of what is in eight
/// sectors of an ellipse around it, of which those of even colour count most: 29 places of it, whatever its size.
/// `radius`: of the brush, in pixels, at most 16. `relief`: what a level of the sum of the bristles' noise changes.
void paintStrokes(const PaintSource &source, float radius, float relief, int left, int right, int y, std::uint8_t *to);

} // namespace lumora
