// The status line's text about the photo.
#include "session/PhotoStatus.h"

#include "base/TemporaryHome.h"
#include "session/AppContext.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace lumora {
namespace {

TEST(PhotoStatus, ShowsVersionPixelsAndMillimetres) {
    const test::TemporaryHome home;
    const QTemporaryDir folder;
    AppContext context{Installation{folder.path()}};
    const QString start = "Lumora" + QString(20, ' ') + " - Version " + versionNumber();
    EXPECT_EQ(photoStatus(context, 96), start);
    QImage picture(640, 480, QImage::Format_ARGB32);
    picture.fill(Qt::white);
    context.photo.openPicture({.picture = picture, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
    EXPECT_EQ(photoStatus(context, 96), start + " - (640 x 480 pixels - 169 x 127 millimetres)");
    EXPECT_EQ(photoStatus(context, 72), start + " - (640 x 480 pixels - 226 x 169 millimetres)");
    EXPECT_EQ(photoStatus(context, 0), photoStatus(context, 96));
    EXPECT_EQ(photoStatus(context, 96, PhotoStatusKind::Resized),
              start + " - (640 x 480 pixels -  (169 x 127 millimetres)");

    QFile out(context.installation.languageFile());
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write("[Statusbar]\nCaption=100 %2\n[StatusPhoto]\nCaption=%4, %5, %3, %2, %1\n");
    out.close();
    context.ini.lookAgain();
    EXPECT_TRUE(photoStatus(context, 96).startsWith("169, 127, 480, 640, 100 %2   "))
        << "what is put in stays as it is";
}

} // namespace
} // namespace lumora
