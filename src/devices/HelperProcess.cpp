#include "devices/HelperProcess.h"

#include <QCoreApplication>

namespace lumora {

HelperProcess::HelperProcess(const QString &helper)
    : m_helper(helper.isEmpty() ? QCoreApplication::applicationDirPath() + "/lumora-devices" : helper) {
    setStandardErrorFile(nullDevice()); // drivers are talkative
    setStandardInputFile(nullDevice());
    connect(this, &QProcess::finished, this, &HelperProcess::ended);
    // Queued: a missing program is reported while start() still runs.
    connect(
        this, &QProcess::errorOccurred, this,
        [this](ProcessError error) {
            if (error == FailedToStart) { // every other error is followed by finished()
                Q_EMIT ended();
            }
        },
        Qt::QueuedConnection);
}

HelperProcess::~HelperProcess() {
    disconnect();
    if (state() != NotRunning) {
        kill();
        waitForFinished(1000);
    }
}

} // namespace lumora
