#include "devices/ScanProcess.h"

namespace lumora {

namespace {

QStringList argumentsOf(const QList<ScanValue> &values) {
    QStringList arguments;
    for (const ScanValue &value : values) {
        arguments.append(value.name + '=' + value.value);
    }
    return arguments;
}

} // namespace

ScanProcess::ScanProcess(const QString &helper, QObject *parent) : QObject(parent), m_process(helper) {
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &ScanProcess::take);
    connect(&m_process, &HelperProcess::ended, this, &ScanProcess::finish);
}

void ScanProcess::readOptions(const QString &device, const QList<ScanValue> &values) {
    start(QStringList{"options", device} + argumentsOf(values));
}

void ScanProcess::scan(const QString &device, Settings settings, const QList<ScanValue> &values) {
    QStringList arguments{"scan", device};
    if (settings == Settings::Automatic) {
        arguments.append("auto");
    }
    start(arguments + argumentsOf(values));
}

void ScanProcess::start(const QStringList &arguments) {
    if (m_running) {
        return;
    }
    m_running = true;
    m_status.reset();
    m_messages = {};
    m_limit.start(m_limits.silence);
    m_process.run(arguments);
}

void ScanProcess::cancel() {
    if (m_running && !m_status) {
        m_status = ScanStatus::Cancelled;
        m_limit.start(m_limits.closing);
        m_process.terminate();
    }
}

void ScanProcess::take() {
    m_messages.add(m_process.readAllStandardOutput());
    while (const auto message = m_messages.next()) {
        if (!m_status) {
            takeMessage(*message);
        }
    }
    if (m_messages.isBroken() && !m_status) {
        m_status = ScanStatus::Crashed;
        m_process.kill();
    }
}

void ScanProcess::takeMessage(const ScanMessage &message) {
    m_limit.start(m_limits.silence);
    switch (message.kind) {
    case ScanMessage::Kind::Frame:
        if (const auto frame = ScanFrame::fromText(message.content)) {
            Q_EMIT frameBegan(*frame);
            return;
        }
        break;
    case ScanMessage::Kind::Data:
        Q_EMIT dataRead(message.content);
        return;
    case ScanMessage::Kind::Options:
        if (const auto options = scanOptionsFromJson(message.content)) {
            Q_EMIT optionsRead(*options);
            return;
        }
        break;
    case ScanMessage::Kind::Status:
        m_status = statusOf(message.content).value_or(ScanStatus::Crashed);
        m_limit.start(m_limits.closing);
        return;
    }
    m_status = ScanStatus::Crashed; // it talks nonsense
    m_process.kill();
}

/// The time is up.
void ScanProcess::giveUp() {
    if (!m_status) {
        m_status = ScanStatus::NotAnswering;
    }
    m_process.kill();
}

void ScanProcess::finish() {
    if (m_process.isOpen()) {
        take(); // what came with the end
    }
    m_limit.stop();
    m_running = false;
    Q_EMIT finished(m_status.value_or(ScanStatus::Crashed));
}

} // namespace lumora
