// The passwords of mail servers: in the desktop's keyring, or, where there is none, in memory until the program ends.
// Never in a file of Lumora's.
#pragma once

#include "base/MailServer.h"

#include <QObject>
#include <functional>

namespace lumora::mailPasswords {

/// Looks for the password of that user of that server, in memory and then in the keyring, and calls `then` with it, or
/// with an empty text when there is none; never before this returns, and never when the receiver is gone by then. A
/// keyring that does not answer within `limit` milliseconds counts as none.
void find(const MailServer &server, QObject *receiver, const std::function<void(const QString &)> &then,
          int limit = 60'000);

/// Keeps it in memory and in the keyring, where there is one. Returns at once.
void keep(const MailServer &server, const QString &password);

/// Keeps it in memory.
void keepForThisRun(const MailServer &server, const QString &password);

/// The server has refused it: from now on find() has none, until another is kept.
void refuse(const MailServer &server);

} // namespace lumora::mailPasswords
