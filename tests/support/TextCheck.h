// Whether every text of the table reaches its control: for the tests of all windows.
#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace lumora::test {

/// What the changed language file holds for an identifier: unlike any default, with "&&" and letters beyond ASCII.
QString changedText(const QString &identifier);

/// Writes a language file in which every text is changedText(). False when it cannot be written.
bool writeChangedLanguageFile(const QString &file);

/// The texts of the window's table rows that do not show: a line each, "identifier: control property", with what is
/// wrong. Call after the window's LoadLanguage with the changed file. Controls named in `notBuiltYet` may be missing,
/// but then must be: one that is there is named as well, so that the list cannot grow stale.
QStringList textsNotShown(QWidget &window, const QStringList &notBuiltYet = {});

} // namespace lumora::test
