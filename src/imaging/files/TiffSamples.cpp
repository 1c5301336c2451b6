#include "imaging/files/TiffSamples.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace lumora {

namespace {

template <typename Value, typename ToByte>
void convert(const std::uint8_t *raw, int count, std::uint8_t *to, ToByte toByte) {
    for (int i = 0; i < count; ++i) {
        Value value;
        std::memcpy(&value, raw + i * sizeof(Value), sizeof(Value));
        to[i] = toByte(value);
    }
}

// `spread` stretches 1, 2 and 4 bits to the whole byte; palettes need them unchanged.
void unpackBits(const std::uint8_t *raw, int count, int bits, bool spread, std::uint8_t *to) {
    const int most = (1 << bits) - 1;
    const int factor = spread ? 255 / most : 1;
    for (int i = 0; i < count; ++i) {
        const int bit = i * bits;
        to[i] = static_cast<std::uint8_t>(((raw[bit / 8] >> (8 - bits - bit % 8)) & most) * factor);
    }
}

std::uint8_t fromUnit(double value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(std::isnan(value) ? 0.0 : value, 0.0, 1.0) * 255));
}

void toBytes(const std::uint8_t *raw, int count, int bits, int format, bool spread, std::uint8_t *to) {
    if (bits < 8) {
        unpackBits(raw, count, bits, spread, to);
    } else if (bits == 8) {
        std::memcpy(to, raw, static_cast<std::size_t>(count));
    } else if (bits == 16) {
        convert<std::uint16_t>(raw, count, to,
                               [](int value) { return static_cast<std::uint8_t>((value + 128) / 257); });
    } else if (bits == 32 && format == SAMPLEFORMAT_IEEEFP) {
        convert<float>(raw, count, to, [](float value) { return fromUnit(value); });
    } else if (bits == 32) {
        convert<std::uint32_t>(raw, count, to,
                               [](std::uint32_t value) { return static_cast<std::uint8_t>(value >> 24); });
    } else {
        convert<double>(raw, count, to, fromUnit);
    }
}

bool knownDepth(int bits, int format) {
    if (format == SAMPLEFORMAT_IEEEFP) {
        return bits == 32 || bits == 64;
    }
    const bool counts = format == SAMPLEFORMAT_UINT || format == SAMPLEFORMAT_VOID;
    return counts && (bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16 || bits == 32);
}

} // namespace

void divideByAlpha(std::uint8_t *pixel) {
    const int alpha = pixel[3];
    for (int channel = 0; channel < 3 && alpha < 255; ++channel) {
        pixel[channel] =
            static_cast<std::uint8_t>(alpha == 0 ? 0 : std::min(255, (pixel[channel] * 255 + alpha / 2) / alpha));
    }
}

TiffSamples::TiffSamples(const TiffFile &file) {
    m_bits = file.field<uint16_t>(TIFFTAG_BITSPERSAMPLE, 1);
    m_format = file.field<uint16_t>(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    m_samples = file.field<uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1);
    m_separate =
        m_samples > 1 && file.field<uint16_t>(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE;
    int photometric = file.field<uint16_t>(TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    if (photometric == PHOTOMETRIC_YCBCR && file.field<uint16_t>(TIFFTAG_COMPRESSION, 1) == COMPRESSION_JPEG &&
        !m_separate) {
        TIFFSetField(file.handle(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        photometric = PHOTOMETRIC_RGB;
    }
    switch (photometric) {
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_MINISBLACK:
        m_channels = Channels::Grey;
        m_inverted = photometric == PHOTOMETRIC_MINISWHITE;
        break;
    case PHOTOMETRIC_PALETTE:
        readPalette(file);
        break;
    case PHOTOMETRIC_RGB:
        m_colours = 3;
        break;
    case PHOTOMETRIC_SEPARATED:
        m_channels = Channels::Cmyk;
        m_colours = 4;
        break;
    default:
        return;
    }
    uint16_t extras = 0;
    const uint16_t *kinds = nullptr;
    if (TIFFGetField(file.handle(), TIFFTAG_EXTRASAMPLES, &extras, &kinds) == 1 && extras > 0 && kinds &&
        m_channels != Channels::Cmyk && kinds[0] != EXTRASAMPLE_UNSPECIFIED && m_samples > m_colours) {
        m_alphaSample = m_colours;
        m_multiplied = kinds[0] == EXTRASAMPLE_ASSOCALPHA && !m_separate && !m_palette;
    }
    m_usedSamples = hasAlpha() ? m_colours + 1 : m_colours;
    m_plain =
        m_samples >= m_colours && knownDepth(m_bits, m_format) && !(photometric == PHOTOMETRIC_PALETTE && !m_palette);
}

void TiffSamples::readPalette(const TiffFile &file) {
    const uint16_t *columns[3] = {};
    if (m_bits > 8 || TIFFGetField(file.handle(), TIFFTAG_COLORMAP, &columns[0], &columns[1], &columns[2]) != 1) {
        return;
    }
    m_palette = true;
    const int count = 1 << m_bits;
    bool wide = false; // some writers give 8 bits in place of 16
    for (int i = 0; i < count * 3; ++i) {
        wide = wide || columns[i % 3][i / 3] > 255;
    }
    for (int i = 0; i < count; ++i) {
        for (int colour = 0; colour < 3; ++colour) {
            const int value = columns[colour][i];
            m_colourTable[i][colour] = static_cast<std::uint8_t>(wide ? (value + 128) / 257 : value);
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
            to[x * 4] = colour[2];
            to[x * 4 + 1] = colour[1];
            to[x * 4 + 2] = colour[0];
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
    toBytes(raw, width * step, m_bits, m_format, !m_palette, values.data());
    if (m_separate) {
        placeSample(values.data(), 1, width, plane, to);
        return;
    }
    for (int sample = 0; sample < m_usedSamples; ++sample) {
        placeSample(values.data() + sample, step, width, sample, to);
    }
    for (int x = 0; m_multiplied && x < width; ++x) {
        divideByAlpha(to + x * 4);
    }
}

} // namespace lumora
