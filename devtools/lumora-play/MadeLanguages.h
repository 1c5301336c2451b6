// Languages made of the English texts, to try windows with: longer texts, and texts that are written from the right.
#pragma once

#include <QString>

namespace lumora::play {

/// Writes the language file of that kind, "longer" (one and a half times the letters) or "mirrored" (Hebrew letters),
/// into the folder. Its file name; empty for another kind or when it cannot be written.
QString makeLanguage(const QString &kind, const QString &folder);

} // namespace lumora::play
