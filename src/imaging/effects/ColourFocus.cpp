#include "imaging/effects/ColourFocus.h"

#include "imaging/kernels/PointOperation.h"
#include "imaging/kernels/Targets.h"

#include <cmath>
#include <numbers>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/effects/ColourFocus.cpp"
#include <hwy/foreach_target.h> // must be included before highway.h

#include "imaging/kernels/PointOperation-inl.h"

#ifndef LUMORA_COLOUR_FOCUS_ONCE
#define LUMORA_COLOUR_FOCUS_ONCE
namespace lumora {

/// The parameters in the kernel's form. A pixel's share of colour is 256ths of
/// scale * cosine of its distance in hue + offset, cut to 0 to 1.
struct FocusWeights {
    float directionX, directionY; ///< of the colour's hue, whole numbers
    float scale;                  ///< over the direction's length
    int offset;
};

} // namespace lumora
#endif

HWY_BEFORE_NAMESPACE();
namespace lumora::HWY_NAMESPACE {

struct ColourFocusOperation {
    PixelVector operator()(PixelVector pixels) const {
        const Pixels d;
        const hn::ScalableTag<std::int32_t> d32;
        const hn::ScalableTag<float> df;
        const hn::Repartition<std::int16_t, Pixels> d16;
        const auto grey = luma()(pixels);
        const auto channel = [&](auto v) { return hn::BitCast(d32, hn::And(v, hn::Set(d, 0xFFU))); };
        const auto x = hn::ConvertTo(df, hn::Sub(channel(pixels), grey));
        const auto y = hn::ConvertTo(df, hn::Sub(channel(hn::ShiftRight<16>(pixels)), grey));
        // Whole numbers below 2^24: exact, even if the compiler fuses products and sums.
        const auto along =
            hn::Add(hn::Mul(x, hn::Set(df, weights.directionX)), hn::Mul(y, hn::Set(df, weights.directionY)));
        const auto square = hn::Max(hn::Add(hn::Mul(x, x), hn::Mul(y, y)), hn::Set(df, 1.0F));
        const auto cosine = hn::Div(along, hn::Sqrt(square));
        const auto raw = hn::NearestInt(hn::Mul(cosine, hn::Set(df, weights.scale)));
        const auto share =
            hn::Min(hn::Max(hn::Add(raw, hn::Set(d32, weights.offset)), hn::Zero(d32)), hn::Set(d32, 256));
        // grey + (colour - grey) * share / 256, rounded, for two channels at a time.
        const auto pair = [&](auto v) { return hn::BitCast(d16, hn::Or(v, hn::ShiftLeft<16>(v))); };
        const auto shares = pair(hn::BitCast(d, share));
        const auto rest = hn::Sub(hn::Set(d16, 256), shares);
        const auto greys = pair(hn::BitCast(d, grey));
        const hn::RebindToUnsigned<decltype(d16)> du16;
        const auto mixed = [&](auto v) {
            const auto sum = hn::Add(hn::Mul(hn::BitCast(d16, v), shares), hn::Mul(greys, rest));
            return hn::BitCast(d, hn::ShiftRight<8>(hn::Add(hn::BitCast(du16, sum), hn::Set(du16, 128))));
        };
        const auto lowBytes = hn::Set(d, 0x00FF00FFU);
        const auto blueRed = mixed(hn::And(pixels, lowBytes));
        const auto green = hn::And(mixed(hn::And(hn::ShiftRight<8>(pixels), lowBytes)), hn::Set(d, 0xFFU));
        const auto alpha = hn::And(pixels, hn::Set(d, 0xFF000000U));
        return hn::Or(hn::Or(blueRed, hn::ShiftLeft<8>(green)), alpha);
    }

    FocusWeights weights;
};

void colourFocusRows(const FocusWeights &weights, ConstPixelView source, PixelView target, PixelRect area,
                     bool nonTemporal) {
    mapPixels(ColourFocusOperation{weights}, source, target, area, nonTemporal);
}

} // namespace lumora::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumora {

HWY_EXPORT(colourFocusRows);

namespace {

constexpr double softEdge = 20; // degrees

FocusWeights weightsOf(const ColourFocus &parameters) {
    const int red = std::clamp(parameters.red, 0, 255);
    const int green = std::clamp(parameters.green, 0, 255);
    const int blue = std::clamp(parameters.blue, 0, 255);
    const int tolerance = std::clamp(parameters.tolerance, 0, 180);
    if (tolerance == 180) {
        return {0, 0, 0, 256};
    }
    const int grey = (3736 * blue + 19235 * green + 9797 * red + 16384) / 32768;
    const int x = blue - grey;
    const int y = red - grey;
    if (x == 0 && y == 0) {
        return {0, 0, 0, 0};
    }
    const auto cosine = [](double degrees) { return std::cos(degrees * std::numbers::pi / 180); };
    const double inner = cosine(tolerance);
    const double outer = cosine(std::min(180.0, tolerance + softEdge));
    const double scale = 256 / (inner - outer);
    return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(scale / std::hypot(x, y)),
            static_cast<int>(std::lround(-outer * scale))};
}

} // namespace

void applyColourFocus(const ColourFocus &parameters, ConstPixelView source, PixelView target, PixelRect area) {
    runPointKernel(HWY_DYNAMIC_DISPATCH(colourFocusRows), weightsOf(parameters), source, target, area);
}

} // namespace lumora
#endif
