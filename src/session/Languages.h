// The languages that are installed: language.ini beside the program and the files in the folder "languages".
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace lumora {

struct Installation;
class IniFiles;
class Settings;

/// What the setting says for the file beside the program, whatever languages the desktop has.
inline constexpr char fileBesideTheProgram[] = "language.ini";

struct InstalledLanguage {
    QString file; ///< its name in the folder "languages", or fileBesideTheProgram
    QString name; ///< in the language itself
};

/// language.ini first, then the others by name. Of those with the same name only the first one.
QList<InstalledLanguage> installedLanguages(const Installation &where);

/// The installed language, as InstalledLanguage::file, for somebody who has chosen none: "language-CODE.ini" of the
/// first of these codes ("pt-BR", "de", best first) that is there, or language.ini, which is English. It is
/// language.ini, too, where that has been replaced by a file of another language: who installed it has chosen.
QString languageOfTheDesktop(const Installation &where, IniFiles &files, const QStringList &codes);

/// The language in use, as InstalledLanguage::file: the chosen one, that of the desktop where none is chosen, or
/// language.ini where the chosen one is not there.
QString languageInUse(const Installation &where, const Settings &settings, IniFiles &files);

/// The files in which a text is looked for: that of the language in use, then language.ini.
QStringList languageFiles(const Installation &where, const Settings &settings, IniFiles &files);

} // namespace lumora
