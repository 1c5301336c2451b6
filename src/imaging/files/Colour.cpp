#include "imaging/files/Colour.h"

#include "imaging/Picture.h"
#include "imaging/kernels/Workers.h"

#include <QtEndian>
#include <array>
#include <cstdlib>
#include <lcms2.h>
#include <memory>
#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace lumora {

namespace {

using Profile = std::unique_ptr<void, int (*)(void *)>;
using Transform = std::unique_ptr<void, void (*)(void *)>;

Profile own(cmsHPROFILE profile) {
    return {profile, cmsCloseProfile};
}

// How Little CMS is to read the pixels, or 0 when the profile is made for other channels. A grey picture takes the
// first of its three equal bytes.
cmsUInt32Number inputLayout(std::uint32_t space, Channels channels) {
    if (channels == Channels::Cmyk || channels == Channels::InvertedCmyk) {
        const cmsUInt32Number layout = channels == Channels::Cmyk ? TYPE_CMYK_8 : TYPE_CMYK_8_REV;
        return space == cmsSigCmykData ? layout : 0;
    }
    if (space == cmsSigGrayData) {
        return channels == Channels::Grey
                   ? COLORSPACE_SH(PT_GRAY) | EXTRA_SH(3) | CHANNELS_SH(1) | BYTES_SH(1) // NOLINT(hicpp-signed-bitwise)
                   : 0;
    }
    return space == cmsSigRgbData ? TYPE_BGRA_8 : 0;
}

// Most files carry sRGB itself, by one of a dozen makers. Nothing is gained by a pass over the picture that moves no
// value by more than the rounding of the profile's tables.
bool changesNothing(cmsHTRANSFORM transform) {
    constexpr int steps = 9;
    std::array<std::uint8_t, steps * steps * steps * 4> before{};
    for (int i = 0; i < steps * steps * steps; ++i) {
        const int levels[3] = {i % steps, i / steps % steps, i / steps / steps};
        for (int channel = 0; channel < 3; ++channel) {
            before[i * 4 + channel] = static_cast<std::uint8_t>(levels[channel] * 255 / (steps - 1));
        }
    }
    auto after = before;
    cmsDoTransform(transform, before.data(), after.data(), steps * steps * steps);
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (std::abs(before[i] - after[i]) > 1) {
            return false;
        }
    }
    return true;
}

template <typename Row> void forRows(QImage &picture, Row row) {
    const PixelView view = writeView(picture);
    prepareWorkers();
    tbb::parallel_for(tbb::blocked_range<int>(0, view.height, 16), [&](const tbb::blocked_range<int> &range) {
        for (int y = range.begin(); y < range.end(); ++y) {
            row(view.row(y), view.width);
        }
    });
}

void multiplyInks(QImage &picture, bool inverted) {
    const int flip = inverted ? 0 : 255;
    forRows(picture, [flip](std::uint8_t *row, int width) {
        for (int x = 0; x < width; ++x, row += 4) {
            const int white = row[3] ^ flip;
            const int red = ((row[0] ^ flip) * white + 127) / 255;
            const int blue = ((row[2] ^ flip) * white + 127) / 255;
            row[1] = static_cast<std::uint8_t>(((row[1] ^ flip) * white + 127) / 255);
            row[0] = static_cast<std::uint8_t>(blue);
            row[2] = static_cast<std::uint8_t>(red);
            row[3] = 255;
        }
    });
}

} // namespace

std::uint32_t colourSpaceOf(const QByteArray &profile) {
    constexpr qsizetype offset = 16; // ICC.1, the header
    return profile.size() < offset + 4 ? 0 : qFromBigEndian<std::uint32_t>(profile.constData() + offset);
}

void convertToSrgb(QImage &picture, Channels channels, const QByteArray &profile) {
    const bool inks = channels == Channels::Cmyk || channels == Channels::InvertedCmyk;
    const Profile from = own(
        profile.isEmpty() ? nullptr
                          : cmsOpenProfileFromMem(profile.constData(), static_cast<cmsUInt32Number>(profile.size())));
    const cmsUInt32Number layout = from ? inputLayout(colourSpaceOf(profile), channels) : 0;
    Transform transform(nullptr, cmsDeleteTransform);
    if (layout != 0) {
        const Profile to = own(cmsCreate_sRGBProfile());
        transform.reset(cmsCreateTransform(from.get(), layout, to.get(), TYPE_BGRA_8, INTENT_PERCEPTUAL,
                                           cmsFLAGS_NOCACHE | cmsFLAGS_BLACKPOINTCOMPENSATION));
    }
    if (!transform) {
        if (inks) {
            multiplyInks(picture, channels == Channels::InvertedCmyk);
        }
        return;
    }
    if (layout == TYPE_BGRA_8 && changesNothing(transform.get())) {
        return;
    }
    forRows(picture, [&](std::uint8_t *row, int width) {
        // The transform leaves the fourth byte alone, which is alpha but for inks.
        cmsDoTransform(transform.get(), row, row, static_cast<cmsUInt32Number>(width));
        for (int x = 0; inks && x < width; ++x) {
            row[x * 4 + 3] = 255;
        }
    });
}

QByteArray profileFromGamma(double gamma, const double *chromaticities) {
    // sRGB's own curve is written as a gamma of 1 / 2.2; a value close to it means sRGB.
    const bool plain = gamma > 0.43 && gamma < 0.48;
    if (gamma < 0.05 || gamma > 5 || (plain && !chromaticities)) {
        return {};
    }
    constexpr double srgb[8] = {0.3127, 0.3290, 0.64, 0.33, 0.30, 0.60, 0.15, 0.06};
    const double *c = chromaticities ? chromaticities : srgb;
    const cmsCIExyY white{c[0], c[1], 1};
    const cmsCIExyYTRIPLE primaries{{c[2], c[3], 1}, {c[4], c[5], 1}, {c[6], c[7], 1}};
    constexpr double srgbCurve[5] = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    const std::unique_ptr<cmsToneCurve, void (*)(cmsToneCurve *)> curve(
        plain ? cmsBuildParametricToneCurve(nullptr, 4, srgbCurve) : cmsBuildGamma(nullptr, 1 / gamma),
        cmsFreeToneCurve);
    cmsToneCurve *curves[3] = {curve.get(), curve.get(), curve.get()};
    const Profile profile = own(curve ? cmsCreateRGBProfile(&white, &primaries, curves) : nullptr);
    cmsUInt32Number size = 0;
    if (!profile || !cmsSaveProfileToMem(profile.get(), nullptr, &size)) {
        return {};
    }
    QByteArray bytes(size, '\0');
    return cmsSaveProfileToMem(profile.get(), bytes.data(), &size) ? bytes : QByteArray();
}

} // namespace lumora
