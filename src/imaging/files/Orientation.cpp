#include "imaging/files/Orientation.h"

#include "imaging/Picture.h"

#include <tbb/blocked_range2d.h>
#include <tbb/parallel_for.h>

namespace lumora {

namespace {

// What EXIF 2.32, tag 0x0112, says of the stored row 0 and column 0, as three steps in this order: swap the axes,
// then mirror left to right, then top to bottom.
struct Turn {
    bool swap;
    bool mirrorX;
    bool mirrorY;
};
constexpr Turn turns[9] = {{},
                           {false, false, false},
                           {false, true, false},
                           {false, true, true},
                           {false, false, true},
                           {true, false, false},
                           {true, true, false},
                           {true, true, true},
                           {true, false, true}};

// A cache line of pixels: a block read in rows and written in columns stays in the first-level cache.
constexpr int block = 16;

} // namespace

bool swapsSides(int orientation) {
    return orientation >= 5 && orientation <= 8;
}

QImage turnedUpright(const QImage &picture, int orientation) {
    if (orientation < 2 || orientation > 8 || picture.isNull()) {
        return picture;
    }
    const Turn turn = turns[orientation];
    QImage result = turn.swap ? newPicture(picture.height(), picture.width(), !picture.hasAlphaChannel())
                              : newPicture(picture.width(), picture.height(), !picture.hasAlphaChannel());
    if (result.isNull()) {
        return result;
    }
    const ConstPixelView from = readView(picture);
    const PixelView to = writeView(result);
    // Steps through the stored picture, in bytes, for one pixel right and one pixel down in the result.
    const std::ptrdiff_t right = (turn.swap ? from.stride : 4) * (turn.mirrorX ? -1 : 1);
    const std::ptrdiff_t down = (turn.swap ? 4 : from.stride) * (turn.mirrorY ? -1 : 1);
    const std::uint8_t *start =
        from.data + (turn.mirrorX ? -right * (to.width - 1) : 0) + (turn.mirrorY ? -down * (to.height - 1) : 0);
    const auto turnBlock = [&](int x0, int y0, int x1, int y1) {
        for (int y = y0; y < y1; ++y) {
            auto *row = reinterpret_cast<std::uint32_t *>(to.row(y));
            const std::uint8_t *pixel = start + x0 * right + y * down;
            for (int x = x0; x < x1; ++x, pixel += right) {
                row[x] = *reinterpret_cast<const std::uint32_t *>(pixel);
            }
        }
    };
    tbb::parallel_for(tbb::blocked_range2d<int>(0, to.height, 64, 0, to.width, 256), [&](const auto &range) {
        for (int y = range.rows().begin(); y < range.rows().end(); y += block) {
            for (int x = range.cols().begin(); x < range.cols().end(); x += block) {
                turnBlock(x, y, std::min(x + block, range.cols().end()), std::min(y + block, range.rows().end()));
            }
        }
    });
    return result;
}

} // namespace lumora
