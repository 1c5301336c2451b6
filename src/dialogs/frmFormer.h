// The bubble that tells Advanced mode's user that Simple mode has switched settings off, and brings them back. The main
// window shows it once after each visit to Simple mode.
#pragma once

#include "widgets/Bubble.h"

namespace lumora {

struct AppContext;

/// A child of the window it is made for; deletes itself when it is closed. Either answer, and Esc, forgets the former
/// settings; as long as none was given, the next start asks again.
class frmFormer : public Bubble {
    Q_OBJECT

  public:
    frmFormer(AppContext &context, QWidget *window);
    void LoadLanguage();

  Q_SIGNALS:
    /// The settings file has the former values again.
    void broughtBack();

  protected:
    void closeEvent(QCloseEvent *event) override;

  private:
    AppContext &m_context;
};

} // namespace lumora
