#include "imaging/effects/Texture.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Shade.h"
#include "imaging/kernels/Targets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Texture.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h
#include <hwy/highway.h>

#ifndef LUMORA_TEXTURE_ONCE
#define LUMORA_TEXTURE_ONCE
namespace lumora {

/// The weave is a sum of products of a function of the column and one of the row. Two of each in one word.
constexpr std::size_t termPairs = 6;
constexpr int weaveBits = 16; ///< after the point of a sum, which is a share of 256

} // namespace lumora
#endif

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Shades `count` columns of one row. `columns`: for each pair of terms the column's functions.
void weaveRow(const std::array<const std::uint32_t *, termPairs> &columns,
              const std::array<std::uint32_t, termPairs> &row, Shade *shades, std::size_t count) {
    const hn::ScalableTag<std::uint32_t> d;
    const hn::ScalableTag<std::int32_t> di;
    const hn::Repartition<std::int16_t, decltype(d)> d16;
    const auto whole = hn::Set(di, 256);
    for (std::size_t x = 0; x < count; x += hn::Lanes(d)) {
        auto second = hn::Zero(di);
        auto sum = hn::Set(di, 1 << (weaveBits - 1));
        for (std::size_t k = 0; k < termPairs; ++k) {
            sum = hn::ReorderWidenMulAccumulate(di, hn::BitCast(d16, hn::LoadU(d, columns[k] + x)),
                                                hn::BitCast(d16, hn::Set(d, row[k])), sum, second);
        }
        const auto share = hn::Min(
            hn::Max(hn::ShiftRight<weaveBits>(hn::RearrangeToOddPlusEven(sum, second)), hn::Set(di, -256)), whole);
        const auto white = hn::Max(share, hn::Zero(di));
        const auto factor = hn::Sub(whole, hn::Abs(share));
        const auto added = hn::Sub(hn::ShiftLeft<8>(white), white); // towards 255
        hn::StoreU(hn::BitCast(d, hn::Or(factor, hn::ShiftLeft<16>(added))), d, shades + x);
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(weaveRow);

namespace {

constexpr double threadWidth = 3.5; // units
constexpr double fibresOfThread = 2.5;
constexpr double unevenness = .3; // of a thread's width, at most
constexpr int fractionBits = 10;  // of the columns' functions
constexpr std::size_t padding = 64;

// In shares of 256.
constexpr double bulge = 52;  // light and shadow of a thread's round profile
constexpr double bend = 24;   // where it dips below the next one
constexpr double depth = 50;  // the dark between threads
constexpr double tones = 24;  // from thread to thread
constexpr double fibres = 20; // of a thread
constexpr double holes = 40;  // where two threads of each direction leave a gap

double randomOf(std::uint32_t number, std::uint32_t kind) {
    std::uint32_t h = number * 0x9E3779B1U ^ kind * 0x85EBCA77U;
    h = (h ^ h >> 15) * 0x2C1B3C6DU;
    h = (h ^ h >> 12) * 0x297A2D39U;
    return (h ^ h >> 15) / 2147483648.0 - 1; // -1 to 1
}

/// What one pixel of a line across the threads has of each function, as means over the pixel.
struct Across {
    double slope = 0;     ///< of a thread's profile: 1 where it faces the light to -1
    double crown = 0;     ///< its height: 0 to 1
    double side = 0;      ///< 1 and -1, from thread to thread: which of two crossing threads is above
    double sideSlope = 0; ///< the products
    double sideCrown = 0;
    double tone = 0; ///< of the thread
    double sideTone = 0;
    double swell = 0; ///< how clear the tones of the crossing threads are here
    double sideSwell = 0;
    double fibre = 0; ///< the fibres of a thread side by side
    double sideFibre = 0;
};

/// One wave of a parabola's arcs for each 1 of the phase, -1 to 1.
double wave(double phase) {
    const double t = 2 * (phase - std::floor(phase)) - 1;
    return 4 * t * (1 - std::abs(t));
}

/// The functions of pixels `first` to `first` + `count` - 1 of a line.
std::vector<Across> weaveAcross(int first, int count, double width, std::uint32_t kind) {
    constexpr int samples = 8; // a pixel
    const auto edge = [&](int thread) {
        return (thread + unevenness / 2 * randomOf(std::uint32_t(thread), kind)) * width;
    };
    std::vector<Across> line;
    line.reserve(std::size_t(count));
    int thread = static_cast<int>(first / width) - 1;
    double begin = edge(thread);
    double end = edge(thread + 1);
    for (int i = first; i < first + count; ++i) {
        Across mean;
        for (int k = 0; k < samples; ++k) {
            const double at = i + (k + .5) / samples;
            while (at >= end) {
                ++thread;
                begin = end;
                end = edge(thread + 1);
            }
            const double place = (at - begin) / (end - begin);
            const double off = 1 - 2 * place;
            const double slope = off * std::abs(off);
            const double crown = 1 - slope * slope;
            const double side = (thread & 1) != 0 ? -1 : 1;
            const double tone = randomOf(std::uint32_t(thread), kind + 1);
            const double nodes = at / (width * 7);
            const auto node = static_cast<std::uint32_t>(nodes);
            const double between = nodes - node;
            const double swell = randomOf(node, kind + 2) * (1 - between) + randomOf(node + 1, kind + 2) * between;
            mean.slope += slope;
            mean.crown += crown;
            mean.side += side;
            mean.sideSlope += side * slope;
            mean.sideCrown += side * crown;
            mean.tone += tone;
            mean.sideTone += side * tone;
            mean.swell += swell;
            mean.sideSwell += side * swell;
            const double fibre = wave(fibresOfThread * place + tone);
            mean.fibre += fibre;
            mean.sideFibre += side * fibre;
        }
        for (double *value : {&mean.slope, &mean.crown, &mean.side, &mean.sideSlope, &mean.sideCrown, &mean.tone,
                              &mean.sideTone, &mean.swell, &mean.sideSwell, &mean.fibre, &mean.sideFibre}) {
            *value /= samples;
        }
        line.push_back(mean);
    }
    return line;
}

std::uint32_t pairOf(double first, double second, int bits) {
    const auto fixed = [bits](double value) {
        return static_cast<std::uint16_t>(static_cast<std::int16_t>(std::lround(value * (1 << bits))));
    };
    return fixed(first) | std::uint32_t(fixed(second)) << 16;
}

/// Each product with the row's functions of rowTerms.
std::array<std::uint32_t, termPairs> columnTerms(const Across &x) {
    const auto pair = [](double first, double second) { return pairOf(first, second, fractionBits); };
    return {pair(x.slope, x.crown),    pair(x.side, x.sideSlope), pair(x.sideCrown, x.tone),
            pair(x.sideTone, x.swell), pair(x.sideSwell, 1),      pair(x.fibre, x.sideFibre)};
}

/// The upper thread runs down where the sides of column and row are the same. With s for their product, v for what a
/// thread that runs down shows and h for one that runs across, a place shows (v + h) / 2 + s (v - h) / 2, where
///   v = bulge slope(x) crown(y) + bend slope(y) + depth crown(x) + tones tone(x) (1 + swell(y)) + fibres fibre(x),
/// and h the same with x and y exchanged; less holes (1 - crown(x)) (1 - crown(y)). Sorted by what depends on the
/// column.
std::array<std::uint32_t, termPairs> rowTerms(const Across &y, double strength) {
    const auto pair = [strength](double first, double second) {
        return pairOf(first * strength / 2, second * strength / 2, weaveBits - fractionBits);
    };
    constexpr double meanCrown = .8;
    constexpr double mean = 2 * meanCrown * depth - 2 * holes * (1 - meanCrown) * (1 - meanCrown);
    const double hole = 2 * holes * (1 - y.crown);
    return {
        pair(bulge * y.crown + bend, bulge * y.slope + depth + hole),
        pair(bend * y.sideSlope - depth * y.sideCrown - tones * y.sideTone - fibres * y.sideFibre,
             bulge * y.sideCrown - bend * y.side),
        pair(depth * y.side - bulge * y.sideSlope, tones * (1 + y.swell)),
        pair(tones * (y.side + y.sideSwell), tones * y.tone),
        pair(-tones * y.sideTone, bend * y.slope + depth * y.crown - hole - mean + tones * y.tone + fibres * y.fibre),
        pair(fibres, fibres * y.side)};
}

} // namespace

bool applyTexture(const Texture &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    if (parameters.layout != 0) {
        return false;
    }
    const double width = threadWidth * std::clamp(parameters.unit, .01, 1000.0);
    // Finer threads are even grey, in which nothing can be seen.
    const double strength = width < .5 ? 0 : (100 - std::clamp(parameters.fade, 0, 100)) / 100.0;
    const std::vector<Across> across =
        strength > 0 ? weaveAcross(area.left, area.width(), width, 1) : std::vector<Across>(std::size_t(area.width()));
    const std::vector<Across> down =
        strength > 0 ? weaveAcross(area.top, area.height(), width, 5) : std::vector<Across>(std::size_t(area.height()));
    const std::size_t length = across.size() + padding;
    std::vector<std::uint32_t> columns(termPairs * length);
    for (std::size_t x = 0; x < across.size(); ++x) {
        const auto terms = columnTerms(across[x]);
        for (std::size_t k = 0; k < termPairs; ++k) {
            columns[k * length + x] = terms[k];
        }
    }
    std::array<const std::uint32_t *, termPairs> functions{};
    for (std::size_t k = 0; k < termPairs; ++k) {
        functions[k] = columns.data() + k * length;
    }
    const bool nonTemporal = leavesCache(area);
    forBands(area, [&](PixelRect band) {
        std::vector<Shade> shades(length);
        for (int y = band.top; y < band.bottom; ++y) {
            HWY_DYNAMIC_DISPATCH(weaveRow)
            (functions, rowTerms(down[std::size_t(y - area.top)], strength), shades.data(), across.size());
            shadePixels(reinterpret_cast<const std::uint32_t *>(source.row(y)) + area.left,
                        reinterpret_cast<std::uint32_t *>(target.row(y)) + area.left, shades.data(), area.width(),
                        nonTemporal);
        }
    });
    return true;
}

} // namespace lumora
#endif
