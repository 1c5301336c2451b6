#include "imaging/effects/PopArt.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/PopArt.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

#ifndef LUMORA_POP_ART_LIGHTNESS // compiled once, not per instruction set
#define LUMORA_POP_ART_LIGHTNESS
namespace lumora {
/// Weights of the channels in a pixel's lightness, in 15-bit fractions.
struct PopArtLightness {
    int blue, green, red;
};
inline constexpr PopArtLightness lightness{3277, 13107, 16384};
} // namespace lumora
#endif

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

struct PopArtOperation {
    explicit PopArtOperation(const PopArt &print)
        : light(std::clamp(print.levels.light, 0, 255)), highlight(std::clamp(print.levels.highlight, light, 255)),
          blue(print.colours, 0), green(print.colours, 8), red(print.colours, 16) {}

    /// The start value of a channel, and its difference from one tone to the next as a pair of 16-bit numbers.
    struct Channel {
        Channel(PopArtColours colours, int shift) {
            const int from = static_cast<int>(colours.dark >> shift & 0xFF);
            const int middle = static_cast<int>(colours.light >> shift & 0xFF);
            const int tint = (middle + 256) / 2;
            dark = from * 255 + 128;
            steps =
                static_cast<std::uint32_t>(tint - middle) << 16 | (static_cast<std::uint32_t>(middle - from) & 0xFFFF);
        }
        std::int32_t dark;
        std::uint32_t steps;
    };

    PixelVector operator()(PixelVector pixels) const {
        const Pixels d;
        const auto level = sum(pixels);
        const auto shares = hn::Or(share(level, light), hn::ShiftLeft<16>(share(level, highlight)));
        const auto alpha = hn::And(pixels, hn::Set(d, 0xFF000000U));
        return hn::Or(hn::Or(alpha, printed(shares, blue)),
                      hn::Or(hn::ShiftLeft<8>(printed(shares, green)), hn::ShiftLeft<16>(printed(shares, red))));
    }

    /// The weight of the next tone, 0 to 255, for a lightness near that level.
    static PixelVector share(hn::VFromD<hn::ScalableTag<std::int32_t>> lightness, int level) {
        const hn::ScalableTag<std::int32_t> d32;
        const auto above = hn::Sub(lightness, hn::Set(d32, level));
        const auto steep = hn::Add(hn::ShiftLeft<4>(above), hn::ShiftLeft<2>(above)); // times 20
        const auto ramp = hn::Add(steep, hn::Set(d32, 128));
        return hn::BitCast(Pixels(), hn::Min(hn::Max(ramp, hn::Zero(d32)), hn::Set(d32, 255)));
    }

    static PixelVector printed(PixelVector shares, const Channel &channel) {
        const Pixels d;
        const hn::Repartition<std::int16_t, Pixels> d16;
        const hn::ScalableTag<std::int32_t> d32;
        auto second = hn::Zero(d32);
        const auto sum =
            hn::ReorderWidenMulAccumulate(d32, hn::BitCast(d16, shares), hn::BitCast(d16, hn::Set(d, channel.steps)),
                                          hn::Set(d32, channel.dark), second);
        // x / 255, rounded, for x up to 255 * 255: with t = x + 128 it is (t + (t >> 8)) >> 8.
        const auto t = hn::RearrangeToOddPlusEven(sum, second);
        return hn::BitCast(d, hn::ShiftRight<8>(hn::Add(t, hn::ShiftRight<8>(t))));
    }

    int light;
    int highlight;
    Channel blue;
    Channel green;
    Channel red;
    WeightedSum sum{lightness.blue, lightness.green, lightness.red};
};

void popArtRows(const PopArt &parameters, ConstPixelView source, PixelView target, PixelRect area, bool nonTemporal) {
    mapPixels(PopArtOperation(parameters), source, target, area, nonTemporal);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <array>

namespace lumora {

HWY_EXPORT(popArtRows);

void applyPopArt(const PopArt &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    runPointKernel(HWY_DYNAMIC_DISPATCH(popArtRows), parameters, source, target, area);
}

namespace {

constexpr int levels = 256;

/// The number of pixels below each level, and the sum of their levels.
struct Cumulated {
    std::array<double, levels + 1> count{};
    std::array<double, levels + 1> total{};

    /// The contribution of the levels from one up to another (exclusive) to the variance between the classes.
    double between(int from, int to) const {
        const double pixels = count[std::size_t(to)] - count[std::size_t(from)];
        const double sum = total[std::size_t(to)] - total[std::size_t(from)];
        return pixels > 0 ? sum * sum / pixels : 0;
    }
    double spread(PopArtLevels at) const {
        return between(0, at.light) + between(at.light, at.highlight) + between(at.highlight, levels);
    }
};

Cumulated cumulated(ConstPixelView picture) {
    std::array<std::int64_t, levels> histogram{};
    for (int y = 0; y < picture.height; ++y) {
        const std::uint8_t *pixel = picture.row(y);
        for (int x = 0; x < picture.width; ++x, pixel += 4) {
            const int level =
                (lightness.blue * pixel[0] + lightness.green * pixel[1] + lightness.red * pixel[2] + 16384) >> 15;
            histogram[std::size_t(level)] += pixel[3];
        }
    }
    Cumulated sums;
    for (std::size_t i = 0; i < levels; ++i) {
        sums.count[i + 1] = sums.count[i] + double(histogram[i]);
        sums.total[i + 1] = sums.total[i] + double(histogram[i]) * double(i);
    }
    return sums;
}

} // namespace

PopArtLevels popArtLevels(ConstPixelView picture) {
    const Cumulated sums = cumulated(picture);
    PopArtLevels best;
    double most = sums.spread(best);
    for (int light = 1; light < levels - 1; ++light) {
        for (int highlight = light + 1; highlight < levels; ++highlight) {
            const double spread = sums.spread({light, highlight});
            if (spread > most * (1 + 1e-12)) { // ignores rounding errors
                most = spread;
                best = {light, highlight};
            }
        }
    }
    return best;
}

} // namespace lumora
#endif
