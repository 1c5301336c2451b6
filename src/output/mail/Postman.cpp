#include "output/mail/Postman.h"

#include "devices/mail/MailPasswords.h"
#include "devices/mail/MailWords.h"
#include "output/mail/MailPhoto.h"
#include "output/mail/frmEmail.h"
#include "output/mail/frmMailPassword.h"
#include "session/AppContext.h"
#include "widgets/MessageBox.h"

#include <QScopeGuard>
#include <utility>

namespace lumora {

namespace {

constexpr int windowGone = 100; // milliseconds until the e-mail window has left the screen
constexpr char productPage[] = "https://lumora.example/";

/// What was typed, as HTML shows it.
QString typed(const QString &text) {
    return text.toHtmlEscaped().replace('\n', "<BR>\r\n");
}

} // namespace

Postman::Postman(AppContext &ctx, QWidget *owner)
    : QObject(owner), m_ctx(ctx), m_owner(owner), tmrPostman(new QTimer(owner)) {
    tmrPostman->setObjectName("tmrPostman");
    tmrPostman->setInterval(windowGone);
    connect(tmrPostman, &QTimer::timeout, this, [this] {
        tmrPostman->stop();
        m_ctx.tasks.whenIdle(this, [this] { EmailSignlePhoto(); });
    });
}

void Postman::emailPhoto() {
    if (m_onItsWay) {
        return;
    }
    const QImage photo = m_ctx.photo.picCanvas();
    const MailSize size = m_ctx.fields.mailSize;
    const bool finished = m_ctx.tasks.run(
        [&] {
            picEmail = reducedForMail(photo, size);
            m_attachment = TaskControl::isCurrentCancelled() ? QString() : writeMailFile(mailJpeg(picEmail));
        },
        Stopping::Offered);
    if (m_attachment.isEmpty() || !finished) {
        removeMailFile(std::exchange(m_attachment, {}));
        finished ? Q_EMIT failed(m_ctx.texts.text("StatusMailNoPhoto"))
                 : Q_EMIT done(m_ctx.texts.text("StatusMailStopped"));
        return;
    }
    frmEmail window(m_ctx, picEmail, m_owner);
    if (window.exec() == QDialog::Accepted) {
        m_onItsWay = true;
        tmrPostman->start();
    } else {
        removeMailFile(std::exchange(m_attachment, {}));
    }
    picEmail = {};
}

MailMessage Postman::message() const {
    const MainFields &fields = m_ctx.fields;
    const Texts &texts = m_ctx.texts;
    const QString link = QStringLiteral("<BR> ") + texts.text("EmailSentVia") + " <a href=" + fields.txtComma +
                         productPage + fields.txtComma + '>' + texts.text("EmailLink") + "</a>";
    return {fields.txtYourEmail, fields.txtEmailAddress.split(';'), texts.text("EmailSubject"),
            typed(fields.txtMessage) + "\r\n\r\n" + link, m_attachment};
}

void Postman::EmailSignlePhoto() {
    m_onItsWay = true;
    const MailServer &server = m_ctx.fields.mailServer;
    if (server.host.isEmpty() || !server.needsPassword()) {
        send({});
        return;
    }
    mailPasswords::find(server, this, [this](const QString &password) {
        m_ctx.tasks.whenIdle(this, [this, password] { send(password); });
    });
}

void Postman::send(const QString &known) {
    const auto arrived = qScopeGuard([this] { m_onItsWay = false; });
    const MailServer server = m_ctx.fields.mailServer;
    QString password = known;
    if (!server.host.isEmpty() && server.needsPassword() && password.isEmpty()) {
        password = frmMailPassword(m_ctx, server, m_owner).ask();
        if (password.isEmpty()) {
            Q_EMIT done(m_ctx.texts.text("StatusMailStopped"));
            return;
        }
        mailPasswords::keepForThisRun(server, password);
    }
    const MailMessage mail = message();
    MailResult result;
    m_ctx.tasks.run([&] { result = sendMail(server, password, mail); }, Stopping::Offered);
    if (result.fault == MailFault::WrongPassword) {
        mailPasswords::refuse(server); // so that the next try asks for it
    }
    report(result);
}

void Postman::report(const MailResult &result) {
    if (result.ok()) {
        removeMailFile(std::exchange(m_attachment, {}));
        const QString sent = m_ctx.texts.text("MsgEmail");
        Q_EMIT done(sent);
        showBox(QMessageBox::Information, "msgEmail", sent);
    } else if (result.fault == MailFault::Cancelled) {
        Q_EMIT done(plainWords(m_ctx.texts, result.fault));
    } else {
        Q_EMIT failed(plainWords(m_ctx.texts, result.fault));
        showBox(QMessageBox::Critical, "msgEmailFailed",
                m_ctx.texts.text("MsgEmailError").arg(result.code) + "\n\n" + m_ctx.texts.text("MsgEmailFailed"));
    }
}

void Postman::showBox(int icon, const QString &name, const QString &text) {
    auto *box = new MessageBox(name, " ", text, m_owner);
    box->setIcon(static_cast<QMessageBox::Icon>(icon));
    box->showAlone();
}

} // namespace lumora
