#include "output/slideshow/ScreenAwake.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLibrary>
#include <xcb/xcb.h>

namespace lumora {

namespace {

QDBusMessage screenSaverCall(const QString &method) {
    return QDBusMessage::createMethodCall("org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
                                          "org.freedesktop.ScreenSaver", method);
}

/// Suspends the X server's own screen saver and its power saving (MIT screen saver extension 1.1), or lets them go on.
/// The libraries are looked up so that Lumora needs no X to run.
void suspendOnX(bool suspended) {
    // By name: the offscreen platform has the interface of X too, but no connection.
    const auto *x = QGuiApplication::platformName() == "xcb"
                        ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>()
                        : nullptr;
    if (x == nullptr || x->connection() == nullptr) {
        return;
    }
    QLibrary xcb("xcb", 1);
    QLibrary screenSaver("xcb-screensaver", 0);
    auto *extension = reinterpret_cast<xcb_extension_t *>(screenSaver.resolve("xcb_screensaver_id"));
    const auto suspend = reinterpret_cast<xcb_void_cookie_t (*)(xcb_connection_t *, std::uint32_t)>(
        screenSaver.resolve("xcb_screensaver_suspend"));
    const auto dataOf = reinterpret_cast<decltype(&xcb_get_extension_data)>(xcb.resolve("xcb_get_extension_data"));
    const auto flush = reinterpret_cast<decltype(&xcb_flush)>(xcb.resolve("xcb_flush"));
    if (extension == nullptr || suspend == nullptr || dataOf == nullptr || flush == nullptr) {
        return;
    }
    // A request for an extension that the server lacks would end the connection.
    const xcb_query_extension_reply_t *data = dataOf(x->connection(), extension);
    if (data != nullptr && data->present != 0) {
        suspend(x->connection(), suspended ? 1 : 0);
        flush(x->connection());
    }
}

} // namespace

struct ScreenAwake::Request {
    QDBusConnection bus;
    bool isOver = false;
    quint32 cookie = 0; ///< 0 until the desktop has answered
};

ScreenAwake::ScreenAwake(const QString &application, const QString &reason, QDBusConnection bus)
    : m_request(std::make_shared<Request>(Request{std::move(bus)})) {
    suspendOnX(true);
    if (!m_request->bus.isConnected()) {
        return;
    }
    QDBusMessage inhibit = screenSaverCall("Inhibit");
    inhibit << application << reason;
    auto *watcher = new QDBusPendingCallWatcher(m_request->bus.asyncCall(inhibit), QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, request = m_request] {
        watcher->deleteLater();
        const QDBusPendingReply<quint32> reply = *watcher;
        if (reply.isError()) {
            return;
        }
        request->cookie = reply.value();
        if (request->isOver) { // the answer has come after the end
            request->bus.send(screenSaverCall("UnInhibit") << request->cookie);
        }
    });
}

ScreenAwake::~ScreenAwake() {
    suspendOnX(false);
    m_request->isOver = true;
    if (m_request->cookie != 0) {
        m_request->bus.send(screenSaverCall("UnInhibit") << m_request->cookie);
    }
}

QDBusConnection ScreenAwake::desktopBus() {
    // Without an address the library would start a bus of its own, which takes time and has no desktop on it.
    const bool has = !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
                     QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/bus");
    return has ? QDBusConnection::sessionBus() : QDBusConnection("none");
}

} // namespace lumora
