// Keeping the screen awake, on a real bus with a desktop's service on it.
#include "output/slideshow/ScreenAwake.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora {
namespace {

/// Answers like a desktop's screen saver.
class Desktop : public QDBusVirtualObject {
  public:
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override {
        calls << message.interface() + ' ' + message.member();
        if (message.member() == "Inhibit") {
            calls.last() +=
                ' ' + message.arguments().value(0).toString() + ": " + message.arguments().value(1).toString();
            connection.send(message.createReply(quint32{77}));
        } else {
            calls.last() += ' ' + message.arguments().value(0).toString();
        }
        return true;
    }

    QStringList calls;
};

class ScreenAwakeTest : public testing::Test {
  protected:
    void SetUp() override {
        m_daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        ASSERT_TRUE(m_daemon.waitForReadyRead()) << "is dbus-daemon installed?";
        m_address = QString::fromLatin1(m_daemon.readLine().trimmed());
    }
    void TearDown() override {
        for (const char *name : {"desktop", "program"}) {
            QDBusConnection::disconnectFromBus(name);
        }
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    QDBusConnection bus(const QString &name) const { return QDBusConnection::connectToBus(m_address, name); }

    QProcess m_daemon;
    QString m_address;
};

TEST_F(ScreenAwakeTest, AsksTheDesktopAndTakesItBack) {
    Desktop desktop;
    QDBusConnection service = bus("desktop");
    ASSERT_TRUE(service.registerService("org.freedesktop.ScreenSaver"));
    ASSERT_TRUE(service.registerVirtualObject("/org/freedesktop/ScreenSaver", &desktop));
    const QString asked = "org.freedesktop.ScreenSaver Inhibit Lumora: Slideshow";
    const QString takenBack = "org.freedesktop.ScreenSaver UnInhibit 77";
    const auto said = [&](const QStringList &calls) {
        return QTest::qWaitFor([&] { return desktop.calls == calls; }, 10'000);
    };
    {
        const ScreenAwake awake("Lumora", "Slideshow", bus("program"));
        EXPECT_TRUE(said({asked}));
        QTest::qWait(50); // the answer is on its way
    }
    EXPECT_TRUE(said({asked, takenBack}));
    // A show that ends before the desktop has answered.
    std::make_unique<ScreenAwake>("Lumora", "Slideshow", bus("program")).reset();
    EXPECT_TRUE(said({asked, takenBack, asked, takenBack}));
}

TEST_F(ScreenAwakeTest, NothingHappensWithoutADesktop) {
    const ScreenAwake alone("Lumora", "Slideshow", bus("program"));
    const ScreenAwake withoutBus("Lumora", "Slideshow", QDBusConnection("nowhere"));
    QTest::qWait(50);
}

} // namespace
} // namespace lumora
