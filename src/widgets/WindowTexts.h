// Puts the texts of the language file on a window's controls. Called by each window's LoadLanguage.
#pragma once

class QWidget;

namespace lumora {

struct TextRow;
class Texts;

/// The control of a row below the window, down to the item; nullptr when the window does not have it.
QWidget *controlOfText(const TextRow &row, QWidget &window);

/// Sets every text of `window` (its object name) on its controls; buttons get their text or tool tip as their
/// accessible name as well. "&&" is one ampersand everywhere. Controls that the window does not have are skipped.
/// Repeats showText for the controls below it, so that all of them change with the language.
void showTexts(const Texts &texts, QWidget &window);

/// Sets one text on a control that the table does not name: as its "text", "toolTip" or "placeholderText".
void showText(const Texts &texts, QWidget &control, const char *identifier, const char *property = "text");

} // namespace lumora
