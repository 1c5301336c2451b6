// The table of settings: how the texts of the file are parsed, and that its columns match the readers and writers.
#include "session/Settings.h"

#include "base/TemporaryHome.h"
#include "session/AppContext.h"
#include "session/ForMe.h"
#include "session/LoadSettings.h"
#include "session/OptionsSettings.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace lumora {
namespace {

class SettingsTest : public testing::Test {
  protected:
    /// "Section/Key" of every value in the file, in the file's order.
    QStringList written() {
        QStringList places;
        QString section;
        QFile in(context.installation.settingsFile());
        EXPECT_TRUE(in.open(QIODevice::ReadOnly));
        for (const QString &line : QString::fromUtf8(in.readAll()).split('\n', Qt::SkipEmptyParts)) {
            if (line.startsWith('[')) {
                section = line.mid(1, line.size() - 2);
            } else {
                places << section + '/' + line.section('=', 0, 0);
            }
        }
        return places;
    }

    test::TemporaryHome home;
    QTemporaryDir folder;
    AppContext context{Installation{folder.path()}};
};

TEST_F(SettingsTest, TextsMeanWhatTheirKindSays) {
    const struct {
        const char *text;
        bool yes, yesUnlessNo;
        Switch state;
        DialogStyle dialogs;
        int number; ///< of a setting whose default is 2000
        std::optional<int> index;
    } cases[] = {
        {"0", false, false, Switch::Off, DialogStyle::Own, 0, 0},
        {"1", true, true, Switch::On, DialogStyle::System, 1, 1},
        {"2", false, true, Switch::Other, DialogStyle::Other, 2, 2},
        {"", false, true, Switch::Other, DialogStyle::Other, 2000, {}},
        {"01", false, true, Switch::Other, DialogStyle::Other, 1, 1},
        {"-1", false, true, Switch::Other, DialogStyle::Other, -1, -1},
        {"1.5", false, true, Switch::Other, DialogStyle::Other, 2000, {}},
        {"yes", false, true, Switch::Other, DialogStyle::Other, 2000, {}},
        {"99999999999", false, true, Switch::Other, DialogStyle::Other, 2000, {}},
    };
    for (const auto &one : cases) {
        EXPECT_EQ(settings::valueOf<Setting::Grid>(one.text), one.yes) << one.text;
        EXPECT_EQ(settings::valueOf<Setting::MyDocs>(one.text), one.yesUnlessNo) << one.text;
        EXPECT_EQ(settings::valueOf<Setting::CropTip>(one.text), one.state) << one.text;
        EXPECT_EQ(settings::valueOf<Setting::DialogStyle>(one.text), one.dialogs) << one.text;
        EXPECT_EQ(settings::valueOf<Setting::SlideshowDelay>(one.text), one.number) << one.text;
        EXPECT_EQ(settings::valueOf<Setting::Scanner>(one.text), one.index) << one.text;
        EXPECT_EQ(settings::valueOf<Setting::Printer>(one.text), one.text);
    }
}

TEST_F(SettingsTest, TheSiteFileAnswersForWhatIsNotChosenAndWinsForWhatIsLocked) {
    const auto write = [](const QString &name, const QByteArray &bytes) {
        QFile out(name);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
    };
    const QString site = folder.filePath("site.ini");
    const struct {
        const char *own, *site;
        bool advanced, lockAfterPrint, printingLocked;
        std::optional<Settings::Mode> mode;
    } cases[] = {
        {"", "", false, false, false, {}},
        {"", "[SFX]\nAdvanced=1\n[Printer]\nTimed=1\n", true, true, false, {}},
        {"[SFX]\nAdvanced=0\n[Printer]\nTimed=0\n", "[SFX]\nAdvanced=1\n[Printer]\nTimed=1\n", false, false, false, {}},
        {"[Printer]\nTimed=0\n", "[Printer]\nTimed=1\n[Locked]\nPrinting=1\nMode=simple\n", false, true, true,
         Settings::Mode::Simple},
        {"[Printer]\nTimed=1\n[Locked]\nPrinting=0\n", "[Locked]\nPrinting=1\nMode=Advanced\n", false, false, true,
         Settings::Mode::Advanced},
        {"[Locked]\nPrinting=1\nMode=Simple\n", "[Locked]\nPrinting=0\nMode=1\n", false, false, false, {}},
    };
    for (const auto &one : cases) {
        write(context.installation.settingsFile(), one.own);
        write(site, one.site);
        IniFiles files;
        Settings settings(files, Installation{.programFolder = folder.path(), .siteFile = site});
        EXPECT_EQ(settings.read<Setting::AdvancedEffects>() == Switch::On, one.advanced) << one.site;
        EXPECT_EQ(settings.read<Setting::PrintLock>(), one.lockAfterPrint) << one.site;
        EXPECT_EQ(settings.isLocked(Lock::Printing), one.printingLocked) << one.site;
        EXPECT_EQ(settings.onlyMode(), one.mode) << one.site;
        // Simple mode switches nothing locked off, and has then nothing to bring back.
        settings.write<Setting::PrintLock, Writer::Options>(!one.lockAfterPrint);
        EXPECT_EQ(settings.read<Setting::PrintLock>(), one.lockAfterPrint == one.printingLocked) << one.site;
        EXPECT_EQ(QFile(site).size(), qint64(qstrlen(one.site))) << "the site file is never written";
    }
}

TEST_F(SettingsTest, WhatIsNeitherYesNorNoIsLeftInTheFile) {
    QFile out(context.installation.settingsFile());
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write("[Tips]\nCrop=perhaps\n");
    out.close();
    context.settings.write<Setting::CropTip, Writer::CropTip>(context.settings.read<Setting::CropTip>());
    EXPECT_EQ(context.ini.ReadIniValue(out.fileName(), "Tips", "Crop", "gone"), "perhaps");
    context.settings.write<Setting::CropTip, Writer::CropTip>(Switch::On);
    EXPECT_EQ(context.ini.ReadIniValue(out.fileName(), "Tips", "Crop", "gone"), "1");
}

TEST_F(SettingsTest, WritersWriteTheRowsThatNameThem) {
    const struct {
        Writer writer;
        void (*write)(AppContext &);
    } cases[] = {
        {Writer::SimpleStart, ApplySimpleSettings},
        {Writer::Options, [](AppContext &ctx) { writeOptions(ctx, readOptions(ctx)); }},
        {Writer::Reset, resetWarnings},
    };
    for (const auto &one : cases) {
        one.write(context);
        QStringList expected;
        for (const SettingRow &row : settingRows) {
            if (row.isWrittenBy(one.writer)) {
                expected << QString(row.section) + '/' + row.key;
            }
        }
        QStringList found = written();
        found.sort();
        expected.sort();
        EXPECT_EQ(found, expected) << "writer " << static_cast<unsigned>(one.writer);
        ASSERT_TRUE(QFile::remove(context.installation.settingsFile()));
    }
}

TEST_F(SettingsTest, WhatIsTheUsersOwnGoesIntoTheirFileWhileTheProgramsIsWritable) {
    const Installation where{folder.path(), {}, folder.filePath("anna/lumora")};
    const ForMe wanted{.size = ButtonSize::Largest, .capitals = true, .largePointer = true};
    AppContext anna(where);
    EXPECT_EQ(readForMe(anna.settings), ForMe());
    writeForMe(anna.settings, wanted);
    EXPECT_EQ(readForMe(anna.settings), wanted);
    EXPECT_FALSE(QFile::exists(where.settingsFile()));
    EXPECT_TRUE(QFile::exists(where.usersFile()));
    const AppContext again(where);
    EXPECT_EQ(readForMe(again.settings), wanted);
    const AppContext ben(Installation{folder.path(), {}, folder.filePath("ben/lumora")});
    EXPECT_EQ(readForMe(ben.settings), ForMe());
    writeForMe(anna.settings, {});
    EXPECT_EQ(readForMe(anna.settings), ForMe());
}

TEST(SettingsTable, NoPlaceTwiceAndDefaultsOfTheirKind) {
    QStringList places;
    for (const SettingRow &row : settingRows) {
        const QString place = (QString(row.section) + '/' + row.key).toCaseFolded();
        EXPECT_FALSE(places.contains(place)) << qPrintable(place);
        places << place;
        for (const char *standard : {row.standard, row.standardOfOptions}) {
            if (standard == nullptr) {
                continue;
            }
            if (row.kind == SettingKind::Number || row.kind == SettingKind::Index) {
                EXPECT_TRUE(settings::number(standard)) << qPrintable(place);
            } else if (row.kind != SettingKind::Text) {
                EXPECT_TRUE(qstrcmp(standard, "0") == 0 || qstrcmp(standard, "1") == 0) << qPrintable(place);
            }
        }
    }
}

} // namespace
} // namespace lumora
