// What a finger does where there is something to scroll.
#include "widgets/ClickMoveClick.h"
#include "widgets/FingerScroll.h"

#include <QApplication>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QScroller>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace lumora {
namespace {

/// One for the application, which another test's theme may have brought.
void letFingersScroll() {
    if (qApp->findChild<FingerScroll *>() == nullptr) {
        new FingerScroll(qApp);
    }
}

class FingerScrollTest : public testing::Test {
  protected:
    FingerScrollTest() {
        letFingersScroll();
        auto *column = new QWidget;
        auto *rows = new QVBoxLayout(column);
        for (QWidget *row : {static_cast<QWidget *>(m_button), static_cast<QWidget *>(m_slider), m_own}) {
            row->setFixedHeight(60);
            rows->addWidget(row);
        }
        rows->addSpacing(1000);
        m_area.setWidget(column);
        m_area.setWidgetResizable(true);
        m_area.resize(300, 300);
        setDraggable(*m_own, true);
        m_area.show();
        EXPECT_GT(m_area.verticalScrollBar()->maximum(), 0);
    }

    /// A finger is put on the widget's middle, moved by that many pixels and lifted.
    void drag(QWidget *from, QPoint by, int wait = 0) {
        const QPoint start = from->mapTo(from->window(), from->rect().center());
        const auto finger = [&] { return QTest::touchEvent(from->window()->windowHandle(), m_screen); };
        finger().press(0, start);
        QTest::qWait(wait);
        for (int step = 1; step <= 4 && !by.isNull(); ++step) {
            finger().move(0, start + by * step / 4);
            QTest::qWait(20); // it scrolls with the screen's frames
        }
        finger().release(0, start + by);
        QScroller::scroller(m_area.viewport())->stop();
    }
    int scrolled() { return m_area.verticalScrollBar()->value(); }

    QPushButton *m_button = new QPushButton;
    QSlider *m_slider = new QSlider(Qt::Horizontal);
    QWidget *m_own = new QWidget;
    QScrollArea m_area;
    QPointingDevice *m_screen = QTest::createTouchDevice();
};

TEST_F(FingerScrollTest, ScrollsWithoutPressingOrPresses) {
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    drag(m_button, {});
    EXPECT_EQ(clicked.size(), 1);
    drag(m_button, {4, -5});
    EXPECT_EQ(clicked.size(), 2) << "a finger is never quite still";
    EXPECT_EQ(scrolled(), 0);
    drag(m_button, {0, -100});
    EXPECT_NEAR(scrolled(), 100, 30);
    EXPECT_EQ(clicked.size(), 2);
    m_area.verticalScrollBar()->setValue(0);
    drag(m_button, {0, -100}, 300);
    EXPECT_NEAR(scrolled(), 100, 30) << "after a rest, too";
    EXPECT_EQ(clicked.size(), 2);
    EXPECT_FALSE(m_button->isDown());
    m_area.verticalScrollBar()->setValue(0);
    drag(m_button, {}, 300);
    EXPECT_EQ(clicked.size(), 3) << "and the next tap presses";
}

TEST_F(FingerScrollTest, LeavesWhatIsDraggedAlone) {
    drag(m_slider, {60, -60});
    EXPECT_NE(m_slider->value(), 0);
    drag(m_own, {0, -100});
    EXPECT_EQ(scrolled(), 0);
}

TEST(FingerScroll, AListIsScrolledWithoutChoosing) {
    QListWidget list;
    letFingersScroll();
    for (int row = 0; row < 100; ++row) {
        list.addItem(QString::number(row));
    }
    list.resize(200, 200);
    list.show();
    ASSERT_GT(list.verticalScrollBar()->maximum(), 0);
    QPointingDevice *screen = QTest::createTouchDevice();
    const auto finger = [&] { return QTest::touchEvent(list.windowHandle(), screen); };
    finger().press(0, {50, 150});
    for (const int y : {140, 100, 60, 20}) {
        finger().move(0, {50, y});
        QTest::qWait(20);
    }
    finger().release(0, {50, 20});
    EXPECT_GT(list.verticalScrollBar()->value(), 0);
    EXPECT_TRUE(list.selectedItems().isEmpty());
    QScroller::scroller(list.viewport())->stop();
    finger().press(0, {50, 50});
    finger().release(0, {50, 50});
    EXPECT_EQ(list.selectedItems().size(), 1);
}

} // namespace
} // namespace lumora
