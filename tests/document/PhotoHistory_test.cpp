// Undo and redo against a plain list of whole pictures, under budgets that keep everything, spill and drop.
#include "document/PhotoHistory.h"

#include "document/CompressedPicture.h"
#include "document/PictureDifference.h"
#include "imaging/Picture.h"
#include "support/TestPictures.h"
#include "support/TightMemory.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <random>
#include <unistd.h>

using namespace lumora;
using test::firstDifference;
using test::nowhere;
using test::photoLike;

namespace {

constexpr qint64 plenty = qint64{1} << 30;

QImage withDot(const QImage &picture, int x, int y, QRgb colour = qRgb(1, 2, 3)) {
    QImage copy = picture.copy();
    copy.setPixel(x, y, colour);
    return copy;
}

/// Some change such as tools make: a dot, a patch, everything, nothing, another size, transparency.
QImage someChange(const QImage &picture, std::minstd_rand &random) {
    const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    QImage next = picture.copy();
    const QRgb colour = qRgb(below(256), below(256), below(256));
    switch (below(6)) {
    case 0:
        return picture;
    case 1:
        next.setPixel(below(next.width()), below(next.height()), colour);
        return next;
    case 2:
        for (int i = 0; i < 9; ++i) {
            next.setPixel((next.width() - 1) / 2 + i % 3 % next.width(), i / 3 % next.height(), colour);
        }
        return next;
    case 3:
        next.invertPixels();
        return next;
    case 4:
        return photoLike(20 + below(60), 20 + below(60), below(2) == 1);
    default:
        next.fill(colour);
        return next;
    }
}

QStringList spilledFiles(const QString &folder) {
    QStringList files;
    const QDir top(folder);
    for (const QString &name : top.entryList({"lumora-history-*"}, QDir::Dirs)) {
        const QDir inside(top.filePath(name));
        for (const QString &file : inside.entryList(QDir::Files)) {
            files += inside.filePath(file);
        }
    }
    return files;
}

/// A history with its picture, changed as PhotoDocument does it.
struct Editing {
    explicit Editing(const PhotoHistory::Limits &limits) : history(limits) {}
    void change(const QImage &next) {
        ASSERT_TRUE(history.recordChange(picture, next));
        picture = next;
    }
    PhotoHistory history;
    QImage picture = photoLike(64, 48);
};

} // namespace

TEST(PhotoHistory, walksLikeAListOfWholePictures) {
    const QTemporaryDir folder;
    struct Row {
        qint64 memory;
        const char *what;
    };
    for (const Row &row : {Row{plenty, "all in memory"}, Row{20'000, "some on the disk"}, Row{0, "all on the disk"}}) {
        SCOPED_TRACE(row.what);
        std::minstd_rand random(4711);
        Editing editing({row.memory, plenty, folder.path()});
        std::vector<QImage> undo;
        std::vector<QImage> redo;
        QImage now = editing.picture;
        for (int i = 0; i < 600; ++i) {
            const auto what = random() % 10;
            if (what < 4) { // a change, now and then without its point or some time after it
                const QImage next = someChange(now, random);
                const auto point = random() % 8;
                if (point != 0) {
                    undo.push_back(now);
                }
                if (point == 1) {
                    editing.history.record();
                }
                ASSERT_TRUE(point > 1 ? editing.history.recordChange(editing.picture, next)
                                      : editing.history.replaced(editing.picture, next));
                editing.picture = next;
                now = next;
                redo.clear();
            } else if (what == 4) { // a point after which nothing changes
                editing.history.record();
                undo.push_back(now);
            } else {
                const bool back = what < 8;
                auto &from = back ? undo : redo;
                ASSERT_EQ(back ? editing.history.undo(editing.picture) : editing.history.redo(editing.picture),
                          !from.empty());
                if (!from.empty()) {
                    (back ? redo : undo).push_back(now);
                    now = from.back();
                    from.pop_back();
                }
            }
            ASSERT_EQ(firstDifference(editing.picture, now), nowhere) << "step " << i;
            ASSERT_EQ(editing.picture.format(), now.format());
            ASSERT_EQ(editing.history.undoSteps(), static_cast<int>(undo.size()));
            ASSERT_EQ(editing.history.redoSteps(), static_cast<int>(redo.size()));
        }
        editing.history.waitForWriter();
        EXPECT_EQ(editing.history.diskBytes() > 0, row.memory != plenty);
    }
    EXPECT_TRUE(QDir(folder.path()).isEmpty()); // the private folders are gone with their histories
}

TEST(PhotoHistory, costsWhatAStepChanged) {
    const QTemporaryDir folder;
    Editing editing({plenty, plenty, folder.path()});
    const qint64 whole = editing.picture.sizeInBytes();
    editing.change(withDot(editing.picture, 10, 10));
    EXPECT_EQ(editing.history.memoryBytes(), 4);
    editing.change(editing.picture.copy());
    EXPECT_EQ(editing.history.memoryBytes(), 4);
    QImage inverted = editing.picture.copy();
    inverted.invertPixels();
    editing.change(inverted);
    EXPECT_EQ(editing.history.memoryBytes(), 4 + whole);
    while (editing.history.undo(editing.picture)) {
    }
    EXPECT_EQ(editing.history.memoryBytes(), 4 + whole);
    EXPECT_TRUE(spilledFiles(folder.path()).isEmpty());
}

TEST(PhotoHistory, dropsTheOldestStepsBeyondTheDiskBudget) {
    const QTemporaryDir folder;
    Editing editing({30'000, 60'000, folder.path()});
    std::vector<QImage> pictures;
    for (int i = 0; i < 40; ++i) {
        pictures.push_back(editing.picture);
        editing.change(photoLike(60 + i, 48));
    }
    editing.history.waitForWriter();
    EXPECT_LE(editing.history.diskBytes(), 60'000);
    EXPECT_LE(editing.history.memoryBytes(), 30'000);
    const int left = editing.history.undoSteps();
    EXPECT_GT(left, 4);
    EXPECT_LT(left, 40);
    for (int i = 0; i < left; ++i) {
        ASSERT_TRUE(editing.history.undo(editing.picture));
        ASSERT_EQ(firstDifference(editing.picture, pictures[pictures.size() - 1 - i]), nowhere);
    }
    EXPECT_FALSE(editing.history.undo(editing.picture));
    for (int i = 0; i < left; ++i) {
        ASSERT_TRUE(editing.history.redo(editing.picture));
    }
    EXPECT_EQ(editing.picture.width(), 60 + 39);
}

// Not a test of its own: what costsOnlyOldStepsWhenTheDiskIsFull runs beside a disk of 64 kB.
TEST(PhotoHistoryOnASmallDisk, DISABLED_runs) {
    Editing editing({30'000, plenty, qEnvironmentVariable("LUMORA_TEST_DISK")});
    for (int i = 0; i < 40; ++i) {
        const QImage before = editing.picture;
        editing.change(photoLike(60 + i, 48));
        ASSERT_TRUE(editing.history.undo(editing.picture));
        ASSERT_EQ(firstDifference(editing.picture, before), nowhere) << "step " << i;
        ASSERT_TRUE(editing.history.redo(editing.picture));
        ASSERT_EQ(editing.picture.width(), 60 + i);
    }
    EXPECT_GT(editing.history.undoSteps(), 1);
    EXPECT_LT(editing.history.undoSteps(), 40);
}

/// The disk is mounted in a namespace of the other process: nobody else sees it, and however that process ends, nothing
/// stays mounted.
TEST(PhotoHistory, costsOnlyOldStepsWhenTheDiskIsFull) {
    const QStringList own = {"--user", "--map-root-user", "--mount"};
    if (QProcess::execute("unshare", own + QStringList{"true"}) != 0) {
        GTEST_SKIP() << "this system lets nobody have a mount namespace";
    }
    const QTemporaryDir folder;
    QProcess other;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LUMORA_TEST_DISK", folder.path());
    other.setProcessEnvironment(environment);
    other.start("unshare", own + QStringList{"sh", "-ec", "mount -t tmpfs -o size=64k lumora-test \"$0\"; exec \"$@\"",
                                             folder.path(), QCoreApplication::applicationFilePath(),
                                             "--gtest_filter=PhotoHistoryOnASmallDisk.DISABLED_runs",
                                             "--gtest_also_run_disabled_tests"});
    ASSERT_TRUE(other.waitForFinished(120'000));
    const QByteArray said = other.readAllStandardOutput() + other.readAllStandardError();
    EXPECT_EQ(other.exitCode(), 0) << said.toStdString();
    EXPECT_TRUE(said.contains("[  PASSED  ] 1 test")) << said.toStdString();
    QFile mounts("/proc/self/mounts");
    ASSERT_TRUE(mounts.open(QIODevice::ReadOnly));
    EXPECT_FALSE(mounts.readAll().contains(folder.path().toUtf8()));
}

TEST(PhotoHistory, keepsTheLastStepWhenNothingCanBeWritten) {
    Editing editing({0, plenty, "/nonexistent/folder"});
    for (int i = 0; i < 5; ++i) {
        editing.change(photoLike(70 + i, 48));
    }
    ASSERT_TRUE(editing.history.undo(editing.picture));
    EXPECT_EQ(editing.picture.width(), 73);
    ASSERT_TRUE(editing.history.redo(editing.picture));
    EXPECT_EQ(editing.picture.width(), 74);
}

TEST(PhotoHistory, leavesOutStepsWhoseFilesAreGoneOrBroken) {
    for (const bool gone : {true, false}) {
        const QTemporaryDir folder;
        Editing editing({0, plenty, folder.path()});
        const QImage first = editing.picture;
        editing.change(photoLike(50, 50));
        editing.history.waitForWriter();
        const QStringList kept = spilledFiles(folder.path());
        editing.change(withDot(editing.picture, 3, 3));
        editing.change(withDot(editing.picture, 4, 4));
        const QImage last = editing.picture;
        editing.history.waitForWriter();
        for (const QString &file : spilledFiles(folder.path())) {
            if (!kept.contains(file)) {
                ASSERT_TRUE(gone ? QFile::remove(file) : QFile::resize(file, 9));
            }
        }
        // Both dots are lost; the step before them leads back all the same, and forward again to what was last seen.
        ASSERT_TRUE(editing.history.undo(editing.picture));
        EXPECT_EQ(firstDifference(editing.picture, first), nowhere);
        EXPECT_EQ(editing.history.undoSteps(), 0);
        ASSERT_TRUE(editing.history.redo(editing.picture));
        EXPECT_EQ(firstDifference(editing.picture, last), nowhere);
        EXPECT_FALSE(editing.history.redo(editing.picture));
    }
}

TEST(PhotoHistory, goesToEveryStateThatItHas) {
    const QTemporaryDir folder;
    const std::pair<qint64, qint64> budgets[] = {{plenty, plenty}, {20'000, plenty}, {0, plenty}, {0, 30'000}};
    for (const auto &[memory, disk] : budgets) {
        SCOPED_TRACE(testing::Message() << memory << " in memory, " << disk << " on the disk");
        std::minstd_rand random(4711);
        Editing editing({memory, disk, folder.path()});
        PhotoHistory &history = editing.history;
        std::map<quint64, QImage> pictures{{history.now().id, editing.picture}};
        history.setMadeBy(QString::number(history.now().id));
        for (int i = 0; i < 300; ++i) {
            if (random() % 3 != 0) {
                editing.change(someChange(editing.picture, random));
                pictures[history.now().id] = editing.picture;
                history.setMadeBy(QString::number(history.now().id));
            } else {
                const QList<PhotoState> states = history.states();
                ASSERT_TRUE(history.moveTo(states[random() % states.size()].id, editing.picture));
            }
            const QList<PhotoState> states = history.states();
            ASSERT_EQ(states.size(), history.undoSteps() + history.redoSteps() + 1);
            ASSERT_EQ(states[history.undoSteps()].id, history.now().id);
            ASSERT_EQ(firstDifference(editing.picture, pictures[history.now().id]), nowhere) << i;
            for (const PhotoState &state : states) {
                ASSERT_EQ(state.madeBy, QString::number(state.id));
            }
        }
        EXPECT_TRUE(history.moveTo(4'000'000, editing.picture)) << "a state that is lost changes nothing";
        EXPECT_EQ(firstDifference(editing.picture, pictures[history.now().id]), nowhere);
        EXPECT_LT(history.states().size(), disk < plenty ? 100 : 300);
    }
}

TEST(PhotoHistory, goesThereInOneTaskThatTellsItsProgress) {
    const QTemporaryDir folder;
    Editing editing({0, plenty, folder.path()});
    const quint64 first = editing.history.now().id;
    const QImage opened = editing.picture;
    for (int i = 0; i < 5; ++i) {
        editing.change(withDot(editing.picture, i, i));
    }
    int tasks = 0;
    int percent = 0;
    editing.history.setTaskRunner([&](const std::function<void()> &work, Stopping) {
        TaskControl control;
        const TaskControl::Scope scope(&control);
        EXPECT_EQ(editing.history.undoSteps(), 5) << "what others see stays until the task is done";
        work();
        EXPECT_EQ(editing.history.undoSteps(), 5);
        percent = control.percent();
        ++tasks;
        return true;
    });
    ASSERT_TRUE(editing.history.moveTo(first, editing.picture));
    EXPECT_EQ(firstDifference(editing.picture, opened), nowhere);
    EXPECT_EQ(editing.history.undoSteps(), 0);
    EXPECT_EQ(editing.history.redoSteps(), 5);
    EXPECT_EQ(tasks, 1);
    EXPECT_EQ(percent, 100);
}

TEST(PhotoHistory, goesOnWhenItsFolderIsDeleted) {
    const QTemporaryDir folder;
    Editing editing({0, plenty, folder.path()});
    editing.change(photoLike(50, 50));
    editing.change(photoLike(40, 50));
    editing.history.waitForWriter();
    for (const QString &name : QDir(folder.path()).entryList({"lumora-history-*"}, QDir::Dirs)) {
        QDir(folder.filePath(name)).removeRecursively();
    }
    const QImage before = editing.picture;
    EXPECT_FALSE(editing.history.undo(editing.picture));
    EXPECT_EQ(editing.picture.cacheKey(), before.cacheKey());
    editing.change(photoLike(30, 50));
    editing.change(photoLike(20, 50));
    editing.history.waitForWriter();
    EXPECT_FALSE(spilledFiles(folder.path()).isEmpty());
    ASSERT_TRUE(editing.history.undo(editing.picture));
    ASSERT_TRUE(editing.history.undo(editing.picture));
    EXPECT_EQ(firstDifference(editing.picture, before), nowhere);
}

#ifndef __SANITIZE_ADDRESS__
namespace {

/// Runs in a process of its own: 0 when a refused undo changed nothing and the same undo works with memory again.
int undoWithoutMemory() {
    PhotoHistory history;
    const QImage before = photoLike(2500, 2500);
    QImage picture = withDot(before, 7, 7);
    history.record();
    if (!history.replaced(before, picture)) {
        return 2;
    }
    releaseKeptBuffers();
    std::optional<test::TightMemory> tight(4 << 20);
    const qint64 key = picture.cacheKey();
    const bool refused = !history.undo(picture) && picture.cacheKey() == key && history.undoSteps() == 1;
    tight.reset();
    return refused && history.undo(picture) && firstDifference(picture, before) == nowhere ? 0 : 1;
}

} // namespace

TEST(PhotoHistoryDeathTest, changesNothingWhenMemoryIsRefused) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(::_exit(undoWithoutMemory()), testing::ExitedWithCode(0), "");
}
#endif

TEST(PictureDifference, findsTheSmallestRectangle) {
    const QImage picture = photoLike(37, 29);
    EXPECT_TRUE(differingRect(picture, picture).isEmpty());
    EXPECT_TRUE(differingRect(picture, picture.copy()).isEmpty());
    std::minstd_rand random(99);
    for (int i = 0; i < 300; ++i) {
        QImage other = picture.copy();
        QRect expected;
        for (unsigned dots = 1 + random() % 4; dots > 0; --dots) {
            const QPoint at(static_cast<int>(random() % 37), static_cast<int>(random() % 29));
            other.setPixel(at, picture.pixel(at) ^ 1);
            expected |= QRect(at, QSize(1, 1));
        }
        ASSERT_EQ(differingRect(picture, other), expected) << "case " << i;
    }
}

TEST(CompressedPicture, comesBackPixelForPixelOrNotAtAll) {
    for (const QSize size : {QSize(1, 1), QSize(301, 900), QSize(5000, 70)}) {
        for (const int variant : {0, 1, 2, 3}) {
            const bool compress = (variant & 1) != 0;
            const QImage picture = photoLike(size.width(), size.height(), (variant & 2) != 0);
            QTemporaryFile file;
            ASSERT_TRUE(file.open());
            const qint64 written = writeCompressed(file.handle(), picture, compress, plenty, {});
            ASSERT_EQ(written, QFile(file.fileName()).size());
            QImage back = newPicture(size.width(), size.height(), picture.format() == QImage::Format_RGB32);
            file.seek(0);
            ASSERT_TRUE(readCompressed(file.handle(), back));
            EXPECT_EQ(firstDifference(picture, back), nowhere);
            file.resize(written - 1);
            file.seek(0);
            EXPECT_FALSE(readCompressed(file.handle(), back));
            file.seek(0);
            EXPECT_EQ(writeCompressed(file.handle(), picture, compress, written - 1, {}), -1);
        }
    }
}
