#include "imaging/effects/PhotoFaults.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace lumora {

namespace {

constexpr int levelCount = 256;

// What is usual in good photos.
constexpr double usualBlack = 0.05;
constexpr double usualWhite = 0.95;
constexpr double leastMedian = 0.38;          // of the luma
constexpr double leastBrightestMedian = 0.48; // of the largest channel
constexpr double mostMedian = 0.67;           // of the luma

// Findings that are as likely a fault as the photo's own look.
constexpr double blackDoubt = 0.14;
constexpr double whiteDoubt = 0.10;  // of the logarithm
constexpr double tintDoubt = 0.10;   // of the logarithm
constexpr double darkDoubt = 2.0;    // logits of the median: many good photos are dark
constexpr double brightDoubt = 0.7;  // the same
constexpr double leastGreys = 0.03;  // share of the picture that a correction of the light has to turn grey
constexpr double enoughGreys = 0.05; // more than that share: no doubt is left

constexpr double mostBend = 0.9; // the curve still rises everywhere

class Histogram {
  public:
    void add(int level) { ++m_counts.at(std::size_t(level)); }
    /// The level below which that share of `count` pixels is, 0 to 1.
    double percentile(double share, int count) const {
        double rest = share * count;
        for (std::size_t level = 0; level < m_counts.size(); ++level) {
            rest -= m_counts.at(level);
            if (rest < 0) {
                return double(level) / (levelCount - 1);
            }
        }
        return 1;
    }

  private:
    std::array<int, levelCount> m_counts{};
};

/// The pixels by their colour relative to green and by their brightness.
class ColourVotes {
  public:
    /// Levels above 0.
    void add(const int *colour, int luma) {
        const auto logarithm = [](int level) { return logarithms().at(std::size_t(level)); };
        const int x = place(logarithm(colour[0]) - logarithm(colour[1]));
        const int y = place(logarithm(colour[2]) - logarithm(colour[1]));
        if (x >= 0 && y >= 0 && x < side && y < side) {
            m_votes[std::size_t(luma) * bands / levelCount][cellOf(x, y)] += 1;
        }
    }

    /// How much of the picture would be grey in a light of that colour, 0 to 0.5. A brightness counts for a sixteenth
    /// at most: a wall of one colour says nothing about the light.
    double greysIn(double blue, double red, int count) const {
        double sum = 0;
        for (const auto &band : m_votes) {
            double votes = 0;
            forNear(blue, red, 2, [&](int x, int y, int squareDistance) {
                votes += band[cellOf(x, y)] * (squareDistance <= 2 ? 1.0 : 0.5);
            });
            sum += std::min(votes / count, 1.0 / 16);
        }
        return sum;
    }

    /// Moves a colour to the middle of the cluster around it (mean shift).
    void moveToCluster(double &blue, double &red) const {
        for (int round = 0; round < 4; ++round) {
            double sum = 0;
            double sumX = 0;
            double sumY = 0;
            forNear(blue, red, 3, [&](int x, int y, int) {
                for (const auto &band : m_votes) {
                    const double votes = band[cellOf(x, y)];
                    sum += votes;
                    sumX += votes * (x - half);
                    sumY += votes * (y - half);
                }
            });
            if (sum > 0) {
                blue = sumX / sum * step;
                red = sumY / sum * step;
            }
        }
    }

  private:
    static constexpr double step = 0.025; ///< of the logarithms
    static constexpr int half = 24;
    static constexpr int side = 2 * half + 1;
    static constexpr int bands = 8;

    static std::size_t cellOf(int x, int y) { return std::size_t(y) * side + std::size_t(x); }

    static const std::array<double, levelCount> &logarithms() {
        static const std::array<double, levelCount> table = [] {
            std::array<double, levelCount> made{};
            for (int level = 1; level < levelCount; ++level) {
                made.at(std::size_t(level)) = std::log(level);
            }
            return made;
        }();
        return table;
    }

    static int place(double logarithm) { return half + static_cast<int>(std::lround(logarithm / step)); }

    template <typename Visit> static void forNear(double blue, double red, int reach, const Visit &visit) {
        const int middleX = place(blue);
        const int middleY = place(red);
        for (int y = std::max(middleY - reach, 0); y <= std::min(middleY + reach, side - 1); ++y) {
            for (int x = std::max(middleX - reach, 0); x <= std::min(middleX + reach, side - 1); ++x) {
                visit(x, y, (x - middleX) * (x - middleX) + (y - middleY) * (y - middleY));
            }
        }
    }

    std::vector<std::array<float, std::size_t(side) * side>> m_votes{bands};
};

struct Counts {
    std::array<Histogram, 3> channels;
    Histogram luma, least, most; ///< least and most of the three channels
    ColourVotes votes;
    int pixels = 0;
};

/// Looks at each level through the table. Votes cost most, and need not be counted.
Counts countPixels(ConstPixelView small, const std::array<int, levelCount> &table, bool withVotes) {
    constexpr int clipped = 252; // from here and below the next two the colour is not known
    constexpr int dark = 24;
    constexpr int noise = 9;
    Counts counts;
    for (int y = 0; y < small.height; ++y) {
        const std::uint8_t *pixel = small.row(y);
        for (int x = 0; x < small.width; ++x, pixel += 4) {
            if (pixel[3] < 128) {
                continue;
            }
            ++counts.pixels;
            const int colour[3] = {table.at(pixel[0]), table.at(pixel[1]), table.at(pixel[2])};
            const auto [least, most] = std::minmax({colour[0], colour[1], colour[2]});
            const int luma = (114 * colour[0] + 587 * colour[1] + 299 * colour[2] + 500) / 1000;
            for (std::size_t c = 0; c < 3; ++c) {
                counts.channels.at(c).add(colour[c]);
            }
            counts.luma.add(luma);
            counts.least.add(least);
            counts.most.add(most);
            if (withVotes && most < clipped && luma > dark && least > noise) {
                counts.votes.add(colour, luma);
            }
        }
    }
    return counts;
}

/// The part of a finding that is taken for a fault.
double believed(double finding, double doubt) {
    const double square = finding * finding;
    return square == 0 ? 0 : finding * square / (square + doubt * doubt);
}

double logit(double level) {
    const double inside = std::clamp(level, 0.02, 0.98);
    return std::log(inside / (1 - inside));
}

std::array<double, 3> tintOf(const Counts &counts, double doubt) {
    const auto bright = [&](std::size_t channel) {
        return std::max(counts.channels.at(channel).percentile(0.99, counts.pixels), 0.01);
    };
    double blue = std::clamp(std::log(bright(0) / bright(1)), -0.5, 0.5);
    double red = std::clamp(std::log(bright(2) / bright(1)), -0.35, 0.35);
    counts.votes.moveToCluster(blue, red);
    const double more = counts.votes.greysIn(blue, red, counts.pixels) - counts.votes.greysIn(0, 0, counts.pixels);
    const double trust = std::clamp((more - leastGreys * doubt) / enoughGreys, 0.0, 1.0);
    const double size = std::hypot(blue, red);
    if (size == 0) {
        return {};
    }
    // Lamps and the sky are yellow, blue or green: pink is rather a sunset or a wall.
    const double pink = std::max(0.0, blue + red) / size;
    const double share = trust * believed(size, tintDoubt * doubt * (1 + pink)) / size;
    const double luma = 0.114 * blue + 0.299 * red; // which stays
    return {share * (luma - blue), share * luma, share * (luma - red)};
}

double bendOf(const Counts &counts, double doubt) {
    const double median = counts.luma.percentile(0.5, counts.pixels);
    double away = 0; // logits
    if (median < leastMedian) {
        // A bright red or blue has little luma: what is dark is dark in its largest channel too.
        const double brightest = counts.most.percentile(0.5, counts.pixels);
        const double dark =
            std::min(logit(leastMedian) - logit(median), logit(leastBrightestMedian) - logit(brightest));
        away = believed(std::max(0.0, dark), darkDoubt * doubt);
    } else if (median > mostMedian) {
        away = believed(logit(mostMedian) - logit(median), brightDoubt * doubt);
    }
    // The curve that moves the median there.
    const double inside = std::clamp(median, 0.02, 0.98);
    const double wanted = 1 / (1 + std::exp(-(logit(inside) + away)));
    return std::clamp((wanted - inside) / (inside * (1 - inside)), -mostBend, mostBend);
}

} // namespace

PhotoFaults findPhotoFaults(ConstPixelView small, double doubt) {
    PhotoFaults faults;
    std::array<int, levelCount> table{};
    for (int level = 0; level < levelCount; ++level) {
        table.at(std::size_t(level)) = level;
    }
    const Counts seen = countPixels(small, table, false);
    const double darkest = seen.least.percentile(0.01, seen.pixels);
    const double brightest = seen.most.percentile(0.995, seen.pixels);
    const double range = seen.luma.percentile(0.995, seen.pixels) - seen.luma.percentile(0.01, seen.pixels);
    if (seen.pixels == 0 || range < 0.04) {
        return faults; // one colour says nothing about the light
    }
    faults.black = believed(std::max(0.0, darkest - usualBlack), blackDoubt * doubt);
    const double darker = believed(std::max(0.0, std::log(usualWhite / brightest)), whiteDoubt * doubt);
    faults.scale = std::clamp(std::exp(darker) * brightest / (brightest - faults.black), 1.0, 4.0);
    for (int level = 0; level < levelCount; ++level) {
        const double levelled = (level - faults.black * 255) * faults.scale;
        table.at(std::size_t(level)) = std::clamp(static_cast<int>(std::lround(levelled)), 0, levelCount - 1);
    }
    const Counts levelled = countPixels(small, table, true);
    faults.tint = tintOf(levelled, doubt);
    faults.bend = bendOf(levelled, doubt);
    return faults;
}

} // namespace lumora
