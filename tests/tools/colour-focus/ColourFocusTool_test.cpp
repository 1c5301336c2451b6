#include "tools/colour-focus/ColourFocusTool.h"

#include "imaging/effects/ColourFocus.h"
#include "tools/adjust/AdjustForTest.h"
#include "tools/canvas/TargetCursor.h"
#include "tools/colour-focus/ColourFocusMagnifier.h"
#include "tools/colour-focus/ColourFocusSwatch.h"

namespace lumora {
namespace {

constexpr QPoint spot(60, 150); // of the photo, in a colour that has a hue

struct ColourFocusToolTest : test::ColourTools {
    QImage focused(int marked, int level) {
        const QColor colour(photo.pixel(spot));
        return expected(marked, {applyColourFocus, {colour.red(), colour.green(), colour.blue(), level}});
    }
    void pick(QPoint pixel) { click(viewAt(pixel.x(), pixel.y())); }
    bool isDropper() const { return view.viewport()->cursor() == targetCursor(2, view.devicePixelRatioF()); }
    QPixmap strength(int n) { return control<PictureButton>(qPrintable(QStringLiteral("picCM%1").arg(n)))->picture(); }

    ColourFocusTool tool{ctx, view, mouse, &window};
    QSignalSpy arrow{&tool, &ColourFocusTool::finished};
    QSignalSpy message{&tool, &ColourFocusTool::message};
};

TEST_F(ColourFocusToolTest, AColourIsPickedWithTheMouseAndShownLive) {
    openPhoto();
    tool.open();
    auto *swatch = control<ColourFocusSwatch>("picChosenColour");
    EXPECT_FALSE(swatch->colour().isValid());
    pick({-20, 30}); // beside the photo
    click(viewAt(10, 10), Qt::RightButton);
    EXPECT_FALSE(tool.chosenColour().isValid());
    pick(spot);
    EXPECT_EQ(tool.chosenColour(), QColor(photo.pixel(spot)));
    EXPECT_EQ(swatch->colour(), tool.chosenColour());
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(view.viewport(), &leave); // the magnifier would be in the way
    EXPECT_TRUE(comesToLookLike(focused(0, 25)));
    press("picCM4");
    EXPECT_TRUE(comesToLookLike(focused(0, 70)));
    slide("sldColourFocusLevel", 5);
    EXPECT_TRUE(comesToLookLike(focused(0, 5)));
    EXPECT_TRUE(photoIs(photo));
    pick({300, 20});
    EXPECT_EQ(tool.chosenColour(), QColor(photo.pixel(300, 20))); // the photo's, not what is shown of it
}

TEST_F(ColourFocusToolTest, ApplyChangesWhatIsMarked) {
    openPhoto();
    for (int marked = 0; marked <= 3; ++marked) {
        SCOPED_TRACE(marked);
        mark(marked);
        tool.open();
        pick(spot);
        press("picCM1");
        const QImage wanted = focused(marked, 10);
        ASSERT_NE(test::firstDifference(wanted, photo), QPoint(-1, -1));
        const int steps = ctx.photo.history().undoSteps();
        press("cmdApplyCMNow");
        EXPECT_TRUE(photoIs(wanted));
        EXPECT_EQ(ctx.photo.history().undoSteps(), steps + 1);
        EXPECT_FALSE(tool.livePreview().isShown());
        EXPECT_FALSE(ctx.flags.SelectionActive());
        ctx.photo.PerformUndo();
        EXPECT_TRUE(photoIs(photo));
        EXPECT_TRUE(tool.chosenColour().isValid()); // it is still the same photo
        tool.close();
    }
    EXPECT_EQ(message.count(), 0);
}

TEST_F(ColourFocusToolTest, WithoutAColourApplySaysSo) {
    tool.open(); // no photo
    tool.CreateCMSFX();
    EXPECT_FALSE(tool.panel()->isOpen());
    openPhoto();
    tool.open();
    press("picCM3");
    press("cmdApplyCMNow");
    ASSERT_EQ(message.count(), 1);
    EXPECT_FALSE(message[0][1].toBool());
    EXPECT_TRUE(photoIs(photo));
    EXPECT_EQ(ctx.photo.history().undoSteps(), 0);
    QImage grey(50, 50, QImage::Format_RGB32);
    grey.fill(QColor(120, 124, 121));
    open(grey);
    pick({25, 25});
    EXPECT_EQ(message.count(), 2); // it hardly has a hue
}

TEST_F(ColourFocusToolTest, FourStrengthsAndTheSliderAreOneLevel) {
    openPhoto();
    tool.open();
    const int levels[] = {10, 25, 45, 70};
    for (int n = 1; n <= 4; ++n) {
        auto *button = control<PictureButton>(qPrintable(QStringLiteral("picCM%1").arg(n)));
        button->click();
        EXPECT_TRUE(button->isChecked());
        EXPECT_EQ(control<QSlider>("sldColourFocusLevel")->value(), levels[n - 1]);
    }
    slide("sldColourFocusLevel", 30);
    for (int n = 1; n <= 4; ++n) {
        EXPECT_FALSE(control<PictureButton>(qPrintable(QStringLiteral("picCM%1").arg(n)))->isChecked());
    }
    slide("sldColourFocusLevel", 45);
    EXPECT_TRUE(control<PictureButton>("picCM3")->isChecked());
    for (const bool simple : {false, true}) {
        ctx.flags.SimpleModeOn = simple;
        tool.close();
        tool.open();
        EXPECT_TRUE(shown("sldColourFocusLevel") && shown("lblColourFocusLevel"));
        EXPECT_TRUE(control<PictureButton>("picCM2")->isChecked()); // every start uses the defaults
    }
}

TEST_F(ColourFocusToolTest, TheStrengthsShowThePhoto) {
    openPhoto();
    tool.open();
    pick(spot);
    for (int n = 1; n <= 4; ++n) {
        EXPECT_EQ(strength(n).toImage(), QPixmap::fromImage(ctx.photo.picCM(n)).toImage());
        EXPECT_FALSE(ctx.photo.picCM(n).isNull());
        EXPECT_TRUE(n == 1 || ctx.photo.picCM(n) != ctx.photo.picCM(n - 1)) << n;
    }
    const QImage before = ctx.photo.picCM(4);
    press("cmdApplyCMNow");
    EXPECT_NE(ctx.photo.picCM(4), before);
    EXPECT_FALSE(ctx.photo.picCM(4).isNull());
    open(test::photoLike(200, 300));
    EXPECT_FALSE(tool.chosenColour().isValid()); // it was a colour of the previous photo
    EXPECT_EQ(ctx.photo.picCM(1), ctx.photo.picCM(4));
    EXPECT_GT(strength(2).height(), strength(2).width());
}

TEST_F(ColourFocusToolTest, TheMagnifierShowsThePixelUnderThePointer) {
    openPhoto();
    ctx.photo.setZoom(50);
    tool.open();
    const QImage bare = seen();
    const auto differsAt = [&](QPoint place) { return pixelOf(seen(), place) != pixelOf(bare, place); };
    QPointF pointer; // at the given place
    QObject::connect(&view, &PhotoView::pointer, &tool, [&](const PointerEvent &event) { pointer = event.view; });
    for (const QPoint pixel : {QPoint(160, 100), QPoint(300, 4), QPoint(2, 190)}) {
        moveTo({5, 5}); // the mouse may be there already
        moveTo(viewAt(pixel.x(), pixel.y()));
        EXPECT_TRUE(isDropper());
        const QRect place = magnifierPlace(pointer, view.viewport()->rect());
        EXPECT_FALSE(place.contains(pointer.toPoint()));
        const QImage now = seen();
        EXPECT_EQ(QColor(pixelOf(now, place.center())), QColor(photo.pixel(view.pixelAt(pointer))));
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(view.viewport(), &leave);
        EXPECT_EQ(seen(), bare);
    }
    moveTo(viewAt(160, 100));
    const QPoint centre = magnifierPlace(pointer, view.viewport()->rect()).center();
    EXPECT_TRUE(differsAt(centre));
    moveTo(viewAt(-50, 100)); // beside the photo
    EXPECT_FALSE(differsAt(centre));
    moveTo(viewAt(160, 100));
    tool.close();
    EXPECT_FALSE(differsAt(centre));
    EXPECT_FALSE(isDropper());
    pick({100, 100});
    EXPECT_FALSE(tool.chosenColour().isValid());
}

TEST_F(ColourFocusToolTest, TheMagnifierStaysInView) {
    const QRect room(0, 0, 500, 400);
    for (const QPoint at : {QPoint(0, 0), QPoint(499, 0), QPoint(0, 399), QPoint(499, 399), QPoint(250, 200)}) {
        const QRect place = magnifierPlace(at, room);
        EXPECT_TRUE(room.contains(place));
        EXPECT_FALSE(place.contains(at));
    }
}

TEST_F(ColourFocusToolTest, StartingAndEveryWayOutSetTheFlags) {
    openPhoto();
    const struct {
        const char *name;
        std::function<void()> way;
        int arrows;
    } cases[] = {{"close", [this] { tool.close(); }, 0},
                 {"exit button", [this] { press("cmdExitPnlColourFocus"); }, 1},
                 {"Esc", [this] { QTest::keyClick(&view, Qt::Key_Escape); }, 1},
                 {"another tool", [this] { selection.open("keySqr"); }, 0},
                 {"the arrow", [this] { mouse.setTool(nullptr); }, 0}};
    for (const auto &[name, way, arrows] : cases) {
        SCOPED_TRACE(name);
        tool.open();
        EXPECT_TRUE(isDropper());
        pick(spot);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !looksLike(photo); }));
        arrow.clear();
        way();
        EXPECT_EQ(arrow.count(), arrows);
        EXPECT_FALSE(tool.panel()->isVisible());
        EXPECT_FALSE(tool.chosenColour().isValid());
        EXPECT_FALSE(isDropper());
        EXPECT_TRUE(comesToLookLike(photo));
        EXPECT_NE(mouse.tool(), &tool);
    }
    EXPECT_TRUE(photoIs(photo));
}

TEST_F(ColourFocusToolTest, ASelectionStaysOnlyWhereItMarksSomething) {
    openPhoto();
    mark(2);
    tool.open();
    EXPECT_TRUE(ctx.flags.SelectionActive());
    EXPECT_FALSE(ctx.photo.selection().isEmpty());
    const PhotoSelection before = ctx.photo.selection();
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, viewAt(200, 50));
    EXPECT_TRUE(isDropper());
    moveTo(viewAt(260, 90)); // a drag picks and marks nothing
    EXPECT_TRUE(isDropper());
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, viewAt(260, 90));
    EXPECT_EQ(ctx.photo.selection().box(), before.box());
    EXPECT_EQ(tool.chosenColour(), QColor(photo.pixel(260, 90)));
    tool.close();
    selection.open("keySqr");
    tool.open();
    EXPECT_FALSE(ctx.flags.SelectionActive());
}

} // namespace
} // namespace lumora
