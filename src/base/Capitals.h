// Texts in capital letters, for children who read only those yet.
#pragma once

#include <QString>

namespace lumora {

/// `text` in capitals by the rules of the language with that code ("tr": "i" becomes "İ"; "de": "ß" becomes "ẞ", as the
/// spelling council has it). What is no word of the language stays as it is: places for values (%1, %L1, %n), tags
/// and entities of HTML, file names, addresses, extensions (".jpg"). A letter key stays marked ("&Open", "&OPEN"). A
/// language without capitals (Arabic, Japanese) is returned unchanged.
QString inCapitals(const QString &text, const QString &language);

/// Whether a language has capitals at all.
bool hasCapitals(const QString &language);

} // namespace lumora
