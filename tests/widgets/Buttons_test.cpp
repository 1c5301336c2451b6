// Picture buttons: what can be seen, clicked, read aloud and animated.
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/Motion.h"
#include "widgets/Theme.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QTimerEvent>
#include <functional>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using Place = PictureButton::CaptionPlace;

QPixmap redSquare() {
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::red);
    return pixmap;
}

TEST(PictureButton, IsNeverTooSmallToHit) {
    for (const int picture : {0, 16, 24, 32}) {
        for (const Place place : {Place::None, Place::Below, Place::Beside}) {
            PictureButton button("open", place);
            button.setPictureSize(picture);
            EXPECT_GE(button.sizeHint().width(), smallestButton);
            EXPECT_GE(button.sizeHint().height(), smallestButton);
            EXPECT_GE(button.minimumSizeHint().width(), smallestButton);
        }
    }
}

TEST(PictureButton, EveryStateLooksDifferent) {
    const std::pair<const char *, std::function<void(PictureButton &)>> states[] = {
        {"resting", [](PictureButton &) {}},
        {"hovered", [](PictureButton &button) { button.setAttribute(Qt::WA_UnderMouse); }},
        {"pressed", [](PictureButton &button) { button.setDown(true); }},
        {"checked", [](PictureButton &button) { button.setChecked(true); }},
        {"disabled", [](PictureButton &button) { button.setEnabled(false); }},
    };
    for (const auto look : {PictureButton::Look::Flat, PictureButton::Look::Raised}) {
        QMap<QString, QImage> pictures;
        for (const auto &[name, enter] : states) {
            PictureButton button;
            button.setPicture(redSquare());
            button.setLook(look);
            button.setCheckable(true);
            button.show();
            button.activateWindow();
            ASSERT_TRUE(QTest::qWaitForWindowActive(&button));
            button.clearFocus();
            button.setAttribute(Qt::WA_UnderMouse, false);
            enter(button);
            const QImage picture = button.grab().toImage();
            for (auto other = pictures.cbegin(); other != pictures.cend(); ++other) {
                EXPECT_NE(picture, other.value()) << name << " looks like " << other.key().toStdString();
            }
            pictures.insert(name, picture);
        }
    }
}

TEST(PictureButton, AnyKeyThatMeansPressPressesIt) {
    PictureButton button;
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        clicked.clear();
        QTest::keyClick(&button, key);
        EXPECT_EQ(clicked.size(), 1) << key;
    }
    clicked.clear();
    button.setEnabled(false);
    QTest::keyClick(&button, Qt::Key_Return);
    EXPECT_EQ(clicked.size(), 0);
}

TEST(PictureButton, ALongCaptionTakesASecondLineAndNoThird) {
    PictureButton button("open", Place::Below);
    button.setText("Crop");
    const int one = button.heightAt(96);
    button.setText("Backgrounds for Stories");
    const int two = button.heightAt(96);
    EXPECT_EQ(two - one, button.fontMetrics().height());
    button.setText("Backgrounds for Stories that never seem to come to any kind of end");
    EXPECT_EQ(button.heightAt(96), two);
    button.setText({});
    EXPECT_LT(button.heightAt(96), one);
}

TEST(PictureButton, IsReadAloudByItsCaptionOrItsToolTip) {
    PictureButton captioned("open", Place::Below);
    captioned.setText("Black && White");
    PictureButton tipped("open", Place::None);
    tipped.setToolTip("Set Zoom Level");
    tipped.setToolTip("Cut && paste");
    const auto readAloud = [](QObject *object) {
        return QAccessible::queryAccessibleInterface(object)->text(QAccessible::Name).toStdString();
    };
    EXPECT_EQ(readAloud(&captioned), "Black & White");
    EXPECT_EQ(readAloud(&tipped), "Cut & paste");
}

TEST(PictureButton, ALivePictureIsShownWholeAndTheDrawingComesBack) {
    PictureButton button;
    button.setPictureSize(64);
    button.resize(80, 80);
    const QImage drawing = button.grab().toImage();
    QPixmap wide(200, 100);
    wide.fill(Qt::red);
    button.setPicture(wide);
    const QImage shown = button.grab().toImage();
    EXPECT_EQ(shown.pixelColor(40, 40), QColor(Qt::red));
    EXPECT_EQ(shown.pixelColor(12, 40), QColor(Qt::red));
    EXPECT_NE(shown.pixelColor(40, 20), QColor(Qt::red)) << "a wide picture keeps its proportions";
    button.setPicture({});
    EXPECT_EQ(button.grab().toImage(), drawing);
}

TEST(AnimatedButton, FrameOneFollowsFrameEight) {
    AnimatedButton button;
    button.setLoop("ok");
    QList<int> seen;
    for (int tick = 0; tick < 9; ++tick) {
        seen += button.frame();
        button.setFrame(AnimatedButton::nextFrame(button.frame()));
    }
    EXPECT_EQ(seen, (QList<int>{1, 2, 3, 4, 5, 6, 7, 8, 1}));
    button.setFrame(5);
    for (const int wrong : {0, 9, -1}) {
        button.setFrame(wrong);
        EXPECT_EQ(button.frame(), 5) << wrong;
    }
    button.setLoop("no");
    EXPECT_EQ(button.frame(), 1);
}

TEST(AnswerButtons, MoveTogetherWhileTheWindowIsShown) {
    QWidget window;
    AnswerButtons answers(&window);
    const AnimatedButton *yes = answers.add("cmdYes", "ok", {});
    const AnimatedButton *no = answers.add("cmdNo", "no", {.captionPoints = 14});
    auto *timer = window.findChild<QTimer *>("tmrYes");
    ASSERT_NE(timer, nullptr);
    QSignalSpy shown(&answers, &AnswerButtons::frameShown);
    for (const bool again : {false, true}) {
        EXPECT_FALSE(timer->isActive()) << "shown before: " << again;
        window.show();
        EXPECT_EQ(timer->isActive(), motionWanted());
        for (int tick = 0; tick < 9; ++tick) {
            const int expected = motionWanted() ? AnimatedButton::nextFrame(yes->frame()) : 1;
            QTimerEvent event(timer->timerId());
            QCoreApplication::sendEvent(timer, &event);
            EXPECT_EQ(yes->frame(), expected);
            EXPECT_EQ(no->frame(), expected);
        }
        EXPECT_EQ(shown.count(), motionWanted() ? (again ? 18 : 9) : 0);
        window.hide();
    }
}

/// The desktop is asked once in a process, so another one answers for the one that asks for less motion.
TEST(AnswerButtons, StandStillWhereLessMotionIsWanted) {
    QProcess still;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LUMORA_MOTION", "0");
    still.setProcessEnvironment(environment);
    still.start(QCoreApplication::applicationFilePath(), {"--gtest_filter=AnswerButtons.MoveTogether*"});
    ASSERT_TRUE(still.waitForFinished(60'000));
    EXPECT_EQ(still.exitCode(), 0) << still.readAllStandardOutput().toStdString();
}

} // namespace
} // namespace lumora
