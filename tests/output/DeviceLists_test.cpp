#include "output/DeviceLists.h"
#include "session/AppContext.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora {
namespace {

/// An installation in a folder of its own, and a helper that finds what the test wants.
class DeviceListsTest : public testing::Test {
  protected:
    QString helperThatPrints(const QByteArray &answer) {
        QFile file(m_folder.filePath("helper"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("#!/bin/sh\ncat <<'END'\n" + answer + "done\nEND\n");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return file.fileName();
    }

    void saveSettings(const QByteArray &text) {
        QFile file(m_folder.filePath("Lumora.ini"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text);
    }

    Installation installation() const { return {m_folder.path()}; }

    QTemporaryDir m_folder;
};

TEST_F(DeviceListsTest, scannersFillTheListAndTheSavedOneIsChosen) {
    struct Row {
        const char *saved; ///< nullptr: not saved
        int chosen;
    };
    const Row rows[] = {{nullptr, -1}, {"-1", -1}, {"0", 0},    {"1", 1},          {"2", 0},  {"99999999999", 0},
                        {"-7", -1},    {"", 0},    {"blue", 0}, {"1 or maybe", 0}, {" 1 ", 1}};
    const QString helper = helperThatPrints("device\tnet:a\tOffice scanner\ndevice\tusb:b\tHome scanner\n");
    for (const Row &row : rows) {
        saveSettings(row.saved == nullptr ? QByteArray() : QByteArray("[Scanner]\nDevice=") + row.saved + "\n");
        AppContext context(installation());
        DeviceLists lists(context, helper);
        QSignalSpy loaded(&lists, &DeviceLists::scannersLoaded);
        lists.LoadScanners();
        EXPECT_EQ(loaded.count(), 0) << "the window would have waited";
        ASSERT_TRUE(loaded.wait(10'000));
        EXPECT_TRUE(loaded.first().first().toBool());
        EXPECT_EQ(context.fields.cboSelect, QStringList({"Office scanner", "Home scanner"}));
        EXPECT_EQ(context.fields.cboSelectIndex, row.chosen) << (row.saved == nullptr ? "nothing" : row.saved);
        EXPECT_EQ(lists.scanners().at(1).name, "usb:b");
    }
}

TEST_F(DeviceListsTest, withoutAScannerTheListEmptiesAndSaysSo) {
    AppContext context(installation());
    context.fields.cboSelect = QStringList({"from before"});
    context.fields.cboSelectIndex = 0;
    for (const QString &helper : {helperThatPrints(""), m_folder.filePath("missing")}) {
        DeviceLists lists(context, helper);
        QSignalSpy loaded(&lists, &DeviceLists::scannersLoaded);
        lists.LoadScanners();
        ASSERT_TRUE(loaded.wait(10'000));
        EXPECT_FALSE(loaded.first().first().toBool());
        EXPECT_TRUE(context.fields.cboSelect.isEmpty());
        EXPECT_EQ(context.fields.cboSelectIndex, -1);
    }
}

TEST_F(DeviceListsTest, theSavedPrinterOrElseTheDefaultIsChosen) {
    struct Row {
        const char *saved;
        int chosen;
    };
    const Row rows[] = {{"", 1}, {"Laser", 0}, {"Photo, glossy", 2}, {"gone", -1}, {"laser", -1}};
    const QString helper =
        helperThatPrints("device\tLaser\tLaser\ndevice\tInk\tInk\ndevice\tPhoto, glossy\tx\ndefault\tInk\tInk\n");
    for (const Row &row : rows) {
        saveSettings(QByteArray("[Printer]\nDevice=") + row.saved + "\n");
        AppContext context(installation());
        DeviceLists lists(context, helper);
        QSignalSpy loaded(&lists, &DeviceLists::printersLoaded);
        lists.GetPrinters();
        ASSERT_TRUE(loaded.wait(10'000));
        EXPECT_EQ(context.fields.cboPrinter, QStringList({"Laser", "Ink", "Photo, glossy"}));
        EXPECT_EQ(context.fields.cboPrinterIndex, row.chosen) << row.saved;
    }
}

TEST_F(DeviceListsTest, aScannerSearchThatHangsDoesNotHoldUpThePrinters) {
    QFile file(m_folder.filePath("helper"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\n[ $1 = scanners ] && exec sleep 1000\nprintf 'device\\tInk\\tInk\\ndone\\n'\n");
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    file.close();
    AppContext context(installation());
    DeviceLists lists(context, file.fileName());
    QSignalSpy printers(&lists, &DeviceLists::printersLoaded);
    lists.LoadScanners();
    lists.GetPrinters();
    ASSERT_TRUE(printers.wait(10'000));
    EXPECT_EQ(context.fields.cboPrinter, QStringList({"Ink"}));
}

} // namespace
} // namespace lumora
