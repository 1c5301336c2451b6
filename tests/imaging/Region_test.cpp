#include "imaging/Region.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

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

/// How often the closed line goes round the point (Sunday's winding number), in plain fractions of doubles.
int windings(const std::vector<PicturePoint> &line, double x, double y) {
    int count = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const PicturePoint from = line[i];
        const PicturePoint to = line[(i + 1) % line.size()];
        const double side = (to.x - from.x) * (y - from.y) - (x - from.x) * (to.y - from.y);
        if (from.y <= y && to.y > y && side > 0) {
            ++count;
        } else if (from.y > y && to.y <= y && side < 0) {
            --count;
        }
    }
    return count;
}

TEST(Region, aLassoHoldsWhatItsLineGoesRound) {
    std::vector<PicturePoint> star; // crosses itself, goes round its middle twice
    std::vector<PicturePoint> scribble;
    star.reserve(5);
    scribble.reserve(60);
    std::minstd_rand random(5);
    for (int i = 0; i < 5; ++i) {
        star.push_back({20.3 + 17 * std::cos(i * 4 * M_PI / 5), 14.1 + 13 * std::sin(i * 4 * M_PI / 5)});
    }
    for (int i = 0; i < 60; ++i) { // far outside the picture as well
        scribble.push_back({double(random() % 1000) / 10 - 30.03, double(random() % 800) / 10 - 25.07});
    }
    const std::vector<std::vector<PicturePoint>> lines = {
        {{2, 3}, {9, 3}, {9, 8}, {2, 8}},
        {{2, 8}, {9, 8}, {9, 3}, {2, 3}}, // the other way round
        {{5.2, 1.1}, {30.7, 4.4}, {11.9, 26.3}},
        {{-50, -50}, {90, -50}, {90, 90}, {-50, 90}},     // the whole picture
        {{0, 2}, {40, 2.2}, {0, 2.4}, {40, 12}, {0, 27}}, // a thin part without pixels
        {{4, 4}, {20, 20}, {20, 4}, {4, 20}},             // a figure of eight
        {{3, 3}, {33, 3}, {33, 23}, {3, 23}, {3, 3}, {13, 8}, {23, 8}, {23, 18}, {13, 18}, {13, 8}}, // round twice
        star,
        scribble,
    };
    for (const auto &line : lines) {
        const Region region = Region::lasso(40, 30, line);
        int inside = 0;
        for (int y = 0; y < 30; ++y) {
            for (int x = 0; x < 40; ++x) {
                ASSERT_EQ(region.contains(x, y), windings(line, x + 0.5, y + 0.5) != 0)
                    << x << ' ' << y << " of line " << &line - lines.data();
                inside += region.contains(x, y) ? 1 : 0;
            }
        }
        EXPECT_GT(inside, 0);
        EXPECT_EQ(pixelsIn(region), inside) << "rows and look-up agree";
        const PixelRect bounds = region.bounds();
        EXPECT_TRUE(bounds.left >= 0 && bounds.top >= 0 && bounds.right <= 40 && bounds.bottom <= 30);
    }
}

TEST(Region, aLassoTakesAnyPoints) {
    const double infinite = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    const std::vector<PicturePoint> empty[] = {{},
                                               {{3, 3}},
                                               {{3, 3}, {9, 9}},
                                               {{5, 5}, {5, 5}, {5, 5}},
                                               {{1, 4}, {9, 4}, {5, 4}},
                                               {{none, 1}, {2, none}, {9, 9}},
                                               {{50, 50}, {90, 50}, {90, 90}},
                                               {{-9, 0}, {-1, 0}, {-5, 8}}};
    for (const auto &line : empty) {
        EXPECT_TRUE(Region::lasso(20, 15, line).isEmpty()) << line.size();
    }
    const std::vector<PicturePoint> everything = {
        {-infinite, -infinite}, {infinite, -infinite}, {none, 3}, {infinite, infinite}, {-infinite, infinite}};
    EXPECT_EQ(pixelsIn(Region::lasso(20, 15, everything)), 20 * 15);
    std::vector<PicturePoint> zigzag; // a hand that never lifts: every side passes every row
    zigzag.reserve(30'000);
    for (int i = 0; i < 30'000; ++i) {
        zigzag.push_back({i / 100.0, i % 2 == 0 ? -1.0 : 200.0});
    }
    const Region region = Region::lasso(300, 150, zigzag);
    EXPECT_TRUE(region.contains(150, 75));
    EXPECT_FALSE(region.contains(-1, 75));
}

} // namespace
} // namespace lumora
