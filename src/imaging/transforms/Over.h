// Pixels laid over others. Called by the frame overlay.
#pragma once

#include "imaging/PixelView.h"

#include <cstdint>

namespace lumora {

/// to = over + under * (255 - alpha of over) / 255, rounded and cut at 255, for each byte. Colours of both are
/// multiplied by alpha, which is 255 in opaque pictures; one of `over` that exceeds its alpha counts as that. `to` may
/// be `under`.
void layOver(const std::uint8_t *over, const std::uint8_t *under, std::uint8_t *to, int pixels);

/// target = (over * alpha + under * (255 - alpha)) / 255, rounded, for each channel, and opaque; alpha is that of
/// `over`, whose colours are not multiplied by it. `under` is opaque. All three have the same size.
void layPictureOver(ConstPixelView over, ConstPixelView under, PixelView target);

} // namespace lumora
