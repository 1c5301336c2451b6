#include "imaging/Scale.h"
#include "imaging/TargetsForTest.h"
#include "support/TestPictures.h"

#include <array>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using test::firstDifference;
using test::forEachTarget;
using test::photoLike;

/// How much of the length [index * source / target, (index + 1) * source / target) lies in pixel p, times target.
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
    forEachTarget([&] {
        for (const auto &[from, to] : sizes) {
            for (const bool transparent : {false, true}) {
                const QImage picture = photoLike(from.width(), from.height(), transparent);
                const QImage reduced = scaleByAveraging(picture, to.width(), to.height());
                ASSERT_EQ(reduced.format(), picture.format());
                ASSERT_EQ(firstDifference(reduced, averagedSlowly(picture, to.width(), to.height())), QPoint(-1, -1))
                    << from.width() << " x " << from.height() << " to " << to.width() << " transparent " << transparent;
            }
        }
    });
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
    forEachTarget([] {
        for (const QSize size :
             {QSize(1, 1), QSize(2, 3), QSize(5, 17), QSize(63, 40), QSize(64, 32), QSize(4500, 33)}) {
            for (const bool transparent : {false, true}) {
                const QImage picture = photoLike(size.width(), size.height(), transparent);
                for (const int factor : {2, 4, 8, 16}) {
                    ASSERT_EQ(firstDifference(boxReduced(picture, factor), boxedSlowly(picture, factor)),
                              QPoint(-1, -1))
                        << size.width() << " x " << size.height() << " by " << factor << " transparent " << transparent;
                }
            }
        }
    });
    for (const int factor : {-2, 0, 1, 3, 32}) {
        EXPECT_TRUE(boxReduced(photoLike(40, 40), factor).isNull());
    }
}

} // namespace
} // namespace lumora
