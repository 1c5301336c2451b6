#include "imaging/files/DeepColour.h"

#include "imaging/files/Colour.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <lcms2.h>

#include <lcms2_plugin.h>

namespace lumora {

namespace {

constexpr int levels = 65536;
constexpr cmsUInt32Number keepAll = cmsFLAGS_NOCACHE | cmsFLAGS_BLACKPOINTCOMPENSATION;

using Profile = std::unique_ptr<void, int (*)(void *)>;

// The light of the three primaries in XYZ for the D50 white that all profiles refer to.
bool readColorants(cmsHPROFILE profile, cmsMAT3 &matrix) {
    constexpr cmsTagSignature tags[] = {cmsSigRedColorantTag, cmsSigGreenColorantTag, cmsSigBlueColorantTag};
    for (int i = 0; i < 3; ++i) {
        const auto *light = static_cast<const cmsCIEXYZ *>(cmsReadTag(profile, tags[i]));
        if (light == nullptr) {
            return false;
        }
        matrix.v[0].n[i] = light->X;
        matrix.v[1].n[i] = light->Y;
        matrix.v[2].n[i] = light->Z;
    }
    return true;
}

// From XYZ (D50) to the linear light of sRGB.
bool fromXyz(cmsMAT3 &matrix) {
    const Profile srgb(cmsCreate_sRGBProfile(), cmsCloseProfile);
    cmsMAT3 colorants;
    return srgb && readColorants(srgb.get(), colorants) && _cmsMAT3inverse(&colorants, &matrix);
}

// IEC 61966-2-1.
double srgbOf(double light) {
    return light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
}

// CIE 15: the inverse of the cube root with its straight end.
float lightOf(float f) {
    constexpr float end = 6.0F / 29;
    return f > end ? f * f * f : 3 * end * end * (f - 4.0F / 29);
}

} // namespace

DeepColour::DeepColour(DeepChannels channels, const QByteArray &profileBytes)
    : m_transform(nullptr, cmsDeleteTransform) {
    if (channels == DeepChannels::Lab) {
        cmsMAT3 matrix;
        if (fromXyz(matrix)) {
            for (int row = 0; row < 3; ++row) {
                for (int column = 0; column < 3; ++column) {
                    m_toLinearSrgb[row][column] = static_cast<float>(matrix.v[row].n[column]);
                }
            }
        }
        makeEncoding();
        m_way = Way::Lab;
        return;
    }
    if (profileBytes.isEmpty()) {
        return;
    }
    const Profile profile(
        cmsOpenProfileFromMem(profileBytes.constData(), static_cast<cmsUInt32Number>(profileBytes.size())),
        cmsCloseProfile);
    const std::uint32_t space = profile ? colourSpaceOf(profileBytes) : 0;
    if (space == cmsSigGrayData && channels == DeepChannels::Grey) {
        takeGrey(profile.get());
    } else if (space == cmsSigRgbData && !takeMatrix(profile.get())) {
        takeTransform(profile.get());
    }
}

DeepColour::~DeepColour() = default;

void DeepColour::takeGrey(void *profile) {
    const Profile to(cmsCreate_sRGBProfile(), cmsCloseProfile);
    const std::unique_ptr<void, void (*)(void *)> transform(cmsCreateTransform(profile, TYPE_GRAY_16, to.get(),
                                                                               TYPE_BGRA_8, INTENT_PERCEPTUAL,
                                                                               keepAll | cmsFLAGS_NOOPTIMIZE),
                                                            cmsDeleteTransform);
    if (!transform) {
        return;
    }
    std::vector<std::uint16_t> values(levels);
    for (int i = 0; i < levels; ++i) {
        values[i] = static_cast<std::uint16_t>(i);
    }
    std::vector<std::uint8_t> pixels(std::size_t{levels} * 4);
    cmsDoTransform(transform.get(), values.data(), pixels.data(), levels);
    m_levels.resize(levels);
    for (int i = 0; i < levels; ++i) {
        m_levels[i] = pixels[i * 4 + 1];
    }
    m_way = Way::Levels;
}

// Profiles of three curves and a matrix, which nearly all are: Little CMS has a fast way for 8 bits only, and its
// tables are too coarse for the shadows of linear pictures.
bool DeepColour::takeMatrix(void *profile) {
    constexpr cmsTagSignature curves[] = {cmsSigRedTRCTag, cmsSigGreenTRCTag, cmsSigBlueTRCTag};
    cmsMAT3 colorants;
    cmsMAT3 fromLight;
    if (!cmsIsMatrixShaper(profile) || cmsIsTag(profile, cmsSigAToB0Tag) || !readColorants(profile, colorants) ||
        !fromXyz(fromLight)) {
        return false;
    }
    cmsMAT3 product;
    _cmsMAT3per(&product, &fromLight, &colorants);
    for (int i = 0; i < 3; ++i) {
        const auto *curve = static_cast<const cmsToneCurve *>(cmsReadTag(profile, curves[i]));
        if (curve == nullptr) {
            return false;
        }
        m_linear[i].resize(levels);
        for (int value = 0; value < levels; ++value) {
            m_linear[i][value] = cmsEvalToneCurveFloat(curve, static_cast<float>(value) / (levels - 1));
        }
        for (int column = 0; column < 3; ++column) {
            m_toLinearSrgb[i][column] = static_cast<float>(product.v[i].n[column]);
        }
    }
    makeEncoding();
    m_way = Way::Matrices;
    return true;
}

void DeepColour::takeTransform(void *profile) {
    const Profile to(cmsCreate_sRGBProfile(), cmsCloseProfile);
    m_transform.reset(cmsCreateTransform(profile, TYPE_RGBA_16, to.get(), TYPE_BGRA_8, INTENT_PERCEPTUAL,
                                         keepAll | cmsFLAGS_HIGHRESPRECALC));
    m_way = m_transform ? Way::Transform : Way::Cut;
}

void DeepColour::makeEncoding() {
    m_encoded.resize(levels);
    for (int i = 0; i < levels; ++i) {
        m_encoded[i] = static_cast<std::uint8_t>(std::lround(255 * srgbOf(static_cast<double>(i) / (levels - 1))));
    }
}

void DeepColour::writeLinear(float x, float y, float z, std::uint8_t *to) const {
    for (int row = 0; row < 3; ++row) {
        const auto &factors = m_toLinearSrgb[row];
        const float light = factors[0] * x + factors[1] * y + factors[2] * z;
        to[2 - row] = m_encoded[static_cast<std::size_t>(std::lrint(std::clamp(light, 0.0F, 1.0F) * (levels - 1)))];
    }
}

void DeepColour::convert(const std::uint16_t *from, int width, std::uint8_t *to) const {
    if (m_way == Way::Transform) {
        cmsDoTransform(m_transform.get(), from, to, static_cast<cmsUInt32Number>(width));
    }
    for (int x = 0; x < width; ++x, from += 4, to += 4) {
        switch (m_way) {
        case Way::Cut:
            to[0] = rounded8(from[2]);
            to[1] = rounded8(from[1]);
            to[2] = rounded8(from[0]);
            break;
        case Way::Levels:
            to[0] = to[1] = to[2] = m_levels[from[0]];
            break;
        case Way::Matrices:
            writeLinear(m_linear[0][from[0]], m_linear[1][from[1]], m_linear[2][from[2]], to);
            break;
        case Way::Lab: {
            // CIE 15; the white is that of the profiles, which sRGB's primaries are adapted to.
            const float middle = (static_cast<float>(from[0]) / 655.35F + 16) / 116;
            const float a = (static_cast<float>(from[1]) - 32768) / 256;
            const float b = (static_cast<float>(from[2]) - 32768) / 256;
            const cmsCIEXYZ *white = cmsD50_XYZ();
            writeLinear(lightOf(middle + a / 500) * static_cast<float>(white->X), lightOf(middle),
                        lightOf(middle - b / 200) * static_cast<float>(white->Z), to);
            break;
        }
        case Way::Transform:
            break;
        }
        to[3] = rounded8(from[3]);
    }
}

} // namespace lumora
