// Start and end of the program: reads the command line, opens the first window, and owns every window until
// it is unloaded. main.cpp calls runLumora; the script player uses its own basMain.
#pragma once

#include "app/ReadingAloud.h"
#include "session/AppContext.h"
#include "widgets/ToolkitTexts.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <future>
#include <memory>

class QApplication;

namespace lumora {

class frmLauncher;
class frmMain;
class frmSplash;
enum class SimpleStart;

/// What a command line asks for.
enum class StartOutcome { SimpleMode, AdvancedMode, AdvancedModeWithPhoto, Splash, Nothing };

struct StartDecision {
    StartOutcome outcome = StartOutcome::Nothing;
    QString photo; ///< the file to open, as it was typed but without quotes; empty unless the outcome has one
};

/// The arguments as a person typed them: joined by blanks, without blanks around.
QString commandLineAsTyped(const QStringList &arguments);

/// "/s" and "/a" (case-insensitive) are the switches, an empty line is the splash, the name of an existing file (every
/// double quote in it is dropped; a folder is no file) is a photo. Anything else is StartOutcome::Nothing.
StartDecision decideStart(const QString &commandLine);

/// The answer to "--help", "-h" or "--version" as the only argument, in the user's language and with a line break at
/// the end; empty for anything else. Needs a QCoreApplication and no display.
QString answerOnTerminal(const QStringList &arguments, const Installation &where);

struct PictureRead;

/// A photo that another thread is reading already.
struct ReadAhead {
    QString photo; ///< its path
    std::shared_future<PictureRead> picture;
};

class basMain : public QObject {
    Q_OBJECT

  public:
    explicit basMain(Installation where, ReadAhead ahead = {});
    ~basMain() override;

    /// Acts on a command line (see decideStart). False when it opened no window: the program then ends at once.
    bool Main(const QString &commandLine);
    /// Starts directly in Simple mode, without splash or launcher.
    void StartSimpleMode(const QString &photo = {});
    /// Starts directly in Advanced mode; `photo` may be empty. The file is read in a second thread while the window is
    /// built. The settings stay as the user left them.
    void StartAdvancedMode(const QString &photo);
    /// Has another thread read the photo, unless one does already. The main window shows it once it is there. Nothing
    /// for an empty name.
    void startReading(const QString &photo);

    // The loaded windows, visible or not; null when not loaded.
    frmSplash *splash() const;
    frmLauncher *launcher() const;
    frmMain *mainWindow() const;
    /// The main window's context; the launcher's before the main window exists.
    AppContext &context();

  Q_SIGNALS:
    /// The last window has been unloaded.
    void ended();

  private:
    struct Desk;

    void showSplash();
    void loadLauncher();
    void showLauncher();
    void simpleModeFromLauncher();
    void advancedModeFromLauncher();
    frmMain &loadMainWindow();
    void showSimpleMainWindow(SimpleStart how);
    void showAdvancedMainWindow();
    void unloadMainWindow();
    void followLanguage();
    void showForMe(QWidget *over);
    void showForMeAtFirst();
    void followForMe();
    void endWithoutWindows();

    AppContext m_context;
    ToolkitTexts m_toolkitTexts{m_context.texts};
    ReadingAloud m_readingAloud{m_context.settings};
    QPointer<frmSplash> m_splash;
    QPointer<frmLauncher> m_launcher;
    Desk *m_desk = nullptr;
    ReadAhead m_ahead; ///< until it is shown
};

/// Sets the application's name, version, icon and style, and shows it as the user of `where` likes it.
void setUpApplication(QApplication &application, const Installation &where = {});

/// The whole program: from the command line to its exit code.
int runLumora(int argc, char **argv);

} // namespace lumora
