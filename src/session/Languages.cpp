#include "session/Languages.h"

#include "base/IniFiles.h"
#include "base/Texts.h"
#include "base/basMisc.h"
#include "session/Settings.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <algorithm>

namespace lumora {

namespace {

QString pathOf(const Installation &where, const QString &file) {
    return where.languagesFolder() + '/' + file;
}

/// A name in that folder, and nothing else that a settings file may say.
bool isInstalled(const Installation &where, const QString &file) {
    return QFileInfo(file).fileName() == file && QFileInfo(pathOf(where, file)).isFile();
}

/// What the file says, else what the system calls the language, else `otherwise`.
QString nameOf(IniFiles &files, const QString &path, const QString &otherwise) {
    const auto caption = [&](const char *identifier) {
        return files.ReadIniValue(path, QString::fromUtf8(identifier), QStringLiteral("Caption"), {}).trimmed();
    };
    const QString name = caption("LanguageName");
    const QString code = caption("Language");
    const QString known = code.isEmpty() ? QString() : QLocale(code).nativeLanguageName();
    return !name.isEmpty() ? name : !known.isEmpty() ? known : otherwise;
}

} // namespace

QList<InstalledLanguage> installedLanguages(const Installation &where) {
    IniFiles files(IniFiles::UsersCopies::Ignored);
    QList<InstalledLanguage> languages;
    const QDir folder(where.languagesFolder());
    for (const QString &file : folder.entryList({QStringLiteral("*.ini")}, QDir::Files | QDir::Readable)) {
        const QString path = folder.filePath(file);
        languages.append({file, nameOf(files, path, QFileInfo(path).completeBaseName())});
    }
    std::ranges::stable_sort(languages, [](const InstalledLanguage &one, const InstalledLanguage &other) {
        return one.name.toCaseFolded().localeAwareCompare(other.name.toCaseFolded()) < 0;
    });
    const QString ofTheCode = Texts(files, QString()).text("LanguageName");
    languages.prepend({fileBesideTheProgram, nameOf(files, where.languageFile(), ofTheCode)});
    QStringList names;
    languages.removeIf([&](const InstalledLanguage &language) {
        const bool again = names.contains(language.name);
        names << language.name;
        return again;
    });
    return languages;
}

QString languageOfTheDesktop(const Installation &where, IniFiles &files, const QStringList &codes) {
    const QString beside = where.languageFile();
    const QString code = files.ReadIniValue(beside, QStringLiteral("Language"), QStringLiteral("Caption"), {});
    if (code.trimmed() != QLatin1StringView("en") && QFileInfo::exists(beside)) {
        return fileBesideTheProgram;
    }
    for (const QString &wanted : codes) {
        const QString language = wanted.section('-', 0, 0);
        if (language == QLatin1StringView("en")) {
            break;
        }
        for (const QString &one : {wanted, language}) {
            QString file = QStringLiteral("language-%1.ini").arg(one);
            if (isInstalled(where, file)) {
                return file;
            }
        }
    }
    return fileBesideTheProgram;
}

QString languageInUse(const Installation &where, const Settings &settings, IniFiles &files) {
    const QString chosen = settings.read<Setting::Language>().trimmed();
    if (chosen.isEmpty()) {
        return languageOfTheDesktop(where, files, QLocale::system().uiLanguages());
    }
    return isInstalled(where, chosen) ? chosen : QString(fileBesideTheProgram);
}

QStringList languageFiles(const Installation &where, const Settings &settings, IniFiles &files) {
    const QString file = languageInUse(where, settings, files);
    return file == QLatin1StringView(fileBesideTheProgram) ? QStringList{where.languageFile()}
                                                           : QStringList{pathOf(where, file), where.languageFile()};
}

} // namespace lumora
