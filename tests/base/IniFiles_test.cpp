// Ini files on a disk: content, write access, and how often they are read.
#include "base/IniFiles.h"

#include "base/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace lumora {
namespace {

class IniFilesTest : public testing::Test {
  protected:
    static QString userCopy() {
        return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/lumora/Lumora.ini";
    }
    static void put(const QString &path, const QByteArray &bytes) {
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        ASSERT_EQ(out.write(bytes), bytes.size());
    }
    static QByteArray get(const QString &path) {
        QFile in(path);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray("no file");
    }
    QString read(const char *section = "A", const char *key = "k") {
        return ini.ReadIniValue(file, section, key, "default");
    }

    test::TemporaryHome home;
    QTemporaryDir folder;
    QString file = folder.filePath("Lumora.ini");
    IniFiles ini{std::chrono::milliseconds(0)}; // every read checks the file
};

TEST_F(IniFilesTest, AcceptsAnyContent) {
    const struct {
        const char *name;
        QByteArray bytes;
        QString expected;
    } cases[] = {
        {"empty", "", "default"},
        {"plain", "[A]\nk=1", "1"},
        {"empty value", "[A]\nk=", ""},
        {"ten megabytes, the value last", QByteArray("; x\n[S]\ny=1\n").repeated(1'000'000) + "[A]\nk=end", "end"},
        {"ten megabytes in one line", "[A]\nk=1\nl=" + QByteArray(10'000'000, 'x'), "1"},
        {"exactly 900", "[A]\nk=" + QByteArray(900, 'x'), QString(900, 'x')},
        {"901", "[A]\nk=" + QByteArray(901, 'x'), QString(900, 'x')},
        {"900 splits a pair", "[A]\nk=" + QByteArray(899, 'x') + "\U0001F600", QString(899, 'x')},
        {"900 ends with a pair", "[A]\nk=" + QByteArray(898, 'x') + "\U0001F600!",
         QString(898, 'x') + QString::fromUtf8("\U0001F600")},
    };
    EXPECT_EQ(read(), "default") << "no file";
    for (const auto &c : cases) {
        put(file, c.bytes);
        EXPECT_EQ(read(), c.expected) << c.name;
    }
}

TEST_F(IniFilesTest, NonFilesGiveDefaultsAndAreKept) {
    ASSERT_TRUE(QDir().mkdir(file));
    EXPECT_EQ(read(), "default");
    EXPECT_TRUE(ini.WriteIniValue(file, "A", "k", "1"));
    EXPECT_TRUE(QFileInfo(file).isDir());
    EXPECT_EQ(read(), "1") << "kept for the user";

    ASSERT_TRUE(QDir().rmdir(file));
    ASSERT_TRUE(QFile::remove(userCopy()));
    ASSERT_EQ(::mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    EXPECT_EQ(read(), "default") << "a pipe that nobody writes to must not stop the program";
}

TEST_F(IniFilesTest, WritesReplaceTheFileAndAreReadBack) {
    EXPECT_TRUE(ini.WriteIniValue(file, "A", "k", "1"));
    EXPECT_TRUE(ini.WriteIniValue(file, "B", "x", "2"));
    EXPECT_TRUE(ini.WriteIniValue(file, "A", "k", "3"));
    EXPECT_TRUE(ini.WriteIniValue(file, "A]", "k", "4"));
    EXPECT_EQ(get(file), "[A]\nk=3\n\n[B]\nx=2\n");
    EXPECT_EQ(read(), "3");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 1)
        << "no temporary file is left";
}

TEST_F(IniFilesTest, SeveralValuesReplaceTheFileOnce) {
    put(file, "; mine\n[A]\nk=0\n");
    const auto identity = [&] {
        struct stat status = {};
        ::stat(QFile::encodeName(file).constData(), &status);
        return status.st_ino;
    };
    const QString before = folder.filePath("before"); // holds the first file, so that its number is not used again
    ASSERT_EQ(::link(QFile::encodeName(file).constData(), QFile::encodeName(before).constData()), 0);
    const auto first = identity();
    const QList<IniFiles::Value> values = {{"A", "k", "1"}, {"B", "x", "2"}, {"", "x", "3"}, {"A", "l", "4"}};
    const int looks = ini.looks();
    ini.writeValues(file, values);
    EXPECT_EQ(ini.looks(), looks + 2) << "before and after";
    EXPECT_EQ(get(file), "; mine\n[A]\nk=1\nl=4\n\n[B]\nx=2\n");
    const auto second = identity();
    EXPECT_NE(second, first);
    ini.writeValues(file, values);
    EXPECT_EQ(identity(), second) << "nothing had to change";
}

TEST_F(IniFilesTest, AWriteKeepsLinkAndMode) {
    const QString real = folder.filePath("real.ini");
    put(real, "[A]\nk=1\n");
    ASSERT_EQ(::chmod(QFile::encodeName(real).constData(), 0640), 0);
    ASSERT_TRUE(QFile::link(real, file));
    ini.WriteIniValue(file, "A", "k", "2");
    EXPECT_TRUE(QFileInfo(file).isSymLink());
    EXPECT_EQ(get(real), "[A]\nk=2\n");
    struct stat status = {};
    ASSERT_EQ(::stat(QFile::encodeName(real).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
}

TEST_F(IniFilesTest, WritesGoToTheUserWhenTheFolderIsReadOnly) {
    // A folder that does not exist cannot be written, not even by root, which may run the tests.
    file = folder.filePath("gone/Lumora.ini");
    EXPECT_TRUE(ini.WriteIniValue(file, "A", "k", "user"));
    EXPECT_EQ(get(userCopy()), "[A]\nk=user\n");
    EXPECT_EQ(read(), "user");

    // The program's file is read-only, and the user's copy overrides it.
    const QString shipped = folder.filePath("Lumora.ini");
    put(shipped, "[A]\nk=shipped\nl=both\n");
    EXPECT_EQ(ini.ReadIniValue(shipped, "A", "k", "default"), "shipped") << "a writable file is the only one used";
    if (::geteuid() != 0) {
        ASSERT_EQ(::chmod(QFile::encodeName(shipped).constData(), 0444), 0);
        EXPECT_EQ(ini.ReadIniValue(shipped, "A", "k", "default"), "user");
        EXPECT_EQ(ini.ReadIniValue(shipped, "A", "l", "default"), "both");
        ini.WriteIniValue(shipped, "A", "l", "mine");
        EXPECT_EQ(get(userCopy()), "[A]\nk=user\nl=mine\n");
        EXPECT_EQ(get(shipped), "[A]\nk=shipped\nl=both\n");
    }
}

TEST_F(IniFilesTest, ManyReadsOpenTheFileOnceAndStillSeeChanges) {
    put(file, "[A]\nk=1\n");
    // Wait for the file system's clock to tick, so that the file is older than now.
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    const int watch = ::inotify_init1(IN_NONBLOCK);
    ASSERT_GE(watch, 0);
    ASSERT_GE(::inotify_add_watch(watch, QFile::encodeName(file).constData(), IN_OPEN), 0);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(read(), "1");
        EXPECT_EQ(read("A", "missing"), "default");
    }
    char events[4096];
    EXPECT_EQ(::read(watch, events, sizeof events), static_cast<ssize_t>(sizeof(inotify_event))) << "one open";
    EXPECT_LT(::read(watch, events, sizeof events), 0);
    ::close(watch);

    // Same size, nearly the same time: each change must be noticed.
    for (int i = 0; i < 50; ++i) {
        const QByteArray digit = QByteArray::number(i % 10);
        put(file, "[A]\nk=" + digit + "\n");
        EXPECT_EQ(read(), digit);
    }
    QFile::remove(file);
    EXPECT_EQ(read(), "default");
}

TEST_F(IniFilesTest, ReadsBetweenTwoLooksCostNone) {
    IniFiles patient(std::chrono::hours(1));
    const auto readPatiently = [&] { return patient.ReadIniValue(file, "A", "k", "default"); };
    put(file, "[A]\nk=1\n");
    EXPECT_EQ(readPatiently(), "1");
    const int looks = patient.looks();
    const quint64 revision = patient.revision();
    put(file, "[A]\nk=2\n");
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(readPatiently(), "1");
        EXPECT_EQ(patient.revision(), revision);
    }
    EXPECT_EQ(patient.looks(), looks);

    patient.lookAgain();
    EXPECT_NE(patient.revision(), revision);
    EXPECT_EQ(readPatiently(), "2");
    EXPECT_EQ(patient.looks(), looks + 1);
    patient.WriteIniValue(file, "A", "k", "3");
    EXPECT_EQ(readPatiently(), "3") << "a write of one's own is seen at once";

    // What another program has written meanwhile is not lost by a write, though it has not been read.
    put(file, "[A]\nk=3\nother=4\n");
    patient.WriteIniValue(file, "A", "k", "5");
    EXPECT_EQ(get(file), "[A]\nk=5\nother=4\n");
}

TEST_F(IniFilesTest, AChangeFromOutsideIsSeenSoon) {
    IniFiles usual;
    const auto seen = [&] { return usual.ReadIniValue(file, "A", "k", "default"); };
    EXPECT_EQ(seen(), "default");
    const quint64 before = usual.revision();
    put(file + ".new", "[A]\nk=1\n"); // as an editor does: a new file takes the old one's place
    ASSERT_EQ(::rename(QFile::encodeName(file + ".new").constData(), QFile::encodeName(file).constData()), 0);
    EXPECT_EQ(seen(), "default") << "no read waits for the disk";
    while (seen() != "1") { // the test's time limit ends it when the change is never noticed
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_NE(usual.revision(), before);
}

TEST_F(IniFilesTest, AWriteElsewhereInTheProgramIsSeenAtOnce) {
    IniFiles patient(std::chrono::hours(1));
    IniFiles other(std::chrono::hours(1));
    put(file, "[A]\nk=1\n");
    EXPECT_EQ(patient.ReadIniValue(file, "A", "k", "default"), "1");
    other.WriteIniValue(file, "A", "k", "2");
    EXPECT_EQ(patient.ReadIniValue(file, "A", "k", "default"), "2");
    EXPECT_EQ(other.ReadIniValue(file, "A", "k", "default"), "2");
}

TEST_F(IniFilesTest, ReadersNeverSeeAHalfWrittenFile) {
    put(file, "[Z]\nlast=" + QByteArray(100'000, 'z') + "\n");
    std::atomic<bool> done = false;
    int torn = 0;
    std::thread reader([&] {
        while (!done) {
            const QByteArray bytes = get(file);
            torn += bytes.size() < 100'000 ? 1 : 0;
        }
    });
    for (int i = 0; i < 40; ++i) {
        ini.WriteIniValue(file, "A", "k", QString::number(i));
    }
    done = true;
    reader.join();
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(read(), "39");
}

} // namespace
} // namespace lumora
