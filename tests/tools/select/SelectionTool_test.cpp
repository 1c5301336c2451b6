// The selection tools on a real photo with a real mouse: what each drag marks, and what marks nothing.
#include "tools/select/SelectionTool.h"

#include "tools/canvas/CanvasForTest.h"

#include <QShortcut>
#include <cmath>
#include <ostream>

using namespace lumora;
using test::photoLike;
using Shape = PhotoSelection::Shape;

void PrintTo(const QRect &rect, std::ostream *out) {
    *out << rect.x() << " " << rect.y() << " " << rect.width() << " " << rect.height();
}

namespace {

const QRect nothing(0, 0, 0, 0);

struct Selecting : test::Canvas {
    /// From one point of the picture to another.
    void dragOver(QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton) {
        drag(viewAt(from.x(), from.y()), viewAt(to.x(), to.y()), button);
    }
    /// Round these points of the picture with the left button down.
    void lasso(const std::vector<QPointF> &points) {
        press(viewAt(points.front().x(), points.front().y()));
        for (const QPointF &point : points) {
            move(viewAt(point.x(), point.y()));
        }
        release(viewAt(points.back().x(), points.back().y()));
    }
    bool isMarked(int x, int y) const { return photo.selection().region(photo.picCanvas().size()).contains(x, y); }
};

} // namespace

TEST_F(Selecting, choosesAToolByItsKey) {
    struct Row {
        const char *key;
        bool simple;
        PhotoSelection::Shape kind;
        const char *icon;
        int target;
    };
    const Row rows[] = {
        {"keySqr", false, Shape::Rectangle, "tool2-rectangle", 3},
        {"keyCircle", false, Shape::Ellipse, "tool2-ellipse", 3},
        {"keyLasso", false, Shape::Lasso, "tool2-lasso", 4},
        {"keySqr", true, Shape::Rectangle, "tool2-rectangle", 3},
        {"keyLasso", true, Shape::Lasso, "tool2-rectangle", 4},
        {"keyCircle", true, Shape::Ellipse, "tool2-ellipse", 3},
    };
    open(photoLike(100, 80));
    QStringList icons;
    QObject::connect(&selection, &SelectionTool::iconChanged, [&](const QString &icon) { icons << icon; });
    for (const Row &row : rows) {
        SCOPED_TRACE(row.key);
        mouse.setTool(nullptr);
        flags = ToolFlags();
        flags.SimpleModeOn = row.simple;
        PhotoSelection marked;
        marked.markEllipse({10, 10, 20, 20});
        photo.setSelection(marked);
        icons.clear();
        EXPECT_TRUE(selection.open(row.key));
        EXPECT_EQ(icons, QStringList{row.icon});
        EXPECT_EQ(target(), row.target);
        EXPECT_TRUE(flags.SelectionActive());
        EXPECT_EQ(flags.SelectionKind(), row.kind);
        EXPECT_EQ(photo.selection().box(), nothing);
        EXPECT_EQ(mouse.tool(), &selection);
    }
    mouse.setTool(nullptr);
    flags.endSelection();
    icons.clear();
    EXPECT_FALSE(selection.open("keyRotate1"));
    EXPECT_TRUE(icons.isEmpty());
    EXPECT_FALSE(flags.SelectionActive());
    EXPECT_EQ(mouse.tool(), nullptr);
}

/// An effect drops the selection while its tool stays the mouse's.
TEST_F(Selecting, marksAgainAfterAnEffectHasDroppedTheSelection) {
    open(photoLike(100, 80), 100);
    for (const char *key : {"keySqr", "keyCircle", "keyLasso"}) {
        selection.open(key);
        flags.endSelection();
        lasso({{10, 10}, {60, 10}, {10, 50}, {60, 50}});
        EXPECT_TRUE(flags.SelectionActive()) << key;
        EXPECT_FALSE(photo.selection().isEmpty()) << key;
    }
}

TEST_F(Selecting, marksTheBoxOfADrag) {
    struct Row {
        const char *what;
        QPoint from, to;
        QRect rectangle, ellipse;
    };
    const Row rows[] = {
        {"right and down", {20, 10}, {80, 50}, {20, 10, 60, 40}, {20, 10, 60, 40}},
        {"left and down", {80, 10}, {20, 50}, {20, 10, 60, 40}, {80, 10, 60, 40}},
        {"right and up", {20, 50}, {80, 10}, {20, 10, 60, 40}, {20, 50, 60, 40}},
        {"left and up", {80, 50}, {20, 10}, {20, 10, 60, 40}, {80, 50, 60, 40}},
        {"beyond right and bottom", {60, 70}, {150, 115}, {60, 70, 40, 10}, {60, 70, 40, 10}},
        {"beyond left and top", {60, 70}, {-8, -9}, {0, 0, 60, 70}, {60, 70, 60, 70}},
        {"in from the table", {-8, -9}, {30, 20}, {0, 0, 30, 20}, {0, 0, 30, 20}},
        {"across the whole photo", {-8, -9}, {108, 89}, {0, 0, 100, 80}, {0, 0, 100, 80}},
        {"on the table only", {-30, 10}, {-10, 60}, nothing, nothing},
        {"without height", {20, 10}, {80, 10}, nothing, nothing},
        {"a click", {20, 10}, {20, 10}, nothing, nothing},
    };
    for (const int zoom : {100, 200, 50}) {
        open(photoLike(100, 80), zoom);
        for (const Row &row : rows) {
            for (const char *key : {"keySqr", "keyCircle"}) {
                SCOPED_TRACE(testing::Message() << row.what << " " << key << " " << zoom);
                if (zoom == 50 && (row.from.x() % 2 + row.from.y() % 2 + row.to.x() % 2 + row.to.y() % 2) != 0) {
                    continue; // between the view's pixels
                }
                const bool round = QString(key) == "keyCircle";
                selection.open(key);
                dragOver(row.from, row.to);
                const QRect expected = round ? row.ellipse : row.rectangle;
                EXPECT_EQ(photo.selection().box(), expected);
                EXPECT_EQ(photo.selection().shape(), expected == nothing ? Shape::None
                                                     : round             ? Shape::Ellipse
                                                                         : Shape::Rectangle);
                EXPECT_EQ(photo.selection().isShown(), expected != nothing);
                // Without the button nothing changes any more.
                move(viewAt(50, 40));
                EXPECT_EQ(photo.selection().box(), expected);
                // Another click unmarks; the right button does nothing.
                dragOver({40, 30}, {70, 60}, Qt::RightButton);
                EXPECT_EQ(photo.selection().box(), expected);
                drag(viewAt(50, 40), viewAt(50, 40) + QPoint(1, 1));
                EXPECT_EQ(photo.selection().box(), nothing);
            }
        }
    }
}

TEST_F(Selecting, shiftMakesSquaresAndCircles) {
    open(photoLike(100, 80), 100);
    const struct {
        const char *key;
        QPoint from, to;
        QRect box;
    } rows[] = {{"keySqr", {20, 10}, {50, 30}, {20, 10, 30, 30}},
                {"keySqr", {50, 60}, {45, 20}, {10, 20, 40, 40}},
                {"keySqr", {20, 50}, {90, 60}, {20, 50, 30, 30}},
                {"keyCircle", {20, 10}, {50, 30}, {20, 10, 30, 30}},
                {"keyCircle", {50, 40}, {20, 30}, {50, 40, 30, 30}}};
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << row.key << ' ' << row.from.x() << ' ' << row.to.x());
        selection.open(row.key);
        press(viewAt(row.from.x(), row.from.y()));
        move(viewAt(row.to.x(), row.to.y()), Qt::ShiftModifier);
        EXPECT_EQ(photo.selection().box(), row.box);
        release(viewAt(row.to.x(), row.to.y()));
    }
}

TEST_F(Selecting, marksWhileTheMouseMoves) {
    open(photoLike(100, 80), 200);
    for (const char *key : {"keySqr", "keyCircle"}) {
        selection.open(key);
        press(viewAt(10, 10));
        EXPECT_EQ(photo.selection().box(), nothing);
        move(viewAt(60, 50));
        EXPECT_EQ(photo.selection().box(), QRect(10, 10, 50, 40));
        move(viewAt(61, 12));
        EXPECT_EQ(photo.selection().box(), QRect(10, 10, 51, 2));
        move(viewAt(10, 10)); // back again: once it is a drag it may be of any size
        EXPECT_EQ(photo.selection().box(), nothing);
        move(viewAt(11, 11));
        EXPECT_EQ(photo.selection().box(), QRect(10, 10, 1, 1));
        release(viewAt(11, 11));
        EXPECT_EQ(photo.selection().box(), QRect(10, 10, 1, 1));
    }
}

TEST_F(Selecting, aLassoMarksWhatItGoesRound) {
    open(photoLike(100, 80), 200);
    selection.open("keyLasso");
    lasso({{10, 10}, {60, 10}, {10, 60}});
    EXPECT_EQ(photo.selection().shape(), Shape::Lasso);
    EXPECT_EQ(photo.selection().box(), QRect(10, 10, 50, 50));
    ASSERT_EQ(photo.selection().lassoPoints().size(), 3u);
    EXPECT_TRUE(isMarked(12, 12) && isMarked(33, 34));
    EXPECT_FALSE(isMarked(40, 40) || isMarked(9, 12) || isMarked(61, 10));

    // It crosses itself: both halves of the bow, and a circled place twice over.
    lasso({{10, 10}, {60, 50}, {60, 10}, {10, 50}});
    EXPECT_TRUE(isMarked(12, 30) && isMarked(58, 30));
    EXPECT_FALSE(isMarked(35, 12) || isMarked(35, 48));
    lasso({{10, 10}, {60, 10}, {60, 60}, {10, 60}, {10, 10}, {60, 10}, {60, 60}, {10, 60}});
    EXPECT_TRUE(isMarked(30, 30));

    // Beyond the photo it follows the edge.
    lasso({{50, 40}, {130, 40}, {130, 110}, {50, 110}});
    EXPECT_EQ(photo.selection().box(), QRect(50, 40, 50, 40));
    EXPECT_TRUE(isMarked(99, 79));

    lasso({{30, 30}, {30, 30}}); // a click
    EXPECT_EQ(photo.selection().shape(), Shape::None);
    lasso({{30, 30}, {60, 60}}); // a stroke
    EXPECT_EQ(photo.selection().shape(), Shape::None);
    press(viewAt(30, 30), Qt::RightButton);
    move(viewAt(60, 30));
    move(viewAt(60, 60));
    release(viewAt(60, 60), Qt::RightButton);
    EXPECT_EQ(photo.selection().shape(), Shape::None);
}

TEST_F(Selecting, aLassoOfThirtyThousandPoints) {
    open(photoLike(400, 300));
    selection.open("keyLasso");
    constexpr int count = 30'000;
    const auto point = [](int i) { // round and round, nearer each time
        const double radius = 140 - i * 100.0 / count;
        return QPoint(int(200 + radius * std::cos(i * 0.4)), int(150 + radius * std::sin(i * 0.4)));
    };
    press(point(0));
    for (int i = 1; i < count; ++i) {
        move(point(i));
    }
    EXPECT_EQ(photo.selection().shape(), Shape::None); // until it is closed
    release(point(count - 1));
    EXPECT_GT(photo.selection().lassoPoints().size(), 29'000u);
    EXPECT_TRUE(isMarked(200, 150) && isMarked(330, 150));
    EXPECT_FALSE(isMarked(5, 5));
}

TEST_F(Selecting, escapeClearsAndEndsADrag) {
    open(photoLike(100, 80), 200);
    int shortcuts = 0;
    QShortcut escape(Qt::Key_Escape, &view);
    QObject::connect(&escape, &QShortcut::activated, [&] { ++shortcuts; });
    view.activateWindow();
    view.setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    for (const char *key : {"keySqr", "keyCircle", "keyLasso"}) {
        SCOPED_TRACE(key);
        selection.open(key);
        lasso({{10, 10}, {60, 10}, {60, 60}});
        ASSERT_FALSE(photo.selection().isEmpty());
        QTest::keyClick(&view, Qt::Key_Escape);
        EXPECT_TRUE(photo.selection().isEmpty());
        EXPECT_TRUE(flags.SelectionActive());

        press(viewAt(10, 10));
        move(viewAt(60, 10));
        move(viewAt(60, 60));
        QTest::keyClick(&view, Qt::Key_Escape);
        move(viewAt(20, 60));
        release(viewAt(20, 60));
        EXPECT_TRUE(photo.selection().isEmpty());
        lasso({{10, 10}, {60, 10}, {60, 60}}); // the next drag starts again
        EXPECT_FALSE(photo.selection().isEmpty());
    }
    EXPECT_EQ(shortcuts, 0);
    mouse.clearMarked();
    QTest::keyClick(&view, Qt::Key_Escape); // nothing to clear: left to the window
    EXPECT_EQ(shortcuts, 1);
}

TEST_F(Selecting, aDragEndsWithItsPhotoAndItsTool) {
    open(photoLike(100, 80), 200);
    ASSERT_TRUE(photo.changePhoto(photoLike(60, 70)));
    for (const char *key : {"keySqr", "keyCircle", "keyLasso"}) {
        SCOPED_TRACE(key);
        for (const auto &end : {std::function<void()>([this] { photo.PerformUndo(); }),
                                std::function<void()>([this] { mouse.setTool(nullptr); })}) {
            selection.open(key);
            press(viewAt(10, 10));
            move(viewAt(40, 20));
            move(viewAt(40, 40));
            end();
            const QRect left = photo.selection().box();
            move(viewAt(20, 50));
            release(viewAt(20, 50));
            EXPECT_EQ(photo.selection().box(), left);
            photo.PerformRedo();
        }
    }
    // Without a tool nothing is marked.
    mouse.clearMarked();
    dragOver({10, 10}, {40, 40});
    EXPECT_TRUE(photo.selection().isEmpty());
}

TEST_F(Selecting, marksOnWhileTheEdgeScrolls) {
    open(photoLike(3000, 2000));
    for (const char *key : {"keySqr", "keyCircle"}) {
        SCOPED_TRACE(key);
        scrollTo(1000, 700);
        selection.open(key);
        press({100, 100});
        move({500, 120}); // beyond the view, and there it rests
        ASSERT_TRUE(QTest::qWaitFor([this] { return view.horizontalScrollBar()->value() > 1100; }));
        EXPECT_EQ(photo.selection().box(), QRect(1100, 800, 400 + view.horizontalScrollBar()->value() - 1000, 20));
        release({500, 120});
        const QRect marked = photo.selection().box();
        QTest::qWait(60);
        EXPECT_EQ(photo.selection().box(), marked);
    }
    scrollTo(2500, 700); // on to the end of the photo and no farther
    press({100, 100});
    move({900, 150});
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return view.horizontalScrollBar()->value() == view.horizontalScrollBar()->maximum(); }));
    EXPECT_EQ(photo.selection().box(), QRect(2600, 800, 400, 50));
    release({900, 150});
}
