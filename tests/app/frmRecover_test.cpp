// Recovery after a crash: the question, its answers, and the ways in which the program ends without asking.
#include "dialogs/frmPrompt.h"

#include "app/ClosingSignals.h"
#include "document/Recovery.h"
#include "session/BackgroundTasks.h"
#include "support/TestPictures.h"
#include "support/TextCheck.h"
#include "window/RecoveryOffer.h"

#include "support/ShellCheck.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QTest>
#include <QThread>
#include <csignal>
#include <functional>
#include <iostream>
#include <optional>
#include <sys/wait.h>
#include <unistd.h>

namespace lumora {
namespace {

using test::firstDifference;
using test::photoLike;

QStringList copiesIn(const QString &folder) {
    return QDir(folder).entryList({"photo-*"}, QDir::Dirs);
}

class Recover : public test::Shell {
  protected:
    QString recoveryFolder() const { return m_folder.filePath("recovery"); }
    void leave(const QImage &photo) const {
        PictureMetadata metadata;
        metadata.xmp = "title";
        ASSERT_TRUE(RecoveryFolder(recoveryFolder()).write({photo, metadata}));
    }

    /// Waits for the question, runs an action in it and closes it if still open. Returns false when none came.
    static bool answer(const std::function<void(QWidget &)> &hand) {
        QWidget *window = nullptr;
        const auto asked = [&window] {
            window = QApplication::activeModalWidget();
            return window != nullptr && window->objectName() == "frmRecover" && window->isVisible();
        };
        QTimer looking;
        bool answered = false;
        QObject::connect(&looking, &QTimer::timeout, [&] {
            if (asked()) {
                looking.stop();
                hand(*window);
                window->close();
                answered = true;
            }
        });
        looking.start(5);
        return QTest::qWaitFor([&] { return answered; }, 20'000);
    }
};

void press(QWidget &window, const char *button) {
    auto *control = window.findChild<QAbstractButton *>(button);
    ASSERT_NE(control, nullptr) << button;
    control->click();
}

TEST_F(Recover, EveryAnswer) {
    const QImage photo = photoLike(160, 120, true);
    const QImage own = photoLike(50, 40);
    struct Way {
        const char *name;
        std::function<void(QWidget &)> hand;
        bool taken;
        int copiesAfterwards; ///< with the program still running
    };
    const Way ways[] = {
        {"Yes", [](QWidget &window) { press(window, "cmdYes"); }, true, 1},
        {"Enter", [](QWidget &window) { QTest::keyClick(&window, Qt::Key_Return); }, true, 1},
        {"No", [](QWidget &window) { press(window, "cmdNo"); }, false, 0},
        {"Esc", [](QWidget &window) { QTest::keyClick(&window, Qt::Key_Escape); }, false, 1},
        {"closed by the window system", [](QWidget &window) { window.close(); }, false, 1},
    };
    for (const Way &way : ways) {
        for (const bool withPhoto : {false, true}) {
            SCOPED_TRACE(testing::Message() << way.name << (withPhoto ? ", over a photo" : ""));
            leave(photo);
            AppContext sitting(Installation{m_folder.path()});
            QWidget window;
            window.show();
            Recovery recovery(sitting.photo, recoveryFolder());
            if (withPhoto) {
                sitting.photo.openPicture({own, PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto);
            }
            RecoveryOffer offer(sitting, recovery, &window);
            bool opened = false;
            QObject::connect(&offer, &RecoveryOffer::opened, [&opened] { opened = true; });
            ASSERT_TRUE(answer(way.hand));
            ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::activeModalWidget() == nullptr; }));
            QTest::qWait(0);
            EXPECT_EQ(opened, way.taken);
            EXPECT_EQ(sitting.photo.PhotoModified(), way.taken);
            EXPECT_EQ(sitting.photo.metadata().xmp, way.taken ? "title" : "");
            const QImage expected = way.taken ? photo : withPhoto ? own : QImage();
            EXPECT_EQ(firstDifference(sitting.photo.picCanvas(), expected), QPoint(-1, -1));
            recovery.keepNow();
            EXPECT_EQ(copiesIn(recoveryFolder()).size(), way.copiesAfterwards);
            if (way.taken && withPhoto) {
                EXPECT_TRUE(sitting.photo.PerformUndo());
                EXPECT_EQ(firstDifference(sitting.photo.picCanvas(), own), QPoint(-1, -1));
            }
            QDir(recoveryFolder()).removeRecursively();
        }
    }
}

TEST_F(Recover, ADamagedCopyIsToldAndNothingIsAsked) {
    for (const bool damaged : {false, true}) {
        if (damaged) {
            leave(photoLike(30, 30));
            QFile copy(recoveryFolder() + '/' + copiesIn(recoveryFolder()).value(0) + "/copy");
            ASSERT_TRUE(copy.resize(copy.size() / 2));
        }
        QWidget window;
        window.show();
        Recovery recovery(context.photo, recoveryFolder());
        RecoveryOffer offer(context, recovery, &window);
        EXPECT_TRUE(QTest::qWaitFor([this] { return copiesIn(recoveryFolder()).isEmpty(); }, 20'000));
        QTest::qWait(50);
        auto *box = window.findChild<QMessageBox *>("msgCopyDamaged");
        EXPECT_EQ(QApplication::activeModalWidget(), box);
        EXPECT_EQ(box != nullptr, damaged);
        if (box != nullptr) {
            EXPECT_TRUE(box->text().contains(recoveryFolder()));
            EXPECT_EQ(QDir(recoveryFolder()).entryList({"damaged-*"}, QDir::Dirs).size(), 1);
            box->close();
        }
    }
}

TEST_F(Recover, WindowShowsThePhotoAndItsTexts) {
    ASSERT_TRUE(test::writeChangedLanguageFile(m_folder.filePath("language.ini")));
    for (const QSize size : {QSize(1, 1), QSize(4000, 3), QSize(2, 3000), QSize(640, 480)}) {
        frmPrompt window(context, PromptKind::Recover, nullptr, photoLike(size.width(), size.height(), true));
        EXPECT_EQ(test::textsNotShown(window), QStringList());
        const QPixmap shown = window.findChild<QLabel *>("picRecover")->pixmap(Qt::ReturnByValue);
        EXPECT_GE(std::min(shown.width(), shown.height()), 96);
        EXPECT_LE(shown.width(), 460);
        EXPECT_LE(shown.height(), 340);
        EXPECT_LE(window.sizeHint().height(), 700) << "does not fit on a small screen";
        EXPECT_FALSE(window.findChild<QLabel *>("lblPrompt")->text().isEmpty());
    }
}

/// A program in another process that gets a signal just after changing its photo.
class Program {
  public:
    Program(const QString &folder, const char *how) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LUMORA_TEST_RECOVERY", folder);
        environment.insert("LUMORA_TEST_END", how);
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationFilePath(),
                        {"--gtest_filter=RecoverProgram.DISABLED_runs", "--gtest_also_run_disabled_tests"});
        while (!m_process.readAllStandardOutput().contains("ready") && m_process.waitForReadyRead(60'000)) {
        }
    }
    qint64 processId() const { return m_process.processId(); }
    /// Its exit code; nothing when it did not exit by itself.
    std::optional<int> exitCode() {
        const bool ended = m_process.waitForFinished(60'000) && m_process.exitStatus() == QProcess::NormalExit;
        return ended ? std::optional(m_process.exitCode()) : std::nullopt;
    }

  private:
    QProcess m_process;
};

QImage lastChange() {
    return photoLike(1500, 1000, true);
}

} // namespace

// Not a test: what Program runs.
TEST(RecoverProgram, DISABLED_runs) {
    const QByteArray how = qgetenv("LUMORA_TEST_END");
    int code = -1;
    {
        const ClosingSignals closingSignals;
        PhotoDocument photo;
        const Recovery recovery(photo, qEnvironmentVariable("LUMORA_TEST_RECOVERY"));
        QTimer::singleShot(0, qApp, [&] {
            for (int n = 1; n <= 5; ++n) {
                ASSERT_TRUE(photo.changePhoto(photoLike(1500, 1000 + n)));
            }
            if (how == "working") { // the result of the task is still used
                std::cout << "ready" << std::endl;
                BackgroundTasks tasks;
                tasks.run([] { QThread::msleep(1000); });
                ASSERT_TRUE(photo.changePhoto(lastChange()));
                return;
            }
            ASSERT_TRUE(photo.changePhoto(lastChange()));
            if (how == "saved") {
                photo.setPhotoModified(false);
            }
            std::cout << "ready" << std::endl;
            if (how == "dialog") { // a question is open and is not answered
                QDialog dialog;
                dialog.exec();
            }
        });
        code = QApplication::exec();
    }
    ::_exit(testing::Test::HasFailure() ? 99 : code);
}

namespace {

TEST_F(Recover, SignalsEndCleanlyAndKeepTheLastChange) {
    const struct {
        int number;
        const char *how;
        bool kept;
    } rows[] = {
        {SIGTERM, "", true},       {SIGINT, "", true},        {SIGHUP, "", true},
        {SIGTERM, "dialog", true}, {SIGTERM, "saved", false}, {SIGTERM, "working", true},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << "signal " << row.number << ' ' << row.how);
        Program program(recoveryFolder(), row.how);
        ASSERT_EQ(::kill(static_cast<pid_t>(program.processId()), row.number), 0);
        EXPECT_EQ(program.exitCode(), 0);
        KeptPhoto found;
        const auto left = RecoveryFolder::findNewest(recoveryFolder(), found);
        if (row.kept) {
            ASSERT_NE(left, nullptr);
            EXPECT_EQ(firstDifference(found.picture, lastChange()), QPoint(-1, -1));
            left->clear();
        }
        EXPECT_EQ(copiesIn(recoveryFolder()), QStringList());
    }
}

/// As a helper program is that is ended between the fork and its own start.
TEST_F(Recover, AChildThatIsEndedAtOnceDoesNotEndTheProgram) {
    const ClosingSignals closingSignals;
    const pid_t child = ::fork();
    if (child == 0) {
        ::pause();
        ::_exit(0);
    }
    ASSERT_EQ(::kill(child, SIGTERM), 0);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    QTimer::singleShot(200, qApp, [] { QCoreApplication::exit(7); });
    EXPECT_EQ(QApplication::exec(), 7);
}

TEST_F(Recover, IgnoredSignalsStayIgnored) {
    const auto before = std::signal(SIGHUP, SIG_IGN);
    {
        const ClosingSignals closingSignals;
        EXPECT_EQ(::raise(SIGHUP), 0);
        EXPECT_NE(std::signal(SIGTERM, SIG_DFL), SIG_DFL);
    }
    EXPECT_EQ(std::signal(SIGHUP, before), SIG_IGN);
}

} // namespace
} // namespace lumora
