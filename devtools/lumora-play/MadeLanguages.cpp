#include "MadeLanguages.h"

#include "base/Texts.h"

#include <QFile>
#include <QSet>

namespace lumora::play {

namespace {

/// Goes on with its own beginning, so that "%1" is not repeated and words stay words.
QString longer(const QString &text) {
    QString beginning = text.left((text.size() + 1) / 2).section('%', 0, 0).section('&', 0, 0).trimmed();
    return text.contains(' ') ? text + ' ' + beginning : text + beginning;
}

/// Each letter replaced by a Hebrew one; places such as "%1" stay.
QString mirrored(const QString &text) {
    QString other;
    for (const QChar letter : text) {
        const int place = letter.toLower().unicode() - 'a';
        other += place >= 0 && place < 26 ? QChar(0x05D0 + place) : letter; // 27 letters from Alef on
    }
    return other;
}

} // namespace

QString makeLanguage(const QString &kind, const QString &folder) {
    if (kind != "longer" && kind != "mirrored") {
        return {};
    }
    const bool isLonger = kind == "longer";
    const QHash<QString, QString> codes = {
        {"Language", isLonger ? "en" : "he"}, {"LanguageName", kind}, {"Direction", "auto"}};
    QByteArray lines;
    QSet<QString> written;
    for (const TextRow &row : allTexts()) {
        const QString identifier = QString::fromUtf8(row.identifier);
        if (written.contains(identifier)) {
            continue;
        }
        written << identifier;
        const QString text = QString::fromUtf8(row.defaultText);
        const QString made = codes.value(identifier, isLonger ? longer(text) : mirrored(text));
        lines += ('[' + identifier + "]\nCaption=" + made + '\n').toUtf8();
    }
    const QString name = kind + ".ini";
    QFile file(folder + '/' + name);
    return file.open(QIODevice::WriteOnly) && file.write(lines) == lines.size() ? name : QString();
}

} // namespace lumora::play
