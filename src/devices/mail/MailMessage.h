// A mail as its sender wrote it, and its header as mail servers take it.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

namespace lumora {

struct MailMessage {
    QString sender;         ///< an address, or "Name <address>"
    QStringList recipients; ///< the same, one each; an empty one is handed to the server as it is
    QString subject;
    QString html;       ///< the body; any kind of line break
    QString attachment; ///< path of a JPEG file
};

/// A sender or a recipient, taken apart.
struct Mailbox {
    QString name;    ///< may be empty
    QString address; ///< without angle brackets; its domain in ASCII (IDNA) where that is possible
};

/// "Name <address>" taken apart; any other text is an address as a whole, blanks at its ends included.
Mailbox mailboxOf(const QString &text);

/// Whether the address may be written into the dialogue with a server: no control characters (a line break would begin
/// a command of its own), no angle brackets, at most 320 bytes, the longest that RFC 5321 knows.
bool canBeSent(const Mailbox &mailbox);

/// A text for a header field: as it is where it is short printable ASCII, else as encoded words (RFC 2047) on lines of
/// at most 76 bytes. Control characters become blanks.
QByteArray headerText(const QString &text);

/// The fields From, To, Subject, Date and Message-ID, one each, folded with CR LF and a blank, without the last CR LF.
QList<QByteArray> mailHeader(const MailMessage &message, const QDateTime &now);

} // namespace lumora
