#include "devices/HelperScript.h"
#include "devices/ScanProcess.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora {
namespace {

ScanOption words(const QString &name, const QStringList &choices) {
    return {.name = name, .kind = ScanOption::Kind::Word, .value = choices.first(), .choices = choices};
}

ScanOption range(const QString &name, double least, double most) {
    return {
        .name = name, .value = QString::number(least), .hasRange = true, .least = least, .most = most, .choices = {}};
}

ScanOption numbers(const QString &name, const QStringList &choices) {
    return {.name = name, .value = choices.first(), .choices = choices};
}

TEST(ScanOption, anAutomaticScanIsInColourForPrintingAndOfTheWholeGlass) {
    struct Row {
        QList<ScanOption> options;
        QList<ScanValue> settings;
    };
    const Row rows[] = {
        {{}, {}},
        {{words("mode", {"Lineart", "Gray", "Color"}), numbers("resolution", {"75", "150", "300", "600"}),
          range("tl-x", 0, 215.9), range("br-x", 0, 215.9), range("tl-y", 0, 297), range("br-y", 0, 297)},
         {{"mode", "Color"}, {"resolution", "300"}, {"br-x", "215.9"}, {"br-y", "297"}, {"tl-x", "0"}, {"tl-y", "0"}}},
        {{words("mode", {"Color (48 bits)", "24bit Color", "True Gray"}), numbers("depth", {"1", "8", "16"}),
          numbers("resolution", {"100", "200", "400"})},
         {{"mode", "24bit Color"}, {"depth", "8"}, {"resolution", "200"}}},
        {{words("mode", {"Binary", "Grayscale"}), numbers("depth", {"16"}), range("resolution", 50, 200)},
         {{"depth", "16"}, {"resolution", "200"}}},
        {{range("x-resolution", 600, 1200), range("y-resolution", 25, 1200)},
         {{"x-resolution", "600"}, {"y-resolution", "300"}}},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(automaticScan(row.options), row.settings) << toJson(row.options).toStdString();
        const auto read = scanOptionsFromJson(toJson(row.options));
        ASSERT_TRUE(read);
        EXPECT_EQ(automaticScan(*read), row.settings);
    }
    for (const char *text : {"", "{}", "[", "7", "[3,{\"name\":7}]"}) {
        const auto read = scanOptionsFromJson(text);
        EXPECT_TRUE(!read || read->isEmpty()) << text;
    }
}

using ScanProcessTest = HelperScriptTest;

/// A message as printf writes it.
#define STATUS(length, word) "printf 's\\" length "\\000\\000\\000" word "'\n"

TEST_F(ScanProcessTest, helpersThatFailAreTold) {
    const QByteArray frame = "printf 'f\\023\\000\\000\\000colour 1 8 10 10 30'\n";
    struct Row {
        const char *name;
        QString helper;
        ScanStatus status;
    };
    const Row rows[] = {
        {"missing", m_folder.filePath("nobody"), ScanStatus::Crashed},
        {"crashes", script(frame + "kill -SEGV $$\n"), ScanStatus::Crashed},
        {"ends without a word", script(frame + "exit 0\n"), ScanStatus::Crashed},
        {"hangs", script(frame + "exec sleep 1000\n"), ScanStatus::NotAnswering},
        {"hangs while it closes", script(frame + STATUS("4", "good") "exec sleep 1000\n"), ScanStatus::Good},
        {"crashes while it closes", script(frame + STATUS("4", "good") "kill -SEGV $$\n"), ScanStatus::Good},
        {"does not end", script("exec yes\n"), ScanStatus::Crashed},
        {"says an unknown word", script(frame + STATUS("5", "great")), ScanStatus::Crashed},
        {"has a frame of words", script("printf 'f\\003\\000\\000\\000a b'\n"), ScanStatus::Crashed},
        {"has a length below 0", script("printf 'd\\000\\000\\000\\377'; exec sleep 1000\n"), ScanStatus::Crashed},
        {"has a length beyond bounds", script("printf 'd\\000\\000\\000\\001'; exec sleep 1000\n"),
         ScanStatus::Crashed},
        {"sends options that are none", script("printf 'o\\002\\000\\000\\000{}'\n"), ScanStatus::Crashed},
    };
    for (const Row &row : rows) {
        ScanProcess process(row.helper);
        process.setLimits({.silence = 700, .closing = 500});
        QSignalSpy finished(&process, &ScanProcess::finished);
        for (int round = 0; round < 2; ++round) { // the same object may try again
            process.scan("test:0", ScanProcess::Settings::Automatic);
            EXPECT_EQ(finished.count(), round) << row.name;
            ASSERT_TRUE(QTest::qWaitFor([&] { return finished.count() > round; }, 10'000)) << row.name;
            EXPECT_EQ(finished.last().first().value<ScanStatus>(), row.status) << row.name;
            EXPECT_FALSE(process.isRunning());
        }
        QTest::qWait(20);
        EXPECT_EQ(finished.count(), 2) << row.name;
    }
}

TEST_F(ScanProcessTest, theTimeInWhichLumoraIsStoppedDoesNotCount) {
    // As after a sleep of the computer: the clock has gone on, and the scanner answers a moment later.
    ScanProcess process(script("kill -STOP $PPID; sleep 1.5; kill -CONT $PPID; sleep 0.4\n" STATUS("4", "good")));
    process.setLimits({.silence = 1200, .closing = 1200});
    QSignalSpy finished(&process, &ScanProcess::finished);
    process.scan("test:0", ScanProcess::Settings::AsGiven);
    ASSERT_TRUE(finished.wait(10'000));
    EXPECT_EQ(finished.first().first().value<ScanStatus>(), ScanStatus::Good);
}

TEST_F(ScanProcessTest, aHelperThatDoesNotStopIsKilled) {
    // It leaves the polite request unheard.
    const QString pidFile = m_folder.filePath("pid");
    ScanProcess process(script("trap '' TERM; echo $$ > " + pidFile.toUtf8() + "; while true; do sleep 0.1; done\n"));
    process.setLimits({.silence = 60'000, .closing = 400});
    QSignalSpy finished(&process, &ScanProcess::finished);
    process.scan("test:0", ScanProcess::Settings::AsGiven);
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFileInfo(pidFile).size() > 0; }, 10'000));
    process.cancel();
    process.cancel();
    QFile file(pidFile);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray running = "/proc/" + file.readAll().trimmed();
    ASSERT_TRUE(finished.wait(10'000));
    EXPECT_EQ(finished.first().first().value<ScanStatus>(), ScanStatus::Cancelled);
    EXPECT_FALSE(QFileInfo::exists(running));
}

TEST_F(ScanProcessTest, messagesMayArriveInPieces) {
    const QByteArray all = scanMessageHead(ScanMessage::Kind::Frame, 5) + "frame" +
                           scanMessageHead(ScanMessage::Kind::Data, 300) + QByteArray(300, 'x') +
                           scanMessageHead(ScanMessage::Kind::Data, 0) + scanMessageHead(ScanMessage::Kind::Status, 4) +
                           "good";
    for (const int piece : {1, 2, 7, 100, 10'000}) {
        ScanMessages messages;
        QByteArrayList got;
        for (qsizetype at = 0; at < all.size(); at += piece) {
            messages.add(all.mid(at, piece));
            while (const auto message = messages.next()) {
                got += static_cast<char>(message->kind) + message->content;
            }
        }
        EXPECT_EQ(got, QByteArrayList({"fframe", "d" + QByteArray(300, 'x'), "d", "sgood"})) << piece;
        EXPECT_FALSE(messages.isBroken());
    }
}

} // namespace
} // namespace lumora
