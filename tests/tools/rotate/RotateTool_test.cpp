// Rotating the photo: flip and rotate by 90 degrees with previews, free rotation by hand with real mouse and key
// events, and undo.
#include "tools/rotate/RotateTool.h"

#include "imaging/transforms/RotatedExtent.h"
#include "imaging/transforms/Transform.h"
#include "session/AppContext.h"
#include "tools/canvas/CanvasForTest.h"
#include "widgets/FloatingToolbar.h"

#include <QAbstractButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <cmath>

namespace lumora {
namespace {

struct RotateToolTest : testing::Test {
    RotateToolTest() {
        window.resize(600, 500);
        view.setGeometry(0, 0, 600, 500);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    }
    ~RotateToolTest() override { mouse.setTool(nullptr); }
    void open(const QImage &picture) {
        ctx.photo.openPicture({.picture = picture, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
    }
    const QImage &photo() { return ctx.photo.picCanvas(); }
    int steps() { return ctx.photo.history().undoSteps(); }

    void startByHand() { rotate.open("keyRotate4"); }
    /// The pointer position that rotates by that many degrees from the grabbed point.
    QPoint turnedBy(QPointF grabbed, double degrees) {
        const QPointF from = grabbed - hand.pivot();
        const double angle = degrees * M_PI / 180;
        return (hand.pivot() + QPointF(from.x() * std::cos(angle) - from.y() * std::sin(angle),
                                       from.x() * std::sin(angle) + from.y() * std::cos(angle)))
            .toPoint();
    }
    void moveTo(QPoint where, Qt::KeyboardModifiers keys = {}) {
        QMouseEvent event(QEvent::MouseMove, where, view.viewport()->mapToGlobal(where), Qt::NoButton, Qt::LeftButton,
                          keys);
        QCoreApplication::sendEvent(view.viewport(), &event);
    }
    void dragHandle(double degrees, Qt::KeyboardModifiers keys = {}, bool letGo = true) {
        const QPoint from = hand.handle().toPoint();
        const QPoint to = turnedBy(from, degrees);
        QTest::mousePress(view.viewport(), Qt::LeftButton, {}, from);
        moveTo((from + to) / 2, keys);
        moveTo(to, keys);
        if (letGo) {
            QTest::mouseRelease(view.viewport(), Qt::LeftButton, keys, to);
        }
    }
    /// Draws a line of that direction and length through the middle of the view.
    void drawLine(double degrees, double length = 300, bool letGo = true) {
        const double angle = degrees * M_PI / 180;
        const QPointF half = length / 2 * QPointF(std::cos(angle), std::sin(angle));
        const QPointF middle = QRectF(view.viewport()->rect()).center();
        QTest::mousePress(view.viewport(), Qt::LeftButton, {}, (middle - half).toPoint());
        moveTo(middle.toPoint());
        moveTo((middle + half).toPoint());
        if (letGo) {
            QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, (middle + half).toPoint());
        }
    }
    QAbstractButton *button(const char *name) { return view.findChild<QAbstractButton *>(name); }
    QImage seen() { return view.viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32); }

    QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    QWidget window;
    PhotoView view{ctx.photo, &window};
    CanvasMouse mouse{ctx.photo, ctx.flags, view};
    FloatingToolbar FT2{"FT2", &window};
    RotateTool rotate{ctx, view, mouse, &FT2, &window};
    const RotateByHand &hand = rotate.byHand();
    QSignalSpy arrow{&rotate, &RotateTool::finished};
};

TEST_F(RotateToolTest, TurnsAtOnceAndBackToTheBit) {
    const struct {
        const char *key;
        QImage (*turn)(const QImage &);
    } rows[] = {{"keyRotate1", quarterTurnedAnticlockwise},
                {"keyRotate2", flippedVertically},
                {"keyRotate3", quarterTurnedClockwise},
                {"keyRotate5", mirrored}};
    for (const bool transparent : {false, true}) {
        for (const auto &row : rows) {
            SCOPED_TRACE(row.key);
            const QImage before = test::photoLike(131, 77, transparent);
            open(before);
            ctx.flags.startSelection(PhotoSelection::Shape::Lasso);
            const int stepsBefore = steps();
            rotate.open(row.key);
            EXPECT_EQ(photo(), row.turn(before));
            EXPECT_EQ(ctx.photo.picThumb(), photo());
            EXPECT_TRUE(ctx.photo.PhotoModified());
            EXPECT_FALSE(ctx.flags.SelectionActive());
            EXPECT_EQ(steps(), stepsBefore + 1);
            ctx.photo.PerformUndo();
            EXPECT_EQ(photo(), before);
            ctx.photo.PerformRedo();
            EXPECT_EQ(photo(), row.turn(before));
        }
    }
    EXPECT_EQ(arrow.count(), 8);
    EXPECT_FALSE(rotate.FreeRotateActive());
}

TEST_F(RotateToolTest, NothingHappensWithoutAPhotoOrForAnotherKey) {
    for (const char *key : {"keyRotate1", "keyRotate4", "keyOther"}) {
        rotate.open(key);
    }
    rotate.RotatePic180();
    EXPECT_TRUE(photo().isNull());
    EXPECT_FALSE(rotate.FreeRotateActive());
    open(test::photoLike(40, 30));
    const int before = steps();
    rotate.open("keyOther");
    EXPECT_EQ(steps(), before);
    EXPECT_FALSE(rotate.excludesOthers());
}

TEST_F(RotateToolTest, PreviewsShowWhatTheItemsDo) {
    for (const char *key : {"keyRotate1", "keyRotate2", "keyRotate3", "keyRotate4", "keyRotate5"}) {
        FT2.addItem(key, "tool5");
    }
    const auto preview = [&](const char *key) {
        QImage picture = FT2.item(key)->picture().toImage().convertToFormat(QImage::Format_RGB32);
        picture.setDevicePixelRatio(1);
        return picture;
    };
    rotate.CreateTHMRorationSFX();
    EXPECT_TRUE(FT2.item("keyRotate1")->picture().isNull());
    const struct {
        QSize photo, preview;
    } rows[] = {{{600, 400}, {120, 80}},
                {{400, 600}, {80, 120}},
                {{300, 300}, {120, 120}},
                {{60, 20}, {120, 40}},
                {{1000, 10}, {120, 1}}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.photo.width());
        open(test::photoLike(row.photo.width(), row.photo.height()));
        rotate.CreateTHMRorationSFX();
        const QImage upright = flippedVertically(preview("keyRotate2"));
        EXPECT_EQ(upright.size(), row.preview * view.devicePixelRatioF());
        EXPECT_EQ(preview("keyRotate1"), quarterTurnedAnticlockwise(upright));
        EXPECT_EQ(preview("keyRotate3"), quarterTurnedClockwise(upright));
        EXPECT_TRUE(FT2.item("keyRotate4")->picture().isNull());
    }
}

// --- By hand --------------------------------------------------------------------------------------------------------

TEST_F(RotateToolTest, EveryDragTurnsTheUnturnedPhoto) {
    const QImage before = test::photoLike(300, 200);
    open(before);
    const int first = steps();
    startByHand();
    dragHandle(37);
    const double one = hand.degrees();
    EXPECT_NEAR(one, 37, 0.5);
    EXPECT_EQ(photo(), rotated(before, one));
    EXPECT_EQ(photo().pixel(0, 0), 0xFFFFFFFF); // a corner that the photo does not cover any more
    dragHandle(-60);
    const double two = hand.degrees();
    EXPECT_NEAR(two, -23, 1);
    EXPECT_EQ(photo(), rotated(before, two));
    EXPECT_EQ(steps(), first + 2);
    EXPECT_TRUE(ctx.photo.PhotoModified());

    ctx.photo.PerformUndo();
    EXPECT_EQ(photo(), rotated(before, one));
    EXPECT_EQ(hand.degrees(), one);
    ctx.photo.PerformUndo();
    EXPECT_EQ(photo(), before);
    ctx.photo.PerformRedo();
    EXPECT_EQ(hand.degrees(), one);
    dragHandle(20); // undo does not make the rotated photo the new original
    EXPECT_NEAR(hand.degrees(), one + 20, 0.5);
    EXPECT_EQ(photo(), rotated(before, hand.degrees()));
    EXPECT_EQ(steps(), first + 2);
}

TEST_F(RotateToolTest, ShiftSnapsTheWholeAngle) {
    const QImage before = test::photoLike(300, 200);
    open(before);
    startByHand();
    dragHandle(11);
    dragHandle(42, Qt::ShiftModifier); // 53
    EXPECT_EQ(hand.degrees(), 60);
    EXPECT_EQ(photo(), rotated(before, 60));
    dragHandle(118, Qt::ShiftModifier); // 178
    EXPECT_EQ(std::abs(hand.degrees()), 180);
    EXPECT_EQ(photo(), halfTurned(before));
    dragHandle(-177, Qt::ShiftModifier);
    EXPECT_EQ(hand.degrees(), 0);
    EXPECT_EQ(photo(), before);
}

TEST_F(RotateToolTest, ThePhotoTurnsUnderTheHand) {
    ctx.fields.txtGrid = false;
    for (const bool transparent : {false, true}) {
        for (const int zoom : {50, 100, 170}) {
            SCOPED_TRACE(testing::Message() << zoom << (transparent ? " transparent" : ""));
            const QImage before = test::photoLike(400, 300, transparent);
            open(before);
            ctx.photo.setZoom(zoom);
            QCoreApplication::processEvents();
            startByHand();
            dragHandle(31, {}, false);
            EXPECT_EQ(photo(), before);
            const QPointF middle = hand.pivot();
            const QImage live = seen();
            QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, turnedBy(hand.handle(), 0));
            EXPECT_NE(photo(), before);
            EXPECT_LT((hand.pivot() - middle).manhattanLength(), 1.5);
            // Left of the handle both are the same, except for smoothing and the origin of the checkerboard.
            const QImage after = seen();
            const qreal devicePixels = view.devicePixelRatioF();
            QRectF part = view.photoRect().intersected(view.viewport()->rect());
            part.setRight(hand.pivot().x() - 10);
            double difference = 0;
            int compared = 0;
            for (int y = int(part.top() * devicePixels); y < int(part.bottom() * devicePixels); ++y) {
                for (int x = int(part.left() * devicePixels); x < int(part.right() * devicePixels); ++x, ++compared) {
                    difference += std::abs(qGray(live.pixel(x, y)) - qGray(after.pixel(x, y)));
                }
            }
            EXPECT_GT(compared, 5000);
            EXPECT_LT(difference / compared, transparent ? 12 : 6);
            rotate.close();
        }
    }
}

TEST_F(RotateToolTest, EscDropsTheDragAndThenEnds) {
    open(test::photoLike(300, 200));
    const QImage before = photo();
    const int first = steps();
    startByHand();
    const QImage start = seen();
    dragHandle(40, {}, false);
    EXPECT_NE(seen(), start);
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_EQ(hand.degrees(), 0);
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, turnedBy(hand.handle(), 40));
    EXPECT_EQ(photo(), before);
    EXPECT_EQ(steps(), first);
    EXPECT_TRUE(rotate.FreeRotateActive());
    EXPECT_EQ(seen(), start);
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_FALSE(rotate.FreeRotateActive());
    EXPECT_EQ(arrow.count(), 1);
}

TEST_F(RotateToolTest, ArrowKeysTurnByADegreeAsOneStep) {
    const QImage before = test::photoLike(300, 200);
    open(before);
    const int first = steps();
    startByHand();
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Up, Qt::Key_Right, Qt::Key_Right, Qt::Key_Left, Qt::Key_Down}) {
        QTest::keyClick(&view, key);
    }
    EXPECT_EQ(hand.degrees(), 2);
    EXPECT_EQ(photo(), before); // still being tried
    EXPECT_TRUE(QTest::qWaitFor([&] { return photo() != before; }));
    EXPECT_EQ(photo(), rotated(before, 2));
    EXPECT_EQ(steps(), first + 1);
    QTest::keyClick(&view, Qt::Key_Left);
    rotate.close(); // what the keys have turned is kept
    EXPECT_EQ(photo(), rotated(before, 1));
    EXPECT_EQ(steps(), first + 2);
}

// --- Straighten and cut ----------------------------------------------------------------------------------------------

TEST_F(RotateToolTest, ALineBecomesLevelOrUpright) {
    const struct {
        double line, turn;
    } rows[] = {{0, 0},  {8, -8},  {-8, 8},  {40, -40},  {-40, 40}, {50, 40},        {90, 0},
                {83, 7}, {97, -7}, {172, 8}, {-172, -8}, {-95, 5},  {-130, -50 + 90}};
    const QImage before = test::photoLike(300, 200);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.line);
        open(before);
        const int first = steps();
        startByHand();
        button("cmdStraighten")->click();
        drawLine(row.line);
        EXPECT_NEAR(hand.degrees(), row.turn, 0.3);
        EXPECT_NEAR(std::round(hand.degrees() * 10), hand.degrees() * 10, 1e-9); // what is read is what is done
        EXPECT_EQ(photo(), rotated(before, hand.degrees()));
        EXPECT_EQ(steps(), first + (hand.degrees() != 0 ? 1 : 0));
        rotate.close();
    }
}

TEST_F(RotateToolTest, FurtherLinesAddToTheAngle) {
    const QImage before = test::photoLike(300, 200);
    open(before);
    startByHand();
    dragHandle(20);
    const double byHand = hand.degrees();
    button("cmdStraighten")->click();
    drawLine(-10);
    drawLine(93);
    EXPECT_NEAR(hand.degrees(), byHand + 10 - 3, 0.6);
    EXPECT_EQ(photo(), rotated(before, hand.degrees()));
    ctx.photo.PerformUndo();
    EXPECT_NEAR(hand.degrees(), byHand + 10, 0.3);
    button("cmdStraighten")->click(); // up: the hand turns again
    dragHandle(-15);
    EXPECT_NEAR(hand.degrees(), byHand - 5, 1);
}

TEST_F(RotateToolTest, AShortLineAndEscTurnNothing) {
    QSignalSpy messages(&rotate, &RotateTool::message);
    open(test::photoLike(300, 200));
    const QImage before = photo();
    startByHand();
    button("cmdStraighten")->click();
    const QImage start = seen();
    messages.clear();
    drawLine(20, 10);
    ASSERT_EQ(messages.count(), 1);
    EXPECT_EQ(messages.first().first().toString(), ctx.texts.text("StatusLineShort"));
    drawLine(20, 300, false);
    EXPECT_NE(seen(), start); // the line
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_EQ(seen(), start);
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, QPoint(400, 300));
    EXPECT_EQ(photo(), before);
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_FALSE(button("cmdStraighten")->isChecked());
    EXPECT_TRUE(rotate.FreeRotateActive());
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_FALSE(rotate.FreeRotateActive());
}

TEST_F(RotateToolTest, TheCornersGoWithTheLastTurn) {
    for (const bool transparent : {false, true}) {
        const QImage before = test::photoLike(300, 200, transparent);
        open(before);
        const int first = steps();
        startByHand();
        button("chkCutCorners")->click();
        dragHandle(20);
        button("cmdStraighten")->click();
        drawLine(5);
        QTest::keyClick(&view, Qt::Key_Left); // still being tried
        const double degrees = hand.degrees();
        const QRect part = insideRotated(before.size(), degrees);
        EXPECT_EQ(hand.keptPart(), part);
        rotate.accept();
        EXPECT_FALSE(rotate.FreeRotateActive());
        EXPECT_EQ(photo(), rotated(before, degrees).copy(part));
        EXPECT_EQ(steps(), first + 3);
        ctx.photo.PerformUndo();
        EXPECT_EQ(photo(), rotated(before, degrees + 1)); // turn and cut were one step
        ctx.photo.PerformRedo();
        EXPECT_EQ(photo(), rotated(before, degrees).copy(part));
        while (steps() > first) {
            ctx.photo.PerformUndo();
        }
        EXPECT_EQ(photo(), before);
    }
}

TEST_F(RotateToolTest, OnlyDoneCutsAndOnlyWhatWasTurned) {
    const QImage before = test::photoLike(300, 200);
    open(before);
    const int first = steps();
    startByHand();
    button("chkCutCorners")->click();
    rotate.accept(); // not turned
    EXPECT_EQ(photo(), before);
    EXPECT_EQ(steps(), first);
    startByHand();
    EXPECT_FALSE(button("chkCutCorners")->isChecked());
    button("chkCutCorners")->click();
    dragHandle(30);
    const QImage turned = photo();
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_EQ(photo(), turned);
}

TEST_F(RotateToolTest, WhatGoesIsDimmedWhileThePhotoTurns) {
    ctx.fields.txtGrid = false;
    QImage white(300, 200, QImage::Format_RGB32);
    white.fill(Qt::white);
    open(white);
    ctx.photo.setZoom(100);
    startByHand();
    button("chkCutCorners")->click();
    dragHandle(25, {}, false);
    for (const bool letGo : {false, true}) {
        if (letGo) {
            QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, turnedBy(hand.handle(), 0));
        }
        const QImage shown = seen();
        const qreal scale = view.devicePixelRatioF();
        const QSizeF whole = rotatedExtent(white.size(), hand.degrees());
        const QPointF origin = hand.pivot() - QPointF(whole.width(), whole.height()) / 2;
        const auto grey = [&](QPointF picture) { return qGray(shown.pixel(((origin + picture) * scale).toPoint())); };
        const QRectF kept = hand.keptPart();
        EXPECT_EQ(grey(kept.topLeft() + QPointF(4, 4)), 255);
        EXPECT_EQ(grey(kept.bottomRight() - QPointF(4, 4)), 255);
        EXPECT_LT(grey(kept.topLeft() - QPointF(4, 4)), 180);
        EXPECT_LT(grey(kept.bottomRight() + QPointF(4, 4)), 180);
    }
}

TEST_F(RotateToolTest, AClickTurnsNothing) {
    open(test::photoLike(300, 200));
    const QImage before = photo();
    const int first = steps();
    startByHand();
    for (const QPoint &where : {hand.handle().toPoint(), hand.pivot().toPoint(), QPoint(5, 5)}) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, where);
        QTest::mouseClick(view.viewport(), Qt::RightButton, {}, where);
    }
    EXPECT_EQ(photo(), before);
    EXPECT_EQ(steps(), first);
}

TEST_F(RotateToolTest, EndsCleanlyFromTheMiddleOfADrag) {
    open(test::photoLike(300, 200));
    const QImage before = photo();
    const QImage plain = seen();
    const int first = steps();
    startByHand();
    EXPECT_TRUE(rotate.FreeRotateActive());
    EXPECT_TRUE(rotate.grid().GridShown());
    EXPECT_TRUE(rotate.excludesOthers());
    EXPECT_NE(view.viewport()->cursor().shape(), Qt::ArrowCursor);
    dragHandle(40, {}, false);
    mouse.setTool(nullptr); // as another tool does that becomes current
    EXPECT_FALSE(rotate.FreeRotateActive());
    EXPECT_FALSE(rotate.grid().GridShown());
    EXPECT_FALSE(rotate.excludesOthers());
    EXPECT_EQ(view.viewport()->cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(photo(), before);
    EXPECT_EQ(steps(), first);
    EXPECT_EQ(seen(), plain);
    rotate.close();
    EXPECT_FALSE(rotate.excludesOthers());
}

TEST_F(RotateToolTest, AnotherPhotoBecomesTheOriginal) {
    open(test::photoLike(300, 200));
    startByHand();
    dragHandle(25);
    dragHandle(10, {}, false);
    const QImage other = test::photoLike(250, 180);
    open(other);
    EXPECT_EQ(hand.degrees(), 0);
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_EQ(photo(), other);
    dragHandle(30);
    EXPECT_EQ(photo(), rotated(other, hand.degrees()));
}

TEST_F(RotateToolTest, TheHandleIsInViewAtEveryZoomAndScrollPosition) {
    open(test::photoLike(900, 700));
    startByHand();
    const QRectF inside = QRectF(view.viewport()->rect()).adjusted(8, 8, -8, -8);
    for (const int zoom : {3, 50, 100, 400}) {
        ctx.photo.setZoom(zoom);
        QCoreApplication::processEvents();
        view.horizontalScrollBar()->setValue(0);
        view.verticalScrollBar()->setValue(0);
        EXPECT_TRUE(inside.contains(hand.handle())) << zoom;
    }
}

} // namespace
} // namespace lumora
