// The photo as it is mailed: smaller, a JPEG, in a temporary file that nobody else can read.
#pragma once

#include "session/Settings.h"

#include <QByteArray>
#include <QImage>

namespace lumora {

/// The photo reduced so that its longer side is at most 1024 (Small) or 2048 (Medium) pixels, never enlarged; AsItIs
/// keeps its size. Null when memory is short.
QImage reducedForMail(const QImage &photo, MailSize size);

/// A JPEG file of quality 88 with nothing but the pixels: neither when nor where the photo was taken. Empty for a null
/// picture and when it cannot be made.
QByteArray mailJpeg(const QImage &picture);

/// Writes the bytes to LU_Photo.jpg in the temporary folder, or in the cache where that one is full, and returns its
/// path, or an empty text when neither can be written. Only the user can read the file (mode 0600). Whatever has that
/// name is replaced: a link itself, never what it leads to. Where another user owns the name the file goes into a new
/// folder there.
QString writeMailFile(const QByteArray &jpeg);

/// Deletes that file, and the folder that was made for it.
void removeMailFile(const QString &path);

} // namespace lumora
