#include "imaging/transforms/EyeShine.h"

#include "imaging/Picture.h"
#include "imaging/transforms/Canvas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

namespace lumora {

namespace {

struct LabPoint {
    double L = 0;
    double a = 0;
    double b = 0;
};

LabPoint operator+(const LabPoint &first, const LabPoint &second) {
    return {first.L + second.L, first.a + second.a, first.b + second.b};
}

LabPoint operator*(const LabPoint &point, double factor) {
    return {point.L * factor, point.a * factor, point.b * factor};
}

/// CIE L*a*b* of an sRGB pixel, white D65.
LabPoint labOf(const std::uint8_t *pixel) {
    static const std::array<double, 256> linear = [] {
        std::array<double, 256> table{};
        for (std::size_t i = 0; i < table.size(); ++i) {
            const double level = double(i) / 255;
            table.at(i) = level <= 0.04045 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
        }
        return table;
    }();
    const double blue = linear.at(pixel[0]);
    const double green = linear.at(pixel[1]);
    const double red = linear.at(pixel[2]);
    const auto curve = [](double t) { return t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116; };
    const double x = curve((0.4124 * red + 0.3576 * green + 0.1805 * blue) / 0.95047);
    const double y = curve(0.2126 * red + 0.7152 * green + 0.0722 * blue);
    const double z = curve((0.0193 * red + 0.1192 * green + 0.9505 * blue) / 1.08883);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

double chromaOf(const LabPoint &colour) {
    return std::hypot(colour.a, colour.b);
}

/// 0 up to `from`, 1 from `to` on, smooth between them; also falling, where `from` is above `to`.
double ramp(double value, double from, double to) {
    const double t = std::clamp((value - from) / (to - from), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

/// What a shine looks like. Hues in degrees of the plane of a and b.
struct ShineColour {
    double hue, hueReach;
    double leastChroma, clearChroma;
    double leastLight, clearLight;
};

constexpr std::array<ShineColour, 3> shineColours = {{
    {62, 32, 28, 55, 30, 60},  // orange
    {5, 45, 12, 30, 45, 65},   // pink
    {140, 60, 14, 35, 30, 60}, // green
}};

/// How much a colour is that of the shine, 0 to 1.
double likeness(const LabPoint &colour, EyeShine shine) {
    const double chroma = chromaOf(colour);
    if (shine == EyeShine::White) {
        return ramp(chroma, 32, 14) * ramp(colour.L, 55, 90);
    }
    const ShineColour &wanted = shineColours.at(std::size_t(shine));
    const double hue = std::atan2(colour.b, colour.a) * 180 / std::numbers::pi;
    const double away = std::abs(std::remainder(hue - wanted.hue, 360));
    return ramp(away, wanted.hueReach, wanted.hueReach * 0.6) *
           ramp(chroma, wanted.leastChroma * 0.6, wanted.clearChroma) *
           ramp(colour.L, wanted.leastLight * 0.7, wanted.clearLight);
}

/// The disc around a click as a small picture of its own, and the search for the pupil in it.
class Pupil {
  public:
    Pupil(PixelView pixels, PixelRect bounds, int x, int y, int radius, EyeShine shine)
        : m_pixels(pixels), m_bounds(bounds), m_x(x), m_y(y), m_radius(radius), m_shine(shine),
          m_colours(std::size_t(width()) * std::size_t(height())), m_inside(m_colours.size(), 0) {
        for (int row = 0; row < height(); ++row) {
            for (int column = 0; column < width(); ++column) {
                m_colours[at(column, row)] = labOf(pixel(column, row));
            }
        }
    }

    bool find() {
        if (!findSeed()) {
            return false;
        }
        // The second round starts from the colour of what the first one found, not of one place in it.
        for (int round = 0; round < 2; ++round) {
            m_reach = reachOfColour();
            grow();
            takeMeanColour();
        }
        fillHoles();
        return isPupil();
    }

    void darken() {
        const std::vector<double> shares = sharesOfEdge();
        for (int row = 0; row < height(); ++row) {
            for (int column = 0; column < width(); ++column) {
                const double share = shares[at(column, row)] * (1 - glint(m_colours[at(column, row)]));
                std::uint8_t *const to = pixel(column, row);
                const double luma = 0.114 * to[0] + 0.587 * to[1] + 0.299 * to[2];
                const double dark = darkest + kept * luma;
                for (int c = 0; c < 3 && share > 0; ++c) {
                    to[c] = static_cast<std::uint8_t>(std::lround(to[c] + share * (dark - to[c])));
                }
            }
        }
    }

  private:
    static constexpr double darkest = 10; ///< level of a dark pupil
    static constexpr double kept = 0.08;  ///< of the shine's own light and shade
    static constexpr double leastReach = 12;
    static constexpr double mostReach = 45;
    static constexpr double leastLikeness = 0.12;

    int width() const { return m_bounds.width(); }
    int height() const { return m_bounds.height(); }
    std::size_t at(int column, int row) const { return std::size_t(row) * std::size_t(width()) + std::size_t(column); }
    std::uint8_t *pixel(int column, int row) const {
        return m_pixels.row(m_bounds.top + row) + std::ptrdiff_t(4) * (m_bounds.left + column);
    }
    /// From the click, in radii.
    double distance(int column, int row) const {
        return std::hypot(m_bounds.left + column - double(m_x), m_bounds.top + row - double(m_y)) /
               std::max(m_radius, 1);
    }
    bool isInDisc(int column, int row) const {
        return column >= 0 && row >= 0 && column < width() && row < height() && distance(column, row) <= 1;
    }
    template <typename Visit> void forDisc(const Visit &visit) const {
        for (int row = 0; row < height(); ++row) {
            for (int column = 0; column < width(); ++column) {
                if (isInDisc(column, row)) {
                    visit(column, row);
                }
            }
        }
    }

    /// The light of a shine falls off to its edge, so it counts half.
    double colourDistance(const LabPoint &colour) const {
        const double light = (colour.L - m_colour.L) * (m_shine == EyeShine::White ? 1 : 0.5);
        return std::sqrt(light * light + (colour.a - m_colour.a) * (colour.a - m_colour.a) +
                         (colour.b - m_colour.b) * (colour.b - m_colour.b));
    }

    bool findSeed() {
        double best = leastLikeness;
        forDisc([&](int column, int row) {
            const double far = distance(column, row);
            const LabPoint &colour = m_colours[at(column, row)];
            const double score = far > 0.6 ? 0 : likeness(colour, m_shine) * (1 - far * far);
            if (score > best) {
                best = score;
                m_seedColumn = column;
                m_seedRow = row;
                m_colour = colour;
            }
        });
        return best > leastLikeness;
    }

    /// Half the way to what most of the disc's edge looks like.
    double reachOfColour() const {
        std::vector<double> distances;
        forDisc([&](int column, int row) {
            if (isAtEdge(column, row)) {
                distances.push_back(colourDistance(m_colours[at(column, row)]));
            }
        });
        if (distances.empty()) {
            return leastReach;
        }
        const auto some = distances.begin() + std::ptrdiff_t(distances.size() / 3);
        std::nth_element(distances.begin(), some, distances.end());
        return std::clamp(*some / 2, leastReach, mostReach);
    }

    bool isAtEdge(int column, int row) const {
        return !isInDisc(column - 1, row) || !isInDisc(column + 1, row) || !isInDisc(column, row - 1) ||
               !isInDisc(column, row + 1);
    }

    bool belongs(int column, int row) const {
        const LabPoint &colour = m_colours[at(column, row)];
        return colourDistance(colour) < m_reach && pixel(column, row)[3] > 0;
    }

    /// What is connected with the seed and has its colour.
    void grow() {
        std::fill(m_inside.begin(), m_inside.end(), 0);
        std::vector<std::pair<int, int>> open = {{m_seedColumn, m_seedRow}};
        m_inside[at(m_seedColumn, m_seedRow)] = 1;
        spread(open, m_inside, [&](int column, int row) { return belongs(column, row); });
    }

    template <typename Allowed>
    void spread(std::vector<std::pair<int, int>> &open, std::vector<char> &marks, const Allowed &allowed) const {
        while (!open.empty()) {
            const auto [column, row] = open.back();
            open.pop_back();
            const std::pair<int, int> around[] = {
                {column - 1, row}, {column + 1, row}, {column, row - 1}, {column, row + 1}};
            for (const auto &[nextColumn, nextRow] : around) {
                if (isInDisc(nextColumn, nextRow) && marks[at(nextColumn, nextRow)] == 0 &&
                    allowed(nextColumn, nextRow)) {
                    marks[at(nextColumn, nextRow)] = 1;
                    open.emplace_back(nextColumn, nextRow);
                }
            }
        }
    }

    void takeMeanColour() {
        LabPoint sum;
        double count = 0;
        forDisc([&](int column, int row) {
            if (m_inside[at(column, row)] != 0) {
                const double weight = 0.01 + likeness(m_colours[at(column, row)], m_shine);
                sum = sum + m_colours[at(column, row)] * weight;
                count += weight;
            }
        });
        m_colour = sum * (1 / count);
    }

    /// What the region surrounds is in the pupil: the glint, dust, noise.
    void fillHoles() {
        std::vector<char> outside(m_inside.size(), 0);
        std::vector<std::pair<int, int>> open;
        forDisc([&](int column, int row) {
            if (isAtEdge(column, row) && m_inside[at(column, row)] == 0) {
                outside[at(column, row)] = 1;
                open.emplace_back(column, row);
            }
        });
        spread(open, outside, [&](int column, int row) { return m_inside[at(column, row)] == 0; });
        forDisc([&](int column, int row) {
            if (outside[at(column, row)] == 0) {
                m_inside[at(column, row)] = 1;
            }
        });
    }

    /// Neither a speck nor a part of something larger than the disc, such as a cheek or fur.
    bool isPupil() const {
        int count = 0;
        int edge = 0;
        int edgeInside = 0;
        int all = 0;
        forDisc([&](int column, int row) {
            const bool inside = m_inside[at(column, row)] != 0;
            ++all;
            count += inside ? 1 : 0;
            edge += isAtEdge(column, row) ? 1 : 0;
            edgeInside += inside && isAtEdge(column, row) ? 1 : 0;
        });
        return count * 200 >= all && edgeInside * 2 <= edge;
    }

    /// Of the pixels beside the region those that are a mixture of its colour count in part.
    std::vector<double> sharesOfEdge() const {
        std::vector<double> shares(m_inside.begin(), m_inside.end());
        const int steps = 1 + std::min(m_radius / 20, 4);
        std::vector<char> known(m_inside);
        for (int step = 0; step < steps; ++step) {
            std::vector<std::size_t> next;
            forDisc([&](int column, int row) {
                if (known[at(column, row)] == 0 && isBeside(known, column, row)) {
                    const double share = ramp(colourDistance(m_colours[at(column, row)]), 2 * m_reach, 0.6 * m_reach);
                    shares[at(column, row)] = share;
                    if (share > 0.05) {
                        next.push_back(at(column, row));
                    }
                }
            });
            for (const std::size_t place : next) {
                known[place] = 1;
            }
        }
        return shares;
    }

    bool isBeside(const std::vector<char> &marks, int column, int row) const {
        for (int y = row - 1; y <= row + 1; ++y) {
            for (int x = column - 1; x <= column + 1; ++x) {
                if (isInDisc(x, y) && marks[at(x, y)] != 0) {
                    return true;
                }
            }
        }
        return false;
    }

    /// How much a colour is the mirrored flash: much brighter than the shine and almost white.
    double glint(const LabPoint &colour) const {
        const double from = std::min(m_colour.L + 7, 97.8); // a white shine is hardly darker than the flash
        const double to = std::min(m_colour.L + 14, 99.3);
        // JPEG files mix colours, but hardly light, over some pixels.
        const double chroma = chromaOf(m_colour);
        return ramp(colour.L, from, to) *
               ramp(chromaOf(colour), std::max(30.0, 0.95 * chroma), std::max(12.0, 0.6 * chroma));
    }

    PixelView m_pixels;
    PixelRect m_bounds;
    int m_x, m_y, m_radius;
    EyeShine m_shine;
    std::vector<LabPoint> m_colours;
    std::vector<char> m_inside; ///< 1: of the pupil
    int m_seedColumn = 0;
    int m_seedRow = 0;
    LabPoint m_colour; ///< of the shine
    double m_reach = 0;
};

} // namespace

EyeShineOutcome darkenEyeShine(QImage &picture, int x, int y, int radius, EyeShine shine) {
    const PixelRect bounds = redEyeBounds(picture.width(), picture.height(), x, y, radius);
    if (bounds.isEmpty()) {
        return EyeShineOutcome::NotFound;
    }
    QImage next = picture; // detaches on write
    const PixelView pixels = writeView(next);
    if (pixels.isEmpty()) {
        return EyeShineOutcome::NoMemory;
    }
    Pupil pupil(pixels, bounds, x, y, radius, shine);
    if (!pupil.find()) {
        return EyeShineOutcome::NotFound;
    }
    pupil.darken();
    picture = next;
    return EyeShineOutcome::Done;
}

} // namespace lumora
