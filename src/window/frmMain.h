// The main window: makes the controls, lays them out and connects them. What a button does is in the module of its
// tool; opening, saving and leaving in PhotoCommands.
#pragma once

#include "document/PhotoDocument.h"
#include "imaging/PictureFile.h"

#include <QWidget>
#include <future>
#include <memory>

namespace lumora {

struct AppContext;
class CommandRow;
class DeviceLists;
class EmptyTable;
class FloatingBarSet;
class IdeaGuide;
class MainBar;
class OwnSize;
class PhotoCommands;
class PhotoView;
class PhotoZoom;
class PrintCommands;
class Postman;
class ProgressPanel;
class Recovery;
class ScanCommands;
class SlideShow;
class StartBubbles;
class StatusLine;
class StepStrip;
class ToolColumn;
class ToolSet;

/// How Simple mode was started; a few buttons differ.
enum class SimpleStart { CommandLine, Launcher };

class frmMain : public QWidget {
    Q_OBJECT

  public:
    explicit frmMain(AppContext &ctx, QWidget *parent = nullptr);
    ~frmMain() override;

    void setStartupPhotoPath(const QString &path) { m_startupPhotoPath = path; }
    /// The same photo, already being read in another thread; without it SetMeUp reads the path itself.
    void setStartupPicture(std::shared_future<PictureRead> picture) { m_startupPicture = std::move(picture); }

    /// Prepares the window; runs once, when it is first shown.
    void SetMeUp();
    /// The tool column and the toolbar as Simple mode has them.
    void applySimpleLayout(SimpleStart how);
    void LoadLanguage();
    PhotoView *view() const { return m_view; }
    /// Fills that screen instead of the one that the desktop chooses; call before it is shown.
    void openOn(const QScreen *screen);

    void HideFloatingToolbars();
    /// Closes an open slide-up panel.
    void HideBoxes();
    /// Makes the Arrow tool current.
    void ResetTools();
    /// Refreshes the buttons that depend on the photo and on the settings.
    void chkPSButtons();
    void ExitApp();
    /// The whole photo in view.
    void fitPhoto();

  Q_SIGNALS:
    void helpWanted();
    /// Version, licence and credits should be shown above that window.
    void aboutWanted(QWidget *over);
    /// The page "For me" should be shown above that window.
    void forMeWanted(QWidget *over);
    /// The editor has been left; the launcher is to be shown.
    void leave();
    /// The options may have chosen another language.
    void optionsChanged();

  protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void build();
    void connectCommands();
    void connectScanning();
    void makeShortcuts();
    void photoChanged(PhotoChanges what);
    void runToolbarCommand(const QString &key);
    void makeRoomForPanel();
    void placePanels();
    void showCanvas();
    void showOptions();
    void toggleSteps();
    void closeSteps();
    /// The keyboard goes to the photo, or to the window itself where there is none.
    void keyboardToPhoto();
    void showEmptyTable(const QString &problem);
    void enableTools();
    void refreshStatus();
    void refreshSpokenPhoto();
    void openStartupPhoto();
    void offerRecovery();
    void refreshPaste();
    void refreshPrint();

    AppContext &m_ctx;
    QString m_startupPhotoPath;
    std::shared_future<PictureRead> m_startupPicture;
    bool m_isSetUp = false;
    bool m_canPaste = false;
    bool m_closeAsked = false; ///< the desktop has asked to close the window, and the request is queued

    OwnSize *m_ownSize = nullptr;
    MainBar *m_bar = nullptr;
    CommandRow *m_commands = nullptr;
    ToolColumn *m_tools = nullptr;
    PhotoView *m_view = nullptr;
    PhotoZoom *m_zoom = nullptr;
    EmptyTable *m_emptyTable = nullptr;
    IdeaGuide *m_ideaGuide = nullptr;
    StatusLine *m_status = nullptr;
    FloatingBarSet *m_bars = nullptr;
    ToolSet *m_toolSet = nullptr;
    ProgressPanel *m_progress = nullptr;
    QWidget *m_photoRoom = nullptr; ///< the view, and below it what an open panel covers
    QWidget *m_panelRoom = nullptr;
    PhotoCommands *m_photo = nullptr;
    DeviceLists *m_devices = nullptr;
    ScanCommands *m_scan = nullptr;
    PrintCommands *m_print = nullptr;
    Postman *m_postman = nullptr;
    SlideShow *m_slideShow = nullptr;
    Recovery *m_recovery = nullptr;
    StartBubbles *m_bubbles = nullptr;
    StepStrip *m_steps = nullptr;
};

} // namespace lumora
