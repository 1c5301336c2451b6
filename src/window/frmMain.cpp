#include "window/frmMain.h"

#include "document/Recovery.h"
#include "ideas/IdeaGuide.h"
#include "ideas/frmSamples.h"
#include "options/frmOptions.h"
#include "output/DeviceLists.h"
#include "output/mail/Postman.h"
#include "output/print/PrintButton.h"
#include "output/print/PrintCommands.h"
#include "output/scan/ScanCommands.h"
#include "output/slideshow/SlideShow.h"
#include "session/AppContext.h"
#include "session/LoadSettings.h"
#include "session/PhotoStatus.h"
#include "session/PlainWords.h"
#include "view/PhotoView.h"
#include "widgets/Accessibility.h"
#include "widgets/CommandBar.h"
#include "widgets/Compositing.h"
#include "widgets/FloatingToolbar.h"
#include "widgets/LockedMark.h"
#include "widgets/LongPress.h"
#include "widgets/MessageBox.h"
#include "widgets/PictureButton.h"
#include "widgets/ProgressPanel.h"
#include "widgets/SlidingPanel.h"
#include "widgets/StatusLine.h"
#include "widgets/Theme.h"
#include "widgets/Veil.h"
#include "widgets/WindowSizer.h"
#include "widgets/WindowTexts.h"
#include "window/Clipboard.h"
#include "window/CommandRow.h"
#include "window/EmptyTable.h"
#include "window/FileDrop.h"
#include "window/FloatingBarSet.h"
#include "window/MainBar.h"
#include "window/OwnSize.h"
#include "window/PhotoCommands.h"
#include "window/PhotoZoom.h"
#include "window/RecoveryOffer.h"
#include "window/StartBubbles.h"
#include "window/StepStrip.h"
#include "window/SystemDialogs.h"
#include "window/ToolColumn.h"
#include "window/ToolSet.h"

#include <QApplication>
#include <QBoxLayout>
#include <QClipboard>
#include <QCloseEvent>
#include <QLabel>
#include <QScreen>
#include <QShortcut>
#include <QTimer>
#include <utility>

namespace lumora {

namespace {

constexpr int statusHeight = 28;
constexpr int othersDelay = 150;          // milliseconds from the window's first show
constexpr QSize leastPhotoRoom(160, 120); // a panel may cover it on a very small screen

/// Keys that press a button of Toolbar1.
struct ShortcutRow {
    const char *keys;
    const char *command;
};
const ShortcutRow shortcuts[] = {
    {"Ctrl+Z", "keyUndo"},  {"Ctrl+Y", "keyRedo"},    {"Ctrl+Shift+Z", "keyRedo"}, {"Ctrl+C", "keyCopy"},
    {"Ctrl+V", "keyPaste"}, {"+", "keyZoomin"},       {"Ctrl++", "keyZoomin"},     {"Ctrl+=", "keyZoomin"},
    {"-", "keyZoomout"},    {"Ctrl+-", "keyZoomout"}, {"F1", "keyHelp"},
};

} // namespace

frmMain::frmMain(AppContext &ctx, QWidget *parent) : QWidget(parent, Qt::Window | Qt::FramelessWindowHint), m_ctx(ctx) {
    setObjectName("frmMain");
    build();
    connectCommands();
    makeShortcuts();
    new Veil(this);
    WindowSizer::install(this);
    m_ownSize->openOn(screen());
    qApp->installEventFilter(this);
}

frmMain::~frmMain() {
    delete m_toolSet; // destroyed before the view that its tools use
}

void frmMain::openOn(const QScreen *screen) {
    m_ownSize->openOn(screen);
}

void frmMain::build() {
    m_ownSize = new OwnSize(this, m_ctx.settings);
    m_commands = new CommandRow(this);
    m_tools = new ToolColumn(this);
    m_photoRoom = new QWidget(this);
    m_view = new PhotoView(m_ctx.photo, m_photoRoom);
    setAccessibleRole(*m_view, QAccessible::Canvas);
    m_zoom = new PhotoZoom(m_ctx, *m_view, *m_commands->cmdSetZoom());
    m_steps = new StepStrip(m_ctx.photo, m_ctx.texts, m_photoRoom);
    m_panelRoom = new QWidget(m_photoRoom);
    m_emptyTable = new EmptyTable(this);
    m_ideaGuide = new IdeaGuide(m_ctx, this);
    m_bar = new MainBar(this); // last in the tab order, which is the order of creation
    m_status = new StatusLine("SBar", this);
    m_photo = new PhotoCommands(m_ctx, this);
    m_devices = new DeviceLists(m_ctx, {}, this);
    m_scan = new ScanCommands(m_ctx, *m_devices, this);
    m_print = new PrintCommands(m_ctx, *m_devices, this, [this] { return askWhereToPrintPdf(m_ctx, this); });
    m_postman = new Postman(m_ctx, this);
    m_slideShow = new SlideShow(m_ctx, this);
    m_recovery = new Recovery(m_ctx.photo, m_ctx.installation.recoveryFolder, this);
    m_bars = new FloatingBarSet(this);
    m_toolSet = new ToolSet(m_ctx, *m_view, *m_tools, *m_bars, this);
    m_progress = new ProgressPanel(this);
    m_bubbles = new StartBubbles(m_ctx, m_commands->cmdOpen(), m_bar->cmdOptions(), this);

    auto *photoRows = new QVBoxLayout(m_photoRoom);
    photoRows->setContentsMargins(0, 0, 0, 0);
    photoRows->setSpacing(0);
    photoRows->addWidget(m_view, 1);
    photoRows->addWidget(m_steps);
    photoRows->addWidget(m_panelRoom);
    auto *middle = new QHBoxLayout;
    middle->setSpacing(0);
    middle->addWidget(m_tools);
    middle->addWidget(m_photoRoom, 1);
    middle->addWidget(m_emptyTable, 1);
    middle->addWidget(m_ideaGuide);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(m_bar);
    rows->addWidget(m_commands);
    rows->addLayout(middle, 1);
    rows->addWidget(m_status);
    m_status->setFixedHeight(statusHeight);
    m_emptyTable->setFocus();
    m_tools->hide();
    m_photoRoom->setMinimumSize(leastPhotoRoom);
    m_photoRoom->hide();
    m_panelRoom->hide();
    m_photoRoom->installEventFilter(this);
}

void frmMain::connectCommands() {
    connect(m_bar, &MainBar::minimiseWanted, this, &QWidget::showMinimized);
    connect(m_bar, &MainBar::exitWanted, this, &frmMain::ExitApp);
    connect(m_bar, &MainBar::optionsWanted, this, &frmMain::showOptions);

    const auto open = [this] {
        m_bubbles->welcomeIsOver(); // its message was read
        HideBoxes();
        m_photo->open();
    };
    connect(m_commands->cmdOpen(), &PictureButton::clicked, this, open);
    connect(m_emptyTable, &EmptyTable::openWanted, this, open);
    connect(m_commands->cmdSave(), &PictureButton::clicked, this, [this] {
        HideBoxes();
        m_photo->save();
    });
    connect(m_commands->cmdPrint(), &PictureButton::clicked, this, [this] {
        HideBoxes();
        m_print->print();
    });
    connect(m_commands->cmdSetZoom(), &PictureButton::clicked, this, [this] {
        HideFloatingToolbars();
        m_zoom->showMenu();
    });
    connect(m_commands->Toolbar1(), &CommandBar::buttonClicked, this, &frmMain::runToolbarCommand);
    connect(m_commands->Toolbar1(), &CommandBar::barClicked, this, [this] {
        HideFloatingToolbars();
        m_toolSet->settle();
        ResetTools();
    });

    const auto problem = [this](const QString &text) {
        m_status->showMessage(text, StatusLine::Tone::Problem);
        if (!m_ctx.photo.PhotoLoaded()) {
            showEmptyTable(text);
        }
    };
    connect(m_toolSet, &ToolSet::message, this, [this](const QString &text, bool good) {
        m_status->showMessage(text, good ? StatusLine::Tone::Good : StatusLine::Tone::Problem);
    });
    connect(m_toolSet, &ToolSet::messageOver, this, [this](const QString &text) {
        if (m_status->message() == text) {
            m_status->clearMessage();
        }
    });
    connect(m_toolSet, &ToolSet::statusText, m_status, &StatusLine::setBaseText);
    connect(m_toolSet, &ToolSet::noticeWanted, this, [this](const QString &text) {
        MessageBox box("msgNotice", m_ctx.texts.text("NoticeTitle"), text, this);
        box.setIcon(QMessageBox::Warning);
        box.exec();
    });
    connect(m_toolSet, &ToolSet::buttonsToRefresh, this, &frmMain::chkPSButtons);
    connect(m_toolSet, &ToolSet::fitWanted, this, &frmMain::fitPhoto);
    connect(m_toolSet, &ToolSet::panelChanged, this, &frmMain::makeRoomForPanel);
    connect(m_toolSet, &ToolSet::photoChangedBy, m_ideaGuide, &IdeaGuide::photoChangedBy);
    connect(m_ideaGuide, &IdeaGuide::popArtWanted, m_toolSet, [this] { m_toolSet->press("popArt"); });
    connect(m_ideaGuide, &IdeaGuide::toolWanted, m_toolSet, &ToolSet::press);
    m_ctx.tasks.setPanel(m_progress);
    connect(&m_ctx.tasks, &BackgroundTasks::began, m_progress, &ProgressPanel::begin);
    connect(&m_ctx.tasks, &BackgroundTasks::progressed, m_progress, &ProgressPanel::setPercent);
    connect(&m_ctx.tasks, &BackgroundTasks::ended, m_progress, &ProgressPanel::end);
    connect(&m_ctx.tasks, &BackgroundTasks::stopped, this,
            [this] { m_status->showMessage(m_ctx.texts.text("StatusStopped"), StatusLine::Tone::Good); });
    connect(m_progress, &ProgressPanel::stopWanted, &m_ctx.tasks, &BackgroundTasks::stop);

    connect(m_photo, &PhotoCommands::firstToolWanted, this, &frmMain::ResetTools);
    connect(m_photo, &PhotoCommands::toolsEnabled, this, &frmMain::enableTools);
    connect(m_photo, &PhotoCommands::toolsDisabled, m_tools, &ToolColumn::DisableToolbars);
    connect(m_photo, &PhotoCommands::canvasWanted, this, &frmMain::showCanvas);
    connect(m_photo, &PhotoCommands::opened, this, &frmMain::fitPhoto);
    connect(m_photo, &PhotoCommands::buttonsToRefresh, this, &frmMain::chkPSButtons);
    connect(m_photo, &PhotoCommands::done, this,
            [this](const QString &text) { m_status->showMessage(text, StatusLine::Tone::Good); });
    connect(m_photo, &PhotoCommands::broughtBack, m_recovery, &Recovery::broughtBack);
    connect(&m_ctx.photo, &PhotoDocument::thrownAway, m_recovery, [this](const KeptPhoto &photo) {
        if (m_ctx.settings.read<Setting::KeepThrownAway>()) {
            m_recovery->keepDiscarded(photo);
        }
    });
    connect(m_photo, &PhotoCommands::saved, m_commands, &CommandRow::showSaved);
    connect(m_photo, &PhotoCommands::failed, this, problem);
    connect(m_postman, &Postman::done, this,
            [this](const QString &text) { m_status->showMessage(text, StatusLine::Tone::Good); });
    connect(m_postman, &Postman::failed, this, problem);
    connect(m_photo, &PhotoCommands::leave, this, &frmMain::leave);
    connectScanning();

    connect(m_print, &PrintCommands::buttonsToRefresh, this, &frmMain::chkPSButtons);
    connect(m_print, &PrintCommands::done, this,
            [this](const QString &text) { m_status->showMessage(text, StatusLine::Tone::Good); });
    connect(m_print, &PrintCommands::failed, this, problem);
    connect(&m_print->lock(), &PrintLock::changed, this, &frmMain::refreshPrint);

    for (const char *key : {"keyUndo", "keyRedo"}) {
        connect(new LongPress(m_commands->Toolbar1()->button(key)), &LongPress::held, this, &frmMain::toggleSteps);
    }
    connect(m_steps, &StepStrip::closeWanted, this, &frmMain::closeSteps);
    connect(m_steps, &StepStrip::stateWanted, this, [this](quint64 id) {
        if (!m_ctx.photo.goToState(id)) {
            m_status->showMessage(plainWords(m_ctx.texts, PictureError::NoMemory));
        }
    });

    connect(new FileDrop(this), &FileDrop::dropped, this, [this](const QString &path) {
        m_ctx.tasks.whenIdle(this, [this, path] {
            m_status->clearMessage(); // of the drop before
            HideBoxes();
            m_bubbles->welcomeIsOver();
            m_photo->openDropped(path);
        });
    });
    connect(&m_ctx.photo, &PhotoDocument::changed, this, &frmMain::photoChanged);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &frmMain::refreshPaste);
    connect(m_bubbles, &StartBubbles::closed, this, &frmMain::keyboardToPhoto);
    connect(m_bubbles, &StartBubbles::settingsBroughtBack, this, [this] {
        LoadSettingsFromINIFile(m_ctx);
        m_print->lock().LoadPrintTimer();
        chkPSButtons();
    });
}

void frmMain::connectScanning() {
    connect(m_commands->cmdScan(), &PictureButton::clicked, m_scan, &ScanCommands::scan);
    connect(m_toolSet, &ToolSet::toolWanted, m_scan, &ScanCommands::closePanel);
    connect(m_scan, &ScanCommands::firstToolWanted, this, [this] {
        HideBoxes();
        ResetTools();
    });
    connect(m_scan, &ScanCommands::barsToHide, this, &frmMain::HideFloatingToolbars);
    connect(m_scan, &ScanCommands::canvasWanted, this, &frmMain::enableTools);
    connect(m_scan, &ScanCommands::scanning, m_bubbles, &StartBubbles::welcomeIsOver);
    connect(m_scan, &ScanCommands::canvasWanted, this, &frmMain::showCanvas);
    connect(m_scan, &ScanCommands::scanning, this, [this](bool now) {
        placePanels(); // the scan grows where the photo is
        m_progress->setPlace(now ? ProgressPanel::Place::Corner : ProgressPanel::Place::Middle);
    });
    connect(m_scan, &ScanCommands::scanned, this, &frmMain::fitPhoto);
    connect(m_scan, &ScanCommands::panelChanged, this, &frmMain::makeRoomForPanel);
    connect(m_scan, &ScanCommands::buttonsToRefresh, this, &frmMain::chkPSButtons);
    connect(m_scan, &ScanCommands::done, this,
            [this](const QString &text) { m_status->showMessage(text, StatusLine::Tone::Good); });
    connect(m_scan, &ScanCommands::failed, this,
            [this](const QString &text) { m_status->showMessage(text, StatusLine::Tone::Problem); });
}

void frmMain::makeShortcuts() {
    const auto press = [this](const char *keys, auto action) {
        connect(new QShortcut(QKeySequence(QString(keys)), this), &QShortcut::activated, this, action);
    };
    for (const ShortcutRow &row : shortcuts) {
        press(row.keys, [this, key = row.command] {
            const PictureButton *button = m_commands->Toolbar1()->button(key);
            if (button->isVisible() && button->isEnabled()) {
                runToolbarCommand(key);
            }
        });
    }
    press("Ctrl+O", [this] { m_commands->cmdOpen()->click(); });
    press("Ctrl+S", [this] { m_commands->cmdSave()->click(); });
    press("Ctrl+P", [this] { m_commands->cmdPrint()->click(); });
    press("Ctrl+0", [this] { fitPhoto(); });
    press("Ctrl+H", [this] { toggleSteps(); });
    press("Ctrl+Shift+O", [this] { showOptions(); }); // the only way in Simple mode but for a long press
    press("Esc", [this] {
        if (m_bubbles->closeOpen()) {
            return;
        }
        if (m_steps->isVisible() && !m_bars->isAnyOpen()) {
            closeSteps();
        } else {
            m_scan->ScanPanelOpen() ? m_scan->closePanel() : m_toolSet->escape();
        }
    });
}

// --- Start ----------------------------------------------------------------------------------------------------------

void frmMain::SetMeUp() {
    LoadLanguage();
    LoadSettingsFromINIFile(m_ctx);
    chkPSButtons();
    if (!m_startupPhotoPath.isEmpty()) {
        openStartupPhoto();
    }
    m_bubbles->start();
    offerRecovery();
    // The first picture does not wait for other programs: those that fill the lists take processors from it, and
    // looking at the clipboard loads every image plugin of the toolkit.
    QTimer::singleShot(othersDelay, this, [this] {
        refreshPaste();
        m_devices->LoadScanners();
        m_devices->GetPrinters();
    });
}

void frmMain::offerRecovery() {
    auto *offer = new RecoveryOffer(m_ctx, *m_recovery, this);
    connect(offer, &RecoveryOffer::asking, m_bubbles, &StartBubbles::welcomeIsOver);
    connect(offer, &RecoveryOffer::canvasWanted, this, &frmMain::enableTools);
    connect(offer, &RecoveryOffer::canvasWanted, this, &frmMain::showCanvas);
    connect(offer, &RecoveryOffer::opened, this, &frmMain::fitPhoto);
    connect(offer, &RecoveryOffer::failed, m_status, [this](const QString &text) { m_status->showMessage(text); });
}

void frmMain::LoadLanguage() {
    const Texts &texts = m_ctx.texts;
    showTexts(texts, *this);
    if (m_ctx.settings.isLocked(Lock::Options)) {
        showLocked(*m_bar->cmdOptions(), texts.text("LockedTip"));
    }
    setWindowTitle(texts.text("ApplicationName"));
    m_bar->lblCaption()->setText(texts.text("ApplicationName"));
    m_emptyTable->setOpenText(texts.text("Open"));
    m_tools->setAccessibleName(texts.text("GuideTools"));
    m_commands->setAccessibleName(texts.text("ApplicationName"));
    m_ideaGuide->LoadLanguage();
    m_steps->LoadLanguage();
    m_zoom->refresh();
    refreshStatus();
    refreshSpokenPhoto();
}

void frmMain::openStartupPhoto() {
    showCanvas();
    layout()->activate(); // the canvas needs its size before the photo is fitted into it
    PictureRead read;
    m_ctx.tasks.run(
        [&] { read = m_startupPicture.valid() ? m_startupPicture.get() : readPicture(m_startupPhotoPath); });
    m_startupPicture = {};
    m_photo->openAtStart(read);
}

void frmMain::applySimpleLayout(SimpleStart how) {
    const bool fromLauncher = how == SimpleStart::Launcher;
    m_tools->setSimple(fromLauncher);
    m_bars->setSimple(fromLauncher);
    m_commands->setSimple(true);
    m_commands->cmdScan()->hide();
    m_bar->setSimple(true);
    CommandBar *toolbar = m_commands->Toolbar1();
    toolbar->setButtonOn(9, true);
    for (int number = 10; number <= 17; ++number) {
        toolbar->setButtonOn(number, false);
    }
    if (fromLauncher) {
        toolbar->setButtonOn(17, true);
        toolbar->setButtonOn(23, false);
    }
}

void frmMain::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    if (!m_isSetUp) {
        m_isSetUp = true;
        SetMeUp();
    }
}

// --- Commands -------------------------------------------------------------------------------------------------------

void frmMain::runToolbarCommand(const QString &key) {
    if (key == "keyZoomin") {
        m_ctx.photo.PerformZoomIn();
    } else if (key == "keyZoomout") {
        m_ctx.photo.PerformZoomOut();
    } else if (key == "keyUndo" || key == "keyRedo") {
        if (EditorTool *tool = m_toolSet->toolWithSteps()) {
            tool->step(key == "keyUndo");
        } else if (!(key == "keyUndo" ? m_ctx.photo.PerformUndo() : m_ctx.photo.PerformRedo())) {
            m_status->showMessage(plainWords(m_ctx.texts, PictureError::NoMemory));
        }
    } else if (key == "keyEmail") {
        if (!m_ctx.photo.PhotoLoaded()) {
            return;
        }
        HideBoxes();
        m_postman->emailPhoto();
    } else if (key == "keyCopy") {
        m_toolSet->settle(); // what is seen is copied
        CopyPhoto(m_ctx.photo.picCanvas(), m_ctx.photo.metadata());
    } else if (key == "keyPaste") {
        HideBoxes();
        m_bubbles->welcomeIsOver();
        m_photo->PastePhoto();
    } else if (key == "keySlideShow") {
        HideBoxes();
        m_slideShow->start();
    } else if (key == "keyIdeas") {
        HideBoxes();
        const frmSamples *samples = frmSamples::showModal(m_ctx, this);
        connect(samples, &frmSamples::popArtWanted, m_ideaGuide, &IdeaGuide::popArtWanted);
        connect(samples, &frmSamples::ideaChosen, m_ideaGuide, &IdeaGuide::begin);
        connect(samples, &frmSamples::toolWanted, m_toolSet, &ToolSet::press);
    } else if (key == "keyHelp") {
        Q_EMIT helpWanted();
    }
    HideFloatingToolbars();
}

void frmMain::HideFloatingToolbars() {
    m_toolSet->HideFloatingToolbars();
}

void frmMain::HideBoxes() {
    m_toolSet->HideBoxes();
    m_scan->closePanel();
}

void frmMain::ResetTools() {
    m_toolSet->ResetTools();
}

void frmMain::ExitApp() {
    HideFloatingToolbars();
    m_toolSet->settle();
    ResetTools();
    m_scan->closePanel();
    m_photo->leaveEditor();
}

void frmMain::fitPhoto() {
    m_zoom->fitPhoto();
}

void frmMain::showOptions() {
    if (m_ctx.settings.isLocked(Lock::Options)) {
        m_status->showMessage(m_ctx.texts.text("LockedTip"), StatusLine::Tone::Good);
        return;
    }
    HideBoxes();
    frmOptions *options = frmOptions::showModal(m_ctx, this);
    connect(options, &frmOptions::aboutWanted, this, [this, options] { Q_EMIT aboutWanted(options); });
    connect(options, &frmOptions::forMeWanted, this, [this, options] { Q_EMIT forMeWanted(options); });
    connect(options, &QDialog::accepted, this, [this] {
        if (!m_ctx.flags.SimpleModeOn) {
            m_ctx.settings.forgetFormer(); // what is wanted has just been chosen
        }
        m_print->lock().LoadPrintTimer();
        chkPSButtons();
        m_devices->LoadScanners();
        m_devices->GetPrinters();
        Q_EMIT optionsChanged();
    });
}

/// The undo history as a row of pictures, in the place of an open panel.
void frmMain::toggleSteps() {
    if (m_steps->isVisible()) {
        closeSteps();
    } else if (m_photoRoom->isVisible() && m_ctx.photo.PhotoLoaded()) {
        HideFloatingToolbars();
        HideBoxes();
        m_steps->open();
    }
}

void frmMain::closeSteps() {
    m_steps->hide();
    keyboardToPhoto();
}

/// The photo uses the part of the table that an open panel leaves free.
void frmMain::makeRoomForPanel() {
    const SlidingPanel *panel = m_scan->ScanPanelOpen() ? m_scan->panel() : m_toolSet->openPanel();
    m_panelRoom->setVisible(panel != nullptr);
    if (panel != nullptr) {
        m_steps->hide();
        m_panelRoom->setFixedHeight(panel->height() - shadowMargin);
    }
}

void frmMain::placePanels() {
    m_toolSet->setArea(m_photoRoom->geometry());
    m_scan->setArea((m_photoRoom->isVisible() ? m_photoRoom : m_emptyTable)->geometry());
}

// --- What the photo says --------------------------------------------------------------------------------------------

void frmMain::photoChanged(PhotoChanges what) {
    if (what & (PhotoChanges(PhotoChange::Pixels) | PhotoChange::Size | PhotoChange::Loaded)) {
        refreshStatus();
    }
    if (what.testFlag(PhotoChange::Loaded) && m_photoRoom->isHidden()) {
        showCanvas();
    }
    if (what.testFlag(PhotoChange::Size)) {
        m_zoom->photoResized(m_toolSet->current() == "cmdTool4"); // whose photo is to be seen smaller or larger
    }
    if (what & PhotoChange::Zoom) {
        m_zoom->refresh();
    }
    if (what & (PhotoChanges(PhotoChange::Size) | PhotoChange::Loaded | PhotoChange::Zoom | PhotoChange::Selection |
                PhotoChange::Saved)) {
        refreshSpokenPhoto();
    }
    chkPSButtons();
}

void frmMain::chkPSButtons() {
    const PhotoDocument &photo = m_ctx.photo;
    const bool loaded = photo.PhotoLoaded() && !photo.picCanvas().isNull();
    CommandBar *toolbar = m_commands->Toolbar1();
    toolbar->setButtonEnabled("keyZoomin", loaded);
    toolbar->setButtonEnabled("keyZoomout", loaded);
    const EditorTool *steps = m_toolSet->toolWithSteps();
    toolbar->setButtonEnabled("keyUndo",
                              loaded && (steps != nullptr ? steps->canStep(true) : photo.history().undoSteps() > 0));
    toolbar->setButtonEnabled("keyRedo",
                              loaded && (steps != nullptr ? steps->canStep(false) : photo.history().redoSteps() > 0));
    if (m_ctx.fields.txtEmail != Switch::Other) { // any other value does not change it
        toolbar->setButtonOn(CommandRow::emailButton, m_ctx.fields.txtEmail == Switch::On);
    }
    toolbar->setButtonEnabled("keyEmail", loaded);
    toolbar->setButtonEnabled("keyCopy", loaded);
    toolbar->setButtonEnabled("keyPaste", m_canPaste);
    m_commands->cmdSave()->setEnabled(loaded);
    m_commands->cmdScan()->setEnabled(!m_devices->scanners().isEmpty() && !m_ctx.fields.txtScannerButton);
    m_commands->cmdSetZoom()->setEnabled(loaded);
    refreshPrint();
}

/// Enabled with a photo, unless the settings have it off or it pauses after a print.
void frmMain::refreshPrint() {
    const PrintLock &lock = m_print->lock();
    PrintButton *button = m_commands->cmdPrint();
    button->setPause(lock.secondsLeft(), lock.secondsTotal());
    button->setToolTip(m_ctx.texts.text(lock.isLocked() ? "PrintPause" : "Print"));
    button->setEnabled(m_ctx.photo.PhotoLoaded() && !m_ctx.photo.picCanvas().isNull() && !lock.isLocked() &&
                       !m_ctx.settings.read<Setting::PrintButtonOff>());
}

/// Checked only when the clipboard changes: another program may have to respond.
void frmMain::refreshPaste() {
    m_canPaste = clipboardHasPicture();
    chkPSButtons();
}

/// A screen reader says it when the photo has the focus, and again when it has changed.
void frmMain::refreshSpokenPhoto() {
    m_view->setAccessibleName(spokenPhoto(m_ctx));
}

void frmMain::refreshStatus() {
    m_status->setBaseText(photoStatus(m_ctx, logicalDpiX()));
}

void frmMain::showCanvas() {
    m_emptyTable->hide();
    m_emptyTable->setSentence({});
    m_tools->show();
    m_photoRoom->show();
    m_view->setFocus();
}

/// The first photo could not be had: there is still only the folder to start with.
void frmMain::showEmptyTable(const QString &problem) {
    m_photoRoom->hide();
    m_emptyTable->setSentence(problem);
    m_emptyTable->show();
    m_emptyTable->setFocus();
}

/// Without a photo they stay grey; the tool set enables them when there is one.
void frmMain::enableTools() {
    if (m_ctx.photo.PhotoLoaded()) {
        m_tools->EnableToolbars();
    }
}

void frmMain::keyboardToPhoto() {
    if (m_photoRoom->isVisible()) {
        m_view->setFocus();
    } else if (focusWidget() != nullptr) {
        focusWidget()->clearFocus(); // Space presses nothing; Tab begins with the first button
    }
}

// --- Window ---------------------------------------------------------------------------------------------------------

bool frmMain::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_photoRoom && event->type() == QEvent::Resize) {
        placePanels();
    }
    const bool pressed = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::KeyPress;
    if (pressed || event->type() == QEvent::MouseMove || event->type() == QEvent::TouchBegin) {
        m_toolSet->makeReady();
    }
    if (pressed && watched->isWidgetType()) {
        m_status->clearMessage(); // a message is shown until the next action
        const auto *pressedOn = static_cast<QWidget *>(watched);
        // Beside an open bar; a button does it itself.
        if (watched == m_view->viewport() ||
            (event->type() == QEvent::MouseButtonPress && pressedOn->window() == this && m_bars->isAnyOpen() &&
             !m_bars->holds(pressedOn) && qobject_cast<const QAbstractButton *>(watched) == nullptr)) {
            HideFloatingToolbars();
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmMain::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LanguageChange && m_isSetUp) {
        LoadLanguage();
        chkPSButtons();
    }
    QWidget::changeEvent(event);
}

void frmMain::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    m_bar->fitInto(height());
}

void frmMain::closeEvent(QCloseEvent *event) {
    event->ignore(); // leaving asks first; the owner unloads the window
    if (!std::exchange(m_closeAsked, true)) {
        m_ctx.tasks.whenIdle(this, [this] {
            m_closeAsked = false;
            ExitApp();
        });
    }
}

} // namespace lumora
