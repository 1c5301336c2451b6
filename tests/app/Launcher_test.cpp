// The launcher: texts, colours, keys. What its two mode buttons start is tested with the start itself.
#include "app/frmLauncher.h"

#include "guide/frmHelp.h"
#include "support/ShellCheck.h"
#include "support/TextCheck.h"
#include "widgets/AnimatedButton.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

namespace lumora {
namespace {

class Launcher : public test::Shell {
  protected:
    frmLauncher *shown() {
        auto *launcher = new frmLauncher(context);
        launcher->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(launcher));
        return launcher;
    }
    static PictureButton *button(frmLauncher *launcher, const char *name) {
        return launcher->findChild<PictureButton *>(name);
    }
};

TEST_F(Launcher, ShowsItsTexts) {
    frmLauncher plain(context);
    EXPECT_EQ(plain.windowTitle(), QString::fromUtf8("Corvane™ | Lumora"));
    EXPECT_EQ(plain.findChild<QLabel *>("lblTitle")->text(), "Welcome to Lumora");
    EXPECT_EQ(plain.findChild<QLabel *>("lblVersion")->text(), "Version " + versionNumber());
    ASSERT_TRUE(test::writeChangedLanguageFile(m_folder.filePath("language.ini")));
    AppContext translated(Installation{m_folder.path()});
    frmLauncher launcher(translated);
    EXPECT_EQ(test::textsNotShown(launcher), QStringList());
}

TEST_F(Launcher, OneTextInTheLanguageFileChangesOneButton) {
    QFile file(m_folder.filePath("language.ini"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[BtnSimple]\nCaption=Einfach\n");
    file.close();
    frmLauncher launcher(context);
    EXPECT_EQ(button(&launcher, "cmdSimpleMode")->text(), "Einfach");
    EXPECT_EQ(button(&launcher, "cmdAdvMode")->text(), "Advanced Mode");
    EXPECT_EQ(button(&launcher, "cmdVideos")->text(), "Help");
    EXPECT_EQ(launcher.findChild<QLabel *>("lblTitle")->text(), "Welcome to Lumora");
}

TEST_F(Launcher, ALongTitleLeavesTheWindowAsItIs) {
    const std::unique_ptr<frmLauncher> plain(shown());
    QFile file(m_folder.filePath("language.ini"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[Launcher]\nCaption=" + QByteArray("Welcome to the photo workshop of the school in the green valley!") +
               "\n");
    file.close();
    context.ini.lookAgain();
    const std::unique_ptr<frmLauncher> launcher(shown());
    EXPECT_EQ(launcher->size(), plain->size());
    const auto *title = launcher->findChild<QLabel *>("lblTitle");
    EXPECT_EQ(title->text().size(), 64);
    EXPECT_TRUE(launcher->rect().contains(QRect(title->mapTo(launcher.get(), QPoint()), title->size())));
}

TEST_F(Launcher, ButtonsTakeTheirColourFromThePointer) {
    frmLauncher *launcher = shown();
    for (const char *name : {"cmdSimpleMode", "cmdAdvMode", "cmdVideos"}) {
        SCOPED_TRACE(name);
        PictureButton *one = button(launcher, name);
        // Between the edge and the picture, where nothing but the surface is painted.
        const QPoint bare = one->mapTo(launcher, QPoint(one->width() / 2, 5));
        const auto surface = [&] { return QColor(launcher->grab().toImage().pixel(bare)); };
        const QPoint edge = one->mapTo(launcher, QPoint(one->width() / 2, 0));
        const QColor tinted(240, 212, 224); // a fifth of the colour on the surface
        EXPECT_EQ(surface(), QColor(236, 233, 216));
        QTest::mouseMove(one);
        EXPECT_TRUE(QTest::qWaitFor([&] { return surface() == tinted; }));
        EXPECT_EQ(QColor(launcher->grab().toImage().pixel(edge)), QColor(255, 128, 255)) << "the ring";
        QTest::mouseMove(launcher, QPoint(launcher->width() / 2, 60));
        EXPECT_TRUE(QTest::qWaitFor([&] { return surface() == QColor(236, 233, 216); }));
    }
    delete launcher;
}

TEST_F(Launcher, HelpOpensByButtonAndByKey) {
    frmLauncher *launcher = shown();
    for (const bool key : {false, true}) {
        if (key) {
            QTest::keyClick(launcher, Qt::Key_F1);
        } else {
            button(launcher, "cmdVideos")->click();
        }
        QPointer<frmHelp> help = launcher->findChild<frmHelp *>();
        ASSERT_FALSE(help.isNull());
        EXPECT_TRUE(help->isModal());
        QTest::keyClick(help, Qt::Key_Escape);
        EXPECT_TRUE(QTest::qWaitFor([&] { return help.isNull(); }));
    }
    delete launcher;
}

TEST_F(Launcher, EveryButtonIsReachedAndPressedByKeyboard) {
    frmLauncher *launcher = shown();
    QSignalSpy simple(launcher, &frmLauncher::simpleModeWanted);
    QSignalSpy advanced(launcher, &frmLauncher::advancedModeWanted);
    QStringList reached;
    for (int i = 0; i < 5; ++i) {
        reached << QApplication::focusWidget()->objectName();
        if (i < 2) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(reached, QStringList({"cmdSimpleMode", "cmdAdvMode", "cmdVideos", "cmdForMe", "cmdExit"}));
    EXPECT_EQ(simple.count(), 1);
    EXPECT_EQ(advanced.count(), 1);
    delete launcher;
}

TEST_F(Launcher, TheModeThatEnterWouldStartMoves) {
    frmLauncher *launcher = shown();
    QTest::mouseMove(launcher, QPoint(launcher->width() / 2, 60));
    auto *simple = launcher->findChild<AnimatedButton *>("cmdSimpleMode");
    auto *advanced = launcher->findChild<AnimatedButton *>("cmdAdvMode");
    launcher->findChild<QTimer *>("tmrHand")->setInterval(100000); // only this test lets it tick
    const int before = simple->frame();
    for (int i = 1; i <= 2; ++i) {
        test::tick(*launcher, "tmrHand");
        EXPECT_EQ(simple->frame(), (before + i - 1) % AnimatedButton::frames + 1);
        EXPECT_EQ(advanced->frame(), 1);
    }
    advanced->setFocus();
    test::tick(*launcher, "tmrHand");
    EXPECT_EQ(simple->frame(), 1) << "at rest";
    EXPECT_EQ(advanced->frame(), 2);
    delete launcher;
}

TEST_F(Launcher, EscStaysAndExitUnloads) {
    QPointer<frmLauncher> launcher = shown();
    QTest::keyClick(launcher, Qt::Key_Escape);
    EXPECT_TRUE(launcher->isVisible());
    button(launcher, "cmdExit")->click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return launcher.isNull(); }));
}

} // namespace
} // namespace lumora
