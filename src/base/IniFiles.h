// Reading and writing private-profile text files: Lumora.ini and language.ini. The only access to both.
#pragma once

#include <QList>
#include <QString>
#include <chrono>
#include <memory>

namespace lumora {

/// Keeps parsed files in memory. A check compares a file's date, size and identity, and parses it when it has changed.
/// The first read of a file checks it; later ones have another thread check at most once per `betweenLooks` and go on
/// with what they know, so that neither a paint nor a click waits for a slow disk or server, and an external change is
/// still noticed promptly. The program's own writes, by whichever IniFiles, are visible to the next read. Not
/// thread-safe.
///
/// Rules: section and key names match without regard to case; the first of duplicates wins; ';' starts a comment only
/// at a line's start; blanks around names and values are dropped; values are taken verbatim, without escapes and
/// including quotes; UTF-8 with or without byte-order mark, old one-byte (Windows-1252) files
/// too; LF, CRLF and CR end a line.
class IniFiles {
  public:
    /// Whether the copies in the user's folder count, which may be on a slow server, or only the files themselves.
    enum class UsersCopies { Read, Ignored };

    /// With a `betweenLooks` of zero every read checks the file.
    explicit IniFiles(std::chrono::milliseconds betweenLooks = std::chrono::milliseconds(200),
                      UsersCopies copies = UsersCopies::Read);
    explicit IniFiles(UsersCopies copies) : IniFiles(std::chrono::milliseconds(200), copies) {}
    ~IniFiles();

    /// The value, at most 900 characters; `defaultValue` when the file, the section or the key is missing. An empty
    /// value counts as a value.
    QString ReadIniValue(const QString &file, const QString &section, const QString &key, const QString &defaultValue);

    /// Writes one value and keeps comments, order and unknown content. The file is replaced atomically (temporary file
    /// beside it, fsync, rename). Where its folder is read-only the value is written to the file of the same name in
    /// the user's configuration folder, which reads consult first. Always true: errors are ignored.
    bool WriteIniValue(const QString &file, const QString &section, const QString &key, const QString &value);

    /// Has `siteFile`, which an administrator writes for all users, answer for what the user has not chosen: after the
    /// user's copy of `file`, or, where `file` can be written and so is the user's own, after that. Nothing writes it.
    void addSiteFile(const QString &file, const QString &siteFile);

    /// The value in the site file of `file`, whatever a user has chosen; a null text when it has none.
    QString siteValue(const QString &file, const QString &section, const QString &key);

    /// One value to write.
    struct Value {
        QString section, key, text;
    };
    /// Writes several values in their order and replaces the file once, and only when one of them changes it.
    void writeValues(const QString &file, const QList<Value> &values);

    /// Counts the changes noticed in any file that has been read. Caches of values compare this before each use. Has
    /// the files checked when `betweenLooks` has passed.
    quint64 revision();

    /// Forces the next read to check the files, even if the last check was recent.
    void lookAgain();

    /// How many checks of a file have been taken note of, for the tests.
    int looks() const;

  private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace lumora
