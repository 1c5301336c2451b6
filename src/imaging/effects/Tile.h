// Tile: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Tile {
    int width = 100; ///< pixels; clamped to 1 and to the picture
    int height = 100;
};

/// The picture on a wall of glazed tiles: light joints around every tile, and slanted edges that are lit from the upper
/// left. Joints take a 48th of the tile's shorter side on each of its sides, edges a 16th; tiles under 16 pixels have
/// no effect. Tiles start at the upper left corner; the last ones are cut short. Alpha is kept. Source and target
/// have equal size and contain area. Throws std::bad_alloc when memory for the pattern (at most a quarter of the
/// picture's) cannot be allocated.
void applyTile(const Tile &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
