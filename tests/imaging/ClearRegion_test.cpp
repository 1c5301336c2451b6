// Cutting regions out of pictures: which pixels stay, on which format, and at the picture's edges.
#include "imaging/transforms/ClearRegion.h"

#include "imaging/Picture.h"
#include "support/TestPictures.h"

#include <gtest/gtest.h>

namespace lumora {
namespace {

using test::firstDifference;
using test::photoLike;

TEST(ClearRegion, KeepsOrClearsTheRegionPixelByPixel) {
    // More rows than one band holds, a lasso with a bay so that rows have two spans, and shapes that are cut off.
    constexpr int width = 300;
    constexpr int height = 500;
    const PicturePoint bay[] = {{20, 20}, {250, 20}, {250, 480}, {150, 60}, {20, 480}};
    const struct {
        const char *what;
        Region region;
        PixelRect rectangle;
    } rows[] = {
        {"lasso", Region::lasso(width, height, bay), {20, 20, 250, 480}},
        {"a part of a lasso", Region::lasso(width, height, bay), {100, 30, 200, 400}},
        {"ellipse beyond the picture", Region::ellipse(width, height, -50, 200, 150, 700), {-50, 200, 150, 700}},
        {"rectangle in a larger one", Region::rectangle(width, height, 50, 60, 70, 80), {0, 0, width, height}},
        {"beside the region", Region::rectangle(width, height, 50, 60, 70, 80), {100, 100, 130, 120}},
    };
    for (const bool transparent : {false, true}) {
        const QImage picture = photoLike(width, height, transparent);
        for (const auto &[what, region, rectangle] : rows) {
            SCOPED_TRACE(what);
            QImage kept = picture.convertToFormat(QImage::Format_ARGB32);
            QImage cleared = kept;
            for (int y = 0; y < height; ++y) {
                for (int x = 0; x < width; ++x) {
                    (region.contains(x, y) ? cleared : kept).setPixel(x, y, clearedPixel);
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
    const Region all = Region::rectangle(40, 30, 0, 0, 40, 30);
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
