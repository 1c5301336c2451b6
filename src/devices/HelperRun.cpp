#include "devices/HelperRun.h"

#include "base/TaskControl.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

namespace lumora {

namespace {

constexpr qsizetype longestOutput = 1 << 20; // bytes; more is no answer
constexpr int patience = 50;                 // milliseconds between two checks for a cancelled task
constexpr int timeToEnd = 2000;              // milliseconds

} // namespace

HelperRun::HelperRun(const QString &helper, QObject *parent)
    : QObject(parent),
      m_helper(helper.isEmpty() ? QCoreApplication::applicationDirPath() + "/lumora-devices" : helper) {
    m_process.setStandardErrorFile(QProcess::nullDevice()); // drivers are talkative
    m_process.setStandardInputFile(QProcess::nullDevice());
    connect(&m_process, &QProcess::readyReadStandardOutput, this, [this] {
        m_output += m_process.readAllStandardOutput();
        if (m_output.size() > longestOutput) {
            m_output.clear();
            m_process.kill();
        }
    });
    connect(&m_process, &QProcess::finished, this, &HelperRun::finish);
    // Queued: a missing program is reported while start() still runs.
    connect(
        &m_process, &QProcess::errorOccurred, this,
        [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart) { // every other error is followed by finished()
                finish();
            }
        },
        Qt::QueuedConnection);
}

HelperRun::~HelperRun() {
    m_process.disconnect(this);
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished(1000);
    }
}

void HelperRun::start(const QStringList &arguments, int timeLimit) {
    if (m_running) {
        return;
    }
    m_running = true;
    m_output.clear();
    m_limit.start(timeLimit);
    m_process.start(m_helper, arguments);
}

void HelperRun::finish() {
    m_limit.stop();
    m_running = false;
    m_output += m_process.readAllStandardOutput();
    Q_EMIT finished(m_output);
}

QByteArray outputOfHelper(const QString &helper, const QStringList &arguments, int timeLimit) {
    HelperRun run(helper);
    QEventLoop loop;
    QByteArray answer;
    QObject::connect(&run, &HelperRun::finished, &loop, [&](const QByteArray &output) {
        answer = output;
        loop.quit();
    });
    QTimer check;
    QObject::connect(&check, &QTimer::timeout, &loop, [&] {
        if (TaskControl::isCurrentCancelled()) {
            check.stop();
            run.askToEnd();
            QTimer::singleShot(timeToEnd, &loop, &QEventLoop::quit);
        }
    });
    check.start(patience);
    run.start(arguments, timeLimit);
    loop.exec();
    return answer;
}

} // namespace lumora
