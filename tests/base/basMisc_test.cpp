// The small platform helpers used by all modules.
#include "base/basMisc.h"

#include "base/TemporaryHome.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <gtest/gtest.h>
#include <limits>

namespace lumora {
namespace {

TEST(BasMisc, ColourToRGB) {
    const struct {
        qint32 colour;
        int result;
        quint8 red, green, blue;
    } cases[] = {
        {0, 1, 0, 0, 0},
        {0x00112233, 1, 0x33, 0x22, 0x11},
        {0x00FFFFFF, 1, 255, 255, 255},
        {std::numeric_limits<qint32>::max(), 1, 255, 255, 255},
        {-1, 0, 7, 8, 9},
        {std::numeric_limits<qint32>::min(), 0, 7, 8, 9},
    };
    for (const auto &c : cases) {
        quint8 red = 7, green = 8, blue = 9;
        EXPECT_EQ(ColourToRGB(c.colour, red, green, blue), c.result) << c.colour;
        EXPECT_TRUE(red == c.red && green == c.green && blue == c.blue) << c.colour;
    }
}

TEST(BasMisc, TrimNullAndStripPath) {
    const QString nul(1, QChar::Null);
    EXPECT_EQ(TrimNull("/tmp" + nul + "rest" + nul), "/tmp");
    EXPECT_EQ(TrimNull("/tmp"), "/tmp");
    EXPECT_EQ(TrimNull(nul + "x"), "");
    EXPECT_EQ(StripPath("/home/a/cat.jpg"), "cat.jpg");
    EXPECT_EQ(StripPath("cat.jpg"), "cat.jpg");
    EXPECT_EQ(StripPath("/home/a/"), "");
    EXPECT_EQ(StripPath("a\\b/c\\d"), "c\\d");
}

TEST(BasMisc, SpecialFoldersAreThereOrEmpty) {
    const test::TemporaryHome home;
    for (const int folder : {0, 5, 39}) {
        EXPECT_TRUE(QDir(GetSpecialFolderPath(folder)).exists()) << folder;
        EXPECT_TRUE(GetSpecialFolderPath(folder).startsWith(home.path())) << folder;
    }
    EXPECT_EQ(GetSpecialFolderPath(1), "");
    EXPECT_EQ(GetSpecialFolderPath(-1), "");
    EXPECT_TRUE(QDir(GetTempDir()).exists());
    EXPECT_FALSE(GetTempDir().endsWith('/'));
}

TEST(BasMisc, LanguageFileInAnySpelling) {
    QTemporaryDir folder;
    const Installation installation{folder.path()};
    const auto touch = [&](const char *name) { return QFile(folder.filePath(name)).open(QIODevice::WriteOnly); };
    EXPECT_EQ(installation.languageFile(), folder.filePath("language.ini"));
    ASSERT_TRUE(touch("LANGUAGE.ini.bak") && touch("Language.INI"));
    EXPECT_EQ(installation.languageFile(), folder.filePath("Language.INI"));
    ASSERT_TRUE(touch("language.ini"));
    EXPECT_EQ(installation.languageFile(), folder.filePath("language.ini"));
}

/// Replaces the desktop's own programs.
class Desktop : public QObject {
    Q_OBJECT

  public:
    QList<QUrl> opened;

  public Q_SLOTS:
    void open(const QUrl &url) { opened << url; }
};

TEST(BasMisc, OpenWithShellHandsDocumentsAndAddressesOver) {
    Desktop desktop;
    for (const char *scheme : {"file", "http", "https"}) {
        QDesktopServices::setUrlHandler(scheme, &desktop, "open");
    }
    OpenWithShell("/tmp/a b#c.html");
    OpenWithShell("https://example.com/x?y=1");
    OpenWithShell("www.example.com");
    OpenWithShell("");
    EXPECT_EQ(desktop.opened, (QList<QUrl>{QUrl::fromLocalFile("/tmp/a b#c.html"), QUrl("https://example.com/x?y=1"),
                                           QUrl("http://www.example.com")}));
    for (const char *scheme : {"file", "http", "https"}) {
        QDesktopServices::unsetUrlHandler(scheme);
    }
}

} // namespace
} // namespace lumora

#include "basMisc_test.moc"
