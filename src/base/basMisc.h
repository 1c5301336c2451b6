// The small platform helpers that every floor uses, and the folders of this installation.
#pragma once

#include <QString>

namespace lumora {

/// Where this installation keeps its things. "/" separates folders.
struct Installation {
    QString programFolder;       ///< the folder that holds the program file
    QString recoveryFolder = {}; ///< where copies of unsaved photos are kept; empty: nowhere
    QString settingsFile() const { return programFolder + "/Lumora.ini"; }
    /// language.ini in the program's folder, its name matched without regard to case.
    QString languageFile() const;
    QString samplesFolder() const { return programFolder + "/My Photos"; }
    QString videosFolder() const { return programFolder + "/Videos"; }
};

/// The user's folder of that shell number: 5 documents, 39 pictures, 0 desktop, made when it is missing, as a desktop
/// does at log-in; an empty text for another number or where it cannot be made.
QString GetSpecialFolderPath(int folder);

/// Opens a document or address with the desktop's own program for it. Quiet when there is none.
void OpenWithShell(const QString &documentOrAddress);

/// "1.0.0": major, minor, revision of this program.
QString versionNumber();

} // namespace lumora
