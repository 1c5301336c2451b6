// The pointer that the arrow keys lead: how far it goes, what the photo does at the view's edge, what a tool is told.
#include "tools/canvas/KeyboardPointer.h"

#include "tools/canvas/CanvasForTest.h"
#include "tools/canvas/CanvasTool.h"

#include <QKeyEvent>

using namespace lumora;
using test::photoLike;

namespace {

/// Records what the pointer did, with the picture's pixels.
struct PointedTool : CanvasTool {
    void note(const char *what, const PointerEvent &at) {
        told << QString("%1 %2 %3").arg(what).arg(at.picture.x()).arg(at.picture.y());
    }
    void press(const PointerEvent &at) override {
        note("press", at);
        dragging = drags;
    }
    void move(const PointerEvent &at) override { note(at.buttons & Qt::LeftButton ? "drag" : "move", at); }
    void release(const PointerEvent &at) override {
        note("release", at);
        dragging = false;
    }
    void clicked(QPoint pixel) override { told << QString("click %1 %2").arg(pixel.x()).arg(pixel.y()); }
    bool endsAt(QPoint picture) const override { return picture.x() > endsBeyond; }
    bool hasKeyboardPointer() const override { return true; }
    bool isDragging() const override { return dragging; }
    bool wantsKey(const QKeyEvent &key) const override {
        return key.key() == Qt::Key_Escape || key.key() == Qt::Key_Return;
    }
    void keyPress(const QKeyEvent &key) override {
        told << (key.key() == Qt::Key_Escape ? "escape" : "own enter");
        dragging = false;
    }

    QStringList told;
    bool drags = false;
    bool dragging = false;
    int endsBeyond = 1'000'000;
};

struct Pointed : test::Canvas {
    Pointed() { open(photoLike(200, 100)); }
    ~Pointed() override { mouse.setTool(nullptr); }
    /// What the tool is told of that key.
    QStringList key(Qt::Key which, Qt::KeyboardModifiers held = {}) {
        tool.told.clear();
        QTest::keyClick(&view, which, held);
        return tool.told;
    }

    CanvasMouse mouse{photo, flags, view};
    PointedTool tool;
};

} // namespace

TEST_F(Pointed, goesWhereTheArrowsLeadIt) {
    mouse.setTool(&tool);
    EXPECT_EQ(key(Qt::Key_Return), QStringList("own enter")) << "as long as no arrow key was pressed";
    EXPECT_EQ(key(Qt::Key_Right), QStringList("move 100 50")) << "begins in the middle";
    EXPECT_TRUE(mouse.isLedByKeys());
    EXPECT_EQ(key(Qt::Key_Right), QStringList("move 108 50"));
    EXPECT_EQ(key(Qt::Key_Up, Qt::ControlModifier), QStringList("move 108 49"));
    EXPECT_EQ(key(Qt::Key_Left, Qt::ShiftModifier), QStringList("move 28 49"));
    zoomTo(200);
    EXPECT_EQ(key(Qt::Key_Down), QStringList("move 28 53")) << "stays on the photo, a step is of the screen";
    EXPECT_EQ(key(Qt::Key_Return), QStringList({"press 28 53", "release 28 53", "click 28 53"}));
    move({5, 5});
    EXPECT_FALSE(mouse.isLedByKeys()) << "the mouse has it again";
}

TEST_F(Pointed, dragsFromEnterToEnter) {
    tool.drags = true;
    mouse.setTool(&tool);
    key(Qt::Key_Right);
    EXPECT_EQ(key(Qt::Key_Return), QStringList("press 100 50"));
    EXPECT_EQ(key(Qt::Key_Right), QStringList("drag 108 50"));
    EXPECT_EQ(key(Qt::Key_Return), QStringList({"release 108 50", "click 108 50"}));
    EXPECT_EQ(key(Qt::Key_Return), QStringList("press 108 50"));
    EXPECT_EQ(key(Qt::Key_Escape), QStringList({"escape", "release 108 50"})) << "every press is followed by a release";
    EXPECT_EQ(key(Qt::Key_Right), QStringList("move 116 50"));
}

TEST_F(Pointed, scrollsThePhotoAtTheEdge) {
    open(photoLike(3000, 2000));
    scrollTo(0, 0);
    mouse.setTool(&tool);
    key(Qt::Key_Right);
    for (int i = 0; i < 60; ++i) {
        key(Qt::Key_Right, Qt::ShiftModifier);
    }
    EXPECT_EQ(view.horizontalScrollBar()->value(), view.horizontalScrollBar()->maximum());
    EXPECT_TRUE(tool.told.join(' ').startsWith("move 2999 ")) << "and no farther than the view";
    EXPECT_EQ(view.verticalScrollBar()->value(), 0);
}

TEST_F(Pointed, endsWithItsTool) {
    tool.endsBeyond = 104;
    mouse.setTool(&tool);
    QObject::connect(&mouse, &CanvasMouse::arrowWanted, &mouse, [this] { mouse.setTool(nullptr); });
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    EXPECT_TRUE(key(Qt::Key_Return).isEmpty()) << "the press has ended the tool, which gets no release";
    EXPECT_FALSE(mouse.isLedByKeys());
    EXPECT_TRUE(key(Qt::Key_Right).isEmpty());
}
