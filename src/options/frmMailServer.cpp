#include "options/frmMailServer.h"

#include "devices/mail/MailPasswords.h"
#include "devices/mail/MailWords.h"
#include "session/AppContext.h"
#include "session/OptionsSettings.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/PictureButton.h"
#include "widgets/ProgressPanel.h"
#include "widgets/Theme.h"
#include "widgets/WindowTexts.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>

namespace lumora {

namespace {

constexpr int trialHeight = 84; // pixels: three lines of words
constexpr int signSize = 40;
constexpr int busyWidth = 200;

/// In the order of the enumeration.
struct SecurityRow {
    const char *text;
    int usualPort;
};
constexpr SecurityRow securities[] = {{"MailNotEncrypted", 25}, {"MailStartTls", startTlsPort}, {"MailTls", tlsPort}};

} // namespace

frmMailServer::frmMailServer(AppContext &ctx, const MailServer &server, const QString &password, QString sender,
                             QWidget *owner)
    : BorderlessDialog("frmMailServer", owner), m_ctx(ctx), m_sender(std::move(sender)), m_trial(new MailTrial(this)),
      txtServer(new QLineEdit(this)), txtPort(new QSpinBox(this)), cboSecurity(new QComboBox(this)),
      txtUser(new QLineEdit(this)), txtPassword(new QLineEdit(this)),
      cmdFind(new PictureButton("search", PictureButton::CaptionPlace::Beside, this)),
      cmdTry(new PictureButton("email", PictureButton::CaptionPlace::Beside, this)), picTrial(new QLabel(this)),
      lblTrial(new QLabel(this)), m_busy(new BusyBar(this)) {
    auto *fields = new QGridLayout;
    addFields(*fields);
    body()->addLayout(fields);
    addTrial();
    auto *buttons = new AnswerButtons(this);
    constexpr AnswerButtons::Look look{.pictureSize = 32, .minimumWidth = 130};
    AnimatedButton *cmdOK = buttons->add("cmdOK", "ok", look);
    AnimatedButton *cmdCancel = buttons->add("cmdCancel", "cancel", look);
    setDefaultButton(cmdOK);
    auto *answers = new QHBoxLayout;
    answers->addStretch(1);
    answers->addWidget(cmdOK);
    answers->addWidget(cmdCancel);
    addFoot(answers);

    showTexts(ctx.texts, *this);
    for (const QLabel *caption : findChildren<QLabel *>()) {
        if (caption->buddy() != nullptr) {
            caption->buddy()->setAccessibleName(caption->text());
        }
    }
    for (const SecurityRow &row : securities) {
        cboSecurity->addItem(ctx.texts.text(row.text));
    }
    showServer(server);
    txtPassword->setText(password);
    txtPassword->setPlaceholderText(ctx.texts.text("MailPasswordKept"));
    connect(cmdOK, &QAbstractButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QAbstractButton::clicked, this, &QDialog::reject);
    connect(txtServer, &QLineEdit::textChanged, this, &frmMailServer::refresh);
    connect(cboSecurity, &QComboBox::activated, this, [this](int chosen) {
        txtPort->setValue(securities[chosen].usualPort);
        refresh();
    });
    txtServer->setFocus();
}

void frmMailServer::addFields(QGridLayout &fields) {
    fields.setHorizontalSpacing(10);
    fields.setVerticalSpacing(8);
    fields.setColumnMinimumWidth(1, 330);
    txtPort->setRange(1, 65535);
    txtPort->setButtonSymbols(QAbstractSpinBox::NoButtons);
    txtPort->setMinimumWidth(90);
    txtPassword->setEchoMode(QLineEdit::Password);
    const struct {
        QWidget *field;
        const char *name, *caption;
        int row, column, columns;
    } rows[] = {{txtServer, "txtServer", "lblServer", 0, 0, 1},
                {txtPort, "txtPort", "lblPort", 0, 2, 1},
                {cboSecurity, "cboSecurity", "lblSecurity", 1, 0, 3},
                {txtUser, "txtUser", "lblUser", 2, 0, 3},
                {txtPassword, "txtPassword", "lblPassword", 3, 0, 3}};
    for (const auto &row : rows) {
        auto *caption = new QLabel(this);
        caption->setObjectName(row.caption);
        caption->setBuddy(row.field);
        row.field->setObjectName(row.name);
        fields.addWidget(caption, row.row, row.column);
        fields.addWidget(row.field, row.row, row.column + 1, 1, row.columns);
        if (row.field != cboSecurity) {
            row.field->setLayoutDirection(Qt::LeftToRight); // technical in every language
        }
    }
}

void frmMailServer::addTrial() {
    cmdFind->setObjectName("cmdFind");
    cmdTry->setObjectName("cmdTry");
    auto *row = new QHBoxLayout;
    row->setSpacing(10);
    for (PictureButton *button : {cmdFind, cmdTry}) {
        button->setLook(PictureButton::Look::Raised);
        row->addWidget(button);
    }
    row->addStretch(1);
    m_busy->setFixedWidth(busyWidth);
    m_busy->hide();
    row->addWidget(m_busy);
    connect(cmdFind, &QAbstractButton::clicked, this, [this] {
        begin("MailLooking");
        m_trial->find(m_sender);
    });
    connect(cmdTry, &QAbstractButton::clicked, this, &frmMailServer::tryIt);
    connect(m_trial, &MailTrial::found, this, &frmMailServer::sayFound);
    connect(m_trial, &MailTrial::tried, this, [this](const MailResult &result) {
        say(result.ok() ? m_ctx.texts.text("MailWorks") : plainWords(m_ctx.texts, result.fault),
            result.ok() ? "ok" : "cancel");
    });
    picTrial->setObjectName("picTrial");
    picTrial->setFixedWidth(signSize);
    lblTrial->setObjectName("lblTrial");
    lblTrial->setTextFormat(Qt::PlainText);
    lblTrial->setWordWrap(true);
    lblTrial->setMinimumHeight(trialHeight);
    auto *answer = new QHBoxLayout;
    answer->setSpacing(12);
    answer->addWidget(picTrial);
    answer->addWidget(lblTrial, 1);
    body()->addLayout(row);
    body()->addLayout(answer);
}

void frmMailServer::showServer(const MailServer &server) {
    txtServer->setText(server.host);
    txtPort->setValue(server.port);
    cboSecurity->setCurrentIndex(static_cast<int>(server.security));
    if (!server.user.isEmpty()) {
        txtUser->setText(server.user);
    }
    refresh();
}

MailServer frmMailServer::server() const {
    return {txtServer->text().trimmed(), txtPort->value(), static_cast<MailSecurity>(cboSecurity->currentIndex()),
            txtUser->text().trimmed()};
}

QString frmMailServer::password() const {
    return txtPassword->text();
}

void frmMailServer::refresh() {
    const MailServer typed = server();
    const bool idle = !m_trial->isRunning();
    cmdFind->setEnabled(idle && typed.host.isEmpty() && isMailAddress(m_sender));
    cmdTry->setEnabled(idle && !typed.host.isEmpty());
    const bool encrypted = typed.security != MailSecurity::None;
    txtUser->setEnabled(encrypted);
    txtPassword->setEnabled(encrypted);
}

void frmMailServer::begin(const char *words) {
    cmdFind->setEnabled(false);
    cmdTry->setEnabled(false);
    picTrial->hide();
    m_busy->show();
    m_busy->setPercent(-1);
    lblTrial->setText(m_ctx.texts.text(words));
}

void frmMailServer::say(const QString &text, const QString &icon) {
    m_busy->hide();
    picTrial->setPixmap(iconPixmap(icon, signSize, devicePixelRatioF()));
    picTrial->show();
    lblTrial->setText(text);
    refresh();
    (cmdTry->isEnabled() ? cmdTry : cmdFind)->setFocus(); // the keyboard had to leave the pressed one
}

void frmMailServer::tryIt() {
    const MailServer typed = server();
    begin("MailTrying");
    if (!typed.needsPassword() || !password().isEmpty()) {
        m_trial->tryServer(typed, password());
        return;
    }
    mailPasswords::find(typed, this, [this, typed](const QString &kept) { m_trial->tryServer(typed, kept); });
}

void frmMailServer::sayFound(const QList<MailServer> &servers) {
    if (servers.isEmpty()) {
        say(m_ctx.texts.text("MailNothingFound"), "cancel");
        return;
    }
    QStringList lines;
    for (const MailServer &found : servers) {
        lines << m_ctx.texts.text("MailFound")
                     .arg(found.host)
                     .arg(found.port)
                     .arg(m_ctx.texts.text(securities[static_cast<int>(found.security)].text));
    }
    showServer(servers.constFirst());
    if (txtUser->text().isEmpty()) {
        txtUser->setText(m_sender.trimmed()); // what most servers ask for
    }
    say(lines.join('\n'), "ok");
}

} // namespace lumora
