// Where mail is handed in: the options edit it, the settings file keeps it, the transport uses it.
#pragma once

#include <QString>

namespace lumora {

/// How the connection is encrypted. Without encryption no password is ever sent.
enum class MailSecurity { None, StartTls, Tls };

struct MailServer {
    QString host = {}; ///< a name or an address; empty: no server is set up
    int port = 587;    ///< 1 to 65535
    MailSecurity security = MailSecurity::StartTls;
    QString user = {}; ///< empty: no log-in

    bool needsPassword() const { return !user.isEmpty() && security != MailSecurity::None; }
    friend bool operator==(const MailServer &, const MailServer &) = default;
};

} // namespace lumora
