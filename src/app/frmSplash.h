// The first window: the name, the version and a waving sun, while settings and texts are read. The launcher follows.
// basMain shows it when the command line is empty.
#pragma once

#include "session/Settings.h"
#include "widgets/BorderlessDialog.h"

#include <QTimer>
#include <array>

class QFrame;
class QLabel;

namespace lumora {

struct AppContext;

/// How the splash ends.
enum class SplashEnd { Launcher, NoticeThenLauncher, Never };

/// From the setting "Display Message" and the screen's size in pixels: "0" continues to the launcher, "1" too on
/// screens larger than 800 x 600 and through the notice on smaller ones; with any other value the splash stays open.
SplashEnd decideSplash(Switch displayMessage, QSize screen);

class frmSplash : public BorderlessDialog {
    Q_OBJECT

  public:
    explicit frmSplash(AppContext &context);

    /// The number of the throbber's picture, 1 to 8.
    int throbber() const { return m_throbber; }

  Q_SIGNALS:
    /// Emitted once, just before the splash is unloaded.
    void launcherWanted();

  protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

  private:
    void build();
    void recordInstallation() const;
    QSize screenPixels() const;
    Q_INVOKABLE void goOn();
    void showNotice();
    void nextPicture();
    void nextCrayon();
    void showLauncher();

    AppContext &m_context;
    Switch txtDisplayMessage;
    QFrame *Frame1 = nullptr;
    QLabel *lblCaption = nullptr;
    QLabel *lblVersion = nullptr;
    QLabel *picThrobber = nullptr;
    QLabel *picCrayon = nullptr;           ///< draws on the hill, in step with the throbber
    std::array<QLabel *, 12> m_pictures{}; ///< Pic1 to Pic12; the throbber uses the first eight
    int m_throbber = 1;
    bool m_wentOn = false;
    QTimer tmrThrobber{this};
    QTimer tmrLoader{this};
    QTimer tmr2ndUnloader{this};
};

} // namespace lumora
