#include "imaging/effects/Reflection.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Shade.h"

#include <cmath>
#include <iterator>
#include <numbers>
#include <vector>

namespace lumora {

namespace {

/// The content of one row of the result.
struct MirrorRow {
    int from;      ///< the row of the source
    int shift = 0; ///< pixels to the right, the outermost one repeated
    Shade shade = noShade;
};

/// The layout of a style. Columns from `mirror` on are the ones before it in reverse order.
struct Layout {
    std::vector<MirrorRow> rows;
    int mirror;
    std::vector<Shade> columnShades; ///< of all columns; empty: the row's shade is used
};

constexpr int shadesOfRow = 2048; // a multiple that fits in the L1 cache
constexpr int nearest = 96; ///< the share of white at the mirror's edge, of 256; at the picture's border it is 256

/// Fades to white with the distance from the mirror.
Shade fadeAt(int distance, int depth) {
    return shadeTowards(255, nearest + (256 - nearest) * (distance + 1) / depth);
}

/// The part of a length that stays when about two thirds, or half, of it do.
int twoThirds(int length) {
    return (2 * length + 2) / 3;
}

int half(int length) {
    return (length + 1) / 2;
}

/// Every row down to `line` is kept; below it the rows above follow in reverse order, modified by `change`.
template <typename Change> std::vector<MirrorRow> mirroredRows(int height, int line, const Change &change) {
    std::vector<MirrorRow> rows;
    rows.reserve(static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        rows.push_back(y < line ? MirrorRow{y} : change(y - line, MirrorRow{2 * line - 1 - y}));
    }
    return rows;
}

MirrorRow unchanged(int /*distance*/, MirrorRow row) {
    return row;
}

Layout tableLayout(int width, int height) {
    const int line = twoThirds(height);
    const auto fade = [&](int distance, MirrorRow row) {
        row.shade = fadeAt(distance, height - line);
        return row;
    };
    return {mirroredRows(height, line, fade), width, {}};
}

Layout waterLayout(int width, int height) {
    const int line = half(height);
    const auto wave = [&](int distance, MirrorRow row) {
        // Waves grow wider and longer towards the viewer.
        const double near = double(distance + 1) / (height - line);
        row.shift = int(std::lround(width * 0.012 * near * std::sin(28 * std::numbers::pi * std::sqrt(near))));
        row.shade = shadeTowards(24, 56 + int(40 * near));
        return row;
    };
    return {mirroredRows(height, line, wave), width, {}};
}

Layout besideLayout(int width, int height) {
    const int line = twoThirds(width);
    Layout layout{mirroredRows(height, height, unchanged), line, {}};
    for (int x = 0; x < width; ++x) {
        layout.columnShades.push_back(x < line ? noShade : fadeAt(x - line, width - line));
    }
    return layout;
}

Layout fourWaysLayout(int width, int height) {
    return {mirroredRows(height, half(height), unchanged), half(width), {}};
}

/// A row of the source as distorted by the layout.
void bendRow(const std::uint32_t *from, std::uint32_t *line, int width, int mirror, int shift) {
    for (int x = 0; x < std::min(shift, width); ++x) {
        line[x] = from[0];
    }
    const int begin = std::clamp(shift, 0, width);
    const int end = std::clamp(width + shift, 0, width);
    if (begin < end) {
        std::copy(from + begin - shift, from + end - shift, line + begin);
    }
    std::fill(line + end, line + width, from[width - 1]);
    std::reverse_copy(line + 2 * mirror - width, line + mirror, line + mirror);
}

} // namespace

bool applyReflection(const Reflection &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    Layout (*const layouts[])(int, int) = {tableLayout, waterLayout, besideLayout, fourWaysLayout};
    const int style = parameters.style;
    if (style < 1 || style > int(std::size(layouts))) {
        return false;
    }
    const Layout layout = layouts[style - 1](source.width, source.height);
    const bool nonTemporal = leavesCache(area);
    forBands(area, [&](PixelRect band) {
        std::vector<std::uint32_t> line(std::size_t(source.width));
        std::vector<Shade> rowShades(shadesOfRow, noShade);
        for (int y = band.top; y < band.bottom; ++y) {
            const MirrorRow &row = layout.rows[std::size_t(y)];
            const auto *from = reinterpret_cast<const std::uint32_t *>(source.row(row.from));
            if (row.shift != 0 || layout.mirror < source.width) {
                bendRow(from, line.data(), source.width, layout.mirror, row.shift);
                from = line.data();
            }
            auto *to = reinterpret_cast<std::uint32_t *>(target.row(y));
            if (!layout.columnShades.empty()) {
                shadePixels(from + band.left, to + band.left, layout.columnShades.data() + band.left, band.width(),
                            nonTemporal);
                continue;
            }
            if (rowShades.front() != row.shade) {
                std::ranges::fill(rowShades, row.shade);
            }
            for (int x = band.left; x < band.right; x += shadesOfRow) {
                shadePixels(from + x, to + x, rowShades.data(), std::min(shadesOfRow, band.right - x), nonTemporal);
            }
        }
    });
    return true;
}

} // namespace lumora
