#include "devices/mail/MailMessage.h"

#include <QUrl>
#include <QUuid>
#include <algorithm>

namespace lumora {

namespace {

constexpr int longestAddress = 320; // bytes: 64 for the name, 255 for the domain, and the @ (RFC 5321, 4.5.3.1)
constexpr qsizetype longestPlain = 60;
constexpr qsizetype wordBytes = 45; // in base64 with its frame 72 bytes; an encoded word has at most 75
constexpr char fold[] = "\r\n ";

bool isPrintableAscii(const QString &text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() >= 0x20 && c.unicode() < 0x7F; });
}

QString withoutControls(QString text) {
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator) {
            c = ' ';
        }
    }
    return text;
}

QByteArray encodedWords(const QString &text) {
    QByteArray words;
    QByteArray chunk;
    const auto flush = [&] {
        words += (words.isEmpty() ? "" : fold) + QByteArray("=?UTF-8?B?") + chunk.toBase64() + "?=";
        chunk.clear();
    };
    for (const char32_t point : text.toUcs4()) {
        const QByteArray letter = QString::fromUcs4(&point, 1).toUtf8(); // a letter is never divided
        if (chunk.size() + letter.size() > wordBytes) {
            flush();
        }
        chunk += letter;
    }
    flush();
    return words;
}

QByteArray quoted(const QString &name) {
    return '"' + name.toLatin1().replace('\\', "\\\\").replace('"', "\\\"") + '"';
}

QByteArray mailboxText(const Mailbox &mailbox) {
    QByteArray address = mailbox.address.trimmed().toUtf8();
    if (mailbox.name.isEmpty()) {
        return address;
    }
    const bool plain = isPrintableAscii(mailbox.name) && mailbox.name.size() <= longestPlain;
    return (plain ? quoted(mailbox.name) : encodedWords(mailbox.name)) + fold + '<' + address + '>';
}

QByteArray domainOf(const QString &address) {
    const QByteArray domain = address.section('@', -1).trimmed().toLatin1();
    const bool good = !domain.isEmpty() && std::all_of(domain.begin(), domain.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.';
    });
    return good ? domain : QByteArray("localhost");
}

} // namespace

Mailbox mailboxOf(const QString &text) {
    Mailbox mailbox{{}, text};
    const QString trimmed = text.trimmed();
    const qsizetype open = trimmed.indexOf('<');
    if (open >= 0 && trimmed.endsWith('>')) {
        mailbox.name = withoutControls(trimmed.left(open)).trimmed();
        if (mailbox.name.size() >= 2 && mailbox.name.startsWith('"') && mailbox.name.endsWith('"')) {
            mailbox.name = mailbox.name.mid(1, mailbox.name.size() - 2);
        }
        mailbox.address = trimmed.mid(open + 1, trimmed.size() - open - 2);
    }
    const qsizetype at = mailbox.address.lastIndexOf('@');
    const QByteArray domain = at < 0 ? QByteArray() : QUrl::toAce(mailbox.address.mid(at + 1));
    if (!domain.isEmpty()) {
        mailbox.address = mailbox.address.left(at + 1) + QString::fromLatin1(domain);
    }
    return mailbox;
}

bool canBeSent(const Mailbox &mailbox) {
    return mailbox.address.toUtf8().size() <= longestAddress &&
           std::none_of(mailbox.address.begin(), mailbox.address.end(),
                        [](QChar c) { return c.category() == QChar::Other_Control || c == '<' || c == '>'; });
}

QByteArray headerText(const QString &text) {
    const QString line = withoutControls(text);
    const bool plain = isPrintableAscii(line) && line.size() <= longestPlain && !line.contains("=?");
    return plain ? line.toLatin1() : encodedWords(line);
}

QList<QByteArray> mailHeader(const MailMessage &message, const QDateTime &now) {
    const Mailbox sender = mailboxOf(message.sender);
    QByteArrayList recipients;
    for (const QString &piece : message.recipients) {
        if (!piece.trimmed().isEmpty()) {
            recipients << mailboxText(mailboxOf(piece));
        }
    }
    return {
        "From: " + mailboxText(sender),
        "To: " +
            (recipients.isEmpty() ? QByteArray("undisclosed-recipients:;") : recipients.join(QByteArray(",") + fold)),
        "Subject: " + headerText(message.subject),
        "Date: " + now.toString(Qt::RFC2822Date).toLatin1(),
        "Message-ID: <" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces) + '@' + domainOf(sender.address) + '>',
    };
}

} // namespace lumora
