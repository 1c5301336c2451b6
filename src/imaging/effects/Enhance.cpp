#include "imaging/effects/Enhance.h"

#include "imaging/effects/PhotoFaults.h"
#include "imaging/kernels/AreaAverage.h"
#include "imaging/kernels/Enlarge.h"
#include "imaging/kernels/LocalBase.h"
#include "imaging/kernels/PartOf.h"
#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/ScratchPicture.h"
#include "imaging/kernels/Targets.h"

#include <array>
#include <cmath>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/Enhance.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

#ifndef LUMORA_ENHANCE_ONCE
#define LUMORA_ENHANCE_ONCE
namespace lumora {

/// The correction in the kernel's form; blue, green, red.
struct EnhanceWeights {
    std::array<std::int16_t, 3> factor; ///< 2^13 is 1
    std::array<std::int16_t, 3> less;   ///< subtracted then; 32 is a level
    std::int16_t bend;                  ///< 2^15 is 1
    std::int16_t detail;                ///< of bend for what differs from the base by the whole scale; 2^13 is 1
};

} // namespace lumora
#endif

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

using Halves = hn::Repartition<std::int16_t, Pixels>; ///< two for each pixel
using HalfVector = hn::VFromD<Halves>;

/// Two channels of each pixel.
struct EnhanceChannels {
    HalfVector factor, less;

    PixelVector operator()(PixelVector levels, HalfVector bend) const {
        const Halves d;
        const auto scaled = hn::MulFixedPoint15(hn::ShiftLeft<7>(hn::BitCast(d, levels)), factor);
        const auto linear = hn::SaturatedSub(scaled, less); // factors up to 4 fill the range
        const auto t = hn::ShiftLeft<2>(hn::Min(hn::Max(linear, hn::Zero(d)), hn::Set(d, 255 * 32))); // 128 is a level
        const auto arch = hn::MulFixedPoint15(t, hn::Sub(hn::Set(d, 255 * 128), t));
        const auto bent = hn::Add(t, hn::MulFixedPoint15(arch, bend));
        return hn::BitCast(Pixels(), hn::ShiftRight<7>(hn::Add(bent, hn::Set(d, 64))));
    }
};

/// The area of the target, which holds the coefficients of the base: blue the factor in 256ths, green what is added.
void enhanceRows(const EnhanceWeights &w, ConstPixelView source, PixelView target, PixelRect area, bool nonTemporal) {
    const Pixels d;
    const Halves d16;
    const auto pair = [&](std::int16_t low, std::int16_t high) {
        const auto both = static_cast<std::uint16_t>(low) | std::uint32_t(static_cast<std::uint16_t>(high)) << 16;
        return hn::BitCast(d16, hn::Set(d, both));
    };
    const EnhanceChannels blueRed{pair(w.factor[0], w.factor[2]), pair(w.less[0], w.less[2])};
    const EnhanceChannels green{pair(w.factor[1], 0), pair(w.less[1], 0)};
    const auto bend = hn::Set(d16, w.bend);
    const auto detail = hn::Set(d16, w.detail);
    const auto most = hn::Set(d16, 8191);
    const WeightedSum lumaOf = luma();
    const auto enhanced = [&](PixelVector pixels, PixelVector base) {
        const auto lowBytes = hn::Set(d, 0x00FF00FFU);
        const auto lowByte = hn::Set(d, 0xFFU);
        const auto twice = [&](auto v) { return hn::BitCast(d16, hn::Or(v, hn::ShiftLeft<16>(v))); };
        const auto grey = hn::ShiftLeft<7>(twice(hn::BitCast(d, lumaOf(pixels))));
        const auto kept = hn::ShiftLeft<7>(twice(hn::And(base, lowByte)));
        const auto added = hn::ShiftLeft<7>(twice(hn::And(hn::ShiftRight<8>(base), lowByte)));
        // 128 is a level: the rounding product halves the one of grey * 128 and kept * 128 / 256.
        const auto differs = hn::SaturatedSub(hn::SaturatedSub(grey, added), hn::MulFixedPoint15(grey, kept));
        const auto quarter = hn::Min(hn::Max(hn::MulFixedPoint15(differs, detail), hn::Set(d16, -8191)), most);
        const auto here = hn::SaturatedAdd(bend, hn::ShiftLeft<2>(quarter));
        const auto changed =
            hn::Or(blueRed(hn::And(pixels, lowBytes), here),
                   hn::ShiftLeft<8>(hn::And(green(hn::And(hn::ShiftRight<8>(pixels), lowByte), here), lowByte)));
        return hn::Or(changed, hn::And(pixels, hn::Set(d, 0xFF000000U)));
    };
    const std::size_t lanes = hn::Lanes(d);
    for (int y = area.top; y < area.bottom; ++y) {
        const auto *from = reinterpret_cast<const std::uint32_t *>(source.row(y)) + area.left;
        auto *to = reinterpret_cast<std::uint32_t *>(target.row(y)) + area.left;
        auto left = static_cast<std::size_t>(area.width());
        for (; left >= lanes; left -= lanes, from += lanes, to += lanes) {
            hn::StoreU(enhanced(hn::LoadU(d, from), hn::LoadU(d, to)), d, to);
        }
        if (left > 0) {
            HWY_ALIGN std::uint32_t pixels[HWY_LANES(std::uint32_t)] = {};
            HWY_ALIGN std::uint32_t base[HWY_LANES(std::uint32_t)] = {};
            std::memcpy(pixels, from, left * sizeof(std::uint32_t));
            std::memcpy(base, to, left * sizeof(std::uint32_t));
            hn::Store(enhanced(hn::Load(d, pixels), hn::Load(d, base)), d, pixels);
            std::memcpy(to, pixels, left * sizeof(std::uint32_t));
        }
    }
    static_cast<void>(nonTemporal); // the target has just been read
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(enhanceRows);

namespace {

constexpr int longerSide = 256;     // pixels of the copy that is looked at
constexpr int baseReach = 16;       // its pixels around each that the base comes from
constexpr int usualAmount = 50;     // the one that photos are judged with
constexpr double usualShare = 0.85; // of the faults found
constexpr double mostDetail = 1;    // of bend for what differs from the base by the whole scale

std::int16_t fixedPoint(double value, int one) {
    return static_cast<std::int16_t>(std::clamp<long>(std::lround(value * one), -32767, 32767));
}

EnhanceWeights enhanceWeights(const PhotoFaults &faults, double share, double detail) {
    EnhanceWeights weights{};
    const double scale = std::exp(share * std::log(faults.scale));
    for (std::size_t c = 0; c < 3; ++c) {
        const double factor = scale * std::exp(share * faults.tint.at(c));
        weights.factor.at(c) = fixedPoint(factor, 1 << 13);
        weights.less.at(c) = fixedPoint(share * faults.black * factor * 255, 32);
    }
    weights.bend = fixedPoint(share * faults.bend, 1 << 15);
    weights.detail = fixedPoint(detail * scale, 1 << 13);
    return weights;
}

} // namespace

bool applyEnhance(const Enhance &parameters, ConstPixelView source, PixelView target, PixelRect area, bool opaque) {
    const int amount = std::clamp(parameters.amount, 0, 100);
    const int longer = std::max(source.width, source.height);
    const auto reduced = [&](int side) {
        return longer <= longerSide ? side : std::max(1, static_cast<int>(std::int64_t(side) * longerSide / longer));
    };
    const ScratchPicture small(reduced(source.width), reduced(source.height));
    if (small.view().isEmpty() || !averageArea(source, small.view(), opaque)) {
        return false;
    }
    const double below = std::min(1.0, double(amount) / usualAmount);
    const double above = std::max(0.0, double(amount - usualAmount) / (100 - usualAmount));
    const double share = below * (usualShare + (1 - usualShare) * above);
    const PhotoFaults faults = findPhotoFaults(readOnly(small.view()), 1 - above);
    const EnhanceWeights weights = enhanceWeights(faults, share, mostDetail * amount / 100);
    findLocalBase(small.view(), baseReach);
    enlarge(readOnly(small.view()), target, area);
    runPointKernel(HWY_DYNAMIC_DISPATCH(enhanceRows), weights, source, target, area);
    return true;
}

} // namespace lumora
#endif
