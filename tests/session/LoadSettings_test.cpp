// The hidden fields, the Simple-mode writes and the folders.
#include "session/LoadSettings.h"

#include "base/TemporaryHome.h"
#include "session/AppContext.h"
#include "support/SettingsFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace lumora {
namespace {

class LoadSettingsTest : public testing::Test {
  protected:
    void put(const QByteArray &bytes) {
        QFile out(context.installation.settingsFile());
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
        out.close();
        context.ini.lookAgain();
    }
    QByteArray get() {
        QFile in(context.installation.settingsFile());
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }

    test::TemporaryHome home;
    QTemporaryDir folder;
    AppContext context{Installation{folder.path()}};
};

/// Calls `what(field of MainFields)` for every setting that has one; the setting is the template argument.
void forEveryField(auto what) {
    what.template operator()<Setting::AdvancedEffects>(&MainFields::txtSFX);
    what.template operator()<Setting::AdvancedResize>(&MainFields::txtResizeMode);
    what.template operator()<Setting::SlideshowDelay>(&MainFields::txtSSSFX);
    what.template operator()<Setting::AdvancedScan>(&MainFields::txtAutoScan);
    what.template operator()<Setting::ScannerButtonOff>(&MainFields::txtScannerButton);
    what.template operator()<Setting::DialogStyle>(&MainFields::txtDlgs);
    what.template operator()<Setting::AdvancedPopart>(&MainFields::txtAndyStyle);
    what.template operator()<Setting::Grid>(&MainFields::txtGrid);
    what.template operator()<Setting::Email>(&MainFields::txtEmail);
    what.template operator()<Setting::PrintLock>(&MainFields::txtPrintTimer);
    what.template operator()<Setting::PrintLockMinutes>(&MainFields::txtCountDown);
    what.template operator()<Setting::Printer>(&MainFields::txtPrinter);
    what.template operator()<Setting::SenderAddress>(&MainFields::txtYourEmail);
    what.template operator()<Setting::CropTip>(&MainFields::txtCropTip);
}

TEST_F(LoadSettingsTest, EveryFieldComesFromItsOwnSetting) {
    forEveryField([&]<Setting S>(auto MainFields::*field) {
        for (const char *text : {"0", "1", "2", "", "maybe", "anna@school.example", "-7"}) {
            put(QByteArray("[") + rowOf(S).section + "]\n" + rowOf(S).key + "=" + text);
            LoadSettingsFromINIFile(context);
            EXPECT_EQ(context.fields.*field, settings::valueOf<S>(text)) << rowOf(S).section << '=' << text;
        }
        QFile::remove(context.installation.settingsFile());
        context.ini.lookAgain();
        LoadSettingsFromINIFile(context);
        EXPECT_EQ(context.fields.*field, MainFields().*field) << rowOf(S).section << " back to its default";
    });
}

TEST_F(LoadSettingsTest, TheMailServerIsOneThatCanBe) {
    const struct {
        const char *file;
        MailServer server;
        MailSize size;
    } cases[] = {
        {"", {}, MailSize::Medium},
        {"[Mail Server]\nServer= smtp.school.example \nPort=465\nSecurity=2\nUser=anna\n[E-mail]\nSize=0",
         {"smtp.school.example", 465, MailSecurity::Tls, "anna"},
         MailSize::Small},
        {"[Mail Server]\nPort=25\nSecurity=0\n[E-mail]\nSize=2", {"", 25, MailSecurity::None, ""}, MailSize::AsItIs},
        {"[Mail Server]\nPort=0\nSecurity=3\n[E-mail]\nSize=huge", {}, MailSize::Medium},
        {"[Mail Server]\nPort=65536\nSecurity=none", {}, MailSize::Medium}, // never unencrypted by mistake
        {"[Mail Server]\nPort=mail\nSecurity=", {}, MailSize::Medium},
    };
    for (const auto &one : cases) {
        put(one.file);
        LoadSettingsFromINIFile(context);
        EXPECT_EQ(context.fields.mailServer, one.server) << one.file;
        EXPECT_EQ(context.fields.mailSize, one.size) << one.file;
    }
}

TEST_F(LoadSettingsTest, WithoutAFileTheProgramIsAsNew) {
    LoadSettingsFromINIFile(context);
    const MainFields &fields = context.fields;
    EXPECT_EQ(fields.txtDlgs, DialogStyle::Own);
    EXPECT_EQ(fields.txtSFX, Switch::Off);
    EXPECT_FALSE(fields.txtResizeMode);
    EXPECT_EQ(fields.txtAndyStyle, Switch::Off);
    EXPECT_FALSE(fields.txtAutoScan);
    EXPECT_FALSE(fields.txtScannerButton);
    EXPECT_TRUE(fields.txtGrid);
    EXPECT_EQ(fields.txtEmail, Switch::Off);
    EXPECT_EQ(fields.txtSSSFX, 2000);
    EXPECT_FALSE(fields.txtPrintTimer);
    EXPECT_EQ(fields.txtCountDown, 1);
    EXPECT_EQ(fields.txtPrinter, "");
    EXPECT_EQ(fields.txtYourEmail, "you@example.com");
    EXPECT_EQ(fields.txtCropTip, Switch::Off);
    EXPECT_TRUE(context.settings.read<Setting::Welcome>());
    EXPECT_EQ(context.settings.read<Setting::ScreenNotice>(), Switch::On);
    EXPECT_EQ(context.settings.read<Setting::RecipientAddress>(), "");
    EXPECT_EQ(context.settings.read<Setting::EmailTitle>(), "E-mail Photo");
}

TEST_F(LoadSettingsTest, ScannerIndexStaysInsideTheList) {
    const struct {
        QStringList scanners;
        const char *setting;
        int expected;
    } cases[] = {
        {{}, "1", 7}, // no list: the index is not changed
        {{"a", "b"}, "1", 1},
        {{"a", "b"}, "0", 0},
        {{"a", "b"}, "2", -1},
        {{"a", "b"}, "-1", -1},
        {{"a", "b"}, "-5", -1},
        {{"a", "b"}, "", -1},
        {{"a", "b"}, "one", -1},
        {{"a", "b"}, "99999999999", -1},
        {{"a", "b"}, "1.5", -1},
        {{"a", "b"}, " 1 ", 1},
    };
    for (const auto &c : cases) {
        context.fields.cboSelect = c.scanners;
        context.fields.cboSelectIndex = 7;
        put(QByteArray("[Scanner]\nDevice=") + c.setting);
        LoadSettingsFromINIFile(context);
        EXPECT_EQ(context.fields.cboSelectIndex, c.expected) << c.setting;
    }
}

TEST_F(LoadSettingsTest, SimpleSettingsAreWrittenInTheirOrder) {
    ApplySimpleSettings(context);
    EXPECT_EQ(get(), "[Dialogs]\nStyle=0\n\n[SFX]\nAdvanced=0\n\n[Resize]\nAdvanced=0\n\n[Grid]\nValue=0\n\n"
                     "[E-mail]\nValue=0\n\n[Printer]\nTimed=0\n\n[Tips]\nCrop=0\n");
    put("[Grid]\nValue=1\n[Welcome]\nShow=1\n");
    ApplySimpleSettings(context);
    LoadSettingsFromINIFile(context);
    EXPECT_FALSE(context.fields.txtGrid);
    EXPECT_EQ(test::setting(context, "Welcome", "Show", "x"), "1") << "everything else stays";
}

TEST_F(LoadSettingsTest, WhatSimpleModeChangedComesBack) {
    const struct {
        const char *name;
        QByteArray before;
        bool isOffered;
        QByteArray after; ///< Style, SFX, Resize, Grid, E-mail, Timed, Crop
    } cases[] = {
        {"nothing was chosen", "", false, "0 0 0 0 0 0 0"},
        {"all off", "[Dialogs]\nStyle=0\n[Grid]\nValue=0\n", false, "0 0 0 0 0 0 0"},
        {"as it is installed",
         "[Dialogs]\nStyle=1\n[SFX]\nAdvanced=1\n[Resize]\nAdvanced=1\n[Grid]\nValue=1\n[E-mail]\nValue=0\n"
         "[Printer]\nTimed=0\n[Tips]\nCrop=1\n",
         true, "1 1 1 1 0 0 1"},
        {"one of them", "[SFX]\nAdvanced=1\n", true, "0 1 0 1 0 0 0"},
        {"odd values", "[Tips]\nCrop=perhaps\n[Grid]\nValue=1;2\n", true, "0 0 0 1 0 0 perhaps"},
    };
    const auto seven = [&] {
        QStringList values;
        for (const SettingRow &row : settingRows) {
            if (row.isWrittenBy(Writer::SimpleStart)) {
                values << test::setting(context, row.section, row.key);
            }
        }
        return values.join(' ').toUtf8();
    };
    for (const auto &one : cases) {
        put(one.before);
        ApplySimpleSettings(context);
        EXPECT_EQ(seven(), "0 0 0 0 0 0 0") << one.name;
        EXPECT_EQ(context.settings.hasFormer(), one.isOffered) << one.name;
        ApplySimpleSettings(context); // another visit keeps what the first one found
        EXPECT_EQ(context.settings.hasFormer(), one.isOffered) << one.name;
        context.settings.bringFormerBack();
        EXPECT_EQ(seven(), one.after) << one.name;
        EXPECT_FALSE(context.settings.hasFormer()) << one.name;
    }
    put("[Before Simple Mode]\nValues=1;1\n[Grid]\nValue=0\n");
    context.settings.bringFormerBack();
    EXPECT_EQ(test::setting(context, "Grid", "Value"), "0") << "damaged by hand: nothing is written";
}

TEST_F(LoadSettingsTest, Folders) {
    const QString documents = GetSpecialFolderPath(5);
    const QString odd = folder.filePath("a\\b");
    ASSERT_TRUE(QDir().mkdir(odd));
    const struct {
        const char *name;
        QString file, working, photos;
        bool myDox;
    } cases[] = {
        {"no setting", "", documents + "/My Photos", documents, true},
        {"the documents", "[MyDocs]\nValue=1\n[Working Directory]\nPath=/a/b", "/a/b", documents, true},
        {"the working directory", "[MyDocs]\nValue=0\n[Working Directory]\nPath=/a/b", "/a/b", "/a/b", false},
        {"its default", "[MyDocs]\nValue=0\n", documents + "/My Photos", documents + "/My Photos", false},
        {"another value", "[MyDocs]\nValue=yes", documents + "/My Photos", documents, true},
        {"empty path", "[MyDocs]\nValue=0\n[Working Directory]\nPath=", documents + "/My Photos",
         documents + "/My Photos", false},
        {"from another system", "[MyDocs]\nValue=0\n[Working Directory]\nPath=C:\\x\\y", "C:/x/y", "C:/x/y", false},
        {"a folder with the sign in its name", "[MyDocs]\nValue=0\n[Working Directory]\nPath=" + odd, odd, odd, false},
    };
    for (const auto &c : cases) {
        put(c.file.toUtf8());
        EXPECT_EQ(workingDirectory(context), c.working) << c.name;
        EXPECT_EQ(photoFolder(context), c.photos) << c.name;
        EXPECT_EQ(context.fields.txtMyDox, c.myDox) << c.name;
    }
}

} // namespace
} // namespace lumora
