// The options' last page: e-mail, and the tips and messages that were switched off.
#pragma once

#include "base/MailServer.h"
#include "options/OptionsPage.h"

class QComboBox;
class QLineEdit;

namespace lumora {

struct AppContext;

class OptionsMiscellaneous : public OptionsPage {
    Q_OBJECT

  public:
    OptionsMiscellaneous(AppContext &ctx, QWidget *parent);

    void showValues(const OptionsSettings &options) override;
    void takeValues(OptionsSettings &options) const override;
    /// Sets the keyboard focus to the e-mail address.
    void editAddress();

  private:
    void addMail();
    void editServer();
    void addWarnings();
    void reset();

    AppContext &m_ctx;
    QCheckBox *chkEmail = nullptr;
    QLineEdit *txtAddress = nullptr;
    QComboBox *cboMailSize = nullptr;
    MailServer m_mailServer;
    QString m_mailPassword; ///< typed and not kept yet
    QCheckBox *const chkPrivate;
    QCheckBox *chkWelcome = nullptr;
};

} // namespace lumora
