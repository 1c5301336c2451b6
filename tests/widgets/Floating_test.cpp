// What floats over the window or is a window of its own: panels, bubbles, the status line, borderless windows.
#include "widgets/BorderlessDialog.h"
#include "widgets/Bubble.h"
#include "widgets/FittingLabel.h"
#include "widgets/PictureButton.h"
#include "widgets/SlidingPanel.h"
#include "widgets/StatusLine.h"
#include "widgets/Theme.h"
#include "widgets/TitleStrip.h"

#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace lumora {
namespace {

// --- SlidingPanel ---------------------------------------------------------------------------------------------------

TEST(SlidingPanel, RisesFromBelowTheWindowToItsPlace) {
    QWidget window;
    window.resize(800, 600);
    SlidingPanel panel("panelSFX", "cmdpnlSFXExit", &window);
    panel.body()->addSpacing(200);
    panel.setArea({100, 50, 700, 520});
    window.show();
    QSignalSpy opened(&panel, &SlidingPanel::opened);
    QSignalSpy closed(&panel, &SlidingPanel::closed);
    EXPECT_FALSE(panel.isVisible());

    panel.slideIn();
    EXPECT_TRUE(panel.isVisible() && panel.isSliding());
    EXPECT_EQ(panel.y(), 600) << "it begins just below the window";
    int before = panel.y();
    const int target = 570 - panel.height();
    for (int ticks = 0; panel.isSliding() && ticks < 200; ++ticks) {
        QTest::qWait(4);
        const int moved = before - panel.y();
        EXPECT_TRUE(moved % 33 == 0 || panel.y() == target) << moved;
        before = panel.y();
    }
    EXPECT_EQ(panel.geometry(), QRect(100, target, 700, panel.height()));
    EXPECT_EQ(opened.size(), 1);

    panel.setArea({100, 50, 700, 420}); // the window was made smaller
    EXPECT_EQ(panel.geometry().bottom(), 469);
    panel.slideIn();
    QTest::qWait(40);
    EXPECT_EQ(panel.geometry().bottom(), 469) << "a panel that is up stays where it is";

    QTest::mouseClick(panel.closeButton(), Qt::LeftButton);
    EXPECT_FALSE(panel.isVisible() || panel.isOpen());
    EXPECT_EQ(closed.size(), 1);
    panel.slideOut();
    EXPECT_EQ(closed.size(), 1) << "closed once";
    panel.slideIn();
    QTest::keyClick(&panel, Qt::Key_Escape);
    EXPECT_FALSE(panel.isOpen());
}

// --- Bubble ---------------------------------------------------------------------------------------------------------

TEST(Bubble, StandsInsideTheWindowAndBesideItsTarget) {
    QWidget window;
    window.resize(1024, 768);
    QWidget target(&window);
    Bubble bubble("lblBubble", &window);
    bubble.setText("To start, open a picture by click on the yellow folder on the main toolbar.");
    window.show();
    for (const QPoint corner : {QPoint(4, 4), QPoint(970, 4), QPoint(500, 20), QPoint(4, 300), QPoint(4, 716),
                                QPoint(970, 300), QPoint(970, 716), QPoint(500, 700), QPoint(500, 360)}) {
        target.setGeometry(QRect(corner, QSize(48, 48)));
        bubble.pointAt(&target);
        const QRect panel = bubble.geometry().adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin);
        EXPECT_TRUE(window.rect().contains(panel)) << corner.x() << ',' << corner.y();
        EXPECT_FALSE(panel.intersects(target.geometry())) << corner.x() << ',' << corner.y();
    }
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        window.setLayoutDirection(direction);
        Bubble low("lblLow", &window);
        low.setText(bubble.label()->text());
        low.body()->addWidget(new QLabel("Never again"));
        low.layInRow();
        target.setGeometry(direction == Qt::LeftToRight ? QRect(300, 600, 150, 50) : QRect(574, 600, 150, 50));
        low.pointAt(&target);
        const QRect panel = low.geometry().adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin);
        EXPECT_TRUE(window.rect().contains(panel));
        EXPECT_EQ(panel.left() > target.geometry().right(), direction == Qt::LeftToRight);
        EXPECT_FALSE(panel.intersects(target.geometry()));
        EXPECT_LT(panel.height(), 110);
    }
    const int whole = bubble.width();
    bubble.setText("Crop!");
    bubble.pointAt(&target);
    EXPECT_LT(bubble.width(), whole);
}

// --- FittingLabel ---------------------------------------------------------------------------------------------------

TEST(FittingLabel, TakesTwoLinesAndASmallerFontBeforeItCuts) {
    FittingLabel label;
    const auto isWholeAt = [&](int width, int height) {
        label.resize(width, height);
        return label.isTextWhole();
    };
    label.setText("Colour Focus - Select a colour, then press 'Apply':");
    const int line = label.fontMetrics().height();
    const int whole = label.sizeHint().width();
    EXPECT_TRUE(isWholeAt(whole, line));
    EXPECT_TRUE(isWholeAt(whole * 3 / 4, line));        // smaller
    EXPECT_TRUE(isWholeAt(whole * 6 / 10, 2 * line));   // two lines
    EXPECT_TRUE(isWholeAt(whole * 45 / 100, 2 * line)); // both
    EXPECT_FALSE(isWholeAt(whole / 4, 2 * line));
    EXPECT_FALSE(isWholeAt(whole / 2, line));
    label.setText({});
    EXPECT_TRUE(isWholeAt(10, line));
}

// --- StatusLine -----------------------------------------------------------------------------------------------------

TEST(StatusLine, AMessageStandsForTheBaseTextUntilItIsCleared) {
    StatusLine line("SBar");
    line.setBaseText("Lumora - Version 1.0.0");
    line.resize(300, 34);
    const QImage quiet = line.grab().toImage();
    line.showMessage("This file is not a picture.");
    EXPECT_EQ(line.text(), "This file is not a picture.");
    EXPECT_EQ(line.accessibleName(), line.text());
    line.setBaseText("Lumora - Version 1.0.1");
    EXPECT_EQ(line.text(), "This file is not a picture.") << "a new base text waits below the message";
    line.clearMessage();
    EXPECT_EQ(line.text(), "Lumora - Version 1.0.1");
    line.setBaseText("Lumora - Version 1.0.0");
    EXPECT_EQ(line.grab().toImage(), quiet);
    line.showMessage("Lumora - Version 1.0.0");
    EXPECT_NE(line.grab().toImage(), quiet) << "a message is known by more than its words";
    line.showMessage({});
    EXPECT_EQ(line.grab().toImage(), quiet);
}

TEST(StatusLine, ALongTextNeverWidensTheWindow) {
    StatusLine line("SBar");
    line.setBaseText(QString(5000, 'x'));
    EXPECT_LT(line.minimumSizeHint().width(), 200);
    EXPECT_EQ(line.text().size(), 5000);
}

// --- Borderless windows ---------------------------------------------------------------------------------------------

TEST(BorderlessDialog, EscLeavesAndEnterPressesTheDefaultButton) {
    struct Row {
        Qt::Key key;
        bool defaultEnabled;
        int clicks;
        bool open;
    };
    const Row rows[] = {
        {Qt::Key_Return, true, 1, true},  {Qt::Key_Enter, true, 1, true}, {Qt::Key_Return, false, 0, true},
        {Qt::Key_Escape, true, 0, false}, {Qt::Key_A, true, 0, true},
    };
    for (const Row &row : rows) {
        BorderlessDialog dialog("frmTest", nullptr);
        PictureButton ok;
        ok.setEnabled(row.defaultEnabled);
        dialog.body()->addWidget(&ok);
        dialog.setDefaultButton(&ok);
        QSignalSpy clicked(&ok, &QAbstractButton::clicked);
        dialog.show();
        QTest::keyClick(&dialog, row.key);
        EXPECT_EQ(clicked.size(), row.clicks) << row.key;
        EXPECT_EQ(dialog.isVisible(), row.open) << row.key;
        ok.setParent(nullptr);
    }
}

TEST(BorderlessDialog, StandsOverItsOwnerAndWhollyOnTheScreen) {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    for (const QPoint corner : {screen.center() - QPoint(200, 150), screen.topLeft() - QPoint(300, 200),
                                screen.bottomRight() - QPoint(20, 20)}) {
        QWidget owner;
        owner.setGeometry(QRect(corner, QSize(400, 300)));
        owner.show();
        BorderlessDialog dialog("frmTest", &owner);
        dialog.body()->addSpacing(100);
        dialog.show();
        EXPECT_TRUE(screen.contains(dialog.geometry())) << corner.x() << ',' << corner.y();
        if (screen.contains(owner.geometry())) {
            EXPECT_LE((dialog.geometry().center() - owner.geometry().center()).manhattanLength(), 2);
        }
    }
}

TEST(BorderlessDialog, TitleAndStripSayTheSame) {
    BorderlessDialog dialog("frmExit", nullptr);
    dialog.setWindowTitle("Exit");
    auto *lblCaption = dialog.findChild<QLabel *>("lblCaption");
    ASSERT_NE(lblCaption, nullptr);
    EXPECT_EQ(lblCaption->text(), "Exit");
    BorderlessDialog untitled("frmExit", nullptr);
    untitled.picTBar()->lblCaption()->setText("Warning");
    untitled.show();
    EXPECT_EQ(untitled.windowTitle(), "Warning");
}

TEST(TitleStrip, DragsItsWindow) {
    BorderlessDialog dialog("frmExit", nullptr);
    dialog.show();
    dialog.move(100, 100);
    TitleStrip *strip = dialog.picTBar();
    const QPoint grip(20, 10);
    QTest::mousePress(strip, Qt::LeftButton, {}, grip);
    QTest::mouseMove(strip, grip + QPoint(30, 40));
    QTest::mouseRelease(strip, Qt::LeftButton, {}, grip);
    EXPECT_EQ(dialog.pos(), QPoint(130, 140));
    QTest::mousePress(strip, Qt::RightButton, {}, grip);
    QTest::mouseMove(strip, grip + QPoint(50, 50));
    EXPECT_EQ(dialog.pos(), QPoint(130, 140)) << "the left button only";
}

TEST(TitleStrip, PicturesKeepTheirSizeHoweverOftenItsButtonsChange) {
    TitleStrip strip;
    PictureButton *button = strip.addButton("cmdMin", "minimise");
    PictureButton *close = strip.addCloseButton("cmdExit");
    const QSize ofButton = button->pictureSize();
    const QSize ofClose = close->pictureSize();
    for (int i = 0; i < 20; i++) {
        strip.setButtonSide(simpleButton);
        EXPECT_EQ(button->size(), QSize(simpleButton, simpleButton));
        EXPECT_GT(button->pictureSize().width(), ofButton.width());
        strip.setButtonSide(titleButton);
    }
    EXPECT_EQ(button->pictureSize(), ofButton);
    EXPECT_EQ(close->pictureSize(), ofClose);
}

} // namespace
} // namespace lumora
