// Files for tests.
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QStringList>

namespace lumora::test {

/// All bytes of the file; none where it cannot be read.
inline QByteArray contents(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The paths of all language files that are installed, the English one first.
inline QStringList languageFiles() {
    const QDir installed(qEnvironmentVariable("LUMORA_SOURCE") + "/resources/installed");
    QStringList files{installed.filePath("language.ini")};
    for (const QFileInfo &file : QDir(installed.filePath("languages")).entryInfoList({"language-*.ini"}, QDir::Files)) {
        files << file.filePath();
    }
    return files;
}

} // namespace lumora::test
