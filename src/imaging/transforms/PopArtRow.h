// The pop-art row: four prints of a photo side by side, each in two colours of its own.
#pragma once

#include "imaging/effects/PopArt.h"

#include <QImage>
#include <array>

namespace lumora {

using PopArtPairs = std::array<PopArtColours, 4>;

/// Width of the longest row in pixels: what a JPEG file holds, and less than any other format that can be large.
inline constexpr int longestPopArtRow = 65'500;

/// The size of one print in the row of a photo: half its sides, rounded up, so that the row has as many pixels as the
/// photo; less where the row would be wider than longestPopArtRow or larger than maxPicturePixels. Empty for an empty
/// size.
QSize popArtPrintSize(QSize photo);

/// The row. The prints' levels come from the photo itself (see popArtLevels); what is finer than a 480th of a print is
/// smoothed, so that a large photo gets the same shapes as a small one. Alpha stays. A null picture without a photo and
/// when memory is refused.
QImage popArtRow(const QImage &photo, const PopArtPairs &pairs);

} // namespace lumora
