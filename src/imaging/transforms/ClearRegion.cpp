#include "imaging/transforms/ClearRegion.h"

#include "imaging/Picture.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/transforms/Transform.h"

#include <algorithm>
#include <cstring>

namespace lumora {

namespace {

/// Whether the pixels of the region are those that stay.
enum class Keep { Inside, Outside };

/// Copies the columns from `left` to `right` - 1 of a row, with clearedPixel in those that do not stay.
void writeRow(const std::uint8_t *from, std::uint8_t *to, int left, int right, std::span<const Region::Span> spans,
              Keep keep) {
    int x = left;
    const auto put = [&](int end, bool stays) {
        if (end <= x) {
            return;
        }
        std::uint8_t *const at = to + 4 * std::size_t(x - left);
        if (stays) {
            std::memcpy(at, from + 4 * std::size_t(x), 4 * std::size_t(end - x));
        } else {
            std::fill_n(reinterpret_cast<std::uint32_t *>(at), end - x, clearedPixel);
        }
        x = end;
    };
    for (const Region::Span span : spans) {
        put(std::min(span.begin, right), keep == Keep::Outside);
        put(std::min(span.end, right), keep == Keep::Inside);
    }
    put(right, keep == Keep::Outside);
}

QImage cut(const QImage &picture, const Region &region, PixelRect part, Keep keep) {
    QImage result = newPicture(part.width(), part.height(), false);
    const ConstPixelView from = readView(picture);
    const PixelView to = writeView(result);
    if (to.isEmpty()) {
        return {};
    }
    forBands(part, [&](PixelRect band) {
        for (int y = band.top; y < band.bottom; ++y) {
            writeRow(from.row(y), to.row(y - part.top), part.left, part.right, region.row(y), keep);
        }
    });
    return result;
}

bool fills(const Region &region, PixelRect part) {
    for (int y = part.top; y < part.bottom; ++y) {
        const std::span<const Region::Span> spans = region.row(y);
        if (spans.size() != 1 || spans[0].begin > part.left || spans[0].end < part.right) {
            return false;
        }
    }
    return true;
}

} // namespace

QImage keptInRegion(const QImage &picture, const Region &region, PixelRect rectangle) {
    const PixelRect part{std::max(rectangle.left, 0), std::max(rectangle.top, 0),
                         std::min(rectangle.right, picture.width()), std::min(rectangle.bottom, picture.height())};
    if (part.isEmpty()) {
        return {};
    }
    return fills(region, part) ? cropped(picture, part) : cut(picture, region, part, Keep::Inside);
}

QImage clearedInRegion(const QImage &picture, const Region &region) {
    return region.isEmpty() || picture.isNull()
               ? picture
               : cut(picture, region, {0, 0, picture.width(), picture.height()}, Keep::Outside);
}

} // namespace lumora
