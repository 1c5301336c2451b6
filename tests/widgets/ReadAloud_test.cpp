// What is said of what is pointed at, has the focus or opens.
#include "widgets/Bubble.h"
#include "widgets/PictureButton.h"
#include "widgets/ReadAloud.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QPointingDevice>
#include <QSignalSpy>
#include <QSlider>
#include <QTabBar>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora {
namespace {

constexpr int rested = ReadAloud::restTime + 200; // milliseconds

/// A window with some controls, and what is said of them.
class ReadAloudTest : public testing::Test {
  protected:
    ReadAloudTest() {
        m_window.resize(600, 400);
        m_first.setGeometry(0, 0, 100, 100);
        m_first.setText("&Crop");
        m_second.setGeometry(100, 0, 100, 100);
        m_second.setToolTip("Open");
        m_third.setGeometry(200, 0, 100, 100);
        m_third.setText("Save");
        m_third.setEnabled(false);
        m_list.setGeometry(0, 100, 200, 200);
        m_list.addItems({"frog.jpg", "bird.jpg"});
        m_line.setGeometry(200, 100, 200, 40);
        m_line.setAccessibleName("Words");
        m_window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_window));
        for (const Qt::MouseButton left : {Qt::LeftButton, Qt::RightButton}) { // pressed by other tests
            QTest::mouseRelease(m_window.windowHandle(), left, Qt::NoModifier, {590, 390});
        }
        QObject::connect(&m_reader, &ReadAloud::wordsChosen, &m_window,
                         [this](const QString &words) { m_said << words; });
    }

    void move(QPoint to) { QTest::mouseMove(m_window.windowHandle(), to); }
    void key(Qt::Key key) { QTest::keyClick(m_window.windowHandle(), key); }
    /// What was said since the last call, after a wait of so many milliseconds.
    std::string said(int wait = rested) {
        QTest::qWait(wait);
        return std::exchange(m_said, {}).join('|').toStdString();
    }
    /// What is said next, however late on a busy machine.
    std::string saidNext() {
        (void)QTest::qWaitFor([this] { return !m_said.isEmpty(); }, 20 * rested);
        return said(0);
    }
    /// A finger is put there, held and lifted.
    void touch(QPoint at, int hold) {
        static QPointingDevice *device = QTest::createTouchDevice();
        QTest::touchEvent(m_window.windowHandle(), device).press(0, at);
        QTest::qWait(hold);
        QTest::touchEvent(m_window.windowHandle(), device).release(0, at);
    }

    QWidget m_window;
    PictureButton m_first{"tool3", PictureButton::CaptionPlace::Below, &m_window};
    PictureButton m_second{&m_window};
    PictureButton m_third{&m_window};
    QListWidget m_list{&m_window};
    QLineEdit m_line{&m_window};
    ReadAloud m_reader;
    QStringList m_said;
};

TEST_F(ReadAloudTest, WordsAreNameValueAndWhatSaysMore) {
    QLabel label("<b>Press</b> &amp; hold");
    QLabel isolated(QStringLiteral("Size: \u20681600 x 1200\u2069"));
    QLabel capitals("SAVE AS...");
    QSlider slider;
    slider.setAccessibleName("Brightness");
    slider.setValue(20);
    QComboBox box;
    box.setAccessibleName("Printer");
    box.addItems({"Hall", "Class"});
    PictureButton tip("undo", PictureButton::CaptionPlace::Below), longer("undo", PictureButton::CaptionPlace::Below),
        other("undo", PictureButton::CaptionPlace::Below);
    for (PictureButton *each : {&tip, &longer, &other}) {
        each->setText("Undo");
    }
    tip.setToolTip("undo");
    longer.setToolTip("Undo the last step");
    other.setToolTip("Hold for the list");
    const std::pair<QWidget *, const char *> rows[] = {
        {&m_first, "Crop"},
        {&m_second, "Open"},
        {&label, "Press & hold"},
        {&isolated, "Size: 1600 x 1200"},
        {&capitals, "save as..."},
        {&slider, "Brightness. 20"},
        {&box, "Printer. Hall"},
        {&tip, "Undo"},
        {&longer, "Undo the last step"},
        {&other, "Undo. Hold for the list"},
        {&m_window, ""},
    };
    for (const auto &[control, words] : rows) {
        EXPECT_EQ(ReadAloud::wordsOf(*control).toStdString(), words);
    }
}

TEST_F(ReadAloudTest, SaysWhatThePointerRestsOn) {
    QSignalSpy movedOn(&m_reader, &ReadAloud::movedOn);
    move({50, 50});
    EXPECT_EQ(said(200), "") << "it does not rest yet";
    move({150, 50});
    EXPECT_EQ(saidNext(), "Open");
    move({160, 60});
    EXPECT_EQ(said(), "") << "still the same";
    EXPECT_EQ(movedOn.size(), 0);
    move({350, 50});
    EXPECT_EQ(movedOn.size(), 1);
    move({150, 50});
    EXPECT_EQ(said(), "") << "it was said a moment ago";
    move({350, 50});
    EXPECT_EQ(said(), "") << "there is nothing";
    move({250, 50});
    EXPECT_EQ(saidNext(), "Save") << "disabled, it has its name";
    move({150, 50});
    EXPECT_EQ(saidNext(), "Open");
    const QPoint entry = m_list.visualItemRect(m_list.item(1)).center() + QPoint(1, 101);
    move(entry);
    EXPECT_EQ(saidNext(), "bird.jpg");
    move({entry.x(), entry.y() - m_list.visualItemRect(m_list.item(1)).height()});
    EXPECT_EQ(saidNext(), "frog.jpg");
}

TEST_F(ReadAloudTest, AClickNeedsNoName) {
    QSignalSpy clicked(&m_first, &QAbstractButton::clicked);
    move({50, 50});
    QTest::mouseClick(m_window.windowHandle(), Qt::LeftButton, Qt::NoModifier, {50, 50});
    EXPECT_EQ(clicked.size(), 1);
    ReadAloud::announce("Drag over the photo");
    move({52, 52});
    EXPECT_EQ(said(), "Drag over the photo") << "a hand that trembles does not interrupt it";
    move({150, 50});
    move({50, 50});
    EXPECT_EQ(saidNext(), "Crop") << "it has come back";
}

TEST_F(ReadAloudTest, SaysWhatTheKeyboardGoesTo) {
    m_first.setFocus();
    key(Qt::Key_Tab);
    key(Qt::Key_Tab); // the disabled one is passed over
    EXPECT_EQ(saidNext(), "frog.jpg") << "the one that was passed is not said";
    key(Qt::Key_Down);
    EXPECT_EQ(saidNext(), "bird.jpg");
    key(Qt::Key_Tab);
    EXPECT_EQ(saidNext(), "Words");
    key(Qt::Key_A);
    EXPECT_EQ(said(), "") << "typing moves nothing";
    m_second.setFocus();
    EXPECT_EQ(said(), "") << "nor was it a key that moved this";
}

TEST_F(ReadAloudTest, SaysTabsAndEntriesOfMenus) {
    QTabBar tabs(&m_window);
    tabs.addTab("&General");
    tabs.addTab("Devices");
    tabs.setGeometry(200, 200, 300, 40);
    tabs.show();
    move(tabs.geometry().topLeft() + tabs.tabRect(1).center());
    EXPECT_EQ(saidNext(), "Devices");
    QMenu menu;
    menu.addAction("&100 %\tCtrl+1");
    QAction *fit = menu.addAction("Fit");
    menu.popup(m_window.mapToGlobal(QPoint(10, 10)));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&menu));
    QTest::mouseMove(menu.windowHandle(), menu.actionGeometry(fit).center());
    EXPECT_EQ(saidNext(), "Fit");
    QTest::keyClick(menu.windowHandle(), Qt::Key_Up);
    EXPECT_EQ(saidNext(), "100 %");
    menu.hide();
}

TEST_F(ReadAloudTest, SaysWhatOpens) {
    QSignalSpy movedOn(&m_reader, &ReadAloud::movedOn);
    Bubble bubble("picTip", &m_window);
    bubble.setText("Please make a selection");
    bubble.pointAt(&m_second);
    EXPECT_EQ(said(0), "Please make a selection");
    QMessageBox box(QMessageBox::NoIcon, "Lumora", "The disk is full.", QMessageBox::Ok, &m_window);
    box.open();
    EXPECT_EQ(said(0), "The disk is full.");
    box.close();
    for (const char *question : {"", "Save changes?"}) {
        QDialog dialog(&m_window);
        dialog.setWindowTitle("Save");
        dialog.setAccessibleDescription(question);
        dialog.show();
        EXPECT_EQ(said(0), "") << "it does not ask";
        dialog.hide();
        dialog.open();
        EXPECT_EQ(said(0), *question != 0 ? question : "Save");
    }
    move({350, 350});
    EXPECT_EQ(movedOn.size(), 0) << "nobody has to keep still while a question is said";
}

TEST_F(ReadAloudTest, AFingerHearsAButtonInsteadOfPressingIt) {
    QSignalSpy clicked(&m_first, &QAbstractButton::clicked);
    QSignalSpy released(&m_first, &QAbstractButton::released);
    touch({50, 50}, 50);
    EXPECT_EQ(clicked.size(), 1) << "a tap presses it";
    EXPECT_EQ(said(), "");
    touch({50, 50}, rested);
    EXPECT_EQ(said(0), "Crop");
    EXPECT_EQ(clicked.size(), 1);
    EXPECT_EQ(released.size(), 2);
    EXPECT_FALSE(m_first.isDown());
    touch({50, 50}, 50);
    EXPECT_EQ(clicked.size(), 2) << "the next tap presses it again";
}

TEST(ReadAloud, NobodyListens) {
    ReadAloud::announce("nothing happens");
}

} // namespace
} // namespace lumora
