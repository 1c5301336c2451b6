#include "imaging/effects/Blur.h"

#include "imaging/kernels/AreaAverage.h"
#include "imaging/kernels/Enlarge.h"
#include "imaging/kernels/NonTemporalStore.h"
#include "imaging/kernels/PartOf.h"
#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Premultiply.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/kernels/ScratchPicture.h"
#include "imaging/kernels/Targets.h"

#include <cmath>
#include <cstring>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Blur.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h> // must be included before highway.h
#include <hwy/highway.h>

#ifndef LUMORA_BLUR_STRIP
#define LUMORA_BLUR_STRIP
namespace lumora {
constexpr int stripPixels = 128; // columns are processed in strips of this width
}
#endif

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// Three running means over w samples are, but for the division by w * w * w, three integrations of
//   in[n] - 3 in[n - w] + 3 in[n - 2w] - in[n - 3w]
// (a cascaded integrator-comb filter, Hogenauer 1981), delayed by 3 (w - 1) / 2 samples. Along a line that starts with
// a constant value the first two sums are 0 and the third is w * w * w times the value. All in 32-bit integers.
using Sums = hn::CappedTag<std::int32_t, 16>;
using Words = hn::Rebind<std::int16_t, Sums>;
using Bytes = hn::Rebind<std::uint8_t, Sums>;

struct Taps {
    const std::uint8_t *now, *one, *two, *three; ///< at n, n - w, n - 2w and n - 3w
};

HWY_INLINE hn::Vec<Words> load(const std::uint8_t *from) {
    return hn::PromoteTo(Words(), hn::LoadU(Bytes(), from));
}

/// One step along the line for one vector of bytes; `sums` are the three integrators. Four taps fit 16 bits.
HWY_INLINE void step(hn::Vec<Sums> *sums, const Taps &taps, std::size_t i) {
    const auto outer = hn::Sub(load(taps.now + i), load(taps.three + i));
    const auto inner = hn::Sub(load(taps.two + i), load(taps.one + i));
    const auto all = hn::Add(hn::Add(outer, inner), hn::Add(inner, inner));
    sums[0] = hn::Add(sums[0], hn::PromoteTo(Sums(), all));
    sums[1] = hn::Add(sums[1], sums[0]);
    sums[2] = hn::Add(sums[2], sums[1]);
}

HWY_INLINE hn::Vec<Bytes> mean(hn::Vec<Sums> sum, float scale) {
    const hn::Rebind<float, Sums> df;
    // Rounded as a product alone: an addition might be fused with it on some processors only.
    return hn::DemoteTo(Bytes(), hn::NearestInt(hn::Mul(hn::ConvertTo(df, sum), hn::Set(df, scale))));
}

/// Lines of 16 bytes a sample, one sample after the other: `samples` in, as many out. The first sample is repeated 3 (2
/// radius + 1) times before `from`, the last one 3 radius times after its end.
void blurLine(const std::uint8_t *from, std::uint8_t *to, int samples, int radius) {
    const Sums d;
    const int w = 2 * radius + 1;
    const float scale = 1.0F / static_cast<float>(w * w * w);
    const std::ptrdiff_t back = std::ptrdiff_t(16) * w;
    for (std::size_t i = 0; i < 16; i += hn::Lanes(d)) {
        const auto first = hn::PromoteTo(d, hn::LoadU(Bytes(), from + i));
        hn::Vec<Sums> sums[3] = {hn::Zero(d), hn::Zero(d), hn::Mul(first, hn::Set(d, w * w * w))};
        const std::uint8_t *now = from;
        for (int n = 0; n < 3 * radius; ++n, now += 16) {
            step(sums, {now, now - back, now - 2 * back, now - 3 * back}, i);
        }
        std::uint8_t *result = to + i;
        for (int n = 0; n < samples; ++n, now += 16, result += 16) {
            step(sums, {now, now - back, now - 2 * back, now - 3 * back}, i);
            hn::StoreU(mean(sums[2], scale), Bytes(), result);
        }
    }
}

using FourPixels = hn::Full128<std::uint32_t>;
using Four = hn::Vec<FourPixels>;

/// Exchanges rows and columns of four vectors of four pixels.
HWY_INLINE void transpose(Four &a, Four &b, Four &c, Four &d) {
    const FourPixels d32;
    const hn::Full128<std::uint64_t> d64;
    const auto pairs = [&](auto half, Four x, Four y) { return hn::BitCast(d64, half(x, y)); };
    const auto lower = [&](Four x, Four y) { return hn::InterleaveLower(d32, x, y); };
    const auto upper = [&](Four x, Four y) { return hn::InterleaveUpper(d32, x, y); };
    const auto ab = pairs(lower, a, b);
    const auto cd = pairs(lower, c, d);
    const auto abUpper = pairs(upper, a, b);
    const auto cdUpper = pairs(upper, c, d);
    a = hn::BitCast(d32, hn::InterleaveLower(d64, ab, cd));
    b = hn::BitCast(d32, hn::InterleaveUpper(d64, ab, cd));
    c = hn::BitCast(d32, hn::InterleaveLower(d64, abUpper, cdUpper));
    d = hn::BitCast(d32, hn::InterleaveUpper(d64, abUpper, cdUpper));
}

/// Four rows of pixels as one line of 16 bytes a sample, and back; rows that are written past the cache are aligned to
/// 16 bytes.
void interleaveRows(const std::uint8_t *const *rows, int width, std::uint8_t *line) {
    const FourPixels d;
    const auto *const *pixels = reinterpret_cast<const std::uint32_t *const *>(rows);
    auto *to = reinterpret_cast<std::uint32_t *>(line);
    int x = 0;
    for (; x + 4 <= width; x += 4, to += 16) {
        Four v0 = hn::LoadU(d, pixels[0] + x);
        Four v1 = hn::LoadU(d, pixels[1] + x);
        Four v2 = hn::LoadU(d, pixels[2] + x);
        Four v3 = hn::LoadU(d, pixels[3] + x);
        transpose(v0, v1, v2, v3);
        hn::StoreU(v0, d, to);
        hn::StoreU(v1, d, to + 4);
        hn::StoreU(v2, d, to + 8);
        hn::StoreU(v3, d, to + 12);
    }
    for (; x < width; ++x) {
        for (int row = 0; row < 4; ++row) {
            *to++ = pixels[row][x];
        }
    }
}

void separateRows(const std::uint8_t *line, int width, std::uint8_t *const *rows, bool nonTemporal) {
    const FourPixels d;
    const auto store = [&](Four pixels, std::uint32_t *to) {
        if (nonTemporal) {
            hn::Stream(pixels, d, to);
        } else {
            hn::StoreU(pixels, d, to);
        }
    };
    auto *const *pixels = reinterpret_cast<std::uint32_t *const *>(rows);
    const auto *from = reinterpret_cast<const std::uint32_t *>(line);
    int x = 0;
    for (; x + 4 <= width; x += 4, from += 16) {
        Four v0 = hn::LoadU(d, from);
        Four v1 = hn::LoadU(d, from + 4);
        Four v2 = hn::LoadU(d, from + 8);
        Four v3 = hn::LoadU(d, from + 12);
        transpose(v0, v1, v2, v3);
        store(v0, pixels[0] + x);
        store(v1, pixels[1] + x);
        store(v2, pixels[2] + x);
        store(v3, pixels[3] + x);
    }
    for (; x < width; ++x) {
        for (int row = 0; row < 4; ++row) {
            pixels[row][x] = *from++;
        }
    }
    hwy::FlushStream();
}

/// Down a strip of `bytes` bytes, whole vectors of them; `state` keeps three sums for each byte. Rows are processed in
/// blocks, so that the sums stay in registers and the block's pixels in the L1 cache.
void blurStrip(ConstPixelView source, PixelView target, std::ptrdiff_t offset, std::size_t bytes, int radius,
               std::int32_t *state, bool nonTemporal) {
    constexpr int blockRows = 16;
    HWY_ALIGN std::uint8_t means[std::size_t(blockRows) * stripPixels * 4];
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
    const int steps = source.height + 3 * radius;
    for (int block = 0; block < steps; block += blockRows) {
        const int rows = std::min(blockRows, steps - block);
        Taps taps[blockRows];
        for (int row = 0; row < rows; ++row) {
            const int n = block + row;
            taps[row] = {at(n), at(n - w), at(n - 2 * w), at(n - 3 * w)};
        }
        for (std::size_t i = 0; i < bytes; i += lanes) {
            std::int32_t *kept = state + 3 * i;
            hn::Vec<Sums> sums[3] = {hn::LoadU(d, kept), hn::LoadU(d, kept + lanes), hn::LoadU(d, kept + 2 * lanes)};
            for (int row = 0; row < rows; ++row) {
                step(sums, taps[row], i);
                const int y = block + row - 3 * radius;
                if (y >= 0) {
                    hn::StoreU(mean(sums[2], scale), Bytes(), means + std::size_t(row) * bytes + i);
                }
            }
            hn::StoreU(sums[0], d, kept);
            hn::StoreU(sums[1], d, kept + lanes);
            hn::StoreU(sums[2], d, kept + 2 * lanes);
        }
        for (int row = 0; row < rows; ++row) {
            const int y = block + row - 3 * radius;
            if (y >= 0) {
                const std::uint8_t *from = means + std::size_t(row) * bytes;
                if (nonTemporal) {
                    copyNonTemporal(from, target.row(y) + offset, bytes);
                } else {
                    std::memcpy(target.row(y) + offset, from, bytes);
                }
            }
        }
    }
    hwy::FlushStream();
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

constexpr int largestAmount = 100; // 255 * 201 * 201 * 201 is the largest that fits 31 bits
constexpr int reducedAmount = 50;  // what a larger one becomes on a reduced picture
constexpr int rowsInLine = 4;

/// A line of 16-byte samples with the padding that blurLine needs before and after it.
class PaddedLine {
  public:
    PaddedLine(int samples, int radius)
        : m_before(3 * (2 * radius + 1)), m_after(3 * radius), m_samples(samples),
          m_bytes(std::size_t(m_before + samples + m_after) * 16) {}

    std::uint8_t *samples() { return m_bytes.data() + std::ptrdiff_t(16) * m_before; }
    /// The first and the last sample are repeated beyond the ends.
    void extend() {
        std::uint8_t *first = samples();
        for (int n = 1; n <= m_before; ++n) {
            std::memcpy(first - std::ptrdiff_t(16) * n, first, 16);
        }
        std::uint8_t *last = first + std::ptrdiff_t(16) * (m_samples - 1);
        for (int n = 1; n <= m_after; ++n) {
            std::memcpy(last + std::ptrdiff_t(16) * n, last, 16);
        }
    }

  private:
    int m_before, m_after, m_samples;
    std::vector<std::uint8_t> m_bytes;
};

/// Along the rows, four at a time; a shorter last group repeats its last row.
void blurRows(ConstPixelView source, PixelView target, int radius) {
    const bool nonTemporal = leavesCache(wholeOf(source));
    const int groups = (source.height + rowsInLine - 1) / rowsInLine;
    forRowBands(groups, std::int64_t(source.width) * rowsInLine, [&](int first, int end) {
        PaddedLine line(source.width, radius);
        std::vector<std::uint8_t> blurred(std::size_t(source.width) * 16);
        for (int group = first; group < end; ++group) {
            const std::uint8_t *from[rowsInLine];
            std::uint8_t *to[rowsInLine];
            for (int i = 0; i < rowsInLine; ++i) {
                const int y = std::min(group * rowsInLine + i, source.height - 1);
                from[i] = source.row(y);
                to[i] = target.row(y);
            }
            HWY_DYNAMIC_DISPATCH(interleaveRows)(from, source.width, line.samples());
            line.extend();
            HWY_DYNAMIC_DISPATCH(blurLine)(line.samples(), blurred.data(), source.width, radius);
            HWY_DYNAMIC_DISPATCH(separateRows)(blurred.data(), source.width, to, nonTemporal);
        }
    });
}

/// Along the columns, in strips; the rest after the last whole vector uses a separate line.
void blurColumns(ConstPixelView source, PixelView target, int radius) {
    const bool nonTemporal = leavesCache(wholeOf(source));
    constexpr int vectorPixels = 4;
    const int wholeColumns = source.width / vectorPixels * vectorPixels;
    const int strips = (wholeColumns + stripPixels - 1) / stripPixels;
    forRowBands(strips, std::int64_t(source.height) * stripPixels, [&](int first, int end) {
        std::vector<std::int32_t> state(std::size_t(stripPixels) * 4 * 3);
        for (int strip = first; strip < end; ++strip) {
            const int pixels = std::min(stripPixels, wholeColumns - strip * stripPixels);
            HWY_DYNAMIC_DISPATCH(blurStrip)
            (source, target, std::ptrdiff_t(4) * strip * stripPixels, std::size_t(pixels) * 4, radius, state.data(),
             nonTemporal);
        }
    });
    if (wholeColumns < source.width) {
        const std::size_t bytes = std::size_t(source.width - wholeColumns) * 4;
        PaddedLine line(source.height, radius);
        std::vector<std::uint8_t> blurred(std::size_t(source.height) * 16);
        for (int y = 0; y < source.height; ++y) {
            std::memcpy(line.samples() + std::ptrdiff_t(16) * y, source.row(y) + std::ptrdiff_t(4) * wholeColumns,
                        bytes);
        }
        line.extend();
        HWY_DYNAMIC_DISPATCH(blurLine)(line.samples(), blurred.data(), source.height, radius);
        for (int y = 0; y < source.height; ++y) {
            std::memcpy(target.row(y) + std::ptrdiff_t(4) * wholeColumns, blurred.data() + std::ptrdiff_t(16) * y,
                        bytes);
        }
    }
}

bool blurPixels(int radius, ConstPixelView source, PixelView target, PixelRect area, bool opaque) {
    // A pixel depends on those up to three radii away: the area with such a margin is processed as a separate picture.
    const int margin = 3 * radius;
    const PixelRect needed = withMargin(area, margin, source);
    const ScratchPicture scratch(needed.width(), needed.height());
    if (scratch.view().isEmpty()) {
        return false;
    }
    const ConstPixelView from = partOf(source, needed);
    const PixelView to = partOf(target, needed);
    if (opaque) {
        blurBlock(radius, from, scratch.view(), to);
    } else {
        premultiply(from, to);
        blurRows(readOnly(to), scratch.view(), radius);
        blurColumns(readOnly(scratch.view()), to, radius);
        unpremultiply(to);
    }
    return true;
}

/// Blurs the picture averaged to a size at which the radius is small enough. What is left after a blur of that size has
/// no detail that enlarging could lose.
bool blurReduced(double radius, ConstPixelView source, PixelView target, PixelRect area, bool opaque) {
    const double factor = radius / reducedAmount;
    const auto reduced = [&](int pixels) { return std::max(1, static_cast<int>(std::lround(pixels / factor))); };
    const ScratchPicture small(reduced(source.width), reduced(source.height));
    const ScratchPicture blurred(small.view().width, small.view().height);
    if (small.view().isEmpty() || blurred.view().isEmpty() || !averageArea(source, small.view(), opaque)) {
        return false;
    }
    const PixelView to = blurred.view();
    if (!blurPixels(reducedAmount, readOnly(small.view()), to, {0, 0, to.width, to.height}, opaque)) {
        return false;
    }
    if (!opaque) {
        premultiply(readOnly(to), small.view());
        enlarge(readOnly(small.view()), target, area);
        unpremultiply(partOf(target, area));
        return true;
    }
    enlarge(readOnly(to), target, area);
    return true;
}

} // namespace

void blurBlock(int radius, ConstPixelView source, PixelView scratch, PixelView target) {
    blurRows(source, scratch, radius);
    blurColumns(readOnly(scratch), target, radius);
}

bool applyBlur(const Blur &parameters, ConstPixelView source, PixelView target, PixelRect area, bool opaque) {
    const double radius = std::clamp(parameters.amount, 0.0, 65535.0);
    return radius > largestAmount ? blurReduced(radius, source, target, area, opaque)
                                  : blurPixels(static_cast<int>(std::lround(radius)), source, target, area, opaque);
}

} // namespace lumora
#endif
