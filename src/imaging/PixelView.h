// The view of a picture that all pixel kernels use: plain bytes, without Qt.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lumora {

/// A non-owning view of a picture's pixels. A pixel is four bytes in the order blue, green,
/// red, alpha (a little-endian 0xAARRGGBB word), straight alpha, 255 where opaque. `stride` counts bytes from one row
/// to the next.
template <typename Byte> struct BasicPixelView {
    Byte *data = nullptr;
    int width = 0;
    int height = 0;
    std::ptrdiff_t stride = 0;

    Byte *row(int y) const { return data + y * stride; }
    bool isEmpty() const { return data == nullptr || width <= 0 || height <= 0; }
};

using PixelView = BasicPixelView<std::uint8_t>;
using ConstPixelView = BasicPixelView<const std::uint8_t>;

} // namespace lumora
