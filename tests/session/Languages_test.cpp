// Which languages can be chosen, in which files a text is looked for, and in which direction a language runs.
#include "session/Languages.h"

#include "base/TemporaryHome.h"
#include "session/AppContext.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace lumora {
namespace {

class LanguagesTest : public testing::Test {
  protected:
    LanguagesTest() { QDir(folder.path()).mkdir("languages"); }
    void write(const QString &name, const QString &contents) {
        QFile out(folder.filePath(name));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(contents.toUtf8());
        out.close();
        context.ini.lookAgain();
    }
    static QString named(const QString &name, const QString &code) {
        return "[LanguageName]\nCaption=" + name + "\n[Language]\nCaption=" + code + '\n';
    }
    QStringList names() {
        QStringList list;
        for (const InstalledLanguage &language : installedLanguages(context.installation)) {
            list << language.file + '=' + language.name;
        }
        return list;
    }

    test::TemporaryHome home;
    QTemporaryDir folder;
    AppContext context{Installation{folder.path()}};
};

TEST_F(LanguagesTest, AreListedByTheirOwnNames) {
    EXPECT_EQ(names(), QStringList("language.ini=English"));
    write("language.ini", named("English", "en"));
    write("languages/b.ini", named("Italiano", "it"));
    write("languages/c.ini", named("Deutsch", "de"));
    write("languages/en.ini", named("English", "en"));
    write("languages/old.ini", "[Language]\nCaption=fr\n");
    write("languages/plain.ini", "[Open]\nCaption=Opn\n");
    EXPECT_EQ(names(), QStringList({"language.ini=English", "c.ini=Deutsch", "old.ini=français", "b.ini=Italiano",
                                    "plain.ini=plain"}));
    write("language.ini", named("Deutsch", "de"));
    EXPECT_EQ(names().constFirst(), "language.ini=Deutsch");
    EXPECT_TRUE(names().contains("en.ini=English"));
}

TEST_F(LanguagesTest, TheChosenOneIsReadFirstAndAtOnce) {
    write("language.ini", "[Open]\nCaption=Open it\n[Save]\nCaption=Save it\n");
    write("languages/de.ini", "[Open]\nCaption=Aufmachen\n");
    EXPECT_EQ(context.texts.text("Open"), "Open it");
    context.settings.write<Setting::Language, Writer::Options>("de.ini");
    EXPECT_EQ(context.texts.text("Open"), "Aufmachen");
    EXPECT_EQ(context.texts.text("Save"), "Save it");
    EXPECT_EQ(context.texts.text("Undo"), "Undo");
    for (const char *other : {"missing.ini", "../language.ini", "/etc/passwd", ".", ".."}) {
        context.settings.write<Setting::Language, Writer::Options>(other);
        EXPECT_EQ(languageFiles(context.installation, context.settings, context.ini),
                  QStringList(context.installation.languageFile()))
            << other;
    }
}

TEST_F(LanguagesTest, TheDesktopsIsTakenUntilOneIsChosen) {
    for (const char *code : {"de", "en", "pt", "uk"}) {
        write(QString("languages/language-%1.ini").arg(code), named(code, code));
    }
    const struct {
        const char *beside; ///< the code of the file beside the program, null where that file is missing
        QStringList codes;
        const char *file;
    } cases[] = {
        {"en", {"de-DE", "de"}, "language-de.ini"},
        {"en", {"pt-Latn-BR", "pt-BR", "pt"}, "language-pt.ini"},
        {"en", {"uk"}, "language-uk.ini"},
        {"en", {"fi-FI", "de"}, "language-de.ini"},
        {"en", {"en-GB", "de"}, "language.ini"},
        {"en", {"C"}, "language.ini"},
        {"en", {"../de", "", "fi"}, "language.ini"},
        {"fr", {"de"}, "language.ini"}, // replaced
        {"", {"de"}, "language.ini"},   // somebody's own texts
        {nullptr, {"de"}, "language-de.ini"},
    };
    for (const auto &one : cases) {
        QFile::remove(folder.filePath("language.ini"));
        context.ini.lookAgain();
        if (one.beside != nullptr) {
            write("language.ini", *one.beside == '\0' ? "[Open]\nCaption=Hi\n" : named("x", one.beside));
        }
        EXPECT_EQ(languageOfTheDesktop(context.installation, context.ini, one.codes), one.file)
            << qPrintable(one.codes.join(' ')) << ", " << (one.beside == nullptr ? "no file" : one.beside);
    }
    context.settings.write<Setting::Language, Writer::Options>("language.ini");
    EXPECT_EQ(languageInUse(context.installation, context.settings, context.ini), "language.ini");
}

TEST_F(LanguagesTest, RunAsTheFileSaysOrAsItsLetters) {
    const QString hebrew = QString::fromUtf8("[Open]\nCaption=פתיחה\n");
    const QString arabic = QString::fromUtf8("[Open]\nCaption=فتح JPEG %1\n[Save]\nCaption=حفظ الصورة\n");
    const struct {
        QString texts;
        const char *direction;
        Qt::LayoutDirection expected;
    } cases[] = {
        {"[Open]\nCaption=Open\n", nullptr, Qt::LeftToRight},
        {hebrew, nullptr, Qt::RightToLeft},
        {arabic, "", Qt::RightToLeft},
        {arabic, "auto", Qt::RightToLeft},
        {arabic, "ltr", Qt::LeftToRight},
        {"[Open]\nCaption=Open\n", " RTL", Qt::RightToLeft},
        {"", nullptr, Qt::LeftToRight},
    };
    context.settings.write<Setting::Language, Writer::Options>("x.ini");
    write("language.ini", "[Undo]\nCaption=A very long English text that does not count\n");
    for (const auto &one : cases) {
        const QString direction =
            one.direction == nullptr ? QString() : QString("[Direction]\nCaption=%1\n").arg(one.direction);
        write("languages/x.ini", one.texts + direction);
        EXPECT_EQ(context.texts.direction(), one.expected) << qPrintable(one.texts + direction);
    }
}

} // namespace
} // namespace lumora
