#include "widgets/ToolkitTexts.h"

#include "base/Texts.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QThread>
#include <QWidget>
#include <algorithm>

namespace lumora {

namespace {

/// The desktop's own rules where they are those of the language, with its country. The digits are always 0 to 9: file
/// names and keyboards have them, and so have the texts of the language files.
QLocale localeOf(const QString &code) {
    const QLocale language(code);
    const QLocale system = QLocale::system();
    const QLocale locale = system.language() == language.language() ? system : language;
    if (locale.zeroDigit() == QLatin1StringView("0")) {
        return locale;
    }
    const QList<QLocale> countries =
        QLocale::matchingLocales(language.language(), QLocale::AnyScript, QLocale::AnyTerritory);
    const auto found = std::ranges::find(countries, QStringLiteral("0"), &QLocale::zeroDigit);
    return found == countries.end() ? locale : *found;
}

} // namespace

QString ToolkitTexts::Words::translate(const char *context, const char *source, const char *disambiguation,
                                       int number) const {
    QString words = QTranslator::translate(context, source, disambiguation, number);
    const bool isKeyName = qstrcmp(context, "QShortcut") == 0; // which is also read
    if (isKeyName || QThread::currentThread() != QCoreApplication::instance()->thread()) {
        return words;
    }
    const QString own = words.isEmpty() ? QString::fromUtf8(source) : words;
    const QString shown = m_texts.shown(own);
    return shown == own ? words : shown;
}

ToolkitTexts::ToolkitTexts(const Texts &texts) : m_texts(texts), m_translator(texts) {
    follow();
}

ToolkitTexts::~ToolkitTexts() {
    QLocale::setDefault(QLocale::system());
}

void ToolkitTexts::follow() {
    const QString name = m_texts.text("LanguageName");
    if (m_shown == name && QApplication::layoutDirection() == m_texts.direction()) {
        return;
    }
    m_shown = name;
    const QLocale language(m_texts.text("Language"));
    QCoreApplication::removeTranslator(&m_translator);
    if (!m_translator.load(language, "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        (void)m_translator.load(QString()); // forget the last one
    }
    QCoreApplication::installTranslator(&m_translator);
    QLocale::setDefault(localeOf(m_texts.text("Language")));
    QApplication::setLayoutDirection(m_texts.direction());
    for (QWidget *window : QApplication::topLevelWidgets()) {
        window->setLocale(QLocale());
        QCoreApplication::postEvent(window, new QEvent(QEvent::LanguageChange));
    }
}

} // namespace lumora
