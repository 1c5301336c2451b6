// Maps the pixels of a picture to a palette with error diffusion (R. W. Floyd and L. Steinberg, "An adaptive algorithm
// for spatial grey scale", 1976), row by row in alternating directions. Used by the GIF writer, which maps strips of
// rows on all cores.
#pragma once

#include "imaging/PixelView.h"

#include <array>
#include <cstdint>
#include <vector>

namespace lumora {

struct PaletteColour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};

class PaletteDither {
  public:
    /// Below this alpha a pixel becomes the transparent colour.
    static constexpr int seeThroughBelow = 128;

    /// 1 to 256 opaque colours; `transparent` is the index for transparent pixels, not one of them, or -1.
    PaletteDither(std::vector<PaletteColour> colours, int transparent);

    /// Maps the rows; the indices come without gaps. A row's errors come from the rows above it: some of these are
    /// mapped too and dropped, so that parts mapped on their own join without a visible seam, with the same result on
    /// any number of cores.
    std::vector<std::uint8_t> rows(const ConstPixelView &view, int firstRow, int endRow) const;

  private:
    static constexpr int cellBits = 6; ///< of each channel in the table of nearest colours

    struct Row;
    class Part;

    void fillNearest();

    std::vector<PaletteColour> m_colours;
    std::vector<std::int32_t> m_lanes; ///< the colours as they are computed with: blue, green, red, 0
    int m_transparent;
    std::vector<std::uint8_t> m_nearest; ///< by red, green and blue, cellBits each
};

} // namespace lumora
