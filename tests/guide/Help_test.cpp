// The help window and the videos folder.
#include "guide/frmHelp.h"

#include "base/Texts.h"
#include "guide/GuideWindow.h"
#include "support/ShellCheck.h"
#include "support/TextCheck.h"

#include <QAbstractButton>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QMap>
#include <QMessageBox>
#include <QPointer>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTest>
#include <QTextBrowser>
#include <QTime>
#include <algorithm>

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
    // The folder, or the page in it that shows the films, best in the chosen language.
    ASSERT_TRUE(QDir(videos).mkpath("en") && QDir(videos).mkpath("de"));
    for (const char *file : {"film.webm", "de/index.html", "index.html", "en/index.html"}) {
        QFile film(videos + '/' + file);
        ASSERT_TRUE(film.open(QIODevice::WriteOnly));
        answer(ask(), "optVideos", "cmdYes");
    }
    QStringList opened;
    for (const QUrl &url : std::as_const(m_files.opened)) {
        opened << QDir(videos).relativeFilePath(url.toLocalFile());
    }
    EXPECT_EQ(opened, QStringList({".", ".", "index.html", "en/index.html"}));
    EXPECT_EQ(m_owner.findChild<QMessageBox *>(), nullptr);
}

struct FilmFolders {
    const QDir root{qEnvironmentVariable("LUMORA_SOURCE")};
    const QDir scripts{root.filePath("content/films")};
    const QDir videos{root.filePath("resources/installed/Videos")};

    static QString contents(const QString &path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
        return QString::fromUtf8(file.readAll());
    }
    QStringList names() const {
        QStringList names = scripts.entryList({"*.play"});
        EXPECT_GE(names.size(), 12);
        for (QString &name : names) {
            name.chop(5);
        }
        return names;
    }
    QStringList cues(const QString &film) const {
        QStringList cues;
        for (const QString &line : contents(scripts.filePath(film + ".play")).split('\n')) {
            if (line.startsWith("cue ")) {
                cues << line.mid(4);
            }
        }
        return cues;
    }
};

/// The films of the installation: each script has its film, and the page shows all of them with their captions.
TEST(Films, AreInstalledAndShown) {
    const FilmFolders films;
    static const QRegularExpression timed("([\\d:.]+) --> ([\\d:.]+)\n(.*)");
    ASSERT_TRUE(films.videos.exists("index.html"));
    qint64 bytes = 0;
    for (const QString folder : {"", "de/", "fr/"}) {
        if (!folder.isEmpty() && !films.videos.exists(folder)) {
            continue; // the English page is shown
        }
        const QString page = films.contents(films.videos.filePath(folder + "index.html"));
        for (const QString &name : films.names()) {
            SCOPED_TRACE(qPrintable(folder + name));
            const QString still = (folder.isEmpty() ? "" : "../") + QString("posters/%1.jpg").arg(name);
            EXPECT_TRUE(page.contains(QString("src=\"%1.webm\" poster=\"%2\"").arg(name, still)));
            EXPECT_TRUE(films.videos.exists(folder + still));
            QFile in(films.videos.filePath(folder + name + ".webm"));
            ASSERT_TRUE(in.open(QIODevice::ReadOnly));
            EXPECT_EQ(in.read(4).toHex(), "1a45dfa3"); // how every WebM file begins
            bytes += in.size();
        }
        for (const QString &file : QDir(films.videos.filePath(folder)).entryList({"*.vtt"})) {
            const QString captions = films.contents(films.videos.filePath(folder + file));
            EXPECT_TRUE(captions.startsWith("WEBVTT\n")) << qPrintable(file);
            EXPECT_EQ(captions.count(" --> "), films.cues(file.section('.', 0, 0)).size()) << qPrintable(file);
            EXPECT_FALSE(captions.contains('{')) << qPrintable(file);
            for (const QRegularExpressionMatch &cue : timed.globalMatch(captions)) {
                const double lasts = QTime::fromString(cue.captured(1)).msecsTo(QTime::fromString(cue.captured(2)));
                EXPECT_LT(cue.captured(3).size() * 1000, 20 * lasts)
                    << "too fast to read: " << qPrintable(cue.captured(3));
            }
            EXPECT_TRUE(page.contains(captions.toUtf8().toBase64())) << qPrintable(file);
        }
        EXPECT_FALSE(page.contains("http")) << "it works without the web";
    }
    EXPECT_LT(bytes, 14'000'000) << "every installation carries them";
}

/// Each cue of a script is said in each language, with names that the program has; nothing else is said.
TEST(Films, SayWhatTheyShowInEachLanguage) {
    const FilmFolders films;
    const auto isText = [](const QString &identifier) {
        return std::ranges::any_of(allTexts(), [&](const TextRow &row) { return identifier == row.identifier; });
    };
    static const QRegularExpression title("\n# title (\\w+), icon ([\\w-]+)\n");
    static const QRegularExpression named("\\{([^}]*)\\}");
    for (const QString &name : films.names()) {
        const QString script = films.contents(films.scripts.filePath(name + ".play"));
        const QRegularExpressionMatch head = title.match(script);
        ASSERT_TRUE(head.hasMatch()) << qPrintable(name);
        EXPECT_TRUE(isText(head.captured(1)) && QFile::exists(":/icons/" + head.captured(2) + ".svg"))
            << qPrintable(name);
    }
    for (const char *language : {"en", "de", "fr"}) {
        QMap<QString, QStringList> keys;
        QString section;
        const QString file = films.scripts.filePath(QString("words-%1.ini").arg(language));
        for (const QString &line : films.contents(file).split('\n')) {
            if (line.startsWith('[')) {
                section = line.mid(1, line.size() - 2);
            } else if (line.contains('=') && !line.startsWith(';')) {
                EXPECT_FALSE(line.section('=', 1).trimmed().isEmpty()) << qPrintable(section + ' ' + line);
                keys[section] << line.section('=', 0, 0);
                for (const QRegularExpressionMatch &match : named.globalMatch(line)) {
                    EXPECT_TRUE(isText(match.captured(1))) << qPrintable(section + ' ' + line);
                }
            }
        }
        for (const QString &name : films.names()) {
            const bool isNamed = films.contents(films.scripts.filePath(name + ".play")).contains("@name@");
            EXPECT_EQ(keys.value(name), QStringList(isNamed ? QStringList("name") : QStringList()) + films.cues(name))
                << language << ' ' << qPrintable(name);
        }
    }
}

TEST_F(Help, ShowsItsTexts) {
    ASSERT_TRUE(test::writeChangedLanguageFile(m_folder.filePath("language.ini")));
    frmHelp help(context, nullptr);
    EXPECT_EQ(test::textsNotShown(help), QStringList());
}

TEST_F(Help, WithoutAProgramForTheVideosASentenceSaysSo) {
    ASSERT_TRUE(QDir().mkpath(context.installation.videosFolder()));
    QFile film(context.installation.videosFolder() + "/film.webm");
    ASSERT_TRUE(film.open(QIODevice::WriteOnly));
    QDesktopServices::unsetUrlHandler("file"); // the platform of the tests opens nothing itself
    answer(ask(), "optVideos", "cmdYes");
    QDesktopServices::setUrlHandler("file", &m_files, "open");
    QPointer<QMessageBox> box = m_owner.findChild<QMessageBox *>("msgNoProgram");
    ASSERT_FALSE(box.isNull());
    EXPECT_TRUE(box->text().contains(context.installation.videosFolder()));
    box->close();
}

TEST_F(Help, AboutOpensItsPage) {
    QPointer<frmHelp> help = ask();
    help->findChild<QAbstractButton *>("cmdAbout")->click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return help.isNull(); }));
    const auto *guide = m_owner.findChild<GuideWindow *>();
    ASSERT_NE(guide, nullptr);
    const auto *page = guide->findChild<QTextBrowser *>("txtGuide");
    EXPECT_TRUE(page->isVisible());
    EXPECT_TRUE(page->toPlainText().contains(versionNumber()));
    EXPECT_TRUE(page->toPlainText().contains("GPL-3.0-or-later"));
    QFile photographs(qEnvironmentVariable("LUMORA_SOURCE") + "/scripts/photographs.txt");
    ASSERT_TRUE(photographs.open(QIODevice::ReadOnly));
    for (const QString &line : QString::fromUtf8(photographs.readAll()).split('\n', Qt::SkipEmptyParts)) {
        for (const int part : {4, 5}) { // photographer, licence
            const QString name = line.section('|', part, part).trimmed();
            EXPECT_TRUE(line.startsWith('#') || page->toPlainText().contains(name)) << qPrintable(line);
        }
    }
}

TEST_F(Help, TheGuideMovesToAnotherWindow) {
    GuideWindow::open(context, &m_owner);
    QPointer<GuideWindow> guide = m_owner.findChild<GuideWindow *>();
    QWidget next;
    next.show();
    GuideWindow::move(&m_owner, &next);
    EXPECT_EQ(guide->parentWidget(), &next);
    EXPECT_TRUE(guide->isVisible());
    EXPECT_TRUE(guide->isWindow());
    guide->close();
}

} // namespace
} // namespace lumora

#include "Help_test.moc"
