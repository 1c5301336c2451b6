// The question after a crash: here is your picture, do you want it back? Asked by RecoveryOffer.
#pragma once

#include "widgets/BorderlessDialog.h"

#include <QImage>
#include <QTimer>

class QLabel;

namespace lumora {

class AnimatedButton;
struct AppContext;

class frmRecover : public BorderlessDialog {
    Q_OBJECT

  public:
    /// Later is Esc and the window system's own ways to close a window: nothing is decided.
    enum class Choice { Yes, No, Later };

    /// Shows the picture large; `owner` may be null.
    frmRecover(AppContext &ctx, const QImage &photo, QWidget *owner);

    /// Shows the question, modal over its owner, and waits for the answer.
    Choice ask();

  private:
    AnimatedButton *addAnswer(const QString &name, const QString &loop, Choice choice);
    void nextFrame();

    Choice m_choice = Choice::Later;
    QLabel *lblPrompt;
    AnimatedButton *cmdYes;
    AnimatedButton *cmdNo;
    QTimer tmrYes;
    int m_frame = 1;
};

} // namespace lumora
