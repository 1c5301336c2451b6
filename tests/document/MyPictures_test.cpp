// What the user can fetch back: photos that were thrown away, and the list of those that were saved.
#include "base/FileName.h"
#include "base/OwnThread.h"
#include "document/DiscardedPhotos.h"
#include "document/Recovery.h"
#include "document/SavedPhotos.h"
#include "support/TestFiles.h"
#include "support/TestPictures.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

using namespace lumora;
using namespace lumora::test;

namespace {

using Route = PhotoDocument::OpenRoute;

/// A photo with its recovery copy, as the main window has them.
struct Table {
    explicit Table(const QString &folder) : recovery(photo, folder) {
        QObject::connect(&photo, &PhotoDocument::thrownAway, &recovery, &Recovery::keepDiscarded);
    }
    void open(const QImage &picture, Route route = Route::LoadPhoto) {
        PictureMetadata said;
        said.xmp = "said";
        ASSERT_EQ(photo.openPicture({picture, PictureError::None, {}, said}, route), PictureError::None);
    }
    PhotoDocument photo;
    Recovery recovery;
};

QStringList entries(const QString &folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

/// A photo thrown away that many seconds ago; its path.
QString throwAway(const QString &folder, const QImage &picture, qint64 secondsAgo) {
    RecoveryFolder copy(folder);
    EXPECT_TRUE(copy.write({picture}));
    QString path = DiscardedPhotos(folder, 1 << 30).take(copy);
    const timespec when{::time(nullptr) - static_cast<time_t>(secondsAgo), 0};
    const timespec times[] = {when, when};
    EXPECT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
    return path;
}

QStringList pathsOf(const QList<DiscardedPhoto> &photos) {
    QStringList paths;
    for (const DiscardedPhoto &photo : photos) {
        paths += photo.path;
    }
    return paths;
}

constexpr qint64 day = 24 * 60 * 60; // seconds

} // namespace

TEST(DiscardedPhotos, EveryWayToThrowAPhotoAway) {
    const QImage mine = photoLike(300, 200);
    const QImage changed = photoLike(200, 300, true);
    const QImage other = photoLike(90, 90);
    const struct {
        const char *name;
        std::function<void(Table &)> change, go;
        const QImage *kept;
    } rows[] = {
        {"changed, another is opened", [&](Table &t) { t.photo.changePhoto(changed); },
         [&](Table &t) { t.open(other); }, &changed},
        {"changed, another comes from the big window", [&](Table &t) { t.photo.changePhoto(changed); },
         [&](Table &t) { t.open(other, Route::TmrLoadPhoto); }, &changed},
        {"changed, another is pasted", [&](Table &t) { t.photo.changePhoto(changed); },
         [&](Table &t) {
             t.photo.pastePicture({other, PictureError::None, {}});
         },
         &changed},
        {"changed, leaving", [&](Table &t) { t.photo.changePhoto(changed); }, [](Table &t) { t.photo.throwAway(); },
         &changed},
        {"scanned, another is opened", [&](Table &t) { t.open(changed, Route::Unsaved); },
         [&](Table &t) { t.open(other); }, &changed},
        {"pasted, leaving",
         [&](Table &t) {
             t.photo.pastePicture({changed, PictureError::None, {}});
         },
         [](Table &t) { t.photo.throwAway(); }, &changed},
        {"unchanged", [](Table &) {}, [&](Table &t) { t.open(other), t.photo.throwAway(); }, nullptr},
        {"unchanged, though the big window leaves the mark of the photo before",
         [&](Table &t) { t.photo.setPhotoModified(true), t.open(mine, Route::TmrLoadPhoto); },
         [](Table &t) { t.photo.throwAway(); }, nullptr},
        {"saved",
         [&](Table &t) {
             const QTemporaryDir place;
             t.photo.changePhoto(changed);
             EXPECT_TRUE(t.photo.saveFile(place.filePath("a.png")).ok());
         },
         [&](Table &t) { t.open(other), t.photo.throwAway(); }, nullptr},
    };
    for (const auto &row : rows) {
        for (const bool copyIsWritten : {false, true}) {
            SCOPED_TRACE(testing::Message() << row.name << (copyIsWritten ? ", with its copy" : ""));
            const QTemporaryDir home;
            const QString folder = home.filePath("state/recovery");
            {
                Table table(folder);
                table.open(mine);
                row.change(table);
                if (copyIsWritten) {
                    table.recovery.keepNow();
                }
                row.go(table);
            }
            finishBesides(); // as the application does at its end
            const QList<DiscardedPhoto> kept = DiscardedPhotos(folder).list();
            ASSERT_EQ(kept.size(), row.kept != nullptr ? 1 : 0);
            EXPECT_EQ(entries(folder), row.kept != nullptr ? QStringList("thrown-away") : QStringList())
                << "no copy to recover is left";
            if (row.kept != nullptr) {
                EXPECT_EQ(firstDifference(DiscardedPhotos::read(kept[0].path).picture, *row.kept), QPoint(-1, -1));
                struct stat status {};
                EXPECT_EQ(::stat(QFile::encodeName(folder + "/thrown-away").constData(), &status), 0);
                EXPECT_EQ(status.st_mode & 07777, 0700U);
            }
        }
    }
}

TEST(DiscardedPhotos, KeepsWhatTheFileSaidAndOnePhotoOnce) {
    const QTemporaryDir home;
    Table table(home.path());
    const DiscardedPhotos kept(home.path());
    const QString older = throwAway(home.path(), photoLike(50, 50), 60);
    table.open(photoLike(60, 40));
    table.photo.changePhoto(photoLike(40, 60));
    table.open(photoLike(30, 30));
    ASSERT_TRUE(QTest::qWaitFor([&] { return kept.list().size() == 2; }, 20'000));
    const QString path = kept.list()[0].path;
    const PictureRead read = DiscardedPhotos::read(path);
    EXPECT_EQ(read.metadata.xmp, "said");

    // Fetched back, and thrown away as it is.
    ASSERT_EQ(table.photo.openPicture(DiscardedPhotos::read(older), Route::Unsaved), PictureError::None);
    EXPECT_TRUE(table.photo.PhotoModified());
    table.recovery.broughtBack(older);
    table.open(photoLike(30, 30));
    EXPECT_TRUE(QTest::qWaitFor([&] { return pathsOf(kept.list()) == QStringList({older, path}); }, 20'000));
}

TEST(DiscardedPhotos, StaysBelowItsLimitsAndNeverLosesTheNewest) {
    const QTemporaryDir home;
    QStringList paths; // the newest first
    for (const qint64 age : {qint64{10}, day, 7 * day - 60, 7 * day + 60, 30 * day}) {
        paths += throwAway(home.path(), photoLike(200, 100), age);
    }
    const qint64 bytes = QFileInfo(paths[0]).size();
    EXPECT_EQ(pathsOf(DiscardedPhotos(home.path()).list()), paths.first(3)) << "for a week";
    const struct {
        qint64 limit;
        int stay;
    } rows[] = {{DiscardedPhotos::mostBytes, 3}, {2 * bytes, 2}, {bytes / 2, 1}, {0, 1}};
    for (const auto &row : rows) {
        DiscardedPhotos kept(home.path(), row.limit);
        kept.sweep();
        EXPECT_EQ(pathsOf(kept.list()), paths.first(row.stay)) << row.limit;
        EXPECT_EQ(entries(home.filePath("thrown-away")).size(), row.stay) << row.limit;
    }
    DiscardedPhotos(home.path()).clear();
    EXPECT_EQ(entries(home.path()), QStringList());
}

TEST(DiscardedPhotos, WhatIsNotThereOrNotItsOwnEndsQuietly) {
    const QTemporaryDir home;
    const QString good = throwAway(home.path(), photoLike(20, 20), 0);
    const QString inside = home.filePath("thrown-away/");
    ASSERT_TRUE(QFile::link(good, inside + "link.lumora-photo"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(inside + "pipe.lumora-photo").constData(), 0600), 0);
    QFile(inside + "notes.txt").open(QIODevice::WriteOnly);
    EXPECT_EQ(pathsOf(DiscardedPhotos(home.path()).list()), QStringList(good));
    EXPECT_EQ(DiscardedPhotos::read(inside + "link.lumora-photo").error, PictureError::NotFound);
    EXPECT_EQ(DiscardedPhotos::read(inside + "pipe.lumora-photo").error, PictureError::Damaged);
    EXPECT_EQ(DiscardedPhotos::read(inside + "none.lumora-photo").error, PictureError::NotFound);
    QFile file(good);
    ASSERT_TRUE(file.resize(file.size() - 1));
    EXPECT_EQ(DiscardedPhotos::read(good).error, PictureError::Damaged);

    // No folder can be made; the disk is full.
    const QString refused = good + "/recovery";
    for (const bool full : {false, true}) {
        rlimit old{};
        ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
        const QString folder = full ? home.filePath("full") : refused;
        if (full) {
            const rlimit little{1000, old.rlim_max};
            ::signal(SIGXFSZ, SIG_IGN);
            ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &little), 0);
        }
        {
            Table table(folder);
            table.open(photoLike(300, 200));
            table.photo.changePhoto(photoLike(300, 300));
            table.open(photoLike(30, 20));
            EXPECT_EQ(table.photo.picCanvas().size(), QSize(30, 20));
        }
        finishBesides();
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &old), 0);
        EXPECT_TRUE(DiscardedPhotos(folder).list().isEmpty());
        EXPECT_EQ(entries(folder), QStringList());
    }
    DiscardedPhotos(QString()).sweep();
    EXPECT_TRUE(DiscardedPhotos(QString()).list().isEmpty());
}

TEST(SavedPhotos, AreListedOnceWithTheNewestFirst) {
    const QTemporaryDir home;
    const QString state = home.filePath("state/recovery");
    const QString odd = home.filePath("100% of it\n" + fileNameOf("caf\xE9") + ".png");
    const QStringList saved = {home.filePath("a.png"), odd, home.filePath("gone.png"), home.filePath("a.png"),
                               home.filePath("c/../d.png")};
    for (const QString &path : saved) {
        if (!path.endsWith("gone.png")) {
            std::ofstream(fileNameBytes(QDir::cleanPath(path)).constData()) << "x";
        }
        SavedPhotos(state).add(path);
    }
    const auto listed = [&] {
        QStringList paths;
        for (const SavedPhoto &photo : SavedPhotos(state).list()) {
            paths += photo.path;
        }
        return paths;
    };
    const QStringList expected = {home.filePath("d.png"), home.filePath("a.png"), odd};
    EXPECT_EQ(listed(), expected);
    EXPECT_LT(std::abs(SavedPhotos(state).list()[0].when.secsTo(QDateTime::currentDateTime())), 60);

    // Lines of no use are left out.
    const QString list = state + "/saved-photos";
    const QByteArray good = contents(list);
    QFile file(list);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("rubbish\n \n12\nx /tmp\n5 relative.png\n" + good + QByteArray(1000, '\0'));
    file.close();
    EXPECT_EQ(listed(), expected);

    // Several programs at once, and no more than the list may hold.
    std::vector<std::jthread> programs;
    programs.reserve(2);
    for (int program = 0; program < 2; ++program) {
        programs.emplace_back([&, program] {
            for (int n = 0; n < 10; ++n) {
                SavedPhotos(state).add(home.filePath(QString("%1-%2.png").arg(program).arg(n)));
            }
        });
    }
    programs.clear();
    EXPECT_EQ(contents(list).count('\n'), 24);
    ASSERT_TRUE(file.open(QIODevice::Append));
    for (int n = 0; n < SavedPhotos::mostPhotos; ++n) {
        file.write("5 /many" + QByteArray::number(n) + '\n');
    }
    file.close();
    SavedPhotos(state).add(home.filePath("d.png"));
    EXPECT_EQ(contents(list).count('\n'), SavedPhotos::mostPhotos);

    SavedPhotos(home.filePath("a.png/recovery")).add(home.filePath("a.png")); // no folder can be made
    SavedPhotos(QString()).add(home.filePath("a.png"));
    EXPECT_TRUE(SavedPhotos(QString()).list().isEmpty());
    EXPECT_EQ(std::remove(fileNameBytes(odd).constData()), 0); // QTemporaryDir cannot
}
