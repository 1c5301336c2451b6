// Hair, fur and feathers: strokes drawn over a marched picture, each in the light of the place where it grows.
#pragma once

#include "Film.h"

namespace lumora::samples {

/// Draws the scene's strands on its film, and notes their distance there.
void growStrands(const Scene &scene, Film &film);

} // namespace lumora::samples
