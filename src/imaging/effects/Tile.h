// Tile: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct Tile {
    int across = 5; ///< how many tiles; clamped to 1 and to the picture's width
    int down = 5;
    double unit = 1; ///< pixels; joints are at least that wide
};

/// The picture on a wall of glazed tiles: light joints around every tile, and slanted edges that are lit from the upper
/// left. The sides are divided into equal tiles; where they do not divide, some tiles are a pixel longer. Joints take a
/// 48th of the tile's shorter side, a unit at least, on each of its sides, edges a 16th; both shrink in tiles of a few
/// pixels, so that something of the picture remains. Alpha is kept. Source and target have equal size and contain area.
/// Throws std::bad_alloc when memory for the shades of a row cannot be allocated.
void applyTile(const Tile &parameters, ConstPixelView source, PixelView target, PixelRect area);

} // namespace lumora
