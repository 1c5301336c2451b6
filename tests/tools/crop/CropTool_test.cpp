// The crop tool on a real photo with real mouse and keys: the frame, what is cut, the panel, its buttons and its tip.
#include "tools/crop/CropTool.h"

#include "support/SettingsFile.h"
#include "tools/canvas/CanvasForTest.h"
#include "tools/crop/CropForTest.h"
#include "tools/crop/CropTip.h"

#include <QCheckBox>
#include <QLabel>
#include <QPointingDevice>
#include <QScrollBar>
#include <memory>
#include <ostream>

static void PrintTo(const QRect &rect, std::ostream *out) {
    *out << rect.x() << " " << rect.y() << " " << rect.width() << " " << rect.height();
}

namespace lumora {
namespace {

using test::photoLike;

struct Cropping : test::CropWindow {
    QString tipSetting() { return test::setting(ctx, "Tips", "Crop", "none"); }
};

// --- Opening and closing --------------------------------------------------------------------------------------------

TEST_F(Cropping, StartsWithHalfThePhotoAtAHundred) {
    const struct {
        QSize photo;
        QRect frame;
    } rows[] = {{{400, 300}, {100, 100, 200, 150}},
                {{401, 303}, {100, 100, 200, 152}}, // halves to even
                {{150, 90}, {100, 100, 75, 45}},
                {{60, 50}, {100, 100, 30, 25}},
                {{1, 1}, {100, 100, 1, 1}}};
    for (const auto &[size, frame] : rows) {
        open(photoLike(size.width(), size.height()));
        crop.open();
        EXPECT_EQ(crop.frame(), frame);
        EXPECT_FALSE(crop.CropReady());
        EXPECT_EQ(crop.CropRect(), QRect(0, 0, 0, 0));
        EXPECT_FALSE(control<PictureButton>("cmdCropNow")->isEnabled());
        said.clear();
        key(Qt::Key_Return); // no frame is finished yet
        EXPECT_EQ(photo.picCanvas().size(), size);
        EXPECT_EQ(said.count(), 1);
        EXPECT_TRUE(panel.isOpen());
    }
}

TEST_F(Cropping, TheFrameKeepsTheShapeThatWasChosen) {
    open(photoLike(400, 300));
    crop.open();
    click("optCrop16x9");
    EXPECT_EQ(crop.frame(), QRect(100, 119, 200, 113));
    EXPECT_TRUE(control<PictureButton>("cmdCropNow")->isEnabled());
    const struct {
        const char *what;
        QPoint from, by;
        QRect frame;
    } rows[] = {
        {"a corner", {300, 232}, {32, 0}, {100, 119, 232, 131}},
        {"a corner, to the photo's edge", {300, 232}, {300, 300}, {100, 119, 300, 169}},
        {"the opposite corner", {100, 119}, {-32, -2}, {68, 101, 232, 131}},
        {"an edge", {300, 175}, {-40, 0}, {100, 130, 160, 90}},
        {"a corner past the other one", {300, 232}, {-232, -200}, {0, 63, 100, 56}},
        {"inside", {200, 170}, {-30, 20}, {70, 139, 200, 113}},
        {"a new frame", {10, 10}, {90, 20}, {10, 10, 90, 51}},
    };
    for (const auto &[what, from, by, frame] : rows) {
        SCOPED_TRACE(what);
        crop.open();
        click("optCrop16x9");
        draw({from, from + by / 2, from + by});
        EXPECT_EQ(crop.frame(), frame);
        EXPECT_EQ(crop.CropRect(), frame);
    }
    crop.open();
    click("optCrop4x3");
    click("cmdCropTurn");
    EXPECT_EQ(crop.frame(), QRect(144, 100, 113, 150));
    click("optCropSquare");
    EXPECT_FALSE(control<PictureButton>("cmdCropTurn")->isEnabled());
    click("optCropWhole");
    EXPECT_EQ(crop.frame(), QRect(0, 0, 400, 300));
    draw({{399, 150}, {350, 150}, {299, 150}}); // free again
    EXPECT_EQ(crop.frame(), QRect(0, 0, 300, 300));
    click("cmdCropNow");
    EXPECT_EQ(photo.picCanvas().size(), QSize(300, 300));
}

TEST_F(Cropping, OpeningEndsWhatElseRunsAndShowsItsOwnControls) {
    EXPECT_FALSE(crop.open()); // without a photo
    EXPECT_FALSE(panel.isOpen());
    EXPECT_EQ(tipSetting(), "none");

    open(photoLike(400, 300));
    ctx.fields.txtCropTip = Switch::On;
    ctx.flags.startSelection(PhotoSelection::Shape::Ellipse);
    PhotoSelection marked;
    marked.markEllipse({10, 10, 50, 50});
    photo.setSelection(marked);
    EXPECT_TRUE(crop.open());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !panel.isSliding(); }));
    EXPECT_EQ(tipSetting(), "1");
    EXPECT_TRUE(crop.excludesOthers());
    EXPECT_FALSE(ctx.flags.SelectionActive());
    EXPECT_TRUE(photo.selection().isEmpty());
    EXPECT_TRUE(hasTarget(5));
    EXPECT_EQ(control<QLabel>("LN2")->text(), "Crop - Make a selection and then:");
    EXPECT_TRUE(control<PictureButton>("cmdCropNow")->isVisible());
    EXPECT_FALSE(control<PictureButton>("cmdCropCutNow")->isVisible());
    EXPECT_FALSE(control<PictureButton>("cmdDelInverse")->isVisible());
}

TEST_F(Cropping, EveryWayOutLeavesNothingBehind) {
    const struct {
        const char *what;
        void (*leave)(Cropping &test);
        bool arrow;
    } rows[] = {
        {"close button", [](Cropping &t) { t.click("cmdpnlCropExit"); }, true},
        {"Esc on the photo", [](Cropping &t) { t.key(Qt::Key_Escape); }, true},
        {"Esc on the panel", [](Cropping &t) { QTest::keyClick(&t.panel, Qt::Key_Escape); }, true},
        {"close()", [](Cropping &t) { t.crop.close(); }, false},
        {"the Arrow tool", [](Cropping &t) { t.mouse.setTool(nullptr); }, false},
        {"in the middle of a drag",
         [](Cropping &t) {
             QTest::mousePress(t.view.viewport(), Qt::LeftButton, {}, t.at({200, 170}));
             QTest::mouseMove(t.view.viewport(), t.at({220, 190}));
             t.key(Qt::Key_Escape);
             QTest::mouseMove(t.view.viewport(), t.at({240, 190}));
             QTest::mouseRelease(t.view.viewport(), Qt::LeftButton, {}, t.at({240, 190}));
         },
         true},
    };
    const QImage original = photoLike(400, 300);
    open(original);
    const QImage before = seen();
    for (const auto &[what, leave, arrowToo] : rows) {
        SCOPED_TRACE(what);
        crop.open();
        arrow.clear();
        leave(*this);
        expectClosed();
        EXPECT_EQ(arrow.count(), arrowToo ? 1 : 0);
        EXPECT_EQ(seen(), before);
        crop.CropPhoto(); // nothing is open any more
        EXPECT_EQ(photo.picCanvas(), original);
        EXPECT_EQ(photo.history().undoSteps(), 0);
    }
}

// --- The frame ------------------------------------------------------------------------------------------------------

TEST_F(Cropping, TheMouseMovesAndSizesTheFrame) {
    // The frame begins at 100, 100 with 200 x 150 of 400 x 300.
    const struct {
        const char *what;
        QPoint from, by;
        QRect frame;
        Qt::CursorShape cursor;
    } rows[] = {
        {"inside", {200, 170}, {-30, 20}, {70, 120, 200, 150}, Qt::SizeAllCursor},
        {"inside, far beyond", {200, 170}, {250, 220}, {350, 299, 200, 150}, Qt::SizeAllCursor},
        {"left edge", {100, 175}, {-40, 30}, {60, 100, 240, 150}, Qt::SizeHorCursor},
        {"right edge", {300, 175}, {40, 30}, {100, 100, 240, 150}, Qt::SizeHorCursor},
        {"top edge", {200, 100}, {30, 20}, {100, 120, 200, 130}, Qt::SizeVerCursor},
        {"bottom edge", {200, 250}, {30, -20}, {100, 100, 200, 130}, Qt::SizeVerCursor},
        {"upper left", {100, 100}, {-120, -110}, {-20, -10, 320, 260}, Qt::SizeFDiagCursor},
        {"upper right", {300, 100}, {20, -30}, {100, 70, 220, 180}, Qt::SizeBDiagCursor},
        {"lower left", {100, 250}, {-20, 30}, {80, 100, 220, 180}, Qt::SizeBDiagCursor},
        {"lower right", {300, 250}, {130, 60}, {100, 100, 330, 210}, Qt::SizeFDiagCursor},
        {"a finger's width beside", {318, 268}, {10, 10}, {100, 100, 210, 160}, Qt::SizeFDiagCursor},
        {"through the opposite corner", {300, 250}, {-240, -190}, {60, 60, 40, 40}, Qt::SizeFDiagCursor},
        {"down to nothing", {300, 250}, {-200, -150}, {100, 100, 1, 1}, Qt::SizeFDiagCursor},
        {"a new one beside it", {20, 30}, {50, 40}, {20, 30, 50, 40}, Qt::SizeFDiagCursor},
        {"a new one up and left", {390, 290}, {-60, -20}, {330, 270, 60, 20}, Qt::SizeFDiagCursor},
        {"a click beside it", {20, 30}, {0, 0}, {100, 100, 200, 150}, Qt::SizeFDiagCursor},
    };
    for (const int zoom : {100, 200, 50}) {
        for (const auto &[what, from, by, frame, cursor] : rows) {
            SCOPED_TRACE(testing::Message() << what << " at " << zoom);
            if ((zoom == 50 && std::string(what) == "a finger's width beside") ||
                (zoom == 200 && std::string(what) == "a finger's width beside")) {
                continue; // a width on the screen, not on the photo
            }
            open(photoLike(400, 300), zoom);
            crop.open();
            QTest::mousePress(view.viewport(), Qt::LeftButton, {}, at(from));
            EXPECT_EQ(view.viewport()->cursor().shape(), cursor);
            QTest::mouseMove(view.viewport(), at(from + by));
            EXPECT_EQ(crop.frame(), frame);
            EXPECT_FALSE(crop.CropReady());
            QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, at(from + by));
            EXPECT_EQ(crop.frame(), frame);
            EXPECT_EQ(crop.CropRect(), frame);
            EXPECT_TRUE(crop.CropReady());
        }
    }
}

TEST_F(Cropping, AFingerSizesTheFrame) {
    open(photoLike(400, 300));
    crop.open();
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    const auto finger = [&] { return QTest::touchEvent(view.viewport(), screen.get()); };
    finger().press(0, at({310, 255}));
    finger().move(0, at({330, 260}));
    finger().move(0, at({350, 285}));
    finger().release(0, at({350, 285}));
    EXPECT_EQ(crop.frame(), QRect(100, 100, 240, 180));
    EXPECT_TRUE(crop.CropReady());
}

TEST_F(Cropping, ScrollingLeavesNoTraceOfTheFrame) {
    open(photoLike(1200, 900), 200);
    crop.open();
    seen();
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum() / 3);
    QCoreApplication::processEvents();
    const QImage scrolled = view.grab().toImage();
    view.viewport()->update();
    EXPECT_EQ(view.grab().toImage(), scrolled);
}

TEST(CropFrame, ATinyFrameCanBeMovedAndSizedAllTheSame) {
    const QRectF tiny(200, 200, 2, 2);
    const auto grip = [&](double x, double y) { return cropGripAt({x, y}, tiny); };
    EXPECT_TRUE(grip(201, 201).inside);
    EXPECT_EQ(grip(180, 201).edges, Qt::LeftEdge);
    EXPECT_EQ(grip(222, 222).edges, Qt::RightEdge | Qt::BottomEdge);
    EXPECT_TRUE(grip(260, 201).isNothing());
}

TEST_F(Cropping, KeysMoveSizeCropAndAreLeftToOthersOtherwise) {
    const struct {
        Qt::Key pressed;
        Qt::KeyboardModifiers modifiers;
        QRect frame;
    } rows[] = {
        {Qt::Key_Right, {}, {101, 100, 200, 150}},
        {Qt::Key_Up, {}, {101, 99, 200, 150}},
        {Qt::Key_Left, Qt::ShiftModifier, {91, 99, 200, 150}},
        {Qt::Key_Down, Qt::ShiftModifier, {91, 109, 200, 150}},
        {Qt::Key_Right, Qt::ControlModifier, {91, 109, 201, 150}},
        {Qt::Key_Up, Qt::ControlModifier | Qt::ShiftModifier, {91, 109, 201, 140}},
        {Qt::Key_Left, Qt::AltModifier, {91, 109, 201, 140}},
    };
    const QImage original = photoLike(400, 300);
    open(original);
    crop.open();
    for (const auto &[pressed, modifiers, frame] : rows) {
        key(pressed, modifiers);
        EXPECT_EQ(crop.frame(), frame);
        EXPECT_EQ(crop.CropRect(), frame);
    }
    key(Qt::Key_Return);
    EXPECT_EQ(photo.picCanvas(), original.copy(91, 109, 201, 140));
    expectClosed();
}

TEST_F(Cropping, AnotherPictureResetsTheFrame) {
    open(photoLike(400, 300));
    photo.changePhoto(photoLike(200, 600));
    crop.open();
    key(Qt::Key_Right);
    photo.PerformUndo();
    EXPECT_EQ(crop.frame(), QRect(100, 100, 200, 150));
    EXPECT_FALSE(crop.CropReady());
}

// --- Cropping -------------------------------------------------------------------------------------------------------

TEST_F(Cropping, CropsThePartOnThePhotoAsOneStep) {
    const struct {
        const char *what;
        QPoint from, to; ///< of a new frame, or of one of its corners
        QRect kept;
    } rows[] = {
        {"a part", {20, 30}, {90, 80}, {20, 30, 70, 50}},
        {"one pixel", {300, 250}, {100, 100}, {100, 100, 1, 1}},
        {"beyond two sides", {100, 100}, {-30, -40}, {0, 0, 300, 250}},
        {"beyond the others", {300, 250}, {430, 340}, {100, 100, 300, 200}},
    };
    for (const bool transparent : {false, true}) {
        const QImage original = photoLike(400, 300, transparent);
        for (const auto &[what, from, to, kept] : rows) {
            SCOPED_TRACE(what);
            open(original);
            const int steps = photo.history().undoSteps();
            crop.open();
            draw({from, to});
            click("cmdCropNow");
            EXPECT_EQ(photo.picCanvas(), original.copy(kept));
            EXPECT_EQ(photo.picThumb(), photo.picCanvas());
            EXPECT_TRUE(photo.PhotoModified());
            EXPECT_FALSE(crop.CropReady());
            expectClosed();
            EXPECT_EQ(photo.history().undoSteps(), steps + 1);
            photo.PerformUndo();
            EXPECT_EQ(photo.picCanvas(), original);
        }
    }
}

TEST_F(Cropping, AFrameOutsideThePhotoIsReported) {
    const QImage original = photoLike(60, 50);
    open(original);
    crop.open(); // at 100, 100
    key(Qt::Key_Right);
    crop.CropPhoto();
    EXPECT_EQ(said.count(), 1);
    EXPECT_EQ(photo.picCanvas(), original);
    EXPECT_EQ(photo.history().undoSteps(), 0);
    EXPECT_FALSE(photo.PhotoModified());
    EXPECT_TRUE(panel.isOpen());
    draw({{115, 112}, {25, 32}}); // onto it
    crop.CropPhoto();
    EXPECT_EQ(photo.picCanvas(), original.copy(10, 20, 30, 25));
}

TEST_F(Cropping, WhatWillBeCutAwayIsDimmed) {
    open(photoLike(400, 300));
    const QImage before = seen();
    crop.open();
    const QImage shown = seen();
    const auto pixel = [this](QPoint picture) { return (view.toView(picture) * view.devicePixelRatioF()).toPoint(); };
    const QPoint outside = pixel({40, 40});
    const QPoint inside = pixel({200, 140});
    const QPoint table = pixel({-20, -20});
    EXPECT_LT(shown.pixelColor(outside).lightness(), before.pixelColor(outside).lightness());
    EXPECT_EQ(shown.pixel(inside), before.pixel(inside));
    EXPECT_EQ(shown.pixel(table), before.pixel(table));
    EXPECT_NE(shown.pixel(pixel({100, 100})), before.pixel(pixel({100, 100}))); // a handle
}

TEST(CropScale, TheSameAtTwoPixelsToThePoint) {
    test::passesAtScale("Cropping.TheMouse*:Cropping.WhatWillBe*", "2");
}

// --- The tip --------------------------------------------------------------------------------------------------------

TEST_F(Cropping, TheTipFollowsItsSetting) {
    open(photoLike(400, 300));
    const auto makeFrame = [this] {
        crop.open();
        key(Qt::Key_Right);
    };
    const CropTip *picTip2 = panel.picTip2();
    auto *never = control<QCheckBox>("chkNoCropShow");

    ctx.fields.txtCropTip = Switch::Off;
    makeFrame();
    EXPECT_TRUE(QTest::qWaitFor([&] { return never->isChecked(); })); // follows the setting
    EXPECT_TRUE(picTip2->isHidden());

    ctx.fields.txtCropTip = Switch::On;
    makeFrame();
    EXPECT_TRUE(QTest::qWaitFor([&] { return picTip2->isVisible(); }));
    EXPECT_FALSE(never->isChecked());
    EXPECT_EQ(tipSetting(), "1");
    test::writeSetting(ctx, "Tips", "Crop", "something else");
    QTest::mouseClick(control<QLabel>("lblCropWarning"), Qt::LeftButton);
    EXPECT_TRUE(picTip2->isHidden());
    EXPECT_EQ(tipSetting(), "1");

    makeFrame();
    EXPECT_TRUE(QTest::qWaitFor([&] { return picTip2->isVisible(); }));
    never->click();
    EXPECT_TRUE(picTip2->isHidden());
    EXPECT_EQ(ctx.fields.txtCropTip, Switch::Off);
    EXPECT_EQ(tipSetting(), "0");
    never->click();
    EXPECT_EQ(ctx.fields.txtCropTip, Switch::On);
    EXPECT_EQ(tipSetting(), "0"); // until the tool is opened again

    makeFrame();
    EXPECT_TRUE(QTest::qWaitFor([&] { return picTip2->isVisible(); }));
    crop.close();
    EXPECT_TRUE(picTip2->isHidden());
}

} // namespace
} // namespace lumora
