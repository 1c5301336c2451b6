#include "imaging/effects/Mosaic.h"

#include "imaging/kernels/BlockMean.h"
#include "imaging/kernels/ColumnSums.h"
#include "imaging/kernels/RowBands.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

namespace lumora {

namespace {

// Up to this height the sums of a column of bytes fit in 32 bits.
constexpr int tallestTile = 1 << 24;

/// The mean pixel from sums of its columns, all of them opaque.
void meanOfColumns(const std::uint32_t *totals, int columns, int rows, std::uint8_t *mean) {
    std::array<std::uint64_t, 3> sum{};
    for (int x = 0; x < columns; ++x, totals += 4) {
        for (std::size_t c = 0; c < 3; ++c) {
            sum[c] += totals[c];
        }
    }
    const std::uint64_t count = std::uint64_t(columns) * std::uint64_t(rows);
    for (std::size_t c = 0; c < 3; ++c) {
        mean[c] = static_cast<std::uint8_t>((sum[c] + count / 2) / count);
    }
    mean[3] = 255;
}

/// The borders of the tiles along one side that touch begin to end - 1, first and last included.
std::vector<int> tileBorders(double tile, int length, int begin, int end) {
    tile = std::clamp(tile, 1.0, static_cast<double>(length));
    const auto border = [&](std::int64_t n) {
        return static_cast<int>(std::min<std::int64_t>(std::llround(static_cast<double>(n) * tile), length));
    };
    auto n = static_cast<std::int64_t>(begin / tile);
    while (border(n) > begin) {
        --n;
    }
    std::vector<int> borders;
    while (borders.empty() || borders.back() < end) {
        if (border(n + 1) > begin) {
            borders.push_back(border(n));
        }
        ++n;
    }
    return borders;
}

/// Writes the part of one row of tiles that is inside the area.
void fillTileRow(ConstPixelView source, PixelView target, PixelRect tiles, const std::vector<int> &columns,
                 PixelRect area, bool opaque, std::vector<std::uint32_t> &totals) {
    const bool bySums = opaque && tiles.height() <= tallestTile;
    if (bySums) {
        sumColumns(source.row(tiles.top) + std::ptrdiff_t(4) * tiles.left, source.stride, {1, tiles.height() - 1, 1, 0},
                   totals.data(), std::size_t(tiles.width()) * 4);
    }
    const int firstRow = std::max(tiles.top, area.top);
    auto *to = reinterpret_cast<std::uint32_t *>(target.row(firstRow));
    for (std::size_t i = 1; i < columns.size(); ++i) {
        const PixelRect tile{columns[i - 1], tiles.top, columns[i], tiles.bottom};
        std::uint32_t mean = 0;
        std::uint8_t bytes[4];
        if (bySums) {
            meanOfColumns(totals.data() + std::ptrdiff_t(4) * (tile.left - tiles.left), tile.width(), tile.height(),
                          bytes);
        } else {
            meanOfBlock(source, tile, bytes);
        }
        std::memcpy(&mean, bytes, sizeof mean);
        std::fill(to + std::max(tile.left, area.left), to + std::min(tile.right, area.right), mean);
    }
    const std::ptrdiff_t begin = std::ptrdiff_t(4) * area.left;
    for (int y = firstRow + 1; y < std::min(tiles.bottom, area.bottom); ++y) {
        std::memcpy(target.row(y) + begin, target.row(firstRow) + begin, std::size_t(area.width()) * 4);
    }
}

} // namespace

void applyMosaic(const Mosaic &parameters, ConstPixelView source, PixelView target, PixelRect area, bool opaque) {
    const std::vector<int> columns = tileBorders(parameters.tileWidth, source.width, area.left, area.right);
    const std::vector<int> rows = tileBorders(parameters.tileHeight, source.height, area.top, area.bottom);
    const auto rowsOfTiles = static_cast<int>(rows.size()) - 1;
    forRowBands(rowsOfTiles, std::int64_t(area.width()) * area.height() / rowsOfTiles, [&](int first, int end) {
        std::vector<std::uint32_t> totals(std::size_t(columns.back() - columns.front()) * 4);
        for (auto i = static_cast<std::size_t>(first); i < static_cast<std::size_t>(end); ++i) {
            const PixelRect tiles{columns.front(), rows[i], columns.back(), rows[i + 1]};
            fillTileRow(source, target, tiles, columns, area, opaque, totals);
        }
    });
}

} // namespace lumora
