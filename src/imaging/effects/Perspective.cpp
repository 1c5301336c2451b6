#include "imaging/effects/Perspective.h"

#include "imaging/kernels/PartOf.h"
#include "imaging/kernels/PerspectiveColumns.h"
#include "imaging/kernels/Premultiply.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/kernels/ScratchPicture.h"
#include "imaging/kernels/Targets.h"

#include <cmath>
#include <cstring>
#include <numbers>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Perspective.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

using Places = hn::Repartition<std::int32_t, Pixels>;
using PlaceVector = hn::Vec<Places>;

/// a and b mixed; the weights of b, 0 to 256, are in both halves of each word.
HWY_INLINE PixelVector mixed(PixelVector a, PixelVector b, PixelVector weights) {
    const Pixels d;
    const hn::Repartition<std::uint16_t, Pixels> d16;
    const auto lowBytes = hn::Set(d, 0x00FF00FFU);
    const auto ofB = hn::BitCast(d16, weights);
    const auto ofA = hn::Sub(hn::Set(d16, 256), ofB);
    const auto mix = [&](PixelVector x, PixelVector y) {
        const auto sum = hn::Add(hn::Mul(hn::BitCast(d16, x), ofA), hn::Mul(hn::BitCast(d16, y), ofB));
        return hn::BitCast(d, hn::Add(sum, hn::Set(d16, 128)));
    };
    const auto even = mix(hn::And(a, lowBytes), hn::And(b, lowBytes));
    const auto odd = mix(hn::And(hn::ShiftRight<8>(a), lowBytes), hn::And(hn::ShiftRight<8>(b), lowBytes));
    return hn::Or(hn::And(hn::ShiftRight<8>(even), lowBytes), hn::AndNot(lowBytes, odd));
}

/// The rows of the source that a vector of columns needs, and the weights of the rows below them.
struct RowPlaces {
    PlaceVector top;
    PlaceVector weight;
};

HWY_INLINE RowPlaces rowPlaces(const double *halfStep, double twiceFromMiddle, double middle) {
    const hn::Half<Places> half;
    const hn::Rebind<double, decltype(half)> d;
    const auto part = [&](const double *steps) {
        return hn::Add(hn::Mul(hn::LoadU(d, steps), hn::Set(d, twiceFromMiddle)), hn::Set(d, middle));
    };
    const auto low = part(halfStep);
    const auto high = part(halfStep + hn::Lanes(half));
    const auto lowTop = hn::Floor(low);
    const auto highTop = hn::Floor(high);
    const auto fraction = [&](auto row, auto top) {
        return hn::DemoteTo(half, hn::Mul(hn::Sub(row, top), hn::Set(d, 256)));
    };
    return {hn::Combine(Places(), hn::DemoteTo(half, highTop), hn::DemoteTo(half, lowTop)),
            hn::Combine(Places(), fraction(high, highTop), fraction(low, lowTop))};
}

/// Pixels of the source, background outside; for any position, but slow.
struct Sampler {
    ConstPixelView source;
    std::uint32_t background;

    HWY_INLINE PixelVector at(PlaceVector x, PlaceVector y) const {
        const Places d;
        const auto zero = hn::Zero(d);
        const auto insideX = hn::Min(hn::Max(x, zero), hn::Set(d, source.width - 1));
        const auto insideY = hn::Min(hn::Max(y, zero), hn::Set(d, source.height - 1));
        const auto words = hn::Set(d, static_cast<std::int32_t>(source.stride / 4));
        const auto pixels = hn::GatherIndex(Pixels(), reinterpret_cast<const std::uint32_t *>(source.data),
                                            hn::Add(hn::Mul(insideY, words), insideX));
        const auto there = hn::VecFromMask(d, hn::And(hn::Eq(insideX, x), hn::Eq(insideY, y)));
        const auto mask = hn::BitCast(Pixels(), there);
        return hn::Or(hn::And(mask, pixels), hn::AndNot(mask, hn::Set(Pixels(), background)));
    }
};

HWY_INLINE PixelVector sampledAnywhere(const Sampler &sampler, const std::int32_t *left, const std::int32_t *weight,
                                       const RowPlaces &rows) {
    const Places d;
    const auto one = hn::Set(d, 1);
    const auto x = hn::LoadU(d, left);
    const auto next = hn::Add(x, one);
    const auto below = hn::Add(rows.top, one);
    const auto bothHalves = [](PlaceVector weights) {
        return hn::BitCast(Pixels(), hn::Or(weights, hn::ShiftLeft<16>(weights)));
    };
    const auto across = bothHalves(hn::LoadU(d, weight));
    return mixed(mixed(sampler.at(x, rows.top), sampler.at(next, rows.top), across),
                 mixed(sampler.at(x, below), sampler.at(next, below), across), bothHalves(rows.weight));
}

/// The same where all four pixels of each position are inside the picture: the two of a row need one load.
HWY_INLINE PixelVector sampledInside(ConstPixelView source, const std::int32_t *left, const std::int32_t *weight,
                                     const RowPlaces &rows) {
    const Pixels d;
    const Places places;
    constexpr int most = HWY_LANES(std::uint32_t);
    HWY_ALIGN std::int32_t top[most];
    HWY_ALIGN std::uint32_t upper[2 * most];
    HWY_ALIGN std::uint32_t lower[2 * most];
    hn::Store(rows.top, places, top);
    const auto lanes = hn::Lanes(d);
    for (std::size_t i = 0; i < lanes; ++i) {
        const std::uint8_t *pixel = source.row(top[i]) + std::ptrdiff_t(4) * left[i];
        std::memcpy(upper + 2 * i, pixel, 8);
        std::memcpy(lower + 2 * i, pixel + source.stride, 8);
    }
    const auto bothHalves = [](PlaceVector weights) {
        return hn::BitCast(Pixels(), hn::Or(weights, hn::ShiftLeft<16>(weights)));
    };
    const auto across = bothHalves(hn::LoadU(places, weight));
    const auto mixedRow = [&](const std::uint32_t *pairs) {
        const auto first = hn::Load(d, pairs);
        const auto second = hn::Load(d, pairs + lanes);
        return mixed(hn::ConcatEven(d, second, first), hn::ConcatOdd(d, second, first), across);
    };
    return mixed(mixedRow(upper), mixedRow(lower), bothHalves(rows.weight));
}

HWY_INLINE PixelVector sampled(const Sampler &sampler, const std::int32_t *left, const std::int32_t *weight,
                               const RowPlaces &rows) {
    const Places d;
    const auto x = hn::LoadU(d, left);
    const auto before = hn::Set(d, -1);
    const auto lowest = hn::Min(x, rows.top);
    const auto width = hn::Set(d, sampler.source.width);
    const auto height = hn::Set(d, sampler.source.height);
    const auto one = hn::Set(d, 1);
    const auto withNext = hn::And(hn::Lt(hn::Add(x, one), width), hn::Lt(hn::Add(rows.top, one), height));
    if (hn::AllTrue(d, hn::And(hn::Gt(lowest, before), withNext))) {
        return sampledInside(sampler.source, left, weight, rows);
    }
    const auto reached = hn::And(hn::Lt(x, width), hn::Lt(rows.top, height));
    if (hn::AllFalse(d, hn::And(hn::Gt(lowest, hn::Set(d, -2)), reached))) {
        return hn::Set(Pixels(), sampler.background);
    }
    return sampledAnywhere(sampler, left, weight, rows);
}

/// The column tables are padded by one vector beyond the picture, so that the last vector can be partial.
void perspectiveRows(const PerspectiveColumns &columns, std::uint32_t background, ConstPixelView source,
                     PixelView target, PixelRect area) {
    const Pixels d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    const Sampler sampler{source, background};
    const double middle = (source.height - 1) / 2.0;
    for (int y = area.top; y < area.bottom; ++y) {
        const double twiceFromMiddle = 2.0 * y + 1 - source.height;
        auto *to = reinterpret_cast<std::uint32_t *>(target.row(y));
        for (int x = area.left; x < area.right; x += lanes) {
            const RowPlaces rows = rowPlaces(columns.halfStep.data() + x, twiceFromMiddle, middle);
            const auto result = sampled(sampler, columns.left.data() + x, columns.weight.data() + x, rows);
            if (x + lanes <= area.right) {
                hn::StoreU(result, d, to + x);
            } else {
                HWY_ALIGN std::uint32_t few[HWY_LANES(std::uint32_t)];
                hn::Store(result, d, few);
                std::memcpy(to + x, few, static_cast<std::size_t>(area.right - x) * sizeof(std::uint32_t));
            }
        }
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(perspectiveRows);

namespace {

/// With the eye at `distance` from the middle of the picture, a point of it X right of the axis is projected to
///   u = X * cos * near / (distance + X * sin), and everything there is near / (distance + X * sin) as high,
/// where `near` is the distance of the near side, so that this side keeps its height.
PerspectiveColumns columnsFor(int angle, int width) {
    const double turn = std::clamp(angle, -60, 60) * std::numbers::pi / 180;
    const double sine = std::sin(turn);
    const double cosine = std::cos(turn);
    const double half = width / 2.0;
    const double distance = 1.5 * width;
    const double near = distance - half * std::abs(sine);
    const auto projected = [&](double x) { return x * cosine * near / (distance + x * sine); };
    const double middle = (projected(half) + projected(-half)) / 2;
    PerspectiveColumns columns;
    const auto length = static_cast<std::size_t>(width) + 64; // more than any vector
    columns.left.assign(length, -2);
    columns.weight.assign(length, 0);
    columns.halfStep.assign(length, 0.5);
    for (std::size_t i = 0; i < static_cast<std::size_t>(width); ++i) {
        const double u = static_cast<double>(i) + 0.5 - half + middle;
        const double x = u * distance / (near * cosine - u * sine);
        const double place = std::floor((x + half - 0.5) * 256 + 0.5) / 256;
        if (place > -1 && place < width) {
            columns.left[i] = static_cast<std::int32_t>(std::floor(place));
            columns.weight[i] = static_cast<std::int32_t>((place - std::floor(place)) * 256);
            columns.halfStep[i] = std::ldexp(std::round(std::ldexp((distance + x * sine) / near, 20)), -21);
        }
    }
    return columns;
}

} // namespace

bool applyPerspective(const Perspective &parameters, ConstPixelView source, PixelView target, PixelRect area,
                      bool opaque) {
    const auto level = [](int value) { return static_cast<std::uint32_t>(std::clamp(value, 0, 255)); };
    const bool clear = !opaque && parameters.clearBesideHoles;
    const std::uint32_t colour = level(parameters.red) << 16 | level(parameters.green) << 8 | level(parameters.blue);
    const std::uint32_t background = clear ? 0 : 0xFF000000U | colour;
    const PerspectiveColumns columns = columnsFor(parameters.angle, source.width);
    const auto draw = [&](ConstPixelView from) {
        forBands(area, [&](PixelRect band) {
            HWY_DYNAMIC_DISPATCH(perspectiveRows)(columns, background, from, target, band);
        });
    };
    if (opaque) {
        draw(source);
        return true;
    }
    const ScratchPicture scratch(source.width, source.height);
    if (scratch.view().isEmpty()) {
        return false;
    }
    premultiply(source, scratch.view());
    draw(readOnly(scratch.view()));
    unpremultiply(partOf(target, area));
    return true;
}

} // namespace lumora
#endif
