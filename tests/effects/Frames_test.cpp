#include "effects/Frames.h"

#include "session/AppContext.h"
#include "support/TestPictures.h"
#include "widgets/FloatingToolbar.h"

#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora {
namespace {

const QPoint nowhere(-1, -1);

class FramesTest : public testing::TestWithParam<int> {
  protected:
    QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    QWidget window;
    FloatingToolbar FT5{QStringLiteral("FT5"), &window};
    Frames frames{ctx, &FT5};
    FrameArtwork artwork;

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

TEST_P(FramesTest, FitsEveryProportionAndLeavesTheMiddleAlone) {
    for (const QSize size : {QSize(300, 450), QSize(450, 300), QSize(320, 320), QSize(3000, 400), QSize(400, 3000),
                             QSize(1201, 799), QSize(30, 20)}) {
        SCOPED_TRACE(testing::Message() << size.width() << " x " << size.height());
        open(size);
        const QImage photo = ctx.photo.picCanvas();
        EXPECT_TRUE(frames.fFramePicture(GetParam()));
        const QImage framed = ctx.photo.picCanvas();
        ASSERT_EQ(framed.size(), size);
        EXPECT_EQ(framed.format(), QImage::Format_RGB32);
        const int middle = std::min(size.width(), size.height()) / 5;
        const QRect inside(size.width() / 2 - middle, size.height() / 2 - middle, 2 * middle, 2 * middle);
        EXPECT_EQ(test::firstDifference(framed.copy(inside), photo.copy(inside)), nowhere);
        const QImage frame = artwork.picture(GetParam(), size);
        for (const QPoint &point : edgesOf(size)) {
            ASSERT_EQ(qAlpha(frame.pixel(point)), 255) << point.x() << ", " << point.y();
        }
        ctx.photo.PerformUndo();
        EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas(), photo), nowhere);
    }
}

TEST_P(FramesTest, CornersKeepTheirShapeInEveryProportion) {
    const int shorter = 500;
    const int corner = 90;
    const auto cornersOf = [&](QSize size) {
        const QImage frame = artwork.picture(GetParam(), size);
        const QPoint far(size.width() - corner, size.height() - corner);
        return std::array{frame.copy(0, 0, corner, corner), frame.copy(far.x(), 0, corner, corner),
                          frame.copy(0, far.y(), corner, corner), frame.copy(far.x(), far.y(), corner, corner)};
    };
    const auto square = cornersOf({shorter, shorter});
    for (const QSize size : {QSize(2 * shorter, shorter), QSize(shorter, 2 * shorter), QSize(4003, shorter)}) {
        const auto corners = cornersOf(size);
        for (std::size_t i = 0; i < corners.size(); ++i) {
            EXPECT_EQ(test::firstDifference(corners[i], square[i]), nowhere)
                << "corner " << i << " of " << size.width() << " x " << size.height();
        }
    }
}

TEST_P(FramesTest, NothingShowsThroughBetweenTheRepeats) {
    const QImage frame = artwork.picture(GetParam(), {2777, 600});
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
        EXPECT_EQ(ctx.photo.picCanvas().pixel(middle), photo.pixel(middle)) << size.width() << " x " << size.height();
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
    const QPoint mount(12, 45); // the first frame's, inside the second
    EXPECT_EQ(ctx.photo.picCanvas().pixel(mount), once.pixel(mount));
    EXPECT_NE(once.pixel(mount), photo.pixel(mount));
    ctx.photo.PerformUndo();
    EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas(), once), nowhere);
    ctx.photo.PerformUndo();
    EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas(), photo), nowhere);
}

TEST_F(FramesTest, TransparentPhotosStayTransparentInTheMiddle) {
    const QImage photo = test::photoLike(90, 60, true);
    ctx.photo.openPicture({.picture = photo, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
    EXPECT_TRUE(frames.fFramePicture(1));
    const QRect inside(30, 20, 30, 20);
    EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas().copy(inside), photo.copy(inside)), nowhere);
}

TEST_F(FramesTest, WithoutAPhotoOrAKnownFrameNothingHappens) {
    EXPECT_TRUE(frames.fFramePicture(1));
    EXPECT_TRUE(frames.fFrameThumbnail(1).isNull());
    open({40, 30});
    const QImage photo = ctx.photo.picCanvas();
    for (const int n : {0, 9, -1}) {
        EXPECT_TRUE(frames.fFramePicture(n));
        EXPECT_TRUE(frames.fFrameThumbnail(n).isNull());
        EXPECT_TRUE(artwork.picture(n, {40, 30}).isNull());
    }
    EXPECT_FALSE(frames.pick(QStringLiteral("keyFrame9")));
    EXPECT_EQ(ctx.photo.picCanvas(), photo);
    EXPECT_FALSE(ctx.photo.PhotoModified());
    EXPECT_TRUE(artwork.picture(1, {0, 30}).isNull());
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
