#include "devices/DeviceSearch.h"

namespace lumora {

namespace {

/// Lines as lumora-devices prints them. What a driver prints in between is passed over.
DeviceAnswer parsed(const QByteArray &output) {
    DeviceAnswer answer;
    const QList<QByteArray> lines = output.split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> fields = line.split('\t');
        if (line == "done") {
            answer.complete = true;
            return answer;
        }
        if (fields.size() != 3 || fields[1].isEmpty()) {
            continue;
        }
        const QString name = QString::fromUtf8(fields[1]);
        if (fields[0] == "device") {
            answer.devices.append({name, fields[2].isEmpty() ? name : QString::fromUtf8(fields[2])});
        } else if (fields[0] == "default") {
            answer.defaultName = name;
        }
    }
    return {};
}

} // namespace

DeviceSearch::DeviceSearch(const QString &helper, QObject *parent)
    : QObject(parent), m_scanners(helper), m_printers(helper) {
    connect(&m_scanners, &HelperRun::finished, this,
            [this](const QByteArray &output) { Q_EMIT answered(DeviceKind::Scanners, parsed(output)); });
    connect(&m_printers, &HelperRun::finished, this,
            [this](const QByteArray &output) { Q_EMIT answered(DeviceKind::Printers, parsed(output)); });
}

void DeviceSearch::start(DeviceKind kind) {
    if (kind == DeviceKind::Scanners) {
        m_scanners.start({"scanners"}, m_timeLimit);
    } else {
        m_printers.start({"printers"}, m_timeLimit);
    }
}

} // namespace lumora
