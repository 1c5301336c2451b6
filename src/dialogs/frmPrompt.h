// The yes-or-no questions before data could be lost, one row each in the table of frmPrompt.cpp. Asked by the commands
// that open, save and leave, and by RecoveryOffer; the callers act on the answer.
#pragma once

#include "widgets/BorderlessDialog.h"

#include <QImage>

class QLabel;

namespace lumora {

struct AppContext;
struct PromptRow;

enum class PromptKind {
    Exit,           ///< frmExit: leave the editor, with nothing unsaved
    Save,           ///< frmSave: save changes before leaving
    SaveBeforeOpen, ///< frmSave2: save changes before opening another photo
    Overwrite,      ///< frmOverwrite: replace an existing file, txtSimpleSavePath
    Recover,        ///< frmRecover: restore the photo after a crash
};

/// Cancelled is Esc, the button cmdExit where there is one, and closing by the window manager: no decision was made.
enum class Answer { Yes, No, Cancelled };

class frmPrompt : public BorderlessDialog {
    Q_OBJECT

  public:
    /// `photo` is what the question is about, where a caller has it; else the row's drawing, or the file's own picture,
    /// is shown above the question. `owner` may be null.
    frmPrompt(AppContext &ctx, PromptKind kind, QWidget *owner, const QImage &photo = {});

    /// Shows the question, modal over its owner, and waits for the answer.
    Answer ask();

  private:
    void addQuestion(const PromptRow &row);
    void addAnswers(AppContext &ctx, const PromptRow &row);
    void showPicture(AppContext &ctx, const PromptRow &row, const QImage &photo);
    void showFile(const QString &path);

    Answer m_answer = Answer::Cancelled;
    QLabel *picPrompt;
    QLabel *lblPrompt;
};

/// Asks that question and returns the answer.
Answer ask(AppContext &ctx, PromptKind kind, QWidget *owner, const QImage &photo = {});

} // namespace lumora
