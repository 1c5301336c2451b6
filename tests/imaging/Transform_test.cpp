#include "imaging/TargetsForTest.h"
#include "imaging/transforms/Transform.h"
#include "support/TestPictures.h"

#include <climits>
#include <functional>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using test::firstDifference;
using test::forEachTarget;
using test::photoLike;

const QSize awkwardSizes[] = {{1, 1},  {2, 3},    {17, 3},   {3, 17},   {16, 16},  {33, 20},
                              {64, 5}, {1, 5000}, {5000, 1}, {301, 77}, {259, 130}};

/// A picture of the given size whose pixel (x, y) is the source's pixel `from(x, y)`.
QImage gathered(const QImage &source, QSize size, const std::function<QPoint(int, int)> &from) {
    QImage result(size, source.format());
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            reinterpret_cast<QRgb *>(result.scanLine(y))[x] = source.pixel(from(x, y));
        }
    }
    return result;
}

TEST(Transform, turnsAndFlipsMoveEveryPixelToItsPlace) {
    struct Row {
        const char *name;
        QImage (*turn)(const QImage &);
        bool swaps;
        std::function<QPoint(int x, int y, int lastX, int lastY)> from; ///< last column and row of the source
    };
    const Row rows[] = {
        {"clockwise", quarterTurnedClockwise, true, [](int x, int y, int, int lastY) { return QPoint(y, lastY - x); }},
        {"anticlockwise", quarterTurnedAnticlockwise, true,
         [](int x, int y, int lastX, int) { return QPoint(lastX - y, x); }},
        {"half", halfTurned, false, [](int x, int y, int lastX, int lastY) { return QPoint(lastX - x, lastY - y); }},
        {"flip", flippedVertically, false, [](int x, int y, int, int lastY) { return QPoint(x, lastY - y); }},
        {"mirror", mirrored, false, [](int x, int y, int lastX, int) { return QPoint(lastX - x, y); }},
    };
    for (const Row &row : rows) {
        for (const QSize size : awkwardSizes) {
            const QImage picture = photoLike(size.width(), size.height(), size.width() % 2 == 0);
            const QImage before = picture.copy();
            const QImage expected = gathered(picture, row.swaps ? size.transposed() : size, [&](int x, int y) {
                return row.from(x, y, size.width() - 1, size.height() - 1);
            });
            forEachTarget([&] {
                const QImage result = row.turn(picture);
                ASSERT_EQ(result.format(), picture.format());
                ASSERT_EQ(result.size(), expected.size());
                ASSERT_EQ(firstDifference(result, expected), QPoint(-1, -1))
                    << row.name << ' ' << size.width() << " x " << size.height();
            });
            ASSERT_EQ(firstDifference(picture, before), QPoint(-1, -1)) << row.name << " wrote to its source";
        }
        EXPECT_TRUE(row.turn(QImage()).isNull());
    }
}

TEST(Transform, largePicturesWrittenPastTheCacheKeepEveryPixel) {
    const QImage picture = photoLike(1811, 1301); // over 8 MB, rows that no vector divides
    const QImage flipped = gathered(picture, picture.size(), [](int x, int y) { return QPoint(x, 1300 - y); });
    EXPECT_EQ(firstDifference(flippedVertically(picture), flipped), QPoint(-1, -1));
    EXPECT_EQ(firstDifference(flippedVertically(mirrored(picture)), halfTurned(picture)), QPoint(-1, -1));
    EXPECT_EQ(firstDifference(quarterTurnedAnticlockwise(quarterTurnedClockwise(picture)), picture), QPoint(-1, -1));
}

TEST(Transform, aCropIsCutToThePicture) {
    const QImage picture = photoLike(40, 30, true);
    struct Row {
        PixelRect asked;
        QRect expected;
    };
    const Row rows[] = {
        {{3, 4, 20, 10}, {3, 4, 17, 6}},
        {{-7, 2, 9, 400}, {0, 2, 9, 28}},
        {{39, 29, 40, 30}, {39, 29, 1, 1}},
        {{0, 0, 40, 30}, {0, 0, 40, 30}},
        {{INT_MIN, INT_MIN, INT_MAX, INT_MAX}, {0, 0, 40, 30}},
        {{5, 5, 5, 9}, {}},
        {{9, 9, 2, 20}, {}},
        {{40, 0, 90, 30}, {}},
        {{INT_MAX, INT_MAX, INT_MIN, INT_MIN}, {}},
    };
    for (const Row &row : rows) {
        const QImage result = cropped(picture, row.asked);
        ASSERT_EQ(result.isNull(), row.expected.isNull()) << row.asked.left;
        if (!result.isNull()) {
            EXPECT_EQ(result.format(), picture.format());
            EXPECT_EQ(firstDifference(result, picture.copy(row.expected)), QPoint(-1, -1)) << row.asked.left;
        }
    }
    EXPECT_TRUE(cropped(QImage(), {0, 0, 1, 1}).isNull());
}

} // namespace
} // namespace lumora
