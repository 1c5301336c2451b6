#include "imaging/AllOperations.h"
#include "imaging/EffectEngine.h"
#include "imaging/EffectReference.h"
#include "imaging/Picture.h"
#include "imaging/Region.h"
#include "imaging/TargetsForTest.h"
#include "support/TestPictures.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace lumora {
namespace {

using test::firstDifference;
using test::forEachTarget;
using test::luma;
using test::photoLike;
using test::withAlphaOf;

// The operations as anybody would write them down, one pixel at a time.

QRgb sepia(QRgb pixel) {
    const int level = luma(pixel);
    const auto channel = [&](double slope, double curve) {
        const int factor = int(std::lround(slope * 65536)) + int(std::lround(curve * 65536 / 255)) * level;
        return (level * factor + 32768) / 65536;
    };
    return withAlphaOf(pixel, channel(1.2, -.2), channel(.87, .09), channel(.64, .18));
}

/// Up to the threshold and down again.
int solarised(int level, int threshold) {
    const int peak = std::max(threshold, 255 - threshold);
    if (threshold == 255 || level < threshold) {
        return (level * (peak * 256 / threshold) + 128) / 256;
    }
    return ((255 - level) * (peak * 256 / (255 - threshold)) + 128) / 256;
}

/// Contrast and saturation: the distance from a level grows by a percentage, in steps of a fraction.
QRgb movedAway(QRgb pixel, int level, int steps, int percent) {
    const double factor = std::floor(steps * (100 + percent) / 100.0 + 0.5) / steps;
    const auto channel = [&](int value) {
        return std::clamp(level + int(std::floor((value - level) * factor + 0.5)), 0, 255);
    };
    return withAlphaOf(pixel, channel(qRed(pixel)), channel(qGreen(pixel)), channel(qBlue(pixel)));
}

struct PointEffect {
    const char *name;
    Operation operation;
    std::function<QRgb(QRgb)> reference;
};

const std::vector<PointEffect> &pointEffects() {
    const auto blackAndWhite = [](int asked, int used) {
        return PointEffect{"blackAndWhite", {applyBlackAndWhite, {asked}}, [used](QRgb p) {
                               const int level = luma(p) > used ? 255 : 0;
                               return withAlphaOf(p, level, level, level);
                           }};
    };
    const auto invert = [](bool red, bool green, bool blue) {
        return PointEffect{"invert", {applyInvert, {red, green, blue}}, [=](QRgb p) {
                               return withAlphaOf(p, red ? 255 - qRed(p) : qRed(p), green ? 255 - qGreen(p) : qGreen(p),
                                                  blue ? 255 - qBlue(p) : qBlue(p));
                           }};
    };
    const auto solarise = [](std::array<int, 3> asked, std::array<int, 3> used, bool above) {
        return PointEffect{"solarise", {applySolarise, {asked[0], asked[1], asked[2], above}}, [=](QRgb p) {
                               const auto channel = [&](int value, int threshold) {
                                   return above ? solarised(value, threshold) : 255 - solarised(value, threshold);
                               };
                               return withAlphaOf(p, channel(qRed(p), used[0]), channel(qGreen(p), used[1]),
                                                  channel(qBlue(p), used[2]));
                           }};
    };
    const auto colourise = [](std::array<int, 3> asked, std::array<int, 3> used) {
        return PointEffect{"colourise", {applyColourise, {asked[0], asked[1], asked[2]}}, [=](QRgb p) {
                               const double toColour = std::min(2 * luma(p), 255) / 255.0;
                               const double toWhite = std::max(2 * luma(p) - 255, 0) / 255.0;
                               const auto channel = [&](int colour) {
                                   return int(std::lround(colour * toColour + (255 - colour) * toWhite));
                               };
                               return withAlphaOf(p, channel(used[0]), channel(used[1]), channel(used[2]));
                           }};
    };
    const auto brightness = [](int asked, int used) {
        return PointEffect{"brightness", {applyBrightness, {asked}}, [=](QRgb p) {
                               const auto channel = [&](int value) { return std::clamp(value + used, 0, 255); };
                               return withAlphaOf(p, channel(qRed(p)), channel(qGreen(p)), channel(qBlue(p)));
                           }};
    };
    const auto contrast = [](int asked, int used) {
        return PointEffect{"contrast", {applyContrast, {asked}}, [=](QRgb p) { return movedAway(p, 128, 256, used); }};
    };
    const auto saturation = [](int asked, int used) {
        return PointEffect{
            "saturation", {applySaturation, {asked}}, [=](QRgb p) { return movedAway(p, luma(p), 512, used); }};
    };
    static const std::vector<PointEffect> effects = {
        blackAndWhite(127, 127),
        blackAndWhite(0, 0),
        blackAndWhite(255, 255),
        blackAndWhite(INT_MIN, 0),
        blackAndWhite(INT_MAX, 255),
        {"greyscale", {applyGreyscale, {}}, [](QRgb p) { return withAlphaOf(p, luma(p), luma(p), luma(p)); }},
        {"sepia", {applySepia, {}}, sepia},
        invert(true, true, true),
        invert(true, false, false),
        invert(false, true, false),
        invert(false, false, true),
        solarise({180, 180, 180}, {180, 180, 180}, true),
        solarise({0, 255, 90}, {0, 255, 90}, true),
        solarise({1, 254, 128}, {1, 254, 128}, true),
        solarise({0, 255, 90}, {0, 255, 90}, false),
        solarise({INT_MIN, INT_MAX, 300}, {0, 255, 255}, true),
        colourise({255, 0, 0}, {255, 0, 0}),
        colourise({127, 127, 127}, {127, 127, 127}),
        colourise({INT_MIN, INT_MAX, 33}, {0, 255, 33}),
        brightness(50, 50),
        brightness(-70, -70),
        brightness(INT_MAX, 255),
        brightness(INT_MIN, -255),
        contrast(50, 50),
        contrast(-33, -33),
        contrast(0, 0),
        contrast(INT_MAX, 100),
        contrast(INT_MIN, -100),
        saturation(50, 50),
        saturation(-33, -33),
        saturation(0, 0),
        saturation(INT_MAX, 100),
        saturation(INT_MIN, -100),
    };
    return effects;
}

QImage mappedSlowly(const QImage &picture, const PointEffect &effect, const Region *region = nullptr) {
    QImage result = picture.copy();
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (region == nullptr || region->contains(x, y)) {
                reinterpret_cast<QRgb *>(result.scanLine(y))[x] = effect.reference(picture.pixel(x, y));
            }
        }
    }
    return result;
}

TEST(Effect, theProcessorsOwnVersionOfTheKernelsIsChosen) {
    const auto supported = hwy::SupportedAndGeneratedTargets();
    ASSERT_GE(supported.size(), 2U) << "only the emulation was compiled";
    EXPECT_STREQ(chosenKernelTarget(), hwy::TargetName(*std::ranges::min_element(supported)));
    std::set<std::string> seen;
    forEachTarget([&] { seen.insert(chosenKernelTarget()); });
    EXPECT_EQ(seen.size(), supported.size()) << "the tests of the kernels would not run every version";
}

TEST(Effect, everyVersionGivesTheReferencesBytesAtAwkwardSizes) {
    const QSize sizes[] = {{1, 1}, {2, 3}, {3, 2}, {5, 5}, {17, 9}, {63, 7}, {1, 5000}, {701, 150}};
    for (const PointEffect &effect : pointEffects()) {
        for (const QSize size : sizes) {
            for (const bool transparent : {false, true}) {
                const QImage picture = photoLike(size.width(), size.height(), transparent);
                const QImage before = picture.copy();
                const QImage expected = mappedSlowly(picture, effect);
                forEachTarget([&] {
                    EffectEngine engine;
                    engine.setPicture(picture);
                    ASSERT_TRUE(engine.apply(effect.operation, false)) << effect.name;
                    ASSERT_EQ(engine.picture().format(), picture.format());
                    ASSERT_EQ(firstDifference(engine.picture(), expected), QPoint(-1, -1))
                        << effect.name << ' ' << size.width() << " x " << size.height() << ' ' << transparent;
                });
                ASSERT_EQ(firstDifference(picture, before), QPoint(-1, -1)) << effect.name << " wrote to its source";
            }
        }
    }
}

/// The tile again and again; its width is a divisor of `width`.
QImage tiled(const QImage &tile, int width, int height) {
    QImage result(width, height, tile.format());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; x += tile.width()) {
            std::memcpy(result.scanLine(y) + 4 * x, tile.constScanLine(y % tile.height()), 4 * size_t(tile.width()));
        }
    }
    return result;
}

TEST(Effect, largePicturesTakeTheWayPastTheCache) {
    const QImage tile = photoLike(61, 83);
    const QImage picture = tiled(tile, 61 * 41, 1001);
    for (const PointEffect &effect : pointEffects()) {
        EffectEngine engine;
        engine.setPicture(picture);
        ASSERT_TRUE(engine.apply(effect.operation, false));
        const QImage expected = tiled(mappedSlowly(tile, effect), picture.width(), picture.height());
        EXPECT_EQ(firstDifference(engine.picture(), expected), QPoint(-1, -1)) << effect.name;
    }
}

TEST(Effect, sepiaIsBrownAndBurnsNothingOut) {
    QRgb before = 0;
    for (int level = 0; level < 256; ++level) {
        const QRgb tone = sepia(qRgb(level, level, level));
        EXPECT_TRUE(qRed(tone) >= qGreen(tone) && qGreen(tone) >= qBlue(tone)) << level;
        EXPECT_TRUE(level == 0 || (qRed(tone) > qRed(before) || qGreen(tone) > qGreen(before))) << level;
        EXPECT_TRUE(level > 253 || qRed(tone) < 255) << level;
        EXPECT_NEAR(luma(tone), level, 14) << level;
        before = tone;
    }
}

TEST(Effect, solariseTearsNothingApart) {
    for (const int threshold : {0, 1, 60, 127, 128, 180, 254, 255}) {
        const int peak = std::max(threshold, 255 - threshold);
        EXPECT_EQ(solarised(threshold, threshold), peak);
        for (int level = 0; level < 256; ++level) {
            EXPECT_EQ(threshold != 0 || solarised(level, 0) == 255 - level, true) << level;
            EXPECT_EQ(threshold != 255 || solarised(level, 255) == level, true) << level;
            const int step = level == 0 ? 0 : solarised(level, threshold) - solarised(level - 1, threshold);
            EXPECT_EQ(step == 0 || (step > 0) == (level <= threshold), true) << level << ' ' << threshold;
            EXPECT_LE(std::abs(step), threshold == 1 || threshold == 254 ? 254 : 5) << level << ' ' << threshold;
        }
    }
}

TEST(Effect, nothingOutsideTheRegionChanges) {
    struct Row {
        bool ellipse;
        int a, b, c, d;
    };
    const Row rows[] = {{false, 10, 5, 60, 40},  {false, 60, 40, 10, 5},   {false, -5, -5, 3, 3},
                        {false, 70, 50, 71, 51}, {false, 9, 9, 9, 30},     {false, INT_MIN, 20, INT_MAX, 21},
                        {true, 10, 5, 60, 40},   {true, -20, -20, 30, 30}, {true, 5, 5, 6, 6}};
    for (const bool transparent : {false, true}) {
        const QImage picture = photoLike(71, 51, transparent);
        for (const PointEffect &effect : pointEffects()) {
            for (const Row &row : rows) {
                EffectEngine engine;
                engine.setPicture(picture);
                EXPECT_TRUE(row.ellipse ? engine.setEllipticalRegion(row.a, row.b, row.c, row.d)
                                        : engine.setRectangularRegion(row.a, row.b, row.c, row.d));
                ASSERT_TRUE(engine.apply(effect.operation, true));
                const auto make = row.ellipse ? &Region::ellipse : &Region::rectangle;
                const Region region = make(71, 51, row.a, row.b, row.c, row.d);
                EXPECT_EQ(firstDifference(engine.picture(), mappedSlowly(picture, effect, &region)), QPoint(-1, -1))
                    << effect.name << ' ' << row.a << ' ' << row.ellipse;
            }
        }
    }
}

TEST(Effect, theRegionCountsOnlyWhenAskedForAndWhileItIsSet) {
    const QImage picture = photoLike(40, 30);
    const PointEffect &invert = pointEffects()[7];
    const QImage whole = mappedSlowly(picture, invert);
    EffectEngine engine;
    engine.setPicture(picture);
    EXPECT_TRUE(engine.apply({applyInvert, {true, true, true}}, true));
    EXPECT_EQ(firstDifference(engine.picture(), whole), QPoint(-1, -1)) << "no region set";
    engine.setRectangularRegion(1, 1, 5, 5);
    engine.setPicture(picture);
    EXPECT_TRUE(engine.apply({applyInvert, {true, true, true}}, false));
    EXPECT_EQ(firstDifference(engine.picture(), whole), QPoint(-1, -1)) << "not asked for";
    engine.clearRegion();
    engine.setPicture(picture);
    EXPECT_TRUE(engine.apply({applyInvert, {true, true, true}}, true));
    EXPECT_EQ(firstDifference(engine.picture(), whole), QPoint(-1, -1)) << "cleared";
}

TEST(Effect, whatCannotBeDoneIsRefusedAndLeavesThePicture) {
    EffectEngine engine;
    for (const PointEffect &effect : pointEffects()) {
        EXPECT_FALSE(engine.apply(effect.operation, false)) << effect.name << " without a picture";
    }
    const QImage picture = photoLike(9, 9);
    engine.setPicture(picture);
    for (const int mode : {-1, 1, INT_MAX}) {
        EXPECT_FALSE(engine.apply({applyGreyscale, {mode}}, false));
    }
    EXPECT_EQ(engine.picture().constBits(), picture.constBits());
    engine.setPicture(QImage(5, 5, QImage::Format_Grayscale8));
    EXPECT_FALSE(engine.apply({applySepia, {}}, false)) << "not a picture format that Lumora uses";
}

} // namespace
} // namespace lumora
