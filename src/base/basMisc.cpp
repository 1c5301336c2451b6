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

int ColourToRGB(qint32 colour, quint8 &red, quint8 &green, quint8 &blue) {
    if (colour < 0) {
        return 0;
    }
    red = static_cast<quint8>(colour);
    green = static_cast<quint8>(colour >> 8);
    blue = static_cast<quint8>(colour >> 16);
    return 1;
}

void OpenWithShell(const QString &documentOrAddress) {
    const QUrl url = QUrl::fromUserInput(documentOrAddress, QDir::homePath());
    if (url.isValid()) {
        QDesktopServices::openUrl(url);
    }
}

QString TrimNull(const QString &text) {
    return text.left(text.indexOf(QChar::Null));
}

QString StripPath(const QString &path) {
    return path.mid(path.lastIndexOf('/') + 1);
}

QString GetTempDir() {
    return QDir::tempPath();
}

QString versionNumber() {
    return QStringLiteral(LUMORA_VERSION);
}

} // namespace lumora
