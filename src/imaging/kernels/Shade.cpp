#include "imaging/kernels/Shade.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/kernels/Shade.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include "imaging/kernels/PointOperation-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

HWY_INLINE PixelVector shaded(PixelVector pixels, PixelVector shades) {
    const Pixels d;
    const hn::Repartition<std::uint16_t, Pixels> d16;
    const auto lowHalf = hn::Set(d, 0x0000FFFFU);
    const auto lowBytes = hn::Set(d, 0x00FF00FFU);
    const auto factor = hn::BitCast(d16, hn::Or(hn::And(shades, lowHalf), hn::ShiftLeft<16>(shades)));
    const auto added =
        hn::Add(hn::BitCast(d16, hn::Or(hn::AndNot(lowHalf, shades), hn::ShiftRight<16>(shades))), hn::Set(d16, 128));
    const auto blueAndRed = hn::BitCast(d16, hn::And(pixels, lowBytes));
    const auto green = hn::BitCast(d16, hn::And(hn::ShiftRight<8>(pixels), lowBytes));
    const auto newBlueAndRed = hn::ShiftRight<8>(hn::Add(hn::Mul(blueAndRed, factor), added));
    const auto newGreen = hn::And(hn::BitCast(d, hn::Add(hn::Mul(green, factor), added)), hn::Set(d, 0x0000FF00U));
    return hn::Or(hn::Or(hn::BitCast(d, newBlueAndRed), newGreen), hn::And(pixels, hn::Set(d, 0xFF000000U)));
}

void shadePixelsKernel(const std::uint32_t *from, std::uint32_t *to, const Shade *shades, int count, bool nonTemporal) {
    const Pixels d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    while (count > 0) {
        const auto offset = static_cast<int>(reinterpret_cast<std::uintptr_t>(to) / sizeof(Shade)) & (lanes - 1);
        const int now = std::min(lanes - offset, count);
        if (now < lanes) {
            HWY_ALIGN std::uint32_t pixels[HWY_LANES(std::uint32_t)] = {};
            HWY_ALIGN Shade few[HWY_LANES(std::uint32_t)] = {};
            std::memcpy(pixels, from, std::size_t(now) * sizeof(Shade));
            std::memcpy(few, shades, std::size_t(now) * sizeof(Shade));
            hn::Store(shaded(hn::Load(d, pixels), hn::Load(d, few)), d, pixels);
            std::memcpy(to, pixels, std::size_t(now) * sizeof(Shade));
        } else if (nonTemporal) {
            hn::Stream(shaded(hn::LoadU(d, from), hn::LoadU(d, shades)), d, to);
        } else {
            hn::Store(shaded(hn::LoadU(d, from), hn::LoadU(d, shades)), d, to);
        }
        from += now;
        to += now;
        shades += now;
        count -= now;
    }
    if (nonTemporal) {
        hwy::FlushStream();
    }
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(shadePixelsKernel);

void shadePixels(const std::uint32_t *from, std::uint32_t *to, const Shade *shades, int count, bool nonTemporal) {
    HWY_DYNAMIC_DISPATCH(shadePixelsKernel)(from, to, shades, count, nonTemporal);
}

namespace {

constexpr int shortestRun = 1024; // pixels

} // namespace

ShadePattern::ShadePattern(int period, int rows)
    : m_period(static_cast<std::size_t>(period)), m_length((shortestRun + m_period - 1) / m_period * m_period),
      m_shades(m_length * static_cast<std::size_t>(rows), noShade) {}

void ShadePattern::set(int row, int column, Shade shade) {
    Shade *shades = m_shades.data() + std::size_t(row) * m_length;
    for (auto x = static_cast<std::size_t>(column); x < m_length; x += m_period) {
        shades[x] = shade;
    }
}

void applyPattern(const ShadePattern &pattern, const std::function<int(int y)> &rowOf, ConstPixelView source,
                  PixelView target, PixelRect area) {
    const bool nonTemporal = leavesCache(area);
    forBands(area, [&](PixelRect band) {
        for (int y = band.top; y < band.bottom; ++y) {
            const Shade *shades = pattern.row(rowOf(y));
            for (int x = band.left; x < band.right;) {
                const int column = x % pattern.length();
                const int count = std::min(pattern.length() - column, band.right - x);
                shadePixels(reinterpret_cast<const std::uint32_t *>(source.row(y)) + x,
                            reinterpret_cast<std::uint32_t *>(target.row(y)) + x, shades + column, count, nonTemporal);
                x += count;
            }
        }
    });
}

} // namespace lumora
#endif
