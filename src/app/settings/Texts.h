// Every text of the program: one row a text, in the order in which a window sets them.
#pragma once

#include <QString>
#include <span>

class QWidget;

namespace lumora {

class IniFiles;

/// One text. `control` is the object name of the control below the window that shows it ("" for the window's own
/// title, "-" for a message that is read when it is shown); `property` says where it goes: "text", "toolTip", "title",
/// "windowTitle" or, for a button of a toolbar or picture list, "item:KEY" (the control's item of that key).
struct TextRow {
    const char *window;
    const char *identifier;
    const char *defaultText;
    const char *control;
    const char *property;
};

/// All rows.
std::span<const TextRow> allTexts();

/// The texts of one language file.
class Texts {
  public:
    Texts(IniFiles &files, QString languageFile);

    /// The text of an identifier, with the table's default (the first row of that identifier).
    QString text(const QString &identifier) const;
    /// The same with the caller's own default, for the few identifiers whose readers differ in it.
    QString text(const QString &identifier, const QString &defaultText) const;

    /// Sets every text of `window` (its object name) on its controls; buttons get their text or tool tip as their
    /// accessible name as well. Controls that the window does not have are passed over.
    void LoadLanguage(QWidget &window) const;

  private:
    IniFiles &m_files;
    QString m_languageFile;
};

} // namespace lumora
