// Reading and writing private-profile text files: Lumora.ini and language.ini. The only access to both.
#pragma once

#include <QHash>
#include <QString>
#include <memory>

namespace lumora {

/// Keeps parsed files in memory and looks at a file's date, size and identity before each read, so that a hundred
/// reads cost one parse and a change from outside is still seen.
///
/// Rules: section and key names match without regard to case; the first of duplicates wins; ';' starts a comment only
/// at a line's start; blanks around names and values are dropped; values are taken as they stand, without escapes
/// and with any quotes; UTF-8 with or without byte-order mark, old one-byte (Windows-1252) files
/// too; LF, CRLF and CR end a line.
class IniFiles {
  public:
    IniFiles();
    ~IniFiles();

    /// The value, at most 900 characters; `defaultValue` when the file, the section or the key is missing. An empty
    /// value is a value.
    QString ReadIniValue(const QString &file, const QString &section, const QString &key, const QString &defaultValue);

    /// Writes one value and keeps comments, order and everything unknown. The file is replaced whole or not at all
    /// (temporary file beside it, fsync, rename). Where its folder cannot be written the value goes to the file of the
    /// same name in the user's configuration folder, which reads consult first. Always true: errors are ignored.
    bool WriteIniValue(const QString &file, const QString &section, const QString &key, const QString &value);

  private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace lumora
