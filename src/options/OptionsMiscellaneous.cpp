#include "options/OptionsMiscellaneous.h"

#include "options/frmMailServer.h"
#include "session/AppContext.h"
#include "session/OptionsSettings.h"
#include "widgets/MessageBox.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace lumora {

OptionsMiscellaneous::OptionsMiscellaneous(AppContext &ctx, QWidget *parent)
    : OptionsPage("lblMiscellaneous", parent), m_ctx(ctx), chkPrivate(tickBox("chkPrivate", "save")) {
    addMail();
    addWarnings();
    column()->addStretch(1);
}

void OptionsMiscellaneous::addMail() {
    QVBoxLayout *sheet = addSheet();
    chkEmail = tickBox("chkEmail", "email");
    txtAddress = new QLineEdit(this);
    txtAddress->setObjectName("txtAddress");
    txtAddress->setPlaceholderText(placeholderAddress);
    txtAddress->setInputMethodHints(Qt::ImhEmailCharactersOnly);
    txtAddress->setMaxLength(254); // the longest address that mail can carry (RFC 5321)
    txtAddress->setEnabled(false);
    connect(chkEmail, &QCheckBox::toggled, txtAddress, &QWidget::setEnabled);
    sheet->addWidget(chkEmail);
    QHBoxLayout *row = addRow(sheet);
    QLabel *caption = label("lblAddress");
    caption->setBuddy(txtAddress);
    row->addWidget(caption);
    row->addWidget(txtAddress, 1);

    cboMailSize = new QComboBox(this);
    cboMailSize->setObjectName("cboMailSize");
    for (const char *size : {"MailSizeSmall", "MailSizeMedium", "MailSizeAsItIs"}) { // in the order of MailSize
        cboMailSize->addItem(m_ctx.texts.text(size));
    }
    QLabel *sizeCaption = label("lblMailSize");
    sizeCaption->setBuddy(cboMailSize);
    auto *cmdMailServer = new PictureButton("options-general", PictureButton::CaptionPlace::Beside, this);
    cmdMailServer->setObjectName("cmdMailServer");
    cmdMailServer->setLook(PictureButton::Look::Raised);
    connect(cmdMailServer, &QAbstractButton::clicked, this, &OptionsMiscellaneous::editServer);
    for (QWidget *part : {static_cast<QWidget *>(cboMailSize), static_cast<QWidget *>(cmdMailServer)}) {
        part->setEnabled(false);
        connect(chkEmail, &QCheckBox::toggled, part, &QWidget::setEnabled);
    }
    QHBoxLayout *details = addRow(sheet);
    details->addWidget(sizeCaption);
    details->addWidget(cboMailSize);
    details->addStretch(1);
    details->addWidget(cmdMailServer);
    lockWith(Lock::Email, {chkEmail, cboMailSize, cmdMailServer});
}

void OptionsMiscellaneous::editServer() {
    auto *window = new frmMailServer(m_ctx, m_mailServer, m_mailPassword, txtAddress->text(), this);
    window->setAttribute(Qt::WA_DeleteOnClose);
    connect(window, &QDialog::accepted, this, [this, window] {
        m_mailServer = window->server();
        m_mailPassword = window->password();
    });
    window->open();
}

void OptionsMiscellaneous::addWarnings() {
    QVBoxLayout *sheet = addSheet();
    sheet->addWidget(chkPrivate);
    chkWelcome = tickBox("chkWelcome", "hand");
    chkWelcome->setEnabled(false); // shows the setting; the bubble itself switches it off, the button below on
    auto *cmdReset = new PictureButton("options-miscellaneous", PictureButton::CaptionPlace::Beside, this);
    cmdReset->setObjectName("cmdReset");
    cmdReset->setLook(PictureButton::Look::Raised);
    connect(cmdReset, &QAbstractButton::clicked, this, &OptionsMiscellaneous::reset);
    sheet->addWidget(chkWelcome);
    QHBoxLayout *row = addRow(sheet);
    row->setContentsMargins({}); // between a tick and a remark, and some languages' remark is long
    row->addWidget(cmdReset);
    row->addStretch(1);
    addNote(sheet, "lblResetNotice");
}

void OptionsMiscellaneous::reset() {
    resetWarnings(m_ctx);
    chkWelcome->setChecked(true);
    auto *box =
        new MessageBox("msgReset", m_ctx.texts.text("ApplicationName"), m_ctx.texts.text("DlgOptionsReset"), this);
    box->setPicture("options-miscellaneous");
    box->showAlone();
}

void OptionsMiscellaneous::editAddress() {
    txtAddress->setFocus();
    txtAddress->selectAll();
}

void OptionsMiscellaneous::showValues(const OptionsSettings &options) {
    chkEmail->setChecked(options.email);
    txtAddress->setText(options.sender);
    m_mailServer = options.mailServer;
    cboMailSize->setCurrentIndex(static_cast<int>(options.mailSize));
    chkWelcome->setChecked(options.welcome);
    chkPrivate->setChecked(options.privateDetails);
}

void OptionsMiscellaneous::takeValues(OptionsSettings &options) const {
    options.email = chkEmail->isChecked();
    options.sender = txtAddress->text().trimmed();
    options.mailServer = m_mailServer;
    options.mailPassword = m_mailPassword;
    options.mailSize = static_cast<MailSize>(cboMailSize->currentIndex());
    options.welcome = chkWelcome->isChecked();
    options.privateDetails = chkPrivate->isChecked();
}

} // namespace lumora
