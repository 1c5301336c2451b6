// The hidden fields, the Simple-mode writes and the folders.
#include "session/LoadSettings.h"

#include "base/TemporaryHome.h"
#include "session/AppContext.h"

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

struct Field {
    const char *section, *key;
    QString MainFields::*field;
    const char *standard;
};
const Field kFields[] = {
    {"SFX", "Advanced", &MainFields::txtSFX, "0"},
    {"Resize", "Advanced", &MainFields::txtResizeMode, "0"},
    {"Slideshow", "Delay", &MainFields::txtSSSFX, "2000"},
    {"Scan", "Autoscan", &MainFields::txtAutoScan, "0"},
    {"Scanner Button", "Value", &MainFields::txtScannerButton, "0"},
    {"Dialogs", "Style", &MainFields::txtDlgs, "0"},
    {"Popart", "Level", &MainFields::txtAndyStyle, "0"},
    {"Grid", "Value", &MainFields::txtGrid, "1"},
    {"E-mail", "Value", &MainFields::txtEmail, "0"},
    {"Printer", "Timed", &MainFields::txtPrintTimer, "0"},
    {"Printer", "Timer", &MainFields::txtCountDown, "1"},
    {"Printer", "Device", &MainFields::txtPrinter, ""},
    {"Sender", "Address", &MainFields::txtYourEmail, placeholderAddress},
    {"Tips", "Crop", &MainFields::txtCropTip, "0"},
};

TEST_F(LoadSettingsTest, FieldsComeFromTheFileOrTheirDefaults) {
    for (const Field &f : kFields) {
        EXPECT_EQ(MainFields().*f.field, f.standard) << f.section << " before anything was read";
        context.fields.*f.field = "old";
    }
    LoadSettingsFromINIFile(context);
    QByteArray file;
    for (const Field &f : kFields) {
        EXPECT_EQ(context.fields.*f.field, f.standard) << f.section << '/' << f.key;
    }
    for (const char *section : {"SFX", "Resize", "Slideshow", "Scan", "Scanner Button", "Dialogs", "Popart", "Grid",
                                "E-mail", "Printer", "Sender", "Tips"}) {
        file += QByteArray("[") + section + "]\n";
        for (const Field &f : kFields) {
            if (qstrcmp(f.section, section) == 0) {
                file += QByteArray(f.key) + "=" + section + f.key + "\n";
            }
        }
    }
    put(file);
    LoadSettingsFromINIFile(context);
    for (const Field &f : kFields) {
        EXPECT_EQ(context.fields.*f.field, QString(f.section) + f.key);
    }
}

TEST_F(LoadSettingsTest, ScannerIndexStaysInsideTheList) {
    const struct {
        QStringList scanners;
        const char *setting;
        int expected;
    } cases[] = {
        {{}, "1", 7}, // no list: the index is left alone
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
    EXPECT_EQ(context.fields.txtGrid, "0");
    EXPECT_EQ(context.setting("Welcome", "Show", "x"), "1") << "everything else stays";
}

TEST_F(LoadSettingsTest, Folders) {
    const QString documents = GetSpecialFolderPath(5);
    const QString odd = folder.filePath("a\\b");
    ASSERT_TRUE(QDir().mkdir(odd));
    const struct {
        const char *name;
        QString file, working, photos, myDox;
    } cases[] = {
        {"no setting", "", documents + "/My Photos", documents, "1"},
        {"the documents", "[MyDocs]\nValue=1\n[Working Directory]\nPath=/a/b", "/a/b", documents, "1"},
        {"the working directory", "[MyDocs]\nValue=0\n[Working Directory]\nPath=/a/b", "/a/b", "/a/b", "0"},
        {"its default", "[MyDocs]\nValue=0\n", documents + "/My Photos", documents + "/My Photos", "0"},
        {"another value", "[MyDocs]\nValue=yes", documents + "/My Photos", documents, "yes"},
        {"empty path", "[MyDocs]\nValue=0\n[Working Directory]\nPath=", documents + "/My Photos",
         documents + "/My Photos", "0"},
        {"from another system", "[MyDocs]\nValue=0\n[Working Directory]\nPath=C:\\x\\y", "C:/x/y", "C:/x/y", "0"},
        {"a folder with the sign in its name", "[MyDocs]\nValue=0\n[Working Directory]\nPath=" + odd, odd, odd, "0"},
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
