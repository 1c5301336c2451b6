#include "imaging/kernels/Convolution.h"

#include "imaging/kernels/AreaAverage.h"
#include "imaging/kernels/Enlarge.h"
#include "imaging/kernels/FixedKernel.h"
#include "imaging/kernels/PartOf.h"
#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Premultiply.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/kernels/ScratchPicture.h"
#include "imaging/kernels/Targets.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/kernels/Convolution.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

using Words = hn::Repartition<std::int16_t, Pixels>;
using Sums = hn::Repartition<std::int32_t, Pixels>;

HWY_INLINE hn::Vec<Words> evenBytes(PixelVector pixels) {
    return hn::BitCast(Words(), hn::And(pixels, hn::Set(Pixels(), 0x00FF00FFU)));
}

HWY_INLINE hn::Vec<Words> oddBytes(PixelVector pixels) {
    return hn::BitCast(Words(), hn::ShiftRight<8>(hn::BitCast(hn::Repartition<std::uint16_t, Pixels>(), pixels)));
}

/// Weighted sums of one colour of one half of a vector's pixels.
struct Accumulator {
    hn::Vec<Sums> sum;
    hn::Vec<Sums> second = hn::Zero(Sums());

    HWY_INLINE void add(hn::Vec<Words> pair, hn::Vec<Words> weights) {
        sum = hn::ReorderWidenMulAccumulate(Sums(), pair, weights, sum, second);
    }
    HWY_INLINE hn::Vec<Sums> result(int bits) const {
        return hn::ShiftRightSame(hn::RearrangeToOddPlusEven(sum, second), bits);
    }
};

/// Adds two of the nine places with their weights, number n and the next. Called five times, not in a loop,
/// so that the loads are at fixed offsets.
HWY_INLINE void addPair(Accumulator *sums, PixelVector first, PixelVector next, const FixedKernel &kernel,
                        std::size_t n) {
    const Pixels d;
    const Words d16;
    const auto pair = static_cast<std::uint32_t>(static_cast<std::uint16_t>(kernel.weights[n])) |
                      static_cast<std::uint32_t>(static_cast<std::uint16_t>(kernel.weights[n + 1])) << 16;
    const auto weights = hn::BitCast(d16, hn::Set(d, pair));
    const auto even1 = evenBytes(first);
    const auto even2 = evenBytes(next);
    const auto odd1 = oddBytes(first);
    const auto odd2 = oddBytes(next);
    sums[0].add(hn::InterleaveLower(d16, even1, even2), weights);
    sums[1].add(hn::InterleaveUpper(d16, even1, even2), weights);
    sums[2].add(hn::InterleaveLower(d16, odd1, odd2), weights);
    sums[3].add(hn::InterleaveUpper(d16, odd1, odd2), weights);
}

/// Weighted sums that fit 16 bits, of opaque pixels.
struct NarrowSums {
    HWY_INLINE void add(PixelVector pixels, std::int16_t weight) {
        const auto factor = hn::Set(Words(), weight);
        blueAndRed = hn::Add(blueAndRed, hn::Mul(evenBytes(pixels), factor));
        greenAndAlpha = hn::Add(greenAndAlpha, hn::Mul(oddBytes(pixels), factor));
    }
    HWY_INLINE static PixelVector levels(hn::Vec<Words> sum, int bits) {
        const Words d;
        const auto level = hn::ShiftRightSame(sum, bits);
        return hn::BitCast(Pixels(), hn::Min(hn::Max(level, hn::Zero(d)), hn::Set(d, 255)));
    }

    hn::Vec<Words> blueAndRed;
    hn::Vec<Words> greenAndAlpha;
};

template <typename Load> HWY_INLINE PixelVector narrowlyConvolved(const Load &at, const FixedKernel &kernel) {
    const Pixels d;
    const auto start = hn::Set(Words(), static_cast<std::int16_t>(kernel.start));
    NarrowSums sums{start, start};
    sums.add(at(0), kernel.weights[0]);
    sums.add(at(1), kernel.weights[1]);
    sums.add(at(2), kernel.weights[2]);
    sums.add(at(3), kernel.weights[3]);
    sums.add(at(4), kernel.weights[4]);
    sums.add(at(5), kernel.weights[5]);
    sums.add(at(6), kernel.weights[6]);
    sums.add(at(7), kernel.weights[7]);
    sums.add(at(8), kernel.weights[8]);
    const auto greens = hn::And(NarrowSums::levels(sums.greenAndAlpha, kernel.bits), hn::Set(d, 0x000000FFU));
    return hn::Or(hn::Or(NarrowSums::levels(sums.blueAndRed, kernel.bits), hn::ShiftLeft<8>(greens)),
                  hn::Set(d, 0xFF000000U));
}

/// The pixels in the middle of three rows from left to right; at(n) loads those of place n.
template <bool opaque, typename Load>
HWY_INLINE PixelVector widelyConvolved(const Load &at, const FixedKernel &kernel) {
    const Pixels d;
    const Words d16;
    const Sums d32;
    const PixelVector middle = at(4);
    const auto alpha = hn::ShiftRight<24>(middle);
    const auto alphas = hn::BitCast(d16, hn::Or(alpha, hn::ShiftLeft<16>(alpha)));
    auto lower = hn::Set(d32, kernel.start);
    auto upper = lower;
    if constexpr (!opaque) {
        const auto factor = hn::Set(d32, kernel.startPerAlpha);
        const auto zero = hn::Zero(d16);
        lower = hn::Add(lower, hn::Mul(hn::BitCast(d32, hn::InterleaveLower(d16, alphas, zero)), factor));
        upper = hn::Add(upper, hn::Mul(hn::BitCast(d32, hn::InterleaveUpper(d16, alphas, zero)), factor));
    }
    Accumulator sums[4] = {{lower}, {upper}, {lower}, {upper}}; // blue and red, twice; green and alpha, twice
    addPair(sums, at(0), at(1), kernel, 0);
    addPair(sums, at(2), at(3), kernel, 2);
    addPair(sums, middle, at(5), kernel, 4);
    addPair(sums, at(6), at(7), kernel, 6);
    addPair(sums, at(8), hn::Zero(d), kernel, 8);
    const auto most = opaque ? hn::Set(d16, 255) : alphas;
    const auto level = [&](const Accumulator &low, const Accumulator &high) {
        const auto levels = hn::ReorderDemote2To(d16, low.result(kernel.bits), high.result(kernel.bits));
        return hn::BitCast(d, hn::Min(hn::Max(levels, hn::Zero(d16)), most));
    };
    const auto greens = hn::And(level(sums[2], sums[3]), hn::Set(d, 0x000000FFU));
    return hn::Or(hn::Or(level(sums[0], sums[1]), hn::ShiftLeft<8>(greens)), hn::And(middle, hn::Set(d, 0xFF000000U)));
}

enum class Way { Narrow, Opaque, Transparent };

template <Way way, typename Load> HWY_INLINE PixelVector convolved(const Load &at, const FixedKernel &kernel) {
    if constexpr (way == Way::Narrow) {
        return narrowlyConvolved(at, kernel);
    } else {
        return widelyConvolved<way == Way::Opaque>(at, kernel);
    }
}

/// Up to a vector's length of pixels, anywhere in the picture.
template <Way way>
void convolveFew(const FixedKernel &kernel, const std::uint32_t *const *rows, int width, int x, int count,
                 std::uint32_t *to) {
    const Pixels d;
    constexpr int length = HWY_LANES(std::uint32_t) + 2 * mostStep;
    const int step = kernel.step;
    std::uint32_t pixels[3][length] = {};
    for (int row = 0; row < 3; ++row) {
        for (int i = 0; i < count + 2 * step; ++i) {
            pixels[row][i] = rows[row][std::clamp(x - step + i, 0, width - 1)];
        }
    }
    HWY_ALIGN std::uint32_t result[HWY_LANES(std::uint32_t)];
    hn::Store(convolved<way>([&](int n) { return hn::LoadU(d, pixels[n / 3] + n % 3 * step); }, kernel), d, result);
    std::memcpy(to, result, static_cast<std::size_t>(count) * sizeof(std::uint32_t));
}

template <Way way>
void convolve(const FixedKernel &kernel, ConstPixelView source, PixelView target, PixelRect area, bool nonTemporal) {
    const Pixels d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    const int step = kernel.step;
    for (int y = area.top; y < area.bottom; ++y) {
        const std::uint32_t *rows[3];
        for (int i = 0; i < 3; ++i) {
            rows[i] = reinterpret_cast<const std::uint32_t *>(
                source.row(std::clamp(y + (i - 1) * step, 0, source.height - 1)));
        }
        auto *to = reinterpret_cast<std::uint32_t *>(target.row(y));
        for (int x = area.left; x < area.right;) {
            const auto offset =
                static_cast<int>(reinterpret_cast<std::uintptr_t>(to + x) / sizeof(std::uint32_t)) & (lanes - 1);
            const int count = std::min(lanes - offset, area.right - x);
            if (count < lanes || x < step || x + lanes + step > source.width) {
                convolveFew<way>(kernel, rows, source.width, x, count, to + x);
            } else {
                const auto result =
                    convolved<way>([&](int n) { return hn::LoadU(d, rows[n / 3] + x + (n % 3 - 1) * step); }, kernel);
                if (nonTemporal) {
                    hn::Stream(result, d, to + x);
                } else {
                    hn::Store(result, d, to + x);
                }
            }
            x += count;
        }
    }
    if (nonTemporal) {
        hwy::FlushStream();
    }
}

void convolveNarrow(const FixedKernel &kernel, ConstPixelView source, PixelView target, PixelRect area,
                    bool nonTemporal) {
    convolve<Way::Narrow>(kernel, source, target, area, nonTemporal);
}

void convolveOpaque(const FixedKernel &kernel, ConstPixelView source, PixelView target, PixelRect area,
                    bool nonTemporal) {
    convolve<Way::Opaque>(kernel, source, target, area, nonTemporal);
}

void convolveTransparent(const FixedKernel &kernel, ConstPixelView source, PixelView target, PixelRect area,
                         bool nonTemporal) {
    convolve<Way::Transparent>(kernel, source, target, area, nonTemporal);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(convolveNarrow);
HWY_EXPORT(convolveOpaque);
HWY_EXPORT(convolveTransparent);

namespace {

constexpr float largest = 32767;

FixedKernel fixedKernel(const Convolution &parameters, int step, bool opaque) {
    float size = 0;
    for (const float coefficient : parameters.coefficients) {
        size = std::max(size, std::min(std::fabs(coefficient), largest));
    }
    FixedKernel kernel{};
    kernel.bits = 14;
    while (size * static_cast<float>(1 << kernel.bits) > largest) {
        --kernel.bits;
    }
    for (std::size_t i = 0; i < parameters.coefficients.size(); ++i) {
        const float coefficient = std::clamp(parameters.coefficients[i], -largest, largest);
        kernel.weights[i] = static_cast<std::int16_t>(std::lround(coefficient * static_cast<float>(1 << kernel.bits)));
    }
    const int offset = std::clamp(parameters.offset, -32767, 32767) * (1 << kernel.bits);
    kernel.start = (1 << kernel.bits) / 2 + (opaque ? offset : 0);
    kernel.startPerAlpha = offset / 255;
    kernel.step = step;
    return kernel;
}

/// The same kernel with as few bits after the point as it needs.
FixedKernel reduced(FixedKernel kernel) {
    while (kernel.bits > 0 && kernel.start % 2 == 0 &&
           std::ranges::all_of(kernel.weights, [](std::int16_t weight) { return weight % 2 == 0; })) {
        for (std::int16_t &weight : kernel.weights) {
            weight = static_cast<std::int16_t>(weight / 2);
        }
        kernel.start /= 2;
        --kernel.bits;
    }
    return kernel;
}

bool fitsWords(const FixedKernel &kernel) {
    int largestSum = std::abs(kernel.start);
    for (const std::int16_t weight : kernel.weights) {
        largestSum += 255 * std::abs(weight);
    }
    return largestSum <= 32767;
}

} // namespace

namespace {

/// The places of the kernel are `step` pixels apart.
bool convolvePixels(const Convolution &parameters, int step, ConstPixelView source, PixelView target, PixelRect area,
                    bool opaque) {
    const FixedKernel kernel = fixedKernel(parameters, step, opaque);
    if (opaque) {
        const FixedKernel shortest = reduced(kernel);
        runPointKernel(fitsWords(shortest) ? HWY_DYNAMIC_DISPATCH(convolveNarrow)
                                           : HWY_DYNAMIC_DISPATCH(convolveOpaque),
                       shortest, source, target, area);
        return true;
    }
    const PixelRect needed = withMargin(area, step, source);
    const ScratchPicture scratch(needed.width(), needed.height());
    if (scratch.view().isEmpty()) {
        return false;
    }
    premultiply(partOf(source, needed), scratch.view());
    const PixelRect inside{area.left - needed.left, area.top - needed.top, area.right - needed.left,
                           area.bottom - needed.top};
    runPointKernel(HWY_DYNAMIC_DISPATCH(convolveTransparent), kernel, readOnly(scratch.view()), partOf(target, needed),
                   inside);
    unpremultiply(partOf(target, area));
    return true;
}

/// The mean of a pixel and its neighbours in which each side counts that much; a multiple of 1 / 64, which fixed point
/// holds exactly.
Convolution meanKernel(float side) {
    const float middle = 1 - 2 * side;
    const float corner = side * side;
    return {
        {corner, side * middle, corner, side * middle, middle * middle, side * middle, corner, side * middle, corner}};
}

/// Changes `near` to what lies so many 16ths of the way to `far`.
void mixTowards(PixelView near, ConstPixelView far, int sixteenths) {
    forBands(wholeOf(far), [&](PixelRect band) {
        for (int y = band.top; y < band.bottom; ++y) {
            std::uint8_t *to = near.row(y);
            const std::uint8_t *from = far.row(y);
            for (std::ptrdiff_t i = 0; i < std::ptrdiff_t(4) * near.width; ++i) {
                to[i] = static_cast<std::uint8_t>((to[i] * (16 - sixteenths) + from[i] * sixteenths + 8) / 16);
            }
        }
    });
}

/// The picture is averaged to half units, and those are mixed with their neighbours: means of what overlaps, so that
/// lines at a slant do not become rows of beads. The kernel's places are two of them apart. Below a unit of 2 half a
/// unit is less than a pixel: pixels are taken, and the result is between those of places one and two pixels apart.
/// The whole picture is averaged, whatever the area: the result must not depend on it.
bool convolveUnits(const Convolution &parameters, ConstPixelView source, PixelView target, PixelRect area,
                   bool opaque) {
    const double half = std::max(1.0, parameters.unit / 2);
    const int sixteenths = static_cast<int>(std::lround((parameters.unit / half - 1) * 16));
    const auto reduced = [&](int pixels) { return std::max(1, static_cast<int>(std::lround(pixels / half))); };
    const int width = reduced(source.width);
    const int height = reduced(source.height);
    const ScratchPicture scratch(width, 3 * height);
    if (scratch.view().isEmpty()) {
        return false;
    }
    const auto part = [&](int n) { return partOf(scratch.view(), {0, n * height, width, (n + 1) * height}); };
    const PixelView averaged = part(0);
    const PixelView small = part(1);
    const PixelView changed = part(2);
    const auto convolve = [&](const Convolution &kernel, int step, PixelView from, PixelView to) {
        return convolvePixels(kernel, step, readOnly(from), to, wholeOf(from), opaque);
    };
    if (!averageArea(source, averaged, opaque) ||
        !convolve(meanKernel(static_cast<float>(sixteenths) / 64), 1, averaged, small) ||
        !convolve(parameters, 2, small, changed)) {
        return false;
    }
    if (sixteenths < 16) {
        const PixelView near = averaged;
        if (!convolve(parameters, 1, small, near)) {
            return false;
        }
        mixTowards(near, readOnly(changed), sixteenths);
        addEnlargedDifference(source, readOnly(small), readOnly(near), target, area);
        return true;
    }
    addEnlargedDifference(source, readOnly(small), readOnly(changed), target, area);
    return true;
}

} // namespace

bool applyConvolution(const Convolution &parameters, ConstPixelView source, PixelView target, PixelRect area,
                      bool opaque) {
    if (!std::ranges::all_of(parameters.coefficients, [](float value) { return std::isfinite(value); })) {
        return false;
    }
    return parameters.unit > 1 ? convolveUnits(parameters, source, target, area, opaque)
                               : convolvePixels(parameters, 1, source, target, area, opaque);
}

} // namespace lumora
#endif
