// From samples of 16 bits to sRGB pixels of 8: colours are converted before they are cut, so that no levels are lost in
// the shadows of linear and other pictures. Used by the readers of PNG and TIFF, row by row.
#pragma once

#include <QByteArray>
#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace lumora {

/// A sample of 16 bits in 8, rounded.
inline std::uint8_t rounded8(std::uint16_t value) {
    return static_cast<std::uint8_t>((value + 128) / 257);
}

/// What four 16-bit samples mean; the last is alpha in each.
enum class DeepChannels {
    Rgb,  ///< red, green, blue
    Grey, ///< the grey value three times
    Lab,  ///< CIE L*a*b* relative to the picture's own white: L* of 0 to 100 as 0 to 65535, a* and b* as 256 a* + 32768
};

class DeepColour {
  public:
    /// With the embedded profile, which is ignored when it is empty, for other channels or cannot be used; without
    /// one, RGB and grey are sRGB.
    DeepColour(DeepChannels channels, const QByteArray &profile);
    ~DeepColour();
    DeepColour(const DeepColour &) = delete;
    DeepColour &operator=(const DeepColour &) = delete;

    /// `width` pixels of four samples to pixels of blue, green, red, alpha.
    void convert(const std::uint16_t *from, int width, std::uint8_t *to) const;

  private:
    using Matrix = std::array<std::array<float, 3>, 3>;
    enum class Way { Cut, Levels, Matrices, Lab, Transform };

    void takeGrey(void *profile);
    bool takeMatrix(void *profile);
    void takeTransform(void *profile);
    void makeEncoding();
    void writeLinear(float red, float green, float blue, std::uint8_t *to) const;

    Way m_way = Way::Cut;
    std::vector<std::uint8_t> m_levels;         ///< the byte of each grey value
    std::array<std::vector<float>, 3> m_linear; ///< the light of each value of red, green and blue
    Matrix m_toLinearSrgb{};                    ///< from the profile's light, or from XYZ
    std::vector<std::uint8_t> m_encoded;        ///< sRGB bytes of linear light in 65535ths
    std::unique_ptr<void, void (*)(void *)> m_transform;
};

} // namespace lumora
