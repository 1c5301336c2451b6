// Whether every text of the table reaches its control, and every text of a control is in the table: for the tests of
// all windows.
#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace lumora::test {

/// What the changed language file holds for an identifier: unlike any default, with "&&", letters beyond ASCII and the
/// places "%1", "%2" that the default has.
QString changedText(const QString &identifier);

/// Writes a language file in which every text is changedText(). False when it cannot be written.
bool writeChangedLanguageFile(const QString &file);

/// The texts of the window's table rows that do not show: a line each, "identifier: control property", with what is
/// wrong. Call after the window's LoadLanguage with the changed file. Controls named in `notBuiltYet` may be missing,
/// but then must be: one that is there is named as well, so that the list cannot grow stale.
QStringList textsNotShown(QWidget &window, const QStringList &notBuiltYet = {});

/// What can be seen or heard of the window and its controls, while the changed language file is in use, that holds
/// letters but nothing of that file: "control property: text". What a person has typed, paths and addresses do not
/// count.
QStringList textsOfTheCode(const QWidget &window);

} // namespace lumora::test
