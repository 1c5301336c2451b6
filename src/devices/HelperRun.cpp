#include "devices/HelperRun.h"

#include "base/TaskControl.h"

#include <QEventLoop>
#include <QTimer>

namespace lumora {

namespace {

constexpr qsizetype longestOutput = 1 << 20; // bytes; more is no answer
constexpr int patience = 50;                 // milliseconds between two checks for a cancelled task
constexpr int timeToEnd = 2000;              // milliseconds

} // namespace

HelperRun::HelperRun(const QString &helper, QObject *parent) : QObject(parent), m_process(helper) {
    connect(&m_process, &QProcess::readyReadStandardOutput, this, [this] {
        m_output += m_process.readAllStandardOutput();
        if (m_output.size() > longestOutput) {
            m_output.clear();
            m_process.kill();
        }
    });
    connect(&m_process, &HelperProcess::ended, this, &HelperRun::finish);
}

void HelperRun::start(const QStringList &arguments, int timeLimit) {
    if (m_running) {
        return;
    }
    m_running = true;
    m_output.clear();
    m_limit.start(timeLimit);
    m_process.run(arguments);
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
