// The text of one private-profile file: which values it holds, and how to change one value while everything else is
// kept. Used by IniFiles only, which handles the files.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <optional>

namespace lumora {

/// Written here because the available libraries drop blank lines, lines without '=' and the spelling of unchanged
/// entries, or stop at a NUL byte, and these two files are edited by hand.
///
/// A line is "[section]", "key=value", a comment (its first non-blank character is ';') or ignored.
/// - Names match without regard to case. Blanks (space, tab) around names and values are dropped, those inside stay.
/// - Keys before any section belong to none. Of sections with one name only the first is searched, of keys the first
///   counts. Lines without '=' are ignored. An unclosed '[' opens a section whose name extends to the line's end.
/// - LF, CRLF and CR end a line; a NUL ends the line's content.
class IniText {
  public:
    /// Bytes of any content: UTF-8 with or without byte-order mark, UTF-16 with one, and Windows-1252 for each line
    /// that is not valid UTF-8.
    explicit IniText(const QByteArray &bytes);

    /// The whole value; nothing when the section or the key is missing.
    std::optional<QString> value(const QString &section, const QString &key) const;

    /// Whether these names can be read back after writing: neither empty, no '=' in a key, no line break anywhere.
    static bool canName(const QString &section, const QString &key);

    /// Changes the value, or adds the key at the end of its section, or the section at the end of the file, with the
    /// file's own line ending. The value is cut at its first line break or NUL. Returns false when nothing had to
    /// change.
    bool setValue(const QString &section, const QString &key, const QString &value);

    /// UTF-8, with the byte-order mark of the original, if any.
    QByteArray toBytes() const;

  private:
    struct Span {
        qsizetype start;
        qsizetype length;
    };
    void index();
    void replace(Span &value, const QString &text);
    void indexLine(Span line, qsizetype next, QString &section);

    QString m_text;
    bool m_byteOrderMark = false;
    QHash<QString, Span> m_values;           ///< by folded section, line break, folded key
    QHash<QString, qsizetype> m_sectionEnds; ///< by folded section: where a further key goes
};

} // namespace lumora
