// The first window: the name, the version and a waving sun, while settings and texts are read. Leads to the launcher.
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

/// From the setting "Display Message" and the screen's size in pixels: off goes to the launcher, on too on a screen of
/// more than 800 x 600 and by way of the notice on a smaller one; any other value stays for good.
SplashEnd decideSplash(Switch displayMessage, QSize screen);

class frmSplash : public BorderlessDialog {
    Q_OBJECT

  public:
    explicit frmSplash(AppContext &context);

    /// The number of the throbber's picture, 1 to 8.
    int throbber() const { return m_throbber; }

  Q_SIGNALS:
    /// Sent once, just before the splash is unloaded.
    void launcherWanted();

  protected:
    void showEvent(QShowEvent *event) override;

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
