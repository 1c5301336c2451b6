// lumora-play SCRIPT: plays a script of plain lines on the real windows of Lumora. docs/lumora-play.md has the lines.
#include "Browser.h"
#include "LumoraProgram.h"
#include "Player.h"
#include "Stage.h"
#include "Watchdog.h"
#include "document/RecoveryFolder.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>
#include <atomic>
#include <cstdio>

namespace {

using namespace lumora;
using namespace lumora::play;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isSlowedDown = true; // what a turn takes says nothing about the program then
#else
constexpr bool isSlowedDown = false;
#endif

struct Options {
    QString script;
    QString folder;
    QString place;
    QString locale;
    QSize screen{1280, 800};
    int patience = 5000;
    int watchdog = 120;
    int turnLimit = 0;
    bool verbose = false;
    bool desktopDialogs = false;
    bool remakesLooks = false;
    bool keepsPhotos = false;
};

void say(const QString &text) {
    QTextStream(stdout) << text << Qt::endl;
}

void complain(const QString &text) {
    QTextStream(stderr) << text << Qt::endl;
}

/// False when there is nothing to play: a wrong option, or help was asked for (`code` tells which).
bool readOptions(const QStringList &arguments, Options &options, int &code) {
    QCommandLineParser parser;
    parser.setApplicationDescription("Plays a script of plain lines on the real windows of Lumora.");
    parser.addPositionalArgument("SCRIPT", "the script; - reads it from the standard input");
    const QCommandLineOption help({"h", "help"}, "Shows this.");
    const QCommandLineOption folder("folder", "The program folder to use, as it is (default: a private copy).", "DIR");
    const QCommandLineOption place("in", "The folder to play in, which stays for another run (default: a private one).",
                                   "DIR");
    const QCommandLineOption size("size", "The screen's size on the offscreen platform (default: 1280x800).", "WxH");
    const QCommandLineOption locale("locale", "The desktop's language and country (default: C.UTF-8, English).",
                                    "LOCALE", "C.UTF-8");
    const QCommandLineOption patience("patience", "How long a step may wait until it can be done (default: 5000).",
                                      "MS", "5000");
    const QCommandLineOption timeout("timeout", "A step that takes longer ends the run (default: 120).", "SECONDS",
                                     "120");
    const QCommandLineOption turnLimit("turn-limit",
                                       "A step ends the run when the program computes for longer in one turn of its "
                                       "event loop, in processor time.",
                                       "MS", "0");
    const QCommandLineOption verbose("verbose", "Prints each step before it is done.");
    const QCommandLineOption remake("remake-looks", "Writes the pictures that expect-look compares with again.");
    const QCommandLineOption keeps("keep-photos", "Keeps copies of unsaved photos, as the program itself does.");
    const QCommandLineOption desktop("desktop-dialogs", "Uses the file dialogs of the desktop, where it has some.");
    parser.addOptions(
        {help, folder, place, size, locale, patience, timeout, turnLimit, verbose, remake, keeps, desktop});
    const bool understood = parser.parse(arguments);
    if (!understood || parser.isSet(help) || parser.positionalArguments().size() != 1) {
        const bool asked = understood && parser.isSet(help);
        asked ? say(parser.helpText()) : complain(understood ? parser.helpText() : parser.errorText());
        code = asked ? 0 : 1;
        return false;
    }
    options.script = parser.positionalArguments().constFirst();
    options.folder = parser.value(folder);
    options.place = parser.value(place);
    options.locale = parser.value(locale);
    options.patience = parser.value(patience).toInt();
    options.watchdog = parser.value(timeout).toInt();
    options.turnLimit = isSlowedDown ? 0 : parser.value(turnLimit).toInt();
    options.verbose = parser.isSet(verbose);
    options.desktopDialogs = parser.isSet(desktop);
    options.keepsPhotos = parser.isSet(keeps) || !options.place.isEmpty();
    options.remakesLooks = parser.isSet(remake);
    const QStringList sides = parser.value(size).split('x');
    if (parser.isSet(size)) {
        options.screen = QSize(sides.value(0).toInt(), sides.value(1).toInt());
    }
    if (options.screen.isEmpty()) {
        complain("--size needs two numbers: 1280x800");
        code = 1;
        return false;
    }
    return true;
}

bool readFile(const QString &name, QString &text) {
    QFile file(name);
    const bool isOpen = name == "-" ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    text = isOpen ? QString::fromUtf8(file.readAll()) : QString();
    return isOpen;
}

QHash<QString, QString> variablesOf(const Options &options, const Stage &stage) {
    return {
        {"HERE", QFileInfo(options.script).absolutePath()},
        {"SAMPLES", stage.programFolder() + "/My Photos"},
        {"PROGRAM", stage.programFolder()},
        {"OUT", QDir(qEnvironmentVariable("LUMORA_PLAY_OUT", QDir::currentPath())).absolutePath()},
        {"TMP", stage.temporaryFolder()},
        {"HOME", stage.home()},
    };
}

int playScript(QApplication &application, const Options &options, Script script, const Stage &stage) {
    std::atomic<int> line = 0;
    Watchdog watchdog(std::chrono::seconds(options.watchdog), stage.path().toStdString(),
                      [&] { complain(QString("%1:%2: the program hangs").arg(options.script).arg(line.load())); });
    // Usually nobody looks for what is left.
    LumoraProgram program(stage.programFolder(), options.keepsPhotos ? RecoveryFolder::usualParent() : QString());
    Player player(program, std::move(script), options.patience);
    player.variables = variablesOf(options, stage);
    player.remakesLooks = options.remakesLooks;
    player.print = say;
    player.turnLimit = std::chrono::milliseconds(options.turnLimit);
    if (options.verbose) {
        player.log = say;
        player.logTurn = say;
    }
    const Browser browser(say);
    player.beforeStep = [&](const Step &step) {
        if (options.verbose && line != step.line) {
            say(QString("%1: %2 %3").arg(step.line).arg(step.verb, step.words.join(' ')));
        }
        line = step.line;
        watchdog.feed();
    };
    // Not quit(), which would close the windows first: a window may ask whether to save.
    QObject::connect(&player, &Player::finished, &application, [] { QCoreApplication::exit(); });
    QObject::connect(&program.main(), &basMain::ended, &player, &Player::programEnded);
    player.begin();
    QApplication::exec();
    if (!player.succeeded()) {
        complain(QString("%1:%2: %3").arg(options.script).arg(player.problemLine()).arg(player.problem()));
    }
    return player.succeeded() ? 0 : 1;
}

} // namespace

int main(int argc, char **argv) {
    QStringList arguments;
    for (int index = 0; index < argc; ++index) {
        arguments << QString::fromLocal8Bit(argv[index]);
    }
    Options options;
    int code = 0;
    if (!readOptions(arguments, options, code)) {
        return code;
    }
    QString text;
    if (!readFile(options.script, text)) {
        complain(QString("%1 cannot be read").arg(options.script));
        return 1;
    }
    Script script = readScript(text);
    if (script.problemLine > 0) {
        complain(QString("%1:%2: %3").arg(options.script).arg(script.problemLine).arg(script.problem));
        return 1;
    }
    qputenv("LC_ALL", options.locale.toUtf8());
    qunsetenv("LANGUAGE");
    const Stage stage(options.folder, options.screen, options.place);
    if (!stage.isReady()) {
        complain("There is no temporary folder to play in.");
        return 1;
    }
    if (!options.desktopDialogs) {  // which may need GLib's event loop
        qputenv("QT_NO_GLIB", "1"); // Qt's own event loop tells exactly when it has nothing to do
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    }
    QApplication application(argc, argv);
    setUpApplication(application, Installation{stage.programFolder(), {}, usersConfigurationFolder()});
    return playScript(application, options, std::move(script), stage);
}
