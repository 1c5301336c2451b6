// Names of files as texts. The system's names are bytes, and not all of them are UTF-8: those from old disks and
// archives must be listed, opened and saved as well. Qt's own conversion loses them.
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace lumora {

/// The text of a file's name or path. Each byte that is not UTF-8 becomes a lone surrogate from U+DC80 on (Unicode
/// Technical Report 36, 3.7.3, as Python has it).
QString fileNameOf(const QByteArray &bytes);

/// The bytes of it again, also of texts that do not come from fileNameOf.
QByteArray fileNameBytes(const QString &name);

/// Whether there is anything at that path, be it a link that leads nowhere.
bool isThere(const QString &path);

/// Whether a file that can hold bytes is at that path, or at the end of the links there.
bool isFile(const QString &path);

/// The path of an address on this computer, such as a dropped one; empty for any other. Its percent signs encode
/// bytes (RFC 8089), which need not be UTF-8.
QString localFileOf(const QUrl &address);

} // namespace lumora
