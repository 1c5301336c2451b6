#include "base/Texts.h"

#include "base/Capitals.h"
#include "base/IniFiles.h"

#include <QStringList>

namespace lumora {
bool isTextOf(const TextRow &row, const QString &window) {
    return QString::fromUtf8(row.window).split(' ', Qt::SkipEmptyParts).contains(window);
}

namespace {

/// Letters that are written from the right, less those that are written from the left.
qsizetype lettersFromTheRight(const QString &text) {
    qsizetype count = 0;
    for (const QChar letter : text) {
        const QChar::Direction direction = letter.direction();
        count += direction == QChar::DirR || direction == QChar::DirAL ? 1 : direction == QChar::DirL ? -1 : 0;
    }
    return count;
}

} // namespace

Texts::Texts(IniFiles &files, QString languageFile)
    : Texts(files, [file = std::move(languageFile)] { return QStringList(file); }) {}

Texts::Texts(IniFiles &files, std::function<QStringList()> languageFiles, std::function<bool()> capitals)
    : m_files(files), m_languageFiles(std::move(languageFiles)), m_capitals(std::move(capitals)) {}

void Texts::fill() const {
    m_entries.clear();
    const QStringList files = m_languageFiles();
    qsizetype fromTheRight = 0;
    for (const TextRow &row : allTexts()) {
        const QString identifier = QString::fromUtf8(row.identifier);
        if (m_entries.contains(identifier)) {
            continue;
        }
        QString text; // an empty text is a valid text, a null one is missing
        for (qsizetype i = 0; i < files.size() && text.isNull(); ++i) {
            text = m_files.ReadIniValue(files[i], identifier, QStringLiteral("Caption"), {});
            fromTheRight += i == 0 ? lettersFromTheRight(text) : 0;
        }
        const bool isFromFile = !text.isNull();
        m_entries.insert(identifier, {isFromFile ? text : QString::fromUtf8(row.defaultText), isFromFile});
    }
    m_lettersRun = fromTheRight > 0 ? Qt::RightToLeft : Qt::LeftToRight;
    m_capitalsOf = m_capitals && m_capitals() ? m_entries.value(QStringLiteral("Language")).text : QString();
    if (!m_capitalsOf.isEmpty()) {
        for (const TextRow &row : allTexts()) {
            if (qstrcmp(row.property, "verbatim") != 0) {
                Entry &entry = m_entries[QString::fromUtf8(row.identifier)];
                entry.text = inCapitals(entry.text, m_capitalsOf);
            }
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
    return found.isFromFile ? found.text : m_capitalsOf.isEmpty() ? defaultText : inCapitals(defaultText, m_capitalsOf);
}

QString Texts::shown(const QString &words) const {
    entry({}); // after a change of the files
    return m_capitalsOf.isEmpty() ? words : inCapitals(words, m_capitalsOf);
}

Qt::LayoutDirection Texts::direction() const {
    const QString said = text(QStringLiteral("Direction")).trimmed().toLower();
    return said == QLatin1StringView("rtl")   ? Qt::RightToLeft
           : said == QLatin1StringView("ltr") ? Qt::LeftToRight
                                              : m_lettersRun;
}

} // namespace lumora
