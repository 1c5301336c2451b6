// The help window and the videos folder.
#include "guide/frmHelp.h"

#include "guide/GuideWindow.h"
#include "support/ShellCheck.h"
#include "support/TextCheck.h"

#include <QAbstractButton>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QRadioButton>
#include <QTest>

namespace lumora {
namespace {

/// Takes the place of the desktop's file manager.
class FileManager : public QObject {
    Q_OBJECT

  public:
    FileManager() { QDesktopServices::setUrlHandler("file", this, "open"); }
    ~FileManager() override { QDesktopServices::unsetUrlHandler("file"); }
    QList<QUrl> opened;

  public Q_SLOTS:
    void open(const QUrl &url) { opened << url; }
};

class Help : public test::Shell {
  protected:
    void SetUp() override {
        Shell::SetUp();
        m_owner.show();
    }
    frmHelp *ask() {
        frmHelp::showModal(context, &m_owner);
        return m_owner.findChild<frmHelp *>();
    }
    void answer(frmHelp *help, const char *option, const char *button) {
        help->findChild<QRadioButton *>(option)->click();
        help->findChild<QAbstractButton *>(button)->click();
        QPointer<frmHelp> gone = help;
        EXPECT_TRUE(QTest::qWaitFor([&] { return gone.isNull(); }));
    }

    QWidget m_owner;
    FileManager m_files;
};

TEST_F(Help, GuideIsPreselectedAndOpensOnce) {
    for (int i = 0; i < 2; ++i) {
        QPointer<frmHelp> help = ask();
        EXPECT_TRUE(help->findChild<QRadioButton *>("optUserGuide")->isChecked());
        QTest::keyClick(help, Qt::Key_Return);
        EXPECT_TRUE(QTest::qWaitFor([&] { return help.isNull(); }));
        EXPECT_EQ(m_owner.findChildren<GuideWindow *>().size(), 1);
    }
    EXPECT_TRUE(m_files.opened.isEmpty());
}

TEST_F(Help, CancelOpensNothing) {
    answer(ask(), "optVideos", "cmdNo");
    answer(ask(), "optUserGuide", "cmdNo");
    EXPECT_EQ(m_owner.findChild<GuideWindow *>(), nullptr);
    EXPECT_EQ(m_owner.findChild<QMessageBox *>(), nullptr);
    EXPECT_TRUE(m_files.opened.isEmpty());
}

TEST_F(Help, VideosOpenTheirFolderOrAreMissedKindly) {
    const QString videos = context.installation.videosFolder();
    for (const bool emptyFolder : {false, true}) {
        if (emptyFolder) {
            ASSERT_TRUE(QDir().mkpath(videos));
        }
        answer(ask(), "optVideos", "cmdYes");
        QPointer<QMessageBox> box = m_owner.findChild<QMessageBox *>();
        ASSERT_FALSE(box.isNull());
        EXPECT_EQ(box->text(), "It appears you have not installed the videos. Please install them and try again.");
        EXPECT_EQ(box->windowTitle(), "Lumora");
        box->close();
        EXPECT_TRUE(QTest::qWaitFor([&] { return box.isNull(); }));
        EXPECT_TRUE(m_files.opened.isEmpty());
    }
    // The folder, or the page in it that shows the films.
    for (const char *file : {"film.webm", "index.html"}) {
        QFile film(videos + '/' + file);
        ASSERT_TRUE(film.open(QIODevice::WriteOnly));
        answer(ask(), "optVideos", "cmdYes");
    }
    EXPECT_EQ(m_files.opened, QList<QUrl>({QUrl::fromLocalFile(videos), QUrl::fromLocalFile(videos + "/index.html")}));
    EXPECT_EQ(m_owner.findChild<QMessageBox *>(), nullptr);
}

/// The films of the installation: each script has its film, and the page shows all of them.
TEST(Films, AreInstalledAndShown) {
    const QDir root(qEnvironmentVariable("LUMORA_SOURCE"));
    const QDir videos(root.filePath("resources/installed/Videos"));
    QFile file(videos.filePath("index.html"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(file.readAll());
    const QStringList scripts = QDir(root.filePath("content/films")).entryList({"*.play"});
    EXPECT_GE(scripts.size(), 12);
    EXPECT_EQ(videos.entryList({"*.webm"}).size(), scripts.size());
    qint64 bytes = 0;
    for (const QString &script : scripts) {
        const QString film = script.chopped(5) + ".webm";
        const QString still = "posters/" + script.chopped(5) + ".jpg";
        EXPECT_TRUE(page.contains("src=\"" + film + '"') && page.contains("poster=\"" + still + '"'))
            << qPrintable(film);
        QFile in(videos.filePath(film));
        ASSERT_TRUE(in.open(QIODevice::ReadOnly)) << qPrintable(film);
        EXPECT_EQ(in.read(4).toHex(), "1a45dfa3") << qPrintable(film); // how every WebM file begins
        EXPECT_TRUE(QFile::exists(videos.filePath(still))) << qPrintable(still);
        bytes += in.size();
    }
    EXPECT_LT(bytes, 6'000'000) << "every installation carries them";
    EXPECT_FALSE(page.contains("http")) << "it works without the web";
}

TEST_F(Help, ShowsItsTexts) {
    ASSERT_TRUE(test::writeChangedLanguageFile(m_folder.filePath("language.ini")));
    frmHelp help(context, nullptr);
    EXPECT_EQ(test::textsNotShown(help), QStringList());
}

} // namespace
} // namespace lumora

#include "Help_test.moc"
