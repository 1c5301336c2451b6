// The mail server: through which server photos are mailed, and a trial that says in plain words whether it works. The
// options' last page shows it.
#pragma once

#include "devices/mail/MailTrial.h"
#include "widgets/BorderlessDialog.h"

class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QSpinBox;

namespace lumora {

class BusyBar;
class PictureButton;
struct AppContext;

/// What is typed is kept by the caller, when the window was accepted; nothing is written here.
class frmMailServer : public BorderlessDialog {
    Q_OBJECT

  public:
    /// `sender` is the address whose domain "Find it" looks at; `password` one that was typed before and is not kept
    /// yet.
    frmMailServer(AppContext &ctx, const MailServer &server, const QString &password, QString sender, QWidget *owner);

    MailServer server() const;
    /// The password that was typed; empty: the one that is kept stays.
    QString password() const;

  private:
    void addFields(QGridLayout &fields);
    void addTrial();
    void showServer(const MailServer &server);
    void refresh();
    void begin(const char *words);
    void say(const QString &text, const QString &icon);
    void tryIt();
    void sayFound(const QList<MailServer> &servers);

    AppContext &m_ctx;
    const QString m_sender;
    MailTrial *m_trial;
    QLineEdit *txtServer;
    QSpinBox *txtPort;
    QComboBox *cboSecurity;
    QLineEdit *txtUser;
    QLineEdit *txtPassword;
    PictureButton *cmdFind;
    PictureButton *cmdTry;
    QLabel *picTrial;
    QLabel *lblTrial;
    BusyBar *m_busy;
};

} // namespace lumora
