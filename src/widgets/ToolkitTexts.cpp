#include "widgets/ToolkitTexts.h"

#include "base/Texts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

namespace lumora {

ToolkitTexts::ToolkitTexts(const Texts &texts) {
    const QLocale language(texts.text("Language"));
    if (m_translator.load(language, "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(&m_translator);
    }
}

} // namespace lumora
