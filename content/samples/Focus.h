// The blur of a lens that is sharp at one distance only.
#pragma once

#include "Film.h"

namespace lumora::samples {

/// Radius of the disc as which the lens shows a point, as a share of the picture's width.
float blurOf(const Scene &scene, const Place &place);

/// The film as a lens with the scene's aperture sees it; unchanged when the scene's aperture is 0.
Film focused(const Scene &scene, const Film &film);

} // namespace lumora::samples
