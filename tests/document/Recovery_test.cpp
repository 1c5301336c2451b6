// What is left of unsaved work after a crash: the copies themselves, whose they are, and when they go.
#include "document/Recovery.h"

#include "base/TemporaryHome.h"
#include "document/RecoveryCopy.h"
#include "support/TestFiles.h"
#include "support/TestPictures.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace lumora;
using namespace lumora::test;

namespace {

QStringList foldersIn(const QString &parent) {
    return QDir(parent).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

/// The pixels of the only copy below the folder; a null picture when there is none or it is not whole.
QImage onlyCopy(const QString &parent) {
    const QStringList folders = foldersIn(parent);
    KeptPhoto photo;
    if (folders.size() == 1) {
        const QByteArray path = QFile::encodeName(parent + '/' + folders[0] + "/copy");
        const int file = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
        if (file >= 0) {
            readRecoveryCopy(file, photo);
            ::close(file);
        }
    }
    return photo.picture;
}

int modeOf(const QString &path) {
    struct stat status {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
}

void fill(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

/// A copy that a program which is no more has left; the path of its folder.
QString leave(const QString &parent, const QImage &picture) {
    const QStringList before = foldersIn(parent);
    EXPECT_TRUE(RecoveryFolder(parent).write({picture}));
    QString made;
    for (const QString &name : foldersIn(parent)) {
        made = before.contains(name) ? made : parent + '/' + name;
    }
    return made;
}

/// Removes the folders of damaged copies; the names of those whose copy has these bytes.
QStringList takeAside(const QString &parent, const QByteArray &bytes) {
    QStringList same;
    for (const QString &name : foldersIn(parent).filter("damaged-")) {
        QDir folder(parent + '/' + name);
        if (folder.entryList(QDir::Files | QDir::Hidden) == QStringList("copy") &&
            QFileInfo(folder.filePath("copy")).size() == bytes.size() && contents(folder.filePath("copy")) == bytes) {
            same << name;
        }
        EXPECT_TRUE(folder.removeRecursively());
    }
    return same;
}

/// The n-th of the pictures that a working program goes through.
QImage change(int n) {
    QImage picture = photoLike(900, 700, true);
    picture.setPixel(n % 900, n / 900, qRgba(1, 2, 3, 4));
    return picture;
}

constexpr int changesBeforeReady = 3;

/// A photo as a tool has just changed it.
struct Work {
    explicit Work(const QString &folder) : recovery(photo, folder) {}
    PhotoDocument photo;
    Recovery recovery;
};

/// The same in another process, which works until it is ended.
class Worker {
  public:
    explicit Worker(const QString &folder) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LUMORA_TEST_RECOVERY", folder);
        m_process.setProcessEnvironment(environment);
        m_process.start(QCoreApplication::applicationFilePath(),
                        {"--gtest_filter=RecoveryWorker.DISABLED_works", "--gtest_also_run_disabled_tests"});
        while (!m_process.readAllStandardOutput().contains("ready")) {
            if (!m_process.waitForReadyRead(60'000)) {
                ADD_FAILURE() << "the other process has not begun to work";
                return;
            }
        }
    }
    ~Worker() { kill(); }
    void kill() {
        m_process.kill();
        m_process.waitForFinished(60'000);
    }

  private:
    QProcess m_process;
};

} // namespace

// Not a test: what Worker runs.
TEST(RecoveryWorker, DISABLED_works) {
    Work work(qEnvironmentVariable("LUMORA_TEST_RECOVERY"));
    for (int n = 1;; ++n) {
        ASSERT_TRUE(work.photo.changePhoto(change(n)));
        if (n == changesBeforeReady) {
            work.recovery.keepNow();
            std::cout << "ready" << std::endl;
        }
    }
}

TEST(RecoveryFolder, givesEveryBitBackAndIsPrivate) {
    const QTemporaryDir home;
    const QString parent = home.filePath("data/Lumora/recovery");
    for (const QSize size : {QSize(1, 1), QSize(1, 3000), QSize(5000, 2), QSize(1201, 901)}) {
        for (const bool transparent : {false, true}) {
            SCOPED_TRACE(testing::Message() << size.width() << " x " << size.height() << ", " << transparent);
            const QImage photo = photoLike(size.width(), size.height(), transparent);
            const QString folder = leave(parent, photo);
            EXPECT_EQ(modeOf(parent), 0700);
            EXPECT_EQ(modeOf(folder), 0700);
            EXPECT_EQ(modeOf(folder + "/copy"), 0600);
            KeptPhoto found;
            const auto left = RecoveryFolder::findNewest(parent, found);
            ASSERT_NE(left, nullptr);
            EXPECT_EQ(found.picture.format(), photo.format());
            EXPECT_EQ(firstDifference(found.picture, photo), QPoint(-1, -1));
            left->clear();
            EXPECT_EQ(foldersIn(parent), QStringList());
        }
    }
}

TEST(RecoveryFolder, keepsWhatTheFileSaid) {
    const QTemporaryDir home;
    const KeptPhoto photo{photoLike(40, 30),
                          {.exif = QByteArray(70'000, 'e'),
                           .xmp = "<x:xmpmeta/>",
                           .iptc = "iptc",
                           .texts = {{"Title", QStringLiteral("Grandma\u2019s cat")}},
                           .dotsPerInchX = 300,
                           .dotsPerInchY = 299.5,
                           .made = QDateTime({2026, 5, 1}, {10, 20, 30})}};
    ASSERT_TRUE(RecoveryFolder(home.path()).write(photo));
    KeptPhoto found;
    ASSERT_NE(RecoveryFolder::findNewest(home.path(), found), nullptr);
    EXPECT_TRUE(found.metadata == photo.metadata);
}

TEST(RecoveryFolder, putsDamagedCopiesAsideAndFindsTheGoodOne) {
    const QTemporaryDir home;
    const QString parent = home.filePath("recovery");
    const QImage photo = photoLike(300, 200);
    const QString precious = home.filePath("precious.png");
    fill(precious, "a picture of the user's");
    const auto flipped = [](QByteArray bytes, qsizetype at) {
        bytes[at] = static_cast<char>(bytes[at] ^ 0x10);
        return bytes;
    };
    const auto sized = [](QByteArray bytes, qint32 width, qint32 height) {
        std::memcpy(bytes.data() + 8, &width, sizeof width);
        std::memcpy(bytes.data() + 12, &height, sizeof height);
        return bytes;
    };
    const struct {
        const char *name;
        std::function<QByteArray(const QByteArray &)> damage;
    } rows[] = {
        {"empty", [](const QByteArray &) { return QByteArray(); }},
        {"cut off in the header", [](const QByteArray &whole) { return whole.left(30); }},
        {"cut off after the header", [](const QByteArray &whole) { return whole.left(56); }},
        {"cut off in the pixels", [](const QByteArray &whole) { return whole.left(whole.size() / 2); }},
        {"without its last byte", [](const QByteArray &whole) { return whole.chopped(1); }},
        {"with a byte too many", [](const QByteArray &whole) { return whole + 'x'; }},
        {"of another program", [](const QByteArray &) { return QByteArray("\x89PNG\r\n\x1a\n") + QByteArray(999, 1); }},
        {"of zeros", [](const QByteArray &whole) { return QByteArray(whole.size(), 0); }},
        {"another mark", [&](const QByteArray &whole) { return flipped(whole, 7); }},
        {"another width", [&](const QByteArray &whole) { return flipped(whole, 8); }},
        {"another format", [&](const QByteArray &whole) { return flipped(whole, 16); }},
        {"opaque no more", [&](const QByteArray &whole) { return QByteArray(whole).replace(16, 1, QByteArray(1, 0)); }},
        {"another unused field", [&](const QByteArray &whole) { return flipped(whole, 20); }},
        {"another checksum", [&](const QByteArray &whole) { return flipped(whole, 40); }},
        {"another strip length", [&](const QByteArray &whole) { return flipped(whole, 58); }},
        {"another pixel", [&](const QByteArray &whole) { return flipped(whole, whole.size() / 2); }},
        {"another last pixel", [&](const QByteArray &whole) { return flipped(whole, whole.size() - 1); }},
        {"larger than any picture", [&](const QByteArray &whole) { return sized(whole, 20'000, 10'001); }},
        {"too many pixels for a number", [&](const QByteArray &whole) { return sized(whole, INT32_MAX, INT32_MAX); }},
        {"a side of nothing", [&](const QByteArray &whole) { return sized(whole, 0, 200); }},
        {"sides below nothing", [&](const QByteArray &whole) { return sized(whole, -300, -200); }},
        {"the largest picture in a few bytes", [&](const QByteArray &whole) { return sized(whole, 20'000, 10'000); }},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const QString good = leave(parent, photo);
        const QString copy = leave(parent, photo) + "/copy";
        const QByteArray whole = contents(copy);
        ASSERT_GT(whole.size(), 1000);
        const QByteArray damaged = row.damage(whole);
        fill(copy, damaged);
        KeptPhoto found;
        int count = 0;
        const auto left = RecoveryFolder::findNewest(parent, found, &count);
        ASSERT_NE(left, nullptr);
        EXPECT_EQ(firstDifference(found.picture, photo), QPoint(-1, -1));
        const QStringList aside = takeAside(parent, damaged);
        EXPECT_EQ(aside.size(), damaged.isEmpty() ? 0 : 1) << "kept as it is";
        EXPECT_EQ(count, aside.size());
        EXPECT_EQ(foldersIn(parent), QStringList{QFileInfo(good).fileName()});
        left->clear();
    }
    const struct {
        const char *name;
        std::function<int(const char *)> make;
    } others[] = {
        {"a pipe", [](const char *path) { return ::mkfifo(path, 0600); }},
        {"a link to a file", [&](const char *path) { return ::symlink(QFile::encodeName(precious), path); }},
        {"nothing", [](const char *) { return 0; }},
        {"a file of terabytes",
         [](const char *path) {
             return ::close(::open(path, O_CREAT | O_WRONLY, 0600)) | ::truncate(path, off_t{1} << 41);
         }},
    };
    for (const auto &other : others) {
        SCOPED_TRACE(other.name);
        const QString copy = leave(parent, photo) + "/copy";
        const QByteArray head = contents(copy).left(56);
        ASSERT_TRUE(QFile::remove(copy));
        ASSERT_EQ(other.make(QFile::encodeName(copy).constData()), 0);
        if (QFileInfo(copy).size() > 1000) {
            QFile file(copy);
            ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.write(head) == head.size());
        }
        KeptPhoto found;
        EXPECT_EQ(RecoveryFolder::findNewest(parent, found), nullptr);
        EXPECT_TRUE(found.picture.isNull());
        takeAside(parent, {});
        EXPECT_EQ(foldersIn(parent), QStringList());
    }
    EXPECT_EQ(contents(precious), "a picture of the user's");
}

// A crash between writing a copy and flushing it to the disk; then a power cut.
TEST(RecoveryFolder, aWholeCopyCountsBeforeItIsFlushed) {
    const QTemporaryDir home;
    const QString parent = home.filePath("recovery");
    const QImage older = photoLike(300, 200);
    const QImage newer = photoLike(200, 300);
    for (const bool inPieces : {false, true}) {
        const QString folder = leave(parent, older);
        const QString other = leave(home.filePath("other"), newer);
        const QByteArray bytes = contents(other + "/copy");
        fill(folder + "/copy.new", inPieces ? bytes.left(bytes.size() - 4096) + QByteArray(4096, 0) : bytes);
        fill(folder + "/copy.part", bytes.left(100));
        KeptPhoto found;
        const auto left = RecoveryFolder::findNewest(parent, found);
        ASSERT_NE(left, nullptr);
        EXPECT_EQ(firstDifference(found.picture, inPieces ? older : newer), QPoint(-1, -1));
        left->clear();
        EXPECT_EQ(foldersIn(parent), QStringList());
        RecoveryFolder::findNewest(home.filePath("other"), found)->clear();
    }
}

TEST(RecoveryFolder, neverFollowsLinksNorGoesToOthers) {
    const QTemporaryDir home;
    const QString elsewhere = home.filePath("elsewhere");
    const QString parent = home.filePath("recovery");
    const QImage photo = photoLike(50, 40);
    const QString left = leave(elsewhere, photo);
    KeptPhoto found;
    // The folder of all copies is a link.
    ASSERT_TRUE(QFile::link(elsewhere, parent));
    EXPECT_EQ(RecoveryFolder::findNewest(parent, found), nullptr);
    EXPECT_FALSE(RecoveryFolder(parent).write({photo}));
    ASSERT_TRUE(QFile::remove(parent));
    // A program's folder is a link.
    ASSERT_TRUE(QDir().mkpath(parent));
    ASSERT_TRUE(QFile::link(left, parent + "/photo-1"));
    EXPECT_EQ(RecoveryFolder::findNewest(parent, found), nullptr);
    // The place of the copy or of its successor is a link: it gives way, what it points to does not.
    const QString precious = home.filePath("precious");
    fill(precious, "precious");
    RecoveryFolder folder(parent);
    ASSERT_TRUE(folder.write({photo}));
    QString own = parent + '/' + foldersIn(parent).last();
    own = own.endsWith("/photo-1") ? parent + '/' + foldersIn(parent).first() : own;
    ASSERT_TRUE(QFile::remove(own + "/copy"));
    ASSERT_TRUE(QFile::link(precious, own + "/copy"));
    ASSERT_TRUE(QFile::link(precious, own + "/copy.new"));
    EXPECT_TRUE(folder.write({photo}));
    EXPECT_FALSE(QFileInfo(own + "/copy").isSymLink());
    folder.clear();
    EXPECT_EQ(contents(precious), "precious");
    EXPECT_EQ(foldersIn(left), QStringList({"copy", "lock"}));
    if (::geteuid() == 0) { // only the superuser can give files away
        const QString another = leave(parent, photo);
        ASSERT_EQ(::chown(QFile::encodeName(another).constData(), 65534, 65534), 0);
        EXPECT_EQ(RecoveryFolder::findNewest(parent, found), nullptr);
        EXPECT_EQ(foldersIn(another), QStringList({"copy", "lock"}));
        ASSERT_EQ(::chown(QFile::encodeName(parent).constData(), 65534, 65534), 0);
        EXPECT_FALSE(RecoveryFolder(parent).write({photo}));
    }
}

TEST(RecoveryFolder, whatAnEarlierVersionKeptElsewhereIsFound) {
    const TemporaryHome home;
    const QString former = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/Lumora/recovery";
    const KeptPhoto photo{.picture = photoLike(20, 10)};
    {
        RecoveryFolder folder(former);
        ASSERT_TRUE(folder.write(photo));
    }
    const QString usual = RecoveryFolder::usualParent();
    EXPECT_EQ(usual, home.path() + "/.local/state/lumora/recovery");
    KeptPhoto found;
    EXPECT_NE(RecoveryFolder::findNewest(usual, found), nullptr);
    EXPECT_EQ(found.picture, photo.picture);
    EXPECT_FALSE(QFileInfo::exists(former));
}

TEST(RecoveryFolder, newestFirstAndOlderOnesNextTime) {
    const QTemporaryDir home;
    QStringList left;
    for (const int width : {10, 20, 30}) {
        left += leave(home.path(), photoLike(width, 10));
    }
    // Time as the disk has it, whatever the order of making.
    for (const auto &[at, day] : {std::pair(0, 2), std::pair(1, 3), std::pair(2, 1)}) {
        const timespec time{day * 86400, 0};
        const timespec times[2] = {time, time};
        ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(left[at] + "/copy"), times, 0), 0);
    }
    KeptPhoto found;
    auto first = RecoveryFolder::findNewest(home.path(), found);
    EXPECT_EQ(found.picture.width(), 20);
    auto second = RecoveryFolder::findNewest(home.path(), found); // another program that starts meanwhile
    EXPECT_EQ(found.picture.width(), 10);
    first->clear();
    second.reset(); // not answered
    second = RecoveryFolder::findNewest(home.path(), found);
    EXPECT_EQ(found.picture.width(), 10);
    second->clear();
    RecoveryFolder::findNewest(home.path(), found)->clear();
    EXPECT_EQ(found.picture.width(), 30);
    EXPECT_EQ(RecoveryFolder::findNewest(home.path(), found), nullptr);
}

// The largest file that may be written is made small: writing fails as on a full disk.
TEST(RecoveryFolder, fullDiskKeepsTheLastCopy) {
    const QTemporaryDir home;
    const QImage small = photoLike(20, 10);
    RecoveryFolder folder(home.path());
    ASSERT_TRUE(folder.write({small}));
    rlimit old{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    for (const rlim_t room : {rlim_t{0}, rlim_t{40}, rlim_t{60}, rlim_t{9000}}) {
        SCOPED_TRACE(room);
        const rlimit little{room, old.rlim_max};
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &little), 0);
        const bool written = folder.write({photoLike(700, 500)});
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &old), 0);
        EXPECT_FALSE(written);
        EXPECT_EQ(firstDifference(onlyCopy(home.path()), small), QPoint(-1, -1));
        EXPECT_EQ(foldersIn(home.filePath(foldersIn(home.path())[0])), QStringList({"copy", "lock"}));
    }
    std::signal(SIGXFSZ, handler);
    EXPECT_TRUE(folder.write({photoLike(700, 500)}));
}

TEST(Recovery, followsThePhoto) {
    const QTemporaryDir home;
    const QImage first = photoLike(120, 90);
    const QImage second = photoLike(90, 120, true);
    {
        Work work(home.path());
        const auto expectCopy = [&](const QImage &picture) {
            work.recovery.keepNow();
            EXPECT_EQ(firstDifference(onlyCopy(home.path()), picture), QPoint(-1, -1));
        };
        const auto gone = [&] { return QTest::qWaitFor([&] { return foldersIn(home.path()).isEmpty(); }, 20'000); };
        work.recovery.keepNow();
        ASSERT_EQ(work.photo.openPicture({first, PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto),
                  PictureError::None);
        EXPECT_TRUE(gone()); // nothing to lose yet
        ASSERT_TRUE(work.photo.changePhoto(second));
        // Written without being asked for.
        EXPECT_TRUE(QTest::qWaitFor([&] { return !onlyCopy(home.path()).isNull(); }, 20'000));
        expectCopy(second);
        ASSERT_TRUE(work.photo.PerformUndo());
        expectCopy(first);
        const QTemporaryDir album;
        ASSERT_TRUE(work.photo.saveFile(album.filePath("a.png")).ok());
        EXPECT_TRUE(gone());
        ASSERT_TRUE(work.photo.PerformRedo()); // still counts as saved
        EXPECT_TRUE(gone());
        // A pasted picture counts as unchanged and is in no file: kept until it is saved, or another is opened.
        for (const bool saved : {true, false}) {
            ASSERT_EQ(work.photo.pastePicture({second, PictureError::None, {}}), PictureError::None);
            EXPECT_FALSE(work.photo.PhotoModified());
            EXPECT_TRUE(QTest::qWaitFor([&] { return !onlyCopy(home.path()).isNull(); }, 20'000));
            expectCopy(second);
            if (saved) {
                ASSERT_TRUE(work.photo.saveFile(album.filePath("b.png")).ok());
            } else {
                ASSERT_EQ(work.photo.openPicture({first, PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto),
                          PictureError::None);
            }
            EXPECT_TRUE(gone());
        }
        // Many changes at once: the last one counts.
        for (int n = 0; n < 20; ++n) {
            ASSERT_TRUE(work.photo.changePhoto(change(n)));
        }
        expectCopy(change(19));
        // Saved and changed again while the thread is still writing.
        ASSERT_TRUE(work.photo.changePhoto(change(20)));
        work.photo.setPhotoModified(false);
        ASSERT_TRUE(work.photo.changePhoto(second));
        expectCopy(second);
        ASSERT_TRUE(work.photo.changePhoto(change(21)));
    }
    EXPECT_EQ(foldersIn(home.path()), QStringList()) << "left by a program that ended in order";
}

TEST(Recovery, withoutAFolderOrWithOneThatCannotBe) {
    const QTemporaryDir home;
    fill(home.filePath("file"), "no folder");
    for (const QString &folder : {QString(), home.filePath("file/recovery"), home.filePath("file")}) {
        Work work(folder);
        ASSERT_TRUE(work.photo.changePhoto(photoLike(60, 50)));
        work.recovery.keepNow();
        ASSERT_TRUE(work.photo.PerformUndo());
    }
    EXPECT_EQ(contents(home.filePath("file")), "no folder");
}

TEST(Recovery, aKilledProgramLeavesAWholeChange) {
    const QTemporaryDir home;
    Worker worker(home.path());
    QTest::qWait(30); // into the middle of some later copy
    worker.kill();
    KeptPhoto found;
    const auto left = RecoveryFolder::findNewest(home.path(), found);
    ASSERT_NE(left, nullptr);
    // The one pixel that differs tells which change it is.
    const QPoint at = firstDifference(found.picture, photoLike(900, 700, true));
    const int n = at.y() * 900 + at.x();
    EXPECT_GE(n, changesBeforeReady);
    EXPECT_EQ(firstDifference(found.picture, change(n)), QPoint(-1, -1));
    left->clear();
    EXPECT_EQ(foldersIn(home.path()), QStringList()) << "the half copy stays behind";
}

TEST(Recovery, programsDoNotDisturbEachOther) {
    const QTemporaryDir home;
    const QImage own = photoLike(80, 60);
    KeptPhoto found;
    Work work(home.path());
    ASSERT_TRUE(work.photo.changePhoto(own));
    work.recovery.keepNow();
    {
        Worker worker(home.path());
        EXPECT_EQ(foldersIn(home.path()).size(), 2);
        EXPECT_EQ(RecoveryFolder::findNewest(home.path(), found), nullptr) << "both programs are alive";
    }
    const auto left = RecoveryFolder::findNewest(home.path(), found);
    ASSERT_NE(left, nullptr);
    EXPECT_EQ(found.picture.size(), QSize(900, 700));
    left->clear();
    EXPECT_EQ(firstDifference(onlyCopy(home.path()), own), QPoint(-1, -1));
}

TEST(Recovery, adoptsWhatWasLeft) {
    const QTemporaryDir home;
    const QImage photo = photoLike(200, 100);
    leave(home.path(), photo);
    Work work(home.path());
    ASSERT_TRUE(work.photo.changePhoto(photoLike(50, 50))); // something of its own
    work.recovery.keepNow();
    KeptPhoto found;
    auto left = RecoveryFolder::findNewest(home.path(), found);
    ASSERT_NE(left, nullptr);
    ASSERT_TRUE(work.photo.changePhoto(found.picture));
    work.recovery.adopt(std::move(left));
    EXPECT_EQ(firstDifference(onlyCopy(home.path()), photo), QPoint(-1, -1));
    const QImage next = photoLike(30, 20);
    ASSERT_TRUE(work.photo.changePhoto(next));
    work.recovery.keepNow();
    EXPECT_EQ(firstDifference(onlyCopy(home.path()), next), QPoint(-1, -1));
    work.photo.setPhotoModified(false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return foldersIn(home.path()).isEmpty(); }, 20'000));
}
