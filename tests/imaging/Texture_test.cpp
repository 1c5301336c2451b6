// What the canvas must be like: no reference says it pixel by pixel.
#include "imaging/EffectEngine.h"
#include "imaging/Scale.h"
#include "imaging/TargetsForTest.h"
#include "imaging/effects/Texture.h"
#include "support/TestPictures.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace lumora {
namespace {

using test::firstDifference;
using test::forEachTarget;
using test::nowhere;
using test::photoLike;

QImage onCanvas(const QImage &picture, Texture texture) {
    EffectEngine engine;
    engine.setPicture(picture);
    EXPECT_TRUE(engine.apply({applyTexture, texture}, false));
    return engine.picture();
}

QImage grey(int width, int height) {
    QImage picture(width, height, QImage::Format_RGB32);
    picture.fill(qRgb(128, 128, 128));
    return picture;
}

/// The mean square of the difference in green of two equally large parts of a picture.
double difference(const QImage &picture, const QRect &part, QPoint shift) {
    std::int64_t squares = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const uchar *from = picture.constScanLine(y) + 1;
        const uchar *moved = picture.constScanLine(y + shift.y()) + std::ptrdiff_t(4) * shift.x() + 1;
        for (int x = part.left(); x <= part.right(); ++x) {
            const int d = from[4 * x] - moved[4 * x];
            squares += d * d;
        }
    }
    return double(squares) / (part.width() * part.height());
}

TEST(Texture, everyProcessorWeavesTheSameAndRegionsAsTheWhole) {
    for (const QSize size : {QSize(1, 1), QSize(2, 3), QSize(63, 7), QSize(1, 600), QSize(1201, 137)}) {
        for (const bool transparent : {false, true}) {
            const QImage picture = photoLike(size.width(), size.height(), transparent);
            for (const Texture texture : {Texture{1, 0}, Texture{4.3, 50}, Texture{.25, INT_MIN}, Texture{1e9, 0}}) {
                const QImage whole = onCanvas(picture, texture);
                forEachTarget([&] { ASSERT_EQ(firstDifference(onCanvas(picture, texture), whole), nowhere); });
                const QRect box = QRect(size.width() / 3, size.height() / 2, 500, 40) & picture.rect();
                EffectEngine engine;
                engine.setPicture(picture);
                engine.setRectangularRegion(box.left(), box.top(), box.right() + 1, box.bottom() + 1);
                ASSERT_TRUE(engine.apply({applyTexture, texture}, true));
                ASSERT_EQ(firstDifference(engine.picture().copy(box), whole.copy(box)), nowhere);
            }
        }
    }
}

TEST(Texture, theFadeGoesFromAllToNothing) {
    const QImage picture = photoLike(300, 200);
    double before = std::numeric_limits<double>::max();
    for (const int fade : {0, 25, 50, 75, 100}) {
        QImage both(300, 400, QImage::Format_RGB32); // the canvas above the picture
        const QImage canvas = onCanvas(picture, {1, fade});
        for (int i = 0; i < 300 * 200; ++i) {
            both.setPixel(i % 300, i / 300, canvas.pixel(i % 300, i / 300));
            both.setPixel(i % 300, 200 + i / 300, picture.pixel(i % 300, i / 300));
        }
        const double change = difference(both, {0, 0, 300, 200}, {0, 200});
        EXPECT_LT(change, before) << fade;
        before = change;
    }
    EXPECT_EQ(before, 0);
    EXPECT_EQ(firstDifference(onCanvas(picture, {1, INT_MAX}), picture), nowhere);
    EXPECT_EQ(firstDifference(onCanvas(picture, {-1, 0}), picture), nowhere) << "too fine to be seen";
}

TEST(Texture, aReducedPictureLooksAsTheCanvasReduced) {
    const QImage picture = photoLike(1600, 1200);
    for (const double unit : {1.6, 4.0, 6.0}) {
        const QImage canvas = onCanvas(picture, {unit, 0});
        for (const int factor : {2, 4, 8}) {
            const QImage expected = boxReduced(canvas, factor);
            const QImage result = onCanvas(boxReduced(picture, factor), {unit / factor, 0});
            double squares = 0;
            for (int i = 0; i < expected.width() * expected.height(); ++i) {
                const QPoint at(i % expected.width(), i / expected.width());
                squares += std::pow(qGreen(expected.pixel(at)) - qGreen(result.pixel(at)), 2);
            }
            EXPECT_LT(squares / (expected.width() * expected.height()), 50) << unit << " / " << factor; // 31 dB
        }
    }
}

TEST(Texture, theWeaveNeitherRepeatsNorDarkens) {
    const QImage canvas = onCanvas(grey(2600, 300), {4, 0});
    double sum = 0;
    for (int i = 0; i < 2600 * 300; ++i) {
        sum += qGreen(canvas.pixel(i % 2600, i / 2600));
    }
    EXPECT_NEAR(sum / (2600 * 300), 128, 4);
    // What repeats differs by nothing from itself, moved; what is unlike itself by twice its variance.
    const QRect part(40, 40, 300, 90);
    double variance = 0;
    for (const int lag : {101, 203, 307}) {
        variance += difference(canvas, part, {lag, 0}) / 6;
    }
    EXPECT_GT(std::sqrt(variance), 10) << "can be seen";
    EXPECT_LT(std::sqrt(variance), 40) << "lets the photo through";
    for (int lag = 60; lag < 2100; ++lag) {
        ASSERT_GT(difference(canvas, part, {lag, 0}), variance / 5) << lag;
    }
}

} // namespace
} // namespace lumora
