// Cutting regions out of pictures: which pixels stay, on which format, and at the picture's edges.
#include "imaging/transforms/ClearRegion.h"

#include "imaging/Picture.h"
#include "support/TestPictures.h"

#include <gtest/gtest.h>

namespace lumora {
namespace {

using test::firstDifference;
using test::photoLike;

/// The pixel with so many parts of it left.
QRgb withShare(QRgb pixel, int share) {
    const int most = edgeSteps * edgeSteps;
    const int alpha = (qAlpha(pixel) * share + most / 2) / most;
    return share == most ? pixel : alpha == 0 ? clearedPixel : qRgba(qRed(pixel), qGreen(pixel), qBlue(pixel), alpha);
}

TEST(ClearRegion, KeepsOrClearsTheRegionPixelByPixel) {
    // More rows than one band holds, a lasso with a bay so that rows have two spans, and shapes that are cut off.
    constexpr int width = 300;
    constexpr int height = 500;
    constexpr int n = edgeSteps;
    const PicturePoint bay[] = {{80, 80}, {1000, 81}, {1003, 1920}, {600, 240}, {77, 1922}};
    const Region lasso = Region::lasso(width * n, height * n, bay);
    const struct {
        const char *what;
        Region region;
        PixelRect rectangle;
    } rows[] = {
        {"lasso", lasso, {19, 20, 251, 481}},
        {"a part of a lasso", lasso, {100, 30, 200, 400}},
        {"ellipse beyond the picture",
         Region::ellipse(width * n, height * n, -200, 800, 600, 2800),
         {-50, 200, 150, 700}},
        {"rectangle in a larger one",
         Region::rectangle(width * n, height * n, 201, 242, 283, 320),
         {0, 0, width, height}},
        {"beside the region", Region::rectangle(width * n, height * n, 200, 240, 280, 320), {100, 100, 130, 120}},
    };
    for (const bool transparent : {false, true}) {
        const QImage picture = photoLike(width, height, transparent);
        for (const auto &[what, region, rectangle] : rows) {
            SCOPED_TRACE(what);
            QImage kept = picture.convertToFormat(QImage::Format_ARGB32);
            QImage cleared = kept;
            for (int y = 0; y < height; ++y) {
                for (int x = 0; x < width; ++x) {
                    int inside = 0;
                    for (int i = 0; i < n * n; ++i) {
                        inside += region.contains(x * n + i % n, y * n + i / n) ? 1 : 0;
                    }
                    kept.setPixel(x, y, withShare(kept.pixel(x, y), inside));
                    cleared.setPixel(x, y, withShare(cleared.pixel(x, y), n * n - inside));
                }
            }
            const QRect part =
                QRect(QPoint(rectangle.left, rectangle.top), QPoint(rectangle.right - 1, rectangle.bottom - 1)) &
                picture.rect();
            EXPECT_EQ(firstDifference(keptInRegion(picture, region, rectangle), kept.copy(part)), QPoint(-1, -1));
            EXPECT_EQ(firstDifference(clearedInRegion(picture, region), cleared), QPoint(-1, -1));
            EXPECT_EQ(clearedInRegion(picture, region).format(), QImage::Format_ARGB32);
            EXPECT_EQ(picture, photoLike(width, height, transparent));
        }
    }
}

TEST(ClearRegion, WhatLosesNothingStaysAsItIs) {
    const QImage picture = photoLike(40, 30);
    const Region all = Region::rectangle(160, 120, 0, 0, 160, 120);
    EXPECT_EQ(keptInRegion(picture, all, {5, 6, 25, 16}), picture.copy(5, 6, 20, 10)); // still opaque
    EXPECT_EQ(clearedInRegion(picture, Region()).cacheKey(), picture.cacheKey());
    EXPECT_EQ(clearedInRegion(picture, all).pixel(39, 29), clearedPixel);
    for (const PixelRect &beside : {PixelRect{40, 0, 60, 10}, PixelRect{-9, 0, 0, 10}, PixelRect{9, 9, 9, 9}}) {
        EXPECT_TRUE(keptInRegion(picture, all, beside).isNull());
    }
    EXPECT_TRUE(keptInRegion(QImage(), all, {0, 0, 1, 1}).isNull());
    EXPECT_TRUE(clearedInRegion(QImage(), all).isNull());
}

} // namespace
} // namespace lumora
