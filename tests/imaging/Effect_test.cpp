#include "imaging/EffectEngine.h"
#include "imaging/Picture.h"
#include "imaging/Region.h"
#include "imaging/TargetsForTest.h"
#include "support/TestPictures.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace lumora {
namespace {

using test::firstDifference;
using test::forEachTarget;
using test::photoLike;

// The operations as anybody would write them down, one pixel at a time.

int luma(QRgb pixel) {
    return (3736 * qBlue(pixel) + 19235 * qGreen(pixel) + 9797 * qRed(pixel) + 16384) / 32768;
}

QRgb withAlphaOf(QRgb pixel, int red, int green, int blue) {
    return qRgba(red, green, blue, qAlpha(pixel));
}

QRgb sepia(QRgb pixel) {
    const auto row = [&](double red, double green, double blue) {
        const auto weight = [](double share) { return int(share * 32768 + 0.5); };
        return std::min(
            255,
            (weight(red) * qRed(pixel) + weight(green) * qGreen(pixel) + weight(blue) * qBlue(pixel) + 16384) / 32768);
    };
    return withAlphaOf(pixel, row(0.393, 0.769, 0.189), row(0.349, 0.686, 0.168), row(0.272, 0.534, 0.131));
}

struct PointEffect {
    const char *name;
    std::function<bool(EffectEngine &, bool limitToRegion)> run;
    std::function<QRgb(QRgb)> reference;
};

const std::vector<PointEffect> &pointEffects() {
    const auto blackAndWhite = [](int asked, int used) {
        return PointEffect{"blackAndWhite", [asked](EffectEngine &e, bool r) { return e.blackAndWhite(asked, r); },
                           [used](QRgb p) {
                               const int level = luma(p) > used ? 255 : 0;
                               return withAlphaOf(p, level, level, level);
                           }};
    };
    const auto invert = [](bool red, bool green, bool blue) {
        return PointEffect{"invert", [=](EffectEngine &e, bool r) { return e.invert(red, green, blue, r); },
                           [=](QRgb p) {
                               return withAlphaOf(p, red ? 255 - qRed(p) : qRed(p), green ? 255 - qGreen(p) : qGreen(p),
                                                  blue ? 255 - qBlue(p) : qBlue(p));
                           }};
    };
    const auto solarise = [](std::array<int, 3> asked, std::array<int, 3> used, bool above) {
        return PointEffect{"solarise",
                           [=](EffectEngine &e, bool r) { return e.solarise(asked[0], asked[1], asked[2], above, r); },
                           [=](QRgb p) {
                               const auto channel = [&](int value, int threshold) {
                                   return (value > threshold) == above ? 255 - value : value;
                               };
                               return withAlphaOf(p, channel(qRed(p), used[0]), channel(qGreen(p), used[1]),
                                                  channel(qBlue(p), used[2]));
                           }};
    };
    const auto colourise = [](std::array<int, 3> asked, std::array<int, 3> used) {
        return PointEffect{"colourise",
                           [=](EffectEngine &e, bool r) { return e.colourise(asked[0], asked[1], asked[2], r); },
                           [=](QRgb p) {
                               const double toColour = std::min(2 * luma(p), 255) / 255.0;
                               const double toWhite = std::max(2 * luma(p) - 255, 0) / 255.0;
                               const auto channel = [&](int colour) {
                                   return int(colour * toColour + (255 - colour) * toWhite + 0.5);
                               };
                               return withAlphaOf(p, channel(used[0]), channel(used[1]), channel(used[2]));
                           }};
    };
    static const std::vector<PointEffect> effects = {
        blackAndWhite(127, 127),
        blackAndWhite(0, 0),
        blackAndWhite(255, 255),
        blackAndWhite(INT_MIN, 0),
        blackAndWhite(INT_MAX, 255),
        {"greyscale", [](EffectEngine &e, bool r) { return e.greyscale(0, r); },
         [](QRgb p) { return withAlphaOf(p, luma(p), luma(p), luma(p)); }},
        {"sepia", [](EffectEngine &e, bool r) { return e.sepia(r); }, sepia},
        invert(true, true, true),
        invert(true, false, false),
        invert(false, true, false),
        invert(false, false, true),
        solarise({180, 180, 180}, {180, 180, 180}, true),
        solarise({0, 255, 90}, {0, 255, 90}, true),
        solarise({0, 255, 90}, {0, 255, 90}, false),
        solarise({INT_MIN, INT_MAX, 300}, {0, 255, 255}, true),
        colourise({255, 0, 0}, {255, 0, 0}),
        colourise({127, 127, 127}, {127, 127, 127}),
        colourise({INT_MIN, INT_MAX, 33}, {0, 255, 33}),
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
                    ASSERT_TRUE(effect.run(engine, false)) << effect.name;
                    ASSERT_EQ(engine.picture().format(), picture.format());
                    ASSERT_EQ(firstDifference(engine.picture(), expected), QPoint(-1, -1))
                        << effect.name << ' ' << size.width() << " x " << size.height() << ' ' << transparent;
                });
                ASSERT_EQ(firstDifference(picture, before), QPoint(-1, -1)) << effect.name << " wrote to its source";
            }
        }
    }
}

TEST(Effect, largePicturesTakeTheWayPastTheCache) {
    const QImage picture = photoLike(2501, 1001);
    for (const PointEffect &effect : pointEffects()) {
        EffectEngine engine;
        engine.setPicture(picture);
        ASSERT_TRUE(effect.run(engine, false));
        EXPECT_EQ(firstDifference(engine.picture(), mappedSlowly(picture, effect)), QPoint(-1, -1)) << effect.name;
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
                ASSERT_TRUE(effect.run(engine, true));
                const auto make = row.ellipse ? &Region::ellipse : &Region::rectangle;
                const Region region = make(71, 51, row.a, row.b, row.c, row.d);
                EXPECT_EQ(firstDifference(engine.picture(), mappedSlowly(picture, effect, &region)), QPoint(-1, -1))
                    << effect.name << ' ' << row.a << ' ' << row.ellipse;
            }
        }
    }
}

// Operations that look at neighbours.

QImage mosaicSlowly(const QImage &picture, int tileWidth, int tileHeight) {
    QImage result = picture.copy();
    for (int top = 0; top < picture.height(); top += tileHeight) {
        for (int left = 0; left < picture.width(); left += tileWidth) {
            const QRect tile = QRect(left, top, tileWidth, tileHeight) & picture.rect();
            std::array<std::int64_t, 4> sum{};
            for (int i = 0; i < tile.width() * tile.height(); ++i) {
                const QRgb p = picture.pixel(left + i % tile.width(), top + i / tile.width());
                sum[0] += qRed(p) * qAlpha(p);
                sum[1] += qGreen(p) * qAlpha(p);
                sum[2] += qBlue(p) * qAlpha(p);
                sum[3] += qAlpha(p);
            }
            const auto level = [&](int c) { return sum[3] == 0 ? 0 : int((sum[c] + sum[3] / 2) / sum[3]); };
            const std::int64_t count = tile.width() * tile.height();
            const QRgb mean = qRgba(level(0), level(1), level(2), int((sum[3] + count / 2) / count));
            for (int i = 0; i < count; ++i) {
                reinterpret_cast<QRgb *>(result.scanLine(top + int(i / tile.width())))[left + i % tile.width()] = mean;
            }
        }
    }
    return result;
}

/// Three means along a line of bytes, its ends going on for ever, rounded once.
std::vector<int> blurredLine(const std::vector<int> &line, int radius) {
    std::vector<double> kernel = {1};
    for (int pass = 0; pass < 3; ++pass) {
        std::vector<double> wider(kernel.size() + 2 * std::size_t(radius), 0);
        for (std::size_t i = 0; i < kernel.size(); ++i) {
            for (int k = 0; k <= 2 * radius; ++k) {
                wider[i + std::size_t(k)] += kernel[i];
            }
        }
        kernel = wider;
    }
    const float scale = 1.0F / float((2 * radius + 1) * (2 * radius + 1) * (2 * radius + 1));
    std::vector<int> result;
    for (int x = 0; x < int(line.size()); ++x) {
        double sum = 0;
        for (int k = -3 * radius; k <= 3 * radius; ++k) {
            sum += kernel[std::size_t(k + 3 * radius)] * line[std::size_t(std::clamp(x + k, 0, int(line.size()) - 1))];
        }
        result.push_back(int(std::nearbyintf(float(sum) * scale)));
    }
    return result;
}

QImage blurredSlowly(const QImage &picture, int radius) {
    const bool opaque = picture.format() == QImage::Format_RGB32;
    QImage result = picture.copy();
    const auto byte = [&](int x, int y, int c) -> uchar & { return result.scanLine(y)[4 * x + c]; };
    const auto everyPixel = [&](const auto &change) {
        for (int y = 0; y < result.height() && !opaque; ++y) {
            for (int x = 0; x < result.width(); ++x) {
                for (int c = 0; c < 3; ++c) {
                    byte(x, y, c) = uchar(change(byte(x, y, c), byte(x, y, 3)));
                }
            }
        }
    };
    const auto blurLines = [&](int lines, int length, const auto &at) {
        for (int i = 0; i < lines * 4; ++i) {
            std::vector<int> line;
            for (int n = 0; n < length; ++n) {
                line.push_back(at(i / 4, n, i % 4));
            }
            line = blurredLine(line, radius);
            for (int n = 0; n < length; ++n) {
                at(i / 4, n, i % 4) = uchar(line[std::size_t(n)]);
            }
        }
    };
    everyPixel([](int level, int alpha) { return (level * alpha + 127) / 255; });
    blurLines(result.height(), result.width(), [&](int y, int x, int c) -> uchar & { return byte(x, y, c); });
    blurLines(result.width(), result.height(), byte);
    everyPixel([](int level, int alpha) { return alpha == 0 ? 0 : std::min(255, (level * 255 + alpha / 2) / alpha); });
    return result;
}

struct AreaEffect {
    const char *name;
    std::function<bool(EffectEngine &, bool limitToRegion)> run;
    std::function<QImage(const QImage &)> reference;
};

const std::vector<AreaEffect> &areaEffects() {
    const auto mosaic = [](int width, int height) {
        return AreaEffect{"mosaic", [=](EffectEngine &e, bool r) { return e.mosaic(width, height, r); },
                          [=](const QImage &p) {
                              return mosaicSlowly(p, std::clamp(width, 1, p.width()),
                                                  std::clamp(height, 1, p.height()));
                          }};
    };
    const auto blur = [](int asked, int used) {
        return AreaEffect{"blur", [=](EffectEngine &e, bool r) { return e.blur(asked, r); },
                          [=](const QImage &p) { return blurredSlowly(p, used); }};
    };
    static const std::vector<AreaEffect> effects = {
        mosaic(10, 10), mosaic(1, 1), mosaic(3, 50), mosaic(INT_MAX, 2), mosaic(INT_MIN, 0),
        blur(0, 0),     blur(1, 1),   blur(6, 6),    blur(INT_MAX, 100), blur(INT_MIN, 0),
    };
    return effects;
}

TEST(Effect, neighboursCountAsInTheReferenceInEveryVersion) {
    const QSize sizes[] = {{1, 1}, {2, 3}, {3, 2}, {5, 17}, {63, 7}, {1, 600}, {135, 70}};
    for (const AreaEffect &effect : areaEffects()) {
        for (const QSize size : sizes) {
            for (const bool transparent : {false, true}) {
                const QImage picture = photoLike(size.width(), size.height(), transparent);
                const QImage before = picture.copy();
                const QImage expected = effect.reference(picture);
                forEachTarget([&] {
                    EffectEngine engine;
                    engine.setPicture(picture);
                    ASSERT_TRUE(effect.run(engine, false)) << effect.name;
                    ASSERT_EQ(engine.picture().format(), picture.format());
                    ASSERT_EQ(firstDifference(engine.picture(), expected), QPoint(-1, -1))
                        << effect.name << ' ' << size.width() << " x " << size.height() << ' ' << transparent;
                });
                ASSERT_EQ(firstDifference(picture, before), QPoint(-1, -1)) << effect.name << " wrote to its source";
            }
        }
    }
}

TEST(Effect, neighboursOutsideTheRegionCountButDoNotChange) {
    for (const bool transparent : {false, true}) {
        const QImage picture = photoLike(141, 90, transparent);
        for (const AreaEffect &effect : areaEffects()) {
            const QImage whole = effect.reference(picture);
            for (const bool ellipse : {false, true}) {
                for (const QRect box : {QRect(60, 30, 33, 21), QRect(-9, -9, 40, 300), QRect(139, 0, 1, 90)}) {
                    EffectEngine engine;
                    engine.setPicture(picture);
                    const auto make = ellipse ? &Region::ellipse : &Region::rectangle;
                    const int right = box.left() + box.width();
                    const int bottom = box.top() + box.height();
                    (engine.*(ellipse ? &EffectEngine::setEllipticalRegion : &EffectEngine::setRectangularRegion))(
                        box.left(), box.top(), right, bottom);
                    ASSERT_TRUE(effect.run(engine, true));
                    const Region region = make(141, 90, box.left(), box.top(), right, bottom);
                    QImage expected = picture.copy();
                    for (int i = 0; i < 141 * 90; ++i) {
                        if (region.contains(i % 141, i / 141)) {
                            reinterpret_cast<QRgb *>(expected.scanLine(i / 141))[i % 141] =
                                whole.pixel(i % 141, i / 141);
                        }
                    }
                    ASSERT_EQ(firstDifference(engine.picture(), expected), QPoint(-1, -1)) << effect.name << ellipse;
                }
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
    EXPECT_TRUE(engine.invert(true, true, true, true));
    EXPECT_EQ(firstDifference(engine.picture(), whole), QPoint(-1, -1)) << "no region set";
    engine.setRectangularRegion(1, 1, 5, 5);
    engine.setPicture(picture);
    EXPECT_TRUE(engine.invert(true, true, true, false));
    EXPECT_EQ(firstDifference(engine.picture(), whole), QPoint(-1, -1)) << "not asked for";
    engine.clearRegion();
    engine.setPicture(picture);
    EXPECT_TRUE(engine.invert(true, true, true, true));
    EXPECT_EQ(firstDifference(engine.picture(), whole), QPoint(-1, -1)) << "cleared";
}

TEST(Effect, whatCannotBeDoneIsRefusedAndLeavesThePicture) {
    EffectEngine engine;
    for (const PointEffect &effect : pointEffects()) {
        EXPECT_FALSE(effect.run(engine, false)) << effect.name << " without a picture";
    }
    for (const AreaEffect &effect : areaEffects()) {
        EXPECT_FALSE(effect.run(engine, false)) << effect.name << " without a picture";
    }
    const QImage picture = photoLike(9, 9);
    engine.setPicture(picture);
    for (const int mode : {-1, 1, INT_MAX}) {
        EXPECT_FALSE(engine.greyscale(mode, false));
    }
    EXPECT_EQ(engine.picture().constBits(), picture.constBits());
    engine.setPicture(QImage(5, 5, QImage::Format_Grayscale8));
    EXPECT_FALSE(engine.sepia(false)) << "not a picture of this house";
}

} // namespace
} // namespace lumora
