#include "base/Texts.h"

#include "base/IniFiles.h"

#include <QStringList>

namespace lumora {
bool isTextOf(const TextRow &row, const QString &window) {
    return QString::fromUtf8(row.window).split(' ', Qt::SkipEmptyParts).contains(window);
}

Texts::Texts(IniFiles &files, QString languageFile) : m_files(files), m_languageFile(std::move(languageFile)) {}

QString Texts::text(const QString &identifier) const {
    for (const TextRow &row : allTexts()) {
        if (identifier == QLatin1StringView(row.identifier)) {
            return text(identifier, QString::fromUtf8(row.defaultText));
        }
    }
    return text(identifier, QString());
}

QString Texts::text(const QString &identifier, const QString &defaultText) const {
    return m_files.ReadIniValue(m_languageFile, identifier, QStringLiteral("Caption"), defaultText);
}

} // namespace lumora
