#include "devices/mail/Smtp.h"

#include "base/LateLibrary.h"
#include "base/OwnThread.h"
#include "base/TaskControl.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <algorithm>
#include <array>
#include <curl/curl.h>
#include <future>
#include <memory>
#include <mutex>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace lumora {

namespace {

// Loading all that it needs for its many protocols takes several milliseconds.
const LateLibrary curl("curl", 4);
LUMORA_LATE(curl, curl_easy_cleanup);
LUMORA_LATE(curl, curl_easy_getinfo);
LUMORA_LATE(curl, curl_easy_init);
LUMORA_LATE(curl, curl_easy_perform);
LUMORA_LATE(curl, curl_easy_setopt);
LUMORA_LATE(curl, curl_easy_strerror);
LUMORA_LATE(curl, curl_global_init);
LUMORA_LATE(curl, curl_mime_addpart);
LUMORA_LATE(curl, curl_mime_data);
LUMORA_LATE(curl, curl_mime_encoder);
LUMORA_LATE(curl, curl_mime_filedata);
LUMORA_LATE(curl, curl_mime_filename);
LUMORA_LATE(curl, curl_mime_free);
LUMORA_LATE(curl, curl_mime_init);
LUMORA_LATE(curl, curl_mime_type);
LUMORA_LATE(curl, curl_slist_append);
LUMORA_LATE(curl, curl_slist_free_all);

struct Release {
    void operator()(CURL *handle) const { curl_easy_cleanup(handle); }
    void operator()(curl_slist *list) const { curl_slist_free_all(list); }
    void operator()(curl_mime *mime) const { curl_mime_free(mime); }
};

/// A list that libcurl keeps no copy of.
class Lines {
  public:
    void add(const QByteArray &line) {
        curl_slist *grown = curl_slist_append(m_list.get(), line.constData());
        if (grown != nullptr) {
            (void)m_list.release();
            m_list.reset(grown);
        }
    }
    curl_slist *get() const { return m_list.get(); }

  private:
    std::unique_ptr<curl_slist, Release> m_list;
};

/// The sockets that are open. A task that was stopped shuts them: libcurl would still wait for the server's answer to
/// its good-bye.
class Sockets {
  public:
    static curl_socket_t open(void *self, curlsocktype /*unused*/, curl_sockaddr *address) {
        const curl_socket_t socket = ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
        static_cast<Sockets *>(self)->m_open.push_back(socket);
        return socket;
    }
    static int close(void *self, curl_socket_t socket) {
        std::erase(static_cast<Sockets *>(self)->m_open, socket);
        return ::close(socket);
    }
    void shut() const {
        for (const curl_socket_t socket : m_open) {
            ::shutdown(socket, SHUT_RDWR);
        }
    }

  private:
    std::vector<curl_socket_t> m_open;
};

/// Tells the task how far it is and asks it whether it was stopped.
int progressed(void *sockets, curl_off_t, curl_off_t, curl_off_t total, curl_off_t sent) {
    TaskControl *control = TaskControl::current();
    if (control == nullptr) {
        return 0;
    }
    if (total > 0) {
        // The last hundredth is the server's word that it has the mail.
        control->setProgress(std::min(sent, total) * 99, total * 100);
    }
    if (control->isCancelled()) {
        static_cast<Sockets *>(sockets)->shut();
        return 1;
    }
    return 0;
}

size_t dropped(char * /*unused*/, size_t size, size_t count, void * /*unused*/) {
    return size * count;
}

MailFault faultOfReply(long reply, const QString &reason) {
    switch (reply) {
    case 523: // RFC 4468
    case 552:
        return MailFault::TooLarge;
    case 530:
    case 534:
    case 535:
    case 538:
        return MailFault::WrongPassword;
    default:
        break;
    }
    return reason.startsWith("RCPT")   ? MailFault::AddressRefused
           : reason.startsWith("MAIL") ? MailFault::SenderRefused
                                       : MailFault::Lost;
}

MailFault faultOf(CURLcode code, long reply, const QString &reason) {
    switch (code) {
    case CURLE_OK:
        return MailFault::None;
    case CURLE_URL_MALFORMAT:
        return MailFault::NoServer;
    case CURLE_COULDNT_RESOLVE_HOST:
        return MailFault::NotFound;
    case CURLE_COULDNT_CONNECT:
    case CURLE_OPERATION_TIMEDOUT:
        return MailFault::NoAnswer;
    case CURLE_USE_SSL_FAILED:
    case CURLE_SSL_CONNECT_ERROR:
        return MailFault::NotEncrypted;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
        return MailFault::BadCertificate;
    case CURLE_LOGIN_DENIED:
        return MailFault::WrongPassword;
    case CURLE_READ_ERROR:
        return MailFault::NoPhoto;
    case CURLE_ABORTED_BY_CALLBACK:
        return MailFault::Cancelled;
    default:
        return faultOfReply(reply, reason);
    }
}

QByteArray addressOf(const MailServer &server) {
    QUrl url;
    url.setScheme(server.security == MailSecurity::Tls ? "smtps" : "smtp");
    url.setHost(server.host.trimmed(), QUrl::StrictMode);
    const bool good = !url.host().isEmpty() && server.port >= 1 && server.port <= 65535;
    url.setPort(good ? server.port : -1);
    return good ? url.toEncoded() : QByteArray();
}

/// One connection with one command or one mail.
class Session {
  public:
    Session(const MailServer &server, const QString &password, const MailLimits &limits)
        : m_url(addressOf(server)), m_user(server.user.toUtf8()), m_password(password.toUtf8()) {
        static std::once_flag once;
        std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
        m_handle.reset(curl_easy_init());
        set(CURLOPT_URL, m_url.constData());
        set(CURLOPT_PROTOCOLS_STR, "smtp,smtps");
        set(CURLOPT_PROXY, "");
        set(CURLOPT_NOSIGNAL, 1L);
        set(CURLOPT_QUICK_EXIT, 1L); // a name that is still being looked up does not hold back a task that was stopped
        set(CURLOPT_ERRORBUFFER, m_reason.data());
        set(CURLOPT_NOPROGRESS, 0L);
        set(CURLOPT_XFERINFOFUNCTION, &progressed);
        set(CURLOPT_XFERINFODATA, &m_sockets);
        set(CURLOPT_OPENSOCKETFUNCTION, &Sockets::open);
        set(CURLOPT_OPENSOCKETDATA, &m_sockets);
        set(CURLOPT_CLOSESOCKETFUNCTION, &Sockets::close);
        set(CURLOPT_CLOSESOCKETDATA, &m_sockets);
        set(CURLOPT_WRITEFUNCTION, &dropped); // an answer's text would go to the standard output
        set(CURLOPT_CONNECTTIMEOUT, static_cast<long>(limits.connect));
        set(CURLOPT_FTP_RESPONSE_TIMEOUT, static_cast<long>(limits.stall)); // of SMTP as well
        set(CURLOPT_LOW_SPEED_LIMIT, 1L);
        set(CURLOPT_LOW_SPEED_TIME, static_cast<long>(limits.stall));
        set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
        set(CURLOPT_SSL_VERIFYPEER, 1L);
        set(CURLOPT_SSL_VERIFYHOST, 2L);
        m_authorities = qgetenv("SSL_CERT_FILE");
        if (!m_authorities.isEmpty()) {
            set(CURLOPT_CAINFO, m_authorities.constData());
        }
        const bool encrypted = server.security != MailSecurity::None;
        set(CURLOPT_USE_SSL, static_cast<long>(encrypted ? CURLUSESSL_ALL : CURLUSESSL_NONE));
        if (server.needsPassword()) {
            set(CURLOPT_USERNAME, m_user.constData());
            set(CURLOPT_PASSWORD, m_password.constData());
        }
    }

    template <typename Value> void set(CURLoption option, Value value) {
        const CURLcode code =
            m_handle == nullptr ? CURLE_OUT_OF_MEMORY : curl_easy_setopt(m_handle.get(), option, value);
        if (m_failed == CURLE_OK) {
            m_failed = code;
        }
    }
    void need(CURLcode code) {
        if (m_failed == CURLE_OK) {
            m_failed = code;
        }
    }
    CURL *handle() const { return m_handle.get(); }
    bool isReady() const { return m_failed == CURLE_OK && !m_url.isEmpty(); }

    MailResult run() {
        const CURLcode code = m_url.isEmpty()        ? CURLE_URL_MALFORMAT
                              : m_failed != CURLE_OK ? m_failed
                                                     : curl_easy_perform(m_handle.get());
        long reply = 0;
        if (m_handle != nullptr) {
            curl_easy_getinfo(m_handle.get(), CURLINFO_RESPONSE_CODE, &reply);
        }
        const QString reason = QString::fromUtf8(m_reason.data());
        return {code, faultOf(code, reply, reason),
                reason.isEmpty() && code != CURLE_OK ? QString::fromUtf8(curl_easy_strerror(code)) : reason};
    }

  private:
    Sockets m_sockets; // outlives the handle, which closes them
    std::unique_ptr<CURL, Release> m_handle;
    const QByteArray m_url, m_user, m_password;
    QByteArray m_authorities;
    std::array<char, CURL_ERROR_SIZE> m_reason{};
    CURLcode m_failed = CURLE_OK;
};

QByteArray withMailLineBreaks(QString text) {
    return text.replace("\r\n", "\n").replace('\r', '\n').replace('\n', "\r\n").toUtf8();
}

MailResult withoutLibrary() {
    return {CURLE_FAILED_INIT, MailFault::Lost, QStringLiteral("libcurl is missing")};
}

MailResult refused(const QString &address, MailFault fault) {
    return {CURLE_BAD_FUNCTION_ARGUMENT, fault, QStringLiteral("not an address: ") + address};
}

} // namespace

MailResult sendMail(const MailServer &server, const QString &password, const MailMessage &message,
                    const MailLimits &limits) {
    if (!curl.isThere()) {
        return withoutLibrary();
    }
    const Mailbox sender = mailboxOf(message.sender);
    if (!canBeSent(sender)) {
        return refused(message.sender, MailFault::SenderRefused);
    }
    Lines recipients;
    for (const QString &piece : message.recipients) {
        const Mailbox recipient = mailboxOf(piece);
        if (!canBeSent(recipient)) {
            return refused(piece, MailFault::AddressRefused);
        }
        recipients.add(recipient.address.toUtf8());
    }
    Session session(server, password, limits);
    if (!session.isReady()) {
        return session.run();
    }
    const QByteArray from = sender.address.toUtf8();
    session.set(CURLOPT_MAIL_FROM, from.constData());
    session.set(CURLOPT_MAIL_RCPT, recipients.get());
    Lines header;
    for (const QByteArray &field : mailHeader(message, QDateTime::currentDateTime())) {
        header.add(field);
    }
    session.set(CURLOPT_HTTPHEADER, header.get());

    const std::unique_ptr<curl_mime, Release> mime(curl_mime_init(session.handle()));
    const QByteArray html = withMailLineBreaks(message.html);
    curl_mimepart *body = curl_mime_addpart(mime.get());
    session.need(curl_mime_data(body, html.constData(), static_cast<size_t>(html.size())));
    session.need(curl_mime_type(body, "text/html; charset=UTF-8"));
    session.need(curl_mime_encoder(body, "quoted-printable"));
    curl_mimepart *photo = curl_mime_addpart(mime.get());
    session.need(curl_mime_filedata(photo, QFile::encodeName(message.attachment).constData()));
    session.need(curl_mime_filename(photo, QFileInfo(message.attachment).fileName().toUtf8().constData()));
    session.need(curl_mime_type(photo, "image/jpeg"));
    session.need(curl_mime_encoder(photo, "base64"));
    session.set(CURLOPT_MIMEPOST, mime.get());

    MailResult result = session.run();
    if (result.ok() && TaskControl::current() != nullptr) {
        TaskControl::current()->setProgress(1, 1);
    }
    return result;
}

MailResult tryMailServer(const MailServer &server, const QString &password, const MailLimits &limits) {
    if (!curl.isThere()) {
        return withoutLibrary();
    }
    Session session(server, password, limits);
    if (session.isReady()) {
        session.set(CURLOPT_CUSTOMREQUEST, "NOOP");
        session.set(CURLOPT_NOBODY, 1L);
    }
    return session.run();
}

QList<MailServer> findMailServers(const QString &address, int startTls, int tls) {
    const QString domain = mailboxOf(address).address.section('@', 1).trimmed();
    if (domain.isEmpty()) {
        return {};
    }
    constexpr MailLimits limits{.connect = 8, .stall = 8};
    TaskControl *control = TaskControl::current();
    QList<MailServer> usual;
    std::vector<std::future<bool>> answers;
    for (const char *name : {"smtp.", "mail."}) {
        for (const MailSecurity security : {MailSecurity::StartTls, MailSecurity::Tls}) {
            const int port = security == MailSecurity::Tls ? tls : startTls;
            const MailServer server{name + domain, port, security, {}};
            usual << server;
            answers.push_back(inOwnThread([server, control, limits] {
                const TaskControl::Scope scope(control);
                return tryMailServer(server, {}, limits).ok();
            }));
        }
    }
    QList<MailServer> found;
    for (qsizetype i = 0; i < usual.size(); ++i) {
        if (answers[static_cast<size_t>(i)].get()) {
            found << usual[i];
        }
    }
    return found;
}

} // namespace lumora
