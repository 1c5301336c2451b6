// Hands mail to a server by SMTP, through libcurl. The calls wait until it is done: they are for background tasks.
#pragma once

#include "base/MailServer.h"
#include "devices/mail/MailMessage.h"

#include <QList>

namespace lumora {

/// What went wrong, as far as it tells people what to do.
enum class MailFault {
    None,
    NoServer,       ///< none is set up, or its name is no name
    NotFound,       ///< nothing has that name, or there is no network
    NoAnswer,       ///< nobody there, or it has gone silent
    NotEncrypted,   ///< the server cannot do the encryption that is asked for
    BadCertificate, ///< it cannot prove that it is the one asked for
    WrongPassword,  ///< or a log-in is needed and none is set up
    SenderRefused,
    AddressRefused, ///< of a recipient
    TooLarge,       ///< for this server
    Lost,           ///< the connection broke, or the server refused at another point
    NoPhoto,        ///< the attachment cannot be read
    Cancelled,
};

struct MailResult {
    int code = 0; ///< libcurl's number, 0 when it worked
    MailFault fault = MailFault::None;
    QString reason; ///< for logs: libcurl's message, in English
    bool ok() const { return code == 0; }
};

/// Seconds, 1 or more.
struct MailLimits {
    int connect = 20; ///< until the connection stands
    int stall = 60;   ///< without a byte, and for each of the server's answers
};

/// Hands the message in for all its recipients or, when the server refuses one of them, for none. TLS is 1.2 or newer,
/// and the certificate must be good for the server's name; SSL_CERT_FILE in the environment names other authorities
/// than the system's. A password is sent only over an encrypted connection. Addresses with line breaks are refused
/// before anything is sent. Tells the current TaskControl how far it is (100 only when the server has taken the mail)
/// and ends within a second when that is cancelled.
MailResult sendMail(const MailServer &server, const QString &password, const MailMessage &message,
                    const MailLimits &limits = {});

/// Connects and logs in, and sends nothing.
MailResult tryMailServer(const MailServer &server, const QString &password, const MailLimits &limits = {});

/// The ports on which mail is handed in (RFC 6409, RFC 8314).
inline constexpr int startTlsPort = 587;
inline constexpr int tlsPort = 465;

/// The servers with the usual names of that address's domain ("smtp." and "mail.") that answer, encrypted and with a
/// good certificate, on the two ports; in the order of preference, without a user. Empty for an address without a
/// domain.
QList<MailServer> findMailServers(const QString &address, int startTls = startTlsPort, int tls = tlsPort);

} // namespace lumora
