// How the samples of a TIFF page become pixels: all depths, palettes, inverted greys, separate planes, both alphas.
#pragma once

#include "imaging/files/Colour.h"
#include "imaging/files/TiffFile.h"

#include <array>
#include <cstdint>
#include <vector>

namespace lumora {

class TiffSamples {
  public:
    explicit TiffSamples(const TiffFile &file);

    /// False for what only libtiff's own conversion can make pixels of (YCbCr outside JPEG, CIE L*a*b* and the like).
    bool isPlain() const { return m_plain; }
    bool hasAlpha() const { return m_alphaSample >= 0; }
    Channels channels() const { return m_channels; }
    int planes() const { return m_separate ? m_usedSamples : 1; }

    /// Turns the samples of `width` pixels of a plane (0 when they are not apart) into bytes of the pixels at `to`.
    void place(const std::uint8_t *raw, int width, int plane, std::uint8_t *to) const;

  private:
    void placeSample(const std::uint8_t *values, int step, int width, int sample, std::uint8_t *to) const;
    void readPalette(const TiffFile &file);

    bool m_plain = false;
    bool m_separate = false;
    bool m_inverted = false;
    bool m_multiplied = false; ///< the colours have been multiplied by alpha
    bool m_palette = false;
    int m_bits = 0;
    int m_format = SAMPLEFORMAT_UINT;
    int m_samples = 1;
    int m_usedSamples = 1; ///< those up to the last that is shown
    int m_colours = 1;
    int m_alphaSample = -1;
    Channels m_channels = Channels::Bgra;
    std::array<std::array<std::uint8_t, 3>, 256> m_colourTable{};
};

/// Divides the colours of a pixel (alpha last) by its alpha; a wholly transparent one becomes 0.
void divideByAlpha(std::uint8_t *pixel);

} // namespace lumora
