#include "imaging/effects/Reflection.h"

#include "imaging/kernels/PartOf.h"
#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Premultiply.h"
#include "imaging/kernels/ScratchPicture.h"
#include "imaging/kernels/Shade.h"
#include "imaging/transforms/Resample.h"

#include <cmath>
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

/// The layout of a style that keeps the photo's size. Columns from `mirror` on are the ones before it in reverse order.
struct Layout {
    std::vector<MirrorRow> rows;
    int mirror;
};

constexpr int shadesOfRow = 2048; // a multiple that fits in the L1 cache

constexpr double smaller = .78;      // of a side that a photo with its whole mirror image gets
constexpr double free = .03;         // of a side: the white at the end opposite the mirror image
constexpr double nearest = .45;      // the share of white where the mirror image begins; at its end it is 1
constexpr double contact = .38;      // of the light that is lost at the mirror
constexpr double contactDepth = .04; // of the mirror image's depth: where two thirds of that light are back

/// The mirror image at `distance` pixels from the mirror, of `depth` altogether.
Shade mirroredAt(int distance, int depth) {
    const double far = (distance + .5) / depth;
    const double white = std::min(1.0, nearest + (1 - nearest) * 1.1 * far);
    const double light = 1 - contact * std::exp(-far / contactDepth) * (1 - far);
    const auto share = [](double value) { return static_cast<Shade>(std::lround(256 * value)); };
    return share((1 - white) * light) | share(white * light) * 255 << 16;
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

Layout waterLayout(int width, int height) {
    const int line = half(height);
    const auto wave = [&](int distance, MirrorRow row) {
        // Waves grow wider and longer towards the viewer.
        const double near = double(distance + 1) / (height - line);
        row.shift = int(std::lround(width * 0.012 * near * std::sin(28 * std::numbers::pi * std::sqrt(near))));
        row.shade = shadeTowards(24, 56 + int(40 * near));
        return row;
    };
    return {mirroredRows(height, line, wave), width};
}

Layout fourWaysLayout(int width, int height) {
    return {mirroredRows(height, half(height), unchanged), half(width)};
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

void reflectInPlace(const Layout &layout, ConstPixelView source, PixelView target, PixelRect area) {
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
            if (rowShades.front() != row.shade) {
                std::ranges::fill(rowShades, row.shade);
            }
            for (int x = band.left; x < band.right; x += shadesOfRow) {
                shadePixels(from + x, to + x, rowShades.data(), std::min(shadesOfRow, band.right - x), nonTemporal);
            }
        }
    });
}

/// The photo made smaller, on white. Its view is empty when memory is refused.
ScratchPicture smallerPhoto(ConstPixelView source, int width, int height, bool opaque) {
    ScratchPicture result(width, height);
    const ScratchPicture weighted(opaque ? 0 : source.width, opaque ? 0 : source.height);
    if (result.view().isEmpty() || (!opaque && weighted.view().isEmpty())) {
        return {0, 0};
    }
    if (opaque) {
        resample(source, result.view());
        return result;
    }
    premultiply(source, weighted.view());
    resample(readOnly(weighted.view()), result.view());
    forBands(wholeOf(result.view()), [&](PixelRect band) {
        for (int y = band.top; y < band.bottom; ++y) {
            std::uint8_t *pixel = result.view().row(y);
            for (int x = 0; x < width; ++x, pixel += 4) {
                for (int c = 0; c < 3; ++c) {
                    pixel[c] = static_cast<std::uint8_t>(std::min(pixel[c] + 255 - pixel[3], 255));
                }
                pixel[3] = 255;
            }
        }
    });
    return result;
}

/// The whole photo with its mirror image below it, or to the right of it.
bool reflectWhole(bool below, ConstPixelView source, PixelView target, PixelRect area, bool opaque) {
    const auto part = [](int length, double share) { return static_cast<int>(std::lround(length * share)); };
    const int width = std::max(1, part(source.width, smaller));
    const int height = std::max(1, part(source.height, smaller));
    const int left = below ? (source.width - width) / 2 : std::min(part(source.width, free), source.width - width);
    const int top = below ? std::min(part(source.height, free), source.height - height) : (source.height - height) / 2;
    const int line = below ? top + height : left + width; // the first of the mirror image
    const int depth = (below ? source.height : source.width) - line;
    const int end = below ? left + width : source.width; // of the columns that are not white
    const ScratchPicture scratch = smallerPhoto(source, width, height, opaque);
    const PixelView photo = scratch.view();
    if (photo.isEmpty()) {
        return false;
    }
    std::vector<Shade> besideShades(std::size_t(end - left), noShade);
    for (int x = line; !below && x < end; ++x) {
        besideShades[std::size_t(x - left)] = mirroredAt(x - line, depth);
    }
    forBands(area, [&](PixelRect band) {
        std::vector<std::uint32_t> row(std::size_t(source.width), 0xFFFFFFFFU);
        std::vector<Shade> shades = besideShades;
        for (int y = band.top; y < band.bottom; ++y) {
            auto *to = reinterpret_cast<std::uint32_t *>(target.row(y));
            const int from = below && y >= line ? 2 * line - 1 - y - top : y - top;
            if (from < 0 || from >= height) {
                std::fill(to + band.left, to + band.right, 0xFFFFFFFFU);
                continue;
            }
            const auto *pixels = reinterpret_cast<const std::uint32_t *>(photo.row(from));
            std::copy(pixels, pixels + width, row.data() + left);
            if (!below) {
                std::reverse_copy(pixels + width - (end - line), pixels + width, row.data() + line);
            } else if (y >= line) {
                std::ranges::fill(shades, mirroredAt(y - line, depth));
            }
            shadePixels(row.data() + left, row.data() + left, shades.data(), end - left, false);
            std::copy(row.data() + band.left, row.data() + band.right, to + band.left);
        }
    });
    return true;
}

} // namespace

bool applyReflection(const Reflection &parameters, ConstPixelView source, PixelView target, PixelRect area,
                     bool opaque) {
    switch (static_cast<ReflectionStyle>(parameters.style)) {
    case ReflectionStyle::Table:
        return reflectWhole(true, source, target, area, opaque);
    case ReflectionStyle::Water:
        reflectInPlace(waterLayout(source.width, source.height), source, target, area);
        return true;
    case ReflectionStyle::Beside:
        return reflectWhole(false, source, target, area, opaque);
    case ReflectionStyle::FourWays:
        reflectInPlace(fourWaysLayout(source.width, source.height), source, target, area);
        return true;
    }
    return false;
}

} // namespace lumora
