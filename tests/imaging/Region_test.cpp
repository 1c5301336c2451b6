#include "imaging/Region.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>

namespace lumora {
namespace {

int pixelsIn(const Region &region) {
    int count = 0;
    for (int y = region.bounds().top; y < region.bounds().bottom; ++y) {
        for (const Region::Span span : region.row(y)) {
            count += span.end - span.begin;
        }
    }
    return count;
}

TEST(Region, rectanglesAreCutToThePicture) {
    struct Row {
        int left, top, right, bottom;
        int pixels;
    };
    const Row rows[] = {
        {2, 1, 5, 3, 6},
        {5, 3, 2, 1, 6},
        {0, 0, 10, 8, 80},
        {-5, -5, 3, 2, 6},
        {8, 6, 400, 300, 4},
        {INT_MIN, INT_MIN, INT_MAX, INT_MAX, 80},
        {4, 4, 4, 7, 0},
        {4, 4, 7, 4, 0},
        {10, 0, 20, 8, 0},
        {-9, 0, 0, 8, 0},
        {INT_MAX, 0, INT_MIN, 1, 10},
    };
    for (const Row &row : rows) {
        const Region region = Region::rectangle(10, 8, row.left, row.top, row.right, row.bottom);
        EXPECT_EQ(pixelsIn(region), row.pixels) << row.left << ' ' << row.top << ' ' << row.right << ' ' << row.bottom;
        EXPECT_EQ(region.isEmpty(), row.pixels == 0);
    }
    const Region region = Region::rectangle(10, 8, 2, 1, 5, 3);
    EXPECT_TRUE(region.contains(2, 1));
    EXPECT_TRUE(region.contains(4, 2));
    EXPECT_FALSE(region.contains(5, 2));
    EXPECT_FALSE(region.contains(4, 3));
    EXPECT_FALSE(region.contains(4, -1));
}

TEST(Region, anEllipseHoldsThePixelsWhoseCentresLieInIt) {
    struct Row {
        int x1, y1, x2, y2;
    };
    const Row rows[] = {{5, 5, 25, 15}, {25, 15, 5, 5}, {-10, -10, 12, 9}, {3, 2, 4, 3},     {20, 10, 60, 50},
                        {0, 0, 30, 20}, {7, 3, 8, 17},  {1, 4, 29, 5},     {-99, 3, 150, 9}, {2, 2, 9, 2}};
    for (const Row &row : rows) {
        const Region region = Region::ellipse(30, 20, row.x1, row.y1, row.x2, row.y2);
        int inside = 0;
        for (int y = 0; y < 20; ++y) {
            for (int x = 0; x < 30; ++x) {
                const double dx = (2.0 * x + 1 - row.x1 - row.x2) / (row.x2 - row.x1);
                const double dy = (2.0 * y + 1 - row.y1 - row.y2) / (row.y2 - row.y1);
                const double distance = dx * dx + dy * dy;
                if (std::abs(distance - 1) > 1e-9 || std::isnan(distance)) { // on the line either is right
                    EXPECT_EQ(region.contains(x, y), distance < 1) << x << ' ' << y << " of " << row.x1;
                }
                inside += region.contains(x, y) ? 1 : 0;
            }
        }
        EXPECT_EQ(pixelsIn(region), inside) << "rows and look-up agree";
    }
    EXPECT_FALSE(Region::ellipse(30, 20, INT_MIN, INT_MIN, INT_MAX, INT_MAX).isEmpty());
    EXPECT_TRUE(Region::ellipse(30, 20, 40, 40, 90, 90).isEmpty());
}

} // namespace
} // namespace lumora
