#include "imaging/Scale.h"
#include "imaging/TargetsForTest.h"
#include "support/TestPictures.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using test::firstDifference;
using test::forEachTarget;
using test::photoLike;

/// How much of the length [index * source / target, (index + 1) * source / target) is in pixel p, times target.
std::int64_t overlap(int index, int p, int source, int target) {
    const std::int64_t begin = std::max(std::int64_t(index) * source, std::int64_t(p) * target);
    const std::int64_t end = std::min(std::int64_t(index + 1) * source, std::int64_t(p + 1) * target);
    return std::max<std::int64_t>(0, end - begin);
}

/// The mean of the pixels with the given weights, as every reduction here defines it.
template <typename WeightX, typename WeightY>
QRgb mean(const QImage &picture, QRect from, const WeightX &weightX, const WeightY &weightY) {
    std::array<std::uint64_t, 3> colour{};
    std::uint64_t alpha = 0;
    std::uint64_t area = 0;
    for (int y = from.top(); y <= from.bottom(); ++y) {
        for (int x = from.left(); x <= from.right(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            const std::uint64_t weight = std::uint64_t(weightX(x)) * std::uint64_t(weightY(y));
            const std::uint64_t share = weight * std::uint64_t(qAlpha(pixel));
            area += weight;
            alpha += share;
            colour[0] += share * std::uint64_t(qRed(pixel));
            colour[1] += share * std::uint64_t(qGreen(pixel));
            colour[2] += share * std::uint64_t(qBlue(pixel));
        }
    }
    const auto level = [&](int c) { return alpha == 0 ? 0 : int((colour[c] + alpha / 2) / alpha); };
    return qRgba(level(0), level(1), level(2), int((alpha + area / 2) / area));
}

QImage averagedSlowly(const QImage &picture, int width, int height) {
    QImage result(width, height, picture.format());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int left = int(std::int64_t(x) * picture.width() / width);
            const int top = int(std::int64_t(y) * picture.height() / height);
            const int right = std::min(picture.width() - 1, int(std::int64_t(x + 1) * picture.width() / width));
            const int bottom = std::min(picture.height() - 1, int(std::int64_t(y + 1) * picture.height() / height));
            result.setPixel(x, y,
                            mean(
                                picture, QRect(QPoint(left, top), QPoint(right, bottom)),
                                [&](int p) { return overlap(x, p, picture.width(), width); },
                                [&](int p) { return overlap(y, p, picture.height(), height); }));
        }
    }
    return result;
}

QImage boxedSlowly(const QImage &picture, int factor) {
    QImage result((picture.width() + factor - 1) / factor, (picture.height() + factor - 1) / factor, picture.format());
    const auto one = [](int) { return 1; };
    for (int y = 0; y < result.height(); ++y) {
        for (int x = 0; x < result.width(); ++x) {
            const QRect block = QRect(x * factor, y * factor, factor, factor) & picture.rect();
            result.setPixel(x, y, mean(picture, block, one, one));
        }
    }
    return result;
}

TEST(Scale, averagingWeighsEverySourcePixelWithItsArea) {
    const std::pair<QSize, QSize> sizes[] = {
        {{1, 1}, {1, 1}},    {{63, 41}, {1, 1}},    {{63, 41}, {63, 41}},  {{63, 41}, {62, 1}},
        {{17, 300}, {5, 2}}, {{1, 5000}, {1, 480}}, {{5000, 1}, {480, 1}}, {{1201, 700}, {480, 279}},
        {{3, 2}, {2, 1}},    {{2100, 30}, {7, 29}},
    };
    for (const auto &[from, to] : sizes) {
        for (const bool transparent : {false, true}) {
            SCOPED_TRACE(testing::Message() << from.width() << " x " << from.height() << " to " << to.width()
                                            << " transparent " << transparent);
            const QImage picture = photoLike(from.width(), from.height(), transparent);
            const QImage expected = averagedSlowly(picture, to.width(), to.height());
            forEachTarget([&, to = to] {
                const QImage reduced = scaleByAveraging(picture, to.width(), to.height());
                ASSERT_EQ(reduced.format(), picture.format());
                ASSERT_EQ(firstDifference(reduced, expected), QPoint(-1, -1));
            });
        }
    }
}

TEST(Scale, averagingRefusesOtherSizes) {
    const QImage picture = photoLike(10, 8);
    EXPECT_TRUE(scaleByAveraging(picture, 11, 8).isNull());
    EXPECT_TRUE(scaleByAveraging(picture, 10, 9).isNull());
    EXPECT_TRUE(scaleByAveraging(picture, 0, 4).isNull());
    EXPECT_TRUE(scaleByAveraging(picture, 4, -1).isNull());
    EXPECT_TRUE(scaleByAveraging(QImage(), 1, 1).isNull());
}

TEST(Scale, averagesOfTheBrightestPictureDoNotOverflow) {
    QImage white(3000, 5000, QImage::Format_RGB32);
    white.fill(Qt::white);
    EXPECT_EQ(scaleByAveraging(white, 1, 1).pixel(0, 0), qRgb(255, 255, 255));
    EXPECT_EQ(boxReduced(white, 16).pixel(100, 100), qRgb(255, 255, 255));
}

TEST(Scale, boxesAreMeansAndTheLastOnesAreCutShort) {
    for (const QSize size : {QSize(1, 1), QSize(2, 3), QSize(5, 17), QSize(63, 40), QSize(64, 32), QSize(4500, 33)}) {
        for (const bool transparent : {false, true}) {
            const QImage picture = photoLike(size.width(), size.height(), transparent);
            for (const int factor : {2, 4, 8, 16}) {
                SCOPED_TRACE(testing::Message() << size.width() << " x " << size.height() << " by " << factor
                                                << " transparent " << transparent);
                const QImage expected = boxedSlowly(picture, factor);
                forEachTarget(
                    [&] { ASSERT_EQ(firstDifference(boxReduced(picture, factor), expected), QPoint(-1, -1)); });
            }
        }
    }
    for (const int factor : {-2, 0, 1, 3, 32}) {
        EXPECT_TRUE(boxReduced(photoLike(40, 40), factor).isNull());
    }
}

double keys(double x) {
    x = std::abs(x);
    return x < 1 ? 1.5 * x * x * x - 2.5 * x * x + 1 : x < 2 ? -0.5 * x * x * x + 2.5 * x * x - 4 * x + 2 : 0;
}

/// The four channels of one pixel of the picture scaled by cubic convolution, in doubles; colours times alpha / 255.
std::array<double, 4> convolvedSlowly(const QImage &picture, QSize size, int x, int y) {
    struct Axis {
        Axis(int from, int to, int index)
            : stretch(std::max(1.0, double(from) / to)), centre((index + 0.5) * from / to - 0.5), last(from - 1) {}
        double weight(int p) const { return keys((p - centre) / stretch); }
        int begin() const { return int(std::floor(centre - 2 * stretch)); }
        int end() const { return int(std::ceil(centre + 2 * stretch)) + 1; }
        double stretch, centre;
        int last;
    };
    const Axis across(picture.width(), size.width(), x);
    const Axis down(picture.height(), size.height(), y);
    std::array<double, 4> sum{};
    double total = 0;
    for (int v = down.begin(); v < down.end(); ++v) {
        for (int u = across.begin(); u < across.end(); ++u) {
            const double weight = across.weight(u) * down.weight(v);
            const QRgb pixel = picture.pixel(std::clamp(u, 0, across.last), std::clamp(v, 0, down.last));
            const double share = weight * qAlpha(pixel) / 255;
            total += weight;
            sum[0] += share * qRed(pixel);
            sum[1] += share * qGreen(pixel);
            sum[2] += share * qBlue(pixel);
            sum[3] += weight * qAlpha(pixel);
        }
    }
    sum[3] = std::clamp(sum[3] / total, 0.0, 255.0);
    for (int i = 0; i < 3; ++i) {
        sum[i] = std::clamp(sum[i] / total, 0.0, sum[3]); // no colour is brighter than its alpha
    }
    return sum;
}

TEST(Scale, scalingIsCubicConvolutionWithinOneLevel) {
    const std::pair<QSize, QSize> sizes[] = {
        {{1, 1}, {7, 5}},    {{2, 1}, {3, 300}},  {{17, 3}, {40, 21}},  {{17, 30}, {16, 29}}, {{63, 41}, {33, 22}},
        {{40, 3}, {40, 11}}, {{3, 40}, {11, 40}}, {{60, 40}, {50, 33}}, {{5, 5}, {5, 1000}},  {{200, 2}, {120, 200}},
    };
    for (const auto &[from, to] : sizes) {
        for (const bool transparent : {false, true}) {
            const QImage picture = photoLike(from.width(), from.height(), transparent);
            const QImage before = picture.copy();
            QImage first;
            forEachTarget([&, &to = to] {
                const QImage result = scaled(picture, to.width(), to.height());
                ASSERT_EQ(result.size(), to);
                ASSERT_EQ(result.format(), picture.format());
                first = first.isNull() ? result : first;
                ASSERT_EQ(firstDifference(result, first), QPoint(-1, -1)) << "processors differ";
            });
            ASSERT_EQ(firstDifference(picture, before), QPoint(-1, -1)) << "wrote to its source";
            for (int y = 0; y < to.height(); ++y) {
                for (int x = 0; x < to.width(); ++x) {
                    const std::array<double, 4> expected = convolvedSlowly(picture, to, x, y);
                    const QRgb pixel = first.pixel(x, y);
                    const double alpha = qAlpha(pixel) / 255.0;
                    // Compared as they show: a faint pixel's colour has few levels.
                    ASSERT_NEAR(qRed(pixel) * alpha, expected[0], 1.6) << x << ' ' << y;
                    ASSERT_NEAR(qGreen(pixel) * alpha, expected[1], 1.6) << x << ' ' << y;
                    ASSERT_NEAR(qBlue(pixel) * alpha, expected[2], 1.6) << x << ' ' << y;
                    ASSERT_NEAR(qAlpha(pixel), expected[3], 1.0) << x << ' ' << y;
                }
            }
        }
    }
}

TEST(Scale, scalingToHalfOrLessAverages) {
    const QImage picture = photoLike(90, 60, true);
    for (const QSize size : {QSize(45, 30), QSize(7, 11), QSize(1, 1)}) {
        EXPECT_EQ(firstDifference(scaled(picture, size.width(), size.height()),
                                  averagedSlowly(picture, size.width(), size.height())),
                  QPoint(-1, -1));
    }
    const QImage mixed = scaled(picture, 30, 100); // narrower by averaging, then taller
    EXPECT_EQ(firstDifference(mixed, scaled(averagedSlowly(picture, 30, 60), 30, 100)), QPoint(-1, -1));
}

TEST(Scale, scalingKeepsOneColourAndItsOwnSize) {
    for (const QRgb colour : {qRgb(255, 255, 255), qRgb(0, 0, 0), qRgb(201, 17, 90)}) {
        QImage picture(37, 23, QImage::Format_RGB32);
        picture.fill(colour);
        for (const QSize size : {QSize(640, 480), QSize(33, 20), QSize(5, 300)}) {
            QImage expected(size, QImage::Format_RGB32);
            expected.fill(colour);
            EXPECT_EQ(firstDifference(scaled(picture, size.width(), size.height()), expected), QPoint(-1, -1));
        }
    }
    const QImage picture = photoLike(10, 8);
    EXPECT_EQ(scaled(picture, 10, 8).constBits(), picture.constBits());
    for (const QSize size : {QSize(0, 4), QSize(4, -1), QSize(100'000, 100'000)}) {
        EXPECT_TRUE(scaled(picture, size.width(), size.height()).isNull());
    }
    EXPECT_TRUE(scaled(QImage(), 5, 5).isNull());
}

} // namespace
} // namespace lumora
