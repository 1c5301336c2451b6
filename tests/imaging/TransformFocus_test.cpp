#include "imaging/Picture.h"
#include "imaging/TargetsForTest.h"
#include "imaging/effects/ColourFocus.h"
#include "support/TestPictures.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using test::firstDifference;
using test::forEachTarget;
using test::photoLike;

QImage focused(const QImage &picture, const ColourFocus &parameters) {
    QImage result = picture.copy();
    applyColourFocus(parameters, readView(picture), writeView(result), wholeOf(readView(picture)));
    return result;
}

int lumaOf(QRgb pixel) {
    return (3736 * qBlue(pixel) + 19235 * qGreen(pixel) + 9797 * qRed(pixel) + 16384) / 32768;
}

/// Degrees between the hues of two colours; what has none is farthest from everything.
double hueDistance(QRgb a, QRgb b) {
    const double ax = qBlue(a) - lumaOf(a);
    const double ay = qRed(a) - lumaOf(a);
    const double bx = qBlue(b) - lumaOf(b);
    const double by = qRed(b) - lumaOf(b);
    const double lengths = std::hypot(ax, ay) * std::hypot(bx, by);
    return lengths == 0 ? 90 : std::acos(std::clamp((ax * bx + ay * by) / lengths, -1.0, 1.0)) * 180 / M_PI;
}

double keptShare(double distance, double tolerance) {
    const auto cosine = [](double degrees) { return std::cos(std::min(degrees, 180.0) * M_PI / 180); };
    const double outer = cosine(tolerance + 20);
    return std::clamp((cosine(distance) - outer) / (cosine(tolerance) - outer), 0.0, 1.0);
}

TEST(TransformFocus, coloursFadeWithTheirDistanceInHue) {
    for (const QSize size : {QSize(1, 1), QSize(17, 3), QSize(1, 700), QSize(211, 90)}) {
        for (const bool transparent : {false, true}) {
            QImage picture = photoLike(size.width(), size.height(), transparent);
            for (int x = 0; x < size.width(); ++x) { // every hue
                const QColor colour = QColor::fromHsv(x * 359 / size.width(), 255 - x % 3 * 100, 230);
                picture.setPixel(x, size.height() / 2, colour.rgba());
            }
            for (const ColourFocus &focus : {ColourFocus{220, 40, 30, 30}, ColourFocus{10, 90, 200, 0},
                                             ColourFocus{60, 200, 20, 179}, ColourFocus{200, 190, 20, 75}}) {
                const QRgb chosen = qRgb(focus.red, focus.green, focus.blue);
                QImage first;
                forEachTarget([&] {
                    const QImage result = focused(picture, focus);
                    first = first.isNull() ? result : first;
                    ASSERT_EQ(firstDifference(result, first), QPoint(-1, -1)) << "processors differ";
                });
                for (int y = 0; y < size.height(); ++y) {
                    for (int x = 0; x < size.width(); ++x) {
                        const QRgb before = picture.pixel(x, y);
                        const QRgb after = first.pixel(x, y);
                        const double share = keptShare(hueDistance(before, chosen), focus.tolerance);
                        const auto expected = [&](int level) {
                            return lumaOf(before) + (level - lumaOf(before)) * share;
                        };
                        ASSERT_NEAR(qRed(after), expected(qRed(before)), 1.1) << x << ' ' << y;
                        ASSERT_NEAR(qGreen(after), expected(qGreen(before)), 1.1) << x << ' ' << y;
                        ASSERT_NEAR(qBlue(after), expected(qBlue(before)), 1.1) << x << ' ' << y;
                        ASSERT_EQ(qAlpha(after), qAlpha(before));
                    }
                }
            }
        }
    }
}

TEST(TransformFocus, extremes) {
    const QImage picture = photoLike(90, 40, true);
    EXPECT_EQ(firstDifference(focused(picture, {1, 2, 3, 180}), picture), QPoint(-1, -1));
    EXPECT_EQ(firstDifference(focused(picture, {1, 2, 3, INT_MAX}), picture), QPoint(-1, -1));
    const QImage grey = focused(picture, {70, 70, 70, 40});
    for (int x = 0; x < 90; ++x) {
        EXPECT_EQ(qRed(grey.pixel(x, 20)), lumaOf(picture.pixel(x, 20)));
        EXPECT_EQ(qBlue(grey.pixel(x, 20)), lumaOf(picture.pixel(x, 20)));
    }
    EXPECT_EQ(firstDifference(focused(picture, {INT_MAX, INT_MIN, -5, INT_MIN}), focused(picture, {255, 0, 0, 0})),
              QPoint(-1, -1));
}

} // namespace
} // namespace lumora
