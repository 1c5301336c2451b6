#include "imaging/files/PaletteDither.h"

#include "imaging/kernels/Workers.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <tbb/parallel_for.h>

namespace lumora {

namespace {

constexpr int channelsOfPixel = 3;

// A pixel is a vector of four numbers (an extension of GCC and Clang): blue, green, red and nothing.
constexpr int lanes = 4;
using PixelLanes = std::int32_t __attribute__((vector_size(lanes * sizeof(std::int32_t))));

PixelLanes load(const std::int32_t *from) {
    PixelLanes pixel;
    std::memcpy(&pixel, from, sizeof pixel);
    return pixel;
}

void store(const PixelLanes &pixel, std::int32_t *to) {
    std::memcpy(to, &pixel, sizeof pixel);
}

int square(int value) {
    return value * value;
}

} // namespace

PaletteDither::PaletteDither(std::vector<PaletteColour> colours, int transparent)
    : m_colours(std::move(colours)), m_transparent(transparent),
      m_nearest(std::size_t{1} << (channelsOfPixel * cellBits)) {
    fillNearest();
    for (const PaletteColour &colour : m_colours) {
        m_lanes.insert(m_lanes.end(), {colour.blue, colour.green, colour.red, 0});
    }
}

/// For each block of 8 x 8 x 8 cells only those colours are compared that can be the nearest of one of them: the
/// farthest corner of the block is nearer to the best than its nearest point is to all the others.
void PaletteDither::fillNearest() {
    constexpr int cellSide = 1 << (8 - cellBits);
    constexpr int blockCells = 8;
    constexpr int blockSide = blockCells * cellSide;
    constexpr int blocks = 256 / blockSide;
    prepareWorkers();
    tbb::parallel_for(0, blocks * blocks * blocks, [this](int block) {
        const int low[channelsOfPixel] = {block / (blocks * blocks) * blockSide, block / blocks % blocks * blockSide,
                                          block % blocks * blockSide};
        std::vector<int> nearestOf(m_colours.size());
        int bound = std::numeric_limits<int>::max();
        for (std::size_t i = 0; i < m_colours.size(); ++i) {
            const int colour[channelsOfPixel] = {m_colours[i].red, m_colours[i].green, m_colours[i].blue};
            int farthest = 0;
            for (int c = 0; c < channelsOfPixel; ++c) {
                const int high = low[c] + blockSide - 1;
                nearestOf[i] += square(std::max({low[c] - colour[c], colour[c] - high, 0}));
                farthest += square(std::max(std::abs(colour[c] - low[c]), std::abs(colour[c] - high)));
            }
            bound = std::min(bound, farthest);
        }
        std::vector<int> candidates;
        for (std::size_t i = 0; i < m_colours.size(); ++i) {
            if (nearestOf[i] <= bound) {
                candidates.push_back(static_cast<int>(i));
            }
        }
        for (int cell = 0; cell < blockCells * blockCells * blockCells; ++cell) {
            const int red = low[0] + cell / (blockCells * blockCells) * cellSide + cellSide / 2;
            const int green = low[1] + cell / blockCells % blockCells * cellSide + cellSide / 2;
            const int blue = low[2] + cell % blockCells * cellSide + cellSide / 2;
            int best = candidates.front();
            int least = std::numeric_limits<int>::max();
            for (const int i : candidates) {
                const PaletteColour &colour = m_colours[static_cast<std::size_t>(i)];
                const int distance =
                    square(colour.red - red) + square(colour.green - green) + square(colour.blue - blue);
                if (distance < least) {
                    least = distance;
                    best = i;
                }
            }
            const std::size_t at = static_cast<std::size_t>(red / cellSide) << (2 * cellBits) |
                                   static_cast<std::size_t>(green / cellSide) << cellBits |
                                   static_cast<std::size_t>(blue / cellSide);
            m_nearest[at] = static_cast<std::uint8_t>(best);
        }
    });
}

/// A row on its way through the picture, small enough to be kept in registers. What a pixel hands on (in sixteenths:
/// seven to the next pixel, three, five and one to those below) is written once a pixel of the next row has all of it.
struct PaletteDither::Row {
    const std::uint8_t *nearest;
    const std::int32_t *colours;
    int transparent;
    const std::uint8_t *pixels;
    std::uint8_t *indices;
    const std::int32_t *above; ///< errors for this row and for the next one, a pixel more at both ends
    std::int32_t *below;
    std::ptrdiff_t step;
    std::ptrdiff_t x;
    PixelLanes ahead = {};  ///< for the next pixel
    PixelLanes under = {};  ///< for the pixel below the latest one
    PixelLanes before = {}; ///< for the pixel below the next one

    void next() {
        const std::uint8_t *pixel = pixels + 4 * x;
        PixelLanes wanted = {pixel[0], pixel[1], pixel[2], 0};
        wanted += (ahead + load(above + lanes * (x + 1)) + 8) >> 4;
        wanted = wanted < 0 ? 0 : wanted;
        wanted = wanted > 255 ? 255 : wanted;
        const PixelLanes cells = wanted >> (8 - cellBits);
        std::uint8_t index =
            nearest[static_cast<std::size_t>(cells[2] << (2 * cellBits) | cells[1] << cellBits | cells[0])];
        PixelLanes error = wanted - load(colours + static_cast<std::size_t>(index) * lanes);
        if (transparent >= 0 && pixel[3] < seeThroughBelow) {
            index = static_cast<std::uint8_t>(transparent);
            error = PixelLanes{};
        }
        indices[x] = index;
        const PixelLanes twice = error + error;
        const PixelLanes thrice = twice + error;
        ahead = twice + twice + thrice;
        store(under + thrice, below + lanes * (x + 1 - step));
        under = before + twice + thrice;
        before = error;
        x += step;
    }
};

/// Rows mapped one after the other, and the errors between them.
class PaletteDither::Part {
  public:
    /// The indices of the rows go to `to`; those of the rows before them are dropped.
    Part(const PaletteDither &dither, const ConstPixelView &view, int firstRow, int endRow, std::uint8_t *to)
        : m_dither(dither), m_view(view), m_firstRow(firstRow), m_endRow(endRow),
          m_next(std::max(0, firstRow - rowsBefore)), m_to(to), m_dropped(static_cast<std::size_t>(view.width)),
          m_above((static_cast<std::size_t>(view.width) + 2) * lanes), m_below(m_above.size()) {}

    bool isDone() const { return m_next >= m_endRow; }

    Row nextRow() {
        const int row = m_next++;
        const std::size_t width = m_dropped.size();
        const bool forwards = row % 2 == 0;
        return {m_dither.m_nearest.data(),
                m_dither.m_lanes.data(),
                m_dither.m_transparent,
                m_view.row(row),
                row < m_firstRow ? m_dropped.data() : m_to + static_cast<std::size_t>(row - m_firstRow) * width,
                m_above.data(),
                m_below.data(),
                forwards ? 1 : -1,
                forwards ? 0 : m_view.width - 1};
    }

    void take(const Row &done) {
        // The last pixel has nobody behind the end to take its share.
        store(done.under, done.below + lanes * (done.x + 1 - done.step));
        std::swap(m_above, m_below);
    }

  private:
    static constexpr int rowsBefore = 8; ///< after these the errors are what they are anywhere in the picture

    const PaletteDither &m_dither;
    const ConstPixelView m_view;
    const int m_firstRow;
    const int m_endRow;
    int m_next;
    std::uint8_t *m_to;
    std::vector<std::uint8_t> m_dropped;
    std::vector<std::int32_t> m_above;
    std::vector<std::int32_t> m_below;
};

/// Each pixel waits for the one before it; two halves that take turns keep the processor busy.
std::vector<std::uint8_t> PaletteDither::rows(const ConstPixelView &view, int firstRow, int endRow) const {
    const auto width = static_cast<std::size_t>(view.width);
    std::vector<std::uint8_t> indices(width * static_cast<std::size_t>(endRow - firstRow));
    const int middle = firstRow + (endRow - firstRow) / 2;
    Part upper(*this, view, firstRow, middle, indices.data());
    Part lower(*this, view, middle, endRow, indices.data() + static_cast<std::size_t>(middle - firstRow) * width);
    while (!upper.isDone() && !lower.isDone()) {
        Row one = upper.nextRow();
        Row other = lower.nextRow();
        for (std::size_t x = 0; x < width; ++x) {
            one.next();
            other.next();
        }
        upper.take(one);
        lower.take(other);
    }
    for (Part *part : {&upper, &lower}) {
        while (!part->isDone()) {
            Row alone = part->nextRow();
            for (std::size_t x = 0; x < width; ++x) {
                alone.next();
            }
            part->take(alone);
        }
    }
    return indices;
}

} // namespace lumora
