#include "base/Texts.h"

#include "base/IniFiles.h"

#include <QStringList>

namespace lumora {
bool isTextOf(const TextRow &row, const QString &window) {
    return QString::fromUtf8(row.window).split(' ', Qt::SkipEmptyParts).contains(window);
}

Texts::Texts(IniFiles &files, QString languageFile) : m_files(files), m_languageFile(std::move(languageFile)) {}

void Texts::fill() const {
    m_entries.clear();
    for (const TextRow &row : allTexts()) {
        const QString identifier = QString::fromUtf8(row.identifier);
        if (!m_entries.contains(identifier)) {
            const QString text = m_files.ReadIniValue(m_languageFile, identifier, QStringLiteral("Caption"), {});
            const bool isFromFile = !text.isNull(); // an empty text is a valid text
            m_entries.insert(identifier, {isFromFile ? text : QString::fromUtf8(row.defaultText), isFromFile});
        }
    }
}

const Texts::Entry &Texts::entry(const QString &identifier) const {
    const quint64 revision = m_files.revision();
    if (m_revision != revision) {
        fill();
        m_revision = m_files.revision(); // the first check of the file counts as a change
    }
    static const Entry none;
    const auto found = m_entries.constFind(identifier);
    return found == m_entries.constEnd() ? none : *found;
}

QString Texts::text(const QString &identifier) const {
    return entry(identifier).text;
}

QString Texts::text(const QString &identifier, const QString &defaultText) const {
    const Entry &found = entry(identifier);
    return found.isFromFile ? found.text : defaultText;
}

} // namespace lumora
