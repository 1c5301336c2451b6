#include "support/SmtpServer.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QThread>
#include <stdexcept>

namespace lumora::test {

namespace {

/// An authority (ca.pem) and its certificates: good, expired, wrong (another name), and one signed by itself (self).
/// Each NAME.pem holds certificate and key. Made once for a program.
QString certificates() {
    static const QTemporaryDir folder("/tmp/lumora-certificates-XXXXXX"); // whatever a test does with TMPDIR
    static bool made = false;
    if (made) {
        return folder.path();
    }
    made = true;
    const char *script = R"(set -e; cd "$0"
key() { openssl ecparam -name prime256v1 -genkey -noout -out $1.key; }
key ca; openssl req -x509 -new -key ca.key -subj "/CN=Test authority" -days 2 -out ca.pem
sign() { # NAME HOSTS DAYS
    key $1; openssl req -new -key $1.key -subj "/CN=$1" -out $1.csr
    printf 'subjectAltName=%s\n' "$2" > $1.ext
    openssl x509 -req -in $1.csr -CA ca.pem -CAkey ca.key -CAcreateserial -days $3 -extfile $1.ext -out $1.crt
    cat $1.crt $1.key > $1.pem; }
sign good DNS:localhost,DNS:smtp.localhost,DNS:mail.localhost 2
sign expired DNS:localhost 0
sign wrong DNS:mail.other.example 2
key self; openssl req -x509 -new -key self.key -subj /CN=localhost -addext subjectAltName=DNS:localhost -days 2 -out self.crt
cat self.crt self.key > self.pem)";
    QProcess shell;
    shell.setProcessChannelMode(QProcess::MergedChannels);
    shell.start("sh", {"-c", script, folder.path()});
    if (!shell.waitForFinished() || shell.exitCode() != 0) {
        throw std::runtime_error("openssl: " + shell.readAll().toStdString());
    }
    qputenv("SSL_CERT_FILE", QFile::encodeName(folder.filePath("ca.pem")));
    return folder.path();
}

QByteArray unfolded(QByteArray header) {
    return header.replace("\r\n ", " ").replace("\r\n\t", " ");
}

QByteArray decoded(const QByteArray &part) {
    const qsizetype gap = part.indexOf("\r\n\r\n");
    const QByteArray header = part.left(gap).toLower();
    QByteArray body = part.mid(gap + 4);
    if (header.contains("base64")) {
        return QByteArray::fromBase64(body);
    }
    if (header.contains("quoted-printable")) {
        body.replace("=\r\n", "").replace('%', "%25").replace('=', '%');
        return QByteArray::fromPercentEncoding(body);
    }
    return body;
}

} // namespace

SmtpServer::SmtpServer(const QStringList &faults) : m_faults(faults) {
    const QDir made(certificates());
    for (const QString &pem : made.entryList({"*.pem"})) {
        QFile::copy(made.filePath(pem), m_folder.filePath(pem));
    }
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const QString script = qEnvironmentVariable("LUMORA_SOURCE") + "/tests/support/smtp-server.py";
    m_process.start("/usr/bin/python3", QStringList{script, m_folder.path()} + faults);
    QElapsedTimer clock;
    clock.start();
    while (m_port == 0 && m_process.state() != QProcess::NotRunning && !clock.hasExpired(30'000)) {
        QThread::msleep(5);
        m_process.waitForFinished(1);
        m_port = file("port").toInt();
    }
    if (m_port == 0) {
        throw std::runtime_error("the mail server of the test does not start");
    }
}

SmtpServer::~SmtpServer() {
    m_process.kill();
    m_process.waitForFinished();
}

MailServer SmtpServer::settings() const {
    MailServer server{"localhost", m_port, MailSecurity::None, {}};
    if (m_faults.contains("tls")) {
        server.security = MailSecurity::Tls;
    } else if (m_faults.contains("starttls")) {
        server.security = MailSecurity::StartTls;
    }
    if (m_faults.contains("login")) {
        server.user = "anna";
    }
    return server;
}

QByteArray SmtpServer::file(const QString &name) const {
    return contents(m_folder.filePath(name));
}

QStringList SmtpServer::commands() const {
    return QString::fromUtf8(file("commands")).split('\n', Qt::SkipEmptyParts);
}

QList<ReceivedMail> SmtpServer::mails() const {
    QList<ReceivedMail> mails;
    for (int number = 1; QFile::exists(m_folder.filePath(QString("%1.envelope").arg(number))); ++number) {
        ReceivedMail mail;
        mail.recipients = QString::fromUtf8(file(QString("%1.envelope").arg(number))).split('\n');
        mail.recipients.removeLast(); // behind the last line's end
        mail.sender = mail.recipients.takeFirst();
        mail.raw = file(QString("%1.eml").arg(number));
        const qsizetype gap = mail.raw.indexOf("\r\n\r\n");
        mail.header = unfolded(mail.raw.left(gap)).replace("\r\n", "\n").split('\n');
        static const QRegularExpression boundary("boundary=\"?([^\";\r\n]+)");
        const QString text = QString::fromLatin1(mail.raw);
        const QString mark = "--" + boundary.match(text).captured(1);
        const QStringList parts = text.split("\r\n" + mark);
        if (parts.size() >= 3) {
            mail.html = QString::fromUtf8(decoded(parts[1].toLatin1()));
            mail.attachment = decoded(parts[2].toLatin1());
            mail.attachmentField = unfolded(parts[2].section("\r\n\r\n", 0, 0).toLatin1());
        }
        mails << mail;
    }
    return mails;
}

QString ReceivedMail::field(const QByteArray &name) const {
    for (const QByteArray &line : header) {
        if (!line.startsWith(name + ": ")) {
            continue;
        }
        QString value = QString::fromUtf8(line.mid(name.size() + 2));
        value.replace(QRegularExpression("\\?=\\s+=\\?"), "?==?");
        static const QRegularExpression word("=\\?UTF-8\\?B\\?([^?]*)\\?=");
        for (auto match = word.match(value); match.hasMatch(); match = word.match(value)) {
            value.replace(match.capturedStart(), match.capturedLength(),
                          QString::fromUtf8(QByteArray::fromBase64(match.captured(1).toLatin1())));
        }
        return value;
    }
    return {};
}

} // namespace lumora::test
