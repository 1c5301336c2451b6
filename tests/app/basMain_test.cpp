// What each command line opens, and when the program ends.
#include "app/basMain.h"

#include "app/frmForMe.h"
#include "app/frmLauncher.h"
#include "app/frmSplash.h"
#include "base/FileName.h"
#include "imaging/PictureFile.h"
#include "session/LoadSettings.h"
#include "support/SettingsFile.h"
#include "support/ShellCheck.h"
#include "support/TestPictures.h"
#include "widgets/Theme.h"
#include "window/frmMain.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QPointer>
#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <cstdio>
#include <gtest/gtest.h>

namespace lumora {

static void PrintTo(StartOutcome outcome, std::ostream *out) {
    *out << "outcome " << static_cast<int>(outcome);
}

namespace {

/// The seven settings of Simple mode.
const QList<QPair<QString, QString>> simpleSettings = {
    {"Dialogs", "Style"}, {"SFX", "Advanced"},  {"Resize", "Advanced"}, {"Grid", "Value"},
    {"E-mail", "Value"},  {"Printer", "Timed"}, {"Tips", "Crop"}};

/// A program folder with a photo in it, as the working directory.
class Start : public testing::Test {
  protected:
    void SetUp() override {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
        m_before = QDir::currentPath();
        QDir::setCurrent(m_folder.path());
        QDir().mkdir("a folder");
        QDir().mkdir("a folder/s");
        for (const char *name : {"cat.png", "My Cat (2).PNG", "a folder/s/x.png", "kätzchen.png"}) {
            ASSERT_TRUE(test::photoLike(40, 30).save(QString::fromUtf8(name), "PNG"));
        }
        ASSERT_TRUE(writePicture(test::photoLike(40, 30), fileNameOf("caf\xE9.png")).ok()); // not UTF-8
    }
    void TearDown() override {
        std::remove("caf\xE9.png"); // which Qt does not find
        QDir::setCurrent(m_before);
    }

    QString settingsText() const {
        QFile file(m_folder.filePath("Lumora.ini"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    QTemporaryDir m_folder;
    QString m_before;
};

TEST_F(Start, CommandLineDecidesTheOutcome) {
    const QString folder = m_folder.path();
    const struct {
        QStringList arguments;
        StartOutcome outcome;
        QString photo;
    } cases[] = {
        {{}, StartOutcome::Splash, {}},
        {{""}, StartOutcome::Splash, {}},
        {{"  "}, StartOutcome::Splash, {}},
        {{"/s"}, StartOutcome::SimpleMode, {}},
        {{"/S"}, StartOutcome::SimpleMode, {}},
        {{" /s "}, StartOutcome::SimpleMode, {}},
        {{"/a"}, StartOutcome::AdvancedMode, {}},
        {{"/A"}, StartOutcome::AdvancedMode, {}},
        {{"/s", "/a"}, StartOutcome::Nothing, {}},
        {{"/s", "cat.png"}, StartOutcome::Nothing, {}},
        {{"/x"}, StartOutcome::Nothing, {}},
        {{"s"}, StartOutcome::Nothing, {}},
        {{"\"/s\""}, StartOutcome::Nothing, {}},
        {{"cat.png"}, StartOutcome::AdvancedModeWithPhoto, "cat.png"},
        {{"\"cat.png\""}, StartOutcome::AdvancedModeWithPhoto, "cat.png"},
        {{"c\"at.p\"ng"}, StartOutcome::AdvancedModeWithPhoto, "cat.png"},
        {{"CAT.png"}, StartOutcome::Nothing, {}},
        {{"My Cat (2).PNG"}, StartOutcome::AdvancedModeWithPhoto, "My Cat (2).PNG"},
        {{"My", "Cat", "(2).PNG"}, StartOutcome::AdvancedModeWithPhoto, "My Cat (2).PNG"},
        {{"\"My", "Cat", "(2).PNG\""}, StartOutcome::AdvancedModeWithPhoto, "My Cat (2).PNG"},
        {{QString::fromUtf8("kätzchen.png")}, StartOutcome::AdvancedModeWithPhoto, QString::fromUtf8("kätzchen.png")},
        {{"a folder/s/x.png"}, StartOutcome::AdvancedModeWithPhoto, "a folder/s/x.png"},
        {{fileNameOf("caf\xE9.png")}, StartOutcome::AdvancedModeWithPhoto, fileNameOf("caf\xE9.png")},
        {{folder + "/cat.png"}, StartOutcome::AdvancedModeWithPhoto, folder + "/cat.png"},
        {{folder + "/dog.png"}, StartOutcome::Nothing, {}},
        {{folder}, StartOutcome::Nothing, {}},
        {{"a folder"}, StartOutcome::Nothing, {}},
        {{"\""}, StartOutcome::Nothing, {}},
        {{"*.png"}, StartOutcome::Nothing, {}},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.arguments.join(u'|').toStdString());
        const StartDecision decision = decideStart(commandLineAsTyped(one.arguments));
        EXPECT_EQ(decision.outcome, one.outcome);
        EXPECT_EQ(decision.photo.toStdString(), one.photo.toStdString());
    }
}

TEST(Terminal, HelpVersionAndAPathWhereNothingIsAreAnsweredThere) {
    const struct {
        QStringList arguments;
        const char *display; ///< "" for a machine without one
        int code;
        QString out, err; ///< how they begin
    } cases[] = {
        {{"--version"}, "", 0, "Lumora " + versionNumber() + '\n', ""},
        {{"--help"}, "", 0, "Lumora, a photo editor", ""},
        {{"-h"}, "", 0, "Lumora, a photo editor", ""},
        {{"/no such/photo.jpg"}, "offscreen", 1, "", "Lumora: there is no photo named \"/no such/photo.jpg\".\n"},
    };
    for (const auto &one : cases) {
        QProcess lumora;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.remove("DISPLAY");
        environment.insert("QT_QPA_PLATFORM", one.display);
        lumora.setProcessEnvironment(environment);
        lumora.start(qEnvironmentVariable("LUMORA_BIN") + "/lumora", one.arguments);
        ASSERT_TRUE(lumora.waitForFinished()) << qPrintable(one.arguments.join(' '));
        EXPECT_EQ(lumora.exitCode(), one.code);
        const auto begins = [](const QByteArray &text, const QString &beginning) {
            return beginning.isEmpty() ? text.isEmpty() : QString::fromUtf8(text).startsWith(beginning);
        };
        EXPECT_TRUE(begins(lumora.readAllStandardOutput(), one.out)) << qPrintable(one.arguments.join(' '));
        const QByteArray said = lumora.readAllStandardError();
        EXPECT_TRUE(one.err.isEmpty() || said.endsWith(one.err.toUtf8())) << said.constData();
    }
}

TEST_F(Start, TheToolkitSpeaksTheLanguageOfTheFile) {
    const auto cancel = [] { return QCoreApplication::translate("QPlatformTheme", "Cancel"); };
    const struct {
        const char *language, *word, *number;
    } cases[] = {
        {"de", "Abbrechen", "12,5"}, {"fr", "Annuler", "12,5"},
        {"ar", "ألغِ", "12,5"}, // in the digits of file names and keyboards
        {"en", "Cancel", "12.5"},    {"no such", "Cancel", "12.5"},
    };
    for (const auto &[language, word, number] : cases) {
        QFile out(m_folder.filePath("language.ini"));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(QByteArray("[Language]\nCaption=") + language);
        out.close();
        const basMain program(Installation{m_folder.path()});
        EXPECT_EQ(cancel(), word) << language;
        EXPECT_EQ(QLocale().toString(12.5), number) << language;
    }
    EXPECT_EQ(cancel(), "Cancel") << "no longer than the program runs";
}

TEST_F(Start, EachOutcomeLoadsItsWindows) {
    const struct {
        const char *commandLine;
        bool started, splash, launcher, mainWindow, simple;
    } cases[] = {
        {"", true, true, false, false, false},          {"/s", true, false, true, true, true},
        {"/a", true, false, true, true, false},         {"cat.png", true, false, true, true, false},
        {"dog.png", false, false, false, false, false},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.commandLine);
        basMain program(Installation{m_folder.path()});
        EXPECT_EQ(program.Main(one.commandLine), one.started);
        EXPECT_EQ(program.splash() != nullptr && program.splash()->isVisible(), one.splash);
        EXPECT_EQ(program.launcher() != nullptr, one.launcher);
        EXPECT_FALSE(program.launcher() != nullptr && program.launcher()->isVisible());
        EXPECT_EQ(program.mainWindow() != nullptr && program.mainWindow()->isVisible(), one.mainWindow);
        EXPECT_EQ(program.context().flags.SimpleModeOn, one.simple);
    }
}

TEST_F(Start, SimpleModeWritesItsSettingsAndAdvancedModeLeavesThem) {
    basMain program(Installation{m_folder.path()});
    for (const auto &[section, key] : simpleSettings) {
        test::writeSetting(program.context(), section, key, "1");
    }
    const QString before = settingsText();
    ASSERT_TRUE(program.Main("/a"));
    EXPECT_EQ(settingsText(), before);

    basMain simple(Installation{m_folder.path()});
    ASSERT_TRUE(simple.Main("/S"));
    basMain advanced(Installation{m_folder.path()});
    ASSERT_TRUE(advanced.Main("/a"));
    for (const auto &[section, key] : simpleSettings) {
        EXPECT_EQ(test::setting(advanced.context(), section, key, "?"), "0") << section.toStdString();
    }
    // The main window was filled after the settings were written, not before.
    EXPECT_FALSE(simple.context().fields.txtGrid);
}

TEST_F(Start, SimpleSettingsAreWrittenInTheirOrder) {
    AppContext context(Installation{m_folder.path()});
    ApplySimpleSettings(context);
    qsizetype last = -1;
    for (const auto &[section, key] : simpleSettings) {
        const qsizetype at = settingsText().indexOf('[' + section + ']');
        EXPECT_GT(at, last) << section.toStdString();
        last = at;
    }
}

TEST_F(Start, ThePageForMeComesByItselfOnceAndOnlyWithTheLauncher) {
    const QString kept = m_folder.filePath("recovery");
    const Installation where{m_folder.path(), kept, m_folder.filePath("users")};
    const struct {
        const char *line;
        bool isKept, comes; ///< whether a photo was left by a crash
    } cases[] = {{"cat.png", false, false}, {"/a", false, false}, {"/s", false, false},
                 {"", true, false},         {"", false, true},    {"", false, false}};
    for (const auto &one : cases) {
        QDir().mkpath(kept + "/photo-1");
        if (!one.isKept) {
            QDir(kept).removeRecursively();
        }
        basMain program(where);
        ASSERT_TRUE(program.Main(one.line));
        if (program.splash() != nullptr) {
            Q_EMIT program.splash()->launcherWanted();
        }
        QPointer<frmForMe> page = program.launcher()->findChild<frmForMe *>();
        ASSERT_EQ(page != nullptr, one.comes) << one.line << (one.isKept ? ", kept" : "");
        if (page != nullptr) {
            EXPECT_TRUE(page->isModal());
            QTest::keyClick(page, Qt::Key_Escape);
            EXPECT_TRUE(QTest::qWaitFor([&] { return page.isNull(); }));
        }
    }
}

TEST_F(Start, WhatIsChosenForMeShowsAtOnceAndAtTheNextStart) {
    const Installation where{m_folder.path(), {}, m_folder.filePath("users")};
    basMain program(where);
    program.StartSimpleMode();
    Q_EMIT program.launcher()->forMeWanted();
    auto *page = program.launcher()->findChild<frmForMe *>();
    ASSERT_NE(page, nullptr);
    const auto click = [&](const char *name) { page->findChild<QAbstractButton *>(name)->click(); };
    for (const char *name : {"chkCapitals", "chkHighContrast", "chkCalm"}) {
        click(name);
    }
    const auto *crop = program.mainWindow()->findChild<QAbstractButton *>("cmdTool3");
    EXPECT_TRUE(QTest::qWaitFor([&] { return crop->text() == "CROP"; }));
    EXPECT_EQ(page->windowTitle(), "FOR ME");
    EXPECT_TRUE(colours::isHighContrast());
    EXPECT_FALSE(motionWanted());
    setUpApplication(*qApp, where);
    EXPECT_TRUE(colours::isHighContrast());
    click("cmdReset");
    EXPECT_TRUE(QTest::qWaitFor([&] { return crop->text() == "Crop"; }));
    EXPECT_FALSE(page->findChild<QAbstractButton *>("chkCalm")->isChecked());
    EXPECT_FALSE(colours::isHighContrast());
    EXPECT_FALSE(settingsText().contains("For me"));
}

TEST_F(Start, ThePhotoOfTheCommandLineIsOpen) {
    basMain program(Installation{m_folder.path()});
    ASSERT_TRUE(program.Main("\"My Cat (2).PNG\""));
    EXPECT_TRUE(QTest::qWaitFor([&] { return program.context().photo.PhotoLoaded(); }));
    EXPECT_EQ(program.context().photo.picCanvas().size(), QSize(40, 30));
    EXPECT_FALSE(program.context().photo.PhotoModified());
}

TEST_F(Start, LeavingTheEditorShowsTheLauncherAndANewStartBeginsEmpty) {
    basMain program(Installation{m_folder.path()});
    QSignalSpy ended(&program, &basMain::ended);
    ASSERT_TRUE(program.Main("cat.png"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return program.context().photo.PhotoLoaded(); }));

    Q_EMIT program.mainWindow()->leave();
    EXPECT_EQ(program.mainWindow(), nullptr);
    EXPECT_TRUE(program.launcher()->isVisible());

    program.launcher()->findChild<QAbstractButton *>("cmdSimpleMode")->click();
    ASSERT_NE(program.mainWindow(), nullptr);
    EXPECT_TRUE(program.mainWindow()->isVisible());
    EXPECT_FALSE(program.launcher()->isVisible());
    EXPECT_TRUE(program.context().flags.SimpleModeOn);
    EXPECT_FALSE(program.context().photo.PhotoLoaded());
    EXPECT_EQ(test::setting(program.context(), "Dialogs", "Style", "?"), "0");

    Q_EMIT program.mainWindow()->leave();
    program.launcher()->findChild<QAbstractButton *>("cmdAdvMode")->click();
    EXPECT_FALSE(program.context().flags.SimpleModeOn);
    Q_EMIT program.mainWindow()->leave();
    QTest::qWait(1);
    EXPECT_EQ(ended.count(), 0);

    program.launcher()->findChild<QAbstractButton *>("cmdExit")->click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return ended.count() == 1; }));
    EXPECT_EQ(program.launcher(), nullptr);
}

TEST_F(Start, CutOutIsHiddenFromTheLauncherOnly) {
    basMain program(Installation{m_folder.path()});
    ASSERT_TRUE(program.Main("/s"));
    EXPECT_FALSE(program.mainWindow()->findChild<QWidget *>("cmdCropCut")->isHidden());
    Q_EMIT program.mainWindow()->leave();
    program.launcher()->findChild<QAbstractButton *>("cmdSimpleMode")->click();
    EXPECT_TRUE(program.mainWindow()->findChild<QWidget *>("cmdCropCut")->isHidden());
}

TEST_F(Start, TheSplashLeadsToTheLauncher) {
    basMain program(Installation{m_folder.path()});
    QSignalSpy ended(&program, &basMain::ended);
    test::writeSetting(program.context(), "Display Message", "Value", "0");
    ASSERT_TRUE(program.Main(""));
    QTest::qWait(20);
    test::tick(*program.splash(), "tmrLoader");
    EXPECT_TRUE(QTest::qWaitFor([&] { return program.splash() == nullptr; }));
    ASSERT_NE(program.launcher(), nullptr);
    EXPECT_TRUE(program.launcher()->isVisible());
    EXPECT_EQ(ended.count(), 0);
}

TEST_F(Start, ASplashThatStaysCanBeClosedAndEndsTheProgram) {
    basMain program(Installation{m_folder.path()});
    QSignalSpy ended(&program, &basMain::ended);
    test::writeSetting(program.context(), "Display Message", "Value", "2");
    ASSERT_TRUE(program.Main(""));
    QTest::qWait(50);
    QTest::keyClick(program.splash(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ended.count() == 1; }));
    EXPECT_EQ(program.launcher(), nullptr);
}

} // namespace
} // namespace lumora
