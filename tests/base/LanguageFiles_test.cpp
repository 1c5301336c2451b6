// The language files that are installed: the English one equals the table, the others translate all of it.
// With LUMORA_WRITE_LANGUAGE=1 in the environment the English one is written again.
#include "base/IniText.h"
#include "base/Texts.h"

#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <map>

namespace lumora {
namespace {

QString installed(const QString &name) {
    return qEnvironmentVariable("LUMORA_SOURCE") + "/resources/installed/" + name;
}

QByteArray contents(const QString &file) {
    QFile in(file);
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
}

struct Entry {
    QString identifier, window;
    QStringList defaults; ///< more than one where readers differ
};

/// One entry per identifier, in the table's order.
QList<Entry> entries() {
    QList<Entry> list;
    std::map<QString, qsizetype> places;
    for (const TextRow &row : allTexts()) {
        const QString text = QString::fromUtf8(row.defaultText);
        const auto [place, isNew] = places.try_emplace(row.identifier, list.size());
        if (isNew) {
            list.append({row.identifier, row.window, {text}});
        } else if (!list[place->second].defaults.contains(text)) {
            list[place->second].defaults.append(text);
        }
    }
    return list;
}

/// Texts that the installed file says better than the defaults do.
const std::map<QString, const char *> betterTexts = {
    {"SFX11", "Perspective"}, // the panel's default is misspelt
};

/// The English file. A text whose readers have different defaults is written as a comment, so that the installed file
/// changes nothing.
QByteArray englishFile() {
    QString file = "; Every text of Lumora (UTF-8). Change the text after \"Caption=\", or replace this file with a\n"
                   "; copy of one from the folder \"languages\". A text that is missing here appears in English.\n"
                   "; \"&&\" shows one \"&\" on a button. \"%1\", \"%2\" are places that Lumora fills in. The code in "
                   "[Language],\n"
                   "; such as de or fr, chooses the language of the guide and of the computer's own windows.\n";
    QString window;
    for (const Entry &entry : entries()) {
        if (entry.window != window && !entry.window.isEmpty()) {
            file += "\n; " + QString(entry.window).replace(' ', ", ") + '\n';
        }
        window = entry.window;
        file += "\n[" + entry.identifier + "]\n";
        const auto better = betterTexts.find(entry.identifier);
        if (better != betterTexts.end()) {
            file += QString("Caption=") + better->second + '\n';
            continue;
        }
        if (entry.defaults.size() > 1) {
            file += "; Shown in several places, in English as \"" + entry.defaults.join("\" and as \"") +
                    "\". To show one text in all\n; of them, take the \";\" off the next line.\n;";
        }
        file += "Caption=" + entry.defaults.first() + '\n';
    }
    return file.toUtf8();
}

TEST(LanguageFiles, EnglishEqualsTheTable) {
    const QByteArray expected = englishFile();
    if (qEnvironmentVariableIntValue("LUMORA_WRITE_LANGUAGE") == 1) {
        QFile out(installed("language.ini"));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly) && out.write(expected) == expected.size());
    }
    EXPECT_EQ(contents(installed("language.ini")), expected)
        << "the table has changed: run this test once with LUMORA_WRITE_LANGUAGE=1";
}

class Translation : public testing::TestWithParam<const char *> {};

TEST_P(Translation, IsComplete) {
    const QByteArray bytes = contents(installed(QString("languages/language-%1.ini").arg(GetParam())));
    ASSERT_FALSE(bytes.isEmpty()) << "is LUMORA_SOURCE set?";
    EXPECT_TRUE(QUtf8StringView(bytes).isValidUtf8());
    EXPECT_FALSE(bytes.contains('\r'));
    const IniText file(bytes);
    const auto marks = [](const QString &text) {
        QStringList found = text.split(QRegularExpression("[^0-9&]+"), Qt::SkipEmptyParts);
        found.sort();
        return found;
    };
    int same = 0;
    for (const Entry &entry : entries()) {
        const QString text = file.value(entry.identifier, "Caption").value_or(QString());
        EXPECT_FALSE(text.isEmpty()) << qPrintable(entry.identifier);
        EXPECT_EQ(marks(text), marks(entry.defaults.first()))
            << qPrintable(entry.identifier) << ": numbers and ampersands";
        EXPECT_LT(text.size(), 2 * entry.defaults.first().size() + 30)
            << qPrintable(entry.identifier) << " would not fit";
        same += entry.defaults.contains(text) ? 1 : 0;
    }
    EXPECT_LT(same, entries().size() / 8) << "texts left in English";

    const qsizetype sections =
        QString::fromUtf8(bytes).count(QRegularExpression("^\\[", QRegularExpression::MultilineOption));
    EXPECT_EQ(sections, entries().size()) << "a section that no window reads, or one twice";
}

INSTANTIATE_TEST_SUITE_P(Shipped, Translation, testing::Values("de", "fr"));

TEST(SettingsFile, LeavesEveryDefaultButAFewAlone) {
    const QByteArray bytes = contents(installed("Lumora.ini"));
    ASSERT_FALSE(bytes.isEmpty());
    QByteArrayList settings = bytes.split('\n');
    settings.removeIf([](const QByteArray &line) { return line.isEmpty() || line.startsWith(';'); });
    EXPECT_EQ(settings, QByteArrayList({"[Scanner]", "Device=0", "[Slideshow]", "Delay=4"}));
}

} // namespace
} // namespace lumora
