// Replaces a file atomically. Used for pictures and for the settings files.
#pragma once

#include <QIODevice>
#include <QString>
#include <functional>
#include <optional>

namespace lumora {

/// Lets `write` fill a temporary file in the folder of `path`, flushes it to the disk and gives it the file's name: at
/// every moment either the old or the new file is complete. A symbolic link stays a link and its target is replaced; an
/// existing file keeps its mode (and its owner, where the system allows); a new one gets the default mode. Returns
/// nothing on success, else the error in English; then the old file is unchanged and no temporary file remains. Fails
/// for a folder or anything else that is not a regular file, a file that may not be written, a missing or read-only
/// folder, a full disk, `write` returning false, and a current TaskControl that is cancelled before the file gets its
/// name.
std::optional<QString> replaceFile(const QString &path, const std::function<bool(QIODevice &)> &write);

} // namespace lumora
