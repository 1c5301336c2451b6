#include "app/InterfaceScale.h"

#include <gtest/gtest.h>

namespace lumora {
namespace {

TEST(InterfaceScale, GrowsInStepsThatLeaveRoomForTheSmallestWindow) {
    const struct {
        QSize screen;
        double scale;
    } rows[] = {
        {{800, 600}, 1},   {{1024, 768}, 1},     {{1366, 768}, 1},    {{1280, 959}, 1},     {{1280, 960}, 1.25},
        {{1279, 2000}, 1}, {{1920, 1080}, 1.25}, {{1920, 1200}, 1.5}, {{1536, 1151}, 1.25}, {{2560, 1440}, 1.5},
        {{2048, 1536}, 2}, {{3840, 2160}, 2},    {{0, 0}, 1},         {{1080, 1920}, 1},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(interfaceScale(row.screen), row.scale) << row.screen.width() << " x " << row.screen.height();
    }
}

TEST(InterfaceScale, LargerSizesLeaveRoomForEveryWindow) {
    const struct {
        QSize screen;
        double large, largest;
    } rows[] = {
        {{800, 600}, 1, 1},        {{640, 400}, 1, 1},       {{1024, 768}, 1.131, 1.28}, {{1366, 768}, 1.131, 1.28},
        {{1280, 960}, 1.414, 1.6}, {{1920, 1080}, 1.5, 1.8}, {{3840, 2160}, 2.530, 3.2}, {{2560, 1440}, 1.897, 2.4},
    };
    for (const auto &row : rows) {
        EXPECT_NEAR(interfaceScale(row.screen, ButtonSize::Large), row.large, 0.001) << row.screen.width();
        EXPECT_NEAR(interfaceScale(row.screen, ButtonSize::Largest), row.largest, 0.001) << row.screen.width();
    }
}

} // namespace
} // namespace lumora
