// The mouse dispatch: exact points at every zoom, scroll position and device pixel ratio, the pointer's pictures, the
// order of mouse-up, and the events of the current tool.
#include "tools/canvas/CanvasMouse.h"

#include "tools/canvas/CanvasForTest.h"
#include "tools/canvas/CanvasTool.h"

#include <QKeyEvent>
#include <QPainter>
#include <QShortcut>
#include <cmath>

using namespace lumora;
using test::photoLike;

namespace {

struct Mouse : test::Canvas {};

/// Records its events.
struct Listener : CanvasTool {
    void start() override { told << "start"; }
    void end() override { told << "end"; }
    void press(const PointerEvent &) override { told << "press"; }
    void move(const PointerEvent &event) override {
        told << "move";
        last = event.picture;
    }
    void release(const PointerEvent &) override { told << "release"; }
    void clicked(QPoint pixel) override {
        clickedAt = pixel;
        afterRelease = told.endsWith("release");
    }
    bool endsAt(QPoint picture) const override { return picture.x() > endsBeyond; }
    void doubleClick(const PointerEvent &) override { told << "double click"; }
    bool scrollsAtEdge() const override { return scrolls; }
    bool wantsKey(const QKeyEvent &key) const override { return key.key() == wanted; }
    void keyPress(const QKeyEvent &) override { told << "key"; }
    void paint(QPainter &painter) override { painter.fillRect(0, 0, 3, 3, QColor(1, 2, 3)); }

    QStringList told;
    QPointF last;
    QPoint clickedAt;
    bool afterRelease = false;
    int endsBeyond = 1'000'000;
    int wanted = 0;
    bool scrolls = false;
};

} // namespace

TEST_F(Mouse, pointsReachThePicturesPixelsExactly) {
    open(photoLike(1100, 900));
    const double devicePixels = view.devicePixelRatioF();
    for (const int zoom : {25, 33, 50, 75, 100, 110, 150, 200, 300, 400}) {
        zoomTo(zoom);
        for (const double part : {0.0, 0.31, 0.5, 1.0}) {
            scrollAlong(part);
            // Where the photo begins, in device pixels, computed without the view.
            const auto origin = [&](const QScrollBar *bar, int length, int pixels) {
                const int whole = qRound(pixels * zoom / 100.0 * devicePixels);
                return bar->maximum() > 0 ? -qRound(bar->value() * devicePixels)
                                          : (qRound(length * devicePixels) - whole) / 2;
            };
            const QSize inner = view.viewport()->size();
            const int left = origin(view.horizontalScrollBar(), inner.width(), 1100);
            const int top = origin(view.verticalScrollBar(), inner.height(), 900);
            const auto pixel = [&](double viewPixel, int from) {
                return int(std::floor((viewPixel * devicePixels - from) * 100 / zoom / devicePixels + 0.5));
            };
            for (const QPoint point : {QPoint(1, 1), QPoint(57, 203), QPoint(198, 149), QPoint(381, 280)}) {
                SCOPED_TRACE(testing::Message() << zoom << " % at " << part << ", " << point.x() << " " << point.y());
                const QPoint there(pixel(point.x(), left), pixel(point.y(), top));
                press(point);
                EXPECT_EQ(mouse.SelStart(), point);
                EXPECT_EQ(mouse.SelEnd(), point);
                EXPECT_EQ(mouse.SelStartPic(), there);
                EXPECT_EQ(mouse.SelEndPic(), there);
                move(point + QPoint(9, 5));
                EXPECT_EQ(mouse.SelStart(), point);
                EXPECT_EQ(mouse.SelEnd(), point + QPoint(9, 5));
                release(point + QPoint(9, 5));
                move(point + QPoint(2, 2)); // no button is down
                EXPECT_EQ(mouse.SelEnd(), point + QPoint(9, 5));
            }
        }
    }
}

TEST_F(Mouse, pointsAreExactOnFinerScreensToo) {
    for (const char *scale : {"1.25", "1.5", "2"}) {
        test::passesAtScale("Mouse.pointsReachThePicturesPixelsExactly", scale);
    }
}

TEST_F(Mouse, roundsHalvesTheSameWayEverywhere) {
    EXPECT_EQ(CanvasMouse::rounded({-2.5, -1.5}), QPoint(-2, -1));
    EXPECT_EQ(CanvasMouse::rounded({2.5, 1.5}), QPoint(3, 2));
    EXPECT_EQ(CanvasMouse::rounded({0.49, -0.51}), QPoint(0, -1));
}

TEST_F(Mouse, movesTheEllipsesEndOnlyForTheEllipse) {
    open(photoLike(100, 80), 200);
    using Shape = PhotoSelection::Shape;
    for (const Shape kind : {Shape::None, Shape::Rectangle, Shape::Ellipse, Shape::Lasso}) {
        for (const bool active : {false, true}) {
            flags.startSelection(kind);
            if (!active) {
                flags.endSelection();
            }
            press(viewAt(20, 30));
            move(viewAt(60, 50));
            EXPECT_EQ(mouse.SelStartPic(), QPoint(20, 30));
            EXPECT_EQ(mouse.SelEndPic(), active && kind == Shape::Ellipse ? QPoint(60, 50) : QPoint(20, 30))
                << int(kind);
            release(viewAt(60, 50));
        }
    }
}

TEST_F(Mouse, showsThePointerOfTheSelectionTool) {
    open(photoLike(100, 80));
    using Shape = PhotoSelection::Shape;
    const struct {
        const char *what;
        bool active;
        Shape kind;
        int afterDown, afterRightDown, afterMove; // images of picTarget; a move leaves 5 by default
    } rows[] = {
        {"arrow", false, Shape::None, 5, 5, 5},         {"a kind alone", false, Shape::Ellipse, 5, 5, 5},
        {"rectangle", true, Shape::Rectangle, 5, 5, 3}, {"ellipse", true, Shape::Ellipse, 3, 5, 3},
        {"lasso", true, Shape::Lasso, 5, 5, 3},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.what);
        mouse.setTool(nullptr);
        EXPECT_EQ(target(), 0);
        flags.startSelection(row.kind);
        if (!row.active) {
            flags.endSelection();
        }
        press({200, 150}, Qt::RightButton);
        EXPECT_EQ(target(), row.afterRightDown);
        release({200, 150}, Qt::RightButton);
        press({200, 150});
        EXPECT_EQ(target(), row.afterDown);
        move({205, 153});
        EXPECT_EQ(target(), row.afterMove);
        release({205, 153});
        EXPECT_EQ(target(), row.afterMove);
    }
}

TEST_F(Mouse, pointersAreSharpAndPointWithTheirPoint) {
    for (const double devicePixels : {1.0, 2.0}) {
        for (int image = 1; image <= 6; ++image) {
            const QCursor cursor = targetCursor(image, devicePixels);
            const QImage drawn = cursor.pixmap().toImage();
            ASSERT_EQ(drawn.size(), QSize(32, 32) * devicePixels) << image;
            EXPECT_EQ(cursor.pixmap().devicePixelRatio(), devicePixels);
            // The drawing reaches the hot spot: at most two pixels of a point are nothing but its white border.
            const QRect around(cursor.hotSpot() - QPoint(2, 2), QSize(5, 5));
            bool ink = false;
            for (int y = around.top(); y <= around.bottom(); ++y) {
                for (int x = around.left(); x <= around.right(); ++x) {
                    ink = ink || qAlpha(drawn.pixel(QPoint(x, y) * devicePixels)) > 128;
                }
            }
            EXPECT_TRUE(ink) << image;
        }
    }
    EXPECT_EQ(targetCursor(7, 1).shape(), Qt::ArrowCursor);
}

TEST_F(Mouse, aPressEndsAToolThatRequestsIt) {
    open(photoLike(100, 80), 200);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
        for (const int x : {30, 70}) {
            Listener tool;
            tool.endsBeyond = 50;
            mouse.setTool(&tool);
            PhotoSelection marked;
            marked.markRectangle({10, 10, 20, 20});
            photo.setSelection(marked);
            int arrows = 0;
            const auto arrow = QObject::connect(&mouse, &CanvasMouse::arrowWanted, [&] { ++arrows; });
            press(viewAt(x, 40), button);
            release(viewAt(x, 40), button);
            EXPECT_EQ(arrows, x > 50 ? 1 : 0);
            EXPECT_EQ(photo.selection().isEmpty(), x > 50);
            EXPECT_EQ(tool.told.contains("press"), x <= 50 && button == Qt::LeftButton);
            QObject::disconnect(arrow);
            mouse.setTool(nullptr);
        }
    }
}

TEST_F(Mouse, aClickFollowsTheReleaseAndNamesThePixel) {
    open(photoLike(100, 80), 200);
    Listener tool;
    mouse.setTool(&tool);
    const QPoint where = viewAt(99, 79) + QPoint(1, 1); // the last pixel's second half
    press(where, Qt::RightButton);
    release(where, Qt::RightButton);
    EXPECT_TRUE(tool.clickedAt.isNull());
    press(where);
    release(where);
    EXPECT_EQ(tool.clickedAt, QPoint(99, 79));
    EXPECT_TRUE(tool.afterRelease);
    mouse.setTool(nullptr);
}

TEST_F(Mouse, notifiesOnlyTheCurrentTool) {
    open(photoLike(100, 80));
    Listener first, second;
    int tips = 0;
    QObject::connect(&mouse, &CanvasMouse::moved, [&] { ++tips; });
    move({100, 100}); // no tool is current
    EXPECT_EQ(tips, 1);
    mouse.setTool(&first);
    move({101, 100});
    drag({150, 120}, {160, 140}, Qt::RightButton);
    drag({150, 120}, {160, 140});
    mouse.setTool(&second);
    press({170, 120});
    release({170, 120});
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, {170, 120});
    release({170, 120});
    EXPECT_EQ(view.viewport()->grab().toImage().pixel(1, 1), qRgb(1, 2, 3));
    mouse.setTool(nullptr);
    EXPECT_NE(view.viewport()->grab().toImage().pixel(1, 1), qRgb(1, 2, 3));
    drag({150, 120}, {160, 140});
    EXPECT_EQ(first.told, QStringList({"start", "move", "move", "move", "press", "move", "move", "release", "end"}));
    EXPECT_EQ(second.told, QStringList({"start", "press", "release", "double click", "release", "end"}));
}

TEST_F(Mouse, everyDragEnds) {
    open(photoLike(100, 80));
    Listener tool;
    mouse.setTool(&tool);
    tool.told.clear();
    press({150, 120});
    press({155, 120}, Qt::RightButton);
    EXPECT_EQ(mouse.SelStart(), QPoint(150, 120)); // the other button is ignored
    release({155, 120}, Qt::RightButton);
    QMouseEvent lost(QEvent::MouseMove, QPointF(160, 130), view.viewport()->mapToGlobal(QPointF(160, 130)),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &lost);
    EXPECT_EQ(tool.told, QStringList({"press", "release", "move"}));
    release({160, 130}); // late
    EXPECT_EQ(tool.told.count("release"), 1);

    press({150, 120});
    mouse.setTool(nullptr);
    tool.told.clear();
    move({160, 130});
    release({160, 130});
    EXPECT_TRUE(tool.told.isEmpty());
}

TEST_F(Mouse, scrollsWhileADragRestsAtTheEdge) {
    open(photoLike(3000, 2000));
    Listener tool;
    mouse.setTool(&tool);
    const auto place = [&] { return QPoint(view.horizontalScrollBar()->value(), view.verticalScrollBar()->value()); };
    struct Row {
        QPoint from, to;
        QPoint way; // signs
    };
    const Row rows[] = {
        {{200, 150}, {398, 150}, {1, 0}}, {{200, 150}, {2, 150}, {-1, 0}},  {{200, 150}, {200, 320}, {0, 1}},
        {{200, 150}, {200, -9}, {0, -1}}, {{200, 150}, {460, 350}, {1, 1}},
    };
    tool.scrolls = true;
    for (const Row &row : rows) {
        scrollTo(1000, 700);
        press(row.from);
        move(row.to);
        const QPoint before = place();
        const QPointF under = tool.last;
        tool.told.clear();
        ASSERT_TRUE(QTest::qWaitFor([&] { return tool.told.count("move") >= 3; }));
        const QPoint moved = place() - before;
        EXPECT_EQ(QPoint((moved.x() > 0) - (moved.x() < 0), (moved.y() > 0) - (moved.y() < 0)), row.way);
        EXPECT_EQ(tool.last, under + moved); // the tool gets the new photo position of the resting mouse
        release(row.to);
    }
    const auto stays = [&](QPoint from, QPoint to) {
        scrollTo(1000, 700);
        press(from);
        move(to);
        QTest::qWait(100);
        const bool same = place() == QPoint(1000, 700);
        release(to);
        return same;
    };
    EXPECT_TRUE(stays({3, 150}, {60, 150})); // from the edge inwards
    EXPECT_TRUE(stays({200, 150}, {300, 200}));
    tool.scrolls = false;
    EXPECT_TRUE(stays({200, 150}, {398, 150}));
    mouse.setTool(nullptr);
    QTest::qWait(50);
    EXPECT_EQ(place(), QPoint(1000, 700));
}

TEST_F(Mouse, keysGoToTheToolBeforeViewAndShortcuts) {
    open(photoLike(3000, 2000));
    Listener tool;
    int shortcuts = 0;
    QShortcut escape(Qt::Key_Escape, &view);
    QObject::connect(&escape, &QShortcut::activated, [&] { ++shortcuts; });
    view.activateWindow();
    view.setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    scrollTo(500, 500);
    mouse.setTool(&tool);
    for (const int key : {int(Qt::Key_Escape), int(Qt::Key_Down)}) {
        tool.told.clear();
        tool.wanted = 0;
        QTest::keyClick(&view, Qt::Key(key));
        EXPECT_TRUE(tool.told.isEmpty());
        tool.wanted = key;
        QTest::keyClick(&view, Qt::Key(key));
        EXPECT_EQ(tool.told, QStringList{"key"});
    }
    EXPECT_EQ(shortcuts, 1);
    EXPECT_EQ(view.verticalScrollBar()->value(), 500 + view.verticalScrollBar()->singleStep()); // once
    mouse.setTool(nullptr);
}
