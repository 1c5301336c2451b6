// Every text of the program: one row per text, in the order in which a window sets them.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <span>

namespace lumora {

class IniFiles;

/// One text. `window` names the windows that read it, separated by blanks ("" for a message that any of them may
/// show). `control` is the object name of the control below the window that shows it ("" for the window itself, "-"
/// for a message that is read when it is shown). `property` says where it is set:
/// - "text", "toolTip", "title", "windowTitle": that property of the control;
/// - "append": below the text that the control already shows, after an empty line;
/// - "item:KEY": tool tip of the control's button whose property "key" is KEY;
/// - "itemText:KEY": text and tool tip of that button;
/// - "verbatim" (control "-"): not words to read here, but a code, a file name or what leaves the program: never in
///   capitals.
struct TextRow {
    const char *window;
    const char *identifier;
    const char *defaultText;
    const char *control;
    const char *property;
};

/// All rows.
std::span<const TextRow> allTexts();

/// Whether that window (by its object name) reads the row.
bool isTextOf(const TextRow &row, const QString &window);

/// The texts of the language files, in memory: a text costs one hash table lookup; the table is filled again when a
/// file has changed.
class Texts {
  public:
    Texts(IniFiles &files, QString languageFile);
    /// With the files to look in, the first one first, and whether texts are in capitals (see inCapitals). Both are
    /// asked for again after each change of a file.
    Texts(IniFiles &files, std::function<QStringList()> languageFiles, std::function<bool()> capitals = {});

    /// The text of an identifier, with the table's default (the first row of that identifier). Identifiers are those of
    /// the table, case-sensitive; for any other the text is empty.
    QString text(const QString &identifier) const;
    /// The same with the caller's own default, for the few identifiers whose readers use different defaults.
    QString text(const QString &identifier, const QString &defaultText) const;

    /// The direction in which the language is written: the text "Direction" if that is "ltr" or "rtl", else the
    /// direction of most letters in the first file.
    Qt::LayoutDirection direction() const;

    /// Words that come from elsewhere (the toolkit), as texts are shown now: in capitals or as they are.
    QString shown(const QString &words) const;

  private:
    struct Entry {
        QString text;
        bool isFromFile = false;
    };
    const Entry &entry(const QString &identifier) const;
    void fill() const;

    IniFiles &m_files;
    std::function<QStringList()> m_languageFiles;
    std::function<bool()> m_capitals;
    mutable QString m_capitalsOf; ///< the language's code while texts are in capitals, else empty
    mutable QHash<QString, Entry> m_entries;
    mutable Qt::LayoutDirection m_lettersRun = Qt::LeftToRight; ///< those of the first file
    mutable std::optional<quint64> m_revision;                  ///< of the files, when the table was filled
};

} // namespace lumora
