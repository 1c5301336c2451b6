#include "output/mail/frmMailPassword.h"

#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/Theme.h"
#include "widgets/WindowTexts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace lumora {

namespace {

constexpr int questionWidth = 330; // pixels

} // namespace

frmMailPassword::frmMailPassword(AppContext &ctx, const MailServer &server, QWidget *owner)
    : BorderlessDialog("frmMailPassword", owner), txtPassword(new QLineEdit(this)) {
    auto *picture = new QLabel(this);
    picture->setPixmap(iconPixmap("email", 88, devicePixelRatioF()));
    auto *lblPrompt = new QLabel(this);
    lblPrompt->setObjectName("lblPrompt");
    lblPrompt->setTextFormat(Qt::PlainText);
    lblPrompt->setWordWrap(true);
    lblPrompt->setFixedWidth(questionWidth);
    txtPassword->setObjectName("txtPassword");
    txtPassword->setEchoMode(QLineEdit::Password);
    auto *question = new QVBoxLayout;
    question->addWidget(lblPrompt);
    question->addWidget(txtPassword);
    auto *middle = new QHBoxLayout;
    middle->setSpacing(18);
    middle->addWidget(picture);
    middle->addLayout(question, 1);

    auto *buttons = new AnswerButtons(this);
    constexpr AnswerButtons::Look look{.pictureSize = 48, .captionPoints = 14, .minimumWidth = 150};
    AnimatedButton *cmdOK = buttons->add("cmdOK", "ok", look);
    AnimatedButton *cmdCancel = buttons->add("cmdCancel", "cancel", look);
    setDefaultButton(cmdOK);
    auto *answers = new QHBoxLayout;
    answers->addStretch(1);
    answers->addWidget(cmdOK);
    answers->addWidget(cmdCancel);
    body()->addLayout(middle);
    addFoot(answers);

    showTexts(ctx.texts, *this);
    lblPrompt->setText(ctx.texts.text("DlgMailPasswordPrompt").arg(server.user, server.host));
    txtPassword->setAccessibleName(lblPrompt->text());
    cmdOK->setEnabled(false);
    connect(txtPassword, &QLineEdit::textChanged, cmdOK,
            [cmdOK](const QString &text) { cmdOK->setEnabled(!text.isEmpty()); });
    connect(cmdOK, &QAbstractButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QAbstractButton::clicked, this, &QDialog::reject);
    txtPassword->setFocus();
}

QString frmMailPassword::ask() {
    return exec() == QDialog::Accepted ? txtPassword->text() : QString();
}

} // namespace lumora
