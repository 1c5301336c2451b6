// Mailing the photo: the temporary file, the window, and the whole way to a real server and back.
#include "output/mail/Postman.h"

#include "devices/mail/MailPasswords.h"
#include "imaging/PictureFile.h"
#include "output/mail/MailPhoto.h"
#include "output/mail/frmEmail.h"
#include "output/mail/frmMailPassword.h"
#include "session/LoadSettings.h"
#include "support/SettingsFile.h"
#include "support/ShellCheck.h"
#include "support/SmtpServer.h"
#include "support/TestFiles.h"
#include "support/TestPictures.h"
#include "support/TextCheck.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

namespace lumora {
namespace {

using test::contents;
using test::SmtpServer;

class Mail : public test::Shell {
  protected:
    void SetUp() override {
        Shell::SetUp();
        ASSERT_TRUE(QDir(m_folder.path()).mkdir("tmp"));
        qputenv("TMPDIR", m_folder.filePath("tmp").toUtf8());
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"); // no keyring, least of all the user's own
        test::writeSetting(context, "Sender", "Address", "anna@school.example");
        context.photo.openPicture({.picture = m_picture, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
    }
    void TearDown() override { qunsetenv("TMPDIR"); }

    void use(const MailServer &server) {
        test::writeSetting(context, "Mail Server", "Server", server.host);
        test::writeSetting(context, "Mail Server", "Port", QString::number(server.port));
        test::writeSetting(context, "Mail Server", "Security", QString::number(static_cast<int>(server.security)));
        test::writeSetting(context, "Mail Server", "User", server.user);
        LoadSettingsFromINIFile(context);
    }
    QString attachment() const { return m_folder.filePath("tmp/LU_Photo.jpg"); }

    /// Waits for a modal window and hands it to `answer`.
    static void whenModal(const std::function<void(QWidget &)> &answer) {
        QTimer::singleShot(5, qApp, [answer] {
            QWidget *window = QApplication::activeModalWidget();
            window != nullptr && window->isVisible() ? answer(*window) : whenModal(answer);
        });
    }
    static void click(QWidget &window, const char *button) { window.findChild<QAbstractButton *>(button)->click(); }

    /// Presses the E-mail button and fills the window.
    void mailTo(const QString &recipients, const QString &message = "Hello!") {
        whenModal([=](QWidget &window) {
            EXPECT_EQ(window.objectName(), "frmEmail");
            window.findChild<QLineEdit *>("txtAddress")->setText(recipients);
            window.findChild<QPlainTextEdit *>("txtMessage")->setPlainText(message);
            click(window, "cmdOK");
        });
        m_postman.emailPhoto();
    }
    /// The message box that says how it went: icon and text.
    std::pair<QMessageBox::Icon, QString> outcome() {
        QMessageBox *box = nullptr;
        EXPECT_TRUE(QTest::qWaitFor([&] { return (box = m_owner.findChild<QMessageBox *>()) != nullptr; }, 60'000));
        if (box == nullptr) {
            return {};
        }
        EXPECT_EQ(box->windowTitle(), " ");
        auto said = std::pair(box->icon(), box->text());
        delete box;
        return said;
    }

    const QImage m_picture = test::photoLike(300, 200);
    QWidget m_owner;
    Postman m_postman{context, &m_owner};
    const std::pair<QMessageBox::Icon, QString> m_sent{QMessageBox::Information, "E-mail Sent!"};
};

std::pair<QMessageBox::Icon, QString> failure(int number) {
    return {QMessageBox::Critical, QString("Error %1\n\nUnable to send e-mail, this may be due to the recipients SMTP "
                                           "settings. Please try again.")
                                       .arg(number)};
}

// --- The file -------------------------------------------------------------------------------------------------------

TEST_F(Mail, ThePhotoIsReducedAsTheOptionSays) {
    const struct {
        QSize photo;
        MailSize size;
        QSize mailed;
    } cases[] = {
        {{4000, 3000}, MailSize::Small, {1024, 768}},   {{4000, 3000}, MailSize::Medium, {2048, 1536}},
        {{4000, 3000}, MailSize::AsItIs, {4000, 3000}}, {{300, 4000}, MailSize::Medium, {154, 2048}},
        {{4000, 1}, MailSize::Small, {1024, 1}},        {{2048, 100}, MailSize::Medium, {2048, 100}},
        {{300, 200}, MailSize::Small, {300, 200}},
    };
    for (const auto &one : cases) {
        const QImage photo = test::photoLike(one.photo.width(), one.photo.height());
        const PictureRead read = readPictureFromData(mailJpeg(reducedForMail(photo, one.size)));
        EXPECT_EQ(read.picture.size(), one.mailed) << one.photo.width() << " x " << one.photo.height();
    }
    const QByteArray jpeg = mailJpeg(test::photoLike(300, 200));
    EXPECT_EQ(jpeg, encodeJpeg(test::photoLike(300, 200), 88));
    for (const char *mark : {"Exif", "http://ns.adobe.com", "ICC_PROFILE", "Photoshop"}) {
        EXPECT_FALSE(jpeg.contains(mark)) << mark;
    }
    EXPECT_TRUE(mailJpeg({}).isEmpty());
}

TEST_F(Mail, TheFileIsPrivateAndNeverWrittenThroughALink) {
    const QString victim = m_folder.filePath("diary.txt");
    const auto putOther = [&](const std::function<void()> &other) {
        QFile::remove(attachment());
        other();
        QString path = writeMailFile("photo");
        EXPECT_EQ(contents(path), "photo");
        EXPECT_FALSE(QFileInfo(path).isSymLink());
        const QFile::Permissions others(0x00FF);
        EXPECT_EQ(QFileInfo(path).permissions() & (QFile::ExeOwner | others), QFile::Permissions());
        EXPECT_TRUE(QFileInfo(path).isReadable() && QFileInfo(path).isWritable());
        EXPECT_EQ(QFileInfo(path).fileName(), "LU_Photo.jpg");
        return path;
    };
    EXPECT_EQ(putOther([] {}), attachment());
    EXPECT_EQ(putOther([&] {
                  QFile old(attachment());
                  EXPECT_TRUE(old.open(QIODevice::WriteOnly) && old.write("an older and longer photo") > 0);
                  old.setPermissions(QFile::Permissions(0x7777));
              }),
              attachment());
    EXPECT_EQ(putOther([&] {
                  QFile diary(victim);
                  EXPECT_TRUE(diary.open(QIODevice::WriteOnly) && diary.write("Dear diary") > 0);
                  EXPECT_TRUE(QFile::link(victim, attachment()));
              }),
              attachment());
    EXPECT_EQ(contents(victim), "Dear diary");
    const QString elsewhere = putOther([&] { EXPECT_TRUE(QDir().mkdir(attachment())); });
    EXPECT_TRUE(elsewhere.startsWith(m_folder.filePath("tmp/lumora-mail-"))) << "the name is taken";
    removeMailFile(elsewhere);
    EXPECT_EQ(QDir(m_folder.filePath("tmp")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{"LU_Photo.jpg"});
    qputenv("TMPDIR", victim.toUtf8()); // no folder
    EXPECT_EQ(putOther([] {}), cacheFolder() + "/LU_Photo.jpg");
    removeMailFile(cacheFolder() + "/LU_Photo.jpg");
    EXPECT_EQ(writeMailFile({}), "");
}

// --- The window -----------------------------------------------------------------------------------------------------

TEST_F(Mail, TheWindowHasItsTextsFromTheSettingsFile) {
    const struct {
        const char *control, *section, *standard;
    } rows[] = {{"lblYourAddress", "DlgEmailYourEmail", "Your Address:"},
                {"lblSend", "DlgEmailSendto", "Send to:"},
                {"lblMessage", "DlgEmailMessage", "Your Message:"},
                {"lblTitle", "DlgEmailTitle", "E-mail Photo"}};
    for (const bool changed : {false, true}) {
        if (changed) {
            for (const auto &row : rows) {
                test::writeSetting(context, row.section, "caption", QString("ß ") + row.section);
            }
        }
        frmEmail window(context, m_picture, nullptr);
        window.show();
        for (const auto &row : rows) {
            EXPECT_EQ(window.findChild<QLabel *>(row.control)->text(),
                      changed ? QString("ß ") + row.section : QString(row.standard));
        }
        EXPECT_EQ(window.findChild<QLineEdit *>("txtYourAddress")->text(), "anna@school.example");
    }
    ASSERT_TRUE(QFile::remove(m_folder.filePath("Lumora.ini"))); // whose texts go first
    ASSERT_TRUE(test::writeChangedLanguageFile(m_folder.filePath("language.ini")));
    AppContext translated(Installation{m_folder.path()});
    frmEmail window(translated, m_picture, nullptr);
    EXPECT_EQ(test::textsNotShown(window), QStringList());
    frmMailPassword question(translated, {"localhost", 587, MailSecurity::Tls, "anna"}, nullptr);
    EXPECT_EQ(test::textsNotShown(question), QStringList());
}

TEST_F(Mail, OnlyOKWithAnAddressPassesTheRequestOn) {
    test::writeSetting(context, "Recipient", "Address", "old@home.example");
    {
        frmEmail window(context, m_picture, nullptr);
        window.show();
        auto *address = window.findChild<QLineEdit *>("txtAddress");
        EXPECT_EQ(address->text(), "old@home.example") << "offered again";
        EXPECT_EQ(window.focusWidget(), window.findChild<QPlainTextEdit *>("txtMessage"));
        address->clear();
        click(window, "cmdOK");
        EXPECT_TRUE(window.isVisible()) << "nothing happens";
        address->setText("new@home.example");
        click(window, "cmdCancel");
        EXPECT_FALSE(window.isVisible());
        EXPECT_EQ(context.fields.txtEmailAddress + context.fields.txtMessage, "");
        EXPECT_EQ(test::setting(context, "Recipient", "Address", ""), "old@home.example");
    }
    frmEmail window(context, m_picture, nullptr);
    window.show();
    auto *address = window.findChild<QLineEdit *>("txtAddress");
    address->setText(" a@x.example;b@x.example; ");
    QTest::keyClicks(window.findChild<QPlainTextEdit *>("txtMessage"), "Hi");
    QTest::keyClick(window.findChild<QPlainTextEdit *>("txtMessage"), Qt::Key_Return);
    EXPECT_TRUE(window.isVisible()) << "Enter is a new line there";
    QTest::keyClick(address, Qt::Key_Return);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(context.fields.txtEmailAddress, " a@x.example;b@x.example; ") << "as it was typed";
    EXPECT_EQ(context.fields.txtMessage, "Hi\n");
    EXPECT_EQ(test::setting(context, "Recipient", "Address", "").trimmed(), "a@x.example;b@x.example;");
}

// --- The way --------------------------------------------------------------------------------------------------------

TEST_F(Mail, APhotoArrives) {
    const SmtpServer server({"starttls"});
    use(server.settings());
    QSignalSpy said(&m_postman, &Postman::done);
    context.photo.changePhoto(test::photoLike(2600, 1300));
    const QImage photo = context.photo.picCanvas();
    QByteArray written;
    whenModal([&](QWidget &window) {
        written = contents(attachment());
        EXPECT_EQ(window.findChild<QLabel *>("picPhoto")->pixmap().width(), 236);
        window.findChild<QLineEdit *>("txtAddress")->setText("gran@home.example;dad@work.example");
        window.findChild<QPlainTextEdit *>("txtMessage")->setPlainText("1 < 2 & \"so\"\nÜber uns!");
        click(window, "cmdOK");
        EXPECT_TRUE(server.commands().isEmpty()) << "the window closes first";
    });
    m_postman.emailPhoto();
    EXPECT_EQ(outcome(), m_sent);
    EXPECT_EQ(said.constLast().constFirst().toString(), "E-mail Sent!");
    ASSERT_EQ(server.mails().size(), 1);
    const test::ReceivedMail mail = server.mails().constFirst();
    EXPECT_EQ(mail.sender, "anna@school.example");
    EXPECT_EQ(mail.recipients, (QStringList{"gran@home.example", "dad@work.example"}));
    EXPECT_EQ(mail.field("Subject"), "My Photo");
    EXPECT_EQ(mail.html, QString::fromUtf8("1 &lt; 2 &amp; &quot;so&quot;<BR>\r\nÜber uns!\r\n\r\n<BR> Sent via <a "
                                           "href=\"https://lumora.example/\">Lumora (Click here to find out "
                                           "how...)</a>"));
    EXPECT_EQ(mail.attachment, written);
    EXPECT_EQ(readPictureFromData(mail.attachment).picture.size(), QSize(2048, 1024));
    EXPECT_FALSE(QFile::exists(attachment())) << "it is gone after a send";
    EXPECT_EQ(context.photo.picCanvas(), photo);
    EXPECT_TRUE(context.photo.PhotoModified());
    EXPECT_EQ(test::setting(context, "Recipient", "Address", ""), "gran@home.example;dad@work.example");
}

TEST_F(Mail, AfterAFailureEverythingIsAsItWasAndTheNextTryWorks) {
    const struct {
        QStringList faults;
        int number; ///< libcurl's
        const char *words;
        const char *recipients = "gran@home.example";
    } cases[] = {
        {{}, 55, "StatusMailAddressRefused", "gran@home.example;"}, // a second, empty one
        {{"refuse=gran@home.example"}, 55, "StatusMailAddressRefused"},
        {{"tls", "cert=wrong"}, 60, "StatusMailBadCertificate"},
        {{"limit=900"}, 8, "StatusMailTooLarge"},
    };
    const SmtpServer good;
    for (const auto &one : cases) {
        const SmtpServer bad(one.faults);
        use(bad.settings());
        QSignalSpy said(&m_postman, &Postman::failed);
        const int steps = context.photo.history().undoSteps();
        mailTo(one.recipients);
        EXPECT_EQ(outcome(), failure(one.number)) << one.faults.join(' ').toStdString();
        ASSERT_EQ(said.count(), 1);
        EXPECT_EQ(said.constFirst().constFirst().toString(), context.texts.text(one.words));
        EXPECT_EQ(bad.mails().size(), 0);
        EXPECT_EQ(context.photo.picCanvas(), m_picture);
        EXPECT_FALSE(context.photo.PhotoModified());
        EXPECT_EQ(context.photo.history().undoSteps(), steps);
        EXPECT_EQ(test::setting(context, "Recipient", "Address", ""), one.recipients);
        use(good.settings());
        mailTo("gran@home.example");
        EXPECT_EQ(outcome(), m_sent);
    }
    EXPECT_EQ(good.mails().size(), std::ssize(cases));
    use({});
    mailTo("gran@home.example");
    EXPECT_EQ(outcome(), failure(3)) << "no server is set up";
}

TEST_F(Mail, CancelSendsNothing) {
    const SmtpServer server;
    use(server.settings());
    whenModal([&](QWidget &window) {
        EXPECT_TRUE(QFile::exists(attachment()));
        window.findChild<QLineEdit *>("txtAddress")->setText("gran@home.example");
        click(window, "cmdCancel");
    });
    m_postman.emailPhoto();
    QTest::qWait(300);
    EXPECT_EQ(m_owner.findChild<QMessageBox *>(), nullptr);
    EXPECT_TRUE(server.commands().isEmpty());
    EXPECT_FALSE(QFile::exists(attachment()));
    EXPECT_EQ(test::setting(context, "Recipient", "Address", "none"), "none");
}

TEST_F(Mail, ASendCanBeStopped) {
    const SmtpServer server({"stall=mail"});
    use(server.settings());
    QSignalSpy said(&m_postman, &Postman::done);
    QObject::connect(&context.tasks, &BackgroundTasks::began, &context.tasks, &BackgroundTasks::stop);
    mailTo("gran@home.example");
    EXPECT_TRUE(QTest::qWaitFor([&] { return said.count() > 0; }, 30'000));
    EXPECT_EQ(said.constLast().constFirst().toString(), context.texts.text("StatusMailStopped"));
    EXPECT_EQ(m_owner.findChild<QMessageBox *>(), nullptr) << "the user wanted it";
}

TEST_F(Mail, WithoutAKeyringThePasswordIsAskedForOnceARun) {
    const SmtpServer server({"starttls", "login"});
    use(server.settings());
    int asked = 0;
    const auto answerWith = [&](const QString &password) {
        return [&asked, password](QWidget &window) {
            ++asked;
            EXPECT_EQ(window.objectName(), "frmMailPassword");
            EXPECT_TRUE(window.findChild<QLabel *>("lblPrompt")->text().contains("anna"));
            auto *field = window.findChild<QLineEdit *>("txtPassword");
            EXPECT_EQ(field->echoMode(), QLineEdit::Password);
            field->setText(password);
            click(window, password.isEmpty() ? "cmdCancel" : "cmdOK");
        };
    };
    const QString right = QString::fromUtf8("öffne dich!");
    QSignalSpy said(&m_postman, &Postman::done);
    mailTo("gran@home.example");
    whenModal(answerWith({}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return said.count() > 0; }, 60'000));
    EXPECT_TRUE(server.commands().isEmpty());
    mailTo("gran@home.example");
    whenModal(answerWith("guess"));
    EXPECT_EQ(outcome(), failure(67));
    mailTo("gran@home.example");
    whenModal(answerWith(right));
    EXPECT_EQ(outcome(), m_sent) << "a refused password is asked for again";
    mailTo("gran@home.example");
    EXPECT_EQ(outcome(), m_sent);
    EXPECT_EQ(asked, 3) << "and a good one is remembered";
    EXPECT_EQ(server.mails().size(), 2);
    EXPECT_FALSE(contents(context.installation.settingsFile()).contains(right.toUtf8()));
}

} // namespace
} // namespace lumora
