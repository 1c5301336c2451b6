// The e-mail window: who sends the photo to whom, and what is said with it. The E-mail button shows it.
#pragma once

#include "widgets/BorderlessDialog.h"

#include <QImage>

class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace lumora {

class AnimatedButton;
struct AppContext;

/// Its labels and its title have their texts in the settings file.
class frmEmail : public BorderlessDialog {
    Q_OBJECT

  public:
    /// `photo` is shown small beside the fields.
    frmEmail(AppContext &ctx, const QImage &photo, QWidget *owner);

    /// Texts, the sender, and the recipients of the last time.
    void SetMeUp();

  private:
    void accept() override;

    AppContext &m_ctx;
    QLabel *lblYourAddress;
    QLabel *lblSend;
    QLabel *lblMessage;
    QLineEdit *txtYourAddress; ///< shown only: it is set in the options
    QLineEdit *txtAddress;     ///< addresses with ";" between them
    QPlainTextEdit *txtMessage;
    AnimatedButton *cmdOK;
    AnimatedButton *cmdCancel;
};

} // namespace lumora
