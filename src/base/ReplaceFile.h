// Replaces a file atomically. Used for pictures and for the settings files.
#pragma once

#include <QIODevice>
#include <QString>
#include <functional>
#include <optional>

namespace lumora {

/// Why a file could not be replaced.
struct ReplaceFailure {
    enum class Kind {
        Other,
        DiskFull,       ///< no space, a quota, or more than a file may have
        FolderReadOnly, ///< nothing may be created in the folder
        FileReadOnly,   ///< there is a file that may not be written
        NameRefused,    ///< the folder's file system does not take a sign of the name
        NameTooLong,
    };
    Kind kind = Kind::Other;
    QString text; ///< the system's message, in English
};

/// Lets `write` fill a temporary file in the folder of `path`, flushes it to the disk and gives it the file's name: at
/// every moment either the old or the new file is complete. Where the system can, the temporary file has no name until
/// then, so that a process that is killed leaves nothing; a name that is left all the same is noted in the user's state
/// folder for removeUnfinished(), and removed by the next call for a file of that folder.
/// A symbolic link stays a link and its target is replaced; an existing file keeps its mode (and its owner, where the
/// system allows); a new one gets the default mode. Returns nothing on success; else the old file is unchanged and no
/// temporary file remains. Fails for a folder or anything else that is not a regular file, a file that may not be
/// written, a missing or read-only folder, a full disk, `write` returning false, and a current TaskControl that is
/// cancelled before the file gets its name. `write` may be called twice; it can read and seek.
std::optional<ReplaceFailure> replaceFile(const QString &path, const std::function<bool(QIODevice &)> &write);

/// Removes what programs of this user that were killed meanwhile have left beside the files that they replaced. Looks
/// only where there is a note; for the start of the program, in any thread.
void removeUnfinished();

} // namespace lumora
