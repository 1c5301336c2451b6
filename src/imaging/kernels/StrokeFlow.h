// Where the strokes of the oil painting run: the directions that are in a picture, and the noise of the bristles.
#pragma once

#include "imaging/PixelView.h"

namespace lumora {

/// The direction along which the picture changes least, at each pixel: blue and green are the cosine and the sine of
/// the doubled angle, times the strength of the contrast there, + 128; red is that strength (the structure tensor of Di
/// Zenzo with compressed contrasts). Where nothing in the picture says it, directions change slowly with the place,
/// which is counted from `left` and `top`. Both pictures have one size.
void flowOf(ConstPixelView picture, PixelView flow, int left, int top);

/// Sets alpha to what, smeared along the strokes, gives bristles lit from the upper left: random heights at the points
/// of a lattice of that many pixels, less their neighbours', -127 to 127.
void addNoise(PixelView flow, int left, int top, double cell);

} // namespace lumora
