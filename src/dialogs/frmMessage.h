// The notice on a small screen. Its texts are in the settings file. The splash shows it.
#pragma once

#include "widgets/BorderlessDialog.h"

class QCheckBox;
class QLabel;

namespace lumora {

class AnimatedButton;
struct AppContext;

class frmMessage : public BorderlessDialog {
    Q_OBJECT

  public:
    frmMessage(AppContext &context, QWidget *owner);

  private:
    void accept() override;

    AppContext &m_context;
    QLabel *lblMessage;
    QCheckBox *chkDontShow;
    AnimatedButton *cmdYes;
};

} // namespace lumora
