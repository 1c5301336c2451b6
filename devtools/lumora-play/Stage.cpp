#include "Stage.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace lumora::play {

namespace {

/// The folder of this program file; QCoreApplication does not know it yet.
QString ownFolder() {
    return QFileInfo(QFile::symLinkTarget("/proc/self/exe")).path();
}

bool hasScreen() {
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || qEnvironmentVariableIsSet("DISPLAY") ||
           qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

bool isText(const QFileInfo &entry) {
    return entry.suffix().compare("ini", Qt::CaseInsensitive) == 0;
}

} // namespace

Stage::Stage(const QString &folder, QSize screen, const QString &place) {
    if (place.isEmpty()) {
        m_folder.emplace(QDir::tempPath() + "/lumora-play-XXXXXX");
        m_path = m_folder->path();
    } else {
        m_path = QDir(place).absolutePath();
    }
    m_programFolder = folder.isEmpty() ? m_path + "/program" : QDir(folder).absolutePath();
    if (!isReady()) {
        return;
    }
    if (folder.isEmpty()) {
        copyProgramFolder();
    }
    redirectEnvironment();
    if (!hasScreen()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    if (qEnvironmentVariable("QT_QPA_PLATFORM") == "offscreen") {
        makeScreen(screen);
    }
}

void Stage::copyProgramFolder() const {
    QDir().mkpath(m_programFolder);
    const auto entries = QDir(ownFolder()).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        const QString target = m_programFolder + '/' + entry.fileName();
        if (entry.isDir() && entry.fileName() == "languages") { // scripts add some
            QDir().mkpath(target);
            for (const QFileInfo &file : QDir(entry.filePath()).entryInfoList(QDir::Files)) {
                QFile::copy(file.filePath(), target + '/' + file.fileName());
            }
        } else if (isText(entry)) {
            QFile::copy(entry.filePath(), target);
            QFile::setPermissions(target, QFile::permissions(target) | QFile::WriteOwner);
        } else {
            QFile::link(entry.filePath(), target);
        }
    }
}

void Stage::redirectEnvironment() const {
    for (const char *name :
         {"home/Documents", "home/Pictures", "home/Desktop", "config", "cache", "data", "state", "tmp", "run"}) {
        QDir(m_path).mkpath(name);
        QFile::setPermissions(m_path + '/' + name, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    const auto set = [this](const char *variable, const char *name) {
        qputenv(variable, QFile::encodeName(m_path + '/' + name));
    };
    set("HOME", "home");
    set("XDG_CONFIG_HOME", "config");
    set("XDG_CACHE_HOME", "cache");
    set("XDG_DATA_HOME", "data");
    set("XDG_STATE_HOME", "state");
    set("TMPDIR", "tmp");
    if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) {
        set("XDG_RUNTIME_DIR", "run");
    }
    if (!qEnvironmentVariableIsSet("CUPS_SERVER")) {
        set("CUPS_SERVER", "run/no-print-system"); // no run puts out paper
    }
    if (!qEnvironmentVariableIsSet("SPEECHD_ADDRESS")) { // nor starts a speech service, which would stay
        qputenv("SPEECHD_ADDRESS", "unix_socket:" + QFile::encodeName(m_path + "/run/no-speech-service"));
    }
}

void Stage::makeScreen(QSize screen) const {
    QFile file(m_path + "/screen.json");
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QString(R"({"screens": [{"name": "stage", "x": 0, "y": 0, "width": %1, "height": %2,
                               "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})")
                       .arg(screen.width())
                       .arg(screen.height())
                       .toUtf8());
        qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(file.fileName()));
    }
}

} // namespace lumora::play
