#include "effects/Frames.h"

#include "imaging/Scale.h"
#include "session/AppContext.h"
#include "support/TestPictures.h"
#include "widgets/FloatingToolbar.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTransform>
#include <algorithm>
#include <gtest/gtest.h>

namespace lumora {
namespace {

class FramesTest : public testing::TestWithParam<int> {
  protected:
    QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    QWidget window;
    FloatingToolbar FT5{QStringLiteral("FT5"), &window};
    Frames frames{ctx, &FT5};

    void SetUp() override {
        for (int n = 1; n <= frameCount; ++n) {
            FT5.addItem(QStringLiteral("keyFrame%1").arg(n), QStringLiteral("tool7"));
        }
    }
    void open(QSize size) {
        ctx.photo.openPicture({.picture = test::photoLike(size.width(), size.height()), .reason = {}},
                              PhotoDocument::OpenRoute::LoadPhoto);
    }
};

/// The pixels along the four edges, corners included.
std::vector<QPoint> edgesOf(QSize size) {
    std::vector<QPoint> points;
    for (int x = 0; x < size.width(); ++x) {
        points.insert(points.end(), {QPoint(x, 0), QPoint(x, size.height() - 1)});
    }
    for (int y = 0; y < size.height(); ++y) {
        points.insert(points.end(), {QPoint(0, y), QPoint(size.width() - 1, y)});
    }
    return points;
}

/// From 5 : 1 to 1 : 5, and a tiny one.
const QSize proportions[] = {{450, 300}, {300, 450},  {320, 320},  {400, 300}, {1201, 799},
                             {800, 450}, {2000, 400}, {400, 2000}, {30, 20}};

TEST_P(FramesTest, ThePhotoGoesIntoTheOpening) {
    for (const QSize size : proportions) {
        SCOPED_TRACE(testing::Message() << size.width() << " x " << size.height());
        open(size);
        const QImage photo = ctx.photo.picCanvas();
        EXPECT_TRUE(frames.fFramePicture(GetParam()));
        const QImage framed = ctx.photo.picCanvas();
        ASSERT_EQ(framed.size(), size);
        EXPECT_EQ(framed.format(), QImage::Format_RGB32);
        const QRect place = FrameArtwork::placeOfPhoto(GetParam(), size);
        ASSERT_TRUE(photo.rect().contains(place));
        const int shorter = std::min(size.width(), size.height());
        const QRect middle =
            QRect(QPoint(), QSize(shorter, shorter) / 2).translated(place.center() - QPoint(shorter, shorter) / 4);
        const QImage expected = scaled(photo, place.width(), place.height()).copy(middle.translated(-place.topLeft()));
        EXPECT_EQ(test::firstDifference(framed.copy(middle), expected), test::nowhere);
        const QImage frame = FrameArtwork::picture(GetParam(), size);
        for (const QPoint &point : edgesOf(size)) {
            // A tiny photo's band is thinner than a pixel.
            ASSERT_GE(qAlpha(frame.pixel(point)), shorter < 100 ? 150 : 255) << point.x() << ", " << point.y();
        }
        ctx.photo.PerformUndo();
        EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas(), photo), test::nowhere);
    }
}

TEST_P(FramesTest, ThePhotoKeepsItsProportionsAndMostOfItself) {
    const bool straight = GetParam() <= 2 || GetParam() == 7;
    for (const QSize size : proportions) {
        SCOPED_TRACE(testing::Message() << size.width() << " x " << size.height());
        const int shorter = std::min(size.width(), size.height());
        const int longer = std::max(size.width(), size.height());
        const QRect place = FrameArtwork::placeOfPhoto(GetParam(), size);
        const double stretched = double(place.width()) / size.width() * size.height() / place.height();
        EXPECT_NEAR(stretched, 1, straight && 2 * longer > 5 * shorter - 2 ? .06 : 1.5 / place.height() + .005);
        if (shorter < 100) {
            continue;
        }
        const QImage frame = FrameArtwork::picture(GetParam(), size);
        // Between the corners: how far what hides the photo reaches inwards, of the shorter side, and how much of the
        // photo it hides.
        const auto depthAt = [&](QPoint at, QPoint step) {
            int depth = 0;
            for (; frame.rect().contains(at) && qAlpha(frame.pixel(at)) > 190; at += step) {
                ++depth;
            }
            return depth;
        };
        int deepest = 0;
        int lowest = 0;
        for (int x = size.width() * 2 / 5; x < size.width() * 3 / 5; ++x) {
            deepest = std::max(deepest, depthAt({x, 0}, {0, 1}));
            lowest = std::max(lowest, depthAt({x, size.height() - 1}, {0, -1}));
        }
        for (int y = size.height() * 2 / 5; y < size.height() * 3 / 5; ++y) {
            deepest = std::max({deepest, depthAt({0, y}, {1, 0}), depthAt({size.width() - 1, y}, {-1, 0})});
        }
        EXPECT_LE(deepest, .12 * shorter + 1);
        EXPECT_LE(lowest, (GetParam() == 7 ? .2 : .12) * shorter + 1);
        int hidden = 0;
        for (int y = place.top(); y <= place.bottom(); ++y) {
            for (int x = place.left(); x <= place.right(); ++x) {
                hidden += qAlpha(frame.pixel(x, y)) > 190 ? 1 : 0;
            }
        }
        EXPECT_LT(hidden, straight ? 2.2 * (place.width() + place.height()) : .24 * place.width() * place.height());
    }
}

TEST_P(FramesTest, CornersKeepTheirShapeInEveryProportion) {
    if (GetParam() <= 2 || GetParam() == 7) {
        return; // a straight opening has the photo's proportions
    }
    const int shorter = 500;
    const int corner = 70;
    const auto cornersOf = [&](QSize size) {
        const QImage frame = FrameArtwork::picture(GetParam(), size);
        const QPoint far(size.width() - corner, size.height() - corner);
        return std::array{frame.copy(0, 0, corner, corner), frame.copy(far.x(), 0, corner, corner),
                          frame.copy(0, far.y(), corner, corner), frame.copy(far.x(), far.y(), corner, corner)};
    };
    const auto square = cornersOf({shorter, shorter});
    for (const QSize size : {QSize(2 * shorter, shorter), QSize(shorter, 2 * shorter), QSize(4003, shorter)}) {
        const auto corners = cornersOf(size);
        for (std::size_t i = 0; i < corners.size(); ++i) {
            EXPECT_EQ(test::firstDifference(corners[i], square[i]), test::nowhere)
                << "corner " << i << " of " << size.width() << " x " << size.height();
        }
    }
}

/// The longest line of pixels along which the picture changes at once, from one column to the next. Round shapes have
/// short ones, a shape that is cut through has one as long as itself.
int longestCut(const QImage &frame) {
    const QImage picture = frame.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const auto difference = [](const uchar *pixel) { // from the one before
        int sum = 0;
        for (int c = 0; c < 4; ++c) {
            sum += std::abs(pixel[c] - pixel[c - 4]);
        }
        return sum;
    };
    int longest = 0;
    std::vector<int> lengths(std::size_t(picture.width()), 0);
    for (int y = 3; y < picture.height() - 3; ++y) {
        for (int x = 2; x < picture.width() - 1; ++x) {
            const uchar *pixel = picture.constScanLine(y) + std::ptrdiff_t(4) * x;
            const int here = difference(pixel);
            int &length = lengths[std::size_t(x)];
            length = here > 48 && here > 3 * std::max(difference(pixel - 4), difference(pixel + 4)) ? length + 1 : 0;
            longest = std::max(longest, length);
        }
    }
    return longest;
}

TEST_F(FramesTest, NoPieceIsCutWhereCornersAndRepeatsMeet) {
    const std::pair<int, int> lengths[] = {{4, 21}, {6, 17}}; // hearts and leaves, whose pieces are round
    for (const QSize size : {QSize(1000, 1000), QSize(1500, 1000), QSize(1000, 1780), QSize(5000, 1000)}) {
        for (const auto &[n, length] : lengths) {
            const QImage frame = FrameArtwork::picture(n, size);
            EXPECT_LT(longestCut(frame), length) << n << ": " << size.width() << " x " << size.height();
            EXPECT_LT(longestCut(frame.transformed(QTransform(0, 1, 1, 0, 0, 0))), length)
                << n << ": " << size.width() << " x " << size.height();
        }
    }
}

TEST_P(FramesTest, NothingShowsThroughBetweenTheRepeats) {
    const QImage frame = FrameArtwork::picture(GetParam(), {2777, 600});
    for (int x = 0; x < frame.width(); ++x) {
        ASSERT_EQ(qAlpha(frame.pixel(x, 3)), 255) << x;
        ASSERT_EQ(qAlpha(frame.pixel(x, frame.height() - 4)), 255) << x;
    }
}

TEST_P(FramesTest, TinyPhotosKeepTheirSizeAndStayPartlyVisible) {
    for (const QSize size : {QSize(1, 1), QSize(2, 1), QSize(2, 2), QSize(1, 40), QSize(3, 3), QSize(7, 5)}) {
        open(size);
        const QImage photo = ctx.photo.picCanvas();
        EXPECT_TRUE(frames.fFramePicture(GetParam()));
        const QPoint middle(size.width() / 2, size.height() / 2);
        ASSERT_EQ(ctx.photo.picCanvas().size(), size);
        const QRect place = FrameArtwork::placeOfPhoto(GetParam(), size);
        ASSERT_TRUE(place.contains(middle)) << size.width() << " x " << size.height();
        EXPECT_EQ(ctx.photo.picCanvas().pixel(middle),
                  scaled(photo, place.width(), place.height()).pixel(middle - place.topLeft()))
            << size.width() << " x " << size.height();
    }
}

INSTANTIATE_TEST_SUITE_P(All, FramesTest, testing::Range(1, frameCount + 1));

TEST_F(FramesTest, AFrameIsOneUndoStepAndTheSecondGoesAroundTheFirst) {
    open({120, 90});
    const QImage photo = ctx.photo.picCanvas();
    const int steps = ctx.photo.history().undoSteps();
    ctx.flags.startSelection(PhotoSelection::Shape::Rectangle);
    EXPECT_TRUE(frames.pick(QStringLiteral("keyFrame2")));
    const QImage once = ctx.photo.picCanvas();
    EXPECT_TRUE(ctx.flags.SelectionActive()) << "a frame drops nothing of the selection";
    EXPECT_TRUE(ctx.photo.PhotoModified());
    EXPECT_EQ(ctx.photo.picThumb(), once);
    EXPECT_TRUE(frames.pick(QStringLiteral("keyFrame7")));
    EXPECT_EQ(ctx.photo.history().undoSteps(), steps + 2);
    const QRect place = FrameArtwork::placeOfPhoto(7, {120, 90});
    const QPoint mount(place.left() + 6, 45); // the first frame's, inside the second
    EXPECT_EQ(ctx.photo.picCanvas().pixel(mount),
              scaled(once, place.width(), place.height()).pixel(mount - place.topLeft()));
    ctx.photo.PerformUndo();
    EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas(), once), test::nowhere);
    ctx.photo.PerformUndo();
    EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas(), photo), test::nowhere);
}

TEST_F(FramesTest, TransparentPhotosStayTransparentInTheMiddle) {
    const QImage photo = test::photoLike(90, 60, true);
    ctx.photo.openPicture({.picture = photo, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
    EXPECT_TRUE(frames.fFramePicture(1));
    const QRect place = FrameArtwork::placeOfPhoto(1, photo.size());
    const QRect inside(30, 20, 30, 20);
    EXPECT_EQ(
        test::firstDifference(ctx.photo.picCanvas().copy(inside),
                              scaled(photo, place.width(), place.height()).copy(inside.translated(-place.topLeft()))),
        test::nowhere);
}

TEST_F(FramesTest, WithoutAPhotoOrAKnownFrameNothingHappens) {
    EXPECT_TRUE(frames.fFramePicture(1));
    EXPECT_TRUE(frames.fFrameThumbnail(1).isNull());
    open({40, 30});
    const QImage photo = ctx.photo.picCanvas();
    for (const int n : {0, 9, -1}) {
        EXPECT_TRUE(frames.fFramePicture(n));
        EXPECT_TRUE(frames.fFrameThumbnail(n).isNull());
        EXPECT_TRUE(FrameArtwork::picture(n, {40, 30}).isNull());
    }
    EXPECT_FALSE(frames.pick(QStringLiteral("keyFrame9")));
    EXPECT_EQ(ctx.photo.picCanvas(), photo);
    EXPECT_FALSE(ctx.photo.PhotoModified());
    EXPECT_TRUE(FrameArtwork::picture(1, {0, 30}).isNull());
}

TEST_F(FramesTest, IconsShowThePhotoInItsFrame) {
    const std::pair<QSize, QSize> cases[] = {{{300, 450}, {80, 120}},
                                             {{450, 300}, {120, 80}},
                                             {{320, 320}, {120, 120}},
                                             {{3000, 40}, {120, 2}},
                                             {{10, 3000}, {1, 120}}};
    for (const auto &[photo, icon] : cases) {
        open(photo);
        for (int n = 1; n <= frameCount; ++n) {
            EXPECT_EQ(frames.fFrameThumbnail(n).size(), icon) << n << ": " << photo.width() << " x " << photo.height();
        }
        EXPECT_FALSE(ctx.photo.PhotoModified()) << "an icon changes nothing";
    }
    open({450, 300});
    frames.CreateFrameThumbnails();
    EXPECT_NE(frames.fFrameThumbnail(1), frames.fFrameThumbnail(2));
}

} // namespace
} // namespace lumora
