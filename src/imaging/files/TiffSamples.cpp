#include "imaging/files/TiffSamples.h"

#include "imaging/files/DeepColour.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace lumora {

namespace {

constexpr int mostPaletteColours = 65536; // of a palette

template <typename Value, typename Convert>
void convert(const std::uint8_t *raw, int count, std::uint16_t *to, Convert convertOne) {
    for (int i = 0; i < count; ++i) {
        Value value;
        std::memcpy(&value, raw + i * sizeof(Value), sizeof(Value));
        to[i] = convertOne(value);
    }
}

std::uint16_t fromUnit(double value) {
    return static_cast<std::uint16_t>(std::lround(std::clamp(std::isnan(value) ? 0.0 : value, 0.0, 1.0) * 65535));
}

// The bits of a floating-point number with `exponent` and `mantissa` bits below its sign; IEEE 754 has halves (5, 10),
// TIFF also 24 bits (7, 16).
double floatOf(std::uint32_t bits, int exponent, int mantissa) {
    const int biased = static_cast<int>(bits >> mantissa & ((1U << exponent) - 1));
    const auto fraction = static_cast<double>(bits & ((1U << mantissa) - 1)) / (1U << mantissa);
    const int bias = (1 << (exponent - 1)) - 1;
    const double size = biased == 0                     ? std::ldexp(fraction, 1 - bias)
                        : biased == (1 << exponent) - 1 ? std::numeric_limits<double>::infinity()
                                                        : std::ldexp(1 + fraction, biased - bias);
    return (bits >> (exponent + mantissa) & 1U) != 0 ? -size : size;
}

// Bits one after the other, the highest first.
class Bits {
  public:
    explicit Bits(const std::uint8_t *raw) : m_raw(raw) {}
    std::uint32_t next(int count) {
        std::uint32_t value = 0;
        while (count > 0) {
            const int taken = std::min(count, 8 - m_bit);
            value = value << taken | (*m_raw >> (8 - m_bit - taken) & ((1U << taken) - 1));
            m_bit += taken;
            count -= taken;
            if (m_bit == 8) {
                m_bit = 0;
                ++m_raw;
            }
        }
        return value;
    }

  private:
    const std::uint8_t *m_raw;
    int m_bit = 0;
};

std::uint32_t threeBytes(const std::uint8_t *raw) { // libtiff has brought them into this machine's order
    return std::endian::native == std::endian::little ? raw[0] | raw[1] << 8U | raw[2] << 16U
                                                      : raw[2] | raw[1] << 8U | raw[0] << 16U;
}

struct Depth {
    int bits;
    int format;
    bool spread; ///< to the whole range; palettes need them unchanged
};

void floatsToDeep(const std::uint8_t *raw, int count, int bits, std::uint16_t *to) {
    if (bits == 16) {
        convert<std::uint16_t>(raw, count, to, [](std::uint16_t value) { return fromUnit(floatOf(value, 5, 10)); });
    } else if (bits == 24) {
        for (int i = 0; i < count; ++i) {
            to[i] = fromUnit(floatOf(threeBytes(raw + i * 3), 7, 16));
        }
    } else if (bits == 32) {
        convert<float>(raw, count, to, [](float value) { return fromUnit(value); });
    } else {
        convert<double>(raw, count, to, fromUnit);
    }
}

// Signed numbers come out with the smallest as 0.
void toDeep(const std::uint8_t *raw, int count, Depth depth, std::uint16_t *to) {
    const std::uint16_t sign = depth.format == SAMPLEFORMAT_INT ? 0x8000 : 0;
    const int bits = depth.bits;
    if (depth.format == SAMPLEFORMAT_IEEEFP) {
        floatsToDeep(raw, count, bits, to);
    } else if (bits == 16) {
        convert<std::uint16_t>(raw, count, to, [sign](std::uint16_t value) { return std::uint16_t(value ^ sign); });
    } else if (bits == 32) {
        convert<std::uint32_t>(raw, count, to,
                               [sign](std::uint32_t value) { return std::uint16_t(value >> 16 ^ sign); });
    } else if (bits == 64) {
        convert<std::uint64_t>(raw, count, to,
                               [sign](std::uint64_t value) { return std::uint16_t(value >> 48 ^ sign); });
    } else if (bits == 24) {
        for (int i = 0; i < count; ++i) {
            to[i] = static_cast<std::uint16_t>(threeBytes(raw + i * 3) >> 8 ^ sign);
        }
    } else {
        Bits stream(raw);
        const std::uint64_t most = (std::uint64_t{1} << bits) - 1;
        const std::uint32_t flip = sign != 0 ? 1U << (bits - 1) : 0;
        for (int i = 0; i < count; ++i) {
            const std::uint64_t value = stream.next(bits) ^ flip;
            to[i] = static_cast<std::uint16_t>(depth.spread ? (value * 65535 + most / 2) / most : value);
        }
    }
}

void toBytes(const std::uint8_t *raw, int count, Depth depth, std::uint8_t *to) {
    const bool isSigned = depth.format == SAMPLEFORMAT_INT;
    if (depth.bits == 8) {
        for (int i = 0; i < count; ++i) {
            to[i] = static_cast<std::uint8_t>(raw[i] ^ (isSigned ? 0x80 : 0));
        }
        return;
    }
    Bits stream(raw);
    const std::uint32_t most = (1U << depth.bits) - 1;
    const std::uint32_t flip = isSigned ? 1U << (depth.bits - 1) : 0;
    for (int i = 0; i < count; ++i) {
        const std::uint32_t value = stream.next(depth.bits) ^ flip;
        to[i] = static_cast<std::uint8_t>(depth.spread ? (value * 255 + most / 2) / most : value);
    }
}

bool isKnownDepth(int bits, int format) {
    if (format == SAMPLEFORMAT_IEEEFP) {
        return bits == 16 || bits == 24 || bits == 32 || bits == 64;
    }
    const bool counts = format == SAMPLEFORMAT_UINT || format == SAMPLEFORMAT_VOID || format == SAMPLEFORMAT_INT;
    return counts && ((bits >= 1 && bits <= 32) || bits == 64);
}

// What the file says of its colours, or what they are likely to be where it says nothing.
int photometricOf(const TiffFile &file, int samples) {
    uint16_t photometric = 0;
    if (TIFFGetField(file.handle(), TIFFTAG_PHOTOMETRIC, &photometric) == 1) {
        return photometric;
    }
    const uint16_t *columns[3] = {};
    if (samples == 1 && TIFFGetField(file.handle(), TIFFTAG_COLORMAP, &columns[0], &columns[1], &columns[2]) == 1) {
        return PHOTOMETRIC_PALETTE;
    }
    const int compression = file.field<uint16_t>(TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    if (compression >= COMPRESSION_CCITTRLE && compression <= COMPRESSION_CCITTFAX4) {
        return PHOTOMETRIC_MINISWHITE; // as faxes are
    }
    return samples >= 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK;
}

template <typename Value> void divide(Value *pixel, Value most) {
    const unsigned alpha = pixel[3];
    for (int channel = 0; channel < 3 && alpha < most; ++channel) {
        pixel[channel] = static_cast<Value>(
            alpha == 0 ? 0 : std::min<unsigned>(most, (pixel[channel] * unsigned{most} + alpha / 2) / alpha));
    }
}

} // namespace

void divideByAlpha(std::uint8_t *pixel) {
    divide<std::uint8_t>(pixel, 255);
}

void divideByAlpha(std::uint16_t *pixel) {
    divide<std::uint16_t>(pixel, 65535);
}

TiffSamples::TiffSamples(const TiffFile &file) {
    m_bits = file.field<uint16_t>(TIFFTAG_BITSPERSAMPLE, 1);
    m_format = file.field<uint16_t>(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    m_samples = file.field<uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1);
    m_separate =
        m_samples > 1 && file.field<uint16_t>(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE;
    int photometric = photometricOf(file, m_samples);
    if (photometric == PHOTOMETRIC_YCBCR && file.field<uint16_t>(TIFFTAG_COMPRESSION, 1) == COMPRESSION_JPEG &&
        !m_separate) {
        TIFFSetField(file.handle(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        photometric = PHOTOMETRIC_RGB;
    }
    takeColours(photometric, file);
    if (m_colours == 0 || m_samples < m_colours || !isKnownDepth(m_bits, m_format)) {
        return;
    }
    takeAlpha(file);
    m_usedSamples = hasAlpha() ? m_colours + 1 : m_colours;
    m_deep = m_bits > 8 || m_deepChannels == DeepChannels::Lab;
    m_plain = true;
}

void TiffSamples::takeColours(int photometric, const TiffFile &file) {
    switch (photometric) {
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_MINISBLACK:
        m_channels = Channels::Grey;
        m_deepChannels = DeepChannels::Grey;
        m_inverted = photometric == PHOTOMETRIC_MINISWHITE;
        m_colours = 1;
        break;
    case PHOTOMETRIC_PALETTE:
        readPalette(file);
        m_colours = m_palette ? 1 : 0;
        break;
    case PHOTOMETRIC_RGB:
        m_colours = 3;
        break;
    case PHOTOMETRIC_SEPARATED:
        m_channels = Channels::Cmyk;
        m_colours = 4;
        break;
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_ICCLAB:
        if (m_format != SAMPLEFORMAT_IEEEFP && (m_bits == 8 || m_bits == 16)) {
            m_deepChannels = DeepChannels::Lab;
            m_labOffset = photometric == PHOTOMETRIC_ICCLAB;
            m_format = SAMPLEFORMAT_UINT; // labValue knows which are signed
            m_colours = 3;
        }
        break;
    default:
        break;
    }
}

void TiffSamples::takeAlpha(const TiffFile &file) {
    if (m_channels == Channels::Cmyk || m_samples <= m_colours) {
        return;
    }
    uint16_t extras = 0;
    const uint16_t *kinds = nullptr;
    const bool isSaid = TIFFGetField(file.handle(), TIFFTAG_EXTRASAMPLES, &extras, &kinds) == 1 && extras > 0 && kinds;
    m_guessedAlpha = !isSaid && m_samples == m_colours + 1;
    if (m_guessedAlpha || (isSaid && kinds[0] != EXTRASAMPLE_UNSPECIFIED)) {
        m_alphaSample = m_colours;
        m_multiplied = isSaid && kinds[0] == EXTRASAMPLE_ASSOCALPHA && !m_palette;
    }
}

void TiffSamples::readPalette(const TiffFile &file) {
    const uint16_t *columns[3] = {};
    if (m_bits > 16 || TIFFGetField(file.handle(), TIFFTAG_COLORMAP, &columns[0], &columns[1], &columns[2]) != 1) {
        return;
    }
    m_palette = true;
    const int count = 1 << m_bits;
    bool wide = false; // some writers give 8 bits in place of 16
    for (int i = 0; i < count * 3; ++i) {
        wide = wide || columns[i % 3][i / 3] > 255;
    }
    m_colourTable.resize(m_bits <= 8 ? 256 : mostPaletteColours);
    for (int i = 0; i < count; ++i) {
        for (int colour = 0; colour < 3; ++colour) {
            const int value = columns[colour][i];
            m_colourTable[i][colour] = static_cast<std::uint16_t>(wide ? value : value * 257);
        }
    }
}

void TiffSamples::placeSample(const std::uint8_t *values, int step, int width, int sample, std::uint8_t *to) const {
    if (sample == m_alphaSample) {
        for (int x = 0; x < width; ++x) {
            to[x * 4 + 3] = values[x * step];
        }
    } else if (m_palette) {
        for (int x = 0; x < width; ++x) {
            const auto &colour = m_colourTable[values[x * step]];
            to[x * 4] = rounded8(colour[2]);
            to[x * 4 + 1] = rounded8(colour[1]);
            to[x * 4 + 2] = rounded8(colour[0]);
        }
    } else if (m_colours == 1) {
        const int flip = m_inverted ? 255 : 0;
        for (int x = 0; x < width; ++x) {
            const auto grey = static_cast<std::uint8_t>(values[x * step] ^ flip);
            to[x * 4] = to[x * 4 + 1] = to[x * 4 + 2] = grey;
        }
    } else {
        const int byte = m_channels == Channels::Cmyk ? sample : 2 - sample;
        for (int x = 0; x < width; ++x) {
            to[x * 4 + byte] = values[x * step];
        }
    }
}

void TiffSamples::place(const std::uint8_t *raw, int width, int plane, std::uint8_t *to) const {
    const int step = m_separate ? 1 : m_samples;
    std::vector<std::uint8_t> values(static_cast<std::size_t>(width) * step);
    toBytes(raw, width * step, {m_bits, m_format, !m_palette}, values.data());
    if (m_separate) {
        placeSample(values.data(), 1, width, plane, to);
        return;
    }
    for (int sample = 0; sample < m_usedSamples; ++sample) {
        placeSample(values.data() + sample, step, width, sample, to);
    }
}

// TIFF 6.0, section 23, and its supplement for Photoshop: CIE L*a*b* has signed a* and b*, the ICC's an offset of 128,
// and as its L* of 100 at 16 bits the value 0xFF00.
std::uint16_t TiffSamples::labValue(int sample, std::uint16_t value) const {
    if (m_bits == 8) {
        const int byte = value / 257;
        return static_cast<std::uint16_t>(sample == 0 ? value : (m_labOffset ? byte : byte ^ 0x80) << 8);
    }
    if (sample == 0) {
        return static_cast<std::uint16_t>(m_labOffset ? std::min(65535U, value * 65535U / 0xFF00) : value);
    }
    return static_cast<std::uint16_t>(m_labOffset ? value : value ^ 0x8000);
}

void TiffSamples::placeDeepSample(const std::uint16_t *values, int step, int width, int sample,
                                  std::uint16_t *to) const {
    const bool isLab = m_deepChannels == DeepChannels::Lab && sample != m_alphaSample;
    const std::uint16_t flip = m_inverted ? 65535 : 0;
    for (int x = 0; x < width; ++x, to += 4, values += step) {
        if (sample == m_alphaSample) {
            to[3] = *values;
        } else if (m_palette) {
            std::copy_n(m_colourTable[*values].data(), 3, to);
        } else if (m_colours == 1) {
            to[0] = to[1] = to[2] = *values ^ flip;
        } else {
            to[sample] = isLab ? labValue(sample, *values) : *values;
        }
    }
}

void TiffSamples::placeDeep(const std::uint8_t *raw, int width, int plane, std::uint16_t *to) const {
    const int step = m_separate ? 1 : m_samples;
    std::vector<std::uint16_t> values(static_cast<std::size_t>(width) * step);
    toDeep(raw, width * step, {m_bits, m_format, !m_palette}, values.data());
    if (m_separate) {
        placeDeepSample(values.data(), 1, width, plane, to);
        return;
    }
    for (int sample = 0; sample < m_usedSamples; ++sample) {
        placeDeepSample(values.data() + sample, step, width, sample, to);
    }
}

} // namespace lumora
