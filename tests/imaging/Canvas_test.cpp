#include "imaging/transforms/Canvas.h"
#include "support/TestPictures.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using test::firstDifference;
using test::photoLike;

/// The fix in the floating-point steps by which it is defined.
QImage withoutRedEye(QImage picture, int x, int y, int radius) {
    for (int dy = -radius; dy <= radius; ++dy) {
        for (int dx = -radius; dx <= radius; ++dx) {
            if (!picture.valid(x + dx, y + dy) || std::sqrt(double(dx) * dx + double(dy) * dy) > radius) {
                continue;
            }
            const QRgb pixel = picture.pixel(x + dx, y + dy);
            const double number = qRed(pixel) + 256.0 * qGreen(pixel) + 65536.0 * qBlue(pixel);
            const int green = int(std::nearbyint(number / 256)) & 255;
            const int blue = int(std::nearbyint(number / 256 / 256)) & 255;
            int red = std::max(green, blue);
            if (qGreen(pixel) == 255 && qBlue(pixel) == 255) {
                red = 255;
            } else if (number == 0xFF) {
                red = 0;
            }
            reinterpret_cast<QRgb *>(picture.scanLine(y + dy))[x + dx] =
                qRgba(red, qGreen(pixel), qBlue(pixel), qAlpha(pixel));
        }
    }
    return picture;
}

TEST(Canvas, theRedEyeFixChangesTheDiscAndNothingElse) {
    struct Row {
        int x, y, radius;
    };
    const Row rows[] = {{20, 15, 0},  {20, 15, 1},  {20, 15, 5},  {0, 0, 7},   {39, 29, 12}, {-4, 12, 9},
                        {20, 15, 60}, {90, 90, 10}, {20, 15, -1}, {45, 15, 5}, {20, -30, 33}};
    for (const Row &row : rows) {
        for (const bool transparent : {false, true}) {
            const QImage before = photoLike(40, 30, transparent);
            QImage picture = before;
            EXPECT_TRUE(removeRedEye(picture, row.x, row.y, row.radius));
            EXPECT_EQ(picture.format(), before.format());
            EXPECT_EQ(firstDifference(picture, withoutRedEye(before.copy(), row.x, row.y, row.radius)), QPoint(-1, -1))
                << row.x << ' ' << row.y << ' ' << row.radius;
            const PixelRect bounds = redEyeBounds(40, 30, row.x, row.y, row.radius);
            QImage outside = picture;
            for (int y = bounds.top; y < bounds.bottom; ++y) {
                for (int x = bounds.left; x < bounds.right; ++x) {
                    outside.setPixel(x, y, before.pixel(x, y));
                }
            }
            EXPECT_EQ(firstDifference(outside, before), QPoint(-1, -1)) << "changed beyond the bounds it names";
        }
    }
    for (const Row &row : {Row{INT_MIN, INT_MAX, INT_MAX}, Row{INT_MAX, 0, INT_MAX}, Row{0, 0, INT_MIN}}) {
        QImage picture = photoLike(9, 7);
        EXPECT_TRUE(removeRedEye(picture, row.x, row.y, row.radius));
    }
    QImage none;
    EXPECT_FALSE(removeRedEye(none, 0, 0, 3));
}

TEST(Canvas, theRedEyeFixRoundsEveryColourAsItsDefinition) {
    QImage colours(256, 4096, QImage::Format_RGB32); // all of red, every 4th of green and blue beside the limits
    for (int y = 0; y < colours.height(); ++y) {
        for (int x = 0; x < 256; ++x) {
            const int green = y % 64 < 60 ? y % 64 * 4 + (y >> 6) % 4 : 255 - (y % 4);
            const int blue = (y >> 6) < 60 ? (y >> 6) * 4 : 255 - ((y >> 6) % 4);
            colours.setPixel(x, y, qRgb(x, green, blue));
        }
    }
    QImage fixed = colours;
    ASSERT_TRUE(removeRedEye(fixed, 128, 2048, 5000));
    EXPECT_EQ(firstDifference(fixed, withoutRedEye(colours, 128, 2048, 5000)), QPoint(-1, -1));
    struct Row {
        QRgb before, after;
    };
    for (const Row row : {Row{qRgb(255, 255, 255), qRgb(255, 255, 255)}, Row{qRgb(255, 0, 0), qRgb(0, 0, 0)},
                          Row{qRgb(128, 10, 4), qRgb(10, 10, 4)}, Row{qRgb(128, 11, 4), qRgb(12, 11, 4)},
                          Row{qRgb(200, 255, 7), qRgb(8, 255, 7)}, Row{qRgb(240, 255, 255), qRgb(255, 255, 255)}}) {
        QImage one(1, 1, QImage::Format_RGB32);
        one.setPixel(0, 0, row.before);
        ASSERT_TRUE(removeRedEye(one, 0, 0, 0));
        EXPECT_EQ(one.pixel(0, 0), row.after);
    }
}

QImage pastedSlowly(QImage picture, const QImage &source, const Region &region, int left, int top, int strength) {
    picture = picture.convertToFormat(source.hasAlphaChannel() ? QImage::Format_ARGB32 : picture.format());
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (!region.contains(x, y) || !source.valid(x - left, y - top)) {
                continue;
            }
            const QRgb over = source.pixel(x - left, y - top);
            const QRgb under = picture.pixel(x, y);
            const int share = qAlpha(over) * strength;
            const int sum = qAlpha(under) * (100 - strength) + share;
            const auto mix = [&](int a, int b) {
                return sum == 0 ? a : (a * (sum - share) + b * share + sum / 2) / sum;
            };
            const QRgb mixed = qRgba(mix(qRed(under), qRed(over)), mix(qGreen(under), qGreen(over)),
                                     mix(qBlue(under), qBlue(over)), (sum + 50) / 100);
            reinterpret_cast<QRgb *>(picture.scanLine(y))[x] = strength == 100 ? over : mixed;
        }
    }
    return picture;
}

TEST(Canvas, aPasteChangesTheRegionAndNothingElse) {
    const std::vector<PicturePoint> line = {{4, 3}, {50, 9}, {31, 38}, {20, 12}, {6, 36}};
    const Region regions[] = {Region::lasso(60, 40, line), Region::ellipse(60, 40, 10, 5, 50, 33),
                              Region::rectangle(60, 40, 0, 0, 60, 40), Region::rectangle(60, 40, 7, 7, 7, 9)};
    struct Row {
        int left, top, strength, used;
    };
    const Row rows[] = {{0, 0, 100, 100}, {0, 0, 40, 40},   {13, -9, 100, 100}, {-20, 17, 61, 61},
                        {0, 0, 0, 0},     {0, 0, 999, 100}, {0, 0, -3, 0},      {INT_MAX, INT_MIN, 100, 100}};
    for (const Region &region : regions) {
        for (const Row &row : rows) {
            for (const int alphas : {0, 1, 2, 3}) {
                const QImage before = photoLike(60, 40, alphas % 2 == 1);
                QImage source = photoLike(55, 41, alphas / 2 == 1);
                source.invertPixels(QImage::InvertRgb);
                QImage picture = before;
                ASSERT_TRUE(pasteThrough(picture, source, region, row.left, row.top, row.strength));
                if (row.used == 0 || row.left == INT_MAX) {
                    ASSERT_EQ(firstDifference(picture, before), QPoint(-1, -1));
                    continue;
                }
                const QImage expected = pastedSlowly(before, source, region, row.left, row.top, row.used);
                ASSERT_EQ(firstDifference(picture, expected), QPoint(-1, -1))
                    << row.left << ' ' << row.top << ' ' << row.strength << " alphas " << alphas;
            }
        }
    }
    QImage picture = photoLike(5, 5);
    QImage none;
    EXPECT_FALSE(pasteThrough(picture, QImage(), regions[0], 0, 0, 100));
    EXPECT_FALSE(pasteThrough(none, picture, regions[0], 0, 0, 100));
}

} // namespace
} // namespace lumora
