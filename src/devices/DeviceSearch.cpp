#include "devices/DeviceSearch.h"

#include <QCoreApplication>

namespace lumora {

namespace {

constexpr qsizetype longestAnswer = 1 << 20; // bytes; more is no list of devices

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

DeviceSearch::DeviceSearch(QString helper, QObject *parent) : QObject(parent), m_helper(std::move(helper)) {
    if (m_helper.isEmpty()) {
        m_helper = QCoreApplication::applicationDirPath() + "/lumora-devices";
    }
    for (const DeviceKind kind : {DeviceKind::Scanners, DeviceKind::Printers}) {
        Search &search = m_searches[index(kind)];
        search.process.setStandardErrorFile(QProcess::nullDevice()); // drivers are talkative
        search.process.setStandardInputFile(QProcess::nullDevice());
        search.limit.setSingleShot(true);
        connect(&search.process, &QProcess::readyReadStandardOutput, this, [&search] {
            search.output += search.process.readAllStandardOutput();
            if (search.output.size() > longestAnswer) {
                search.output.clear();
                search.process.kill();
            }
        });
        connect(&search.process, &QProcess::finished, this, [this, kind] { finish(kind); });
        // Queued: a missing program is reported while start() still runs.
        connect(
            &search.process, &QProcess::errorOccurred, this,
            [this, kind](QProcess::ProcessError error) {
                if (error == QProcess::FailedToStart) { // every other error is followed by finished()
                    finish(kind);
                }
            },
            Qt::QueuedConnection);
        connect(&search.limit, &QTimer::timeout, &search.process, &QProcess::kill);
    }
}

DeviceSearch::~DeviceSearch() {
    for (Search &search : m_searches) {
        search.process.disconnect(this);
        if (search.process.state() != QProcess::NotRunning) {
            search.process.kill();
            search.process.waitForFinished(1000);
        }
    }
}

void DeviceSearch::start(DeviceKind kind) {
    Search &search = m_searches[index(kind)];
    if (search.running) {
        return;
    }
    search.running = true;
    search.output.clear();
    search.limit.start(m_timeLimit);
    search.process.start(m_helper, {kind == DeviceKind::Scanners ? "scanners" : "printers"});
}

void DeviceSearch::finish(DeviceKind kind) {
    Search &search = m_searches[index(kind)];
    search.limit.stop();
    search.running = false;
    search.output += search.process.readAllStandardOutput();
    Q_EMIT answered(kind, parsed(search.output));
}

} // namespace lumora
