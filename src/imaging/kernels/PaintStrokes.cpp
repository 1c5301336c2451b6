#include "imaging/kernels/PaintStrokes.h"

#include "imaging/kernels/Targets.h"

#include <array>
#include <cmath>
#include <cstring>
#include <numbers>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/kernels/PaintStrokes.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h
#include <hwy/highway.h>

#ifndef LUMORA_PAINT_STROKES_ONCE
#define LUMORA_PAINT_STROKES_ONCE
namespace lumora {

constexpr int sectors = 8;
constexpr int rings = 3;           // sampled points between the middle of the brush and its rim
constexpr std::size_t points = 29; // of the grid inside the brush; the middle, then pairs of opposite ones
constexpr std::size_t pairs = (points - 1) / 2;
constexpr int fullWeight = 256;

/// The brush, for a circle of radius 1.
struct BrushShape {
    struct Weight {
        std::uint32_t point;
        std::uint32_t weight; ///< twice, in both halves
    };
    std::array<float, pairs> x, y;                     ///< of the first point of each pair
    std::array<std::vector<Weight>, sectors> sectorOf; ///< the weights of a sector add up to fullWeight
};

} // namespace lumora
#endif

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Floats = hn::ScalableTag<float>;
using Ints = hn::ScalableTag<std::int32_t>;
using Words = hn::ScalableTag<std::uint32_t>;
using Halves = hn::Repartition<std::uint16_t, Words>;
using SignedHalves = hn::Repartition<std::int16_t, Words>;

constexpr float longest = 1;        // how much longer than the brush a stroke becomes
constexpr float evenVariance = 70;  // of a sector (sum of the colours' squared levels) that still counts half
constexpr int bristleSteps = 6;     // to each side
constexpr float bristleReach = .9F; // of the brush, to each side

template <typename D, typename V> HWY_INLINE auto byteOf(D d, V pixels, int shift) {
    const Ints di;
    return hn::ConvertTo(d, hn::BitCast(di, hn::And(hn::ShiftRightSame(pixels, shift), hn::Set(Words(), 0xFFU))));
}

/// Whether every place that a stroke at columns `x` to `x` + lanes - 1 reads is in the picture; else it is clamped.
struct Bounds {
    int width;
    int height;
    bool inside;

    template <typename V> HWY_INLINE V index(V column, V row, int stride) const {
        const Ints d;
        if (!inside) {
            column = hn::Min(hn::Max(column, hn::Zero(d)), hn::Set(d, width - 1));
            row = hn::Min(hn::Max(row, hn::Zero(d)), hn::Set(d, height - 1));
        }
        return hn::Add(hn::Mul(row, hn::Set(d, stride)), column);
    }
};

/// A vector of pixels of row y from column x on, or the first of them.
void paintFew(const PaintSource &source, const BrushShape &shape, float radius, float relief, int x, int y,
              std::uint32_t *to) {
    const Floats df;
    const Ints di;
    const Words dw;
    const Halves dh;
    const SignedHalves dsh;
    const int lanes = static_cast<int>(hn::Lanes(dw));
    const int reach = static_cast<int>(radius * (1 + longest)) + 2;
    const int width = source.colours.width;
    const int height = source.colours.height;
    const Bounds bounds{width, height, x >= reach && x + lanes + reach < width && y >= reach && y + reach < height};
    const auto *colours = reinterpret_cast<const std::uint32_t *>(source.colours.data);
    const int stride = static_cast<int>(source.colours.stride / 4);
    const int flowStride = static_cast<int>(source.flow.stride / 4);

    // The direction, from the doubled angle, and how clear it is.
    const auto flow = hn::LoadU(dw, reinterpret_cast<const std::uint32_t *>(source.flow.row(y)) + x);
    const auto doubledCosine = hn::Sub(byteOf(df, flow, 0), hn::Set(df, 128));
    const auto doubledSine = hn::Sub(byteOf(df, flow, 8), hn::Set(df, 128));
    const auto strength = byteOf(df, flow, 16);
    const auto length =
        hn::Max(hn::Sqrt(hn::Add(hn::Mul(doubledCosine, doubledCosine), hn::Mul(doubledSine, doubledSine))),
                hn::Set(df, 1.0F / 64));
    const auto clear = hn::Min(hn::Div(length, hn::Max(strength, hn::Set(df, 1))), hn::Set(df, longest));
    const auto half = hn::Set(df, .5F);
    const auto ratio = hn::Mul(hn::Div(doubledCosine, length), half);
    const auto cosine = hn::Sqrt(hn::Max(hn::Add(half, ratio), hn::Zero(df)));
    const auto sine = hn::CopySign(hn::Sqrt(hn::Max(hn::Sub(half, ratio), hn::Zero(df))), doubledSine);
    const auto stretch = hn::Add(clear, hn::Set(df, 1));
    const auto along = hn::Mul(stretch, hn::Set(df, radius));
    const auto across = hn::Div(hn::Set(df, radius), stretch);
    const auto alongX = hn::Mul(along, cosine);
    const auto alongY = hn::Mul(along, sine);
    const auto acrossX = hn::Neg(hn::Mul(across, sine));
    const auto acrossY = hn::Mul(across, cosine);

    HWY_ALIGN std::uint32_t blueRed[points * HWY_LANES(std::uint32_t)];
    HWY_ALIGN std::uint32_t greenAlpha[points * HWY_LANES(std::uint32_t)];
    HWY_ALIGN std::uint32_t square[points * HWY_LANES(std::uint32_t)];
    const auto lowBytes = hn::Set(dw, 0x00FF00FFU);
    const auto keep = [&](std::size_t point, auto pixels) {
        const auto br = hn::And(pixels, lowBytes);
        const auto ga = hn::And(hn::ShiftRight<8>(pixels), lowBytes);
        const auto brHalves = hn::BitCast(dsh, br);
        const auto green = hn::BitCast(dsh, hn::And(ga, hn::Set(dw, 0xFFU)));
        auto second = hn::Zero(di);
        auto sum = hn::ReorderWidenMulAccumulate(di, brHalves, brHalves, hn::Zero(di), second);
        sum = hn::ReorderWidenMulAccumulate(di, green, green, sum, second);
        sum = hn::RearrangeToOddPlusEven(sum, second);
        const std::size_t at = point * std::size_t(lanes);
        hn::Store(br, dw, blueRed + at);
        hn::Store(ga, dw, greenAlpha + at);
        hn::Store(hn::ShiftRight<3>(hn::BitCast(dw, sum)), dw, square + at); // fits 15 bits
    };
    const auto column = hn::Iota(di, x);
    const auto row = hn::Set(di, y);
    keep(0, hn::GatherIndex(dw, colours, bounds.index(column, row, stride)));
    for (std::size_t i = 0; i < pairs; ++i) {
        const auto px = hn::Set(df, shape.x[i]);
        const auto py = hn::Set(df, shape.y[i]);
        const auto dx = hn::NearestInt(hn::Add(hn::Mul(px, alongX), hn::Mul(py, acrossX)));
        const auto dy = hn::NearestInt(hn::Add(hn::Mul(px, alongY), hn::Mul(py, acrossY)));
        keep(1 + 2 * i, hn::GatherIndex(dw, colours, bounds.index(hn::Add(column, dx), hn::Add(row, dy), stride)));
        keep(2 + 2 * i, hn::GatherIndex(dw, colours, bounds.index(hn::Sub(column, dx), hn::Sub(row, dy), stride)));
    }

    auto blue = hn::Zero(df);
    auto green = hn::Zero(df);
    auto red = hn::Zero(df);
    auto alpha = hn::Zero(df);
    auto total = hn::Zero(df);
    for (const auto &sector : shape.sectorOf) {
        auto br = hn::Zero(dh);
        auto ga = hn::Zero(dh);
        auto squares = hn::Zero(di);
        auto second = hn::Zero(di);
        for (const auto &[point, weight] : sector) {
            const std::size_t at = point * std::size_t(lanes);
            const auto w = hn::BitCast(dh, hn::Set(dw, weight));
            br = hn::Add(br, hn::Mul(hn::BitCast(dh, hn::Load(dw, blueRed + at)), w));
            ga = hn::Add(ga, hn::Mul(hn::BitCast(dh, hn::Load(dw, greenAlpha + at)), w));
            squares = hn::ReorderWidenMulAccumulate(di, hn::BitCast(dsh, hn::Load(dw, square + at)),
                                                    hn::BitCast(dsh, w), squares, second);
        }
        const auto low = [&](auto v) {
            return hn::ConvertTo(df, hn::BitCast(di, hn::And(hn::BitCast(dw, v), hn::Set(dw, 0xFFFFU))));
        };
        const auto high = [&](auto v) {
            return hn::ConvertTo(df, hn::BitCast(di, hn::ShiftRight<16>(hn::BitCast(dw, v))));
        };
        const auto b = low(br);
        const auto g = low(ga);
        const auto r = high(br);
        const auto mean = hn::Add(hn::Add(hn::Mul(b, b), hn::Mul(g, g)), hn::Mul(r, r));
        // In fractions of evenVariance.
        const auto variance =
            hn::Max(hn::Sub(hn::Mul(hn::ConvertTo(df, hn::RearrangeToOddPlusEven(squares, second)),
                                    hn::Set(df, 8.0F / fullWeight / evenVariance)),
                            hn::Mul(mean, hn::Set(df, 1.0F / fullWeight / fullWeight / evenVariance))),
                    hn::Zero(df));
        const auto squared = hn::Mul(variance, variance);
        const auto share = hn::Div(hn::Set(df, 1), hn::Add(hn::Set(df, 1), hn::Mul(squared, squared)));
        blue = hn::Add(blue, hn::Mul(b, share));
        green = hn::Add(green, hn::Mul(g, share));
        red = hn::Add(red, hn::Mul(r, share));
        alpha = hn::Add(alpha, hn::Mul(high(ga), share));
        total = hn::Add(total, share);
    }

    auto light = hn::Set(df, 1);
    if (relief > 0) {
        const auto *noise = reinterpret_cast<const std::int32_t *>(source.flow.data);
        auto bristles = hn::Zero(di);
        const auto toStep = hn::Set(df, radius * bristleReach / bristleSteps);
        const auto stepX = hn::Mul(cosine, toStep);
        const auto stepY = hn::Mul(sine, toStep);
        const auto read = [&](auto at) {
            bristles = hn::Add(bristles, hn::ShiftRight<24>(hn::GatherIndex(di, noise, at)));
        };
        read(bounds.index(column, row, flowStride));
        for (int k = 1; k <= bristleSteps; ++k) {
            const auto steps = hn::Set(df, static_cast<float>(k));
            const auto dx = hn::NearestInt(hn::Mul(stepX, steps));
            const auto dy = hn::NearestInt(hn::Mul(stepY, steps));
            read(bounds.index(hn::Add(column, dx), hn::Add(row, dy), flowStride));
            read(bounds.index(hn::Sub(column, dx), hn::Sub(row, dy), flowStride));
        }
        light = hn::Add(light, hn::Mul(hn::ConvertTo(df, bristles), hn::Set(df, relief)));
    }

    const auto scale = hn::Div(hn::Set(df, 1.0F / fullWeight), total);
    const auto opacity = hn::NearestInt(hn::Mul(alpha, scale));
    const auto level = [&](auto sum) {
        const auto lit = hn::NearestInt(hn::Mul(hn::Mul(sum, scale), light));
        return hn::BitCast(dw, hn::Min(hn::Max(lit, hn::Zero(di)), opacity));
    };
    const auto result = hn::Or(hn::Or(level(blue), hn::ShiftLeft<8>(level(green))),
                               hn::Or(hn::ShiftLeft<16>(level(red)), hn::ShiftLeft<24>(hn::BitCast(dw, opacity))));
    hn::StoreU(result, dw, to);
}

/// Pixels left to right - 1 of row y. The pictures of the source have room for a vector more.
void paintRow(const PaintSource &source, const BrushShape &shape, float radius, float relief, int left, int right,
              int y, std::uint32_t *to) {
    const int lanes = static_cast<int>(hn::Lanes(Words()));
    std::uint32_t last[HWY_LANES(std::uint32_t)];
    for (int x = left; x < right; x += lanes, to += lanes) {
        if (x + lanes <= right) {
            paintFew(source, shape, radius, relief, x, y, to);
        } else {
            paintFew(source, shape, radius, relief, x, y, last);
            std::memcpy(to, last, std::size_t(right - x) * sizeof(std::uint32_t));
        }
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(paintRow);

namespace {

/// The grid's points and their weights in each sector: (x + zeta - eta y^2)^2 in the sector's own direction, as the
/// paper has them for eight sectors, and a bell towards the rim.
BrushShape makeBrush() {
    constexpr double pi = std::numbers::pi;
    constexpr double zeta = 1.0 / 3;
    const double gamma = 3 * pi / 8;
    const double eta = (zeta + std::cos(gamma)) / (std::sin(gamma) * std::sin(gamma));
    BrushShape shape;
    std::vector<std::array<double, 2>> places{{0, 0}};
    for (int y = 0; y <= rings; ++y) {
        for (int x = -rings; x <= rings; ++x) {
            if (x * x + y * y <= rings * rings && (y > 0 || x > 0)) {
                const std::array<double, 2> place{double(x) / rings, double(y) / rings};
                shape.x[places.size() / 2] = static_cast<float>(place[0]);
                shape.y[places.size() / 2] = static_cast<float>(place[1]);
                places.push_back(place);
                places.push_back({-place[0], -place[1]});
            }
        }
    }
    std::array<std::vector<double>, sectors> weights;
    for (const auto &[x, y] : places) {
        std::array<double, sectors> shares{};
        double total = 0;
        for (int k = 0; k < sectors; ++k) {
            const double turn = 2 * pi * k / sectors;
            const double forwards = std::cos(turn) * x + std::sin(turn) * y;
            const double sideways = std::cos(turn) * y - std::sin(turn) * x;
            const double height = std::max(0.0, forwards + zeta - eta * sideways * sideways);
            shares[std::size_t(k)] = height * height;
            total += height * height;
        }
        for (std::size_t k = 0; k < sectors; ++k) {
            weights[k].push_back(shares[k] / total * std::exp(-1.6 * (x * x + y * y)));
        }
    }
    for (std::size_t k = 0; k < sectors; ++k) {
        double total = 0;
        for (const double weight : weights[k]) {
            total += weight;
        }
        double sum = 0;
        int given = 0;
        for (std::size_t i = 0; i < points; ++i) { // rounded so that the sum is exact
            sum += weights[k][i] / total * fullWeight;
            const auto weight = static_cast<std::uint32_t>(std::lround(sum) - given);
            given += static_cast<int>(weight);
            if (weight > 0) {
                shape.sectorOf[k].push_back({static_cast<std::uint32_t>(i), weight << 16 | weight});
            }
        }
    }
    return shape;
}

} // namespace

void paintStrokes(const PaintSource &source, float radius, float relief, int left, int right, int y, std::uint8_t *to) {
    static const BrushShape shape = makeBrush();
    HWY_DYNAMIC_DISPATCH(paintRow)
    (source, shape, radius, relief, left, right, y, reinterpret_cast<std::uint32_t *>(to));
}

} // namespace lumora
#endif
