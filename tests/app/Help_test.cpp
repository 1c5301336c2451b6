// The help window, the videos folder, and the user guide.
#include "app/frmHelp.h"

#include "ShellCheck.h"
#include "app/GuideWindow.h"
#include "support/TextCheck.h"

#include <QAbstractButton>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QRadioButton>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>

namespace lumora {
namespace {

/// Stands in for the desktop's file manager.
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
    QFile film(videos + "/film.mp4");
    ASSERT_TRUE(film.open(QIODevice::WriteOnly));
    answer(ask(), "optVideos", "cmdYes");
    EXPECT_EQ(m_files.opened, QList<QUrl>{QUrl::fromLocalFile(videos)});
    EXPECT_EQ(m_owner.findChild<QMessageBox *>(), nullptr);
}

TEST_F(Help, ShowsItsTexts) {
    ASSERT_TRUE(test::writeChangedLanguageFile(m_folder.filePath("language.ini")));
    frmHelp help(context, nullptr);
    EXPECT_EQ(test::textsNotShown(help), QStringList());
}

TEST_F(Help, GuideIsReadThroughAndFindsItsWayBack) {
    GuideWindow::open(context, &m_owner);
    QPointer<GuideWindow> guide = m_owner.findChild<GuideWindow *>();
    auto *page = guide->findChild<QTextBrowser *>("txtGuide");
    auto *back = guide->findChild<QAbstractButton *>("cmdBack");
    const QUrl home = page->source();
    const QString firstPage = page->toPlainText();
    EXPECT_GT(firstPage.size(), 200);
    EXPECT_FALSE(back->isEnabled());

    // Every page that the first one leads to is there.
    QStringList links;
    for (QTextBlock block = page->document()->begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QString link = part.fragment().charFormat().anchorHref();
            if (!link.isEmpty() && !link.startsWith("http") && !link.startsWith('#')) {
                links << link;
            }
        }
    }
    for (const QString &link : links) {
        page->setSource(home.resolved(QUrl(link)));
        EXPECT_GT(page->toPlainText().size(), 50) << link.toStdString();
        EXPECT_TRUE(back->isEnabled());
        back->click();
        EXPECT_EQ(page->source(), home);
    }
    page->setSource(QUrl("qrc:/guide/grownups.html"));
    guide->findChild<QAbstractButton *>("cmdHome")->click();
    EXPECT_EQ(page->toPlainText(), firstPage);
    QTest::keyClick(guide, Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return guide.isNull(); }));
}

} // namespace
} // namespace lumora

#include "Help_test.moc"
