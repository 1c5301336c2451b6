// What becomes of documents and addresses that are handed to the desktop: a stand-in for xdg-open says how it went.
#include "app/DesktopOpener.h"

#include "base/basMisc.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora {
namespace {

TEST(DesktopOpener, SaysWhatNoProgramOpens) {
    const QTemporaryDir programs;
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(programs.path()) + ":" + path);
    QStringList failed;
    const DesktopOpener opener([&](const QString &what) { failed << what; });
    const auto stand = [&](const QByteArray &script) {
        QFile file(programs.filePath("xdg-open"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("#!/bin/sh\n" + script + "\n");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    };
    const QString asked = programs.filePath("asked");
    const auto askedFor = [&] {
        QFile file(asked);
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
    };
    stand("echo \"$1\" >\"${0%/*}/asked\"");
    EXPECT_TRUE(OpenWithShell("/tmp/a b.html"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return askedFor() == "file:///tmp/a%20b.html"; }, 20'000)) << askedFor().data();
    QTest::qWait(50);
    EXPECT_EQ(failed, QStringList());

    stand("exit 3"); // its code for "no program found"
    EXPECT_TRUE(OpenWithShell("/tmp/a b.html"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !failed.isEmpty(); }, 20'000));
    EXPECT_EQ(failed, QStringList("/tmp/a b.html"));

    // No xdg-open at all: the toolkit's own way, which opens nothing on the platform of the tests.
    qputenv("PATH", QFile::encodeName(programs.filePath("none")));
    failed.clear();
    OpenWithShell("https://example.com/x");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !failed.isEmpty(); }, 20'000));
    EXPECT_EQ(failed, QStringList("https://example.com/x"));
    qputenv("PATH", path);
}

} // namespace
} // namespace lumora
