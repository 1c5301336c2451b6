// Help: the videos or the user guide. The launcher (Help, F1) and the main window's toolbar show it.
#pragma once

#include "widgets/BorderlessDialog.h"

class QRadioButton;

namespace lumora {

class AnimatedButton;
struct AppContext;
class PictureButton;
class Texts;

/// A message box over `owner`: there is no program on this computer that could open that document or address.
void tellNoProgram(const Texts &texts, const QString &what, QWidget *owner);

class frmHelp : public BorderlessDialog {
    Q_OBJECT

  public:
    frmHelp(AppContext &context, QWidget *owner);

    /// Shows it modally over its owner; it is deleted when it is answered.
    static void showModal(AppContext &context, QWidget *owner);
    void LoadLanguage();

  private:
    void accept() override;
    void launchVideos();
    void showAbout();

    AppContext &m_context;
    QRadioButton *optVideos;
    QRadioButton *optUserGuide;
    AnimatedButton *cmdYes;
    AnimatedButton *cmdNo;
    PictureButton *cmdAbout;
};

} // namespace lumora
