#include "imaging/TargetsForTest.h"
#include "imaging/transforms/Transform.h"
#include "support/TestPictures.h"

#include <climits>
#include <cmath>
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

/// Rotation one pixel at a time, on colours multiplied by alpha, in the integers by which it is defined.
QImage rotatedSlowly(const QImage &picture, QSize size, double degrees) {
    const double sine = std::sin(degrees * M_PI / 180);
    const double cosine = std::cos(degrees * M_PI / 180);
    const auto fixed = [](double value) { return std::int64_t(std::llround(value * 4294967296.0)); };
    QImage result(size, picture.format());
    for (int y = 0; y < size.height(); ++y) {
        const double right = 0.5 - size.width() / 2.0;
        const double down = y + 0.5 - size.height() / 2.0;
        const auto startX = fixed(cosine * right + sine * down + picture.width() / 2.0 - 0.5 + 1.0 / 256);
        const auto startY = fixed(cosine * down - sine * right + picture.height() / 2.0 - 0.5 + 1.0 / 65536);
        for (int x = 0; x < size.width(); ++x) {
            const std::int64_t fromX = startX + x * fixed(cosine);
            const std::int64_t fromY = startY + x * fixed(-sine);
            const auto channel = [&](int i, int dx, int dy) {
                const QPoint at(int(fromX >> 32) + dx, int(fromY >> 32) + dy);
                const QRgb pixel = picture.valid(at) ? picture.pixel(at) : qRgb(255, 255, 255);
                const int alpha = qAlpha(pixel);
                return i == 3 ? alpha : (int(pixel >> (8 * i) & 255) * alpha + 127) / 255;
            };
            const int fractionX = int(fromX >> 25 & 127);
            const int fractionY = int(fromY >> 17 & 32767);
            int mixed[4];
            for (int i = 0; i < 4; ++i) {
                const int above = channel(i, 0, 0) * (128 - fractionX) + channel(i, 1, 0) * fractionX;
                const int below = channel(i, 0, 1) * (128 - fractionX) + channel(i, 1, 1) * fractionX;
                mixed[i] = (above + (((below - above) * fractionY + 16384) >> 15) + 64) >> 7;
            }
            const auto straight = [&](int i) {
                return mixed[3] == 0 ? 0 : std::min(255, (mixed[i] * 255 + mixed[3] / 2) / mixed[3]);
            };
            reinterpret_cast<QRgb *>(result.scanLine(y))[x] = qRgba(straight(2), straight(1), straight(0), mixed[3]);
        }
    }
    return result;
}

TEST(Transform, rotationIsBilinearWithWhiteCorners) {
    for (const QSize size : {QSize(1, 1), QSize(1, 700), QSize(700, 1), QSize(2, 2), QSize(17, 3), QSize(201, 130)}) {
        for (const double degrees : {0.1, 7.0, 45.0, 89.9, 113.0, -30.0, 200.5, 359.0}) {
            for (const bool transparent : {false, true}) {
                const QImage picture = photoLike(size.width(), size.height(), transparent);
                const QImage before = picture.copy();
                QImage expected;
                forEachTarget([&] {
                    const QImage result = rotated(picture, degrees);
                    if (expected.isNull()) {
                        expected = rotatedSlowly(picture, result.size(), degrees);
                    }
                    ASSERT_EQ(result.format(), picture.format());
                    ASSERT_EQ(firstDifference(result, expected), QPoint(-1, -1))
                        << size.width() << " x " << size.height() << " by " << degrees << ' ' << transparent;
                });
                ASSERT_EQ(firstDifference(picture, before), QPoint(-1, -1)) << "wrote to its source";
            }
        }
    }
}

TEST(Transform, rotationHoldsTheWholePicture) {
    const QImage picture = photoLike(60, 40);
    EXPECT_EQ(rotated(picture, 30).size(), QSize(72, 65));
    EXPECT_EQ(rotated(picture, 45).size(), QSize(71, 71));
    EXPECT_EQ(rotated(picture, 390).size(), QSize(72, 65));
    EXPECT_EQ(rotated(picture, 45).pixel(0, 0), qRgb(255, 255, 255));
    for (const double turns : {0.0, 360.0, -720.0}) {
        EXPECT_EQ(firstDifference(rotated(picture, turns), picture), QPoint(-1, -1));
        EXPECT_EQ(firstDifference(rotated(picture, turns + 90), quarterTurnedClockwise(picture)), QPoint(-1, -1));
        EXPECT_EQ(firstDifference(rotated(picture, turns + 180), halfTurned(picture)), QPoint(-1, -1));
        EXPECT_EQ(firstDifference(rotated(picture, turns + 270), quarterTurnedAnticlockwise(picture)), QPoint(-1, -1));
    }
    // Clockwise: what was at the top right comes down.
    QImage spot(101, 101, QImage::Format_RGB32);
    spot.fill(Qt::white);
    spot.setPixel(90, 50, qRgb(0, 0, 0));
    const QImage result = rotated(spot, 30);
    const int x = result.width() / 2 + int(40 * std::cos(M_PI / 6));
    const int y = result.height() / 2 + int(40 * std::sin(M_PI / 6));
    int darkest = 255;
    for (int i = 0; i < 9; ++i) {
        darkest = std::min(darkest, qRed(result.pixel(x - 1 + i % 3, y - 1 + i / 3)));
    }
    EXPECT_LT(darkest, 200);
    EXPECT_TRUE(rotated(picture, std::nan("")).isNull());
    EXPECT_TRUE(rotated(picture, HUGE_VAL).isNull());
    EXPECT_TRUE(rotated(QImage(), 5).isNull());
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
