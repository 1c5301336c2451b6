// The small platform helpers used by all modules.
#include "base/basMisc.h"

#include "base/TemporaryHome.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <gtest/gtest.h>

namespace lumora {
namespace {

TEST(BasMisc, SpecialFoldersAreThereOrEmpty) {
    const test::TemporaryHome home;
    for (const int folder : {0, 5, 39}) {
        EXPECT_TRUE(QDir(GetSpecialFolderPath(folder)).exists()) << folder;
        EXPECT_TRUE(GetSpecialFolderPath(folder).startsWith(home.path())) << folder;
    }
    EXPECT_EQ(GetSpecialFolderPath(1), "");
    EXPECT_EQ(GetSpecialFolderPath(-1), "");
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
    EXPECT_TRUE(OpenWithShell("/tmp/a b#c.html"));
    EXPECT_TRUE(OpenWithShell("https://example.com/x?y=1"));
    EXPECT_TRUE(OpenWithShell("www.example.com"));
    EXPECT_FALSE(OpenWithShell(""));
    EXPECT_EQ(desktop.opened, (QList<QUrl>{QUrl::fromLocalFile("/tmp/a b#c.html"), QUrl("https://example.com/x?y=1"),
                                           QUrl("http://www.example.com")}));
    for (const char *scheme : {"file", "http", "https"}) {
        QDesktopServices::unsetUrlHandler(scheme);
    }
}

} // namespace
} // namespace lumora

#include "basMisc_test.moc"
