// Scaling by cubic convolution: what photos are enlarged with, and made a little smaller. Called by Scale.cpp and the
// frame overlay.
#pragma once

#include "imaging/PixelView.h"

#include <cstdint>
#include <vector>

namespace lumora {

/// Along one axis: for each result pixel the first source pixel and `count` weights, in 16384ths.
struct CubicTaps {
    /// For a side that is scaled from `source` to `target` pixels.
    CubicTaps(int source, int target);

    int count;
    std::vector<int> first; ///< never less than the one before
    std::vector<std::int32_t> weights;
};

/// A picture scaled to width x height pixels, computed in pieces of rows. Cubic convolution along each axis (R. Keys,
/// IEEE Trans. ASSP 29, 1981, a = -1/2), widened by the ratio where a side gets smaller; beyond the border the
/// outermost pixel is repeated. Weights are whole 16384ths, levels between the axes have six bits after the point,
/// results are rounded and cut to 0 to 255. Colours are multiplied by alpha, which is 255 in opaque pictures. Making
/// one throws std::bad_alloc when memory for the weights is refused; then any number of threads may use it.
class Resampler {
  public:
    Resampler(ConstPixelView source, int width, int height);

    const CubicTaps &across() const { return m_across; }
    const CubicTaps &down() const { return m_down; }
    /// 16-bit work space that a thread passes to writeRow.
    std::size_t rowMemory() const { return (std::size_t(m_source.width) + 1) * 4; }

    /// Pixels `begin` to `end` - 1 of row y to `to`, the first of them first.
    void writeRow(int y, int begin, int end, std::uint8_t *to, std::int16_t *memory) const;

  private:
    ConstPixelView m_source;
    CubicTaps m_across;
    CubicTaps m_down;
    int m_pairs;                              ///< of weights across, for each pixel
    std::vector<std::uint32_t> m_weightPairs; ///< two 16-bit weights each; the last may have none beside it
};

/// Fills the target with the scaled source, on all processors. Throws std::bad_alloc when memory is refused.
void resample(ConstPixelView source, PixelView target);

} // namespace lumora
