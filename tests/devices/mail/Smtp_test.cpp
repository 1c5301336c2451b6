// Handing mail to a real server: what it gets, and what each of its faults is called.
#include "devices/mail/Smtp.h"

#include "base/TaskControl.h"
#include "support/SmtpServer.h"
#include "support/TestPictures.h"

#include <QFile>
#include <QTemporaryDir>
#include <chrono>
#include <future>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using test::SmtpServer;

const QString password = QString::fromUtf8("öffne dich!");

class Smtp : public testing::Test {
  protected:
    void SetUp() override {
        message.attachment = m_folder.filePath("LU_Photo.jpg");
        ASSERT_TRUE(test::photoLike(400, 300).save(message.attachment, "JPEG", 88));
    }
    QByteArray photo() const {
        QFile in(message.attachment);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }

    MailMessage message{"anna@school.example", {"gran@home.example"}, "My Photo", "Hello!", {}};

  private:
    QTemporaryDir m_folder;
};

constexpr MailLimits shortLimits{.connect = 2, .stall = 1};

TEST_F(Smtp, EachEncryptionDeliversTheWholeMail) {
    for (const QStringList &faults : {QStringList{}, {"starttls"}, {"tls"}, {"starttls", "login"}, {"tls", "login"}}) {
        SCOPED_TRACE(faults.join(' ').toStdString());
        const SmtpServer server(faults);
        TaskControl control;
        const TaskControl::Scope scope(&control);
        const MailResult result = sendMail(server.settings(), password, message);
        EXPECT_TRUE(result.ok()) << qPrintable(result.reason);
        EXPECT_EQ(control.percent(), 100);
        ASSERT_EQ(server.mails().size(), 1);
        const test::ReceivedMail mail = server.mails().constFirst();
        EXPECT_EQ(mail.sender, "anna@school.example");
        EXPECT_EQ(mail.recipients, QStringList{"gran@home.example"});
        EXPECT_EQ(mail.field("From"), "anna@school.example");
        EXPECT_EQ(mail.field("To"), "gran@home.example");
        EXPECT_EQ(mail.field("Subject"), "My Photo");
        EXPECT_EQ(mail.field("Mime-Version") + mail.field("MIME-Version"), "1.0");
        EXPECT_TRUE(QDateTime::fromString(mail.field("Date"), Qt::RFC2822Date).isValid());
        EXPECT_TRUE(mail.field("Message-ID").endsWith("@school.example>"));
        EXPECT_EQ(mail.html, "Hello!");
        EXPECT_EQ(mail.attachment, photo()) << "bit by bit";
        EXPECT_TRUE(mail.attachmentField.contains("filename=\"LU_Photo.jpg\""));
        EXPECT_TRUE(mail.attachmentField.contains("image/jpeg"));
        EXPECT_EQ(server.commands().filter("AUTH").isEmpty(), !faults.contains("login"));
        for (const QString &command : server.commands().filter("AUTH")) {
            EXPECT_TRUE(command.startsWith('+')) << qPrintable(command);
        }
    }
}

TEST_F(Smtp, RecipientsGoOutInTheirOrderAndAsTheyAre) {
    const SmtpServer server;
    const QStringList cases[] = {
        {"a@x.example"},
        {"b@x.example", "a@x.example"},
        {"Gran <gran@home.example>", "\"Dr. Who, the\" <who@tardis.example>",
         QString::fromUtf8("Ünal Ö <u@x.example>")},
    };
    for (const QStringList &recipients : cases) {
        message.recipients = recipients;
        EXPECT_TRUE(sendMail(server.settings(), {}, message).ok());
    }
    const QList<test::ReceivedMail> mails = server.mails();
    ASSERT_EQ(mails.size(), 3);
    EXPECT_EQ(mails[0].recipients, cases[0]);
    EXPECT_EQ(mails[1].recipients, cases[1]);
    EXPECT_EQ(mails[1].field("To"), "b@x.example, a@x.example");
    EXPECT_EQ(mails[2].recipients, QStringList({"gran@home.example", "who@tardis.example", "u@x.example"}));
    EXPECT_EQ(mails[2].field("To"), QString::fromUtf8("\"Gran\" <gran@home.example>, \"Dr. Who, the\" "
                                                      "<who@tardis.example>, Ünal Ö <u@x.example>"));
    message.recipients = {"a@x.example", ""};
    EXPECT_EQ(sendMail(server.settings(), {}, message).fault, MailFault::AddressRefused);
    EXPECT_EQ(server.commands().filter("RCPT").last(3),
              QStringList({"RCPT TO:<u@x.example>", "RCPT TO:<a@x.example>", "RCPT TO:<>"}))
        << "the empty one is the server's to refuse";
    message.recipients = {" a@x.example"};
    sendMail(server.settings(), {}, message);
    EXPECT_EQ(server.commands().filter("RCPT").constLast(), "RCPT TO:< a@x.example>") << "blanks are kept";
}

TEST_F(Smtp, LettersOfAllLanguagesArrive) {
    const SmtpServer server({"utf8"});
    const QString all = QString::fromUtf8("Schöne Grüße, œuvre, Привет, 日本, مرحبا, \U0001F308").repeated(6);
    message.sender = QString::fromUtf8("Änne \"Ä\" Öz <anne@müller.example>");
    message.subject = all;
    message.html = all + "\r\nline\rline\nline\n.\n..\n" + QString(5000, QChar(0xE4)) + QString(3000, 'x');
    message.recipients.clear();
    for (int i = 0; i < 60; ++i) {
        message.recipients << QString("friend.number.%1@a-rather-long-name.example").arg(i);
    }
    const MailResult result = sendMail(server.settings(), {}, message);
    ASSERT_TRUE(result.ok()) << qPrintable(result.reason);
    const test::ReceivedMail mail = server.mails().constFirst();
    EXPECT_EQ(mail.sender, "anne@xn--mller-kva.example");
    EXPECT_EQ(mail.field("From"), QString::fromUtf8("Änne \"Ä\" Öz <anne@xn--mller-kva.example>"));
    EXPECT_EQ(mail.field("Subject"), all);
    EXPECT_EQ(mail.recipients, message.recipients);
    EXPECT_EQ(mail.html, QString(message.html).replace("\r\n", "\n").replace('\r', '\n').replace('\n', "\r\n"));
    EXPECT_EQ(mail.attachment, photo());
    for (const QByteArray &line : mail.raw.split('\n')) {
        EXPECT_LE(line.size() - 1, 998) << line.constData();
        EXPECT_TRUE(std::all_of(line.begin(), line.end(), [](char c) { return c > 0; })) << line.constData();
    }
}

TEST_F(Smtp, NothingThatIsWrittenBecomesACommandOrAField) {
    const QStringList tricks = {
        "\r\nRCPT TO:<evil@x.example>",
        "\nRCPT TO:<evil@x.example>",
        "\rRCPT TO:<evil@x.example>",
        "a@x.example\r\nDATA\r\nSubject: evil\r\n\r\n.\r\nQUIT",
        "a@x.example>\r\nRSET",
        "a@x.example> NOTIFY=SUCCESS",
        "a@x.example\nBcc: evil@x.example",
        "a@x.example\r\n\r\n<b>evil</b>",
        "\r\n.\r\nMAIL FROM:<evil@x.example>",
        "\n.\n",
        "\r\n.\n",
        "\n.\r\n",
        QString("a@x.example") + QChar(0) + "@evil.example",
        QString("a@x.example") + QChar(0) + "\r\nRSET",
        QString(QChar(0x85)) + "Bcc: evil@x.example",
        QString(QChar(0x2028)) + "Bcc: evil@x.example",
        "<a@x.example>\r\nBcc: evil@x.example",
        "name\r\nBcc: evil@x.example <a@x.example>",
        "=?UTF-8?B?DQpCY2M6IGV2aWxAeC5leGFtcGxl?=",
        "\"\r\nBcc: evil@x.example\" <a@x.example>",
        QString(2000, 'a') + "@x.example",
    };
    const SmtpServer server({"login", "tls", "utf8"});
    const QStringList verbs = {"EHLO", "AUTH", "MAIL", "RCPT", "DATA", "QUIT"};
    int sent = 0;
    for (const QString &trick : tricks) {
        for (int place = 0; place < 5; ++place) {
            MailMessage tricked = message;
            MailServer settings = server.settings();
            QString secret = password;
            (place == 0   ? tricked.sender
             : place == 1 ? tricked.recipients[0]
             : place == 2 ? tricked.subject
             : place == 3 ? tricked.html
                          : secret) = trick;
            sent += sendMail(settings, secret, tricked).ok() ? 1 : 0;
            settings.user = trick;
            EXPECT_FALSE(sendMail(settings, password, message).ok());
            settings.host = "localhost" + trick;
            EXPECT_FALSE(sendMail(settings, password, message).ok());
        }
    }
    EXPECT_GE(sent, 2 * tricks.size()) << "subject and text can hold anything";
    for (const QString &command : server.commands()) {
        EXPECT_FALSE(command.contains("evil") && !command.startsWith("+AUTH") && !command.startsWith("+MAIL FROM:<") &&
                     !command.startsWith("+RCPT TO:<"))
            << qPrintable(command);
        EXPECT_TRUE(command == "connection" || verbs.contains(command.mid(1, 4)) || command.contains('=') ||
                    !command.contains(' '))
            << qPrintable(command);
    }
    const QList<test::ReceivedMail> mails = server.mails();
    EXPECT_EQ(mails.size(), sent) << "one mail each";
    for (const test::ReceivedMail &mail : mails) {
        EXPECT_EQ(mail.recipients.size(), 1);
        EXPECT_EQ(mail.header.size(), 7) << mail.raw.left(1000).constData();
        EXPECT_EQ(mail.attachment, photo());
    }
}

TEST_F(Smtp, EachFaultHasItsName) {
    const struct {
        QStringList faults;
        MailFault fault;
        bool stalls = false;
    } cases[] = {
        {{"refuse=gran@home.example"}, MailFault::AddressRefused},
        {{"drop=greeting"}, MailFault::Lost},
        {{"drop=data"}, MailFault::Lost},
        {{"drop=dot"}, MailFault::Lost},
        {{"stall=greeting"}, MailFault::NoAnswer, true},
        {{"stall=mail"}, MailFault::NoAnswer, true},
        {{"stall=dot"}, MailFault::NoAnswer, true},
        {{"limit=20000"}, MailFault::TooLarge},
        {{"tls", "cert=expired"}, MailFault::BadCertificate},
        {{"tls", "cert=wrong"}, MailFault::BadCertificate},
        {{"tls", "cert=self"}, MailFault::BadCertificate},
        {{"starttls", "cert=expired"}, MailFault::BadCertificate},
        {{"starttls", "cert=wrong"}, MailFault::BadCertificate},
        {{"starttls", "cert=self"}, MailFault::BadCertificate},
        {{"tls", "old"}, MailFault::NotEncrypted},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.faults.join(' ').toStdString());
        const SmtpServer server(one.faults);
        const MailResult result = sendMail(server.settings(), {}, message, one.stalls ? shortLimits : MailLimits());
        EXPECT_EQ(result.fault, one.fault) << result.code << ' ' << qPrintable(result.reason);
        EXPECT_NE(result.code, 0);
        EXPECT_EQ(server.mails().size(), 0);
    }
}

TEST_F(Smtp, APasswordIsSentOnlyEncrypted) {
    const SmtpServer plain; // STARTTLS is taken away
    MailServer settings = plain.settings();
    settings.user = "anna";
    settings.security = MailSecurity::StartTls;
    EXPECT_EQ(sendMail(settings, password, message).fault, MailFault::NotEncrypted);
    settings.security = MailSecurity::None;
    EXPECT_TRUE(sendMail(settings, password, message).ok()) << "without a log-in";
    settings.security = MailSecurity::Tls;
    EXPECT_EQ(sendMail(settings, password, message).fault, MailFault::NotEncrypted);
    EXPECT_TRUE(plain.commands().filter("AUTH").isEmpty());

    const SmtpServer wrong({"tls", "login", "cert=wrong"});
    EXPECT_EQ(sendMail(wrong.settings(), password, message).fault, MailFault::BadCertificate);
    EXPECT_TRUE(wrong.commands().filter("AUTH").isEmpty());

    const SmtpServer server({"starttls", "login"});
    settings = server.settings();
    EXPECT_EQ(sendMail(settings, "guess", message).fault, MailFault::WrongPassword);
    EXPECT_EQ(sendMail(settings, {}, message).fault, MailFault::WrongPassword);
    settings.user.clear();
    EXPECT_EQ(sendMail(settings, password, message).fault, MailFault::WrongPassword) << "a log-in is needed";
    EXPECT_TRUE(sendMail(server.settings(), password, message).ok()) << "and the next try works";
}

TEST_F(Smtp, WithoutAServerNothingHangs) {
    const struct {
        MailServer server;
        MailFault fault;
    } cases[] = {
        {{}, MailFault::NoServer},
        {{"localhost", 0}, MailFault::NoServer},
        {{"localhost", 70000}, MailFault::NoServer},
        {{"not a host"}, MailFault::NoServer},
        {{"user:secret@localhost/x?y"}, MailFault::NoServer},
        {{"localhost", 1}, MailFault::NoAnswer}, // nothing listens there
        {{"nowhere.invalid"}, MailFault::NotFound},
    };
    for (const auto &one : cases) {
        const MailResult result = sendMail(one.server, {}, message);
        EXPECT_EQ(result.fault, one.fault) << qPrintable(one.server.host) << ' ' << qPrintable(result.reason);
        EXPECT_NE(result.code, 0);
    }
    const SmtpServer server;
    message.attachment += ".gone";
    EXPECT_EQ(sendMail(server.settings(), {}, message).fault, MailFault::NoPhoto);
    EXPECT_EQ(server.mails().size(), 0);
}

TEST_F(Smtp, ItCanBeStoppedAtEveryPoint) {
    for (const char *point : {"stall=greeting", "stall=mail", "stall=dot"}) {
        const SmtpServer server({point});
        TaskControl control;
        auto result = std::async(std::launch::async, [&] {
            const TaskControl::Scope scope(&control);
            return sendMail(server.settings(), {}, message);
        });
        while (server.commands().isEmpty()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        control.cancel();
        EXPECT_EQ(result.get().fault, MailFault::Cancelled) << point;
        EXPECT_EQ(server.mails().size(), 0);
    }
}

TEST_F(Smtp, ATrialLogsInAndSendsNothing) {
    const SmtpServer server({"starttls", "login"});
    EXPECT_TRUE(tryMailServer(server.settings(), password).ok());
    EXPECT_EQ(tryMailServer(server.settings(), "guess").fault, MailFault::WrongPassword);
    const SmtpServer plain;
    EXPECT_TRUE(tryMailServer(plain.settings(), {}).ok());
    EXPECT_TRUE((server.commands() + plain.commands()).filter("MAIL").isEmpty());
}

TEST_F(Smtp, TheUsualNamesOfADomainAreFound) {
    const SmtpServer startTls({"starttls", "login"});
    const SmtpServer tls({"tls", "login"});
    const SmtpServer plain, expired({"tls", "cert=expired"});
    EXPECT_EQ(findMailServers("anna@localhost", startTls.port(), tls.port()),
              (QList<MailServer>{{"smtp.localhost", startTls.port(), MailSecurity::StartTls, {}},
                                 {"smtp.localhost", tls.port(), MailSecurity::Tls, {}},
                                 {"mail.localhost", startTls.port(), MailSecurity::StartTls, {}},
                                 {"mail.localhost", tls.port(), MailSecurity::Tls, {}}}));
    EXPECT_TRUE(findMailServers("anna@localhost", plain.port(), expired.port()).isEmpty());
    EXPECT_TRUE(findMailServers("anna").isEmpty());
    EXPECT_TRUE(findMailServers("anna@nowhere.invalid").isEmpty());
}

} // namespace
} // namespace lumora
