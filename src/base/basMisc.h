// Small platform helpers used by all modules, and the folders of this installation.
#pragma once

#include <QString>
#include <QStringList>

namespace lumora {

/// The folders of this installation, separated by "/".
struct Installation {
    QString programFolder;       ///< the folder that holds the program file
    QString recoveryFolder = {}; ///< where copies of unsaved photos are kept; empty: disabled
    QString usersFolder = {};    ///< what is each user's own; empty: kept beside the program
    QString cacheFolder = {};    ///< where undo steps go that do not fit into memory; empty: the temporary folder
    QString siteFile = {};       ///< the administrator's settings for all users; empty: none
    QString settingsFile() const { return programFolder + "/Lumora.ini"; }
    /// The settings that each user has for themselves, whoever else uses this installation.
    QString usersFile() const { return (usersFolder.isEmpty() ? programFolder : usersFolder) + "/ForMe.ini"; }
    /// language.ini in the program's folder, its name matched without regard to case.
    QString languageFile() const;
    /// Further languages, to choose from in the options.
    QString languagesFolder() const { return programFolder + "/languages"; }
    QString samplesFolder() const { return programFolder + "/My Photos"; }
    QString videosFolder() const { return programFolder + "/Videos"; }
};

/// The user's folder of that shell number: 5 documents, 39 pictures, 0 desktop, created when it is missing, as a
/// desktop does at log-in; an empty text for any other number or when it cannot be created.
QString GetSpecialFolderPath(int folder);

/// The folder of Lumora's own files in the user's configuration; not created.
QString usersConfigurationFolder();

/// The temporary folder: TMPDIR of the environment, or the system's.
QString GetTempDir();

/// Where a file that is needed for a moment can be tried: the temporary folder, then, made where it is missing, the
/// cache of the user, for when the first is full.
QStringList foldersForAMoment();

/// Lumora's part of the user's folder for what is worth keeping between two runs, and for what is not (XDG_STATE_HOME,
/// XDG_CACHE_HOME). The folder may not be there.
QString stateFolder();
QString cacheFolder();

/// Opens a document or address with the desktop's own program for it. False when there is none, or nothing to open.
bool OpenWithShell(const QString &documentOrAddress);

/// "1.0.0": major, minor, revision of this program.
QString versionNumber();

} // namespace lumora
