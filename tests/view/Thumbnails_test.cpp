#include "view/Thumbnails.h"

#include "imaging/PictureFile.h"
#include "support/TestPictures.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <gtest/gtest.h>

namespace lumora {
namespace {

class ThumbnailsTest : public testing::Test {
  protected:
    QString photo(const QString &name, int width, int height) {
        QString path = m_folder.filePath(name);
        EXPECT_TRUE(writePicture(test::photoLike(width, height), path).ok());
        return path;
    }
    QString broken(const QString &name) {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write("no picture");
        return file.fileName();
    }

    QTemporaryDir m_folder;
};

TEST_F(ThumbnailsTest, EachWantedFileComesOnceSmallOrNull) {
    const QStringList paths = {photo("wide.png", 400, 200), broken("broken.jpg"), photo("tall.bmp", 100, 300),
                               m_folder.filePath("gone.jpg"), photo("small.png", 20, 10)};
    QMap<QString, QSize> sizes;
    Thumbnails thumbnails(100);
    QObject::connect(&thumbnails, &Thumbnails::made, [&](const QString &path, const QImage &thumbnail) {
        EXPECT_FALSE(sizes.contains(path)) << path.toStdString();
        sizes[path] = thumbnail.size();
    });
    thumbnails.want(paths);
    thumbnails.want(paths); // asked again while the first are under way
    ASSERT_TRUE(QTest::qWaitFor([&] { return sizes.size() == 5; }));
    EXPECT_EQ(sizes[paths[0]], QSize(100, 50));
    EXPECT_EQ(sizes[paths[1]], QSize(0, 0));
    EXPECT_LE(qMax(sizes[paths[2]].width(), sizes[paths[2]].height()), 100);
    EXPECT_EQ(sizes[paths[3]], QSize(0, 0));
    EXPECT_GT(sizes[paths[4]].width(), 0);
}

TEST_F(ThumbnailsTest, WhatIsNoLongerWantedIsNotMade) {
    QStringList old, next;
    for (int n = 0; n < 40; ++n) {
        old += photo(QString("old%1.bmp").arg(n), 8, 8);
    }
    next += photo("next.bmp", 8, 8);
    Thumbnails thumbnails(100);
    QSignalSpy made(&thumbnails, &Thumbnails::made);
    thumbnails.want(old);
    thumbnails.want(next);
    const auto nextMade = [&] { // whichever of the two that were under way comes last
        return std::any_of(made.begin(), made.end(), [&](const auto &one) { return one[0].toString() == next[0]; });
    };
    ASSERT_TRUE(QTest::qWaitFor(nextMade));
    QTest::qWait(50);
    EXPECT_LE(made.size(), 3) << "two were under way";

    made.clear();
    thumbnails.want(old);
    thumbnails.cancel();
    QTest::qWait(50);
    EXPECT_EQ(made.size(), 0) << "another folder's thumbnails would show on the wrong files";
    thumbnails.want(next);
    EXPECT_TRUE(QTest::qWaitFor([&] { return made.size() == 1; }));
}

TEST_F(ThumbnailsTest, MayGoWhileFilesAreUnderWay) {
    const QString path = photo("large.png", 3000, 2000);
    bool told = false;
    {
        Thumbnails thumbnails(100);
        QObject::connect(&thumbnails, &Thumbnails::made, [&] { told = true; });
        thumbnails.want({path});
    }
    QTest::qWait(300);
    EXPECT_FALSE(told);
}

} // namespace
} // namespace lumora
