// A click takes, the next one lets go. The events are those of the window system: to the window, not to its widgets.
#include "widgets/ClickMoveClick.h"

#include "widgets/Theme.h"

#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QSlider>
#include <QStyle>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

namespace lumora {
namespace {

/// Notes what it gets: "press", "move" with the held button, "release".
class DraggedWidget : public QWidget {
  public:
    using QWidget::QWidget;
    QStringList got;

  protected:
    void mousePressEvent(QMouseEvent *) override { got << "press"; }
    void mouseMoveEvent(QMouseEvent *event) override {
        got << QString("move %1,%2%3")
                   .arg(event->position().x())
                   .arg(event->position().y())
                   .arg(event->buttons() & Qt::LeftButton ? " held" : "");
    }
    void mouseReleaseEvent(QMouseEvent *event) override {
        got << QString("release %1,%2").arg(event->position().x()).arg(event->position().y());
    }
};

class ClickMove : public testing::Test {
  protected:
    void SetUp() override {
        window.resize(400, 300);
        dragged.setGeometry(0, 0, 200, 200);
        setDraggable(dragged, true);
        other.setGeometry(220, 20, 100, 40);
        slider.setGeometry(20, 240, 300, 40);
        slider.setRange(0, 100);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        ClickMoveClick::setOn(true);
    }
    void TearDown() override { ClickMoveClick::setOn(false); }

    void click(QPoint at) { QTest::mouseClick(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, at); }
    void move(QPoint at) { QTest::mouseMove(window.windowHandle(), at); }

    QWidget window;
    DraggedWidget dragged{&window};
    QPushButton other{"Other", &window};
    QSlider slider{Qt::Horizontal, &window};
};

TEST_F(ClickMove, ASecondClickLetsGoWhatTheFirstHasTaken) {
    click({50, 50});
    EXPECT_TRUE(ClickMoveClick::isHolding());
    move({90, 70});
    move({250, 40}); // over the button, which does not see it
    click({150, 120});
    EXPECT_FALSE(ClickMoveClick::isHolding());
    EXPECT_EQ(dragged.got.first(), "press");
    EXPECT_TRUE(dragged.got.contains("move 90,70 held"));
    EXPECT_TRUE(dragged.got.contains("move 250,40 held"));
    EXPECT_EQ(dragged.got.mid(dragged.got.size() - 2), QStringList({"move 150,120 held", "release 150,120"}));
    EXPECT_EQ(dragged.got.filter("press").size(), 1);
    EXPECT_EQ(dragged.got.filter("release").size(), 1);
}

TEST_F(ClickMove, EscPutsItBack) {
    click({50, 50});
    move({90, 70});
    QTest::keyClick(window.windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(ClickMoveClick::isHolding());
    EXPECT_EQ(dragged.got.mid(dragged.got.size() - 2), QStringList({"move 50,50 held", "release 50,50"}));
    QTest::keyClick(window.windowHandle(), Qt::Key_Escape);
    EXPECT_EQ(dragged.got.filter("release").size(), 1);
}

TEST_F(ClickMove, ADragStaysOneAndOtherControlsAreClicked) {
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, {50, 50});
    move({150, 50});
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, {150, 50});
    EXPECT_FALSE(ClickMoveClick::isHolding());
    EXPECT_EQ(dragged.got.last(), "release 150,50");
    int clicks = 0;
    QObject::connect(&other, &QPushButton::clicked, &other, [&] { ++clicks; });
    click(other.geometry().center());
    EXPECT_FALSE(ClickMoveClick::isHolding());
    EXPECT_EQ(clicks, 1);
    setDraggable(dragged, false);
    click({50, 50});
    EXPECT_FALSE(ClickMoveClick::isHolding());
}

TEST_F(ClickMove, ASliderIsTakenByItsHandleAndSetByItsGroove) {
    applyTheme(*qApp);
    click({170, 260});
    EXPECT_FALSE(ClickMoveClick::isHolding());
    EXPECT_NEAR(slider.value(), 50, 2);
    click({170, 260});
    EXPECT_TRUE(ClickMoveClick::isHolding());
    move({300, 100});
    EXPECT_GT(slider.value(), 90);
    click({50, 260});
    EXPECT_LT(slider.value(), 15);
    move({250, 260});
    EXPECT_LT(slider.value(), 15);
}

TEST_F(ClickMove, OffLetsGoAndLeavesNothing) {
    click({50, 50});
    move({90, 70});
    ClickMoveClick::setOn(false);
    EXPECT_EQ(dragged.got.last(), "release 90,70");
    click({50, 50});
    move({90, 70});
    EXPECT_EQ(dragged.got.last(), "release 50,50");
}

} // namespace
} // namespace lumora
