#include "imaging/transforms/ClearRegion.h"

#include "imaging/Picture.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/transforms/Transform.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace lumora {

namespace {

/// Whether the pixels of the region are those that stay.
enum class Keep { Inside, Outside };

constexpr int whole = edgeSteps * edgeSteps;

/// How much of each pixel of a row from column `left` on is in the region, of `whole`. Sums of changes from pixel to
/// pixel, two longer than the row.
class RowCover {
  public:
    explicit RowCover(int left, int right) : m_left(left), m_right(right), m_changes(std::size_t(right - left) + 2) {}

    void setRow(const Region &region, int y) {
        std::ranges::fill(m_changes, 0);
        for (int step = 0; step < edgeSteps; ++step) {
            for (const Region::Span span : region.row(y * edgeSteps + step)) {
                add(span.begin, 1);
                add(span.end, -1);
            }
        }
    }
    template <typename Put> void forEach(const Put &put) const {
        int cover = 0;
        for (int x = m_left; x < m_right; ++x) {
            cover += m_changes[std::size_t(x - m_left)];
            put(x, cover);
        }
    }

  private:
    /// From that place on, in steps of a pixel, everything to the right is inside (sign 1) or outside again (-1).
    void add(int place, int sign) {
        place = std::clamp(place - m_left * edgeSteps, 0, (m_right - m_left) * edgeSteps);
        const auto pixel = std::size_t(place / edgeSteps);
        const int before = place % edgeSteps;
        m_changes[pixel] += sign * (edgeSteps - before);
        m_changes[pixel + 1] += sign * before;
    }

    int m_left, m_right;
    std::vector<int> m_changes;
};

/// Copies a row with what stays of each pixel.
void writeRow(const std::uint8_t *from, std::uint8_t *to, int left, const RowCover &cover, Keep keep) {
    cover.forEach([&](int x, int inside) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, from + 4 * std::size_t(x), 4);
        const auto share = static_cast<std::uint32_t>(keep == Keep::Inside ? inside : whole - inside);
        if (share < whole) {
            const std::uint32_t alpha = ((pixel >> 24) * share + whole / 2) / whole;
            pixel = alpha == 0 ? clearedPixel : (pixel & 0x00FFFFFF) | alpha << 24;
        }
        std::memcpy(to + 4 * std::size_t(x - left), &pixel, 4);
    });
}

QImage cut(const QImage &picture, const Region &region, PixelRect part, Keep keep) {
    QImage result = newPicture(part.width(), part.height(), false);
    const ConstPixelView from = readView(picture);
    const PixelView to = writeView(result);
    if (to.isEmpty()) {
        return {};
    }
    forBands(part, [&](PixelRect band) {
        RowCover cover(part.left, part.right);
        for (int y = band.top; y < band.bottom; ++y) {
            cover.setRow(region, y);
            writeRow(from.row(y), to.row(y - part.top), part.left, cover, keep);
        }
    });
    return result;
}

bool fills(const Region &region, PixelRect part) {
    for (int y = part.top * edgeSteps; y < part.bottom * edgeSteps; ++y) {
        const std::span<const Region::Span> spans = region.row(y);
        if (spans.size() != 1 || spans[0].begin > part.left * edgeSteps || spans[0].end < part.right * edgeSteps) {
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
