// The marked region as a value: which box and which pixels each shape gives, and when it is shown.
#include "document/PhotoSelection.h"

#include "document/PhotoDocument.h"
#include "support/TestPictures.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace lumora;
using Shape = PhotoSelection::Shape;

namespace {

const QRect nothing(0, 0, 0, 0);
const QSize picture(40, 30);

int countIn(const PhotoSelection &selection) {
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (const Region::Span &span : selection.region(picture).row(y)) {
            count += span.end - span.begin;
        }
    }
    return count;
}

} // namespace

TEST(PhotoSelection, marksBoxesAndWhatOfThemLiesInThePicture) {
    struct Row {
        QRect box;
        QRect kept;
        int inRectangle, inEllipse; // pixels
    };
    // Its end is one more than a whole number holds.
    const int most = std::numeric_limits<int>::max();
    const QRect farthest(QPoint(most - 5, 0), QPoint(most, 5));
    const Row rows[] = {
        {{10, 10, 8, 6}, {10, 10, 8, 6}, 48, 36},
        {{0, 0, 1, 1}, {0, 0, 1, 1}, 1, 1},
        {{36, 26, 8, 8}, {36, 26, 8, 8}, 16, 13},
        {{40, 0, 5, 5}, {40, 0, 5, 5}, 0, 0},
        {{100, 100, 500, 500}, {100, 100, 500, 500}, 0, 0},
        {{10, 10, 0, 6}, nothing, 0, 0},
        {{10, 10, 6, 0}, nothing, 0, 0},
        {farthest, farthest, 0, 0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(testing::Message() << row.box.x() << " " << row.box.width());
        PhotoSelection selection;
        selection.markRectangle(row.box);
        EXPECT_EQ(selection.box(), row.kept);
        EXPECT_EQ(selection.shape(), row.kept == nothing ? Shape::None : Shape::Rectangle);
        EXPECT_EQ(countIn(selection), row.inRectangle);
        selection.markEllipse(row.box);
        EXPECT_EQ(selection.box(), row.kept);
        EXPECT_EQ(selection.shape(), row.kept == nothing ? Shape::None : Shape::Ellipse);
        EXPECT_EQ(countIn(selection), row.inEllipse);
    }
}

TEST(PhotoSelection, marksLassos) {
    const double none = std::nan("");
    const double far = std::numeric_limits<double>::infinity();
    struct Row {
        const char *what;
        std::vector<PicturePoint> points;
        QRect box;
        int pixels;
    };
    const Row rows[] = {
        {"square", {{2, 3}, {12, 3}, {12, 13}, {2, 13}}, {2, 3, 10, 10}, 100},
        {"between pixels", {{2.5, 3.5}, {4.5, 3.5}, {4.5, 5.5}, {2.5, 5.5}}, {2, 3, 3, 3}, 4},
        {"broken points", {{2, 3}, {none, 3}, {12, 3}, {far, -far}, {12, 13}, {2, 13}}, {2, 3, 10, 10}, 100},
        {"far away",
         {{-1e300, -1e300}, {1e300, -1e300}, {1e300, 1e300}, {-1e300, 1e300}},
         {-1'000'000'000, -1'000'000'000, 2'000'000'000, 2'000'000'000},
         1200},
        {"two points", {{2, 3}, {12, 13}}, nothing, 0},
        {"a level line", {{2, 3}, {12, 3}, {8, 3}}, nothing, 0},
        {"no points", {}, nothing, 0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        PhotoSelection selection;
        selection.markRectangle({1, 1, 5, 5});
        selection.markLasso(row.points);
        EXPECT_EQ(selection.box(), row.box);
        EXPECT_EQ(selection.isEmpty(), row.box == nothing);
        EXPECT_EQ(selection.lassoPoints().empty(), row.box == nothing);
        EXPECT_EQ(countIn(selection), row.pixels);
    }
}

TEST(PhotoSelection, isShownWhenMarkedDrawnAndVisible) {
    PhotoSelection selection;
    EXPECT_FALSE(selection.isShown());
    selection.setDrawn(1);
    selection.setVisible(true);
    EXPECT_FALSE(selection.isShown()); // nothing is marked
    selection.markRectangle({1, 1, 5, 5});
    EXPECT_TRUE(selection.isShown());
    selection.setDrawn(0);
    EXPECT_FALSE(selection.isShown());
    selection.markEllipse({1, 1, 5, 5}); // marking shows
    EXPECT_TRUE(selection.isShown());
    selection.setVisible(false);
    EXPECT_FALSE(selection.isShown());
    selection.markEllipse({1, 1, 5, 5});
    selection.hide();
    EXPECT_TRUE(selection.isEmpty());
    EXPECT_FALSE(selection.isShown());
}

TEST(PhotoSelection, makesItsPixelsAnewForAnotherMarkOrPicture) {
    PhotoSelection selection;
    selection.markRectangle({0, 0, 100, 100});
    EXPECT_EQ(selection.region({10, 10}).bounds().right, 10);
    EXPECT_EQ(selection.region({20, 10}).bounds().right, 20);
    PhotoSelection copy = selection;
    copy.markRectangle({0, 0, 5, 5});
    EXPECT_EQ(copy.region({20, 10}).bounds().right, 5);
    EXPECT_EQ(selection.region({20, 10}).bounds().right, 20);
    selection.clear();
    EXPECT_TRUE(selection.region({20, 10}).isEmpty());
}

TEST(PhotoSelection, isLostWithItsPhoto) {
    PhotoDocument photo;
    const auto open = [&photo](int width) {
        photo.openPicture({test::photoLike(width, 30), PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto);
        PhotoSelection selection;
        selection.markRectangle({1, 1, 5, 5});
        photo.setSelection(selection);
    };
    open(40);
    open(40);
    EXPECT_FALSE(photo.selection().isEmpty());
    ASSERT_TRUE(photo.changePhoto(test::photoLike(40, 30, true))); // an effect: the marked pixels are still there
    EXPECT_FALSE(photo.selection().isEmpty());
    photo.PerformUndo();
    EXPECT_TRUE(photo.selection().isEmpty());
    open(40);
    ASSERT_TRUE(photo.changePhoto(test::photoLike(20, 30)));
    EXPECT_TRUE(photo.selection().isEmpty());
    open(40);
    photo.openPicture({test::photoLike(40, 30), PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto);
    EXPECT_TRUE(photo.selection().isEmpty());
}
