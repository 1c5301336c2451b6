#include "devices/mail/MailTrial.h"

namespace lumora {

MailTrial::MailTrial(QObject *parent) : QObject(parent) {}

MailTrial::~MailTrial() {
    m_control.cancel();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

/// `work` runs in a thread of its own; what it returns then tells the result in this object's thread.
void MailTrial::run(const std::function<std::function<void()>()> &work) {
    if (isRunning()) {
        return;
    }
    m_thread = std::thread([this, work] {
        const TaskControl::Scope scope(&m_control);
        const std::function<void()> tell = work();
        QMetaObject::invokeMethod(this, [this, tell] {
            m_thread.join();
            tell();
        });
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
