#include "imaging/effects/Mosaic.h"

#include "imaging/kernels/BlockMean.h"
#include "imaging/kernels/ColumnSums.h"
#include "imaging/kernels/RowBands.h"

#include <array>
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

/// Writes the part of one row of tiles that is inside the area.
void fillTileRow(ConstPixelView source, PixelView target, PixelRect tiles, int tileWidth, PixelRect area, bool opaque,
                 std::vector<std::uint32_t> &totals) {
    const bool bySums = opaque && tiles.height() <= tallestTile;
    if (bySums) {
        sumColumns(source.row(tiles.top) + std::ptrdiff_t(4) * tiles.left, source.stride, {1, tiles.height() - 1, 1, 0},
                   totals.data(), std::size_t(tiles.width()) * 4);
    }
    const int firstRow = std::max(tiles.top, area.top);
    auto *to = reinterpret_cast<std::uint32_t *>(target.row(firstRow));
    for (int x = tiles.left; x < tiles.right; x += tileWidth) {
        const PixelRect tile{x, tiles.top, std::min(x + tileWidth, tiles.right), tiles.bottom};
        std::uint32_t mean = 0;
        std::uint8_t bytes[4];
        if (bySums) {
            meanOfColumns(totals.data() + std::ptrdiff_t(4) * (x - tiles.left), tile.width(), tile.height(), bytes);
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
    const int tileWidth = std::clamp(parameters.tileWidth, 1, source.width);
    const int tileHeight = std::clamp(parameters.tileHeight, 1, source.height);
    // Whole tiles around the area; 64 bits, as the last tile may end beyond the largest integer.
    const int left = area.left / tileWidth * tileWidth;
    const auto right = std::int64_t((area.right - 1) / tileWidth + 1) * tileWidth;
    const int firstTile = area.top / tileHeight;
    const int endTile = (area.bottom - 1) / tileHeight + 1;
    const auto columnEnd = static_cast<int>(std::min<std::int64_t>(right, source.width));
    forRowBands(endTile - firstTile, std::int64_t(area.width()) * tileHeight, [&](int first, int end) {
        std::vector<std::uint32_t> totals(std::size_t(columnEnd - left) * 4);
        for (int tile = firstTile + first; tile < firstTile + end; ++tile) {
            const int top = tile * tileHeight;
            const int bottom = static_cast<int>(std::min<std::int64_t>(std::int64_t(top) + tileHeight, source.height));
            fillTileRow(source, target, {left, top, columnEnd, bottom}, tileWidth, area, opaque, totals);
        }
    });
}

} // namespace lumora
