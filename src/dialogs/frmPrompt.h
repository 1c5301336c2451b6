// The small yes-or-no questions before something could be lost. Asked by the commands that open, save and leave; what
// an answer does is theirs.
#pragma once

#include "widgets/BorderlessDialog.h"

#include <QTimer>

class QLabel;

namespace lumora {

class AnimatedButton;
struct AppContext;

enum class PromptKind {
    Exit,           ///< frmExit: leave the editor, with nothing unsaved
    Save,           ///< frmSave: save changes before leaving
    SaveBeforeOpen, ///< frmSave2: save changes before opening another photo
    Overwrite,      ///< frmOverwrite: replace an existing file
};

/// Cancelled is Esc, the button cmdExit where there is one, and the window system's own ways to close a window.
enum class Answer { Yes, No, Cancelled };

class frmPrompt : public BorderlessDialog {
    Q_OBJECT

  public:
    frmPrompt(AppContext &ctx, PromptKind kind, QWidget *owner);

    /// Shows the question, modal over its owner, and waits for the answer.
    Answer ask();

  private:
    AnimatedButton *addAnswer(const QString &name, const QString &loop, Answer answer);
    void addPicture(AppContext &ctx, PromptKind kind);
    void nextFrame();

    Answer m_answer = Answer::Cancelled;
    QLabel *m_picture;
    QLabel *lblPrompt;
    AnimatedButton *cmdYes;
    AnimatedButton *cmdNo;
    QTimer tmrYes;
    int m_frame = 1;
};

/// Asks that question and gives back the answer.
Answer ask(AppContext &ctx, PromptKind kind, QWidget *owner);

} // namespace lumora
