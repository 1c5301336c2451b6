#include "imaging/effects/Tile.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Shade.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace lumora {

namespace {

constexpr Shade jointShade = shadeTowards(232, 256);
constexpr Shade lightShade = shadeTowards(255, 100);
constexpr Shade darkShade = shadeTowards(0, 90);

/// A place in a tile along one side: how many pixels lie before it in the tile, and after it.
struct Place {
    int before;
    int after;
};

/// Of every pixel of a side of `length` that is divided into `count` tiles.
std::vector<Place> placesInTiles(int length, int count) {
    std::vector<Place> places;
    places.reserve(std::size_t(length));
    const auto border = [&](int tile) { return static_cast<int>(std::int64_t(length) * tile / count); };
    for (int tile = 0; tile < count; ++tile) {
        for (int i = border(tile); i < border(tile + 1); ++i) {
            places.push_back({i - border(tile), border(tile + 1) - 1 - i});
        }
    }
    return places;
}

/// How wide joints and edges are.
struct Profile {
    int joint;
    int edge; ///< where the edge ends, the joint included
};

Profile profileOf(int shorterSide, double unit) {
    const int joint = std::max({shorterSide / 48, static_cast<int>(std::lround(unit)), 1});
    const int most = std::max(1, shorterSide / 6); // of a tile of a few pixels
    return {std::min(joint, most), std::min(joint, most) + std::min(std::max(shorterSide / 16, joint), most)};
}

/// A lit and a dark edge meet along the diagonal of the corner.
Shade shadeAt(Place across, Place down, Profile profile) {
    const int lit = std::min(across.before, down.before);
    const int dark = std::min(across.after, down.after);
    const int distance = std::min(lit, dark);
    if (distance < profile.joint) {
        return jointShade;
    }
    if (distance < profile.edge) {
        return lit <= dark ? lightShade : darkShade;
    }
    return noShade;
}

} // namespace

void applyTile(const Tile &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    const int across = std::clamp(parameters.across, 1, source.width);
    const int down = std::clamp(parameters.down, 1, source.height);
    const Profile profile = profileOf(std::min(source.width / across, source.height / down), parameters.unit);
    const std::vector<Place> columns = placesInTiles(source.width, across);
    const std::vector<Place> rows = placesInTiles(source.height, down);
    const bool nonTemporal = leavesCache(area);
    forBands(area, [&](PixelRect band) {
        std::vector<Shade> shades(std::size_t(source.width));
        Place shown{-1, -1};
        for (int y = band.top; y < band.bottom; ++y) {
            // Rows inside of the edges are alike.
            const Place &row = rows[std::size_t(y)];
            const Place place{std::min(row.before, profile.edge), std::min(row.after, profile.edge)};
            if (place.before != shown.before || place.after != shown.after) {
                shown = place;
                for (int x = band.left; x < band.right; ++x) {
                    shades[std::size_t(x)] = shadeAt(columns[std::size_t(x)], place, profile);
                }
            }
            const auto *from = reinterpret_cast<const std::uint32_t *>(source.row(y));
            shadePixels(from + band.left, reinterpret_cast<std::uint32_t *>(target.row(y)) + band.left,
                        shades.data() + band.left, band.width(), nonTemporal);
        }
    });
}

} // namespace lumora
