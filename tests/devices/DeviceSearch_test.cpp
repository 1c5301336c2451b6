#include "devices/DeviceSearch.h"
#include "devices/HelperScript.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>

namespace lumora {
namespace {

/// The answer to one search, or nothing when none comes in ten seconds.
std::optional<DeviceAnswer> ask(DeviceSearch &search, DeviceKind kind) {
    std::optional<DeviceAnswer> got;
    QObject receiver;
    QObject::connect(&search, &DeviceSearch::answered, &receiver, [&](DeviceKind of, const DeviceAnswer &answer) {
        EXPECT_EQ(of, kind);
        EXPECT_FALSE(got.has_value()) << "answered twice";
        got = answer;
    });
    search.start(kind);
    EXPECT_FALSE(got.has_value()) << "answered before start() returned";
    EXPECT_TRUE(search.isRunning(kind));
    EXPECT_TRUE(QTest::qWaitFor([&] { return got.has_value(); }, 10'000));
    QTest::qWait(20); // a second answer would come now
    return got;
}

using DeviceSearchTest = HelperScriptTest;

TEST_F(DeviceSearchTest, theHelperFindsTheScannersOfTheSystem) {
    // A scanner system that knows only its own test device, which has two scanners.
    QFile list(m_folder.filePath("dll.conf"));
    ASSERT_TRUE(list.open(QIODevice::WriteOnly));
    list.write("test\n");
    list.close();
    qputenv("SANE_CONFIG_DIR", m_folder.path().toUtf8());
    DeviceSearch search(qEnvironmentVariable("LUMORA_BIN") + "/lumora-devices");
    const auto answer = ask(search, DeviceKind::Scanners);
    qunsetenv("SANE_CONFIG_DIR");
    ASSERT_TRUE(answer && answer->complete);
    ASSERT_EQ(answer->devices.size(), 2);
    EXPECT_EQ(answer->devices[0].name, "test:0");
    EXPECT_EQ(answer->devices[1].name, "test:1");
    EXPECT_EQ(answer->devices[0].shown, "Noname frontend-tester");
}

TEST_F(DeviceSearchTest, theHelperAnswersWithoutAPrintSystem) {
    qputenv("CUPS_SERVER", "/nowhere/cups.sock");
    DeviceSearch search(qEnvironmentVariable("LUMORA_BIN") + "/lumora-devices");
    const auto answer = ask(search, DeviceKind::Printers);
    qunsetenv("CUPS_SERVER");
    ASSERT_TRUE(answer && answer->complete);
    EXPECT_TRUE(answer->devices.isEmpty());
    EXPECT_TRUE(answer->defaultName.isEmpty());
}

TEST_F(DeviceSearchTest, helpersThatFailFindNothingQuietly) {
    const std::pair<const char *, QString> rows[] = {
        {"missing", m_folder.filePath("nobody")},
        {"crashes", script("printf 'device\\ta\\tA\\n'; kill -SEGV $$\n")},
        {"fails", script("exit 1\n")},
        {"hangs", script("printf 'device\\ta\\tA\\n'; exec sleep 1000\n")},
        {"prints garbage", script("head -c 5000 /dev/urandom; printf '\\ndevice\\tx\\n\\t\\t\\ndonedone\\n'\n")},
        {"never stops talking", script("exec yes 'device\ta\tA'\n")},
    };
    for (const auto &[name, helper] : rows) {
        DeviceSearch search(helper);
        search.setTimeLimit(2000);
        const auto answer = ask(search, DeviceKind::Scanners);
        ASSERT_TRUE(answer) << name;
        EXPECT_FALSE(answer->complete) << name;
        EXPECT_TRUE(answer->devices.isEmpty()) << name;
        EXPECT_FALSE(search.isRunning(DeviceKind::Scanners)) << name;
    }
}

TEST_F(DeviceSearchTest, anAnswerIsReadWithWhatDriversPrintInBetween) {
    DeviceSearch search(script("echo \"looking for $1 ...\"\n"
                               "printf 'device\\tnet:1\\tB\\303\\274ro\\ndevice\\tplain\\t\\nbad\\tline\\there\\n'\n"
                               "printf 'default\\tplain\\tplain\\ndone\\ndevice\\tlate\\tlate\\n'\n"
                               "kill -SEGV $$\n"));
    for (int round = 0; round < 2; ++round) { // the same object may ask again
        const auto answer = ask(search, DeviceKind::Printers);
        ASSERT_TRUE(answer && answer->complete);
        ASSERT_EQ(answer->devices.size(), 2);
        EXPECT_EQ(answer->devices[0].name, "net:1");
        EXPECT_EQ(answer->devices[0].shown, QString::fromUtf8("B\303\274ro"));
        EXPECT_EQ(answer->devices[1].shown, "plain");
        EXPECT_EQ(answer->defaultName, "plain");
    }
}

TEST_F(DeviceSearchTest, aHelperThatHangsIsKilledWithItsSearch) {
    const QString pidFile = m_folder.filePath("pid");
    auto search = std::make_unique<DeviceSearch>(script("echo $$ > " + pidFile.toUtf8() + "; exec sleep 1000\n"));
    QSignalSpy answered(search.get(), &DeviceSearch::answered);
    search->start(DeviceKind::Scanners);
    search->start(DeviceKind::Scanners); // one is enough
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFileInfo(pidFile).size() > 0; }, 10'000));
    QFile file(pidFile);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray process = "/proc/" + file.readAll().trimmed();
    ASSERT_TRUE(QFileInfo::exists(process));
    search.reset();
    EXPECT_FALSE(QFileInfo::exists(process));
    EXPECT_EQ(answered.count(), 0);
}

} // namespace
} // namespace lumora
