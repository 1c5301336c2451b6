// The mail server's window, with real servers to try, and what the options keep of it.
#include "options/frmMailServer.h"

#include "devices/mail/MailPasswords.h"
#include "options/OptionsTabs.h"
#include "options/frmOptions.h"
#include "support/SettingsFile.h"
#include "support/ShellCheck.h"
#include "support/SmtpServer.h"
#include "support/TextCheck.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTest>

namespace lumora {
namespace {

using test::SmtpServer;

const QString password = QString::fromUtf8("öffne dich!");

class MailServerWindow : public test::Shell {
  protected:
    void SetUp() override {
        Shell::SetUp();
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"); // no keyring, least of all the user's own
    }
    static void click(QWidget &window, const char *button) {
        EXPECT_TRUE(window.findChild<QAbstractButton *>(button)->isEnabled()) << button;
        window.findChild<QAbstractButton *>(button)->click();
    }
    static bool isEnabled(const QWidget &window, const char *name) {
        return window.findChild<QWidget *>(name)->isEnabled();
    }
    /// What the window says once its trial is over.
    QString answer(const QWidget &window) const {
        const auto *label = window.findChild<QLabel *>("lblTrial");
        const QStringList waiting = {context.texts.text("MailTrying"), context.texts.text("MailLooking")};
        EXPECT_TRUE(QTest::qWaitFor([&] { return !waiting.contains(label->text()); }, 60'000));
        return label->text();
    }
};

TEST_F(MailServerWindow, TryItSaysInPlainWordsWhatIsWrong) {
    const SmtpServer login({"tls", "login"}), expired({"tls", "cert=expired"}), plain;
    MailServer encrypted = plain.settings();
    encrypted.security = MailSecurity::StartTls;
    MailServer stranger = login.settings();
    stranger.user = "stranger";
    const struct {
        MailServer server;
        QString typed;
        const char *words;
    } cases[] = {
        {login.settings(), password, "MailWorks"},
        {plain.settings(), {}, "MailWorks"},
        {login.settings(), "guess", "StatusMailWrongPassword"},
        {stranger, {}, "StatusMailWrongPassword"}, // no keyring knows one
        {expired.settings(), {}, "StatusMailBadCertificate"},
        {encrypted, {}, "StatusMailNotEncrypted"},
        {{"localhost", 1, MailSecurity::Tls}, {}, "StatusMailNoAnswer"},
        {{"nowhere.invalid"}, {}, "StatusMailNotFound"},
        {{"no name"}, {}, "StatusMailNoServer"},
    };
    for (const auto &one : cases) {
        frmMailServer window(context, one.server, one.typed, "anna@school.example", nullptr);
        window.show();
        click(window, "cmdTry");
        EXPECT_FALSE(isEnabled(window, "cmdTry")) << "one at a time";
        EXPECT_EQ(answer(window), context.texts.text(one.words)) << one.words;
        EXPECT_TRUE(isEnabled(window, "cmdTry"));
    }
    frmMailServer closed(context, login.settings(), "guess", {}, nullptr);
    click(closed, "cmdTry"); // and the window goes before the answer comes
}

TEST_F(MailServerWindow, FindItLooksWhereNoServerIsNamed) {
    frmMailServer window(context, {}, {}, "anna@school.localhost", nullptr);
    window.show();
    EXPECT_FALSE(isEnabled(window, "cmdTry"));
    click(window, "cmdFind");
    EXPECT_EQ(answer(window), context.texts.text("MailNothingFound"));
    Q_EMIT window.findChild<MailTrial *>()->found({{"mail.school.localhost", 465, MailSecurity::Tls, {}},
                                                   {"mail.school.localhost", 587, MailSecurity::StartTls, {}}});
    EXPECT_EQ(answer(window), "mail.school.localhost has answered (port 465, TLS)\n"
                              "mail.school.localhost has answered (port 587, STARTTLS)");
    EXPECT_EQ(window.server(), (MailServer{"mail.school.localhost", 465, MailSecurity::Tls, "anna@school.localhost"}));
    EXPECT_FALSE(isEnabled(window, "cmdFind")) << "there is one now";
    window.findChild<QLineEdit *>("txtServer")->clear();
    EXPECT_TRUE(isEnabled(window, "cmdFind"));
    frmMailServer nobody(context, {}, {}, "you@example.com", nullptr);
    EXPECT_FALSE(isEnabled(nobody, "cmdFind")) << "an address is needed";
}

TEST_F(MailServerWindow, TheEncryptionBringsItsPort) {
    frmMailServer window(context, {"localhost", 2525, MailSecurity::StartTls, "anna"}, {}, {}, nullptr);
    window.show();
    auto *security = window.findChild<QComboBox *>("cboSecurity");
    const auto *port = window.findChild<QSpinBox *>("txtPort");
    EXPECT_EQ(port->value(), 2525);
    const struct {
        Qt::Key key;
        int port;
        bool password;
    } steps[] = {{Qt::Key_Down, 465, true}, {Qt::Key_Up, 587, true}, {Qt::Key_Up, 25, false}};
    for (const auto &step : steps) {
        QTest::keyClick(security, step.key);
        EXPECT_EQ(port->value(), step.port);
        EXPECT_EQ(isEnabled(window, "txtPassword"), step.password);
        EXPECT_EQ(isEnabled(window, "txtUser"), step.password);
    }
}

TEST_F(MailServerWindow, TheOptionsKeepItAndThePasswordNeverInTheFile) {
    for (const bool take : {false, true}) {
        test::writeSetting(context, "E-mail", "Value", "1");
        test::writeSetting(context, "Sender", "Address", "anna@school.example");
        frmOptions options(context, nullptr, "/nonexistent");
        options.show();
        options.findChild<OptionsTabs *>("TabStrip1")->setCurrent(3);
        QTest::keyClick(options.findChild<QComboBox *>("cboMailSize"), Qt::Key_Up);
        click(options, "cmdMailServer");
        auto *window = options.findChild<frmMailServer *>();
        ASSERT_NE(window, nullptr);
        QTest::keyClicks(window->findChild<QLineEdit *>("txtServer"), " smtp.school.example ");
        QTest::keyClicks(window->findChild<QLineEdit *>("txtUser"), "anna");
        QTest::keyClicks(window->findChild<QLineEdit *>("txtPassword"), "sesame");
        click(*window, "cmdOK");
        EXPECT_EQ(test::setting(context, "Mail Server", "Server", ""), "") << "the options have not said OK yet";
        click(options, take ? "cmdOK" : "cmdCancel");
        const MailServer kept{"smtp.school.example", 587, MailSecurity::StartTls, "anna"};
        EXPECT_EQ(context.fields.mailServer, take ? kept : MailServer());
        EXPECT_EQ(context.fields.mailSize, take ? MailSize::Small : MailSize::Medium);
        QFile file(context.installation.settingsFile());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_FALSE(file.readAll().contains("sesame"));
        QString found = "not asked";
        mailPasswords::find(kept, &options, [&](const QString &known) { found = known; });
        EXPECT_TRUE(QTest::qWaitFor([&] { return found != "not asked"; }, 40'000));
        EXPECT_EQ(found, take ? "sesame" : "");
    }
}

TEST_F(MailServerWindow, ShowsItsTexts) {
    ASSERT_TRUE(test::writeChangedLanguageFile(m_folder.filePath("language.ini")));
    AppContext translated(Installation{m_folder.path()});
    frmMailServer window(translated, {}, {}, {}, nullptr);
    EXPECT_EQ(test::textsNotShown(window), QStringList());
}

} // namespace
} // namespace lumora
