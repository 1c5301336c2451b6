#include "imaging/kernels/Premultiply.h"

#include "imaging/kernels/RowBands.h"

namespace lumora {

void premultiply(ConstPixelView source, PixelView target) {
    forBands(wholeOf(source), [&](PixelRect band) {
        for (int y = band.top; y < band.bottom; ++y) {
            const std::uint8_t *from = source.row(y);
            std::uint8_t *to = target.row(y);
            for (int x = 0; x < source.width; ++x, from += 4, to += 4) {
                for (int c = 0; c < 3; ++c) {
                    to[c] = static_cast<std::uint8_t>((from[c] * from[3] + 127) / 255);
                }
                to[3] = from[3];
            }
        }
    });
}

void unpremultiply(PixelView picture) {
    forBands(wholeOf(picture), [&](PixelRect band) {
        for (int y = band.top; y < band.bottom; ++y) {
            std::uint8_t *pixel = picture.row(y);
            for (int x = 0; x < picture.width; ++x, pixel += 4) {
                const int alpha = pixel[3];
                for (int c = 0; c < 3; ++c) {
                    pixel[c] =
                        alpha == 0 ? 0 : static_cast<std::uint8_t>(std::min(255, (pixel[c] * 255 + alpha / 2) / alpha));
                }
            }
        }
    });
}

} // namespace lumora
