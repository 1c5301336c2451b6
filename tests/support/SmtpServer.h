// A real mail server on the loopback device, smtp-server.py beside this file, with certificates made for the test.
#pragma once

#include "base/MailServer.h"

#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace lumora::test {

struct ReceivedMail {
    QString sender;
    QStringList recipients;
    QByteArray raw;             ///< as it came
    QByteArrayList header;      ///< one unfolded field each
    QString html;               ///< the first part, decoded
    QByteArray attachment;      ///< the second part, decoded
    QByteArray attachmentField; ///< its header
    /// The value of a header field, encoded words decoded; empty without one.
    QString field(const QByteArray &name) const;
};

class SmtpServer {
  public:
    /// Starts the server with these faults, see smtp-server.py, and waits for its port. From then on this program
    /// trusts the authority that has signed its certificates, and no other.
    explicit SmtpServer(const QStringList &faults = {});
    ~SmtpServer();

    int port() const { return m_port; }
    /// How to reach it as "localhost", with the encryption that its faults name.
    MailServer settings() const;
    /// What clients have said, one line each, "+" before what came encrypted.
    QStringList commands() const;
    QList<ReceivedMail> mails() const;

  private:
    QByteArray file(const QString &name) const;

    QTemporaryDir m_folder;
    QStringList m_faults;
    QProcess m_process;
    int m_port = 0;
};

} // namespace lumora::test
