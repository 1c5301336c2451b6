// The start menu: Simple Mode, Advanced Mode, Help. Stays loaded, hidden, while the main window is open. basMain
// creates it and handles its two signals.
#pragma once

#include "widgets/BorderlessDialog.h"

#include <QTimer>

class QFrame;
class QLabel;

namespace lumora {

class AnimatedButton;
struct AppContext;
class PictureButton;

class frmLauncher : public BorderlessDialog {
    Q_OBJECT

  public:
    explicit frmLauncher(AppContext &context);

    /// Writes the settings that Simple mode requires.
    void SetupSimpleMode();
    void LoadLanguage();

  Q_SIGNALS:
    void simpleModeWanted();
    void advancedModeWanted();
    /// The page "For me" should be shown above this window.
    void forMeWanted();

  protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

  private:
    void build();
    AnimatedButton *modeButton(const QString &name, const QString &loop, const QColor &disc);
    PictureButton *footButton(const QString &name, const QString &icon);
    void wave();
    void wakeHand();
    void showHelp();

    AppContext &m_context;
    QLabel *lblTitle;
    QLabel *lblVersion;
    QLabel *picHand; ///< waves beside the title
    QFrame *HR1;
    AnimatedButton *cmdSimpleMode;
    AnimatedButton *cmdAdvMode;
    PictureButton *cmdVideos;
    PictureButton *cmdForMe;
    PictureButton *cmdExit;
    QTimer tmrHand{this};
    int m_handFrame = 8; ///< 1 to 8
};

} // namespace lumora
