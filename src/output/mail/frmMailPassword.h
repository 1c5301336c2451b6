// Asks for the password of a mail server, where the desktop has no keyring that knows it.
#pragma once

#include "widgets/BorderlessDialog.h"

class QLabel;
class QLineEdit;

namespace lumora {

struct AppContext;
struct MailServer;

class frmMailPassword : public BorderlessDialog {
    Q_OBJECT

  public:
    frmMailPassword(AppContext &ctx, const MailServer &server, QWidget *owner);

    /// Shows it, modal over its owner; an empty text when it was cancelled.
    QString ask();

  private:
    QLineEdit *txtPassword;
};

} // namespace lumora
