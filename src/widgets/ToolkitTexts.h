// The toolkit's own words: "OK" on a message box, the menu of a text field, its file dialog.
#pragma once

#include <QTranslator>

namespace lumora {

class Texts;

/// Has them shown in the language whose code stands in the text "Language", as long as this lives. They stay English
/// where the toolkit has no translation.
class ToolkitTexts {
  public:
    explicit ToolkitTexts(const Texts &texts);

  private:
    QTranslator m_translator; // takes itself out of the application when it goes
};

} // namespace lumora
