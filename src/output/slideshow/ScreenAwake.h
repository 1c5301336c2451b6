// Keeps the screen from going dark, from turning itself off and from being locked. Used by the slideshow.
#pragma once

#include <QDBusConnection>
#include <QString>
#include <memory>

namespace lumora {

/// For as long as it lives. Asks the desktop (the D-Bus service org.freedesktop.ScreenSaver) and, on X, the screen
/// saver of the server, and waits for neither; where there is none nothing happens. Both end it themselves should the
/// program crash.
class ScreenAwake {
  public:
    /// What the desktop may show to the user: the program's name and why. Nothing is asked on a bus that is not
    /// connected.
    ScreenAwake(const QString &application, const QString &reason, QDBusConnection bus = desktopBus());
    ~ScreenAwake();
    ScreenAwake(const ScreenAwake &) = delete;
    ScreenAwake &operator=(const ScreenAwake &) = delete;

    /// The session's bus; not connected where no session has one. Never starts a bus.
    static QDBusConnection desktopBus();

  private:
    struct Request;
    std::shared_ptr<Request> m_request;
};

} // namespace lumora
