// The language of the whole application, beside the texts of its windows: the direction in which it is written, how it
// writes numbers and sorts names, and the toolkit's own words, "OK" on a message box, the menu of a text field, its
// file dialog.
#pragma once

#include <QTranslator>

namespace lumora {

class Texts;

/// The toolkit's words are in the language whose code is the text "Language", as long as this lives. They stay English
/// where the toolkit has no translation.
class ToolkitTexts {
  public:
    explicit ToolkitTexts(const Texts &texts);
    ~ToolkitTexts();

    /// Call when the texts may have become those of another language: if so, every window gets QEvent::LanguageChange
    /// and, where the direction has changed, is mirrored.
    void follow();

  private:
    /// The toolkit's translation, shown as our own texts are.
    class Words : public QTranslator {
      public:
        explicit Words(const Texts &texts) : m_texts(texts) {}
        QString translate(const char *context, const char *source, const char *disambiguation,
                          int number) const override;

      private:
        const Texts &m_texts;
    };

    const Texts &m_texts;
    QString m_shown;    ///< the name of the language
    Words m_translator; // takes itself out of the application when it goes
};

} // namespace lumora
