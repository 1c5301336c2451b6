// The private folder of spilled undo steps: whose it is, when it is removed, and what a sweep must leave alone.
#include "document/SpillFolder.h"

#include "document/PhotoHistory.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace lumora;

namespace {

/// A process number that no process has any more.
pid_t deadProcess() {
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::_exit(0);
    }
    ::waitpid(pid, nullptr, 0);
    return pid;
}

void putFile(const QString &folder, const QString &name) {
    QFile file(folder + '/' + name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("pixels");
}

} // namespace

TEST(SpillFolder, isPrivateAndVanishes) {
    const QTemporaryDir parent;
    {
        SpillFolder folder(parent.path());
        EXPECT_TRUE(QDir(parent.path()).isEmpty()); // made with the first file
        const int file = folder.create("step-1");
        ASSERT_GE(file, 0);
        ::close(file);
        EXPECT_LT(folder.create("step-1"), 0);
        const QStringList names = QDir(parent.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        ASSERT_EQ(names.size(), 1);
        EXPECT_TRUE(names[0].startsWith(QString("lumora-history-%1-").arg(::getpid())));
        struct stat status {};
        ASSERT_EQ(::stat(parent.filePath(names[0]).toLocal8Bit().constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0700u);
        SpillFolder::sweep(parent.path());
        EXPECT_TRUE(QFile::exists(parent.filePath(names[0]) + "/step-1"));
        folder.remove("step-1");
        EXPECT_LT(folder.open("step-1"), 0);
    }
    EXPECT_TRUE(QDir(parent.path()).isEmpty());
}

TEST(SpillFolder, sweepsOnlyWhatADeadProgramLeft) {
    const QTemporaryDir parent;
    const QTemporaryDir elsewhere;
    const QDir top(parent.path());
    const QString dead = QString("lumora-history-%1-").arg(deadProcess());
    const QString reused = QString("lumora-history-%1-abcdef").arg(::getpid()); // now another process's number
    for (const QString &name : {dead + "plain", dead + "nested/inner", dead + "locked", reused,
                                QString("lumora-history-x-1"), QString("other-1-abc")}) {
        ASSERT_TRUE(top.mkpath(name));
        putFile(top.filePath(name), "step-1");
    }
    putFile(elsewhere.path(), "precious");
    ASSERT_TRUE(QFile::link(elsewhere.path(), top.filePath(dead + "link")));
    ASSERT_TRUE(QFile::link(elsewhere.filePath("precious"), top.filePath(dead + "plain/link")));
    const int locked = ::open(top.filePath(dead + "locked").toLocal8Bit().constData(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(locked, LOCK_EX | LOCK_NB), 0);

    SpillFolder::sweep(parent.path());

    EXPECT_FALSE(top.exists(dead + "plain"));
    EXPECT_FALSE(top.exists(reused));
    for (const QString &kept : {dead + "nested/inner/step-1", dead + "locked/step-1",
                                QString("lumora-history-x-1/step-1"), QString("other-1-abc/step-1")}) {
        EXPECT_TRUE(top.exists(kept)) << kept.toStdString();
    }
    EXPECT_TRUE(QFileInfo(top.filePath(dead + "link")).isSymLink());
    EXPECT_TRUE(QFile::exists(elsewhere.filePath("precious")));
    ::close(locked);
}

TEST(SpillFolder, isSweptWhenTheNextHistoryStarts) {
    const QTemporaryDir parent;
    const QString left = parent.filePath(QString("lumora-history-%1-abcdef").arg(deadProcess()));
    ASSERT_TRUE(QDir().mkpath(left));
    putFile(left, "step-1");
    const PhotoHistory history({1000, 1000, parent.path()});
    EXPECT_TRUE(QTest::qWaitFor([&left] { return !QFile::exists(left); }, 20'000));
}
