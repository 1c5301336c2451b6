// The print of one photo in two colours, and the row of four.
#include "imaging/EffectReference.h"
#include "imaging/Picture.h"
#include "imaging/Scale.h"
#include "imaging/TargetsForTest.h"
#include "imaging/transforms/PopArtRow.h"
#include "support/TestPictures.h"

#include <climits>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using test::firstDifference;
using test::forEachTarget;
using test::photoLike;

const PopArtPairs pairs{{{0x102030, 0xF0E0D0}, {0xFF0000, 0x00FF00}, {0xFFFFFF, 0x000000}, {0x7F7F80, 0x7F8180}}};

QImage printed(const QImage &picture, const PopArt &print) {
    QImage result = picture.copy();
    applyPopArt(print, readView(picture), writeView(result), wholeOf(readView(picture)));
    return result;
}

int lightness(QRgb pixel) {
    return (3277 * qBlue(pixel) + 13107 * qGreen(pixel) + 16384 * qRed(pixel) + 16384) / 32768;
}

QRgb reference(QRgb pixel, const PopArt &print) {
    const auto share = [&](int level) { return std::clamp(20 * (lightness(pixel) - level) + 128, 0, 255); };
    const int light = share(print.levels.light);
    const int highlight = share(print.levels.highlight);
    const auto channel = [&](int (*of)(QRgb)) {
        const int colour = of(print.colours.light);
        const int tint = (colour + 256) / 2;
        const int sum = of(print.colours.dark) * (255 - light) + colour * (light - highlight) + tint * highlight;
        return (2 * sum + 255) / 510;
    };
    return test::withAlphaOf(pixel, channel(qRed), channel(qGreen), channel(qBlue));
}

TEST(PopArt, threeTonesOnEveryProcessor) {
    for (const QSize size : {QSize(1, 1), QSize(17, 3), QSize(1, 300), QSize(211, 90)}) {
        QImage picture = photoLike(size.width(), size.height(), true);
        for (int x = 0; x < size.width(); ++x) { // every level
            const int level = x * 255 / size.width();
            picture.setPixel(x, size.height() / 2, qRgba(level, level, level, 255 - level));
        }
        for (const PopArtColours &colours : pairs) {
            for (const PopArtLevels levels : {PopArtLevels{85, 170}, PopArtLevels{0, 255}, PopArtLevels{120, 120}}) {
                forEachTarget([&] {
                    const QImage result = printed(picture, {colours, levels});
                    for (int y = 0; y < size.height(); ++y) {
                        for (int x = 0; x < size.width(); ++x) {
                            ASSERT_EQ(result.pixel(x, y), reference(picture.pixel(x, y), {colours, levels}))
                                << x << ' ' << y;
                        }
                    }
                });
            }
        }
    }
    const QImage picture = photoLike(90, 40);
    EXPECT_EQ(firstDifference(printed(picture, {pairs[0], {INT_MIN, INT_MAX}}), printed(picture, {pairs[0], {0, 255}})),
              QPoint(-1, -1));
    EXPECT_EQ(firstDifference(printed(picture, {pairs[0], {90, 10}}), printed(picture, {pairs[0], {90, 90}})),
              QPoint(-1, -1));
}

TEST(PopArt, levelsPartWhatIsDarkFromWhatIsLight) {
    // Three tones, each spread a little; how much of the picture each takes differs.
    QImage picture(100, 60, QImage::Format_ARGB32);
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 100; ++x) {
            const int tone = (x < 15 ? 30 : x < 70 ? 80 : 140) + y % 11;
            picture.setPixel(x, y, qRgba(tone, tone, tone, 255));
        }
    }
    const PopArtLevels levels = popArtLevels(readView(picture));
    EXPECT_GT(levels.light, 40);
    EXPECT_LE(levels.light, 80);
    EXPECT_GT(levels.highlight, 90);
    EXPECT_LE(levels.highlight, 140);

    QImage framed(300, 60, QImage::Format_ARGB32); // what cannot be seen does not count
    framed.fill(qRgba(255, 255, 255, 0));
    for (int y = 0; y < 60; ++y) {
        std::copy_n(reinterpret_cast<const QRgb *>(picture.constScanLine(y)), 100,
                    reinterpret_cast<QRgb *>(framed.scanLine(y)));
    }
    EXPECT_EQ(popArtLevels(readView(framed)), levels);

    for (const QRgb colour : {qRgb(0, 0, 0), qRgb(255, 255, 255), qRgb(120, 130, 5), qRgba(9, 9, 9, 0)}) {
        picture.fill(colour);
        EXPECT_EQ(popArtLevels(readView(picture)), PopArtLevels()) << std::hex << colour;
    }
}

TEST(PopArt, theRowIsFourPrintsOfTheSmallPhoto) {
    for (const QSize size : {QSize(1, 1), QSize(2, 1), QSize(63, 41), QSize(200, 130)}) {
        for (const bool transparent : {false, true}) {
            const QImage photo = photoLike(size.width(), size.height(), transparent);
            const QImage small = boxReduced(photo, 2);
            const PopArtLevels levels = popArtLevels(readView(small));
            const QImage row = popArtRow(photo, pairs);
            ASSERT_EQ(row.size(), QSize(4 * small.width(), small.height()));
            for (int i = 0; i < 4; ++i) {
                const QImage print = row.copy(i * small.width(), 0, small.width(), small.height());
                EXPECT_EQ(firstDifference(print, printed(small, {pairs.at(std::size_t(i)), levels})), QPoint(-1, -1))
                    << size.width() << " x " << size.height() << ", print " << i;
            }
        }
    }
    EXPECT_TRUE(popArtRow(QImage(), pairs).isNull());
}

TEST(PopArt, aLargePhotoGetsTheShapesOfASmallOne) {
    const QImage photo = photoLike(480, 320);
    const QImage small = popArtRow(photo, pairs);
    const QImage large = popArtRow(scaled(photo, 4800, 3200), pairs);
    const QImage again = scaleByAveraging(large, small.width(), small.height());
    int other = 0;
    for (int i = 0; i < small.width() * small.height(); ++i) {
        const QPoint at(i % small.width(), i / small.width());
        other += std::abs(qGreen(again.pixel(at)) - qGreen(small.pixel(at))) > 64 ? 1 : 0;
    }
    EXPECT_LT(other, small.width() * small.height() / 20);
}

TEST(PopArt, noRowIsLargerThanFilesAndMemoryTake) {
    EXPECT_EQ(popArtPrintSize({6000, 4000}), QSize(3000, 2000));
    EXPECT_EQ(popArtPrintSize({4001, 1}), QSize(2001, 1));
    EXPECT_TRUE(popArtPrintSize({0, 5}).isEmpty());
    for (const QSize size : {QSize(200'000, 1000), QSize(200'000'000, 1), QSize(1, 200'000'000), QSize(14143, 14141)}) {
        const QSize print = popArtPrintSize(size);
        EXPECT_FALSE(print.isEmpty()) << size.width();
        EXPECT_LE(4 * print.width(), longestPopArtRow);
        EXPECT_LE(qint64(4) * print.width() * print.height(), maxPicturePixels);
    }
    const QImage row = popArtRow(photoLike(100'000, 6), pairs);
    EXPECT_EQ(row.size(), QSize(longestPopArtRow, 1));
}

} // namespace
} // namespace lumora
