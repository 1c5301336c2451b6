// Writing: what is written comes back, and a file is replaced whole or not at all.
#include "base/FileName.h"
#include "base/ReplaceFile.h"
#include "imaging/Picture.h"
#include "imaging/PictureFile.h"
#include "support/TestFiles.h"
#include "support/TestPictures.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace lumora;
using namespace lumora::test;

namespace {

void fill(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

QStringList entries(const QString &folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

int modeOf(const QString &path) {
    struct stat status {};
    return stat(path.toLocal8Bit().constData(), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
}

QImage ontoWhite(const QImage &picture) {
    QImage result(picture.size(), QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            const auto lay = [&](int value) {
                return qRound((value * qAlpha(pixel) + 255.0 * (255 - qAlpha(pixel))) / 255);
            };
            result.setPixel(x, y, qRgb(lay(qRed(pixel)), lay(qGreen(pixel)), lay(qBlue(pixel))));
        }
    }
    return result;
}

double meanDifference(const QImage &a, const QImage &b) {
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            sum += std::abs(qRed(p) - qRed(q)) + std::abs(qGreen(p) - qGreen(q)) + std::abs(qBlue(p) - qBlue(q));
        }
    }
    return sum / (3.0 * a.width() * a.height());
}

// Reads TGA by the format's description alone, in any of the arrangements of uncompressed true colour.
QImage readTga(const QByteArray &bytes) {
    const auto byte = [&](qsizetype at) { return static_cast<int>(static_cast<uchar>(bytes[at])); };
    if (bytes.size() < 18 || byte(1) != 0 || byte(2) != 2 || (byte(16) != 24 && byte(16) != 32)) {
        return {};
    }
    const int width = byte(12) | byte(13) << 8;
    const int height = byte(14) | byte(15) << 8;
    const int channels = byte(16) / 8;
    const bool alpha = (byte(17) & 15) == 8;
    qsizetype at = 18 + byte(0);
    if (bytes.size() < at + qsizetype{channels} * width * height) {
        return {};
    }
    QImage picture(width, height, alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    for (int row = 0; row < height; ++row) {
        const int y = (byte(17) & 0x20) ? row : height - 1 - row;
        for (int x = 0; x < width; ++x, at += channels) {
            picture.setPixel(x, y, qRgba(byte(at + 2), byte(at + 1), byte(at), alpha ? byte(at + 3) : 255));
        }
    }
    return picture;
}

} // namespace

TEST(FilesWrite, ComesBackAsItWas) {
    QTemporaryDir folder;
    for (const QSize size : {QSize(1, 1), QSize(3, 700), QSize(501, 333), QSize(1500, 1001)}) {
        for (const bool transparent : {false, true}) {
            const QImage picture = toPicture(photoLike(size.width(), size.height(), transparent));
            for (const char *extension : {"png", "PNG", "tif", "tiff", "bmp"}) {
                SCOPED_TRACE(testing::Message() << extension << ", " << size.width() << " x " << size.height()
                                                << ", transparent " << transparent);
                const QString path = folder.filePath(QStringLiteral("picture.") + QLatin1String(extension));
                const PictureWritten written = writePicture(picture, path);
                ASSERT_TRUE(written.ok()) << written.reason.toStdString();
                const PictureRead read = readPicture(path);
                ASSERT_EQ(read.error, PictureError::None) << read.reason.toStdString();
                EXPECT_EQ(read.reason, QString());
                const bool keepsAlpha = QByteArray(extension) != "bmp";
                EXPECT_EQ(firstDifference(read.picture, keepsAlpha ? picture : ontoWhite(picture)), QPoint(-1, -1));
                // And other programs read the same.
                EXPECT_EQ(QImage(path).size(), size);
                EXPECT_EQ(entries(folder.path()).size(), 1);
                QFile::remove(path);
            }
        }
    }
}

TEST(FilesWrite, OthersReadThePng) {
    QTemporaryDir folder;
    const QImage picture = toPicture(photoLike(1201, 901, true)); // several strips
    const QString path = folder.filePath(QStringLiteral("a.png"));
    ASSERT_TRUE(writePicture(picture, path).ok());
    EXPECT_EQ(firstDifference(QImage(path).convertToFormat(QImage::Format_ARGB32), picture), QPoint(-1, -1));
}

TEST(FilesWrite, Jpeg) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.JPEG"));
    const QImage picture = toPicture(photoLike(640, 480, true));
    ASSERT_TRUE(writePicture(picture, path).ok());
    const PictureRead read = readPicture(path);
    EXPECT_EQ(read.picture.format(), QImage::Format_RGB32);
    EXPECT_LT(meanDifference(read.picture, ontoWhite(picture)), 5);
    const QByteArray small = encodeJpeg(picture, 30);
    EXPECT_LT(small.size(), QFileInfo(path).size() / 2);
    EXPECT_EQ(readPictureFromData(small).picture.size(), picture.size());
    EXPECT_TRUE(encodeJpeg(QImage()).isEmpty());
}

TEST(FilesWrite, JpegStripsJoinWithoutSeam) {
    // Coded on several cores, in eleven strips: more than the eight numbers of restart markers.
    const QImage picture = toPicture(photoLike(3000, 3500, false));
    const QByteArray file = encodeJpeg(picture, 90);
    const QImage whole = readPictureFromData(file).picture;
    ASSERT_EQ(whole.size(), picture.size());
    EXPECT_EQ(QImage::fromData(file, "JPG").size(), picture.size()) << "only the own reader takes it";
    // A part that crosses a seam, coded as a picture of its own: the same pixels but for the rows at its ends,
    // whose chroma is mixed with what follows.
    for (const int top : {0, 304, 1312, 3424}) {
        const QImage part = readPictureFromData(encodeJpeg(picture.copy(0, top, 3000, 64), 90)).picture;
        EXPECT_EQ(firstDifference(part.copy(0, 2, 3000, 60), whole.copy(0, top + 2, 3000, 60)), QPoint(-1, -1)) << top;
    }
}

TEST(FilesWrite, GifKeepsColoursAndTransparency) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.gif"));
    const QImage photo = toPicture(photoLike(400, 300, true));
    ASSERT_TRUE(writePicture(photo, path).ok());
    const QImage read = readPicture(path).picture;
    ASSERT_EQ(read.size(), photo.size());
    double sum = 0;
    for (int x = 0; x < photo.width(); ++x) {
        EXPECT_EQ(qAlpha(read.pixel(x, 150)), qAlpha(photo.pixel(x, 150)) < 128 ? 0 : 255) << "column " << x;
        sum += std::abs(qGreen(read.pixel(399 - x / 4, 150)) - qGreen(photo.pixel(399 - x / 4, 150)));
    }
    EXPECT_LT(sum / photo.width(), 12);
    // Few colours come back exactly.
    QImage drawing(64, 64, QImage::Format_RGB32);
    for (int i = 0; i < 64 * 64; ++i) {
        drawing.setPixel(i % 64, i / 64, qRgb(i / 512 * 36, 255 - i / 512 * 30, 90));
    }
    ASSERT_TRUE(writePicture(drawing, path).ok());
    EXPECT_EQ(firstDifference(readPicture(path).picture, drawing), QPoint(-1, -1));
}

TEST(FilesWrite, TgaByItsSpecification) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.tga"));
    for (const bool transparent : {false, true}) {
        const QImage picture = toPicture(photoLike(123, 45, transparent));
        ASSERT_TRUE(writePicture(picture, path).ok());
        EXPECT_EQ(firstDifference(readTga(contents(path)), picture), QPoint(-1, -1));
    }
}

TEST(FilesWrite, WhatCannotBeWritten) {
    QTemporaryDir folder;
    const QImage picture = toPicture(photoLike(20, 20));
    QDir(folder.path()).mkdir(QStringLiteral("folder.png"));
    const QString pipe = folder.filePath(QStringLiteral("pipe.png"));
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    ASSERT_EQ(symlink("loop.png", folder.filePath(QStringLiteral("loop.png")).toLocal8Bit().constData()), 0);
    const QStringList before = entries(folder.path());
    const QImage wide = toPicture(photoLike(65'536, 1));
    for (const auto &[type, most] : {std::pair("jpg", 65'500), std::pair("gif", 65'535), std::pair("tga", 65'535)}) {
        const PictureWritten written = writePicture(wide, folder.filePath(QString("wide.") + type));
        EXPECT_EQ(written.error, PictureError::SideTooLong) << type;
        EXPECT_EQ(written.mostPixels, most);
    }
    EXPECT_EQ(entries(folder.path()), before);
    const struct {
        QString path;
        PictureError error;
    } rows[] = {
        {folder.filePath(QStringLiteral("a.xyz")), PictureError::UnknownType},
        {folder.filePath(QStringLiteral("png")), PictureError::UnknownType},
        {folder.filePath(QStringLiteral("no-such/a.png")), PictureError::NotWritable},
        {folder.filePath(QStringLiteral("folder.png")), PictureError::NotWritable},
        {folder.filePath(QStringLiteral("loop.png")), PictureError::NotWritable},
        {pipe, PictureError::NotWritable},
        {folder.filePath(QString(300, QLatin1Char('n')) + QStringLiteral(".png")), PictureError::NameTooLong},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.path.toStdString());
        const PictureWritten written = writePicture(picture, row.path);
        EXPECT_EQ(written.error, row.error);
        EXPECT_FALSE(written.reason.isEmpty());
        EXPECT_EQ(entries(folder.path()), before);
    }
    EXPECT_FALSE(writePicture(QImage(), folder.filePath(QStringLiteral("null.png"))).ok());
    EXPECT_EQ(entries(folder.path()), before);
}

TEST(FilesWrite, LinksStayLinksAndModesStay) {
    QTemporaryDir folder;
    const QImage picture = toPicture(photoLike(20, 20));
    QDir(folder.path()).mkdir(QStringLiteral("album"));
    const QString real = folder.filePath(QStringLiteral("album/real.png"));
    const QString link = folder.filePath(QStringLiteral("link.png"));
    const QString second = folder.filePath(QStringLiteral("second.png"));
    fill(real, "old");
    ASSERT_EQ(chmod(real.toLocal8Bit().constData(), 0640), 0);
    ASSERT_EQ(symlink("album/real.png", link.toLocal8Bit().constData()), 0);
    ASSERT_EQ(symlink("link.png", second.toLocal8Bit().constData()), 0);
    ASSERT_TRUE(writePicture(picture, second).ok());
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_TRUE(QFileInfo(second).isSymLink());
    EXPECT_FALSE(QFileInfo(real).isSymLink());
    EXPECT_EQ(modeOf(real), 0640);
    EXPECT_EQ(readPicture(real).picture, picture);
    EXPECT_EQ(entries(folder.filePath(QStringLiteral("album"))), QStringList{QStringLiteral("real.png")});
    // A link to nothing yet: the file comes into being where it points.
    const QString dangling = folder.filePath(QStringLiteral("dangling.png"));
    ASSERT_EQ(symlink("album/new.png", dangling.toLocal8Bit().constData()), 0);
    ASSERT_TRUE(writePicture(picture, dangling).ok());
    EXPECT_TRUE(QFileInfo(dangling).isSymLink());
    EXPECT_EQ(readPicture(folder.filePath(QStringLiteral("album/new.png"))).picture, picture);
    const mode_t mask = umask(022);
    ASSERT_TRUE(writePicture(picture, folder.filePath(QStringLiteral("fresh.png"))).ok());
    umask(mask);
    EXPECT_EQ(modeOf(folder.filePath(QStringLiteral("fresh.png"))), 0644);
}

TEST(FilesWrite, ReadOnlyFolderAndFile) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.png"));
    fill(path, "old");
    // The superuser may write everywhere, and so becomes somebody else for as long as it takes.
    constexpr uid_t nobody = 65534;
    const bool superuser = geteuid() == 0;
    for (const QString &name : {folder.path(), path}) {
        ASSERT_TRUE(!superuser || chown(name.toLocal8Bit().constData(), nobody, nobody) == 0);
    }
    ASSERT_TRUE(!superuser || seteuid(nobody) == 0);
    for (const bool wholeFolder : {false, true}) {
        SCOPED_TRACE(wholeFolder ? "read-only folder" : "read-only file");
        const QByteArray name = (wholeFolder ? folder.path() : path).toLocal8Bit();
        EXPECT_EQ(chmod(name.constData(), wholeFolder ? 0555 : 0444), 0);
        EXPECT_EQ(writePicture(photoLike(9, 9), path).error,
                  wholeFolder ? PictureError::ReadOnlyFolder : PictureError::ReadOnlyFile);
        EXPECT_EQ(chmod(name.constData(), 0755), 0);
        EXPECT_EQ(contents(path), "old");
        EXPECT_EQ(entries(folder.path()), QStringList{QStringLiteral("a.png")});
    }
    ASSERT_TRUE(!superuser || seteuid(0) == 0);
}

TEST(FilesWrite, GifStripsJoinWithoutSeamAndKeepTheTone) {
    // A slope that no palette has all shades of, over several strips.
    QImage slope(1500, 2100, QImage::Format_RGB32);
    for (int y = 0; y < slope.height(); ++y) {
        for (int x = 0; x < slope.width(); ++x) {
            slope.setPixel(x, y, qRgb(x * 255 / 1500, y * 255 / 2100, (x + y) % 1500 * 255 / 1500));
        }
    }
    QTemporaryDir folder;
    const QString path = folder.filePath("a.gif");
    ASSERT_TRUE(writePicture(slope, path).ok());
    const QImage read = readPicture(path).picture;
    ASSERT_EQ(read.size(), slope.size());
    // Areas of 10 x 10 have the tone of the original, where two strips of 699 rows meet as well as anywhere.
    const auto toneError = [&](int y) {
        double sum = 0;
        for (int x = 20; x + 10 <= slope.width() - 20; x += 10) {
            int difference = 0;
            for (int i = 0; i < 100; ++i) {
                difference += qGreen(read.pixel(x + i % 10, y + i / 10)) - qGreen(slope.pixel(x + i % 10, y + i / 10));
            }
            sum += std::abs(difference / 100.0);
        }
        return sum / 146;
    };
    double all = 0;
    for (int y = 0; y + 10 <= slope.height(); y += 30) {
        all += toneError(y) / 70;
    }
    EXPECT_LT(all, 2);
    for (const int seam : {699, 1398}) {
        EXPECT_LT(toneError(seam - 5), 2 * all);
        EXPECT_LT(toneError(seam), 2 * all);
    }
    // Noise fills the table of the coding again and again, at every width of its codes.
    for (const int colours : {2, 3, 5, 16, 200, 256}) {
        QImage noise(700, 900, QImage::Format_RGB32);
        std::mt19937 random(static_cast<unsigned>(colours));
        for (int i = 0; i < 700 * 900; ++i) {
            const int shade = static_cast<int>(random() % static_cast<unsigned>(colours)) * 255 / (colours - 1);
            noise.setPixel(i % 700, i / 700, qRgb(shade, 255 - shade, 128));
        }
        ASSERT_TRUE(writePicture(noise, path).ok());
        const PictureRead back = readPicture(path);
        EXPECT_EQ(back.reason, QString()) << colours;
        EXPECT_LT(meanDifference(back.picture, noise), colours <= 16 ? 0.5 : 3) << colours;
        EXPECT_EQ(QImage(path).convertToFormat(QImage::Format_RGB32), back.picture) << "others read it differently";
    }
}

// The largest file that may be written is made small: writing fails as on a full disk.
TEST(FilesWrite, FullDiskLeavesTheOldFile) {
    QTemporaryDir folder;
    const QImage picture = toPicture(photoLike(700, 500));
    rlimit old{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    for (const char *extension : {"jpg", "png", "tif", "bmp", "gif", "tga"}) {
        for (const rlim_t room : {rlim_t{0}, rlim_t{5}, rlim_t{7000}}) {
            SCOPED_TRACE(testing::Message() << extension << ", space for " << room << " bytes");
            const QString path = folder.filePath(QStringLiteral("a.") + QLatin1String(extension));
            fill(path, "old");
            const rlimit small{room, old.rlim_max};
            ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
            const PictureWritten written = writePicture(picture, path);
            ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &old), 0);
            EXPECT_EQ(written.error, PictureError::DiskFull);
            EXPECT_FALSE(written.reason.isEmpty());
            EXPECT_EQ(contents(path), "old");
            EXPECT_EQ(entries(folder.path()).size(), 1);
            QFile::remove(path);
        }
    }
    std::signal(SIGXFSZ, handler);
}

namespace {

const QStringList ownMounts = {"--user", "--map-root-user", "--mount"};

bool canMount() {
    return QProcess::execute("unshare", ownMounts + QStringList{"true"}) == 0;
}

/// This program again, for one test, behind what the shell does first in a namespace of its own; "" for nothing.
void startAgain(QProcess &process, const QString &test, const QString &folder, const QString &first) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LUMORA_TEST_FOLDER", folder);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    const QStringList self = {QCoreApplication::applicationFilePath(), "--gtest_filter=" + test,
                              "--gtest_also_run_disabled_tests"};
    if (first.isEmpty()) {
        process.start(self.front(), self.mid(1));
    } else {
        process.start("unshare", ownMounts + QStringList{"sh", "-ec", first + "; exec \"$@\"", "sh"} + self);
    }
}

} // namespace

// Not a test of its own: what SmallDiskSaysThatItIsFull runs beside a disk of 64 kB.
TEST(FilesWriteOnASmallDisk, DISABLED_runs) {
    const QDir folder(qEnvironmentVariable("LUMORA_TEST_FOLDER"));
    for (const char *extension : {"jpg", "png", "tif", "bmp", "gif", "tga"}) {
        const QString path = folder.filePath(QString("a.") + extension);
        fill(path, "old");
        EXPECT_EQ(writePicture(photoLike(700, 500), path).error, PictureError::DiskFull) << extension;
        EXPECT_EQ(contents(path), "old");
        EXPECT_EQ(entries(folder.path()).size(), 1);
        QFile::remove(path);
    }
}

TEST(FilesWrite, SmallDiskSaysThatItIsFull) {
    if (!canMount()) {
        GTEST_SKIP() << "this system lets nobody have a mount namespace";
    }
    const QTemporaryDir folder;
    QProcess other;
    startAgain(other, "FilesWriteOnASmallDisk.DISABLED_runs", folder.path(),
               "mount -t tmpfs -o size=64k lumora-test \"$LUMORA_TEST_FOLDER\"");
    ASSERT_TRUE(other.waitForFinished(60'000));
    const QByteArray said = other.readAll();
    EXPECT_TRUE(other.exitCode() == 0 && said.contains("[  PASSED  ] 1 test")) << said.toStdString();
}

// Not a test of its own: what KilledSavesLeaveNothing kills.
TEST(FilesWriteUntilKilled, DISABLED_runs) {
    const QDir folder(qEnvironmentVariable("LUMORA_TEST_FOLDER"));
    const QImage pictures[] = {photoLike(400, 300), photoLike(300, 400)};
    for (int i = 0; writePicture(pictures[i % 2], folder.filePath("a.png")).ok(); ++i) {
        QTextStream(stdout) << "." << Qt::flush;
    }
}

TEST(FilesWrite, KilledSavesLeaveNothing) {
    // Without /proc files cannot be named afterwards, so that temporary names are used as on an older file system.
    const QString ways[] = {"", "mount -t tmpfs none /proc"};
    std::mt19937 random(7);
    for (const QString &way : ways) {
        if (!way.isEmpty() && !canMount()) {
            GTEST_SKIP() << "this system lets nobody have a mount namespace";
        }
        SCOPED_TRACE(way.toStdString());
        const QTemporaryDir folder;
        const QString path = folder.filePath("a.png");
        int left = 0;
        for (int round = 0; round < 4; ++round) {
            QProcess other;
            startAgain(other, "FilesWriteUntilKilled.DISABLED_runs", folder.path(), way);
            QByteArray said;
            while (!said.endsWith('.') && other.waitForReadyRead(30'000)) {
                said += other.readAll();
            }
            ASSERT_TRUE(said.endsWith('.')) << said.toStdString();
            QTest::qSleep(static_cast<int>(random() % 40));
            ::kill(static_cast<pid_t>(other.processId()), SIGKILL);
            ASSERT_TRUE(other.waitForFinished(30'000));
            left = std::max<int>(left, static_cast<int>(entries(folder.path()).size()) - 1);
            EXPECT_FALSE(readPicture(path).picture.isNull());
            EXPECT_EQ(readPicture(path).reason, QString());
        }
        EXPECT_LE(left, 1) << "each save removes what the one before has left";
        ASSERT_TRUE(writePicture(photoLike(20, 20), path).ok());
        EXPECT_EQ(entries(folder.path()), QStringList{"a.png"});
    }
}

TEST(FilesWrite, OnlyAbandonedTemporaryFilesAreRemoved) {
    const QTemporaryDir folder;
    const QStringList kept = {".lumora-77.tmp", ".lumora-.tmp", ".lumora-7x.tmp", ".lumora-7.tmp.jpg", "lumora-7.tmp"};
    for (const QString &name : kept + QStringList{".lumora-123.tmp"}) {
        fill(folder.filePath(name), "half");
    }
    QFile inUse(folder.filePath(kept.front()));
    ASSERT_TRUE(inUse.open(QIODevice::ReadWrite));
    ASSERT_EQ(flock(inUse.handle(), LOCK_EX), 0);
    ASSERT_TRUE(writePicture(photoLike(20, 20), folder.filePath("a.png")).ok());
    QStringList expected = kept + QStringList{"a.png"};
    expected.sort();
    QStringList there = entries(folder.path());
    there.sort();
    EXPECT_EQ(there, expected);
}

TEST(FilesWrite, UnusualNamesAreSavedAndOpenedAgain) {
    const QTemporaryDir folder;
    const QImage picture = toPicture(photoLike(20, 20));
    const QString names[] = {"a\\b:c*d?e\"f<g>h|i.png",        ".hidden.png", "  blanks .png", "a\nline.png", "%20.png",
                             QString(251, QChar('n')) + ".png"};
    for (const QString &name : names) {
        ASSERT_TRUE(writePicture(picture, folder.filePath(name)).ok()) << name.toStdString();
        EXPECT_EQ(readPicture(folder.filePath(name)).picture, picture) << name.toStdString();
        EXPECT_TRUE(entries(folder.path()).contains(name)) << name.toStdString();
    }
    EXPECT_EQ(entries(folder.path()).size(), qsizetype(std::size(names)));
    // Names that are not UTF-8: from old disks, cut-off characters, and a surrogate that somebody has encoded.
    for (const char *bytes :
         {"caf\xE9.png", "\xFF\xFE.png", "a\xE2\x82.png", "\xED\xB2\x80.png", "\xF0\x9F\x90\xB1.png"}) {
        const QString name = fileNameOf(bytes);
        EXPECT_EQ(fileNameBytes(name), bytes);
        const QString path = folder.filePath(name);
        ASSERT_TRUE(writePicture(picture, path).ok()) << bytes;
        struct stat status {};
        EXPECT_EQ(stat((folder.path().toUtf8() + '/' + bytes).constData(), &status), 0) << bytes;
        EXPECT_EQ(readPicture(path).picture, picture);
        EXPECT_EQ(readPictureHeader(path).width, 20);
        EXPECT_EQ(readThumbnail(path, 10).picture.width(), 10);
    }
}

TEST(FilesWrite, ReplaceFileTellsWhatFailed) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("settings.ini"));
    fill(path, "old");
    const auto failure = replaceFile(path, [](QIODevice &target) {
        target.write("half of the new");
        return false;
    });
    EXPECT_TRUE(failure.has_value());
    EXPECT_EQ(contents(path), "old");
    // Until the last moment readers see the old file.
    EXPECT_FALSE(replaceFile(path, [&](QIODevice &target) {
                     target.write("new");
                     EXPECT_EQ(contents(path), "old");
                     return true;
                 }).has_value());
    EXPECT_EQ(contents(path), "new");
    EXPECT_EQ(entries(folder.path()), QStringList{QStringLiteral("settings.ini")});
}
