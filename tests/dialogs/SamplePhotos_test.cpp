// The sample photos shipped with Lumora: enough in every group, complete, large, and painted by a scene.
#include "imaging/PictureFile.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace lumora {
namespace {

TEST(SamplePhotos, EveryGroupHasSixCompletePaintedPhotos) {
    const QString source = qEnvironmentVariable("LUMORA_SOURCE");
    QFile rows(source + "/content/samples/Gallery.cpp");
    ASSERT_TRUE(rows.open(QIODevice::ReadOnly));
    const QString gallery = QString::fromUtf8(rows.readAll());
    qsizetype photos = 0;
    for (const char *group :
         {"animals", "backgrounds for stories", "geographical features", "machines", "old buildings"}) {
        const QDir folder(source + "/resources/installed/My Photos/" + group);
        const QStringList names = folder.entryList({"*.jpg"}, QDir::Files);
        EXPECT_GE(names.size(), 6) << group;
        photos += names.size();
        for (const QString &name : names) {
            SCOPED_TRACE(name.toStdString());
            const PictureRead read = readPicture(folder.filePath(name));
            EXPECT_EQ(read.error, PictureError::None);
            EXPECT_EQ(read.reason, "") << "a part is missing";
            EXPECT_GE(read.picture.width(), 1600);
            EXPECT_GE(read.picture.height(), 1200);
            const QString row = QStringLiteral("Sample{\"%1\", \"%2\",").arg(group, name.chopped(4));
            EXPECT_TRUE(gallery.contains(row)) << "nothing paints it";
        }
    }
    EXPECT_EQ(gallery.count("Sample{\""), photos) << "a painted one is missing";
}

} // namespace
} // namespace lumora
