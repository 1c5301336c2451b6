#include "base/basMisc.h"

#include <QDesktopServices>
#include <QDir>
#include <QStandardPaths>
#include <QUrl>

namespace lumora {

QString Installation::languageFile() const {
    const QString name = QStringLiteral("language.ini");
    const QStringList spellings = QDir(programFolder).entryList({name}, QDir::Files, QDir::Name);
    return programFolder + '/' + (spellings.isEmpty() || spellings.contains(name) ? name : spellings.first());
}

QString GetSpecialFolderPath(int folder) {
    static const QHash<int, QStandardPaths::StandardLocation> folders = {
        {0, QStandardPaths::DesktopLocation},
        {5, QStandardPaths::DocumentsLocation},
        {39, QStandardPaths::PicturesLocation},
    };
    const auto found = folders.constFind(folder);
    if (found == folders.constEnd()) {
        return {};
    }
    const QString path = QStandardPaths::writableLocation(*found);
    return !path.isEmpty() && QDir().mkpath(path) ? path : QString();
}

QString usersConfigurationFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/lumora";
}

QString GetTempDir() {
    const QString named = QDir::tempPath(); // empty where TMPDIR names nothing
    return named.isEmpty() ? QStringLiteral("/tmp") : named;
}

QStringList foldersForAMoment() {
    QDir().mkpath(cacheFolder());
    return {GetTempDir(), cacheFolder()};
}

QString stateFolder() {
    const QString named = qEnvironmentVariable("XDG_STATE_HOME");
    return (QDir::isAbsolutePath(named) ? named : QDir::homePath() + "/.local/state") + "/lumora";
}

QString cacheFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/lumora";
}

bool OpenWithShell(const QString &documentOrAddress) {
    const QUrl url = QUrl::fromUserInput(documentOrAddress, QDir::homePath());
    return url.isValid() && QDesktopServices::openUrl(url);
}

QString versionNumber() {
    return QStringLiteral(LUMORA_VERSION);
}

} // namespace lumora
