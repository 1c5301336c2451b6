// The language files that are installed: the English one equals the table, the others translate all of it.
// With LUMORA_WRITE_LANGUAGE=1 in the environment the English one is written again.
#include "base/IniText.h"
#include "base/Texts.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <map>

namespace lumora {
using test::contents;

namespace {

QString installed(const QString &name) {
    return qEnvironmentVariable("LUMORA_SOURCE") + "/resources/installed/" + name;
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
    // Misspelt in the code, or in two spellings.
    {"SFX11", "Perspective"},
    {"Tool4", "Resize"},
    {"MyDocs", "Use My Documents Folder"},
    {"DlgOptionsChkAdvSFX", "Enable advanced settings when applying special effects"},
    {"DlgOptionschkAdvResize", "Enable advanced settings when resizing"},
    {"DlgOptionschkAdvPopart", "Enable advanced settings when making pop-art"},
    {"DlgExitPrompt", "Exit?"},
    {"DlgPrintPrompt", "Print?"},
    {"DlgPrintPrintCentre", "Print in the middle of the page"},
    {"DlgPrintfit2page", "Fit the photo to the page"},
    {"DlgPrintNumcopies", "Number of Copies"},
    {"LblWelcomeTip", "To start, click the yellow folder and open a picture."},
    {"Selection Bubble", "Please make a selection first"},
    {"MsgInvalidSize", "This size is too big. The largest size is 5000 x 5000."},
    // The words lead astray.
    {"DlgOptionsBtnOK", "OK"},
    {"DlgOptionsDlgOpt1", "The Computer's Dialog Boxes"},
    {"DlgOptionsDlgOpt2", "Lumora's Own Dialog Boxes"},
    {"LblPrintNotice", "Please note: This is also about the dialog box for printing."},
    {"DlgOptionsLblWD", "Working Folder"},
    {"DlgOptionsBrowse", "Choose the folder for your photos:"},
    {"DlgOptionschkWelcome", "Show the welcome bubble at the start"},
    {"BtnReset", "Show all tips and warnings again"},
    {"DlgOptionsReset", "All tips and warnings are shown again"},
    {"LblResetNotice1",
     "Lumora shows a tip when you use a tool for the first time. Each tip can be switched off where it "
     "appears. This button switches all of them on again."},
    {"LblResetNotice2", "The welcome bubble comes back when Lumora starts next time."},
    {"Print_Info", "Please note: This prevents paper jams when children press the print button again and again."},
    {"ChkDisScanner", "Switch the scan button off"},
    {"ChkDisPrinter", "Switch the print button off"},
    {"ScanOption2", "Use the scanner's own settings"},
    {"CropDescription", "Crop - keep what is inside the frame:"},
    {"LblProgress", "Working... Please wait."},
    {"NoHelp", "The videos are not installed. Please install them and try again."},
    {"MsgEmailFailed", "The e-mail could not be sent. The mail settings may be wrong. Please try again."},
    // As a child would say it.
    {"Rotation2", "Upside Down"},
    {"DlgOpenGrp3", "Landscapes"},
    {"DlgOverwritePrompt", "There is already a picture with this name. Replace it?"},
    {"SelectBkgDescription", "Cut out - draw a line, then choose:"},
    {"DlgSSBrowse", "Choose the folder with the photos for your slideshow:"},
    {"Lbl3x3", "There is nothing to set here. Just click on 'Apply'."},
    {"LblReflection", "Choose a style"},
    {"LblAQFX", "Colour Focus - Choose a colour, then click on 'Apply':"},
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

void expectComplete(const QString &name) {
    const QByteArray bytes = contents(installed("languages/" + name));
    ASSERT_FALSE(bytes.isEmpty());
    EXPECT_TRUE(QUtf8StringView(bytes).isValidUtf8());
    EXPECT_FALSE(bytes.contains('\r'));
    const IniText file(bytes);
    EXPECT_EQ(file.value("Language", "Caption"), QRegularExpression("-(.*)\\.").match(name).captured(1));
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

TEST(LanguageFiles, EveryTranslationIsComplete) {
    const QStringList names = QDir(installed("languages")).entryList(QDir::Files);
    EXPECT_GE(names.size(), 5) << "is LUMORA_SOURCE set?";
    for (const QString &name : names) {
        SCOPED_TRACE(qPrintable(name));
        expectComplete(name);
    }
}

} // namespace
} // namespace lumora
