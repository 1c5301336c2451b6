#include "imaging/transforms/Canvas.h"

#include "imaging/Picture.h"
#include "imaging/kernels/RowBands.h"

#include <cmath>
#include <cstring>

namespace lumora {

namespace {

/// round(number / 2^bits), halves to even, modulo 256.
std::uint32_t roundedChannel(std::uint32_t number, int bits) {
    const std::uint32_t rest = number & ((1U << bits) - 1);
    const std::uint32_t half = 1U << (bits - 1);
    const std::uint32_t whole = number >> bits;
    return (whole + (rest > half || (rest == half && whole % 2 != 0) ? 1 : 0)) & 0xFF;
}

void takeOutRed(std::uint8_t *pixel) {
    const std::uint32_t number = pixel[2] | std::uint32_t(pixel[1]) << 8 | std::uint32_t(pixel[0]) << 16;
    if (number >> 8 == 0xFFFF) { // the glint in the eye, for which rounding would wrap to 0
        pixel[2] = 255;
        return;
    }
    const std::uint32_t red = number == 0xFF ? 0 : std::max(roundedChannel(number, 8), roundedChannel(number, 16));
    pixel[2] = static_cast<std::uint8_t>(red);
}

/// Sides of a disc's row from its middle: the largest dx with dx * dx + dy * dy <= radius * radius.
std::int64_t halfWidth(std::int64_t radius, std::int64_t dy) {
    const std::int64_t square = radius * radius - dy * dy;
    auto half = static_cast<std::int64_t>(std::sqrt(static_cast<double>(square)));
    half -= half * half > square ? 1 : 0;
    return half + ((half + 1) * (half + 1) <= square ? 1 : 0);
}

/// The mean of two pixels, `share` per cent of the second; colours weighted with alpha.
void mixPixel(std::uint8_t *under, const std::uint8_t *over, std::uint32_t share) {
    const std::uint32_t underShare = under[3] * (100 - share);
    const std::uint32_t overShare = over[3] * share;
    const std::uint32_t sum = underShare + overShare;
    for (int c = 0; c < 3 && sum > 0; ++c) {
        under[c] = static_cast<std::uint8_t>((under[c] * underShare + over[c] * overShare + sum / 2) / sum);
    }
    under[3] = static_cast<std::uint8_t>((sum + 50) / 100);
}

} // namespace

PixelRect redEyeBounds(int pictureWidth, int pictureHeight, int x, int y, int radius) {
    const auto cut = [radius](int centre, int size) {
        const std::int64_t begin = std::clamp<std::int64_t>(std::int64_t(centre) - radius, 0, size);
        const std::int64_t end = std::clamp<std::int64_t>(std::int64_t(centre) + radius + 1, 0, size);
        return std::pair(int(begin), int(end));
    };
    const auto [left, right] = cut(x, pictureWidth);
    const auto [top, bottom] = cut(y, pictureHeight);
    const bool nothing = radius < 0 || left >= right || top >= bottom;
    return nothing ? PixelRect() : PixelRect{left, top, right, bottom};
}

bool removeRedEye(QImage &picture, int x, int y, int radius) {
    const PixelRect bounds = redEyeBounds(picture.width(), picture.height(), x, y, radius);
    if (bounds.isEmpty()) {
        return !readView(picture).isEmpty();
    }
    const PixelView pixels = writeView(picture);
    if (pixels.isEmpty()) {
        return false;
    }
    forBands(bounds, [&](PixelRect band) {
        for (int row = band.top; row < band.bottom; ++row) {
            const std::int64_t half = halfWidth(radius, std::int64_t(row) - y);
            const std::int64_t begin = std::max<std::int64_t>(band.left, x - half);
            const std::int64_t end = std::min<std::int64_t>(band.right, x + half + 1);
            for (std::int64_t column = begin; column < end; ++column) {
                takeOutRed(pixels.row(row) + 4 * column);
            }
        }
    });
    return true;
}

bool pasteThrough(QImage &picture, const QImage &source, const Region &region, int left, int top, int strength) {
    const ConstPixelView from = readView(source);
    if (from.isEmpty() || readView(picture).isEmpty()) {
        return false;
    }
    const auto share = static_cast<std::uint32_t>(std::clamp(strength, 0, 100));
    const PixelRect bounds = region.bounds();
    if (share == 0 || bounds.isEmpty()) {
        return true;
    }
    const PixelView to = writeView(picture);
    if (to.isEmpty()) {
        return false;
    }
    forBands(bounds, [&](PixelRect band) {
        for (int y = band.top; y < std::min(band.bottom, to.height); ++y) {
            const std::int64_t sourceY = std::int64_t(y) - top;
            if (sourceY < 0 || sourceY >= from.height) {
                continue;
            }
            for (const Region::Span span : region.row(y)) {
                const std::int64_t begin = std::max<std::int64_t>(span.begin, left);
                const std::int64_t end =
                    std::min({std::int64_t(span.end), std::int64_t(left) + from.width, std::int64_t(to.width)});
                std::uint8_t *under = to.row(y) + 4 * begin;
                const std::uint8_t *over = from.row(int(sourceY)) + 4 * (begin - left);
                if (share == 100 && begin < end) {
                    std::memcpy(under, over, std::size_t(end - begin) * 4);
                    continue;
                }
                for (std::int64_t x = begin; x < end; ++x, under += 4, over += 4) {
                    mixPixel(under, over, share);
                }
            }
        }
    });
    if (source.format() == QImage::Format_ARGB32) {
        picture.reinterpretAsFormat(QImage::Format_ARGB32);
    }
    return true;
}

} // namespace lumora
