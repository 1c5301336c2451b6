#include "imaging/effects/Blur.h"

#include "imaging/effects/PartOf.h"
#include "imaging/effects/Premultiply.h"
#include "imaging/effects/RowBands.h"
#include "imaging/effects/ScratchPicture.h"
#include "imaging/effects/Targets.h"

#include <cstring>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Blur.cpp"
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// Three running means over w samples are, but for the division by w * w * w, three integrations of
//   in[n] - 3 in[n - w] + 3 in[n - 2w] - in[n - 3w]
// (a cascaded integrator-comb filter, Hogenauer 1981), delayed by 3 (w - 1) / 2 samples. Along a line that begins with
// one value for ever the first two sums are 0 and the third is w * w * w times the value. All in 32-bit integers.
using Sums = hn::CappedTag<std::int32_t, 16>;
using Bytes = hn::Rebind<std::uint8_t, Sums>;

struct Taps {
    const std::uint8_t *now, *one, *two, *three; ///< at n, n - w, n - 2w and n - 3w
};

/// One step along the line for one vector of bytes; `sums` are the three integrators.
HWY_INLINE void step(hn::Vec<Sums> *sums, const Taps &taps, std::size_t i) {
    const Sums d;
    const Bytes d8;
    const auto outer =
        hn::Sub(hn::PromoteTo(d, hn::LoadU(d8, taps.now + i)), hn::PromoteTo(d, hn::LoadU(d8, taps.three + i)));
    const auto inner =
        hn::Sub(hn::PromoteTo(d, hn::LoadU(d8, taps.two + i)), hn::PromoteTo(d, hn::LoadU(d8, taps.one + i)));
    sums[0] = hn::Add(sums[0], hn::Add(outer, hn::Add(inner, hn::Add(inner, inner))));
    sums[1] = hn::Add(sums[1], sums[0]);
    sums[2] = hn::Add(sums[2], sums[1]);
}

HWY_INLINE void storeMean(hn::Vec<Sums> sum, float scale, std::uint8_t *to) {
    const hn::Rebind<float, Sums> df;
    // Rounded as a product alone: an addition could be fused with it on some processors and not on others.
    hn::StoreU(hn::DemoteTo(Bytes(), hn::NearestInt(hn::Mul(hn::ConvertTo(df, sum), hn::Set(df, scale)))), Bytes(), to);
}

/// Lines of 16 bytes a sample, one sample after the other: `samples` in, as many out.
void blurLine(const std::uint8_t *from, std::uint8_t *to, int samples, int radius) {
    const Sums d;
    const int w = 2 * radius + 1;
    const float scale = 1.0F / static_cast<float>(w * w * w);
    const auto at = [&](int n) { return from + std::ptrdiff_t(16) * std::clamp(n, 0, samples - 1); };
    for (std::size_t i = 0; i < 16; i += hn::Lanes(d)) {
        const auto first = hn::PromoteTo(d, hn::LoadU(Bytes(), from + i));
        hn::Vec<Sums> sums[3] = {hn::Zero(d), hn::Zero(d), hn::Mul(first, hn::Set(d, w * w * w))};
        for (int n = 0; n < samples + 3 * radius; ++n) {
            step(sums, {at(n), at(n - w), at(n - 2 * w), at(n - 3 * w)}, i);
            if (n >= 3 * radius) {
                storeMean(sums[2], scale, to + std::ptrdiff_t(16) * (n - 3 * radius) + i);
            }
        }
    }
}

/// Four rows of pixels as one line of 16 bytes a sample, and back.
void interleaveRows(const std::uint8_t *const *rows, int width, std::uint8_t *line) {
    const hn::ScalableTag<std::uint32_t> d;
    const auto *const *pixels = reinterpret_cast<const std::uint32_t *const *>(rows);
    auto *to = reinterpret_cast<std::uint32_t *>(line);
    const int lanes = static_cast<int>(hn::Lanes(d));
    int x = 0;
    for (; x + lanes <= width; x += lanes) {
        hn::StoreInterleaved4(hn::LoadU(d, pixels[0] + x), hn::LoadU(d, pixels[1] + x), hn::LoadU(d, pixels[2] + x),
                              hn::LoadU(d, pixels[3] + x), d, to + std::ptrdiff_t(4) * x);
    }
    for (; x < width; ++x) {
        for (int row = 0; row < 4; ++row) {
            to[4 * x + row] = pixels[row][x];
        }
    }
}

void separateRows(const std::uint8_t *line, int width, std::uint8_t *const *rows) {
    const hn::ScalableTag<std::uint32_t> d;
    auto *const *pixels = reinterpret_cast<std::uint32_t *const *>(rows);
    const auto *from = reinterpret_cast<const std::uint32_t *>(line);
    const int lanes = static_cast<int>(hn::Lanes(d));
    int x = 0;
    for (; x + lanes <= width; x += lanes) {
        hn::Vec<decltype(d)> v0;
        hn::Vec<decltype(d)> v1;
        hn::Vec<decltype(d)> v2;
        hn::Vec<decltype(d)> v3;
        hn::LoadInterleaved4(d, from + std::ptrdiff_t(4) * x, v0, v1, v2, v3);
        hn::StoreU(v0, d, pixels[0] + x);
        hn::StoreU(v1, d, pixels[1] + x);
        hn::StoreU(v2, d, pixels[2] + x);
        hn::StoreU(v3, d, pixels[3] + x);
    }
    for (; x < width; ++x) {
        for (int row = 0; row < 4; ++row) {
            pixels[row][x] = from[4 * x + row];
        }
    }
}

/// Down a strip of `bytes` bytes, whole vectors of them; `state` keeps three sums for each byte.
void blurStrip(ConstPixelView source, PixelView target, std::ptrdiff_t offset, std::size_t bytes, int radius,
               std::int32_t *state) {
    const Sums d;
    const std::size_t lanes = hn::Lanes(d);
    const int w = 2 * radius + 1;
    const float scale = 1.0F / static_cast<float>(w * w * w);
    const auto at = [&](int n) { return source.row(std::clamp(n, 0, source.height - 1)) + offset; };
    for (std::size_t i = 0; i < bytes; i += lanes) {
        hn::StoreU(hn::Zero(d), d, state + 3 * i);
        hn::StoreU(hn::Zero(d), d, state + 3 * i + lanes);
        const auto first = hn::PromoteTo(d, hn::LoadU(Bytes(), at(0) + i));
        hn::StoreU(hn::Mul(first, hn::Set(d, w * w * w)), d, state + 3 * i + 2 * lanes);
    }
    for (int n = 0; n < source.height + 3 * radius; ++n) {
        const Taps taps{at(n), at(n - w), at(n - 2 * w), at(n - 3 * w)};
        const int y = n - 3 * radius;
        for (std::size_t i = 0; i < bytes; i += lanes) {
            std::int32_t *kept = state + 3 * i;
            hn::Vec<Sums> sums[3] = {hn::LoadU(d, kept), hn::LoadU(d, kept + lanes), hn::LoadU(d, kept + 2 * lanes)};
            step(sums, taps, i);
            hn::StoreU(sums[0], d, kept);
            hn::StoreU(sums[1], d, kept + lanes);
            hn::StoreU(sums[2], d, kept + 2 * lanes);
            if (y >= 0) {
                storeMean(sums[2], scale, target.row(y) + offset + static_cast<std::ptrdiff_t>(i));
            }
        }
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(blurLine);
HWY_EXPORT(interleaveRows);
HWY_EXPORT(separateRows);
HWY_EXPORT(blurStrip);

namespace {

constexpr int largestAmount = 100; // 255 * 201 * 201 * 201 is the last that fits 31 bits
constexpr int rowsInLine = 4;

/// Along the rows, four at a time; a last group of fewer takes its last row several times.
void blurRows(ConstPixelView source, PixelView target, int radius) {
    const int groups = (source.height + rowsInLine - 1) / rowsInLine;
    forRowBands(groups, std::int64_t(source.width) * rowsInLine, [&](int first, int end) {
        std::vector<std::uint8_t> line(std::size_t(source.width) * 16);
        std::vector<std::uint8_t> blurred(line.size());
        for (int group = first; group < end; ++group) {
            const std::uint8_t *from[rowsInLine];
            std::uint8_t *to[rowsInLine];
            for (int i = 0; i < rowsInLine; ++i) {
                const int y = std::min(group * rowsInLine + i, source.height - 1);
                from[i] = source.row(y);
                to[i] = target.row(y);
            }
            HWY_DYNAMIC_DISPATCH(interleaveRows)(from, source.width, line.data());
            HWY_DYNAMIC_DISPATCH(blurLine)(line.data(), blurred.data(), source.width, radius);
            HWY_DYNAMIC_DISPATCH(separateRows)(blurred.data(), source.width, to);
        }
    });
}

/// Along the columns, in strips; what is left beside the last whole vector goes through a line of its own.
void blurColumns(ConstPixelView source, PixelView target, int radius) {
    constexpr int stripPixels = 128;
    constexpr int vectorPixels = 4;
    const int wholeColumns = source.width / vectorPixels * vectorPixels;
    const int strips = (wholeColumns + stripPixels - 1) / stripPixels;
    forRowBands(strips, std::int64_t(source.height) * stripPixels, [&](int first, int end) {
        std::vector<std::int32_t> state(std::size_t(stripPixels) * 4 * 3);
        for (int strip = first; strip < end; ++strip) {
            const int pixels = std::min(stripPixels, wholeColumns - strip * stripPixels);
            HWY_DYNAMIC_DISPATCH(blurStrip)
            (source, target, std::ptrdiff_t(4) * strip * stripPixels, std::size_t(pixels) * 4, radius, state.data());
        }
    });
    if (wholeColumns < source.width) {
        const std::size_t bytes = std::size_t(source.width - wholeColumns) * 4;
        std::vector<std::uint8_t> line(std::size_t(source.height) * 16);
        std::vector<std::uint8_t> blurred(line.size());
        for (int y = 0; y < source.height; ++y) {
            std::memcpy(line.data() + std::ptrdiff_t(16) * y, source.row(y) + std::ptrdiff_t(4) * wholeColumns, bytes);
        }
        HWY_DYNAMIC_DISPATCH(blurLine)(line.data(), blurred.data(), source.height, radius);
        for (int y = 0; y < source.height; ++y) {
            std::memcpy(target.row(y) + std::ptrdiff_t(4) * wholeColumns, blurred.data() + std::ptrdiff_t(16) * y,
                        bytes);
        }
    }
}

} // namespace

bool applyBlur(const Blur &parameters, ConstPixelView source, PixelView target, PixelRect area, bool opaque) {
    const int radius = std::clamp(parameters.amount, 0, largestAmount);
    // A pixel depends on those up to three radii away: the area with such a margin is a picture of its own.
    const int margin = 3 * radius;
    const PixelRect needed = withMargin(area, margin, source);
    const ScratchPicture scratch(needed.width(), needed.height());
    if (scratch.view().isEmpty()) {
        return false;
    }
    const ConstPixelView from = partOf(source, needed);
    const PixelView to = partOf(target, needed);
    if (opaque) {
        blurRows(from, scratch.view(), radius);
        blurColumns(readOnly(scratch.view()), to, radius);
    } else {
        premultiply(from, to);
        blurRows(readOnly(to), scratch.view(), radius);
        blurColumns(readOnly(scratch.view()), to, radius);
        unpremultiply(to);
    }
    return true;
}

} // namespace lumora
#endif
