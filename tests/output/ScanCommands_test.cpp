// The Scan button from the click to the photo, with the scanner system's own test device.
#include "output/scan/ScanCommands.h"

#include "output/DeviceLists.h"
#include "output/scan/GrowingScan.h"
#include "output/scan/frmScanner.h"
#include "support/ShellCheck.h"
#include "support/TestPictures.h"
#include "support/TextCheck.h"
#include "widgets/SlidingPanel.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <gtest/gtest.h>
#include <signal.h>

namespace lumora {
namespace {

class ScanCommandsTest : public test::Shell {
  protected:
    /// A scanner with these lines in its configuration.
    void plugIn(const QByteArray &lines = {}) {
        write("dll.conf", "test\n");
        write("test.conf", "number_of_devices 1\nmode Gray\nresolution_min 1\nresolution_max 50\ngeometry_max 200\n"
                           "test-picture \"Grid\"\n" +
                               lines);
        qputenv("SANE_CONFIG_DIR", m_folder.path().toUtf8());
    }

    void TearDown() override { qunsetenv("SANE_CONFIG_DIR"); }

    void write(const QString &name, const QByteArray &text) {
        QFile file(m_folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text);
    }

    QString helper() const { return qEnvironmentVariable("LUMORA_BIN") + "/lumora-devices"; }

    /// A window with what the scan disables, and the scanners found.
    struct Room {
        QWidget window;
        QPushButton sidePanel{&window}, toolbar{&window}, open{&window};
        DeviceLists devices;
        ScanCommands commands;
        QString said; ///< the last message
        bool good = false;

        Room(AppContext &ctx, const QString &finder, const QString &scanner)
            : devices(ctx, finder), commands(ctx, devices, &window, scanner) {
            sidePanel.setObjectName("SidePanel1");
            toolbar.setObjectName("Toolbar1");
            open.setObjectName("cmdOpen");
            window.resize(900, 600);
            window.show();
            commands.setArea(window.rect());
            const auto keep = [this](bool isGood) {
                return [this, isGood](const QString &text) {
                    said = text;
                    good = isGood;
                };
            };
            QObject::connect(&commands, &ScanCommands::done, &window, keep(true));
            QObject::connect(&commands, &ScanCommands::failed, &window, keep(false));
        }
        QList<bool> enabled() const { return {sidePanel.isEnabled(), toolbar.isEnabled(), open.isEnabled()}; }
        template <typename Control> Control *find(const char *name) { return window.findChild<Control *>(name); }
    };

    std::unique_ptr<Room> room(const QString &scanner = {}) {
        auto made = std::make_unique<Room>(context, helper(), scanner.isEmpty() ? helper() : scanner);
        QSignalSpy loaded(&made->devices, &DeviceLists::scannersLoaded);
        made->devices.LoadScanners();
        EXPECT_TRUE(loaded.wait(10'000));
        context.fields.cboSelectIndex = 0;
        return made;
    }

    void putPhoto() {
        context.photo.openPicture({.picture = test::photoLike(120, 80), .reason = {}},
                                  PhotoDocument::OpenRoute::LoadPhoto);
        m_before = context.photo.picCanvas();
    }

    QImage m_before;
};

/// Runs an action as soon as the condition holds, also inside a task.
void when(QObject *owner, const std::function<bool()> &condition, const std::function<void()> &action) {
    auto *timer = new QTimer(owner);
    QObject::connect(timer, &QTimer::timeout, owner, [=] {
        if (condition()) {
            timer->deleteLater();
            timer->stop();
            action();
        }
    });
    timer->start(5);
}

TEST_F(ScanCommandsTest, aScanBecomesThePhotoAndTheOneBeforeIsOneStepAway) {
    plugIn("read-delay true\nread-delay-duration 100000\n");
    for (const bool panel : {false, true}) {
        for (const bool hadPhoto : {false, true}) {
            auto at = room();
            if (hadPhoto) {
                putPhoto();
            }
            const bool first = context.photo.picCanvas().isNull();
            const int steps = context.photo.history().undoSteps();
            QList<bool> during;
            QSignalSpy scanned(&at->commands, &ScanCommands::scanned);
            when(
                &at->window, [&] { return at->find<QWidget>("picScan")->isVisible(); },
                [&] { during = at->enabled(); });
            if (panel) {
                context.fields.txtAutoScan = true;
                at->commands.scan();
                EXPECT_TRUE(at->commands.ScanPanelOpen());
                EXPECT_EQ(scanned.count(), 0);
                QTest::mouseClick(at->find<QWidget>("cmdScanNow"), Qt::LeftButton);
            } else {
                context.fields.txtAutoScan = false;
                at->commands.scan();
            }
            EXPECT_EQ(scanned.count(), 1);
            EXPECT_TRUE(at->good) << at->said.toStdString();
            EXPECT_EQ(during, QList<bool>({false, false, false}));
            EXPECT_EQ(at->enabled(), QList<bool>({true, true, true}));
            for (const char *name : {"cmdScanNow", "optAutomatic", "optManual", "cmdPnlScanExit"}) {
                EXPECT_TRUE(at->find<QWidget>(name)->isEnabled()) << name;
            }
            EXPECT_FALSE(at->find<QWidget>("picScan")->isVisible());
            EXPECT_TRUE(context.photo.PhotoLoaded());
            EXPECT_TRUE(context.photo.PhotoModified());
            EXPECT_TRUE(context.photo.metadata().made.isValid());
            EXPECT_EQ(context.photo.picCanvas().size(), QSize(393, 393)); // all of the glass, 50 dots to the inch
            EXPECT_EQ(context.photo.history().undoSteps(), first ? 0 : steps + 1);
            if (hadPhoto) {
                context.photo.PerformUndo();
                EXPECT_EQ(context.photo.picCanvas(), m_before);
            }
            at->commands.closePanel();
            EXPECT_FALSE(at->commands.ScanPanelOpen());
        }
    }
}

TEST_F(ScanCommandsTest, aFaultSaysWhatToDoAndChangesNothing) {
    const std::pair<const char *, const char *> rows[] = {
        {"SANE_STATUS_UNSUPPORTED", "cannot scan like that"},
        {"SANE_STATUS_CANCELLED", "stopped at the scanner"},
        {"SANE_STATUS_DEVICE_BUSY", "is busy"},
        {"SANE_STATUS_JAMMED", "is stuck"},
        {"SANE_STATUS_NO_DOCS", "no paper"},
        {"SANE_STATUS_COVER_OPEN", "Close the lid"},
        {"SANE_STATUS_IO_ERROR", "Is it on"},
        {"SANE_STATUS_NO_MEM", "too much memory"},
        {"SANE_STATUS_ACCESS_DENIED", "Ask a grown-up"},
    };
    plugIn();
    auto at = room();
    putPhoto();
    for (const auto &[status, words] : rows) {
        plugIn(QByteArray("read-status-code \"") + status + "\"\n");
        at->commands.SimpleScan();
        EXPECT_TRUE(at->said.contains(words)) << status << ": " << at->said.toStdString();
        EXPECT_FALSE(at->good);
        EXPECT_EQ(context.photo.picCanvas(), m_before);
        EXPECT_FALSE(context.photo.PhotoModified());
        EXPECT_EQ(context.photo.history().undoSteps(), 0);
        EXPECT_EQ(at->enabled(), QList<bool>({true, true, true}));
        EXPECT_FALSE(at->find<QWidget>("picScan")->isVisible());
    }
    context.fields.cboSelectIndex = -1; // none is chosen
    at->commands.SimpleScan();
    EXPECT_TRUE(at->said.contains("Choose a scanner"));
    at->commands.ScanNow();
    EXPECT_EQ(at->enabled(), QList<bool>({true, true, true}));
    plugIn();
    context.fields.cboSelectIndex = 0;
    at->commands.SimpleScan();
    EXPECT_TRUE(at->good) << "and the next scan works";
}

TEST_F(ScanCommandsTest, aHelperThatIsKilledOrStoppedInTheMiddleCostsTheScanAlone) {
    plugIn("read-delay true\nread-delay-duration 100000\n");
    const QString script = m_folder.filePath("helper");
    write("helper",
          "#!/bin/sh\necho $$ > " + m_folder.filePath("pid").toUtf8() + "\nexec " + helper().toUtf8() + " \"$@\"\n");
    QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    auto at = room(script);
    putPhoto();
    const auto growing = [&] { return at->find<QWidget>("picScan")->isVisible(); };
    when(&at->window, growing, [&] {
        QFile pid(m_folder.filePath("pid"));
        ASSERT_TRUE(pid.open(QIODevice::ReadOnly));
        kill(pid.readAll().trimmed().toInt(), SIGKILL);
    });
    at->commands.SimpleScan();
    EXPECT_TRUE(at->said.contains("software has stopped")) << at->said.toStdString();
    EXPECT_EQ(context.photo.picCanvas(), m_before);

    QSignalSpy stopped(&context.tasks, &BackgroundTasks::stopped);
    at->said.clear();
    when(&at->window, growing, [&] { context.tasks.stop(); });
    at->commands.SimpleScan();
    EXPECT_EQ(stopped.count(), 1);
    EXPECT_EQ(at->said, QString());
    EXPECT_EQ(context.photo.picCanvas(), m_before);
    EXPECT_EQ(context.photo.history().undoSteps(), 0);
    at->commands.SimpleScan();
    EXPECT_TRUE(at->good);
}

// --- The scanner window ---------------------------------------------------------------------------------------------

class ScannerWindowTest : public ScanCommandsTest {
  protected:
    void ask(frmScanner &window) {
        window.show();
        EXPECT_TRUE(QTest::qWaitFor([&] { return window.findChild<QWidget *>("cmdScanOK")->isEnabled(); }, 10'000));
        idle(window);
    }
    void idle(frmScanner &window) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return window.findChild<QWidget *>("cmdScanLook")->isEnabled(); }, 10'000));
    }
    void click(frmScanner &window, const char *name) {
        QTest::mouseClick(window.findChild<QWidget *>(name), Qt::LeftButton);
    }
    void choose(frmScanner &window, const char *list, int index) {
        auto *box = window.findChild<QComboBox *>(list);
        ASSERT_LT(index, box->count());
        box->setCurrentIndex(index);
        Q_EMIT box->activated(index);
    }
    QString value(const frmScanner &window, const QString &name) {
        for (const ScanValue &each : window.values()) {
            if (each.name == name) {
                return each.value;
            }
        }
        return {};
    }
};

TEST_F(ScannerWindowTest, theControlsAreTheScannersOwn) {
    plugIn("resolution_max 1200\n");
    frmScanner window(context, "test:0", nullptr, helper());
    ask(window);
    EXPECT_EQ(value(window, "mode"), "Color");
    EXPECT_EQ(value(window, "depth"), "8");
    EXPECT_EQ(value(window, "resolution"), "300");
    EXPECT_EQ(value(window, "source"), "Flatbed");
    EXPECT_EQ(value(window, "br-x"), "200");
    EXPECT_FALSE(window.findChild<QSlider *>("sldScanBrightness")->isVisible()) << "it has none";

    click(window, "cmdScanGrey");
    idle(window);
    EXPECT_EQ(value(window, "mode"), "Gray");
    click(window, "cmdScanBlackWhite"); // has no mode of its own, but one bit
    idle(window);
    EXPECT_EQ(value(window, "mode"), "Gray");
    EXPECT_EQ(value(window, "depth"), "1");
    choose(window, "cboScanDetail", 3);
    EXPECT_EQ(value(window, "resolution"), "600");
    auto *paper = window.findChild<QComboBox *>("cboScanPaper");
    EXPECT_LT(paper->findText("A4 paper"), 0) << "does not fit on 200 x 200 millimetres";
    choose(window, "cboScanPaper", paper->findText("Photo, 10 x 15 cm"));
    EXPECT_EQ(value(window, "br-x"), "100");
    EXPECT_EQ(value(window, "br-y"), "150");
    choose(window, "cboScanSource", 1);
    idle(window);
    EXPECT_EQ(value(window, "source"), "Automatic Document Feeder");
    EXPECT_EQ(value(window, "depth"), "1") << "the choice stays";
    EXPECT_FALSE(window.findChild<QWidget *>("cmdScanLook")->isVisible());
}

TEST_F(ScannerWindowTest, brightnessIsThereWhereTheScannerHasItAndAFrameIsNot) {
    plugIn();
    write("dll.conf", "pnm\n"); // a driver that reads a file
    frmScanner window(context, "pnm:0", nullptr, helper());
    ask(window);
    auto *brightness = window.findChild<QSlider *>("sldScanBrightness");
    ASSERT_TRUE(brightness->isVisible());
    EXPECT_EQ(value(window, "brightness"), "0");
    brightness->setValue(brightness->maximum());
    EXPECT_EQ(value(window, "brightness"), "100");
    EXPECT_EQ(value(window, "contrast"), "0");
    EXPECT_EQ(value(window, "br-x"), QString());
    EXPECT_EQ(value(window, "mode"), QString());
}

TEST_F(ScannerWindowTest, aFrameIsDrawnOnWhatTheScannerSaw) {
    plugIn();
    frmScanner window(context, "test:0", nullptr, helper());
    ask(window);
    auto *glass = window.findChild<QWidget *>("picScanGlass");
    const QImage empty = glass->grab().toImage();
    click(window, "cmdScanLook");
    idle(window);
    EXPECT_NE(glass->grab().toImage(), empty);
    EXPECT_TRUE(window.findChild<QLabel *>("lblScanHint")->text().contains("frame"));
    // From the middle of the glass to a quarter left and above.
    const QPoint middle = glass->rect().center();
    const int side = std::min(glass->width(), glass->height()) - 52; // without the plastic round it
    QTest::mousePress(glass, Qt::LeftButton, {}, middle);
    QTest::mouseMove(glass, middle - QPoint(side / 8, side / 8));
    QTest::mouseMove(glass, middle - QPoint(side / 4, side / 4));
    QTest::mouseRelease(glass, Qt::LeftButton, {}, middle - QPoint(side / 4, side / 4));
    EXPECT_NEAR(value(window, "tl-x").toDouble(), 50, 3);
    EXPECT_NEAR(value(window, "br-x").toDouble(), 100, 3);
    EXPECT_NEAR(value(window, "tl-y").toDouble(), 50, 3);
    EXPECT_NEAR(value(window, "br-y").toDouble(), 100, 3);
    EXPECT_EQ(window.findChild<QComboBox *>("cboScanPaper")->currentText(), "Inside my frame");
    const ScanResult scan =
        readScan({"test:0", ScanProcess::Settings::AsGiven, window.values(), helper()}, [](const ScanStrip &) {});
    EXPECT_EQ(scan.status, ScanStatus::Good);
    EXPECT_NEAR(scan.picture.width(), 98, 8); // 50 mm at 50 dots to the inch
}

TEST_F(ScannerWindowTest, faultsAreSaidOnTheGlassAndItCanBeLeftAtAnyTime) {
    plugIn("read-status-code \"SANE_STATUS_COVER_OPEN\"\n");
    frmScanner window(context, "test:0", nullptr, helper());
    ask(window);
    click(window, "cmdScanLook");
    idle(window);
    EXPECT_TRUE(window.findChild<QWidget *>("picScanGlass")->accessibleName().contains("Close the lid"));
    EXPECT_TRUE(window.findChild<QWidget *>("cmdScanOK")->isEnabled());

    plugIn("read-delay true\nread-delay-duration 200000\n");
    click(window, "cmdScanLook");
    click(window, "cmdScanCancel");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window.isVisible(); }, 4000)) << "while it looks";
    EXPECT_EQ(window.result(), QDialog::Rejected);

    frmScanner gone(context, "test:9", nullptr, helper());
    gone.show();
    idle(gone);
    EXPECT_TRUE(gone.findChild<QWidget *>("picScanGlass")->accessibleName().contains("Is it on"));
    EXPECT_FALSE(gone.findChild<QWidget *>("cmdScanOK")->isEnabled());
    click(gone, "cmdScanLook"); // tries again
    idle(gone);
    click(gone, "cmdScanCancel");
    EXPECT_FALSE(gone.isVisible());
}

TEST_F(ScannerWindowTest, everyTextIsOfTheLanguageFile) {
    plugIn();
    ASSERT_TRUE(test::writeChangedLanguageFile(context.installation.languageFile()));
    frmScanner window(context, "test:0", nullptr, helper());
    ask(window);
    EXPECT_EQ(test::textsNotShown(window), QStringList());
    EXPECT_EQ(test::textsOfTheCode(window), QStringList());
}

} // namespace
} // namespace lumora
