#include "devices/speech/SpeechService.h"

#include <QCoreApplication>

namespace lumora {

namespace {

constexpr int mostStarts = 2;
constexpr qsizetype mostWaiting = 1 << 16; // bytes that a helper which hangs has not read

} // namespace

SpeechService::SpeechService(const QString &helper, QObject *parent)
    : QObject(parent),
      m_helper(helper.isEmpty() ? QCoreApplication::applicationDirPath() + "/lumora-devices" : helper) {
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.setStandardOutputFile(QProcess::nullDevice());
}

SpeechService::~SpeechService() {
    if (m_process.state() != QProcess::NotRunning) {
        m_process.closeWriteChannel();
        if (!m_process.waitForFinished(timeToEnd)) {
            m_process.kill();
            m_process.waitForFinished(1000);
        }
    }
}

void SpeechService::say(const QString &locale, const QString &text) {
    if (!text.trimmed().isEmpty()) {
        send(locale + '\t' + text.simplified() + '\n');
    }
}

void SpeechService::stop() {
    if (m_process.state() != QProcess::NotRunning) {
        m_process.write("\n");
    }
}

void SpeechService::send(const QString &line) {
    if (m_process.state() == QProcess::NotRunning && m_starts < mostStarts) {
        ++m_starts;
        m_process.start(m_helper, {"speak"});
    }
    if (m_process.state() != QProcess::NotRunning && m_process.bytesToWrite() < mostWaiting) {
        m_process.write(line.toUtf8());
    }
}

} // namespace lumora
