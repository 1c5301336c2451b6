#include "imaging/ColourDifference.h"

#include <array>
#include <cmath>
#include <numbers>

namespace lumora::test {

namespace {

constexpr double degree = std::numbers::pi / 180;

double hueOf(double b, double a) {
    const double hue = a == 0 && b == 0 ? 0 : std::atan2(b, a) / degree;
    return hue < 0 ? hue + 360 : hue;
}

double seventhPart(double chroma) {
    const double seventh = std::pow(chroma, 7);
    return std::sqrt(seventh / (seventh + std::pow(25.0, 7)));
}

} // namespace

LabColour labOf(QRgb colour) {
    static const std::array<double, 256> linear = [] {
        std::array<double, 256> table{};
        for (std::size_t i = 0; i < table.size(); ++i) {
            const double level = double(i) / 255;
            table.at(i) = level <= 0.04045 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
        }
        return table;
    }();
    const double red = linear.at(size_t(qRed(colour)));
    const double green = linear.at(size_t(qGreen(colour)));
    const double blue = linear.at(size_t(qBlue(colour)));
    const auto curve = [](double t) { return t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116; };
    const double x = curve((0.4124 * red + 0.3576 * green + 0.1805 * blue) / 0.95047);
    const double y = curve(0.2126 * red + 0.7152 * green + 0.0722 * blue);
    const double z = curve((0.0193 * red + 0.1192 * green + 0.9505 * blue) / 1.08883);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

double colourDifference(const LabColour &first, const LabColour &second) {
    const double meanChroma = (std::hypot(first.a, first.b) + std::hypot(second.a, second.b)) / 2;
    const double stretch = 1 + 0.5 * (1 - seventhPart(meanChroma));
    const double a1 = first.a * stretch;
    const double a2 = second.a * stretch;
    const double chroma1 = std::hypot(a1, first.b);
    const double chroma2 = std::hypot(a2, second.b);
    const double hue1 = hueOf(first.b, a1);
    const double hue2 = hueOf(second.b, a2);
    const bool grey = chroma1 * chroma2 == 0;
    double turn = grey ? 0 : hue2 - hue1;
    turn += turn > 180 ? -360 : turn < -180 ? 360 : 0;
    double hue = hue1 + hue2;
    if (!grey) {
        hue += std::abs(hue1 - hue2) > 180 ? (hue < 360 ? 360 : -360) : 0;
        hue /= 2;
    }
    const double lightness = (first.L + second.L) / 2 - 50;
    const double chroma = (chroma1 + chroma2) / 2;
    const auto wave = [&](double times, double offset) { return std::cos((times * hue + offset) * degree); };
    const double t = 1 - 0.17 * wave(1, -30) + 0.24 * wave(2, 0) + 0.32 * wave(3, 6) - 0.2 * wave(4, -63);
    const double l = (second.L - first.L) / (1 + 0.015 * lightness * lightness / std::sqrt(20 + lightness * lightness));
    const double c = (chroma2 - chroma1) / (1 + 0.045 * chroma);
    const double h = 2 * std::sqrt(chroma1 * chroma2) * std::sin(turn / 2 * degree) / (1 + 0.015 * chroma * t);
    const double rotation = std::sin(60 * degree * std::exp(-std::pow((hue - 275) / 25, 2)));
    return std::sqrt(l * l + c * c + h * h - 2 * seventhPart(chroma) * rotation * c * h);
}

double meanColourDifference(const QImage &first, const QImage &second, int step) {
    double sum = 0;
    int count = 0;
    for (int y = 0; y < first.height(); y += step) {
        for (int x = 0; x < first.width(); x += step) {
            sum += colourDifference(labOf(first.pixel(x, y)), labOf(second.pixel(x, y)));
            ++count;
        }
    }
    return sum / count;
}

} // namespace lumora::test
