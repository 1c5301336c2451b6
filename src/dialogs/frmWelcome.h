// The welcome bubble: points a new user to the yellow folder and draws a flashing ring around it. The main
// window shows it some time after its start.
#pragma once

#include "widgets/Bubble.h"

#include <QPointer>
#include <QTimer>

class QCheckBox;
class QLabel;

namespace lumora {

class AnimatedButton;
struct AppContext;

/// A child of the window it is made for; deletes itself and its ring when it is closed.
class frmWelcome : public Bubble {
    Q_OBJECT

  public:
    frmWelcome(AppContext &context, QWidget *window);
    ~frmWelcome() override;

    /// Shows the bubble at that button of the window and the ring around it.
    void showAt(QWidget *openButton);
    void LoadLanguage();

  protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

  private:
    void keepAnswer();
    void showCrayon(int frame);

    AppContext &m_context;
    QCheckBox *chkShow;
    AnimatedButton *cmdOK;
    AnimatedButton *cmdCancel;
    QLabel *picCrayon; ///< waves in step with the answer buttons
    QPointer<QWidget> picRing;
    QTimer tmrBlinker{this};
};

} // namespace lumora
