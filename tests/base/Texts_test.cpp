// Every text, from the language file to its control.
#include "base/Texts.h"

#include "base/IniFiles.h"
#include "support/TextCheck.h"
#include "widgets/WindowTexts.h"

#include <QCheckBox>
#include <QDirIterator>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <set>

namespace lumora {
namespace {

QString string(const char *text) {
    return QString::fromUtf8(text);
}

class TextsTest : public testing::Test {
  protected:
    QTemporaryDir folder;
    QString file = folder.filePath("language.ini");
    IniFiles ini;
    Texts texts{ini, file};
};

/// A window that has every control its rows name: buttons where the name says so, labels elsewhere.
void furnish(QWidget &window, const QString &name) {
    window.setObjectName(name);
    for (const TextRow &row : allTexts()) {
        const QString control = string(row.control);
        if (!isTextOf(row, name) || control == "-" || control.isEmpty()) {
            continue;
        }
        const QString key = string(row.property).section(':', 1);
        auto *found = window.findChild<QWidget *>(control);
        if (found == nullptr) {
            const bool label = control.startsWith("lbl") || control.startsWith("LN") || !key.isEmpty();
            found = label ? static_cast<QWidget *>(new QLabel(&window)) : new QPushButton(&window);
            found->setObjectName(control);
        }
        if (!key.isEmpty()) {
            (new QPushButton(found))->setProperty("key", key);
        }
    }
}

TEST_F(TextsTest, EveryTextReachesItsControl) {
    ASSERT_TRUE(test::writeChangedLanguageFile(file));
    std::set<QString> windows;
    for (const TextRow &row : allTexts()) {
        for (const QString &name : string(row.window).split(' ', Qt::SkipEmptyParts)) {
            if (string(row.control) != "-") {
                windows.insert(name);
            }
        }
        EXPECT_EQ(texts.text(row.identifier), test::changedText(row.identifier));
        EXPECT_EQ(texts.text(row.identifier, "x"), test::changedText(row.identifier));
    }
    EXPECT_GE(windows.size(), 18U);
    for (const QString &name : windows) {
        QWidget window;
        furnish(window, name);
        EXPECT_FALSE(test::textsNotShown(window).isEmpty()) << qPrintable(name) << ": the check must fail before";
        showTexts(texts, window);
        EXPECT_EQ(test::textsNotShown(window), QStringList())
            << qPrintable(name + ' ' + test::textsNotShown(window).join("\n"));
    }
}

TEST_F(TextsTest, TheCheckNamesWhatIsMissing) {
    ASSERT_TRUE(test::writeChangedLanguageFile(file));
    QWidget window;
    furnish(window, "frmHelp");
    delete window.findChild<QWidget *>("optVideos");
    showTexts(texts, window);
    EXPECT_EQ(test::textsNotShown(window), QStringList{"DlgHelpOpt1: optVideos text no such control"});
    EXPECT_EQ(test::textsNotShown(window, {"optVideos"}), QStringList());
    EXPECT_EQ(test::textsNotShown(window, {"optVideos", "cmdYes"}),
              QStringList{"cmdYes: is built, take it off the list"});
}

TEST_F(TextsTest, WithoutAFileTheDefaultsShow) {
    const struct {
        const char *window, *control, *text;
    } cases[] = {
        {"frmLauncher", "lblTitle", "Welcome to Lumora"},
        {"frmExit", "lblPrompt", "Exit ?"},
        {"frmSave", "lblCaption", "Save"},
        {"frmSave2", "lblCaption", "Save"},
        {"frmMain", "cmdTool4", "Resize"},
        {"frmMain", "cmdCropCut", "Cut out"},
        {"frmOptions", "cmdOK", "Open"},
        {"frmOptions", "chkMyDocs", "Use My Dcouments Folder"},
        {"frmOptions", "lblResetNotice",
         "When you use Lumora you will get popup tips the first time you use a tool. You can disable these as soon as "
         "they appear. Pressing the Reset Warnings and Reminders button here will enable them again.\n\nPlease Note: "
         "You must restart Lumora for the changes to take effect."},
    };
    for (const auto &c : cases) {
        QWidget window;
        furnish(window, c.window);
        showTexts(texts, window);
        showTexts(texts, window);
        EXPECT_EQ(window.findChild<QWidget *>(c.control)->property("text").toString(), string(c.text)) << c.control;
    }
    EXPECT_EQ(texts.text("ApplicationName"), "Lumora");
    EXPECT_EQ(texts.text("ApplicationName", string("Corvane™ | Lumora")), string("Corvane™ | Lumora"));
    EXPECT_EQ(texts.text("Tool4", "ReSize Tool"), "ReSize Tool");
    EXPECT_EQ(texts.text("DlgSaveTitle"), "Save As");
    EXPECT_EQ(texts.text("NoSuchText"), "");
}

TEST_F(TextsTest, AmpersandsAndEmptyTexts) {
    QFile out(file);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write("[DlgHelpOpt1]\nCaption=Salt && &Pepper\n[DlgHelpTitle]\nCaption=A && B\n[DlgHelpBtnYes]\nCaption=\n"
              "[SetZoom]\nCaption=Near && Far\n[BasicEffects1]\nCaption=Black && White");
    out.close();

    QWidget help;
    furnish(help, "frmHelp");
    showTexts(texts, help);
    auto *option = help.findChild<QPushButton *>("optVideos");
    EXPECT_EQ(option->text(), "Salt && &Pepper") << "a button turns this into one ampersand and a letter key";
    EXPECT_EQ(option->accessibleName(), "Salt & Pepper");
    EXPECT_EQ(help.findChild<QLabel *>("lblCaption")->text(), "A & B");
    EXPECT_EQ(help.windowTitle(), "A & B");
    EXPECT_EQ(help.findChild<QPushButton *>("cmdYes")->text(), "") << "an empty text is a text";
    EXPECT_EQ(help.findChild<QPushButton *>("cmdNo")->text(), "Cancel") << "only what the file holds changes";

    QWidget window;
    furnish(window, "frmMain");
    showTexts(texts, window);
    auto *zoom = window.findChild<QPushButton *>("cmdSetZoom");
    EXPECT_EQ(zoom->toolTip(), "Near & Far");
    EXPECT_EQ(zoom->accessibleName(), "Near & Far");
    EXPECT_EQ(zoom->text(), "");
    for (QWidget *item : window.findChild<QWidget *>("FT3")->findChildren<QWidget *>()) {
        if (item->property("key") == "keyBW") {
            EXPECT_EQ(item->property("text"), "Black && White");
            EXPECT_EQ(item->toolTip(), "Black & White");
            EXPECT_EQ(item->accessibleName(), "Black & White");
        }
    }
}

TEST_F(TextsTest, ATextIsReadOnceAndAgainWhenTheFileHasChanged) {
    const auto write = [this](const QByteArray &bytes) {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
    };
    IniFiles patient(std::chrono::hours(1));
    const Texts lasting(patient, file);
    write("[Open]\nCaption=Auf\n");
    EXPECT_EQ(lasting.text("Open"), "Auf");
    const int looks = patient.looks();
    for (const TextRow &row : allTexts()) {
        EXPECT_FALSE(lasting.text(row.identifier).isEmpty());
    }
    EXPECT_EQ(patient.looks(), looks) << "no file is looked at for a text";
    write("[Open]\nCaption=\n[Save]\nCaption=Sichern\n");
    patient.lookAgain();
    EXPECT_EQ(lasting.text("Open"), "") << "an empty text is a text";
    EXPECT_EQ(lasting.text("Open", "Other"), "");
    EXPECT_EQ(lasting.text("Save"), "Sichern");
    EXPECT_EQ(lasting.text("Help", "Other"), "Other") << "not in the file";
}

TEST(TextTable, RowsAreWellFormed) {
    std::set<QString> places;
    for (const TextRow &row : allTexts()) {
        const QString property = string(row.property);
        const bool message = string(row.control) == "-";
        EXPECT_EQ(property.isEmpty() || property == "verbatim", message) << row.identifier;
        EXPECT_TRUE(
            message ||
            QStringList({"text", "toolTip", "title", "windowTitle", "append", "accessibleName"}).contains(property) ||
            property.startsWith("item:") || property.startsWith("itemText:"))
            << row.identifier << ": " << row.property;
        EXPECT_NE(qstrlen(row.defaultText), 0U) << row.identifier;
        for (const QString &window : string(row.window).split(' ')) {
            const QString place = window + '.' + row.control + '.' + row.property + (message ? row.identifier : "");
            EXPECT_TRUE(places.insert(place).second) << "two texts for " << qPrintable(place);
        }
    }
}

/// Every text that the program asks for by name has its row, with the default that the program gives: a typing error
/// would show an empty text, a different default an outdated one.
TEST(TextTable, HoldsEveryTextThatTheProgramAsksFor) {
    const QString source = qEnvironmentVariable("LUMORA_SOURCE") + "/src";
    const QRegularExpression asks(R"re(\btexts?(?:\(\))?(?:\.|->)text\(\s*"([^"]+)"(?:,\s*"([^"]+)"\))?)re");
    std::set<QString> known;
    for (const TextRow &row : allTexts()) {
        known.insert(string(row.identifier));
        known.insert(string(row.identifier) + " = " + string(row.defaultText));
    }
    QDirIterator files(source, {"*.cpp", "*.h"}, QDir::Files, QDirIterator::Subdirectories);
    int read = 0;
    while (files.hasNext()) {
        QFile in(files.next());
        ASSERT_TRUE(in.open(QIODevice::ReadOnly));
        ++read;
        const QString code = QString::fromUtf8(in.readAll());
        for (auto match = asks.globalMatch(code); match.hasNext();) {
            const auto call = match.next();
            const QString asked = call.captured(1) + (call.hasCaptured(2) ? " = " + call.captured(2) : "");
            EXPECT_TRUE(known.contains(asked)) << qPrintable(files.filePath() + " asks for " + asked);
        }
    }
    EXPECT_GT(read, 10) << "is LUMORA_SOURCE set?";
}

} // namespace
} // namespace lumora
