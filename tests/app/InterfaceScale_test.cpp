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

} // namespace
} // namespace lumora
