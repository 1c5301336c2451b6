#include "imaging/Scale.h"
#include "imaging/TargetsForTest.h"
#include "imaging/transforms/FrameOverlay.h"
#include "support/TestPictures.h"

#include <cmath>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using test::firstDifference;
using test::forEachTarget;
using test::photoLike;

/// A frame with a soft, wavy rim around a transparent middle.
QImage wavyFrame(int width, int height) {
    QImage frame(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int near = std::min({x, y, width - 1 - x, height - 1 - y});
            const double rim = 3 + 2 * std::sin(x * 0.7) + 2 * std::cos(y * 0.5);
            const int alpha = int(std::clamp((rim - near + 1) * 128, 0.0, 255.0));
            frame.setPixel(x, y, qRgba(200 - x % 50, 30 + y % 90, 60, alpha));
        }
    }
    return frame;
}

TEST(TransformFrame, aFrameOfThePhotosSizeLiesOverIt) {
    for (const QSize size : {QSize(1, 1), QSize(17, 3), QSize(1, 300), QSize(90, 61)}) {
        for (const bool transparent : {false, true}) {
            const QImage photo = photoLike(size.width(), size.height(), transparent);
            const QImage frame = wavyFrame(size.width(), size.height());
            const QImage before = photo.copy();
            forEachTarget([&] {
                const QImage result = framed(photo, frame);
                ASSERT_EQ(result.size(), size);
                ASSERT_EQ(result.format(), photo.format());
                for (int y = 0; y < size.height(); ++y) {
                    for (int x = 0; x < size.width(); ++x) {
                        const QRgb over = frame.pixel(x, y);
                        const QRgb under = photo.pixel(x, y);
                        const double share = qAlpha(over) / 255.0;
                        const double rest = (1 - share) * qAlpha(under) / 255.0;
                        const auto mixed = [&](int a, int b) { return a * share + b * rest; };
                        const QRgb got = result.pixel(x, y);
                        const double alpha = qAlpha(got) / 255.0;
                        // The frame's colours are whole levels once multiplied by alpha: one level of that.
                        ASSERT_NEAR(qRed(got) * alpha, mixed(qRed(over), qRed(under)), 1.6) << x << ' ' << y;
                        ASSERT_NEAR(qGreen(got) * alpha, mixed(qGreen(over), qGreen(under)), 1.6) << x << ' ' << y;
                        ASSERT_NEAR(qBlue(got) * alpha, mixed(qBlue(over), qBlue(under)), 1.6) << x << ' ' << y;
                        ASSERT_NEAR(alpha, share + rest, 1 / 255.0) << x << ' ' << y;
                        if (qAlpha(over) == 0 && qAlpha(under) > 0) {
                            ASSERT_EQ(got, under) << "seen through the frame";
                        }
                    }
                }
            });
            ASSERT_EQ(firstDifference(photo, before), QPoint(-1, -1)) << "wrote to its source";
        }
    }
}

TEST(TransformFrame, aFrameIsStretchedToThePhoto) {
    // Over black an opaque frame shows its own scaled colours; its hole must not cut into the soft edge.
    for (const QSize size :
         {QSize(400, 300), QSize(300, 500), QSize(55, 40), QSize(20, 200), QSize(11, 7), QSize(1, 1)}) {
        QImage black(size, QImage::Format_RGB32);
        black.fill(Qt::black);
        const QImage frame = wavyFrame(60, 45);
        const QImage expected = scaled(frame, size.width(), size.height());
        const QImage result = framed(black, frame);
        ASSERT_EQ(result.size(), size);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                const QRgb over = expected.pixel(x, y);
                ASSERT_NEAR(qRed(result.pixel(x, y)), qRed(over) * qAlpha(over) / 255.0, 1.6) << x << ' ' << y;
                ASSERT_NEAR(qGreen(result.pixel(x, y)), qGreen(over) * qAlpha(over) / 255.0, 1.6) << x << ' ' << y;
            }
        }
    }
}

TEST(TransformFrame, aPhotoIsPlacedInItsOwnSize) {
    for (const bool transparent : {false, true}) {
        const QImage photo = photoLike(90, 60, transparent);
        const QRect place(7, 5, 70, 48);
        const QImage result = placedPhoto(photo, place);
        ASSERT_EQ(result.size(), photo.size());
        ASSERT_EQ(result.format(), photo.format());
        EXPECT_EQ(firstDifference(result.copy(place), scaled(photo, 70, 48)), QPoint(-1, -1));
        for (const QPoint around : {QPoint(0, 0), QPoint(6, 20), QPoint(77, 20), QPoint(30, 4), QPoint(89, 53)}) {
            EXPECT_EQ(result.pixel(around), transparent ? 0U : qRgb(0, 0, 0)) << around.x() << ' ' << around.y();
        }
        EXPECT_EQ(firstDifference(placedPhoto(photo, photo.rect()), photo), QPoint(-1, -1));
        EXPECT_TRUE(placedPhoto(photo, QRect()).isNull());
    }
    EXPECT_TRUE(placedPhoto(QImage(), QRect(0, 0, 3, 3)).isNull());
}

TEST(TransformFrame, nothingToFrameIsRefused) {
    EXPECT_TRUE(framed(QImage(), wavyFrame(9, 9)).isNull());
    EXPECT_TRUE(framed(photoLike(9, 9), QImage()).isNull());
    const QImage opaque = photoLike(9, 9);
    EXPECT_EQ(firstDifference(framed(photoLike(9, 9, true), opaque), opaque), QPoint(-1, -1));
}

} // namespace
} // namespace lumora
