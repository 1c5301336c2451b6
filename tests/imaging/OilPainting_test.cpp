// What a painting must be like, whatever its strokes are: no reference says it pixel by pixel.
#include "imaging/EffectEngine.h"
#include "imaging/Scale.h"
#include "imaging/TargetsForTest.h"
#include "imaging/effects/OilPainting.h"
#include "support/TestPictures.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using test::firstDifference;
using test::forEachTarget;
using test::nowhere;
using test::photoLike;

QImage painted(const QImage &picture, double brush) {
    EffectEngine engine;
    engine.setPicture(picture);
    EXPECT_TRUE(engine.apply({applyOilPainting, {brush}}, false));
    return engine.picture();
}

/// Peak signal-to-noise ratio in decibels.
double likeness(const QImage &a, const QImage &b) {
    double squares = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int i = 0; i < 4 * a.width(); ++i) {
            const int difference = a.constScanLine(y)[i] - b.constScanLine(y)[i];
            squares += difference * difference;
        }
    }
    return 10 * std::log10(255.0 * 255 * 4 * a.width() * a.height() / std::max(squares, 1e-9));
}

TEST(OilPainting, everyProcessorPaintsTheSame) {
    for (const QSize size : {QSize(1, 1), QSize(2, 3), QSize(5, 17), QSize(1, 600), QSize(135, 70)}) {
        for (const bool transparent : {false, true}) {
            const QImage picture = photoLike(size.width(), size.height(), transparent);
            for (const double brush : {.5, 1.0, 6.0, 19.5, 180.0, double(INT_MAX)}) {
                const QImage expected = painted(picture, brush);
                ASSERT_EQ(expected.format(), picture.format());
                forEachTarget([&] {
                    ASSERT_EQ(firstDifference(painted(picture, brush), expected), nowhere)
                        << size.width() << " x " << size.height() << ' ' << brush << ' ' << transparent;
                });
            }
        }
    }
}

TEST(OilPainting, aRegionIsPaintedAsInTheWholePicture) {
    for (const bool transparent : {false, true}) {
        const QImage picture = photoLike(1201, 1037, transparent); // several blocks
        for (const double brush : {2.0, 6.0, 9.0, 21.0, 70.0}) {
            const QImage whole = painted(picture, brush);
            for (const QRect box : {QRect(500, 490, 77, 61), QRect(1, 3, 900, 5), QRect(1190, 1000, 11, 37)}) {
                EffectEngine engine;
                engine.setPicture(picture);
                engine.setRectangularRegion(box.left(), box.top(), box.left() + box.width(), box.top() + box.height());
                ASSERT_TRUE(engine.apply({applyOilPainting, {brush}}, true));
                ASSERT_EQ(firstDifference(engine.picture().copy(box), whole.copy(box)), nowhere)
                    << brush << ' ' << box.left() << ' ' << transparent;
            }
        }
    }
}

TEST(OilPainting, aReducedPictureLooksAsThePaintedOneReduced) {
    const QImage picture = photoLike(1600, 1200);
    for (const double brush : {9.6, 24.0, 48.0, 180.0}) {
        const QImage whole = painted(picture, brush);
        for (const int factor : {2, 4, 8}) {
            EXPECT_GT(likeness(painted(boxReduced(picture, factor), brush / factor), boxReduced(whole, factor)), 28)
                << brush << " / " << factor;
        }
    }
}

TEST(OilPainting, edgesStaySharpAndEvenColoursEven) {
    QImage picture(400, 300, QImage::Format_RGB32);
    for (int y = 0; y < 300; ++y) {
        for (int x = 0; x < 400; ++x) {
            picture.setPixel(x, y, x < 200 ? qRgb(60, 90, 150) : qRgb(210, 180, 120));
        }
    }
    for (const double brush : {3.0, 6.0, 12.0}) {
        const QImage result = painted(picture, brush);
        double sum = 0;
        for (int i = 0; i < 400 * 300; ++i) {
            const QPoint at(i % 400, i / 400);
            const int change = qGreen(result.pixel(at)) - qGreen(picture.pixel(at));
            sum += change;
            ASSERT_TRUE(std::abs(change) < 45 || std::abs(at.x() - 200) < 5) << at.x() << ' ' << at.y(); // bristles
        }
        EXPECT_NEAR(sum / (400 * 300), 0, 1);
    }
    EXPECT_EQ(firstDifference(painted(picture, 0), picture), nowhere);
    EXPECT_EQ(firstDifference(painted(picture, -3), picture), nowhere);
}

TEST(OilPainting, whatCannotBeSeenGivesNoColour) {
    QImage picture(200, 100, QImage::Format_ARGB32);
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 200; ++x) {
            picture.setPixel(x, y, x < 100 ? qRgba(255, 0, 0, 0) : qRgba(0, 90, 200, 255));
        }
    }
    const QImage result = painted(picture, 6);
    for (int x = 0; x < 200; ++x) {
        EXPECT_LT(qRed(result.pixel(x, 50)), 30) << x;
    }
    EXPECT_EQ(qAlpha(result.pixel(10, 50)), 0);
    EXPECT_EQ(qAlpha(result.pixel(190, 50)), 255);
}

} // namespace
} // namespace lumora
