#include "app/basMain.h"

#include "app/ClosingSignals.h"
#include "app/DesktopOpener.h"
#include "app/PersonalLook.h"
#include "app/frmForMe.h"
#include "app/frmLauncher.h"
#include "app/frmSplash.h"
#include "base/FileName.h"
#include "base/OwnThread.h"
#include "document/RecoveryFolder.h"
#include "guide/GuidePages.h"
#include "guide/GuideWindow.h"
#include "guide/frmHelp.h"
#include "session/ForMe.h"
#include "session/LoadSettings.h"
#include "widgets/ApplicationIcon.h"
#include "window/frmMain.h"

#include <QApplication>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <clocale>
#include <cstdio>
#include <utility>

namespace lumora {

namespace {

constexpr int iconDelay = 100;                             // milliseconds from the start of the event loop at most
constexpr const char *siteFile = "/etc/lumora/Lumora.ini"; // defaults and locks for all users of the computer

} // namespace

QString commandLineAsTyped(const QStringList &arguments) {
    return arguments.join(u' ').trimmed();
}

StartDecision decideStart(const QString &commandLine) {
    const QString switchText = commandLine.toLower();
    if (switchText == "/s") {
        return {StartOutcome::SimpleMode, {}};
    }
    if (switchText == "/a") {
        return {StartOutcome::AdvancedMode, {}};
    }
    if (switchText.isEmpty()) {
        return {StartOutcome::Splash, {}};
    }
    const QString path = QString(commandLine).remove(u'"');
    if (isFile(path)) {
        return {StartOutcome::AdvancedModeWithPhoto, path};
    }
    return {StartOutcome::Nothing, {}};
}

QString answerOnTerminal(const QStringList &arguments, const Installation &where) {
    const QString argument = arguments.join(u' ');
    IniFiles files;
    const Settings settings(files, where);
    const Texts texts(files, [&] { return languageFiles(where, settings, files); });
    if (argument == "--version") {
        return texts.text("ApplicationName") + ' ' + versionNumber() + '\n';
    }
    if (argument == "--help" || argument == "-h") {
        return texts.text("TerminalHelp").replace(u'|', u'\n') + '\n';
    }
    return {};
}

/// One session of the main window: photo, flags and window are created again with every start from the launcher.
struct basMain::Desk : public QObject {
    explicit Desk(const Installation &where) : context(where), window(new frmMain(context)) {}
    ~Desk() override { delete window.data(); }

    AppContext context;
    QPointer<frmMain> window;
};

basMain::basMain(Installation where, ReadAhead ahead) : m_context(std::move(where)), m_ahead(std::move(ahead)) {}

basMain::~basMain() {
    blockSignals(true); // the outcome is already known
    delete m_desk;
    m_desk = nullptr;
    delete m_launcher.data();
    delete m_splash.data();
}

frmSplash *basMain::splash() const {
    return m_splash;
}

frmLauncher *basMain::launcher() const {
    return m_launcher;
}

frmMain *basMain::mainWindow() const {
    return m_desk == nullptr ? nullptr : m_desk->window.data();
}

AppContext &basMain::context() {
    return m_desk == nullptr ? m_context : m_desk->context;
}

bool basMain::Main(const QString &commandLine) {
    m_toolkitTexts.follow();
    m_readingAloud.follow();
    const StartDecision decision = decideStart(commandLine);
    switch (decision.outcome) {
    case StartOutcome::SimpleMode:
    case StartOutcome::AdvancedMode:
    case StartOutcome::AdvancedModeWithPhoto: {
        const auto wanted =
            decision.outcome == StartOutcome::SimpleMode ? Settings::Mode::Simple : Settings::Mode::Advanced;
        if (m_context.settings.onlyMode().value_or(wanted) == Settings::Mode::Simple) {
            StartSimpleMode(decision.photo);
        } else {
            StartAdvancedMode(decision.photo);
        }
        return true;
    }
    case StartOutcome::Splash:
        showSplash();
        return true;
    case StartOutcome::Nothing:
        break;
    }
    return false;
}

void basMain::StartSimpleMode(const QString &photo) {
    startReading(photo);
    loadLauncher();
    ApplySimpleSettings(m_context);
    showSimpleMainWindow(SimpleStart::CommandLine);
}

void basMain::StartAdvancedMode(const QString &photo) {
    startReading(photo);
    loadLauncher(); // not shown first, to avoid flicker
    showAdvancedMainWindow();
}

void basMain::startReading(const QString &photo) {
    if (!photo.isEmpty()) {
        const ReadAhead ahead = std::exchange(m_ahead, {});
        const auto picture =
            ahead.photo == photo ? ahead.picture : inOwnThread([photo] { return readPicture(photo); }).share();
        frmMain &window = loadMainWindow();
        window.setStartupPhotoPath(photo);
        window.setStartupPicture(picture);
    }
}

void basMain::showSplash() {
    m_splash = new frmSplash(m_context);
    connect(m_splash, &frmSplash::launcherWanted, this, [this] {
        showLauncher();
        showForMeAtFirst();
    });
    connect(m_splash, &QObject::destroyed, this, &basMain::endWithoutWindows, Qt::QueuedConnection);
    m_splash->show();
}

void basMain::loadLauncher() {
    if (m_launcher) {
        return;
    }
    m_launcher = new frmLauncher(m_context);
    connect(m_launcher, &frmLauncher::simpleModeWanted, this, &basMain::simpleModeFromLauncher);
    connect(m_launcher, &frmLauncher::advancedModeWanted, this, &basMain::advancedModeFromLauncher);
    connect(m_launcher, &frmLauncher::forMeWanted, this, [this] { showForMe(m_launcher); });
    connect(m_launcher, &QObject::destroyed, this, &basMain::endWithoutWindows, Qt::QueuedConnection);
}

void basMain::showLauncher() {
    loadLauncher();
    m_launcher->show();
    m_launcher->raise();
    m_launcher->activateWindow();
}

void basMain::simpleModeFromLauncher() {
    m_launcher->hide();
    m_launcher->SetupSimpleMode();
    showSimpleMainWindow(SimpleStart::Launcher);
}

void basMain::advancedModeFromLauncher() {
    m_launcher->hide();
    showAdvancedMainWindow();
}

frmMain &basMain::loadMainWindow() {
    if (m_desk == nullptr) {
        m_desk = new Desk(m_context.installation);
        connect(m_desk->window, &frmMain::helpWanted, this,
                [this] { frmHelp::showModal(m_desk->context, m_desk->window); });
        connect(m_desk->window, &frmMain::aboutWanted, this,
                [this](QWidget *over) { GuideWindow::open(m_desk->context, over, aboutPage); });
        connect(m_desk->window, &frmMain::forMeWanted, this, &basMain::showForMe);
        connect(m_desk->window, &frmMain::leave, this, &basMain::unloadMainWindow);
        connect(m_desk->window, &frmMain::optionsChanged, this, &basMain::followLanguage);
        if (m_launcher) {
            m_desk->window->openOn(m_launcher->screen());
        }
    }
    return *m_desk->window;
}

void basMain::showSimpleMainWindow(SimpleStart how) {
    frmMain &window = loadMainWindow();
    window.applySimpleLayout(how);
    m_desk->context.flags.SimpleModeOn = true;
    window.show();
    GuideWindow::move(m_launcher, &window);
}

void basMain::showAdvancedMainWindow() {
    frmMain &window = loadMainWindow();
    m_desk->context.flags.SimpleModeOn = false;
    window.show();
    GuideWindow::move(m_launcher, &window);
}

void basMain::followLanguage() {
    m_context.ini.lookAgain(); // the main window, which wrote the settings, has a context of its own
    m_toolkitTexts.follow();
    m_readingAloud.follow();
}

void basMain::showForMe(QWidget *over) {
    const frmForMe *page = frmForMe::showModal(context(), over);
    connect(page, &frmForMe::forMeChanged, this, &basMain::followForMe);
}

/// The page comes by itself once for each user, but not before the question whether a photo should be brought back.
void basMain::showForMeAtFirst() {
    const Installation &where = m_context.installation;
    if (where.usersFolder.isEmpty() || m_context.settings.read<Setting::ForMeSeen>() ||
        RecoveryFolder::mayHaveCopies(where.recoveryFolder)) {
        return;
    }
    m_context.settings.write<Setting::ForMeSeen, Writer::ForMe>(true);
    showForMe(m_launcher);
}

void basMain::followForMe() {
    m_context.ini.lookAgain(); // whichever context has written
    context().ini.lookAgain();
    showPersonalLook(*qApp, readForMe(m_context.settings));
    m_toolkitTexts.follow();
    m_readingAloud.follow();
    for (QWidget *window : QApplication::topLevelWidgets()) {
        QCoreApplication::postEvent(window, new QEvent(QEvent::LanguageChange)); // capitals
    }
}

void basMain::unloadMainWindow() {
    if (m_desk == nullptr) {
        return;
    }
    // The window may still be handling the click that left it, so it is deleted later.
    m_desk->window->hide();
    m_desk->deleteLater();
    m_desk = nullptr;
    showLauncher();
}

void basMain::endWithoutWindows() {
    if (m_splash.isNull() && m_launcher.isNull() && m_desk == nullptr) {
        Q_EMIT ended();
    }
}

void setUpApplication(QApplication &application, const Installation &where) {
    QApplication::setApplicationName("Lumora");
    QApplication::setApplicationVersion(versionNumber());
    QApplication::setDesktopFileName("lumora");
    // A hidden launcher is a loaded window: the program ends when basMain says so.
    QApplication::setQuitOnLastWindowClosed(false);
    IniFiles files;
    showPersonalLook(application, where.usersFolder.isEmpty() ? ForMe() : readForMe(Settings(files, where)));
    // Its many sizes are drawn when the first picture is on the screen.
    QTimer::singleShot(iconDelay, &application, [] { QApplication::setWindowIcon(applicationIcon()); });
}

/// Qt's own list loses names that are not UTF-8.
QStringList argumentsOf(int argc, char **argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments << fileNameOf(argv[i]);
    }
    return arguments;
}

void say(std::FILE *where, const QString &text) {
    std::fputs(text.toLocal8Bit().constData(), where);
}

/// Of the program that runs, with the folders that the system has for each kind of file.
Installation ownInstallation() {
    return {.programFolder = QCoreApplication::applicationDirPath(),
            .recoveryFolder = RecoveryFolder::usualParent(),
            .usersFolder = usersConfigurationFolder(),
            .cacheFolder = cacheFolder(),
            .siteFile = siteFile};
}

/// The photo's pixels take as long as the window, and need no window system.
ReadAhead readAhead(const QString &commandLine) {
    const QString photo = decideStart(commandLine).photo;
    if (photo.isEmpty()) {
        return {};
    }
    std::setlocale(LC_ALL, "");     // as the application does later: another thread may look at it from now on
    (void)QThread::currentThread(); // the first thread with an object of Qt's is its main thread: not the reader
    return {photo, inOwnThread([photo] { return readFirstPicture(photo); }).share()};
}

int runLumora(int argc, char **argv) {
    if (argc == 2 && argv[1][0] == '-') {
        const QCoreApplication application(argc, argv);
        const Installation where = ownInstallation();
        const QString answer = answerOnTerminal(argumentsOf(argc, argv), where);
        if (!answer.isEmpty()) {
            say(stdout, answer);
            return 0;
        }
    }
    ReadAhead ahead = readAhead(commandLineAsTyped(argumentsOf(argc, argv)));
    QApplication application(argc, argv);
    const Installation where = ownInstallation();
    setUpApplication(application, where);
    const ClosingSignals closingSignals;
    basMain program(where, std::move(ahead));
    const DesktopOpener opener([&program](const QString &what) {
        tellNoProgram(program.context().texts, what, QApplication::activeWindow());
    });
    QObject::connect(&program, &basMain::ended, &application, &QApplication::quit);
    const QString commandLine = commandLineAsTyped(argumentsOf(argc, argv));
    if (!program.Main(commandLine)) {
        say(stderr, program.context().texts.text("TerminalNoPhoto").arg(commandLine) + '\n');
        return 1;
    }
    return QApplication::exec();
}

} // namespace lumora
