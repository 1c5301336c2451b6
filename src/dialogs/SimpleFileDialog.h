// What the Simple open and save dialogs share: the folder, the name, the big animated buttons, "More...".
#pragma once

#include "widgets/BorderlessDialog.h"

class QLineEdit;

namespace lumora {

class AnimatedButton;
class PictureButton;
struct AppContext;

/// The OK button is enabled while there is a name. Esc and Cancel end without a choice.
class SimpleFileDialog : public BorderlessDialog {
    Q_OBJECT

  protected:
    enum class Ending { OK, More, Cancelled };

    /// `okLoop` is the loop of the OK button's drawing.
    SimpleFileDialog(AppContext &ctx, const QString &name, QWidget *owner, const QString &okLoop);

    /// Shows the dialog, modal over its owner, and returns how it was closed.
    Ending run();
    /// OK was pressed with a name; returns false when the dialog is to stay open.
    virtual bool takeChoice() = 0;

    /// The folder in the hidden field and in the title line after the window's title.
    void setFolder(const QString &folder);
    /// Another text after the window's title.
    void setTitleEnd(const QString &text);
    QString folder() const;
    QString fileName() const;
    /// The folder and the name typed or chosen, or any other, as one path.
    QString pathOf(const QString &name) const;
    /// A critical message titled "Error".
    void showError(const QString &description);
    void pressOK();

    AppContext &m_ctx;
    QLineEdit *txtPath; ///< the folder; hidden because the title line shows it
    QLineEdit *txtFile;
    AnimatedButton *cmdOK;
    AnimatedButton *cmdCancel;
    PictureButton *cmdAdvCMDLG;

  private:
    Ending m_ending = Ending::Cancelled;
};

} // namespace lumora
