// Cutting out: the line drawn with a real mouse, and the remaining pixels, compared exactly.
#include "tools/cut-out/CutOutTool.h"

#include "tools/crop/CropForTest.h"

#include <QLabel>
#include <functional>

namespace lumora {
namespace {

using test::firstDifference;
using test::photoLike;

struct CuttingOut : test::CropWindow {};

/// Whether a pixel's centre lies in a shape, by its own arithmetic.
using Inside = std::function<bool(double x, double y)>;

struct ShapeRow {
    const char *what;
    void (*mark)(PhotoSelection &selection);
    QRect box; ///< the part inside a photo of 120 x 90
    Inside inside;
};
const ShapeRow shapes[] = {
    {"rectangle",
     [](PhotoSelection &s) {
         s.markRectangle({20, 10, 60, 40});
     },
     {20, 10, 60, 40},
     [](double x, double y) { return x > 20 && x < 80 && y > 10 && y < 50; }},
    {"ellipse",
     [](PhotoSelection &s) {
         s.markEllipse({20, 10, 60, 41});
     },
     {20, 10, 60, 41},
     [](double x, double y) { return (x - 50) * (x - 50) / 900 + (y - 30.5) * (y - 30.5) / 420.25 < 1; }},
    {"lasso",
     [](PhotoSelection &s) {
         s.markLasso({{20, 10}, {80, 10}, {20, 70}});
     },
     {20, 10, 60, 60},
     [](double x, double y) { return x > 20 && y > 10 && x + y < 90; }},
    {"beyond the photo",
     [](PhotoSelection &s) {
         s.markRectangle({-30, 60, 90, 70});
     },
     {0, 60, 60, 30},
     [](double x, double y) { return x < 60 && y > 60; }},
    {"one pixel",
     [](PhotoSelection &s) {
         s.markRectangle({119, 89, 1, 1});
     },
     {119, 89, 1, 1},
     [](double x, double y) { return x > 119 && y > 89; }},
    {"everything",
     [](PhotoSelection &s) {
         s.markRectangle({0, 0, 120, 90});
     },
     {0, 0, 120, 90},
     [](double, double) { return true; }},
};

/// The photo with what is inside or outside the shape cut away; pixels on the line keep sixteenths of their alpha.
QImage cutByHand(const QImage &photo, const Inside &inside, bool cutInside) {
    QImage result = photo.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < result.height(); ++y) {
        for (int x = 0; x < result.width(); ++x) {
            int stays = 0;
            for (int i = 0; i < 16; ++i) {
                const int row = i / 4;
                stays += inside(x + (i % 4 + 0.5) / 4, y + (row + 0.5) / 4) == cutInside ? 0 : 1;
            }
            const QRgb pixel = result.pixel(x, y);
            const int alpha = (qAlpha(pixel) * stays + 8) / 16;
            if (stays < 16) {
                result.setPixel(x, y, alpha == 0 ? 0x00FFFFFF : (pixel & 0x00FFFFFF) | QRgb(alpha) << 24);
            }
        }
    }
    return result;
}

TEST_F(CuttingOut, KeepsWhatIsMarkedOrTheRest) {
    for (const bool transparent : {false, true}) {
        const QImage original = photoLike(120, 90, transparent);
        for (const ShapeRow &shape : shapes) {
            for (const bool inverse : {false, true}) {
                SCOPED_TRACE(testing::Message() << shape.what << (inverse ? " deleted" : " kept") << transparent);
                open(original);
                const int steps = photo.history().undoSteps();
                PhotoSelection marked;
                shape.mark(marked);
                photo.setSelection(marked);
                EXPECT_TRUE(inverse ? cutOut.InverseDelete() : cutOut.DeleteSelection());
                const QImage whole = cutByHand(original, shape.inside, inverse);
                const QImage expected = inverse ? whole : whole.copy(shape.box);
                ASSERT_EQ(photo.picCanvas().size(), expected.size());
                EXPECT_EQ(firstDifference(photo.picCanvas().convertToFormat(QImage::Format_ARGB32), expected),
                          QPoint(-1, -1));
                EXPECT_TRUE(photo.PhotoModified());
                EXPECT_EQ(photo.history().undoSteps(), steps + 1);
                photo.PerformUndo();
                EXPECT_EQ(photo.picCanvas(), original);
            }
        }
    }
}

TEST_F(CuttingOut, WithoutASelectionTheTipIsRequestedAndThePhotoStays) {
    const QImage original = photoLike(120, 90);
    EXPECT_FALSE(cutOut.DeleteSelection() || cutOut.InverseDelete()); // no photo
    EXPECT_EQ(cutOutTip.count(), 0);
    open(original);
    PhotoSelection beside;
    beside.markRectangle({300, 20, 50, 50});
    for (const PhotoSelection &marked : {PhotoSelection(), beside}) {
        cutOut.open();
        photo.setSelection(marked);
        for (const char *button : {"cmdCropCutNow", "cmdDelInverse"}) {
            cutOutTip.clear();
            click(button);
            EXPECT_EQ(cutOutTip.count(), 1);
            EXPECT_EQ(photo.picCanvas(), original);
            EXPECT_EQ(photo.history().undoSteps(), 0);
            EXPECT_FALSE(photo.PhotoModified());
            EXPECT_TRUE(panel.isOpen()); // to draw the line now
        }
    }
}

TEST_F(CuttingOut, OpensWithTheLassoAndItsOwnControls) {
    cutOut.open(); // without a photo
    EXPECT_FALSE(panel.isOpen());
    open(photoLike(120, 90));
    crop.open();
    cutOut.open(); // in place of the other
    EXPECT_TRUE(panel.isOpen());
    EXPECT_EQ(mouse.tool(), &cutOut);
    EXPECT_TRUE(ctx.flags.SelectionActive());
    EXPECT_EQ(ctx.flags.SelectionKind(), PhotoSelection::Shape::Lasso);
    EXPECT_TRUE(cutOut.excludesOthers() && !crop.excludesOthers());
    EXPECT_TRUE(hasTarget(4));
    QTest::mouseMove(view.viewport(), {450, 200});
    EXPECT_TRUE(hasTarget(3));
    EXPECT_EQ(window.findChild<QLabel *>("LN2")->text(), "Cut out - Make a selection and then:");
    EXPECT_TRUE(panel.cmdCropNow()->isHidden());
    EXPECT_TRUE(panel.cmdCropCutNow()->isVisible() && panel.cmdDelInverse()->isVisible());
    crop.open(); // and back
    EXPECT_EQ(mouse.tool(), &crop);
    EXPECT_FALSE(ctx.flags.SelectionActive());
    EXPECT_TRUE(panel.cmdCropCutNow()->isHidden() && panel.cmdDelInverse()->isHidden());
}

TEST_F(CuttingOut, CutsAlongTheDrawnLineAndCloses) {
    const QImage original = photoLike(120, 90);
    // The same triangle, drawn from left to right and from right to left.
    const std::vector<QPoint> lines[] = {{{20, 10}, {80, 10}, {20, 70}}, {{80, 10}, {20, 10}, {20, 70}}};
    for (const std::vector<QPoint> &line : lines) {
        for (const bool inverse : {false, true}) {
            open(original);
            cutOut.open();
            draw(line);
            cutOutArrow.clear();
            click(inverse ? "cmdDelInverse" : "cmdCropCutNow");
            const QImage whole = cutByHand(original, shapes[2].inside, inverse);
            EXPECT_EQ(photo.picCanvas(), inverse ? whole : whole.copy(shapes[2].box));
            EXPECT_EQ(cutOutArrow.count(), 1);
            expectClosed();
        }
    }
}

TEST_F(CuttingOut, EscapeClearsTheLineAndThenCloses) {
    open(photoLike(120, 90));
    cutOut.open();
    draw({{20, 10}, {80, 10}, {20, 70}});
    ASSERT_FALSE(photo.selection().isEmpty());
    key(Qt::Key_Escape);
    EXPECT_TRUE(photo.selection().isEmpty());
    EXPECT_TRUE(panel.isOpen());
    key(Qt::Key_Escape);
    expectClosed();
}

} // namespace
} // namespace lumora
