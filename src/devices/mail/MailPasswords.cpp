#include "devices/mail/MailPasswords.h"

#include <QHash>
#include <QPointer>
#include <QTimer>
#include <memory>
#include <qt6keychain/keychain.h>
#include <utility>

namespace lumora::mailPasswords {

namespace {

/// Per user and server; an empty one was refused.
QHash<QString, QString> &remembered() {
    static QHash<QString, QString> passwords; // of this run, whichever window is open
    return passwords;
}

QString keyOf(const MailServer &server) {
    return server.user + '@' + server.host.trimmed().toLower();
}

QString service() {
    return QStringLiteral("Lumora");
}

} // namespace

void find(const MailServer &server, QObject *receiver, const std::function<void(const QString &)> &then, int limit) {
    const QString key = keyOf(server);
    const auto known = remembered().constFind(key);
    if (known != remembered().constEnd()) {
        QTimer::singleShot(0, receiver, [then, password = *known] { then(password); });
        return;
    }
    const auto answered = std::make_shared<bool>(false);
    const auto answer = [answered, then](const QString &password) {
        if (!std::exchange(*answered, true)) {
            then(password);
        }
    };
    auto *job = new QKeychain::ReadPasswordJob(service()); // deletes itself
    job->setKey(key);
    QObject::connect(job, &QKeychain::Job::finished, receiver, [answer](QKeychain::Job *done) {
        answer(done->error() == QKeychain::NoError ? static_cast<QKeychain::ReadPasswordJob *>(done)->textData()
                                                   : QString());
    });
    QTimer::singleShot(limit, receiver, [answer] { answer({}); });
    job->start();
}

void keep(const MailServer &server, const QString &password) {
    keepForThisRun(server, password);
    auto *job = new QKeychain::WritePasswordJob(service());
    job->setKey(keyOf(server));
    job->setTextData(password);
    job->start();
}

void keepForThisRun(const MailServer &server, const QString &password) {
    remembered().insert(keyOf(server), password);
}

void refuse(const MailServer &server) {
    remembered().insert(keyOf(server), {});
}

} // namespace lumora::mailPasswords
