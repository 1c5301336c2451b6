#include "imaging/effects/OilPainting.h"

#include "imaging/effects/Blur.h"
#include "imaging/kernels/BoxReduce.h"
#include "imaging/kernels/PartOf.h"
#include "imaging/kernels/Premultiply.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/kernels/Targets.h"
#include "imaging/transforms/Resample.h"

#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <numbers>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/OilPainting.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h
#include <hwy/highway.h>

#ifndef LUMORA_OIL_PAINTING_ONCE
#define LUMORA_OIL_PAINTING_ONCE
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

/// The pictures that a block is painted from, all of one size.
struct PaintSource {
    ConstPixelView colours; ///< smoothed, multiplied by alpha
    ConstPixelView flow;    ///< see flowOf; alpha is the noise of addNoise
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

constexpr double largestBrush = 1000;
constexpr double largestWorkBrush = 16; // a larger one paints a reduced copy
constexpr int blockSide = 512;          // pixels of the reduced copy
constexpr double relief = .0004;        // what a level of the sum along a bristle changes
constexpr double bristles = 6;          // across half a brush
constexpr int flowBlur = 2;             // pixels of the picture in which directions are sought

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

/// How a brush is applied.
struct Plan {
    explicit Plan(double brush) {
        while (brush / factor >= largestWorkBrush && factor < 16) {
            factor *= 2;
        }
        radius = brush / factor;
        smoothing = radius >= 12 ? 2 : radius >= 5 ? 1 : 0;
        flowFactor = radius >= 8 ? 4 : 2;
        const int strokes = static_cast<int>(2 * radius) + 3 + 3 * smoothing;
        const int directions = (3 * flowBlur + 4) * flowFactor;
        margin = std::max(strokes, directions);
    }

    int factor = 1; ///< the copy that is painted is the picture reduced by it
    double radius;  ///< of the brush, in pixels of that copy, as all that follows
    int smoothing;  ///< so that the points between the grid's count too
    int flowFactor; ///< directions are sought in a copy that is reduced again
    int margin;     ///< what a pixel needs around it
};

/// Memory of a picture for one block; undefined pixels. Kernels may read a vector beyond the last.
class BlockPicture {
  public:
    BlockPicture() = default;
    BlockPicture(int width, int height) {
        constexpr std::size_t beyond = 256;
        const std::size_t bytes = 4 * std::size_t(width) * std::size_t(height);
        m_pixels = std::make_unique_for_overwrite<std::uint8_t[]>(bytes + beyond);
        std::fill_n(m_pixels.get() + bytes, beyond, std::uint8_t(0));
        m_view = {m_pixels.get(), width, height, std::ptrdiff_t(4) * width};
    }

    PixelView view() const { return m_view; }

  private:
    std::unique_ptr<std::uint8_t[]> m_pixels;
    PixelView m_view;
};

std::uint32_t hashOf(int x, int y) {
    std::uint32_t h = static_cast<std::uint32_t>(x) * 0x9E3779B1U ^ static_cast<std::uint32_t>(y) * 0x85EBCA77U;
    h = (h ^ h >> 15) * 0x2C1B3C6DU;
    h = (h ^ h >> 12) * 0x297A2D39U;
    return h ^ h >> 15;
}

/// From -1 to 1 and back.
float triangle(float phase) {
    return 4 * std::abs(phase - std::floor(phase) - .5F) - 1;
}

/// Where nothing in the picture says it, strokes run in slowly changing directions: a doubled angle, at a place in
/// pixels of the picture in which directions are sought.
std::array<float, 2> handsOwnDirection(int column, int row) {
    const auto x = static_cast<float>(column);
    const auto y = static_cast<float>(row);
    return {triangle(.0071F * x + .0113F * y) + .3F, triangle(.0127F * x - .0059F * y + .37F) - .2F};
}

/// The direction along which the picture changes least, at each pixel: blue and green are the cosine and the sine of
/// the doubled angle, times the strength of the contrast there, + 128; red is that strength (the structure tensor of Di
/// Zenzo with compressed contrasts).
void flowOf(ConstPixelView picture, PixelView flow, int left, int top) {
    constexpr float soft = 12; // levels of contrast that count half
    constexpr float own = 5;   // the strength of the hand's own direction
    const int lastColumn = picture.width - 1;
    const int lastRow = picture.height - 1;
    for (int y = 0; y < picture.height; ++y) {
        const std::uint8_t *above = picture.row(std::max(y - 1, 0));
        const std::uint8_t *here = picture.row(y);
        const std::uint8_t *below = picture.row(std::min(y + 1, lastRow));
        std::uint8_t *to = flow.row(y);
        for (int x = 0; x < picture.width; ++x, to += 4) {
            const int before = 4 * std::max(x - 1, 0);
            const int after = 4 * std::min(x + 1, lastColumn);
            int xx = 0;
            int yy = 0;
            int xy = 0;
            for (int c = 0; c < 3; ++c) {
                const int gx = 3 * (above[after + c] - above[before + c] + below[after + c] - below[before + c]) +
                               10 * (here[after + c] - here[before + c]);
                const int gy = 3 * (below[before + c] - above[before + c] + below[after + c] - above[after + c]) +
                               10 * (below[4 * x + c] - above[4 * x + c]);
                xx += gx * gx;
                yy += gy * gy;
                xy += gx * gy;
            }
            const auto energy = static_cast<float>(xx) + static_cast<float>(yy);
            const float contrast = std::sqrt(energy) / 32;
            const float strength = (120 - 1.5F * own) * contrast / (contrast + soft);
            const float scale = energy > 0 ? strength / energy : 0;
            const auto [ownCosine, ownSine] = handsOwnDirection(left + x, top + y);
            const auto byte = [](float value) { return static_cast<std::uint8_t>(value + .5F); };
            to[0] = byte(128 + static_cast<float>(yy - xx) * scale + own * ownCosine);
            to[1] = byte(128 - static_cast<float>(2 * xy) * scale + own * ownSine);
            to[2] = byte(strength + own);
            to[3] = 255;
        }
    }
}

/// Where the centres of a line of pixels are between the points of a lattice.
struct LatticePlace {
    int cell;
    int share; ///< of the next point, of 64
};

std::vector<LatticePlace> latticePlaces(int first, int count, double cell) {
    std::vector<LatticePlace> places;
    places.reserve(std::size_t(count));
    for (int i = first; i < first + count; ++i) {
        const double at = (i + .5) / cell;
        places.push_back({static_cast<int>(at), static_cast<int>(64 * (at - std::floor(at)))});
    }
    return places;
}

/// Sets alpha to what, smeared along the strokes, gives bristles lit from the upper left: random heights at the points
/// of a lattice of that many pixels, less their neighbours', -127 to 127.
void addNoise(PixelView flow, int left, int top, double cell) {
    const auto across = latticePlaces(left, flow.width, cell);
    const auto down = latticePlaces(top, flow.height, cell);
    const int firstCell = across.front().cell;
    const auto columns = std::size_t(across.back().cell - firstCell) + 3;
    std::vector<std::int16_t> above(columns);
    std::vector<std::int16_t> below(columns);
    const auto fill = [&](std::vector<std::int16_t> &line, int row) {
        const auto height = [&](int x, int y) { return static_cast<int>(hashOf(x, y) >> 25); };
        for (std::size_t i = 0; i < columns; ++i) {
            const int x = firstCell + int(i);
            line[i] = static_cast<std::int16_t>(height(x + 1, row + 1) - height(x, row));
        }
    };
    std::vector<int> mixed(columns); // in 64ths
    int filled = -2;
    for (int y = 0; y < flow.height; ++y) {
        const auto [row, share] = down[std::size_t(y)];
        if (row != filled) {
            fill(above, row);
            fill(below, row + 1);
            filled = row;
        }
        for (std::size_t i = 0; i < columns; ++i) {
            mixed[i] = above[i] * (64 - share) + below[i] * share;
        }
        std::uint8_t *to = flow.row(y) + 3;
        for (const auto &[cellX, shareX] : across) {
            const int *pair = mixed.data() + (cellX - firstCell);
            *to = static_cast<std::uint8_t>((pair[0] * (64 - shareX) + pair[1] * shareX) >> 12);
            to += 4;
        }
    }
}

class Painter {
  public:
    Painter(double brush, ConstPixelView source, PixelView target, PixelRect area, bool opaque)
        : m_plan(brush), m_source(source), m_target(target), m_area(area), m_opaque(opaque),
          m_width((source.width - 1) / m_plan.factor + 1), m_height((source.height - 1) / m_plan.factor + 1) {}

    void paint() const {
        const int side = blockSide * m_plan.factor; // blocks at multiples of the factor
        const int left = m_area.left / m_plan.factor * m_plan.factor;
        const int top = m_area.top / m_plan.factor * m_plan.factor;
        const int across = (m_area.right - left - 1) / side + 1;
        const int down = (m_area.bottom - top - 1) / side + 1;
        forRowBands(across * down, std::int64_t(1) << 16, [&](int first, int end) {
            for (int i = first; i < end; ++i) {
                const int x = left + i % across * side;
                const int y = top + i / across * side;
                paintBlock({x, y, std::min(x + side, m_area.right), std::min(y + side, m_area.bottom)});
            }
        });
    }

  private:
    /// The pixels of the reduced copy from `first` to `last` and `margin` more, as far as there are any, from a
    /// multiple of `step` on.
    static std::array<int, 2> widened(int first, int last, int margin, int step, int side) {
        return {std::max(first - margin, 0) / step * step, std::min((last + margin) / step * step + step, side)};
    }

    PixelRect widened(PixelRect rect, int margin, int step) const {
        const auto [left, right] = widened(rect.left, rect.right - 1, margin, step, m_width);
        const auto [top, bottom] = widened(rect.top, rect.bottom - 1, margin, step, m_height);
        return {left, top, right, bottom};
    }

    /// The part of the reduced copy, multiplied by alpha.
    ConstPixelView reduced(PixelRect part, BlockPicture &memory) const {
        const int f = m_plan.factor;
        const ConstPixelView from =
            partOf(m_source, {part.left * f, part.top * f, std::min(part.right * f, m_source.width),
                              std::min(part.bottom * f, m_source.height)});
        if (f == 1 && m_opaque) {
            return from;
        }
        memory = BlockPicture(part.width(), part.height());
        if (f > 1) {
            boxReduce(from, memory.view(), f, m_opaque);
        }
        if (!m_opaque) {
            premultiply(f > 1 ? readOnly(memory.view()) : from, memory.view());
        }
        return readOnly(memory.view());
    }

    BlockPicture smoothed(ConstPixelView picture) const {
        BlockPicture result(picture.width, picture.height);
        if (!applyBlur({double(m_plan.smoothing)}, picture, result.view(), wholeOf(picture), true)) {
            throw std::bad_alloc();
        }
        return result;
    }

    BlockPicture directions(ConstPixelView picture, PixelRect part) const {
        const int f = m_plan.flowFactor;
        const int width = (picture.width - 1) / f + 1;
        const int height = (picture.height - 1) / f + 1;
        const BlockPicture small(width, height);
        boxReduce(picture, small.view(), f, true);
        const BlockPicture sharp(width, height);
        flowOf(readOnly(small.view()), sharp.view(), part.left / f, part.top / f);
        const BlockPicture soft(width, height);
        if (!applyBlur({flowBlur}, readOnly(sharp.view()), soft.view(), wholeOf(soft.view()), true)) {
            throw std::bad_alloc();
        }
        BlockPicture whole(width * f, height * f);
        resample(readOnly(soft.view()), whole.view());
        return whole;
    }

    void paintBlock(PixelRect block) const {
        const int f = m_plan.factor;
        const PixelRect copied{block.left / f, block.top / f, (block.right - 1) / f + 1, (block.bottom - 1) / f + 1};
        const PixelRect painted = widened(copied, f > 1 ? 2 : 0, 1);
        const PixelRect part = widened(painted, m_plan.margin, m_plan.flowFactor);
        BlockPicture memory;
        const ConstPixelView copy = reduced(part, memory);
        const BlockPicture colours = smoothed(copy);
        const BlockPicture flow = directions(copy, part);
        addNoise(flow.view(), part.left, part.top, m_plan.radius / bristles);
        const PaintSource from{readOnly(colours.view()), readOnly(flow.view())};
        const auto radius = static_cast<float>(m_plan.radius);
        const float light = reliefOf(m_plan.radius);
        const auto paintRows = [&](PixelView to, PixelRect rows) {
            for (int y = rows.top; y < rows.bottom; ++y) {
                HWY_DYNAMIC_DISPATCH(paintRow)
                (from, brushShape(), radius, light, rows.left - part.left, rows.right - part.left, y - part.top,
                 reinterpret_cast<std::uint32_t *>(to.row(y - rows.top)));
            }
        };
        if (f == 1) {
            const PixelView to = partOf(m_target, block);
            paintRows(to, block);
            finish(to);
            return;
        }
        const BlockPicture result(painted.width(), painted.height());
        paintRows(result.view(), painted);
        const Resampler resampler(readOnly(result.view()), painted.width() * f, painted.height() * f);
        std::vector<std::int16_t> line(resampler.rowMemory());
        for (int y = block.top; y < block.bottom; ++y) {
            resampler.writeRow(y - painted.top * f, block.left - painted.left * f, block.right - painted.left * f,
                               m_target.row(y) + std::ptrdiff_t(4) * block.left, line.data());
        }
        finish(partOf(m_target, block));
    }

    void finish(PixelView painted) const {
        if (!m_opaque) {
            unpremultiply(painted);
        }
    }

    /// What a level of the bristles' sum changes; less where bristles are finer than a pixel.
    static float reliefOf(double radius) { return static_cast<float>(relief * std::min(radius / bristles, 1.0)); }

    static const BrushShape &brushShape() {
        static const BrushShape shape = makeBrush();
        return shape;
    }

    Plan m_plan;
    ConstPixelView m_source;
    PixelView m_target;
    PixelRect m_area;
    bool m_opaque;
    int m_width; ///< of the copy
    int m_height;
};

} // namespace

void applyOilPainting(const OilPainting &parameters, ConstPixelView source, PixelView target, PixelRect area,
                      bool opaque) {
    const double brush = std::clamp(parameters.brush, 0.0, largestBrush);
    if (brush < .5) {
        for (int y = area.top; y < area.bottom; ++y) {
            std::memcpy(target.row(y) + std::ptrdiff_t(4) * area.left, source.row(y) + std::ptrdiff_t(4) * area.left,
                        std::size_t(area.width()) * 4);
        }
        return;
    }
    Painter(brush, source, target, area, opaque).paint();
}

} // namespace lumora
#endif
