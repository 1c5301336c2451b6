// Passwords in a real keyring, and without one. Each program of the test is this one, started with other arguments:
// what it finds it cannot remember from before.
#include "devices/mail/MailPasswords.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora {
namespace {

const MailServer server{"smtp.school.example", 587, MailSecurity::StartTls, "anna"};

/// The password that is found; "nothing" when no answer comes.
QString foundNow() {
    QObject receiver;
    QString found = "nothing";
    mailPasswords::find(server, &receiver, [&](const QString &password) { found = password; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return found != "nothing"; }, 40'000));
    return found;
}

TEST(MailPasswords, DISABLED_AnotherProgram) {
    const QString order = qEnvironmentVariable("KEYRING_ORDER");
    if (order == "keep") {
        mailPasswords::keep(server, QString::fromUtf8("öffne dich!"));
        QTest::qWait(1500);
    }
    printf("found:%s\n", foundNow().toUtf8().constData());
}

/// What another program finds, after it has kept a password if `order` is "keep".
QString anotherProgramFinds(QProcessEnvironment environment, const QString &order) {
    environment.insert("KEYRING_ORDER", order);
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(QCoreApplication::applicationFilePath(),
                  {"--gtest_filter=MailPasswords.DISABLED_AnotherProgram", "--gtest_also_run_disabled_tests"});
    EXPECT_TRUE(program.waitForFinished(60'000));
    const QString said = QString::fromUtf8(program.readAllStandardOutput());
    return said.section("found:", 1).section('\n', 0, 0);
}

TEST(MailPasswords, AKeyringOutlivesTheProgram) {
    const QTemporaryDir home;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *place : {"HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME"}) {
        environment.insert(place, home.path());
    }
    QProcess bus, keyring;
    bus.setProcessEnvironment(environment);
    bus.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
    ASSERT_TRUE(bus.waitForReadyRead(30'000)) << qPrintable(bus.errorString());
    environment.insert("DBUS_SESSION_BUS_ADDRESS", QString::fromUtf8(bus.readLine().trimmed()));
    keyring.setProcessEnvironment(environment);
    QFile secret(home.filePath("secret"));
    ASSERT_TRUE(secret.open(QIODevice::WriteOnly) && secret.write("secret") > 0 && secret.flush());
    keyring.setStandardInputFile(secret.fileName());
    keyring.start("gnome-keyring-daemon", {"--foreground", "--unlock", "--components=secrets"});
    ASSERT_TRUE(keyring.waitForStarted());
    QString found;
    for (int i = 0; i < 10 && found.isEmpty(); ++i) { // the keyring takes a moment to start
        EXPECT_EQ(anotherProgramFinds(environment, "keep"), QString::fromUtf8("öffne dich!")) << "from memory";
        found = anotherProgramFinds(environment, "find");
    }
    EXPECT_EQ(found, QString::fromUtf8("öffne dich!")) << "from the keyring";
    environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    EXPECT_EQ(anotherProgramFinds(environment, "find"), "") << "without the keyring nobody knows it";
    for (QProcess *process : {&keyring, &bus}) {
        process->terminate();
        process->waitForFinished();
    }
}

TEST(MailPasswords, ARefusedOneIsForgotten) {
    mailPasswords::keepForThisRun(server, "guess");
    EXPECT_EQ(foundNow(), "guess");
    mailPasswords::refuse(server);
    EXPECT_EQ(foundNow(), "");
    mailPasswords::keepForThisRun(server, "better");
    EXPECT_EQ(foundNow(), "better");
}

} // namespace
} // namespace lumora
