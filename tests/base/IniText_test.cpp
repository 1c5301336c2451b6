// What an ini file's text means, and what a change does not touch.
#include "base/IniText.h"

#include <gtest/gtest.h>

namespace lumora {
namespace {

TEST(IniText, ReadsAValue) {
    const struct {
        const char *name;
        QByteArray file;
        const char *section;
        const char *key;
        std::optional<QString> expected;
    } cases[] = {
        {"nothing in it", "", "SFX", "Advanced", {}},
        {"plain", "[SFX]\nAdvanced=1\n", "SFX", "Advanced", "1"},
        {"no line end", "[SFX]\nAdvanced=1", "SFX", "Advanced", "1"},
        {"CRLF", "[SFX]\r\nAdvanced=1\r\n", "SFX", "Advanced", "1"},
        {"CR", "[SFX]\rAdvanced=1\r", "SFX", "Advanced", "1"},
        {"mixed ends", "[SFX]\r\r\n\nAdvanced=1\r[X]", "SFX", "Advanced", "1"},
        {"any case", "[sfx]\naDVANCED=1", "SFX", "Advanced", "1"},
        {"any case beyond ASCII", "[ÄRGER]\nÖl=1", "ärger", "öl", "1"},
        {"other section", "[SFX]\nAdvanced=1\n[Grid]\n", "Grid", "Advanced", {}},
        {"other key", "[SFX]\nAdvanced=1", "SFX", "Advance", {}},
        {"empty value", "[SFX]\nAdvanced=\n", "SFX", "Advanced", ""},
        {"blanks around", " [ SFX ] \n \tAdvanced\t =\t 1 \t\n", "SFX", "Advanced", "1"},
        {"blanks inside", "[Scanner  Button]\nMy Key=a  b", "Scanner  Button", "My Key", "a  b"},
        {"hard blank is text", "[A]\nk=Quitter\u00a0?\u00a0", "A", "k", "Quitter\u00a0?\u00a0"},
        {"before any section", "Advanced=1\n[SFX]\n", "SFX", "Advanced", {}},
        {"before any section, asked without one", "Advanced=1\n", "", "Advanced", {}},
        {"section without a name", "[]\nAdvanced=1\n", "", "Advanced", {}},
        {"first of two keys", "[SFX]\nAdvanced=1\nadvanced=2", "SFX", "Advanced", "1"},
        {"first of two sections", "[SFX]\nAdvanced=1\n[A]\n[sfx]\nAdvanced=2", "SFX", "Advanced", "1"},
        {"only the first section counts", "[SFX]\nOther=1\n[SFX]\nAdvanced=2", "SFX", "Advanced", {}},
        {"second section ends the one before", "[SFX]\n[A]\n[SFX]\nk=2", "A", "k", {}},
        {"comment", "[SFX]\n;Advanced=1\n ; Advanced=2\n", "SFX", "Advanced", {}},
        {"semicolon later", "[SFX]\nAdvanced=1;2 ; three\n", "SFX", "Advanced", "1;2 ; three"},
        {"hash is no comment", "[SFX]\n#Advanced=1", "SFX", "#Advanced", "1"},
        {"text after the bracket", "[SFX] ; the effects\nAdvanced=1", "SFX", "Advanced", "1"},
        {"two brackets", "[SFX] see [Grid]\nAdvanced=1", "SFX", "Advanced", "1"},
        {"bracket never closed", "[A]\nk=1\n[SFX\nk=2", "SFX", "k", "2"},
        {"line without =", "[SFX]\nAdvanced\nAdvanced=1", "SFX", "Advanced", "1"},
        {"= in the value", "[A]\nk=1=2==3", "A", "k", "1=2==3"},
        {"no key", "[A]\n=1\n", "A", "k", {}},
        {"quotes and escapes stay", "[A]\nk=\"a\\n%20\"", "A", "k", "\"a\\n%20\""},
        {"UTF-8 byte-order mark", "\xEF\xBB\xBF[A]\nk=\xC3\xA4", "A", "k", "ä"},
        {"Windows-1252", "[A]\nk=\x80 \x93\xE4\xF6\xFC\x94 \x99", "A", "k", "€ “äöü” ™"},
        {"one odd line among UTF-8", "[A]\nk=\xC3\xA4\nl=\xE4\n", "A", "k", "ä"},
        {"the odd line itself", "[A]\nk=\xC3\xA4\nl=\xE4\n", "A", "l", "ä"},
        {"UTF-16", QByteArray("\xFF\xFE[\0A\0]\0\n\0k\0=\0\xE4\0", 16), "A", "k", "ä"},
        {"UTF-16, big end first", QByteArray("\xFE\xFF\0[\0A\0]\0\n\0k\0=\0\xE4", 16), "A", "k", "ä"},
        {"NUL in a value", QByteArray("[A]\nk=ab\0cd\nl=2", 15), "A", "k", "ab"},
        {"the line after a NUL", QByteArray("[A]\nk=ab\0cd\nl=2", 15), "A", "l", "2"},
        {"a name behind a NUL", QByteArray("[A]\n\0k=1", 8), "A", "k", {}},
        {"NUL bytes only", QByteArray(4096, '\0'), "A", "k", {}},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(IniText(c.file).value(c.section, c.key), c.expected) << c.name;
    }
}

TEST(IniText, ChangesOneValueAndNothingElse) {
    const struct {
        const char *name;
        QByteArray before;
        const char *section;
        const char *key;
        QString value;
        QByteArray after;
    } cases[] = {
        {"no file", "", "SFX", "Advanced", "0", "[SFX]\nAdvanced=0\n"},
        {"another value", "; me\n\n[SFX]\n  advanced =  1 \nx\n[B]\n", "sfx", "Advanced", "0",
         "; me\n\n[SFX]\n  advanced =  0 \nx\n[B]\n"},
        {"emptied", "[A]\nk=1\n", "A", "k", "", "[A]\nk=\n"},
        {"was empty", "[A]\nk=\nl=2", "A", "k", "1", "[A]\nk=1\nl=2"},
        {"first of duplicates", "[A]\nk=1\nk=2\n[A]\nk=3\n", "A", "k", "9", "[A]\nk=9\nk=2\n[A]\nk=3\n"},
        {"new key before the next section's remark", "[A]\nk=1\n\n; on B\n[B]\nx=1\n", "A", "l", "2",
         "[A]\nk=1\nl=2\n\n; on B\n[B]\nx=1\n"},
        {"new key in an empty section", "[A]\n; remark\n[B]\n", "A", "k", "1", "[A]\nk=1\n; remark\n[B]\n"},
        {"new key, last line open", "[A]\nk=1", "A", "l", "2", "[A]\nk=1\nl=2\n"},
        {"new section", "[A]\nk=1", "B", "x", "1", "[A]\nk=1\n\n[B]\nx=1\n"},
        {"CRLF stays", "[A]\r\nk=1\r\n", "B", "x", "1", "[A]\r\nk=1\r\n\r\n[B]\r\nx=1\r\n"},
        {"CR stays", "[A]\rk=1\r", "A", "l", "1", "[A]\rk=1\rl=1\r"},
        {"byte-order mark stays", "\xEF\xBB\xBF[A]\nk=1\n", "A", "k", "ä", "\xEF\xBB\xBF[A]\nk=\xC3\xA4\n"},
        {"one-byte file becomes UTF-8", "; gr\xFC\xDF\n[A]\nk=1\n", "A", "k", "2", "; grüß\n[A]\nk=2\n"},
        {"other lines' NUL bytes stay", QByteArray("x\0y\n[A]\nk=1\n", 12), "A", "k", "2",
         QByteArray("x\0y\n[A]\nk=2\n", 12)},
        {"line feed in the value", "[A]\nk=1\n", "A", "k", "2\n[B]\nx=1", "[A]\nk=2\n"},
        {"carriage return in the value", "[A]\nk=1\n", "A", "k", "2\rx", "[A]\nk=2\n"},
        {"NUL in the value", "", "A", "k", QString("a") + QChar(QChar::Null) + "b", "[A]\nk=a\n"},
    };
    for (const auto &c : cases) {
        IniText text(c.before);
        EXPECT_TRUE(text.setValue(c.section, c.key, c.value)) << c.name;
        EXPECT_EQ(text.toBytes(), c.after) << c.name;
        EXPECT_EQ(IniText(text.toBytes()).value(c.section, c.key), text.value(c.section, c.key)) << c.name;
    }
    IniText same("[A]\nk=1\n");
    EXPECT_FALSE(same.setValue("A", "K", "1"));
}

TEST(IniText, FindsEverythingAfterManyChanges) {
    IniText text("; first\r\n[A]\r\nk=1\r\nl = 22\r\n[B]\r\nx=333\r\n[A]\r\nk=not this\r\n[C]\r\ny=\r\n");
    const struct {
        const char *section, *key, *value;
    } changes[] = {
        {"A", "k", "longer than before"}, {"B", "x", "3"}, {"A", "l", ""},      {"C", "y", "now"}, {"A", "new", "5"},
        {"B", "x", " blanks around "},    {"B", "z", "9"}, {"A", "k", "short"}, {"D", "w", "7"},   {"C", "y", "later"},
    };
    QHash<QString, QString> expected;
    for (const auto &change : changes) {
        EXPECT_TRUE(text.setValue(change.section, change.key, change.value));
        expected[QString(change.section) + '/' + change.key] = QString(change.value).trimmed();
        const IniText fresh(text.toBytes());
        for (auto one = expected.cbegin(); one != expected.cend(); ++one) {
            const QString &place = one.key(), &value = one.value();
            const QString section = place.section('/', 0, 0), key = place.section('/', 1);
            EXPECT_EQ(text.value(section, key), value) << qPrintable(place) << " after " << change.value;
            EXPECT_EQ(fresh.value(section, key), value) << qPrintable(place) << " after " << change.value;
        }
    }
}

TEST(IniText, RefusesNamesThatCouldNotBeFoundAgain) {
    for (const auto &[section, key] : std::initializer_list<std::pair<const char *, const char *>>{{"", "k"},
                                                                                                   {"A", ""},
                                                                                                   {"A]", "k"},
                                                                                                   {"A\nB", "k"},
                                                                                                   {"A", "k=l"},
                                                                                                   {"A", ";k"},
                                                                                                   {"A", "[k"},
                                                                                                   {"A", "k\r"},
                                                                                                   {" A", "k"},
                                                                                                   {"A", "k\t"}}) {
        EXPECT_FALSE(IniText::canName(section, key)) << section << '/' << key;
    }
    EXPECT_TRUE(IniText::canName("Scanner Button", "E-mail [1];"));
}

} // namespace
} // namespace lumora
