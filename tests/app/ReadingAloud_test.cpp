// Reading aloud as the setting says, with the real helper program and a real speech service.
#include "app/ReadingAloud.h"

#include "session/AppContext.h"
#include "support/SpeechServer.h"
#include "widgets/ReadAloud.h"
#include "widgets/ToolkitTexts.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora {
namespace {

/// How many helper programs this process has started that still run.
int helpers() {
    QFile children("/proc/self/task/" + QString::number(QCoreApplication::applicationPid()) + "/children");
    int count = 0;
    if (children.open(QIODevice::ReadOnly)) {
        for (const QByteArray &child : children.readAll().split(' ')) {
            QFile name("/proc/" + QString::fromLatin1(child) + "/comm");
            count += name.open(QIODevice::ReadOnly) && name.readAll().startsWith("lumora-devices") ? 1 : 0;
        }
    }
    return count;
}

TEST(ReadingAloud, SpeaksInTheLanguageOfTheTextsWhileTheSettingIsOn) {
    test::SpeechServer server;
    const QTemporaryDir folder;
    AppContext context(Installation{folder.path()});
    const ToolkitTexts toolkitTexts(context.texts);
    const auto set = [&](bool on) { context.settings.write<Setting::ReadAloud, Writer::ForMe>(on); };
    ReadingAloud aloud(context.settings);
    aloud.follow();
    ReadAloud::announce("off at first");
    QTest::qWait(100);
    EXPECT_EQ(helpers(), 0);

    set(true);
    aloud.follow();
    QTest::qWait(100);
    EXPECT_EQ(helpers(), 1);
    ReadAloud::announce("Crop");
    EXPECT_TRUE(server.waitFor("Boston: Crop")) << server.log().toStdString();
    QLocale::setDefault(QLocale(QLocale::Polish));
    ReadAloud::announce("Kadrowanie");
    QLocale::setDefault(QLocale(QLocale::German));
    aloud.follow();
    ReadAloud::announce("Zuschneiden");
    EXPECT_TRUE(server.waitFor("Bonn: Zuschneiden"));
    EXPECT_EQ(helpers(), 1);

    set(false);
    aloud.follow();
    EXPECT_EQ(helpers(), 0);
    ReadAloud::announce("off again");
    QTest::qWait(100);
    EXPECT_EQ(server.said().join('|').toStdString(), "Boston: Crop|Bonn: Zuschneiden");
}

} // namespace
} // namespace lumora
