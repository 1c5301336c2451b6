// The options window: what it reads, shows, accepts from real clicks and keys, and writes; and what it does not change.
#include "options/frmOptions.h"

#include "document/DiscardedPhotos.h"
#include "document/RecoveryFolder.h"
#include "options/OptionsTabs.h"
#include "session/LoadSettings.h"
#include "session/OptionsSettings.h"
#include "support/SettingsFile.h"
#include "support/ShellCheck.h"
#include "support/TestFiles.h"
#include "support/TestPictures.h"
#include "support/TextCheck.h"
#include "widgets/Theme.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QSlider>
#include <QStackedWidget>
#include <QTest>

namespace lumora {
namespace {

constexpr int general = 0, devices = 1, dialogs = 2, miscellaneous = 3; // the tabs' places

class Options : public test::Shell {
  protected:
    void SetUp() override {
        Shell::SetUp();
        m_helper = helperThatPrints("sleep 1000"); // does not finish in time unless the test says so
    }
    QString helperThatPrints(const QByteArray &script) {
        QFile file(m_folder.filePath("helper"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("#!/bin/sh\n" + script + "\n");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return file.fileName();
    }
    void saveSettings(const QByteArray &text) {
        QFile file(context.installation.settingsFile());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text);
        file.close();
        context.ini.lookAgain();
    }
    QByteArray settingsFile() {
        QFile file(context.installation.settingsFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// "Section/Key=value" of every value in the file, in the file's order.
    QStringList written() {
        QStringList lines;
        QString section;
        for (const QString &line : QString::fromUtf8(settingsFile()).split('\n', Qt::SkipEmptyParts)) {
            if (line.startsWith('[')) {
                section = line.mid(1, line.size() - 2);
            } else {
                lines << section + '/' + line;
            }
        }
        return lines;
    }
    frmOptions &show(int tab = general) {
        m_window = std::make_unique<frmOptions>(context, nullptr, m_helper);
        m_window->show();
        tabs().setCurrent(tab);
        return *m_window;
    }
    template <typename Control> Control *find(const char *name) {
        auto *control = m_window->findChild<Control *>(name);
        EXPECT_NE(control, nullptr) << name;
        return control;
    }
    OptionsTabs &tabs() { return *m_window->findChild<OptionsTabs *>("TabStrip1"); }
    bool isChecked(const char *name) { return find<QAbstractButton>(name)->isChecked(); }
    void click(const char *name) {
        auto *button = find<QAbstractButton>(name);
        EXPECT_TRUE(button->isVisible()) << name << " on another tab";
        QTest::mouseClick(button, Qt::LeftButton, {}, {12, button->height() / 2});
    }
    void pressOK() {
        click("cmdOK");
        EXPECT_FALSE(m_window->isVisible()) << "OK was refused";
    }

    QString m_helper;
    std::unique_ptr<frmOptions> m_window;
};

// --- Reading and writing --------------------------------------------------------------------------------------------

TEST_F(Options, EverySwitchIsReadShownClickedAndWritten) {
    struct Switch {
        const char *section, *key;
        int tab;
        const char *control; ///< what shows the value
        const char *other;   ///< what to click when it is on; the same control where it can be taken off again
        bool onWithoutFile;  ///< the window's own default
        bool onWhenOdd;      ///< what a value that is neither yes nor no means
    };
    const Switch switches[] = {
        {"SFX", "Advanced", general, "chkAdvSFX", "chkAdvSFX", false, false},
        {"Resize", "Advanced", general, "chkAdvResize", "chkAdvResize", false, false},
        {"Popart", "Level", general, "chkAdvPopart", "chkAdvPopart", true, false},
        {"Grid", "Value", general, "chkGrid", "chkGrid", true, false},
        {"MyDocs", "Value", general, "chkMyDocs", "chkMyDocs", true, true},
        {"Scan", "Autoscan", devices, "chkScan", "chkScan", false, false},
        {"Scanner Button", "Value", devices, "chkDisScanner", "chkDisScanner", false, false},
        {"Print Button", "Value", devices, "chkDisPrinter", "chkDisPrinter", false, false},
        {"Printer", "Timed", devices, "optPrint1", "optPrint2", true, false},
        {"Dialogs", "Style", dialogs, "optDlg1", "optDlg2", true, false},
        {"E-mail", "Value", miscellaneous, "chkEmail", "chkEmail", false, false},
        {"Saved Photos", "Private", miscellaneous, "chkPrivate", "chkPrivate", false, false},
        {"My Pictures", "Keep", dialogs, "chkKeep", "chkKeep", true, true},
    };
    for (const char *value : {"", "1", "0", "maybe"}) { // "": not in the file
        const QString start(value);
        const auto isOn = [&](const Switch &row) {
            return start.isEmpty() ? row.onWithoutFile : start == "maybe" ? row.onWhenOdd : start == "1";
        };
        saveSettings("[Sender]\nAddress=anna@school.example\n");
        for (const Switch &row : switches) {
            if (!start.isEmpty()) {
                test::writeSetting(context, row.section, row.key, start);
            }
        }
        show();
        for (const Switch &row : switches) {
            tabs().setCurrent(row.tab);
            EXPECT_EQ(isChecked(row.control), isOn(row)) << row.section << " from " << value;
            click(isOn(row) ? row.other : row.control);
            EXPECT_NE(isChecked(row.control), isOn(row)) << row.section;
        }
        pressOK();
        for (const Switch &row : switches) {
            EXPECT_EQ(test::setting(context, row.section, row.key, "missing"), isOn(row) ? "0" : "1")
                << row.section << " from " << value;
        }
    }
}

TEST_F(Options, EverythingIsWrittenInItsOrderAndTheWelcomeNever) {
    saveSettings("");
    QFile::remove(context.installation.settingsFile());
    show();
    pressOK();
    const QString documents = GetSpecialFolderPath(5);
    EXPECT_EQ(written(), (QStringList{"SFX/Advanced=0",
                                      "Slideshow/Delay=30",
                                      "Resize/Advanced=0",
                                      "Scan/Autoscan=0",
                                      "Scanner/Device=-1",
                                      "Grid/Value=1",
                                      "E-mail/Value=0",
                                      "E-mail/Size=1",
                                      "Popart/Level=1",
                                      "Dialogs/Style=1",
                                      "Sender/Address=you@example.com",
                                      "Printer/Device=",
                                      "Printer/Timer=1",
                                      "Printer/Timed=1",
                                      "Tips/Crop=1",
                                      "Language/File=",
                                      "Working Directory/Path=" + documents + "/My Photos",
                                      "MyDocs/Value=1",
                                      "Print Button/Value=0",
                                      "Scanner Button/Value=0",
                                      "Mail Server/Server=",
                                      "Mail Server/Port=587",
                                      "Mail Server/Security=1",
                                      "Mail Server/User=",
                                      "Saved Photos/Private=0",
                                      "My Pictures/Keep=1"}));
}

TEST_F(Options, ALanguageIsWrittenOnceItIsChosen) {
    ASSERT_TRUE(QDir(m_folder.path()).mkdir("languages"));
    QFile german(m_folder.filePath("languages/language-de.ini"));
    ASSERT_TRUE(german.open(QIODevice::WriteOnly) && german.write("[LanguageName]\nCaption=Deutsch\n") > 0);
    german.close();
    const struct {
        const char *chosen, *inFile;
    } cases[] = {
        {nullptr, ""}, {"Deutsch", "language-de.ini"}, {nullptr, "language-de.ini"}, {"English", "language.ini"}};
    for (const auto &one : cases) {
        show();
        if (one.chosen != nullptr) {
            find<QComboBox>("cboLanguage")->setCurrentText(one.chosen);
        }
        pressOK();
        EXPECT_EQ(test::setting(context, "Language", "File"), one.inFile);
    }
}

TEST_F(Options, TheFirstOKChangesNothingInTheInstalledFile) {
    QFile installed(qEnvironmentVariable("LUMORA_SOURCE") + "/resources/installed/Lumora.ini");
    ASSERT_TRUE(installed.open(QIODevice::ReadOnly));
    const QByteArray bytes = installed.readAll();
    const QString captions = "ScreenMessageTitle ScreenMessage ScreenMessageButton "
                             "DlgEmailYourEmail DlgEmailSendto DlgEmailMessage DlgEmailTitle";
    for (const char *answer : {"sleep 1000", "exit 0"}) {
        m_helper = helperThatPrints(answer);
        saveSettings(bytes);
        for (const SettingRow &row : settingRows) {
            const bool isState = row.setting == Setting::PrintPause || row.setting == Setting::BeforeSimple;
            if (!isState && !row.isUsersOwn() && !captions.split(' ').contains(row.section)) {
                EXPECT_NE(test::setting(context, row.section, row.key), "missing") << row.section << '/' << row.key;
            }
        }
        show();
        for (const int tab : {devices, dialogs, miscellaneous, general}) {
            tabs().setCurrent(tab);
        }
        QTest::qWait(answer[0] == 'e' ? 300 : 0);
        pressOK();
        EXPECT_EQ(settingsFile(), bytes);
    }
    LoadSettingsFromINIFile(context);
    const MainFields &fields = context.fields;
    EXPECT_EQ(fields.txtDlgs, DialogStyle::System);
    EXPECT_EQ(fields.txtSFX, Switch::On);
    EXPECT_TRUE(fields.txtResizeMode);
    EXPECT_EQ(fields.txtAndyStyle, Switch::On);
    EXPECT_FALSE(fields.txtPrintTimer);
    EXPECT_EQ(fields.txtSSSFX, 4);
}

TEST_F(Options, SavingSwitchesTheCropTipOnAndKeepsWhatIsNotItsOwn) {
    saveSettings("; by hand\n[Tips]\nCrop=0\n[Welcome]\nShow=0\n[Recipient]\nAddress=gran@home.example\n");
    show();
    pressOK();
    EXPECT_EQ(test::setting(context, "Tips", "Crop", ""), "1");
    EXPECT_EQ(test::setting(context, "Welcome", "Show", ""), "0");
    EXPECT_EQ(test::setting(context, "Recipient", "Address", ""), "gran@home.example");
    EXPECT_TRUE(settingsFile().startsWith("; by hand"));
}

TEST_F(Options, InvalidNumbersAreClampedOrDefaulted) {
    struct Row {
        const char *section, *key, *value, *saved;
    };
    const Row rows[] = {
        {"Slideshow", "Delay", "5", "5"},      {"Slideshow", "Delay", "2000", "30"}, {"Slideshow", "Delay", "0", "1"},
        {"Slideshow", "Delay", "soon", "30"},  {"Slideshow", "Delay", "-3", "1"},    {"Printer", "Timer", "5", "5"},
        {"Printer", "Timer", "7", "7"},        {"Printer", "Timer", "0", "1"},       {"Printer", "Timer", "999", "60"},
        {"Printer", "Timer", "a minute", "1"}, {"Scanner", "Device", "3", "3"},      {"Scanner", "Device", "-9", "-1"},
        {"Scanner", "Device", "blue", "-1"},
    };
    for (const Row &row : rows) {
        test::writeSetting(context, row.section, row.key, row.value);
        show();
        pressOK();
        EXPECT_EQ(test::setting(context, row.section, row.key, ""), row.saved) << row.section << ' ' << row.value;
    }
}

TEST_F(Options, OKReachesTheFieldsAndCancelNothing) {
    saveSettings("[Slideshow]\nDelay=5\n[Printer]\nTimed=1\nTimer=3\n");
    context.fields.cboSelect = {"Office scanner", "Home scanner"};
    const QByteArray before = settingsFile();
    for (const bool byKey : {false, true}) {
        show(general);
        click("chkAdvSFX");
        QTest::keyClick(find<QSlider>("sldDelay"), Qt::Key_Right);
        EXPECT_EQ(find<QLabel>("lblDelay")->text(), "6 s");
        if (byKey) {
            QTest::keyClick(m_window.get(), Qt::Key_Escape);
        } else {
            click("cmdCancel");
        }
        EXPECT_FALSE(m_window->isVisible());
        EXPECT_EQ(settingsFile(), before);
        EXPECT_EQ(context.fields.txtSFX, Switch::Off);
        EXPECT_EQ(context.fields.txtSSSFX, MainFields().txtSSSFX);
    }
    show(general);
    click("chkAdvSFX");
    QTest::keyClick(find<QSlider>("sldDelay"), Qt::Key_Right);
    tabs().setCurrent(devices);
    QTest::keyClick(find<QComboBox>("cboMinutes"), Qt::Key_Down);
    tabs().setCurrent(dialogs);
    click("optDlg2");
    tabs().setCurrent(miscellaneous);
    click("chkEmail");
    QTest::keyClicks(find<QLineEdit>("txtAddress"), " anna@school.example ");
    QTest::keyClick(find<QLineEdit>("txtAddress"), Qt::Key_Return);
    EXPECT_FALSE(m_window->isVisible()) << "Enter is OK wherever the keyboard is";
    const MainFields &fields = context.fields;
    EXPECT_EQ(fields.txtSFX, Switch::On);
    EXPECT_EQ(fields.txtSSSFX, 6);
    EXPECT_EQ(fields.txtCountDown, 4);
    EXPECT_TRUE(fields.txtPrintTimer);
    EXPECT_EQ(fields.txtDlgs, DialogStyle::Own);
    EXPECT_EQ(fields.txtEmail, Switch::On);
    EXPECT_EQ(fields.txtYourEmail, "anna@school.example");
    EXPECT_EQ(fields.txtAndyStyle, Switch::On);
    EXPECT_EQ(fields.txtCropTip, Switch::On);
}

TEST_F(Options, TheWorkingDirectoryIsChosenInTheFolderDialog) {
    ASSERT_TRUE(QDir(m_folder.path()).mkpath("class/photos"));
    const QString chosen = m_folder.filePath("class/photos");
    for (const bool take : {false, true}) {
        test::writeSetting(context, "Working Directory", "Path", "/gone/away");
        test::writeSetting(context, "MyDocs", "Value", "1");
        show(general);
        EXPECT_FALSE(find<QLineEdit>("txtWD")->isEnabled()) << "without effect";
        EXPECT_FALSE(find<QAbstractButton>("cmdBrowse")->isEnabled());
        click("chkMyDocs");
        EXPECT_TRUE(find<QLineEdit>("txtWD")->isEnabled());
        EXPECT_EQ(find<QLineEdit>("txtWD")->text(), "/gone/away");
        QTimer::singleShot(0, m_window.get(), [&] {
            auto *dialog = m_window->findChild<QFileDialog *>("dlgBrowse");
            ASSERT_NE(dialog, nullptr);
            EXPECT_EQ(dialog->windowTitle(), "Choose the default location:");
            dialog->selectFile(chosen);
            take ? static_cast<QDialog *>(dialog)->accept() : dialog->reject();
        });
        click("cmdBrowse");
        pressOK();
        EXPECT_EQ(test::setting(context, "Working Directory", "Path", ""), take ? chosen : "/gone/away");
    }
}

// --- E-mail and warnings --------------------------------------------------------------------------------------------

TEST_F(Options, AnAddressIsAskedForOnlyWhereEMailIsOn) {
    struct Row {
        const char *address;
        bool good;
    };
    const Row rows[] = {{"anna@school.example", true},
                        {"a.b+c@x-y.co.uk", true},
                        {"ünal@müller.example", true},
                        {"", false},
                        {"anna", false},
                        {"anna@school", false},
                        {"@school.example", false},
                        {"anna@", false},
                        {"anna@@school.example", false},
                        {"anna@school@home.example", false},
                        {"anna@.example", false},
                        {"anna@school.", false},
                        {"anna@school..example", false},
                        {"anna b@school.example", false},
                        {"you@example.com", false},
                        {"You@Example.Com", false}};
    for (const Row &row : rows) {
        EXPECT_EQ(isMailAddress(row.address), row.good) << row.address;
    }
    for (const Row &row : {rows[0], Row{"", false}, Row{"anna@school", false}, Row{"you@example.com", false}}) {
        for (const bool on : {false, true}) {
            saveSettings(QByteArray("[E-mail]\nValue=") + (on ? "1" : "0") + "\n[Sender]\nAddress=" + row.address);
            const QByteArray before = settingsFile();
            show(general);
            click("cmdOK");
            const auto *box = m_window->findChild<QMessageBox *>();
            if (row.good || !on) {
                EXPECT_EQ(box, nullptr) << row.address;
                EXPECT_FALSE(m_window->isVisible()) << row.address;
                continue;
            }
            ASSERT_NE(box, nullptr) << row.address;
            EXPECT_EQ(box->text(), "Please enter a valid e-mail address or switch this option off");
            EXPECT_TRUE(m_window->isVisible());
            EXPECT_EQ(settingsFile(), before) << "nothing is written until all is well";
            EXPECT_EQ(tabs().current(), miscellaneous);
            EXPECT_EQ(m_window->focusWidget(), find<QLineEdit>("txtAddress"));
        }
    }
}

TEST_F(Options, ResetShowsTheTipsAgainAtOnceEvenWhenCancelled) {
    saveSettings("[Tips]\nCrop=0\n[Welcome]\nShow=0\n[Grid]\nValue=0\n");
    show(miscellaneous);
    EXPECT_FALSE(isChecked("chkWelcome"));
    click("cmdReset");
    EXPECT_EQ(written(), (QStringList{"Tips/Crop=1", "Welcome/Show=1", "Grid/Value=0"}));
    EXPECT_TRUE(isChecked("chkWelcome"));
    auto *box = m_window->findChild<QMessageBox *>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), "All warnings and reminders reset");
    box->close();
    click("cmdCancel");
    EXPECT_EQ(test::setting(context, "Tips", "Crop", ""), "1");
}

TEST_F(Options, WhatWasThrownAwayIsCountedAndDeletedAfterAQuestion) {
    const QString state = m_folder.filePath("recovery");
    context.installation.recoveryFolder = state;
    show(dialogs);
    EXPECT_FALSE(m_window->findChild<QAbstractButton *>("cmdEmpty")->isEnabled());
    click("cmdCancel");
    for (const int photos : {1, 2}) {
        RecoveryFolder copy(state);
        ASSERT_TRUE(copy.write({test::photoLike(64, 48)}));
        ASSERT_FALSE(DiscardedPhotos(state).take(copy).isEmpty());
        show(dialogs);
        const QString caption = m_window->findChild<QAbstractButton *>("cmdEmpty")->text();
        EXPECT_TRUE(caption.startsWith(QString("Delete %1 picture").arg(photos))) << caption.toStdString();
        click("cmdCancel");
    }
    for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
        show(dialogs);
        click("cmdEmpty");
        auto *box = m_window->findChild<QMessageBox *>("msgEmpty");
        ASSERT_NE(box, nullptr);
        box->button(answer)->click();
        const bool gone = answer == QMessageBox::Yes;
        EXPECT_EQ(DiscardedPhotos(state).list().size(), gone ? 0 : 2);
        EXPECT_EQ(m_window->findChild<QAbstractButton *>("cmdEmpty")->isEnabled(), !gone);
        click("cmdCancel");
    }
}

// --- Devices --------------------------------------------------------------------------------------------------------

TEST_F(Options, DevicesAreLookedForWhenTheirTabOpensAndChosenOnesStay) {
    struct Row {
        const char *scanner, *printer; ///< saved
        int scannerAt;
        const char *printerShown;
        QString scannerSaved;
    };
    const QString usual = context.texts.text("OptionsUsualPrinter");
    const Row rows[] = {{"1", "Ink", 1, "Ink", "1"},
                        {"-1", "", -1, nullptr, "-1"},
                        {"7", "Laser upstairs", -1, "Laser upstairs (not connected now)", "-1"},
                        {"blue", "ink", -1, "ink (not connected now)", "-1"}};
    const QByteArray answers = "[ $1 = scanners ] && printf 'device\\ta\\tOffice\\ndevice\\tb\\tHome\\ndone\\n'\n"
                               "[ $1 = printers ] && printf 'device\\tInk\\tInk\\ndefault\\tInk\\tInk\\ndone\\n'";
    m_helper = helperThatPrints("touch \"$0.asked\"\n" + answers);
    for (const Row &row : rows) {
        QFile::remove(m_helper + ".asked");
        test::writeSetting(context, "Scanner", "Device", row.scanner);
        test::writeSetting(context, "Printer", "Device", row.printer);
        show(dialogs);
        QTest::qWait(30);
        EXPECT_FALSE(QFile::exists(m_helper + ".asked")) << "nobody has opened the tab yet";
        tabs().setCurrent(devices);
        const auto *scanners = find<QComboBox>("cboScanners");
        const auto *printers = find<QComboBox>("cboPrinters");
        EXPECT_EQ(scanners->placeholderText(), context.texts.text("OptionsSearching"));
        EXPECT_EQ(scanners->count() + printers->count(), 0);
        ASSERT_TRUE(QTest::qWaitFor([&] { return scanners->isEnabled() && printers->isEnabled(); }, 10'000));
        EXPECT_EQ(scanners->count(), 2);
        EXPECT_EQ(scanners->currentIndex(), row.scannerAt) << row.scanner;
        EXPECT_EQ(printers->currentText(), row.printerShown ? QString(row.printerShown) : usual);
        pressOK();
        EXPECT_EQ(test::setting(context, "Scanner", "Device", ""), row.scannerSaved);
        EXPECT_EQ(test::setting(context, "Printer", "Device", ""), row.printer);
    }
    // Chosen by the keyboard.
    show(devices);
    ASSERT_TRUE(QTest::qWaitFor([&] { return find<QComboBox>("cboPrinters")->isEnabled(); }, 10'000));
    ASSERT_TRUE(QTest::qWaitFor([&] { return find<QComboBox>("cboScanners")->isEnabled(); }, 10'000));
    QTest::keyClick(find<QComboBox>("cboScanners"), Qt::Key_End);
    QTest::keyClicks(find<QComboBox>("cboPrinters"), "Ink");
    pressOK();
    EXPECT_EQ(test::setting(context, "Scanner", "Device", ""), "1");
    EXPECT_EQ(test::setting(context, "Printer", "Device", ""), "Ink");
    EXPECT_EQ(context.fields.txtPrinter, "Ink");
}

TEST_F(Options, MissingDevicesAreReportedAndTheSavedChoiceStays) {
    saveSettings("[Scanner]\nDevice=1\n[Printer]\nDevice=Laser upstairs\n");
    m_helper = "/no/such/helper";
    show(devices);
    const auto *scanners = find<QComboBox>("cboScanners");
    const QString none = context.texts.text("OptionsNoScanner");
    EXPECT_TRUE(QTest::qWaitFor([&] { return scanners->placeholderText() == none; }, 10'000));
    pressOK();
    EXPECT_EQ(test::setting(context, "Scanner", "Device", ""), "1");
    EXPECT_EQ(test::setting(context, "Printer", "Device", ""), "Laser upstairs");

    saveSettings("[Printer]\nDevice=\n");
    show(devices);
    const auto *printers = find<QComboBox>("cboPrinters");
    const QString noPrinter = context.texts.text("OptionsNoPrinter");
    EXPECT_TRUE(QTest::qWaitFor([&] { return printers->placeholderText() == noPrinter; }, 10'000));
}

// --- Texts and keys -------------------------------------------------------------------------------------------------

TEST_F(Options, ShowsItsTexts) {
    ASSERT_TRUE(test::writeChangedLanguageFile(m_folder.filePath("language.ini")));
    frmOptions window(context, nullptr, m_helper);
    EXPECT_EQ(test::textsNotShown(window), QStringList());
}

TEST_F(Options, TabsAreReachedByKeys) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&show(general)));
    const auto *pages = m_window->findChild<QStackedWidget *>();
    const auto expect = [&](int tab, const char *key) {
        EXPECT_EQ(tabs().current(), tab) << key;
        EXPECT_EQ(pages->currentIndex(), tab) << key;
    };
    QTest::keyClick(m_window.get(), Qt::Key_Tab, Qt::ControlModifier);
    expect(devices, "Ctrl+Tab");
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Down);
    expect(dialogs, "Down");
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Up);
    expect(devices, "Up");
    for (const int tab : {general, miscellaneous}) {
        QTest::keyClick(m_window->focusWidget(), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        expect(tab, "Ctrl+Shift+Tab");
    }
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(m_window->isVisible()) << "Enter on a tab is OK";
}

TEST_F(Options, EveryControlHasANameAndAPlaceInTheTabOrder) {
    test::writeSetting(context, "E-mail", "Value", "1"); // the address can be reached
    for (const int tab : {general, devices, dialogs, miscellaneous}) {
        show(tab);
        QList<QWidget *> order;
        for (QWidget *next = m_window->nextInFocusChain(); next != m_window.get(); next = next->nextInFocusChain()) {
            if (next->isVisible() && next->isEnabled() && (next->focusPolicy() & Qt::TabFocus)) {
                EXPECT_FALSE(next->accessibleName().isEmpty()) << tab << ' ' << next->objectName().toStdString();
                order << next;
            }
        }
        ASSERT_GT(order.size(), 3);
        EXPECT_TRUE(tabs().isAncestorOf(order.first())) << "the tabs come first";
        EXPECT_EQ(order.last()->objectName(), "cmdCancel");
        EXPECT_EQ(order[order.size() - 2]->objectName(), "cmdOK");
    }
}

TEST_F(Options, FitsSmallScreensInEveryLanguage) {
    applyTheme(*qApp); // its font and margins matter here
    for (const QString &language : test::languageFiles()) {
        QFile::remove(m_folder.filePath("language.ini"));
        ASSERT_TRUE(QFile::copy(language, m_folder.filePath("language.ini")));
        AppContext translated(Installation{m_folder.path()});
        const frmOptions window(translated, nullptr, m_helper);
        const QSize size = window.sizeHint() - QSize(36, 36); // the shadow may leave the screen
        EXPECT_LE(size.width(), 960) << qPrintable(language); // half of 1920 x 1080: a scale of 200 %
        EXPECT_LE(size.height(), 540) << qPrintable(language);
    }
}

} // namespace
} // namespace lumora
