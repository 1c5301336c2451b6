// The print windows and the print button's commands. The helper program is the real one, without a print system, or a
// script that answers like one with many printers.
#include "output/DeviceLists.h"
#include "output/print/PagePreview.h"
#include "output/print/PrintCommands.h"
#include "output/print/crafts/CraftPages.h"
#include "output/print/crafts/PaperCrafts.h"
#include "output/print/frmPrint.h"
#include "output/print/frmSimplePrint.h"
#include "support/CupsServer.h"
#include "support/SettingsFile.h"
#include "support/ShellCheck.h"
#include "support/TestPictures.h"
#include "support/TextCheck.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <memory>

namespace lumora {
namespace {

using test::writeSetting;

template <typename Control> Control *control(QWidget &window, const char *name) {
    auto *found = window.findChild<Control *>(name);
    EXPECT_NE(found, nullptr) << name;
    return found;
}

void click(QWidget &window, const char *name) {
    QTest::mouseClick(control<QAbstractButton>(window, name), Qt::LeftButton);
}

QStringList entries(QWidget &window) {
    const auto *list = control<QComboBox>(window, "cboPrinter");
    QStringList texts;
    for (int i = 0; i < list->count(); ++i) {
        texts << list->itemText(i);
    }
    return texts;
}

class PrintWindowsTest : public test::Shell {
  protected:
    void SetUp() override {
        Shell::SetUp();
        qputenv("CUPS_SERVER", "/nowhere/cups.sock");
        openPhoto(120, 90);
    }
    void TearDown() override { qunsetenv("CUPS_SERVER"); }

    void openPhoto(int width, int height) {
        context.photo.openPicture({.picture = test::photoLike(width, height), .reason = {}},
                                  PhotoDocument::OpenRoute::LoadPhoto);
    }
    /// A program that answers with what the shell commands print.
    QString script(const QByteArray &lines) {
        QString path = m_folder.filePath("helper");
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("#!/bin/sh\n" + lines);
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }
    /// A modal call; `hand` gets its window, which is closed if `hand` leaves it open.
    static void play(const std::function<void()> &modalCall, const std::function<void(QWidget &)> &hand) {
        bool played = false;
        QTimer::singleShot(0, [&] {
            QWidget *window = QApplication::activeModalWidget();
            if (window == nullptr) {
                QApplication::closeAllWindows(); // else the test would not end
                return;
            }
            played = true;
            hand(*window);
            if (window->isVisible()) {
                window->close();
            }
        });
        modalCall();
        EXPECT_TRUE(played) << "no window";
    }

    const QString realHelper = qEnvironmentVariable("LUMORA_BIN") + "/lumora-devices";
};

TEST_F(PrintWindowsTest, EveryTextComesFromTheLanguageFile) {
    ASSERT_TRUE(test::writeChangedLanguageFile(context.installation.languageFile()));
    context.ini.lookAgain();
    DeviceLists devices(context, "/nowhere");
    const std::unique_ptr<BorderlessDialog> windows[] = {
        std::make_unique<frmPrint>(context, devices, "/nowhere", nullptr),
        std::make_unique<frmPrint2>(context, devices, "/nowhere", nullptr),
        std::make_unique<frmSimplePrint>(context, devices, "/nowhere", nullptr),
    };
    QSignalSpy loaded(&devices, &DeviceLists::printersLoaded);
    ASSERT_TRUE(loaded.wait(10'000));
    for (const auto &window : windows) {
        window->show();
        QCoreApplication::processEvents();
        EXPECT_EQ(test::textsNotShown(*window), QStringList()) << qPrintable(window->objectName());
        EXPECT_EQ(test::textsOfTheCode(*window), QStringList()) << qPrintable(window->objectName());
    }
}

TEST_F(PrintWindowsTest, PdfIsTheLastEntryAndTheOnlyOneWithoutPrinters) {
    DeviceLists devices(context, realHelper);
    frmSimplePrint window(context, devices, realHelper, nullptr);
    EXPECT_EQ(entries(window), QStringList("Print to PDF")) << "at once";
    EXPECT_EQ(control<QComboBox>(window, "cboPrinter")->currentIndex(), -1) << "the usual printer may still be found";
    QSignalSpy loaded(&devices, &DeviceLists::printersLoaded);
    ASSERT_TRUE(loaded.wait(20'000));
    EXPECT_EQ(entries(window), QStringList("Print to PDF"));
    EXPECT_EQ(control<QComboBox>(window, "cboPrinter")->currentIndex(), 0);
    EXPECT_TRUE(window.wantsPdf());
    EXPECT_TRUE(control<QLabel>(window, "lblPrinterHint")->isHidden());
}

TEST_F(PrintWindowsTest, ThePrinterOfTheSettingsElseTheUsualOneIsChosen) {
    struct Row {
        const char *saved, *defaultPrinter, *chosen;
    };
    const Row rows[] = {
        {"Ink", "Laser", "Ink"}, {"", "Laser", "Laser"}, {"gone", "Laser", "Laser"}, {"gone", "", "Ink"}};
    for (const Row &row : rows) {
        writeSetting(context, "Printer", "Device", row.saved);
        QByteArray lines = "[ $1 = paper ] && exit\nprintf 'device\\tInk\\tInk\\ndevice\\tLaser\\tLaser\\n'\n";
        if (*row.defaultPrinter != '\0') {
            lines += QByteArray("printf 'default\\t") + row.defaultPrinter + "\\tx\\n'\n";
        }
        const QString helper = script(lines + "echo done\n");
        DeviceLists devices(context, helper);
        frmSimplePrint window(context, devices, helper, nullptr);
        QSignalSpy loaded(&devices, &DeviceLists::printersLoaded);
        ASSERT_TRUE(loaded.wait(10'000));
        EXPECT_EQ(entries(window), QStringList({"Ink", "Laser", "Print to PDF"}));
        EXPECT_EQ(control<QComboBox>(window, "cboPrinter")->currentText(), row.chosen) << row.saved;
    }
}

TEST_F(PrintWindowsTest, TwoHundredPrintersAndAPrintSystemThatDoesNotAnswer) {
    QString helper = script("for i in $(seq 200); do printf \"device\\tP$i\\tP$i\\n\"; done; echo done\n");
    DeviceLists many(context, helper);
    frmSimplePrint window(context, many, helper, nullptr);
    QSignalSpy loaded(&many, &DeviceLists::printersLoaded);
    ASSERT_TRUE(loaded.wait(10'000));
    EXPECT_EQ(entries(window).size(), 201);
    EXPECT_EQ(entries(window).last(), "Print to PDF");

    writeSetting(context, "Printer", "Device", "Ink");
    helper = script("exit 1\n");
    DeviceLists none(context, helper);
    frmSimplePrint other(context, none, helper, nullptr);
    other.show();
    const int low = other.screen()->availableGeometry().bottom() + shadowMargin;
    other.move(other.x(), low - other.height());
    const int before = other.height();
    QSignalSpy answered(&none, &DeviceLists::printersLoaded);
    ASSERT_TRUE(answered.wait(10'000));
    EXPECT_EQ(entries(other), QStringList({"Ink", "Print to PDF"})) << "the saved one may be back";
    EXPECT_EQ(control<QLabel>(other, "lblPrinterHint")->text(), "The printer is not answering. Is it on?");
    EXPECT_FALSE(control<QLabel>(other, "lblPrinterHint")->isHidden());
    EXPECT_TRUE(QTest::qWaitFor([&] { return other.height() > before; }));
    EXPECT_LE(other.geometry().bottom(), low) << "what grows stays on the screen";
}

TEST_F(PrintWindowsTest, APrintSystemThatNeverAnswersHoldsNothingUp) {
    const test::SilentServer silent(m_folder.filePath("silent"));
    ASSERT_TRUE(silent.isListening());
    qputenv("CUPS_SERVER", m_folder.filePath("silent").toUtf8());
    DeviceLists devices(context, realHelper);
    const QSignalSpy answered(&devices, &DeviceLists::printersLoaded);
    frmSimplePrint window(context, devices, realHelper, nullptr);
    EXPECT_FALSE(control<QAbstractButton>(window, "cmdAdvanced")->isEnabled()) << "the desktop's dialog would hang";
    auto *list = control<QComboBox>(window, "cboPrinter");
    list->setCurrentIndex(0);
    Q_EMIT list->activated(0);
    EXPECT_TRUE(window.wantsPdf());
    std::optional<PrintJob> job;
    play([&] { job = window.ask(); }, [](QWidget &open) { click(open, "cmdYes"); });
    EXPECT_TRUE(job);
    EXPECT_EQ(answered.count(), 0) << "still looking";
}

TEST_F(PrintWindowsTest, ThePreviewIsThePaperOfTheChosenPrinter) {
    const QString helper =
        script("case $1 in printers) printf 'device\\tInk\\tInk\\ndevice\\tCard\\tCard\\ndone\\n';;\n"
               "paper) [ $2 = Card ] && printf 'paper\\t288\\t432\\t9\\t9\\t9\\t9\\t300\\n' ||"
               " printf 'paper\\t595\\t842\\t18\\t18\\t18\\t36\\t300\\n';;\nesac\n");
    DeviceLists devices(context, helper);
    frmSimplePrint window(context, devices, helper, nullptr);
    const auto *page = control<PagePreview>(window, "picPrint1");
    EXPECT_TRUE(QTest::qWaitFor([&] { return page->pages().sheets.first().size == QSizeF(842, 595); }, 10'000));
    auto *list = control<QComboBox>(window, "cboPrinter");
    list->setCurrentIndex(1);
    Q_EMIT list->activated(1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return page->pages().sheets.first().size == QSizeF(432, 288); }, 10'000));
    const int photos[] = {1, 2, 4, 9};
    for (int i = 0; i < 4; ++i) {
        click(window, qPrintable(QString("ImageX%1").arg(i + 1)));
        EXPECT_EQ(page->pages().sheets.first().pieces.size(), photos[i]);
        EXPECT_TRUE(control<QAbstractButton>(window, qPrintable(QString("ImageX%1").arg(i + 1)))->isChecked());
    }
    for (const PaperCraft &craft : paperCrafts()) {
        click(window, craft.button);
        EXPECT_EQ(page->pages().sheets.size(), craft.layOut == &layOutPoster ? 4 : 1) << craft.button;
        EXPECT_TRUE(control<QAbstractButton>(window, craft.button)->isChecked());
        EXPECT_EQ(control<QLabel>(window, "lblHow")->text(), context.texts.text(craft.how));
    }
    click(window, "ImageX4");
    EXPECT_TRUE(control<QLabel>(window, "lblHow")->isHidden());
    std::optional<PrintJob> job;
    play([&] { job = window.ask(); }, [](QWidget &open) { click(open, "cmdYes"); });
    ASSERT_TRUE(job);
    EXPECT_EQ(job->printer, "Card");
    EXPECT_EQ(job->layout.photos, 9);
    EXPECT_EQ(job->layout.craft, nullptr) << "the layout was chosen last";
    EXPECT_EQ(job->paper, (PrinterPaper{{288, 432}, {9, 9, 9, 9}, 300})) << "the job prints what was previewed";
}

TEST_F(PrintWindowsTest, CopiesTakeDigitsAndStayInTheirBounds) {
    DeviceLists devices(context, "/nowhere");
    frmPrint2 two(context, devices, "/nowhere", nullptr);
    frmSimplePrint simple(context, devices, "/nowhere", nullptr);
    const std::pair<QWidget *, const char *> windows[] = {{&two, "txtNumCopies"}, {&simple, "txtNumbers"}};
    for (const auto &[window, name] : windows) {
        auto *field = control<QLineEdit>(*window, name);
        window->show();
        struct Row {
            const char *typed, *button, *shown;
        };
        const Row rows[] = {{"1", "cmdUp", "2"},       {"998", "cmdUp", "999"},    {"999", "cmdUp", "999"},
                            {"2", "cmdDown", "1"},     {"1", "cmdDown", "1"},      {"", "cmdDown", "1"},
                            {"", "cmdUp", "1"},        {"9", "cmdUp", "10"},       {"10", "cmdDown", "9"},
                            {"a-7.5e", "cmdUp", "76"}, {"12345", "cmdDown", "122"}};
        for (const Row &row : rows) {
            field->clear();
            QTest::keyClicks(field, row.typed);
            click(*window, row.button);
            EXPECT_EQ(field->text(), row.shown) << row.typed << ' ' << row.button;
        }
    }
    simple.hide();
    for (const char *nothing : {"", "0", "00"}) {
        control<QLineEdit>(simple, "txtNumbers")->setText(nothing);
        std::optional<PrintJob> job;
        play([&] { job = simple.ask(); }, [](QWidget &open) { click(open, "cmdYes"); });
        ASSERT_TRUE(job);
        EXPECT_EQ(job->copies, 1) << nothing;
    }
}

class PrintCommandsTest : public PrintWindowsTest {
  protected:
    /// Presses the print button and Yes; returns the status line's words, a problem's after "!".
    QString printed(PrintCommands &print) {
        QString said;
        QObject receiver;
        QObject::connect(&print, &PrintCommands::done, &receiver, [&](const QString &text) { said = text; });
        QObject::connect(&print, &PrintCommands::failed, &receiver, [&](const QString &text) { said = "!" + text; });
        play([&] { print.print(); }, [](QWidget &window) { click(window, "cmdYes"); });
        return said;
    }
    static QString noPdf() { return {}; }
};

TEST_F(PrintCommandsTest, TheWindowIsTheModesAndTheStylesAndNeedsAPhoto) {
    QWidget owner;
    DeviceLists devices(context, "/nowhere");
    PrintCommands print(context, devices, &owner, noPdf, "/nowhere");
    struct Row {
        bool simple;
        DialogStyle style;
        const char *window;
    };
    const Row rows[] = {{true, DialogStyle::Own, "frmSimplePrint"},
                        {true, DialogStyle::Other, "frmSimplePrint"},
                        {false, DialogStyle::Own, "frmPrint"},
                        {false, DialogStyle::System, "frmPrint2"},
                        {true, DialogStyle::System, "frmSimplePrint"}};
    for (const Row &row : rows) {
        context.flags.SimpleModeOn = row.simple;
        context.fields.txtDlgs = row.style;
        const QSignalSpy refreshed(&print, &PrintCommands::buttonsToRefresh);
        play([&] { print.print(); },
             [&](QWidget &window) {
                 EXPECT_EQ(window.objectName(), row.window);
                 EXPECT_EQ(refreshed.count(), row.simple ? 0 : 1);
                 click(window, "cmdNo");
             });
    }
    context.flags.SimpleModeOn = false;
    context.fields.txtDlgs = DialogStyle::Other;
    const QSignalSpy refreshed(&print, &PrintCommands::buttonsToRefresh);
    print.PrintPhotos(); // would not return from a window
    EXPECT_EQ(refreshed.count(), 0);
    AppContext empty{Installation{m_folder.path()}};
    PrintCommands withoutPhoto(empty, devices, &owner, noPdf, "/nowhere");
    withoutPhoto.print();
    withoutPhoto.PrintPhotos();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(PrintCommandsTest, WhatHappensIsSaidAndThePauseBegins) {
    QWidget owner;
    writeSetting(context, "Printer", "Timed", "1");
    struct Row {
        const char *answer, *said;
        bool locked;
    };
    const Row rows[] = {
        {"echo sent", "Your photo is on its way to the printer.", true},
        {"echo waiting", "!Your photo is waiting for the printer. Is it on, and is there paper in it?", true},
        {"echo refused", "!The printer is not taking photos at the moment. Please ask a grown-up to look at it.",
         false},
        {"echo missing", "!There is no such printer. Choose another one, or \"Print to PDF\".", false},
        {"exit 1", "!The printer is not answering. Is it on?", false},
    };
    for (const Row &row : rows) {
        const QString helper =
            script(QByteArray("[ $1 = printers ] && printf 'device\\tInk\\tInk\\ndone\\n' && exit\n") +
                   "[ $1 = print ] || exit\n" + row.answer + "\n");
        writeSetting(context, "Printer", "Pause", "");
        DeviceLists devices(context, helper);
        PrintCommands print(context, devices, &owner, noPdf, helper);
        EXPECT_EQ(printed(print), row.said);
        EXPECT_EQ(print.lock().isLocked(), row.locked) << row.answer;
        if (row.locked) {
            print.print(); // no window comes up
            EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        }
    }
}

TEST_F(PrintCommandsTest, AJobThatHangsCanBeStopped) {
    QWidget owner;
    writeSetting(context, "Printer", "Timed", "1");
    const QString helper = script("[ $1 = print ] && touch \"$0.asked\" && exec sleep 1000\n");
    DeviceLists devices(context, helper);
    PrintCommands print(context, devices, &owner, noPdf, helper);
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
        if (QFile::exists(helper + ".asked")) {
            context.tasks.stop();
        }
    });
    user.start(20);
    const QSignalSpy stopped(&context.tasks, &BackgroundTasks::stopped);
    EXPECT_EQ(printed(print), "") << "the task says that it was stopped";
    EXPECT_EQ(stopped.count(), 1);
    EXPECT_FALSE(print.lock().isLocked());
}

TEST_F(PrintCommandsTest, WithoutAPrinterAPdfFileIsWrittenAndNothingPauses) {
    QWidget owner;
    writeSetting(context, "Printer", "Timed", "1");
    QString path = m_folder.filePath("my page.pdf");
    DeviceLists devices(context, realHelper);
    PrintCommands print(
        context, devices, &owner, [&] { return path; }, realHelper);
    QString said;
    QObject::connect(&print, &PrintCommands::done, &owner, [&](const QString &text) { said = text; });
    play([&] { print.print(); },
         [&](QWidget &window) {
             EXPECT_TRUE(QTest::qWaitFor([&] { return control<QLabel>(window, "lblDevice")->text() == "Print to PDF"; },
                                         20'000));
             click(window, "cmdYes");
         });
    EXPECT_EQ(said, context.texts.text("StatusSaved") + " my page.pdf");
    EXPECT_EQ(test::pagesOf(path, 20).size(), 1);
    EXPECT_FALSE(print.lock().isLocked());
}

TEST_F(PrintCommandsTest, CopiesCentreAndFitReachThePaper) {
    QWidget owner;
    test::CupsServer server;
    ASSERT_TRUE(server.isRunning()) << qPrintable(server.log());
    ASSERT_TRUE(server.addPrinter("Photo", test::CupsServer::Sheet::A4));
    writeSetting(context, "Printer", "Device", "Photo");
    context.fields.txtDlgs = DialogStyle::System;
    DeviceLists devices(context, realHelper);
    PrintCommands print(context, devices, &owner, noPdf, realHelper);
    QString said;
    QObject::connect(&print, &PrintCommands::done, &owner, [&](const QString &text) { said = text; });
    play([&] { print.print(); },
         [&](QWidget &window) {
             click(window, "cmdUp");
             click(window, "cmdUp");
             control<QCheckBox>(window, "chkCentre")->setChecked(false);
             control<QCheckBox>(window, "chkFit2Page")->setChecked(false);
             click(window, "cmdYes");
         });
    EXPECT_EQ(said, "Your photo is on its way to the printer.");
    const QList<QImage> pages = server.takePages("Photo");
    ASSERT_EQ(pages.size(), 3) << "one page a copy";
    // 120 x 90 pixels are 90 x 67.5 points, in the corner of a sheet that lies.
    EXPECT_EQ(pages[0].pixel(300, 300), 0xffffffff);
    EXPECT_NE(pages[0].pixel(595 - 18 - 30, 36 + 40), 0xffffffff);
    EXPECT_EQ(pages[0], pages[2]);
}

} // namespace
} // namespace lumora
