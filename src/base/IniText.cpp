#include "base/IniText.h"

#include <QStringConverter>
#include <array>

namespace lumora {
namespace {

bool isBlank(QChar c) {
    return c == u' ' || c == u'\t';
}
bool isLineBreak(QChar c) {
    return c == u'\n' || c == u'\r';
}

/// Bytes 0x80 to 0x9F of Windows-1252 (https://www.unicode.org/Public/MAPPINGS/VENDORS/MICSFT/WINDOWS/CP1252.TXT); the
/// five unassigned bytes map to the same code point.
constexpr std::array<char16_t, 32> windows1252 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                  0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

QString fromWindows1252(QByteArrayView bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<uchar>(bytes[i]);
        text[i] = QChar(byte >= 0x80 && byte < 0xA0 ? windows1252[byte - 0x80] : char16_t{byte});
    }
    return text;
}

/// Line by line, so that one invalid byte does not affect the whole file.
QString decodeLines(QByteArrayView bytes) {
    QString text;
    text.reserve(bytes.size());
    for (qsizetype start = 0; start < bytes.size();) {
        const qsizetype lineFeed = bytes.indexOf('\n', start);
        const qsizetype next = lineFeed < 0 ? bytes.size() : lineFeed + 1;
        const QByteArrayView line = bytes.sliced(start, next - start);
        text +=
            QUtf8StringView(line.data(), line.size()).isValidUtf8() ? QString::fromUtf8(line) : fromWindows1252(line);
        start = next;
    }
    return text;
}

} // namespace

IniText::IniText(const QByteArray &bytes) {
    const auto encoding = QStringConverter::encodingForData(bytes);
    m_byteOrderMark = encoding == QStringConverter::Utf8;
    if (encoding == QStringConverter::Utf16LE || encoding == QStringConverter::Utf16BE) {
        m_text = QStringDecoder(*encoding)(bytes);
    } else {
        m_text = decodeLines(QByteArrayView(bytes).sliced(m_byteOrderMark ? 3 : 0));
    }
    index();
}

void IniText::index() {
    m_values.clear();
    m_sectionEnds.clear();
    QString section;
    for (qsizetype start = 0; start < m_text.size();) {
        qsizetype end = start;
        while (end < m_text.size() && !isLineBreak(m_text[end])) {
            ++end;
        }
        const bool pair = end + 1 < m_text.size() && m_text[end] == u'\r' && m_text[end + 1] == u'\n';
        const qsizetype next = qMin(m_text.size(), end + (pair ? 2 : 1));
        indexLine({start, end - start}, next, section);
        start = next;
    }
}

/// Parses one line; `section` is the folded name of the current section, empty when its keys are ignored.
void IniText::indexLine(Span line, qsizetype next, QString &section) {
    const auto trimmed = [this](qsizetype from, qsizetype to) {
        while (from < to && isBlank(m_text[from])) {
            ++from;
        }
        while (to > from && isBlank(m_text[to - 1])) {
            --to;
        }
        return Span{from, to - from};
    };
    const auto folded = [this](Span span) { return m_text.mid(span.start, span.length).toCaseFolded(); };

    const qsizetype nul = QStringView(m_text).sliced(line.start, line.length).indexOf(QChar::Null);
    const Span body = trimmed(line.start, line.start + (nul < 0 ? line.length : nul));
    if (body.length == 0 || m_text[body.start] == u';') {
        return;
    }
    const qsizetype end = body.start + body.length;
    const QStringView text = QStringView(m_text).sliced(body.start, body.length);
    if (text.startsWith(u'[')) {
        const qsizetype close = text.indexOf(u']');
        section = folded(trimmed(body.start + 1, close < 0 ? end : body.start + close));
        if (m_sectionEnds.contains(section)) {
            section.clear();
        } else if (!section.isEmpty()) {
            m_sectionEnds.insert(section, next);
        }
        return;
    }
    const qsizetype equals = text.indexOf(u'=');
    if (section.isEmpty() || equals < 0) {
        return;
    }
    const QString name = section + u'\n' + folded(trimmed(body.start, body.start + equals));
    if (!m_values.contains(name)) {
        m_values.insert(name, trimmed(body.start + equals + 1, end));
    }
    m_sectionEnds[section] = next;
}

std::optional<QString> IniText::value(const QString &section, const QString &key) const {
    const auto found = m_values.constFind(section.toCaseFolded() + u'\n' + key.toCaseFolded());
    if (found == m_values.constEnd()) {
        return std::nullopt;
    }
    return m_text.mid(found->start, found->length);
}

bool IniText::canName(const QString &section, const QString &key) {
    const auto plain = [](const QString &name, QLatin1StringView forbidden) {
        return !name.isEmpty() && !isBlank(name.front()) && !isBlank(name.back()) &&
               std::none_of(name.begin(), name.end(),
                            [&](QChar c) { return isLineBreak(c) || c.isNull() || forbidden.contains(c); });
    };
    return plain(section, QLatin1StringView("]")) && plain(key, QLatin1StringView("=")) && key.front() != u';' &&
           key.front() != u'[';
}

/// Without parsing the file again: several values of a large one are changed at a start.
void IniText::replace(Span &value, const QString &text) {
    const qsizetype start = value.start;
    const qsizetype longer = text.size() - value.length;
    m_text.replace(start, value.length, text);
    value.length = text.size();
    for (Span &other : m_values) {
        other.start += other.start > start ? longer : 0;
    }
    for (qsizetype &end : m_sectionEnds) {
        end += end > start ? longer : 0;
    }
}

bool IniText::setValue(const QString &section, const QString &key, const QString &value) {
    const auto lineEnd = std::find_if(value.begin(), value.end(), [](QChar c) { return isLineBreak(c) || c.isNull(); });
    const QString line = value.left(lineEnd - value.begin());
    const auto found = m_values.find(section.toCaseFolded() + u'\n' + key.toCaseFolded());
    if (found != m_values.end()) {
        if (QStringView(m_text).sliced(found->start, found->length) == line) {
            return false;
        }
        const bool isPlain = !line.isEmpty() && !isBlank(line.front()) && !isBlank(line.back()) && found->length > 0;
        replace(*found, line);
        if (!isPlain) {
            index(); // blanks around a value do not belong to it
        }
        return true;
    }

    const qsizetype firstBreak = std::find_if(m_text.begin(), m_text.end(), isLineBreak) - m_text.begin();
    const QString breakText = firstBreak == m_text.size()                          ? QStringLiteral("\n")
                              : m_text.mid(firstBreak, 2) == QLatin1String("\r\n") ? QStringLiteral("\r\n")
                                                                                   : QString(m_text[firstBreak]);
    QString added = key + u'=' + line + breakText;
    qsizetype where = m_sectionEnds.value(section.toCaseFolded(), -1);
    if (where < 0) {
        where = m_text.size();
        added.prepend((m_text.isEmpty() ? QString() : breakText) + u'[' + section + u']' + breakText);
    }
    if (where > 0 && !isLineBreak(m_text[where - 1])) {
        added.prepend(breakText);
    }
    m_text.insert(where, added);
    index();
    return true;
}

QByteArray IniText::toBytes() const {
    return (m_byteOrderMark ? QByteArray("\xEF\xBB\xBF") : QByteArray()) + m_text.toUtf8();
}

} // namespace lumora
