// Speaking, with a real speech service and the real helper program.
#include "devices/HelperScript.h"
#include "devices/speech/SpeechService.h"
#include "devices/speech/VoiceSearch.h"
#include "support/CupsServer.h"
#include "support/SpeechServer.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

namespace lumora {
namespace {

using test::SpeechServer;

QString realHelper() {
    return qEnvironmentVariable("LUMORA_BIN") + "/lumora-devices";
}

/// The answer to one search.
bool hasVoice(const QString &locale, const QString &helper = realHelper(), int timeLimit = 10'000) {
    VoiceSearch search(helper);
    search.setTimeLimit(timeLimit);
    QSignalSpy answered(&search, &VoiceSearch::answered);
    search.start(locale);
    EXPECT_TRUE(search.isRunning());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !answered.isEmpty(); }, 30'000));
    return answered.value(0).value(0).toBool();
}

int startsIn(const QString &file) {
    QFile in(file);
    return in.open(QIODevice::ReadOnly) ? static_cast<int>(in.readAll().count('\n')) : 0;
}

using SpeechTest = HelperScriptTest;

TEST_F(SpeechTest, speaksWithAVoiceOfTheLanguageOrNotAtAll) {
    SpeechServer server;
    SpeechService speech(realHelper());
    const struct {
        const char *locale, *voice; // null: none speaks it
    } rows[] = {{"de_DE", "Bonn"},
                {"de_AT", "Bonn"},
                {"en_US", "Boston"},
                {"en_GB", "Boston"},
                {"en_AU", "Sydney"},
                {"fr_CA", "Lyon"},
                {"pt_BR", "Recife"},
                {"pl_PL", nullptr},
                {"ja_JP", nullptr}, // a module that
                                    // cannot read it
                {"nothing", nullptr}};
    for (const auto &[locale, voice] : rows) {
        EXPECT_EQ(hasVoice(locale), voice != nullptr) << locale;
    }
    QStringList expected;
    for (const auto &[locale, voice] : rows) {
        const QString text = QStringLiteral("it's „%1“ <b> & 100%").arg(locale);
        speech.say(locale, text);
        if (voice != nullptr) {
            expected << QLatin1StringView(voice) + ": " + text;
            ASSERT_TRUE(server.waitFor(expected.constLast())) << locale << server.log().toStdString();
        }
    }
    speech.say("de_DE", "Zwei\nZeilen");
    expected << "Bonn: Zwei Zeilen";
    EXPECT_TRUE(server.waitFor(expected.constLast()));
    EXPECT_EQ(server.said().join('\n').toStdString(), expected.join('\n').toStdString())
        << "each text has stopped the one before";
}

TEST_F(SpeechTest, saysATextToItsEndUnlessStopped) {
    SpeechServer server;
    auto speech = std::make_unique<SpeechService>(realHelper());
    speech->say("de_DE", "ganz");
    EXPECT_TRUE(server.waitFor("Bonn. ganz")) << server.log().toStdString();
    speech->say("de_DE", "halb");
    EXPECT_TRUE(server.waitFor("Bonn: halb"));
    speech->stop();
    speech->say("de_DE", {}); // is nothing to say, and stops nothing
    speech->say("de_DE", "bis hier");
    EXPECT_TRUE(server.waitFor("Bonn: bis hier"));
    speech.reset(); // ends the program in the middle of a word
    QTest::qWait(3000);
    EXPECT_THAT(server.said(), testing::ElementsAre("Bonn: ganz", "Bonn. ganz", "Bonn: halb", "Bonn: bis hier"));
}

TEST_F(SpeechTest, aServiceThatDiesAndComesBackCostsWhatItWouldHaveSaid) {
    SpeechServer server;
    SpeechService speech(realHelper());
    speech.say("en_US", "before");
    ASSERT_TRUE(server.waitFor("Boston: before")) << server.log().toStdString();
    server.kill();
    speech.say("en_US", "lost");
    QTest::qWait(1000);
    ASSERT_TRUE(server.start());
    speech.say("en_US", "after");
    EXPECT_TRUE(server.waitFor("Boston: after")) << server.log().toStdString();
    EXPECT_FALSE(server.said().contains("Boston: lost"));
}

TEST_F(SpeechTest, aHelperThatEndsIsStartedOnceMore) {
    const QString starts = m_folder.filePath("starts");
    const QByteArray count = "echo >> " + QFile::encodeName(starts) + "\n";
    for (const char *fault : {"exit 1\n", "kill -SEGV $$\n", "read line; kill -KILL $$\n"}) {
        QFile::remove(starts);
        SpeechService speech(script(count + fault));
        EXPECT_FALSE(QFile::exists(starts)) << "nothing runs before there is something to say";
        for (int i = 0; i < 4; ++i) {
            speech.say("en_US", "word");
            QTest::qWait(200);
        }
        EXPECT_EQ(startsIn(starts), 2) << fault;
    }
    SpeechService nowhere(m_folder.filePath("nobody"));
    for (int i = 0; i < 4; ++i) {
        nowhere.say("en_US", "word");
        nowhere.stop();
        QTest::qWait(20);
    }
}

TEST_F(SpeechTest, whatHangsEndsWithItsOwner) {
    const test::SilentServer silent(m_folder.filePath("silent"));
    ASSERT_TRUE(silent.isListening());
    const test::SpeechAddress address(m_folder.filePath("silent"));
    EXPECT_FALSE(hasVoice("en_US", realHelper(), 500));
    const QString pidFile = m_folder.filePath("pid");
    const QByteArray keepPid = "echo $$ > " + QFile::encodeName(pidFile) + "; exec ";
    for (const QByteArray &command : {QByteArray("sleep 1000\n"), QFile::encodeName(realHelper()) + " speak\n"}) {
        QFile::remove(pidFile);
        auto speech = std::make_unique<SpeechService>(script(keepPid + command));
        speech->say("en_US", "word");
        ASSERT_TRUE(QTest::qWaitFor([&] { return QFileInfo(pidFile).size() > 0; }, 10'000));
        for (int i = 0; i < 10'000; ++i) { // nobody reads this
            speech->say("en_US", QString(100, 'x'));
        }
        QFile file(pidFile);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray process = "/proc/" + file.readAll().trimmed();
        ASSERT_TRUE(QFileInfo::exists(process));
        speech.reset();
        EXPECT_FALSE(QFileInfo::exists(process)) << command.constData();
    }
}

TEST_F(SpeechTest, withoutAServiceThereIsNoVoice) {
    EXPECT_FALSE(hasVoice("en_US"));
    EXPECT_FALSE(hasVoice("en_US", m_folder.filePath("no-helper")));
    EXPECT_FALSE(hasVoice("en_US", script("printf 'voice\\ten\\tx\\n'; exit 1\n"))) << "not a complete answer";
    EXPECT_FALSE(hasVoice("en_US", script("printf 'voice\\ten\\tx\\n'; exec sleep 1000\n"), 300));
}

} // namespace
} // namespace lumora
