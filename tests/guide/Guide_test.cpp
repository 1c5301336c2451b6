// The user guide: its pages, its search, and the reader's way through its window.
#include "guide/GuideWindow.h"

#include "guide/GuidePages.h"
#include "guide/GuideReader.h"
#include "guide/GuideResults.h"
#include "support/ShellCheck.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"
#include "window/ToolTable.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QRegularExpression>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTest>
#include <QTextDocument>

namespace lumora {
namespace {

QStringList captured(const QString &html, const QString &expression) {
    QStringList found;
    for (auto matches = QRegularExpression(expression).globalMatch(html); matches.hasNext();) {
        found << matches.next().captured(1);
    }
    return found;
}

QString plainText(const QString &html) {
    QTextDocument document;
    document.setHtml(html);
    return document.toPlainText();
}

/// The texts that are installed in that language; English ones for "en".
struct InstalledTexts {
    explicit InstalledTexts(const QString &language)
        : texts(files, qEnvironmentVariable("LUMORA_SOURCE") + "/resources/installed/languages/language-" + language +
                           ".ini") {}
    IniFiles files;
    Texts texts;
};

QString englishHtml(const QString &file) {
    return guideHtml("en", file);
}

TEST(GuidePages, EveryLinkAndPictureOfEveryPageIsThere) {
    const QStringList languages = QDir(":/guide").entryList(QDir::Dirs);
    EXPECT_EQ(languages, QStringList({"de", "en", "es", "fr", "it", "pt"}));
    QStringList shown;
    for (const QString &language : languages) {
        const InstalledTexts installed(language);
        EXPECT_EQ(guideLanguage(installed.texts), language);
        const QDir folder(":/guide/" + language);
        for (const GuidePage &page : guidePages()) {
            SCOPED_TRACE(qPrintable(language + '/' + page.file));
            EXPECT_NE(guideTitle(installed.texts, page.title), "");
            EXPECT_FALSE(iconPixmap(page.icon, 32, 1).isNull()) << page.icon;
            if (!folder.exists(page.file)) {
                EXPECT_NE(language, "en");
                continue;
            }
            const QString html = guideHtml(language, page.file);
            const QString title = guideTitle(installed.texts, page.title);
            EXPECT_TRUE(html.contains("<title>" + title + "</title>")) << qPrintable(title);
            EXPECT_TRUE(html.contains("<html lang=\"" + language + "\">"));
            for (const QString &link : captured(html, "href=\"([^\"]*)\"")) {
                EXPECT_TRUE(guidePage(link) != nullptr || link.startsWith("https://")) << qPrintable(link);
            }
            for (const QString &source : captured(html, "src=\"([^\"]*)\"")) {
                const QString path = QDir::cleanPath(folder.filePath(source));
                EXPECT_TRUE(QFile::exists(path)) << qPrintable(source);
                shown << path;
            }
        }
        // Nor is there a page that the contents leave out.
        for (const QString &file : folder.entryList({"*.html"}, QDir::Files)) {
            EXPECT_TRUE(file == "index.html" || guidePage(file) != nullptr) << qPrintable(language + '/' + file);
        }
        EXPECT_TRUE(folder.exists("index.html"));
        EXPECT_GT(plainText(guideHtml(language, "index.html")).size(), 40);
    }
    for (const QString &file : QDir(":/guide").entryList(QDir::Files)) {
        EXPECT_TRUE(file == "guide.css" || shown.contains(":/guide/" + file)) << qPrintable(file) << " is not shown";
    }
}

TEST(GuidePages, AreInEnglishWhereALanguageHasNone) {
    for (const char *language : {"xx", "", "../en", "de/.."}) {
        EXPECT_EQ(guideHtml(language, "crop.html"), englishHtml("crop.html")) << language;
    }
    EXPECT_NE(guideHtml("de", "index.html"), englishHtml("index.html"));
    EXPECT_EQ(guideHtml("en", "no such page.html"), "");
}

TEST(GuidePages, ShowThePicturesOfTheirLanguage) {
    EXPECT_TRUE(guideHtml("de", "crop.html").contains("\"../de/crop-1.jpg\""));
    EXPECT_TRUE(guideHtml("en", "crop.html").contains("\"../crop-1.jpg\""));
    const QStringList english = QDir(":/guide").entryList({"*.jpg"});
    for (const QString &language : QDir(":/guide").entryList(QDir::Dirs)) {
        const QStringList own = QDir(":/guide/" + language).entryList({"*.jpg"});
        EXPECT_TRUE(own.isEmpty() || own == english) << qPrintable(language);
    }
    EXPECT_EQ(guideHtml("it", "crop.html").contains("\"../crop-1.jpg\""), !QFile::exists(":/guide/it/crop-1.jpg"));
}

TEST(GuidePages, EveryToolHasItsPageUnderItsOwnCaption) {
    for (const ToolRow &tool : toolTable()) {
        if (tool.iconName == nullptr) {
            continue; // no button, no caption
        }
        const auto row = std::find_if(allTexts().begin(), allTexts().end(), [&](const TextRow &text) {
            return QString(tool.control) == text.control && QString("frmMain") == text.window;
        });
        ASSERT_NE(row, allTexts().end());
        const auto page = std::find_if(guidePages().begin(), guidePages().end(),
                                       [&](const GuidePage &one) { return QString(one.title) == row->identifier; });
        ASSERT_NE(page, guidePages().end()) << row->defaultText;
        EXPECT_STREQ(page->icon, tool.iconName);
        const QString html = englishHtml(page->file);
        const QString text = plainText(html);
        EXPECT_TRUE(text.contains("Try this!") && text.contains("Went wrong?")) << page->file;
        EXPECT_TRUE(html.contains(".jpg\"")) << page->file << " has no screenshot";
        const auto steps = html.mid(html.indexOf("<ol>"), html.indexOf("</ol>") - html.indexOf("<ol>")).count("<li>");
        EXPECT_TRUE(steps >= 2 && steps <= 5) << page->file << ": " << steps << " steps";
    }
}

/// Buttons, effects and files that the guide speaks of are called as the program calls them.
TEST(GuidePages, NameButtonsAsTheProgramDoes) {
    const QStringList englishTools = {
        "basic-effects.html", "special-effects.html", "adjust.html",       "crop.html",   "cut-out.html",
        "rotate.html",        "resize.html",          "colour-focus.html", "frames.html", "copy.html"};
    const auto all = [](const char *language) { return QDir(QString(":/guide/") + language).entryList({"*.html"}); };
    const struct {
        const char *language;
        QStringList files;
        QStringList others; ///< bold for another reason
    } cases[] = {
        {"en", englishTools, {"Custom", "PNG", "JPEG", "Esc", "Try this!", "Went wrong?", "lumora /s"}},
        {"de",
         all("de"),
         {"PNG", "JPEG", "Esc", "lumora /s", "Hallo! Was möchtest du machen?", "roter Ballon", "Werkzeuge",
          "ganze Foto", "Probier’s aus!", "Hat’s nicht geklappt?"}},
        {"fr",
         all("fr"),
         {"PNG", "JPEG", "Échap", "lumora /s", "Bonjour\u00a0! Que veux-tu faire\u00a0?", "ballon rouge", "outils",
          "toute la photo", "Essaie\u00a0!", "Ça n’a pas marché\u00a0?"}},
        {"es",
         all("es"),
         {"PNG", "JPEG", "Esc", "lumora /s", "¡Hola! ¿Qué quieres hacer?", "globo rojo", "herramientas", "toda la foto",
          "¡Prueba esto!", "¿No ha salido bien?"}},
        {"it",
         all("it"),
         {"PNG", "JPEG", "Esc", "lumora /s", "Ciao! Che cosa vuoi fare?", "palloncino rosso", "strumenti",
          "tutta la foto", "Prova così!", "Qualcosa è andato storto?"}},
        {"pt",
         all("pt"),
         {"PNG", "JPEG", "Esc", "lumora /s", "Olá! O que queres fazer?", "balão vermelho", "ferramentas",
          "a foto inteira", "Experimenta!", "Não correu bem?"}},
    };
    for (const auto &one : cases) {
        const InstalledTexts installed(one.language);
        QStringList captions = one.others;
        for (const TextRow &row : allTexts()) {
            captions << installed.texts.text(row.identifier, row.defaultText).replace("&&", "&");
        }
        int known = 0;
        for (const QString &file : one.files) {
            const QString html = guideHtml(one.language, file);
            for (const QString &name :
                 captured(html, "<b>([^<]*)</b>") + captured(html, "[“„«]\u00a0?([^”“»]*?)\u00a0?[”“»]")) {
                EXPECT_TRUE(captions.contains(plainText(name)) || captions.join('\n').contains("\n" + name))
                    << one.language << ' ' << qPrintable(file) << ": " << qPrintable(name);
                ++known;
            }
        }
        EXPECT_GT(known, 25);
    }
}

TEST(GuideSearch, FindsThePageFirstThatAChildWants) {
    const InstalledTexts installed("en");
    const GuideSearch search = GuideSearch::overGuide(installed.texts);
    const struct {
        const char *question;
        const char *page;
    } cases[] = {
        {"crop", "crop.html"},
        {"CROP", "crop.html"},
        {"cut off the edges", "crop.html"},
        {"print", "print.html"},
        {"paper", "print.html"},
        {"mirror", "special-effects.html"},
        {"upside down", "rotate.html"},
        {"turn", "rotate.html"},
        {"how do I make it lighter", "adjust.html"},
        {"bright", "adjust.html"},
        {"dark", "adjust.html"},
        {"vampire", "red-eye.html"},
        {"red eye", "red-eye.html"},
        {"hearts", "frames.html"},
        {"old brown photo", "basic-effects.html"},
        {"gray", "basic-effects.html"},
        {"one color", "colour-focus.html"},
        {"scissors", "cut-out.html"},
        {"background", "cut-out.html"},
        {"lasso", "selection.html"},
        {"smaller size", "resize.html"},
        {"oil", "special-effects.html"},
        {"mistake", "undo.html"},
        {"keep", "save.html"},
        {"closer", "zoom.html"},
        {"birthday", "ideas.html"},
        {"four bright copies", "pop-art.html"},
        {"film", "help.html"},
        {"quit", "exit.html"},
        {"show all my photos", "slideshow.html"},
        {"privacy", "grownups.html"},
        {"power cut", "grownups.html"},
        {"Lumora.ini", "settings.html"},
        {"German", "languages.html"},
        {"Français", "languages.html"},
        {"shortcut", "keys.html"},
        {"brightnes", "adjust.html"}, // slips of the keyboard
        {"rotaet", "rotate.html"},
        {"brithday", "ideas.html"},
        {"tranpsarent", "cut-out.html"},
        {"cropping", "crop.html"}, // other forms of a word
        {"blurry", "special-effects.html"},
        {"resizing", "resize.html"},
        {"rotated", "rotate.html"},
        {"printer", "print.html"},
        {"undoing", "undo.html"},
        {"about", "about.html"},
        {"license", "about.html"},
    };
    for (const auto &one : cases) {
        const auto hits = search.find(one.question);
        ASSERT_FALSE(hits.isEmpty()) << one.question;
        EXPECT_EQ(hits.first().file, one.page) << one.question;
        EXPECT_FALSE(hits.first().sentence.isEmpty()) << one.question;
    }
    for (const char *nothing : {"", "  ", "?!", "qwxz", "xylophone quartz"}) {
        EXPECT_TRUE(search.find(nothing).isEmpty()) << nothing;
    }
}

TEST(GuideSearch, UnderstandsTheLanguageOfTheTexts) {
    const struct {
        const char *language;
        const char *question;
        const char *page;
    } cases[] = {
        {"de", "Wie kann ich ein Foto zuschneiden?", "crop.html"},
        {"de", "Rahmen", "frames.html"},
        {"de", "Blitz", "red-eye.html"},
        {"de", "Wie mache ich ein Foto heller?", "adjust.html"},
        {"de", "Schatzkarte", "frames.html"},
        {"de", "gedreht", "rotate.html"},
        {"de", "gedruckt", "print.html"},
        {"de", "gespeicherte", "save.html"},
        {"de", "verwischtes", "special-effects.html"},
        {"fr", "recadrage", "crop.html"},
        {"fr", "imprimée", "print.html"},
        {"fr", "floue", "special-effects.html"},
        {"fr", "enregistrement", "save.html"},
        {"fr", "comment recadrer ma photo", "crop.html"},
        {"fr", "cadres", "frames.html"},
        {"fr", "mettre la tête en bas", "rotate.html"},
        {"es", "¿Cómo recorto mi foto?", "crop.html"},
        {"es", "boca abajo", "rotate.html"},
        {"es", "impresas", "print.html"},
        {"es", "una foto más clara", "adjust.html"},
        {"es", "cumpleaños", "ideas.html"},
        {"it", "Come ritaglio la mia foto?", "crop.html"},
        {"it", "stampare", "print.html"},
        {"it", "sfocato", "special-effects.html"},
        {"it", "cornice di cuori", "frames.html"},
        {"it", "compleanno", "ideas.html"},
        {"pt", "Como recorto a minha foto?", "crop.html"},
        {"pt", "pôr ao contrário", "rotate.html"},
        {"pt", "impressas", "print.html"},
        {"pt", "guardei", "save.html"},
        {"pt", "anos", "ideas.html"},
    };
    for (const auto &one : cases) {
        const InstalledTexts installed(one.language);
        const auto hits = GuideSearch::overGuide(installed.texts).find(one.question);
        ASSERT_FALSE(hits.isEmpty()) << one.question;
        EXPECT_EQ(hits.first().file, one.page) << one.question;
    }
}

TEST(GuideSearch, ShowsTheWordsInTheirSentence) {
    const GuideSearch search({
        {"a.html", "Größe", "", "Ein Satz. Die GRÖSSE der Straße und die Größe! Noch ein <Satz>."},
        {"b.html", "Farbe", "größer", "Die Farbe."},
        {"c.html", "Lang", "", QString("wort ").repeated(60) + "nadel " + QString("wort ").repeated(60)},
    });
    const struct {
        const char *question;
        QStringList files;
        const char *sentence;
    } cases[] = {
        {"größe", {"a.html", "b.html"}, "Die GRÖSSE der Straße und die <b>Größe</b>!"},
        {"GROßE", {"a.html", "b.html"}, "Die GRÖSSE der Straße und die <b>Größe</b>!"},
        {"strasse", {}, ""},
        {"satz noch", {"a.html"}, "<b>Noch</b> ein &lt;<b>Satz</b>&gt;."},
        {"traß", {}, ""}, // the middle of a word
        {"farb ein", {"a.html", "b.html"}, ""},
        {"farbe die", {"b.html"}, "<b>Die</b> <b>Farbe</b>."},
    };
    for (const auto &one : cases) {
        const auto hits = search.find(one.question);
        QStringList files;
        for (const auto &hit : hits) {
            files << hit.file;
        }
        files.sort();
        EXPECT_EQ(files, one.files) << one.question;
        if (*one.sentence != '\0' && !hits.isEmpty()) {
            const auto hit =
                std::find_if(hits.begin(), hits.end(), [&](const auto &h) { return h.file == one.files[0]; });
            EXPECT_EQ(hit->sentence, QString(one.sentence)) << one.question;
        }
    }
    const auto longOne = search.find("nadel");
    ASSERT_EQ(longOne.size(), 1);
    EXPECT_TRUE(longOne[0].sentence.contains("<b>nadel</b>"));
    EXPECT_LT(longOne[0].sentence.size(), 200);
    EXPECT_TRUE(longOne[0].sentence.startsWith("…") && longOne[0].sentence.endsWith("…"));
}

class Guide : public test::Shell {
  protected:
    void SetUp() override {
        Shell::SetUp();
        applyTheme(*qApp);
        show();
    }
    void show() {
        delete m_guide;
        m_guide = new GuideWindow(context, nullptr);
        m_guide->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_guide));
    }
    /// Closes the guide and opens it in that language.
    void showIn(const QString &language) {
        const QString file = "/languages/language-" + language + ".ini";
        ASSERT_TRUE(QFile::copy(qEnvironmentVariable("LUMORA_SOURCE") + "/resources/installed" + file,
                                m_folder.filePath("language.ini")));
        context.ini.lookAgain();
        show();
    }
    void TearDown() override { delete m_guide; }

    template <typename Kind> Kind *part(const char *name) { return m_guide->findChild<Kind *>(name); }
    void press(const char *name) { QTest::mouseClick(part<PictureButton>(name), Qt::LeftButton); }
    void write(const QString &words) { QTest::keyClicks(part<QLineEdit>("txtSearch"), words); }
    void open(const QString &file) {
        for (auto *button : m_guide->findChildren<PictureButton *>()) {
            if (button->property("key") == file) {
                button->click();
            }
        }
    }
    /// The title of the page, "contents", "nothing", or the number of pages found.
    QString seen() {
        const QString sheet = m_guide->findChild<QStackedWidget *>()->currentWidget()->objectName();
        return sheet == "txtGuide"        ? part<GuideReader>("txtGuide")->documentTitle()
               : sheet == "lstGuideFound" ? QString("%1 found").arg(part<GuideResults>("lstGuideFound")->count() > 0)
               : sheet == "lblNothing"    ? "nothing"
                                          : "contents";
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(m_guide->focusWidget() == nullptr ? m_guide : m_guide->focusWidget(), key, modifiers);
    }

    QPointer<GuideWindow> m_guide;
};

TEST_F(Guide, HasTheFrameOfLumorasWindows) {
    EXPECT_TRUE(m_guide->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(part<QLabel>("lblCaption")->text(), m_guide->windowTitle());
    EXPECT_EQ(m_guide->grab().toImage().pixelColor(m_guide->width() / 2, 0), QColor(colours::faintInk)) << "an edge";
    EXPECT_GE(part<PictureButton>("cmdClose")->width(), titleButton);
    press("cmdClose");
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_guide.isNull(); }));
}

TEST_F(Guide, FindsItsWayBackAndForward) {
    EXPECT_EQ(seen(), "contents");
    EXPECT_FALSE(part<PictureButton>("cmdBack")->isEnabled());
    open("crop.html");
    EXPECT_EQ(seen(), "Crop");
    Q_EMIT part<GuideReader>("txtGuide")->anchorClicked(QUrl("undo.html"));
    EXPECT_EQ(seen(), "Undo and redo");
    press("cmdBack");
    EXPECT_EQ(seen(), "Crop");
    key(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(seen(), "contents");
    press("cmdForward");
    key(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(seen(), "Undo and redo");
    EXPECT_FALSE(part<PictureButton>("cmdForward")->isEnabled());
    press("cmdHome");
    EXPECT_EQ(seen(), "contents");
    press("cmdHome"); // again: no step on the way
    press("cmdBack");
    EXPECT_EQ(seen(), "Undo and redo");
    open("no such page.html");
    EXPECT_EQ(seen(), "Undo and redo");
    press("cmdClose");
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_guide.isNull(); }));
}

/// The guide cannot print; a teacher copies the sheet into a program that can.
TEST_F(Guide, AllOfAPageCanBeCopied) {
    open("worksheet.html");
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_C, Qt::ControlModifier);
    const QString copied = QGuiApplication::clipboard()->text();
    EXPECT_TRUE(copied.contains("Before and after") && copied.contains("May you show it?")) << qPrintable(copied);
}

TEST_F(Guide, SearchesWhileSomebodyTypes) {
    open("crop.html");
    key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(part<QLineEdit>("txtSearch")->hasFocus());
    write("birthd");
    EXPECT_EQ(seen(), "1 found");
    write("zzz");
    EXPECT_EQ(seen(), "nothing");
    EXPECT_TRUE(part<QLabel>("lblNothing")->text().contains("birthdzzz"));
    key(Qt::Key_Return); // leads nowhere
    EXPECT_EQ(seen(), "nothing");
    // Esc empties the field first and brings back what was there before.
    key(Qt::Key_Escape);
    EXPECT_EQ(seen(), "Crop");
    EXPECT_EQ(part<QLineEdit>("txtSearch")->text(), "");

    key(Qt::Key_F, Qt::ControlModifier);
    write("birthday");
    key(Qt::Key_Return);
    EXPECT_EQ(seen(), "Ideas");
    auto *page = part<GuideReader>("txtGuide");
    ASSERT_FALSE(page->extraSelections().isEmpty());
    EXPECT_EQ(page->extraSelections().first().cursor.selectedText(), "birthday");
    EXPECT_EQ(part<QLineEdit>("txtSearch")->text(), "birthday");
    press("cmdBack"); // to what was found
    EXPECT_EQ(seen(), "1 found");
    press("cmdForward");
    EXPECT_EQ(seen(), "Ideas");
    key(Qt::Key_Escape); // the marks go, the page stays
    EXPECT_EQ(seen(), "Ideas");
    EXPECT_TRUE(page->extraSelections().isEmpty());
    key(Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_guide.isNull(); }));
}

TEST_F(Guide, ResultsAreChosenByKeyAndMouse) {
    key(Qt::Key_F, Qt::ControlModifier);
    write("grey");
    auto *found = part<GuideResults>("lstGuideFound");
    ASSERT_GT(found->count(), 1);
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    const QString second = found->item(1)->text();
    key(Qt::Key_Return);
    EXPECT_EQ(seen(), second);
    press("cmdBack");
    const QString first = found->item(0)->text();
    QTest::mouseClick(found->viewport(), Qt::LeftButton, {}, found->visualItemRect(found->item(0)).center());
    EXPECT_EQ(seen(), first);
}

TEST_F(Guide, SpeaksTheLanguageOfTheTexts) {
    showIn("de");
    EXPECT_TRUE(part<QLabel>("lblGreeting")->text().contains("Hallo"));
    EXPECT_EQ(part<PictureButton>("cmdHome")->toolTip(), "Erste Seite");
    QStringList headings;
    for (const QLabel *label : m_guide->findChildren<QLabel *>()) {
        headings << plainText(label->text());
    }
    EXPECT_TRUE(headings.contains("Werkzeuge"));
    write("spezial");
    const auto *found = part<GuideResults>("lstGuideFound");
    ASSERT_GT(found->count(), 0);
    EXPECT_EQ(found->item(0)->text(), "Spezialeffekte");
    key(Qt::Key_Escape);
    open("first-steps.html");
    EXPECT_EQ(seen(), "Erste Schritte");
}

TEST_F(Guide, PicturesFitEveryWidth) {
    open("crop.html");
    auto *page = part<GuideReader>("txtGuide");
    for (const int width : {420, 700, 1900}) {
        m_guide->resize(width, 700);
        EXPECT_TRUE(QTest::qWaitFor([&] { return m_guide->width() == width; }));
        QCoreApplication::processEvents();
        EXPECT_EQ(page->horizontalScrollBar()->maximum(), 0) << width;
        EXPECT_LE(page->document()->size().width(), 840) << "lines of text get too long at " << width;
    }
}

TEST_F(Guide, ContentsAreWalkedByKeys) {
    auto focused = [&] { return m_guide->focusWidget()->property("key").toString(); };
    EXPECT_EQ(focused(), "first-steps.html");
    key(Qt::Key_Right);
    EXPECT_EQ(focused(), "open.html");
    const auto place = [&] { return m_guide->focusWidget()->geometry().topLeft(); };
    const QPoint above = place();
    key(Qt::Key_Down);
    EXPECT_EQ(place().x(), above.x());
    EXPECT_GT(place().y(), above.y());
    key(Qt::Key_Up);
    EXPECT_EQ(focused(), "open.html");
    key(Qt::Key_Left);
    key(Qt::Key_Left); // nothing is there
    EXPECT_EQ(focused(), "first-steps.html");
    key(Qt::Key_Return);
    EXPECT_EQ(seen(), "First steps");
    for (const auto *button : m_guide->findChildren<PictureButton *>()) {
        EXPECT_FALSE(button->accessibleName().isEmpty() && button->toolTip().isEmpty()) << qPrintable(button->text());
    }
}

} // namespace
} // namespace lumora
