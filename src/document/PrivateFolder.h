// Folders for what is nobody else's business: private (mode 0700), never reached through a link, never another user's.
// Used for recovery copies and for photos that were thrown away.
#pragma once

#include <QString>

namespace lumora {

/// Flags of open() for a folder that is reached without a link.
int folderFlags();
/// Whether that descriptor is of this user's folder, and the folder still has a name.
bool isOwnFolder(int folder);

/// Descriptor of the folder, private from now on; -1 when it is not there or not this user's. The caller closes it.
int openPrivateFolder(const QString &path);
/// The same; makes it, and those above it, where it is missing.
int makePrivateFolder(const QString &path);

/// Half of what is free on the disk of that folder, in bytes: the rest is left to others. 0 when that is not known.
qint64 halfOfFreeBytes(int folder);

} // namespace lumora
