// From the colours that a file holds to sRGB, with Little CMS. Called by PictureFile once for each picture.
#pragma once

#include <QByteArray>
#include <QImage>
#include <cstdint>

namespace lumora {

/// How the four bytes of a decoded pixel are to be understood.
enum class Channels {
    Bgra,         ///< blue, green, red, alpha
    Grey,         ///< the grey value three times, alpha
    Cmyk,         ///< cyan, magenta, yellow, black: 255 is full ink
    InvertedCmyk, ///< the same with 0 as full ink, as Adobe writes it into JPEG files
};

/// Converts the pixels in place to sRGB (blue, green, red, alpha). Without a profile, or with one that cannot be used,
/// RGB and grey are taken as sRGB and inks are multiplied: red = white x (1 - cyan) x (1 - black).
void convertToSrgb(QImage &picture, Channels channels, const QByteArray &profile);

/// What an ICC profile converts from, a cmsColorSpaceSignature or any other number; 0 for fewer than 20 bytes. Little
/// CMS returns it as its enumeration, which has no place for the number of a broken file.
std::uint32_t colourSpaceOf(const QByteArray &profile);

/// The profile of a PNG that gives its gamma (and, when `chromaticities` is not null, the x and y of white, red, green
/// and blue) in place of a profile; empty when there is no profile to be made of it.
QByteArray profileFromGamma(double gamma, const double *chromaticities);

} // namespace lumora
