// How the samples of a TIFF page become pixels: all depths, palettes, inverted greys, separate planes, both alphas.
#pragma once

#include "imaging/files/Colour.h"
#include "imaging/files/DeepColour.h"
#include "imaging/files/TiffFile.h"

#include <array>
#include <cstdint>
#include <vector>

namespace lumora {

class TiffSamples {
  public:
    explicit TiffSamples(const TiffFile &file);

    /// False for what only libtiff's own conversion can make pixels of (YCbCr outside JPEG and the like).
    bool isPlain() const { return m_plain; }
    /// Samples are read as 16 bits: those of more than 8, and CIE L*a*b*.
    bool isDeep() const { return m_deep; }
    bool hasAlpha() const { return m_alphaSample >= 0; }
    /// The file does not say what the sample after the colours is; taken as alpha, unless it is 0 everywhere.
    bool isAlphaGuessed() const { return m_guessedAlpha; }
    /// The colours have been multiplied by alpha.
    bool isMultiplied() const { return m_multiplied; }
    Channels channels() const { return m_channels; }
    DeepChannels deepChannels() const { return m_deepChannels; }
    int planes() const { return m_separate ? m_usedSamples : 1; }

    /// Turns the samples of `width` pixels of a plane (0 when they are not apart) into bytes of the pixels at `to`.
    void place(const std::uint8_t *raw, int width, int plane, std::uint8_t *to) const;
    /// The same for deep samples: four of 16 bits a pixel, as DeepColour takes them, or four inks. Alpha is left as it
    /// is where there is none, colours as multiplied as they are.
    void placeDeep(const std::uint8_t *raw, int width, int plane, std::uint16_t *to) const;

  private:
    void takeColours(int photometric, const TiffFile &file);
    void takeAlpha(const TiffFile &file);
    void placeSample(const std::uint8_t *values, int step, int width, int sample, std::uint8_t *to) const;
    void placeDeepSample(const std::uint16_t *values, int step, int width, int sample, std::uint16_t *to) const;
    std::uint16_t labValue(int sample, std::uint16_t value) const;
    void readPalette(const TiffFile &file);

    bool m_plain = false;
    bool m_deep = false;
    bool m_separate = false;
    bool m_inverted = false;
    bool m_multiplied = false;
    bool m_guessedAlpha = false;
    bool m_palette = false;
    bool m_labOffset = false; ///< a* and b* are stored with an offset, as in ICC profiles
    int m_bits = 0;
    int m_format = SAMPLEFORMAT_UINT;
    int m_samples = 1;
    int m_usedSamples = 1; ///< those up to the last that is shown
    int m_colours = 0;     ///< samples that are colours; 0 where they are not known here
    int m_alphaSample = -1;
    Channels m_channels = Channels::Bgra;
    DeepChannels m_deepChannels = DeepChannels::Rgb;
    std::vector<std::array<std::uint16_t, 3>> m_colourTable;
};

/// Divides the colours of a pixel (alpha last) by its alpha; a wholly transparent one becomes 0.
void divideByAlpha(std::uint8_t *pixel);
void divideByAlpha(std::uint16_t *pixel);

} // namespace lumora
