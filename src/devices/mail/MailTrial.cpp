#include "devices/mail/MailTrial.h"

#include "base/OwnThread.h"

namespace lumora {

MailTrial::MailTrial(QObject *parent) : QObject(parent) {}

MailTrial::~MailTrial() {
    m_control.cancel();
}

/// `work` runs in a thread of its own; what it returns then tells the result in this object's thread.
void MailTrial::run(const std::function<std::function<void()>()> &work) {
    if (isRunning()) {
        return;
    }
    m_work = inOwnThread([this, work] {
        const TaskControl::Scope scope(&m_control);
        const std::function<void()> tell = work();
        QMetaObject::invokeMethod(
            this,
            [this, tell] {
                m_work = {};
                tell();
            },
            Qt::QueuedConnection); // where no thread was to be had, run() has not returned
    });
}

void MailTrial::tryServer(const MailServer &server, const QString &password) {
    run([this, server, password]() -> std::function<void()> {
        const MailResult result = tryMailServer(server, password);
        return [this, result] { Q_EMIT tried(result); };
    });
}

void MailTrial::find(const QString &address) {
    run([this, address]() -> std::function<void()> {
        const QList<MailServer> servers = findMailServers(address);
        return [this, servers] { Q_EMIT found(servers); };
    });
}

} // namespace lumora
