#include "imaging/kernels/Enlarge.h"

#include "imaging/kernels/PartOf.h"
#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/kernels/Targets.h"

#include <array>
#include <cmath>
#include <cstring>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/kernels/Enlarge.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

#ifndef LUMORA_ENLARGE_PLACES
#define LUMORA_ENLARGE_PLACES
namespace lumora {

constexpr int levelSteps = 32; // levels between the axes have five bits after the point

/// Where a pixel of an enlarged line is on the small one, and what the samples before and after the nearest one count
/// there, in fractions of 2^15; that one counts the rest.
struct Place {
    Place(int index, int length, int smallLength) {
        const double place = (index + 0.5) * smallLength / length; // the middle of the first sample is at one half
        sample = std::min(static_cast<int>(place), smallLength - 1);
        const auto weight = [](double share) {
            return static_cast<std::int16_t>(std::lround(share * share / 2 * (1 << 15)));
        };
        after = weight(place - sample);
        before = weight(sample + 1 - place);
    }

    int sample;
    std::int16_t before;
    std::int16_t after;
};

/// The pixels `begin` to `end` - 1 of a line that is not shorter than the small one, for vectors of so many pixels.
/// Goes on for a vector beyond the last.
struct EnlargedLine {
    EnlargedLine(int begin, int end, int length, int smallLength, std::size_t atOnce) {
        const auto count = (std::size_t(end - begin) / atOnce + 1) * atOnce;
        sample.reserve(count);
        offset.reserve(count);
        before.reserve(4 * count);
        after.reserve(4 * count);
        for (std::size_t i = 0; i < count; ++i) {
            const Place place(std::min(begin + static_cast<int>(i), end - 1), length, smallLength);
            sample.push_back(place.sample);
            offset.push_back(place.sample - sample[i / atOnce * atOnce]);
            before.insert(before.end(), 4, place.before);
            after.insert(after.end(), 4, place.after);
        }
    }

    std::vector<int> sample;
    std::vector<std::int64_t> offset;        ///< from the sample of a vector's first pixel
    std::vector<std::int16_t> before, after; ///< see Place; four of a pixel
};

} // namespace lumora
#endif

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Numbers = hn::ScalableTag<std::int16_t>;          // four of a pixel
using Samples = hn::Repartition<std::int64_t, Numbers>; // each a pixel's four numbers

/// The levels of a row, less those of another one where there is one, times levelSteps.
void widenRow(const std::uint8_t *row, const std::uint8_t *minus, std::size_t count, std::int16_t *to) {
    const hn::ScalableTag<std::int16_t> d;
    const hn::Rebind<std::uint8_t, decltype(d)> d8;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        auto value = hn::PromoteTo(d, hn::LoadU(d8, row + i));
        if (minus != nullptr) {
            value = hn::Sub(value, hn::PromoteTo(d, hn::LoadU(d8, minus + i)));
        }
        hn::StoreU(hn::ShiftLeft<5>(value), d, to + i);
    }
    for (; i < count; ++i) {
        to[i] = static_cast<std::int16_t>((row[i] - (minus != nullptr ? minus[i] : 0)) * levelSteps);
    }
}

/// Three rows mixed: the one above, the nearest, the one below.
void mixRows(const std::int16_t *const *rows, const Place &place, std::size_t count, std::int16_t *to) {
    const hn::ScalableTag<std::int16_t> d;
    const auto before = hn::Set(d, place.before);
    const auto after = hn::Set(d, place.after);
    const auto mixed = [&](auto above, auto here, auto below) {
        return hn::Add(here, hn::Add(hn::MulFixedPoint15(hn::Sub(above, here), before),
                                     hn::MulFixedPoint15(hn::Sub(below, here), after)));
    };
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        hn::StoreU(mixed(hn::LoadU(d, rows[0] + i), hn::LoadU(d, rows[1] + i), hn::LoadU(d, rows[2] + i)), d, to + i);
    }
    for (; i < count; ++i) {
        to[i] = hn::GetLane(mixed(hn::Set(d, rows[0][i]), hn::Set(d, rows[1][i]), hn::Set(d, rows[2][i])));
    }
}

/// A vector of pixels, whose samples and their neighbours are a few that follow `from`.
template <typename Photo>
HWY_INLINE hn::Vec<hn::Rebind<std::uint8_t, Numbers>> enlarged(const std::int16_t *from, const EnlargedLine &line,
                                                               std::size_t x, const Photo &photo) {
    const Numbers d;
    const Samples d64;
    const auto which = hn::SetTableIndices(d64, line.offset.data() + x);
    const auto samples = [&](const std::int16_t *first) {
        return hn::BitCast(d, hn::TableLookupLanes(hn::BitCast(d64, hn::LoadU(d, first)), which));
    };
    const auto here = samples(from);
    auto value = hn::MulFixedPoint15(hn::Sub(samples(from - 4), here), hn::LoadU(d, line.before.data() + 4 * x));
    value =
        hn::Add(value, hn::MulFixedPoint15(hn::Sub(samples(from + 4), here), hn::LoadU(d, line.after.data() + 4 * x)));
    value = hn::ShiftRight<5>(hn::Add(hn::Add(value, here), hn::Set(d, levelSteps / 2)));
    return hn::DemoteTo(hn::Rebind<std::uint8_t, Numbers>(), photo(value));
}

/// A row of `count` pixels. Photo may be null.
void enlargeRow(const std::int16_t *mixed, const EnlargedLine &line, const std::uint8_t *photo, std::uint8_t *to,
                std::size_t count, bool nonTemporal) {
    const Numbers d;
    const hn::Rebind<std::uint8_t, Numbers> d8;
    const std::size_t lanes = hn::Lanes(Samples());
    const bool streams = nonTemporal && reinterpret_cast<std::uintptr_t>(to) % (4 * lanes) == 0;
    std::size_t x = 0;
    const auto addPhoto = [&](const std::uint8_t *from) {
        return [=](auto value) { return hn::Add(value, hn::PromoteTo(d, hn::LoadU(d8, from))); };
    };
    for (; x + lanes <= count; x += lanes) {
        const std::int16_t *from = mixed + std::ptrdiff_t(4) * line.sample[x];
        const auto pixels = photo != nullptr ? enlarged(from, line, x, addPhoto(photo + 4 * x))
                                             : enlarged(from, line, x, [](auto value) { return value; });
        if (streams) {
            hn::Stream(pixels, d8, to + 4 * x);
        } else {
            hn::StoreU(pixels, d8, to + 4 * x);
        }
    }
    if (x < count) {
        std::uint8_t bytes[4 * HWY_LANES(std::int64_t)] = {};
        if (photo != nullptr) {
            std::memcpy(bytes, photo + 4 * x, 4 * (count - x));
        }
        const std::int16_t *from = mixed + std::ptrdiff_t(4) * line.sample[x];
        hn::StoreU(enlarged(from, line, x, addPhoto(bytes)), d8, bytes);
        std::memcpy(to + 4 * x, bytes, 4 * (count - x));
    }
    if (streams) {
        hwy::FlushStream();
    }
}

std::size_t pixelsAtOnce() {
    return hn::Lanes(Samples());
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(widenRow);
HWY_EXPORT(mixRows);
HWY_EXPORT(enlargeRow);
HWY_EXPORT(pixelsAtOnce);

namespace {

/// The rows of the small picture that a row of the result is mixed from, each made once while the result goes down.
class WideRows {
  public:
    WideRows(ConstPixelView small, const ConstPixelView *minus) : m_small(small), m_minus(minus) {
        for (Line &line : m_lines) {
            line.levels.resize(std::size_t(small.width) * 4);
        }
    }

    /// Beyond the first and the last row those are repeated.
    const std::int16_t *row(int y) {
        y = std::clamp(y, 0, m_small.height - 1);
        Line &line = m_lines[std::size_t(y) % m_lines.size()];
        if (line.y != y) {
            HWY_DYNAMIC_DISPATCH(widenRow)
            (m_small.row(y), m_minus != nullptr ? m_minus->row(y) : nullptr, line.levels.size(), line.levels.data());
            line.y = y;
        }
        return line.levels.data();
    }

  private:
    struct Line {
        int y = -1;
        std::vector<std::int16_t> levels;
    };

    ConstPixelView m_small;
    const ConstPixelView *m_minus;
    std::array<Line, 3> m_lines;
};

void enlargeArea(ConstPixelView small, const ConstPixelView *minus, const ConstPixelView *photo, PixelView target,
                 PixelRect area) {
    const std::size_t atOnce = HWY_DYNAMIC_DISPATCH(pixelsAtOnce)();
    const EnlargedLine line(area.left, area.right, target.width, small.width, atOnce);
    const auto numbers = std::size_t(small.width) * 4;
    const bool nonTemporal = leavesCache(area);
    forBands(area, [&](PixelRect band) {
        WideRows wide(small, minus);
        std::vector<std::int16_t> memory(numbers + 4 * (atOnce + 2)); // a pixel more before, a vector after
        std::int16_t *const mixed = memory.data() + 4;
        for (int y = band.top; y < band.bottom; ++y) {
            const Place place(y, target.height, small.height);
            const std::int16_t *const from[3] = {wide.row(place.sample - 1), wide.row(place.sample),
                                                 wide.row(place.sample + 1)};
            HWY_DYNAMIC_DISPATCH(mixRows)(from, place, numbers, mixed);
            std::copy_n(mixed, 4, memory.data());
            std::copy_n(mixed + numbers - 4, 4, mixed + numbers);
            const std::ptrdiff_t begin = std::ptrdiff_t(4) * area.left;
            HWY_DYNAMIC_DISPATCH(enlargeRow)
            (mixed, line, photo != nullptr ? photo->row(y) + begin : nullptr, target.row(y) + begin,
             std::size_t(area.width()), nonTemporal);
        }
    });
}

} // namespace

void enlarge(ConstPixelView small, PixelView target, PixelRect area) {
    enlargeArea(small, nullptr, nullptr, target, area);
}

void addEnlargedDifference(ConstPixelView photo, ConstPixelView small, ConstPixelView changed, PixelView target,
                           PixelRect area) {
    enlargeArea(changed, &small, &photo, target, area);
}

} // namespace lumora
#endif
