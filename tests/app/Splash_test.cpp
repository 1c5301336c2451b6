// The splash: what it opens next, its throbber, what it writes to the user's settings.
#include "app/frmSplash.h"

#include "dialogs/frmMessage.h"
#include "support/SettingsFile.h"
#include "support/ShellCheck.h"
#include "support/TextCheck.h"

#include <QAbstractButton>
#include <QGuiApplication>
#include <QLabel>
#include <QPointer>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

namespace lumora {

static void PrintTo(SplashEnd end, std::ostream *out) {
    *out << "end " << static_cast<int>(end);
}

namespace {

class Splash : public test::Shell {
  protected:
    /// A splash that has been shown and has decided how to go on.
    frmSplash *shown(const QString &displayMessage) {
        test::writeSetting(context, "Display Message", "Value", displayMessage);
        auto *splash = new frmSplash(context);
        splash->show();
        QTest::qWait(20);
        return splash;
    }
    static bool runs(frmSplash *splash, const QString &timer) { return splash->findChild<QTimer *>(timer)->isActive(); }
};

TEST_F(Splash, DecidesByTheSettingAndTheScreen) {
    constexpr auto launcher = SplashEnd::Launcher;
    constexpr auto notice = SplashEnd::NoticeThenLauncher;
    constexpr auto never = SplashEnd::Never;
    const struct {
        const char *value;
        int width, height;
        SplashEnd end;
    } cases[] = {
        {"1", 800, 600, notice},    {"1", 801, 601, launcher}, {"1", 801, 600, notice},   {"1", 800, 601, notice},
        {"1", 1024, 768, launcher}, {"1", 3840, 600, notice},  {"0", 640, 480, launcher}, {"0", 1024, 768, launcher},
        {"2", 1024, 768, never},    {"2", 640, 480, never},    {"", 1024, 768, never},    {"01", 1024, 768, never},
        {"yes", 640, 480, never},
    };
    for (const auto &one : cases) {
        EXPECT_EQ(decideSplash(settings::valueOf<Setting::ScreenNotice>(one.value), {one.width, one.height}), one.end)
            << '"' << one.value << "\" at " << one.width << " x " << one.height;
    }
}

TEST_F(Splash, ThrobberShowsPicturesOneToEightOnly) {
    frmSplash *splash = shown("2");
    for (int n = 1; n <= 12; ++n) {
        EXPECT_NE(splash->findChild<QLabel *>(QString("Pic%1").arg(n)), nullptr) << n;
    }
    auto *picture = splash->findChild<QLabel *>("picThrobber");
    for (int i = 0, expected = splash->throbber(); i < 20; ++i) {
        expected = expected == 8 ? 1 : expected + 1;
        test::tick(*splash, "tmrThrobber");
        EXPECT_EQ(splash->throbber(), expected);
        const auto *source = splash->findChild<QLabel *>(QString("Pic%1").arg(expected));
        EXPECT_EQ(picture->pixmap().toImage(), source->pixmap().toImage());
        EXPECT_FALSE(picture->pixmap().isNull());
    }
    delete splash;
}

TEST_F(Splash, GoesToTheLauncher) {
    QPointer<frmSplash> splash = shown("0");
    QSignalSpy launcher(splash, &frmSplash::launcherWanted);
    EXPECT_EQ(splash->findChild<frmMessage *>(), nullptr);
    EXPECT_FALSE(runs(splash, "tmr2ndUnloader"));
    test::tick(*splash, "tmrLoader");
    EXPECT_EQ(launcher.count(), 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return splash.isNull(); }));
}

TEST_F(Splash, ShowsTheNoticeFirstOnASmallScreen) {
    ASSERT_EQ(QGuiApplication::primaryScreen()->size(), QSize(800, 800)) << "the screen of the offscreen platform";
    QPointer<frmSplash> splash = shown("1");
    QSignalSpy launcher(splash, &frmSplash::launcherWanted);
    QPointer<frmMessage> notice = splash->findChild<frmMessage *>();
    ASSERT_FALSE(notice.isNull());
    EXPECT_TRUE(notice->isModal());
    EXPECT_FALSE(runs(splash, "tmrLoader") || runs(splash, "tmr2ndUnloader"));
    notice->findChild<QAbstractButton *>("cmdYes")->click();
    EXPECT_FALSE(runs(splash, "tmrLoader"));
    test::tick(*splash, "tmr2ndUnloader");
    EXPECT_EQ(launcher.count(), 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return splash.isNull() && notice.isNull(); }));
}

TEST_F(Splash, StaysForGoodWithAnyOtherValueButCanBeClosed) {
    QPointer<frmSplash> splash = shown("2");
    QSignalSpy launcher(splash, &frmSplash::launcherWanted);
    EXPECT_FALSE(runs(splash, "tmrLoader") || runs(splash, "tmr2ndUnloader"));
    EXPECT_EQ(splash->findChild<frmMessage *>(), nullptr);
    QTest::keyClick(splash, Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return splash.isNull(); }));
    EXPECT_EQ(launcher.count(), 0);
}

TEST_F(Splash, EscDoesNotStopAStartThatIsUnderWay) {
    QPointer<frmSplash> splash = shown("0");
    QTest::keyClick(splash, Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_FALSE(splash.isNull());
    EXPECT_TRUE(splash->isVisible());
    delete splash;
}

TEST_F(Splash, RecordsFolderAndVersionForTheUser) {
    delete new frmSplash(context);
    QSettings store("Corvane Software", "Lumora");
    EXPECT_EQ(store.value("GlobalInstallPath").toString(), m_folder.path());
    EXPECT_EQ(store.value("Version").toString(), versionNumber());
}

TEST_F(Splash, ShowsItsTexts) {
    frmSplash plain(context);
    EXPECT_EQ(plain.findChild<QLabel *>("lblVersion")->text(), "Version " + versionNumber());
    EXPECT_EQ(plain.findChild<QLabel *>("lblCaption")->text(), "Lumora");
    ASSERT_TRUE(test::writeChangedLanguageFile(m_folder.filePath("LANGUAGE.INI")));
    AppContext translated(Installation{m_folder.path()});
    frmSplash splash(translated);
    EXPECT_EQ(test::textsNotShown(splash), QStringList());
}

} // namespace
} // namespace lumora
