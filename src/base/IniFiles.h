// Reading and writing private-profile text files: Lumora.ini and language.ini. The only access to both.
#pragma once

#include <QString>
#include <chrono>
#include <memory>

namespace lumora {

/// Keeps parsed files in memory. A look at a file compares its date, size and identity, and parses it when it has
/// changed. Reads look at most once in `betweenLooks`, so that a paint costs no system call and a change from outside
/// is still seen at once by human measure; the program's own writes are seen by the next read. For one thread.
///
/// Rules: section and key names match without regard to case; the first of duplicates wins; ';' starts a comment only
/// at a line's start; blanks around names and values are dropped; values are taken as they stand, without escapes
/// and with any quotes; UTF-8 with or without byte-order mark, old one-byte (Windows-1252) files
/// too; LF, CRLF and CR end a line.
class IniFiles {
  public:
    /// With no time between looks every read looks.
    explicit IniFiles(std::chrono::milliseconds betweenLooks = std::chrono::milliseconds(200));
    ~IniFiles();

    /// The value, at most 900 characters; `defaultValue` when the file, the section or the key is missing. An empty
    /// value is a value.
    QString ReadIniValue(const QString &file, const QString &section, const QString &key, const QString &defaultValue);

    /// Writes one value and keeps comments, order and everything unknown. The file is replaced whole or not at all
    /// (temporary file beside it, fsync, rename). Where its folder cannot be written the value goes to the file of the
    /// same name in the user's configuration folder, which reads consult first. Always true: errors are ignored.
    bool WriteIniValue(const QString &file, const QString &section, const QString &key, const QString &value);

    /// Counts the changes that were seen in any of the files that have been read. Who keeps what was read compares this
    /// before each use. Looks at the files when it is time.
    quint64 revision();

    /// Has the next read look at the files, however short ago the last look was.
    void lookAgain();

    /// How often a file has been looked at, for the tests.
    int looks() const;

  private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace lumora
