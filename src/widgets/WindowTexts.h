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
void showTexts(const Texts &texts, QWidget &window);

} // namespace lumora
