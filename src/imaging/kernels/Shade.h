// Pixels drawn towards a grey, each by its own share: what texture, tiles and reflections are made of.
#pragma once

#include "imaging/Region.h"

#include <functional>
#include <vector>

namespace lumora {

/// The low half is a factor from 0 to 256, the high half what is added, in 1 / 256 of a level. A channel becomes
/// (level * factor + added + 128) / 256, which must not exceed 255; alpha is kept.
using Shade = std::uint32_t;

inline constexpr Shade noShade = 256;

/// Draws towards `grey` (0 to 255) by `share` of 256.
constexpr Shade shadeTowards(int grey, int share) {
    return static_cast<Shade>(256 - share) | static_cast<Shade>(grey * share) << 16;
}

/// to = from with one shade for each pixel. `nonTemporal` as in PointOperation-inl.h.
void shadePixels(const std::uint32_t *from, std::uint32_t *to, const Shade *shades, int count, bool nonTemporal);

/// Shades that repeat from left to right every `period` pixels, in a number of rows.
class ShadePattern {
  public:
    /// Throws std::bad_alloc when memory is refused.
    ShadePattern(int period, int rows);

    /// Sets the shade of every column x with x % period == column. 0 <= column < period.
    void set(int row, int column, Shade shade);
    const Shade *row(int y) const { return m_shades.data() + std::size_t(y) * m_length; }
    /// The columns that are held: a multiple of the period, enough for a run that is worth its start.
    int length() const { return static_cast<int>(m_length); }

  private:
    std::size_t m_period;
    std::size_t m_length;
    std::vector<Shade> m_shades;
};

/// Shades row y of the area with row rowOf(y) of the pattern, the pattern's column 0 at the picture's.
void applyPattern(const ShadePattern &pattern, const std::function<int(int y)> &rowOf, ConstPixelView source,
                  PixelView target, PixelRect area);

} // namespace lumora
