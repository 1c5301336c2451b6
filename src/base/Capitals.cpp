#include "base/Capitals.h"

#include <QRegularExpression>
#include <QStringList>

namespace lumora {

namespace {

QString capitalLetters(QString words, const QString &language) {
    if (language == u"tr" || language == u"az") {
        words.replace(u'i', QChar(0x0130)); // with its dot; "ı" becomes "I" as everywhere
    } else if (language == u"de") {
        words.replace(QChar(0x00DF), QChar(0x1E9E));
    }
    return words.toUpper();
}

/// What is no word. A file name ends in an extension of two letters at least, unlike "e.g.".
const QRegularExpression &keptParts() {
    static const QRegularExpression parts(
        QStringLiteral(
            R"(%L?\d+|<(pre|code|head)\b[^>]*>.*?</\1>|%n\b|<[^<>]*>|&#?\w+;|https?://\S+|[\w.*+-]+@[\w.-]+|[\w*-]*(?:\.\w+)*\.[a-z]\w{1,3}\b)"),
        QRegularExpression::UseUnicodePropertiesOption | QRegularExpression::DotMatchesEverythingOption);
    return parts;
}

/// "pt" of "pt-BR".
QString codeOf(const QString &language) {
    return language.section(u'-', 0, 0).section(u'_', 0, 0).toLower();
}

} // namespace

bool hasCapitals(const QString &language) {
    return !QStringList{"ar", "ja"}.contains(codeOf(language));
}

QString inCapitals(const QString &text, const QString &language) {
    if (!hasCapitals(language)) {
        return text;
    }
    const QString code = codeOf(language);
    QString result;
    qsizetype done = 0;
    for (auto found = keptParts().globalMatch(text); found.hasNext();) {
        const QRegularExpressionMatch part = found.next();
        result += capitalLetters(text.mid(done, part.capturedStart() - done), code) + part.captured();
        done = part.capturedEnd();
    }
    return result + capitalLetters(text.mid(done), code);
}

} // namespace lumora
