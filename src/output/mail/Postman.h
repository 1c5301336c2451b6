// Mails the photo: the E-mail button, and the sending once the e-mail window has closed.
#pragma once

#include "devices/mail/Smtp.h"

#include <QImage>
#include <QObject>
#include <QTimer>

class QWidget;

namespace lumora {

struct AppContext;

class Postman : public QObject {
    Q_OBJECT

  public:
    /// The timer tmrPostman becomes a child of the owner, the main window.
    Postman(AppContext &ctx, QWidget *owner);

    /// The E-mail button: writes the photo to the attachment file and shows frmEmail. Nothing happens while a mail is
    /// on its way.
    void emailPhoto();
    /// Sends what the hidden fields say; afterwards a message box says how it went.
    void EmailSignlePhoto();

  Q_SIGNALS:
    /// A message for the status line: success or failure.
    void done(const QString &text);
    void failed(const QString &text);

  private:
    MailMessage message() const;
    void send(const QString &password);
    void report(const MailResult &result);
    void showBox(int icon, const QString &name, const QString &text);

    AppContext &m_ctx;
    QWidget *m_owner;
    QTimer *tmrPostman;
    QImage picEmail;      ///< the photo as it is mailed
    QString m_attachment; ///< its file; empty without one
    bool m_onItsWay = false;
};

} // namespace lumora
